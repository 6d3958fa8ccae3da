// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <eventtreeitem.h>

/// Walks to the parts of the event tree that audit settings lie in.
namespace AuditNodes {
inline const QLatin1String users("users");
inline const QLatin1String groups("groups");
inline const QLatin1String other("other");

/// The event's "message-audit-events", null when it has none.
[[nodiscard]] inline EventTreeItem *auditEvents(const EventTreeItem &event)
{
    return event.member(QLatin1String("message-audit-events"));
}

/// An event without a switch is always on.
[[nodiscard]] inline bool isOn(const EventTreeItem &event)
{
    return event.checkState == Qt::Checked || !event.switchChild();
}

/// Calls @p function with every event below the groups.
template <typename Function> void forEachEvent(const EventTreeItem &item, Function function)
{
    for (int row = 0; row < item.childCount(); ++row) {
        EventTreeItem *child = item.eventChild(row);
        if (child->kind == EventTreeItem::Event) {
            function(*child);
        } else if (child->kind == EventTreeItem::Group) {
            forEachEvent(*child, function);
        }
    }
}

/// Calls @p function with every member of the event's "message-audit-events" that holds subjects.
template <typename Function> void forEachOperation(const EventTreeItem &event, Function function)
{
    const EventTreeItem *operations = auditEvents(event);
    for (int row = 0; operations && row < operations->childCount(); ++row) {
        EventTreeItem *operation = operations->eventChild(row);
        if (operation->isObject()) {
            function(*operation);
        }
    }
}
} // namespace AuditNodes
