// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <checkboxparam.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <statewidget.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QAbstractProxyModel>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>

#include <algorithm>

/// Notifications from the menu over the dialog to the files, and back after a new start.
class NotificationPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void theMenuOffersNotifications();
    void whatIsSetUpSurvivesTheCircle_data();
    void whatIsSetUpSurvivesTheCircle();
    void theLastEditWins();
    void cancellingANewNotificationSwitchesItOff();
    void cancellingAnEditChangesNothing();
    void switchingOffAndOnAgainStartsAfresh();
    void aFailedWriteKeepsTheEdits();
    void aFailedRemovalKeepsTheEdits();
    void repeatedSavingDoesNotGrowTheFragment();
    void eventsThatShareANotificationAreNotBothSwitchedOn();
    void aSharedFragmentShowsOnTheEventThatItNames();
    void anOpenDialogHoldsTheSaveBack();
    void aReloadClosesTheDialog();
    void oneDialogAtATime();
    void unusableEventsAreRefused_data();
    void unusableEventsAreRefused();
    void anUnreadableSettingsFileOpensNoDialog();
    void whoHasNoSettingsOfHisOwnSeesTheSystems();
    void theRepetitionIsAnEditOfThePage();
    void theViewerOpensTheSettingsOfItsEvent();
    void theSelectionNamesItsMessage();

private:
    void addEvent(const QString &id, const QString &messageId, const QJsonObject &more = {});
    [[nodiscard]] QString fragment(const QString &name) const;
    [[nodiscard]] QString ownFile() const;
    [[nodiscard]] static DBusDialog *dialog(const AdminEventsModule &page)
    {
        return page.findChild<DBusDialog *>(QStringLiteral("DBusDialog"));
    }
    template <typename Widget> static Widget *field(const AdminEventsModule &page, const char *name)
    {
        return dialog(page)->findChild<Widget *>(QLatin1String(name));
    }
    static void clickOk(const AdminEventsModule &page)
    {
        field<QDialogButtonBox>(page, "buttonBox")->button(QDialogButtonBox::Ok)->click();
    }
    [[nodiscard]] static EventTreeItem *event(const AdminEventsModule &page, const QString &id)
    {
        return PageFixture::node(page.workingModel(), id);
    }
    void setUp(AdminEventsModule &page, const QString &id, const QString &title);

    PageFixture m_machine;
};

void NotificationPageTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void NotificationPageTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    for (const char *id : {"user-login", "user_login", "log_in-failed", "plainword", "twin"}) {
        addEvent(QStringLiteral("event ") + QLatin1String(id),
                 QLatin1String(id) == QLatin1String("twin") ? QStringLiteral("log-in_failed")
                                                            : QString(QLatin1String(id)));
    }
    m_machine.write(
        m_machine.root() + QStringLiteral("/usr/share/knotifications5/nivra-event-watcher_circle.notifyrc"),
        "[Event/userLogin]\nAction=Popup|Sound\nSound=/system.ogg\n[Event/logInFailed]\nAction=Popup\n"
        "[Event/plainword]\nAction=Popup\n");
}

void NotificationPageTest::addEvent(const QString &id, const QString &messageId, const QJsonObject &more)
{
    QJsonObject event = more;
    event.insert(QStringLiteral("event-group"), QStringLiteral("first"));
    event.insert(QStringLiteral("enabled"), QStringLiteral("1"));
    if (!event.contains(QStringLiteral("message-type"))) {
        event.insert(QStringLiteral("message-type"), QStringLiteral("auth"));
    }
    event.insert(QStringLiteral("message-params"),
                 QJsonObject{{QStringLiteral("message_id"), messageId},
                             {QStringLiteral("name_en"), id},
                             {QStringLiteral("name_ru"), id}});
    event.insert(QStringLiteral("extend-message-params"),
                 QJsonObject{{QStringLiteral("user"), QStringLiteral("${U}")},
                             {QStringLiteral("terminal"), QStringLiteral("${T}")}});
    m_machine.write(QStringLiteral("%1/first/%2.json").arg(m_machine.catalogPath(), id),
                    QJsonDocument(event).toJson());
}

QString NotificationPageTest::fragment(const QString &name) const
{
    return m_machine.root() + QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-") + name
        + QStringLiteral(".conf");
}

QString NotificationPageTest::ownFile() const
{
    return m_machine.root() + QStringLiteral("/root/.config/nivra-event-watcher_circle.notifyrc");
}

