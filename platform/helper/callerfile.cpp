// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "callerfile.h"

#include "filedescriptor.h"
#include "safedirectory.h"

#include <KLocalizedString>
#include <QElapsedTimer>
#include <QFile>
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
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <vector>

namespace AdminEventsHelper {

namespace {

constexpr int pathLimit = 4096;
constexpr size_t bufferSize = 65536;

enum class Step : int {
    Done,
    BecomeUser,
    Directory,
    Examine,
    NotRegular,
    Open,
    Owner,
    OtherName,
    Write,
    Read
};

/** What the child tells before it ends, or before the bytes that it has read. */
struct Report
{
    Step step = Step::Done;
    int error = 0; // of errno
    unsigned int mode = 0;
    int component = 0;
};

/** Everything that the child needs, made before it starts: it may not allocate. */
struct Job
{
    uid_t caller = 0;
    gid_t group = 0;
    std::vector<gid_t> groups;
    bool becomesUser = false;
    std::vector<QByteArray> components;
    const QByteArray *bytes = nullptr; // none to read
    qsizetype limit = 0;
};

// From here to childMain() runs in the child, between fork() and _exit(): system calls only. The C library's
// own functions for credentials talk to the other threads, which the child does not have.

bool becomeUser(const Job &job)
{
    return !job.becomesUser
        || (::syscall(SYS_setgroups, job.groups.size(), job.groups.data()) == 0
            && ::syscall(SYS_setresgid, job.group, job.group, job.group) == 0
            && ::syscall(SYS_setresuid, job.caller, job.caller, job.caller) == 0);
}

int openFile(const Job &job, Report &report)
{
    int directory = ::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
    const int last = int(job.components.size()) - 1;
    for (int i = 0; i < last && directory >= 0; ++i) {
        const int next = ::openat(directory, job.components[size_t(i)].constData(),
                                  O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (next < 0) {
            report = {Step::Directory, errno, 0, i};
        }
        ::close(directory);
        directory = next;
    }
    if (directory < 0) {
        return -1;
    }
    const char *const name = job.components[size_t(last)].constData();
    struct stat status = {};
    // Looked at before it is opened: opening alone can make a device act.
    if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        report = {Step::Examine, errno, 0, last};
        return -1;
    }
    if (!S_ISREG(status.st_mode)) {
        report = {Step::NotRegular, 0, status.st_mode, last};
        return -1;
    }
    const int access = job.bytes == nullptr ? O_RDONLY : O_WRONLY;
    const int file = ::openat(directory, name, access | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) {
        report = {Step::Open, errno, 0, last};
        return -1;
    }
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        report = {Step::NotRegular, 0, status.st_mode, last};
        return -1;
    }
    if (job.bytes != nullptr && status.st_uid != job.caller) {
        report = {Step::Owner, 0, 0, last};
        return -1;
    }
    if (job.bytes != nullptr && status.st_nlink != 1) {
        report = {Step::OtherName, 0, 0, last};
        return -1;
    }
    return file;
}

bool put(int descriptor, const char *bytes, size_t size)
{
    while (size > 0) {
        const ssize_t count = ::write(descriptor, bytes, size);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            bytes += count;
            size -= size_t(count);
        }
    }
    return true;
}

void tell(int pipe, const Report &report)
{
    put(pipe, reinterpret_cast<const char *>(&report), sizeof report);
}

void writeFile(const QByteArray &bytes, int file, Report &report)
{
    if (::ftruncate(file, 0) != 0 || !put(file, bytes.constData(), size_t(bytes.size()))
        || ::fsync(file) != 0) {
        report = {Step::Write, errno, 0, 0};
        // Half an archive is of no use to anybody.
        (void)!::ftruncate(file, 0);
    }
}

void sendFile(const Job &job, int file, int pipe)
{
    static std::array<char, bufferSize> buffer;
    tell(pipe, {});
    qsizetype sent = 0;
    // One byte more than the limit tells that there are more.
    while (sent <= job.limit) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count == 0) {
            ::_exit(0);
        }
        if ((count < 0 && errno != EINTR) || (count > 0 && !put(pipe, buffer.data(), size_t(count)))) {
            ::_exit(1);
        }
        sent += count > 0 ? count : 0;
    }
    ::_exit(0);
}

[[noreturn]] void childMain(const Job &job, int pipe)
{
    // What waits for the helper is not for a process of the user.
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    Report report;
    if (!becomeUser(job)) {
        report = {Step::BecomeUser, errno, 0, 0};
    } else if (const int file = openFile(job, report); file >= 0) {
        if (job.bytes == nullptr) {
            sendFile(job, file, pipe);
        } else {
            writeFile(*job.bytes, file, report);
        }
    }
    tell(pipe, report);
    ::_exit(0);
}

