// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <dbuskeeper.h>
#include <eventmessage.h>
#include <eventtreeitem.h>
#include <notificationconflicts.h>
#include <notificationsdictionary.h>
#include <notificationstore.h>

#include <QFile>
#include <QTest>

namespace {
constexpr auto on = EventTreeItem::NotificationSwitchedOn;
constexpr auto off = EventTreeItem::NotificationOff;

QString id(const char *text)
{
    return QString::fromUtf8(text);
}

/** A tree of one group; each event's identifier is that of its message with "event " before it. */
std::unique_ptr<EventTreeItem>
makeTree(const QVector<QPair<QString, EventTreeItem::NotificationState>> &events)
{
    auto root = std::make_unique<EventTreeItem>(QVector<QVariant>{QString(), QString()});
    auto *group = new EventTreeItem({QStringLiteral("group"), QString(), QString()}, root.get());
    group->kind = EventTreeItem::Group;
    root->appendChild(group);
    for (const auto &[messageId, state] : events) {
        auto *event
            = new EventTreeItem({QString(QStringLiteral("Event ") + messageId), QString(), QString()}, group);
        event->nativeName = QStringLiteral("event ") + messageId;
        event->notificationState = state;
        EventTreeItem *params = NotificationFixture::addChild(event, QStringLiteral("message-params"));
        NotificationFixture::addChild(params, QStringLiteral("message_id"), messageId);
        group->appendChild(event);
    }
    return root;
}

EventTreeItem *eventOf(const EventTreeItem &root, const char *messageId)
{
    return root.eventChild(0)->findChildTopLevelByNativeName(QStringLiteral("event ") + id(messageId));
}
} // namespace

/** What is known in memory of the fragments and settings files on disk. */
class NotificationStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_machine.reset(); }
    void theKeeperFindsEverySpelling_data();
    void theKeeperFindsEverySpelling();
    void theKeeperForgetsWhatIsGone();
    void theKeeperCountsFilesOnly();
    void theDictionaryNamesTheFileOfAKey();
    void theDictionaryReadsItsOwnFilesOnly();
    void linesComeBackUnderEverySpelling();
    void whatWasSetUpWinsOverTheDisk();
    void writesOnlyWhatIsOnAndWasSetUp();
    void removesWhatIsOffAndOnDisk();
    void anotherEventKeepsItsSharedFragment();
    void leavesFilesOfOtherNamesAlone();
    void knowsRivals_data();
    void knowsRivals();
    void aSharedFragmentBelongsToTheEventThatItNames();
    void aSharedFragmentThatNamesNoneStaysWithAll();

private:
    NotificationFixture m_machine;
};

void NotificationStoreTest::theKeeperFindsEverySpelling_data()
{
    QTest::addColumn<QString>("messageId");
    QTest::addColumn<bool>("found");
    for (const char *text : {"a-b_c", "a_b-c", "a_b_c", "a-b-c"}) {
        QTest::newRow(text) << id(text) << true;
    }
    for (const char *text : {"", "a", "abc", "a-b", "aBC", "mod-nivra-a_b_c"}) {
        QTest::newRow(qPrintable(QLatin1String("not ") + QLatin1String(text))) << id(text) << false;
    }
}

void NotificationStoreTest::theKeeperFindsEverySpelling()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b_c.conf"), "anything");
    m_machine.write(m_machine.fragment("mod-nivra.conf"), "main");
    m_machine.write(m_machine.fragment("other-x.conf"), "other");
    DBusKeeper::Instance()->init();
    QCOMPARE(DBusKeeper::Instance()->identifiers(), std::set<QString>{QStringLiteral("a_b_c")});
    QFETCH(QString, messageId);
    QTEST(DBusKeeper::Instance()->findEvent(messageId), "found");
}

void NotificationStoreTest::theKeeperForgetsWhatIsGone()
{
    m_machine.write(m_machine.fragment("mod-nivra-x.conf"), "x");
    DBusKeeper::Instance()->init();
    QVERIFY(DBusKeeper::Instance()->findEvent(QStringLiteral("x")));
    QVERIFY(QFile::remove(m_machine.fragment("mod-nivra-x.conf")));
    DBusKeeper::Instance()->init();
    QVERIFY(!DBusKeeper::Instance()->findEvent(QStringLiteral("x")));
}

