// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "logfile.h"

#include "messagetext.h"

#include <KLocalizedString>

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace NivraWatcher {

namespace {

QString failure(const QString &path)
{
    return i18n("The log file \"%1\" cannot be written: %2", path,
                QString::fromLocal8Bit(std::strerror(errno)));
}

} // namespace

QString LogFile::append(const QString &path, const Event &event)
{
    if (!QDir::isAbsolutePath(path)) {
        return i18n("The log file \"%1\" is not given by its absolute path.", path);
    }
    // O_NONBLOCK: a FIFO must not hold up the notifications.
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (file < 0) {
        return failure(path);
    }
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return i18n("The log file \"%1\" is not a regular file.", path);
    }
    const QByteArray line
        = (event.time.toString(Qt::ISODate) + QLatin1Char(' ') + MessageText::oneLine(event.title)
           + QLatin1String(": ") + MessageText::oneLine(event.text) + QLatin1Char('\n'))
              .toUtf8();
    // One call: lines of several sessions must not mix.
    const bool written = ::write(file, line.constData(), static_cast<size_t>(line.size())) == line.size();
    const QString error = written ? QString() : failure(path);
    ::close(file);
    return error;
}

} // namespace NivraWatcher
