// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "leashedprocess.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

// kill(-group, 0) also counts zombies that nobody reaps, as in a container without an init.
bool groupRuns(qint64 group)
{
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &process : processes) {
        QFile stat(QLatin1String("/proc/") + process + QLatin1String("/stat"));
        if (!process.at(0).isDigit() || !stat.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray line = stat.readAll();
        // "pid (name) state parent group ...": the name may itself hold blanks and brackets.
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 2 && fields.at(0) != "Z" && fields.at(0) != "X"
            && fields.at(2).toLongLong() == group) {
            return true;
        }
    }
    return false;
}

bool endsWithin(qint64 group, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (groupRuns(group)) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::msleep(5);
    }
    return true;
}

} // namespace

LeashedProcess::LeashedProcess(QObject *parent)
    : QProcess(parent)
{
    // Kept: the group may outlive its leader, whose id the base class then forgets.
    connect(this, &QProcess::started, this, [this] { m_group = processId(); });
}

LeashedProcess::~LeashedProcess()
{
    stop();
}

void LeashedProcess::stop()
{
    if (m_group <= 0) {
        return;
    }
    const auto group = static_cast<pid_t>(m_group);
    m_group = 0;
    ::kill(-group, SIGTERM);
    if (!endsWithin(group, 3000)) {
        ::kill(-group, SIGKILL);
        endsWithin(group, 3000);
    }
    waitForFinished(3000);
}

void LeashedProcess::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}
