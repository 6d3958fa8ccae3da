// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "nodedictionary.h"

#include <regularfile.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace {
bool isTrue(const QJsonObject &entry, QLatin1String key)
{
    return entry.value(key).toString() == QLatin1String("true");
}
} // namespace

NodeDictionary NodeDictionary::fromFile(const QString &path)
{
    return fromJson(readRegularFile(path).bytes);
}

NodeDictionary NodeDictionary::fromJson(const QByteArray &json)
{
    NodeDictionary dictionary;
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    dictionary.m_entries.reserve(object.size());
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it->isObject()) {
            continue;
        }
        const QJsonObject source = it->toObject();
        Entry entry;
        entry.visible = source.value(QLatin1String("visible")).toString() != QLatin1String("false");
        entry.editable = isTrue(source, QLatin1String("editable"));
        entry.childrenEditable = isTrue(source, QLatin1String("children_editable"));
        entry.russianName = source.value(QLatin1String("ru")).toString();
        entry.isNumber = source.value(QLatin1String("type")).toString() == QLatin1String("number");
        if (entry.isNumber) {
            bool hasMinimum = false;
            bool hasMaximum = false;
            entry.minimum = source.value(QLatin1String("min")).toString().toLongLong(&hasMinimum);
            entry.maximum = source.value(QLatin1String("max")).toString().toLongLong(&hasMaximum);
            entry.hasRange = hasMinimum && hasMaximum;
        }
        dictionary.m_entries.insert(it.key(), entry);
    }
    return dictionary;
}

const NodeDictionary::Entry *NodeDictionary::find(const QString &name) const
{
    const auto found = m_entries.constFind(name);
    return found == m_entries.constEnd() ? nullptr : &*found;
}
