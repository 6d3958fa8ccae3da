// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <checkstates.h>

#include <QTest>

class ClickStatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateFollowsTheValue_data();
    void stateFollowsTheValue();
    void nodesWithoutASwitchKeepTheirState();
    void changedSwitchReachesItsOwnerAndTheGroup();
    void changedSwitchOfAParameterLeavesTheEventAlone();
    void changedPlainValueMovesNothing();
    void groupStateSumsUpItsCheckableEvents_data();
    void groupStateSumsUpItsCheckableEvents();
    void eventsWithoutABoxDoNotCount();
    void uncheckableOrEmptyGroupKeepsItsState();
    void innerGroupsAreSettledFirst();
};

void ClickStatesTest::stateFollowsTheValue_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("state");
    QTest::newRow("on") << QStringLiteral("1") << int(Qt::Checked);
    QTest::newRow("off") << QStringLiteral("0") << int(Qt::Unchecked);
    QTest::newRow("empty") << QString() << int(Qt::PartiallyChecked);
    QTest::newRow("text") << QStringLiteral("true") << int(Qt::PartiallyChecked);
    QTest::newRow("number with a zero in front") << QStringLiteral("01") << int(Qt::PartiallyChecked);
}

void ClickStatesTest::stateFollowsTheValue()
{
    QFETCH(QString, value);
    QFETCH(int, state);
    auto root = TreeMaker::root();
    const int other = state == Qt::Checked ? Qt::Unchecked : Qt::Checked;
    EventTreeItem *event = TreeMaker::event(root.get(), "e", value.toLatin1().constData());
    EventTreeItem *size = TreeMaker::switched(event, "size", value.toLatin1().constData());
    EventTreeItem *fail = TreeMaker::parameter(event, "fail", value.toLatin1().constData());
    for (EventTreeItem *node : {event, size, fail}) {
        node->checkState = other;
        CheckStates::takeFromValue(node);
        QCOMPARE(node->checkState, state);
    }
}

void ClickStatesTest::nodesWithoutASwitchKeepTheirState()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(root.get(), "e");
    EventTreeItem *value = TreeMaker::parameter(event, "p", "1");
    for (EventTreeItem *node : {event, value}) {
        node->checkState = Qt::PartiallyChecked;
        CheckStates::takeFromValue(node);
        QCOMPARE(node->checkState, int(Qt::PartiallyChecked));
    }
}

void ClickStatesTest::changedSwitchReachesItsOwnerAndTheGroup()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    TreeMaker::event(group, "a", "0");
    EventTreeItem *event = TreeMaker::event(group, "b", "0");
    event->switchChild()->setData(1, QStringLiteral("1"));
    CheckStates::valueChanged(event->switchChild());
    QCOMPARE(event->checkState, int(Qt::Checked));
    QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
}

void ClickStatesTest::changedSwitchOfAParameterLeavesTheEventAlone()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    EventTreeItem *size = TreeMaker::switched(event, "size", "0");
    size->switchChild()->setData(1, QStringLiteral("1"));
    CheckStates::valueChanged(size->switchChild());
    QCOMPARE(size->checkState, int(Qt::Checked));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(group->checkState, int(Qt::Unchecked));
}

void ClickStatesTest::changedPlainValueMovesNothing()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    event->checkState = Qt::PartiallyChecked;
    CheckStates::valueChanged(TreeMaker::parameter(event, "p", "1"));
    QCOMPARE(event->checkState, int(Qt::PartiallyChecked));
}

void ClickStatesTest::groupStateSumsUpItsCheckableEvents_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<int>("state");
    const auto row = [](const char *name, const QStringList &values, Qt::CheckState state) {
        QTest::newRow(name) << values << int(state);
    };
    const QString on = QStringLiteral("1");
    const QString off = QStringLiteral("0");
    const QString odd = QStringLiteral("?");
    row("two of three", {on, on, off}, Qt::PartiallyChecked);
    row("all", {on, on}, Qt::Checked);
    row("none", {off, off}, Qt::Unchecked);
    row("one partial among checked", {on, odd}, Qt::PartiallyChecked);
    row("one partial among unchecked", {off, odd}, Qt::PartiallyChecked);
}

void ClickStatesTest::groupStateSumsUpItsCheckableEvents()
{
    QFETCH(QStringList, values);
    QFETCH(int, state);
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    for (const QString &value : qAsConst(values)) {
        TreeMaker::event(group, "e", value.toLatin1().constData());
    }
    CheckStates::setDirChecked(group);
    QCOMPARE(group->checkState, state);
}

void ClickStatesTest::eventsWithoutABoxDoNotCount()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    TreeMaker::event(group, "fixed")->checkState = Qt::PartiallyChecked;
    TreeMaker::event(group, "on", "1");
    CheckStates::setDirChecked(group);
    QCOMPARE(group->checkState, int(Qt::Checked));
    EventTreeItem *bare = TreeMaker::group(root.get(), "bare");
    TreeMaker::event(bare, "fixed")->checkState = Qt::Checked;
    bare->checkState = Qt::Checked;
    CheckStates::setDirChecked(bare);
    QCOMPARE(bare->checkState, int(Qt::Unchecked));
}

void ClickStatesTest::uncheckableOrEmptyGroupKeepsItsState()
{
    auto root = TreeMaker::root();
    EventTreeItem *empty = TreeMaker::group(root.get(), "empty");
    EventTreeItem *plain = TreeMaker::group(root.get(), "plain");
    TreeMaker::event(plain, "e", "1");
    plain->checkable = false;
    EventTreeItem *event = TreeMaker::event(plain, "f", "1");
    for (EventTreeItem *node : {empty, plain, event}) {
        node->checkState = Qt::PartiallyChecked;
        CheckStates::setDirChecked(node);
        QCOMPARE(node->checkState, int(Qt::PartiallyChecked));
    }
}

void ClickStatesTest::innerGroupsAreSettledFirst()
{
    auto root = TreeMaker::root();
    EventTreeItem *outer = TreeMaker::group(root.get(), "outer");
    EventTreeItem *inner = TreeMaker::group(outer, "inner");
    TreeMaker::event(inner, "a", "1");
    TreeMaker::event(inner, "b", "0");
    CheckStates::setDirChecked(outer);
    QCOMPARE(inner->checkState, int(Qt::PartiallyChecked));
    QCOMPARE(outer->checkState, int(Qt::PartiallyChecked));
}

QTEST_MAIN(ClickStatesTest)

#include "clickstatestest.moc"
