// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditassembler.h"
#include "eventrules.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace NivraRecorder {

/**
 * Finds out which events of the catalog an event of the audit daemon is, and makes their records.
 *
 * An event of the catalog is meant when each of its "filter-values" about audit records, such as
 * ".auditd.type" or ".auditd.success", is among the values listed for it. A system call must also bear the
 * key of one of the event's audit rules: those of "message-audit-rules", ".auditd.key", or for each operation
 * in "message-audit-events" the key "nivra-subject-" and its name.
 */
class EventMatcher
{
public:
    /** @param settingsFile the event settings file. */
    explicit EventMatcher(const QString &settingsFile)
        : m_rules(settingsFile)
    {
    }

    /** The records of all events that @p event is; see CatalogEvent::record(). */
    [[nodiscard]] QList<QByteArray> records(const AuditEvent &event) { return m_rules.records(event); }

private:
    struct Rule
    {
        [[nodiscard]] static std::optional<Rule> of(const CatalogEvent &event);
        [[nodiscard]] bool matches(const AuditEvent &happened) const;
        [[nodiscard]] QByteArray record(const AuditEvent &happened) const;

        CatalogEvent event;
        QString type; ///< type of the audit record
        QStringList keys; ///< one of these, for a system call
        QHash<QString, QStringList> conditions; ///< the values that a field may have
    };

    EventRules<Rule> m_rules;
};

} // namespace NivraRecorder