void NotificationPageTest::setUp(AdminEventsModule &page, const QString &id, const QString &title)
{
    page.switchDbus(event(page, id), true);
    QVERIFY(dialog(page)->isVisible());
    field<QLineEdit>(page, "titleLineEdit")->setText(title);
    clickOk(page);
    QVERIFY(!dialog(page)->isVisible());
}

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
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(view->model());
    const auto texts = [&](const QString &id) {
        const QModelIndex index = proxy->mapFromSource(page->workingModel()->indexOf(event(*page, id)));
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
    QVERIFY(event(*page, QStringLiteral("nameless")));
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
        page->switchDbus(event(*page, id), true);
        QVERIFY(dialog(*page)->isVisible());
        QVERIFY(event(*page, id)->isNotificationOn());
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
        QVERIFY(event(*page, id)->isNotificationOn());
        QVERIFY(page->compareModels());
        QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Saved);
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(event(*page, id)->isNotificationOn());
    page->notificationSettings(event(*page, id));
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

    page->switchDbus(event(*page, id), false);
    QVERIFY(!page->compareModels());
    page->save();
    QVERIFY(!QFile::exists(fragment(file)));
    QVERIFY(!event(*page, id)->isNotificationOn());
    const auto again = m_machine.openPage();
    QVERIFY(again);
    QVERIFY(!event(*again, id)->isNotificationOn());
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
        page->notificationSettings(event(*page, id));
        auto *edit = field<QLineEdit>(*page, "titleLineEdit");
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, QLatin1String(title));
        clickOk(*page);
        QVERIFY(!page->compareModels());
        // Seen again before it is written.
        page->notificationSettings(event(*page, id));
        QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QLatin1String(title));
        dialog(*page)->reject();
    }
    page->save();
    const QByteArray text = m_machine.read(fragment(QStringLiteral("log_in_failed")));
    QVERIFY2(text.contains("\"Third\"") && !text.contains("Second"), text.constData());
}

void NotificationPageTest::cancellingANewNotificationSwitchesItOff()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(event(*page, id), true);
    QVERIFY(event(*page, id)->isNotificationOn());
    dialog(*page)->reject();
    QVERIFY(!event(*page, id)->isNotificationOn());
    QVERIFY(page->compareModels());
    QVERIFY(!QFile::exists(ownFile()));
}

void NotificationPageTest::cancellingAnEditChangesNothing()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("First"));
    page->notificationSettings(event(*page, id));
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Second"));
    dialog(*page)->reject();
    QVERIFY(event(*page, id)->isNotificationOn());
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
    page->switchDbus(event(*page, id), false);
    page->switchDbus(event(*page, id), true);
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), event(*page, id)->data(0).toString());
    dialog(*page)->reject();
    page->save();
    QVERIFY(!QFile::exists(fragment(QStringLiteral("plainword"))));
}

void NotificationPageTest::aFailedWriteKeepsTheEdits()
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
    QVERIFY(event(*page, id)->isNotificationOn());
    page->notificationSettings(event(*page, id));
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Kept"));
    dialog(*page)->reject();
    QVERIFY(m_machine.bus->setAllowed(true));
    page->save();
    QVERIFY(m_machine.read(fragment(QStringLiteral("plainword"))).contains("\"Kept\""));
}

void NotificationPageTest::aFailedRemovalKeepsTheEdits()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("x"));
    page->save();
    page->switchDbus(event(*page, id), false);
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
    QVERIFY(!event(*page, id)->isNotificationOn());
    QVERIFY(!page->compareModels());
    QVERIFY(m_machine.bus->setAllowed(true));
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
        page->notificationSettings(event(*page, id));
        auto *edit = field<QLineEdit>(*page, "titleLineEdit");
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, QLatin1String(title));
        clickOk(*page);
        page->save();
    }
    QCOMPARE(m_machine.read(fragment(QStringLiteral("plainword"))), first);
    QCOMPARE(m_machine.read(ownFile()), own);
    m_machine.toggle(*page, id); // something else
    page->save();
    QCOMPARE(m_machine.read(fragment(QStringLiteral("plainword"))), first);
}

void NotificationPageTest::eventsThatShareANotificationAreNotBothSwitchedOn()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, QStringLiteral("event user-login"), QStringLiteral("x"));
    const BoxAnswerer boxes;
    page->switchDbus(event(*page, QStringLiteral("event user_login")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(QLatin1String("user-login"))
                 && boxes.boxes().at(0).text.contains(QLatin1String("user_login")),
             qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!event(*page, QStringLiteral("event user_login"))->isNotificationOn());
}

