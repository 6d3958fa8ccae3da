// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include "ui_admineventsmodule.h"

#include <actionids.h>
#include <checkabletreemodel.h>
#include <configaccessservice.h>
#include <coreutils.h>
#include <dbusdialog.h>
#include <dbuskeeper.h>
#include <eventlookup.h>
#include <eventmessage.h>
#include <eventsproxymodel.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <notificationcheck.h>
#include <notificationconflicts.h>
#include <notificationname.h>
#include <notificationsdictionary.h>
#include <notifyrcfile.h>
#include <systempaths.h>
#include <usersnotifyrc.h>

#include <KAuth/Action>
#include <KLocalizedString>
#include <KMessageWidget>

#include <QDir>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QMenu>
#include <QPointer>

DBusDialog &AdminEventsModule::dbusDialog()
{
    if (!m_dbusDialog) {
        m_dbusDialog = new DBusDialog(*m_configAccessService, *m_loggingService, this);
        connect(m_dbusDialog, &DBusDialog::configGenerated, this, &AdminEventsModule::notificationAccepted);
        connect(m_dbusDialog, &QDialog::rejected, this, &AdminEventsModule::notificationRejected);
        connect(m_dbusDialog, &DBusDialog::repetitionChanged, this,
                [this](const EventTreeItem *event) { m_workingModel->announceChange(event); });
    }
    return *m_dbusDialog;
}

void AdminEventsModule::addNotificationActions(QMenu *menu, const EventTreeItem &event)
{
    if (event.notRedirected || EventMessage::id(event).isEmpty()) {
        return;
    }
    // The page may load its trees anew while the menu is open.
    const NodeAddress address(event);
    const bool isOn = event.isNotificationOn();
    menu->addAction(QIcon::fromTheme(isOn ? QStringLiteral("dialog-cancel") : QStringLiteral("legalmoves")),
                    isOn ? i18n("Disable notifications sending") : i18n("Enable notifications sending"), this,
                    [this, address, isOn] {
                        if (EventTreeItem *item = address.findEvent(*m_workingModel->rootItem())) {
                            switchDbus(item, !isOn);
                        }
                    });
    QAction *settings = menu->addAction(QIcon::fromTheme(QStringLiteral("dialog-warning")),
                                        i18n("Notification settings"), this, [this, address] {
                                            EventTreeItem *item
                                                = address.findEvent(*m_workingModel->rootItem());
                                            if (item) {
                                                notificationSettings(item);
                                            }
                                        });
    settings->setEnabled(isOn);
}

QString AdminEventsModule::getSelectedMessageId() const
{
    const QModelIndexList selected = m_ui->singleEventsView->selectionModel()->selectedIndexes();
    const EventTreeItem *event
        = selected.isEmpty() ? nullptr : EventLookup::enclosingEvent(itemAt(selected.first()));
    return event ? EventMessage::id(*event) : QString();
}

void AdminEventsModule::setNotificationState(const EventTreeItem &item, int state)
{
    m_workingModel->setData(m_workingModel->indexOf(&item),
                            QVariant::fromValue(static_cast<EventTreeItem::NotificationState>(state)),
                            Qt::DecorationRole);
}

void AdminEventsModule::switchDbus(EventTreeItem *item, bool on)
{
    const QString messageId = EventMessage::id(*item);
    if (!on) {
        m_notifications.drop(messageId);
        if (m_dbusDialog && m_dbusDialog->event() == item) {
            detachNotificationDialog();
        }
        setNotificationState(*item, EventTreeItem::NotificationOff);
        return;
    }
    const QString problem = NotificationCheck::eventProblem(messageId, EventMessage::type(*item));
    if (!problem.isEmpty()) {
        showError(problem);
        return;
    }
    if (const EventTreeItem *rival = NotificationConflicts::rivalOf(*m_workingModel->rootItem(), *item)) {
        showError(i18n("The events “%1” and “%2” share one notification, because their message identifiers "
                       "“%3” and “%4” differ too little. Disable the notifications of the other event first.",
                       item->data(0).toString(), rival->data(0).toString(), messageId,
                       EventMessage::id(*rival)));
        return;
    }
    setNotificationOn(item->nativeName, {}, {}, NotificationsDialogType::New);
}

