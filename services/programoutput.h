// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

#include <sys/types.h>

/**
 * One run of a program whose standard output is collected; its input is empty, its error output goes where
 * that of this program goes.
 *
 * A QProcess copies the page tables of this program first, and every page of memory that is written to
 * afterwards costs a fault: at the start of a page, several milliseconds. posix_spawn(3) does not.
 */
class ProgramOutput
{
public:
    /// Starts @p program, found through the search path, without a shell.
    ProgramOutput(const QString &program, const QStringList &arguments);
    /// Ends what still runs.
    ~ProgramOutput();
    ProgramOutput(const ProgramOutput &) = delete;
    ProgramOutput &operator=(const ProgramOutput &) = delete;

    /**
     * Blocks until the program has ended, and ends it when that takes too long.
     * @param limit in milliseconds
     * @return all of its output; nothing when it did not start, took too long, crashed, or had another exit
     * code than 0
     */
    [[nodiscard]] std::optional<QByteArray> wait(int limit);

private:
    void read();
    void closeOutput();

    pid_t m_process = -1; // until it has been waited for
    int m_output = -1; // until its end has been read
    QByteArray m_text;
};
