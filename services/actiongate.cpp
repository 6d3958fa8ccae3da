// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "actiongate.h"

#include "actionids.h"

#include <KJob>

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <utility>

namespace {
constexpr std::chrono::milliseconds turnPause(100);
// Answers that are under way arrive by then, and so does another helper that takes over.
constexpr std::chrono::seconds answerPause(2);
} // namespace

ActionGate::ActionGate()
{
    m_helperIsGone.setSingleShot(true);
    m_helperIsGone.setInterval(answerPause);
    connect(&m_helperIsGone, &QTimer::timeout, this, &ActionGate::helperEnded);
    auto *watcher = new QDBusServiceWatcher(ActionIds::helper(), QDBusConnection::systemBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (m_running)
            m_helperIsGone.start();
    });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, &m_helperIsGone, &QTimer::stop);
}

// A helper that was killed at the wrong moment has replied to the request and not announced its end, and the
// framework waits for both.
void ActionGate::helperEnded()
{
    if (const KJob *job = m_running) {
        // First, since who hears of it may have the next action run at once.
        ended();
        Q_EMIT lost(job);
    }
}

ActionGate &ActionGate::instance()
{
    static ActionGate gate;
    return gate;
}

void ActionGate::whenFree(std::function<void()> start)
{
    if (m_busy) {
        m_waiting.push_back(std::move(start));
        return;
    }
    m_busy = true;
    startInTurn(start);
}

void ActionGate::startInTurn(const std::function<void()> &start)
{
    m_waitsForTurn = !m_turn.take();
    if (m_waitsForTurn) {
        QTimer::singleShot(turnPause, this, [this, start] { startInTurn(start); });
    } else {
        start();
    }
}

ActionGate::Wait ActionGate::waitUntilFree(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    for (;;) {
        if (!m_busy && m_turn.take())
            return Wait::Free;
        // An own action that runs comes to its end; one that waits itself may not.
        if (deadline.hasExpired() && (!m_busy || m_waitsForTurn))
            return Wait::OtherProgram;
        QEventLoop loop;
        bool goesOn = false;
        const auto goOn = [&loop, &goesOn] {
            goesOn = true;
            loop.quit();
        };
        connect(this, &ActionGate::freed, &loop, goOn);
        QTimer::singleShot(turnPause, &loop, goOn);
        loop.exec();
        // An ended application lets no event loop run any more.
        if (!goesOn)
            return Wait::ApplicationEnded;
    }
}

void ActionGate::giveUp()
{
    m_turn.release();
}

void ActionGate::pass(const KJob *job)
{
    m_busy = true;
    m_running = job;
    // Not when the caller that waits for it returns: that one may sit below another caller's event loop.
    connect(job, &KJob::finished, this, [this, job] {
        if (m_running == job)
            ended();
    });
}

void ActionGate::ended()
{
    m_running = nullptr;
    m_helperIsGone.stop();
    if (m_waiting.empty()) {
        m_busy = false;
        m_turn.release();
        Q_EMIT freed();
        return;
    }
    // Later: the ended job still tells its other listeners, and would tell the next job as well.
    QMetaObject::invokeMethod(
        this,
        [this] {
            const std::function<void()> next = std::move(m_waiting.front());
            m_waiting.pop_front();
            next();
        },
        Qt::QueuedConnection);
}
