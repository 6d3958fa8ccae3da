// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <QProcess>

#include <array>

/**
 * Asks the service manager "systemctl", found through the search path, whether the audit daemon and syslog-ng
 * run, about both at the same time, and without waiting for the answers.
 *
 * SngHandler::getStatus() asks the same questions and waits.
 */
class ServiceStatusReader : public QObject
{
    Q_OBJECT

public:
    explicit ServiceStatusReader(QObject *parent);
    ~ServiceStatusReader() override;

    /// Asks, or, while the service manager is still at an earlier question, asks again afterwards.
    void read();

Q_SIGNALS:
    /// Both answers have come; a service manager that cannot be asked counts as "does not run".
    void finished(bool auditdRuns, bool syslogNgRuns);

private:
    enum Service { Auditd, SyslogNg, ServiceCount };

    void ask(Service service);
    void answered(Service service, bool runs);

    std::array<QProcess, ServiceCount> m_questions;
    std::array<bool, ServiceCount> m_runs{};
    int m_pending = 0;
    bool m_askAgain = false;
};
