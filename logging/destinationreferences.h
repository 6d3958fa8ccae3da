// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

class TreeItem;

/// Where the log paths of the main logging configuration name a destination. Names compare as the daemon
/// takes them, with or without quotes.
namespace DestinationReferences {
struct Parameter
{
    QString name;
    QString value;
};

/// The parameters of a block one by one, also where the file's layout has made one node of several.
[[nodiscard]] QVector<Parameter> parameters(const TreeItem &block);

/// Whether a log path names the destination @p name inside a nested block, where it cannot be taken out.
[[nodiscard]] bool isNested(const TreeItem &root, const QString &name);

/// Gives every mention of the destination @p name in the log paths a node of its own with just the name as
/// its value, as TreeItem::deleteLogChild() expects. What is written stays the same to the daemon.
void isolate(const TreeItem &root, const QString &name);
} // namespace DestinationReferences
