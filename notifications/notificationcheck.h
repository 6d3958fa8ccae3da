// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/**
 * Whether values survive the files that they go into: each function gives the reason why one does not,
 * translated and fit to be shown, or an empty text.
 */
namespace NotificationCheck {

/// True for letters, digits, "_" and "-" only, 1 to 128 of them: what means itself to the logging service.
[[nodiscard]] bool isWord(const QString &text);

/// Whether an event of that identifier and type can have a notification.
[[nodiscard]] QString eventProblem(const QString &messageId, const QString &messageType);

/// The notification's title, which goes between quotes into the logging configuration.
[[nodiscard]] QString titleProblem(const QString &title);

/// A parameter's native name, which goes into a list with commas.
[[nodiscard]] QString parameterProblem(const QString &name);

/// A command, or the path of a sound or log file, which is a value of the notification settings.
/// @param what the field's shown name
[[nodiscard]] QString settingProblem(const QString &what, const QString &value);

} // namespace NotificationCheck
