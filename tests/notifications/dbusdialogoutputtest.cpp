// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <checkboxparam.h>
#include <configaccessservice.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <loggingservice.h>
#include <notificationsdictionary.h>
#include <privatebus.h>

#include <QDBusConnection>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

/** Hears what a notification program would hear. */
class SettingsListener : public QObject
{
    Q_OBJECT

public:
    QStringList names;

public Q_SLOTS:
    void reparse(const QString &name) { names << name; }
};

/** What accepting the dialog writes and announces. */
class DBusDialogOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void theGroupToTheLetter();
    void anEmptyLogFileHasNoScheme();
    void acceptingWritesTheGroupAndHandsOverTheFragment();
    void otherGroupsSurvive();
    void runningProgramsAreTold();
    void aTitleWithQuotesIsEscaped();
    void anEventWithoutItsIdentifiersGivesNothing_data();
    void anEventWithoutItsIdentifiersGivesNothing();
    void settingsThatCannotBeWrittenBringTheDialogBack();
    void whatWasAcceptedIsShownAgain();

private:
    template <typename Widget> Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    void openNew(EventTreeItem *event);

    NotificationFixture m_machine;
    std::unique_ptr<PrivateBus> m_bus;
    SettingsListener m_listener;
    std::unique_ptr<ConfigAccessService> m_access;
    std::unique_ptr<LoggingService> m_logging;
    std::unique_ptr<DBusDialog> m_dialog;
    std::unique_ptr<EventTreeItem> m_event;
};

void DBusDialogOutputTest::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
    // The session's bus, too: nothing of the test reaches the desktop of whoever runs it.
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toLatin1());
    QDBusConnection bus = QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("listener"));
    QVERIFY(bus.connect(QString(), QStringLiteral("/Config"), QStringLiteral("org.kde.knotification"),
                        QStringLiteral("reparseConfiguration"), &m_listener, SLOT(reparse(QString))));
}

void DBusDialogOutputTest::cleanupTestCase()
{
    m_dialog.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("listener"));
    QDBusConnection::disconnectFromBus(QStringLiteral("qt_default_session_bus"));
    m_bus.reset();
}

void DBusDialogOutputTest::init()
{
    m_dialog.reset();
    m_machine.reset();
    NotificationsDictionary::Instance()->init();
    m_listener.names.clear();
    m_access = std::make_unique<ConfigAccessService>(nullptr);
    m_logging = std::make_unique<LoggingService>(nullptr);
    m_dialog = std::make_unique<DBusDialog>(*m_access, *m_logging, nullptr);
    m_event = m_machine.makeEvent(QStringLiteral("a-b_c"));
}

void DBusDialogOutputTest::openNew(EventTreeItem *event)
{
    m_dialog->setDialogType(NotificationsDialogType::New);
    QVERIFY(m_dialog->setEvent(event));
}

void DBusDialogOutputTest::theGroupToTheLetter()
{
    openNew(m_event.get());
    for (const char *box : {"soundCheckBox", "logFileCheckBox", "executeCheckBox"}) {
        find<QCheckBox>(box)->setChecked(true);
    }
    find<QLineEdit>("soundEdit")->setText(QStringLiteral("/звук.ogg"));
    find<QLineEdit>("logFileEdit")->setText(QStringLiteral("/var/log/x"));
    find<QLineEdit>("executeEdit")->setText(QStringLiteral("/bin/true now"));
    QCOMPARE(
        m_dialog->createEventContent(),
        (QStringList{QStringLiteral("[Event/aBC]\n"), QStringLiteral("Action=Popup|Sound|Logfile|Execute\n"),
                     QStringLiteral("Execute=/bin/true now\n"), QStringLiteral("Logfile=file:///var/log/x\n"),
                     QStringLiteral("Sound=/звук.ogg\n"), QStringLiteral("TTS=\n")}));
}

void DBusDialogOutputTest::anEmptyLogFileHasNoScheme()
{
    openNew(m_event.get());
    QCOMPARE(m_dialog->createEventContent().at(3), QStringLiteral("Logfile=\n"));
}

void DBusDialogOutputTest::acceptingWritesTheGroupAndHandsOverTheFragment()
{
    openNew(m_event.get());
    QSignalSpy generated(m_dialog.get(), &DBusDialog::configGenerated);
    find<QRadioButton>("selectGroupRadioButton")->click();
    for (CheckBoxParam *box : m_dialog->findChildren<CheckBoxParam *>()) {
        box->setChecked(box->text() != QLatin1String("message_id"));
    }
    m_dialog->accept();
    QCOMPARE(generated.count(), 1);
    QCOMPARE(generated.first().at(0).toString(), QStringLiteral("a-b_c"));
    const QStringList lines = generated.first().at(1).toStringList();
    QCOMPARE(lines.first(), QStringLiteral("filter nivra_a-b_c_filter {"));
    QVERIFY(lines.contains(QStringLiteral("\t\t\"event_group\", \"nivra-admin\"")));
    QVERIFY(lines.contains(QStringLiteral("\t\t\"event_params\", \"terminal,user\"")));
    QCOMPARE(lines.last(), QStringLiteral("};"));
    QCOMPARE(m_machine.read(m_machine.ownFile("first")),
             QByteArray("[Event/aBC]\nAction=Popup\nExecute=\nLogfile=\nSound=\nTTS=\n"));
}

