// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <optional>

/**
 * The patterns that take statements of the main logging configuration apart.
 *
 * Each stands for a regular expression whose dot also matches line breaks, greedy, at the first place where
 * it matches. They are matched by hand because a backtracking engine needs quadratic time on them, or gives
 * up, for a large file. All take time linear in the text.
 */
namespace ConfigPatterns {
struct Block
{
    QString keyword;
    QString name; ///< may be empty
    QString body;
    int keywordAt; ///< where the match begins
    int bodyAt; ///< where the body begins
};

struct Quoted
{
    QString before; ///< all before the last token that a double quote ends
    QString text; ///< between the double quotes
};

/// "(([a-z]+)\s+(\S*)\s*\{(.*)\};)"
[[nodiscard]] std::optional<Block> matchBlock(const QString &text);
/// "(.+)\s+(\S*)\s*"(.*)""
[[nodiscard]] std::optional<Quoted> matchQuoted(const QString &text);
/// "\((.*)\)": between the first "(" and the last ")"; a null string when there is no match.
[[nodiscard]] QString matchParentheses(const QString &text);
/// "\{(.*)\}": between the first "{" and the last "}"; a null string when there is no match.
[[nodiscard]] QString matchBraces(const QString &text);
} // namespace ConfigPatterns
