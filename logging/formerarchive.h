// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

/**
 * Keeps the file that an export replaces, which is emptied before anything is asked of the helper, until it
 * is known whether the export succeeds.
 *
 * The file takes another name beside its own, "NAME.XXXXXX~"; where its directory takes no further names, a
 * copy in the directory for temporary files serves.
 */
class FormerArchive
{
public:
    explicit FormerArchive(const QString &path);
    /// Puts the file back unless it was dropped.
    ~FormerArchive();
    FormerArchive(const FormerArchive &) = delete;
    FormerArchive &operator=(const FormerArchive &) = delete;

    /**
     * Puts an empty file of the same permissions in the file's place. Nothing to be kept, because no file or
     * an empty one has the path, is a success, too.
     * @return why the file cannot be kept, translated; empty for a success.
     */
    [[nodiscard]] QString setAside();
    /// @return where the file is kept when it cannot be put back, translated; empty for a success.
    [[nodiscard]] QString putBack();
    /// Gives the former file up.
    void drop();

private:
    [[nodiscard]] bool moveAside();
    [[nodiscard]] bool copyAside();
    [[nodiscard]] bool copyBack();

    QString m_path;
    QString m_aside; ///< empty when nothing is kept
    QString m_problem;
    bool m_isCopy = false;
};
