// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "checkboxparam.h"
#include "dbusdialog.h"
#include "notificationfragment.h"
#include "soundpreview.h"
#include "ui_dbusdialog.h"

#include <checkstates.h>
#include <eventlookup.h>
#include <eventtreeitem.h>
#include <plainmessage.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QFileDialog>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>

namespace {
const QLatin1String on("1");
const QLatin1String off("0");

constexpr int playerPatience = 5000; // ms

QString homeDirectory()
{
    return QStandardPaths::standardLocations(QStandardPaths::HomeLocation).constFirst();
}
} // namespace

void DBusDialog::setTexts()
{
    setWindowTitle(i18n("Notification settings"));
    m_ui->eventTitleLabel->setText(i18n("Event:"));
    m_ui->allUsersRadioButton->setText(i18n("Send notification to all users"));
    m_ui->selectGroupRadioButton->setText(i18n("Send notification only to administrators"));
    m_ui->userAndGroupRadioButton->setText(
        i18n("Send notification to the user and group specified in the event"));
    m_ui->titleLabel->setText(i18n("Title:"));
    m_ui->includeGroupBox->setTitle(i18n("Message content"));
    m_ui->notifyTypeGroupBox->setTitle(i18n("Notification methods"));
    m_ui->popupCheckBox->setText(i18n("Show a message in a popup"));
    m_ui->soundCheckBox->setText(i18n("Play a sound"));
    m_ui->logFileCheckBox->setText(i18n("Log to a file"));
    m_ui->executeCheckBox->setText(i18n("Run command"));
    m_ui->repeatGroupBox->setTitle(i18n("Repeat settings"));
    m_ui->repeatCheckBox->setText(i18n("Repeat every:"));
    m_ui->intervalSpinBox->setSuffix(i18nc("Seconds, after a number", " sec"));

    // The fields and icon buttons have no text of their own.
    const auto describe = [](QWidget *widget, const QString &text) {
        widget->setAccessibleName(text);
        widget->setToolTip(text);
    };
    describe(m_ui->playButton, i18n("Play the sound"));
    describe(m_ui->soundEdit, i18n("Sound file"));
    describe(m_ui->soundDialogButton, i18n("Choose a sound file"));
    describe(m_ui->logFileEdit, i18n("Log file"));
    describe(m_ui->logFileDialogButton, i18n("Choose a log file"));
    describe(m_ui->executeEdit, i18n("Command"));
    describe(m_ui->executeDialogButton, i18n("Choose a script file"));
    m_ui->intervalSpinBox->setAccessibleName(i18n("Repetition interval"));
    m_ui->scrollArea->setAccessibleName(i18n("Message content"));
}

void DBusDialog::setIcons()
{
    const auto icon = [](const char *name) { return QIcon::fromTheme(QLatin1String(name)); };
    m_ui->popupCheckBox->setIcon(icon("zep-notifications"));
    m_ui->soundCheckBox->setIcon(icon("media-playback-start"));
    m_ui->playButton->setIcon(icon("media-playback-start"));
    m_ui->logFileCheckBox->setIcon(icon("text-x-generic"));
    m_ui->executeCheckBox->setIcon(icon("system-run"));
    m_ui->repeatCheckBox->setIcon(icon("chronometer"));
    for (QPushButton *button :
         {m_ui->soundDialogButton, m_ui->logFileDialogButton, m_ui->executeDialogButton}) {
        button->setIcon(icon("document-open"));
    }
}

void DBusDialog::connectWidgets()
{
    connect(this, &QDialog::accepted, this, &DBusDialog::generateConfig);
    connect(m_ui->playButton, &QPushButton::clicked, this, &DBusDialog::playButtonClicked);
    connect(m_ui->soundDialogButton, &QPushButton::clicked, this, &DBusDialog::soundDialogButtonClicked);
    connect(m_ui->logFileDialogButton, &QPushButton::clicked, this, &DBusDialog::logFileDialogButtonClicked);
    connect(m_ui->executeDialogButton, &QPushButton::clicked, this, &DBusDialog::executeDialogButtonClicked);
    connect(m_ui->soundCheckBox, &QCheckBox::stateChanged, this, &DBusDialog::enableSoundElements);
    connect(m_ui->logFileCheckBox, &QCheckBox::stateChanged, this, &DBusDialog::enableLogFileElements);
    connect(m_ui->executeCheckBox, &QCheckBox::stateChanged, this, &DBusDialog::enableExecuteElements);
    connect(m_ui->repeatCheckBox, &QCheckBox::stateChanged, this, &DBusDialog::handleRepeatCheckBox);
    connect(m_ui->intervalSpinBox, qOverload<int>(&QSpinBox::valueChanged), this,
            &DBusDialog::setRepeatInterval);
    for (QLineEdit *edit : {m_ui->titleLineEdit, m_ui->soundEdit, m_ui->logFileEdit, m_ui->executeEdit}) {
        connect(edit, &QLineEdit::textChanged, this, &DBusDialog::showProblem);
    }
    // Enter accepts the dialog, wherever the focus is.
    const QList<QPushButton *> buttons
        = {m_ui->playButton, m_ui->soundDialogButton, m_ui->logFileDialogButton, m_ui->executeDialogButton};
    for (QPushButton *button : buttons) {
        button->setAutoDefault(false);
    }
}

void DBusDialog::say(const QString &text, bool isError) const
{
    PlainMessage::show(m_message, isError ? KMessageWidget::Error : KMessageWidget::Warning, {text});
}

void DBusDialog::enableSoundElements() const
{
    const bool enabled = m_ui->soundCheckBox->isChecked();
    m_ui->playButton->setEnabled(enabled);
    m_ui->soundEdit->setEnabled(enabled);
    m_ui->soundDialogButton->setEnabled(enabled);
}

