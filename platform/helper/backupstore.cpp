// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "backupstore.h"

#include "temporaryname.h"
#include "wholefile.h"

#include <KLocalizedString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>

namespace AdminEventsHelper {

namespace {

constexpr int numberWidth = 10;

struct Level
{
    const char *name;
    mode_t mode;
};
constexpr std::array<Level, 4> levels{
    {{"var", 0755}, {"lib", 0755}, {"adminevents", 0755}, {"backup", 0700}}};

Outcome makePrivate(const SafeDirectory &directory)
{
    struct stat status = {};
    if (::fstat(directory.descriptor(), &status) != 0) {
        return Outcome::failure(
            i18n("The directory \"%1\" cannot be examined: %2", directory.path(), systemError(errno)));
    }
    if (status.st_uid != ::geteuid()) {
        return Outcome::failure(
            i18n("The directory \"%1\" belongs to another user; nothing is kept in it.", directory.path()));
    }
    if ((status.st_mode & 07777) != 0700 && ::fchmod(directory.descriptor(), 0700) != 0) {
        return Outcome::failure(i18n("The rights of the directory \"%1\" cannot be set: %2", directory.path(),
                                     systemError(errno)));
    }
    return Outcome::success();
}

} // namespace

BackupStore::BackupStore(SafeDirectory directory)
    : m_directory(std::move(directory))
{
}

Result<BackupStore> BackupStore::open(const SafeDirectory &root)
{
    Result<SafeDirectory> current = root.descend({});
    for (const Level &level : levels) {
        if (!current) {
            return current.outcome();
        }
        current = current.value().descendOrMake(QLatin1String(level.name), level.mode);
    }
    if (!current) {
        return current.outcome();
    }
    if (Outcome isPrivate = makePrivate(current.value()); !isPrivate) {
        return isPrivate;
    }
    if (::flock(current.value().descriptor(), LOCK_EX | LOCK_NB) != 0) {
        return Outcome::failure(errno == EWOULDBLOCK ? i18n(
                                    "Another change of the configuration is being written; try again later.")
                                                     : i18n("The directory \"%1\" cannot be locked: %2",
                                                            current.value().path(), systemError(errno)));
    }
    return BackupStore(current.takeValue());
}

QList<QByteArray> BackupStore::kept(const SafeDirectory &root, const QString &fileName)
{
    QStringList names;
    for (const Level &level : levels) {
        names << QLatin1String(level.name);
    }
    Result<SafeDirectory> directory = root.descend(names);
    struct stat status = {};
    // What another user could write has not been kept by this program.
    if (!directory || ::fstat(directory.value().descriptor(), &status) != 0 || status.st_uid != ::geteuid()
        || (status.st_mode & 077) != 0) {
        return {};
    }
    const BackupStore store(directory.takeValue());
    const Result<QStringList> known = store.generations(fileName);
    QList<QByteArray> texts;
    for (const QString &name : known ? known.value() : QStringList()) {
        const Result<std::optional<QByteArray>> text = WholeFile::read(store.m_directory, name);
        if (text && text.value()) {
            texts.prepend(*text.value());
        }
    }
    return texts;
}

Result<QStringList> BackupStore::generations(const QString &fileName) const
{
    Result<QStringList> entries = m_directory.entries();
    if (!entries) {
        return entries;
    }
    const QString prefix = fileName + QLatin1Char('.');
    QStringList found;
    for (const QString &entry : entries.value()) {
        const QString number = entry.mid(prefix.size());
        if (entry.startsWith(prefix) && number.size() == numberWidth
            && std::all_of(number.cbegin(), number.cend(),
                           [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); })) {
            found << entry;
        }
    }
    return found;
}

Outcome BackupStore::keep(const QString &fileName, const QByteArray &bytes) const
{
    if (Outcome cleaned = TemporaryName::removeLeftovers(m_directory, fileName); !cleaned) {
        return cleaned;
    }
    const Result<QStringList> known = generations(fileName);
    if (!known) {
        return known.outcome();
    }
    const qulonglong last
        = known.value().isEmpty() ? 0 : known.value().last().right(numberWidth).toULongLong();
    const QString name = fileName + QStringLiteral(".%1").arg(last + 1, numberWidth, 10, QLatin1Char('0'));
    const QString temporary = TemporaryName::make(fileName);
    const Result<FileDescriptor> file = m_directory.createExclusive(temporary);
    if (!file) {
        return file.outcome();
    }
    Outcome outcome = writeAndFlush(file.value().get(), bytes, m_directory.pathOf(name));
    if (outcome) {
        outcome = m_directory.rename(temporary, name);
    }
    if (!outcome) {
        // The first failure is the one to tell; a leftover goes with the next write.
        (void)m_directory.remove(temporary);
        return outcome;
    }
    return m_directory.sync();
}

Outcome BackupStore::prune(const QString &fileName) const
{
    const Result<QStringList> known = generations(fileName);
    if (!known) {
        return known.outcome();
    }
    const int surplus = known.value().size() - generationsKept;
    for (int i = 0; i < surplus; ++i) {
        if (Outcome removed = m_directory.remove(known.value().at(i)); !removed) {
            return removed;
        }
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
