// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringView>
#include <QVector>

/**
 * A text in the logging daemon's language (syslog-ng.conf(5)) as the daemon's own reader splits it: what is
 * the same here means the same to the daemon. Blanks and line breaks count only inside quotes and in Python
 * code.
 */
class ConfigTokens
{
public:
    enum Kind {
        Word,
        Punctuation, ///< one of ( ) { } ; ,
        String, ///< with its quotes, as it stands
        Comment, ///< with its "#", to the end of the line
        Code, ///< one line of a Python block, with its indentation
    };

    struct Token
    {
        Kind kind;
        int at; ///< in text()
        int size; ///< greater than 0
        int line; ///< from 1 on
    };

    explicit ConfigTokens(const QString &text);

    [[nodiscard]] const QString &text() const { return m_text; }
    /// All tokens but the comments.
    [[nodiscard]] const QVector<Token> &tokens() const { return m_tokens; }
    [[nodiscard]] const QVector<Token> &comments() const { return m_comments; }
    [[nodiscard]] QStringView view(const Token &token) const
    {
        return QStringView(m_text).mid(token.at, token.size);
    }

private:
    void skipBlanks();
    void readToken();
    void readCode();
    [[nodiscard]] int stringEnd() const;
    [[nodiscard]] bool startsPythonCode() const;
    void append(Kind kind, int end);

    QString m_text;
    QVector<Token> m_tokens;
    QVector<Token> m_comments;
    int m_at = 0;
    int m_line = 1;
};
