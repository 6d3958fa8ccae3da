// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/** The notification key of a message identifier: each "_" or "-" goes and makes the character after it a
 * capital. */
[[nodiscard]] QString notificationKey(const QString &messageId);
