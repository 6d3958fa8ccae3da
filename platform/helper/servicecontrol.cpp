// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "servicecontrol.h"

#include "argumentreader.h"
#include "commandrunner.h"

#include <KLocalizedString>
#include <QDeadlineTimer>
#include <QStandardPaths>

#include <thread>

namespace AdminEventsHelper {

namespace {

constexpr int wordLimit = 100;

QString verb(ServiceCommand command)
{
    switch (command) {
    case ServiceCommand::Start:
        return QStringLiteral("start");
    case ServiceCommand::Stop:
        return QStringLiteral("stop");
    case ServiceCommand::Restart:
        break;
    }
    return QStringLiteral("restart");
}

constexpr std::chrono::milliseconds settlingTime{300};

// Runs commands one after another within a common limit, leaving a fair share for those still to come.
class Sequence
{
public:
    Sequence(const QString &program, std::chrono::milliseconds limit, int length)
        : m_program(program)
        , m_deadline(limit)
        , m_left(length)
    {
    }

    Outcome run(const QString &verb, const QString &unit)
    {
        const auto share = std::chrono::milliseconds(m_deadline.remainingTime()) / m_left;
        --m_left;
        return CommandRunner::run(m_program, {verb, unit}, share);
    }

    /// As run(); a unit that ends right afterwards was not started, whatever the service manager said.
    Outcome runToStay(const QString &verb, const QString &unit)
    {
        const Outcome done = run(verb, unit);
        if (!done) {
            --m_left;
            return done;
        }
        std::this_thread::sleep_for(settlingTime);
        const Outcome state = run(QStringLiteral("status"), unit);
        return state ? done
                     : Outcome::failure(i18n("%1 was started, but ended at once: %2", unit, state.error()));
    }

private:
    QString m_program;
    QDeadlineTimer m_deadline;
    int m_left;
};

} // namespace

Result<ServiceCommand> readServiceCommand(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QString word = reader.string(QStringLiteral("cmd"), wordLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    for (const ServiceCommand command :
         {ServiceCommand::Start, ServiceCommand::Stop, ServiceCommand::Restart}) {
        if (verb(command) == word) {
            return command;
        }
    }
    return Outcome::failure(i18n("\"%1\" is not a command for the logging service.", word));
}

ServiceControl::ServiceControl(const QString &systemctl, std::chrono::milliseconds limit)
    : m_systemctl(systemctl)
    , m_limit(limit)
{
    if (m_systemctl.isEmpty()) {
        // Not from PATH: whoever activates the helper may have set that.
        m_systemctl = QStandardPaths::findExecutable(QStringLiteral("systemctl"),
                                                     {QStringLiteral("/usr/bin"), QStringLiteral("/bin")});
    }
}

Outcome ServiceControl::run(ServiceCommand command) const
{
    if (m_systemctl.isEmpty()) {
        return Outcome::failure(i18n("The program \"systemctl\" is neither in /usr/bin nor in /bin."));
    }
    const QString auditd = QStringLiteral("auditd");
    const QString logger = QStringLiteral("syslog-ng");
    Outcome audit = Outcome::success();
    Outcome logging = Outcome::success();
    if (command == ServiceCommand::Start) {
        Sequence sequence(m_systemctl, m_limit, 4);
        const bool running = sequence.run(QStringLiteral("status"), auditd).ok();
        if (!running) {
            audit = sequence.run(verb(command), auditd);
        }
        logging = sequence.runToStay(verb(command), logger);
    } else if (command == ServiceCommand::Restart) {
        Sequence sequence(m_systemctl, m_limit, 3);
        audit = sequence.run(verb(command), auditd);
        logging = sequence.runToStay(verb(command), logger);
    } else {
        logging = Sequence(m_systemctl, m_limit, 1).run(verb(command), logger);
    }
    if (audit) {
        return logging;
    }
    if (!logging) {
        return Outcome::failure(audit.error() + QLatin1Char('\n') + logging.error());
    }
    return Outcome::failure(
        command == ServiceCommand::Start
            ? i18n("syslog-ng was started, but the audit daemon was not: %1", audit.error())
            : i18n("syslog-ng was restarted, but the audit daemon was not, so that it may still "
                   "use the former rules: %1",
                   audit.error()));
}

} // namespace AdminEventsHelper