Outcome describe(const Report &report, const Job &job, const QString &path)
{
    switch (report.step) {
    case Step::Done:
        return Outcome::success();
    case Step::BecomeUser:
        return Outcome::failure(i18n("\"%1\" cannot be opened for the user %2: %3", path,
                                     QString::number(job.caller), systemError(report.error)));
    case Step::Directory: {
        QString directory;
        for (int i = 0; i <= report.component; ++i) {
            directory += QLatin1Char('/') + QFile::decodeName(job.components[size_t(i)]);
        }
        if (report.error == ENOTDIR || report.error == ELOOP) {
            return Outcome::failure(
                i18n("\"%1\" is a symbolic link or no directory; it is not followed.", directory));
        }
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be opened: %2", directory, systemError(report.error)));
    }
    case Step::Examine:
    case Step::Open:
        return Outcome::failure(i18n("\"%1\" cannot be opened: %2", path, systemError(report.error)));
    case Step::NotRegular:
        return Outcome::failure(
            i18n("\"%1\" is %2, not a regular file; it is not used.", path, kindOfFile(report.mode)));
    case Step::Owner:
        return Outcome::failure(
            i18n("\"%1\" does not belong to the user who asked; it is not written.", path));
    case Step::OtherName:
        return Outcome::failure(i18n("\"%1\" bears another name as well; it is not written.", path));
    case Step::Write:
        return Outcome::failure(i18n("\"%1\" cannot be written: %2", path, systemError(report.error)));
    case Step::Read:
        break;
    }
    return Outcome::failure(i18n("\"%1\" cannot be read: %2", path, systemError(report.error)));
}

Outcome prepare(Job &job, const QString &path)
{
    const QByteArray encoded = QFile::encodeName(path);
    bool sound = encoded.startsWith('/') && encoded.size() < pathLimit && !encoded.contains('\0');
    const QList<QByteArray> names = encoded.mid(1).split('/');
    for (const QByteArray &name : names) {
        sound = sound && !name.isEmpty() && name != "." && name != "..";
        job.components.push_back(name);
    }
    if (!sound) {
        return Outcome::failure(i18n("\"%1\" is not an absolute and plain path of a file.", path));
    }
    job.becomesUser = job.caller != ::geteuid();
    if (!job.becomesUser) {
        return Outcome::success();
    }
    std::array<char, bufferSize> buffer{};
    struct passwd entry = {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(job.caller, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the system does not know the user %2.", path,
                                     QString::number(job.caller)));
    }
    constexpr int mostGroups = 65536;
    job.group = entry.pw_gid;
    job.groups.resize(mostGroups);
    int count = mostGroups;
    if (::getgrouplist(entry.pw_name, entry.pw_gid, job.groups.data(), &count) < 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the groups of the user %2 are unknown.", path,
                                     QString::number(job.caller)));
    }
    job.groups.resize(size_t(count));
    return Outcome::success();
}

/** What the child has sent until it closed the pipe; none when the time is over. */
std::optional<QByteArray> receive(int pipe, qsizetype most)
{
    QElapsedTimer clock;
    clock.start();
    QByteArray received;
    std::array<char, bufferSize> buffer{};
    while (received.size() <= most) {
        const qint64 left = CallerFile::timeLimitMs - clock.elapsed();
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

Result<QByteArray> run(Job &job, const QString &path)
{
    if (Outcome prepared = prepare(job, path); !prepared) {
        return prepared;
    }
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: %2", path, systemError(errno)));
    }
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        childMain(job, writeEnd.get());
    }
    if (child < 0) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: %2", path, systemError(errno)));
    }
    writeEnd = FileDescriptor();
    const std::optional<QByteArray> received = receive(readEnd.get(), qsizetype(sizeof(Report)) + job.limit);
    const bool isWhole = received && received->size() <= qsizetype(sizeof(Report)) + job.limit;
    const bool endedWell = hasEnded(child, isWhole);
    if (!received) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: its file system does not answer.", path));
    }
    if (received->size() < qsizetype(sizeof(Report))) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the program for it ended.", path));
    }
    Report report;
    std::copy_n(received->constData(), sizeof report, reinterpret_cast<char *>(&report));
    if (Outcome described = describe(report, job, path); !described) {
        return described;
    }
    if (!isWhole) {
        return Outcome::failure(i18n("\"%1\" is larger than %2 bytes.", path, QString::number(job.limit)));
    }
    if (!endedWell) {
        return describe({Step::Read, EIO, 0, 0}, job, path);
    }
    return received->mid(int(sizeof report));
}

} // namespace

Outcome CallerFile::write(uid_t caller, const QString &path, const QByteArray &bytes)
{
    Job job;
    job.caller = caller;
    job.bytes = &bytes;
    return run(job, path).outcome();
}

Result<QByteArray> CallerFile::read(uid_t caller, const QString &path, int limit)
{
    Job job;
    job.caller = caller;
    job.limit = limit;
    return run(job, path);
}

} // namespace AdminEventsHelper
