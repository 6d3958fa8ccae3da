// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditrecord.h"

#include <QElapsedTimer>
#include <QList>
#include <QSet>

namespace NivraRecorder {

/** An event of the audit daemon: all that its records say. */
struct AuditEvent
{
    QSet<QString> types;
    /** The first value of each field; "name" is the object's, absolute where the directory is known. */
    QHash<QString, QString> fields;
};

/** Puts the records of events together. Records of several events may come mixed. */
class AuditAssembler
{
public:
    /** How long an event without an end waits for more records, in milliseconds. */
    static constexpr qint64 patience = 2000;

    AuditAssembler();

    /** Takes a line; @return the events that it completes. */
    [[nodiscard]] QList<AuditEvent> add(const QByteArray &line);
    /** The events that have waited long enough. */
    [[nodiscard]] QList<AuditEvent> takeOverdue();
    /** All events, since nothing more will come. */
    [[nodiscard]] QList<AuditEvent> takeAll();
    [[nodiscard]] bool isEmpty() const { return m_pending.isEmpty(); }

private:
    struct Pending
    {
        QByteArray id;
        qint64 since = 0;
        QList<AuditRecord> records;
    };

    [[nodiscard]] static AuditEvent assembled(const QList<AuditRecord> &records);

    QElapsedTimer m_clock;
    QList<Pending> m_pending; ///< the oldest first
};

} // namespace NivraRecorder
