// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QString>
#include <QVector>

class EventTreeItem;

/**
 * Look-ups that tell members of an event's description from accounts and
 * from events of the same name.
 */
namespace EventLookup {
/// The first member of @p event in pre-order with that native name, at any depth; accounts and what lies
/// below them are passed over.
[[nodiscard]] EventTreeItem *findParameter(const EventTreeItem &event, const QString &name);
/// As findParameter(), but a member of the event's "message-params" comes before any other of that name.
[[nodiscard]] EventTreeItem *findMessageParameter(const EventTreeItem &event, const QString &name);
/// The event of that identifier, null when the tree has none.
[[nodiscard]] EventTreeItem *findEvent(const EventTreeItem &root, const QString &id);
/// All events of the tree, in its order.
[[nodiscard]] QVector<EventTreeItem *> events(const EventTreeItem &root);
/// All events of the tree by identifier.
[[nodiscard]] QHash<QString, EventTreeItem *> eventsById(const EventTreeItem &root);
/// True when the member @p name of @p event is a number other than 0.
[[nodiscard]] bool isFlagSet(const EventTreeItem &event, QLatin1String name);
/// True when at least one direct child shows a check box.
[[nodiscard]] bool hasCheckableChild(const EventTreeItem &item);
/// The event that @p item is or lies in, null above the events.
[[nodiscard]] EventTreeItem *enclosingEvent(EventTreeItem *item);
} // namespace EventLookup
