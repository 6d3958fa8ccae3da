// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <QSignalSpy>
#include <QTest>

namespace {
QString enabledOf(const EventTreeItem *item)
{
    return item->switchChild()->value(1).toString();
}

QList<int> statesOf(const QVector<EventTreeItem *> &items)
{
    QList<int> states;
    for (const EventTreeItem *item : items) {
        states.append(item->checkState);
    }
    return states;
}
} // namespace

class ClickTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clickTurnsAnEventAndItsSwitch();
    void clickIgnoresTheValuePassed();
    void clickReportsBothColumnsOfItsRow();
    void clickOnAnOutcomeReportsBothColumnsOfItsRow();
    void clickOnAPartiallyCheckedEventChangesNothing();
    void clickOnAPartiallyCheckedGroupChecksItAndAllItsEvents();
    void clickOnAGroupChecksAndUnchecksItsEventsOnly();
    void clickOnAGroupReachesEventsWithoutFollowingDependencies();
    void checkingChecksTheDirectDependenciesOnly();
    void uncheckingUnchecksTheDirectDependentsOnly();
    void linkedEventsOfOtherGroupsShowInTheirGroups();
    void lastUncheckedEventCompletesItsGroup();
    void partialSiblingKeepsTheGroupPartial();
    void groupWithoutCheckedEventsIsUnchecked();
    void checkingAPlainNodeLeavesAParentWithoutBoxesChecked();
    void childrenWithBoxesFollowTheirParent();
    void outcomeTurnsWithItsCheckBox();
    void clickLeavesEveryOtherValueAlone();
    void oddValuesSurviveEveryClick();
    void checkingAndUncheckingRestoresEverything();
    void switchInsideAnEventDoesNotTurnTheEvent();
    void switchOfAParameterTurnsNothingElse();
    void switchWithAnOddValueStays();
    void onlyParametersWithASwitchCanBeSwitched();
    void accountNamedEnabledIsNoSwitch();
    void accountNamedLikeAnOutcomeIsNoOutcome();
    void typedSwitchValueMovesTheCheckBoxes();
    void typedOutcomeMovesItsCheckBox();
    void editIsStoredAndReported();
    void editOfAMissingColumnIsRefused();
    void notificationStateIsStoredAndReported();
};

void ClickTest::clickTurnsAnEventAndItsSwitch()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QCOMPARE(event->checkState, int(Qt::Checked));
    QCOMPARE(enabledOf(event), QStringLiteral("1"));
    QVERIFY(model.click(event));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(event), QStringLiteral("0"));
}

void ClickTest::clickIgnoresTheValuePassed()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    ShownModel model(std::move(root));
    QVERIFY(model->setData(model.name(event), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QVERIFY(model->setData(model.name(event), QVariant(), Qt::CheckStateRole));
    QCOMPARE(event->checkState, int(Qt::Checked));
}

void ClickTest::clickReportsBothColumnsOfItsRow()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.click(event));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.name(event));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.value(event));
}

void ClickTest::clickOnAnOutcomeReportsBothColumnsOfItsRow()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    EventTreeItem *fail = TreeMaker::outcome(event, "other", "0", "0")->eventChild(0);
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QVERIFY(model->setData(model.value(fail), QVariant(), Qt::CheckStateRole));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.name(fail));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.value(fail));
}

void ClickTest::clickOnAPartiallyCheckedEventChangesNothing()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *odd = TreeMaker::event(group, "odd", "maybe");
    EventTreeItem *needed = TreeMaker::event(group, "needed", "0");
    TreeMaker::link(odd, needed);
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(odd));
    QCOMPARE(statesOf({group, odd, needed}),
             (QList<int>{Qt::PartiallyChecked, Qt::PartiallyChecked, Qt::Unchecked}));
    QCOMPARE(enabledOf(odd), QStringLiteral("maybe"));
    QCOMPARE(enabledOf(needed), QStringLiteral("0"));
}

