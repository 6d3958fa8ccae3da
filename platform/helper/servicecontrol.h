// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditrulesloader.h"
#include "outcome.h"

#include <QString>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace AdminEventsHelper {

/** What may be asked of the logging service. */
enum class ServiceCommand { Start, Stop, Restart };

/** Reads the argument "cmd", the string "start", "stop" or "restart" and nothing else; no other arguments. */
Result<ServiceCommand> readServiceCommand(const QVariantMap &arguments);

/**
 * Starts, stops and restarts the logging service, which is syslog-ng fed by the audit daemon.
 *
 * - start: starts auditd when it does not run, then syslog-ng.
 * - stop: stops syslog-ng; the audit daemon serves others too and is left alone.
 * - restart: restarts auditd, which loads the audit rules anew, then syslog-ng.
 *
 * Whatever becomes of auditd, syslog-ng is started or restarted: some systems refuse a restart of auditd by
 * hand, and new logging settings must not wait for that. The failure is reported all the same, as are audit
 * rules that are not in force then (see AuditRulesLoader). A syslog-ng that is gone again shortly after its
 * start is a failure, too.
 */
class ServiceControl
{
public:
    /**
     * The time within which a whole command ends; it stays below the 25 seconds after which the bus gives up
     * on behalf of the requester, who would then not learn what happened.
     */
    static constexpr std::chrono::milliseconds defaultLimit{20000};

    /**
     * @param systemctl the absolute path of the service manager's program; when empty, "systemctl" from
     * /usr/bin or /bin.
     * @param limit shared out among the programs that one command runs.
     */
    explicit ServiceControl(const QString &systemctl = QString(),
                            std::chrono::milliseconds limit = defaultLimit);

    /** Has a start and a restart load the audit rules, after the audit daemon and before syslog-ng. */
    void setRulesLoader(const AuditRulesLoader &loader) { m_rulesLoader = loader; }

    /** Runs the command; a failure names every service that it concerns and what the service manager said. */
    Outcome run(ServiceCommand command) const;

private:
    struct Results;
    static Outcome summary(ServiceCommand command, const Results &results);

    QString m_systemctl;
    std::optional<AuditRulesLoader> m_rulesLoader;
    std::chrono::milliseconds m_limit;
};

} // namespace AdminEventsHelper