void AdminEventsModule::notificationSettings(EventTreeItem *item)
{
    if (bringUpNotificationDialogOf(*item)) { // a new notification has nothing to be read yet
        return;
    }
    const QString messageId = EventMessage::id(*item);
    const QStringList lines = m_notifications.lines(messageId);
    if (lines.isEmpty()) {
        showError(i18n("The notification file %1 cannot be read or is empty.",
                       NotificationName::fragmentPath(messageId)));
        return;
    }
    // Who has not set up this notification himself gets what the system says of it.
    const QString key = NotificationName::key(messageId);
    const QString fileName = NotificationsDictionary::Instance()->fileName(key);
    const QString ownFile = NotificationsDictionary::ownFile(fileName);
    const bool hasOwn = NotifyrcFile(ownFile).group(key).isDefined;
    setNotificationOn(item->nativeName, hasOwn ? ownFile : NotificationsDictionary::systemFile(fileName),
                      lines, NotificationsDialogType::Existing);
}

void AdminEventsModule::setNotificationOn(const QString &eventId, const QString &notifyrcPath,
                                          const QStringList &lines, NotificationsDialogType type)
{
    EventTreeItem *event = EventLookup::findEvent(*m_workingModel->rootItem(), eventId);
    if (!event) {
        return;
    }
    if (bringUpNotificationDialogOf(*event)) {
        return;
    }
    DBusDialog &dialog = dbusDialog();
    if (!isNotificationDialogFree()) {
        return;
    }
    const QString key = NotificationName::key(EventMessage::id(*event));
    const QString fileName = NotificationsDictionary::Instance()->fileName(key);
    const QString unreadable = NotifyrcFile(NotificationsDictionary::ownFile(fileName)).readProblem();
    if (!fileName.isEmpty() && !unreadable.isEmpty()) {
        showError(unreadable);
        return;
    }
    dialog.clearParams();
    if (type == NotificationsDialogType::Existing) {
        dialog.setParams(key, notifyrcPath, lines);
    }
    dialog.setDialogType(type);
    if (!dialog.setEvent(event)) {
        return;
    }
    if (type == NotificationsDialogType::New) {
        setNotificationState(*event, EventTreeItem::NotificationSwitchedOn);
    }
    Gui::Utils::bringUp(dialog);
}

void AdminEventsModule::notificationAccepted(const QString &messageId, const QStringList &lines)
{
    m_notifications.keep(messageId, lines);
    // Unlike what was loaded, also where only the settings were edited: there is something to apply.
    setNotificationState(*m_dbusDialog->event(), EventTreeItem::NotificationSwitchedOn);
}

void AdminEventsModule::notificationRejected()
{
    const EventTreeItem *event = m_dbusDialog->event();
    if (event && m_dbusDialog->dialogType() == NotificationsDialogType::New
        && !m_notifications.isPending(EventMessage::id(*event))) {
        setNotificationState(*event, EventTreeItem::NotificationOff);
    }
}

void AdminEventsModule::detachNotificationDialog()
{
    if (m_dbusDialog) {
        m_dbusDialog->hide();
        (void)m_dbusDialog->setEvent(nullptr);
    }
}

bool AdminEventsModule::bringUpNotificationDialogOf(const EventTreeItem &event)
{
    if (!m_dbusDialog || !m_dbusDialog->isVisible() || m_dbusDialog->event() != &event) {
        return false;
    }
    Gui::Utils::bringUp(*m_dbusDialog);
    return true;
}

bool AdminEventsModule::isNotificationDialogFree()
{
    if (!m_dbusDialog || !m_dbusDialog->isVisible()) {
        return true;
    }
    const QPointer<DBusDialog> open(m_dbusDialog); // may end in the message box
    Gui::Utils::showText(this, QMessageBox::Information, i18n("Notification settings"),
                         i18n("Accept or cancel the notification settings of “%1” first.",
                              m_dbusDialog->event()->data(0).toString()));
    if (open) {
        Gui::Utils::bringUp(*open);
    }
    return false;
}

