// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "treesnapshot.h"

#include <QStringList>
#include <QTemporaryDir>

/**
 * A program in the place of systemctl: a script that writes down how it was called, with its environment, and
 * then does what the test said.
 */
class StandInSystemctl
{
public:
    StandInSystemctl()
    {
        // It finds its directory by its own path, for the helper hands it no environment.
        m_ready = m_directory.isValid()
            && putFile(program(),
                       "#!/bin/sh\n"
                       "here=${0%/*}\n"
                       "echo \"$*\" >> \"$here/calls\"\n"
                       "env > \"$here/environment\"\n"
                       "pwd > \"$here/working-directory\"\n"
                       ". \"$here/behaviour\"\n",
                       0755)
            && behave("");
    }

    bool isReady() const { return m_ready; }
    QString program() const { return m_directory.filePath(QStringLiteral("systemctl")); }

    /** Takes shell commands that see the call in "$*", and forgets earlier calls. */
    bool behave(const QByteArray &commands)
    {
        QFile::remove(m_directory.filePath(QStringLiteral("calls")));
        return putFile(m_directory.filePath(QStringLiteral("behaviour")), commands);
    }

    /** The arguments of each call since behave(). */
    QStringList calls() const
    {
        return QString::fromUtf8(getFile(m_directory.filePath(QStringLiteral("calls"))))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    /** What the last call left in a file beside the script. */
    QByteArray note(const QString &name) const { return getFile(m_directory.filePath(name)); }

private:
    QTemporaryDir m_directory;
    bool m_ready = false;
};
