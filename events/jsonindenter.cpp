// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "jsonindenter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {
constexpr int indentWidth = 4;
constexpr int deepest = 100; // far below what the parser takes
constexpr int longestNumber = 9; // digits of integers that are surely written as they are read
constexpr const char *lineEnd = ",\n";
constexpr int lineEndSize = 2;

/// What may stand in a string and is written as it is read, quotes and backslashes aside. Above U+DFFF the
/// order of UTF-8 is not that of UTF-16, and a byte order mark is lost.
constexpr bool isPlain(unsigned char c)
{
    return c >= 0x20 && c != '"' && c != '\\' && c < 0xee;
}

constexpr std::array<bool, 256> plainTable()
{
    std::array<bool, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c) {
        table.at(c) = isPlain(static_cast<unsigned char>(c));
    }
    return table;
}

constexpr std::array<bool, 256> plain = plainTable();

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
} // namespace

QByteArray JsonIndenter::indented(const QString &json)
{
    const QByteArray utf8 = json.toUtf8();
    const QByteArray usual = indentedUsual(utf8);
    if (!usual.isEmpty()) {
        return usual;
    }
    const QJsonDocument document = QJsonDocument::fromJson(utf8);
    return document.isObject() ? document.toJson(QJsonDocument::Indented) : QByteArray();
}

QByteArray JsonIndenter::indentedUsual(const QByteArray &utf8)
{
    JsonIndenter indenter(utf8);
    indenter.skipBlanks();
    if (!indenter.copyObject(0)) {
        return {};
    }
    indenter.skipBlanks();
    if (indenter.m_next != indenter.m_end) {
        return {};
    }
    indenter.m_text += '\n';
    return indenter.m_text;
}

JsonIndenter::JsonIndenter(const QByteArray &utf8)
    : m_next(utf8.constData())
    , m_end(m_next + utf8.size())
{
    m_text.reserve(utf8.size() * 3); // much of indented text is blanks
}

void JsonIndenter::skipBlanks()
{
    while (m_next != m_end && (*m_next == ' ' || *m_next == '\t' || *m_next == '\n' || *m_next == '\r')) {
        ++m_next;
    }
}

/// Passes over @p expected and the blanks before it; false, and only the blanks passed, when something else
/// is there.
bool JsonIndenter::take(char expected)
{
    skipBlanks();
    if (m_next == m_end || *m_next != expected) {
        return false;
    }
    ++m_next;
    return true;
}

void JsonIndenter::breakLine(int depth)
{
    m_text += '\n';
    m_text.append(depth * indentWidth, ' ');
}

bool JsonIndenter::copyValue(int depth)
{
    skipBlanks();
    if (m_next == m_end || depth > deepest) {
        return false;
    }
    switch (*m_next) {
    case '"':
        return copyString();
    case '{':
        return copyObject(depth);
    case '[':
        return copyArray(depth);
    case 't':
    case 'f':
    case 'n':
        return copyWord();
    default:
        return copyNumber();
    }
}

bool JsonIndenter::copyString()
{
    const char *begin = m_next;
    if (m_next == m_end || *m_next != '"') {
        return false;
    }
    ++m_next;
    while (m_next != m_end) {
        if (plain[static_cast<unsigned char>(*m_next)]) {
            ++m_next;
        } else if (*m_next == '"') {
            ++m_next;
            m_text.append(begin, static_cast<int>(m_next - begin));
            return true;
        } else if (*m_next == '\\' && m_end - m_next > 1 && (m_next[1] == '"' || m_next[1] == '\\')) {
            m_next += 2;
        } else {
            return false;
        }
    }
    return false;
}

bool JsonIndenter::copyWord()
{
    for (const char *word : {"true", "false", "null"}) {
        const auto size = static_cast<std::ptrdiff_t>(std::strlen(word));
        if (m_end - m_next >= size && std::strncmp(m_next, word, static_cast<std::size_t>(size)) == 0) {
            m_text.append(word, static_cast<int>(size));
            m_next += size;
            return true;
        }
    }
    return false;
}

