// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "pathsignature.h"

#include "regularfile.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>

#include <sys/stat.h>

namespace {

QByteArray signEntry(const QString &path)
{
    struct stat info;
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return QByteArrayLiteral("unreachable");
    const QByteArray inode = QByteArray::number(quint64(info.st_ino));
    // The time of a directory changes with every passing temporary file, its listing tells enough.
    if (S_ISDIR(info.st_mode))
        return "directory " + inode;
    return inode + ' ' + QByteArray::number(qint64(info.st_size)) + ' '
        + QByteArray::number(qint64(info.st_mtim.tv_sec)) + '.'
        + QByteArray::number(qint64(info.st_mtim.tv_nsec));
}

QByteArray signFile(const QString &path)
{
    const RegularFile file = readRegularFile(path);
    switch (file.state) {
    case RegularFile::Absent:
        return {};
    case RegularFile::Read:
        return "read " + QCryptographicHash::hash(file.bytes, QCryptographicHash::Sha256);
    case RegularFile::Failed:
        break;
    }
    return QByteArrayLiteral("failed");
}

} // namespace

PathSignature signPaths(const QString &directory, const QString &file)
{
    PathSignature signature;
    if (QFile::exists(directory))
        signature.directory.insert(directory, signEntry(directory));
    QDirIterator entries(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        signature.directory.insert(path, signEntry(path));
    }
    signature.file = signFile(file);
    return signature;
}
