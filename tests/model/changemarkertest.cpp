// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <changemarker.h>
#include <checkstates.h>
#include <eventtreeclone.h>

#include <QTest>

namespace {
/// A list of full paths below @p prefix.
QStringList paths(const char *prefix, const QStringList &names)
{
    QStringList result;
    for (const QString &name : names) {
        result.append(QString::fromLatin1(prefix) + name);
    }
    result.sort();
    return result;
}

/// What is marked when the accounts of the operation "open" are no longer those that the others are measured
/// by.
QStringList usersGroupsAndOthers()
{
    return paths("g/e/message-audit-events",
                 {QString(), QStringLiteral("/open"), QStringLiteral("/open/users"),
                  QStringLiteral("/open/groups"), QStringLiteral("/open/other"),
                  QStringLiteral("/open/other/fail"), QStringLiteral("/open/other/succ")});
}

EventTreeItem *node(const std::unique_ptr<EventTreeItem> &root, const char *path)
{
    EventTreeItem *item = root.get();
    const QStringList names = QString::fromLatin1(path).split(QLatin1Char('/'));
    for (const QString &name : names) {
        item = item->findChildTopLevelByNativeName(name);
        if (!item) {
            qFatal("no node %s", path);
        }
    }
    return item;
}

/// Two groups with two events each; the first event uses everything that marks know by name.
std::unique_ptr<EventTreeItem> sampleTree()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "1");
    EventTreeItem *extended = TreeMaker::object(event, "extend-message-params");
    EventTreeItem *size = TreeMaker::switched(extended, "size", "0");
    TreeMaker::parameter(size, "overlay0", "enabled");
    TreeMaker::parameter(size, "unit", "kB");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    TreeMaker::outcome(users, "alice", "0", "0");
    TreeMaker::outcome(users, "groups", "0", "0");
    TreeMaker::outcome(users, "succ", "0", "0");
    TreeMaker::outcome(TreeMaker::subjects(open, "groups"), "users", "0", "0");
    TreeMaker::outcome(open, "other", "0", "1");
    TreeMaker::switched(event, "notification_repetition", "0");
    TreeMaker::parameter(event, "p", "v");
    TreeMaker::list(event, "names", R"(["a"])");
    TreeMaker::event(group, "f", "0");
    EventTreeItem *last = TreeMaker::group(root.get(), "last");
    TreeMaker::parameter(TreeMaker::event(last, "x", "0"), "p", "v");
    TreeMaker::parameter(TreeMaker::event(last, "y"), "p", "v");
    TreeMaker::settleGroups(root.get());
    return root;
}

void type(EventTreeItem *item, const char *text)
{
    item->setData(1, QString::fromUtf8(text));
    CheckStates::valueChanged(item);
}
} // namespace

class ChangeMarkerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();

    void equalTreesAreUnchangedAndUnmarked();
    void differentNumberOfGroupsIsAChange();
    void differentNumberOfHeaderColumnsIsAChange();
    void treesWithoutRowsOrColumnsAreUnchanged();
    void comparisonStopsAfterTheFirstGroupThatDiffers();
    void comparisonVisitsAllOfAGroup();
    void changeTakenBackIsNoChangeButStaysMarked();
    void typedValueMarksItselfOnly();
    void changedElementsMarkTheList();
    void outcomeOfAnAccountMarksItsSurroundings();
    void outcomeOfTheOthersMarksUsersAndGroups();
    void changedUsersMarkOtherAndGroups();
    void changedGroupsMarkOtherAndUsers();
    void changedGroupsWithoutSiblingsMarkWhatIsThere();
    void accountWithTheNameOfAMemberMarksItselfOnly();
    void switchOfAnExtendedParameterMarksItsSiblings();
    void switchOfAnythingElseMarksNoSiblings();
    void outcomeWithoutRelativesMarksItself();
    void notificationMarksTheEventAndIsAChange();
    void checkStateMarksTheNodeThatShowsIt();
    void missingRowsAreAChangeAndTheRestIsStillCompared();
    void childrenOfWorkingNodesThatHadNoneDoNotCount();
    void onlyTheFirstColumnDescends();

    void savingMarksTheChangesOfAllGroups();
    void typedParameterLeavesItsEventOff();
    void notificationLeavesItsEventOn();
    void notificationOfAnEventWithoutASwitchWritesNothing();
    void objectsMarkedBesideAChangeLoseTheMark();
    void objectsOfTheFileKeepTheirMark();
    void objectsThatReadingWouldSwitchOnAreWrittenWithTheirSwitch();
    void untouchedTreesStayUnmarked();