bool JsonIndenter::copyNumber()
{
    const char *begin = m_next;
    if (*m_next == '-') {
        ++m_next;
    }
    const char *digits = m_next;
    while (m_next != m_end && isDigit(*m_next)) {
        ++m_next;
    }
    const auto count = m_next - digits;
    const bool isZero = count == 1 && *digits == '0';
    if (count < 1 || count > longestNumber || (*digits == '0' && (!isZero || digits != begin))) {
        return false;
    }
    m_text.append(begin, static_cast<int>(m_next - begin));
    return true;
}

bool JsonIndenter::copyArray(int depth)
{
    m_text += '[';
    ++m_next;
    if (!take(']')) {
        do {
            breakLine(depth + 1);
            if (!copyValue(depth + 1)) {
                return false;
            }
            m_text += ',';
        } while (take(','));
        if (!take(']')) {
            return false;
        }
        m_text.chop(1);
    }
    breakLine(depth);
    m_text += ']';
    return true;
}

bool JsonIndenter::copyObject(int depth)
{
    if (m_next == m_end || *m_next != '{') {
        return false;
    }
    m_text += '{';
    ++m_next;
    if (!take('}')) {
        const std::size_t first = m_members.size();
        if (!copyMembers(depth + 1) || !take('}') || !sortMembers(first, depth + 1)) {
            return false;
        }
        m_members.resize(first);
    }
    breakLine(depth);
    m_text += '}';
    return true;
}

bool JsonIndenter::copyMembers(int depth)
{
    bool isFirst = true;
    do {
        if (!std::exchange(isFirst, false)) {
            m_text += ',';
        }
        breakLine(depth);
        Member member;
        member.begin = m_text.size();
        skipBlanks();
        if (!copyString()) {
            return false;
        }
        member.nameSize = m_text.size() - member.begin;
        // An escape in a name would take part in the order.
        if (std::memchr(m_text.constData() + member.begin, '\\', static_cast<std::size_t>(member.nameSize))
            != nullptr) {
            return false;
        }
        m_text += ": ";
        if (!take(':') || !copyValue(depth)) {
            return false;
        }
        member.end = m_text.size();
        m_members.push_back(member);
    } while (take(','));
    return true;
}

/// The order of the names; the closing quotes do not count.
int JsonIndenter::compareNames(const Member &left, const Member &right) const
{
    const char *text = m_text.constData();
    const int order = std::memcmp(text + left.begin, text + right.begin,
                                  static_cast<std::size_t>(std::min(left.nameSize, right.nameSize) - 1));
    return order != 0 ? order : left.nameSize - right.nameSize;
}

/// Puts the members from number @p first on in order; false when two bear one name.
bool JsonIndenter::sortMembers(std::size_t first, int depth)
{
    const auto begin = m_members.begin() + static_cast<std::ptrdiff_t>(first);
    const auto isAscending = [this, begin, end = m_members.end()] {
        return std::adjacent_find(
                   begin, end,
                   [this](const Member &left, const Member &right) { return compareNames(left, right) >= 0; })
            == end;
    };
    if (isAscending()) {
        return true;
    }
    const int start = begin->begin;
    std::sort(begin, m_members.end(),
              [this](const Member &left, const Member &right) { return compareNames(left, right) < 0; });
    if (!isAscending()) {
        return false;
    }
    m_sorted.resize(0);
    m_sorted.reserve(m_text.size() - start);
    for (auto member = begin; member != m_members.end(); ++member) {
        if (member != begin) {
            m_sorted.append(lineEnd, lineEndSize);
            m_sorted.append(depth * indentWidth, ' ');
        }
        m_sorted.append(m_text.constData() + member->begin, member->end - member->begin);
    }
    std::memcpy(m_text.data() + start, m_sorted.constData(), static_cast<std::size_t>(m_sorted.size()));
    return true;
}
