// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "configtarget.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace AdminEventsHelper {

/**
 * The configuration of security event logging as one archive: a tar archive compressed with gzip.
 *
 * Its first entry "manifest.json" is a JSON object:
 *   "format"            1; any other version is refused,
 *   "product"           "admin-events",
 *   "productVersion"    the version that made the archive, for people,
 *   "mainConfigVersion" the version of the main configuration's form,
 *   "ownNotificationSettings" true when the archive holds the notification settings of the user who had it
 *                       made, and be it none; false, or missing, when it says nothing of them,
 *   "files"             an array of objects, one a file: "name" (its absolute path without the first slash),
 *                       "present" (false for a file that did not exist when the archive was made), and where
 *                       it is present "size" (bytes) and "sha256" (hexadecimal).
 * Every file of ConfigTarget::all() is named when an archive is made, and notification fragments where they
 * exist; an older archive may lack a file that was added later. Each present file is an entry of that name.
 * The user's own notification settings are entries "home/.config/NAME"; see NotifyrcCheck. None is named as
 * absent.
 */
struct ConfigArchive
{
    /** The version of the main configuration's form that this version of the product writes and reads. */
    static constexpr int mainConfigVersionHere = 1;

    struct File
    {
        ConfigTarget target;
        /** None for a file that did not exist. */
        std::optional<QByteArray> content;
    };

    /** By their absolute paths. */
    QMap<QString, File> files;
    /** The own notification settings of the user who asked, by file name; none when they are no part of it.
     */
    std::optional<QMap<QString, QByteArray>> ownSettings;
    int mainConfigVersion = mainConfigVersionHere;

    /** Notification fragments are no fixed targets: makes the target of one. */
    static ConfigTarget fragmentTarget(const QString &fileName);

    /** The archive's bytes. */
    Result<QByteArray> pack() const;

    /**
     * Reads an archive: names, manifest, sizes and checksums are as they have to be, and nothing is missing
     * or left over. What the files say is not looked at.
     */
    static Result<ConfigArchive> unpack(const QByteArray &bytes);
};

} // namespace AdminEventsHelper
