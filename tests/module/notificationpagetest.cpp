// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "notificationpage.h"
#include "boxanswerer.h"

#include <checkboxparam.h>
#include <statewidget.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QAbstractProxyModel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>

/// Notifications from the menu over the dialog to the files, and back after a new start.
class NotificationPageTest : public QObject, private NotificationPage
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { start(); }
    void init() { prepare(); }

    void theMenuOffersNotifications();
    void whatIsSetUpSurvivesTheCircle_data();
    void whatIsSetUpSurvivesTheCircle();
    void theLastEditWins();
    void theSettingsOfANewNotificationAreItsOpenDialog();
    void cancellingANewNotificationSwitchesItOff();
    void cancellingAnEditChangesNothing();
    void switchingOffAndOnAgainStartsAfresh();
    void repeatedSavingDoesNotGrowTheFragment();
    void aReloadClosesTheDialog();
    void aReloadSaysThatItDropsWhatWasTypedInTheDialog();
    void oneDialogAtATime();
    void whoHasNoSettingsOfHisOwnSeesTheSystems();
    void theRepetitionIsAnEditOfThePage();
    void theViewerOpensTheSettingsOfItsEvent();
    void ofTwoEventsThatTheViewerNamesTheUpperOneIsShown();
    void theSelectionNamesItsMessage();
};

void NotificationPageTest::theMenuOffersNotifications()
{
    addEvent(QStringLiteral("quiet"), QStringLiteral("quiet"),
             {{QStringLiteral("is-not-redirected"), QStringLiteral("1")}});
    m_machine.write(m_machine.catalogPath() + QStringLiteral("/first/nameless.json"),
                    R"({"event-group": "first", "enabled": "1", "message-type": "auth",
                        "message-params": {"name_en": "Nameless", "name_ru": "Nameless"}})");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    const auto texts = [&](const QString &id) {
        const QModelIndex index = PageFixture::shown(*page, id);
        view->setCurrentIndex(index);
        page->contextMenuRequested(view->visualRect(index).center());
        QMenu *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QStringList found;
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions) {
            if (action->text().contains(QLatin1String("otification"))) {
                found << (action->isEnabled() ? action->text() : QString(QLatin1Char('-') + action->text()));
            }
        }
        menu->close();
        return found;
    };
    QCOMPARE(texts(QStringLiteral("event plainword")),
             (QStringList{QStringLiteral("Enable notifications sending"),
                          QStringLiteral("-Notification settings")}));
    setUp(*page, QStringLiteral("event plainword"), QStringLiteral("x"));
    QCOMPARE(texts(QStringLiteral("event plainword")),
             (QStringList{QStringLiteral("Disable notifications sending"),
                          QStringLiteral("Notification settings")}));
    QCOMPARE(texts(QStringLiteral("quiet")), QStringList());
    QVERIFY(eventOf(*page, QStringLiteral("nameless")));
    QCOMPARE(texts(QStringLiteral("nameless")), QStringList());
}

void NotificationPageTest::whatIsSetUpSurvivesTheCircle_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");
    QTest::newRow("dash") << QStringLiteral("event user-login") << QStringLiteral("user_login");
    QTest::newRow("underscore") << QStringLiteral("event user_login") << QStringLiteral("user_login");
    QTest::newRow("both") << QStringLiteral("event log_in-failed") << QStringLiteral("log_in_failed");
    QTest::newRow("neither") << QStringLiteral("event plainword") << QStringLiteral("plainword");
}

