// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "eventrules.h"
#include "systemmessage.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

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
    explicit MessageMatcher(const QString &settingsFile)
        : m_rules(settingsFile)
    {
    }

    /** The records of all events that @p message is; see CatalogEvent::record(). */
    [[nodiscard]] QList<QByteArray> records(const SystemMessage &message) { return m_rules.records(message); }

private:
    struct Rule
    {
        [[nodiscard]] static std::optional<Rule> of(const CatalogEvent &event);
        [[nodiscard]] bool matches(const SystemMessage &message) const;
        [[nodiscard]] QByteArray record(const SystemMessage &message) const;

        CatalogEvent event;
        QStringList programs;
        QStringList texts;
    };

    EventRules<Rule> m_rules;
};

} // namespace NivraRecorder
