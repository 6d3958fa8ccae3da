// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "accessservice.h"

/**
 * Has the privileged helper start, stop or restart the logging service. Nothing here waits: stateChanged()
 * reports a success, the inherited error() a failure.
 */
class LoggingService : public AccessService
{
    Q_OBJECT

public:
    explicit LoggingService(QObject *parent);

    void start();
    void stop();
    void restart();

    /** @param command "start", "stop" or "restart"; the helper refuses any other word. */
    void runCmd(const QString &command);

Q_SIGNALS:
    /** A command was carried out. */
    void stateChanged();
};
