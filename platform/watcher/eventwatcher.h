// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "event.h"
#include "floodguard.h"
#include "notificationsettings.h"
#include "popups.h"
#include "repetitionsettings.h"
#include "soundplayer.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

namespace NivraWatcher {

/**
 * Presents the events that the logging service sends to this session, as the user's notification settings
 * say.
 *
 * It makes itself known on the system bus by a name below "org.nivra.EventWatcher" and takes the signal
 * "Event" of "org.nivra.EventLog" (interface of the same name, path "/org/nivra/EventLog"): notification key,
 * title, icon name, format, names and values. On the session bus, the signal "reparseConfiguration" of
 * "org.kde.knotification" (path "/Config", argument: base name of a settings file) has it read its settings
 * again.
 */
class EventWatcher : public QObject
{
    Q_OBJECT

public:
    /** @param settingsFile see RepetitionSettings. */
    explicit EventWatcher(const QString &settingsFile, QObject *parent = nullptr);
    ~EventWatcher() override;

    /** Connects to the buses. @return empty, or what went wrong. */
    [[nodiscard]] QString start(QDBusConnection system, QDBusConnection session);

public Q_SLOTS:
    /** The signal of the logging service; the arguments as described for the class. */
    void receive(const QString &key, const QString &title, const QString &icon, const QString &format,
                 const QStringList &names, const QStringList &values);
    void reparse(const QString &component);

private:
    class Repetition;

    void present(const Event &event);
    void beginRepetition(const Event &event, const Presentation &presentation, int seconds);
    void repeat(const QString &key);
    /** Has a repetition follow the settings of now. @return false when they have ended it. */
    bool followSettings(const QString &key);
    void followSettings();
    void endRepetition(const QString &key);
    void play(const Presentation &presentation);

    NotificationSettings m_settings;
    RepetitionSettings m_repetition;
    SoundPlayer m_player;
    Popups m_popups;
    FloodGuard m_popupGuard;
    FloodGuard m_commandGuard;
    FloodGuard m_logGuard;
    QHash<QString, Repetition *> m_repetitions; ///< by notification key
    QTimer m_lookout; ///< while something is repeated, for changes of the settings
};

} // namespace NivraWatcher
