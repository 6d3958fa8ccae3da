// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "actiongate.h"

#include <KJob>

#include <QEventLoop>

#include <memory>

ActionGate &ActionGate::instance()
{
    static ActionGate gate;
    return gate;
}

void ActionGate::enter(std::function<void()> start)
{
    if (m_busy) {
        m_waiting.push_back(std::move(start));
        return;
    }
    m_busy = true;
    start();
}

bool ActionGate::enterAndWait()
{
    struct Turn
    {
        QEventLoop loop;
        bool come = false;
        bool givenUp = false;
    };
    const auto turn = std::make_shared<Turn>();
    enter([this, turn] {
        if (turn->givenUp) {
            leave();
            return;
        }
        turn->come = true;
        turn->loop.quit();
    });
    if (!turn->come)
        turn->loop.exec();
    turn->givenUp = !turn->come;
    return turn->come;
}

void ActionGate::watch(KJob *job)
{
    // At the result, not after a waiting caller returned: that one may sit below another caller's event loop.
    connect(job, &KJob::finished, this, &ActionGate::leave);
}

void ActionGate::leave()
{
    m_busy = false;
    if (m_waiting.empty())
        return;
    const std::function<void()> next = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_busy = true;
    next();
}
