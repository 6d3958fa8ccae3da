// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "mergeddescriptions.h"

#include "nivraeventsreader.h"

#include <QJsonDocument>

#include <utility>

EventDescription EventDescription::fromCatalog(const NivraEventsReader &reader, const QString &id)
{
    EventDescription description;
    description.object = reader.eventDocument(id).object();
    description.group = description.object.value(QLatin1String("event-group")).toString();
    return description;
}

EventDescription EventDescription::merged(const NivraEventsReader &reader, const QString &id)
{
    EventDescription description = fromCatalog(reader, id);
    if (description.object.isEmpty()) {
        return description;
    }
    const QJsonDocument override = reader.overrideDocument(id);
    if (override.isObject()) {
        description.object = mergeNodes(std::move(description.object), override.object(), description.marks);
    }
    return description;
}

MergedDescriptions::MergedDescriptions(const NivraEventsReader &reader, const QStringList &ids)
    : m_thread(std::async(std::launch::async, [this, &reader, ids] { parse(reader, ids); }))
{
}

MergedDescriptions::~MergedDescriptions()
{
    m_ended = true;
    m_room.release();
    m_thread.wait();
}

void MergedDescriptions::parse(const NivraEventsReader &reader, const QStringList &ids)
{
    for (int i = 0; i < ids.size(); ++i) {
        m_room.acquire();
        if (m_ended) {
            return;
        }
        m_ring[static_cast<std::size_t>(i % ahead)] = EventDescription::merged(reader, ids.at(i));
        m_ready.release();
    }
}

const EventDescription &MergedDescriptions::next()
{
    // The thread overwrites the one before, and so spares this one its end.
    if (m_handedOut > 0) {
        m_room.release();
    }
    m_ready.acquire();
    return m_ring[static_cast<std::size_t>(m_handedOut++ % ahead)];
}
