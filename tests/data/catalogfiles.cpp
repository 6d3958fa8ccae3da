// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {
QString idOf(const QString &fileName)
{
    return fileName.section(QLatin1Char('.'), 0, 0);
}

void collectNames(const QJsonValue &value, bool subjects, QSet<QString> &names)
{
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const QJsonValue &element : array) {
            collectNames(element, false, names);
        }
    }
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!subjects) {
            names.insert(it.key());
        }
        const bool accounts = it.key() == QLatin1String("users") || it.key() == QLatin1String("groups");
        collectNames(*it, accounts && !subjects, names);
    }
}
} // namespace

QJsonObject readJsonObject(const QString &path, QStringList *problems)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problems->append(path + QLatin1String(": ") + file.errorString());
        return {};
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        problems->append(path + QLatin1String(": ") + error.errorString());
    } else if (!document.isObject() || document.object().isEmpty()) {
        problems->append(path + QLatin1String(": not an object with members"));
    }
    return document.object();
}

CatalogFiles CatalogFiles::read(const QString &directory)
{
    CatalogFiles catalog;
    const QDir top(directory);
    if (!top.exists()) {
        catalog.problems.append(directory + QLatin1String(": no such directory"));
    }
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QFileInfoList entries = top.entryInfoList(everything, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (!entry.isDir()) {
            if (entry.suffix() != QLatin1String("json")) {
                catalog.problems.append(entry.filePath() + QLatin1String(": not a group file"));
            }
            catalog.groups.insert(idOf(entry.fileName()),
                                  readJsonObject(entry.filePath(), &catalog.problems));
            continue;
        }
        const QFileInfoList files = QDir(entry.filePath()).entryInfoList(everything, QDir::Name);
        for (const QFileInfo &file : files) {
            const QString id = idOf(file.fileName());
            if (!file.isFile() || file.fileName() != id + QLatin1String(".json")) {
                catalog.problems.append(file.filePath() + QLatin1String(": not an event file"));
            }
            catalog.events.append({id, entry.fileName(), readJsonObject(file.filePath(), &catalog.problems)});
        }
    }
    return catalog;
}

const CatalogFiles::Event *CatalogFiles::find(const QString &id) const
{
    for (const Event &event : events) {
        if (event.id == id) {
            return &event;
        }
    }
    return nullptr;
}

void CatalogFiles::add(const QString &id, const QJsonObject &description)
{
    events.append({id, QStringLiteral("samples"), description});
}

QSet<QString> memberNames(const QJsonValue &value)
{
    QSet<QString> names;
    collectNames(value, false, names);
    return names;
}

QStringList listed(const QString &text)
{
    QStringList parts;
    const QStringList pieces = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &piece : pieces) {
        parts.append(piece.trimmed());
    }
    return parts;
}

QJsonObject extendedParameters(const CatalogFiles::Event &event)
{
    return event.description.value(QLatin1String("extend-message-params")).toObject();
}
