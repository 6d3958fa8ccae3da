// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "filedescriptor.h"
#include "outcome.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <sys/types.h>

namespace AdminEventsHelper {

/**
 * A directory held open, in which names are looked up one by one and never through a symbolic link.
 *
 * Everything is done relative to the open directory, so that nobody who moves or links its parents meanwhile
 * can lead an operation elsewhere. A "name" is one component: not empty, not "." or "..", without a slash.
 */
class SafeDirectory
{
public:
    /** Opens the directory that stands for "/". Its own path may lead through links: an administrator chose
     * it. */
    static Result<SafeDirectory> openRoot(const QString &path);

    /** As openRoot(), and then descend(). */
    static Result<SafeDirectory> openBelow(const QString &root, const QStringList &names);

    /**
     * Walks down from here.
     * @param names the components; each must be a directory and not a symbolic link.
     */
    Result<SafeDirectory> descend(const QStringList &names) const;

    /** The sub-directory of that name, made with that mode (whatever the umask is) when it is missing. */
    Result<SafeDirectory> descendOrMake(const QString &name, mode_t mode) const;

    /**
     * Opens a regular file for reading.
     * @return no descriptor when nothing bears the name; a failure when it is anything but a regular file.
     */
    Result<std::optional<FileDescriptor>> openRegular(const QString &name) const;

    /** Makes a new empty file of mode 0600, open for writing; fails when the name is taken. */
    Result<FileDescriptor> createExclusive(const QString &name) const;

    /** Gives a file of this directory another name in it, atomically replacing what bears that name. */
    Outcome rename(const QString &from, const QString &to) const;

    /** Gives a regular file of this directory a second name in it; fails when the name is taken. */
    Outcome link(const QString &from, const QString &to) const;

    /** Removes a name that is not a directory. */
    Outcome remove(const QString &name) const;

    /** Returns when the names of this directory are on the disk. */
    Outcome sync() const;

    /** Whether something bears the name, of whatever kind, or may bear it: it could not be looked at. */
    bool mayHave(const QString &name) const;

    /** The same for a chain of directories below this one; false only when one of them is missing. */
    bool mayHavePath(const QStringList &names) const;

    /** The names in this directory, sorted, without "." and "..". */
    Result<QStringList> entries() const;

    /** The path of a name in this directory, for messages. */
    QString pathOf(const QString &name) const;
    /** The path of this directory, for messages. */
    QString path() const { return m_path; }

    int descriptor() const { return m_descriptor.get(); }

private:
    SafeDirectory(FileDescriptor descriptor, const QString &path);
    Result<SafeDirectory> child(const QString &name) const;

    FileDescriptor m_descriptor;
    QString m_path;
};

/** "a directory", "a symbolic link" and the like, of the mode that stat(2) tells. */
QString kindOfFile(mode_t mode);

/** What the system says about an error number. */
QString systemError(int number);

} // namespace AdminEventsHelper
