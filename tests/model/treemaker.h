// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <eventtreeitem.h>

#include <memory>

/**
 * Makes event trees by hand, node by node, with the kinds, texts and check
 * states that the builder gives them. Each node is appended to its parent,
 * which owns it.
 */
namespace TreeMaker {
/// A root with the header texts of the page.
[[nodiscard]] std::unique_ptr<EventTreeItem> root();
/// A checkable group, named by its identifier unless @p name is given.
EventTreeItem *group(EventTreeItem *root, const char *id, const char *name = nullptr);
/// An event; with @p enabled it has a switch of that value and a check box.
EventTreeItem *event(EventTreeItem *group, const char *id, const char *enabled = nullptr);
/// A text value; "succ" and "fail" carry the check state of theirs.
EventTreeItem *parameter(EventTreeItem *parent, const char *name, const char *value);
/// A JSON object without members.
EventTreeItem *object(EventTreeItem *parent, const char *name);
/// An object with a switch of that value.
EventTreeItem *switched(EventTreeItem *parent, const char *name, const char *enabled);
/// A JSON array, given as its compact text.
EventTreeItem *list(EventTreeItem *parent, const char *name, const char *json);
/// A "users" or "groups" object of an audit identifier.
EventTreeItem *subjects(EventTreeItem *identifier, const char *name);
/// An object with the values "fail" and "succ": an account, or "other".
EventTreeItem *outcome(EventTreeItem *parent, const char *name, const char *fail, const char *succ);
/// Makes @p event depend on @p needed.
void link(EventTreeItem *event, EventTreeItem *needed);
/// Gives all groups the check state of their events.
void settleGroups(EventTreeItem *root);
/// The native names of all nodes with the overlay flag, paths from the group down, sorted.
[[nodiscard]] QStringList marked(const EventTreeItem &root);
} // namespace TreeMaker
