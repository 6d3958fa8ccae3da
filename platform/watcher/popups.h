// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "event.h"

#include <QHash>
#include <QObject>
#include <QPointer>

class KNotification;

namespace NivraWatcher {

/** The popups that are shown, at most one that repeats of each event. */
class Popups : public QObject
{
    Q_OBJECT

public:
    explicit Popups(QObject *parent = nullptr);

    /** Shows an event in a popup that goes by itself. */
    void show(const Event &event);
    /** Shows an event, instead of the last time, in a popup that stays and offers to end the repetition. */
    void showAgain(const Event &event);
    /** Closes the repeated popup of that event, if there is one; this is no acknowledgement. */
    void takeDown(const QString &key);

Q_SIGNALS:
    /** The user has closed the repeated popup of that event, or asked for no more of them. */
    void acknowledged(const QString &key);

private:
    [[nodiscard]] static KNotification *make(const Event &event, bool stays);

    QHash<QString, QPointer<KNotification>> m_repeated;
};

} // namespace NivraWatcher
