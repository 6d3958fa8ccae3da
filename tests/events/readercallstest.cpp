// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fakelibrary.h"

#include <nivraeventsreader.h>

#include <QTest>

#include <stdexcept>

class ReaderCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { FakeLibrary::reset(); }

    void failedInitialisationLeavesEverythingEmpty()
    {
        FakeLibrary::instance().initResult = -1;
        FakeLibrary::instance().groups = {"a"};
        FakeLibrary::instance().events = {"b"};
        {
            const NivraEventsReader reader;
            QVERIFY(!reader.initialised);
            QVERIFY(reader.catalogError);
            QVERIFY(reader.groupIds.isEmpty());
            QVERIFY(reader.eventIds.isEmpty());
            QCOMPARE(FakeLibrary::instance().calls, QStringList{QStringLiteral("init")});
        }
        QCOMPARE(FakeLibrary::instance().calls,
                 QStringList({QStringLiteral("init"), QStringLiteral("free")}));
    }

    void positiveResultOfInitialisationIsSuccess()
    {
        FakeLibrary::instance().initResult = 1;
        const NivraEventsReader reader;
        QVERIFY(reader.initialised);
        QVERIFY(!reader.catalogError);
    }

    void libraryIsCalledInTheAgreedOrder()
    {
        FakeLibrary::instance().groups = {"a", "b"};
        FakeLibrary::instance().events = {"c", "d", "e"};
        {
            const NivraEventsReader reader;
            QCOMPARE(reader.groupIds, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
            QCOMPARE(reader.eventIds,
                     QStringList({QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("e")}));
        }
        QCOMPARE(FakeLibrary::instance().calls,
                 QStringList({QStringLiteral("init"), QStringLiteral("get groups"),
                              QStringLiteral("get events"), QStringLiteral("free groups"),
                              QStringLiteral("free events"), QStringLiteral("free")}));
        // Once for the room, then before every step of the loop.
        QCOMPARE(FakeLibrary::instance().groupsCounted, 4);
        QCOMPARE(FakeLibrary::instance().eventsCounted, 5);
    }

    void identifiersAreDecodedFromUtf8()
    {
        FakeLibrary::instance().groups = {"\xd0\xb2\xd1\x85\xd0\xbe\xd0\xb4"};
        FakeLibrary::instance().events = {"caf\xc3\xa9", ""};
        const NivraEventsReader reader;
        QCOMPARE(reader.groupIds, QStringList{QStringLiteral("вход")});
        QCOMPARE(reader.eventIds, QStringList({QStringLiteral("café"), QString()}));
    }

    void missingEventKeepsTheOnesBeforeIt_data()
    {
        QTest::addColumn<int>("position");
        QTest::newRow("first") << 0;
        QTest::newRow("middle") << 2;
        QTest::newRow("last") << 3;
    }
    void missingEventKeepsTheOnesBeforeIt()
    {
        QFETCH(int, position);
        QVector<const char *> events{"a", "b", "c", "d"};
        events[position] = nullptr;
        FakeLibrary::instance().groups = {"g"};
        FakeLibrary::instance().events = events;
        const NivraEventsReader reader;

        QVERIFY(reader.initialised);
        QVERIFY(reader.catalogError);
        const QStringList all{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                              QStringLiteral("d")};
        QCOMPARE(reader.eventIds, all.mid(0, position));
        QCOMPARE(reader.groupIds, QStringList{QStringLiteral("g")});
        // Both arrays went back all the same.
        QCOMPARE(FakeLibrary::instance().calls.mid(3),
                 QStringList({QStringLiteral("free groups"), QStringLiteral("free events")}));
    }

    void missingGroupIsALogicError()
    {
        FakeLibrary::instance().groups = {"a", nullptr, "c"};
        QVERIFY_EXCEPTION_THROWN(NivraEventsReader(), std::logic_error);
    }

    void missingAnswerIsAnEmptyText()
    {
        const NivraEventsReader reader;
        const QString id = QStringLiteral("unknown");
        QVERIFY(reader.getGroupJson(id).isEmpty());
        QVERIFY(reader.getEventJson(id).isEmpty());
        QVERIFY(reader.getOverrideEventJson(id).isEmpty());
        QVERIFY(!reader.catalogError);
        QCOMPARE(FakeLibrary::instance().calls.mid(5),
                 QStringList({QStringLiteral("group json"), QStringLiteral("event json"),
                              QStringLiteral("override json")}));
    }

    void answersAreCopiedAndDecodedFromUtf8()
    {
        FakeLibrary::instance().json = "{\"\xd0\xb6\":\"1\"}";
        const NivraEventsReader reader;
        const QString text = reader.getEventJson(QStringLiteral("a"));
        FakeLibrary::instance().json.fill('x');
        QCOMPARE(text, QStringLiteral("{\"ж\":\"1\"}"));
    }

    void identifiersArePassedInTheLocalEncoding()
    {
        const NivraEventsReader reader;
        const QString id = QStringLiteral("вход-1");
        (void)reader.getGroupJson(id);
        (void)reader.getEventJson(id);
        (void)reader.getOverrideEventJson(id);
        QCOMPARE(FakeLibrary::instance().identifiers, QVector<QByteArray>(3, id.toLocal8Bit()));
    }
};

QTEST_GUILESS_MAIN(ReaderCallsTest)
#include "readercallstest.moc"
