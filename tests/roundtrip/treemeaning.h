// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class EventTreeItem;

/// What an event tree means, to be compared across a save and a load.
namespace TreeMeaning {
/// Whether the item only records that an override was merged.
bool isRecord(const EventTreeItem &item);
/// Everything that a tree means, one line a node.
QStringList of(const EventTreeItem &root);
/// The first line that differs, for people; empty when none does.
QString firstDifference(const QStringList &expected, const QStringList &actual);
} // namespace TreeMeaning
