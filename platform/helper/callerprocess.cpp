// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "callerprocess.h"

#include "filedescriptor.h"
#include "safedirectory.h"

#include <KLocalizedString>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <optional>
#include <poll.h>
#include <pwd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace AdminEventsHelper {

namespace {

constexpr size_t bufferSize = 65536;

struct Identity
{
    uid_t user = 0;
    gid_t group = 0;
    std::vector<gid_t> groups;
    bool isAnother = false;
};

Result<Identity> identify(uid_t user, const QString &path)
{
    Identity identity;
    identity.user = user;
    identity.isAnother = user != ::geteuid();
    if (!identity.isAnother) {
        return identity;
    }
    std::array<char, bufferSize> buffer{};
    struct passwd entry = {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the system does not know the user %2.", path,
                                     QString::number(user)));
    }
    constexpr int mostGroups = 65536;
    identity.group = entry.pw_gid;
    identity.groups.resize(mostGroups);
    int count = mostGroups;
    if (::getgrouplist(entry.pw_name, entry.pw_gid, identity.groups.data(), &count) < 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the groups of the user %2 are unknown.", path,
                                     QString::number(user)));
    }
    identity.groups.resize(size_t(count));
    return identity;
}

// In the child. The C library's own functions for credentials talk to the other threads, which it does not
// have.
bool become(const Identity &identity)
{
    const gid_t group = identity.group;
    const uid_t user = identity.user;
    return !identity.isAnother
        || (::syscall(SYS_setgroups, identity.groups.size(), identity.groups.data()) == 0
            && ::syscall(SYS_setresgid, group, group, group) == 0
            && ::syscall(SYS_setresuid, user, user, user) == 0);
}

[[noreturn]] void childMain(const Identity &identity, const CallerProcess::Work &work, int pipe)
{
    // What waits for the helper is not for a process of the user.
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    const int error = become(identity) ? 0 : errno;
    if (CallerProcess::put(pipe, &error, sizeof error) && error == 0) {
        work.run(pipe);
    }
    ::_exit(0);
}

/** What the child has sent until it closed the pipe; none when the time is over. */
std::optional<QByteArray> receive(int pipe, qsizetype most)
{
    QElapsedTimer clock;
    clock.start();
    QByteArray received;
    std::array<char, bufferSize> buffer{};
    while (received.size() <= most) {
        const qint64 left = CallerProcess::timeLimitMs - clock.elapsed();
        pollfd waiting{pipe, POLLIN, 0};
        const int ready = left <= 0 ? 0 : ::poll(&waiting, 1, int(left));
        if (ready == 0) {
            return std::nullopt;
        }
        const ssize_t count = ready < 0 ? -1 : ::read(pipe, buffer.data(), buffer.size());
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            break;
        }
        received.append(buffer.data(), count > 0 ? int(count) : 0);
    }
    return received;
}

/** Whether the child ended well. One that the user stopped, or that hangs, is ended. */
bool hasEnded(pid_t child, bool expected)
{
    constexpr int attempts = 400;
    constexpr unsigned long pauseMs = 5;
    if (!expected) {
        ::kill(child, SIGKILL);
    }
    int status = 0;
    for (int i = 0; i < attempts; ++i) {
        if (::waitpid(child, &status, WNOHANG) == child) {
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        }
        QThread::msleep(pauseMs);
        if (i == attempts / 2) {
            ::kill(child, SIGKILL);
        }
    }
    // Hangs in the kernel; it goes when it can.
    return false;
}

} // namespace

bool CallerProcess::put(int descriptor, const void *bytes, size_t size)
{
    const char *next = static_cast<const char *>(bytes);
    while (size > 0) {
        const ssize_t count = ::write(descriptor, next, size);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            next += count;
            size -= size_t(count);
        }
    }
    return true;
}

Result<CallerProcess::Report> CallerProcess::run(uid_t user, const Work &work, const QString &path,
                                                 qsizetype most)
{
    const Result<Identity> identity = identify(user, path);
    if (!identity) {
        return identity.outcome();
    }
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: %2", path, systemError(errno)));
    }
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        childMain(identity.value(), work, writeEnd.get());
    }
    if (child < 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: %2", path, systemError(errno)));
    }
    writeEnd = FileDescriptor();
    int error = 0;
    const qsizetype all = qsizetype(sizeof error) + most;
    const std::optional<QByteArray> received = receive(readEnd.get(), all);
    Report report;
    report.isWhole = received && received->size() <= all;
    report.endedWell = hasEnded(child, report.isWhole);
    if (!received) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: its file system does not answer.", path));
    }
    if (received->size() < qsizetype(sizeof error)) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the program for it ended.", path));
    }
    std::copy_n(received->constData(), sizeof error, reinterpret_cast<char *>(&error));
    if (error != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened for the user %2: %3", path,
                                     QString::number(user), systemError(error)));
    }
    report.bytes = received->mid(int(sizeof error));
    return report;
}

} // namespace AdminEventsHelper
