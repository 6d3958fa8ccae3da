// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QStringList>

namespace AdminEventsHelper {

/**
 * Whether bytes are a notification fragment of the logging service's configuration: the filter, destination
 * and log statement of one event, exactly as the settings page writes them.
 *
 * The service ends when a fragment names a parser or class that it does not find, and a configuration can run
 * commands; so nothing but the values of the known shape may differ, and each of them is checked.
 */
namespace FragmentCheck {

/** The largest fragment that is taken, in bytes. */
constexpr int sizeLimit = 64 * 1024;

/** The directory of the fragments below the root, component by component. */
QStringList directory();

/** Whether a file of that name in directory() is a fragment: "mod-nivra-", letters, digits, "_" and "-",
 * ".conf". */
bool isFragmentName(const QString &fileName);

/**
 * The file name in a fragment's absolute path.
 * @param path compared as it stands: another spelling of the same path is refused.
 */
Result<QString> fileNameOf(const QString &path);

/**
 * Checks a fragment's text for the file that it is meant for. The error names the file and what is wrong.
 * @param content UTF-8; one empty line at the end is allowed.
 */
Outcome check(const QString &fileName, const QByteArray &content);

} // namespace FragmentCheck

} // namespace AdminEventsHelper
