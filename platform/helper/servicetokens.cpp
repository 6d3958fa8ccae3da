// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "servicetokens.h"

namespace AdminEventsHelper {

namespace {

using Kind = ServiceToken::Kind;

class Splitter
{
public:
    explicit Splitter(const QByteArray &text)
        : m_text(text)
    {
    }

    QVector<ServiceToken> split()
    {
        while (m_at < m_text.size()) {
            const char c = m_text.at(m_at);
            if (c == '\n') {
                ++m_line;
                ++m_at;
            } else if (c == ' ' || c == '\t' || c == '\r') {
                ++m_at;
            } else {
                next(c);
            }
        }
        return m_tokens;
    }

private:
    void next(char c)
    {
        switch (c) {
        case '#':
            return take(Kind::Comment, lineEnd());
        case '@':
            return take(Kind::Pragma, lineEnd());
        case '"':
        case '\'':
            return takeString(c);
        case '(':
        case '{':
            return take(Kind::Open, m_at + 1);
        case ')':
        case '}':
            return take(Kind::Close, m_at + 1);
        case ';':
            return take(Kind::End, m_at + 1);
        case '\\':
        case ',':
        case '|':
        case '.':
        case ':':
            return take(Kind::Other, m_at + 1);
        default:
            return take(Kind::Word, wordEnd());
        }
    }

    int lineEnd() const
    {
        const int found = m_text.indexOf('\n', m_at);
        return found < 0 ? m_text.size() : found;
    }

    int wordEnd() const
    {
        static const QByteArray ends(" \t\r\n#'\"(){}\\;,|.@:");
        int end = m_at + 1;
        while (end < m_text.size() && !ends.contains(m_text.at(end))) {
            ++end;
        }
        return end;
    }

    void takeString(char quote)
    {
        int end = m_at + 1;
        while (end < m_text.size() && m_text.at(end) != quote) {
            end += quote == '"' && m_text.at(end) == '\\' ? 2 : 1;
        }
        if (end >= m_text.size()) {
            return take(Kind::Other, m_text.size());
        }
        const QByteArray inside = m_text.mid(m_at + 1, end - m_at - 1);
        m_tokens.append({Kind::String, inside, m_line, m_at});
        m_line += inside.count('\n');
        m_at = end + 1;
    }

    void take(Kind kind, int end)
    {
        m_tokens.append({kind, m_text.mid(m_at, end - m_at), m_line, m_at});
        m_line += m_tokens.last().text.count('\n');
        m_at = end;
    }

    const QByteArray &m_text;
    QVector<ServiceToken> m_tokens;
    int m_at = 0;
    int m_line = 1;
};

} // namespace

QVector<ServiceToken> splitServiceConfig(const QByteArray &text)
{
    return Splitter(text).split();
}

} // namespace AdminEventsHelper