private:
    /// The working tree's second copy; both share the values of one load, or share nothing.
    [[nodiscard]] static std::unique_ptr<EventTreeItem> counterpart(const EventTreeItem &tree)
    {
        QFETCH_GLOBAL(bool, shared);
        std::unique_ptr<EventTreeItem> copy = EventTreeClone::copyNode(tree, nullptr);
        if (!shared) {
            detach(copy.get());
        }
        return copy;
    }
    static void detach(EventTreeItem *item)
    {
        for (int column = 0; column < item->columnCount(); ++column) {
            item->setData(column, item->data(column));
        }
        for (int row = 0; row < item->childCount(); ++row) {
            detach(item->eventChild(row));
        }
    }
    [[nodiscard]] EventTreeItem *at(const char *path) const { return node(m_working, path); }
    [[nodiscard]] bool isUnchanged() const { return ChangeMarker::compareTrees(*m_reference, *m_working); }
    [[nodiscard]] QStringList marked() const { return TreeMaker::marked(*m_working); }

    std::unique_ptr<EventTreeItem> m_reference;
    std::unique_ptr<EventTreeItem> m_working;
};

void ChangeMarkerTest::initTestCase_data()
{
    QTest::addColumn<bool>("shared");
    QTest::newRow("trees sharing their values") << true;
    QTest::newRow("trees sharing nothing") << false;
}

void ChangeMarkerTest::init()
{
    m_reference = sampleTree();
    m_working = counterpart(*m_reference);
}

void ChangeMarkerTest::equalTreesAreUnchangedAndUnmarked()
{
    QVERIFY(isUnchanged());
    QCOMPARE(marked(), QStringList());
}

void ChangeMarkerTest::differentNumberOfGroupsIsAChange()
{
    m_working->deleteChild(1);
    QVERIFY(!isUnchanged());
    QVERIFY(!ChangeMarker::compareTrees(*m_working, *m_reference));
}

void ChangeMarkerTest::differentNumberOfHeaderColumnsIsAChange()
{
    m_working->setData(QVector<QVariant>{QStringLiteral("Parameter")});
    QVERIFY(!isUnchanged());
}

void ChangeMarkerTest::treesWithoutRowsOrColumnsAreUnchanged()
{
    const auto empty = TreeMaker::root();
    QVERIFY(ChangeMarker::compareTrees(*empty, *TreeMaker::root()));
    type(at("g/e/p"), "changed");
    m_reference->setData(QVector<QVariant>());
    m_working->setData(QVector<QVariant>());
    QVERIFY(isUnchanged());
    QCOMPARE(marked(), QStringList());
}

void ChangeMarkerTest::comparisonStopsAfterTheFirstGroupThatDiffers()
{
    type(at("g/e/p"), "changed");
    type(at("last/x/p"), "changed");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("g/e/p")});
    type(at("g/e/p"), "v");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), paths("", {QStringLiteral("g/e/p"), QStringLiteral("last/x/p")}));
}

void ChangeMarkerTest::comparisonVisitsAllOfAGroup()
{
    type(at("last/x/p"), "changed");
    type(at("last/y/p"), "changed");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), paths("last/", {QStringLiteral("x/p"), QStringLiteral("y/p")}));
}

void ChangeMarkerTest::changeTakenBackIsNoChangeButStaysMarked()
{
    type(at("g/e/enabled"), "0");
    QVERIFY(!isUnchanged());
    type(at("g/e/enabled"), "1");
    QVERIFY(isUnchanged());
    QVERIFY(at("g/e/enabled")->overlay);
    QVERIFY(at("g/e")->overlay);
}

void ChangeMarkerTest::typedValueMarksItselfOnly()
{
    type(at("g/e/p"), "changed");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("g/e/p")});
    QCOMPARE(TreeMaker::marked(*m_reference), QStringList());
}

void ChangeMarkerTest::changedElementsMarkTheList()
{
    at("g/e/names")->setData(2, QStringLiteral(R"(["a","a"])"));
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("g/e/names")});
}

void ChangeMarkerTest::outcomeOfAnAccountMarksItsSurroundings()
{
    type(at("g/e/message-audit-events/open/users/alice/succ"), "1");
    QVERIFY(!isUnchanged());
    // The account called "groups" beside it is no member of that name.
    QCOMPARE(marked(),
             paths("g/e/message-audit-events/open",
                   {QString(), QStringLiteral("/users"), QStringLiteral("/users/alice"),
                    QStringLiteral("/users/alice/fail"), QStringLiteral("/users/alice/succ")}));
}

