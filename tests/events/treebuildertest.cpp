// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <localekeeper.h>

#include <KLocalizedString>

#include <QFile>
#include <QJsonDocument>
#include <QTest>

namespace {
constexpr const char *sampleJson = R"({
        "event-group": "g", "text": "value", "number": 2.5, "flag": true, "nothing": null,
        "list": ["a", "b"], "none": [], "object": {"deep": {"leaf": "1", "say": "\u0022a\u0022 \u005c я"}}, "empty": {},
        "users": {"x": "1"},
        "message-audit-events": {"login": {
            "users": {"alice": {"succ": "1", "fail": "0"}}, "groups": {}, "other": {"succ": "0", "fail": "0"}}}
    })";

constexpr const char *objectText = "{\"deep\":{\"leaf\":\"1\",\"say\":\"\\\"a\\\" \\\\ я\"}}";
} // namespace

class TreeBuilderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsInTheLanguageThatTheEnvironmentAsksFor()
    {
        const QString language = qEnvironmentVariable("LANGUAGE");
        if (language != QLatin1String("ru") && language != QLatin1String("en")) {
            QSKIP("started by hand, without a language");
        }
        QCOMPARE(Tree::isRussian(), language == QLatin1String("ru"));
        QCOMPARE(LocaleKeeper::Instance()->language() == QLatin1String("Russian"), Tree::isRussian());
    }

    void catalogThatCannotBeReadGivesNoTree()
    {
        const CatalogSandbox sandbox;
        sandbox.removeCatalog();
        const SingleEventsParser parser({}, {}, nullptr);
        QVERIFY(!parser.isConfigCorrect());
        QCOMPARE(parser.parse(), nullptr);
    }

    void duplicateEventGivesNoTree()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("a", "event", R"({"event-group": "a"})");
        sandbox.addEvent("b", "event", R"({"event-group": "b"})");
        const SingleEventsParser parser({}, {}, nullptr);
        QVERIFY(!parser.isConfigCorrect());
        QCOMPARE(parser.parse(), nullptr);
    }

    void emptyCatalogGivesARootWithTheHeaders()
    {
        const CatalogSandbox sandbox;
        const SingleEventsParser parser({}, {}, nullptr);
        const std::unique_ptr<EventTreeItem> root(parser.parse());

        QVERIFY(parser.isConfigCorrect());
        QVERIFY(root);
        QCOMPARE(root->childCount(), 0);
        QCOMPARE(root->columnCount(), 2);
        QCOMPARE(root->data(0).toString(), i18n("Parameter"));
        QCOMPARE(root->data(1).toString(), i18n("Value"));
        QVERIFY(!root->parentItem());
    }

    void accountsComeFromTheSystem()
    {
        const CatalogSandbox sandbox;
        sandbox.write(QStringLiteral("bin/getent"),
                      "#!/bin/sh\n"
                      "if [ \"$1\" = passwd ]; then printf "
                      "'root:x:0:0::/root:/bin/sh\\nalice:x:1000:1000:A:/:/bin/sh\\n'\n"
                      "elif [ \"$1\" = group ]; then printf 'users:x:100:alice\\nadm:x:4:\\n'; fi\n");
        QVERIFY(
            QFile::setPermissions(sandbox.path(QStringLiteral("bin/getent")), QFile::Permissions(0x7755)));
        sandbox.addEvent(
            "g", "event",
            R"({"event-group": "g", "message-audit-events": {"login": {"users": {}, "groups": {}}}})");
        const QByteArray searchPath = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(sandbox.path(QStringLiteral("bin"))) + ':' + searchPath);
        const SingleEventsParser parser(nullptr);
        qputenv("PATH", searchPath);

        QCOMPARE(parser.users(), QStringList({QStringLiteral("root"), QStringLiteral("alice")}));
        QCOMPARE(parser.groups(), QStringList({QStringLiteral("users"), QStringLiteral("adm")}));
        const std::unique_ptr<EventTreeItem> root(parser.parse());
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/login/users")),
                 QStringList({QStringLiteral("alice"), QStringLiteral("root")}));
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/login/groups")),
                 QStringList({QStringLiteral("adm"), QStringLiteral("users")}));
    }

    void groupsAreNamedInTheLanguageOfTheUser()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("logins", "Logins", "Входы");
        sandbox.addGroup("mounts", "Mounts", "Монтирование");
        sandbox.addEvent("logins", "login", R"({"event-group": "logins"})");
        const auto root = sandbox.parse();

        QCOMPARE(Tree::childNames(root.get()),
                 QStringList({QStringLiteral("logins"), QStringLiteral("mounts")}));
        const EventTreeItem *group = Tree::at(root, "logins");
        QCOMPARE(group->kind, int(EventTreeItem::Group));
        QCOMPARE(group->parentItem(), root.get());
        QCOMPARE(group->data(0).toString(), Tree::inLanguage("Logins", "Входы"));
        QCOMPARE(Tree::at(root, "mounts")->data(0).toString(), Tree::inLanguage("Mounts", "Монтирование"));
        QCOMPARE(Tree::at(root, "mounts")->childCount(), 0);
    }

    void customEventsHaveTheirNameWhateverTheCatalogSays()
    {
        const QString name = Tree::inLanguage("Custom events", "Кастомные события");
        {
            const CatalogSandbox sandbox; // a directory without a description
            sandbox.addEvent("custom-events", "mine", R"({"event-group": "custom-events"})");
            QCOMPARE(Tree::at(sandbox.parse(), "custom-events")->data(0).toString(), name);
        }
        const CatalogSandbox sandbox;
        sandbox.addGroup("custom-events", "Others", "Другие");
        QCOMPARE(Tree::at(sandbox.parse(), "custom-events")->data(0).toString(), name);
    }

    void groupFollowsTheDescriptionNotTheDirectory()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("a", "A", "А");
        sandbox.addGroup("b", "B", "Б");
        sandbox.addEvent("a", "moved", R"({"event-group": "b"})");
        sandbox.addEvent("a", "stays", R"({"event-group": "a"})");
        const auto root = sandbox.parse();
        QCOMPARE(Tree::childNames(Tree::at(root, "a")), QStringList{QStringLiteral("stays")});
        QCOMPARE(Tree::childNames(Tree::at(root, "b")), QStringList{QStringLiteral("moved")});
    }

    void eventsOfAGroupThatTheCatalogDoesNotListAreShown()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("a", "one", R"({"event-group": "unlisted", "x": "1"})");
        sandbox.addEvent("a", "two", R"({"event-group": "unlisted", "x": "1"})");
        sandbox.addEvent("a", "without", R"({"x": "1"})");
        const auto root = sandbox.parse();
        QCOMPARE(
            Tree::childNames(root.get()),
            QStringList({QStringLiteral("a"), QStringLiteral("unlisted"), QStringLiteral("custom-events")}));
        QCOMPARE(Tree::childNames(Tree::at(root, "unlisted")),
                 QStringList({QStringLiteral("one"), QStringLiteral("two")}));
        QCOMPARE(Tree::childNames(Tree::at(root, "custom-events")), QStringList{QStringLiteral("without")});
    }

    void eventWithoutAUsableDescriptionIsLeftOut_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("array") << QByteArray(R"([{"event-group": "g"}])");
        QTest::newRow("cut off") << QByteArray(R"({"event-group": "g", )");
        QTest::newRow("null") << QByteArray("null");
    }
    void eventWithoutAUsableDescriptionIsLeftOut()
    {
        QFETCH(QByteArray, json);
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "broken", json);
        sandbox.addEvent("g", "sound", R"({"event-group": "g"})");
        sandbox.setSettings(R"({"broken": {"enabled": "1"}})");
        const auto root = sandbox.parse();
        QVERIFY(root);
        QCOMPARE(Tree::childNames(Tree::at(root, "g")), QStringList{QStringLiteral("sound")});
        QCOMPARE(root->childCount(), 1);
    }

    void eventIsNamedInTheLanguageOfTheUser()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "nested", R"({"event-group": "g", "message-params":
                         {"name_en": "Logged in", "name_ru": "Вход"}})");
        sandbox.addEvent("g", "direct",
                         R"({"event-group": "g", "name_en": "Mounted", "name_ru": "Смонтирован"})");
        sandbox.addEvent("g", "nameless", R"({"event-group": "g"})");
        const auto root = sandbox.parse();
        const EventTreeItem *nested = Tree::at(root, "g/nested");

        QCOMPARE(nested->kind, int(EventTreeItem::Event));
        QCOMPARE(nested->nativeName, QStringLiteral("nested"));
        QCOMPARE(nested->localizedName, Tree::inLanguage("Logged in", "Вход"));
        QCOMPARE(nested->data(0).toString(), Tree::inLanguage("Logged in", "Вход"));
        QCOMPARE(Tree::at(root, "g/direct")->localizedName, Tree::inLanguage("Mounted", "Смонтирован"));
        QCOMPARE(Tree::at(root, "g/nameless")->localizedName, QString());
        QCOMPARE(Tree::at(root, "g/nameless")->data(0).toString(), QStringLiteral("nameless"));
    }

    void valuesBecomeNodesOfTheirKind()
    {
        const auto root = sample();
        const auto check = [&root](const char *path, int kind, const QVariant &value) {
            const EventTreeItem *node = Tree::at(root, path);
            QVERIFY2(node, path);
            QCOMPARE(node->kind, kind);
            QCOMPARE(node->data(1), value);
            QCOMPARE(node->columnCount(), 3);
        };
        check("g/event/text", EventTreeItem::Parameter, QStringLiteral("value"));
        check("g/event/number", EventTreeItem::Parameter, 2.5);
        check("g/event/flag", EventTreeItem::Parameter, true);
        check("g/event/list", EventTreeItem::List, QStringLiteral("a, b"));
        check("g/event/none", EventTreeItem::List, QString());
        check("g/event/object", EventTreeItem::Parameter, QVariant());
        check("g/event/object/deep", EventTreeItem::Parameter, QVariant());
        check("g/event/object/deep/leaf", EventTreeItem::Parameter, QStringLiteral("1"));
        check("g/event/empty", EventTreeItem::Parameter, QVariant());
        check("g/event/message-audit-events", EventTreeItem::Parameter, QVariant());
        check("g/event/message-audit-events/login", EventTreeItem::Parameter, QVariant());
        check("g/event/message-audit-events/login/users", EventTreeItem::Subjects, QVariant());
        check("g/event/message-audit-events/login/groups", EventTreeItem::Subjects, QVariant());
        check("g/event/message-audit-events/login/other", EventTreeItem::Parameter, QVariant());
        check("g/event/message-audit-events/login/users/alice", EventTreeItem::Parameter, QVariant());
        check("g/event/users", EventTreeItem::Parameter, QVariant());
        QVERIFY(Tree::at(root, "g/event/nothing")->data(1).isNull());
        QCOMPARE(Tree::at(root, "g/event/list")->childCount(), 0);
    }

    void membersFollowTheOrderOfTheirKeys()
    {
        const auto root = sample();
        QStringList names = Tree::childNames(Tree::at(root, "g/event"));
        QVERIFY(names.size() > 5);
        QStringList sorted = names;
        sorted.sort();
        QCOMPARE(names, sorted);
        for (const EventTreeItem *node : Tree::all(Tree::at(root, "g/event"))) {
            for (int row = 0; row < node->childCount(); ++row) {
                QCOMPARE(node->eventChild(row)->parentItem(), node);
                QCOMPARE(node->eventChild(row)->data(0).toString(), node->eventChild(row)->nativeName);
            }
        }
    }

    void objectsAndArraysCarryTheirCompactText()
    {
        const auto root = sample();
        const auto json = [&root](const char *path) {
            const EventTreeItem *node = Tree::at(root, path);
            return node ? node->data(2).toString() : QStringLiteral("<missing>");
        };
        QCOMPARE(json("g/event/list"), QStringLiteral(R"(["a","b"])"));
        QCOMPARE(json("g/event/none"), QStringLiteral("[]"));
        QCOMPARE(json("g/event/empty"), QStringLiteral("{}"));
        QCOMPARE(json("g/event/object"), QString::fromUtf8(objectText));
        QCOMPARE(json("g/event/message-audit-events/login/users"),
                 QStringLiteral(R"({"alice":{"fail":"0","succ":"1"},"root":{"fail":"0","succ":"0"}})"));
        QCOMPARE(json("g/event/text"), QString());
        // What an event says parses, and is its description with the accounts.
        const QJsonDocument whole = QJsonDocument::fromJson(json("g/event").toUtf8());
        QJsonObject expected = Tree::object(sampleJson);
        QJsonObject audit = expected[QStringLiteral("message-audit-events")].toObject();
        QJsonObject login = audit[QStringLiteral("login")].toObject();
        const QJsonObject off = Tree::object(R"({"fail": "0", "succ": "0"})");
        login[QStringLiteral("users")]
            = QJsonObject{{QStringLiteral("alice"), Tree::object(R"({"fail": "0", "succ": "1"})")},
                          {QStringLiteral("root"), off}};
        login[QStringLiteral("groups")] = QJsonObject{{QStringLiteral("adm"), off}};
        audit[QStringLiteral("login")] = login;
        expected[QStringLiteral("message-audit-events")] = audit;
        QCOMPARE(whole.object(), expected);
    }

    void everyAccountOfTheSystemIsShownSwitchedOff()
    {
        const auto root = sample();
        const char *users = "g/event/message-audit-events/login/users";
        QCOMPARE(Tree::childNames(Tree::at(root, users)),
                 QStringList({QStringLiteral("alice"), QStringLiteral("root")}));
        QCOMPARE(Tree::valueAt(root, "g/event/message-audit-events/login/users/alice/succ"),
                 QStringLiteral("1"));
        for (const char *path : {"g/event/message-audit-events/login/users/root/succ",
                                 "g/event/message-audit-events/login/users/root/fail",
                                 "g/event/message-audit-events/login/groups/adm/succ",
                                 "g/event/message-audit-events/login/groups/adm/fail"}) {
            QCOMPARE(Tree::valueAt(root, path), QStringLiteral("0"));
            QVERIFY(!Tree::at(root, path)->overlay);
        }
        // No accounts where the object is none of an audit identifier.
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/users")), QStringList{QStringLiteral("x")});
    }

    void whatCanBeSwitchedIsCheckable()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("empty", "Empty", "Пусто");
        sandbox.addEvent("g", "switched",
                         R"({"event-group": "g", "enabled": "1", "repeat": {"enabled": "1"}})");
        sandbox.addEvent("g", "fixed", R"({"event-group": "g", "repeat": {"enabled": "1"}})");
        sandbox.addEvent("g", "odd", R"({"event-group": "g", "enabled": {"a": "1"}})");
        sandbox.addEvent("plain", "only", R"({"event-group": "plain", "a": ["1"]})");
        const auto root = sandbox.parse();
        QStringList checkable;
        for (const EventTreeItem *node : Tree::all(root.get())) {
            if (node->checkable) {
                checkable.append(node->nativeName);
            }
        }
        QCOMPARE(checkable, QStringList({QStringLiteral("g"), QStringLiteral("switched")}));
    }

    void everySwitchCarriesTheStateOfItsValue()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({
            "event-group": "g", "enabled": "1", "repeat": {"enabled": "0"}, "params": {"p": {"enabled": "1"}},
            "message-audit-events": {"login": {
                "other": {"succ": "1", "fail": "0"}, "users": {"alice": {"succ": "0", "fail": "1"}}}}})");
        sandbox.addEvent("g", "odd", R"({"event-group": "g", "enabled": "maybe"})");
        sandbox.setSettings(R"({"event": {"enabled": "0", "repeat": {"enabled": "1"}}})");
        const auto root = sandbox.parse({QStringLiteral("root")});
        const auto state = [&root](const char *path) {
            const EventTreeItem *node = Tree::at(root, path);
            return node ? node->checkState : -1;
        };
        QCOMPARE(state("g/event"), int(Qt::Unchecked));
        QCOMPARE(state("g/odd"), int(Qt::PartiallyChecked));
        QCOMPARE(state("g"), int(Qt::PartiallyChecked));
        QCOMPARE(state("g/event/repeat"), int(Qt::Checked));
        QCOMPARE(state("g/event/params/p"), int(Qt::Checked));
        QCOMPARE(state("g/event/message-audit-events/login/other/succ"), int(Qt::Checked));
        QCOMPARE(state("g/event/message-audit-events/login/other/fail"), int(Qt::Unchecked));
        QCOMPARE(state("g/event/message-audit-events/login/users/alice/fail"), int(Qt::Checked));
        QCOMPARE(state("g/event/message-audit-events/login/users/alice/succ"), int(Qt::Unchecked));
        QCOMPARE(state("g/event/message-audit-events/login/users/root/succ"), int(Qt::Unchecked));
    }

    void groupStateCountsTheCheckableEvents_data()
    {
        QTest::addColumn<QByteArray>("values");
        QTest::addColumn<int>("state");
        QTest::newRow("two of three") << QByteArray("110") << 1;
        QTest::newRow("all") << QByteArray("111") << 2;
        QTest::newRow("none") << QByteArray("000") << 0;
    }
    void groupStateCountsTheCheckableEvents()
    {
        QFETCH(QByteArray, values);
        const CatalogSandbox sandbox;
        for (int i = 0; i < values.size(); ++i) {
            QByteArray json(R"({"event-group": "g", "enabled": "?"})");
            json.replace('?', values.mid(i, 1));
            sandbox.addEvent("g", QByteArray(QByteArray("event") + char('0' + i)).constData(), json);
        }
        sandbox.addEvent("g", "uncheckable", R"({"event-group": "g"})");
        QTEST(Tree::at(sandbox.parse(), "g")->checkState, "state");
    }

    void everyParseGivesAnEqualTreeOfItsOwn()
    {
        const CatalogSandbox sandbox;
        fillSample(sandbox);
        const SingleEventsParser parser({QStringLiteral("root")}, {}, nullptr);
        std::unique_ptr<EventTreeItem> first(parser.parse());
        const std::unique_ptr<EventTreeItem> second(parser.parse());
        const std::unique_ptr<EventTreeItem> third(parser.parse());
        const auto rows = [](EventTreeItem *root) {
            QVector<QVector<QVariant>> result;
            for (const EventTreeItem *node : Tree::all(root)) {
                result.append(node->rowData());
            }
            return result;
        };
        QVERIFY(rows(first.get()).size() > 20);
        QCOMPARE(rows(first.get()), rows(second.get()));
        QCOMPARE(rows(first.get()), rows(third.get()));
        Tree::at(first, "g/event/text")->setData(1, QStringLiteral("edited"));
        QCOMPARE(Tree::valueAt(second, "g/event/text"), QStringLiteral("value"));
        first.reset();
        QCOMPARE(Tree::valueAt(second, "g/event/text"), QStringLiteral("value"));
    }

    void defaultEventIsBuiltWithoutTheSettings()
    {
        const CatalogSandbox sandbox;
        fillSample(sandbox);
        sandbox.setSettings(R"({"event": {"text": "mine"}})");
        const SingleEventsParser parser({}, {}, nullptr);
        const std::unique_ptr<EventTreeItem> plain(
            parser.createEventItem(QStringLiteral("event"), SingleEventsParser::DefaultEvent, nullptr));
        const std::unique_ptr<EventTreeItem> merged(
            parser.createEventItem(QStringLiteral("event"), SingleEventsParser::MergedEvent, nullptr));

        QCOMPARE(Tree::valueAt(plain, "text"), QStringLiteral("value"));
        QCOMPARE(Tree::overlayPaths(plain.get()), QStringList());
        QCOMPARE(Tree::valueAt(merged, "text"), QStringLiteral("mine"));
        QCOMPARE(parser.createEventItem(QStringLiteral("unknown"), SingleEventsParser::DefaultEvent, nullptr),
                 nullptr);
    }

    void singleEventJoinsTheGroupOfAFinishedTree()
    {
        const CatalogSandbox sandbox;
        fillSample(sandbox);
        const SingleEventsParser parser({}, {}, nullptr);
        const std::unique_ptr<EventTreeItem> root(parser.parse());
        const EventTreeItem *event
            = parser.createEventItem(QStringLiteral("event"), SingleEventsParser::DefaultEvent, root.get());
        QCOMPARE(Tree::childNames(root.get()), QStringList{QStringLiteral("g")});
        QCOMPARE(event->parentItem(), Tree::at(root, "g"));
        QCOMPARE(event->row(), 1);
    }

private:
    static void fillSample(const CatalogSandbox &sandbox) { sandbox.addEvent("g", "event", sampleJson); }

    static std::unique_ptr<EventTreeItem> sample()
    {
        const CatalogSandbox sandbox;
        fillSample(sandbox);
        return sandbox.parse({QStringLiteral("root"), QStringLiteral("alice")}, {QStringLiteral("adm")});
    }
};

QTEST_GUILESS_MAIN(TreeBuilderTest)
#include "treebuildertest.moc"
