// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "catalogevents.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace NivraRecorder {

/**
 * The rules by which events of the catalog are found, made anew whenever the catalog has changed.
 *
 * A rule is made by Rule::of(), which gives none for an event of another kind; matches() says whether
 * something that happened is its event, and record() makes the record of that.
 */
template <typename Rule> class EventRules
{
public:
    /** @param settingsFile the event settings file. */
    explicit EventRules(const QString &settingsFile)
        : m_catalog(settingsFile)
    {
    }

    /** The records of all events that @p happened is; see CatalogEvent::record(). */
    template <typename Happened> [[nodiscard]] QList<QByteArray> records(const Happened &happened)
    {
        if (m_catalog.refresh()) {
            m_rules.clear();
            for (const CatalogEvent &event : m_catalog.events()) {
                if (const std::optional<Rule> rule = Rule::of(event)) {
                    m_rules << *rule;
                }
            }
        }
        QList<QByteArray> records;
        for (const Rule &rule : qAsConst(m_rules)) {
            if (rule.matches(happened)) {
                records << rule.record(happened);
            }
        }
        return records;
    }

private:
    CatalogEvents m_catalog;
    QList<Rule> m_rules;
};

} // namespace NivraRecorder
