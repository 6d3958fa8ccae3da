// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

/** For what the notification dialog is opened. */
enum class NotificationsDialogType : int {
    New = 0, ///< A notification is being created; the dialog starts from defaults.
    Existing = 1, ///< A notification is edited; the dialog shows what is stored.
};
