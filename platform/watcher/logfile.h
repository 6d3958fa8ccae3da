// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "event.h"

namespace NivraWatcher::LogFile {

/**
 * Appends a line for the event to a log file of the user: time (ISO 8601), a blank, the title, ": " and the
 * text, with what would break the line spelled out. A file that does not exist is made, for the user alone.
 * @param path an absolute path; only a regular file is written to, and no symbolic link is followed.
 * @return empty, or what went wrong.
 */
[[nodiscard]] QString append(const QString &path, const Event &event);

} // namespace NivraWatcher::LogFile
