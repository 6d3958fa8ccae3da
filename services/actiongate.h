// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>

#include <deque>
#include <functional>

class KJob;

/**
 * Lets one privileged action of this process run at a time, in the order of asking.
 *
 * A helper that is asked while it carries out another action answers "busy", and the framework's client does
 * not heed that answer: it waits for ever. Saving while the logging service restarts would do that.
 */
class ActionGate : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static ActionGate &instance();

    /** Calls @p start when no action runs, at once if that is now. It must lead to watch() or leave(). */
    void enter(std::function<void()> start);

    /**
     * Waits in a nested event loop until no action runs.
     * @return false when the application ended first; otherwise watch() or leave() must follow.
     */
    [[nodiscard]] bool enterAndWait();

    /** The running action is that of @p job: the next one may start when it ends. */
    void watch(KJob *job);

    /** The running action is over. */
    void leave();

private:
    ActionGate() = default;

    std::deque<std::function<void()>> m_waiting;
    bool m_busy = false;
};
