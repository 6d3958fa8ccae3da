// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationserver.h"

#include <QDateTime>

namespace {
constexpr uint byUser = 2;
constexpr uint byProgram = 3;
} // namespace

NotificationServer::NotificationServer(QObject *parent)
    : QObject(parent)
{
}

void NotificationServer::dismiss(uint id)
{
    Q_EMIT NotificationClosed(id, byUser);
}

void NotificationServer::invoke(uint id, const QString &action)
{
    Q_EMIT ActionInvoked(id, action);
}

QStringList NotificationServer::GetCapabilities() const
{
    return {QStringLiteral("body"), QStringLiteral("body-markup"), QStringLiteral("actions"),
            QStringLiteral("persistence")};
}

uint NotificationServer::Notify(const QString &, uint replaced, const QString &, const QString &title,
                                const QString &text, const QStringList &actions, const QVariantMap &, int)
{
    const uint id = replaced != 0 ? replaced : ++m_lastId;
    shown.append({id, title, text, actions, QDateTime::currentMSecsSinceEpoch()});
    return id;
}

void NotificationServer::CloseNotification(uint id)
{
    closed.append(id);
    Q_EMIT NotificationClosed(id, byProgram);
}

QString NotificationServer::GetServerInformation(QString &vendor, QString &version,
                                                 QString &specification) const
{
    vendor = QStringLiteral("test");
    version = QStringLiteral("1");
    specification = QStringLiteral("1.2");
    return QStringLiteral("test");
}
