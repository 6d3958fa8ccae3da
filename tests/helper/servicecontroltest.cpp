// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "servicecontrol.h"
#include "commandrunner.h"
#include "standinsystemctl.h"

#include <QElapsedTimer>
#include <QTest>

#include <cerrno>
#include <csignal>

using namespace AdminEventsHelper;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(AdminEventsHelper::ServiceCommand)

class ServiceControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void runsTheServiceManager_data();
    void runsTheServiceManager();
    void handsOnNoEnvironment();
    void killsAHangingProgramWithAllItStarted();
    void aHangingAuditDaemonLeavesTimeForTheLogger();
    void doesNotWaitForADaemonLeftBehind();
    void namesAProgramThatCannotBeStarted();
    void namesASignalThatEndedTheProgram();

private:
    std::unique_ptr<StandInSystemctl> m_systemctl;
};

void ServiceControlTest::init()
{
    m_systemctl = std::make_unique<StandInSystemctl>();
    QVERIFY(m_systemctl->isReady());
}

void ServiceControlTest::runsTheServiceManager_data()
{
    QTest::addColumn<ServiceCommand>("command");
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("errorHolds");
    const auto calls = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(',')); };
    const QByteArray auditdStopped = "[ \"$*\" != 'status auditd' ] || exit 3\n";
    const QByteArray auditdFails
        = "case \"$*\" in st*s' auditd') exit 3;; *auditd) echo no rules >&2; exit 1;; esac\n";
    const QByteArray loggerFails = "case \"$*\" in *syslog-ng) echo bad line 7; exit 5;; esac\n";

    QTest::newRow("start beside a running audit daemon")
        << ServiceCommand::Start << QByteArray() << calls("status auditd,start syslog-ng,status syslog-ng")
        << QStringList();
    QTest::newRow("start both") << ServiceCommand::Start << auditdStopped
                                << calls("status auditd,start auditd,start syslog-ng,status syslog-ng")
                                << QStringList();
    QTest::newRow("stop the logger only")
        << ServiceCommand::Stop << QByteArray() << calls("stop syslog-ng") << QStringList();
    QTest::newRow("restart both") << ServiceCommand::Restart << QByteArray()
                                  << calls("restart auditd,restart syslog-ng,status syslog-ng")
                                  << QStringList();
    QTest::newRow("start without the audit daemon")
        << ServiceCommand::Start << auditdFails
        << calls("status auditd,start auditd,start syslog-ng,status syslog-ng")
        << QStringList{QStringLiteral("syslog-ng was started, but"),
                       QStringLiteral("start auditd\" failed with code 1"), QStringLiteral("no rules")};
    QTest::newRow("restart without the audit daemon")
        << ServiceCommand::Restart << auditdFails
        << calls("restart auditd,restart syslog-ng,status syslog-ng")
        << QStringList{QStringLiteral("syslog-ng was restarted, but"),
                       QStringLiteral("restart auditd\" failed with code 1"), QStringLiteral("no rules")};
    QTest::newRow("a logger that ends at once")
        << ServiceCommand::Restart
        << QByteArray("[ \"$*\" != 'status syslog-ng' ] || { echo died; exit 3; }\n")
        << calls("restart auditd,restart syslog-ng,status syslog-ng")
        << QStringList{QStringLiteral("syslog-ng was started, but ended at once"), QStringLiteral("died")};
    for (const auto &[command, text] :
         {std::pair(ServiceCommand::Start, "status auditd,start syslog-ng"),
          std::pair(ServiceCommand::Stop, "stop syslog-ng"),
          std::pair(ServiceCommand::Restart, "restart auditd,restart syslog-ng")}) {
        QTest::newRow(qPrintable(QLatin1String("failing logger: ") + QLatin1String(text)))
            << command << loggerFails << calls(text)
            << QStringList{QStringLiteral("syslog-ng\" failed with code 5"), QStringLiteral("bad line 7")};
    }
    QTest::newRow("both fail") << ServiceCommand::Restart << QByteArray(auditdFails + loggerFails)
                               << calls("restart auditd,restart syslog-ng")
                               << QStringList{QStringLiteral("restart auditd\" failed with code 1"),
                                              QStringLiteral("restart syslog-ng\" failed with code 5")};
}

void ServiceControlTest::runsTheServiceManager()
{
    QFETCH(ServiceCommand, command);
    QFETCH(QByteArray, behaviour);
    QFETCH(QStringList, errorHolds);
    QVERIFY(m_systemctl->behave(behaviour));
    const Outcome outcome = ServiceControl(m_systemctl->program()).run(command);
    QTEST(m_systemctl->calls(), "calls");
    QCOMPARE(outcome.ok(), errorHolds.isEmpty());
    for (const QString &text : errorHolds) {
        QVERIFY2(outcome.error().contains(text), qPrintable(outcome.error()));
    }
}

