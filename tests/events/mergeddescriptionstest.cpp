// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <mergeddescriptions.h>
#include <nivraeventsreader.h>

#include <QJsonDocument>
#include <QTest>

#include <memory>

namespace {
constexpr int eventCount = 200; // far more than are parsed ahead

QByteArray eventName(int number)
{
    return QByteArrayLiteral("event") + QByteArray::number(number).rightJustified(3, '0');
}
} // namespace

class MergedDescriptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<CatalogSandbox>();
        QJsonObject settings;
        for (int number = 0; number < eventCount; ++number) {
            const QByteArray name = eventName(number);
            m_sandbox->addEvent(
                "g", name.constData(),
                QJsonDocument(QJsonObject{{QStringLiteral("event-group"), QStringLiteral("g")},
                                          {QStringLiteral("enabled"), QStringLiteral("0")},
                                          {QStringLiteral("number"), QString::number(number)}})
                    .toJson());
            if (number % 2 == 1) {
                settings.insert(QString::fromLatin1(name),
                                QJsonObject{{QStringLiteral("event-group"), QStringLiteral("other")},
                                            {QStringLiteral("enabled"), QStringLiteral("1")}});
            }
        }
        settings.insert(QStringLiteral("gone"), QJsonObject());
        m_sandbox->setSettings(QJsonDocument(settings).toJson());
    }
    void cleanup() { m_sandbox.reset(); }

    void everyEventComesOnceInOrderWithItsSettings()
    {
        const NivraEventsReader reader;
        QCOMPARE(reader.eventIds.size(), eventCount);
        MergedDescriptions descriptions(reader, reader.eventIds);
        for (int number = 0; number < eventCount; ++number) {
            const EventDescription &description = descriptions.next();
            const bool saved = number % 2 == 1;
            QCOMPARE(description.object.value(QLatin1String("number")).toString(), QString::number(number));
            QCOMPARE(description.object.value(QLatin1String("enabled")).toString(),
                     QString::fromLatin1(saved ? "1" : "0"));
            QCOMPARE(description.marks.named.contains(QStringLiteral("enabled")), saved);
            const EventDescription same = EventDescription::merged(reader, reader.eventIds.at(number));
            QCOMPARE(description.object, same.object);
            QCOMPARE(description.marks.records, same.marks.records);
        }
    }

    void theGroupIsTheCatalogsWhateverIsSaved()
    {
        const NivraEventsReader reader;
        const EventDescription description = EventDescription::merged(reader, QStringLiteral("event001"));
        QCOMPARE(description.group, QStringLiteral("g"));
        QCOMPARE(description.object.value(QLatin1String("event-group")).toString(), QStringLiteral("other"));
    }

    void withoutTheSettingsNothingIsMarked()
    {
        const NivraEventsReader reader;
        const EventDescription description
            = EventDescription::fromCatalog(reader, QStringLiteral("event001"));
        QCOMPARE(description.object.value(QLatin1String("enabled")).toString(), QStringLiteral("0"));
        QVERIFY(description.marks.isEmpty());
    }

    void anUnusableDescriptionIsEmptyAndTheNextOneIsNot()
    {
        m_sandbox->addEvent("g", "event000", "no JSON");
        const NivraEventsReader reader;
        MergedDescriptions descriptions(
            reader, {QStringLiteral("event000"), QStringLiteral("missing"), QStringLiteral("event001")});
        QVERIFY(descriptions.next().object.isEmpty());
        QVERIFY(descriptions.next().object.isEmpty());
        QVERIFY(!descriptions.next().object.isEmpty());
    }

    void whatNobodyTakesEndsWithItsOwner_data()
    {
        QTest::addColumn<int>("taken");
        QTest::newRow("nothing taken") << 0;
        QTest::newRow("some taken") << 50;
        QTest::newRow("all but one taken") << eventCount - 1;
    }
    void whatNobodyTakesEndsWithItsOwner()
    {
        QFETCH(int, taken);
        const NivraEventsReader reader;
        for (int round = 0; round < 20; ++round) {
            MergedDescriptions descriptions(reader, reader.eventIds);
            for (int number = 0; number < taken; ++number) {
                QVERIFY(!descriptions.next().object.isEmpty());
            }
        }
    }

private:
    std::unique_ptr<CatalogSandbox> m_sandbox;
};

QTEST_GUILESS_MAIN(MergedDescriptionsTest)

#include "mergeddescriptionstest.moc"
