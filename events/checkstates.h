// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class EventTreeItem;

/// Check states as they follow from values; a click works the other way round.
namespace CheckStates {
/**
 * Gives a node that carries a switch (a child value "enabled", or a "succ" or
 * "fail" value) the check state of its value: "1" checked, "0" unchecked,
 * anything else partially checked, which no click rewrites. Other nodes stay.
 */
void takeFromValue(EventTreeItem *node);
/// After the value of @p node changed: the state of the node that it switches, and of that event's group.
void valueChanged(EventTreeItem *node);
/// How many direct children show a check box, and how many of these are checked and partially checked.
struct Count
{
    int checkable = 0;
    int checked = 0;
    int partial = 0;
};
[[nodiscard]] Count countChildren(const EventTreeItem &item);
/// The state of a checkable group from its checkable children, groups below it first.
void setDirChecked(EventTreeItem *group);
} // namespace CheckStates
