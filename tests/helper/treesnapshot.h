// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

/** What stands below a directory: each path with everything that a write would change about it. */
using TreeSnapshot = QMap<QString, QByteArray>;

inline QByteArray describeFile(const QString &path)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        return "absent";
    }
    QByteArray text = "mode " + QByteArray::number(status.st_mode, 8) + " owner "
        + QByteArray::number(status.st_uid) + ':' + QByteArray::number(status.st_gid);
    if (S_ISREG(status.st_mode)) {
        QFile file(path);
        text += " inode " + QByteArray::number(qulonglong(status.st_ino)) + " time "
            + QByteArray::number(qlonglong(status.st_mtim.tv_sec)) + '.'
            + QByteArray::number(qlonglong(status.st_mtim.tv_nsec)) + " content "
            + (file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable"));
    } else if (S_ISLNK(status.st_mode)) {
        text += " to " + QFile::encodeName(QFileInfo(path).symLinkTarget());
    }
    return text;
}

/** Takes links as links and never follows them. */
inline TreeSnapshot takeSnapshot(const QString &directory)
{
    TreeSnapshot snapshot;
    QDirIterator it(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        snapshot.insert(path, describeFile(path));
    }
    return snapshot;
}

inline bool putFile(const QString &path, const QByteArray &content, mode_t mode = 0644)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()
        && ::fchmod(file.handle(), mode) == 0;
}

/** The content of a file; null when it cannot be read. */
inline QByteArray getFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QByteArray("") + file.readAll() : QByteArray();
}

inline int modeOf(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}
