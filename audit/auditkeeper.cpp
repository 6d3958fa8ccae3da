// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditkeeper.h"

#include "auditcollector.h"
#include "auditservice.h"
#include "audittree.h"

#include <KLocalizedString>

namespace {
/// Nothing can have been set for a name that cannot be sent, so nothing need be taken back.
AuditSettings::SubjectValues sendable(const AuditSettings::SubjectValues &values)
{
    AuditSettings::SubjectValues kept;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (it.value() != AuditSettings::None || !it.key().first.contains(QLatin1Char('/'))) {
            kept.insert(it.key(), it.value());
        }
    }
    return kept;
}
} // namespace

AuditKeeper::AuditKeeper(AuditService &service)
    : m_service(service)
{
}

bool AuditKeeper::read(const QStringList &users, const QStringList &groups)
{
    if (m_state == State::NotRead) {
        m_state = readAll(users, groups) ? State::Read : State::Failed;
    }
    return m_state == State::Read;
}

bool AuditKeeper::readAll(const QStringList &users, const QStringList &groups)
{
    const QStringList &identifiers = AuditSettings::auditIDs();
    AuditSettings read;
    const auto failed = [this] {
        m_readError = m_service.errorString();
        return !m_readError.isEmpty();
    };
    read.setUsers(m_service.getAuditSettings(AuditSettings::Users, identifiers, users));
    if (failed()) {
        return false;
    }
    read.setGroups(m_service.getAuditSettings(AuditSettings::Groups, identifiers, groups));
    if (failed()) {
        return false;
    }
    read.setOther(m_service.getOtherAuditSettings(identifiers));
    if (failed()) {
        return false;
    }
    m_system = read;
    return true;
}

void AuditKeeper::forget()
{
    m_system.clearAuditSettings();
    m_forgotten = true;
}

void AuditKeeper::copyInto(EventTreeItem &root) const
{
    AuditTree::synchronize(root, m_system);
}

bool AuditKeeper::collect(const EventTreeItem &working, const EventTreeItem &reference,
                          const QStringList &users, const QStringList &groups,
                          const std::function<void()> &pause)
{
    AuditCollector collector(users, groups);
    const AuditSettings loaded = collector.collect(reference, reference, pause);
    m_collected = collector.collect(working, reference, pause);
    return !m_collected.differencesFrom(loaded).isEmpty() || !loaded.differencesFrom(m_collected).isEmpty();
}

AuditSettings AuditKeeper::pending() const
{
    if (!m_forgotten) {
        return m_collected.differencesFrom(m_system);
    }
    AuditSettings all = m_collected;
    all.setUsers(sendable(m_collected.users()));
    all.setGroups(sendable(m_collected.groups()));
    return all;
}

QString AuditKeeper::refusal() const
{
    if (m_state != State::Read) {
        return i18n(
            "The audit settings of users and groups could not be read when the page was opened, so they "
            "cannot be changed: %1",
            m_readError);
    }
    const AuditSettings changes = pending();
    const QString refusal = AuditService::refusalOf(changes.users());
    return refusal.isEmpty() ? AuditService::refusalOf(changes.groups()) : refusal;
}

bool AuditKeeper::write()
{
    const AuditSettings changes = pending();
    const auto keep = [this](auto setter, const auto &values) {
        AuditSettings written;
        (written.*setter)(values);
        m_system.merge(written);
    };
    const auto written = [this](bool ok) {
        m_writeError = ok ? QString() : m_service.errorString();
        return ok;
    };
    if (!changes.groups().isEmpty()) {
        if (!written(m_service.setAuditSettings(changes.groups(), AuditSettings::Groups))) {
            return false;
        }
        keep(&AuditSettings::setGroups, changes.groups());
    }
    if (!changes.users().isEmpty()) {
        if (!written(m_service.setAuditSettings(changes.users(), AuditSettings::Users))) {
            return false;
        }
        keep(&AuditSettings::setUsers, changes.users());
    }
    if (!changes.other().isEmpty()) {
        if (!written(m_service.setOtherAuditSettings(changes.other()))) {
            return false;
        }
        keep(&AuditSettings::setOther, changes.other());
    }
    m_forgotten = false;
    return true;
}
