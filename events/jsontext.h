// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>

/// JSON text as the event tree keeps it in column 2 and the settings writer puts it together.
namespace JsonText {
/// Appends @p text between double quotes, escaped.
void appendQuoted(QString &target, const QString &text);
/// Compact JSON text of any value.
[[nodiscard]] QString compact(const QJsonValue &value);
/// The shown text of an array: its elements joined with ", "; of objects their "path" where they have one.
[[nodiscard]] QString arrayText(const QJsonArray &array);
/// The array in @p json; sets @p ok to whether there is one.
[[nodiscard]] QJsonArray parseArray(const QString &json, bool &ok);
/**
 * True when the shown text of the array says all that the array holds, so
 * that a typed text can replace it: strings only, none with a ", " inside.
 */
[[nodiscard]] bool isPlainList(const QJsonArray &array);
} // namespace JsonText
