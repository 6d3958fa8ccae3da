// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "safedirectory.h"

#include <KLocalizedString>
#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace AdminEventsHelper {

namespace {

constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}

} // namespace

QString kindOfFile(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return i18nc("@item kind of file", "a regular file");
    case S_IFDIR:
        return i18nc("@item kind of file", "a directory");
    case S_IFLNK:
        return i18nc("@item kind of file", "a symbolic link");
    case S_IFIFO:
        return i18nc("@item kind of file", "a named pipe");
    case S_IFSOCK:
        return i18nc("@item kind of file", "a socket");
    default:
        return i18nc("@item kind of file", "a device");
    }
}

QString systemError(int number)
{
    return qt_error_string(number);
}

SafeDirectory::SafeDirectory(FileDescriptor descriptor, const QString &path)
    : m_descriptor(std::move(descriptor))
    , m_path(path)
{
}

Result<SafeDirectory> SafeDirectory::openRoot(const QString &path)
{
    FileDescriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.isValid()) {
        return Outcome::failure(
            i18n("The root directory \"%1\" cannot be opened: %2", path, systemError(errno)));
    }
    return SafeDirectory(std::move(descriptor), path);
}

Result<SafeDirectory> SafeDirectory::openBelow(const QString &root, const QStringList &names)
{
    const Result<SafeDirectory> top = openRoot(root);
    return top ? top.value().descend(names) : Result<SafeDirectory>(top.outcome());
}

QString SafeDirectory::pathOf(const QString &name) const
{
    const QLatin1String separator(m_path.endsWith(QLatin1Char('/')) ? "" : "/");
    return m_path + separator + name;
}

