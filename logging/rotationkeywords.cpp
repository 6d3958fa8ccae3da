// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "rotationkeywords.h"

namespace RotationKeywords {
const QStringList &directives()
{
    static const QStringList keywords{
        QStringLiteral("rotate"),     QStringLiteral("create"),        QStringLiteral("dateext"),
        QStringLiteral("compress"),   QStringLiteral("delaycompress"), QStringLiteral("extension"),
        QStringLiteral("mail"),       QStringLiteral("maxage"),        QStringLiteral("missingok"),
        QStringLiteral("olddir"),     QStringLiteral("start"),         QStringLiteral("size"),
        QStringLiteral("notifempty"), QStringLiteral("copytruncate"),  QStringLiteral("hourly"),
        QStringLiteral("daily"),      QStringLiteral("weekly"),        QStringLiteral("monthly"),
        QStringLiteral("yearly"),     QStringLiteral("sharedscripts")};
    return keywords;
}

const QStringList &periods()
{
    static const QStringList keywords{QStringLiteral("daily"), QStringLiteral("weekly"),
                                      QStringLiteral("monthly"), QStringLiteral("yearly")};
    return keywords;
}

bool isDirective(const QString &keyword)
{
    return directives().contains(keyword);
}

bool isSwitch(const QString &keyword)
{
    static const QStringList withValue{QStringLiteral("rotate"),    QStringLiteral("create"),
                                       QStringLiteral("extension"), QStringLiteral("mail"),
                                       QStringLiteral("maxage"),    QStringLiteral("olddir"),
                                       QStringLiteral("start"),     QStringLiteral("size")};
    return isDirective(keyword) && !withValue.contains(keyword);
}

bool isScript(const QString &keyword)
{
    return keyword == QLatin1String("prerotate") || keyword == QLatin1String("postrotate");
}

bool isPeriod(const QString &keyword)
{
    return periods().contains(keyword);
}
} // namespace RotationKeywords
