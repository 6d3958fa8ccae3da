// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

class QWidget;

/// What the pages for export and import have in common.
namespace ArchiveMessages {
/// What a user typed: "~" stands for a home directory, and a relative path begins at the user's own, not
/// where the program happened to start. Links are resolved on the way to the file, since the helper follows
/// none, but the file itself may be one.
[[nodiscard]] QString absolutePath(const QString &path);

/// Why a path is not even to be opened, translated; empty when it may be. Opening a pipe would wait for ever.
[[nodiscard]] QString pathProblem(const QString &path);

void showError(QWidget *parent, const QString &text);
/// @param what the failed operation, @param reason the service's error text
void showFailure(QWidget *parent, const QString &what, const QString &reason);
} // namespace ArchiveMessages
