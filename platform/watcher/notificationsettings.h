// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QList>
#include <QSharedPointer>
#include <QString>

#include <optional>

class KConfig;

namespace NivraWatcher {

/** How an event is presented. */
struct Presentation
{
    QString name; ///< the event's display name in the user's language
    bool popup = false;
    bool sound = false;
    bool log = false;
    bool execute = false;
    QString soundFile; ///< a path, or the name of a file in one of the desktop's directories for sounds
    QString logFile; ///< a path
    QString command; ///< a program and its arguments, quoted as for a shell
};

/**
 * The settings in the files "nivra-event-watcher_*.notifyrc": in knotifications5/ below the data directories
 * the shipped ones, in the user's configuration directory what the user or the administrator set, and there
 * for all events at once "nivra-event-watcher.notifyrc". An entry of the user's own file comes first, then
 * one of the file for all, then the shipped one.
 *
 * A file holds one group "[Event/KEY]" per event with the entries Name, Action ("Popup", "Sound", "Logfile"
 * and "Execute", joined with "|"), Sound, Logfile (with or without "file://") and Execute.
 *
 * Files are read once, until reparse().
 */
class NotificationSettings
{
public:
    NotificationSettings();

    /** Nothing when no shipped or own file knows the event. */
    [[nodiscard]] std::optional<Presentation> find(const QString &key) const;

    /** Reads the files again. */
    void reparse();

private:
    using Files = QList<QSharedPointer<KConfig>>;
    [[nodiscard]] static Files filesIn(const QString &directory, const QString &pattern);

    Files m_files; ///< first those whose entries come first
};

} // namespace NivraWatcher
