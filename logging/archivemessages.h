// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

class QWidget;

/// What the pages for export and import have in common.
namespace ArchiveMessages {
/// What a user typed: "~" stands for a home directory, and a relative path begins at the user's own, not
/// where the program happened to start.
[[nodiscard]] QString absolutePath(const QString &path);

void showError(QWidget *parent, const QString &text);
/// @param what the failed operation, @param reason the service's error text
void showFailure(QWidget *parent, const QString &what, const QString &reason);
} // namespace ArchiveMessages
