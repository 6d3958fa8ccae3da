// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingsscanner.h"

#include "utf8.h"

namespace Nivra {

namespace {

constexpr unsigned DeepestLevel = 64;
constexpr int MostDigits = 15;

bool isBlank(char character)
{
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'a' && character <= 'f')
        || (character >= 'A' && character <= 'F');
}

} // namespace

SettingsScanner::SettingsScanner(const std::string &text)
    : m_text(text)
    , m_at(text.c_str())
{
}

const std::vector<SettingsScanner::Member> &SettingsScanner::members() const
{
    return m_members;
}

bool SettingsScanner::scan()
{
    skipBlanks();
    if (!take('{')) {
        return false;
    }
    skipBlanks();
    if (!take('}')) {
        do {
            skipBlanks();
            if (!scanMember()) {
                return false;
            }
            skipBlanks();
        } while (take(','));
        if (!take('}')) {
            return false;
        }
    }
    skipBlanks();
    return m_at == m_text.data() + m_text.size();
}

bool SettingsScanner::scanMember()
{
    const char *const nameStart = m_at;
    if (!skipString()) {
        return false;
    }
    const std::string_view name(nameStart + 1, static_cast<std::size_t>(m_at - nameStart - 2));
    if (name.find('\\') != std::string_view::npos) {
        return false;
    }
    skipBlanks();
    if (!take(':')) {
        return false;
    }
    skipBlanks();
    const char *const valueStart = m_at;
    if (!skipValue()) {
        return false;
    }
    m_members.push_back({name, {valueStart, static_cast<std::size_t>(m_at - valueStart)}});
    return true;
}

// No recursion: the depth of a text is not the author's to choose.
bool SettingsScanner::skipValue()
{
    do {
        bool complete = true;
        bool empty = false;
        switch (*m_at) {
        case '{':
        case '[':
            if (!openContainer(*m_at == '{', empty)) {
                return false;
            }
            complete = empty;
            break;
        case '"':
            if (!skipString()) {
                return false;
            }
            break;
        default:
            if (!skipWord("true") && !skipWord("false") && !skipWord("null") && !skipNumber()) {
                return false;
            }
        }
        if (complete && !closeContainers()) {
            return false;
        }
    } while (m_depth > 0);
    return true;
}

// Leaves the position at the first value, or behind a container that holds none.
bool SettingsScanner::openContainer(bool object, bool &empty)
{
    ++m_at;
    skipBlanks();
    empty = take(object ? '}' : ']');
    if (empty) {
        return true;
    }
    if (m_depth == DeepestLevel) {
        return false;
    }
    ++m_depth;
    m_objects = m_objects << 1U | (object ? 1U : 0U);
    return !object || skipName();
}

// After a value: goes on to the next one, or out of the containers that end here.
bool SettingsScanner::closeContainers()
{
    while (m_depth > 0) {
        const bool object = (m_objects & 1U) != 0;
        skipBlanks();
        if (take(',')) {
            skipBlanks();
            return !object || skipName();
        }
        if (!take(object ? '}' : ']')) {
            return false;
        }
        --m_depth;
        m_objects >>= 1U;
    }
    return true;
}

bool SettingsScanner::skipName()
{
    if (!skipString()) {
        return false;
    }
    skipBlanks();
    if (!take(':')) {
        return false;
    }
    skipBlanks();
    return true;
}

bool SettingsScanner::skipString()
{
    if (!take('"')) {
        return false;
    }
    const char *const start = m_at;
    bool ascii = true;
    while (*m_at != '"') {
        const auto byte = static_cast<unsigned char>(*m_at);
        if (byte < 0x20) {
            return false;
        }
        if (byte == '\\') {
            if (!skipEscape()) {
                return false;
            }
            continue;
        }
        ascii = ascii && byte < 0x80;
        ++m_at;
    }
    const std::string_view content(start, static_cast<std::size_t>(m_at - start));
    ++m_at;
    return ascii || isUtf8(content);
}

bool SettingsScanner::skipEscape()
{
    ++m_at;
    if (take('u')) {
        for (int i = 0; i < 4; ++i, ++m_at) {
            if (!isHexDigit(*m_at)) {
                return false;
            }
        }
        return true;
    }
    constexpr std::string_view Letters = "\"\\/bfnrt";
    return Letters.find(*m_at++) != std::string_view::npos;
}

bool SettingsScanner::skipNumber()
{
    take('-');
    if (take('0')) {
        return !isDigit(*m_at) && *m_at != '.' && *m_at != 'e' && *m_at != 'E';
    }
    const char *const start = m_at;
    while (isDigit(*m_at)) {
        ++m_at;
    }
    return m_at != start && m_at - start <= MostDigits && *m_at != '.' && *m_at != 'e' && *m_at != 'E';
}

bool SettingsScanner::skipWord(std::string_view word)
{
    const std::string_view rest(m_at, static_cast<std::size_t>(m_text.data() + m_text.size() - m_at));
    if (!rest.starts_with(word)) {
        return false;
    }
    m_at += word.size();
    return true;
}

void SettingsScanner::skipBlanks()
{
    while (isBlank(*m_at)) {
        ++m_at;
    }
}

bool SettingsScanner::take(char character)
{
    if (*m_at != character) {
        return false;
    }
    ++m_at;
    return true;
}

std::string SettingsScanner::compact(std::string_view value)
{
    std::string result(value.size(), '\0');
    char *to = result.data();
    bool inString = false;
    for (const char *from = value.data(); from != value.data() + value.size(); ++from) {
        if (!inString && isBlank(*from)) {
            continue;
        }
        *to++ = *from;
        if (*from == '"') {
            inString = !inString;
        } else if (*from == '\\') {
            // A backslash stands in strings only, and never at the end.
            *to++ = *++from;
        }
    }
    result.resize(static_cast<std::size_t>(to - result.data()));
    result.shrink_to_fit();
    return result;
}

} // namespace Nivra
