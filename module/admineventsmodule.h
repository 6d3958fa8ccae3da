// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "nodeaddress.h"

#include <guardkcmodule.h>
#include <nodedictionary.h>
#include <notificationsdialogtype.h>
#include <notificationstore.h>
#include <settingsfile.h>

#include <KMessageWidget>

#include <functional>
#include <memory>
#include <optional>

class AuditDialog;
class AuditKeeper;
class AuditService;
class CheckableTreeModel;
class CommonSettingsWindow;
class ConfigAccessService;
class ConfigWatcher;
class DBusDialog;
class DiskSpaceMonDialog;
class EventConfigStorage;
class EventExample;
class EventFinder;
class EventTreeItem;
class EventsProxyModel;
class FilesDialog;
class LoggingService;
class LongWork;
class QDialog;
class QMenu;
class QModelIndex;
class QPoint;
class ServiceStatusReader;
class SingleEventsParser;
class Ui_AdminEventsModule;

/**
 * The settings page: the tree of security events with their parameters, and
 * the state of the logging service. It reads the configuration itself and has
 * every change written by the privileged helper.
 */
class AdminEventsModule : public KCMGS::GuardKCModule
{
    Q_OBJECT

public:
    /// @param args with more than two entries the first two name the event that a log viewer wants to see
    AdminEventsModule(QWidget *parent, const QList<QVariant> &args);
    ~AdminEventsModule() override;

    /// Loads the configuration and starts to watch it.
    void access() override;
    /// Saves, then loads what was saved. When something could not be written, the edits stay, unsaved.
    void change() override;

    /// Reads the whole configuration into both models.
    void load_p();
    /// Writes the whole configuration; false when something was not written (the user has been told).
    [[nodiscard]] bool save_p();
    /**
     * Gives each model a tree of its own.
     * @param pause called between the steps of it; when the page ends in it, the rest is left out
     * @param turn called when the events are in the view, and what follows may wait for the system
     */
    void loadEvents(
        const SingleEventsParser &parser, const std::function<void()> &pause = [] {},
        const std::function<void()> &turn = [] {});

    void startWatchConfigs();
    void stopWatchConfigs();
    /// Reloads the page after somebody else changed the configuration; unsaved edits are dropped.
    void configsChanged(const QString &path);

    /// True when the page holds no unsaved change; marks changed nodes up to the first group that differs.
    [[nodiscard]] bool compareModels() const;
    bool compareIndexes(const QModelIndex &reference, const QModelIndex &working) const;

    /// The message identifier of the event that the selected row belongs to; empty when there is none.
    [[nodiscard]] QString getSelectedMessageId() const;

    /// What the log viewer named, empty unless the page was started for one event.
    [[nodiscard]] const QString &firstViewerArgument() const { return m_firstViewerArgument; }
    [[nodiscard]] const QString &secondViewerArgument() const { return m_secondViewerArgument; }

    [[nodiscard]] CheckableTreeModel *workingModel() const { return m_workingModel; }
    [[nodiscard]] CheckableTreeModel *referenceModel() const { return m_referenceModel; }

public Q_SLOTS:
    /// Works out anew whether the page holds unsaved changes.
    void dataChanged();
    /// Selects what was clicked, or reached by an arrow key: the cell and its row's value.
    void editSelection(const QModelIndex &index);
    /// Opens the dialog of a value that is edited in one.
    void editEvent(const QModelIndex &index);
    /// @param position in the view's viewport
    void contextMenuRequested(const QPoint &position);
    /**
     * Switches an event's notifications. Switched on, they are set up in the dialog at once; cancelling it
     * switches them off again. Nothing is written before the page is applied.
     */
    void switchDbus(EventTreeItem *item, bool on);
    /// Opens the notification dialog for an event whose notifications are on.
    void notificationSettings(EventTreeItem *item);
    /// Gives an event of the working model its catalog values back.
    void resetEvent(EventTreeItem *item);
    /// Stores the list of files or directories that its dialog was opened for.
    void fileArrayAccepted(const QVariant &value);
    /// Takes over what the audit dialog was accepted with.
    void auditSettingsAccepted(const QList<QVariant> &result);
    /// Stores the directories with limits that their dialog was opened for.
    void directoriesAccepted(const QList<QVariant> &data);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    // Building the page
    void createToolButtons();
    void createView();
    void createSearch();
    void createMessageBar();
    /// Shows a text in the page's message bar, in the place of what it said before.
    void showMessage(KMessageWidget::MessageType type, const QString &text);
    /// As showMessage(), above what the bar says already.
    void addMessage(KMessageWidget::MessageType type, const QString &text);
    void expandSeView() const;

    // Dialogs: made when the page has been shown, one after the other, or when they are first needed
    void createNextDialog();
    [[nodiscard]] FilesDialog &filesDialog();
    [[nodiscard]] DiskSpaceMonDialog &diskSpaceDialog();
    [[nodiscard]] AuditDialog &auditDialog();
    [[nodiscard]] EventExample &example();
    [[nodiscard]] CommonSettingsWindow &commonSettings();
    [[nodiscard]] DBusDialog &dbusDialog();

    // Working with events
    [[nodiscard]] EventTreeItem *itemAt(const QModelIndex &proxyIndex) const;
    void addEventActions(QMenu *menu, EventTreeItem *event);

