// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <checkboxparam.h>
#include <configaccessservice.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <loggingservice.h>
#include <notificationsdictionary.h>
#include <tone.h>

#include <KMessageWidget>

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

Q_DECLARE_METATYPE(EventTreeItem *)

/** What the dialog shows, and when it may be accepted. */
class DBusDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_dialog.reset(); }

    void startsAsTheFormSays();
    void aNewNotificationStartsFromDefaults();
    void anExistingNotificationShowsWhatIsStored();
    void recipientsAreRead_data();
    void recipientsAreRead();
    void everyParameterHasOneBox();
    void oneBoxForOneShownName();
    void okFollowsTheChanges_data();
    void okFollowsTheChanges();
    void okOfANewNotificationStaysEnabled();
    void fieldsFollowTheirCheckBoxes();
    void repetitionIsWrittenAtOnce();
    void withoutRepetitionThereIsNoGroup();
    void theIntervalStaysInItsBounds();
    void openingRewritesNoInterval_data();
    void openingRewritesNoInterval();
    void anUnknownKeyChangesNothing();
    void nothingOfTheEarlierEventIsLeft();
    void aMissingSettingsFileLeavesNoMethods();
    void refusedValuesKeepTheDialogOpen_data();
    void refusedValuesKeepTheDialogOpen();
    void aCutValueIsReplacedOnlyOnRequest();
    void playingSaysWhatIsWrong();
    void withoutASoundDeviceItSaysSo();
    void withoutThePlugInThatPlaysItSaysSo();

private:
    template <typename Widget> Widget *find(const char *name) const
    {
        auto *widget = m_dialog->findChild<Widget *>(QLatin1String(name));
        if (!widget) {
            qFatal("no widget %s", name);
        }
        return widget;
    }
    [[nodiscard]] QPushButton *ok() const
    {
        return find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok);
    }
    [[nodiscard]] QList<CheckBoxParam *> boxes() const;
    /// What the message reads like on the screen, empty when there is none.
    [[nodiscard]] QString message() const;
    void openNew(EventTreeItem *event);
    void openExisting(EventTreeItem *event);

    static QStringList storedLines();

    NotificationFixture m_machine;
    std::unique_ptr<ConfigAccessService> m_access;
    std::unique_ptr<LoggingService> m_logging;
    std::unique_ptr<DBusDialog> m_dialog;
    std::unique_ptr<EventTreeItem> m_event;
};

void DBusDialogTest::initTestCase()
{
    // No sound server, and no devices: whatever this machine has stays silent.
    qputenv("PULSE_SERVER", "unix:/nonexistent");
    qputenv("ALSA_CONFIG_PATH", "/dev/null");
}

void DBusDialogTest::init()
{
    qRegisterMetaType<EventTreeItem *>();
    m_machine.reset();
    NotificationsDictionary::Instance()->init();
    m_access = std::make_unique<ConfigAccessService>(nullptr);
    m_logging = std::make_unique<LoggingService>(nullptr);
    m_dialog = std::make_unique<DBusDialog>(*m_access, *m_logging, nullptr);
    m_event = m_machine.makeEvent(QStringLiteral("a-b_c"));
    m_machine.addRepetition(m_event.get(), QStringLiteral("0"), QStringLiteral("30"));
}

QStringList DBusDialogTest::storedLines()
{
    return {QStringLiteral("\t\t\"event_user\", \"@all\""),
            QStringLiteral("\t\t\"event_group\", \"nivra-admin\""),
            QStringLiteral("\t\t\"event_title\", \"Stored title\""),
            QStringLiteral("\t\t\"event_params\", \"terminal\"")};
}

QList<CheckBoxParam *> DBusDialogTest::boxes() const
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return find<QWidget>("scrollAreaWidgetContents")->findChildren<CheckBoxParam *>();
}

QString DBusDialogTest::message() const
{
    const auto *widget = find<KMessageWidget>("messageWidget");
    if (widget->isHidden() || !Qt::mightBeRichText(widget->text())) {
        return widget->isHidden() ? QString() : widget->text();
    }
    QTextDocument shown;
    shown.setHtml(widget->text());
    return shown.toPlainText();
}

void DBusDialogTest::openNew(EventTreeItem *event)
{
    m_dialog->setDialogType(NotificationsDialogType::New);
    QVERIFY(m_dialog->setEvent(event));
}

