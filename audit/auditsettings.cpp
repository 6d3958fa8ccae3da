// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditsettings.h"

namespace {
template <typename Values> Values differing(const Values &wanted, const Values &present)
{
    Values changes;
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (present.value(it.key(), AuditSettings::None) != it.value()) {
            changes.insert(it.key(), it.value());
        }
    }
    return changes;
}

template <typename Values> void mergeInto(Values &values, const Values &changes)
{
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        values.insert(it.key(), it.value());
    }
}
} // namespace

const QStringList &AuditSettings::auditIDs()
{
    static const QStringList identifiers{
        QStringLiteral("open"),  QStringLiteral("create"), QStringLiteral("exec"),   QStringLiteral("delete"),
        QStringLiteral("chmod"), QStringLiteral("chown"),  QStringLiteral("mount"),  QStringLiteral("module"),
        QStringLiteral("uid"),   QStringLiteral("gid"),    QStringLiteral("audit"),  QStringLiteral("acl"),
        QStringLiteral("mac"),   QStringLiteral("cap"),    QStringLiteral("chroot"), QStringLiteral("rename"),
        QStringLiteral("net")};
    return identifiers;
}

void AuditSettings::prepareAuditSettings(const QString &name, int type, const QString &identifier, int value)
{
    if (type == Users) {
        m_users.insert({name, identifier}, value);
    } else if (type == Groups) {
        m_groups.insert({name, identifier}, value);
    }
}

void AuditSettings::prepareOtherAuditSettings(const QString &identifier, int value)
{
    m_other.insert(identifier, value);
}

void AuditSettings::clearAuditSettings()
{
    m_users.clear();
    m_groups.clear();
    m_other.clear();
}

AuditSettings AuditSettings::differencesFrom(const AuditSettings &present) const
{
    AuditSettings changes;
    changes.m_users = differing(m_users, present.m_users);
    changes.m_groups = differing(m_groups, present.m_groups);
    changes.m_other = differing(m_other, present.m_other);
    return changes;
}

void AuditSettings::merge(const AuditSettings &changes)
{
    mergeInto(m_users, changes.m_users);
    mergeInto(m_groups, changes.m_groups);
    mergeInto(m_other, changes.m_other);
}
