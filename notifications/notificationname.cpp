// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationname.h"

#include <systempaths.h>

namespace {
const QLatin1String prefix("mod-nivra-");
const QLatin1String suffix(".conf");

bool isSeparator(QChar c)
{
    return c == QLatin1Char('_') || c == QLatin1Char('-');
}
} // namespace

QString NotificationName::key(const QString &messageId)
{
    QString key = messageId;
    for (int i = 0; i + 1 < key.size(); ++i) {
        if (isSeparator(key.at(i))) {
            key[i + 1] = key.at(i + 1).toUpper();
        }
    }
    return key.remove(QLatin1Char('_')).remove(QLatin1Char('-'));
}

QString NotificationName::fragmentPath(const QString &messageId)
{
    return SystemPaths::fragmentDirectory() + QLatin1Char('/') + prefix
        + QString(messageId).replace(QLatin1Char('-'), QLatin1Char('_')) + suffix;
}

bool NotificationName::isFragmentFile(const QString &fileName)
{
    return fileName.startsWith(prefix) && fileName.endsWith(suffix);
}

QString NotificationName::fromFragmentFile(const QString &fileName)
{
    return QString(fileName).remove(prefix).remove(suffix);
}

QString NotificationName::canonical(const QString &messageId)
{
    return QString(messageId).replace(QLatin1Char('_'), QLatin1Char('-'));
}
