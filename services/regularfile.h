// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/** What came of reading a whole regular file. */
struct RegularFile
{
    enum State {
        /** There is nothing at the path. */
        Absent,
        /** bytes holds the whole content. */
        Read,
        /** There is something that cannot be opened or read, or is not a regular file: reason says what. */
        Failed,
    };

    State state = Absent;
    QByteArray bytes;
    /** Translated, a clause without the path; empty unless the state is Failed. */
    QString reason;
};

/**
 * Reads the regular file at @p path without ever blocking on a pipe or device in its place. Symbolic links
 * are followed; one that leads nowhere counts as Failed.
 */
[[nodiscard]] RegularFile readRegularFile(const QString &path);
