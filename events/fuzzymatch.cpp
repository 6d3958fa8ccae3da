// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzymatch.h"

#include <unicode/uchar.h>

#include <algorithm>

char16_t FuzzyMatch::folded(char16_t c)
{
    constexpr char16_t smallIo = 0x0451;
    constexpr char16_t smallIe = 0x0435;
    constexpr char16_t capitalIo = 0x0401;
    constexpr char16_t capitalIe = 0x0415;
    const auto lower = static_cast<char16_t>(u_tolower(c));
    if (lower == smallIo) {
        return smallIe;
    }
    return lower == capitalIo ? capitalIe : lower;
}

QString FuzzyMatch::folded(const QString &text)
{
    QString result = text;
    std::transform(result.begin(), result.end(), result.begin(),
                   [](QChar c) { return QChar(folded(static_cast<char16_t>(c.unicode()))); });
    return result;
}

bool FuzzyMatch::contains(const QString &text, const QString &query)
{
    return folded(text).contains(folded(query));
}
