// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <nodedictionary.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {
constexpr const char *eventJson = R"({
    "event-group": "g",
    "enabled": "1",
    "hidden": "x",
    "named": "x",
    "list": ["a"],
    "plain": "x",
    "open": {"inner": "x", "unlisted": "x", "hidden": "x"},
    "closed": {"inner": "x", "own": "x"},
    "message-audit-events": {"login": {"users": {"named": {"succ": "1"}}}}
})";
constexpr const char *dictionaryJson = R"({
    "hidden": {"visible": "false", "editable": "true", "children_editable": "true", "ru": "Скрыт"},
    "named": {"editable": "true", "ru": "Имя"},
    "list": {"visible": "true", "ru": "Список"},
    "open": {"editable": "false", "children_editable": "true", "ru": "Открыт"},
    "closed": {"children_editable": "false"},
    "inner": {"editable": "false", "ru": ""},
    "own": {"editable": "true", "visible": "no"},
    "users": {"ru": "Пользователи", "editable": "true"},
    "enabled": {"editable": "true", "ru": "Включено"},
    "message-audit-events": {"ru": "События аудита"},
    "message-depends": {"ru": "Зависит от"},
    "event": {"visible": "false", "editable": "true", "ru": "Событие"},
    "g": {"visible": "false", "editable": "true", "ru": "Группа"}
})";
} // namespace

class NodeDictionaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAreReadWithTheirDefaults()
    {
        const NodeDictionary dictionary = NodeDictionary::fromJson(
            R"({"a": {}, "b": {"visible": "false", "editable": "true", "children_editable": "true", "ru": "Б",
                "type": "number", "min": "-5", "max": "70"}, "c": {"visible": false, "editable": true, "min": "1"}})");
        const NodeDictionary::Entry *a = dictionary.find(QStringLiteral("a"));
        const NodeDictionary::Entry *b = dictionary.find(QStringLiteral("b"));
        const NodeDictionary::Entry *c = dictionary.find(QStringLiteral("c"));

        QVERIFY(a && b && c);
        QVERIFY(a->visible && !a->editable && !a->childrenEditable && !a->isNumber && !a->hasRange);
        QVERIFY(a->russianName.isEmpty());
        QVERIFY(!b->visible && b->editable && b->childrenEditable && b->isNumber && b->hasRange);
        QCOMPARE(b->russianName, QStringLiteral("Б"));
        QCOMPARE(b->minimum, -5);
        QCOMPARE(b->maximum, 70);
        // Only the texts "true" and "false" count.
        QVERIFY(c->visible && !c->editable && !c->hasRange);
        QCOMPARE(dictionary.find(QStringLiteral("A")), nullptr);
        QCOMPARE(dictionary.find(QString()), nullptr);
    }

    void whatIsNoDictionaryIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("array") << QByteArray(R"(["a"])");
        QTest::newRow("cut off") << QByteArray(R"({"a": {"visible": "false"})");
        QTest::newRow("entry is no object") << QByteArray(R"({"a": "false"})");
    }
    void whatIsNoDictionaryIsEmpty()
    {
        QFETCH(QByteArray, json);
        QCOMPARE(NodeDictionary::fromJson(json).find(QStringLiteral("a")), nullptr);
    }

    void missingFileIsAnEmptyDictionary()
    {
        QCOMPARE(NodeDictionary::fromFile(QStringLiteral("/nonexistent.json")).find(QStringLiteral("a")),
                 nullptr);
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", eventJson);
        const auto root = sandbox.parse();
        QVERIFY(Tree::at(root, "g/event/hidden")->visible);
        QVERIFY(Tree::at(root, "g/event/hidden")->editable);
        QVERIFY(Tree::at(root, "g/event/list")->editable);
    }

    void pipeInPlaceOfTheFileIsNotWaitedFor()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("dictionary.json"));
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QCOMPARE(NodeDictionary::fromFile(path).find(QStringLiteral("a")), nullptr);
    }

    void nodesWithoutAnEntryAreEditableAndNothingElse()
    {
        const auto root = tree();
        for (const char *path :
             {"g/event/plain", "g/event/open/unlisted", "g/event/message-audit-events/login"}) {
            const EventTreeItem *node = Tree::at(root, path);
            QVERIFY2(node, path);
            QVERIFY2(node->editable && node->visible && !node->childrenEditable, path);
            QVERIFY2(node->localizedName.isEmpty(), path);
            QCOMPARE(node->data(0).toString(), node->nativeName);
        }
    }

    void hiddenNodesGetNoFurtherOptions()
    {
        const auto root = tree();
        for (const char *path : {"g/event/hidden", "g/event/open/hidden"}) {
            const EventTreeItem *node = Tree::at(root, path);
            QVERIFY2(node, path);
            QVERIFY2(!node->visible && !node->editable && !node->childrenEditable, path);
            QVERIFY(node->localizedName.isEmpty());
            QCOMPARE(node->data(0).toString(), QStringLiteral("hidden"));
        }
        QVERIFY(Tree::at(root, "g/event/closed/own")->visible); // hidden by "false" only
    }

    void editableComesFromTheEntryOrElseFromTheParent()
    {
        const auto root = tree();
        QVERIFY(Tree::at(root, "g/event/named")->editable);
        QVERIFY(!Tree::at(root, "g/event/list")->editable);
        QVERIFY(!Tree::at(root, "g/event/open")->editable);
        QVERIFY(Tree::at(root, "g/event/open")->childrenEditable);
        QVERIFY(Tree::at(root, "g/event/open/inner")->editable);
        QVERIFY(!Tree::at(root, "g/event/closed")->childrenEditable);
        QVERIFY(!Tree::at(root, "g/event/closed/inner")->editable);
        QVERIFY(Tree::at(root, "g/event/closed/own")->editable);
    }

    void groupsAndEventsAreLeftAlone()
    {
        const auto root = tree();
        for (const char *path : {"g", "g/event"}) {
            const EventTreeItem *node = Tree::at(root, path);
            QVERIFY2(node->visible && !node->editable, path);
            QCOMPARE(node->data(0).toString(), node->nativeName);
        }
    }

    void russianNamesAreShownToRussianUsersOnly()
    {
        const auto root = tree();
        const auto check = [&root](const char *path, const char *key, const char *russian) {
            const EventTreeItem *node = Tree::at(root, path);
            QVERIFY2(node, path);
            QCOMPARE(node->nativeName, QString::fromUtf8(key));
            QCOMPARE(node->data(0).toString(), Tree::inLanguage(key, russian));
            QCOMPARE(node->localizedName, Tree::inLanguage("", russian));
        };
        check("g/event/named", "named", "Имя");
        check("g/event/list", "list", "Список");
        check("g/event/open", "open", "Открыт");
        check("g/event/message-audit-events/login/users", "users", "Пользователи");
        QCOMPARE(Tree::at(root, "g/event/open/inner")->data(0).toString(), QStringLiteral("inner"));
    }

    void namesThatCodeLooksForStayInEveryLanguage()
    {
        const CatalogSandbox sandbox;
        sandbox.setDictionary(R"({
            "enabled": {"ru": "Включено"}, "message-depends": {"ru": "Зависит от"},
            "message-audit-events": {"ru": "События аудита"}, "overlay0": {"ru": "Наложение"}})");
        sandbox.addEvent("g", "other", R"({"event-group": "g", "enabled": "0"})");
        sandbox.addEvent("g", "event", R"({
            "event-group": "g", "enabled": "1", "a": "1", "message-depends": "other",
            "message-audit-events": {"login": {"users": {"root": {"succ": "1", "fail": "0"}}}}})");
        sandbox.setSettings(R"({"event": {"a": "2"}})");
        const auto root = sandbox.parse();
        EventTreeItem *event = Tree::at(root, "g/event");

        for (const char *name : {"enabled", "message-depends", "message-audit-events", "overlay0"}) {
            const QString text = QString::fromUtf8(name);
            QVERIFY2(event->findChildTopLevel(text), name);
            QCOMPARE(event->findChildTopLevel(text)->data(0).toString(), text);
        }
        QCOMPARE(event->findChildTopLevelByNativeName(QStringLiteral("enabled"))->localizedName,
                 Tree::inLanguage("", "Включено"));
        QCOMPARE(Tree::names(event->dependencies()), QStringList{QStringLiteral("other")});
        QCOMPARE(Tree::at(root, "g/event/message-audit-events/login/users")->kind,
                 int(EventTreeItem::Subjects));
        QVERIFY(!Tree::at(root, "g/event/overlay0")->visible);
    }

    void anAccountIsNotTheParameterOfThatName()
    {
        const auto root = tree({QStringLiteral("hidden"), QStringLiteral("open")});
        for (const char *path : {"g/event/message-audit-events/login/users/named",
                                 "g/event/message-audit-events/login/users/hidden",
                                 "g/event/message-audit-events/login/users/open"}) {
            const EventTreeItem *account = Tree::at(root, path);
            QVERIFY2(account, path);
            QVERIFY2(account->visible && account->editable && !account->childrenEditable, path);
            QCOMPARE(account->data(0).toString(), account->nativeName);
        }
    }

private:
    static std::unique_ptr<EventTreeItem> tree(const QStringList &users = {})
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", eventJson);
        sandbox.setDictionary(dictionaryJson);
        return sandbox.parse(users);
    }
};

QTEST_GUILESS_MAIN(NodeDictionaryTest)
#include "nodedictionarytest.moc"
