// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

/**
 * The subjects' fields of the rules of two operations that are the same system calls.
 *
 * The kernel records a call once, under the keys of the first rule that matches. So what both operations ask
 * for gets rules of its own, with both keys, before those of each.
 */
class JointConditions
{
public:
    /** More rules than this are not made for what both ask for: it then bears the first operation's key. */
    static constexpr int limit = 100;

    /** @param first, second conditions, each any number of fields " -F FIELD" that hold all together. */
    JointConditions(const QList<QByteArray> &first, const QList<QByteArray> &second);

    /** What both operations ask for. */
    const QList<QByteArray> &both() const { return m_both; }
    /** What is left for each of them. */
    const QList<QByteArray> &first() const { return m_first; }
    const QList<QByteArray> &second() const { return m_second; }

private:
    void combine();

    QList<QByteArray> m_both;
    QList<QByteArray> m_first;
    QList<QByteArray> m_second;
};

} // namespace AdminEventsHelper
