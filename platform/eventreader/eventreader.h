// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <functional>

/**
 * Reads the events of the event catalog as the event settings file changes them, through the catalog library
 * (see nivraevents.h for both formats).
 */
class EventReader
{
public:
    /** Is told of each event in the catalog's order. */
    using Visitor = std::function<void(const QJsonObject &description)>;

    /** @param settingsFile the event settings file, whose changes are looked for. */
    explicit EventReader(const QString &settingsFile);

    /** Whether the settings file has changed since the last call; the first call says so in any case. */
    [[nodiscard]] bool hasChanged();

    /** Reads everything anew. @return false when the catalog cannot be read; nobody is told anything then. */
    [[nodiscard]] static bool read(const Visitor &visit);

    /** The description of a group, empty when there is none. Only to be asked by a visitor. */
    [[nodiscard]] static QJsonObject group(const QString &id);

private:
    QString m_settingsFile;
    QDateTime m_modified;
    qint64 m_size = -1;
    bool m_wasAsked = false;
};
