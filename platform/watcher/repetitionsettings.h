// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <eventreader.h>

#include <QHash>
#include <QString>

namespace NivraWatcher {

/**
 * How often the notification of an event is repeated: the member "notification_repetition" ("enabled",
 * "interval" in seconds) of the event's description in the event catalog, and over it that of the event
 * settings file. Both are read through the catalog library, again whenever the event settings file has
 * changed.
 *
 * An event whose notification is switched off is not repeated: beside the event settings file, the directory
 * "syslog-ng/conf.d" then has no file of the event, which is named "mod-nivra-" and the message identifier,
 * with "_" for each "-". Where the user may not look into that directory, the settings alone decide.
 */
class RepetitionSettings
{
public:
    /** The shortest and the longest interval, in seconds; others are brought to the nearest of these. */
    static constexpr int shortest = 5;
    static constexpr int longest = 3600;

    /** @param settingsFile the event settings file, whose changes are looked for. */
    explicit RepetitionSettings(const QString &settingsFile);

    /** Seconds from one notification to the next, 0 for no repetition (any more). */
    [[nodiscard]] int interval(const QString &key);

private:
    struct Repetition
    {
        int interval = 0; ///< seconds
        QString fragment; ///< path of the event's file for the logging service
    };

    void load();
    [[nodiscard]] bool isSwitchedOff(const Repetition &repetition) const;

    EventReader m_reader;
    QString m_fragments; ///< the directory of the files for the logging service
    QHash<QString, Repetition> m_repetitions; ///< by notification key
};

} // namespace NivraWatcher
