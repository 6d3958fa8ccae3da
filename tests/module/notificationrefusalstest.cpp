// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "notificationpage.h"

#include <KMessageWidget>

#include <QDir>
#include <QLineEdit>
#include <QTest>

#include <algorithm>

/// What keeps notifications from being set up or written, and what becomes of the edits then.
class NotificationRefusalsTest : public QObject, private NotificationPage
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { start(); }
    void init() { prepare(); }

    void aFailedWriteKeepsTheEdits();
    void aFailedRemovalKeepsTheEdits();
    void eventsThatShareANotificationAreNotBothSwitchedOn();
    void aSharedFragmentShowsOnTheEventThatItNames();
    void anOpenDialogHoldsTheSaveBack();
    void unusableEventsAreRefused_data();
    void unusableEventsAreRefused();
    void anUnreadableSettingsFileOpensNoDialog();
};

void NotificationRefusalsTest::aFailedWriteKeepsTheEdits()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("Kept"));
    QVERIFY(m_machine.bus->setAllowed(false));
    {
        const BoxAnswerer boxes;
        page->save();
        QCOMPARE(boxes.boxes().size(), 1);
        QVERIFY2(boxes.boxes().at(0).text.startsWith(QLatin1String("KAuth returned an error code: ")),
                 qPrintable(boxes.boxes().at(0).text));
    }
    QVERIFY(!QFile::exists(fragment(QStringLiteral("plainword"))));
    QVERIFY(!QFile::exists(m_machine.settingsPath()));
    QVERIFY(eventOf(*page, id)->isNotificationOn());
    page->notificationSettings(eventOf(*page, id));
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Kept"));
    dialog(*page)->reject();
    QVERIFY(m_machine.bus->setAllowed(true));
    page->save();
    QVERIFY(m_machine.read(fragment(QStringLiteral("plainword"))).contains("\"Kept\""));
}

void NotificationRefusalsTest::aFailedRemovalKeepsTheEdits()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("x"));
    page->save();
    page->switchDbus(eventOf(*page, id), false);
    QVERIFY(m_machine.bus->setAllowed(false));
    {
        const BoxAnswerer boxes;
        page->save();
        // The restart after the first save may meet the refusal as well.
        const auto isOwn = [](const BoxAnswerer::Box &box) {
            return box.text.startsWith(QLatin1String("KAuth returned an error code: 4"));
        };
        QCOMPARE(std::count_if(boxes.boxes().begin(), boxes.boxes().end(), isOwn), 1);
    }
    QVERIFY(QFile::exists(fragment(QStringLiteral("plainword"))));
    QVERIFY(!eventOf(*page, id)->isNotificationOn());
    QVERIFY(!page->compareModels());
    QVERIFY(m_machine.bus->setAllowed(true));
    page->save();
    QVERIFY(!QFile::exists(fragment(QStringLiteral("plainword"))));
}

void NotificationRefusalsTest::eventsThatShareANotificationAreNotBothSwitchedOn()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, QStringLiteral("event user-login"), QStringLiteral("x"));
    const BoxAnswerer boxes;
    page->switchDbus(eventOf(*page, QStringLiteral("event user_login")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(QLatin1String("user-login"))
                 && boxes.boxes().at(0).text.contains(QLatin1String("user_login")),
             qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!eventOf(*page, QStringLiteral("event user_login"))->isNotificationOn());
}

void NotificationRefusalsTest::aSharedFragmentShowsOnTheEventThatItNames()
{
    {
        const auto page = m_machine.openPage();
        QVERIFY(page);
        setUp(*page, QStringLiteral("event twin"), QStringLiteral("x")); // log-in_failed
        page->save();
        QVERIFY(eventOf(*page, QStringLiteral("event twin"))->isNotificationOn());
        QVERIFY(!eventOf(*page, QStringLiteral("event log_in-failed"))->isNotificationOn());
        // Applying something else keeps it so.
        m_machine.toggle(*page, QStringLiteral("plain"));
        page->save();
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(eventOf(*page, QStringLiteral("event twin"))->isNotificationOn());
    QVERIFY(!eventOf(*page, QStringLiteral("event log_in-failed"))->isNotificationOn());
    QVERIFY(page->compareModels());
    QVERIFY(page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))
                ->text()
                .contains(QLatin1String("event log_in-failed")));
}

void NotificationRefusalsTest::anOpenDialogHoldsTheSaveBack()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->switchDbus(eventOf(*page, id), true);
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Typed"));
    {
        const BoxAnswerer boxes;
        page->save();
        QCOMPARE(boxes.boxes().size(), 1);
    }
    QVERIFY(dialog(*page)->isVisible());
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Typed"));
    QVERIFY(!QFile::exists(m_machine.settingsPath()));
    clickOk(*page);
    page->save();
    QVERIFY(m_machine.read(fragment(QStringLiteral("plainword"))).contains("\"Typed\""));
}

void NotificationRefusalsTest::unusableEventsAreRefused_data()
{
    QTest::addColumn<QString>("messageId");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("named");
    const QString type = QStringLiteral("auth");
    QTest::newRow("regular expression") << QStringLiteral("a.*") << type << QStringLiteral("a.*");
    QTest::newRow("keyword") << QStringLiteral("a-if-b") << type << QStringLiteral("a-if-b");
    QTest::newRow("type") << QStringLiteral("fine") << QStringLiteral("a b") << QStringLiteral("a b");
    QTest::newRow("unknown key") << QStringLiteral("not_defined") << type
                                 << QStringLiteral("\"notDefined\" is broken");
}

void NotificationRefusalsTest::unusableEventsAreRefused()
{
    QFETCH(QString, messageId);
    QFETCH(QString, type);
    QFETCH(QString, named);
    addEvent(QStringLiteral("odd"), messageId, {{QStringLiteral("message-type"), type}});
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes;
    page->switchDbus(eventOf(*page, QStringLiteral("odd")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(named), qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!eventOf(*page, QStringLiteral("odd"))->isNotificationOn());
    QVERIFY(page->compareModels());
}

void NotificationRefusalsTest::anUnreadableSettingsFileOpensNoDialog()
{
    QVERIFY(QDir().mkpath(ownFile())); // a directory in its place
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes;
    page->switchDbus(eventOf(*page, QStringLiteral("event plainword")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(ownFile()), qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!eventOf(*page, QStringLiteral("event plainword"))->isNotificationOn());
}

QTEST_MAIN(NotificationRefusalsTest)

#include "notificationrefusalstest.moc"
