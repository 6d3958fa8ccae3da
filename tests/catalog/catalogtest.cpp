// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "sandbox.h"

#include <QTest>
#include <QTextCodec>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Library;

class CatalogTest : public QObject
{
    Q_OBJECT

private:
    static QStringList list(std::initializer_list<const char *> names)
    {
        QStringList result;
        for (const char *name : names) {
            result.append(name ? QString::fromUtf8(name) : QString());
        }
        return result;
    }

    static void link(const QString &target, const QString &name)
    {
        QVERIFY(symlink(QFile::encodeName(target).constData(), QFile::encodeName(name).constData()) == 0);
    }

private Q_SLOTS:
    void listsGroupsAndEventsOfTheCatalog()
    {
        const Sandbox sandbox;
        sandbox.add("logins.json", json("{'group-params': {'name_en': 'Logins', 'order': '1'}}"));
        sandbox.add("logins/login.json", json("{'enabled': '1'}"));
        sandbox.add("logins/logout.json", json("{'enabled': '0'}"));
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(nvev_groups_count(), 1U);
        QCOMPARE(nvev_events_count(), 2U);
        QCOMPARE(groups(), list({"logins"}));
        QCOMPARE(events(), list({"login", "logout"}));
        QCOMPARE(groupText("logins"), json("{'group-params': {'name_en': 'Logins', 'order': '1'}}"));
        QCOMPARE(eventText("login"), json("{'enabled': '1'}"));
        QCOMPARE(eventText("logout"), json("{'enabled': '0'}"));
    }

