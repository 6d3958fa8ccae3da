// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class EventTreeItem;

/**
 * Where a node of an event lies: the event's identifier and the native names
 * from there down. A dialog stays open while the page may load its trees anew,
 * so it remembers an address, never a node.
 */
class NodeAddress
{
public:
    NodeAddress() = default;
    /// @param item an event or a node below one; for any other the address is empty
    explicit NodeAddress(const EventTreeItem &item);

    [[nodiscard]] bool operator==(const NodeAddress &other) const = default;
    [[nodiscard]] bool isEmpty() const { return m_eventId.isEmpty(); }
    [[nodiscard]] const QString &eventId() const { return m_eventId; }
    /// The event in this tree, null when it has none of that identifier.
    [[nodiscard]] EventTreeItem *findEvent(const EventTreeItem &root) const;
    /// The node in this tree, null when there is none.
    [[nodiscard]] EventTreeItem *find(const EventTreeItem &root) const;

private:
    QString m_eventId;
    QStringList m_path;
};
