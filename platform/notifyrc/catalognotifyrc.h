// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/**
 * The notification settings files (notifyrc, UTF-8) of an event catalog: one per group,
 * "nivra-event-watcher_GROUP", with a section "[Event/KEY]" for each event of the group that has a message
 * identifier.
 */
class CatalogNotifyrc
{
public:
    /** @param directory the catalog: a file GROUP.json per group, and its events' files in subdirectories. */
    explicit CatalogNotifyrc(const QString &directory);

    /** The files' contents by name. */
    [[nodiscard]] QMap<QString, QByteArray> files() const;
    /** What is wrong with the catalog; files() is of no use then. */
    [[nodiscard]] QStringList errors() const { return m_errors; }

private:
    struct Group
    {
        QJsonObject names; ///< "name_en", "name_ru"
        QMap<QString, QJsonObject> events; ///< names ("name_en", "name_ru") by notification key
    };

    [[nodiscard]] QJsonObject read(const QString &path);
    void addEvent(const QString &path);

    QMap<QString, Group> m_groups;
    QMap<QString, QString> m_keys; ///< the file that has each key
    QStringList m_errors;
};
