// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <eventdisplay.h>

#include <QTest>

using EventDisplay::SwitchText;

Q_DECLARE_METATYPE(SwitchText)

class EventDisplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void switchReadsOnlyZeroAndOne_data();
    void switchReadsOnlyZeroAndOne();
    void outcomeReadsOnlyZeroAndOne_data() { switchReadsOnlyZeroAndOne_data(); }
    void outcomeReadsOnlyZeroAndOne();
    void plainNodesAreNoSwitches();
    void objectCalledEnabledIsNoSwitch();
    void equalNodesDisplayTheSame();
    void changedValuesDisplayDifferently();
    void changedSwitchDisplaysInItsOwner();
    void changedCheckStateDisplaysWhereABoxIsShown();
    void emptyTextInPlaceOfNoValueIsNoDifference();
    void valuesOfDifferentTypesCompareByTheirText();
    void switchTurnedUnreadableIsADifference();
    void switchThatBecomesReadableIsADifference();
    void textIsEditableWhereItCanBeKept_data();
    void textIsEditableWhereItCanBeKept();

private:
    std::unique_ptr<EventTreeItem> m_reference = TreeMaker::root();
    std::unique_ptr<EventTreeItem> m_working = TreeMaker::root();
};

void EventDisplayTest::switchReadsOnlyZeroAndOne_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<SwitchText>("expected");
    QTest::addColumn<QString>("shown");
    QTest::newRow("on") << QStringLiteral("1") << SwitchText::On << QStringLiteral("On");
    QTest::newRow("off") << QStringLiteral("0") << SwitchText::Off << QStringLiteral("Off");
    QTest::newRow("two") << QStringLiteral("2") << SwitchText::None << QString();
    QTest::newRow("negative") << QStringLiteral("-1") << SwitchText::None << QString();
    QTest::newRow("text") << QStringLiteral("yes") << SwitchText::None << QString();
    QTest::newRow("empty") << QString() << SwitchText::None << QString();
}

void EventDisplayTest::switchReadsOnlyZeroAndOne()
{
    QFETCH(QString, value);
    QFETCH(SwitchText, expected);
    QFETCH(QString, shown);
    auto root = TreeMaker::root();
    const EventTreeItem *node
        = TreeMaker::switched(TreeMaker::event(root.get(), "e"), "repetition", value.toLatin1().constData());
    QCOMPARE(EventDisplay::switchText(*node), expected);
    QCOMPARE(EventDisplay::displayValue(*node, 1).toString(), shown);
    QCOMPARE(EventDisplay::displayValue(*node, 1).isValid(), expected != SwitchText::None);
    QVERIFY(EventDisplay::isSwitch(*node));
    QVERIFY(!EventDisplay::checkStateValue(*node, 1).isValid());
}

void EventDisplayTest::outcomeReadsOnlyZeroAndOne()
{
    QFETCH(QString, value);
    QFETCH(SwitchText, expected);
    QFETCH(QString, shown);
    auto root = TreeMaker::root();
    const EventTreeItem *node
        = TreeMaker::parameter(TreeMaker::event(root.get(), "e"), "fail", value.toLatin1().constData());
    QCOMPARE(EventDisplay::switchText(*node), expected);
    QCOMPARE(EventDisplay::displayValue(*node, 1).toString(), shown);
    QVERIFY(EventDisplay::isSwitch(*node));
    QCOMPARE(EventDisplay::checkStateValue(*node, 1).isValid(), true);
}

void EventDisplayTest::plainNodesAreNoSwitches()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "1");
    const EventTreeItem *value = TreeMaker::parameter(event, "p", "1");
    const EventTreeItem *empty = TreeMaker::object(event, "o");
    const QVector<const EventTreeItem *> nodes{group, event, value, empty, event->eventChild(0)};
    for (const EventTreeItem *node : nodes) {
        QCOMPARE(EventDisplay::switchText(*node), SwitchText::NotASwitch);
        QVERIFY(!EventDisplay::isSwitch(*node));
    }
    QCOMPARE(EventDisplay::displayValue(*value, 1), QVariant(QStringLiteral("1")));
    QCOMPARE(EventDisplay::displayValue(*value, 0), QVariant(QStringLiteral("p")));
}

void EventDisplayTest::objectCalledEnabledIsNoSwitch()
{
    auto root = TreeMaker::root();
    EventTreeItem *node = TreeMaker::object(TreeMaker::event(root.get(), "e"), "o");
    TreeMaker::object(node, "enabled");
    QCOMPARE(EventDisplay::switchText(*node), SwitchText::NotASwitch);
}

