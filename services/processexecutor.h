// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <utility>

/** Runs one child process, found through the search path and without a shell, and waits for it. */
class ProcessExecutor : public QProcess
{
    Q_OBJECT

public:
    /** The exit code of a process that did not start, crashed, or ran longer than its limit. */
    static constexpr int failed = -1;

    ProcessExecutor();
    ~ProcessExecutor() override;

    /**
     * Blocks the calling thread, without an event loop, until @p program has ended.
     * @tparam waitLimit in milliseconds; -1 means no limit.
     * @return the exit code, or failed; and the output, with the error output merged in, from UTF-8 up to its
     *         first zero byte.
     */
    template <int waitLimit>
    [[nodiscard]] std::pair<int, QString> execProc(const QString &program, const QStringList &arguments)
    {
        return execProcess(program, arguments, waitLimit);
    }

private:
    std::pair<int, QString> execProcess(const QString &program, const QStringList &arguments, int waitLimit);
};
