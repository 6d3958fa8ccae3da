// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "filechanges.h"

#include "atomicfilewriter.h"
#include "backupstore.h"
#include "changejournal.h"
#include "helperlog.h"
#include "temporaryname.h"
#include "wholefile.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

FileChanges::FileChanges(const SafeDirectory &root)
    : m_root(root)
{
}

Result<std::shared_ptr<const SafeDirectory>> FileChanges::directoryOf(const ConfigTarget &target)
{
    const QString key = target.directory.join(QLatin1Char('/'));
    if (!m_directories.contains(key)) {
        Result<SafeDirectory> directory = m_root.descend(target.directory);
        if (!directory) {
            return directory.outcome();
        }
        m_directories.insert(key, std::make_shared<const SafeDirectory>(directory.takeValue()));
    }
    return m_directories.value(key);
}

Outcome FileChanges::look(Change &change) const
{
    // A fresh look each time: another helper may have replaced the file meanwhile.
    Result<std::optional<QByteArray>> former = WholeFile::read(*change.directory, change.target.fileName);
    if (former) {
        change.former = former.takeValue();
    }
    return former.outcome();
}

Outcome FileChanges::add(const ConfigTarget &target, const std::optional<QByteArray> &content)
{
    if (!content && !m_root.mayHavePath(target.directory)) {
        return Outcome::success();
    }
    const Result<std::shared_ptr<const SafeDirectory>> directory = directoryOf(target);
    if (!directory) {
        return directory.outcome();
    }
    Change change;
    change.target = target;
    change.directory = directory.value();
    change.content = content;
    Outcome looked = look(change);
    if (looked) {
        m_changes.push_back(std::move(change));
    }
    return looked;
}

Outcome FileChanges::stage(Change &change, const BackupStore &backups) const
{
    const QString name = change.target.fileName;
    if (change.content) {
        change.temporary = TemporaryName::make(name);
        AtomicFileWriter writer(*change.directory, name, change.target.newFileMode);
        if (Outcome regular = writer.prepare(); !regular) {
            return regular;
        }
        if (Outcome staged = writer.stage(change.temporary, *change.content); !staged) {
            return staged;
        }
    }
    if (!change.former) {
        return Outcome::success();
    }
    change.kept = TemporaryName::make(name);
    return backups.keep(name, *change.former);
}

Outcome FileChanges::make(Change &change) const
{
    const QString name = change.target.fileName;
    Outcome outcome = Outcome::success();
    if (!change.content) {
        outcome = change.directory->rename(name, change.kept);
    } else {
        if (change.former) {
            outcome = change.directory->link(name, change.kept);
        }
        if (outcome) {
            outcome = change.directory->rename(change.temporary, name);
        }
    }
    change.isMade = outcome.ok();
    return outcome;
}

Outcome FileChanges::takeBack(Change &change) const
{
    if (!change.isMade) {
        return Outcome::success();
    }
    Outcome outcome = change.former ? change.directory->rename(change.kept, change.target.fileName)
                                    : change.directory->remove(change.target.fileName);
    change.isMade = !outcome.ok();
    return outcome;
}

void FileChanges::removeTemporaries() const
{
    for (const Change &change : m_changes) {
        for (const QString &name : {change.temporary, change.kept}) {
            if (!name.isEmpty() && change.directory->mayHave(name)) {
                // What stays goes with the next write.
                (void)change.directory->remove(name);
            }
        }
    }
}

Outcome FileChanges::writeJournal(const BackupStore &backups) const
{
    QList<ChangeJournal::Row> rows;
    for (const Change &change : m_changes) {
        rows << ChangeJournal::rowFor(change.target, change.kept, change.content);
    }
    return ChangeJournal::write(backups.directory(), rows);
}

Outcome FileChanges::makeAll(const BackupStore &backups, const std::function<Outcome()> &lastStep)
{
    Outcome outcome = writeJournal(backups);
    for (size_t i = 0; outcome && i < m_changes.size(); ++i) {
        outcome = make(m_changes[i]);
    }
    for (auto it = m_directories.cbegin(); outcome && it != m_directories.cend(); ++it) {
        outcome = (*it)->sync();
    }
    if (outcome && lastStep) {
        outcome = lastStep();
    }
    if (outcome) {
        // From here on the changes stand.
        outcome = ChangeJournal::remove(backups.directory());
    }
    if (outcome) {
        return outcome;
    }
    for (size_t i = m_changes.size(); i > 0; --i) {
        if (const Outcome restored = takeBack(m_changes[i - 1]); !restored) {
            // The journal stays: the next write tries again.
            return Outcome::failure(i18n("%1 What was changed before could not be put back: %2",
                                         outcome.error(), restored.error()));
        }
    }
    removeTemporaries();
    // Nothing is left that it could take back.
    (void)ChangeJournal::remove(backups.directory());
    return outcome;
}

Outcome FileChanges::carryOut(const BackupStore &backups, const std::function<Outcome()> &lastStep)
{
    std::vector<Change> needed;
    for (Change &change : m_changes) {
        if (Outcome looked = look(change); !looked) {
            return looked;
        }
        if (change.former != change.content) {
            needed.push_back(std::move(change));
        }
    }
    m_changes = std::move(needed);
    if (m_changes.empty()) {
        return lastStep ? lastStep() : Outcome::success();
    }
    for (Change &change : m_changes) {
        if (Outcome staged = stage(change, backups); !staged) {
            removeTemporaries();
            return staged;
        }
    }
    if (Outcome made = makeAll(backups, lastStep); !made) {
        return made;
    }
    removeTemporaries();
    for (const Change &change : m_changes) {
        // The files are replaced: generations too many are no reason to report a failure.
        if (const Outcome pruned = backups.prune(change.target.fileName); !pruned) {
            logLine(LOG_WARNING, pruned.error());
        }
    }
    return Outcome::success();
}

Result<BackupStore> FileChanges::begin(const SafeDirectory &root)
{
    Result<BackupStore> backups = BackupStore::open(root);
    if (backups) {
        if (Outcome recovered = ChangeJournal::recover(root, backups.value().directory()); !recovered) {
            return recovered;
        }
    }
    return backups;
}

} // namespace AdminEventsHelper