void ChangeMarkerTest::outcomeOfTheOthersMarksUsersAndGroups()
{
    type(at("g/e/message-audit-events/open/other/fail"), "1");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), usersGroupsAndOthers());
}

void ChangeMarkerTest::changedUsersMarkOtherAndGroups()
{
    at("g/e/message-audit-events/open/users")->setData(2, QStringLiteral(R"({"bob":{}})"));
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), usersGroupsAndOthers());
}

void ChangeMarkerTest::changedGroupsMarkOtherAndUsers()
{
    at("g/e/message-audit-events/open/groups")->setData(2, QStringLiteral(R"({"adm":{}})"));
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), usersGroupsAndOthers());
}

void ChangeMarkerTest::changedGroupsWithoutSiblingsMarkWhatIsThere()
{
    m_reference = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(m_reference.get(), "g"), "e");
    EventTreeItem *audit = TreeMaker::object(event, "message-audit-events");
    TreeMaker::subjects(TreeMaker::object(audit, "open"), "groups");
    m_working = counterpart(*m_reference);
    at("g/e/message-audit-events/open/groups")->setData(2, QStringLiteral(R"({"adm":{}})"));
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(),
             paths("g/e/message-audit-events",
                   {QString(), QStringLiteral("/open"), QStringLiteral("/open/groups")}));
}

void ChangeMarkerTest::accountWithTheNameOfAMemberMarksItselfOnly()
{
    at("g/e/message-audit-events/open/users/groups")->setData(2, QStringLiteral(R"({"x":"1"})"));
    at("g/e/message-audit-events/open/users/succ")->setData(2, QStringLiteral(R"({"x":"1"})"));
    at("g/e/message-audit-events/open/groups/users")->setData(2, QStringLiteral(R"({"x":"1"})"));
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(),
             paths("g/e/message-audit-events/open/",
                   {QStringLiteral("users/groups"), QStringLiteral("users/succ"),
                    QStringLiteral("groups/users")}));
}

void ChangeMarkerTest::switchOfAnExtendedParameterMarksItsSiblings()
{
    type(at("g/e/extend-message-params/size/enabled"), "1");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(),
             paths("g/e/extend-message-params/size",
                   {QString(), QStringLiteral("/enabled"), QStringLiteral("/unit")}));
}

void ChangeMarkerTest::switchOfAnythingElseMarksNoSiblings()
{
    type(at("g/e/enabled"), "0");
    type(at("g/e/notification_repetition/enabled"), "1");
    QVERIFY(!isUnchanged());
    // Groups show a box as well, so what shows in it marks them; no file holds groups.
    QCOMPARE(marked(),
             paths("g",
                   {QString(), QStringLiteral("/e"), QStringLiteral("/e/enabled"),
                    QStringLiteral("/e/notification_repetition"),
                    QStringLiteral("/e/notification_repetition/enabled")}));
}

void ChangeMarkerTest::outcomeWithoutRelativesMarksItself()
{
    m_reference = TreeMaker::root();
    TreeMaker::parameter(m_reference.get(), "fail", "0");
    TreeMaker::parameter(m_reference.get(), "users", "0");
    TreeMaker::parameter(m_reference.get(), "enabled", "0");
    m_working = counterpart(*m_reference);
    for (int row = 0; row < 3; ++row) {
        type(m_working->eventChild(row), "1");
        ChangeMarker::compareItems(*m_reference->eventChild(row), *m_working->eventChild(row), 1);
    }
    QCOMPARE(marked(),
             paths("", {QStringLiteral("fail"), QStringLiteral("users"), QStringLiteral("enabled")}));
}

void ChangeMarkerTest::notificationMarksTheEventAndIsAChange()
{
    at("last/x")->notificationState = EventTreeItem::NotificationSwitchedOn;
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("last/x")});
    at("last/x")->notificationState = EventTreeItem::NotificationOff;
    QVERIFY(isUnchanged());
}

void ChangeMarkerTest::checkStateMarksTheNodeThatShowsIt()
{
    at("last/x")->checkState = Qt::Checked;
    at("last/y")->checkState = Qt::Checked; // shows no box
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("last/x")});
}

void ChangeMarkerTest::missingRowsAreAChangeAndTheRestIsStillCompared()
{
    EventTreeItem *event = at("g/e");
    event->deleteChild(event->childCount() - 1);
    type(at("g/e/p"), "changed");
    QVERIFY(!isUnchanged());
    QCOMPARE(marked(), QStringList{QStringLiteral("g/e/p")});
}

