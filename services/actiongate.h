// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "processturn.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>

class KJob;

/**
 * Lets one privileged action of this user's programs run at a time.
 *
 * A helper that is asked while it carries out another action answers "busy", and the framework's client does
 * not heed that answer: it waits for ever. Saving while the logging service restarts would do that. And
 * replies are told apart by the action's name alone: of two actions of one name, both end with the first
 * one's reply. Another program's action keeps the helper busy just as well; see ProcessTurn.
 */
class ActionGate : public QObject
{
    Q_OBJECT

public:
    enum class Wait {
        Free,
        ApplicationEnded,
        OtherProgram, ///< the limit has passed, and another program still has an action run
    };

    /** How long waitUntilFree() waits for another program's action, which may wait for a password; also where
     * an action of this program waits for it, too. */
    static constexpr std::chrono::seconds otherProgramLimit{30};

    [[nodiscard]] static ActionGate &instance();

    /**
     * Calls @p start when no action runs: at once if that is now, else later from the event loop, in the
     * order of asking. It must create a job and let it pass().
     */
    void whenFree(std::function<void()> start);

    /**
     * Waits in a nested event loop until no action runs and none waits in whenFree(). Among callers that wait
     * here above one another, the one that asked last goes first, since only it can go on. After Free, the
     * caller must at once pass() or giveUp().
     */
    [[nodiscard]] Wait waitUntilFree(std::chrono::milliseconds limit = otherProgramLimit);
    /** No action follows on waitUntilFree(). */
    void giveUp();

    /** From now until its end @p job, just created, is the action that runs. */
    void pass(const KJob *job);

Q_SIGNALS:
    /** No action runs or waits. */
    void freed();
    /** The helper has gone and will not say what became of the job, which therefore never ends. */
    void lost(const KJob *job);

private:
    ActionGate();

    void helperEnded();
    void startInTurn(const std::function<void()> &start);
    void ended();

    std::deque<std::function<void()>> m_waiting;
    const KJob *m_running = nullptr;
    bool m_busy = false;
    bool m_waitsForTurn = false; // an action of ours, for another program's turn to end
    ProcessTurn m_turn;
    QTimer m_helperIsGone;
};
