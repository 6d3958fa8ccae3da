// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "configtokens.h"

namespace {
bool isPunctuation(QChar character)
{
    return QStringView(u"(){};,").contains(character);
}

bool isQuote(QChar character)
{
    return character == QLatin1Char('"') || character == QLatin1Char('\'');
}

bool endsWord(QChar character)
{
    return character.isSpace() || isPunctuation(character) || isQuote(character)
        || character == QLatin1Char('#');
}
} // namespace

ConfigTokens::ConfigTokens(const QString &text)
    : m_text(text)
{
    for (skipBlanks(); m_at < m_text.size(); skipBlanks()) {
        readToken();
        if (startsPythonCode()) {
            readCode();
        }
    }
}

void ConfigTokens::skipBlanks()
{
    for (; m_at < m_text.size() && m_text.at(m_at).isSpace(); ++m_at) {
        m_line += m_text.at(m_at) == QLatin1Char('\n') ? 1 : 0;
    }
}

void ConfigTokens::append(Kind kind, int end)
{
    const Token token{kind, m_at, end - m_at, m_line};
    (kind == Comment ? m_comments : m_tokens).append(token);
    m_line += view(token).toString().count(QLatin1Char('\n'));
    m_at = end;
}

int ConfigTokens::stringEnd() const
{
    const QChar quote = m_text.at(m_at);
    for (int end = m_at + 1; end < m_text.size(); ++end) {
        if (m_text.at(end) == quote) {
            return end + 1;
        }
        if (m_text.at(end) == QLatin1Char('\\') && quote == QLatin1Char('"')) {
            ++end;
        }
    }
    return m_text.size();
}

void ConfigTokens::readToken()
{
    const QChar first = m_text.at(m_at);
    if (isPunctuation(first)) {
        append(Punctuation, m_at + 1);
    } else if (isQuote(first)) {
        append(String, stringEnd());
    } else if (first == QLatin1Char('#')) {
        int end = m_text.indexOf(QLatin1Char('\n'), m_at);
        end = end < 0 ? m_text.size() : end;
        while (m_text.at(end - 1).isSpace()) {
            --end;
        }
        append(Comment, end);
    } else {
        int end = m_at + 1;
        while (end < m_text.size() && !endsWord(m_text.at(end))) {
            ++end;
        }
        append(Word, end);
    }
}

bool ConfigTokens::startsPythonCode() const
{
    const int count = m_tokens.size();
    return count >= 2 && m_tokens.last().at + 1 == m_at && view(m_tokens.last()) == QLatin1String("{")
        && view(m_tokens.at(count - 2)) == QLatin1String("python");
}

void ConfigTokens::readCode()
{
    // The daemon, too, finds the end of the code by its braces.
    int end = m_at;
    for (int depth = 1; end < m_text.size(); ++end) {
        depth += m_text.at(end) == QLatin1Char('{') ? 1 : 0;
        depth -= m_text.at(end) == QLatin1Char('}') ? 1 : 0;
        if (depth == 0) {
            break;
        }
    }
    while (m_at < end) {
        int lineEnd = m_text.indexOf(QLatin1Char('\n'), m_at);
        lineEnd = lineEnd < 0 || lineEnd > end ? end : lineEnd;
        int last = lineEnd;
        while (last > m_at && m_text.at(last - 1).isSpace()) {
            --last;
        }
        if (last > m_at) {
            append(Code, last);
        }
        m_line += lineEnd < end ? 1 : 0;
        m_at = lineEnd < end ? lineEnd + 1 : end;
    }
}
