// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configtransfer.h"

#include "argumentreader.h"
#include "auditsettingsstore.h"
#include "backupstore.h"
#include "contentcheck.h"
#include "filechanges.h"
#include "fragmentcheck.h"
#include "helperlog.h"
#include "loggingcheck.h"
#include "notifyrccheck.h"
#include "targz.h"
#include "wholefile.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

namespace {

constexpr int pathLimit = 4096;

Result<std::optional<QByteArray>> readTarget(const SafeDirectory &root, const ConfigTarget &target)
{
    if (!root.mayHavePath(target.directory)) {
        return std::optional<QByteArray>();
    }
    const Result<SafeDirectory> directory = root.descend(target.directory);
    return directory ? WholeFile::read(directory.value(), target.fileName)
                     : Result<std::optional<QByteArray>>(directory.outcome());
}

/** The fragments that this product wrote, by their file names. */
Result<QMap<QString, QByteArray>> readFragments(const SafeDirectory &root)
{
    QMap<QString, QByteArray> fragments;
    if (!root.mayHavePath(FragmentCheck::directory())) {
        return fragments;
    }
    const Result<SafeDirectory> directory = root.descend(FragmentCheck::directory());
    const Result<QStringList> entries = directory ? directory.value().entries() : directory.outcome();
    if (!entries) {
        return entries.outcome();
    }
    for (const QString &entry : entries.value()) {
        if (!FragmentCheck::isFragmentName(entry)) {
            continue;
        }
        const Result<std::optional<QByteArray>> content = WholeFile::read(directory.value(), entry);
        if (!content) {
            return content.outcome();
        }
        if (!content.value()) {
            continue;
        }
        if (const Outcome ours = FragmentCheck::check(entry, *content.value()); !ours) {
            logLine(LOG_NOTICE, ours.error());
            continue;
        }
        fragments.insert(entry, *content.value());
    }
    return fragments;
}

Outcome notExported(const Outcome &reason)
{
    return Outcome::failure(
        i18n("The configuration cannot be imported as it is, and so is not exported: %1", reason.error()));
}

Outcome checkPacked(const ConfigTarget &target, const QByteArray &text)
{
    // Its rules are made anew by an import: they may be those of an earlier version.
    return target.format == ConfigTarget::Format::SubjectRules
        ? AuditSettingsStore::renewed(target.path(), text).outcome()
        : ContentCheck::check(target, text, {text});
}

bool isForAnotherVersion(const ConfigArchive &archive, const ConfigArchive::File &file)
{
    return archive.mainConfigVersion != ConfigArchive::mainConfigVersionHere
        || (file.content && LoggingCheck::isForNewerService(*file.content));
}

} // namespace

