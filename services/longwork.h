// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QElapsedTimer>

/**
 * Work that may take longer on the GUI thread than a user should wait without a sign: as long as it lives,
 * the mouse cursor shows that the program is busy, and pause() lets the windows be painted meanwhile.
 *
 * To be ended before a message box opens.
 */
class LongWork
{
public:
    LongWork();
    ~LongWork();
    LongWork(const LongWork &) = delete;
    LongWork &operator=(const LongWork &) = delete;

    /**
     * To be called between small pieces of the work. When the last turn of the event loop is some time ago,
     * it lets the loop turn. What the user does meanwhile is kept until the work is done; timers, paintings
     * and notifications are delivered: whoever works on shared data guards them.
     */
    void pause();

    /**
     * As pause(), but lets the loop turn in any case: before a long piece of work, since nobody knows how
     * long the loop stands still already, and behind it, since nobody knows what follows.
     */
    void turn();

    /**
     * The first piece may take @p milliseconds. For work at whose end a window is first shown with content: a
     * turn before would only paint it empty, which takes as long as a small piece of work.
     */
    void setFirstPiece(int milliseconds) { m_longestPiece = milliseconds; }

    /// Ends it early.
    void end();

    /// Below how many milliseconds of work pause() does nothing; 20 at first.
    static void setLongestPiece(int milliseconds) { s_longestPiece = milliseconds; }

private:
    inline static int s_longestPiece = 20; // ms
    int m_longestPiece = s_longestPiece; // ms
    QElapsedTimer m_sinceTurn;
    bool m_ended = false;
};
