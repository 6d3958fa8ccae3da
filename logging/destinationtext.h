// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

class TreeItem;

/// The texts of destinations in the main logging configuration, as the daemon takes them (syslog-ng.conf(5)).
namespace DestinationText {
/// The value of a new destination.
/// @param values kind, name, address, port, protocol; the clauses of a network destination need all five
[[nodiscard]] QString value(const QVector<QVariant> &values);
/// @p text in double quotes, so that the daemon sees just this text: quotes, backslashes and backticks are
/// escaped. A "$" keeps its meaning, it begins a macro.
[[nodiscard]] QString quoted(const QString &text);
/// What the first quoted text in @p value means to the daemon; a null string when there is none.
[[nodiscard]] QString firstQuoted(const QString &value);
/// @p value as it is shown to the user.
/// @param kind the name of the driver
[[nodiscard]] QString shown(const QString &kind, const QString &value);
/// A name as the daemon sees it: without the quotes that it may stand in.
[[nodiscard]] QString bareName(const QString &text);

/// A new destination block with its one parameter; owned by the caller, @p root is its parent.
[[nodiscard]] TreeItem *makeBlock(const QVector<QVariant> &values, TreeItem *root);

/// Why a destination of these values could not be kept in the file, translated; empty when it can. The
/// destination is written and read to find out.
[[nodiscard]] QString keepingError(const QVector<QVariant> &values);
} // namespace DestinationText