void ServiceControlTest::handsOnNoEnvironment()
{
    qputenv("ADMINEVENTS_SECRET", "secret");
    qputenv("LD_BIND_NOW", "1");
    const Outcome outcome = ServiceControl(m_systemctl->program()).run(ServiceCommand::Stop);
    qunsetenv("ADMINEVENTS_SECRET");
    qunsetenv("LD_BIND_NOW");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QStringList names;
    for (const QByteArray &line : m_systemctl->note(QStringLiteral("environment")).split('\n')) {
        const QString name = QString::fromLocal8Bit(line.left(line.indexOf('=')));
        // The shell adds these itself.
        if (!line.isEmpty() && name != QLatin1String("PWD") && name != QLatin1String("_")
            && name != QLatin1String("SHLVL") && name != QLatin1String("OLDPWD")) {
            names << name;
        }
    }
    names.sort();
    QCOMPARE(names, (QStringList{QStringLiteral("LANG"), QStringLiteral("PATH")}));
    QCOMPARE(m_systemctl->note(QStringLiteral("working-directory")), QByteArray("/\n"));
}

void ServiceControlTest::killsAHangingProgramWithAllItStarted()
{
    QVERIFY(m_systemctl->behave("echo waiting for godot\nsleep 60 &\necho $! > \"$here/sleeper\"\nwait\n"));
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = ServiceControl(m_systemctl->program(), 700ms).run(ServiceCommand::Stop);
    QVERIFY(timer.elapsed() < 10000);
    QVERIFY2(outcome.error().contains(QLatin1String("stop syslog-ng\" did not end within 1 second")),
             qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("waiting for godot")), qPrintable(outcome.error()));
    const QByteArray sleeper = m_systemctl->note(QStringLiteral("sleeper")).trimmed();
    QVERIFY(sleeper.toInt() > 1);
    const auto runs = [&sleeper] {
        const QByteArray stat = getFile(QStringLiteral("/proc/%1/stat").arg(sleeper.toInt()));
        return !stat.isEmpty() && !stat.contains(") Z ");
    };
    QTRY_VERIFY(!runs());
}

void ServiceControlTest::aHangingAuditDaemonLeavesTimeForTheLogger()
{
    QVERIFY(m_systemctl->behave("case \"$*\" in *auditd) sleep 60;; esac\n"));
    const Outcome outcome = ServiceControl(m_systemctl->program(), 6000ms).run(ServiceCommand::Restart);
    QCOMPARE(m_systemctl->calls(),
             (QStringList{QStringLiteral("restart auditd"), QStringLiteral("restart syslog-ng"),
                          QStringLiteral("status syslog-ng")}));
    QVERIFY2(outcome.error().contains(QLatin1String("syslog-ng was restarted")), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("restart auditd\" did not end")),
             qPrintable(outcome.error()));
}

void ServiceControlTest::doesNotWaitForADaemonLeftBehind()
{
    QVERIFY(m_systemctl->behave("sleep 20 &\necho $! > \"$here/sleeper\"\nexit 0\n"));
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = ServiceControl(m_systemctl->program()).run(ServiceCommand::Stop);
    const qint64 elapsed = timer.elapsed();
    const int sleeper = m_systemctl->note(QStringLiteral("sleeper")).trimmed().toInt();
    QVERIFY(sleeper > 1);
    QCOMPARE(::kill(sleeper, SIGKILL), 0);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QVERIFY2(elapsed < 10000, "the daemon was waited for");
}

void ServiceControlTest::namesAProgramThatCannotBeStarted()
{
    const QString absent = m_systemctl->program() + QLatin1String("-absent");
    const Outcome outcome = ServiceControl(absent).run(ServiceCommand::Stop);
    QVERIFY2(outcome.error().contains(absent), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("could not be started")), qPrintable(outcome.error()));
}

void ServiceControlTest::namesASignalThatEndedTheProgram()
{
    QVERIFY(m_systemctl->behave("kill -9 $$\n"));
    const Outcome outcome = ServiceControl(m_systemctl->program()).run(ServiceCommand::Stop);
    QVERIFY2(outcome.error().contains(QLatin1String("was ended by a signal")), qPrintable(outcome.error()));
}

QTEST_GUILESS_MAIN(ServiceControlTest)

#include "servicecontroltest.moc"
