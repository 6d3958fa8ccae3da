// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

/**
 * The files of an event-settings directory as they lie on disk, without any
 * merging: two files of one event give two entries.
 */
struct CatalogFiles
{
    struct Event
    {
        QString id; ///< the file name up to its first "."
        QString folder;
        QJsonObject description;
    };

    QList<Event> events;
    QMap<QString, QJsonObject> groups;
    QStringList problems; ///< files that cannot be read or hold no JSON object, and stray files

    static CatalogFiles read(const QString &directory);

    [[nodiscard]] const Event *find(const QString &id) const;
    /// Appends one event of the group "samples", for catalogs made by hand.
    void add(const QString &id, const QJsonObject &description);
};

/// The object that is the whole content of @p path; an unusable file is named in @p problems.
QJsonObject readJsonObject(const QString &path, QStringList *problems);

/// The member names of @p value at any depth, those of objects in arrays too.
/// The accounts named below "users" and "groups" are subjects, not members.
QSet<QString> memberNames(const QJsonValue &value);

/// The parts of @p text between its commas, without surrounding blanks; none for an empty text.
QStringList listed(const QString &text);

/// The values of "extend-message-params".
QJsonObject extendedParameters(const CatalogFiles::Event &event);
