// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

/**
 * Lists of watched files and directories, as the event tree keeps them, and
 * the auditctl(8) rules that watch them. A path is also the key of its rules.
 */
namespace WatchedPaths {
/// The paths of a text in which they are separated by commas: blanks around them go, each path stays once.
[[nodiscard]] QStringList fromText(const QString &text);
/// The paths joined with ", ".
[[nodiscard]] QString toText(const QStringList &paths);
/**
 * The rules for the paths, one line a rule, in the order of the paths.
 * @param opened record every opening, by one rule for each processor architecture; else writing and changes
 * of attributes
 */
[[nodiscard]] QStringList ruleLines(const QStringList &paths, bool opened);
/// The rules joined with ", ", as the value of an event's "message-audit-rules".
[[nodiscard]] QString rulesText(const QStringList &paths, bool opened);
} // namespace WatchedPaths
