// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QList>
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
        MainConfiguration, ///< The logging service's language; see LoggingCheck.
        Rotation, ///< The rotation program's language; see RotationCheck.
        SubjectRules, ///< The audit settings of users and groups; see AuditSettingsStore.
        Fragment, ///< The notification of one event; see FragmentCheck.
    };

    /** The directory below the root, component by component. */
    QStringList directory;
    QString fileName;
    Format format = Format::EventSettings;
    /** Permission bits of a file that did not exist yet. */
    mode_t newFileMode = 0644;
    /** Whether a request may name the file and send its content as it is to be. */
    bool isWrittenByPath = true;

    /** The absolute path by which requests name the file. */
    QString path() const;

    /** The files that always bear the same name: an archive of the configuration holds each of them. */
    static QList<ConfigTarget> all();

    /** The one of these files that has this format; not for fragments. */
    static ConfigTarget of(Format format);

    /**
     * Looks a path up among the files that a request may name.
     * @param path compared as it stands: another spelling of the same path is refused.
     */
    static Result<ConfigTarget> find(const QString &path);
};

} // namespace AdminEventsHelper
