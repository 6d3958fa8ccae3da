// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <functional>

class EventTreeItem;

/**
 * Change detection: compares the tree as loaded with the tree as edited and
 * gives the overlay flag to what changed, so that the settings writer takes it.
 * Both trees come from one load and have the same shape.
 */
namespace ChangeMarker {
/**
 * Compares top-level rows in order and stops at the first one that differs,
 * so later groups are neither compared nor marked. That is enough to know
 * whether there are unsaved changes; markAll() serves saving.
 *
 * @return true when nothing differs
 */
[[nodiscard]] bool compareTrees(const EventTreeItem &reference, EventTreeItem &working);

/**
 * Compares one column of a node and, from column 0, everything below the
 * node, without stopping; marks what differs.
 *
 * @return true when nothing differs
 */
bool compareItems(const EventTreeItem &reference, EventTreeItem &working, int column);

/**
 * Prepares the working tree for the settings writer: marks the changes of
 * all groups, and settles what the marks alone would get wrong when the file
 * is read back:
 * - an event, or object, that reading would switch on gets its "enabled" written;
 * - objects that were only marked beside a change, and hold none, lose the mark;
 * - an event that has no switch and nothing to write loses it too, since a
 *   mark of its own would be written as "switched off".
 *
 * @param pause called after every event, twice; neither tree may be changed or destroyed in it
 */
void markAll(
    const EventTreeItem &reference, EventTreeItem &working, const std::function<void()> &pause = [] {});
} // namespace ChangeMarker
