// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class TreeItem;
struct RotationScan;

/// The terms of a rotation file that can be edited, in the words of the file (logrotate(8)).
struct RotationTerms
{
    struct Period
    {
        QString keyword;
        QString value; ///< a weekday, or a comment behind the keyword; mostly empty
        bool operator==(const Period &) const = default;
    };

    enum Place {
        Behind, ///< behind the other directives: period, size, number; the size decides
        Before, ///< before the other directives, in the reverse order; the period decides
    };

    std::optional<QString> number;
    std::optional<QString> size;
    std::optional<Period> period;
    bool operator==(const RotationTerms &) const = default;

    /// Of terms that stand several times, the last one counts.
    [[nodiscard]] static RotationTerms of(const TreeItem &section);
    /// Takes the terms out of @p section and puts these in.
    void replaceIn(TreeItem &section, Place place) const;

    /// The keyword that decides when the log is rotated: size and periods exclude each other, and the last
    /// one wins. Empty when there is none.
    [[nodiscard]] static QString deciding(const TreeItem &section);

    /// The number of kept files, -1 for all of them; nothing when the text is no such number.
    [[nodiscard]] static std::optional<int> count(const QString &text);
    /// A size in megabytes of 1,048,576 bytes, rounded up; nothing when the text is no size.
    [[nodiscard]] static std::optional<qint64> megabytes(const QString &text);

    /// What stands in the way of editing the file: a reason of its scan, or a value that is not understood.
    /// Translated, with the line; empty when there is nothing.
    [[nodiscard]] static QString problem(const RotationScan &scan);
    /// The comments that go with terms which are in @p scan and not in @p section any more; sentences as in
    /// RotationScan::losses.
    [[nodiscard]] static QStringList lostComments(const RotationScan &scan, const TreeItem &section);
};