void DBusDialogTest::openExisting(EventTreeItem *event)
{
    m_machine.write(m_machine.ownFile("first"),
                    "[Event/aBC]\nAction=Sound|Logfile\nExecute=/bin/true\nLogfile=file:///var/log/x\n"
                    "Sound=/bell.ogg\nTTS=\n");
    m_dialog->clearParams();
    m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"), storedLines());
    m_dialog->setDialogType(NotificationsDialogType::Existing);
    QVERIFY(m_dialog->setEvent(event));
}

void DBusDialogTest::startsAsTheFormSays()
{
    QCOMPARE(m_dialog->objectName(), QStringLiteral("DBusDialog"));
    QVERIFY(!m_dialog->isModal());
    QVERIFY(find<QRadioButton>("allUsersRadioButton")->isChecked());
    const auto *interval = find<QSpinBox>("intervalSpinBox");
    QCOMPARE(interval->minimum(), 5);
    QCOMPARE(interval->maximum(), 3600);
    QCOMPARE(interval->singleStep(), 5);
    QCOMPARE(interval->value(), 30);
    QCOMPARE(interval->suffix(), QStringLiteral(" sec"));
    QVERIFY(!interval->isEnabled());
    QVERIFY(!find<QCheckBox>("repeatCheckBox")->isChecked());
    QCOMPARE(find<QGroupBox>("repeatGroupBox")->title(), QStringLiteral("Repeat settings"));
    QCOMPARE(find<QLabel>("eventTitleLabel")->text(), QStringLiteral("Event:"));
    QCOMPARE(find<QRadioButton>("selectGroupRadioButton")->text(),
             QStringLiteral("Send notification only to administrators"));
    QCOMPARE(find<QCheckBox>("executeCheckBox")->text(), QStringLiteral("Run command"));
    QCOMPARE(m_dialog->dialogType(), NotificationsDialogType::New);
    m_dialog->show();
    QCOMPARE(m_dialog->focusWidget(), find<QLineEdit>("titleLineEdit"));
}

void DBusDialogTest::aNewNotificationStartsFromDefaults()
{
    openExisting(m_event.get());
    openNew(m_event.get());
    QVERIFY(ok()->isEnabled());
    QVERIFY(find<QRadioButton>("allUsersRadioButton")->isChecked());
    QCOMPARE(find<QLabel>("eventLabel")->text(), QStringLiteral("Failed login"));
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Failed login"));
    QVERIFY(find<QCheckBox>("popupCheckBox")->isChecked());
    for (const char *name : {"soundCheckBox", "logFileCheckBox", "executeCheckBox"}) {
        QVERIFY2(!find<QCheckBox>(name)->isChecked(), name);
    }
    for (const char *name : {"soundEdit", "logFileEdit", "executeEdit"}) {
        QCOMPARE(find<QLineEdit>(name)->text(), QString());
        QVERIFY2(!find<QLineEdit>(name)->isEnabled(), name);
    }
    for (const CheckBoxParam *box : boxes()) {
        QVERIFY2(!box->isChecked(), qPrintable(box->text()));
    }
}

void DBusDialogTest::anExistingNotificationShowsWhatIsStored()
{
    openExisting(m_event.get());
    QVERIFY(!ok()->isEnabled());
    QVERIFY(find<QRadioButton>("selectGroupRadioButton")->isChecked());
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Stored title"));
    QVERIFY(!find<QCheckBox>("popupCheckBox")->isChecked());
    QVERIFY(find<QCheckBox>("soundCheckBox")->isChecked());
    QVERIFY(find<QCheckBox>("logFileCheckBox")->isChecked());
    QVERIFY(!find<QCheckBox>("executeCheckBox")->isChecked());
    QCOMPARE(find<QLineEdit>("soundEdit")->text(), QStringLiteral("/bell.ogg"));
    QCOMPARE(find<QLineEdit>("logFileEdit")->text(), QStringLiteral("/var/log/x"));
    QCOMPARE(find<QLineEdit>("executeEdit")->text(), QStringLiteral("/bin/true"));
    for (const CheckBoxParam *box : boxes()) {
        QCOMPARE(box->isChecked(), box->text() == QLatin1String("terminal"));
    }
    QVERIFY(m_dialog->checkStartParams());
}

