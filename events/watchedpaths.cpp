// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "watchedpaths.h"

namespace {
const QLatin1String separator(", ");
}

QStringList WatchedPaths::fromText(const QString &text)
{
    QStringList paths;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts) {
        if (const QString path = part.simplified(); !path.isEmpty()) {
            paths.append(path);
        }
    }
    paths.removeDuplicates();
    return paths;
}

QString WatchedPaths::toText(const QStringList &paths)
{
    return paths.join(separator);
}

QStringList WatchedPaths::ruleLines(const QStringList &paths, bool opened)
{
    // The newest of these architectures never had the call "open".
    static const QStringList openedForms{
        QStringLiteral("-a always,exit -F arch=x86_64 -F path=%1 -S open,openat -k %1"),
        QStringLiteral("-a always,exit -F arch=armv7l -F path=%1 -S open,openat -k %1"),
        QStringLiteral("-a always,exit -F arch=aarch64 -F path=%1 -S openat -k %1")};
    static const QStringList modifiedForms{QStringLiteral("-w %1 -p wa -k %1")};
    const QStringList &forms = opened ? openedForms : modifiedForms;
    QStringList lines;
    lines.reserve(paths.size() * forms.size());
    for (const QString &path : paths) {
        for (const QString &form : forms) {
            lines.append(QString(form).replace(QLatin1String("%1"), path));
        }
    }
    return lines;
}

QString WatchedPaths::rulesText(const QStringList &paths, bool opened)
{
    return ruleLines(paths, opened).join(separator);
}
