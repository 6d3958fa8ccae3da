// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

class TreeItem;

/// Shows what a destination leads to in the program that the desktop has for it.
namespace DestinationOpener {
/// @param destination a destination block of the main logging configuration
/// @return why it cannot be opened, translated; empty when a program was started
[[nodiscard]] QString open(const TreeItem &destination);
} // namespace DestinationOpener