Result<SafeDirectory> SafeDirectory::child(const QString &name) const
{
    if (!isPlainName(name)) {
        return Outcome::failure(i18n("\"%1\" is not a name of a directory.", name));
    }
    const QByteArray encoded = QFile::encodeName(name);
    FileDescriptor descriptor(::openat(m_descriptor.get(), encoded.constData(), directoryFlags));
    if (!descriptor.isValid()) {
        const int number = errno;
        struct stat status = {};
        if (::fstatat(m_descriptor.get(), encoded.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0
            && !S_ISDIR(status.st_mode)) {
            return Outcome::failure(i18n("\"%1\" is %2, not a directory; it is not followed.", pathOf(name),
                                         kindOfFile(status.st_mode)));
        }
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be opened: %2", pathOf(name), systemError(number)));
    }
    return SafeDirectory(std::move(descriptor), pathOf(name));
}

Result<SafeDirectory> SafeDirectory::descend(const QStringList &names) const
{
    FileDescriptor copy(::openat(m_descriptor.get(), ".", directoryFlags));
    if (!copy.isValid()) {
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be opened: %2", m_path, systemError(errno)));
    }
    SafeDirectory current(std::move(copy), m_path);
    for (const QString &name : names) {
        Result<SafeDirectory> next = current.child(name);
        if (!next) {
            return next.outcome();
        }
        current = next.takeValue();
    }
    return current;
}

Result<SafeDirectory> SafeDirectory::descendOrMake(const QString &name, mode_t mode) const
{
    if (!isPlainName(name)) {
        return child(name);
    }
    if (::mkdirat(m_descriptor.get(), QFile::encodeName(name).constData(), mode) != 0) {
        if (errno == EEXIST) {
            return child(name);
        }
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be made: %2", pathOf(name), systemError(errno)));
    }
    Result<SafeDirectory> made = child(name);
    if (made && ::fchmod(made.value().descriptor(), mode) != 0) {
        return Outcome::failure(
            i18n("The rights of the directory \"%1\" cannot be set: %2", pathOf(name), systemError(errno)));
    }
    return made;
}

Result<std::optional<FileDescriptor>> SafeDirectory::openRegular(const QString &name) const
{
    if (!isPlainName(name)) {
        return Outcome::failure(i18n("\"%1\" is not a name of a file.", name));
    }
    const QByteArray encoded = QFile::encodeName(name);
    struct stat status = {};
    // Looked at before it is opened: opening alone can make a device act.
    if (::fstatat(m_descriptor.get(), encoded.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT) {
            return std::optional<FileDescriptor>();
        }
        return Outcome::failure(i18n("\"%1\" cannot be examined: %2", pathOf(name), systemError(errno)));
    }
    if (S_ISREG(status.st_mode)) {
        FileDescriptor descriptor(::openat(m_descriptor.get(), encoded.constData(),
                                           O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!descriptor.isValid() || ::fstat(descriptor.get(), &status) != 0) {
            return Outcome::failure(i18n("\"%1\" cannot be opened: %2", pathOf(name), systemError(errno)));
        }
        if (S_ISREG(status.st_mode)) {
            return std::optional<FileDescriptor>(std::move(descriptor));
        }
    }
    return Outcome::failure(i18n("\"%1\" is %2, not a regular file; it is not replaced.", pathOf(name),
                                 kindOfFile(status.st_mode)));
}

Result<FileDescriptor> SafeDirectory::createExclusive(const QString &name) const
{
    FileDescriptor descriptor(::openat(m_descriptor.get(), QFile::encodeName(name).constData(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!descriptor.isValid()) {
        return Outcome::failure(i18n("\"%1\" cannot be made: %2", pathOf(name), systemError(errno)));
    }
    return descriptor;
}

Outcome SafeDirectory::rename(const QString &from, const QString &to) const
{
    if (::renameat(m_descriptor.get(), QFile::encodeName(from).constData(), m_descriptor.get(),
                   QFile::encodeName(to).constData())
        != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be replaced: %2", pathOf(to), systemError(errno)));
    }
    return Outcome::success();
}

Outcome SafeDirectory::link(const QString &from, const QString &to) const
{
    if (::linkat(m_descriptor.get(), QFile::encodeName(from).constData(), m_descriptor.get(),
                 QFile::encodeName(to).constData(), 0)
        != 0) {
        return Outcome::failure(
            i18n("\"%1\" cannot be given a second name: %2", pathOf(from), systemError(errno)));
    }
    return Outcome::success();
}

Outcome SafeDirectory::remove(const QString &name) const
{
    if (::unlinkat(m_descriptor.get(), QFile::encodeName(name).constData(), 0) != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be removed: %2", pathOf(name), systemError(errno)));
    }
    return Outcome::success();
}

Outcome SafeDirectory::sync() const
{
    if (::fsync(m_descriptor.get()) != 0) {
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be flushed to the disk: %2", m_path, systemError(errno)));
    }
    return Outcome::success();
}

bool SafeDirectory::mayHave(const QString &name) const
{
    struct stat status = {};
    return ::fstatat(m_descriptor.get(), QFile::encodeName(name).constData(), &status, AT_SYMLINK_NOFOLLOW)
        == 0
        || errno != ENOENT;
}

bool SafeDirectory::mayHavePath(const QStringList &names) const
{
    Result<SafeDirectory> current = descend({});
    for (const QString &name : names) {
        if (!current) {
            return true;
        }
        if (!current.value().mayHave(name)) {
            return false;
        }
        current = current.value().child(name);
    }
    return true;
}

Result<QStringList> SafeDirectory::entries() const
{
    const int copy = ::openat(m_descriptor.get(), ".", directoryFlags);
    DIR *const stream = copy < 0 ? nullptr : ::fdopendir(copy);
    if (stream == nullptr) {
        const int number = errno;
        const FileDescriptor closer(copy);
        return Outcome::failure(i18n("The directory \"%1\" cannot be read: %2", m_path, systemError(number)));
    }
    const std::unique_ptr<DIR, int (*)(DIR *)> closer(stream, ::closedir);
    QStringList names;
    // Only this tells the end of the directory from a failure.
    errno = 0;
    while (const dirent *const entry = ::readdir(stream)) {
        const QString name = QFile::decodeName(entry->d_name);
        if (isPlainName(name)) {
            names << name;
        }
        errno = 0;
    }
    if (errno != 0) {
        return Outcome::failure(i18n("The directory \"%1\" cannot be read: %2", m_path, systemError(errno)));
    }
    names.sort();
    return names;
}

} // namespace AdminEventsHelper
