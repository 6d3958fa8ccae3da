// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/** What the option lines of a fragment's destination say. */
struct FragmentOptions
{
    QString user;
    QString group;
    QString title;
    QStringList parameters;
    bool titleWasCut = false; ///< the title in the file is another one than reading gives

    /// The number of the recipients' choice (NotificationFragment::Recipients).
    [[nodiscard]] int recipients() const;

    /**
     * The values of one option line: what follows its first comma, split at commas, without double quotes
     * and without one leading space each. A comma inside quotes splits as well.
     */
    [[nodiscard]] static QStringList values(const QString &line);

    /// @param lines the fragment's lines; only options are looked at, whatever other lines hold
    [[nodiscard]] static FragmentOptions read(const QStringList &lines);
};