void DBusDialogOutputTest::otherGroupsSurvive()
{
    const QByteArray before = "# mine\n[Event/userLoginFailed]\nAction=Sound\n\n";
    m_machine.write(m_machine.ownFile("first"), before);
    openNew(m_event.get());
    m_dialog->accept();
    QCOMPARE(m_machine.read(m_machine.ownFile("first")),
             QByteArray(before + "[Event/aBC]\nAction=Popup\nExecute=\nLogfile=\nSound=\nTTS=\n"));
}

void DBusDialogOutputTest::runningProgramsAreTold()
{
    const auto plain = m_machine.makeEvent(QStringLiteral("plain"));
    openNew(plain.get());
    m_dialog->accept();
    const QString name = QStringLiteral("nivra-event-watcher_second"); // of no other test
    QTRY_VERIFY(m_listener.names.contains(name));
    QCOMPARE(m_listener.names.count(name), 1);
}

void DBusDialogOutputTest::aTitleWithQuotesIsEscaped()
{
    openNew(m_event.get());
    QSignalSpy generated(m_dialog.get(), &DBusDialog::configGenerated);
    find<QLineEdit>("titleLineEdit")->setText(QStringLiteral("say \"hi\""));
    m_dialog->generateConfig();
    QCOMPARE(generated.count(), 1);
    QVERIFY(generated.first().at(1).toStringList().contains(
        QStringLiteral("\t\t\"event_title\", \"say \\\"hi\\\"\"")));
}

void DBusDialogOutputTest::anEventWithoutItsIdentifiersGivesNothing_data()
{
    QTest::addColumn<QString>("missing");
    QTest::newRow("identifier") << QStringLiteral("message_id");
    QTest::newRow("type") << QStringLiteral("message-type");
    QTest::newRow("event") << QString();
}

void DBusDialogOutputTest::anEventWithoutItsIdentifiersGivesNothing()
{
    QFETCH(QString, missing);
    if (!missing.isEmpty()) {
        EventTreeItem *child = m_event->findChildByNativeName(missing);
        QVERIFY(child->parentItem()->deleteChild(child->row()));
        openNew(m_event.get());
    }
    QSignalSpy generated(m_dialog.get(), &DBusDialog::configGenerated);
    m_dialog->generateConfig();
    QCOMPARE(generated.count(), 0);
    QVERIFY(QDir(m_machine.path("/root/.config")).isEmpty());
}

void DBusDialogOutputTest::settingsThatCannotBeWrittenBringTheDialogBack()
{
    QVERIFY(QDir().mkpath(m_machine.ownFile("first"))); // a directory in its place
    openNew(m_event.get());
    QSignalSpy generated(m_dialog.get(), &DBusDialog::configGenerated);
    find<QLineEdit>("titleLineEdit")->setText(QStringLiteral("Typed"));
    QString said;
    QTimer::singleShot(0, this, [&said] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            said = box->text();
            box->accept();
        }
    });
    m_dialog->show();
    m_dialog->accept();
    QVERIFY2(said.contains(m_machine.ownFile("first")), qPrintable(said));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Typed"));
    QCOMPARE(generated.count(), 0);
}

void DBusDialogOutputTest::whatWasAcceptedIsShownAgain()
{
    openNew(m_event.get());
    QSignalSpy generated(m_dialog.get(), &DBusDialog::configGenerated);
    find<QRadioButton>("userAndGroupRadioButton")->click();
    find<QLineEdit>("titleLineEdit")->setText(QStringLiteral("Вход: event_user 100% %1"));
    for (const char *box : {"popupCheckBox", "soundCheckBox", "logFileCheckBox", "executeCheckBox"}) {
        find<QCheckBox>(box)->click();
    }
    find<QLineEdit>("soundEdit")->setText(QStringLiteral("/звук.ogg"));
    find<QLineEdit>("logFileEdit")->setText(QStringLiteral("/var/log/x y"));
    find<QLineEdit>("executeEdit")->setText(QStringLiteral("/bin/echo 'a b' $(c)"));
    m_dialog->findChildren<CheckBoxParam *>().last()->click();
    m_dialog->accept();

    m_dialog->clearParams();
    m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"),
                        generated.first().at(1).toStringList());
    m_dialog->setDialogType(NotificationsDialogType::Existing);
    QVERIFY(m_dialog->setEvent(m_event.get()));
    QVERIFY(m_dialog->checkStartParams());
    QVERIFY(find<QRadioButton>("userAndGroupRadioButton")->isChecked());
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Вход: event_user 100% %1"));
    QVERIFY(!find<QCheckBox>("popupCheckBox")->isChecked());
    QVERIFY(find<QCheckBox>("executeCheckBox")->isChecked());
    QCOMPARE(find<QLineEdit>("soundEdit")->text(), QStringLiteral("/звук.ogg"));
    QCOMPARE(find<QLineEdit>("logFileEdit")->text(), QStringLiteral("/var/log/x y"));
    QCOMPARE(find<QLineEdit>("executeEdit")->text(), QStringLiteral("/bin/echo 'a b' $(c)"));
}

QTEST_MAIN(DBusDialogOutputTest)

#include "dbusdialogoutputtest.moc"
