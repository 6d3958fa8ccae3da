// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonDocument>
#include <QStringList>

/**
 * The event catalog as the platform's catalog library hands it out. The
 * library is initialised once per reader and released with it.
 */
class NivraEventsReader
{
public:
    /// Initialises the library and copies its lists of identifiers.
    NivraEventsReader();
    ~NivraEventsReader();
    NivraEventsReader(const NivraEventsReader &) = delete;
    NivraEventsReader &operator=(const NivraEventsReader &) = delete;

    /// JSON text of a group's description, empty when the library knows none.
    [[nodiscard]] QString getGroupJson(const QString &id) const;
    /// JSON text of an event's description, empty when the library knows none.
    [[nodiscard]] QString getEventJson(const QString &id) const;
    /// JSON text of the administrator's saved settings of an event, empty when there are none.
    [[nodiscard]] QString getOverrideEventJson(const QString &id) const;
    /// The parsed texts, null where there is none or it is no JSON; parsed where they lie, without a copy.
    [[nodiscard]] QJsonDocument eventDocument(const QString &id) const;
    [[nodiscard]] QJsonDocument overrideDocument(const QString &id) const;

    QStringList eventIds; ///< in the library's order
    QStringList groupIds; ///< in the library's order
    bool initialised = false; ///< the library's initialisation succeeded
    /// The catalog cannot be used: initialisation failed, or an event identifier is missing (a duplicate).
    bool catalogError = true;
};
