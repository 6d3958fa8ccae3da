// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QTimer>

/**
 * Watches the event loop of its thread by a timer that is due at every turn: the longest time between two
 * ticks is the longest that a click, a key or a painting had to wait.
 */
class LoopWatch : public QObject
{
    Q_OBJECT

public:
    /// The longest gap between two ticks, in milliseconds.
    struct Gap
    {
        double wall = 0; ///< as a clock on the wall shows it
        double processor = 0; ///< what the thread itself worked in a gap; other programs do not count
    };

    LoopWatch();

    /// Forgets the gaps seen so far.
    void restart();
    [[nodiscard]] Gap longestGap() const { return m_longest; }
    /// Whether a tick has seen the mouse cursor of a busy program.
    [[nodiscard]] bool sawBusySign() const { return m_busySign; }

private:
    void tick();

    QTimer m_timer;
    qint64 m_wall = 0; // ns, of the last tick
    qint64 m_processor = 0;
    Gap m_longest;
    bool m_busySign = false;
};
