// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configtarget.h"

#include <KLocalizedString>

#include <algorithm>

namespace AdminEventsHelper {

QList<ConfigTarget> ConfigTarget::all()
{
    const QString etc = QStringLiteral("etc");
    return {
        {{etc}, QStringLiteral("nivra-syslog.conf"), Format::EventSettings, 0644},
        {{etc, QStringLiteral("audit"), QStringLiteral("rules.d")},
         QStringLiteral("nivra-syslog.rules"),
         Format::AuditRules,
         0640},
        {{etc, QStringLiteral("audit"), QStringLiteral("rules.d")},
         QStringLiteral("nivra-syslog-subjects.rules"),
         Format::SubjectRules,
         0640,
         false},
        {{etc, QStringLiteral("syslog-ng"), QStringLiteral("conf.d")},
         QStringLiteral("mod-nivra.conf"),
         Format::MainConfiguration,
         0644},
        {{etc, QStringLiteral("logrotate.d")}, QStringLiteral("syslog-ng-mod-nivra"), Format::Rotation, 0644},
    };
}

QString ConfigTarget::path() const
{
    return QLatin1Char('/') + directory.join(QLatin1Char('/')) + QLatin1Char('/') + fileName;
}

ConfigTarget ConfigTarget::of(Format format)
{
    const QList<ConfigTarget> targets = all();
    const auto found = std::find_if(targets.cbegin(), targets.cend(),
                                    [format](const ConfigTarget &target) { return target.format == format; });
    Q_ASSERT(found != targets.cend());
    return *found;
}

Result<ConfigTarget> ConfigTarget::find(const QString &path)
{
    const QList<ConfigTarget> targets = all();
    for (const ConfigTarget &target : targets) {
        if (target.isWrittenByPath && target.path() == path) {
            return target;
        }
    }
    return Outcome::failure(i18n("\"%1\" is not a file that may be written by this service.", path));
}

} // namespace AdminEventsHelper
