// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

namespace AdminEventsHelper {

/**
 * Holds the framework's answer signals back until the request that they answer is over.
 *
 * The framework's helper side tells the requester that an action is done, looks for events once more and only
 * then takes new requests. A requester that sends its next request at once can meet that moment: the request
 * is turned away as if the helper were busy, in a form that its own side of the framework does not notice,
 * and it waits for ever. Sent from the main loop, the signals cannot come too early.
 */
class AnswerOrder : public QObject
{
    Q_OBJECT

public:
    explicit AnswerOrder(QObject *parent = nullptr);

    /**
     * Takes the signals over; to be called once the framework has registered its object on the bus.
     * @return false when that object is not as expected; the framework then goes on by itself.
     */
    [[nodiscard]] bool takeOver();

private Q_SLOTS:
    void hold(int type, const QString &action, const QByteArray &blob);

private:
    struct Signal
    {
        int type;
        QString action;
        QByteArray blob;
    };

    void send();

    QList<Signal> m_held;
};

} // namespace AdminEventsHelper