void EventDisplayTest::equalNodesDisplayTheSame()
{
    const EventTreeItem *reference = TreeMaker::event(m_reference.get(), "e", "1");
    const EventTreeItem *working = TreeMaker::event(m_working.get(), "e", "1");
    for (int column = 0; column < 3; ++column) {
        QVERIFY(EventDisplay::sameDisplay(*reference, *working, column));
    }
}

void EventDisplayTest::changedValuesDisplayDifferently()
{
    const EventTreeItem *reference = TreeMaker::list(m_reference.get(), "l", R"(["a"])");
    EventTreeItem *working = TreeMaker::list(m_working.get(), "l", R"(["a"])");
    working->setData(2, QStringLiteral("[]"));
    QVERIFY(EventDisplay::sameDisplay(*reference, *working, 1));
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 2));
    working->setData(1, QString());
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
}

void EventDisplayTest::changedSwitchDisplaysInItsOwner()
{
    const EventTreeItem *reference = TreeMaker::switched(m_reference.get(), "s", "0");
    const EventTreeItem *working = TreeMaker::switched(m_working.get(), "s", "1");
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
    QVERIFY(EventDisplay::sameDisplay(*reference, *working, 0)); // no box there
}

void EventDisplayTest::changedCheckStateDisplaysWhereABoxIsShown()
{
    const EventTreeItem *reference = TreeMaker::event(m_reference.get(), "e", "0");
    EventTreeItem *working = TreeMaker::event(m_working.get(), "e", "0");
    working->checkState = Qt::Checked;
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 0));
    QVERIFY(EventDisplay::sameDisplay(*reference, *working, 1));
    working->checkable = false;
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 0));
}

void EventDisplayTest::emptyTextInPlaceOfNoValueIsNoDifference()
{
    EventTreeItem *reference = TreeMaker::parameter(m_reference.get(), "p", "");
    EventTreeItem *working = TreeMaker::parameter(m_working.get(), "p", "");
    reference->setData(1, QVariant());
    QVERIFY(EventDisplay::sameDisplay(*reference, *working, 1));
    working->setData(1, QStringLiteral("x"));
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
    // The exception holds in this direction only.
    reference->setData(1, QString());
    working->setData(1, QStringLiteral(" "));
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
}

void EventDisplayTest::valuesOfDifferentTypesCompareByTheirText()
{
    EventTreeItem *reference = TreeMaker::parameter(m_reference.get(), "p", "");
    EventTreeItem *working = TreeMaker::parameter(m_working.get(), "p", "");
    reference->setData(1, 5.0);
    working->setData(1, QStringLiteral("5"));
    QVERIFY(EventDisplay::sameDisplay(*reference, *working, 1));
    reference->setData(1, true);
    working->setData(1, QStringLiteral("anything"));
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
}

void EventDisplayTest::switchTurnedUnreadableIsADifference()
{
    const EventTreeItem *reference = TreeMaker::switched(m_reference.get(), "s", "1");
    const EventTreeItem *working = TreeMaker::switched(m_working.get(), "s", "maybe");
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
}

void EventDisplayTest::switchThatBecomesReadableIsADifference()
{
    const EventTreeItem *reference = TreeMaker::switched(m_reference.get(), "s", "maybe");
    const EventTreeItem *working = TreeMaker::switched(m_working.get(), "s", "0");
    QVERIFY(!EventDisplay::sameDisplay(*reference, *working, 1));
    const EventTreeItem *unreadable = TreeMaker::switched(m_working.get(), "s", "never");
    QVERIFY(EventDisplay::sameDisplay(*reference, *unreadable, 1));
}

void EventDisplayTest::textIsEditableWhereItCanBeKept_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("expected");
    QTest::newRow("texts") << QStringLiteral(R"(["a","b"])") << true;
    QTest::newRow("nothing") << QStringLiteral("[]") << true;
    QTest::newRow("a separator inside an element") << QStringLiteral(R"(["a, b"])") << false;
    QTest::newRow("objects") << QStringLiteral(R"([{"path":"/var","limit_bytes":"5"}])") << false;
    QTest::newRow("a number") << QStringLiteral("[1]") << false;
    QTest::newRow("a list in the list") << QStringLiteral(R"([["a"]])") << false;
}

void EventDisplayTest::textIsEditableWhereItCanBeKept()
{
    QFETCH(QString, json);
    QFETCH(bool, expected);
    EventTreeItem *list = TreeMaker::list(m_working.get(), "l", json.toLatin1().constData());
    QCOMPARE(EventDisplay::isTextEditable(*list), expected);
    list->editable = false;
    QVERIFY(!EventDisplay::isTextEditable(*list));
}

QTEST_MAIN(EventDisplayTest)

#include "eventdisplaytest.moc"