void DBusDialog::enableLogFileElements() const
{
    const bool enabled = m_ui->logFileCheckBox->isChecked();
    m_ui->logFileEdit->setEnabled(enabled);
    m_ui->logFileDialogButton->setEnabled(enabled);
}

void DBusDialog::enableExecuteElements() const
{
    const bool enabled = m_ui->executeCheckBox->isChecked();
    m_ui->executeEdit->setEnabled(enabled);
    m_ui->executeDialogButton->setEnabled(enabled);
}

bool DBusDialog::createPlayer()
{
    m_player = SoundPreview::create(
        [this](const QString &reason) { say(i18n("The sound cannot be played: %1", reason), true); });
    if (m_player) {
        connect(this, &QDialog::finished, this, [this] { m_player->stop(); });
    }
    return m_player != nullptr;
}

void DBusDialog::playButtonClicked()
{
    showProblem();
    const QString path = m_ui->soundEdit->text();
    if (!QFileInfo(path).isFile()) {
        say(i18n("The sound cannot be played: there is no file “%1”.", path), true);
        return;
    }
    if (!m_player && !createPlayer()) {
        return;
    }
    m_player->play(path);
    if (!m_player->hasDevice()) {
        // Without a device, the player pretends to play.
        say(i18n("The sound cannot be heard: this computer has no sound device, or no access to it."), true);
        return;
    }
    QTimer::singleShot(playerPatience, this, [this] {
        if (m_player->isLoading()) {
            say(i18n("The sound cannot be played: the program that plays sounds does not answer."), true);
        }
    });
}

void DBusDialog::chooseFile(QLineEdit *edit, const QString &caption, const QString &directory,
                            const QString &filter)
{
    const QString chosen = QFileDialog::getOpenFileName(this, caption, directory, filter);
    if (!chosen.isEmpty()) {
        edit->setText(chosen);
    }
}

void DBusDialog::soundDialogButtonClicked()
{
    const QString sounds = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                  QStringLiteral("sounds"), QStandardPaths::LocateDirectory);
    chooseFile(m_ui->soundEdit, i18n("Open sound"), sounds, i18n("Audio files (*.ogg *.wav)"));
}

void DBusDialog::logFileDialogButtonClicked()
{
    chooseFile(m_ui->logFileEdit, i18n("Open log file"), homeDirectory(), {});
}

void DBusDialog::executeDialogButtonClicked()
{
    chooseFile(m_ui->executeEdit, i18n("Open script file"), homeDirectory(), {});
}

EventTreeItem *DBusDialog::repetitionValue(const QString &name) const
{
    const EventTreeItem *repetition
        = m_event ? EventLookup::findParameter(*m_event, QStringLiteral("notification_repetition")) : nullptr;
    return repetition ? repetition->findChildTopLevelByNativeName(name) : nullptr;
}

void DBusDialog::setupNotificationRepetition()
{
    if (!EventLookup::findParameter(*m_event, QStringLiteral("notification_repetition"))) {
        m_ui->repeatGroupBox->hide();
        return;
    }
    const EventTreeItem *enabled = repetitionValue(QStringLiteral("enabled"));
    const EventTreeItem *interval = repetitionValue(QStringLiteral("interval"));
    m_repeatEnabled = enabled && enabled->data(1).toInt() == 1;
    m_repeatInterval = interval ? interval->data(1).toInt() : 0;
    // Showing a value is no change of it.
    const QSignalBlocker quietInterval(m_ui->intervalSpinBox);
    const QSignalBlocker quietCheckBox(m_ui->repeatCheckBox);
    m_ui->intervalSpinBox->setValue(m_repeatInterval);
    m_ui->repeatCheckBox->setChecked(m_repeatEnabled);
    m_ui->intervalSpinBox->setEnabled(m_repeatEnabled);
    m_ui->repeatGroupBox->show();
}

void DBusDialog::writeRepetition(const QString &name, const QString &value) const
{
    EventTreeItem *item = repetitionValue(name);
    if (item && item->data(1).toString() != value) {
        item->setData(1, value);
        CheckStates::valueChanged(item); // or the next click in the tree would turn it back
        Q_EMIT repetitionChanged(m_event);
    }
}

void DBusDialog::handleRepeatCheckBox(int state) const
{
    if (state == Qt::PartiallyChecked) {
        return;
    }
    m_ui->intervalSpinBox->setEnabled(state == Qt::Checked);
    writeRepetition(QStringLiteral("enabled"), state == Qt::Checked ? on : off);
}

void DBusDialog::setRepeatInterval(int seconds)
{
    writeRepetition(QStringLiteral("interval"), QString::number(seconds));
}

int DBusDialog::recipientsChoice() const
{
    if (m_ui->allUsersRadioButton->isChecked()) {
        return NotificationFragment::AllUsers;
    }
    return m_ui->selectGroupRadioButton->isChecked() ? NotificationFragment::Administrators
                                                     : NotificationFragment::UserAndGroup;
}

QStringList DBusDialog::checkedParameters() const
{
    QStringList values;
    for (const CheckBoxParam *box : m_paramBoxes) {
        if (box->isChecked()) {
            values << box->value().toString();
        }
    }
    return values;
}

QStringList DBusDialog::checkedActions() const
{
    QStringList actions;
    const auto add = [&actions](const QCheckBox *box, const char *name) {
        if (box->isChecked()) {
            actions << QLatin1String(name);
        }
    };
    add(m_ui->popupCheckBox, "Popup");
    add(m_ui->soundCheckBox, "Sound");
    add(m_ui->logFileCheckBox, "Logfile");
    add(m_ui->executeCheckBox, "Execute");
    return actions;
}
