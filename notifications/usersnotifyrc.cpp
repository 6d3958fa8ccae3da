// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "usersnotifyrc.h"

#include <processexecutor.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr int chownWaitLimit = 30000; // ms
constexpr mode_t privateDirectory = 0700;
constexpr mode_t privateFile = 0600;

enum class Copy { Made, NoUser, Failed };

class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    [[nodiscard]] int get() const { return m_number; }
    [[nodiscard]] bool isValid() const { return m_number >= 0; }

private:
    int m_number;
};

constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool belongsTo(const Descriptor &file, uid_t user)
{
    struct stat status = {};
    return ::fstat(file.get(), &status) == 0 && status.st_uid == user;
}

/// Hands the open file over: by its descriptor, since the names around it are the user's to change.
bool handOver(const Descriptor &file, const QString &user)
{
    const QString path = QStringLiteral("/proc/%1/fd/%2").arg(::getpid()).arg(file.get());
    ProcessExecutor chown;
    // Not every user has a group of the same name; then the login group.
    for (const QString &owner : {QStringLiteral("%1:%2").arg(user, user), QString(user + QLatin1Char(':'))}) {
        if (chown.execProc<chownWaitLimit>(QStringLiteral("chown"), {owner, path}).first == 0) {
            return true;
        }
    }
    return false;
}

bool writeAll(const Descriptor &file, const QByteArray &bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(file.get(), bytes.constData() + done, size_t(bytes.size() - done));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += qMax<ssize_t>(count, 0);
    }
    return ::fsync(file.get()) == 0;
}

bool copyInto(const Descriptor &directory, const QByteArray &fileName, const QByteArray &bytes,
              const QString &user)
{
    const QByteArray temporary = '.' + fileName + ".new~";
    ::unlinkat(directory.get(), temporary.constData(), 0);
    bool done = false;
    {
        const Descriptor file(::openat(directory.get(), temporary.constData(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, privateFile));
        done = file.isValid() && writeAll(file, bytes) && handOver(file, user);
    }
    done = done
        && ::renameat(directory.get(), temporary.constData(), directory.get(), fileName.constData()) == 0;
    if (!done) {
        ::unlinkat(directory.get(), temporary.constData(), 0);
    }
    return done;
}

Copy copyFor(const QString &homeRoot, const QString &user, const QByteArray &fileName,
             const QByteArray &bytes)
{
    const passwd *account = ::getpwnam(user.toLocal8Bit().constData());
    if (!account) {
        return Copy::NoUser;
    }
    const uid_t uid = account->pw_uid;
    const QByteArray homePath = QFile::encodeName(homeRoot + QLatin1Char('/') + user);
    const Descriptor home(::open(homePath.constData(), directoryFlags));
    if (!home.isValid()) {
        return Copy::Failed; // a link, for one
    }
    if (!belongsTo(home, uid)) {
        return Copy::NoUser;
    }
    const bool made = ::mkdirat(home.get(), ".config", privateDirectory) == 0;
    const Descriptor config(::openat(home.get(), ".config", directoryFlags));
    if (!config.isValid() || (made && !handOver(config, user)) || !belongsTo(config, uid)) {
        return Copy::Failed;
    }
    return copyInto(config, fileName, bytes, user) ? Copy::Made : Copy::Failed;
}
} // namespace

bool Core::Utils::makeNotifyrcForUsers(const QString &homeRoot, QFile &source, QStringList *failed)
{
    if (!source.isOpen() && !source.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray bytes = source.readAll();
    if (source.error() != QFileDevice::NoError) {
        return false;
    }
    const QByteArray fileName = QFile::encodeName(QFileInfo(source.fileName()).fileName());
    const QString root = QDir(homeRoot).absolutePath();
    const QStringList users = QDir(root).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    int made = 0;
    QStringList left;
    for (const QString &user : users) {
        if (user == QLatin1String(".pdp")) {
            continue;
        }
        const Copy copy = copyFor(root, user, fileName, bytes);
        made += copy == Copy::Made ? 1 : 0;
        if (copy == Copy::Failed) {
            left << user;
        }
    }
    if (failed) {
        *failed << left;
    }
    return made > 0 && left.isEmpty();
}
