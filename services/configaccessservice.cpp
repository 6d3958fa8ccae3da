// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configaccessservice.h"

#include "actionids.h"

#include <QFile>
#include <QTextStream>

ConfigAccessService::ConfigAccessService(QObject *parent)
    : AccessService(parent)
{
}

bool ConfigAccessService::writeConfig(const QString &path, QByteArray content)
{
    KAuth::Action action = makeAction(ActionIds::writeConfig);
    action.setArguments({
        {QStringLiteral("action"), QStringLiteral("writeConfig")},
        {QStringLiteral("path"), path},
        {QStringLiteral("content"), content},
    });
    return execute(action);
}

bool ConfigAccessService::writeConfig(const QString &path, const QStringList &lines)
{
    return writeConfig(path, contentOf(lines));
}

QByteArray ConfigAccessService::contentOf(const QStringList &lines)
{
    QByteArray content;
    QTextStream stream(&content, QIODevice::WriteOnly);
    for (const QString &line : lines)
        stream << line << QLatin1Char('\n');
    stream.flush();
    return content;
}

bool ConfigAccessService::exportConfig(const QString &path)
{
    // Stays open until the helper is done: it proves that the user may write there.
    QFile archive(path);
    if (!archive.open(QIODevice::WriteOnly)) {
        setLastError(archive.errorString());
        return false;
    }
    KAuth::Action action = makeAction(ActionIds::exportConfig);
    action.addArgument(QStringLiteral("output"), path);
    return execute(action);
}

bool ConfigAccessService::importConfig(const QString &path)
{
    QFile archive(path);
    if (!archive.open(QIODevice::ReadOnly)) {
        setLastError(archive.errorString());
        return false;
    }
    KAuth::Action action = makeAction(ActionIds::importConfig);
    action.addArgument(QStringLiteral("input"), path);
    return execute(action);
}
