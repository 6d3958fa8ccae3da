// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrcwork.h"

#include "notifyrccheck.h"
#include "safedirectory.h"
#include "temporaryname.h"

#include <KLocalizedString>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace AdminEventsHelper {

/** What the child tells: before each file that it sends, and once at the end. */
struct NotifyrcReport
{
    enum Step : int {
        Done,
        File, ///< the bytes of one follow
        Missing, ///< there is no such directory
        Home,
        Directory,
        DirectoryOwner,
        TooMany,
        Examine,
        NotRegular,
        Owner,
        TooLarge,
        Read,
        Write,
        PutBack
    };
    // Above what NotifyrcCheck::isFileName() lets pass.
    static constexpr size_t nameSize = 128;

    Step step = Done;
    int error = 0; // of errno
    unsigned int mode = 0;
    unsigned int size = 0;
    std::array<char, nameSize> name{};

    void fail(Step failed, const char *file = "", unsigned int modeOfFile = 0)
    {
        step = failed;
        error = errno;
        mode = modeOfFile;
        std::strncpy(name.data(), file, nameSize - 1);
    }
};

namespace {

constexpr mode_t privateDirectory = 0700;
constexpr mode_t privateFile = 0600;
constexpr mode_t permissionBits = 0777;

Outcome describe(const NotifyrcReport &report, const QString &directory)
{
    const QString path = directory + QLatin1Char('/') + QFile::decodeName(report.name.data());
    const QString reason = systemError(report.error);
    switch (report.step) {
    case NotifyrcReport::Done:
    case NotifyrcReport::File:
        return Outcome::success();
    case NotifyrcReport::Missing:
    case NotifyrcReport::Home:
    case NotifyrcReport::Directory:
        if (report.error == ENOTDIR || report.error == ELOOP) {
            return Outcome::failure(
                i18n("\"%1\" is a symbolic link or no directory; it is not followed.", directory));
        }
        return Outcome::failure(i18n("The directory \"%1\" cannot be opened: %2", directory, reason));
    case NotifyrcReport::DirectoryOwner:
        return Outcome::failure(
            i18n("\"%1\" does not belong to the user who asked; it is not used.", directory));
    case NotifyrcReport::TooMany:
        return Outcome::failure(i18n("There are more than %1 notification settings files in \"%2\".",
                                     QString::number(NotifyrcFiles::countLimit), directory));
    case NotifyrcReport::NotRegular:
        return Outcome::failure(
            i18n("\"%1\" is %2, not a regular file; it is not used.", path, kindOfFile(report.mode)));
    case NotifyrcReport::Owner:
        return Outcome::failure(i18n("\"%1\" does not belong to the user who asked; it is not used.", path));
    case NotifyrcReport::TooLarge:
        return Outcome::failure(
            i18n("\"%1\" is larger than %2 bytes.", path, QString::number(NotifyrcCheck::sizeLimit)));
    case NotifyrcReport::Write:
        return Outcome::failure(i18n("\"%1\" cannot be written: %2", path, reason));
    case NotifyrcReport::PutBack:
        return Outcome::failure(i18n("\"%1\" could not be put back: %2", path, reason));
    case NotifyrcReport::Examine:
    case NotifyrcReport::Read:
        break;
    }
    return Outcome::failure(i18n("\"%1\" cannot be read: %2", path, reason));
}

/** The report at a position, or one of a child that was cut short. */
NotifyrcReport reportAt(const QByteArray &bytes, int position)
{
    NotifyrcReport report;
    if (position + int(sizeof report) > bytes.size()) {
        errno = EIO;
        report.fail(NotifyrcReport::Read);
        return report;
    }
    std::copy_n(bytes.constData() + position, sizeof report, reinterpret_cast<char *>(&report));
    report.name.back() = '\0';
    return report;
}

} // namespace

NotifyrcWork::NotifyrcWork(uid_t user, const QByteArray &home)
    : m_user(user)
    , m_home(home)
{
}

// From here on, what is called from a run() is for the child: system calls only.

namespace {

/** Hands all names of a directory over, as long as that is wanted; false when they cannot be read. */
template <typename Visitor> bool walk(int directory, const Visitor &goesOn)
{
    alignas(dirent64) static std::array<char, 65536> entries;
    for (;;) {
        const ssize_t size = ::getdents64(directory, entries.data(), entries.size());
        if (size <= 0) {
            return size == 0;
        }
        for (ssize_t at = 0; at < size;) {
            const auto *const entry = reinterpret_cast<const dirent64 *>(entries.data() + at);
            at += entry->d_reclen;
            if (!goesOn(entry->d_name)) {
                return true;
            }
        }
    }
}

/** Removes what earlier changes have left that were cut short. */
void removeLeftovers(int directory)
{
    // What cannot be removed goes another time.
    (void)walk(directory, [directory](const char *name) {
        if (NotifyrcCheck::isFileName(TemporaryName::fileNameOf(std::string_view(name)))) {
            ::unlinkat(directory, name, 0);
        }
        return true;
    });
}

} // namespace

