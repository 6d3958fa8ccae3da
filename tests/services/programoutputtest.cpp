// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "programoutput.h"
#include "stagedprogram.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

namespace {
constexpr int limit = 20000; // ms; far more than any program here takes

const QString name = QStringLiteral("program");

/// The process whose number a program left in "pid" is gone, and not waiting to be waited for.
bool isGone(const StagedPrograms &programs)
{
    const QStringList lines = programs.lines(QStringLiteral("pid"));
    return !lines.isEmpty() && kill(lines.first().toInt(), 0) != 0;
}
} // namespace

class ProgramOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOutputIsWholeAndTheArgumentsArriveAsGiven()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "printf '%s|' \"$@\"; printf '\\0end'"));
        ProgramOutput output(name, {QStringLiteral("a b"), QString(), QStringLiteral("$HOME *")});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>(QByteArray("a b||$HOME *|\0end", 17)));
    }

    void moreThanAPipeHoldsArrives()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "/usr/bin/head -c 1000000 /dev/zero"));
        ProgramOutput output(name, {});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>(QByteArray(1000000, '\0')));
    }

    void itRunsBeforeItIsWaitedFor()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "echo out; : > \"$here/ran\""));
        ProgramOutput output(name, {});
        QTRY_VERIFY(QFile::exists(programs.path(QStringLiteral("ran"))));
        QCOMPARE(output.wait(limit), std::optional<QByteArray>("out\n"));
    }

    void itsInputIsEmptyAndABrokenPipeWouldEndIt()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "/bin/cat; /bin/sed -n 's/^SigIgn:[[:space:]]*//p' /proc/self/status"));
        const auto former = signal(SIGPIPE, SIG_IGN);
        ProgramOutput output(name, {});
        const std::optional<QByteArray> text = output.wait(limit);
        signal(SIGPIPE, former);
        bool ok = false;
        const quint64 ignored = text.value_or(QByteArray()).trimmed().toULongLong(&ok, 16);
        QVERIFY(ok);
        QVERIFY(!(ignored & (1ULL << (SIGPIPE - 1))));
    }

    void aFailureHasNoOutput_data()
    {
        QTest::addColumn<QByteArray>("ending");
        QTest::newRow("exit code") << QByteArray("exit 2");
        QTest::newRow("crash") << QByteArray("kill -KILL $$");
    }
    void aFailureHasNoOutput()
    {
        QFETCH(QByteArray, ending);
        StagedPrograms programs;
        QVERIFY(programs.add(name, "echo out\n" + ending));
        ProgramOutput output(name, {});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>());
    }

    void aMissingProgramHasNoOutput()
    {
        StagedPrograms programs;
        ProgramOutput output(name, {});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>());
    }

    void aProgramThatTakesTooLongIsEnded()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "echo out; echo $$ > \"$here/pid\"; exec /bin/sleep 60"));
        ProgramOutput output(name, {});
        QTRY_VERIFY(!programs.lines(QStringLiteral("pid")).isEmpty());
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(output.wait(100), std::optional<QByteArray>());
        QVERIFY(timer.elapsed() >= 100);
        QVERIFY(timer.elapsed() < limit);
        QVERIFY(isGone(programs));
    }

    void whatKeepsTheOutputOpenIsNotWaitedFor()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "/bin/sleep 60 &\necho $! > \"$here/pid\"; echo out"));
        ProgramOutput output(name, {});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>("out\n"));
        QVERIFY(!isGone(programs));
        kill(programs.lines(QStringLiteral("pid")).value(0).toInt(), SIGKILL);
    }

    void aProgramWhoseOutputEndsEarlyIsWaitedFor()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "echo out; exec >&-; /bin/sleep 0.3; exit 3"));
        ProgramOutput output(name, {});
        QCOMPARE(output.wait(limit), std::optional<QByteArray>());
    }

    void nothingIsLeftOfAProgramThatNobodyWaitsFor()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(name, "echo $$ > \"$here/pid\"; exec /bin/sleep 60"));
        {
            const ProgramOutput output(name, {});
            QTRY_VERIFY(!programs.lines(QStringLiteral("pid")).isEmpty());
            QVERIFY(!isGone(programs));
        }
        QVERIFY(isGone(programs));
    }
};

QTEST_GUILESS_MAIN(ProgramOutputTest)

#include "programoutputtest.moc"
