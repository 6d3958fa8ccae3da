// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventtreeclone.h"

#include "eventtreeitem.h"

std::unique_ptr<EventTreeItem> EventTreeClone::copyNode(const EventTreeItem &source, EventTreeItem *parent)
{
    auto copy = std::make_unique<EventTreeItem>(source, parent);
    copy->reserve(source.childCount());
    for (int row = 0; row < source.childCount(); ++row) {
        copy->appendChild(copyNode(*source.eventChild(row), copy.get()).release());
    }
    return copy;
}
