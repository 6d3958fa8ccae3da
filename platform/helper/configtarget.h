// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QStringList>

#include <sys/types.h>

namespace AdminEventsHelper {

/** One of the files that the helper may write, and no others. */
struct ConfigTarget
{
    /** What the content has to be. */
    enum class Format {
        EventSettings, ///< Empty, or one JSON object.
        AuditRules, ///< Lines that add audit rules, comments and empty lines.
        Text, ///< Any text without a NUL.
    };

    /** The directory below the root, component by component. */
    QStringList directory;
    QString fileName;
    Format format = Format::Text;
    /** Permission bits of a file that did not exist yet. */
    mode_t newFileMode = 0644;

    /** The absolute path by which requests name the file. */
    QString path() const;

    /**
     * Looks a path up in the closed set.
     * @param path compared as it stands: another spelling of the same path is refused.
     */
    static Result<ConfigTarget> find(const QString &path);
};

} // namespace AdminEventsHelper
