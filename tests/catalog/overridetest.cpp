// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "sandbox.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Library;

class OverrideTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOverrideIsTheCompactTextOfTheMember()
    {
        const Sandbox sandbox;
        sandbox.setSettings(
            "{\n    \"login\": {\n        \"enabled\": \"1\",\n"
            "        \"message-audit-events\": { \"users\": { \"root\": { \"fail\": \"0\" } } },\n"
            "        \"list\": [ \"a b\", \"\", { } ],\t\"empty\": { },\r\n"
            "        \"text\": \"kept { blanks : , } \\\" \\\\\"\n    },\n    \"logout\": { }\n}\n");
        const Session session;
        QCOMPARE(overrideText("login"),
                 QByteArray(
                     "{\"enabled\":\"1\",\"message-audit-events\":{\"users\":{\"root\":{\"fail\":\"0\"}}},"
                     "\"list\":[\"a b\",\"\",{}],\"empty\":{},\"text\":\"kept { blanks : , } \\\" \\\\\"}"));
        QCOMPARE(overrideText("logout"), QByteArray("{}"));
        QVERIFY(!nvev_get_override_event_json("mount"));
    }

    void anOverrideStaysWhereItIs()
    {
        const Sandbox sandbox;
        sandbox.setSettings(json("{'a': {'x': '1'}, 'b': {'y': '2'}}"));
        const Session session;
        const char *const first = nvev_get_override_event_json("a");
        QVERIFY(nvev_get_override_event_json("b"));
        QVERIFY(nvev_get_override_event_json("a") == first);
        QCOMPARE(QByteArray(first), json("{'x':'1'}"));
    }

    void membersThatAreNoObjectsAreNoOverrides()
    {
        const Sandbox sandbox;
        sandbox.setSettings(json("{'a': '1', 'b': [{}], 'c': 5, 'd': null, 'e': true, 'f': {'g': {}}}"));
        const Session session;
        for (const char *id : {"a", "b", "c", "d", "e", "g"}) {
            QVERIFY2(!nvev_get_override_event_json(id), id);
        }
        QCOMPARE(overrideText("f"), json("{'g':{}}"));
    }

    void ofTwoMembersOfOneNameTheLastCounts()
    {
        const Sandbox sandbox;
        sandbox.setSettings(json("{'a': {'v': '1'}, 'b': {'v': '1'}, 'a': {'v': '2'}, 'b': 'none'}"));
        const Session session;
        QCOMPARE(overrideText("a"), json("{'v':'2'}"));
        QVERIFY(!nvev_get_override_event_json("b"));
    }

    void namesWithEscapesAreFoundByTheirMeaning()
    {
        const Sandbox sandbox;
        sandbox.setSettings(json("{'\\u0432ход': {'v': '1'}, 'q\\'q': {'v': '2'}, 'plain': {'v': '3'}}"));
        const Session session;
        QCOMPARE(overrideText(QStringLiteral("вход").toLocal8Bit().constData()), json("{'v':'1'}"));
        QCOMPARE(overrideText("q\"q"), json("{'v':'2'}"));
        QCOMPARE(overrideText("plain"), json("{'v':'3'}"));
    }

    void eventsThatTheCatalogDoesNotKnowHaveOverrides()
    {
        const Sandbox sandbox;
        sandbox.setSettings(json("{'gone': {'enabled': '0'}}"));
        const Session session;
        QVERIFY(!nvev_get_event_json("gone"));
        QCOMPARE(overrideText("gone"), json("{'enabled':'0'}"));
    }

    void settingsThatCannotBeUsedAreNoSettings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QByteArray deep = json("{'event': {'enabled': '0'}, 'deep': ");
        deep += json("{'a':").repeated(2000) + "1" + QByteArray(2000, '}') + "}";
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray(" \n\t ");
        QTest::newRow("no object") << json("[{'event': {'enabled': '0'}}]");
        QTest::newRow("a bare value") << QByteArray("true");
        QTest::newRow("cut off in a value") << json("{'event': {'enabled': '0'}, 'b': {'en");
        QTest::newRow("cut off before the end") << json("{'event': {'enabled': '0'}");
        QTest::newRow("text behind the end") << json("{'event': {'enabled': '0'}} x");
        QTest::newRow("missing comma") << json("{'event': {'enabled': '0'} 'b': {}}");
        QTest::newRow("trailing comma") << json("{'event': {'enabled': '0'},}");
        QTest::newRow("wrong bracket") << json("{'event': {'enabled': ['0'}]}");
        QTest::newRow("2000 levels") << deep;
        QTest::newRow("binary") << QByteArray("\x7F"
                                              "ELF\0\1\2\xFF\xFE\0{\"event\": {}}",
                                              23);
        QTest::newRow("a NUL behind the end") << QByteArray("{\"event\": {}}\0", 14);
        QTest::newRow("no UTF-8") << QByteArray("{\"event\": {\"a\": \"\xC3(\"}}");
        QTest::newRow("a megabyte of braces") << QByteArray(1 << 20, '{');
        QTest::newRow("a megabyte of brackets") << json("{'event':") + QByteArray(1 << 20, '[');
        QTest::newRow("a megabyte of quotes") << QByteArray(1 << 20, '"');
    }

    void settingsThatCannotBeUsedAreNoSettings()
    {
        QFETCH(QByteArray, text);
        const Sandbox sandbox;
        sandbox.add("a/event.json");
        sandbox.setSettings(text);
        const Session session;
        QCOMPARE(session.result(), 0);
        QVERIFY(!nvev_get_override_event_json("event"));
        QVERIFY(!nvev_get_override_event_json("a"));
        QCOMPARE(eventText("event"), QByteArray("{}"));
    }

    void missingSettingsAreNoError()
    {
        const Sandbox sandbox;
        sandbox.add("a/event.json");
        const Session session;
        QCOMPARE(session.result(), 0);
        QVERIFY(!nvev_get_override_event_json("event"));
        QCOMPARE(eventText("event"), QByteArray("{}"));
    }

    void settingsThatCannotBeReadAreNoError()
    {
        const Sandbox sandbox;
        sandbox.add("a/event.json");
        QVERIFY(QDir().mkpath(sandbox.settings()));
        {
            const Session session;
            QCOMPARE(session.result(), 0);
            QVERIFY(!nvev_get_override_event_json("event"));
        }
        QVERIFY(QDir().rmdir(sandbox.settings()));
        QCOMPARE(mkfifo(QFile::encodeName(sandbox.settings()).constData(), 0600), 0);
        const Session session;
        QCOMPARE(session.result(), 0);
        QVERIFY(!nvev_get_override_event_json("event"));
    }

    void everyMemberOfALargeFileIsFound()
    {
        QJsonObject settings;
        for (int event = 0; event < 100; ++event) {
            QJsonObject users;
            for (int user = 0; user < 50; ++user) {
                users.insert(QStringLiteral("user %1").arg(user),
                             QJsonObject{{QStringLiteral("succ"), QStringLiteral("1")},
                                         {QStringLiteral("fail"), QString::number(event)}});
            }
            settings.insert(QStringLiteral("event-%1").arg(event),
                            QJsonObject{{QStringLiteral("users"), users},
                                        {QStringLiteral("list"), QJsonArray{QStringLiteral("ёж, \"\\\n")}}});
        }
        const Sandbox sandbox;
        sandbox.setSettings(QJsonDocument(settings).toJson());
        const Session session;
        for (const QString &id : settings.keys()) {
            const QByteArray text(nvev_get_override_event_json(id.toLocal8Bit().constData()));
            QCOMPARE(text, QJsonDocument(settings.value(id).toObject()).toJson(QJsonDocument::Compact));
        }
    }
};

QTEST_GUILESS_MAIN(OverrideTest)

#include "overridetest.moc"