void NotificationPageTest::whatIsSetUpSurvivesTheCircle()
{
    QFETCH(QString, id);
    QFETCH(QString, file);
    {
        const auto page = m_machine.openPage();
        QVERIFY(page);
        const QAbstractItemModelTester tester(page->workingModel(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        page->switchDbus(eventOf(*page, id), true);
        QVERIFY(dialog(*page)->isVisible());
        QVERIFY(eventOf(*page, id)->isNotificationOn());
        field<QRadioButton>(*page, "selectGroupRadioButton")->click();
        field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Вход: $(x) 100%"));
        for (const char *box : {"popupCheckBox", "soundCheckBox", "logFileCheckBox", "executeCheckBox"}) {
            field<QCheckBox>(*page, box)->click();
        }
        field<QLineEdit>(*page, "soundEdit")->setText(QStringLiteral("/bell.ogg"));
        field<QLineEdit>(*page, "logFileEdit")->setText(QStringLiteral("/var/log/my log"));
        field<QLineEdit>(*page, "executeEdit")->setText(QStringLiteral("/bin/true 'a'"));
        for (CheckBoxParam *box : dialog(*page)->findChildren<CheckBoxParam *>()) {
            box->setChecked(box->text() == QLatin1String("user"));
        }
        clickOk(*page);
        QVERIFY(!page->compareModels());
        QVERIFY2(!QFile::exists(fragment(file)), "nothing is written before the page is applied");
        page->save();
        QVERIFY2(QFile::exists(fragment(file)), qPrintable(fragment(file)));
        QVERIFY(eventOf(*page, id)->isNotificationOn());
        QVERIFY(page->compareModels());
        QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Saved);
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(eventOf(*page, id)->isNotificationOn());
    page->notificationSettings(eventOf(*page, id));
    QVERIFY(dialog(*page)->isVisible());
    QVERIFY(dialog(*page)->checkStartParams());
    QVERIFY(field<QRadioButton>(*page, "selectGroupRadioButton")->isChecked());
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Вход: $(x) 100%"));
    QVERIFY(!field<QCheckBox>(*page, "popupCheckBox")->isChecked());
    QVERIFY(field<QCheckBox>(*page, "executeCheckBox")->isChecked());
    QCOMPARE(field<QLineEdit>(*page, "soundEdit")->text(), QStringLiteral("/bell.ogg"));
    QCOMPARE(field<QLineEdit>(*page, "logFileEdit")->text(), QStringLiteral("/var/log/my log"));
    QCOMPARE(field<QLineEdit>(*page, "executeEdit")->text(), QStringLiteral("/bin/true 'a'"));
    for (const CheckBoxParam *box : dialog(*page)->findChildren<CheckBoxParam *>()) {
        QCOMPARE(box->isChecked(), box->text() == QLatin1String("user"));
    }
    dialog(*page)->reject();

    page->switchDbus(eventOf(*page, id), false);
    QVERIFY(!page->compareModels());
    page->save();
    QVERIFY(!QFile::exists(fragment(file)));
    QVERIFY(!eventOf(*page, id)->isNotificationOn());
    const auto again = m_machine.openPage();
    QVERIFY(again);
    QVERIFY(!eventOf(*again, id)->isNotificationOn());
}

void NotificationPageTest::theLastEditWins()
{
    const QString id = QStringLiteral("event log_in-failed");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("First"));
    page->save();
    QVERIFY(m_machine.read(fragment(QStringLiteral("log_in_failed"))).contains("\"First\""));
    for (const char *title : {"Second", "Third"}) {
        retitle(*page, id, QLatin1String(title));
        QVERIFY(!page->compareModels());
        // Seen again before it is written.
        page->notificationSettings(eventOf(*page, id));
        QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QLatin1String(title));
        dialog(*page)->reject();
    }
    page->save();
    const QByteArray text = m_machine.read(fragment(QStringLiteral("log_in_failed")));
    QVERIFY2(text.contains("\"Third\"") && !text.contains("Second"), text.constData());
}

void NotificationPageTest::theSettingsOfANewNotificationAreItsOpenDialog()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(eventOf(*page, id), true);
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Half done"));
    page->notificationSettings(eventOf(*page, id)); // a message box would wait here for ever
    QVERIFY(dialog(*page)->isVisible());
    QCOMPARE(dialog(*page)->dialogType(), NotificationsDialogType::New);
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Half done"));
}

void NotificationPageTest::cancellingANewNotificationSwitchesItOff()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(eventOf(*page, id), true);
    QVERIFY(eventOf(*page, id)->isNotificationOn());
    dialog(*page)->reject();
    QVERIFY(!eventOf(*page, id)->isNotificationOn());
    QVERIFY(page->compareModels());
    QVERIFY(!QFile::exists(ownFile()));
}

void NotificationPageTest::cancellingAnEditChangesNothing()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("First"));
    page->notificationSettings(eventOf(*page, id));
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Second"));
    dialog(*page)->reject();
    QVERIFY(eventOf(*page, id)->isNotificationOn());
    page->save();
    QVERIFY(m_machine.read(fragment(QStringLiteral("plainword"))).contains("\"First\""));
}

