// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "stagedprogram.h"

#include <servicestatusreader.h>

#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

/// Staged service managers note each question in "calls".
class ServiceStatusReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothServicesAreToldApart_data()
    {
        QTest::addColumn<int>("auditd");
        QTest::addColumn<int>("syslogNg");
        QTest::newRow("both run") << 0 << 0;
        QTest::newRow("no auditd") << 3 << 0;
        QTest::newRow("no syslog-ng") << 0 << 3;
        QTest::newRow("neither") << 4 << 3;
    }
    void bothServicesAreToldApart()
    {
        QFETCH(int, auditd);
        QFETCH(int, syslogNg);
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("systemctl"),
                             "case \"$*\" in 'status auditd') exit " + QByteArray::number(auditd)
                                 + ";; 'status syslog-ng') exit " + QByteArray::number(syslogNg)
                                 + ";; esac\nexit 9"));
        ServiceStatusReader reader(nullptr);
        QSignalSpy finished(&reader, &ServiceStatusReader::finished);
        reader.read();
        QCOMPARE(finished.size(), 0); // nobody has waited
        QVERIFY(finished.wait());
        QCOMPARE(finished.first(), QVariantList({auditd == 0, syslogNg == 0}));
    }

    void bothQuestionsAreAskedAtTheSameTime()
    {
        // Each waits for the other to have been asked: one after the other, both would give up.
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("systemctl"),
                             "other=auditd; [ \"$2\" = auditd ] && other=syslog-ng\n"
                             ": > \"$here/$2.asked\"\n"
                             "i=0\n"
                             "until [ -e \"$here/$other.asked\" ]; do\n"
                             "  i=$((i+1)); [ $i -gt 80 ] && exit 1\n"
                             "  /bin/sleep 0.05\n"
                             "done\n"
                             "exit 0"));
        ServiceStatusReader reader(nullptr);
        QSignalSpy finished(&reader, &ServiceStatusReader::finished);
        reader.read();
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.first(), QVariantList({true, true}));
    }

    void aQuestionWhileAnotherIsOpenIsAskedAfterwardsAndAnsweredOnce()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("systemctl"), "echo \"$2\" >> \"$here/calls\"\nexit 0"));
        ServiceStatusReader reader(nullptr);
        QSignalSpy finished(&reader, &ServiceStatusReader::finished);
        reader.read();
        reader.read();
        reader.read();
        QVERIFY(finished.wait());
        QCOMPARE(programs.lines(QStringLiteral("calls")).count(QStringLiteral("auditd")), 2);
        QCOMPARE(programs.lines(QStringLiteral("calls")).count(QStringLiteral("syslog-ng")), 2);
        QVERIFY(!finished.wait(300));
        QCOMPARE(finished.size(), 1);
    }

    void anUnusableServiceManagerMeansNotRunning_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("crashing") << QByteArray("kill -KILL $$");
    }
    void anUnusableServiceManagerMeansNotRunning()
    {
        QFETCH(QByteArray, body);
        StagedPrograms programs;
        if (!body.isEmpty()) {
            QVERIFY(programs.add(QStringLiteral("systemctl"), body));
        }
        ServiceStatusReader reader(nullptr);
        QSignalSpy finished(&reader, &ServiceStatusReader::finished);
        reader.read();
        reader.read(); // which is asked when the first has failed
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(finished.first(), QVariantList({false, false}));
    }

    void aReaderThatGoesEndsItsQuestions()
    {
        StagedPrograms programs;
        QVERIFY(
            programs.add(QStringLiteral("systemctl"), "echo $$ >> \"$here/processes\"\nexec /bin/sleep 100"));
        QStringList processes;
        {
            ServiceStatusReader reader(nullptr);
            reader.read();
            QTRY_COMPARE(programs.lines(QStringLiteral("processes")).size(), 2);
            processes = programs.lines(QStringLiteral("processes"));
        }
        for (const QString &process : qAsConst(processes)) {
            QVERIFY(!QFileInfo::exists(QStringLiteral("/proc/") + process));
        }
    }
};

QTEST_GUILESS_MAIN(ServiceStatusReaderTest)
#include "servicestatusreadertest.moc"
