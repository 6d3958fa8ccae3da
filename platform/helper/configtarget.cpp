// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configtarget.h"

#include <KLocalizedString>
#include <QList>

namespace AdminEventsHelper {

namespace {

QList<ConfigTarget> closedSet()
{
    const QString etc = QStringLiteral("etc");
    return {
        {{etc}, QStringLiteral("nivra-syslog.conf"), ConfigTarget::Format::EventSettings, 0644},
        {{etc, QStringLiteral("audit"), QStringLiteral("rules.d")},
         QStringLiteral("nivra-syslog.rules"),
         ConfigTarget::Format::AuditRules,
         0640},
        {{etc, QStringLiteral("syslog-ng"), QStringLiteral("conf.d")},
         QStringLiteral("mod-nivra.conf"),
         ConfigTarget::Format::Text,
         0644},
        {{etc, QStringLiteral("logrotate.d")},
         QStringLiteral("syslog-ng-mod-nivra"),
         ConfigTarget::Format::Text,
         0644},
    };
}

} // namespace

QString ConfigTarget::path() const
{
    return QLatin1Char('/') + directory.join(QLatin1Char('/')) + QLatin1Char('/') + fileName;
}

Result<ConfigTarget> ConfigTarget::find(const QString &path)
{
    const QList<ConfigTarget> targets = closedSet();
    for (const ConfigTarget &target : targets) {
        if (target.path() == path) {
            return target;
        }
    }
    return Outcome::failure(i18n("\"%1\" is not a file that may be written by this service.", path));
}

} // namespace AdminEventsHelper
