// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "loggingservice.h"

#include "actionids.h"

LoggingService::LoggingService(QObject *parent)
    : AccessService(parent)
{
    connect(this, &AccessService::finished, this, &LoggingService::stateChanged);
}

void LoggingService::start()
{
    runCmd(QStringLiteral("start"));
}

void LoggingService::stop()
{
    runCmd(QStringLiteral("stop"));
}

void LoggingService::restart()
{
    runCmd(QStringLiteral("restart"));
}

void LoggingService::runCmd(const QString &command)
{
    KAuth::Action action = makeAction(ActionIds::loggingServiceControl);
    action.addArgument(QStringLiteral("cmd"), command);
    executeAsync(action);
}
