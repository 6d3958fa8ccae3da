// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QPair>
#include <QString>

#include <future>
#include <optional>

/**
 * The files of the event-settings directory, read once: one JSON object per
 * event in sub-directories, keyed by the file's base name (up to the first ".").
 * Files that cannot be read are skipped, malformed ones count as empty objects.
 * The constructor begins to read in a thread of its own, since nothing is looked
 * up at the start of the page; a look-up, and the destructor, wait until it is done.
 */
class EventConfigStorage
{
public:
    /// @param directory the directory whose sub-directories hold the files
    explicit EventConfigStorage(const QString &directory);

    /// The object of an event, nothing when the identifier is unknown.
    [[nodiscard]] std::optional<QJsonObject> getOne(const QString &id) const;
    /// The message identifier and the event's name in the user's language, nothing when the event is unknown.
    [[nodiscard]] std::optional<QPair<QString, QString>> getMessageParams(const QString &id) const;

private:
    std::shared_future<QHash<QString, QJsonObject>> m_events;
};
