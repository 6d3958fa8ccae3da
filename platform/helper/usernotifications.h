// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notifyrcfiles.h"
#include "outcome.h"

#include <QString>

#include <optional>
#include <sys/types.h>

namespace AdminEventsHelper {

/**
 * The notification settings of the user who sent a request: the files of NotifyrcCheck::isFileName() in
 * ".config" in the home directory.
 *
 * They are read and written by a child process that has become the user. The path of the home directory may
 * lead through links, since an administrator chose it; below it none is followed. The files and the directory
 * must belong to the user.
 */
class UserNotifications
{
public:
    using Files = NotifyrcFiles::Contents;
    using Changes = NotifyrcFiles::Changes;

    UserNotifications(uid_t user, const QString &home);

    /**
     * Those of a user whose home directory the system's accounts tell.
     * @param root the directory that stands for "/"; with any other one there are none unless home names
     *             them.
     * @param home stands for the user's home directory; empty for the true one.
     */
    static Result<std::optional<UserNotifications>> of(uid_t user, const QString &root, const QString &home);

    /** The path of a file, for messages. */
    QString pathOf(const QString &fileName) const;

    /** All of them; empty when the directory is missing. */
    Result<Files> read() const;

    /**
     * Replaces, makes and removes files, all of them or none; a missing directory is made. What a file was
     * before stays in the file of its name and "~". What earlier changes left half-written goes.
     */
    Outcome change(const Changes &changes) const;

    /** The changes that lead from present files to wanted ones; nothing for a file that is the same. */
    static Changes difference(const Files &present, const Files &wanted);

private:
    uid_t m_user;
    QString m_home;
};

} // namespace AdminEventsHelper