void ClickTest::clickOnAPartiallyCheckedGroupChecksItAndAllItsEvents()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *on = TreeMaker::event(group, "on", "1");
    EventTreeItem *off = TreeMaker::event(group, "off", "0");
    TreeMaker::settleGroups(root.get());
    QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
    ShownModel model(std::move(root));
    QVERIFY(model.click(group));
    QCOMPARE(statesOf({group, on, off}), (QList<int>{Qt::Checked, Qt::Checked, Qt::Checked}));
    QCOMPARE(enabledOf(on), QStringLiteral("1"));
    QCOMPARE(enabledOf(off), QStringLiteral("1"));
}

void ClickTest::clickOnAGroupChecksAndUnchecksItsEventsOnly()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "1");
    EventTreeItem *repetition = TreeMaker::switched(event, "notification_repetition", "0");
    EventTreeItem *foreign = TreeMaker::event(TreeMaker::group(root.get(), "h"), "f", "1");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(group));
    QCOMPARE(statesOf({group, event, foreign}), (QList<int>{Qt::Unchecked, Qt::Unchecked, Qt::Checked}));
    QVERIFY(model.click(group));
    QCOMPARE(statesOf({group, event}), (QList<int>{Qt::Checked, Qt::Checked}));
    QCOMPARE(enabledOf(event), QStringLiteral("1"));
    QCOMPARE(enabledOf(repetition), QStringLiteral("0"));
    QCOMPARE(enabledOf(foreign), QStringLiteral("1"));
}

void ClickTest::clickOnAGroupReachesEventsWithoutFollowingDependencies()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    EventTreeItem *needed = TreeMaker::event(TreeMaker::group(root.get(), "h"), "needed", "0");
    TreeMaker::link(event, needed);
    ShownModel model(std::move(root));
    QVERIFY(model.click(group));
    QCOMPARE(statesOf({event, needed}), (QList<int>{Qt::Checked, Qt::Unchecked}));
    QCOMPARE(enabledOf(needed), QStringLiteral("0"));
}

void ClickTest::checkingChecksTheDirectDependenciesOnly()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *first = TreeMaker::event(group, "first", "0");
    EventTreeItem *second = TreeMaker::event(group, "second", "0");
    EventTreeItem *third = TreeMaker::event(group, "third", "0");
    EventTreeItem *inner = TreeMaker::switched(second, "notification_repetition", "0");
    TreeMaker::link(first, second);
    TreeMaker::link(second, third);
    ShownModel model(std::move(root));
    QVERIFY(model.click(first));
    QCOMPARE(statesOf({first, second, third}), (QList<int>{Qt::Checked, Qt::Checked, Qt::Unchecked}));
    QCOMPARE(enabledOf(second), QStringLiteral("1"));
    QCOMPARE(enabledOf(third), QStringLiteral("0"));
    QCOMPARE(enabledOf(inner), QStringLiteral("0"));
    // Unchecking again keeps what the event needed.
    QVERIFY(model.click(first));
    QCOMPARE(statesOf({first, second}), (QList<int>{Qt::Unchecked, Qt::Checked}));
}

void ClickTest::uncheckingUnchecksTheDirectDependentsOnly()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *base = TreeMaker::event(group, "base", "1");
    EventTreeItem *direct = TreeMaker::event(group, "direct", "1");
    EventTreeItem *indirect = TreeMaker::event(group, "indirect", "1");
    TreeMaker::link(direct, base);
    TreeMaker::link(indirect, direct);
    ShownModel model(std::move(root));
    QVERIFY(model.click(base));
    QCOMPARE(statesOf({base, direct, indirect}), (QList<int>{Qt::Unchecked, Qt::Unchecked, Qt::Checked}));
    QCOMPARE(enabledOf(direct), QStringLiteral("0"));
    QCOMPARE(enabledOf(indirect), QStringLiteral("1"));
}

void ClickTest::linkedEventsOfOtherGroupsShowInTheirGroups()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *otherGroup = TreeMaker::group(root.get(), "h");
    EventTreeItem *needed = TreeMaker::event(otherGroup, "needed", "0");
    TreeMaker::event(otherGroup, "bystander", "0");
    TreeMaker::link(event, needed);
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QCOMPARE(otherGroup->checkState, int(Qt::PartiallyChecked));
    QVERIFY(model.click(needed));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(event->parentItem()->checkState, int(Qt::Unchecked));
}

