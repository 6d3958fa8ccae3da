// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QSet>
#include <QString>

#include <set>

/** Knows for which message identifiers a notification fragment exists on disk. One per process. */
class DBusKeeper
{
public:
    /// Created on first use, and empty until init().
    [[nodiscard]] static DBusKeeper *Instance();

    /// Reads the directory of the fragments; what an earlier call found is forgotten. Any file of a
    /// fragment's name counts, whatever its content.
    void init();

    /// Whether a fragment exists for the identifier, whose "-" and "_" a file name does not tell apart.
    [[nodiscard]] bool findEvent(const QString &messageId) const;

    /// The identifiers as the file names give them.
    [[nodiscard]] const std::set<QString> &identifiers() const { return m_identifiers; }

private:
    DBusKeeper() = default;

    std::set<QString> m_identifiers;
    QSet<QString> m_canonical;
};
