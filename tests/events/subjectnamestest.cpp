// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QJsonDocument>
#include <QTest>

namespace {
/// Accounts may bear any of these names, and some systems have them.
QStringList awkwardNames()
{
    return {QStringLiteral("users"),
            QStringLiteral("groups"),
            QStringLiteral("other"),
            QStringLiteral("enabled"),
            QStringLiteral("succ"),
            QStringLiteral("fail"),
            QStringLiteral("message_id"),
            QStringLiteral("name_en"),
            QStringLiteral("name_ru"),
            QStringLiteral(".auditd.key"),
            QStringLiteral("message-depends"),
            QStringLiteral("message-audit-rules"),
            QStringLiteral("filter-values"),
            QStringLiteral("conflicts-with"),
            QStringLiteral("generates-load"),
            QStringLiteral("overlay0"),
            QStringLiteral("overlay"),
            QStringLiteral("message-audit-events"),
            QStringLiteral("delay"),
            QStringLiteral("login"),
            QStringLiteral("event"),
            QStringLiteral("вася"),
            QStringLiteral("a b"),
            QStringLiteral("a\"b\\")};
}

constexpr const char *users = "g/event/message-audit-events/login/users";

/// The event's "users" object says of each name that success is recorded.
QByteArray describe(const QStringList &names)
{
    QJsonObject accounts;
    for (const QString &name : names) {
        accounts.insert(name, Tree::object(R"({"succ": "1", "fail": "0"})"));
    }
    QJsonObject event = Tree::object(R"({"event-group": "g", "enabled": "1", "delay": "5"})");
    event.insert(QStringLiteral("message-audit-events"),
                 QJsonObject{{QStringLiteral("login"), QJsonObject{{QStringLiteral("users"), accounts}}}});
    event.insert(QStringLiteral("message-params"),
                 Tree::object(R"({"message_id": "login_ok", "name_en": "Logged in", "name_ru": "Вход"})"));
    return QJsonDocument(event).toJson();
}
} // namespace

