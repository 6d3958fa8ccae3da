// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notificationsdialogtype.h"

#include <QDialog>
#include <QMap>
#include <QStringList>
#include <QVector>

#include <memory>

class CheckBoxParam;
class ConfigAccessService;
class EventTreeItem;
class KMessageWidget;
class LoggingService;
class QLineEdit;
class SoundPreview;
class Ui_DBusDialog;

/**
 * The dialog in which the administrator says how one event is delivered to desktop users: to whom, with which
 * title and parameters, by which methods, and whether it repeats. One dialog serves all events.
 *
 * Accepted, it writes the methods into the administrator's own notification settings file and announces the
 * event's fragment of the logging configuration; the repetition goes into the event's node as it is changed.
 */
class DBusDialog : public QDialog
{
    Q_OBJECT

public:
    DBusDialog(ConfigAccessService &configAccess, LoggingService &loggingService, QWidget *parent);
    ~DBusDialog() override;

    void setDialogType(NotificationsDialogType type) { m_dialogType = type; }
    /// Forgets the start values of the notification shown before.
    void clearParams();
    /**
     * Loads the start values of an existing notification; called before setEvent().
     * @param notifyrcPath the settings file that says how it is presented; one that cannot be read leaves
     *                     the methods as they were
     * @param destinationLines the lines of the event's fragment
     */
    void setParams(const QString &notifyKey, const QString &notifyrcPath,
                   const QStringList &destinationLines);
    /**
     * Fills the dialog for an event of the page's tree, which must outlive the dialog's use of it; null
     * detaches the dialog.
     * @return false when no settings file defines the event's notification: the user has been told, nothing
     *         was changed, and the dialog must not be shown
     */
    bool setEvent(EventTreeItem *event);
    [[nodiscard]] EventTreeItem *event() const { return m_event; }
    [[nodiscard]] NotificationsDialogType dialogType() const { return m_dialogType; }

    /// True when every widget still shows its start value.
    [[nodiscard]] bool checkStartParams() const;
    void setOkButtonState() const;
    /// Why the values shown cannot be stored, translated; empty when they can.
    [[nodiscard]] QString problem() const;

    /// The values of one option line of the fragment; see FragmentOptions::values().
    [[nodiscard]] QStringList prepareParam(const QString &line) const;
    /// The event's group of the settings file, each line with its line break.
    [[nodiscard]] QStringList createEventContent() const;
    /// Rewrites the event's group in the administrator's own settings file; an error text, empty when it is
    /// written.
    [[nodiscard]] QString writeTypeConfig() const;

public Q_SLOTS:
    /// Refuses values that could not be read back; the dialog then stays and says why.
    void accept() override;
    /// Makes the fragment and writes the methods.
    void generateConfig();

    void enableSoundElements() const;
    void enableLogFileElements() const;
    void enableExecuteElements() const;
    void playButtonClicked();
    void soundDialogButtonClicked();
    void logFileDialogButtonClicked();
    void executeDialogButtonClicked();
    void handleRepeatCheckBox(int state) const;
    void setRepeatInterval(int seconds);

Q_SIGNALS:
    /// The notification was accepted. @param lines its fragment, without line breaks
    void configGenerated(const QString &messageId, const QStringList &lines);
    /// The event's repetition was changed in its node.
    void repetitionChanged(EventTreeItem *event) const;

private:
    void setTexts();
    void setIcons();
    void connectWidgets();
    [[nodiscard]] bool takeKey(const EventTreeItem &event);
    void fillParameters();
    void fillMethods();
    void connectChanges();
    void setupNotificationRepetition();
    [[nodiscard]] EventTreeItem *repetitionValue(const QString &name) const;
    void writeRepetition(const QString &name, const QString &value) const;
    [[nodiscard]] int recipientsChoice() const;
    [[nodiscard]] QStringList checkedParameters() const;
    [[nodiscard]] QStringList checkedActions() const;
    void chooseFile(QLineEdit *edit, const QString &caption, const QString &directory, const QString &filter);
    void showProblem() const;
    bool createPlayer();
    void say(const QString &text, bool isError) const;
    [[nodiscard]] QStringList cutFields() const;

    std::unique_ptr<Ui_DBusDialog> m_ui;
    EventTreeItem *m_event = nullptr;
    std::unique_ptr<SoundPreview> m_player; // absent until something is played
    KMessageWidget *m_message;
    NotificationsDialogType m_dialogType = NotificationsDialogType::New;
    ConfigAccessService &m_configAccess;
    LoggingService &m_loggingService;
    QMap<QString, QString> m_params; // native names by shown name
    QVector<CheckBoxParam *> m_paramBoxes;
    QVector<QMetaObject::Connection> m_changeConnections; // of the present event

    // The start values, against which the OK button is enabled.
    QString m_title;
    QStringList m_selectedParams;
    int m_recipients = 0;
    QString m_notifyKey;
    QString m_notifyrcPath;
    QString m_actions; // joined by "|"
    QString m_executeCommand;
    QString m_logFile; // without "file://"
    QString m_soundFile;
    QString m_tts; // carried through
    QStringList m_cutKeys; // whose stored value is another one than is shown
    bool m_repeatEnabled = false;
    int m_repeatInterval = 0; // seconds
};
