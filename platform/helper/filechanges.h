// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "backupstore.h"
#include "configtarget.h"
#include "safedirectory.h"

#include <QByteArray>
#include <QMap>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace AdminEventsHelper {

/**
 * Replaces, makes and removes several files, all of them or none.
 *
 * Everything new is on the disk before the first file is replaced, and what is replaced keeps a second name
 * until the last one is. While files are being replaced, the file "pending-changes" in the backup directory
 * says what to take back: a JSON array of objects with "path" (the file), "kept" (the name in its directory
 * under which the former file waits; empty when there was none) and "sha256" (of the new content; empty for a
 * removal). begin() takes back what a crash left half done.
 */
class FileChanges
{
public:
    /** @param root stands for "/"; must outlive this object. */
    explicit FileChanges(const SafeDirectory &root);

    /**
     * Adds one file, without changing anything.
     * @param content what it becomes; none removes it.
     * @return a failure when it may not be replaced (it is not regular), or its directory is missing although
     *         there is something to write.
     */
    Outcome add(const ConfigTarget &target, const std::optional<QByteArray> &content);

    /**
     * Carries all of it out; what is replaced or removed is kept as a generation. Files that already are as
     * they should be are not touched. A failure leaves everything as it was, or says what could not be put
     * back.
     * @param lastStep done when all files are replaced; its failure takes them back.
     */
    Outcome carryOut(const BackupStore &backups, const std::function<Outcome()> &lastStep = {});

    /**
     * Begins a change of the configuration, of several files or one: takes the lock, takes back changes that
     * were interrupted, and removes half-written files of the closed set and of notification fragments.
     * @return what is replaced from now on goes there; the lock is held as long as it lives.
     */
    static Result<BackupStore> begin(const SafeDirectory &root);

private:
    struct Change
    {
        ConfigTarget target;
        std::shared_ptr<const SafeDirectory> directory;
        std::optional<QByteArray> content;
        std::optional<QByteArray> former;
        QString temporary; // the new content until the change is made
        QString kept; // the former file after it
        bool isMade = false;
    };

    Result<std::shared_ptr<const SafeDirectory>> directoryOf(const ConfigTarget &target);
    Outcome look(Change &change) const;
    Outcome stage(Change &change, const BackupStore &backups) const;
    Outcome make(Change &change) const;
    Outcome takeBack(Change &change) const;
    Outcome makeAll(const BackupStore &backups, const std::function<Outcome()> &lastStep);
    void removeTemporaries() const;
    Outcome writeJournal(const BackupStore &backups) const;

    const SafeDirectory &m_root;
    QMap<QString, std::shared_ptr<const SafeDirectory>> m_directories;
    std::vector<Change> m_changes;
};

} // namespace AdminEventsHelper
