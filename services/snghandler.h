// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <QString>

/**
 * Asks the service manager whether the logging service (syslog-ng) and the audit daemon run, and switches
 * them with the rights of the caller. Every operation runs "systemctl" and blocks until it ends.
 */
class SngHandler : public QObject
{
    Q_OBJECT

public:
    enum Operation {
        start = 0,
        stop = 1,
        restart = 2,
    };
    Q_ENUM(Operation)

    /** The one instance of the process, made at the first call. */
    [[nodiscard]] static SngHandler *Instance();

    /** @return true when syslog-ng and the audit daemon both run; refreshes the tool tip. */
    [[nodiscard]] bool getStatus();

    /** @return true when the audit daemon runs; false also when that cannot be found out. */
    [[nodiscard]] bool getAuditdStatus() const;

    void auditdStart() const;
    void auditdRestart() const;

    void syslogNgStart() const;
    void syslogNgStop() const;
    void syslogNgRestart() const;

    /**
     * Start also starts the audit daemon unless it runs, restart restarts it as well, stop leaves it alone.
     * sngSwitched() follows whatever came of it.
     */
    void syslogNgSwitch(const Operation &operation) const;

    /** Makes the tool tip say which of the two run. */
    void setToolTip(bool auditdRuns, bool syslogNgRuns);

    /** The translated text of the last setToolTip(); empty before the first. */
    [[nodiscard]] QString toolTip() const;

Q_SIGNALS:
    void sngSwitched() const;

private:
    SngHandler() = default;

    QString m_toolTip;
};
