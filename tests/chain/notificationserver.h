// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

/** Stands for the desktop's notification service, and keeps what it was asked to show. */
class NotificationServer : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown
    {
        uint id = 0;
        QString title;
        QString text;
        QStringList actions;
        qint64 time = 0; ///< milliseconds since the epoch
    };

    explicit NotificationServer(QObject *parent = nullptr);

    QList<Shown> shown;
    QList<uint> closed; ///< by the program that showed them

    /** As the user does. */
    void dismiss(uint id);
    void invoke(uint id, const QString &action);

public Q_SLOTS: // the names are the interface's
    QStringList GetCapabilities() const;
    uint Notify(const QString &program, uint replaced, const QString &icon, const QString &title,
                const QString &text, const QStringList &actions, const QVariantMap &hints, int timeout);
    void CloseNotification(uint id);
    QString GetServerInformation(QString &vendor, QString &version, QString &specification) const;

Q_SIGNALS:
    void NotificationClosed(uint id, uint reason);
    void ActionInvoked(uint id, const QString &action);

private:
    uint m_lastId = 0;
};
