// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "snghandler.h"
#include "stagedprogram.h"

#include <KLocalizedString>

#include <QSignalSpy>
#include <QTest>

#include <memory>

class SngHandlerTest : public QObject
{
    Q_OBJECT

private:
    /** Answers "status" by the files auditd.code and syslog-ng.code, everything else by switch.code. */
    [[nodiscard]] bool stage(int auditd, int syslogNg, int switching = 0) const
    {
        return m_programs->put(QStringLiteral("auditd.code"), QByteArray::number(auditd))
            && m_programs->put(QStringLiteral("syslog-ng.code"), QByteArray::number(syslogNg))
            && m_programs->put(QStringLiteral("switch.code"), QByteArray::number(switching))
            && m_programs->add(QStringLiteral("systemctl"),
                               "echo \"$*\" >> \"$here/calls\"\n"
                               "file=\"$here/switch.code\"\n"
                               "[ \"$1\" = status ] && file=\"$here/$2.code\"\n"
                               "read code < \"$file\"\n"
                               "exit $code");
    }
    [[nodiscard]] QStringList calls() const { return m_programs->lines(QStringLiteral("calls")); }

    std::unique_ptr<StagedPrograms> m_programs;

private Q_SLOTS:
    void initTestCase() { KLocalizedString::setLanguages({QStringLiteral("en")}); }
    void init() { m_programs = std::make_unique<StagedPrograms>(); }
    void cleanup() { m_programs.reset(); }

    void thereIsOneHandler()
    {
        QVERIFY(SngHandler::Instance());
        QCOMPARE(SngHandler::Instance(), SngHandler::Instance());
        QVERIFY(SngHandler::Instance()->parent() == nullptr);
    }

    void bothServicesMustRun_data()
    {
        QTest::addColumn<int>("auditd");
        QTest::addColumn<int>("syslogNg");
        QTest::addColumn<bool>("runs");
        QTest::addColumn<QString>("toolTip");
        QTest::newRow("both") << 0 << 0 << true << QStringLiteral("auditd: on, syslog-ng: on");
        QTest::newRow("no auditd") << 3 << 0 << false << QStringLiteral("auditd: off, syslog-ng: on");
        QTest::newRow("no syslog-ng") << 0 << 3 << false << QStringLiteral("auditd: on, syslog-ng: off");
        QTest::newRow("neither") << 3 << 4 << false << QStringLiteral("auditd: off, syslog-ng: off");
    }
    void bothServicesMustRun()
    {
        QFETCH(int, auditd);
        QFETCH(int, syslogNg);
        QFETCH(bool, runs);
        QFETCH(QString, toolTip);
        QVERIFY(stage(auditd, syslogNg));
        QCOMPARE(SngHandler::Instance()->getStatus(), runs);
        QCOMPARE(SngHandler::Instance()->toolTip(), toolTip);
        QCOMPARE(calls(), QStringList({QStringLiteral("status syslog-ng"), QStringLiteral("status auditd")}));
        QCOMPARE(SngHandler::Instance()->getAuditdStatus(), auditd == 0);
    }

    void anUnusableServiceManagerMeansNotRunning_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("crashing") << QByteArray("kill -KILL $$");
        QTest::newRow("failing") << QByteArray("exit 1");
    }
    void anUnusableServiceManagerMeansNotRunning()
    {
        QFETCH(QByteArray, body);
        if (!body.isEmpty())
            QVERIFY(m_programs->add(QStringLiteral("systemctl"), body));
        SngHandler::Instance()->setToolTip(true, true);
        QVERIFY(!SngHandler::Instance()->getStatus());
        QVERIFY(!SngHandler::Instance()->getAuditdStatus());
        QCOMPARE(SngHandler::Instance()->toolTip(), QStringLiteral("auditd: off, syslog-ng: off"));
        QSignalSpy switched(SngHandler::Instance(), &SngHandler::sngSwitched);
        SngHandler::Instance()->syslogNgStart();
        QCOMPARE(switched.size(), 1);
    }

    void switchingTouchesTheAuditDaemonOnlyAsNeeded_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("auditd");
        QTest::addColumn<QStringList>("expected");
        const auto list = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char('|')); };
        QTest::newRow("start, auditd runs")
            << int(SngHandler::start) << 0 << list("status auditd|start syslog-ng");
        QTest::newRow("start, auditd stopped")
            << int(SngHandler::start) << 3 << list("status auditd|start auditd|start syslog-ng");
        QTest::newRow("stop, auditd runs") << int(SngHandler::stop) << 0 << list("stop syslog-ng");
        QTest::newRow("stop, auditd stopped") << int(SngHandler::stop) << 3 << list("stop syslog-ng");
        QTest::newRow("restart, auditd runs")
            << int(SngHandler::restart) << 0 << list("restart auditd|restart syslog-ng");
        QTest::newRow("restart, auditd stopped")
            << int(SngHandler::restart) << 3 << list("restart auditd|restart syslog-ng");
    }
    void switchingTouchesTheAuditDaemonOnlyAsNeeded()
    {
        QFETCH(int, operation);
        QFETCH(int, auditd);
        QFETCH(QStringList, expected);
        QVERIFY(stage(auditd, 0));
        const SngHandler *const handler = SngHandler::Instance();
        QSignalSpy switched(handler, &SngHandler::sngSwitched);
        switch (operation) {
        case SngHandler::start:
            handler->syslogNgStart();
            break;
        case SngHandler::stop:
            handler->syslogNgStop();
            break;
        default:
            handler->syslogNgRestart();
        }
        QCOMPARE(calls(), expected);
        QCOMPARE(switched.size(), 1);
    }

    void aFailedSwitchIsAnnouncedAllTheSame()
    {
        QVERIFY(stage(3, 3, 5));
        QSignalSpy switched(SngHandler::Instance(), &SngHandler::sngSwitched);
        SngHandler::Instance()->syslogNgSwitch(SngHandler::restart);
        QCOMPARE(switched.size(), 1);
        QCOMPARE(calls().last(), QStringLiteral("restart syslog-ng"));
    }

    void theAuditDaemonCanBeSwitchedAlone()
    {
        QVERIFY(stage(3, 3));
        QSignalSpy switched(SngHandler::Instance(), &SngHandler::sngSwitched);
        SngHandler::Instance()->auditdStart();
        SngHandler::Instance()->auditdRestart();
        QCOMPARE(calls(), QStringList({QStringLiteral("start auditd"), QStringLiteral("restart auditd")}));
        QCOMPARE(switched.size(), 0);
    }
};

QTEST_GUILESS_MAIN(SngHandlerTest)

#include "snghandlertest.moc"
