// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMap>
#include <QString>

/**
 * Knows which notification settings file defines which notification, from the system's directory of such
 * files (".notifyrc", see KNotification). One per process.
 */
class NotificationsDictionary
{
public:
    /// Created and filled on first use.
    [[nodiscard]] static NotificationsDictionary *Instance();

    /// Reads the directory anew: its files "*nivra-event-watcher_*.notifyrc", by name.
    void init();

    /// The file that defines the notification, its name without ".notifyrc"; empty when none does.
    [[nodiscard]] QString fileName(const QString &notificationKey) const;
    /// The notification's Russian name; empty when it has none.
    [[nodiscard]] QString displayName(const QString &notificationKey) const;
    /// The file's place in the system's directory.
    [[nodiscard]] static QString systemFile(const QString &fileName);
    /// The file's place in the configuration of the user who runs this process; it need not exist.
    [[nodiscard]] static QString ownFile(const QString &fileName);

private:
    NotificationsDictionary() { init(); }
    void readFile(const QString &fileName);

    QMap<QString, QString> m_files;
    QMap<QString, QString> m_names;
};
