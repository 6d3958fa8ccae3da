// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>

#include <deque>
#include <functional>

class KJob;

/**
 * Lets one privileged action of this process run at a time.
 *
 * A helper that is asked while it carries out another action answers "busy", and the framework's client does
 * not heed that answer: it waits for ever. Saving while the logging service restarts would do that. And
 * replies are told apart by the action's name alone: of two actions of one name, both end with the first
 * one's reply.
 */
class ActionGate : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static ActionGate &instance();

    /**
     * Calls @p start when no action runs: at once if that is now, else later from the event loop, in the
     * order of asking. It must create a job and let it pass().
     */
    void whenFree(std::function<void()> start);

    /**
     * Waits in a nested event loop until no action runs and none waits in whenFree(). Among callers that wait
     * here above one another, the one that asked last goes first, since only it can go on.
     * @return false when the application ended first.
     */
    [[nodiscard]] bool waitUntilFree();

    /** From now until its end @p job, just created, is the action that runs. */
    void pass(const KJob *job);

Q_SIGNALS:
    /** No action runs or waits. */
    void freed();

private:
    ActionGate() = default;
    void settle(int rounds);

    void ended();

    std::deque<std::function<void()>> m_waiting;
    const KJob *m_running = nullptr;
    bool m_busy = false;
};
