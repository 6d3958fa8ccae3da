// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "finderfixture.h"

/// The buttons and calls that walk from match to match.
class EventFinderStepsTest : public QObject, private FinderFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { show(); }
    void cleanup() { close(); }

    void stepsFollowTheTable_data();
    void stepsFollowTheTable();
    void stepIntoAGroupWithoutEventsTakesTheGroup();
    void stepWithoutSelectionTakesTheFirstRow();
    void stepStartsFromTheFirstSelectedCellInAnyColumn();
    void stepsWithinTheMatchesOnly();
    void selectedRowIsOpenCurrentAndInSight();
};

void EventFinderStepsTest::stepsFollowTheTable_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("forwards");
    QTest::addColumn<QString>("backwards");
    const auto row = [](const char *from, const char *forwards, const char *backwards) {
        QTest::newRow(from) << QString::fromUtf8(from) << QString::fromUtf8(forwards)
                            << QString::fromUtf8(backwards);
    };
    row("files", "sessions", "time");
    row("sessions", "time", "files");
    row("time", "files/open", "sessions");
    row("files/open", "files/rotate", "files/open"); // no way back from the very first
    row("files/rotate", "sessions/enter", "files/open");
    row("sessions/enter", "sessions/leave", "files/rotate");
    row("sessions/leave", "time/set", "sessions/enter");
    row("time/set", "time/zone", "sessions/leave");
    row("time/zone", "time/zone", "time/set"); // no way on from the very last
    row("files/open/enabled", "files/open/mode", "files/open/enabled");
    row("files/open/mode", "files/rotate/enabled", "files/open/enabled");
    row("files/rotate/enabled", "files/rotate/enabled", "files/open/mode");
    row("sessions/leave/tty", "sessions/leave/tty", "sessions/leave/enabled");
}

void EventFinderStepsTest::stepsFollowTheTable()
{
    QFETCH(QString, from);
    QFETCH(QString, forwards);
    QFETCH(QString, backwards);
    // What every row matches leaves the tree whole and the buttons enabled.
    type(QStringLiteral("e"));
    QCOMPARE(m_proxy->rowCount(), 3);
    for (const auto &[button, expected] : {qMakePair(next(), forwards), qMakePair(previous(), backwards)}) {
        const QModelIndex start = shownAt(from);
        QVERIFY2(start.isValid(), qPrintable(from));
        m_finder->selectIndex(start, start.siblingAtColumn(1));
        QCOMPARE(selected(), from);
        press(button);
        QCOMPARE(selected(), expected);
        QVERIFY(button->isEnabled());
    }
}

void EventFinderStepsTest::stepIntoAGroupWithoutEventsTakesTheGroup()
{
    auto root = TreeMaker::root();
    TreeMaker::group(root.get(), "void1");
    TreeMaker::event(TreeMaker::group(root.get(), "group"), "event", "0");
    TreeMaker::group(root.get(), "void2");
    (*m_model)->setRootItem(root.release());
    m_finder->searchEvent(QStringLiteral("o"));
    QCOMPARE(m_proxy->rowCount(), 3);
    select(QStringLiteral("group/event"));
    m_finder->selectNextEvent();
    QCOMPARE(selected(), QStringLiteral("void2"));
    m_finder->selectNextEvent();
    QCOMPARE(selected(), QStringLiteral("void1"));
    select(QStringLiteral("group/event"));
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QStringLiteral("void1"));
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QStringLiteral("void2"));
}

void EventFinderStepsTest::stepWithoutSelectionTakesTheFirstRow()
{
    type(QStringLiteral("e"));
    for (QToolButton *button : {previous(), next()}) {
        m_view->clearSelection();
        press(button);
        QCOMPARE(selected(), QStringLiteral("files"));
    }
    // Without any row nothing happens.
    type(QStringLiteral("zzz"));
    m_finder->selectNextEvent();
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QString());
}

void EventFinderStepsTest::stepStartsFromTheFirstSelectedCellInAnyColumn()
{
    type(QStringLiteral("e"));
    select(QStringLiteral("sessions/enter"), 1);
    press(next());
    QCOMPARE(selected(), QStringLiteral("sessions/leave"));
    select(QStringLiteral("sessions/leave"), 1);
    press(previous());
    QCOMPARE(selected(), QStringLiteral("sessions/enter"));
}

void EventFinderStepsTest::stepsWithinTheMatchesOnly()
{
    type(QStringLiteral("ed"));
    // "File opened", "Watched things" as a whole, "Zone changed"
    QCOMPARE(selected(), QStringLiteral("files"));
    QStringList path;
    for (int step = 0; step < 5; ++step) {
        press(next());
        path.append(selected());
    }
    QCOMPARE(
        path,
        (QStringList{QStringLiteral("time"), QStringLiteral("files/open"), QStringLiteral("files/rotate"),
                     QStringLiteral("time/zone"), QStringLiteral("time/zone")}));
}

void EventFinderStepsTest::selectedRowIsOpenCurrentAndInSight()
{
    type(QStringLiteral("e"));
    m_view->collapseAll();
    const QModelIndex leave = shownAt(QStringLiteral("sessions/leave"));
    m_finder->selectIndex(leave, leave.siblingAtColumn(1));
    QVERIFY(m_view->isExpanded(leave));
    QVERIFY(m_view->isExpanded(leave.parent()));
    QCOMPARE(m_view->currentIndex(), leave);
    QVERIFY(m_view->viewport()->rect().contains(m_view->visualRect(leave).center()));
    select(QStringLiteral("time"));
    press(next());
    QCOMPARE(selected(), QStringLiteral("files/open"));
    QVERIFY(m_view->viewport()->rect().contains(
        m_view->visualRect(shownAt(QStringLiteral("files/open"))).center()));
}

QTEST_MAIN(EventFinderStepsTest)

#include "eventfinderstepstest.moc"
