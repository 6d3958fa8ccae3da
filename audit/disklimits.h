// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// A directory whose free space is watched: the event is recorded below either limit.
struct DiskLimit
{
    QString path;
    QString bytes = QStringLiteral("104857600"); ///< free bytes, a whole number; 100 MiB
    QString percent = QStringLiteral("100.0"); ///< free part of the file system, 0 to 100
    QJsonObject others; ///< members that this list does not know, kept as they are

    [[nodiscard]] bool operator==(const DiskLimit &other) const = default;
};

/**
 * The list of directories of a disk-space event as JSON text: an array of
 * objects with the members "path", "limit_bytes" and "limit_percent", all strings.
 */
namespace DiskLimits {
/// The rows of an array, one an element; none when the text is no array.
[[nodiscard]] QVector<DiskLimit> fromJson(const QString &text);
/// One object a row, in the order of the rows.
[[nodiscard]] QString toJson(const QVector<DiskLimit> &rows);
/// The directories alone.
[[nodiscard]] QStringList paths(const QVector<DiskLimit> &rows);

/// Why the text is no limit or no directory to watch, translated; empty when it is.
[[nodiscard]] QString pathProblem(const QString &text);
[[nodiscard]] QString bytesProblem(const QString &text);
[[nodiscard]] QString percentProblem(const QString &text);
/// The text of a percentage with the decimal point of the file.
[[nodiscard]] QString normalizedPercent(const QString &text);
} // namespace DiskLimits
