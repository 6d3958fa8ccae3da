// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "actiongate.h"

#include "actionids.h"

#include <KJob>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

#include <utility>

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
    start();
}

bool ActionGate::waitUntilFree()
{
    while (m_busy) {
        QEventLoop loop;
        bool wasFreed = false;
        connect(this, &ActionGate::freed, &loop, [&loop, &wasFreed] {
            wasFreed = true;
            loop.quit();
        });
        loop.exec();
        // An ended application lets no event loop run any more.
        if (!wasFreed)
            return false;
    }
    return true;
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
    if (m_waiting.empty()) {
        m_busy = false;
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
