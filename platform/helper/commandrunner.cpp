// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "commandrunner.h"

#include <KLocalizedString>
#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace AdminEventsHelper {

namespace {

constexpr int shownOutput = 2000;
constexpr int killWaitMs = 2000;

class Child : public QProcess
{
protected:
    void setupChildProcess() override
    {
        // A group of its own, so that a kill reaches what the program started as well.
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    }
};

QString commandText(const QString &program, const QStringList &arguments)
{
    return (QStringList{program} + arguments).join(QLatin1Char(' '));
}

QString withOutput(const QString &text, const QByteArray &output)
{
    const QString shown = QString::fromUtf8(output.right(shownOutput)).trimmed();
    return shown.isEmpty() ? text : text + QLatin1Char('\n') + shown;
}

CommandResult ended(const QString &text, QProcess &child)
{
    const QByteArray output = child.readAll();
    return {Outcome::failure(withOutput(text, output)), output};
}

} // namespace

Outcome CommandRunner::run(const QString &program, const QStringList &arguments,
                           std::chrono::milliseconds limit)
{
    return capture(program, arguments, limit).outcome;
}

CommandResult CommandRunner::capture(const QString &program, const QStringList &arguments,
                                     std::chrono::milliseconds limit)
{
    const QString command = commandText(program, arguments);
    Child child;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/sbin:/usr/bin:/sbin:/bin"));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    child.setProcessEnvironment(environment);
    child.setWorkingDirectory(QStringLiteral("/"));
    child.setStandardInputFile(QProcess::nullDevice());
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(program, arguments);
    if (!child.waitForStarted()) {
        return {Outcome::failure(i18n("\"%1\" could not be started: %2", command, child.errorString())), {}};
    }
    const auto group = static_cast<pid_t>(child.processId());
    if (!child.waitForFinished(static_cast<int>(limit.count()))) {
        ::kill(-group, SIGKILL);
        child.waitForFinished(killWaitMs);
        CommandResult result
            = ended(i18n("\"%1\" did not end within %2 seconds.", command,
                         QString::number(std::chrono::ceil<std::chrono::seconds>(limit).count())),
                    child);
        result.timedOut = true;
        return result;
    }
    if (child.exitStatus() != QProcess::NormalExit) {
        return ended(i18n("\"%1\" was ended by a signal.", command), child);
    }
    if (child.exitCode() != 0) {
        return ended(i18n("\"%1\" failed with code %2.", command, QString::number(child.exitCode())), child);
    }
    return {Outcome::success(), child.readAll()};
}

} // namespace AdminEventsHelper
