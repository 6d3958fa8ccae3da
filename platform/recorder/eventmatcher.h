// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditassembler.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace NivraRecorder {

/**
 * Finds out which events of the catalog an event of the audit daemon is, and makes their records.
 *
 * An event of the catalog is meant when it is switched on and each of its "filter-values" about audit
 * records, such as
 * ".auditd.type" or ".auditd.success", is among the values listed for it. A system call must also bear the
 * key of one of the event's audit rules: those of "message-audit-rules", ".auditd.key", or for each operation
 * in "message-audit-events" the key "nivra-subject-" and its name. Descriptions are those of the event
 * catalog, changed by the event settings file, which is read again when it has changed.
 */
class EventMatcher
{
public:
    /** @param settingsFile the event settings file. */
    explicit EventMatcher(const QString &settingsFile);

    /**
     * The records of all events that @p event is: one line of JSON each, an object with the member "MSG", as
     * the logging service's parser of events takes it.
     */
    [[nodiscard]] QList<QByteArray> records(const AuditEvent &event);

private:
    struct Rule
    {
        QHash<QString, QStringList> conditions; ///< the values that a field may have
        QString type; ///< type of the audit record
        QStringList keys; ///< one of these, for a system call
        QString member; ///< the record's member below "MSG"
        QJsonObject fixed; ///< what all its records hold
        QList<QPair<QString, QString>> parameters; ///< names and fields
    };

    void loadWhenChanged();
    void load();
    void addRule(const QJsonObject &event, const QJsonObject &group);
    [[nodiscard]] static bool matches(const Rule &rule, const AuditEvent &event);
    [[nodiscard]] static QByteArray record(const Rule &rule, const AuditEvent &event);

    QString m_settingsFile;
    QDateTime m_modified;
    qint64 m_size = -1;
    bool m_loaded = false;
    QList<Rule> m_rules;
};

} // namespace NivraRecorder
