// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStringList>

class QFile;

namespace Core::Utils {

/**
 * Gives every user a copy of a notification settings file, so that notifications are presented to all alike:
 * for each directory NAME under @p homeRoot that is the home of the user NAME, ".config" and the source's
 * file name in it. A file in its place is replaced. The copy is handed over to the user with chown(1).
 *
 * Directories that are no user's, such as ".pdp", are passed over, and no symbolic link is followed, not even
 * in the place of a home: the directories belong to others, and this runs as root.
 *
 * @param failed where given, takes the names of the users who could not be given a copy
 * @return true when there is a copy for at least one user and none failed
 */
[[nodiscard]] bool makeNotifyrcForUsers(const QString &homeRoot, QFile &source,
                                        QStringList *failed = nullptr);

} // namespace Core::Utils
