// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "safedirectory.h"

#include <QByteArray>

#include <optional>

namespace AdminEventsHelper {

namespace WholeFile {

/** Far above all that the helper accepts, and well below what one array holds (64 MiB). */
constexpr int sizeLimit = 64 * 1024 * 1024;

/**
 * Reads a regular file.
 * @param limit in bytes; a larger file is a failure.
 * @return nothing when no file bears the name.
 */
Result<std::optional<QByteArray>> read(const SafeDirectory &directory, const QString &name,
                                       int limit = sizeLimit);

/**
 * Reads an open file from its beginning.
 * @param path names it in messages.
 */
Result<QByteArray> read(const FileDescriptor &file, const QString &path, int limit = sizeLimit);

} // namespace WholeFile

} // namespace AdminEventsHelper
