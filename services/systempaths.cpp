// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "systempaths.h"

#include <QDir>

QString SystemPaths::root()
{
    const QString configured = qEnvironmentVariable("ADMINEVENTS_ROOT");
    return configured.isEmpty() ? QStringLiteral("/") : QDir::cleanPath(QDir(configured).absolutePath());
}

QString SystemPaths::resolve(const QString &logicalPath)
{
    QStringList parts;
    const QStringList given = logicalPath.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &part : given) {
        if (part == QLatin1String("..")) {
            if (!parts.isEmpty())
                parts.removeLast();
        } else if (part != QLatin1String(".")) {
            parts.append(part);
        }
    }
    const QString base = root();
    if (parts.isEmpty())
        return base;
    const QLatin1String separator(base.endsWith(QLatin1Char('/')) ? "" : "/");
    return base + separator + parts.join(QLatin1Char('/'));
}

QString SystemPaths::eventSettingsDirectory()
{
    return QStringLiteral("/usr/share/syslog-ng-mod-nivra/event-settings");
}

QString SystemPaths::eventSettingsFile()
{
    return QStringLiteral("/etc/nivra-syslog.conf");
}

QString SystemPaths::auditRulesFile()
{
    return QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules");
}

QString SystemPaths::nodeDictionary()
{
    return QStringLiteral("/etc/zep-admin-events/eventsdictionary.json");
}

QString SystemPaths::exampleData()
{
    return QStringLiteral("/etc/zep-admin-events/eventexample.json");
}

QString SystemPaths::daemonDirectory()
{
    return QStringLiteral("/etc/syslog-ng");
}

QString SystemPaths::mainConfiguration()
{
    return QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
}

QString SystemPaths::fragmentDirectory()
{
    return QStringLiteral("/etc/syslog-ng/conf.d");
}

QString SystemPaths::notificationDirectory()
{
    return QStringLiteral("/usr/share/knotifications5");
}

QString SystemPaths::homeRoot()
{
    return QStringLiteral("/home");
}

QString SystemPaths::superuserConfiguration()
{
    return QStringLiteral("/root/.config");
}

QString SystemPaths::rotationFile()
{
    return QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
}

QString SystemPaths::eventLogDirectory()
{
    return QStringLiteral("/vortan/log/nivra/events");
}

QString SystemPaths::eventLogFile()
{
    return QStringLiteral("/vortan/log/nivra/events/events.log");
}

QString SystemPaths::rebootHelper()
{
    return QStringLiteral("/usr/bin/zep-wmfunc");
}