    void arraysEndWithANullBehindTheirCount()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        const Session session;
        char **const eventIds = nvev_get_event_ids();
        QCOMPARE(eventIds[0], "one");
        QVERIFY(!eventIds[1]);
        nvev_free_string_array(eventIds);
        char **const groupIds = nvev_get_group_ids();
        QCOMPARE(groupIds[0], "a");
        QVERIFY(!groupIds[1]);
        nvev_free_string_array(groupIds);
    }

    void anEmptyCatalogIsNoError()
    {
        const Sandbox sandbox;
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(nvev_groups_count(), 0U);
        QCOMPARE(nvev_events_count(), 0U);
        char **const ids = nvev_get_event_ids();
        QVERIFY(ids);
        QVERIFY(!ids[0]);
        nvev_free_string_array(ids);
    }

    void groupsFollowTheirOrderAndThenTheirIdentifier()
    {
        const Sandbox sandbox;
        sandbox.add("last.json", json("{'group-params': {'order': '100'}}"));
        sandbox.add("second.json", json("{'group-params': {'order': '9'}}"));
        sandbox.add("also-second.json", json("{'group-params': {'order': '9'}}"));
        sandbox.add("first.json", json("{'group-params': {'order': '-3'}}"));
        sandbox.add("no-order.json", json("{'group-params': {}}"));
        sandbox.add("bad-order.json", json("{'group-params': {'order': 'soon'}}"));
        sandbox.add("number-order.json", json("{'group-params': {'order': 1}}"));
        const Session session;
        QCOMPARE(groups(),
                 list({"first", "also-second", "second", "last", "bad-order", "no-order", "number-order"}));
    }

    void eventsFollowTheirDirectorysGroupAndThenTheirFileName()
    {
        const Sandbox sandbox;
        sandbox.add("zulu.json", json("{'group-params': {'order': '1'}}"));
        sandbox.add("alpha.json", json("{'group-params': {'order': '2'}}"));
        sandbox.add("alpha/b.json");
        sandbox.add("alpha/a.json");
        sandbox.add("alpha/a-b.json");
        sandbox.add("alpha/B.json");
        sandbox.add("zulu/z.json");
        sandbox.add("unordered/y.json");
        const Session session;
        QCOMPARE(groups(), list({"zulu", "alpha", "unordered"}));
        QCOMPARE(events(), list({"z", "B", "a-b", "a", "b", "y"}));
    }

    void aDirectoryWithoutAGroupFileMakesAGroupWithoutText()
    {
        const Sandbox sandbox;
        sandbox.add("custom-events/mine.json", json("{'event-group': 'custom-events'}"));
        const Session session;
        QCOMPARE(groups(), list({"custom-events"}));
        QVERIFY(!nvev_get_group_json("custom-events"));
        QCOMPARE(events(), list({"mine"}));
    }

    void aGroupFileWithoutADirectoryMakesAGroup()
    {
        const Sandbox sandbox;
        sandbox.add("custom-events.json", "{}");
        const Session session;
        QCOMPARE(groups(), list({"custom-events"}));
        QCOMPARE(groupText("custom-events"), QByteArray("{}"));
    }

    void aGroupsIdentifierMayHoldDots()
    {
        const Sandbox sandbox;
        sandbox.add("net.wired.json", json("{'group-params': {}}"));
        sandbox.add("net.wired/up.json");
        const Session session;
        QCOMPARE(groups(), list({"net.wired"}));
        QCOMPARE(groupText("net.wired"), json("{'group-params': {}}"));
    }

    void anEventsIdentifierEndsAtTheFirstDot()
    {
        const Sandbox sandbox;
        sandbox.add("a/mount.v2.json", json("{'v': '2'}"));
        const Session session;
        QCOMPARE(events(), list({"mount"}));
        QCOMPARE(eventText("mount"), json("{'v': '2'}"));
        QVERIFY(!nvev_get_event_json("mount.v2"));
    }

    void anIdentifierInTwoGroupsLeavesTheSecondEntryEmpty()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        sandbox.add("a/same.json", json("{'from': 'a'}"));
        sandbox.add("b/same.json", json("{'from': 'b'}"));
        sandbox.add("b/two.json");
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(nvev_events_count(), 4U);
        const QStringList ids = events();
        QCOMPARE(ids, list({"one", "same", nullptr, "two"}));
        QVERIFY(ids.at(2).isNull());
        QCOMPARE(eventText("same"), json("{'from': 'a'}"));
        QVERIFY(nvev_get_event_json("two"));
    }

    void anIdentifierOfTwoFilesInOneDirectoryLeavesTheSecondEntryEmpty()
    {
        const Sandbox sandbox;
        sandbox.add("a/a.json", json("{'from': 'a.json'}"));
        sandbox.add("a/a.b.json", json("{'from': 'a.b.json'}"));
        sandbox.add("a/a.c.json", json("{'from': 'a.c.json'}"));
        const Session session;
        const QStringList ids = events();
        QCOMPARE(ids, list({"a", nullptr, nullptr}));
        QVERIFY(ids.at(1).isNull() && ids.at(2).isNull());
        QCOMPARE(eventText("a"), json("{'from': 'a.b.json'}"));
    }

    void hiddenFilesBackupsAndOtherFilesAreIgnored()
    {
        const Sandbox sandbox;
        for (const char *name :
             {"a/.json", "a/.hidden.json", "a/one.json~", "a/#one.json#", "a/one.json.bak", "a/README",
              "a/one.JSON", ".hidden.json", ".json", "notes.txt", "group.json~"}) {
            sandbox.add(name, "{}");
        }
        sandbox.add(".git/event.json");
        sandbox.add("a/one.json/deeper.json");
        sandbox.add("a/sub/deeper.json");
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(groups(), list({"a"}));
        QCOMPARE(events(), QStringList());
    }

    void whatIsNoRegularFileIsIgnoredWithoutWaiting()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        QCOMPARE(mkfifo(QFile::encodeName(sandbox.catalog(QStringLiteral("a/fifo.json"))).constData(), 0600),
                 0);
        QCOMPARE(mkfifo(QFile::encodeName(sandbox.catalog(QStringLiteral("fifo.json"))).constData(), 0600),
                 0);
        link(QStringLiteral("/dev/null"), sandbox.catalog(QStringLiteral("a/null.json")));
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(groups(), list({"a"}));
        QCOMPARE(events(), list({"one"}));
    }

    void symbolicLinksAreFollowed()
    {
        const Sandbox sandbox;
        Sandbox::write(sandbox.root() + QStringLiteral("/elsewhere/far.json"), json("{'far': '1'}"));
        sandbox.add("a/one.json", json("{'one': '1'}"));
        link(sandbox.root() + QStringLiteral("/elsewhere"), sandbox.catalog(QStringLiteral("linked")));
        link(QStringLiteral("one.json"), sandbox.catalog(QStringLiteral("a/two.json")));
        const Session session;
        QCOMPARE(groups(), list({"a", "linked"}));
        QCOMPARE(events(), list({"one", "two", "far"}));
        QCOMPARE(eventText("two"), json("{'one': '1'}"));
        QCOMPARE(eventText("far"), json("{'far': '1'}"));
    }

    void namesThatAreNotUtf8AreIgnored()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        const QByteArray base = QFile::encodeName(sandbox.catalog());
        const auto create = [](const QByteArray &path) {
            FILE *const file = fopen(path.constData(), "w");
            QVERIFY(file);
            fclose(file);
        };
        create(base + "a/bad\xFF.json");
        create(base + "bad\xC3.json");
        QCOMPARE(mkdir(QByteArray(base + "dir\xED\xA0\x80").constData(), 0700), 0);
        create(base + "dir\xED\xA0\x80/inside.json");
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(groups(), list({"a"}));
        QCOMPARE(events(), list({"one"}));
    }

    void identifiersAreListedInUtf8AndAskedForInTheLocalEncoding()
    {
        const Sandbox sandbox;
        sandbox.add("сеть/вход.json", json("{'имя': 'вход'}"));
        sandbox.add("сеть.json", json("{'группа': '1'}"));
        sandbox.setSettings(json("{'вход': {'enabled': '0'}}"));
        QTextCodec *const before = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("KOI8-R"));
        const Session session;
        const QByteArray eventId = QStringLiteral("вход").toLocal8Bit();
        const QByteArray groupId = QStringLiteral("сеть").toLocal8Bit();
        const QByteArray event = eventText(eventId.constData());
        const QByteArray group = groupText(groupId.constData());
        const QByteArray settings = overrideText(eventId.constData());
        QTextCodec::setCodecForLocale(before);
        QCOMPARE(eventId.size(), 4);
        QCOMPARE(groups(), list({"сеть"}));
        QCOMPARE(events(), list({"вход"}));
        QCOMPARE(event, json("{'имя': 'вход'}"));
        QCOMPARE(group, json("{'группа': '1'}"));
        QCOMPARE(settings, json("{'enabled':'0'}"));
    }

    void textsThatAreNoJsonAreHandedOutAsTheyAre_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << json("{'enabled': '1");
        QTest::newRow("no object") << QByteArray("[1, 2]");
        QTest::newRow("no UTF-8") << QByteArray("{\"a\": \"\xFF\xFE\"}");
        QTest::newRow("blanks kept") << QByteArray("\n\t{ \"a\" :\t\"b\" }\r\n\n");
        QTest::newRow("deep") << QByteArray(2000, '[');
        QTest::newRow("a megabyte of brackets") << QByteArray(1 << 20, '{');
    }

    void textsThatAreNoJsonAreHandedOutAsTheyAre()
    {
        QFETCH(QByteArray, text);
        const Sandbox sandbox;
        sandbox.add("group.json", text);
        sandbox.add("group/event.json", text);
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(groups(), list({"group"}));
        QCOMPARE(events(), list({"event"}));
        QCOMPARE(eventText("event"), text);
        QCOMPARE(groupText("group"), text);
    }

    void aTextWithANulEndsThere()
    {
        const Sandbox sandbox;
        sandbox.add("a/event.json", QByteArray("{\"a\": \"\0\"}", 10));
        const Session session;
        QCOMPARE(eventText("event"), QByteArray("{\"a\": \""));
    }

    void aByteOrderMarkIsDropped()
    {
        const Sandbox sandbox;
        sandbox.add("a.json", "\xEF\xBB\xBF{\"group-params\": {\"order\": \"2\"}}");
        sandbox.add("b.json", json("{'group-params': {'order': '1'}}"));
        sandbox.add("a/event.json", "\xEF\xBB\xBF{}");
        sandbox.setSettings("\xEF\xBB\xBF{\"event\": {\"enabled\": \"0\"}}");
        const Session session;
        QCOMPARE(groups(), list({"b", "a"}));
        QCOMPARE(groupText("a"), json("{'group-params': {'order': '2'}}"));
        QCOMPARE(eventText("event"), QByteArray("{}"));
        QCOMPARE(overrideText("event"), json("{'enabled':'0'}"));
    }

    void unknownIdentifiersHaveNoText()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        sandbox.add("a.json");
        sandbox.setSettings(json("{'one': {}}"));
        const Session session;
        for (const char *id : {"", "One", "one ", "one.json", "a/one", "\xFF", "nothing"}) {
            QVERIFY2(!nvev_get_event_json(id), id);
            QVERIFY2(!nvev_get_group_json(id), id);
            QVERIFY2(!nvev_get_override_event_json(id), id);
        }
        QVERIFY(!nvev_get_event_json("a"));
        QVERIFY(!nvev_get_group_json("one"));
    }

    void aMissingCatalogFails()
    {
        const Sandbox sandbox;
        QVERIFY(QDir(sandbox.catalog()).removeRecursively());
        const Session session;
        QCOMPARE(session.result(), -ENOENT);
        QCOMPARE(nvev_events_count(), 0U);
        QVERIFY(!nvev_get_event_ids());
    }

    void aFileInTheCatalogsPlaceFails()
    {
        const Sandbox sandbox;
        QVERIFY(QDir().rmdir(sandbox.catalog()));
        Sandbox::write(QDir::cleanPath(sandbox.catalog()), "{}");
        const Session session;
        QCOMPARE(session.result(), -ENOTDIR);
    }

    void anEventFileThatCannotBeOpenedFails()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        link(QStringLiteral("nowhere"), sandbox.catalog(QStringLiteral("a/two.json")));
        const Session session;
        QCOMPARE(session.result(), -ENOENT);
        QCOMPARE(nvev_events_count(), 0U);
        QVERIFY(!nvev_get_event_json("one"));
    }

    void aGroupFileThatCannotBeOpenedFails()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        link(QStringLiteral("a.json"), sandbox.catalog(QStringLiteral("a.json")));
        const Session session;
        QCOMPARE(session.result(), -ELOOP);
    }

    void aBrokenLinkThatIsNoDescriptionIsIgnored()
    {
        const Sandbox sandbox;
        sandbox.add("a/one.json");
        link(QStringLiteral("user@host.1"), sandbox.catalog(QStringLiteral("a/.#one.json")));
        link(QStringLiteral("nowhere"), sandbox.catalog(QStringLiteral("a/README")));
        const Session session;
        QCOMPARE(session.result(), 0);
        QCOMPARE(events(), list({"one"}));
    }

    void whatTheUserMayNotReadFails_data()
    {
        QTest::addColumn<QString>("forbidden");
        QTest::newRow("the catalog") << QString();
        QTest::newRow("a sub-directory") << QStringLiteral("a");
        QTest::newRow("a group file") << QStringLiteral("a.json");
        QTest::newRow("an event file") << QStringLiteral("a/one.json");
        QTest::newRow("the file of a duplicate") << QStringLiteral("b/one.json");
    }

    void whatTheUserMayNotReadFails()
    {
        QFETCH(QString, forbidden);
        const Sandbox sandbox;
        sandbox.add("a.json");
        sandbox.add("a/one.json");
        sandbox.add("b/one.json");
        // Permissions do not bind the superuser: look with another user's eyes.
        const bool superuser = geteuid() == 0;
        QVERIFY(QFile::setPermissions(sandbox.root(), QFile::Permissions(0x7755)));
        const QByteArray path = QFile::encodeName(sandbox.catalog(forbidden));
        const auto init = [superuser] {
            if (superuser && seteuid(65534) != 0) {
                return 1;
            }
            const Session session;
            return superuser && seteuid(0) != 0 ? 2 : session.result();
        };
        if (init() == -EACCES) {
            QSKIP("the directory for temporary files is closed to other users");
        }
        QCOMPARE(init(), 0);
        QCOMPARE(chmod(path.constData(), 0), 0);
        QCOMPARE(init(), -EACCES);
        QCOMPARE(chmod(path.constData(), 0755), 0);
        QCOMPARE(init(), 0);
    }
};

QTEST_GUILESS_MAIN(CatalogTest)

#include "catalogtest.moc"
