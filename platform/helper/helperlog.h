// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <syslog.h>

namespace AdminEventsHelper {

/**
 * Puts a line into the system log. The toolkit's own messages do not get there: the authorisation framework
 * sends them to the requester instead.
 * @param priority LOG_NOTICE, LOG_WARNING and the like.
 * @param line control characters in it are replaced, so that no requester can forge a line.
 */
void logLine(int priority, const QString &line);

} // namespace AdminEventsHelper
