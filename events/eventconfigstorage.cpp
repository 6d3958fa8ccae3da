// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventconfigstorage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLocale>

namespace {
QHash<QString, QJsonObject> readEvents(const QString &directory)
{
    QHash<QString, QJsonObject> events;
    // Unsorted: which of two files of one name wins is the file system's business.
    const QFileInfoList folders
        = QDir(directory).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo &folder : folders) {
        const QFileInfoList files = QDir(folder.filePath()).entryInfoList(QDir::Files, QDir::Unsorted);
        for (const QFileInfo &info : files) {
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly)) {
                events.insert(info.baseName(), QJsonDocument::fromJson(file.readAll()).object());
            }
        }
    }
    return events;
}
} // namespace

EventConfigStorage::EventConfigStorage(const QString &directory)
    : m_events(std::async(std::launch::async, readEvents, directory))
{
}

std::optional<QJsonObject> EventConfigStorage::getOne(const QString &id) const
{
    const QHash<QString, QJsonObject> &events = m_events.get();
    const auto found = events.constFind(id);
    if (found == events.constEnd()) {
        return std::nullopt;
    }
    return *found;
}

std::optional<QPair<QString, QString>> EventConfigStorage::getMessageParams(const QString &id) const
{
    const std::optional<QJsonObject> event = getOne(id);
    if (!event) {
        return std::nullopt;
    }
    const QJsonObject params = event->value(QLatin1String("message-params")).toObject();
    const bool russian = QLocale::system().language() == QLocale::Russian;
    const QLatin1String nameKey(russian ? "name_ru" : "name_en");
    return qMakePair(params.value(QLatin1String("message_id")).toString(), params.value(nameKey).toString());
}
