// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "safedirectory.h"

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

/**
 * Keeps what the helper replaces: the last ten generations of each file, in the directory
 * "/var/lib/adminevents/backup" below the root, which only its owner may enter (mode 0700).
 *
 * A generation of "NAME" is the file "NAME.N" of mode 0600, N being ten decimal digits that only ever grow.
 * While an object lives, it holds the lock that keeps two helpers from writing at once.
 */
class BackupStore
{
public:
    static constexpr int generationsKept = 10;

    /**
     * Opens the store, making its directory when it is missing.
     * @return a failure when the directory is not the caller's own, or when another helper holds the lock.
     */
    static Result<BackupStore> open(const SafeDirectory &root);

    /**
     * The generations of a file that are kept, newest first; nothing is made or locked for it. What cannot be
     * read is left out.
     */
    static QList<QByteArray> kept(const SafeDirectory &root, const QString &fileName);

    /** Where the generations are, for what else has to be known to this user alone. */
    const SafeDirectory &directory() const { return m_directory; }

    /** Stores the bytes as the newest generation of the file; it is on the disk when this returns. */
    Outcome keep(const QString &fileName, const QByteArray &bytes) const;

    /** Removes all but the last ten generations of the file. */
    Outcome prune(const QString &fileName) const;

private:
    explicit BackupStore(SafeDirectory directory);
    Result<QStringList> generations(const QString &fileName) const;

    SafeDirectory m_directory;
};

} // namespace AdminEventsHelper
