// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "callerfile.h"

#include "callerprocess.h"
#include "safedirectory.h"

#include <KLocalizedString>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace AdminEventsHelper {

namespace {

constexpr int pathLimit = 4096;
constexpr size_t bufferSize = 65536;

enum class Step : int { Done, Directory, Examine, NotRegular, Open, Owner, OtherName, Write, Read };

/** What the child tells before it ends, or before the bytes that it has read. */
struct Report
{
    Step step = Step::Done;
    int error = 0; // of errno
    unsigned int mode = 0;
    int component = 0;
};

/** Reads one file, or writes it. */
class FileWork : public CallerProcess::Work
{
public:
    void run(int pipe) const override;

    uid_t caller = 0;
    std::vector<QByteArray> components;
    const QByteArray *bytes = nullptr; // none to read
    qsizetype limit = 0;
};

// From here to FileWork::run() runs in the child: system calls only.

int openFile(const FileWork &job, Report &report)
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

void tell(int pipe, const Report &report)
{
    CallerProcess::put(pipe, &report, sizeof report);
}

void writeFile(const QByteArray &bytes, int file, Report &report)
{
    if (::ftruncate(file, 0) != 0 || !CallerProcess::put(file, bytes.constData(), size_t(bytes.size()))
        || ::fsync(file) != 0) {
        report = {Step::Write, errno, 0, 0};
        // Half an archive is of no use to anybody.
        (void)!::ftruncate(file, 0);
    }
}

void sendFile(const FileWork &job, int file, int pipe)
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
        if ((count < 0 && errno != EINTR)
            || (count > 0 && !CallerProcess::put(pipe, buffer.data(), size_t(count)))) {
            ::_exit(1);
        }
        sent += count > 0 ? count : 0;
    }
    ::_exit(0);
}

void FileWork::run(int pipe) const
{
    Report report;
    if (const int file = openFile(*this, report); file >= 0) {
        if (bytes == nullptr) {
            sendFile(*this, file, pipe);
        } else {
            writeFile(*bytes, file, report);
        }
    }
    tell(pipe, report);
}

Outcome describe(const Report &report, const FileWork &job, const QString &path)
{
    switch (report.step) {
    case Step::Done:
        return Outcome::success();
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

Outcome prepare(FileWork &job, const QString &path)
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
    return Outcome::success();
}

Result<QByteArray> run(FileWork &job, const QString &path)
{
    if (Outcome prepared = prepare(job, path); !prepared) {
        return prepared;
    }
    const Result<CallerProcess::Report> told
        = CallerProcess::run(job.caller, job, path, qsizetype(sizeof(Report)) + job.limit);
    if (!told) {
        return told.outcome();
    }
    const QByteArray &received = told.value().bytes;
    if (received.size() < qsizetype(sizeof(Report))) {
        return Outcome::failure(i18n("\"%1\" cannot be opened: the program for it ended.", path));
    }
    Report report;
    std::copy_n(received.constData(), sizeof report, reinterpret_cast<char *>(&report));
    if (Outcome described = describe(report, job, path); !described) {
        return described;
    }
    if (!told.value().isWhole) {
        return Outcome::failure(i18n("\"%1\" is larger than %2 bytes.", path, QString::number(job.limit)));
    }
    if (!told.value().endedWell) {
        return describe({Step::Read, EIO, 0, 0}, job, path);
    }
    return received.mid(int(sizeof report));
}

} // namespace

Outcome CallerFile::write(uid_t caller, const QString &path, const QByteArray &bytes)
{
    FileWork job;
    job.caller = caller;
    job.bytes = &bytes;
    return run(job, path).outcome();
}

Result<QByteArray> CallerFile::read(uid_t caller, const QString &path, int limit)
{
    FileWork job;
    job.caller = caller;
    job.limit = limit;
    return run(job, path);
}

} // namespace AdminEventsHelper