void ClickTest::lastUncheckedEventCompletesItsGroup()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    TreeMaker::event(group, "a", "1");
    EventTreeItem *last = TreeMaker::event(group, "b", "0");
    TreeMaker::event(group, "without switch");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(last));
    QCOMPARE(group->checkState, int(Qt::Checked));
    QVERIFY(model.click(last));
    QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
}

void ClickTest::partialSiblingKeepsTheGroupPartial()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    TreeMaker::event(group, "odd", "maybe");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
    QVERIFY(model.click(event));
    QCOMPARE(group->checkState, int(Qt::PartiallyChecked));
}

void ClickTest::groupWithoutCheckedEventsIsUnchecked()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "a", "1");
    TreeMaker::event(group, "b", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QCOMPARE(group->checkState, int(Qt::Unchecked));
}

void ClickTest::checkingAPlainNodeLeavesAParentWithoutBoxesChecked()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "0");
    ShownModel model(std::move(root));
    model->setGroupChecked(other->eventChild(0), true);
    QCOMPARE(other->checkState, int(Qt::Checked));
    model->setGroupChecked(other->eventChild(0), false);
    QCOMPARE(other->checkState, int(Qt::Checked));
}

void ClickTest::childrenWithBoxesFollowTheirParent()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *boxed = TreeMaker::switched(event, "boxed", "0");
    boxed->checkable = true;
    EventTreeItem *deep = TreeMaker::switched(boxed, "deep", "0");
    deep->checkable = true;
    EventTreeItem *plain = TreeMaker::switched(event, "plain", "0");
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QCOMPARE(statesOf({event, boxed, deep, plain}),
             (QList<int>{Qt::Checked, Qt::Checked, Qt::Checked, Qt::Unchecked}));
    QCOMPARE(enabledOf(deep), QStringLiteral("1"));
    QCOMPARE(enabledOf(plain), QStringLiteral("0"));
}

void ClickTest::outcomeTurnsWithItsCheckBox()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "1");
    ShownModel model(std::move(root));
    QVERIFY(model->setData(model.value(other->eventChild(0)), QVariant(), Qt::CheckStateRole));
    QCOMPARE(other->eventChild(0)->value(1).toString(), QStringLiteral("1"));
    QCOMPARE(other->eventChild(1)->value(1).toString(), QStringLiteral("1"));
    QVERIFY(model->setData(model.value(other->eventChild(1)), QVariant(), Qt::CheckStateRole));
    QCOMPARE(other->eventChild(1)->value(1).toString(), QStringLiteral("0"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(event), QStringLiteral("0"));
}

void ClickTest::clickLeavesEveryOtherValueAlone()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *clicked = TreeMaker::event(group, "clicked", "0");
    EventTreeItem *other = TreeMaker::event(TreeMaker::group(root.get(), "h"), "other", "1");
    EventTreeItem *size = TreeMaker::switched(TreeMaker::object(other, "extend-message-params"), "size", "1");
    EventTreeItem *rest = TreeMaker::outcome(other, "other", "1", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model.click(clicked));
    QCOMPARE(enabledOf(other), QStringLiteral("1"));
    QCOMPARE(enabledOf(size), QStringLiteral("1"));
    QCOMPARE(rest->eventChild(0)->value(1).toString(), QStringLiteral("1"));
    QCOMPARE(rest->eventChild(1)->value(1).toString(), QStringLiteral("0"));
}

void ClickTest::oddValuesSurviveEveryClick()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    EventTreeItem *odd = TreeMaker::event(group, "odd", "yes");
    EventTreeItem *size = TreeMaker::switched(TreeMaker::object(event, "extend-message-params"), "size", "");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "01", " 1");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    for (int i = 0; i < 3; ++i) {
        QVERIFY(model.click(event));
        QVERIFY(model.click(odd));
        QVERIFY(model->setData(model.value(other->eventChild(0)), QVariant(), Qt::CheckStateRole));
        QCOMPARE(enabledOf(odd), QStringLiteral("yes"));
        QCOMPARE(enabledOf(size), QString());
        QCOMPARE(other->eventChild(0)->value(1).toString(), QStringLiteral("01"));
        QCOMPARE(other->eventChild(1)->value(1).toString(), QStringLiteral(" 1"));
    }
    QCOMPARE(enabledOf(event), QStringLiteral("1"));
}

