// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "nivraeventsreader.h"

#include <nivraevents.h>

#include <cstring>
#include <stdexcept>

namespace {
QJsonDocument parsed(const char *text)
{
    if (!text) {
        return {};
    }
    const auto size = static_cast<int>(std::strlen(text));
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(text, size));
    // A stray byte costs a letter, not the whole text: decoding replaces it.
    return document.isNull() ? QJsonDocument::fromJson(QString::fromUtf8(text, size).toUtf8()) : document;
}
} // namespace

NivraEventsReader::NivraEventsReader()
{
    if (nvev_init() < 0) {
        return;
    }
    initialised = true;
    catalogError = false;

    auto groups = nvev_get_group_ids();
    auto events = nvev_get_event_ids();
    groupIds.reserve(static_cast<int>(nvev_groups_count()));
    eventIds.reserve(static_cast<int>(nvev_events_count()));
    for (quint64 i = 0; i < nvev_groups_count(); ++i) {
        // A missing group is a broken library, not a broken catalog.
        if (!groups[i]) {
            nvev_free_string_array(groups);
            nvev_free_string_array(events);
            nvev_free();
            throw std::logic_error("the catalog library returned a null group identifier");
        }
        groupIds.append(QString::fromUtf8(groups[i]));
    }
    for (quint64 i = 0; i < nvev_events_count(); ++i) {
        if (!events[i]) {
            catalogError = true;
            break;
        }
        eventIds.append(QString::fromUtf8(events[i]));
    }
    nvev_free_string_array(groups);
    nvev_free_string_array(events);
}

NivraEventsReader::~NivraEventsReader()
{
    nvev_free();
}

QString NivraEventsReader::getGroupJson(const QString &id) const
{
    return QString::fromUtf8(nvev_get_group_json(id.toLocal8Bit().constData()));
}

QString NivraEventsReader::getEventJson(const QString &id) const
{
    return QString::fromUtf8(nvev_get_event_json(id.toLocal8Bit().constData()));
}

QString NivraEventsReader::getOverrideEventJson(const QString &id) const
{
    return QString::fromUtf8(nvev_get_override_event_json(id.toLocal8Bit().constData()));
}

QJsonDocument NivraEventsReader::eventDocument(const QString &id) const
{
    return parsed(nvev_get_event_json(id.toLocal8Bit().constData()));
}

QJsonDocument NivraEventsReader::overrideDocument(const QString &id) const
{
    return parsed(nvev_get_override_event_json(id.toLocal8Bit().constData()));
}
