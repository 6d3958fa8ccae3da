// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class EventTreeItem;

/// Gives an edited event its catalog values back.
namespace EventReset {
/**
 * Copies the values of @p defaults, an event made from the catalog alone,
 * into @p event, member by member. Members that the catalog lacks keep their
 * values. Check states, the JSON text of account lists, the event's flags and
 * its group's check box follow; whether notifications are on is no value of
 * the catalog and stays.
 */
void reset(EventTreeItem &event, const EventTreeItem &defaults);
} // namespace EventReset
