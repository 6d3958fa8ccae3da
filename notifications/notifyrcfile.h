// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notifyrctext.h"

#include <regularfile.h>

/** One user's notification settings file. */
class NotifyrcFile
{
public:
    explicit NotifyrcFile(const QString &path);

    /// Why there is a file that cannot be read, translated; empty when it was read or does not exist.
    [[nodiscard]] QString readProblem() const;
    /// The file's state when this object was made.
    [[nodiscard]] RegularFile::State state() const { return m_file.state; }
    [[nodiscard]] NotifyrcGroup group(const QString &key) const;

    /**
     * Replaces the notification's group (see NotifyrcText::withGroup()), making the file, for its user alone,
     * and its directory when they are missing. A crash leaves the old file or the new one.
     * @return why it was not written, translated; empty when it was. A file that cannot be read stays.
     */
    [[nodiscard]] QString replaceGroup(const QString &key, const QStringList &content) const;

private:
    QString m_path;
    RegularFile m_file;
};