void NotificationPageTest::switchingOffAndOnAgainStartsAfresh()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("First"));
    page->save();
    page->switchDbus(eventOf(*page, id), false);
    page->switchDbus(eventOf(*page, id), true);
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), eventOf(*page, id)->data(0).toString());
    dialog(*page)->reject();
    page->save();
    QVERIFY(!QFile::exists(fragment(QStringLiteral("plainword"))));
}

void NotificationPageTest::repeatedSavingDoesNotGrowTheFragment()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("a"));
    page->save();
    const QByteArray first = m_machine.read(fragment(QStringLiteral("plainword")));
    const QByteArray own = m_machine.read(ownFile());
    QVERIFY(first.endsWith("\n};\n"));
    for (const char *title : {"b", "a"}) {
        retitle(*page, id, QLatin1String(title));
        page->save();
    }
    QCOMPARE(m_machine.read(fragment(QStringLiteral("plainword"))), first);
    QCOMPARE(m_machine.read(ownFile()), own);
    m_machine.toggle(*page, id); // something else
    page->save();
    QCOMPARE(m_machine.read(fragment(QStringLiteral("plainword"))), first);
}

void NotificationPageTest::aReloadClosesTheDialog()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(eventOf(*page, QStringLiteral("event plainword")), true);
    page->load_p(); // as the watch does when somebody else changed the files
    QVERIFY(!dialog(*page)->isVisible());
    QCOMPARE(dialog(*page)->event(), nullptr);
    QVERIFY(!eventOf(*page, QStringLiteral("event plainword"))->isNotificationOn());
}

void NotificationPageTest::aReloadSaysThatItDropsWhatWasTypedInTheDialog()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("Stored"));
    page->save();
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    for (const bool edited : {false, true}) {
        page->notificationSettings(eventOf(*page, id));
        QVERIFY(dialog(*page)->isVisible());
        if (edited) {
            field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Typed"));
        }
        QVERIFY(page->compareModels());
        m_machine.replace(m_machine.settingsPath(), edited ? "{}" : "{ }");
        QTRY_VERIFY(!dialog(*page)->isVisible());
        QTRY_VERIFY2(bar->text().contains(QLatin1String("was changed by another program")),
                     qPrintable(bar->text()));
        QTRY_COMPARE(bar->text().contains(QLatin1String("not saved are gone")), edited);
    }
}

void NotificationPageTest::oneDialogAtATime()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(eventOf(*page, QStringLiteral("event plainword")), true);
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Typed"));
    const BoxAnswerer boxes;
    page->switchDbus(eventOf(*page, QStringLiteral("login")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(!eventOf(*page, QStringLiteral("login"))->isNotificationOn());
    QCOMPARE(dialog(*page)->event(), eventOf(*page, QStringLiteral("event plainword")));
    page->notificationSettings(eventOf(*page, QStringLiteral("event plainword")));
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Typed"));
}

void NotificationPageTest::whoHasNoSettingsOfHisOwnSeesTheSystems()
{
    const QString id = QStringLiteral("event user-login");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("x"));
    page->save();
    m_machine.write(ownFile(), "[Event/plainword]\nAction=Execute\nExecute=/left\n"); // another administrator
    page->notificationSettings(eventOf(*page, id));
    QVERIFY(field<QCheckBox>(*page, "popupCheckBox")->isChecked());
    QVERIFY(field<QCheckBox>(*page, "soundCheckBox")->isChecked());
    QVERIFY(!field<QCheckBox>(*page, "executeCheckBox")->isChecked());
    QCOMPARE(field<QLineEdit>(*page, "soundEdit")->text(), QStringLiteral("/system.ogg"));
    field<QCheckBox>(*page, "soundCheckBox")->click();
    clickOk(*page);
    const QByteArray own = m_machine.read(ownFile());
    QVERIFY2(own.startsWith("[Event/plainword]\nAction=Execute\nExecute=/left\n"), own.constData());
    QVERIFY2(own.contains("[Event/userLogin]\nAction=Popup\n"), own.constData());
    QVERIFY(m_machine
                .read(m_machine.root()
                      + QStringLiteral("/usr/share/knotifications5/nivra-event-watcher_circle.notifyrc"))
                .startsWith("[Event/userLogin]\nAction=Popup|Sound\n"));
}

