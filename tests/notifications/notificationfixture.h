// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QTemporaryDir>

#include <memory>

class EventTreeItem;
class QString;

/** A machine for notifications: a root directory with settings files, a home directory, and events. */
class NotificationFixture
{
public:
    NotificationFixture();

    /// Empties the machine and writes the settings files "first" and "second" anew.
    void reset();

    [[nodiscard]] QString root() const { return m_directory.path(); }
    [[nodiscard]] QString path(const char *logicalPath) const;
    /// The administrator's own settings file of that name.
    [[nodiscard]] QString ownFile(const char *name) const;
    [[nodiscard]] QString fragment(const char *name) const;

    static void write(const QString &path, const QByteArray &content);
    [[nodiscard]] static QByteArray read(const QString &path);

    /// An event "Failed login" of the type "auth" with the parameters "user" and "terminal".
    [[nodiscard]] static std::unique_ptr<EventTreeItem> makeEvent(const QString &messageId);
    static EventTreeItem *addChild(EventTreeItem *parent, const QString &name, const QString &value = {});
    static void addRepetition(EventTreeItem *event, const QString &enabled, const QString &interval);

private:
    QTemporaryDir m_directory;
};
