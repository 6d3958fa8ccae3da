// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationconflicts.h"

#include "eventmessage.h"
#include "notificationname.h"
#include "notificationstore.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

#include <QMultiHash>

const EventTreeItem *NotificationConflicts::rivalOf(const EventTreeItem &root, const EventTreeItem &event)
{
    const QString id = EventMessage::id(event);
    const QList<EventTreeItem *> events = EventLookup::eventsById(root).values();
    for (const EventTreeItem *other : events) {
        if (other == &event || !other->isNotificationOn()) {
            continue;
        }
        const QString otherId = EventMessage::id(*other);
        if (NotificationName::canonical(otherId) == NotificationName::canonical(id)
            || NotificationName::key(otherId) == NotificationName::key(id)) {
            return other;
        }
    }
    return nullptr;
}

QStringList NotificationConflicts::settle(const EventTreeItem &root, const NotificationStore &store)
{
    QMultiHash<QString, EventTreeItem *> sharing;
    const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(root);
    for (EventTreeItem *event : events) {
        if (event->isNotificationOn()) {
            sharing.insert(NotificationName::canonical(EventMessage::id(*event)), event);
        }
    }
    QStringList switchedOff;
    const QStringList keys = sharing.uniqueKeys();
    for (const QString &key : keys) {
        const QList<EventTreeItem *> rivals = sharing.values(key);
        const QString owner = store.owner(key);
        const bool ownerIsHere
            = std::any_of(rivals.begin(), rivals.end(),
                          [&owner](const EventTreeItem *event) { return EventMessage::id(*event) == owner; });
        if (rivals.size() < 2 || !ownerIsHere) {
            continue;
        }
        for (EventTreeItem *event : rivals) {
            if (EventMessage::id(*event) != owner) {
                event->notificationState = EventTreeItem::NotificationOff;
                switchedOff << event->data(0).toString();
            }
        }
    }
    return switchedOff;
}
