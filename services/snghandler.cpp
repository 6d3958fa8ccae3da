// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "snghandler.h"

#include "processexecutor.h"

#include <KLocalizedString>

namespace {

const QLatin1String statusWord("status");
const QLatin1String startWord("start");
const QLatin1String stopWord("stop");
const QLatin1String restartWord("restart");
const QLatin1String auditd("auditd");
const QLatin1String syslogNg("syslog-ng");

int runServiceManager(QLatin1String command, QLatin1String service)
{
    ProcessExecutor executor;
    return executor.execProc<-1>(QStringLiteral("systemctl"), {command, service}).first;
}

QLatin1String wordOf(SngHandler::Operation operation)
{
    switch (operation) {
    case SngHandler::start:
        return startWord;
    case SngHandler::stop:
        return stopWord;
    case SngHandler::restart:
        break;
    }
    return restartWord;
}

QString stateText(bool runs)
{
    return runs ? i18nc("the service runs", "on") : i18nc("the service does not run", "off");
}

} // namespace

SngHandler *SngHandler::Instance()
{
    static SngHandler instance;
    return &instance;
}

bool SngHandler::getStatus()
{
    const bool syslogNgRuns = runServiceManager(statusWord, syslogNg) == 0;
    const bool auditdRuns = getAuditdStatus();
    setToolTip(auditdRuns, syslogNgRuns);
    return syslogNgRuns && auditdRuns;
}

bool SngHandler::getAuditdStatus() const
{
    return runServiceManager(statusWord, auditd) == 0;
}

void SngHandler::auditdStart() const
{
    runServiceManager(startWord, auditd);
}

void SngHandler::auditdRestart() const
{
    runServiceManager(restartWord, auditd);
}

void SngHandler::syslogNgStart() const
{
    syslogNgSwitch(start);
}

void SngHandler::syslogNgStop() const
{
    syslogNgSwitch(stop);
}

void SngHandler::syslogNgRestart() const
{
    syslogNgSwitch(restart);
}

void SngHandler::syslogNgSwitch(const Operation &operation) const
{
    if (operation == restart)
        auditdRestart();
    else if (operation == start && !getAuditdStatus())
        auditdStart();
    runServiceManager(wordOf(operation), syslogNg);
    Q_EMIT sngSwitched();
}

void SngHandler::setToolTip(bool auditdRuns, bool syslogNgRuns)
{
    m_toolTip.clear();
    m_toolTip += QLatin1String("auditd: ") + stateText(auditdRuns);
    m_toolTip += QLatin1String(", ");
    m_toolTip += QLatin1String("syslog-ng: ") + stateText(syslogNgRuns);
}

QString SngHandler::toolTip() const
{
    return m_toolTip;
}