void NotificationPageTest::theRepetitionIsAnEditOfThePage()
{
    addEvent(QStringLiteral("repeats"), QStringLiteral("plainword"),
             {{QStringLiteral("notification_repetition"),
               QJsonObject{{QStringLiteral("enabled"), QStringLiteral("0")},
                           {QStringLiteral("interval"), QStringLiteral("30")}}}});
    QVERIFY(QFile::remove(m_machine.catalogPath() + QStringLiteral("/first/event plainword.json")));
    const QString id = QStringLiteral("repeats");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("x"));
    page->save();
    page->notificationSettings(eventOf(*page, id));
    QVERIFY(page->compareModels());
    field<QCheckBox>(*page, "repeatCheckBox")->click();
    field<QSpinBox>(*page, "intervalSpinBox")->setValue(120);
    QVERIFY(!page->compareModels());
    dialog(*page)->reject();
    m_machine.toggle(*page, QStringLiteral("plain")); // a click elsewhere leaves the switch on
    page->save();
    const QJsonObject saved = m_machine.settings().value(id).toObject();
    QCOMPARE(saved.value(QStringLiteral("notification_repetition")).toObject(),
             (QJsonObject{{QStringLiteral("enabled"), QStringLiteral("1")},
                          {QStringLiteral("interval"), QStringLiteral("120")}}));
    page->notificationSettings(eventOf(*page, id));
    QVERIFY(field<QCheckBox>(*page, "repeatCheckBox")->isChecked());
    QCOMPARE(field<QSpinBox>(*page, "intervalSpinBox")->value(), 120);
}

void NotificationPageTest::theViewerOpensTheSettingsOfItsEvent()
{
    {
        const auto page = m_machine.openPage();
        QVERIFY(page);
        setUp(*page, QStringLiteral("event plainword"), QStringLiteral("Stored"));
        page->save();
    }
    const auto page
        = m_machine.openPage({QStringLiteral("auth"), QStringLiteral("plainword"), QStringLiteral("more")});
    QVERIFY(page);
    QTRY_VERIFY(dialog(*page)->isVisible());
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Stored"));
    QCOMPARE(dialog(*page)->dialogType(), NotificationsDialogType::Existing);
    dialog(*page)->reject();
    QVERIFY(page->compareModels());

    const auto off = m_machine.openPage(
        {QStringLiteral("event user-login"), QStringLiteral("none"), QStringLiteral("more")});
    QVERIFY(off);
    QTRY_VERIFY(dialog(*off)->isVisible());
    QCOMPARE(dialog(*off)->dialogType(), NotificationsDialogType::New);
    dialog(*off)->reject();
    QVERIFY(off->compareModels());
}

void NotificationPageTest::ofTwoEventsThatTheViewerNamesTheUpperOneIsShown()
{
    const auto page = m_machine.openPage(
        {QStringLiteral("event user-login"), QStringLiteral("event plainword"), QStringLiteral("more")});
    QVERIFY(page);
    QTRY_VERIFY(dialog(*page)->isVisible());
    QCOMPARE(dialog(*page)->event(), eventOf(*page, QStringLiteral("event plainword")));
    QVERIFY(eventOf(*page, QStringLiteral("event plainword"))->row()
            < eventOf(*page, QStringLiteral("event user-login"))->row());
    dialog(*page)->reject();
}

void NotificationPageTest::theSelectionNamesItsMessage()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(view->model());
    view->clearSelection();
    QCOMPARE(page->getSelectedMessageId(), QString());
    const EventTreeItem *item = eventOf(*page, QStringLiteral("event log_in-failed"));
    view->setCurrentIndex(proxy->mapFromSource(page->workingModel()->indexOf(item)));
    QCOMPARE(page->getSelectedMessageId(), QStringLiteral("log_in-failed"));
    view->setCurrentIndex(proxy->mapFromSource(page->workingModel()->indexOf(item->parentItem())));
    QCOMPARE(page->getSelectedMessageId(), QString());
}

QTEST_MAIN(NotificationPageTest)

#include "notificationpagetest.moc"
