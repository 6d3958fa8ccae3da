// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

/// Which names a destination may bear.
namespace DestinationNames {
/// Whether @p name is a letter followed by letters, digits and "_", and no word that the logging daemon or
/// the main file's writer takes for something else.
[[nodiscard]] bool isValid(const QString &name);
} // namespace DestinationNames