void NotificationPageTest::aSharedFragmentShowsOnTheEventThatItNames()
{
    {
        const auto page = m_machine.openPage();
        QVERIFY(page);
        setUp(*page, QStringLiteral("event twin"), QStringLiteral("x")); // log-in_failed
        page->save();
        QVERIFY(event(*page, QStringLiteral("event twin"))->isNotificationOn());
        QVERIFY(!event(*page, QStringLiteral("event log_in-failed"))->isNotificationOn());
        // Applying something else keeps it so.
        m_machine.toggle(*page, QStringLiteral("plain"));
        page->save();
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(event(*page, QStringLiteral("event twin"))->isNotificationOn());
    QVERIFY(!event(*page, QStringLiteral("event log_in-failed"))->isNotificationOn());
    QVERIFY(page->compareModels());
    QVERIFY(page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))
                ->text()
                .contains(QLatin1String("event log_in-failed")));
}

void NotificationPageTest::anOpenDialogHoldsTheSaveBack()
{
    const QString id = QStringLiteral("event plainword");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->switchDbus(event(*page, id), true);
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

void NotificationPageTest::aReloadClosesTheDialog()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(event(*page, QStringLiteral("event plainword")), true);
    page->load_p(); // as the watch does when somebody else changed the files
    QVERIFY(!dialog(*page)->isVisible());
    QCOMPARE(dialog(*page)->event(), nullptr);
    QVERIFY(!event(*page, QStringLiteral("event plainword"))->isNotificationOn());
}

void NotificationPageTest::oneDialogAtATime()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->switchDbus(event(*page, QStringLiteral("event plainword")), true);
    field<QLineEdit>(*page, "titleLineEdit")->setText(QStringLiteral("Typed"));
    const BoxAnswerer boxes;
    page->switchDbus(event(*page, QStringLiteral("login")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(!event(*page, QStringLiteral("login"))->isNotificationOn());
    QCOMPARE(dialog(*page)->event(), event(*page, QStringLiteral("event plainword")));
    page->notificationSettings(event(*page, QStringLiteral("event plainword")));
    QCOMPARE(field<QLineEdit>(*page, "titleLineEdit")->text(), QStringLiteral("Typed"));
}

void NotificationPageTest::unusableEventsAreRefused_data()
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

void NotificationPageTest::unusableEventsAreRefused()
{
    QFETCH(QString, messageId);
    QFETCH(QString, type);
    QFETCH(QString, named);
    addEvent(QStringLiteral("odd"), messageId, {{QStringLiteral("message-type"), type}});
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes;
    page->switchDbus(event(*page, QStringLiteral("odd")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(named), qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!event(*page, QStringLiteral("odd"))->isNotificationOn());
    QVERIFY(page->compareModels());
}

void NotificationPageTest::anUnreadableSettingsFileOpensNoDialog()
{
    QVERIFY(QDir().mkpath(ownFile())); // a directory in its place
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes;
    page->switchDbus(event(*page, QStringLiteral("event plainword")), true);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(ownFile()), qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!dialog(*page)->isVisible());
    QVERIFY(!event(*page, QStringLiteral("event plainword"))->isNotificationOn());
}

void NotificationPageTest::whoHasNoSettingsOfHisOwnSeesTheSystems()
{
    const QString id = QStringLiteral("event user-login");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    setUp(*page, id, QStringLiteral("x"));
    page->save();
    m_machine.write(ownFile(), "[Event/plainword]\nAction=Execute\nExecute=/left\n"); // another administrator
    page->notificationSettings(event(*page, id));
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
    page->notificationSettings(event(*page, id));
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
    page->notificationSettings(event(*page, id));
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

void NotificationPageTest::theSelectionNamesItsMessage()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(view->model());
    view->clearSelection();
    QCOMPARE(page->getSelectedMessageId(), QString());
    const EventTreeItem *item = event(*page, QStringLiteral("event log_in-failed"));
    view->setCurrentIndex(proxy->mapFromSource(page->workingModel()->indexOf(item)));
    QCOMPARE(page->getSelectedMessageId(), QStringLiteral("log_in-failed"));
    view->setCurrentIndex(proxy->mapFromSource(page->workingModel()->indexOf(item->parentItem())));
    QCOMPARE(page->getSelectedMessageId(), QString());
}

QTEST_MAIN(NotificationPageTest)

#include "notificationpagetest.moc"
