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

// The weight of a step that loads audit rules, which takes long where there are many, beside one that only
// starts a program or asks for its state.
constexpr int loadingWeight = 4;

// Runs commands one after another within a common limit, leaving a fair share for those still to come.
class Sequence
{
public:
    /// @param weight of all steps together
    Sequence(const QString &program, std::chrono::milliseconds limit, int weight)
        : m_program(program)
        , m_deadline(limit)
        , m_left(weight)
    {
    }

    Outcome run(const QString &verb, const QString &unit) { return runLoading(verb, unit, 1).outcome; }

    CommandResult runLoading(const QString &verb, const QString &unit, int weight = loadingWeight)
    {
        return CommandRunner::capture(m_program, {verb, unit}, share(weight));
    }

    /// As run(); a unit that ends right afterwards was not started, whatever the service manager said.
    Outcome runToStay(const QString &verb, const QString &unit)
    {
        const Outcome done = run(verb, unit);
        if (!done) {
            return done;
        }
        std::this_thread::sleep_for(settlingTime);
        const Outcome state = run(QStringLiteral("status"), unit);
        return state ? done
                     : Outcome::failure(i18n("%1 was started, but ended at once: %2", unit, state.error()));
    }

    /// Leaves a step out; those still to come have its time.
    void skip(int weight) { m_left -= weight; }

    Outcome load(const AuditRulesLoader &loader) { return loader.load(share(loadingWeight)); }

private:
    std::chrono::milliseconds share(int weight)
    {
        const auto share = std::chrono::milliseconds(m_deadline.remainingTime()) * weight / m_left;
        m_left -= weight;
        return share;
    }

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

struct ServiceControl::Results
{
    Outcome audit = Outcome::success();
    Outcome rules = Outcome::success();
    Outcome logging = Outcome::success();
    bool loadedRules = false;
};

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
    if (command == ServiceCommand::Stop) {
        return Sequence(m_systemctl, m_limit, 1).run(verb(command), logger);
    }
    constexpr int loggerWeight = 2; // its start, and a look whether it stays
    const int asking = command == ServiceCommand::Start ? 1 : 0;
    const int loading = m_rulesLoader ? loadingWeight : 0;
    Sequence sequence(m_systemctl, m_limit, asking + loadingWeight + loading + loggerWeight);
    Results results;
    bool stillLoads = false;
    if (command == ServiceCommand::Restart || !sequence.run(QStringLiteral("status"), auditd)) {
        const CommandResult started = sequence.runLoading(verb(command), auditd);
        results.audit = started.outcome;
        stillLoads = started.timedOut;
    } else {
        sequence.skip(loadingWeight);
    }
    // The daemon loads the rules when it starts; two at once would delete each other's.
    if (m_rulesLoader && !stillLoads) {
        results.rules = sequence.load(*m_rulesLoader);
        results.loadedRules = results.rules.ok();
    } else {
        sequence.skip(loading);
    }
    results.logging = sequence.runToStay(verb(command), logger);
    return summary(command, results);
}

Outcome ServiceControl::summary(ServiceCommand command, const Results &results)
{
    QStringList errors;
    if (!results.audit && !results.logging) {
        errors << results.audit.error() << results.logging.error();
    } else if (!results.logging) {
        errors << results.logging.error();
    } else if (!results.audit && command == ServiceCommand::Start) {
        errors << i18n("syslog-ng was started, but the audit daemon was not: %1", results.audit.error());
    } else if (!results.audit && results.loadedRules) {
        errors << i18n(
            "syslog-ng was restarted and the audit rules were loaded, but the audit daemon was not "
            "restarted: %1",
            results.audit.error());
    } else if (!results.audit) {
        errors << i18n("syslog-ng was restarted, but the audit daemon was not, so that it may still "
                       "use the former rules: %1",
                       results.audit.error());
    }
    if (!results.rules) {
        errors << results.rules.error();
    }
    return errors.isEmpty() ? Outcome::success() : Outcome::failure(errors.join(QLatin1Char('\n')));
}

} // namespace AdminEventsHelper
