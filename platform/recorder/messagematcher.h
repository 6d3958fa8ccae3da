// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "catalogevents.h"
#include "systemmessage.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace NivraRecorder {

/**
 * Finds out which events of the catalog a message of the journal is, and makes their records.
 *
 * An event is meant when the message's program is one of those in "PROGRAM" of its "filter-values", and its
 * text holds one of the texts in "MESSAGE"; what is missing is not looked at. Messages that users sent count
 * for events of the type "custom" only.
 */
class MessageMatcher
{
public:
    /** @param settingsFile the event settings file. */
    explicit MessageMatcher(const QString &settingsFile);

    /** The records of all events that @p message is; see CatalogEvent::record(). */
    [[nodiscard]] QList<QByteArray> records(const SystemMessage &message);

private:
    struct Rule
    {
        CatalogEvent event;
        QStringList programs;
        QStringList texts;
    };

    void addRule(const CatalogEvent &event);
    [[nodiscard]] static bool matches(const Rule &rule, const SystemMessage &message);
    [[nodiscard]] static QByteArray record(const Rule &rule, const SystemMessage &message);

    CatalogEvents m_catalog;
    QList<Rule> m_rules;
};

} // namespace NivraRecorder