void ChangeMarkerTest::childrenOfWorkingNodesThatHadNoneDoNotCount()
{
    TreeMaker::parameter(at("last/y/p"), "new", "v");
    QVERIFY(isUnchanged());
}

void ChangeMarkerTest::onlyTheFirstColumnDescends()
{
    type(at("g/e/p"), "changed");
    QVERIFY(ChangeMarker::compareItems(*node(m_reference, "g/e"), *at("g/e"), 1));
    QCOMPARE(marked(), QStringList());
    QVERIFY(!ChangeMarker::compareItems(*node(m_reference, "g/e"), *at("g/e"), 0));
    QCOMPARE(marked(), QStringList{QStringLiteral("g/e/p")});
}

void ChangeMarkerTest::savingMarksTheChangesOfAllGroups()
{
    type(at("g/f/enabled"), "1");
    type(at("last/y/p"), "changed");
    ChangeMarker::markAll(*m_reference, *m_working);
    QVERIFY(at("g/f/enabled")->overlay);
    QVERIFY(at("last/y/p")->overlay);
    QVERIFY(!at("last/x/p")->overlay);
}

void ChangeMarkerTest::typedParameterLeavesItsEventOff()
{
    type(at("last/x/p"), "changed");
    ChangeMarker::markAll(*m_reference, *m_working);
    QVERIFY(at("last/x/enabled")->overlay);
    QCOMPARE(at("last/x/enabled")->value(1).toString(), QStringLiteral("0"));
}

void ChangeMarkerTest::notificationLeavesItsEventOn()
{
    at("g/e")->notificationState = EventTreeItem::NotificationSwitchedOn;
    ChangeMarker::markAll(*m_reference, *m_working);
    QCOMPARE(marked(), paths("g/", {QStringLiteral("e"), QStringLiteral("e/enabled")}));
    QCOMPARE(at("g/e/enabled")->value(1).toString(), QStringLiteral("1"));
}

void ChangeMarkerTest::notificationOfAnEventWithoutASwitchWritesNothing()
{
    at("last/y")->notificationState = EventTreeItem::NotificationSwitchedOn;
    ChangeMarker::markAll(*m_reference, *m_working);
    QCOMPARE(marked(), QStringList());
}

void ChangeMarkerTest::objectsMarkedBesideAChangeLoseTheMark()
{
    type(at("g/e/message-audit-events/open/other/fail"), "1");
    ChangeMarker::markAll(*m_reference, *m_working);
    // The lists of accounts hold no change, so they are not the file's business.
    QVERIFY(!at("g/e/message-audit-events/open/users")->overlay);
    QVERIFY(!at("g/e/message-audit-events/open/groups")->overlay);
    QVERIFY(at("g/e/message-audit-events/open/other/fail")->overlay);
    QVERIFY(at("g/e/message-audit-events/open/other/succ")->overlay);
    QVERIFY(at("g/e/enabled")->overlay);
}

void ChangeMarkerTest::objectsOfTheFileKeepTheirMark()
{
    auto reference = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(reference.get(), "g"), "e", "1");
    TreeMaker::object(event, "from-file")->overlay = true;
    TreeMaker::object(event, "from-catalog");
    const auto working = counterpart(*reference);
    ChangeMarker::markAll(*reference, *working);
    QCOMPARE(TreeMaker::marked(*working),
             paths("g/e/", {QStringLiteral("enabled"), QStringLiteral("from-file")}));
}

void ChangeMarkerTest::objectsThatReadingWouldSwitchOnAreWrittenWithTheirSwitch()
{
    auto reference = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(reference.get(), "g"), "e");
    EventTreeItem *inner = TreeMaker::switched(event, "inner", "0");
    TreeMaker::object(inner, "message-params");
    TreeMaker::parameter(inner, "p", "v");
    EventTreeItem *plain = TreeMaker::switched(event, "plain", "0");
    TreeMaker::parameter(plain, "p", "v");
    const auto working = counterpart(*reference);
    type(node(working, "g/e/inner/p"), "changed");
    type(node(working, "g/e/plain/p"), "changed");
    ChangeMarker::markAll(*reference, *working);
    QCOMPARE(TreeMaker::marked(*working),
             paths("g/e/",
                   {QStringLiteral("inner/enabled"), QStringLiteral("inner/p"), QStringLiteral("plain/p")}));
}

void ChangeMarkerTest::untouchedTreesStayUnmarked()
{
    ChangeMarker::markAll(*m_reference, *m_working);
    QCOMPARE(marked(), QStringList());
}

QTEST_MAIN(ChangeMarkerTest)

#include "changemarkertest.moc"