    /**
     * Brings up an open dialog with edits that are neither accepted nor cancelled, instead of filling it
     * anew.
     * @param showsNode whether it is the one of the node that was asked for; if not, the user is told
     * @return false when there are no such edits
     */
    bool keepEdits(QDialog &dialog, bool isEdited, bool showsNode);

    // Watched files, directories and disk space
    void editWatched(const QModelIndex &index);
    void showGone(const NodeAddress &address);

    // Audit settings of users and groups
    enum class AuditSave { Unchanged, Written, Failed };
    void editAudited(const QModelIndex &index);
    [[nodiscard]] bool getAuditSettings(const EventTreeItem &root);
    void synchronizeAuditSettings(EventTreeItem &root) const;
    void showAuditState();
    [[nodiscard]] bool checkAuditSettings();
    [[nodiscard]] AuditSave saveAuditSettings();
    [[nodiscard]] bool rebootsForAudit();

    // Notifications
    void addNotificationActions(QMenu *menu, const EventTreeItem &event);
    void setNotificationOn(const QString &eventId, const QString &notifyrcPath, const QStringList &lines,
                           NotificationsDialogType type);
    void setNotificationState(const EventTreeItem &item, int state);
    void notificationAccepted(const QString &messageId, const QStringList &lines);
    void notificationRejected();
    void detachNotificationDialog();
    /// Brings the notification dialog to the front when it shows this event; false when it does not.
    bool bringUpNotificationDialogOf(const EventTreeItem &event);
    [[nodiscard]] bool isNotificationDialogFree();
    void notificationSettingsFromViewer(const QString &second, const QString &first);
    void readNotificationsSettings();
    void settleNotifications();
    [[nodiscard]] bool saveNotifications();
    [[nodiscard]] bool writeEnabledNotificationsConfigs();
    [[nodiscard]] bool removeDisabledNotificationsConfigs();
    [[nodiscard]] bool runNotificationAction(QLatin1String verb, const QString &argument,
                                             const QVariant &value);
    /// Gives what was set up to those for whom it holds; what the user must know of it, or nothing.
    [[nodiscard]] QString presentToUsers() const;
    /// Gives all users the superuser's notification settings; names those who could not be given them.
    [[nodiscard]] QString notificationsUpdated() const;

    // Loading and saving
    [[nodiscard]] static SettingsFile presentSettings();
    /// The same between two turns of the event loop, in which the page may end: a large file takes its time.
    [[nodiscard]] static SettingsFile presentSettingsInPieces();
    [[nodiscard]] bool checkEventSettingsDirectory();
    void loadFiles(LongWork &work, const std::function<void()> &pause, const std::function<void()> &turn);
    void showTree(std::unique_ptr<EventTreeItem> tree);
    void showLoadedState(const SettingsFile &settings);
    void showSettingsFileState(const SettingsFile &settings);
    /// Whether a load would drop what was edited, on the page or in the notification dialog.
    [[nodiscard]] bool holdsEdits() const;
    void configurationImported();
    void finishTyping();
    [[nodiscard]] bool writeEventSettings(const SettingsFile &present);
    [[nodiscard]] bool mayReplace(const SettingsFile &present);
    void showError(const QString &text);

    // The logging service
    void switchSngStatus();
    void showSngStatus(bool auditdRuns, bool syslogNgRuns);
    void setSngAction(bool running) const;
    void startSyslogNg();
    void stopSyslogNg();

    std::unique_ptr<Ui_AdminEventsModule> m_ui;
    ConfigAccessService *m_configAccessService;
    LoggingService *m_loggingService;
    AuditService *m_auditService;
    ServiceStatusReader *m_statusReader;
    std::shared_ptr<AuditKeeper> m_auditKeeper;
    std::unique_ptr<EventConfigStorage> m_storage;
    NodeDictionary m_dictionary;
    CheckableTreeModel *m_referenceModel = nullptr; // as last loaded
    CheckableTreeModel *m_workingModel = nullptr; // as edited
    EventsProxyModel *m_proxy = nullptr;
    EventFinder *m_finder = nullptr;
    KMessageWidget *m_messageBar = nullptr;
    QString m_message; // the bar's last text
    FilesDialog *m_filesDialog = nullptr; // this and the other dialogs: absent until they are made
    DiskSpaceMonDialog *m_diskSpaceDialog = nullptr;
    AuditDialog *m_auditDialog = nullptr;
    EventExample *m_example = nullptr;
    CommonSettingsWindow *m_commonSettings = nullptr;
    DBusDialog *m_dbusDialog = nullptr;
    NotificationStore m_notifications; // fragments on disk, and those not written yet
    bool m_notificationsWritten = false; // and not yet given to the users
    QString m_savedNote; // to be shown once the page is loaded again
    ConfigWatcher *m_watcher = nullptr; // absent until the first startWatchConfigs()
    NodeAddress m_editedList; // what the files dialog edits
    NodeAddress m_editedDirectories;
    NodeAddress m_editedSubjects; // what the audit dialog edits
    QStringList m_users; // the system's, as last loaded
    QStringList m_groups;
    QByteArray m_loadedSettings; // hash of the settings file as loaded
    QString m_firstViewerArgument;
    QString m_secondViewerArgument;
    bool m_reloading = false;
    bool m_auditChanged = false; // since the last load, as of the last check
    bool m_valueRejected = false; // the message bar says why
    std::optional<bool> m_sngRunning; // as last shown
};
