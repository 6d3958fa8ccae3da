// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class TreeItem;

/// What is done with whole trees of the main logging configuration.
namespace MainTree {
/// The tree of a file's content.
[[nodiscard]] std::unique_ptr<TreeItem> read(const QByteArray &content);
/// The content of the file that holds @p root, in the locale's encoding.
[[nodiscard]] QByteArray written(const TreeItem &root);
/// Whether both hold the same texts, all the way down.
[[nodiscard]] bool equal(const TreeItem &first, const TreeItem &second);
/// What the user knows a statement by: its keyword and name.
[[nodiscard]] QString title(const TreeItem &statement);
} // namespace MainTree
