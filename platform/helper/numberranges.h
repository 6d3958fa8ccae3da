// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QList>
#include <QMap>

namespace AdminEventsHelper {

/** Numbers that follow one another, both ends included. */
struct NumberRange
{
    quint32 first = 0;
    quint32 last = 0;

    bool operator==(const NumberRange &other) const { return first == other.first && last == other.last; }
};

namespace NumberRanges {

/** The longest ranges of neighbouring keys whose value @p wanted accepts, in ascending order. */
template <typename Predicate> QList<NumberRange> of(const QMap<quint32, int> &values, Predicate wanted)
{
    QList<NumberRange> ranges;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (!wanted(it.value())) {
            continue;
        }
        if (!ranges.isEmpty() && ranges.last().last + 1 == it.key()) {
            ranges.last().last = it.key();
        } else {
            ranges.append({it.key(), it.key()});
        }
    }
    return ranges;
}

} // namespace NumberRanges

} // namespace AdminEventsHelper
