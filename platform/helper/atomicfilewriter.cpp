// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "atomicfilewriter.h"

#include "backupstore.h"
#include "helperlog.h"
#include "temporaryname.h"
#include "wholefile.h"

#include <KLocalizedString>

#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace AdminEventsHelper {

namespace {

// Without its access list the group bits of the mode would mean more than they did.
constexpr std::array<const char *, 2> keptAttributes{"system.posix_acl_access", "security.selinux"};

int copyAttribute(int from, int to, const char *attribute)
{
    const ssize_t size = ::fgetxattr(from, attribute, nullptr, 0);
    if (size <= 0) {
        return size == 0 || errno == ENODATA || errno == ENOTSUP ? 0 : errno;
    }
    QByteArray value(static_cast<int>(size), '\0');
    const ssize_t got = ::fgetxattr(from, attribute, value.data(), static_cast<size_t>(size));
    if (got < 0 || ::fsetxattr(to, attribute, value.constData(), static_cast<size_t>(got), 0) != 0) {
        return errno;
    }
    return 0;
}

} // namespace

AtomicFileWriter::AtomicFileWriter(const SafeDirectory &directory, const QString &name, mode_t newFileMode)
    : m_directory(directory)
    , m_name(name)
    , m_newFileMode(newFileMode)
{
}

Outcome AtomicFileWriter::prepare()
{
    Result<std::optional<FileDescriptor>> former = m_directory.openRegular(m_name);
    if (!former) {
        return former.outcome();
    }
    m_former = former.takeValue();
    return Outcome::success();
}

Outcome AtomicFileWriter::takeOver(int from, int to) const
{
    struct stat former = {};
    struct stat fresh = {};
    int number = ::fstat(from, &former) == 0 && ::fstat(to, &fresh) == 0 ? 0 : errno;
    if (number == 0 && (former.st_uid != fresh.st_uid || former.st_gid != fresh.st_gid)
        && ::fchown(to, former.st_uid, former.st_gid) != 0) {
        number = errno;
    }
    // After the owner, which clears bits of the mode; set-id bits make no sense here and are dropped.
    if (number == 0 && ::fchmod(to, former.st_mode & 0777) != 0) {
        number = errno;
    }
    for (const char *const attribute : keptAttributes) {
        number = number == 0 ? copyAttribute(from, to, attribute) : number;
    }
    if (number != 0) {
        return Outcome::failure(i18n("Owner and rights of \"%1\" cannot be kept: %2",
                                     m_directory.pathOf(m_name), systemError(number)));
    }
    return Outcome::success();
}

Outcome AtomicFileWriter::stage(const QString &temporary, const QByteArray &content) const
{
    const Result<FileDescriptor> file = m_directory.createExclusive(temporary);
    if (!file) {
        return file.outcome();
    }
    Outcome outcome = Outcome::success();
    if (m_former) {
        outcome = takeOver(m_former->get(), file.value().get());
    } else if (::fchmod(file.value().get(), m_newFileMode) != 0) {
        outcome = Outcome::failure(
            i18n("The rights of \"%1\" cannot be set: %2", m_directory.pathOf(m_name), systemError(errno)));
    }
    return outcome ? writeAndFlush(file.value().get(), content, m_directory.pathOf(m_name)) : outcome;
}

Outcome AtomicFileWriter::keepFormer(const QByteArray &content, const BackupStore &backups) const
{
    if (!m_former) {
        return Outcome::success();
    }
    const Result<QByteArray> former = WholeFile::read(*m_former, m_directory.pathOf(m_name));
    if (!former) {
        return former.outcome();
    }
    // Saving the same again must not push older generations out.
    return former.value() == content ? Outcome::success() : backups.keep(m_name, former.value());
}

Outcome AtomicFileWriter::write(const QByteArray &content, const BackupStore &backups)
{
    if (Outcome cleaned = TemporaryName::removeLeftovers(m_directory, m_name); !cleaned) {
        return cleaned;
    }
    const QString temporary = TemporaryName::make(m_name);
    Outcome outcome = stage(temporary, content);
    if (outcome) {
        outcome = keepFormer(content, backups);
    }
    if (outcome) {
        outcome = m_directory.rename(temporary, m_name);
    }
    if (!outcome) {
        // The first failure is the one to tell; a leftover goes with the next write.
        (void)m_directory.remove(temporary);
        return outcome;
    }
    // The file is replaced: generations too many are no reason to report a failure.
    if (const Outcome pruned = backups.prune(m_name); !pruned) {
        logLine(LOG_WARNING, pruned.error());
    }
    return m_directory.sync();
}

} // namespace AdminEventsHelper