Result<TransferRequest> TransferRequest::read(const QVariantMap &arguments, const QString &key)
{
    ArgumentReader reader(arguments);
    TransferRequest request;
    request.path = reader.string(key, pathLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    return request;
}

ConfigTransfer::ConfigTransfer(const QString &root, const std::optional<UserNotifications> &own)
    : m_root(root)
    , m_own(own)
{
}

Result<QByteArray> ConfigTransfer::pack() const
{
    const Result<SafeDirectory> root = SafeDirectory::openRoot(m_root);
    if (!root) {
        return root.outcome();
    }
    ConfigArchive archive;
    const QList<ConfigTarget> targets = ConfigTarget::all();
    for (const ConfigTarget &target : targets) {
        const Result<std::optional<QByteArray>> content = readTarget(root.value(), target);
        if (!content) {
            return content.outcome();
        }
        if (content.value()) {
            if (const Outcome checked = checkPacked(target, *content.value()); !checked) {
                return notExported(checked);
            }
        }
        archive.files.insert(target.path(), {target, content.value()});
    }
    const Result<QMap<QString, QByteArray>> fragments = readFragments(root.value());
    if (!fragments) {
        return fragments.outcome();
    }
    for (auto it = fragments.value().cbegin(); it != fragments.value().cend(); ++it) {
        const ConfigTarget target = ConfigArchive::fragmentTarget(it.key());
        archive.files.insert(target.path(), {target, *it});
    }
    if (const Outcome added = addOwn(archive); !added) {
        return added;
    }
    Result<QByteArray> bytes = archive.pack();
    if (!bytes) {
        return bytes;
    }
    // Better told now than when the archive is needed.
    if (const Result<ConfigArchive> back = ConfigArchive::unpack(bytes.value()); !back) {
        return Outcome::failure(i18n("The configuration is too large to be exported: %1", back.error()));
    }
    return bytes;
}

Outcome ConfigTransfer::addOwn(ConfigArchive &archive) const
{
    if (!m_own) {
        return Outcome::success();
    }
    const Result<UserNotifications::Files> files = m_own->read();
    if (!files) {
        return files.outcome();
    }
    for (auto it = files.value().cbegin(); it != files.value().cend(); ++it) {
        if (const Outcome checked = NotifyrcCheck::check(m_own->pathOf(it.key()), *it); !checked) {
            return notExported(checked);
        }
    }
    archive.ownSettings = files.value();
    return Outcome::success();
}

Outcome ConfigTransfer::checkAll(const ConfigArchive &archive, const SafeDirectory &root) const
{
    for (const ConfigArchive::File &file : archive.files) {
        if (!file.content) {
            continue;
        }
        const Result<QList<QByteArray>> former = ContentCheck::formerTexts(root, file.target);
        if (!former) {
            return former.outcome();
        }
        if (Outcome checked = ContentCheck::check(file.target, *file.content, former.value()); !checked) {
            return checked;
        }
    }
    const UserNotifications::Files own = archive.ownSettings.value_or(UserNotifications::Files());
    for (auto it = own.cbegin(); it != own.cend(); ++it) {
        if (Outcome checked = NotifyrcCheck::check(it.key(), *it); !checked) {
            return checked;
        }
    }
    return Outcome::success();
}

Outcome ConfigTransfer::carryOut(const ConfigArchive &archive, const SafeDirectory &root) const
{
    UserNotifications::Files ownFiles;
    UserNotifications::Changes ownChanges;
    if (m_own && archive.ownSettings) {
        const Result<UserNotifications::Files> present = m_own->read();
        if (!present) {
            return present.outcome();
        }
        ownFiles = present.value();
        ownChanges = UserNotifications::difference(ownFiles, *archive.ownSettings);
    }
    FileChanges changes(root);
    for (const ConfigArchive::File &file : archive.files) {
        if (Outcome added = changes.add(file.target, file.content); !added) {
            return added;
        }
    }
    const Result<BackupStore> backups = FileChanges::begin(root);
    if (!backups) {
        return backups.outcome();
    }
    bool ownChanged = false;
    Outcome outcome = changes.carryOut(backups.value(), [this, &ownChanges, &ownChanged] {
        if (ownChanges.isEmpty()) {
            return Outcome::success();
        }
        Outcome changed = m_own->change(ownChanges);
        ownChanged = changed.ok();
        return changed;
    });
    if (!outcome && ownChanged) {
        const UserNotifications::Files &now = *archive.ownSettings;
        if (const Outcome restored = m_own->change(UserNotifications::difference(now, ownFiles)); !restored) {
            logLine(LOG_WARNING, restored.error());
        }
    }
    return outcome;
}

Outcome ConfigTransfer::renewRules(ConfigArchive &archive)
{
    for (ConfigArchive::File &file : archive.files) {
        if (file.content && file.target.format == ConfigTarget::Format::SubjectRules) {
            Result<QByteArray> text = AuditSettingsStore::renewed(file.target.path(), *file.content);
            if (!text) {
                return text.outcome();
            }
            file.content = text.takeValue();
        }
    }
    return Outcome::success();
}

Result<ConfigTransfer::Report> ConfigTransfer::install(const QByteArray &bytes) const
{
    Result<ConfigArchive> unpacked = ConfigArchive::unpack(bytes);
    const Result<SafeDirectory> root = SafeDirectory::openRoot(m_root);
    if (!unpacked || !root) {
        return unpacked ? root.outcome() : unpacked.outcome();
    }
    ConfigArchive archive = unpacked.takeValue();
    Report report;
    for (auto it = archive.files.begin(); it != archive.files.end();) {
        const bool leaveOut = it->target.format == ConfigTarget::Format::MainConfiguration
            && isForAnotherVersion(archive, *it);
        report.mainConfigLeftOut = report.mainConfigLeftOut || leaveOut;
        it = leaveOut ? archive.files.erase(it) : std::next(it);
    }
    if (Outcome renewed = renewRules(archive); !renewed) {
        return renewed;
    }
    if (Outcome checked = checkAll(archive, root.value()); !checked) {
        return checked;
    }
    const Result<QMap<QString, QByteArray>> fragments = readFragments(root.value());
    if (!fragments) {
        return fragments.outcome();
    }
    for (const QString &fileName : fragments.value().keys()) {
        const ConfigTarget target = ConfigArchive::fragmentTarget(fileName);
        if (!archive.files.contains(target.path())) {
            archive.files.insert(target.path(), {target, std::nullopt});
        }
    }
    const Outcome outcome = carryOut(archive, root.value());
    return outcome ? Result<Report>(report) : Result<Report>(outcome);
}

} // namespace AdminEventsHelper
