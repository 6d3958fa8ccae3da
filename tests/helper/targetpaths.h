// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

// The closed set of files that the helper replaces, spelt out: the tests do not ask the helper what it
// allows.

inline QString settingsPath()
{
    return QStringLiteral("/etc/nivra-syslog.conf");
}
inline QString rulesPath()
{
    return QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules");
}
inline QString mainPath()
{
    return QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
}
inline QString rotationPath()
{
    return QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
}
