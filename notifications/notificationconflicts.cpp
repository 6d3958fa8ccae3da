// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationconflicts.h"

#include "notificationname.h"
#include "notificationstore.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

#include <QMultiHash>

namespace {
QString valueOf(const EventTreeItem *parameter)
{
    return parameter ? parameter->data(1).toString() : QString();
}
} // namespace

QString NotificationConflicts::messageId(const EventTreeItem &event)
{
    return valueOf(EventLookup::findMessageParameter(event, QStringLiteral("message_id")));
}

QString NotificationConflicts::messageType(const EventTreeItem &event)
{
    const QString name = QStringLiteral("message-type");
    const EventTreeItem *own = event.findChildTopLevelByNativeName(name);
    return valueOf(own ? own : EventLookup::findParameter(event, name));
}

const EventTreeItem *NotificationConflicts::rivalOf(const EventTreeItem &root, const EventTreeItem &event)
{
    const QString id = messageId(event);
    const QList<EventTreeItem *> events = EventLookup::eventsById(root).values();
    for (const EventTreeItem *other : events) {
        if (other == &event || !other->isNotificationOn()) {
            continue;
        }
        const QString otherId = messageId(*other);
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
            sharing.insert(NotificationName::canonical(messageId(*event)), event);
        }
    }
    QStringList switchedOff;
    const QStringList keys = sharing.uniqueKeys();
    for (const QString &key : keys) {
        const QList<EventTreeItem *> rivals = sharing.values(key);
        const QString owner = store.owner(key);
        const bool ownerIsHere
            = std::any_of(rivals.begin(), rivals.end(),
                          [&owner](const EventTreeItem *event) { return messageId(*event) == owner; });
        if (rivals.size() < 2 || !ownerIsHere) {
            continue;
        }
        for (EventTreeItem *event : rivals) {
            if (messageId(*event) != owner) {
                event->notificationState = EventTreeItem::NotificationOff;
                switchedOff << event->data(0).toString();
            }
        }
    }
    return switchedOff;
}