void DBusDialogTest::recipientsAreRead_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("button");
    QTest::newRow("all") << QStringList{QStringLiteral("\"@all\""), QStringLiteral("\"@all\"")}
                         << QStringLiteral("allUsersRadioButton");
    QTest::newRow("administrators") << QStringList{QStringLiteral("\"@all\""),
                                                   QStringLiteral("\"nivra-admin\"")}
                                    << QStringLiteral("selectGroupRadioButton");
    QTest::newRow("of the event") << QStringList{QStringLiteral("\"\""), QStringLiteral("\"\"")}
                                  << QStringLiteral("userAndGroupRadioButton");
    QTest::newRow("blank user") << QStringList{QStringLiteral("\" \""), QStringLiteral("\"x\"")}
                                << QStringLiteral("userAndGroupRadioButton");
    QTest::newRow("blank user after the leading one")
        << QStringList{QStringLiteral(" \" \""), QStringLiteral("\"x\"")}
        << QStringLiteral("allUsersRadioButton");
    QTest::newRow("others") << QStringList{QStringLiteral("\"x\""), QStringLiteral("\"y\"")}
                            << QStringLiteral("userAndGroupRadioButton");
}

void DBusDialogTest::recipientsAreRead()
{
    QFETCH(QStringList, values);
    QFETCH(QString, button);
    // Without the blank after the comma, so that each row says which blanks there are.
    m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"),
                        {QStringLiteral("\"event_user\",") + values.at(0),
                         QStringLiteral("\"event_group\",") + values.at(1)});
    m_dialog->setDialogType(NotificationsDialogType::Existing);
    QVERIFY(m_dialog->setEvent(m_event.get()));
    for (const char *name : {"allUsersRadioButton", "selectGroupRadioButton", "userAndGroupRadioButton"}) {
        QCOMPARE(find<QRadioButton>(name)->isChecked(), button == QLatin1String(name));
    }
}

void DBusDialogTest::everyParameterHasOneBox()
{
    EventTreeItem *params = m_event->findChildTopLevelByNativeName(QStringLiteral("message-params"));
    m_machine.addChild(params, QStringLiteral("overlay0"));
    m_machine.addChild(params, QStringLiteral("overlaid"));
    m_machine.addChild(params, QStringLiteral("Overlay"));
    openNew(m_event.get());
    QStringList shown;
    for (const CheckBoxParam *box : boxes()) {
        shown << box->text();
    }
    QCOMPARE(shown,
             (QStringList{QStringLiteral("Overlay"), QStringLiteral("message_id"), QStringLiteral("overlaid"),
                          QStringLiteral("terminal"), QStringLiteral("user")}));
}

void DBusDialogTest::oneBoxForOneShownName()
{
    EventTreeItem *more = m_event->findChildTopLevelByNativeName(QStringLiteral("extend-message-params"));
    EventTreeItem *twin = m_machine.addChild(more, QStringLiteral("twin"));
    twin->setData(0, QStringLiteral("&user"));
    m_machine.addChild(more, QStringLiteral("host"))->localizedName = QStringLiteral("Узел");
    openNew(m_event.get());
    QCOMPARE(boxes().last()->text(), QStringLiteral("Узел"));
    QCOMPARE(boxes().last()->value().toString(), QStringLiteral("host"));
    int found = 0;
    for (const CheckBoxParam *box : boxes()) {
        if (box->text() == QLatin1String("user")) {
            QCOMPARE(box->value().toString(), QStringLiteral("user"));
            ++found;
        }
    }
    QCOMPARE(found, 1);
}

void DBusDialogTest::okFollowsTheChanges_data()
{
    QTest::addColumn<QString>("widget");
    for (const char *name : {"popupCheckBox", "soundCheckBox", "logFileCheckBox", "executeCheckBox",
                             "repeatCheckBox", "titleLineEdit", "soundEdit", "logFileEdit", "executeEdit",
                             "intervalSpinBox", "userAndGroupRadioButton", "parameter"}) {
        QTest::newRow(name) << QString(QLatin1String(name));
    }
}

void DBusDialogTest::okFollowsTheChanges()
{
    QFETCH(QString, widget);
    openExisting(m_event.get());
    m_dialog->show();
    const QByteArray name = widget.toLatin1();
    if (widget.endsWith(QLatin1String("CheckBox")) || widget == QLatin1String("parameter")) {
        QCheckBox *box
            = widget == QLatin1String("parameter") ? boxes().last() : find<QCheckBox>(name.constData());
        box->click();
        QVERIFY(ok()->isEnabled());
        box->click();
    } else if (widget.endsWith(QLatin1String("Edit"))) {
        auto *edit = find<QLineEdit>(name.constData());
        edit->setEnabled(true);
        edit->setFocus();
        edit->end(false);
        QTest::keyClicks(edit, QStringLiteral("x"));
        QVERIFY(ok()->isEnabled());
        QTest::keyClick(edit, Qt::Key_Backspace);
    } else if (widget == QLatin1String("intervalSpinBox")) {
        find<QSpinBox>(name.constData())->setValue(45);
        QVERIFY(ok()->isEnabled());
        find<QSpinBox>(name.constData())->setValue(30);
    } else {
        find<QRadioButton>(name.constData())->click();
        QVERIFY(ok()->isEnabled());
        find<QRadioButton>("selectGroupRadioButton")->click();
    }
    QVERIFY(!ok()->isEnabled());
}

