// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace AdminEventsHelper {

/**
 * Files of the user who sent a request, read and written with that user's rights and no more.
 *
 * All of it is done by a child process that has become the user: what the user may not open, the helper does
 * not open for him, and a file system that never answers costs the helper no more than its time limit. A path
 * must be absolute, without empty, "." or ".." components, and is walked without following a symbolic link.
 */
namespace CallerFile {

/**
 * Replaces the content of an existing file.
 * @param caller the file must belong to this user, be regular and have no other name.
 * A failure after the first byte leaves the file empty.
 */
Outcome write(uid_t caller, const QString &path, const QByteArray &bytes);

/**
 * Reads a regular file that the user may read.
 * @param limit a file of more bytes is refused.
 */
Result<QByteArray> read(uid_t caller, const QString &path, int limit);

} // namespace CallerFile

} // namespace AdminEventsHelper
