// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <memory>

class EventTreeItem;

/// Copies parts of event trees. Equal texts share their storage until one is written.
namespace EventTreeClone {
/// Copies a node and all below it, without links between events. The copy's parent is @p parent, which does
/// not list it yet.
[[nodiscard]] std::unique_ptr<EventTreeItem> copyNode(const EventTreeItem &source, EventTreeItem *parent);
} // namespace EventTreeClone