void DBusDialogTest::okOfANewNotificationStaysEnabled()
{
    openExisting(m_event.get());
    openNew(m_event.get());
    find<QCheckBox>("popupCheckBox")->click();
    find<QCheckBox>("popupCheckBox")->click();
    find<QLineEdit>("soundEdit")->setText(QStringLiteral("x"));
    find<QLineEdit>("soundEdit")->clear();
    QVERIFY(ok()->isEnabled());
}

void DBusDialogTest::fieldsFollowTheirCheckBoxes()
{
    openNew(m_event.get());
    const QVector<QPair<const char *, QStringList>> methods{
        {"soundCheckBox",
         {QStringLiteral("playButton"), QStringLiteral("soundEdit"), QStringLiteral("soundDialogButton")}},
        {"logFileCheckBox", {QStringLiteral("logFileEdit"), QStringLiteral("logFileDialogButton")}},
        {"executeCheckBox", {QStringLiteral("executeEdit"), QStringLiteral("executeDialogButton")}}};
    for (const auto &[box, fields] : methods) {
        for (const bool enabled : {true, false}) {
            find<QCheckBox>(box)->setChecked(enabled);
            for (const QString &field : fields) {
                QCOMPARE(find<QWidget>(field.toLatin1().constData())->isEnabled(), enabled);
            }
        }
    }
}

void DBusDialogTest::repetitionIsWrittenAtOnce()
{
    const EventTreeItem *repetition
        = m_event->findChildTopLevelByNativeName(QStringLiteral("notification_repetition"));
    openNew(m_event.get());
    QSignalSpy changes(m_dialog.get(), &DBusDialog::repetitionChanged);
    find<QCheckBox>("repeatCheckBox")->click();
    QCOMPARE(repetition->child(0)->data(1).toString(), QStringLiteral("1"));
    QVERIFY(find<QSpinBox>("intervalSpinBox")->isEnabled());
    find<QSpinBox>("intervalSpinBox")->setValue(60);
    QCOMPARE(repetition->child(1)->data(1).toString(), QStringLiteral("60"));
    m_dialog->handleRepeatCheckBox(Qt::PartiallyChecked);
    QCOMPARE(repetition->child(0)->data(1).toString(), QStringLiteral("1"));
    find<QCheckBox>("repeatCheckBox")->click();
    QCOMPARE(repetition->child(0)->data(1).toString(), QStringLiteral("0"));
    QVERIFY(!find<QSpinBox>("intervalSpinBox")->isEnabled());
    QCOMPARE(changes.count(), 3);
    m_dialog->reject();
    QCOMPARE(repetition->child(1)->data(1).toString(), QStringLiteral("60"));
}

void DBusDialogTest::withoutRepetitionThereIsNoGroup()
{
    const auto plain = m_machine.makeEvent(QStringLiteral("plain"));
    openNew(m_event.get());
    QVERIFY(!find<QGroupBox>("repeatGroupBox")->isHidden());
    openNew(plain.get());
    QVERIFY(find<QGroupBox>("repeatGroupBox")->isHidden());
    find<QSpinBox>("intervalSpinBox")->setValue(100); // of no event
    openNew(m_event.get());
    QVERIFY(!find<QGroupBox>("repeatGroupBox")->isHidden());
    QCOMPARE(find<QSpinBox>("intervalSpinBox")->value(), 30);
}

void DBusDialogTest::theIntervalStaysInItsBounds()
{
    openNew(m_event.get());
    auto *interval = find<QSpinBox>("intervalSpinBox");
    interval->setValue(5);
    interval->stepDown();
    QCOMPARE(interval->value(), 5);
    interval->setValue(3600);
    interval->stepUp();
    QCOMPARE(interval->value(), 3600);
}

