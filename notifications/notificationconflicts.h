// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStringList>

class EventTreeItem;
class NotificationStore;

/**
 * Events that cannot both have notifications, because their message identifiers give the same fragment file
 * or the same notification key.
 */
namespace NotificationConflicts {

/// Another event of the tree whose notifications are on and would be overwritten; null when there is none.
[[nodiscard]] const EventTreeItem *rivalOf(const EventTreeItem &root, const EventTreeItem &event);

/**
 * Where several events share a fragment on disk, leaves the notifications on for the one that the fragment
 * names. Does nothing where it names none of them.
 * @return the shown names of the events switched off, in tree order; empty in the ordinary case
 */
QStringList settle(const EventTreeItem &root, const NotificationStore &store);

} // namespace NotificationConflicts
