// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "safedirectory.h"

#include <QByteArray>

namespace AdminEventsHelper {

class BackupStore;

/**
 * Replaces one file so that a crash at any instant leaves the old content or the new one, whole.
 *
 * The new content goes to a temporary sibling, is flushed to the disk and takes the file's name by a rename.
 * It keeps owner, group, permission bits and access list of the file that it replaces.
 */
class AtomicFileWriter
{
public:
    /**
     * @param directory the file's directory; must outlive this object.
     * @param name the file's name in it.
     * @param newFileMode the permission bits of a file that did not exist yet.
     */
    AtomicFileWriter(const SafeDirectory &directory, const QString &name, mode_t newFileMode);

    /** Looks whether the file may be replaced (it is regular or absent), without changing anything. */
    Outcome prepare();

    /**
     * Writes the bytes to a new file beside the file, flushed and with the rights that the file will have,
     * and replaces nothing. Only after a successful prepare(); a failure may leave the new file.
     */
    Outcome stage(const QString &temporary, const QByteArray &content) const;

    /**
     * Replaces the file by these bytes. Only after a successful prepare().
     * @param backups receives the former content when it differs.
     */
    Outcome write(const QByteArray &content, const BackupStore &backups);

private:
    Outcome takeOver(int from, int to) const;
    Outcome keepFormer(const QByteArray &content, const BackupStore &backups) const;

    const SafeDirectory &m_directory;
    QString m_name;
    mode_t m_newFileMode;
    std::optional<FileDescriptor> m_former;
};

} // namespace AdminEventsHelper
