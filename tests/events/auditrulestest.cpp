// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QTest>

/// The watched paths that the builder finds in an event's audit rules.
class AuditRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWatchedPathIsListedOnce()
    {
        const auto root = tree(
            R"({"message-audit-rules": "-a always,exit -F path=/etc/passwd -F perm=r -k /etc/passwd, -w /etc/passwd -p r -k /etc/passwd, -w /etc/passwd -p wa -k /etc/passwd, -w /etc/shadow -p r -k /etc/shadow"})");
        const EventTreeItem *list = Tree::at(root, listPath);

        QVERIFY(list);
        QCOMPARE(list->kind, int(EventTreeItem::List));
        QCOMPARE(list->data(1).toString(), QStringLiteral("/etc/passwd, /etc/shadow"));
        QCOMPARE(list->data(2).toString(), QStringLiteral(R"(["/etc/passwd","/etc/shadow"])"));
        QVERIFY(list->hasAuditRules());
        QVERIFY(!list->overlay);
        QVERIFY(Tree::at(root, "g/event")->hasAuditRules());
        QVERIFY(Tree::at(root, "g/event/filter-values"));
        QVERIFY(!Tree::at(root, "g/event/filter-values")->overlay);
    }

    void pathIsTheLastFieldOfItsRule_data()
    {
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << QStringLiteral("-w /etc/fstab -p wa -k /etc/fstab")
                               << QStringLiteral("/etc/fstab");
        QTest::newRow("line break behind") << QStringLiteral("-w /a -k /a\\n") << QStringLiteral("/a");
        QTest::newRow("tab before") << QStringLiteral("-w /a -k \\t/a") << QStringLiteral("/a");
        QTest::newRow("path alone") << QStringLiteral("/only") << QStringLiteral("/only");
        QTest::newRow("comma without blank") << QStringLiteral("-w /a,b -k /a,b") << QStringLiteral("/a,b");
        QTest::newRow("Cyrillic") << QStringLiteral("-w /дом -k /дом") << QStringLiteral("/дом");
        QTest::newRow("no rule") << QString() << QString();
        QTest::newRow("blank at the end") << QStringLiteral("-w /a -k /a ") << QString();
    }
    void pathIsTheLastFieldOfItsRule()
    {
        QFETCH(QString, rule);
        QFETCH(QString, path);
        const auto root = tree(QStringLiteral(R"({"message-audit-rules": "%1"})").arg(rule).toUtf8());
        QCOMPARE(Tree::valueAt(root, listPath), path);
    }

    void rulesInAnArrayCountLikeRulesInAText()
    {
        const auto root = tree(R"({"message-audit-rules": ["-w /a -k /a", "-w /b -k /b"]})");
        QVERIFY(Tree::at(root, "g/event")->hasAuditRules());
        QCOMPARE(Tree::valueAt(root, listPath), QStringLiteral("/a, /b"));
    }

    void presentListTakesTheValueOfTheRules()
    {
        const auto root = tree(
            R"({"filter-values": {".auditd.key": "/old", "PROGRAM": "auditd"}, "message-audit-rules": "-w /new -k /new"})");
        const EventTreeItem *filters = Tree::at(root, "g/event/filter-values");
        QCOMPARE(Tree::childNames(filters),
                 QStringList({QStringLiteral(".auditd.key"), QStringLiteral("PROGRAM")}));
        QCOMPARE(Tree::valueAt(root, listPath), QStringLiteral("/new"));
        QVERIFY(Tree::at(root, listPath)->hasAuditRules());
    }

    void listStandsWhereTheDescriptionPutIt()
    {
        const auto root
            = tree(R"({"params": {".auditd.key": []}, "message-audit-rules": "-w /new -k /new"})");
        QCOMPARE(Tree::valueAt(root, "g/event/params/.auditd.key"), QStringLiteral("/new"));
        QVERIFY(!Tree::at(root, "g/event/filter-values"));
    }

    void missingListJoinsThePresentFilters()
    {
        const auto root
            = tree(R"({"filter-values": {"PROGRAM": "auditd"}, "message-audit-rules": "-w /new -k /new"})");
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/filter-values")),
                 QStringList({QStringLiteral("PROGRAM"), QStringLiteral(".auditd.key")}));
        QCOMPARE(Tree::valueAt(root, "g/event/filter-values/PROGRAM"), QStringLiteral("auditd"));
    }

    void filtersThatAreNoObjectDoNotLoseTheirValue()
    {
        const auto root = tree(R"({"filter-values": "text", "message-audit-rules": "-w /new -k /new"})");
        QCOMPARE(Tree::valueAt(root, "g/event/filter-values"), QStringLiteral("text"));
        QCOMPARE(Tree::at(root, "g/event/filter-values")->childCount(), 0);
        QCOMPARE(Tree::valueAt(root, "g/event/.auditd.key"), QStringLiteral("/new"));
    }

    void listOfTheAdministratorIsKept_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QString>("shown");
        QTest::newRow("array") << QByteArray(R"(["/mine", "/too"])") << QStringLiteral("/mine, /too");
        QTest::newRow("text") << QByteArray(R"("/mine")") << QStringLiteral("/mine");
        QTest::newRow("emptied") << QByteArray("[]") << QString();
    }
    void listOfTheAdministratorIsKept()
    {
        QFETCH(QByteArray, list);
        QFETCH(QString, shown);
        for (const char *description :
             {R"({"message-audit-rules": "-w /a -k /a", "filter-values": {".auditd.key": ["/a"]}})",
              R"({"message-audit-rules": "-w /a -k /a", "filter-values": {}})",
              R"({"message-audit-rules": "-w /a -k /a"})"}) {
            const QByteArray settings = R"({"event": {"filter-values": {".auditd.key": )" + list + "}}}";
            const auto root = tree(description, settings);
            QCOMPARE(Tree::valueAt(root, listPath), shown);
            QVERIFY(Tree::at(root, listPath)->overlay);
            QVERIFY(Tree::at(root, listPath)->hasAuditRules());
        }
    }

    void rulesOfTheAdministratorGiveTheList()
    {
        const auto root = tree(R"({"message-audit-rules": "-w /a -k /a"})",
                               R"({"event": {"message-audit-rules": "-w /mine -k /mine"}})");
        QCOMPARE(Tree::valueAt(root, listPath), QStringLiteral("/mine"));
        QVERIFY(!Tree::at(root, listPath)->overlay);
        QVERIFY(Tree::at(root, "g/event/message-audit-rules")->overlay);
    }

    void dictionaryAppliesToAListThatWasMade()
    {
        const CatalogSandbox sandbox;
        sandbox.setDictionary(
            R"({".auditd.key": {"editable": "true", "ru": "Файлы"}, "filter-values": {"children_editable": "true"}})");
        sandbox.addEvent("g", "event", R"({"event-group": "g", "message-audit-rules": "-w /a -k /a"})");
        const auto root = sandbox.parse();
        const EventTreeItem *list = Tree::at(root, listPath);
        QVERIFY(list);
        QVERIFY(list->editable);
        QCOMPARE(list->data(0).toString(), Tree::inLanguage(".auditd.key", "Файлы"));
        QVERIFY(!Tree::at(root, "g/event/filter-values")->editable);
        QVERIFY(Tree::at(root, "g/event/filter-values")->childrenEditable);
    }

    void eventWithoutRulesGetsNoList()
    {
        const auto root = tree(
            R"({"filter-values": {".auditd.key": "/kept"}, "object": {"message-audit-rules": "-w /a -k /a"}})");
        QVERIFY(!Tree::at(root, "g/event")->hasAuditRules());
        QVERIFY(Tree::at(root, "g/event/object")->hasAuditRules());
        QCOMPARE(Tree::valueAt(root, listPath), QStringLiteral("/kept"));
        QVERIFY(!Tree::at(root, listPath)->hasAuditRules());
    }

private:
    static constexpr const char *listPath = "g/event/filter-values/.auditd.key";

    static std::unique_ptr<EventTreeItem> tree(const QByteArray &members, const QByteArray &settings = "{}")
    {
        const CatalogSandbox sandbox;
        QByteArray json(members);
        json.chop(1);
        sandbox.addEvent("g", "event", (json + R"(, "event-group": "g"})"));
        sandbox.setSettings(settings);
        return sandbox.parse();
    }
};

QTEST_GUILESS_MAIN(AuditRulesTest)
#include "auditrulestest.moc"
