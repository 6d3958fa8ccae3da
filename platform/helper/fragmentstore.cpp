// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentstore.h"

#include "argumentreader.h"
#include "atomicfilewriter.h"
#include "backupstore.h"
#include "filechanges.h"
#include "fragmentcheck.h"
#include "helperlog.h"

#include <KLocalizedString>

#include <optional>

namespace AdminEventsHelper {

namespace {

constexpr mode_t newFileMode = 0644;

/** One fragment of a request: what it was, to put it back, and what it becomes. */
struct Change
{
    QString fileName;
    std::optional<QByteArray> former; // none when there was no file
    std::optional<QByteArray> content; // none removes the file
};

Result<QList<Change>> prepared(const SafeDirectory &directory, QList<Change> changes)
{
    for (Change &change : changes) {
        AtomicFileWriter writer(directory, change.fileName, newFileMode);
        if (Outcome regular = writer.prepare(); !regular) {
            return regular;
        }
        Result<std::optional<QByteArray>> former = writer.former();
        if (!former) {
            return former.outcome();
        }
        change.former = former.takeValue();
    }
    return changes;
}

Outcome put(const SafeDirectory &directory, const BackupStore &backups, const QString &fileName,
            const QByteArray &content)
{
    AtomicFileWriter writer(directory, fileName, newFileMode);
    const Outcome regular = writer.prepare();
    return regular ? writer.write(content, backups) : regular;
}

Outcome takeAway(const SafeDirectory &directory, const BackupStore &backups, const Change &change)
{
    if (!change.former) {
        return Outcome::success();
    }
    if (Outcome kept = backups.keep(change.fileName, *change.former); !kept) {
        return kept;
    }
    if (Outcome removed = directory.remove(change.fileName); !removed) {
        return removed;
    }
    // The file is gone: generations too many are no reason to report a failure.
    if (const Outcome pruned = backups.prune(change.fileName); !pruned) {
        logLine(LOG_WARNING, pruned.error());
    }
    return directory.sync();
}

Outcome carryOut(const SafeDirectory &directory, const BackupStore &backups, const Change &change)
{
    return change.content ? put(directory, backups, change.fileName, *change.content)
                          : takeAway(directory, backups, change);
}

Outcome putBack(const SafeDirectory &directory, const BackupStore &backups, const Change &change)
{
    if (change.former) {
        return put(directory, backups, change.fileName, *change.former);
    }
    const Result<std::optional<FileDescriptor>> present = directory.openRegular(change.fileName);
    return present && present.value() ? directory.remove(change.fileName) : present.outcome();
}

Outcome carryOutAll(const SafeDirectory &directory, const BackupStore &backups, const QList<Change> &changes)
{
    for (int done = 0; done < changes.size(); ++done) {
        const Outcome outcome = carryOut(directory, backups, changes.at(done));
        if (outcome) {
            continue;
        }
        // The one that failed as well: it may have gone wrong after its file was replaced.
        for (int i = done; i >= 0; --i) {
            if (const Outcome restored = putBack(directory, backups, changes.at(i)); !restored) {
                return Outcome::failure(i18n("%1 What was changed before could not be put back: %2",
                                             outcome.error(), restored.error()));
            }
        }
        return outcome;
    }
    return Outcome::success();
}

Outcome apply(const QString &rootPath, const QList<Change> &wanted)
{
    const Result<SafeDirectory> root = SafeDirectory::openRoot(rootPath);
    if (!root) {
        return root.outcome();
    }
    const Result<SafeDirectory> directory = root.value().descend(FragmentCheck::directory());
    if (!directory) {
        return directory.outcome();
    }
    // Before the backup directory is made: a refusal must change nothing.
    if (const Result<QList<Change>> possible = prepared(directory.value(), wanted); !possible) {
        return possible.outcome();
    }
    const Result<BackupStore> backups = BackupStore::open(root.value());
    if (!backups) {
        return backups.outcome();
    }
    if (Outcome recovered = FileChanges::recover(root.value(), backups.value()); !recovered) {
        return recovered;
    }
    // Again under the lock: another helper may have replaced a file meanwhile.
    const Result<QList<Change>> changes = prepared(directory.value(), wanted);
    return changes ? carryOutAll(directory.value(), backups.value(), changes.value()) : changes.outcome();
}

} // namespace

Result<FragmentWriteRequest> FragmentWriteRequest::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QMap<QString, QString> texts
        = reader.texts(QStringLiteral("notifications"), countLimit, FragmentCheck::sizeLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    FragmentWriteRequest request;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        const Result<QString> fileName = FragmentCheck::fileNameOf(it.key());
        if (!fileName) {
            return fileName.outcome();
        }
        const QByteArray content = it->toUtf8();
        if (Outcome checked = FragmentCheck::check(fileName.value(), content); !checked) {
            return checked;
        }
        request.fragments.insert(fileName.value(), content);
    }
    if (request.fragments.isEmpty()) {
        return Outcome::failure(i18n("The request names no notification file."));
    }
    return request;
}

Result<FragmentRemoveRequest> FragmentRemoveRequest::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QStringList paths
        = reader.strings(QStringLiteral("paths"), FragmentWriteRequest::countLimit, FragmentCheck::sizeLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    FragmentRemoveRequest request;
    for (const QString &path : paths) {
        const Result<QString> fileName = FragmentCheck::fileNameOf(path);
        if (!fileName) {
            return fileName.outcome();
        }
        request.fileNames << fileName.value();
    }
    request.fileNames.removeDuplicates();
    if (request.fileNames.isEmpty()) {
        return Outcome::failure(i18n("The request names no notification file."));
    }
    return request;
}

FragmentStore::FragmentStore(const QString &root)
    : m_root(root)
{
}

Outcome FragmentStore::write(const FragmentWriteRequest &request) const
{
    QList<Change> changes;
    for (auto it = request.fragments.cbegin(); it != request.fragments.cend(); ++it) {
        changes << Change{it.key(), std::nullopt, *it};
    }
    return apply(m_root, changes);
}

Outcome FragmentStore::remove(const FragmentRemoveRequest &request) const
{
    QList<Change> changes;
    for (const QString &fileName : request.fileNames) {
        changes << Change{fileName, std::nullopt, std::nullopt};
    }
    return apply(m_root, changes);
}

} // namespace AdminEventsHelper
