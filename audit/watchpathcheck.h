// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

/**
 * What can be watched by audit rules. A path stands in its rules twice, as the watched path and as the key,
 * and auditctl(8) knows no quoting; the lists of paths are separated by commas besides.
 */
namespace WatchPathCheck {
/// What kind of list the path is for.
enum class Target { File, Directory };

enum class Presence {
    Present, ///< it exists, or it cannot be seen from here whether it does
    Missing, ///< its directory exists: a rule is accepted
    ParentMissing ///< the kernel refuses a rule until the directory exists
};

/// The longest path in bytes of UTF-8: the longest key of an audit rule.
constexpr int longestPath = 256;

/// Why @p path cannot be written into a rule, translated; empty when it can.
[[nodiscard]] QString problem(const QString &path, Target target);
/// Looks the path up on this machine, whose kernel watches it.
[[nodiscard]] Presence presence(const QString &path);
/// What has to be known of a path that is not there, translated; empty when it exists.
[[nodiscard]] QString note(const QString &path, Target target);
} // namespace WatchPathCheck
