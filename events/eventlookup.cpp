// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventlookup.h"

#include "eventtreeitem.h"

#include <algorithm>

EventTreeItem *EventLookup::findParameter(const EventTreeItem &event, const QString &name)
{
    if (event.kind == EventTreeItem::Subjects) {
        return nullptr;
    }
    for (int row = 0; row < event.childCount(); ++row) {
        EventTreeItem *child = event.eventChild(row);
        if (child->nativeName == name) {
            return child;
        }
        if (EventTreeItem *found = findParameter(*child, name)) {
            return found;
        }
    }
    return nullptr;
}

EventTreeItem *EventLookup::findMessageParameter(const EventTreeItem &event, const QString &name)
{
    if (const EventTreeItem *params = event.member(QLatin1String("message-params"))) {
        if (EventTreeItem *found = params->findChildTopLevelByNativeName(name)) {
            return found;
        }
    }
    return findParameter(event, name);
}

EventTreeItem *EventLookup::findEvent(const EventTreeItem &root, const QString &id)
{
    const QVector<EventTreeItem *> all = events(root);
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&id](const EventTreeItem *event) { return event->nativeName == id; });
    return found == all.end() ? nullptr : *found;
}

QVector<EventTreeItem *> EventLookup::events(const EventTreeItem &root)
{
    QVector<EventTreeItem *> events;
    for (int row = 0; row < root.childCount(); ++row) {
        const EventTreeItem *group = root.eventChild(row);
        for (int eventRow = 0; eventRow < group->childCount(); ++eventRow) {
            EventTreeItem *event = group->eventChild(eventRow);
            if (event->kind == EventTreeItem::Event) {
                events.append(event);
            }
        }
    }
    return events;
}

QHash<QString, EventTreeItem *> EventLookup::eventsById(const EventTreeItem &root)
{
    QHash<QString, EventTreeItem *> byId;
    const QVector<EventTreeItem *> inOrder = events(root);
    for (EventTreeItem *event : inOrder) {
        byId.insert(event->nativeName, event);
    }
    return byId;
}

bool EventLookup::isFlagSet(const EventTreeItem &event, QLatin1String name)
{
    const EventTreeItem *flag = event.member(name);
    return flag && flag->value(1).toDouble() != 0;
}

bool EventLookup::hasCheckableChild(const EventTreeItem &item)
{
    for (int row = 0; row < item.childCount(); ++row) {
        if (item.eventChild(row)->checkable) {
            return true;
        }
    }
    return false;
}

EventTreeItem *EventLookup::enclosingEvent(EventTreeItem *item)
{
    while (item && item->kind != EventTreeItem::Event) {
        item = item->parentItem();
    }
    return item;
}
