// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "regularfile.h"

#include <KLocalizedString>

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

RegularFile failure(const QString &reason)
{
    return {RegularFile::Failed, QByteArray(), reason};
}

RegularFile notOpened(const QByteArray &path, int code)
{
    struct stat info;
    // A link that leads nowhere is something that is there.
    if (code == ENOENT && ::lstat(path.constData(), &info) != 0 && errno == ENOENT)
        return {};
    return failure(QString::fromLocal8Bit(std::generic_category().message(code).c_str()));
}

} // namespace

RegularFile readRegularFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return notOpened(name, errno);
    struct stat info;
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return failure(i18n("it is not a regular file"));
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return failure(file.errorString());
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failure(file.errorString());
    return {RegularFile::Read, bytes, QString()};
}
