// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationconflicts.h"

#include "eventmessage.h"
#include "notificationname.h"
#include "notificationstore.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

#include <QSet>

const EventTreeItem *NotificationConflicts::rivalOf(const EventTreeItem &root, const EventTreeItem &event)
{
    const QString id = EventMessage::id(event);
    const QVector<EventTreeItem *> events = EventLookup::events(root);
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
    const QVector<EventTreeItem *> events = EventLookup::events(root);
    QSet<QString> owned; // fragments that name an event whose notifications are on
    for (const EventTreeItem *event : events) {
        const QString id = EventMessage::id(*event);
        if (event->isNotificationOn() && store.owner(id) == id) {
            owned.insert(NotificationName::canonical(id));
        }
    }
    QStringList switchedOff;
    for (EventTreeItem *event : events) {
        const QString id = EventMessage::id(*event);
        if (event->isNotificationOn() && store.owner(id) != id
            && owned.contains(NotificationName::canonical(id))) {
            event->notificationState = EventTreeItem::NotificationOff;
            switchedOff << event->data(0).toString();
        }
    }
    return switchedOff;
}
