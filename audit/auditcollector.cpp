// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditcollector.h"

#include "auditnodes.h"

#include <QRegularExpression>

namespace {
int valueOf(const EventTreeItem &holder)
{
    const auto isSet = [&holder](QLatin1String name) {
        const EventTreeItem *member = holder.member(name);
        return member && member->value(1).toString() == QLatin1String("1");
    };
    return (isSet(QLatin1String("succ")) ? AuditSettings::Success : 0)
        | (isSet(QLatin1String("fail")) ? AuditSettings::Failure : 0);
}

bool isIdentifier(const QString &name)
{
    return AuditSettings::auditIDs().contains(name);
}

/// The counterpart in the other tree, which is of the same shape.
const EventTreeItem *counterpart(const EventTreeItem *parent, int row, const QString &name)
{
    const EventTreeItem *child = parent ? parent->eventChild(row) : nullptr;
    return child && child->nativeName == name ? child : nullptr;
}

/// The identifiers that an event of the older layout lists.
QStringList oldIdentifiers(const EventTreeItem &event)
{
    QStringList names;
    const EventTreeItem *operations = AuditNodes::auditEvents(event);
    if (!operations) {
        return names;
    }
    if (!operations->isObject()) {
        static const QRegularExpression separators(QStringLiteral("[,\\s]+"));
        names = operations->value(1).toString().split(separators, Qt::SkipEmptyParts);
    }
    for (int row = 0; row < operations->childCount(); ++row) {
        const EventTreeItem *operation = operations->eventChild(row);
        if (!operation->isObject()) {
            names.append(operation->nativeName);
        }
    }
    return names;
}
} // namespace

AuditCollector::AuditCollector(const QStringList &users, const QStringList &groups)
    : m_users(users.cbegin(), users.cend())
    , m_groups(groups.cbegin(), groups.cend())
{
}

AuditSettings AuditCollector::collect(const EventTreeItem &working, const EventTreeItem &reference,
                                      const std::function<void()> &pause)
{
    m_userWishes.clear();
    m_groupWishes.clear();
    m_otherWishes.clear();
    for (int row = 0; row < working.childCount(); ++row) {
        const EventTreeItem *group = working.eventChild(row);
        const EventTreeItem *referenceGroup = counterpart(&reference, row, group->nativeName);
        for (int eventRow = 0; eventRow < group->childCount(); ++eventRow) {
            const EventTreeItem *event = group->eventChild(eventRow);
            const bool on = AuditNodes::isOn(*event);
            if (!on) {
                resetAuditSettings(*event);
            } else if (const EventTreeItem *as = counterpart(referenceGroup, eventRow, event->nativeName)) {
                setAuditSettings(*event, *as);
            }
            const QStringList identifiers = oldIdentifiers(*event);
            for (const QString &identifier : identifiers) {
                prepareAuditSettingsForOldConfigs(identifier, on ? AuditSettings::Both : AuditSettings::None);
            }
            pause();
        }
    }
    AuditSettings settings;
    for (auto it = m_userWishes.cbegin(); it != m_userWishes.cend(); ++it) {
        settings.prepareAuditSettings(it.key().first, AuditSettings::Users, it.key().second, it->value());
    }
    for (auto it = m_groupWishes.cbegin(); it != m_groupWishes.cend(); ++it) {
        settings.prepareAuditSettings(it.key().first, AuditSettings::Groups, it.key().second, it->value());
    }
    for (auto it = m_otherWishes.cbegin(); it != m_otherWishes.cend(); ++it) {
        settings.prepareOtherAuditSettings(it.key(), it->value());
    }
    return settings;
}

void AuditCollector::setAuditSettings(const EventTreeItem &event, const EventTreeItem &reference)
{
    const EventTreeItem *operations = AuditNodes::auditEvents(reference);
    AuditNodes::forEachOperation(event, [this, operations](const EventTreeItem &operation) {
        const QString &identifier = operation.nativeName;
        if (!isIdentifier(identifier)) {
            return;
        }
        const EventTreeItem *former = counterpart(operations, operation.row(), identifier);
        const auto formerMember
            = [former](QLatin1String name) { return former ? former->member(name) : nullptr; };
        addSubjects(operation.member(AuditNodes::users), formerMember(AuditNodes::users), identifier, m_users,
                    m_userWishes);
        addSubjects(operation.member(AuditNodes::groups), formerMember(AuditNodes::groups), identifier,
                    m_groups, m_groupWishes);
        if (const EventTreeItem *other = operation.member(AuditNodes::other)) {
            add(m_otherWishes[identifier], wishOf(*other, formerMember(AuditNodes::other)));
        }
    });
}

void AuditCollector::resetAuditSettings(const EventTreeItem &event)
{
    AuditNodes::forEachOperation(event, [this](const EventTreeItem &operation) {
        const QString &identifier = operation.nativeName;
        if (!isIdentifier(identifier)) {
            return;
        }
        // A wish for nothing: what another event asks for is added to it.
        for (const QString &name : qAsConst(m_users)) {
            (void)m_userWishes[{name, identifier}];
        }
        for (const QString &name : qAsConst(m_groups)) {
            (void)m_groupWishes[{name, identifier}];
        }
        (void)m_otherWishes[identifier];
    });
}

void AuditCollector::prepareAuditSettingsForOldConfigs(const QString &name, int value)
{
    if (isIdentifier(name)) {
        add(m_otherWishes[name], {value, 0, 0});
    }
}

void AuditCollector::addSubjects(const EventTreeItem *subjects, const EventTreeItem *reference,
                                 const QString &identifier, const QSet<QString> &accounts,
                                 SubjectWishes &wishes) const
{
    for (int row = 0; subjects && row < subjects->childCount(); ++row) {
        const EventTreeItem *subject = subjects->eventChild(row);
        if (accounts.contains(subject->nativeName)) {
            add(wishes[{subject->nativeName, identifier}],
                wishOf(*subject, counterpart(reference, row, subject->nativeName)));
        }
    }
}

AuditCollector::Wish AuditCollector::wishOf(const EventTreeItem &holder, const EventTreeItem *reference)
{
    const int value = valueOf(holder);
    const int edited = reference ? value ^ valueOf(*reference) : 0;
    return {value, edited, value & edited};
}

void AuditCollector::add(Wish &wish, const Wish &another)
{
    wish.asked |= another.asked;
    wish.edited |= another.edited;
    wish.editedOn |= another.editedOn;
}
