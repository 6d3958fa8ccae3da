// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QString>

/**
 * How parameter nodes are shown and edited, by node name. Read from the JSON
 * file "/etc/zep-admin-events/eventsdictionary.json": one object per name with
 * the members "visible", "editable", "children_editable" ("true" or "false"),
 * "ru" (the Russian name) and, for values that are numbers, "type": "number"
 * with "min" and "max" in decimal.
 */
class NodeDictionary
{
public:
    struct Entry
    {
        bool visible = true;
        bool editable = false;
        bool childrenEditable = false;
        bool isNumber = false;
        qint64 minimum = 0;
        qint64 maximum = 0;
        bool hasRange = false;
        QString russianName;
    };

    /// An unreadable or malformed file gives an empty dictionary.
    static NodeDictionary fromFile(const QString &path);
    static NodeDictionary fromJson(const QByteArray &json);

    /// The entry of @p name, null when there is none. Valid as long as the dictionary.
    [[nodiscard]] const Entry *find(const QString &name) const;

private:
    QHash<QString, Entry> m_entries;
};
