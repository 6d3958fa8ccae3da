// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationstore.h"

#include "eventmessage.h"
#include "notificationcheck.h"
#include "notificationname.h"

#include <eventlookup.h>
#include <eventtreeitem.h>
#include <regularfile.h>
#include <systempaths.h>

#include <QDir>
#include <QSet>

namespace {
const int prefixSize = QStringLiteral("mod-nivra-").size();
const int suffixSize = QStringLiteral(".conf").size();

QStringList linesOf(const QByteArray &content)
{
    QStringList lines = QString::fromUtf8(content).split(QLatin1Char('\n'));
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}
} // namespace

void NotificationStore::readFromDisk()
{
    m_onDisk.clear();
    m_fileNames.clear();
    const QDir directory(SystemPaths::resolve(SystemPaths::fragmentDirectory()));
    const QStringList names = directory.entryList({QStringLiteral("mod-nivra-*")}, QDir::Files);
    for (const QString &name : names) {
        if (!NotificationName::isFragmentFile(name)) {
            continue;
        }
        const QString id = NotificationName::fromFragmentFile(name);
        const QString canonical = NotificationName::canonical(id);
        const RegularFile file = readRegularFile(directory.filePath(name));
        if (file.state == RegularFile::Read) {
            m_onDisk.insert(canonical, linesOf(file.bytes));
        }
        m_fileNames[canonical] << name;
    }
}

QStringList NotificationStore::lines(const QString &messageId) const
{
    const QString canonical = NotificationName::canonical(messageId);
    return m_pending.value(canonical, m_onDisk.value(canonical));
}

bool NotificationStore::isPending(const QString &messageId) const
{
    return m_pending.contains(NotificationName::canonical(messageId));
}

QString NotificationStore::owner(const QString &messageId) const
{
    const QStringList lines = m_onDisk.value(NotificationName::canonical(messageId));
    const QString before = QStringLiteral("persist-name(\"");
    for (const QString &line : lines) {
        const QString option = line.trimmed();
        if (option.startsWith(before) && option.endsWith(QLatin1String("\")"))) {
            return option.mid(before.size()).chopped(2);
        }
    }
    return {};
}

void NotificationStore::keep(const QString &messageId, const QStringList &lines)
{
    m_pending.insert(NotificationName::canonical(messageId), lines);
}

void NotificationStore::drop(const QString &messageId)
{
    m_pending.remove(NotificationName::canonical(messageId));
}

QMap<QString, QString> NotificationStore::toWrite(const EventTreeItem &root) const
{
    QMap<QString, QString> texts;
    const QVector<EventTreeItem *> events = EventLookup::events(root);
    for (const EventTreeItem *event : events) {
        const QString id = EventMessage::id(*event);
        if (!id.isEmpty() && event->isNotificationOn() && isPending(id)) {
            const QStringList lines = m_pending.value(NotificationName::canonical(id));
            texts.insert(NotificationName::fragmentPath(id),
                         lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
        }
    }
    return texts;
}

QStringList NotificationStore::toRemove(const EventTreeItem &root) const
{
    QSet<QString> off;
    QSet<QString> on;
    const QVector<EventTreeItem *> events = EventLookup::events(root);
    for (const EventTreeItem *event : events) {
        const QString id = NotificationName::canonical(EventMessage::id(*event));
        (event->isNotificationOn() ? on : off).insert(id);
    }
    QStringList paths;
    for (const QString &id : off.subtract(on)) {
        const QStringList names = m_fileNames.value(id);
        for (const QString &name : names) {
            // Another spelling of the name is nothing that this page has written.
            if (NotificationCheck::isWord(name.mid(prefixSize).chopped(suffixSize))) {
                paths << SystemPaths::fragmentDirectory() + QLatin1Char('/') + name;
            }
        }
    }
    paths.sort();
    return paths;
}
