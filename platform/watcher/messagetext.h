// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace NivraWatcher::MessageText {

/**
 * The text of a notification.
 * @param format "{0}" stands for the first value, and so on; a number without a value stands for itself.
 * @param values never read for places again.
 */
QString compose(const QString &format, const QStringList &values);

/** @p text cut to at most @p limit characters, with an ellipsis when something is missing. */
QString cut(const QString &text, int limit);

/** @p text on one line: control characters, line separators and backslashes are spelled out ("\n", "\u0007").
 */
QString oneLine(const QString &text);

} // namespace NivraWatcher::MessageText
