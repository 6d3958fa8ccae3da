// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QTest>

/// Links between events, and the flags that an event's members set.
class EventOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dependencyIsEnteredOnBothSides()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("a", "needs", R"({"event-group": "a", "message-depends": "needed"})");
        sandbox.addEvent("b", "needed", R"({"event-group": "b", "x": "1"})");
        const auto root = sandbox.parse();
        EventTreeItem *needs = Tree::at(root, "a/needs");
        EventTreeItem *needed = Tree::at(root, "b/needed");

        QCOMPARE(needs->dependencies(), QVector<EventTreeItem *>{needed});
        QCOMPARE(needed->dependents(), QVector<EventTreeItem *>{needs});
        QVERIFY(needs->dependents().isEmpty());
        QVERIFY(needed->dependencies().isEmpty());
    }

    void severalDependenciesAreSplitAtCommas_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("comma") << QByteArray(R"("one,two,three")");
        QTest::newRow("comma and blanks") << QByteArray(R"("  one , two,three ")");
        QTest::newRow("array") << QByteArray(R"(["one", "two", "three"])");
        QTest::newRow("with unknown ones") << QByteArray(R"("one,nowhere,two,,three,g")");
    }
    void severalDependenciesAreSplitAtCommas()
    {
        QFETCH(QByteArray, value);
        const CatalogSandbox sandbox;
        for (const char *id : {"one", "two", "three"}) {
            sandbox.addEvent("g", id, R"({"event-group": "g"})");
        }
        sandbox.addEvent("g", "event", (R"({"event-group": "g", "message-depends": )" + value + '}'));
        const auto root = sandbox.parse();
        QStringList names = Tree::names(Tree::at(root, "g/event")->dependencies());
        names.sort();
        QCOMPARE(names, QStringList({QStringLiteral("one"), QStringLiteral("three"), QStringLiteral("two")}));
        for (const char *id : {"g/one", "g/two", "g/three"}) {
            QCOMPARE(Tree::names(Tree::at(root, id)->dependents()), QStringList{QStringLiteral("event")});
        }
    }

    void dependencyOnAnUnknownEventIsDropped()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g", "message-depends": "nowhere"})");
        const auto root = sandbox.parse();
        QVERIFY(Tree::at(root, "g/event")->dependencies().isEmpty());
        for (const EventTreeItem *node : Tree::all(root.get())) {
            QVERIFY(node->dependents().isEmpty());
        }
    }

    void circlesAndSharedDependenciesAreEntered()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "a", R"({"event-group": "g", "message-depends": "b"})");
        sandbox.addEvent("g", "b", R"({"event-group": "g", "message-depends": "a"})");
        sandbox.addEvent("g", "c", R"({"event-group": "g", "message-depends": "a"})");
        const auto root = sandbox.parse();
        QCOMPARE(Tree::names(Tree::at(root, "g/a")->dependencies()), QStringList{QStringLiteral("b")});
        QCOMPARE(Tree::names(Tree::at(root, "g/b")->dependencies()), QStringList{QStringLiteral("a")});
        QStringList dependents = Tree::names(Tree::at(root, "g/a")->dependents());
        dependents.sort();
        QCOMPARE(dependents, QStringList({QStringLiteral("b"), QStringLiteral("c")}));
    }

    void dependencyMeansTheEventNotWhatIsCalledLikeIt()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("mount", "Mounts", "Тома");
        sandbox.addEvent("mount", "aa", R"({"event-group": "mount", "mount": "x",
            "message-audit-events": {"mount": {"users": {"mount": {"succ": "1"}}}}})");
        sandbox.addEvent("mount", "mount", R"({"event-group": "mount", "x": "1"})");
        sandbox.addEvent("zz", "event", R"({"event-group": "zz", "message-depends": "mount"})");
        const auto root = sandbox.parse();
        QCOMPARE(Tree::at(root, "zz/event")->dependencies(),
                 QVector<EventTreeItem *>{Tree::at(root, "mount/mount")});
        QCOMPARE(Tree::names(Tree::at(root, "mount/mount")->dependents()),
                 QStringList{QStringLiteral("event")});
    }

    void everyTreeOfAParserHasItsOwnLinks()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "needs", R"({"event-group": "g", "message-depends": "needed"})");
        sandbox.addEvent("g", "needed", R"({"event-group": "g"})");
        const SingleEventsParser parser({}, {}, nullptr);
        for (int i = 0; i < 3; ++i) {
            const std::unique_ptr<EventTreeItem> root(parser.parse());
            QCOMPARE(Tree::at(root, "g/needs")->dependencies(),
                     QVector<EventTreeItem *>{Tree::at(root, "g/needed")});
            QCOMPARE(Tree::at(root, "g/needed")->dependents(),
                     QVector<EventTreeItem *>{Tree::at(root, "g/needs")});
        }
    }

    void flagsFollowTheNumberOfTheirMember_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("set");
        QTest::newRow("one") << QByteArray(R"("1")") << true;
        QTest::newRow("zero") << QByteArray(R"("0")") << false;
        QTest::newRow("two") << QByteArray(R"("2")") << true;
        QTest::newRow("number") << QByteArray("1") << true;
        QTest::newRow("number zero") << QByteArray("0") << false;
        QTest::newRow("true") << QByteArray("true") << true;
        QTest::newRow("word") << QByteArray(R"("yes")") << false;
        QTest::newRow("empty") << QByteArray(R"("")") << false;
    }
    void flagsFollowTheNumberOfTheirMember()
    {
        QFETCH(QByteArray, value);
        QFETCH(bool, set);
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "redirect", (R"({"event-group": "g", "is-not-redirected": )" + value + '}'));
        sandbox.addEvent("g", "load", (R"({"event-group": "g", "generates-load": )" + value + '}'));
        const auto root = sandbox.parse();
        QCOMPARE(Tree::at(root, "g/redirect")->notRedirected, set);
        QVERIFY(!Tree::at(root, "g/redirect")->generatesLoad);
        QCOMPARE(Tree::at(root, "g/load")->generatesLoad, set);
        QVERIFY(!Tree::at(root, "g/load")->notRedirected);
    }

    void flagsCountAtTheTopOfAnEventOnly()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g",
            "params": {"generates-load": "1", "is-not-redirected": "1", "conflicts-with": "other"}})");
        const auto root = sandbox.parse();
        for (const EventTreeItem *node : Tree::all(root.get())) {
            QVERIFY(!node->generatesLoad);
            QVERIFY(!node->notRedirected);
            QVERIFY(node->conflictsWith.isEmpty());
        }
    }

    void settingsCanSetAFlag()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g", "generates-load": "0"})");
        sandbox.setSettings(R"({"event": {"generates-load": "1"}})");
        QVERIFY(Tree::at(sandbox.parse(), "g/event")->generatesLoad);
    }

    void conflictsAreSplitAtCommaAndBlank_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("one") << QByteArray(R"("a")") << QStringList{QStringLiteral("a")};
        QTest::newRow("two") << QByteArray(R"("a, b")")
                             << QStringList{QStringLiteral("a"), QStringLiteral("b")};
        QTest::newRow("without blank") << QByteArray(R"("a,b")") << QStringList{QStringLiteral("a,b")};
        QTest::newRow("array") << QByteArray(R"(["a", "b"])")
                               << QStringList{QStringLiteral("a"), QStringLiteral("b")};
    }
    void conflictsAreSplitAtCommaAndBlank()
    {
        QFETCH(QByteArray, value);
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", (R"({"event-group": "g", "conflicts-with": )" + value + '}'));
        const auto root = sandbox.parse();
        QTEST(Tree::at(root, "g/event")->conflictsWith, "names");
    }

    void knownMessageIdentifierTurnsTheNotificationOn()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "known",
                         R"({"event-group": "g", "message-params": {"message_id": "login_ok"}})");
        sandbox.addEvent("g", "other",
                         R"({"event-group": "g", "message-params": {"message_id": "login_bad"}})");
        sandbox.addEvent("g", "without", R"({"event-group": "g"})");
        QStringList asked;
        SingleEventsParser parser({}, {}, nullptr);
        parser.setNotificationLookup([&asked](const QString &messageId) {
            asked.append(messageId);
            return messageId == QLatin1String("login_ok");
        });
        for (int i = 0; i < 2; ++i) { // both trees of a load
            const std::unique_ptr<EventTreeItem> root(parser.parse());
            QCOMPARE(int(Tree::at(root, "g/known")->notificationState), 1);
            QCOMPARE(int(Tree::at(root, "g/other")->notificationState), 0);
            QCOMPARE(int(Tree::at(root, "g/without")->notificationState), 0);
            QCOMPARE(int(Tree::at(root, "g")->notificationState), 0);
        }
        QCOMPARE(asked, QStringList({QStringLiteral("login_ok"), QStringLiteral("login_bad")}));
    }

    void withoutANotificationLookupNothingIsOn()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event",
                         R"({"event-group": "g", "message-params": {"message_id": "login_ok"}})");
        QVERIFY(!Tree::at(sandbox.parse(), "g/event")->isNotificationOn());
    }
};

QTEST_GUILESS_MAIN(EventOptionsTest)
#include "eventoptionstest.moc"
