// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>

namespace AdminEventsHelper {

/** Tar archives compressed with gzip (tar(5), gzip(1)), in memory only: no name in one is ever opened. */
namespace TarGz {

/** The largest archive that is read, in bytes (32 MiB). */
constexpr int archiveLimit = 32 * 1024 * 1024;
/** The most that an archive may hold when it is unpacked, headers included, in bytes (128 MiB). */
constexpr int contentLimit = 128 * 1024 * 1024;
/** The largest file in an archive, in bytes (16 MiB). */
constexpr int entryLimit = 16 * 1024 * 1024;
/** The most files in an archive. */
constexpr int countLimit = 10100;
/** How much larger than the archive its content may be. What is below ratioFloor is taken in any case. */
constexpr int ratioLimit = 200;
constexpr int ratioFloor = 8 * 1024 * 1024;

/** Contents by entry name. */
using Entries = QMap<QString, QByteArray>;

/**
 * Reads an archive whole.
 *
 * Refused: anything but one gzip stream of a tar archive, a name that isKnown does not want, a name that
 * stands twice, an entry that is no regular file (links, devices, directories, sparse files), and what is
 * over a limit. The error names the entry.
 */
Result<Entries> unpack(const QByteArray &archive, const std::function<bool(const QString &)> &isKnown);

/**
 * Makes an archive of these files, each of mode 0600 and owned by root.
 * @param first the name of the entry that stands before the others, which follow in their order.
 */
Result<QByteArray> pack(const Entries &entries, const QString &first);

} // namespace TarGz

} // namespace AdminEventsHelper