/// Accounts that are called like something else.
class SubjectNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accountIsOnlyAnAccountWhateverItsName_data()
    {
        QTest::addColumn<bool>("described");
        QTest::newRow("in the description") << true;
        QTest::newRow("of the system") << false;
    }
    void accountIsOnlyAnAccountWhateverItsName()
    {
        QFETCH(bool, described);
        const QStringList names = awkwardNames();
        const CatalogSandbox sandbox;
        sandbox.setDictionary(
            R"({"delay": {"visible": "false", "ru": "Задержка"}, "other": {"ru": "Прочие"}})");
        sandbox.addEvent("g", "event", describe(described ? names : QStringList()));
        SingleEventsParser parser(described ? QStringList() : names, {}, nullptr);
        parser.setNotificationLookup(
            [](const QString &messageId) { return messageId == QLatin1String("login_ok"); });
        const std::unique_ptr<EventTreeItem> root(parser.parse());

        const EventTreeItem *subjects = Tree::at(root, users);
        QStringList expected = names;
        expected.sort();
        QCOMPARE(Tree::childNames(subjects), expected);
        QCOMPARE(subjects->kind, int(EventTreeItem::Subjects));
        for (int row = 0; row < subjects->childCount(); ++row) {
            const EventTreeItem *account = subjects->eventChild(row);
            QCOMPARE(account->kind, int(EventTreeItem::Parameter));
            QCOMPARE(account->data(0).toString(), account->nativeName);
            QVERIFY2(account->visible && account->editable && !account->overlay,
                     qPrintable(account->nativeName));
            QVERIFY(!account->checkable);
            QCOMPARE(Tree::childNames(account),
                     QStringList({QStringLiteral("fail"), QStringLiteral("succ")}));
            QCOMPARE(account->eventChild(1)->data(1).toString(),
                     described ? QStringLiteral("1") : QStringLiteral("0"));
        }
    }

    void eventIsNotMisledByItsAccounts()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", describe(awkwardNames()));
        SingleEventsParser parser(awkwardNames(), awkwardNames(), nullptr);
        parser.setNotificationLookup(
            [](const QString &messageId) { return messageId == QLatin1String("login_ok"); });
        const std::unique_ptr<EventTreeItem> root(parser.parse());
        const EventTreeItem *event = Tree::at(root, "g/event");

        QCOMPARE(event->localizedName, Tree::inLanguage("Logged in", "Вход"));
        QCOMPARE(int(event->notificationState), 1);
        QCOMPARE(event->checkState, int(Qt::Checked));
        QVERIFY(event->checkable);
        QVERIFY(!event->hasAuditRules());
        QVERIFY(!event->generatesLoad);
        QVERIFY(event->conflictsWith.isEmpty());
        QVERIFY(event->dependencies().isEmpty());
        QVERIFY(!Tree::at(root, users)->hasAuditRules());
        QVERIFY(!Tree::at(root, "g/event/filter-values"));
        QCOMPARE(Tree::at(root, users)->checkState, int(Qt::Unchecked));
    }

    void watchedFilesAreNotAnAccount()
    {
        const CatalogSandbox sandbox;
        QByteArray json = describe({QStringLiteral(".auditd.key"), QStringLiteral("filter-values")});
        json.replace(R"("enabled")", R"("message-audit-rules": "-w /a -k /a", "enabled")");
        sandbox.addEvent("g", "event", json);
        const auto root = sandbox.parse();
        QCOMPARE(Tree::valueAt(root, "g/event/filter-values/.auditd.key"), QStringLiteral("/a"));
        const EventTreeItem *account = Tree::at(root, users)->eventChild(0);
        QCOMPARE(account->nativeName, QStringLiteral(".auditd.key"));
        QVERIFY(!account->hasAuditRules());
        QCOMPARE(account->kind, int(EventTreeItem::Parameter));
    }

    void auditIdentifierMayBeCalledUsers()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g", "message-audit-events": {
            "users": {"users": {"users": {"succ": "1", "users": {"x": "1"}}}, "groups": {}}}})");
        const auto root = sandbox.parse({QStringLiteral("root")}, {QStringLiteral("users")});

        QCOMPARE(Tree::at(root, "g/event/message-audit-events/users")->kind, int(EventTreeItem::Parameter));
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/users")),
                 QStringList({QStringLiteral("groups"), QStringLiteral("users")}));
        const EventTreeItem *subjects = Tree::at(root, "g/event/message-audit-events/users/users");
        QCOMPARE(subjects->kind, int(EventTreeItem::Subjects));
        QCOMPARE(Tree::childNames(subjects), QStringList({QStringLiteral("root"), QStringLiteral("users")}));
        QCOMPARE(Tree::at(root, "g/event/message-audit-events/users/users/users")->kind,
                 int(EventTreeItem::Parameter));
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/users/users/users/users")),
                 QStringList{QStringLiteral("x")});
        QCOMPARE(Tree::childNames(Tree::at(root, "g/event/message-audit-events/users/groups")),
                 QStringList{QStringLiteral("users")});
    }

    void objectsBelowAnAccountHoldNoAccounts()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g", "message-audit-events": {"login": {"users": {
            "message-audit-events": {"x": {"users": {"y": {"succ": "1"}}}}}}}})");
        const auto root = sandbox.parse({QStringLiteral("root")});
        const EventTreeItem *inner
            = Tree::at(root, "g/event/message-audit-events/login/users/message-audit-events/x/users");
        QVERIFY(inner);
        QCOMPARE(inner->kind, int(EventTreeItem::Parameter));
        QCOMPARE(Tree::childNames(inner), QStringList{QStringLiteral("y")});
    }

    void accountCalledLikeARecordIsKeptBesideTheRecords()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", describe({QStringLiteral("overlay0"), QStringLiteral("overlayed")}));
        sandbox.setSettings(R"({"event": {"message-audit-events": {"login": {"users": {
            "overlay1": {"succ": "0", "fail": "1"}, "bob": {"succ": "1", "fail": "1"}, "overlay0": {"fail": "1"}}}}}})");
        const auto root = sandbox.parse();

        QCOMPARE(Tree::childNames(Tree::at(root, users)),
                 QStringList({QStringLiteral("bob"), QStringLiteral("overlay0"), QStringLiteral("overlay1"),
                              QStringLiteral("overlayed")}));
        QCOMPARE(Tree::valueAt(root, "g/event/message-audit-events/login/users/overlay0/fail"),
                 QStringLiteral("1"));
        QCOMPARE(Tree::valueAt(root, "g/event/message-audit-events/login/users/overlay0/succ"),
                 QStringLiteral("1"));
        QCOMPARE(Tree::valueAt(root, "g/event/message-audit-events/login/users/overlay1/fail"),
                 QStringLiteral("1"));
        const QString base = QStringLiteral("message-audit-events/login/users/");
        const QStringList marked = Tree::overlayPaths(Tree::at(root, "g/event"));
        QVERIFY(marked.contains(base + QStringLiteral("overlay1")));
        QVERIFY(marked.contains(base + QStringLiteral("bob/succ")));
        QVERIFY(marked.contains(base + QStringLiteral("overlay0/fail")));
        QVERIFY(!marked.contains(base + QStringLiteral("overlay0")));
        QVERIFY(!marked.contains(base + QStringLiteral("overlayed")));
    }

    void everyAccountAppearsOnceHoweverItsNameIsSorted()
    {
        // Some of these sort differently by code point, by UTF-16 unit and by a locale.
        const QStringList names{QStringLiteral("Z"),   QStringLiteral("a"),          QStringLiteral("_apt"),
                                QStringLiteral("ё"),   QStringLiteral("я"),          QStringLiteral("\uff5e"),
                                QStringLiteral("a-b"), QStringLiteral("a.b"),        QStringLiteral("ab"),
                                QStringLiteral("é"),   QStringLiteral("\U0001f600"), QStringLiteral("0")};
        for (int described = 0; described <= names.size(); ++described) {
            const CatalogSandbox sandbox;
            sandbox.addEvent("g", "event", describe(names.mid(described)));
            const auto root = sandbox.parse(names + names.mid(0, 3));
            QStringList expected = names;
            QStringList shown = Tree::childNames(Tree::at(root, users));
            expected.sort();
            shown.sort();
            QCOMPARE(shown, expected);
            const EventTreeItem *subjects = Tree::at(root, users);
            for (int row = 0; row < subjects->childCount(); ++row) {
                const EventTreeItem *account = subjects->eventChild(row);
                const bool on = names.indexOf(account->nativeName) >= described;
                QCOMPARE(account->findChildTopLevelByNativeName(QStringLiteral("succ"))->data(1).toString(),
                         on ? QStringLiteral("1") : QStringLiteral("0"));
            }
        }
    }

    void accountWithAnOddValueIsKept()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"event-group": "g", "message-audit-events": {"login": {"users": {
            "text": "1", "list": ["a"], "none": {}, "succ": "1", "enabled": "0"}}}})");
        const auto root = sandbox.parse({QStringLiteral("text"), QStringLiteral("root")});
        QCOMPARE(Tree::childNames(Tree::at(root, users)),
                 QStringList({QStringLiteral("enabled"), QStringLiteral("list"), QStringLiteral("none"),
                              QStringLiteral("root"), QStringLiteral("succ"), QStringLiteral("text")}));
        QCOMPARE(
            Tree::at(root, users)->data(2).toString(),
            QStringLiteral(
                R"({"enabled":"0","list":["a"],"none":{},"root":{"fail":"0","succ":"0"},"succ":"1","text":"1"})"));
        QVERIFY(!Tree::at(root, "g/event/message-audit-events/login/users/succ")->isAuditSwitch());
    }
};

QTEST_GUILESS_MAIN(SubjectNamesTest)
#include "subjectnamestest.moc"
