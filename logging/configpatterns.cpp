// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "configpatterns.h"

namespace {
bool isLetter(QChar character)
{
    return character >= QLatin1Char('a') && character <= QLatin1Char('z');
}

/// The end of the run of characters for which @p belongs is true, from @p at on.
template <typename Predicate> int runEnd(const QString &text, int at, Predicate belongs)
{
    while (at < text.size() && belongs(text.at(at))) {
        ++at;
    }
    return at;
}

bool isSpace(QChar character)
{
    return character.isSpace();
}

bool isNoSpace(QChar character)
{
    return !character.isSpace();
}

struct Header
{
    int nameEnd = -1;
    int brace = -1;
};

/// The name from @p at on and its opening brace, which lies before @p limit.
Header findHeader(const QString &text, int at, int limit)
{
    const int tokenEnd = runEnd(text, at, isNoSpace);
    const int next = runEnd(text, tokenEnd, isSpace);
    if (next < limit && text.at(next) == QLatin1Char('{')) {
        return {tokenEnd, next};
    }
    // The longest name whose brace follows without a blank.
    for (int brace = qMin(tokenEnd, limit) - 1; brace >= at; --brace) {
        if (text.at(brace) == QLatin1Char('{')) {
            return {brace, brace};
        }
    }
    return {};
}

QString matchEnclosed(const QString &text, QLatin1Char open, QLatin1Char close)
{
    const int first = text.indexOf(open);
    const int last = text.lastIndexOf(close);
    if (first < 0 || last <= first) {
        return {};
    }
    const QString inner = text.mid(first + 1, last - first - 1);
    return inner.isNull() ? QStringLiteral("") : inner;
}
} // namespace

std::optional<ConfigPatterns::Block> ConfigPatterns::matchBlock(const QString &text)
{
    const int end = text.lastIndexOf(QLatin1String("};"));
    // A keyword needs two more characters before the closing brace: a blank and the opening brace.
    for (int at = 0; at < end; ++at) {
        if (!isLetter(text.at(at))) {
            continue;
        }
        const int keywordEnd = runEnd(text, at, isLetter);
        const int nameAt = runEnd(text, keywordEnd, isSpace);
        if (nameAt > keywordEnd && nameAt < end) {
            const Header header = findHeader(text, nameAt, end);
            if (header.brace >= 0) {
                const int bodyAt = header.brace + 1;
                return Block{text.mid(at, keywordEnd - at), text.mid(nameAt, header.nameEnd - nameAt),
                             text.mid(bodyAt, end - bodyAt), at, bodyAt};
            }
        }
        at = keywordEnd;
    }
    return std::nullopt;
}

std::optional<ConfigPatterns::Quoted> ConfigPatterns::matchQuoted(const QString &text)
{
    // Being greedy, the text before reaches up to the last blank that still leaves two quotes behind it.
    const int last = text.lastIndexOf(QLatin1Char('"'));
    const int first = last > 0 ? text.lastIndexOf(QLatin1Char('"'), last - 1) : -1;
    int blank = first - 1;
    while (blank > 0 && isNoSpace(text.at(blank))) {
        --blank;
    }
    if (blank <= 0) {
        return std::nullopt;
    }
    return Quoted{text.left(blank), text.mid(first + 1, last - first - 1)};
}

QString ConfigPatterns::matchParentheses(const QString &text)
{
    return matchEnclosed(text, QLatin1Char('('), QLatin1Char(')'));
}

QString ConfigPatterns::matchBraces(const QString &text)
{
    return matchEnclosed(text, QLatin1Char('{'), QLatin1Char('}'));
}
