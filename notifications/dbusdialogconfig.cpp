// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "dbusdialog.h"
#include "eventmessage.h"
#include "notificationcheck.h"
#include "notificationfragment.h"
#include "notificationname.h"
#include "notificationsdictionary.h"
#include "notifyrcfile.h"
#include "ui_dbusdialog.h"

#include <commonwriter.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <systempaths.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QPointer>

namespace {
/// Tells running programs that the settings of their notifications were changed.
void announceSettings(const QString &fileName)
{
    QDBusMessage signal
        = QDBusMessage::createSignal(QStringLiteral("/Config"), QStringLiteral("org.kde.knotification"),
                                     QStringLiteral("reparseConfiguration"));
    signal << fileName;
    QDBusConnection::sessionBus().send(signal);
}
} // namespace

QString DBusDialog::problem() const
{
    if (!m_event) {
        return {};
    }
    QStringList problems{
        NotificationCheck::eventProblem(EventMessage::id(*m_event), EventMessage::type(*m_event)),
        NotificationCheck::titleProblem(m_ui->titleLineEdit->text()),
        NotificationCheck::settingProblem(i18n("Sound file"), m_ui->soundEdit->text()),
        NotificationCheck::settingProblem(i18n("Log file"), m_ui->logFileEdit->text()),
        NotificationCheck::settingProblem(i18n("Command"), m_ui->executeEdit->text())};
    const QStringList parameters = checkedParameters();
    for (const QString &parameter : parameters) {
        problems << NotificationCheck::parameterProblem(parameter);
    }
    problems.removeAll(QString());
    return problems.value(0);
}

QStringList DBusDialog::cutFields() const
{
    QStringList fields;
    const auto add
        = [this, &fields](const char *key, const QString &name, const QString &shown, const QString &stored) {
              if (m_cutKeys.contains(QLatin1String(key)) && shown == stored) {
                  fields << name;
              }
          };
    add("Title", i18nc("A field of the dialog", "Title"), m_ui->titleLineEdit->text(), m_title);
    add("Sound", i18n("Sound file"), m_ui->soundEdit->text(), m_soundFile);
    add("Logfile", i18n("Log file"), m_ui->logFileEdit->text(), m_logFile);
    add("Execute", i18n("Command"), m_ui->executeEdit->text(), m_executeCommand);
    return fields;
}

void DBusDialog::showProblem() const
{
    const QString reason = problem();
    const QStringList cut = cutFields();
    if (!reason.isEmpty()) {
        say(reason, false);
    } else if (!cut.isEmpty()) {
        say(i18n("What is stored cannot be shown whole: %1. Pressing OK replaces it by what is shown.",
                 cut.join(QLatin1String(", "))),
            false);
    } else {
        m_message->hide();
    }
}

void DBusDialog::accept()
{
    const QString reason = problem();
    if (!reason.isEmpty()) {
        say(reason, true);
        return;
    }
    const QStringList cut = cutFields();
    if (!cut.isEmpty()
        && Gui::Utils::showText(this, QMessageBox::Question, i18n("Notification settings"),
                                i18n("What is stored is longer than what is shown: %1. Replace it by what is "
                                     "shown?",
                                     cut.join(QLatin1String(", "))),
                                QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
            != QMessageBox::Yes) {
        return;
    }
    QDialog::accept();
}

QStringList DBusDialog::createEventContent() const
{
    const QString logFile = m_ui->logFileEdit->text();
    const QString logFileUrl = logFile.isEmpty() ? QString() : QString(QLatin1String("file://") + logFile);
    return {
        QLatin1String("[Event/") + m_notifyKey + QLatin1String("]\n"),
        QLatin1String("Action=") + checkedActions().join(QLatin1Char('|')) + QLatin1Char('\n'),
        QLatin1String("Execute=") + m_ui->executeEdit->text() + QLatin1Char('\n'),
        QLatin1String("Logfile=") + logFileUrl + QLatin1Char('\n'),
        QLatin1String("Sound=") + m_ui->soundEdit->text() + QLatin1Char('\n'),
        QStringLiteral("TTS=\n"),
    };
}

QString DBusDialog::writeTypeConfig() const
{
    return NotifyrcFile(m_notifyrcPath).replaceGroup(m_notifyKey, createEventContent());
}

void DBusDialog::generateConfig()
{
    NotificationFragment fragment;
    if (m_event) {
        fragment.messageId = EventMessage::id(*m_event);
        fragment.messageType = EventMessage::type(*m_event);
    }
    if (fragment.messageId.isEmpty() || fragment.messageType.isEmpty()) {
        return;
    }
    fragment.recipients = static_cast<NotificationFragment::Recipients>(recipientsChoice());
    fragment.title = m_ui->titleLineEdit->text();
    fragment.parameters = checkedParameters();
    CommonWriter writer(m_configAccess, NotificationName::fragmentPath(fragment.messageId));
    const QStringList lines = fragment.lines(writer);

    const QString failure = writeTypeConfig();
    if (!failure.isEmpty()) {
        const QPointer<DBusDialog> self(this);
        Gui::Utils::showText(this, QMessageBox::Critical, i18n("Error"), failure);
        if (self && m_event) { // a reload meanwhile has taken it
            show(); // with all that was entered
        }
        return;
    }
    Q_EMIT configGenerated(fragment.messageId, lines);

    const QString key = NotificationName::key(fragment.messageId);
    const QString fileName = NotificationsDictionary::Instance()->fileName(key);
    if (fileName.isEmpty()) {
        Gui::Utils::confirmAboutBrokenNotifyConfig(this, key);
    } else {
        announceSettings(fileName);
    }
}
