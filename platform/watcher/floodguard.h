// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QQueue>
#include <QString>

namespace NivraWatcher {

/** Lets only so many things of one kind happen within a span of time. */
class FloodGuard
{
public:
    /** @param limit how many of one kind within @p milliseconds. */
    FloodGuard(int limit, qint64 milliseconds);

    /** Whether one more of that kind may happen now; one that may is counted. */
    [[nodiscard]] bool allows(const QString &kind);

private:
    int m_limit;
    qint64 m_span;
    QElapsedTimer m_clock;
    QHash<QString, QQueue<qint64>> m_times;
};

} // namespace NivraWatcher
