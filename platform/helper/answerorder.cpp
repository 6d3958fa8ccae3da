// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "answerorder.h"

#include <QAbstractEventDispatcher>
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>

namespace AdminEventsHelper {

namespace {

QString objectPath()
{
    return QStringLiteral("/");
}

} // namespace

AnswerOrder::AnswerOrder(QObject *parent)
    : QObject(parent)
{
}

bool AnswerOrder::takeOver()
{
    QObject *const proxy = QDBusConnection::systemBus().objectRegisteredAt(objectPath());
    auto *const adaptor = proxy == nullptr ? nullptr : proxy->findChild<QDBusAbstractAdaptor *>();
    // By name, since the framework does not publish the class.
    const char *const remoteSignal = SIGNAL(remoteSignal(int, QString, QByteArray));
    if (adaptor == nullptr || !connect(proxy, remoteSignal, this, SLOT(hold(int, QString, QByteArray)))) {
        return false;
    }
    if (!disconnect(proxy, remoteSignal, adaptor, nullptr)) {
        disconnect(proxy, remoteSignal, this, nullptr);
        return false;
    }
    // The main loop waits for its next event only after the request has been left.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { send(); });
    return true;
}

void AnswerOrder::hold(int type, const QString &action, const QByteArray &blob)
{
    m_held.append({type, action, blob});
}

void AnswerOrder::send()
{
    const QList<Signal> held = std::exchange(m_held, {});
    for (const Signal &signal : held) {
        QDBusMessage message = QDBusMessage::createSignal(objectPath(), QStringLiteral("org.kde.kf5auth"),
                                                          QStringLiteral("remoteSignal"));
        message << signal.type << signal.action << signal.blob;
        QDBusConnection::systemBus().send(message);
    }
}

} // namespace AdminEventsHelper
