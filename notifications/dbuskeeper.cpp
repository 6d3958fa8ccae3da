// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "dbuskeeper.h"

#include "notificationname.h"

#include <systempaths.h>

#include <QDir>

DBusKeeper *DBusKeeper::Instance()
{
    static DBusKeeper keeper;
    return &keeper;
}

void DBusKeeper::init()
{
    m_identifiers.clear();
    m_canonical.clear();
    const QDir directory(SystemPaths::resolve(SystemPaths::fragmentDirectory()));
    const QStringList names = directory.entryList(QDir::Files | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (NotificationName::isFragmentFile(name)) {
            const QString identifier = NotificationName::fromFragmentFile(name);
            m_identifiers.insert(identifier);
            m_canonical.insert(NotificationName::canonical(identifier));
        }
    }
}

bool DBusKeeper::findEvent(const QString &messageId) const
{
    return m_canonical.contains(NotificationName::canonical(messageId));
}
