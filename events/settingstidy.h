// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

/// Repairs the separators that the settings writer leaves before closing brackets.
namespace SettingsTidy {
/**
 * @param text the text of one event; closing braces inside of values are escaped
 */
void tidy(QString &text);
} // namespace SettingsTidy
