// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditsettings.h"

#include <QHash>
#include <QSet>

#include <functional>

class EventTreeItem;

/**
 * Collects from the event tree what the system is to record, as AuditTree describes it.
 *
 * Where several events that are on name an operation, a switch that the administrator turned decides, else it
 * is recorded when one of them asks for it. What only events that are off name is not recorded.
 */
class AuditCollector
{
public:
    /// @param users, groups the system's accounts; others that a description names cannot be audited
    AuditCollector(const QStringList &users, const QStringList &groups);

    /**
     * @param reference the tree as loaded, of the same shape
     * @param pause called after every event; neither tree may be changed or destroyed in it
     */
    [[nodiscard]] AuditSettings collect(
        const EventTreeItem &working, const EventTreeItem &reference,
        const std::function<void()> &pause = [] {});

private:
    /// The bits of one setting, put together from several events.
    struct Wish
    {
        int asked = 0;
        int edited = 0; ///< bits that differ from the tree as loaded
        int editedOn = 0; ///< those of them that were switched on

        [[nodiscard]] int value() const { return editedOn | (asked & ~edited); }
    };
    using SubjectWishes = QHash<AuditSettings::SubjectKey, Wish>;

    void setAuditSettings(const EventTreeItem &event, const EventTreeItem &reference);
    void resetAuditSettings(const EventTreeItem &event);
    void prepareAuditSettingsForOldConfigs(const QString &name, int value);
    void addSubjects(const EventTreeItem *subjects, const EventTreeItem *reference, const QString &identifier,
                     const QSet<QString> &accounts, SubjectWishes &wishes) const;
    [[nodiscard]] static Wish wishOf(const EventTreeItem &holder, const EventTreeItem *reference);
    static void add(Wish &wish, const Wish &another);

    QSet<QString> m_users;
    QSet<QString> m_groups;
    SubjectWishes m_userWishes;
    SubjectWishes m_groupWishes;
    QHash<QString, Wish> m_otherWishes;
};
