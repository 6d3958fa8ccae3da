// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>

#include <string_view>

namespace AdminEventsHelper {

/** Whether bytes may become a user's own notification settings file of the event watcher. */
namespace NotifyrcCheck {

/** The largest content that is taken, in bytes (1 MiB). */
constexpr int sizeLimit = 1024 * 1024;

/**
 * Whether a file of this name is such a file: letters, digits, ".", "_" and "-", "nivra-event-watcher" among
 * them and ".notifyrc" at the end. Allocates nothing.
 */
bool isFileName(std::string_view name);

/**
 * Checks a content: UTF-8, without control characters other than tabs and the ends of lines; each line is
 * empty, a comment ("#"), the name of a group ("[Event/...]", "[Context/...]", "[Global]", "[$Version]") or
 * "KEY=VALUE", KEY in letters, digits, blanks, ".", "_", "-", "$" and brackets. The error names the file and
 * the line.
 * @param path of the file, for the error.
 */
Outcome check(const QString &path, const QByteArray &content);

} // namespace NotifyrcCheck

} // namespace AdminEventsHelper
