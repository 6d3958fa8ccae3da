// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// The words of a rotation file that the page knows (logrotate(8)).
namespace RotationKeywords {
inline constexpr QLatin1String rotate("rotate", 6);
inline constexpr QLatin1String size("size", 4);
inline constexpr QLatin1String hourly("hourly", 6);
inline constexpr QLatin1String weekly("weekly", 6);
inline constexpr QLatin1String scriptEnd("endscript", 9);

/// Every directive but the scripts.
[[nodiscard]] const QStringList &directives();
/// The periods that can be chosen, from short to long.
[[nodiscard]] const QStringList &periods();
[[nodiscard]] bool isDirective(const QString &keyword);
/// A directive that takes no value.
[[nodiscard]] bool isSwitch(const QString &keyword);
/// A directive that is followed by the lines of a script.
[[nodiscard]] bool isScript(const QString &keyword);
[[nodiscard]] bool isPeriod(const QString &keyword);
} // namespace RotationKeywords
