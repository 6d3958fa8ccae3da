// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "overridemerge.h"

#include <QJsonObject>
#include <QSemaphore>
#include <QString>
#include <QStringList>

#include <array>
#include <atomic>
#include <future>

class NivraEventsReader;

/** What an event's node is made from. */
struct EventDescription
{
    QJsonObject object; ///< empty when there is no usable description
    QString group; ///< the identifier of the event's group as the catalog has it, whatever is saved
    OverlayMarks marks; ///< what in the object came from the saved settings

    [[nodiscard]] static EventDescription fromCatalog(const NivraEventsReader &reader, const QString &id);
    /// The catalog's description with the saved settings.
    [[nodiscard]] static EventDescription merged(const NivraEventsReader &reader, const QString &id);
};

/**
 * The merged descriptions of events, one after the other. Parsing and merging take about as long as making
 * nodes, so they are done in a thread of their own, some events ahead of the one who asks for them.
 */
class MergedDescriptions
{
public:
    /// Begins to parse. @param reader must outlive this
    MergedDescriptions(const NivraEventsReader &reader, const QStringList &ids);
    /// Ends the thread, whether all was asked for or not.
    ~MergedDescriptions();
    MergedDescriptions(const MergedDescriptions &) = delete;
    MergedDescriptions &operator=(const MergedDescriptions &) = delete;

    /// The description of the next event, until the next call; to be called once an identifier.
    [[nodiscard]] const EventDescription &next();

private:
    void parse(const NivraEventsReader &reader, const QStringList &ids);

    static constexpr int ahead = 32; // events; what is parsed takes memory
    std::array<EventDescription, ahead> m_ring;
    int m_handedOut = 0;
    QSemaphore m_room{ahead};
    QSemaphore m_ready;
    std::atomic<bool> m_ended = false;
    std::future<void> m_thread;
};
