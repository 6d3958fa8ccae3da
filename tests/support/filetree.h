// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDir>
#include <QFileInfo>

/// Copies a directory with all that is in it. @return false at the first that cannot be copied
[[nodiscard]] inline bool copyTree(const QString &from, const QString &to)
{
    if (!QDir(from).exists() || !QDir().mkpath(to)) {
        return false;
    }
    const QFileInfoList entries = QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (!(entry.isDir() ? copyTree(entry.filePath(), target) : QFile::copy(entry.filePath(), target))) {
            return false;
        }
    }
    return true;
}