void ClickTest::checkingAndUncheckingRestoresEverything()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    EventTreeItem *odd = TreeMaker::event(group, "odd", "yes");
    EventTreeItem *size = TreeMaker::switched(TreeMaker::object(event, "extend-message-params"), "size", "1");
    EventTreeItem *other = TreeMaker::outcome(event, "other", "0", "1");
    TreeMaker::settleGroups(root.get());
    const QVector<EventTreeItem *> nodes{
        group, event, odd, size, other, other->eventChild(0), other->eventChild(1)};
    const QList<int> before = statesOf(nodes);
    ShownModel model(std::move(root));
    QVERIFY(model.click(event));
    QVERIFY(statesOf(nodes) != before);
    QVERIFY(model.click(event));
    QCOMPARE(statesOf(nodes), before);
    QCOMPARE(enabledOf(event), QStringLiteral("0"));
    QCOMPARE(enabledOf(odd), QStringLiteral("yes"));
    QCOMPARE(enabledOf(size), QStringLiteral("1"));
    QCOMPARE(other->eventChild(0)->value(1).toString(), QStringLiteral("0"));
    QCOMPARE(other->eventChild(1)->value(1).toString(), QStringLiteral("1"));
}

void ClickTest::switchInsideAnEventDoesNotTurnTheEvent()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *repetition = TreeMaker::switched(event, "notification_repetition", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model->setData(model.value(repetition), QVariant(), Qt::CheckStateRole));
    QCOMPARE(enabledOf(repetition), QStringLiteral("1"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(event), QStringLiteral("0"));
}

void ClickTest::switchOfAParameterTurnsNothingElse()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *extended = TreeMaker::object(event, "extend-message-params");
    EventTreeItem *size = TreeMaker::switched(extended, "size", "0");
    EventTreeItem *time = TreeMaker::switched(extended, "time", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QVERIFY(model->switchParameter(model.value(size)));
    QCOMPARE(enabledOf(size), QStringLiteral("1"));
    QCOMPARE(size->checkState, int(Qt::Checked));
    QCOMPARE(enabledOf(time), QStringLiteral("0"));
    QCOMPARE(statesOf({event, event->parentItem(), time}),
             (QList<int>{Qt::Unchecked, Qt::Unchecked, Qt::Unchecked}));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), model.name(size));
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.value(size));
    QVERIFY(model->switchParameter(model.name(size)));
    QCOMPARE(enabledOf(size), QStringLiteral("0"));
}

void ClickTest::switchWithAnOddValueStays()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *odd = TreeMaker::switched(event, "notification_repetition", "sometimes");
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model->switchParameter(model.value(odd)));
    QCOMPARE(enabledOf(odd), QStringLiteral("sometimes"));
    QCOMPARE(changed.count(), 0);
}

void ClickTest::onlyParametersWithASwitchCanBeSwitched()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *plain = TreeMaker::parameter(event, "p", "0");
    ShownModel model(std::move(root));
    QVERIFY(!model->switchParameter(model.value(event)));
    QVERIFY(!model->switchParameter(model.value(plain)));
    QVERIFY(!model->switchParameter(QModelIndex()));
    QCOMPARE(enabledOf(event), QStringLiteral("0"));
    QCOMPARE(plain->value(1).toString(), QStringLiteral("0"));
}

void ClickTest::accountNamedEnabledIsNoSwitch()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    EventTreeItem *account = TreeMaker::outcome(users, "enabled", "0", "1");
    ShownModel model(std::move(root));
    QVERIFY(!users->switchChild());
    QVERIFY(model.click(event));
    QVERIFY(!account->value(1).isValid());
    QCOMPARE(account->eventChild(1)->value(1).toString(), QStringLiteral("1"));
    QVERIFY(!model->switchParameter(model.value(users)));
}

