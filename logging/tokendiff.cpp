// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "tokendiff.h"

#include <algorithm>

namespace {
/**
 * The greedy search for the shortest edit script: on the grid of both sequences, the furthest points that can
 * be reached with 0, 1, 2, ... steps to the right (an old element goes) or down (a new one comes), diagonals
 * (equal elements) being free.
 */
class EditSearch
{
public:
    EditSearch(const int *oldBegin, int oldSize, const int *newBegin, int newSize, int limit)
        : m_old(oldBegin)
        , m_oldSize(oldSize)
        , m_new(newBegin)
        , m_newSize(newSize)
        , m_limit(std::min(limit, oldSize + newSize))
    {
    }

    /// False when more than the limit would have to change.
    [[nodiscard]] bool run();
    /// Which elements are kept, after a successful run(): pairs of indexes, in order.
    [[nodiscard]] QVector<QPair<int, int>> kept() const;

private:
    [[nodiscard]] bool goesDown(const QVector<int> &reach, int step, int diagonal) const
    {
        return diagonal == -step || (diagonal != step && at(reach, diagonal - 1) < at(reach, diagonal + 1));
    }
    /// Row of step s holds the diagonals -s to s.
    [[nodiscard]] static int at(const QVector<int> &reach, int diagonal)
    {
        const int middle = reach.size() / 2;
        return reach.at(middle + diagonal);
    }

    const int *m_old;
    int m_oldSize;
    const int *m_new;
    int m_newSize;
    int m_limit;
    QVector<QVector<int>> m_rows;
};

bool EditSearch::run()
{
    QVector<int> before(3, 0);
    for (int step = 0; step <= m_limit; ++step) {
        QVector<int> row(2 * step + 5, 0);
        const int middle = row.size() / 2;
        for (int diagonal = -step; diagonal <= step; diagonal += 2) {
            int x = 0;
            if (step > 0) {
                x = goesDown(before, step, diagonal) ? at(before, diagonal + 1)
                                                     : at(before, diagonal - 1) + 1;
            }
            int y = x - diagonal;
            while (x < m_oldSize && y < m_newSize && m_old[x] == m_new[y]) {
                ++x;
                ++y;
            }
            row[middle + diagonal] = x;
            if (x >= m_oldSize && y >= m_newSize) {
                m_rows.append(row);
                return true;
            }
        }
        m_rows.append(row);
        before = row;
    }
    return false;
}

QVector<QPair<int, int>> EditSearch::kept() const
{
    QVector<QPair<int, int>> pairs;
    int x = m_oldSize;
    int y = m_newSize;
    for (int step = m_rows.size() - 1; step >= 0; --step) {
        int fromX = 0;
        int fromY = 0;
        if (step > 0) {
            const QVector<int> &before = m_rows.at(step - 1);
            const int diagonal = x - y;
            const bool down = goesDown(before, step, diagonal);
            const int previous = down ? diagonal + 1 : diagonal - 1;
            fromX = down ? at(before, previous) : at(before, previous) + 1;
            fromY = fromX - diagonal;
        }
        for (; x > fromX && y > fromY; --x, --y) {
            pairs.append({x - 1, y - 1});
        }
        if (step > 0) {
            const bool down = goesDown(m_rows.at(step - 1), step, x - y);
            x -= down ? 0 : 1;
            y -= down ? 1 : 0;
        }
    }
    std::reverse(pairs.begin(), pairs.end());
    return pairs;
}
} // namespace

QVector<TokenDiff::Change> TokenDiff::changes(const QVector<int> &oldSequence,
                                              const QVector<int> &newSequence, int limit)
{
    const int shorter = std::min(oldSequence.size(), newSequence.size());
    int begin = 0;
    while (begin < shorter && oldSequence.at(begin) == newSequence.at(begin)) {
        ++begin;
    }
    int oldEnd = oldSequence.size();
    int newEnd = newSequence.size();
    while (oldEnd > begin && newEnd > begin && oldSequence.at(oldEnd - 1) == newSequence.at(newEnd - 1)) {
        --oldEnd;
        --newEnd;
    }
    if (oldEnd == begin && newEnd == begin) {
        return {};
    }
    EditSearch search(oldSequence.constData() + begin, oldEnd - begin, newSequence.constData() + begin,
                      newEnd - begin, limit);
    if (!search.run()) {
        return {{begin, oldEnd, begin, newEnd}};
    }
    QVector<Change> found;
    QPair<int, int> next(0, 0);
    QVector<QPair<int, int>> kept = search.kept();
    kept.append({oldEnd - begin, newEnd - begin});
    for (const QPair<int, int> &pair : qAsConst(kept)) {
        if (pair.first > next.first || pair.second > next.second) {
            found.append({begin + next.first, begin + pair.first, begin + next.second, begin + pair.second});
        }
        next = {pair.first + 1, pair.second + 1};
    }
    return found;
}
