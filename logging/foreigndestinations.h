// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

/// Destinations that other files of the logging daemon define. The daemon refuses to start when two bear the
/// same name.
namespace ForeignDestinations {
/// The names in all "*.conf" files below the daemon's directory but the main logging configuration; files
/// that may not be read count as empty.
[[nodiscard]] QStringList names();
/// The names in the text of one file.
[[nodiscard]] QStringList namesIn(const QString &text);
} // namespace ForeignDestinations
