// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "recorderroot.h"

#include <eventreader.h>
#include <nivraevents.h>

#include <QJsonDocument>
#include <QTest>

class EventReaderTest : public QObject
{
    Q_OBJECT

private:
    RecorderRoot m_root;

    void putEvent(const QByteArray &members) const { m_root.putCatalog("{}", "{" + members + "}"); }
    void putSettings(const QByteArray &text) const
    {
        m_root.put(QStringLiteral("etc/nivra-syslog.conf"), text);
    }
    /** The descriptions of all events, compact. */
    static QByteArrayList events()
    {
        QByteArrayList texts;
        const bool isRead = EventReader::read([&texts](const QJsonObject &description) {
            texts << QJsonDocument(description).toJson(QJsonDocument::Compact);
        });
        return isRead ? texts : QByteArrayList{"cannot be read"};
    }

private Q_SLOTS:
    void init() { m_root.renew(); }

    void settingsComeBeforeTheDescriptionMemberByMember();
    void settingsThatDoNotSayOtherwiseSwitchAnEventOn_data();
    void settingsThatDoNotSayOtherwiseSwitchAnEventOn();
    void theGroupCanBeAskedForMeanwhile();
    void identifiersOfAnyScriptAreFound();
    void aStrayByteCostsALetterOnly();
    void ofEventsOfOneIdentifierTheFirstIsRead();
    void aCatalogThatCannotBeReadKeepsNothingInUse();
    void onlyAChangeOfTheSettingsFileIsOne();
};

void EventReaderTest::settingsComeBeforeTheDescriptionMemberByMember()
{
    putEvent("\"a\": \"1\", \"o\": {\"b\": \"2\", \"c\": \"3\"}, \"t\": \"text\"");
    putSettings(
        "{\"e\": {\"o\": {\"c\": \"4\", \"d\": \"5\"}, \"t\": {\"x\": \"6\"}}, \"unknown\": {\"a\": \"7\"}}");
    QCOMPARE(events(),
             QByteArrayList{"{\"a\":\"1\",\"o\":{\"b\":\"2\",\"c\":\"4\",\"d\":\"5\"},\"t\":{\"x\":\"6\"}}"});
}

void EventReaderTest::settingsThatDoNotSayOtherwiseSwitchAnEventOn_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("isOn");
    const QByteArray off("\"enabled\": \"0\", \"message-params\": {}");
    QTest::newRow("none") << off << QByteArray("{}") << false;
    QTest::newRow("of another member") << off << QByteArray("{\"e\": {\"other\": \"1\"}}") << true;
    QTest::newRow("of nothing") << off << QByteArray("{\"e\": {}}") << true;
    QTest::newRow("off") << off << QByteArray("{\"e\": {\"enabled\": \"0\"}}") << false;
    QTest::newRow("no object") << off << QByteArray("{\"e\": \"1\"}") << false;
    QTest::newRow("of an event without a message")
        << QByteArray("\"enabled\": \"0\"") << QByteArray("{\"e\": {\"other\": \"1\"}}") << false;
}

void EventReaderTest::settingsThatDoNotSayOtherwiseSwitchAnEventOn()
{
    QFETCH(const QByteArray, members);
    QFETCH(const QByteArray, settings);
    QFETCH(const bool, isOn);
    putEvent(members);
    putSettings(settings);
    const QByteArrayList read = events();
    QCOMPARE(read.size(), 1);
    QCOMPARE(read.first().contains("\"enabled\":\"1\""), isOn);
    QCOMPARE(read.first().contains("\"enabled\":\"0\""), !isOn);
}

void EventReaderTest::theGroupCanBeAskedForMeanwhile()
{
    m_root.putCatalog("{\"group-params\": {\"order\": \"1\"}}", "{\"event-group\": \"g\"}");
    QJsonObject group;
    QVERIFY(EventReader::read([&group](const QJsonObject &description) {
        group = EventReader::group(description.value(QStringLiteral("event-group")).toString());
        QVERIFY(EventReader::group(QStringLiteral("unknown")).isEmpty());
    }));
    QVERIFY(group.contains(QStringLiteral("group-params")));
}

void EventReaderTest::identifiersOfAnyScriptAreFound()
{
    m_root.put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/вход/вход.json"),
               "{\"a\": \"1\"}");
    m_root.put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/вход.json"), "{\"g\": \"1\"}");
    QCOMPARE(events(), QByteArrayList{"{\"a\":\"1\"}"});
    QVERIFY(EventReader::read([](const QJsonObject &) {
        QVERIFY(EventReader::group(QStringLiteral("вход")).contains(QStringLiteral("g")));
    }));
}

void EventReaderTest::aStrayByteCostsALetterOnly()
{
    putEvent("\"a\": \"\xff\", \"b\": \"2\"");
    QCOMPARE(events(), QByteArrayList{"{\"a\":\"\xef\xbf\xbd\",\"b\":\"2\"}"});
}

void EventReaderTest::ofEventsOfOneIdentifierTheFirstIsRead()
{
    putEvent("\"a\": \"1\"");
    m_root.put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/h/e.json"), "{\"a\": \"2\"}");
    QCOMPARE(events(), QByteArrayList{"{\"a\":\"1\"}"});
}

void EventReaderTest::aCatalogThatCannotBeReadKeepsNothingInUse()
{
    QCOMPARE(events(), QByteArrayList{"cannot be read"});
    putEvent("\"a\": \"1\"");
    QCOMPARE(events(), QByteArrayList{"{\"a\":\"1\"}"});
    // Somebody who still uses the library keeps every state that it has read.
    QCOMPARE(nvev_events_count(), uint64_t(0));
}

void EventReaderTest::onlyAChangeOfTheSettingsFileIsOne()
{
    EventReader reader(m_root.settingsFile());
    QVERIFY(reader.hasChanged());
    QVERIFY(!reader.hasChanged());
    putSettings("{}");
    QVERIFY(reader.hasChanged());
    QVERIFY(!reader.hasChanged());
    putSettings("{\"e\": {}}");
    QVERIFY(reader.hasChanged());
    QVERIFY(QFile::remove(m_root.settingsFile()));
    QVERIFY(reader.hasChanged());
    QVERIFY(!reader.hasChanged());
}

QTEST_GUILESS_MAIN(EventReaderTest)
#include "eventreadertest.moc"