void AdminEventsModule::notificationSettingsFromViewer(const QString &second, const QString &first)
{
    // The viewer names an event by its identifiers or its name.
    const QVector<EventTreeItem *> events = EventLookup::events(*m_workingModel->rootItem());
    for (EventTreeItem *event : events) {
        const QString messageId = EventMessage::id(*event);
        const QStringList names{event->nativeName, event->localizedName, messageId};
        if (!names.contains(first) && !names.contains(second)) {
            continue;
        }
        const QModelIndex index = m_proxy->mapFromSource(m_workingModel->indexOf(event));
        m_ui->singleEventsView->setCurrentIndex(index);
        m_ui->singleEventsView->scrollTo(index);
        if (event->isNotificationOn()) {
            notificationSettings(event);
        } else if (!event->notRedirected && !messageId.isEmpty()) {
            switchDbus(event, true);
        }
        return;
    }
}

void AdminEventsModule::readNotificationsSettings()
{
    m_notifications.readFromDisk();
    DBusKeeper::Instance()->init();
}

void AdminEventsModule::settleNotifications()
{
    NotificationConflicts::settle(*m_referenceModel->rootItem(), m_notifications);
    const QStringList switchedOff
        = NotificationConflicts::settle(*m_workingModel->rootItem(), m_notifications);
    if (!switchedOff.isEmpty() && m_messageBar->isHidden()) {
        showMessage(KMessageWidget::Information,
                    i18n("These events share their notification with another event and are shown "
                         "without: %1.",
                         switchedOff.join(QLatin1String(", "))));
    }
}

bool AdminEventsModule::saveNotifications()
{
    const QPointer<AdminEventsModule> self(this); // which may end in a message box
    const bool saved = removeDisabledNotificationsConfigs() && writeEnabledNotificationsConfigs();
    if (!self) {
        return false;
    }
    if (saved) {
        m_notificationsWritten |= m_notifications.hasPending();
        m_notifications.discard();
    }
    readNotificationsSettings();
    return saved;
}

bool AdminEventsModule::runNotificationAction(QLatin1String verb, const QString &argument,
                                              const QVariant &value)
{
    KAuth::Action action = AccessService::makeAction(verb);
    action.addArgument(argument, value);
    if (m_configAccessService->execute(action)) {
        return true;
    }
    showError(i18n("KAuth returned an error code: %1", QString::number(m_configAccessService->errorCode()))
              + QLatin1Char('\n') + m_configAccessService->errorString());
    return false;
}

bool AdminEventsModule::writeEnabledNotificationsConfigs()
{
    const QMap<QString, QString> texts = m_notifications.toWrite(*m_workingModel->rootItem());
    if (texts.isEmpty()) {
        return true;
    }
    QVariantMap fragments;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        fragments.insert(it.key(), *it);
    }
    return runNotificationAction(ActionIds::writeNotificationConfigs, QStringLiteral("notifications"),
                                 fragments);
}

bool AdminEventsModule::removeDisabledNotificationsConfigs()
{
    const QStringList paths = m_notifications.toRemove(*m_workingModel->rootItem());
    return paths.isEmpty()
        || runNotificationAction(ActionIds::removeNotificationConfigs, QStringLiteral("paths"), paths);
}

QString AdminEventsModule::presentToUsers() const
{
    const QDir superusers(SystemPaths::resolve(SystemPaths::superuserConfiguration()));
    if (QFileInfo(NotificationsDictionary::ownFile(QString())).absoluteDir() == superusers) {
        return notificationsUpdated();
    }
    return i18n("How notifications are presented was set for your account only; other users keep what they "
                "have. The superuser's page sets it for everybody.");
}

QString AdminEventsModule::notificationsUpdated() const
{
    const QDir directory(SystemPaths::resolve(SystemPaths::superuserConfiguration()));
    const QStringList names
        = directory.entryList({QStringLiteral("nivra-event-watcher*.notifyrc")}, QDir::Files);
    bool copied = false;
    QStringList failed;
    for (const QString &name : names) {
        QFile source(directory.filePath(name));
        copied |= Core::Utils::makeNotifyrcForUsers(SystemPaths::resolve(SystemPaths::homeRoot()), source,
                                                    &failed);
    }
    if (copied
        && Gui::Utils::confirmAboutReboot(
            i18n("The notification settings will take effect only after the system is rebooted."))) {
        Core::Utils::rebootSystem();
    }
    failed.removeDuplicates();
    return failed.isEmpty() ? QString()
                            : i18n("The notification settings could not be given to these users: %1.",
                                   failed.join(QLatin1String(", ")));
}