int NotifyrcWork::openHome(NotifyrcReport &report) const
{
    const int home = ::open(m_home.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (home < 0) {
        report.fail(errno == ENOENT ? NotifyrcReport::Missing : NotifyrcReport::Home);
    }
    return home;
}

int NotifyrcWork::openConfig(int home, NotifyrcReport &report) const
{
    const int directory = ::openat(home, ".config", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat status = {};
    if (directory < 0) {
        report.fail(errno == ENOENT ? NotifyrcReport::Missing : NotifyrcReport::Directory);
    } else if (::fstat(directory, &status) != 0 || status.st_uid != m_user) {
        report.fail(NotifyrcReport::DirectoryOwner);
        return -1;
    }
    return directory;
}

bool NotifyrcWork::examine(int directory, const char *name, struct stat &status, NotifyrcReport &report) const
{
    if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        status.st_mode = 0;
        if (errno != ENOENT) {
            report.fail(NotifyrcReport::Examine, name);
        }
        return errno == ENOENT;
    }
    if (!S_ISREG(status.st_mode)) {
        report.fail(NotifyrcReport::NotRegular, name, status.st_mode);
    } else if (status.st_uid != m_user) {
        report.fail(NotifyrcReport::Owner, name);
    }
    return report.step == NotifyrcReport::Done;
}

NotifyrcReading::NotifyrcReading(uid_t user, const QByteArray &home)
    : NotifyrcWork(user, home)
{
}

qsizetype NotifyrcReading::mostBytes()
{
    return qsizetype(NotifyrcFiles::countLimit + 1)
        * qsizetype(sizeof(NotifyrcReport) + NotifyrcCheck::sizeLimit);
}

bool NotifyrcReading::send(int pipe, int directory, const char *name, NotifyrcReport &report) const
{
    static std::array<char, NotifyrcCheck::sizeLimit + 1> bytes;
    struct stat status = {};
    if (!examine(directory, name, status, report) || status.st_mode == 0) {
        return report.step == NotifyrcReport::Done;
    }
    const int file = ::openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    size_t size = 0;
    ssize_t count = file < 0 ? -1 : 1;
    while (count > 0 && size < bytes.size()) {
        count = ::read(file, bytes.data() + size, bytes.size() - size);
        size += count > 0 ? size_t(count) : 0;
    }
    if (count < 0 || size > NotifyrcCheck::sizeLimit) {
        report.fail(count < 0 ? NotifyrcReport::Read : NotifyrcReport::TooLarge, name);
        return false;
    }
    ::close(file);
    NotifyrcReport heading;
    heading.fail(NotifyrcReport::File, name);
    heading.size = unsigned(size);
    return CallerProcess::put(pipe, &heading, sizeof heading) && CallerProcess::put(pipe, bytes.data(), size);
}

void NotifyrcReading::run(int pipe) const
{
    NotifyrcReport report;
    const int home = openHome(report);
    const int directory = home < 0 ? -1 : openConfig(home, report);
    int sent = 0;
    const auto sendOwn = [&](const char *name) {
        if (!NotifyrcCheck::isFileName(name)) {
            return true;
        }
        if (++sent > NotifyrcFiles::countLimit) {
            report.fail(NotifyrcReport::TooMany);
            return false;
        }
        return send(pipe, directory, name, report);
    };
    if (directory >= 0 && !walk(directory, sendOwn)) {
        report.fail(NotifyrcReport::Directory);
    }
    if (report.step == NotifyrcReport::Missing) {
        report.step = NotifyrcReport::Done; // there are none, then
    }
    CallerProcess::put(pipe, &report, sizeof report);
}

Result<NotifyrcFiles::Contents> NotifyrcReading::filesIn(const CallerProcess::Report &told,
                                                         const QString &directory)
{
    NotifyrcFiles::Contents files;
    NotifyrcReport report = reportAt(told.bytes, 0);
    int position = int(sizeof report);
    while (report.step == NotifyrcReport::File) {
        files.insert(QString::fromLatin1(report.name.data()), told.bytes.mid(position, int(report.size)));
        position += int(report.size);
        report = reportAt(told.bytes, position);
        position += int(sizeof report);
    }
    const Outcome outcome = describe(report, directory);
    return outcome ? Result<NotifyrcFiles::Contents>(files) : Result<NotifyrcFiles::Contents>(outcome);
}

NotifyrcWriting::NotifyrcWriting(uid_t user, const QByteArray &home, const NotifyrcFiles::Changes &changes)
    : NotifyrcWork(user, home)
{
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        Change change;
        change.name = QFile::encodeName(it.key());
        change.temporary = QFile::encodeName(TemporaryName::make(it.key()));
        change.kept = QFile::encodeName(TemporaryName::make(it.key()));
        change.former = change.name + '~';
        change.content = it->has_value() ? &it->value() : nullptr;
        m_changes.push_back(change);
    }
}

