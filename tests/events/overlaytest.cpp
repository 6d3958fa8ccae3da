// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QTest>

/// What the administrator's settings leave in the tree.
class OverlayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changedParameterIsMergedMarkedAndRecorded()
    {
        const auto root
            = tree(R"({"event": {"enabled": "1", "delay": "9"}})", R"({"delay": "5", "enabled": "1"})");
        const EventTreeItem *record = Tree::at(root, "g/event/overlay0");

        QCOMPARE(Tree::valueAt(root, "g/event/delay"), QStringLiteral("9"));
        QVERIFY(Tree::at(root, "g/event/delay")->overlay);
        QVERIFY(Tree::at(root, "g/event/delay")->visible);
        QVERIFY(record);
        QCOMPARE(record->data(1).toString(), QStringLiteral("delay"));
        QVERIFY(!record->visible);
        QVERIFY(!record->overlay);
        QCOMPARE(Tree::valueAt(root, "g/event/overlay1"), QStringLiteral("enabled"));
        QVERIFY(!Tree::at(root, "g/event/overlay1")->visible);
        QCOMPARE(marked(root), QStringList({QStringLiteral("delay"), QStringLiteral("enabled")}));
    }

    void eventsWithoutSettingsCarryNoMarks()
    {
        const auto root = tree(R"({"other": {"delay": "9"}})", R"({"delay": "5", "enabled": "1"})");
        QCOMPARE(marked(root), QStringList());
        QCOMPARE(
            Tree::childNames(Tree::at(root, "g/event")),
            QStringList({QStringLiteral("delay"), QStringLiteral("enabled"), QStringLiteral("event-group")}));
    }

    void settingsWithoutASwitchSwitchTheEventOn()
    {
        const auto root = tree(R"({"event": {"delay": "9"}})",
                               R"({"delay": "5", "enabled": "0", "message-params": {"name_en": "E"}})");
        QCOMPARE(Tree::valueAt(root, "g/event/enabled"), QStringLiteral("1"));
        QCOMPARE(Tree::at(root, "g/event")->checkState, int(Qt::Checked));
        QCOMPARE(Tree::at(root, "g")->checkState, int(Qt::Checked));
        QCOMPARE(Tree::valueAt(root, "g/event/overlay0"), QStringLiteral("enabled"));
        QCOMPARE(Tree::valueAt(root, "g/event/overlay1"), QStringLiteral("delay"));
        QCOMPARE(marked(root), QStringList({QStringLiteral("delay"), QStringLiteral("enabled")}));
    }

    void settingsWithoutASwitchLeaveOtherEventsAsTheyAre()
    {
        const auto root = tree(R"({"event": {"delay": "9"}})", R"({"delay": "5", "enabled": "0"})");
        QCOMPARE(Tree::valueAt(root, "g/event/enabled"), QStringLiteral("0"));
        QCOMPARE(marked(root), QStringList{QStringLiteral("delay")});
    }

    void settingsThatAreNoObjectAreIgnored_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::newRow("cut off") << QByteArray(R"({"event": {"delay": "9"})");
        QTest::newRow("array") << QByteArray(R"({"event": ["delay"]})");
        QTest::newRow("text") << QByteArray(R"({"event": "delay"})");
        QTest::newRow("empty file") << QByteArray();
    }
    void settingsThatAreNoObjectAreIgnored()
    {
        QFETCH(QByteArray, settings);
        const auto root
            = tree(settings, R"({"delay": "5", "enabled": "0", "message-params": {"name_en": "E"}})");
        QCOMPARE(Tree::valueAt(root, "g/event/delay"), QStringLiteral("5"));
        QCOMPARE(Tree::valueAt(root, "g/event/enabled"), QStringLiteral("0"));
        QCOMPARE(marked(root), QStringList());
    }

    void changedMemberOfAnObjectMarksThatMemberOnly()
    {
        const auto root = tree(R"({"event": {"o": {"p": {"y": "2"}}}})",
                               R"({"o": {"x": "1", "p": {"y": "1", "z": "1"}}})");
        QCOMPARE(Tree::valueAt(root, "g/event/o/p/y"), QStringLiteral("2"));
        QCOMPARE(Tree::valueAt(root, "g/event/o/p/overlay0"), QStringLiteral("y"));
        QVERIFY(!Tree::at(root, "g/event/o/p/overlay0")->visible);
        QCOMPARE(marked(root), QStringList{QStringLiteral("o/p/y")});
    }

    void insertedObjectIsMarkedWithAllBelowIt()
    {
        const auto root
            = tree(R"({"event": {"repeat": {"enabled": "1", "times": {"day": "1", "list": ["a"]}}}})",
                   R"({"a": "1"})");
        QCOMPARE(marked(root),
                 QStringList({QStringLiteral("repeat"), QStringLiteral("repeat/enabled"),
                              QStringLiteral("repeat/times"), QStringLiteral("repeat/times/day"),
                              QStringLiteral("repeat/times/list")}));
        QCOMPARE(Tree::at(root, "g/event/repeat")->checkState, int(Qt::Checked));
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/repeat")),
                 QStringList({QStringLiteral("enabled"), QStringLiteral("times")}));
    }

    void insertedUserIsMarkedButTheSystemsAccountsAreNot()
    {
        const auto root = tree(
            R"({"event": {"message-audit-events": {"login": {"users": {"bob": {"succ": "1", "fail": "0"}}}}}})",
            R"({"message-audit-events": {"login": {"users": {"alice": {"succ": "1", "fail": "1"}}}}})");
        const QString audit = QStringLiteral("message-audit-events");
        const QString bob = audit + QStringLiteral("/login/users/bob");
        // The records are gone from the object, so the way to it is marked instead.
        QCOMPARE(marked(root),
                 QStringList({audit, audit + QStringLiteral("/login"), audit + QStringLiteral("/login/users"),
                              bob, bob + QStringLiteral("/fail"), bob + QStringLiteral("/succ")}));
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/login/users")),
                 QStringList({QStringLiteral("alice"), QStringLiteral("bob"), QStringLiteral("root")}));
        QCOMPARE(Tree::valueAt(root, "g/event/message-audit-events/login/users/bob/succ"),
                 QStringLiteral("1"));
    }

    void changedValueOfAUserIsMarkedThereAndItsRecordHidden()
    {
        const auto root = tree(
            R"({"event": {"message-audit-events": {"login": {"users": {"alice": {"succ": "0"}}}}}})",
            R"({"message-audit-events": {"login": {"users": {"alice": {"succ": "1", "fail": "1"}}}}})");
        QCOMPARE(marked(root), QStringList{QStringLiteral("message-audit-events/login/users/alice/succ")});
        QCOMPARE(Tree::at(root, "g/event/message-audit-events/login/users/alice/succ")->checkState,
                 int(Qt::Unchecked));
        QVERIFY(!Tree::at(root, "g/event/message-audit-events/login/users/alice/overlay0")->visible);
    }

    void insertedGroupsObjectIsMarkedButTheSystemsGroupsAreNot()
    {
        const auto root
            = tree(R"({"event": {"message-audit-events": {"login": {"groups": {"wheel": {"succ": "1"}}}}}})",
                   R"({"message-audit-events": {"login": {"other": {"succ": "1"}}}})");
        const EventTreeItem *groups = Tree::at(root, "g/event/message-audit-events/login/groups");
        QVERIFY(groups);
        QCOMPARE(groups->kind, int(EventTreeItem::Subjects));
        const QString path = QStringLiteral("message-audit-events/login/groups");
        QCOMPARE(marked(root),
                 QStringList({path, path + QStringLiteral("/wheel"), path + QStringLiteral("/wheel/succ")}));
        QCOMPARE(Tree::childNames(groups), QStringList({QStringLiteral("adm"), QStringLiteral("wheel")}));
    }

    void textOfAnObjectHoldsNoRecords()
    {
        const auto root = tree(R"({"event": {"o": {"x": "2"}, "new": "1"}})", R"({"o": {"x": "1"}})");
        QCOMPARE(Tree::at(root, "g/event/o")->data(2).toString(), QStringLiteral(R"({"x":"2"})"));
        QCOMPARE(Tree::at(root, "g/event")->data(2).toString(),
                 QStringLiteral(R"({"event-group":"g","new":"1","o":{"x":"2"}})"));
    }

    void replacedArrayIsMarkedAndKeepsItsElements()
    {
        const auto root
            = tree(R"({"event": {"dirs": [{"path": "/a", "limit": "5"}, {"path": "/b"}], "none": []}})",
                   R"({"dirs": ["/x"], "none": ["y"]})");
        QCOMPARE(marked(root), QStringList({QStringLiteral("dirs"), QStringLiteral("none")}));
        QCOMPARE(Tree::at(root, "g/event/dirs")->data(2).toString(),
                 QStringLiteral(R"([{"limit":"5","path":"/a"},{"path":"/b"}])"));
        QCOMPARE(Tree::at(root, "g/event/none")->data(2).toString(), QStringLiteral("[]"));
        QCOMPARE(Tree::at(root, "g/event/none")->kind, int(EventTreeItem::List));
    }

    void realMembersAndRecordsOfOneNameLiveSideBySide()
    {
        const auto root = tree(R"({"event": {"delay": "9"}})",
                               R"({"delay": "5", "overlay0": "real", "overlay-mode": "on"})");
        QCOMPARE(Tree::valueAt(root, "g/event/overlay0"), QStringLiteral("real"));
        QCOMPARE(Tree::valueAt(root, "g/event/overlay1"), QStringLiteral("delay"));
        QVERIFY(!Tree::at(root, "g/event/overlay-mode")->visible);
        QCOMPARE(Tree::at(root, "g/event")->data(2).toString(),
                 QStringLiteral(R"({"delay":"9","event-group":"g","overlay-mode":"on","overlay0":"real"})"));
    }

    void eventsAndGroupsNamedLikeRecordsStayVisible()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("overlay-mounts", "overlay mounts", "overlay-тома");
        sandbox.addEvent("overlay-mounts", "overlay0",
                         R"({"event-group": "overlay-mounts", "name_en": "overlay mounted"})");
        const auto root = sandbox.parse();
        QVERIFY(Tree::at(root, "overlay-mounts")->visible);
        QVERIFY(Tree::at(root, "overlay-mounts/overlay0")->visible);
    }

private:
    /// A tree of one event, "event" in the group "g", with these members.
    static std::unique_ptr<EventTreeItem> tree(const QByteArray &settings, const QByteArray &members)
    {
        const CatalogSandbox sandbox;
        QByteArray json(members);
        json.chop(1);
        sandbox.addEvent("g", "event", (json + R"(, "event-group": "g"})"));
        sandbox.setSettings(settings);
        return sandbox.parse({QStringLiteral("root"), QStringLiteral("alice")}, {QStringLiteral("adm")});
    }

    static QStringList marked(const std::unique_ptr<EventTreeItem> &root)
    {
        return Tree::overlayPaths(Tree::at(root, "g/event"));
    }
};

QTEST_GUILESS_MAIN(OverlayTest)
#include "overlaytest.moc"
