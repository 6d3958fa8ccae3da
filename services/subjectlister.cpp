// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectlister.h"

#include <QProcess>

namespace {

constexpr int waitLimit = 30000; // ms

void startListing(QProcess &process, const QString &database)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("getent"), {database}, QIODevice::ReadOnly);
}

QStringList namesFrom(QProcess &process)
{
    // It may have ended while the other one was waited for; the state tells, the return value does not.
    process.waitForFinished(waitLimit);
    if (process.state() != QProcess::NotRunning || process.error() != QProcess::UnknownError
        || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {};

    QStringList names;
    const QStringList lines
        = QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString name = line.section(QLatin1Char(':'), 0, 0);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

} // namespace

Subjects listSubjects()
{
    QProcess users;
    QProcess groups;
    startListing(users, QStringLiteral("passwd"));
    startListing(groups, QStringLiteral("group"));
    return {namesFrom(users), namesFrom(groups)};
}
