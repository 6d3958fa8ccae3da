// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/**
 * The event settings file as it was at one moment.
 *
 * Its format is one JSON object in UTF-8, with the members that override the catalog.
 */
struct SettingsFile
{
    enum State {
        /** No such file. */
        Absent,
        /** Read and understood: object is set. */
        Good,
        /** Read, but empty, blank, not JSON, or not an object. */
        Malformed,
        /** There is something, but it cannot be opened or read as a file. */
        Unreadable,
    };

    State state = Absent;
    /** Empty unless the state is Good. */
    QJsonObject object;
    /** Why the state is Malformed or Unreadable, translated, with the path; empty otherwise. */
    QString reason;
    /** SHA-256 of the bytes read, 32 bytes; empty when none could be read (Absent, Unreadable). */
    QByteArray contentHash;
};

/**
 * Reads the event settings file.
 * @param resolvedPath the place of the file on this machine (SystemPaths::resolve()). Symbolic links are
 * followed; anything but a regular file at their end is Unreadable, as is a link that leads nowhere.
 */
[[nodiscard]] SettingsFile readSettingsFile(const QString &resolvedPath);
