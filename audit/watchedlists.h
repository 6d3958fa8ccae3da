// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

class CheckableTreeModel;
class EventTreeItem;

/// Stores the lists that the dialogs for files, directories and disk space edit, on their event.
namespace WatchedLists {
/**
 * Gives a list of files or directories its paths; a list made from audit rules takes the rules of its event
 * along. Nothing changes when the list holds these paths already.
 * @param list a node of the model's tree
 * @param paths separated by commas
 * @return true when something changed
 */
bool storePaths(CheckableTreeModel &model, EventTreeItem *list, const QString &paths);
/**
 * Gives a disk-space event its directories. Nothing changes when @p json means what the node holds.
 * @param directories the event's "directories" node in the model's tree
 * @param json an array as DiskLimits::toJson() makes it; anything else changes nothing
 * @return true when something changed
 */
bool storeDirectories(CheckableTreeModel &model, EventTreeItem *directories, const QString &json);
} // namespace WatchedLists
