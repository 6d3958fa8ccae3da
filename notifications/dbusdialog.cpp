// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "dbusdialog.h"

#include "checkboxparam.h"
#include "eventmessage.h"
#include "fragmentoptions.h"
#include "notificationfragment.h"
#include "notificationname.h"
#include "notificationsdictionary.h"
#include "notifyrcfile.h"
#include "soundpreview.h"
#include "ui_dbusdialog.h"

#include <eventlookup.h>
#include <eventtreeitem.h>
#include <guiutils.h>

#include <KMessageWidget>

DBusDialog::DBusDialog(ConfigAccessService &configAccess, LoggingService &loggingService, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_DBusDialog>())
    , m_message(new KMessageWidget(this))
    , m_configAccess(configAccess)
    , m_loggingService(loggingService)
{
    m_ui->setupUi(this);
    m_message->setObjectName(QStringLiteral("messageWidget"));
    m_message->setWordWrap(true);
    m_message->setCloseButtonVisible(false);
    m_message->hide();
    m_ui->verticalLayout->insertWidget(m_ui->verticalLayout->count() - 1, m_message);
    setTexts();
    setIcons();
    m_ui->allUsersRadioButton->setChecked(true);
    m_ui->titleLineEdit->setFocus();
    connectWidgets();
}

DBusDialog::~DBusDialog() = default;

void DBusDialog::clearParams()
{
    m_recipients = NotificationFragment::AllUsers;
    m_title.clear();
    m_actions.clear();
    m_executeCommand.clear();
    m_logFile.clear();
    m_soundFile.clear();
    m_tts.clear();
    m_selectedParams.clear();
    m_cutKeys.clear();
}

void DBusDialog::setParams(const QString &notifyKey, const QString &notifyrcPath,
                           const QStringList &destinationLines)
{
    const FragmentOptions options = FragmentOptions::read(destinationLines);
    m_title = options.title;
    m_selectedParams = options.parameters;
    m_recipients = options.recipients();
    m_cutKeys.clear();
    if (options.titleWasCut) {
        m_cutKeys << QStringLiteral("Title");
    }
    const NotifyrcFile file(notifyrcPath);
    if (file.state() != RegularFile::Read) {
        return;
    }
    const NotifyrcGroup group = file.group(notifyKey);
    m_actions = group.actions;
    m_executeCommand = group.executeCommand;
    m_logFile = group.logFile;
    const QString scheme = QStringLiteral("file://");
    if (m_logFile.startsWith(scheme)) {
        m_logFile.remove(0, scheme.size());
    }
    m_soundFile = group.soundFile;
    m_tts = group.tts;
    m_cutKeys += group.cutKeys;
    m_notifyrcPath = notifyrcPath;
    m_notifyKey = notifyKey;
}

bool DBusDialog::takeKey(const EventTreeItem &event)
{
    const QString messageId = EventMessage::id(event);
    if (messageId.isEmpty()) {
        return true;
    }
    const QString key = NotificationName::key(messageId);
    const QString fileName = NotificationsDictionary::Instance()->fileName(key);
    if (fileName.isEmpty()) {
        Gui::Utils::confirmAboutBrokenNotifyConfig(this, key);
        return false;
    }
    m_notifyKey = key;
    m_notifyrcPath = NotificationsDictionary::ownFile(fileName);
    return true;
}

bool DBusDialog::setEvent(EventTreeItem *event)
{
    if (event && !takeKey(*event)) {
        return false;
    }
    const bool isNew = m_dialogType == NotificationsDialogType::New;
    if (isNew) {
        clearParams();
    }
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(isNew);

    for (const QMetaObject::Connection &connection : qAsConst(m_changeConnections)) {
        disconnect(connection);
    }
    m_changeConnections.clear();
    m_event = event;
    m_params.clear();
    for (CheckBoxParam *box : qAsConst(m_paramBoxes)) {
        box->disconnect();
        m_ui->cbLayout->removeWidget(box);
        box->hide();
        box->deleteLater();
    }
    m_paramBoxes.clear();
    if (m_player) {
        m_player->stop();
    }
    if (!event) {
        return true;
    }
    m_ui->allUsersRadioButton->setChecked(true);
    m_ui->selectGroupRadioButton->setChecked(m_recipients == NotificationFragment::Administrators);
    m_ui->userAndGroupRadioButton->setChecked(m_recipients == NotificationFragment::UserAndGroup);
    const QString name = event->data(0).toString();
    m_ui->eventLabel->setText(name);
    m_ui->titleLineEdit->setText(m_title.isEmpty() ? name : m_title);
    fillParameters();
    fillMethods();
    setupNotificationRepetition();
    if (!isNew) {
        connectChanges();
    }
    showProblem();
    return true;
}

