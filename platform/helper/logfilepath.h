// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>

namespace AdminEventsHelper {

/**
 * Whether the logging service, which runs as root, may be pointed at a file without more ado.
 *
 * Not at relative paths, at ".." and hidden names, nor at the directories from which the system starts
 * programs and reads its settings; of the devices only at terminals and the like. Macros ("$HOST") may stand
 * where they cannot lead into one of those directories.
 */
bool isLogFilePath(const QByteArray &path);

} // namespace AdminEventsHelper
