// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/** What is compared to find out whether a directory tree or a file has changed. */
struct PathSignature
{
    /** Size, time of change and inode of every file below the directory, and the inode of every directory. */
    QMap<QString, QByteArray> directory;
    /** Whether the file exists, and the hash of its bytes. */
    QByteArray file;
};

/** Takes the signature of @p directory, with all below it, and of @p file; either may be missing. */
[[nodiscard]] PathSignature signPaths(const QString &directory, const QString &file);
