// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <nivraeventsreader.h>

#include <QJsonObject>
#include <QTest>

/// The reader over the catalog library itself.
class CatalogReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void catalogThatIsMissingIsAnError()
    {
        const CatalogSandbox sandbox;
        sandbox.removeCatalog();
        const NivraEventsReader reader;

        QVERIFY(!reader.initialised);
        QVERIFY(reader.catalogError);
        QVERIFY(reader.groupIds.isEmpty());
        QVERIFY(reader.eventIds.isEmpty());
        QVERIFY(reader.getEventJson(QStringLiteral("login")).isEmpty());
    }

    void emptyCatalogIsNoError()
    {
        const CatalogSandbox sandbox;
        const NivraEventsReader reader;
        QVERIFY(reader.initialised);
        QVERIFY(!reader.catalogError);
        QVERIFY(reader.groupIds.isEmpty());
        QVERIFY(reader.eventIds.isEmpty());
    }

    void groupsAndEventsAreReadWithTheirTexts()
    {
        const CatalogSandbox sandbox;
        sandbox.addGroup("logins", "Logins", "Входы");
        sandbox.addEvent("logins", "login", R"({"event-group": "logins", "text": "вход"})");
        sandbox.addEvent("logins", "logout", R"({"event-group": "logins"})");
        sandbox.setSettings(R"({"login": {"enabled": "0"}})");
        const NivraEventsReader reader;

        QVERIFY(reader.initialised);
        QVERIFY(!reader.catalogError);
        QCOMPARE(reader.groupIds, QStringList{QStringLiteral("logins")});
        QCOMPARE(reader.eventIds, QStringList({QStringLiteral("login"), QStringLiteral("logout")}));
        QVERIFY(reader.getGroupJson(QStringLiteral("logins")).contains(QStringLiteral("Входы")));
        QCOMPARE(reader.getEventJson(QStringLiteral("login")),
                 QStringLiteral(R"({"event-group": "logins", "text": "вход"})"));
        QCOMPARE(Tree::object(reader.getOverrideEventJson(QStringLiteral("login")).toUtf8()),
                 Tree::object(R"({"enabled": "0"})"));
        QVERIFY(reader.getOverrideEventJson(QStringLiteral("logout")).isEmpty());
    }

    void documentsAreTheParsedTexts()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", R"({"text": "вход"})");
        sandbox.addEvent("g", "broken", R"({"text": )");
        sandbox.setSettings(R"({"event": {"enabled": "0"}})");
        const NivraEventsReader reader;

        const QString id = QStringLiteral("event");
        QCOMPARE(reader.eventDocument(id).object(), Tree::object(reader.getEventJson(id).toUtf8()));
        QCOMPARE(reader.overrideDocument(id).object(), Tree::object(R"({"enabled": "0"})"));
        QVERIFY(reader.eventDocument(QStringLiteral("broken")).isNull());
        QVERIFY(reader.overrideDocument(QStringLiteral("broken")).isNull());
        QVERIFY(reader.eventDocument(QStringLiteral("unknown")).isNull());
    }

    void strayByteCostsALetterAndNotTheEvent()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("g", "event", "{\"text\": \"a\xFFz\"}");
        const NivraEventsReader reader;

        const QJsonObject event = reader.eventDocument(QStringLiteral("event")).object();
        QCOMPARE(event.value(QLatin1String("text")).toString(), QStringLiteral("a\uFFFDz"));
    }

    void unknownIdentifierGivesAnEmptyText()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("logins", "login", "{}");
        const NivraEventsReader reader;

        QVERIFY(reader.getGroupJson(QStringLiteral("login")).isEmpty());
        QVERIFY(reader.getEventJson(QStringLiteral("logins")).isEmpty());
        QVERIFY(reader.getEventJson(QString()).isEmpty());
        QVERIFY(reader.getOverrideEventJson(QStringLiteral("nowhere")).isEmpty());
        QVERIFY(!reader.catalogError);
    }

    void eventListedInTwoGroupsIsAnError()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("first", "early", R"({"event-group": "first"})");
        sandbox.addEvent("first", "twice", R"({"event-group": "first"})");
        sandbox.addEvent("second", "twice", R"({"event-group": "second"})");
        sandbox.addEvent("second", "zlate", R"({"event-group": "second"})");
        const NivraEventsReader reader;

        QVERIFY(reader.initialised);
        QVERIFY(reader.catalogError);
        QCOMPARE(reader.eventIds, QStringList({QStringLiteral("early"), QStringLiteral("twice")}));
        QCOMPARE(reader.groupIds, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
    }

    void readersMayFollowAndOverlapEachOther()
    {
        const CatalogSandbox sandbox;
        sandbox.addEvent("logins", "login", R"({"a": "1"})");
        auto first = std::make_unique<NivraEventsReader>();
        const NivraEventsReader second;
        first.reset();
        QCOMPARE(second.getEventJson(QStringLiteral("login")), QStringLiteral(R"({"a": "1"})"));

        sandbox.addEvent("logins", "logout", "{}");
        const NivraEventsReader third;
        QCOMPARE(second.eventIds.size(), 1);
        QCOMPARE(third.eventIds.size(), 2);
    }
};

QTEST_GUILESS_MAIN(CatalogReaderTest)
#include "catalogreadertest.moc"
