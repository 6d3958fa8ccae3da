// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QStringList>

namespace AdminEventsHelper {

/** What the service file, which only an administrator can write, says on the helper's command line. */
struct HelperOptions
{
    /** "--root DIR": an existing directory, by its absolute path, that stands for "/". */
    QString root = QStringLiteral("/");
    /** "--home DIR": an existing directory, by its absolute path, that stands for the home directory of
     * whoever asks; empty for the true one, and for none with another root than "/". */
    QString home;
    /** "--systemctl PATH": an executable file, by its absolute path; empty for the system's own. */
    QString systemctl;
    /** "--augenrules PATH": an executable file, by its absolute path, that loads the audit rules of the root;
     * empty for the system's own, which loads those of "/". With another root and without this option no
     * rules are loaded. */
    QString augenrules;
    /** "--auditctl PATH": an executable file, by its absolute path; empty for the system's own. */
    QString auditctl;

    /**
     * Reads the words after the program's name. An unknown, repeated or incomplete option is a failure. The
     * texts go to the system's journal and are not translated.
     */
    static Result<HelperOptions> parse(const QStringList &words);
};

} // namespace AdminEventsHelper
