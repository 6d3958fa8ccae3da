// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "nivraeventsreader.h"
#include "nodedictionary.h"

#include <QMultiMap>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class EventNodeFactory;
class EventTreeItem;
class SubjectLister;
struct EventDescription;

/**
 * Builds the event tree: groups, their events and the events' parameters,
 * from the catalog merged with the administrator's saved settings. One parser
 * serves one load.
 */
class SingleEventsParser : public QObject
{
    Q_OBJECT

public:
    /// Tells whether notifications are set up for a message identifier.
    using NotificationLookup = std::function<bool(const QString &messageId)>;
    /// Which description createEventItem() builds from.
    enum EventItemType {
        DefaultEvent = 0, ///< the catalog alone
        MergedEvent = 1 ///< the catalog with the saved settings
    };

    /// Reads the catalog's lists, the node dictionary and the system's users and groups.
    explicit SingleEventsParser(QObject *parent);
    /// As above with given accounts instead of the system's.
    SingleEventsParser(const QStringList &users, const QStringList &groups, QObject *parent);
    ~SingleEventsParser() override;

    /// Asked for every event with a "message_id"; without it no notification is known.
    void setNotificationLookup(NotificationLookup lookup) { m_notificationLookup = std::move(lookup); }

    /// Called by parse() after every event: on a large site, the caller has something else to do as well.
    void setPause(std::function<void()> pause) { m_pause = std::move(pause); }

    /// False when the catalog cannot be used, for instance because an event identifier exists twice.
    [[nodiscard]] bool isConfigCorrect() const;
    /**
     * A new tree, owned by the caller; null when the catalog cannot be read.
     * Each call returns a tree of its own, all made from one reading.
     */
    [[nodiscard]] EventTreeItem *parse() const;
    /**
     * Makes the node of one event.
     *
     * @param root the tree whose group takes the node, null for a node that the caller owns
     * @return null for an event without a usable description
     */
    EventTreeItem *createEventItem(const QString &id, EventItemType type, EventTreeItem *root) const;

    [[nodiscard]] const QStringList &users() const { return m_users; }
    [[nodiscard]] const QStringList &groups() const { return m_groups; }

private:
    explicit SingleEventsParser(std::unique_ptr<SubjectLister> lister, QObject *parent);
    void initDefaultUsersAndGroups(SubjectLister &lister);
    void getNodesDescription();
    void copyToSpare(const EventTreeItem &event) const;
    void finish(EventTreeItem *root) const;
    void createGroups(EventTreeItem *root) const;
    EventTreeItem *createEvent(const QString &id, const EventDescription &description,
                               EventTreeItem *root) const;
    EventTreeItem *createGroupNode(const QString &id, EventTreeItem *root) const;
    [[nodiscard]] EventTreeItem *groupOf(const EventDescription &description, EventTreeItem *root) const;
    void makeDependsMap(const EventTreeItem *item) const;
    void checkDepends(EventTreeItem *root) const;
    [[nodiscard]] EventTreeItem *filtersOf(EventTreeItem *event) const;
    void makeFiltersFromRules(EventTreeItem *event) const;
    void setItemOptions(EventTreeItem *event) const;

    NivraEventsReader m_reader;
    NodeDictionary m_dictionary;
    QStringList m_users;
    QStringList m_groups;
    bool m_russian;
    NotificationLookup m_notificationLookup;
    std::function<void()> m_pause;
    std::unique_ptr<EventNodeFactory> m_factory;
    mutable std::unique_ptr<EventTreeItem> m_spare; // handed out by the next parse()
    mutable QMultiMap<QString, QString> m_depends;
};
