// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

/// Case-insensitive comparison in which the Cyrillic letter io counts as ie.
namespace FuzzyMatch {
/// The code unit that stands for @p c in comparisons.
[[nodiscard]] char16_t folded(char16_t c);
/// Folds every code unit of @p text.
[[nodiscard]] QString folded(const QString &text);
/// True when @p foldedQuery, which is folded already, occurs in @p text; folds no more of it than it takes to
/// find that out, and makes no copy.
[[nodiscard]] bool containsFolded(const QString &text, const QString &foldedQuery);
/// True when @p query occurs in @p text; an empty query occurs in every text.
[[nodiscard]] bool contains(const QString &text, const QString &query);
} // namespace FuzzyMatch
