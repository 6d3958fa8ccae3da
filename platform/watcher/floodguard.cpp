// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "floodguard.h"

namespace NivraWatcher {

FloodGuard::FloodGuard(int limit, qint64 milliseconds)
    : m_limit(limit)
    , m_span(milliseconds)
{
    m_clock.start();
}

bool FloodGuard::allows(const QString &kind)
{
    const qint64 now = m_clock.elapsed();
    QQueue<qint64> &times = m_times[kind];
    while (!times.isEmpty() && times.head() <= now - m_span) {
        times.dequeue();
    }
    if (times.size() >= m_limit) {
        return false;
    }
    times.enqueue(now);
    return true;
}

} // namespace NivraWatcher
