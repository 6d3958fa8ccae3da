// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "processexecutor.h"
#include "stagedprogram.h"

#include <QElapsedTimer>
#include <QTest>

class ProcessExecutorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theExitCodeAndBothOutputsComeBack()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), "printf 'один '; printf \"$1-$2\" >&2; exit 3"));
        ProcessExecutor executor;
        const auto [code, output] = executor.execProc<-1>(QStringLiteral("tool"),
                                                          {QStringLiteral("two three"), QStringLiteral("*")});
        QCOMPARE(code, 3);
        QCOMPARE(output, QString::fromUtf8("один two three-*"));
    }

    void silenceIsAnEmptyStringAndTheExitCode_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("expected");
        QTest::newRow("success") << QByteArray("exit 0") << 0;
        QTest::newRow("failure") << QByteArray("exit 4") << 4;
    }
    void silenceIsAnEmptyStringAndTheExitCode()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, expected);
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), body));
        ProcessExecutor executor;
        const auto [code, output] = executor.execProc<-1>(QStringLiteral("tool"), {});
        QCOMPARE(code, expected);
        QCOMPARE(output, QString());
    }

    void theOutputEndsAtTheFirstZeroByte()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), "printf 'before\\000after'"));
        ProcessExecutor executor;
        QCOMPARE(executor.execProc<-1>(QStringLiteral("tool"), {}).second, QStringLiteral("before"));
    }

    void outputLargerThanAPipeArrivesWhole()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"),
                             "line=0123456789012345678901234567890123456789\ni=0\n"
                             "while [ $i -lt 5000 ]; do echo $line; i=$((i+1)); done"));
        ProcessExecutor executor;
        QCOMPARE(executor.execProc<-1>(QStringLiteral("tool"), {}).second.size(), 5000 * 41);
    }

    void aProgramThatDoesNotExistIsNotASuccess()
    {
        StagedPrograms programs;
        ProcessExecutor executor;
        const auto [code, output] = executor.execProc<-1>(QStringLiteral("tool"), {});
        QCOMPARE(code, ProcessExecutor::failed);
        QCOMPARE(output, QString());
    }

    void aCrashIsNotASuccess()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), "kill -KILL $$"));
        ProcessExecutor executor;
        QCOMPARE(executor.execProc<-1>(QStringLiteral("tool"), {}).first, int(ProcessExecutor::failed));
    }

    void aProgramBeyondItsLimitIsEndedAndIsNotASuccess()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), "exec /bin/sleep 60"));
        QElapsedTimer timer;
        timer.start();
        {
            ProcessExecutor executor;
            QCOMPARE(executor.execProc<200>(QStringLiteral("tool"), {}).first, int(ProcessExecutor::failed));
        }
        QVERIFY(timer.elapsed() < 30000);
    }

    void inputIsNotWaitedForBeyondTheProgramsEnd()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("tool"), "echo done"));
        ProcessExecutor executor;
        QCOMPARE(executor.execProc<-1>(QStringLiteral("tool"), {}),
                 (std::pair<int, QString>(0, QStringLiteral("done\n"))));
    }
};

QTEST_GUILESS_MAIN(ProcessExecutorTest)

#include "processexecutortest.moc"