void ClickTest::accountNamedLikeAnOutcomeIsNoOutcome()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *account = TreeMaker::outcome(TreeMaker::subjects(open, "users"), "succ", "0", "1");
    ShownModel model(std::move(root));
    QVERIFY(!model.value(account).data(Qt::CheckStateRole).isValid());
    QVERIFY(!model.value(account).data().isValid());
    QVERIFY(model.click(event));
    QVERIFY(!account->value(1).isValid());
    // The account's own outcomes work as everybody's.
    QVERIFY(model->setData(model.value(account->eventChild(0)), QVariant(), Qt::CheckStateRole));
    QCOMPARE(account->eventChild(0)->value(1).toString(), QStringLiteral("1"));
}

void ClickTest::typedSwitchValueMovesTheCheckBoxes()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "0");
    TreeMaker::settleGroups(root.get());
    ShownModel model(std::move(root));
    QVERIFY(model->setData(model.value(event->switchChild()), QStringLiteral("1"), Qt::EditRole));
    QCOMPARE(statesOf({event, group}), (QList<int>{Qt::Checked, Qt::Checked}));
    QVERIFY(model->setData(model.value(event->switchChild()), QStringLiteral("later"), Qt::EditRole));
    QCOMPARE(statesOf({event, group}), (QList<int>{Qt::PartiallyChecked, Qt::PartiallyChecked}));
}

void ClickTest::typedOutcomeMovesItsCheckBox()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    EventTreeItem *fail = TreeMaker::outcome(event, "other", "0", "0")->eventChild(0);
    ShownModel model(std::move(root));
    QVERIFY(model->setData(model.value(fail), QStringLiteral("1"), Qt::EditRole));
    QCOMPARE(fail->checkState, int(Qt::Checked));
    QVERIFY(model.click(event));
    QCOMPARE(fail->value(1).toString(), QStringLiteral("1"));
}

void ClickTest::editIsStoredAndReported()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *list = TreeMaker::list(event, "names", R"(["a"])");
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    for (int column = 0; column < 3; ++column) {
        const QModelIndex index = model.name(list).siblingAtColumn(column);
        const QString text = QStringLiteral("text %1").arg(column);
        QVERIFY(model->setData(index, text, Qt::EditRole));
        QCOMPARE(list->value(column).toString(), text);
        QCOMPARE(changed.count(), column + 1);
        QCOMPARE(changed.at(column).at(0).toModelIndex(), index);
        QCOMPARE(changed.at(column).at(1).toModelIndex(), index);
    }
}

void ClickTest::editOfAMissingColumnIsRefused()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *narrow = TreeMaker::parameter(event, "p", "v");
    narrow->setData(QVector<QVariant>{QStringLiteral("p"), QStringLiteral("v")});
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model->setData(model.name(narrow).siblingAtColumn(2), QStringLiteral("x"), Qt::EditRole));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(narrow->rowData(), (QVector<QVariant>{QStringLiteral("p"), QStringLiteral("v")}));
}

void ClickTest::notificationStateIsStoredAndReported()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "0");
    ShownModel model(std::move(root));
    QSignalSpy changed(&*model, &QAbstractItemModel::dataChanged);
    QSignalSpy notified(&*model, &CheckableTreeModel::notificationChanged);
    const auto on = QVariant::fromValue(EventTreeItem::NotificationSwitchedOn);
    QVERIFY(model->setData(model.name(event), on, Qt::DecorationRole));
    QCOMPARE(int(event->notificationState), 2);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(notified.count(), 1);
    QCOMPARE(notified.at(0).at(0).toModelIndex(), model.name(event));
    QCOMPARE(notified.at(0).at(1).toModelIndex(), model.name(event));
    QCOMPARE(notified.at(0).at(2).value<QVector<int>>(), QVector<int>{1});
    QCOMPARE(QString::fromLatin1(on.typeName()), QStringLiteral("EventTreeItem::NotificationState"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
}

QTEST_MAIN(ClickTest)

#include "clicktest.moc"