void NotificationStoreTest::theKeeperCountsFilesOnly()
{
    QVERIFY(QDir().mkpath(m_machine.fragment("mod-nivra-x.conf")));
    DBusKeeper::Instance()->init();
    QVERIFY(!DBusKeeper::Instance()->findEvent(QStringLiteral("x")));
}

void NotificationStoreTest::theDictionaryNamesTheFileOfAKey()
{
    NotificationsDictionary *dictionary = NotificationsDictionary::Instance();
    dictionary->init();
    QCOMPARE(dictionary->fileName(QStringLiteral("aBC")), QStringLiteral("nivra-event-watcher_first"));
    QCOMPARE(dictionary->fileName(QStringLiteral("plain")), QStringLiteral("nivra-event-watcher_second"));
    QCOMPARE(dictionary->displayName(QStringLiteral("userLoginFailed")), QStringLiteral("Неудачный вход"));
    QCOMPARE(dictionary->fileName(QStringLiteral("Global")), QString());
    QCOMPARE(dictionary->fileName(QString()), QString());
    QCOMPARE(NotificationsDictionary::ownFile(QStringLiteral("nivra-event-watcher_first")),
             m_machine.ownFile("first"));
}

void NotificationStoreTest::theDictionaryReadsItsOwnFilesOnly()
{
    m_machine.write(m_machine.path("/usr/share/knotifications5/plasma.notifyrc"), "[Event/x]\n");
    m_machine.write(m_machine.path("/usr/share/knotifications5/nivra-event-watcher_x.notifyrc.bak"),
                    "[Event/y]\n");
    QVERIFY(QDir().mkpath(m_machine.path("/usr/share/knotifications5/nivra-event-watcher_d.notifyrc")));
    NotificationsDictionary::Instance()->init();
    QCOMPARE(NotificationsDictionary::Instance()->fileName(QStringLiteral("x")), QString());
    QCOMPARE(NotificationsDictionary::Instance()->fileName(QStringLiteral("y")), QString());
    QVERIFY(QFile::remove(m_machine.path("/usr/share/knotifications5/nivra-event-watcher_second.notifyrc")));
    NotificationsDictionary::Instance()->init();
    QCOMPARE(NotificationsDictionary::Instance()->fileName(QStringLiteral("plain")), QString());
}

void NotificationStoreTest::linesComeBackUnderEverySpelling()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b.conf"), "one\n\ttwo\n");
    NotificationStore store;
    store.readFromDisk();
    const QStringList lines{QStringLiteral("one"), QStringLiteral("\ttwo")};
    QCOMPARE(store.lines(QStringLiteral("a-b")), lines);
    QCOMPARE(store.lines(QStringLiteral("a_b")), lines);
    QCOMPARE(store.lines(QStringLiteral("ab")), QStringList());
}

void NotificationStoreTest::whatWasSetUpWinsOverTheDisk()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b.conf"), "old\n");
    NotificationStore store;
    store.readFromDisk();
    store.keep(QStringLiteral("a_b"), {QStringLiteral("new")});
    QCOMPARE(store.lines(QStringLiteral("a-b")), QStringList{QStringLiteral("new")});
    store.readFromDisk();
    QCOMPARE(store.lines(QStringLiteral("a-b")), QStringList{QStringLiteral("new")});
    store.drop(QStringLiteral("a-b"));
    QCOMPARE(store.lines(QStringLiteral("a-b")), QStringList{QStringLiteral("old")});
}

