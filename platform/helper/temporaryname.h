// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "safedirectory.h"

#include <QString>

#include <string_view>

namespace AdminEventsHelper {

/**
 * The names of half-written files: ".NAME.adminevents-XXXXXXXXXXXXXXXX~", with NAME the file that it will
 * become and sixteen hexadecimal digits. The dot and the tilde keep other programs that read whole
 * directories of configuration from taking one for theirs.
 */
namespace TemporaryName {

/** A fresh random temporary name for a file. */
QString make(const QString &fileName);

/** Whether an entry is a temporary name for exactly this file. */
bool matches(const QString &entry, const QString &fileName);

/** The file that a temporary name was made for; empty when the entry is no temporary name. */
QString fileNameOf(const QString &entry);
/** The same, a part of the entry's text. Allocates nothing. */
std::string_view fileNameOf(std::string_view entry);

/** Removes what a crash left of earlier writes of this file; fails when a leftover cannot be removed. */
Outcome removeLeftovers(const SafeDirectory &directory, const QString &fileName);

} // namespace TemporaryName

/** Writes all bytes to a descriptor and flushes them to the disk. @param path names the file in messages. */
Outcome writeAndFlush(int descriptor, const QByteArray &bytes, const QString &path);

} // namespace AdminEventsHelper
