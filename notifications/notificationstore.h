// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

class EventTreeItem;

/**
 * The notification fragments that the page knows: those on disk, and over them those set up since the last
 * load and not written yet. Identifiers may be given in any spelling (see NotificationName::canonical()).
 */
class NotificationStore
{
public:
    /// Reads the fragments on disk anew; what was set up and is not written stays.
    void readFromDisk();
    /// Forgets what was set up and is not written.
    void discard() { m_pending.clear(); }

    /// The fragment's lines, without line breaks; empty when there is none that can be read.
    [[nodiscard]] QStringList lines(const QString &messageId) const;
    /// Whether the event was set up and is not written yet.
    [[nodiscard]] bool isPending(const QString &messageId) const;
    [[nodiscard]] bool hasPending() const { return !m_pending.isEmpty(); }
    /// The identifier that the fragment on disk names itself; empty when it names none.
    [[nodiscard]] QString owner(const QString &messageId) const;

    /// Keeps what was set up until it is written.
    void keep(const QString &messageId, const QStringList &lines);
    void drop(const QString &messageId);

    /// What is to be written for the events of the tree whose notifications are on: texts by logical path.
    [[nodiscard]] QMap<QString, QString> toWrite(const EventTreeItem &root) const;
    /// The logical paths of the fragments on disk that belong to events whose notifications are off.
    [[nodiscard]] QStringList toRemove(const EventTreeItem &root) const;

private:
    QHash<QString, QStringList> m_onDisk; // lines
    QHash<QString, QStringList> m_fileNames;
    QHash<QString, QStringList> m_pending; // lines
};