void NotificationStoreTest::writesOnlyWhatIsOnAndWasSetUp()
{
    m_machine.write(m_machine.fragment("mod-nivra-present.conf"), "old\n");
    NotificationStore store;
    store.readFromDisk();
    for (const char *text : {"a-b_c", "off"}) {
        store.keep(id(text), {QStringLiteral("one"), QStringLiteral("two")});
    }
    const auto root = makeTree({{id("a-b_c"), on}, {id("off"), off}, {id("present"), on}, {id("never"), on}});
    const QMap<QString, QString> texts = store.toWrite(*root);
    QCOMPARE(texts.keys(), QStringList{QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf")});
    QCOMPARE(texts.first(), QStringLiteral("one\ntwo\n"));
}

void NotificationStoreTest::removesWhatIsOffAndOnDisk()
{
    for (const char *name : {"mod-nivra-a_b.conf", "mod-nivra-x.conf", "mod-nivra-unknown.conf"}) {
        m_machine.write(m_machine.fragment(name), "old\n");
    }
    NotificationStore store;
    store.readFromDisk();
    const auto root = makeTree({{id("a-b"), off}, {id("x"), on}, {id("absent"), off}});
    QCOMPARE(store.toRemove(*root), QStringList{QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b.conf")});
}

void NotificationStoreTest::anotherEventKeepsItsSharedFragment()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b.conf"), "old\n");
    NotificationStore store;
    store.readFromDisk();
    QCOMPARE(store.toRemove(*makeTree({{id("a-b"), off}, {id("a_b"), on}})), QStringList());
    QCOMPARE(store.toRemove(*makeTree({{id("a-b"), off}, {id("a_b"), off}})).size(), 1);
}

void NotificationStoreTest::leavesFilesOfOtherNamesAlone()
{
    m_machine.write(m_machine.fragment("mod-nivra-x.conf.conf"), "old\n");
    m_machine.write(m_machine.fragment("mod-nivra-x-y.conf"), "old\n");
    NotificationStore store;
    store.readFromDisk();
    const auto root = makeTree({{id("x"), off}, {id("x_y"), off}});
    QCOMPARE(store.toRemove(*root), QStringList{QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-x-y.conf")});
}

void NotificationStoreTest::knowsRivals_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("isRival");
    for (const char *text : {"a_b", "aB", "a-b"}) {
        QTest::newRow(text) << id(text) << true;
    }
    for (const char *text : {"ab", "a-bc", "A-b", "a-B-"}) {
        QTest::newRow(text) << id(text) << (id(text) == QLatin1String("a-B-"));
    }
}

void NotificationStoreTest::knowsRivals()
{
    QFETCH(QString, other);
    QFETCH(bool, isRival);
    const auto root = makeTree({{id("a-b"), off}, {QStringLiteral("z"), on}, {other, on}});
    const EventTreeItem *rival = NotificationConflicts::rivalOf(*root, *root->eventChild(0)->eventChild(0));
    // Two events of one name are found as one of them.
    QCOMPARE(rival != nullptr, isRival);
    if (rival) {
        QCOMPARE(EventMessage::id(*rival), other);
    }
    root->eventChild(0)->eventChild(2)->notificationState = off;
    QCOMPARE(NotificationConflicts::rivalOf(*root, *root->eventChild(0)->eventChild(0)), nullptr);
}

void NotificationStoreTest::aSharedFragmentBelongsToTheEventThatItNames()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b.conf"), "\tpersist-name(\"a-b\")\n");
    m_machine.write(m_machine.fragment("mod-nivra-c_d.conf"), "\tpersist-name(\"c_d\")\n");
    NotificationStore store;
    store.readFromDisk();
    const auto root
        = makeTree({{id("c-d"), on}, {id("a_b"), on}, {id("a-b"), on}, {id("c_d"), on}, {id("x"), on}});
    QCOMPARE(NotificationConflicts::settle(*root, store),
             QStringList({QStringLiteral("Event c-d"), QStringLiteral("Event a_b")}));
    QVERIFY(eventOf(*root, "a-b")->isNotificationOn());
    QVERIFY(!eventOf(*root, "a_b")->isNotificationOn());
    QVERIFY(eventOf(*root, "x")->isNotificationOn());
}

void NotificationStoreTest::aSharedFragmentThatNamesNoneStaysWithAll()
{
    m_machine.write(m_machine.fragment("mod-nivra-a_b.conf"), "by hand\n");
    NotificationStore store;
    store.readFromDisk();
    const auto root = makeTree({{id("a_b"), on}, {id("a-b"), on}});
    QCOMPARE(NotificationConflicts::settle(*root, store), QStringList());
    QVERIFY(eventOf(*root, "a-b")->isNotificationOn());
    QVERIFY(eventOf(*root, "a_b")->isNotificationOn());
}

QTEST_GUILESS_MAIN(NotificationStoreTest)

#include "notificationstoretest.moc"
