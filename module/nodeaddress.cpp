// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "nodeaddress.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

NodeAddress::NodeAddress(const EventTreeItem &item)
{
    QStringList path;
    const EventTreeItem *node = &item;
    for (; node && node->kind != EventTreeItem::Event; node = node->parentItem()) {
        path.prepend(node->nativeName);
    }
    if (node) {
        m_eventId = node->nativeName;
        m_path = path;
    }
}

EventTreeItem *NodeAddress::findEvent(const EventTreeItem &root) const
{
    return isEmpty() ? nullptr : EventLookup::findEvent(root, m_eventId);
}

EventTreeItem *NodeAddress::find(const EventTreeItem &root) const
{
    EventTreeItem *node = findEvent(root);
    for (const QString &name : m_path) {
        node = node ? node->findChildTopLevelByNativeName(name) : nullptr;
    }
    return node;
}
