// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samples.h"

#include <loggingsandbox.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <csignal>

/** The program on the audit daemon's lines, and a real syslog-ng that logs what it makes of them. */
class RecorderTest : public QObject
{
    Q_OBJECT

private:
    static bool start(QProcess &recorder, const LoggingSandbox &sandbox,
                      const QStringList &arguments = QStringList())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ADMINEVENTS_ROOT"), sandbox.below(QString()));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        recorder.setProcessEnvironment(environment);
        recorder.setProcessChannelMode(QProcess::MergedChannels);
        recorder.start(QStringLiteral(RECORDER), arguments);
        return recorder.waitForStarted();
    }
    static void prepare(const LoggingSandbox &sandbox)
    {
        sandbox.write(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g.json"),
                      "{\"group-params\": {\"name_en\": \"Group\", \"order\": \"1\"}}");
        sandbox.write(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g/e.json"),
                      "{\"event-group\": \"g\", \"enabled\": \"1\", \"message-type\": \"file\", "
                      "\"message-params\": {\"message_id\": \"file_changed\"}, \"extend-message-params\": "
                      "{\"path\": \"${.auditd.name}\"}, \"filter-values\": {\".auditd.type\": \"SYSCALL\", "
                      "\".auditd.key\": \"/etc/passwd, nivra-subject-open\"}}");
    }
    static bool startWithService(QProcess &recorder, LoggingSandbox &sandbox)
    {
        prepare(sandbox);
        return sandbox.start() && start(recorder, sandbox);
    }

private Q_SLOTS:
    void auditEventsReachTheEventLog();
    void anEventWithoutAnEndIsRecordedToo();
    void theDaemonsSignalsAreHeeded();
    void messagesOfTheJournalReachTheEventLog();
    void withoutTheServiceNothingHangs();
};

void RecorderTest::auditEventsReachTheEventLog()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QProcess recorder;
    QVERIFY2(startWithService(recorder, sandbox), sandbox.output().constData());
    recorder.write(passwdWritten("1", "\"other\""));
    recorder.write("no line of the daemon\n");
    // What the service itself opens.
    recorder.write(
        passwdWritten("2", "\"nivra-subject-open\"").replace("/usr/bin/vim.basic", "/usr/sbin/syslog-ng"));
    recorder.write(passwdWritten("3").replace("\"passwd\"", "\"first\""));
    // In two pieces.
    const QByteArray last = passwdWritten("4").replace("\"passwd\"", "\"last\"");
    recorder.write(last.left(100));
    QVERIFY(recorder.waitForBytesWritten());
    QTRY_COMPARE(sandbox.logged().size(), 1);
    recorder.write(last.mid(100));
    QTRY_COMPARE(sandbox.logged().size(), 2);
    const auto path = [&](int line) {
        return QJsonDocument::fromJson(sandbox.logged().at(line))
            .object()
            .value(QStringLiteral("MSG"))
            .toObject()
            .value(QStringLiteral("nivra-file"))
            .toObject()
            .value(QStringLiteral("path"))
            .toString();
    };
    QCOMPARE(path(0), QStringLiteral("/etc/first"));
    QCOMPARE(path(1), QStringLiteral("/etc/last"));
    recorder.closeWriteChannel();
    QVERIFY(recorder.waitForFinished());
    QCOMPARE(recorder.exitCode(), 0);
    QCOMPARE(recorder.readAll(), QByteArray());
}

void RecorderTest::anEventWithoutAnEndIsRecordedToo()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QProcess recorder;
    QVERIFY2(startWithService(recorder, sandbox), sandbox.output().constData());
    const QByteArray lines = passwdWritten();
    recorder.write(lines.left(lines.indexOf("type=EOE")));
    QTRY_COMPARE(sandbox.logged().size(), 1);
    recorder.write(passwdWritten("2").split('\n').constFirst() + '\n');
    recorder.closeWriteChannel();
    QVERIFY(recorder.waitForFinished());
    QTRY_COMPARE(sandbox.logged().size(), 2);
}

void RecorderTest::theDaemonsSignalsAreHeeded()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QProcess recorder;
    QVERIFY2(startWithService(recorder, sandbox), sandbox.output().constData());
    recorder.write(passwdWritten("1"));
    QTRY_COMPARE(sandbox.logged().size(), 1);
    QCOMPARE(::kill(pid_t(recorder.processId()), SIGHUP), 0);
    recorder.write(passwdWritten("2"));
    QTRY_COMPARE(sandbox.logged().size(), 2);
    // Of an event whose end is still to come nothing is lost.
    const QByteArray lines = passwdWritten("3");
    recorder.write(lines.left(lines.indexOf("type=EOE")) + passwdWritten("4"));
    QTRY_COMPARE(sandbox.logged().size(), 3);
    QCOMPARE(::kill(pid_t(recorder.processId()), SIGTERM), 0);
    QVERIFY(recorder.waitForFinished());
    QCOMPARE(recorder.exitStatus(), QProcess::NormalExit);
    QTRY_COMPARE(sandbox.logged().size(), 4);
}

void RecorderTest::messagesOfTheJournalReachTheEventLog()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    prepare(sandbox);
    sandbox.write(
        QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g/m.json"),
        "{\"event-group\": \"g\", \"enabled\": \"1\", \"message-type\": \"auth\", \"message-params\": "
        "{\"message_id\": \"login_failed\"}, \"extend-message-params\": {\"user\": "
        "\"${.auth.user}\"}, \"filter-values\": {\"PROGRAM\": \"login\", \"MESSAGE\": \"FAILED\"}}");
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    QProcess recorder;
    QVERIFY(start(recorder, sandbox, {QStringLiteral("--journal")}));
    recorder.write("no line of the journal\n" + passwdWritten());
    recorder.write(
        "{\"SYSLOG_IDENTIFIER\":\"login\",\"MESSAGE\":\"LOGIN ON tty1 BY petrov\",\"_UID\":\"0\"}\n"
        "{\"SYSLOG_IDENTIFIER\":\"login\",\"MESSAGE\":\"FAILED LOGIN FOR 'ivanov'\",\"_UID\":\"0\"}\n");
    QTRY_COMPARE(sandbox.logged().size(), 1);
    QVERIFY2(sandbox.logged().constFirst().contains("\"user\":\"ivanov\""),
             sandbox.logged().constFirst().constData());
    recorder.closeWriteChannel();
    QVERIFY(recorder.waitForFinished());
    QCOMPARE(recorder.readAll(), QByteArray());
}

void RecorderTest::withoutTheServiceNothingHangs()
{
    LoggingSandbox sandbox;
    prepare(sandbox);
    QProcess recorder;
    QVERIFY(start(recorder, sandbox));
    recorder.write(passwdWritten("1"));
    recorder.write(passwdWritten("2"));
    recorder.closeWriteChannel();
    QVERIFY(recorder.waitForFinished(5000));
    QCOMPARE(recorder.exitCode(), 0);
    QCOMPARE(recorder.readAll().count("takes no records"), 1);
}

QTEST_GUILESS_MAIN(RecorderTest)
#include "recordertest.moc"
