// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

namespace NivraWatcher {

/**
 * How often the notification of an event is repeated: the member "notification_repetition" ("enabled",
 * "interval" in seconds) of the event's description in the event catalog, and over it that of the event
 * settings file. Both are read through the catalog library, again whenever the event settings file has
 * changed.
 */
class RepetitionSettings
{
public:
    /** The shortest and the longest interval, in seconds; others are brought to the nearest of these. */
    static constexpr int shortest = 5;
    static constexpr int longest = 3600;

    /** @param settingsFile the event settings file, whose changes are looked for. */
    explicit RepetitionSettings(const QString &settingsFile);

    /** Seconds from one notification to the next, 0 for no repetition. */
    [[nodiscard]] int interval(const QString &key);

private:
    void load();

    QString m_settingsFile;
    QDateTime m_modified;
    qint64 m_size = -1;
    bool m_loaded = false;
    QHash<QString, int> m_intervals; ///< by notification key
};

} // namespace NivraWatcher