void DBusDialog::fillParameters()
{
    for (const QLatin1String list :
         {QLatin1String("message-params"), QLatin1String("extend-message-params")}) {
        const EventTreeItem *parameters = m_event->findChildTopLevelByNativeName(list);
        for (int row = 0; parameters && row < parameters->childCount(); ++row) {
            const EventTreeItem *parameter = parameters->eventChild(row);
            const QString shown = parameter->shownName().remove(QLatin1Char('&'));
            if (!m_params.contains(shown)) {
                m_params.insert(shown, parameter->nativeName);
            }
        }
    }
    for (auto it = m_params.cbegin(); it != m_params.cend(); ++it) {
        if (it.key().startsWith(QLatin1String("overlay"))) {
            continue;
        }
        auto *box = new CheckBoxParam(it.key(), it.value(), this);
        box->setChecked(m_selectedParams.contains(it.value()));
        m_paramBoxes.append(box);
        m_ui->cbLayout->addWidget(box);
        connect(box, &QCheckBox::stateChanged, this, &DBusDialog::showProblem);
        if (m_dialogType == NotificationsDialogType::Existing) {
            connect(box, &QCheckBox::stateChanged, this, &DBusDialog::setOkButtonState);
        }
    }
}

void DBusDialog::fillMethods()
{
    const QStringList actions = m_actions.split(QLatin1Char('|'));
    m_ui->popupCheckBox->setChecked(m_dialogType == NotificationsDialogType::New
                                    || actions.contains(QLatin1String("Popup")));
    m_ui->soundCheckBox->setChecked(actions.contains(QLatin1String("Sound")));
    enableSoundElements();
    m_ui->logFileCheckBox->setChecked(actions.contains(QLatin1String("Logfile")));
    enableLogFileElements();
    m_ui->executeCheckBox->setChecked(actions.contains(QLatin1String("Execute")));
    enableExecuteElements();
    m_ui->soundEdit->setText(m_soundFile);
    m_ui->logFileEdit->setText(m_logFile);
    m_ui->executeEdit->setText(m_executeCommand);
}

void DBusDialog::connectChanges()
{
    const auto add = [this](auto *widget, auto signal) {
        m_changeConnections << connect(widget, signal, this, &DBusDialog::setOkButtonState);
    };
    add(m_ui->allUsersRadioButton, &QRadioButton::toggled);
    add(m_ui->selectGroupRadioButton, &QRadioButton::toggled);
    add(m_ui->userAndGroupRadioButton, &QRadioButton::toggled);
    add(m_ui->titleLineEdit, &QLineEdit::textEdited);
    add(m_ui->popupCheckBox, &QCheckBox::stateChanged);
    add(m_ui->soundCheckBox, &QCheckBox::stateChanged);
    add(m_ui->logFileCheckBox, &QCheckBox::stateChanged);
    add(m_ui->executeCheckBox, &QCheckBox::stateChanged);
    add(m_ui->soundEdit, &QLineEdit::textChanged);
    add(m_ui->logFileEdit, &QLineEdit::textChanged);
    add(m_ui->executeEdit, &QLineEdit::textChanged);
    add(m_ui->intervalSpinBox, &QSpinBox::textChanged);
    add(m_ui->repeatCheckBox, &QCheckBox::stateChanged);
}

bool DBusDialog::checkStartParams() const
{
    const bool recipientsAsStored = m_recipients < NotificationFragment::AllUsers
        || m_recipients > NotificationFragment::UserAndGroup || recipientsChoice() == m_recipients;
    if (!recipientsAsStored || m_ui->titleLineEdit->text() != m_title) {
        return false;
    }
    // An interval that the box cannot show has not been changed by being shown.
    const int shownInterval
        = qBound(m_ui->intervalSpinBox->minimum(), m_repeatInterval, m_ui->intervalSpinBox->maximum());
    if (!m_ui->repeatGroupBox->isHidden()
        && (m_ui->repeatCheckBox->isChecked() != m_repeatEnabled
            || m_ui->intervalSpinBox->value() != shownInterval)) {
        return false;
    }
    if (checkedParameters() != m_selectedParams || m_ui->soundEdit->text() != m_soundFile
        || m_ui->logFileEdit->text() != m_logFile || m_ui->executeEdit->text() != m_executeCommand) {
        return false;
    }
    const QStringList stored = m_actions.split(QLatin1Char('|'));
    const QStringList shown = checkedActions();
    for (const char *method : {"Popup", "Sound", "Logfile", "Execute"}) {
        if (stored.contains(QLatin1String(method)) != shown.contains(QLatin1String(method))) {
            return false;
        }
    }
    return true;
}

void DBusDialog::setOkButtonState() const
{
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!checkStartParams());
}

QStringList DBusDialog::prepareParam(const QString &line) const
{
    return FragmentOptions::values(line);
}
