// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QProcess>

/**
 * A child process that never outlives the program that started it: it leads a process group of its own, which
 * stop() ends as a whole, and the kernel kills it when the starting thread ends.
 */
class LeashedProcess : public QProcess
{
    Q_OBJECT

public:
    explicit LeashedProcess(QObject *parent = nullptr);
    /** Calls stop(). */
    ~LeashedProcess() override;

    /** Ends the process and all that it left in its process group; returns when none of them runs any more.
     */
    void stop();

protected:
    void setupChildProcess() override;

private:
    qint64 m_group = 0;
};
