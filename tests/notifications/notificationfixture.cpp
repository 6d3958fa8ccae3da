// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <eventtreeitem.h>

#include <QDir>
#include <QFile>

NotificationFixture::NotificationFixture()
{
    qputenv("ADMINEVENTS_ROOT", QFile::encodeName(m_directory.path()));
    qputenv("HOME", QFile::encodeName(m_directory.filePath(QStringLiteral("root"))));
    reset();
}

void NotificationFixture::reset()
{
    for (const char *folder : {"/etc", "/usr", "/root", "/home"}) {
        QDir(path(folder)).removeRecursively();
    }
    for (const char *folder :
         {"/etc/syslog-ng/conf.d", "/usr/share/knotifications5", "/root/.config", "/home"}) {
        QDir().mkpath(path(folder));
    }
    write(path("/usr/share/knotifications5/nivra-event-watcher_first.notifyrc"),
          "[Global]\nName=First\n\n[Event/userLoginFailed]\nName=Failed login\nName[ru]=Неудачный вход\n"
          "Action=Popup\n\n[Event/aBC]\nName=A\nAction=Sound|Popup\nSound=/bell.ogg\n");
    write(path("/usr/share/knotifications5/nivra-event-watcher_second.notifyrc"),
          "[Event/plain]\nName=Plain\nAction=Popup\n[Event/rootLogin]\nName=Root\n");
}

QString NotificationFixture::path(const char *logicalPath) const
{
    return m_directory.path() + QLatin1String(logicalPath);
}

QString NotificationFixture::ownFile(const char *name) const
{
    return path("/root/.config/nivra-event-watcher_") + QLatin1String(name) + QLatin1String(".notifyrc");
}

QString NotificationFixture::fragment(const char *name) const
{
    return path("/etc/syslog-ng/conf.d/") + QLatin1String(name);
}

void NotificationFixture::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

QByteArray NotificationFixture::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QByteArray("") + file.readAll() : QByteArray();
}

EventTreeItem *NotificationFixture::addChild(EventTreeItem *parent, const QString &name, const QString &value)
{
    auto *item = new EventTreeItem({name, value, QString()}, parent);
    item->nativeName = name;
    item->kind = EventTreeItem::Parameter;
    parent->appendChild(item);
    return item;
}

std::unique_ptr<EventTreeItem> NotificationFixture::makeEvent(const QString &messageId)
{
    auto event = std::make_unique<EventTreeItem>(
        QVector<QVariant>{QStringLiteral("Failed login"), QString(), QString()});
    event->kind = EventTreeItem::Event;
    event->nativeName = QStringLiteral("login-failed");
    EventTreeItem *params = addChild(event.get(), QStringLiteral("message-params"));
    addChild(params, QStringLiteral("message_id"), messageId);
    EventTreeItem *more = addChild(event.get(), QStringLiteral("extend-message-params"));
    addChild(more, QStringLiteral("user"), QStringLiteral("${.auth.user}"));
    addChild(more, QStringLiteral("terminal"), QStringLiteral("${.auth.terminal}"));
    addChild(event.get(), QStringLiteral("message-type"), QStringLiteral("auth"));
    return event;
}

void NotificationFixture::addRepetition(EventTreeItem *event, const QString &enabled, const QString &interval)
{
    EventTreeItem *repetition = addChild(event, QStringLiteral("notification_repetition"));
    addChild(repetition, QStringLiteral("enabled"), enabled);
    addChild(repetition, QStringLiteral("interval"), interval);
}
