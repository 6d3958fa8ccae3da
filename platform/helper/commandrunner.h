// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QStringList>

#include <chrono>

namespace AdminEventsHelper {

/** How a program ended, and what it printed on either channel. */
struct CommandResult
{
    Outcome outcome;
    QByteArray output;
    /** It was killed after its time. */
    bool timedOut = false;
};

/**
 * Runs a program without a shell: fixed arguments, standard input from /dev/null, working directory "/", and
 * an environment that holds nothing but PATH and LANG=C.UTF-8.
 */
class CommandRunner
{
public:
    /**
     * Runs a program and waits for it.
     * @param limit after which the program and its process group are killed.
     * @return a failure when the program could not be started, did not end in time, crashed, or ended with
     * another code than 0; its text holds the command and the last lines that it printed on either channel.
     */
    static Outcome run(const QString &program, const QStringList &arguments, std::chrono::milliseconds limit);
    /** As run(), and returns the whole output as well. */
    static CommandResult capture(const QString &program, const QStringList &arguments,
                                 std::chrono::milliseconds limit);
};

} // namespace AdminEventsHelper
