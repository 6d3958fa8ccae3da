// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/**
 * The spellings of a message identifier: in the notification settings, in the name of its fragment of the
 * logging configuration, and in memory.
 */
namespace NotificationName {

/// The notification key: each "_" or "-" goes and makes the character after it a capital.
[[nodiscard]] QString key(const QString &messageId);

/// The logical path of the event's fragment, "-" in the identifier turned into "_".
[[nodiscard]] QString fragmentPath(const QString &messageId);

/// True for the names that count as fragments, "mod-nivra-*.conf".
[[nodiscard]] bool isFragmentFile(const QString &fileName);

/// What a fragment's file name says of its event: the name without the "mod-nivra-" and ".conf" in it.
[[nodiscard]] QString fromFragmentFile(const QString &fileName);

/**
 * The spelling in which identifiers are compared and looked up in memory, with "-" for every "_": a
 * fragment's name does not tell the two apart, so what differs in them only shares a fragment.
 */
[[nodiscard]] QString canonical(const QString &messageId);

} // namespace NotificationName