qsizetype NotifyrcWriting::mostBytes()
{
    return qsizetype(sizeof(NotifyrcReport));
}

bool NotifyrcWriting::stage(int directory, Change &change, NotifyrcReport &report) const
{
    struct stat status = {};
    if (!examine(directory, change.name.constData(), status, report)) {
        return false;
    }
    change.hadFormer = status.st_mode != 0;
    if (change.content == nullptr) {
        return true;
    }
    const int file = ::openat(directory, change.temporary.constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, privateFile);
    const bool isWritten = file >= 0
        && ::fchmod(file, change.hadFormer ? status.st_mode & permissionBits : privateFile) == 0
        && CallerProcess::put(file, change.content->constData(), size_t(change.content->size()))
        && ::fsync(file) == 0;
    if (!isWritten) {
        report.fail(NotifyrcReport::Write, change.name.constData());
    }
    if (file >= 0) {
        ::close(file);
    }
    return isWritten;
}

bool NotifyrcWriting::make(int directory, Change &change, NotifyrcReport &report)
{
    const char *const name = change.name.constData();
    const char *const kept = change.kept.constData();
    bool isMade = true;
    if (change.content == nullptr) {
        isMade = !change.hadFormer || ::renameat(directory, name, directory, kept) == 0;
    } else {
        isMade = (!change.hadFormer || ::linkat(directory, name, directory, kept, 0) == 0)
            && ::renameat(directory, change.temporary.constData(), directory, name) == 0;
    }
    if (!isMade) {
        report.fail(NotifyrcReport::Write, name);
    }
    change.isMade = isMade;
    return isMade;
}

void NotifyrcWriting::takeBack(int directory, const Change &change, NotifyrcReport &report)
{
    if (!change.isMade) {
        return;
    }
    const char *const name = change.name.constData();
    const bool isBack = change.hadFormer
        ? ::renameat(directory, change.kept.constData(), directory, name) == 0
        : (::unlinkat(directory, name, 0) == 0 || errno == ENOENT);
    if (!isBack) {
        report.fail(NotifyrcReport::PutBack, name);
    }
}

void NotifyrcWriting::tidy(int directory, const Change &change, bool done)
{
    if (done && change.hadFormer) {
        ::renameat(directory, change.kept.constData(), directory, change.former.constData());
    }
    ::unlinkat(directory, change.temporary.constData(), 0);
    if (!change.isMade || done) {
        ::unlinkat(directory, change.kept.constData(), 0);
    }
}

void NotifyrcWriting::changeAll(NotifyrcReport &report) const
{
    const int home = openHome(report);
    if (home < 0) {
        return;
    }
    // It is there already, mostly; what is wrong otherwise shows when it is opened.
    const bool isNew = ::mkdirat(home, ".config", privateDirectory) == 0;
    const int directory = openConfig(home, report);
    if (directory < 0) {
        return;
    }
    bool goesWell = true;
    for (size_t i = 0; goesWell && i < m_changes.size(); ++i) {
        goesWell = stage(directory, m_changes[i], report);
    }
    for (size_t i = 0; goesWell && i < m_changes.size(); ++i) {
        goesWell = make(directory, m_changes[i], report);
    }
    if (goesWell && ::fsync(directory) != 0) {
        report.fail(NotifyrcReport::Directory);
        goesWell = false;
    }
    for (size_t i = m_changes.size(); !goesWell && i > 0; --i) {
        takeBack(directory, m_changes[i - 1], report);
    }
    for (const Change &change : m_changes) {
        tidy(directory, change, goesWell);
    }
    if (goesWell) {
        removeLeftovers(directory);
    }
    if (isNew && !goesWell) {
        ::unlinkat(home, ".config", AT_REMOVEDIR);
    }
}

void NotifyrcWriting::run(int pipe) const
{
    NotifyrcReport report;
    changeAll(report);
    CallerProcess::put(pipe, &report, sizeof report);
}

Outcome NotifyrcWriting::outcomeIn(const CallerProcess::Report &told, const QString &directory)
{
    return describe(reportAt(told.bytes, 0), directory);
}

} // namespace AdminEventsHelper
