// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

/**
 * Whether a text may become the main configuration of the logging service.
 *
 * The service runs as root and its language can run programs, so a request could gain more than the right to
 * change the logging. Asking the service itself is no way to find out: checking a configuration already runs
 * commands. So a text may only hold these when one of the former texts, which an administrator put there,
 * holds the same: what runs code (program sources and destinations, python, java and the like, hook
 * commands), what brings other text in (directives other than "@version" and "@requires", "include", "block",
 * names in backticks), and files in the directories of the system or with a hidden name. The product's own
 * python classes are free. A text that is one of the former texts is taken as it stands.
 */
namespace LoggingCheck {

/** @param path names the file in errors, which tell the line. @param former the texts of the file so far. */
Outcome check(const QString &path, const QByteArray &content, const QList<QByteArray> &former);

/** Whether the text says ("@version: 4.2") that it was made for a newer service than the one that is known.
 */
bool isForNewerService(const QByteArray &content);

} // namespace LoggingCheck

} // namespace AdminEventsHelper
