// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "event.h"

namespace NivraWatcher::CommandLauncher {

/**
 * Starts the command that the user set for an event, and does not wait for it.
 *
 * The command is split into a program and its arguments by the quoting rules of a shell, but no shell runs:
 * "$", ";" and the like mean themselves. What a record holds reaches the program in its environment only,
 * where nothing reads it as a part of the command:
 * - NIVRA_EVENT: the notification key,
 * - NIVRA_EVENT_TITLE, NIVRA_EVENT_TEXT: what the notification shows,
 * - NIVRA_EVENT_TIME: ISO 8601,
 * - NIVRA_EVENT_VALUE_<name>: each value of the text; of the name, other characters than ASCII letters and
 *   digits become "_".
 * @return empty, or what went wrong.
 */
[[nodiscard]] QString start(const QString &command, const Event &event);

} // namespace NivraWatcher::CommandLauncher
