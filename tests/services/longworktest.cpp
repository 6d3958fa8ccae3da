// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include <longwork.h>

#include <QApplication>
#include <QTest>
#include <QTimer>

class LongWorkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCursorIsThatOfABusyProgramUntilTheEnd()
    {
        QVERIFY(!QApplication::overrideCursor());
        {
            const LongWork work;
            QVERIFY(QApplication::overrideCursor());
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
        }
        QVERIFY(!QApplication::overrideCursor());
    }

    void endedEarlyItGivesTheCursorBackOnce()
    {
        QApplication::setOverrideCursor(Qt::CrossCursor);
        {
            LongWork work;
            work.end();
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
        }
        QVERIFY(QApplication::overrideCursor());
        QApplication::restoreOverrideCursor();
        QVERIFY(!QApplication::overrideCursor());
    }

    void theEventLoopTurnsInAPauseThatIsDue()
    {
        LongWork work;
        int ticks = 0;
        QTimer::singleShot(0, this, [&ticks] { ++ticks; });
        work.pause(); // too soon
        QCOMPARE(ticks, 0);
        QTest::qSleep(40);
        work.pause();
        QCOMPARE(ticks, 1);
    }

    void theEventLoopTurnsAtOnceWhereItIsAskedTo()
    {
        LongWork work;
        int ticks = 0;
        const auto count = [&ticks] { ++ticks; };
        QTimer::singleShot(0, this, count);
        work.turn();
        QCOMPARE(ticks, 1);
        QTimer::singleShot(0, this, count);
        work.pause(); // the loop has just turned
        QCOMPARE(ticks, 1);
        work.turn();
        QCOMPARE(ticks, 2);
    }

    void aLongFirstPieceIsFollowedByUsualOnes()
    {
        LongWork work;
        work.setFirstPiece(10000);
        int ticks = 0;
        const auto count = [&ticks] { ++ticks; };
        QTimer::singleShot(0, this, count);
        QTest::qSleep(40);
        work.pause();
        QCOMPARE(ticks, 0);
        work.turn();
        QCOMPARE(ticks, 1);
        QTimer::singleShot(0, this, count);
        QTest::qSleep(40);
        work.pause();
        QCOMPARE(ticks, 2);
    }
};

QTEST_MAIN(LongWorkTest)
#include "longworktest.moc"