void DBusDialogTest::openingRewritesNoInterval_data()
{
    QTest::addColumn<QString>("enabled");
    QTest::addColumn<QString>("interval");
    QTest::newRow("below") << QStringLiteral("1") << QStringLiteral("2");
    QTest::newRow("above") << QStringLiteral("0") << QStringLiteral("9999");
    QTest::newRow("no number") << QStringLiteral("yes") << QStringLiteral("soon");
    QTest::newRow("within") << QStringLiteral("1") << QStringLiteral("77");
}

void DBusDialogTest::openingRewritesNoInterval()
{
    QFETCH(QString, enabled);
    QFETCH(QString, interval);
    const auto event = m_machine.makeEvent(QStringLiteral("a-b_c"));
    m_machine.addRepetition(event.get(), enabled, interval);
    const EventTreeItem *repetition
        = event->findChildTopLevelByNativeName(QStringLiteral("notification_repetition"));
    QSignalSpy changes(m_dialog.get(), &DBusDialog::repetitionChanged);
    openExisting(event.get());
    QCOMPARE(repetition->child(0)->data(1).toString(), enabled);
    QCOMPARE(repetition->child(1)->data(1).toString(), interval);
    QCOMPARE(find<QCheckBox>("repeatCheckBox")->isChecked(), enabled == QLatin1String("1"));
    QVERIFY(m_dialog->checkStartParams());
    QCOMPARE(changes.count(), 0);
}

void DBusDialogTest::anUnknownKeyChangesNothing()
{
    openExisting(m_event.get());
    const auto unknown = m_machine.makeEvent(QStringLiteral("not-defined"));
    QString said;
    QTimer::singleShot(0, this, [&said] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        said = box ? box->text() : QString();
        if (box) {
            box->accept();
        }
    });
    m_dialog->setDialogType(NotificationsDialogType::New);
    QVERIFY(!m_dialog->setEvent(unknown.get()));
    QCOMPARE(said, QStringLiteral("Config file for \"notDefined\" is broken."));
    QCOMPARE(m_dialog->event(), m_event.get());
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Stored title"));
}

void DBusDialogTest::nothingOfTheEarlierEventIsLeft()
{
    openExisting(m_event.get());
    const auto plain = m_machine.makeEvent(QStringLiteral("plain"));
    m_dialog->clearParams();
    m_dialog->setParams(QStringLiteral("plain"), m_machine.ownFile("second"), {});
    QVERIFY(m_dialog->setEvent(plain.get()));
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Failed login"));
    QVERIFY(!find<QCheckBox>("soundCheckBox")->isChecked());
    QCOMPARE(find<QLineEdit>("soundEdit")->text(), QString());
    QCOMPARE(find<QLineEdit>("logFileEdit")->text(), QString());
    QCOMPARE(find<QLineEdit>("executeEdit")->text(), QString());
    QCOMPARE(boxes().size(), 3);
    for (const CheckBoxParam *box : boxes()) {
        QVERIFY(!box->isChecked());
    }
    QVERIFY(m_dialog->setEvent(nullptr));
    QCOMPARE(boxes().size(), 0);
}

void DBusDialogTest::aMissingSettingsFileLeavesNoMethods()
{
    m_dialog->clearParams();
    m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"), storedLines());
    m_dialog->setDialogType(NotificationsDialogType::Existing);
    QVERIFY(m_dialog->setEvent(m_event.get()));
    QCOMPARE(find<QLineEdit>("titleLineEdit")->text(), QStringLiteral("Stored title"));
    for (const char *name : {"popupCheckBox", "soundCheckBox", "logFileCheckBox", "executeCheckBox"}) {
        QVERIFY2(!find<QCheckBox>(name)->isChecked(), name);
    }
}

void DBusDialogTest::refusedValuesKeepTheDialogOpen_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("value");
    QTest::newRow("comma in the title") << QStringLiteral("titleLineEdit") << QStringLiteral("a,b");
    QTest::newRow("quote in the title") << QStringLiteral("titleLineEdit") << QStringLiteral("\"a\"");
    QTest::newRow("backslash in the title") << QStringLiteral("titleLineEdit") << QStringLiteral("a\\");
    QTest::newRow("backtick in the title") << QStringLiteral("titleLineEdit") << QStringLiteral("`a`");
    QTest::newRow("line break in the title") << QStringLiteral("titleLineEdit") << QStringLiteral("a\nb");
    QTest::newRow("equals sign in the command") << QStringLiteral("executeEdit") << QStringLiteral("x --a=b");
    QTest::newRow("line break in the command")
        << QStringLiteral("executeEdit") << QStringLiteral("a\nSound=b");
    QTest::newRow("blank after the sound") << QStringLiteral("soundEdit") << QStringLiteral("/x ");
    QTest::newRow("backslash in the log file") << QStringLiteral("logFileEdit") << QStringLiteral("/x\\n");
}

