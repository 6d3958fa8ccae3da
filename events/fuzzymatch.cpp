// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzymatch.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

namespace {
/// The letters that nearly all texts are made of, folded once and for all.
char16_t quicklyFolded(QChar c)
{
    constexpr std::size_t tableSize = 0x600; // up to the end of the Cyrillic letters, and Armenian and Hebrew
    static const std::array<char16_t, tableSize> table = [] {
        std::array<char16_t, tableSize> letters{};
        for (std::size_t letter = 0; letter < tableSize; ++letter) {
            letters[letter] = FuzzyMatch::folded(static_cast<char16_t>(letter));
        }
        return letters;
    }();
    const char16_t letter = c.unicode();
    return letter < tableSize ? table[letter] : FuzzyMatch::folded(letter);
}
} // namespace

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

bool FuzzyMatch::containsFolded(const QString &text, const QString &foldedQuery)
{
    const auto equal = [](QChar letter, QChar wanted) { return quicklyFolded(letter) == wanted.unicode(); };
    return foldedQuery.isEmpty()
        || std::search(text.begin(), text.end(), foldedQuery.begin(), foldedQuery.end(), equal) != text.end();
}

bool FuzzyMatch::contains(const QString &text, const QString &query)
{
    return containsFolded(text, folded(query));
}
