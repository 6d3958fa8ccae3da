// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <checkstates.h>
#include <eventtreeitem.h>

#include <QTest>

namespace {
EventTreeItem *append(EventTreeItem *parent, const char *name, int kind, const QVariant &value = {})
{
    auto *item = new EventTreeItem({QString::fromUtf8(name), value, QVariant()}, parent);
    item->nativeName = QString::fromUtf8(name);
    item->kind = kind;
    parent->appendChild(item);
    return item;
}

/// A checkable group whose children are checkable, or not for a negative state.
EventTreeItem *groupOf(EventTreeItem *parent, const QVector<int> &states)
{
    EventTreeItem *group = append(parent, "group", EventTreeItem::Group);
    group->checkable = true;
    for (const int state : states) {
        EventTreeItem *event = append(group, "event", EventTreeItem::Event);
        event->checkable = state >= 0;
        event->checkState = qAbs(state);
    }
    return group;
}
} // namespace

class CheckStatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateFollowsTheValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("state");
        QTest::newRow("on") << QVariant(QStringLiteral("1")) << 2;
        QTest::newRow("off") << QVariant(QStringLiteral("0")) << 0;
        QTest::newRow("number on") << QVariant(1.0) << 2;
        QTest::newRow("number off") << QVariant(0.0) << 0;
        QTest::newRow("empty") << QVariant(QString()) << 1;
        QTest::newRow("word") << QVariant(QStringLiteral("yes")) << 1;
        QTest::newRow("two") << QVariant(QStringLiteral("2")) << 1;
        QTest::newRow("blank") << QVariant(QStringLiteral(" 1")) << 1;
        QTest::newRow("padded") << QVariant(QStringLiteral("01")) << 1;
    }
    void stateFollowsTheValue()
    {
        QFETCH(QVariant, value);
        EventTreeItem root({});
        EventTreeItem *event = append(&root, "event", EventTreeItem::Event);
        append(event, "enabled", EventTreeItem::Parameter, value);
        EventTreeItem *leaf = append(event, "succ", EventTreeItem::Parameter, value);
        EventTreeItem *parameter = append(event, "repeat", EventTreeItem::Parameter);
        append(parameter, "enabled", EventTreeItem::Parameter, value);
        for (EventTreeItem *node : {event, leaf, parameter}) {
            node->checkState = -1;
            CheckStates::takeFromValue(node);
            QTEST(node->checkState, "state");
        }
    }

    void nodesWithoutASwitchKeepTheirState()
    {
        EventTreeItem root({});
        EventTreeItem *event = append(&root, "event", EventTreeItem::Event);
        EventTreeItem *value = append(event, "delay", EventTreeItem::Parameter, QStringLiteral("1"));
        event->checkState = Qt::PartiallyChecked;

        CheckStates::takeFromValue(event);
        CheckStates::takeFromValue(value);
        QCOMPARE(event->checkState, int(Qt::PartiallyChecked));
        QCOMPARE(value->checkState, int(Qt::Unchecked));
    }

    void groupFollowsItsCheckableChildren_data()
    {
        QTest::addColumn<QVector<int>>("children");
        QTest::addColumn<int>("state");
        QTest::newRow("all checked") << QVector<int>{2, 2, 2} << 2;
        QTest::newRow("two of three") << QVector<int>{2, 2, 0} << 1;
        QTest::newRow("none") << QVector<int>{0, 0} << 0;
        QTest::newRow("one partial among unchecked") << QVector<int>{0, 1, 0} << 1;
        QTest::newRow("one partial among checked") << QVector<int>{2, 1} << 1;
        QTest::newRow("uncheckable ones do not count") << QVector<int>{2, -1, -2} << 2;
        QTest::newRow("only uncheckable ones") << QVector<int>{-2, -1} << 0;
    }
    void groupFollowsItsCheckableChildren()
    {
        QFETCH(QVector<int>, children);
        QFETCH(int, state);
        EventTreeItem root({});
        for (const int before : {0, 1, 2}) {
            EventTreeItem *group = groupOf(&root, children);
            group->checkState = before;
            CheckStates::setDirChecked(group);
            QCOMPARE(group->checkState, state);
        }
    }

    void onlyCheckableGroupsWithChildrenAreTouched()
    {
        EventTreeItem root({});
        EventTreeItem *uncheckable = groupOf(&root, {0});
        uncheckable->checkable = false;
        EventTreeItem *empty = groupOf(&root, {});
        EventTreeItem *event = groupOf(&root, {0});
        event->kind = EventTreeItem::Event;
        for (EventTreeItem *item : {uncheckable, empty, event}) {
            item->checkState = Qt::Checked;
            CheckStates::setDirChecked(item);
            QCOMPARE(item->checkState, int(Qt::Checked));
        }
    }

    void groupsBelowAGroupAreSettledFirst()
    {
        EventTreeItem root({});
        EventTreeItem *outer = groupOf(&root, {2});
        EventTreeItem *inner = groupOf(outer, {2, 0});

        CheckStates::setDirChecked(outer);
        QCOMPARE(inner->checkState, int(Qt::PartiallyChecked));
        QCOMPARE(outer->checkState, int(Qt::PartiallyChecked));
    }

    void changedSwitchIsPassedUpToTheGroup()
    {
        EventTreeItem root({});
        EventTreeItem *group = groupOf(&root, {0, 2});
        EventTreeItem *event = group->eventChild(0);
        EventTreeItem *enabled = append(event, "enabled", EventTreeItem::Parameter, QStringLiteral("0"));
        CheckStates::setDirChecked(group);
        QCOMPARE(group->checkState, int(Qt::PartiallyChecked));

        enabled->setData(1, QStringLiteral("1"));
        CheckStates::valueChanged(enabled);
        QCOMPARE(event->checkState, int(Qt::Checked));
        QCOMPARE(group->checkState, int(Qt::Checked));
        enabled->setData(1, QStringLiteral("odd"));
        CheckStates::valueChanged(enabled);
        QCOMPARE(event->checkState, int(Qt::PartiallyChecked));
        QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
    }

    void changedSwitchOfAParameterLeavesTheEventAlone()
    {
        EventTreeItem root({});
        EventTreeItem *group = groupOf(&root, {0});
        EventTreeItem *event = group->eventChild(0);
        EventTreeItem *parameter = append(event, "repeat", EventTreeItem::Parameter);
        EventTreeItem *enabled = append(parameter, "enabled", EventTreeItem::Parameter, QStringLiteral("1"));

        CheckStates::valueChanged(enabled);
        QCOMPARE(parameter->checkState, int(Qt::Checked));
        QCOMPARE(event->checkState, int(Qt::Unchecked));
        QCOMPARE(group->checkState, int(Qt::Unchecked));
    }

    void changedPlainValueMovesNothing()
    {
        EventTreeItem root({});
        EventTreeItem *group = groupOf(&root, {0});
        EventTreeItem *event = group->eventChild(0);
        append(event, "enabled", EventTreeItem::Parameter, QStringLiteral("1"));
        CheckStates::valueChanged(append(event, "delay", EventTreeItem::Parameter, QStringLiteral("1")));
        QCOMPARE(event->checkState, int(Qt::Unchecked));
        QCOMPARE(group->checkState, int(Qt::Unchecked));
    }

    void childrenWithABoxAreCounted()
    {
        EventTreeItem root({});
        const CheckStates::Count count = CheckStates::countChildren(*groupOf(&root, {2, 2, 1, 0, -1, -2}));
        QCOMPARE(count.checkable, 4);
        QCOMPARE(count.checked, 2);
        QCOMPARE(count.partial, 1);
    }
};

QTEST_GUILESS_MAIN(CheckStatesTest)
#include "checkstatestest.moc"