void DBusDialogTest::refusedValuesKeepTheDialogOpen()
{
    QFETCH(QString, edit);
    QFETCH(QString, value);
    openNew(m_event.get());
    m_dialog->show();
    QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    const QString good = find<QLineEdit>(edit.toLatin1().constData())->text();
    find<QLineEdit>(edit.toLatin1().constData())->setText(value);
    QVERIFY(!message().isEmpty());
    ok()->click();
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(accepted.count(), 0);
    QVERIFY(!message().isEmpty());
    find<QLineEdit>(edit.toLatin1().constData())->setText(good);
    QCOMPARE(message(), QString());
    ok()->click();
    QCOMPARE(accepted.count(), 1);
}

void DBusDialogTest::aCutValueIsReplacedOnlyOnRequest()
{
    m_machine.write(m_machine.ownFile("first"), "[Event/aBC]\nAction=Execute\nExecute=run --a=b\n");
    m_dialog->clearParams();
    m_dialog->setParams(QStringLiteral("aBC"), m_machine.ownFile("first"), storedLines());
    m_dialog->setDialogType(NotificationsDialogType::Existing);
    QVERIFY(m_dialog->setEvent(m_event.get()));
    m_dialog->show();
    QVERIFY2(message().contains(QLatin1String("Command")), qPrintable(message()));
    find<QRadioButton>("allUsersRadioButton")->click();
    int asked = 0;
    QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        QTimer::singleShot(0, this, [&asked, answer] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                ++asked;
                box->button(answer)->click();
            }
        });
        ok()->click();
        QCOMPARE(accepted.count(), answer == QMessageBox::Yes ? 1 : 0);
        if (answer == QMessageBox::No) {
            QVERIFY(m_machine.read(m_machine.ownFile("first")).contains("run --a=b"));
        }
    }
    QCOMPARE(asked, 2);
}

void DBusDialogTest::playingSaysWhatIsWrong()
{
    openNew(m_event.get());
    find<QCheckBox>("soundCheckBox")->click();
    for (const char *name : {"/no/such/sound.ogg", "/no/such/bell & whistle", "/no/such/<b>x</b>"}) {
        const QString path = QLatin1String(name);
        find<QLineEdit>("soundEdit")->setText(path);
        find<QPushButton>("playButton")->click();
        QVERIFY2(message().contains(path), qPrintable(message()));
    }
    const QString noSound = m_machine.path("/home/no-sound.ogg");
    m_machine.write(noSound, "no sound at all");
    find<QLineEdit>("soundEdit")->setText(noSound);
    QCOMPARE(message(), QString());
    find<QPushButton>("playButton")->click();
    QTRY_VERIFY_WITH_TIMEOUT(message().contains(QLatin1String("The sound cannot be")), 10000);
}

void DBusDialogTest::withoutASoundDeviceItSaysSo()
{
    openNew(m_event.get());
    const QString tone = m_machine.path("/home/tone.wav");
    m_machine.write(tone, Tone::wav());
    find<QCheckBox>("soundCheckBox")->click();
    find<QLineEdit>("soundEdit")->setText(tone);
    QCOMPARE(message(), QString());
    find<QPushButton>("playButton")->click();
    QCOMPARE(
        message(),
        QStringLiteral("The sound cannot be heard: this computer has no sound device, or no access to it."));
}

void DBusDialogTest::withoutThePlugInThatPlaysItSaysSo()
{
    openNew(m_event.get());
    const QString tone = m_machine.path("/home/tone.wav");
    m_machine.write(tone, Tone::wav());
    find<QCheckBox>("soundCheckBox")->click();
    find<QLineEdit>("soundEdit")->setText(tone);
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({m_machine.path("/home")});
    find<QPushButton>("playButton")->click();
    QCoreApplication::setLibraryPaths(paths);
    const QString missing = message();
    QVERIFY2(missing.startsWith(QLatin1String("The sound cannot be played: ")), qPrintable(missing));
    QVERIFY2(missing.contains(QLatin1String("soundpreview")), qPrintable(missing));

    find<QPushButton>("playButton")->click();
    QVERIFY(message() != missing);
}

QTEST_MAIN(DBusDialogTest)

#include "dbusdialogtest.moc"
