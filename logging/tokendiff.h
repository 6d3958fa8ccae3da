// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QVector>

/// What has to be done to one sequence to get another one.
namespace TokenDiff {
/// In place of [oldBegin, oldEnd) of the old sequence stands [newBegin, newEnd) of the new one; one of the
/// two may be empty.
struct Change
{
    int oldBegin;
    int oldEnd;
    int newBegin;
    int newEnd;
};

/**
 * The changes in order, as few as possible; none when the sequences are equal.
 *
 * Where more than @p limit elements differ, all from the first to the last difference is one change. Takes
 * time and memory linear in the sequences, plus up to the square of the limit.
 */
[[nodiscard]] QVector<Change> changes(const QVector<int> &oldSequence, const QVector<int> &newSequence,
                                      int limit = 1500);
} // namespace TokenDiff
