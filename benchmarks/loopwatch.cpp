// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "loopwatch.h"

#include <QGuiApplication>

#include <algorithm>
#include <ctime>

namespace {
constexpr double nanosecondsPerMillisecond = 1e6;

qint64 nanoseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * Q_INT64_C(1000000000) + now.tv_nsec;
}
} // namespace

LoopWatch::LoopWatch()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(1);
    connect(&m_timer, &QTimer::timeout, this, &LoopWatch::tick);
    restart();
    m_timer.start();
}

void LoopWatch::restart()
{
    m_longest = {};
    m_busySign = false;
    m_wall = nanoseconds(CLOCK_MONOTONIC);
    m_processor = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

void LoopWatch::tick()
{
    const qint64 wall = nanoseconds(CLOCK_MONOTONIC);
    const qint64 processor = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
    m_longest.wall = std::max(m_longest.wall, double(wall - m_wall) / nanosecondsPerMillisecond);
    m_longest.processor
        = std::max(m_longest.processor, double(processor - m_processor) / nanosecondsPerMillisecond);
    m_wall = wall;
    m_processor = processor;
    m_busySign = m_busySign || QGuiApplication::overrideCursor();
}
