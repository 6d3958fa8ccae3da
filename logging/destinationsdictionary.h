// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

/// The kinds of destinations that can be added, and what the user knows them by.
class DestinationsDictionary
{
public:
    struct Entry
    {
        QString parameter; ///< the name of the driver in the main logging configuration
        QString name; ///< translated
    };

    /// The one dictionary of the process.
    [[nodiscard]] static const DestinationsDictionary &instance();

    /// In the order in which they are offered.
    [[nodiscard]] const QVector<Entry> &entries() const { return m_entries; }
    /// Null when @p parameter is none of these kinds.
    [[nodiscard]] const Entry *findByParameter(const QString &parameter) const;

    [[nodiscard]] static QString fileParameter() { return QStringLiteral("file"); }
    [[nodiscard]] static QString networkParameter() { return QStringLiteral("network"); }

private:
    DestinationsDictionary();

    QVector<Entry> m_entries;
};
