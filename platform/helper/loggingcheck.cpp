// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "loggingcheck.h"

#include "logfilepath.h"
#include "servicetokens.h"
#include "shown.h"

#include <KLocalizedString>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>

namespace AdminEventsHelper {

namespace {

using Kind = ServiceToken::Kind;

// What Debian 12 ships.
constexpr int knownMajor = 3;
constexpr int knownMinor = 38;
constexpr int depthLimit = 200;
constexpr int ownClassLimit = 2000; // in pieces of the text

/** Something in a text that needs to be known from a former one. */
struct Privilege
{
    QByteArray text; // comparable: blanks and line breaks do not count
    int line = 1;
};

QByteArray keyword(const QByteArray &word)
{
    // The service takes both signs for the same.
    return word.toLower().replace('_', '-');
}

bool runsCode(const QByteArray &word)
{
    static const std::array<const char *, 4> beginnings{"python", "java", "lua", "perl"};
    static const QSet<QByteArray> words{"hook-commands", "exec",    "confgen",        "class-path",
                                        "jvm-options",   "include", "client-lib-dir", "block"};
    const QByteArray plain = keyword(word);
    return words.contains(plain)
        || std::any_of(beginnings.cbegin(), beginnings.cend(),
                       [&plain](const char *beginning) { return plain.startsWith(beginning); });
}

bool opensFile(const QByteArray &word)
{
    static const QSet<QByteArray> words{"file", "pipe", "pseudofile", "base-dir", "wildcard-file"};
    return words.contains(keyword(word));
}

/** Walks over a text and collects what needs to be known. */
class Collector
{
public:
    explicit Collector(const QByteArray &text)
        : m_text(text)
        , m_tokens(splitServiceConfig(text))
    {
    }

    /** The line of what is out of balance, or 0. */
    int collect()
    {
        collectBackticks();
        for (m_at = 0; m_at < m_tokens.size(); ++m_at) {
            if (!step(m_tokens.at(m_at))) {
                return m_tokens.at(m_at).line;
            }
        }
        return m_open.isEmpty() ? 0 : m_open.last().line;
    }

    const QVector<Privilege> &privileges() const { return m_privileges; }

private:
    struct Opened
    {
        char sign = '(';
        QByteArray word; // before a parenthesis; for a brace the first of its statement
        int line = 1;
    };

    bool step(const ServiceToken &token)
    {
        switch (token.kind) {
        case Kind::Open:
            m_open.append(
                {token.text.at(0), keyword(token.text == "(" ? m_lastWord : m_firstWord), token.line});
            startStatement();
            return m_open.size() <= depthLimit;
        case Kind::Close:
            if (m_open.isEmpty() || (m_open.last().sign == '(') != (token.text == ")")) {
                return false;
            }
            // What follows "if (…)" still belongs to the statement.
            m_firstWord = token.text == ")" ? m_open.last().word : QByteArray();
            m_lastWord.clear();
            m_open.removeLast();
            return true;
        case Kind::End:
            startStatement();
            return true;
        case Kind::Pragma:
            lookAtPragma(token);
            return true;
        case Kind::Comment:
            lookAtComment(token);
            return true;
        case Kind::Word:
            lookAtWord(token);
            m_lastWord = token.text;
            m_firstWord = m_firstWord.isEmpty() ? token.text : m_firstWord;
            return true;
        case Kind::Other:
            return !token.text.startsWith('"') && !token.text.startsWith('\'');
        case Kind::String:
            break;
        }
        return true;
    }

    void startStatement()
    {
        m_firstWord.clear();
        m_lastWord.clear();
    }

    void add(const QByteArray &text, int line) { m_privileges.append({text, line}); }

    // Names in backticks are replaced before anything else is read, also in strings and comments.
    void collectBackticks()
    {
        int line = 1;
        int counted = 0;
        for (int begin = m_text.indexOf('`'); begin >= 0;) {
            const int end = m_text.indexOf('`', begin + 1);
            if (end == begin + 1) { // two stand for the sign itself
                begin = m_text.indexOf('`', end + 1);
                continue;
            }
            const QByteArray name = m_text.mid(begin, end < 0 ? 1 : end - begin + 1);
            line += m_text.mid(counted, begin - counted).count('\n');
            counted = begin;
            add(name, line);
            begin = end < 0 ? -1 : m_text.indexOf('`', end + 1);
        }
    }

    void lookAtPragma(const ServiceToken &token)
    {
        const QByteArray simple = token.text.simplified();
        static const QRegularExpression harmless(QStringLiteral("^@\\s*(version|requires)\\b"));
        if (!harmless.match(QString::fromUtf8(simple)).hasMatch()) {
            add(simple, token.line);
        }
    }

    // Within the parentheses of some statements the service does not know comments.
    void lookAtComment(const ServiceToken &token)
    {
        if (m_open.isEmpty() || m_open.last().sign != '(') {
            return;
        }
        const QVector<ServiceToken> words = splitServiceConfig(token.text.mid(1));
        const bool suspicious = std::any_of(words.cbegin(), words.cend(), [](const ServiceToken &word) {
            return word.kind == Kind::Comment || word.kind == Kind::Pragma
                || (word.kind == Kind::Word
                    && (runsCode(word.text) || opensFile(word.text) || keyword(word.text) == "program"));
        });
        if (suspicious) {
            add(token.text.simplified(), token.line);
        }
    }

    void lookAtWord(const ServiceToken &token)
    {
        const ServiceToken following = followingCode();
        if (following.kind != Kind::Open
            && !(following.kind == Kind::String && keyword(token.text) == "include")
            && keyword(token.text) != "block") {
            return;
        }
        if (m_at < m_coveredUntil) {
            return; // a part of something that is compared as a whole
        }
        if (following.text == "{" && !m_firstWord.isEmpty()) {
            return; // the name of an object
        }
        if (runsCode(token.text)) {
            if (!isOwnClass(m_at)) {
                add(takeConstruct(), token.line);
            }
        } else if (keyword(token.text) == "program" && !isInFilter()) {
            add(takeConstruct(), token.line);
        } else if (opensFile(token.text) && following.text == "(") {
            const QByteArray file = argumentAt(m_at + 2);
            if (!isLogFilePath(judged(m_at + 2, file))) {
                add(keyword(token.text) + " " + file, token.line);
            }
        }
    }

    ServiceToken followingCode() const
    {
        const auto found
            = std::find_if(m_tokens.cbegin() + m_at + 1, m_tokens.cend(), [](const ServiceToken &token) {
                  return token.kind != Kind::Comment && token.kind != Kind::Pragma;
              });
        return found == m_tokens.cend() ? ServiceToken() : *found;
    }

    /** As a filter, "program" only compares a name. */
    bool isInFilter() const
    {
        for (int i = m_open.size() - 1; i >= 0; --i) {
            const Opened &opened = m_open.at(i);
            static const QSet<QByteArray> conditions{"if", "elif", "condition", "filter"};
            if (conditions.contains(opened.word) || (opened.sign == '{' && opened.word == "rewrite")) {
                return true;
            }
            if (opened.sign == '{') {
                return false;
            }
        }
        return false;
    }

    /** From a word to what closes the bracket that follows it, as it is compared. */
    QByteArray takeConstruct()
    {
        QByteArray construct;
        int depth = 0;
        for (int i = m_at; i < m_tokens.size(); ++i) {
            const ServiceToken &token = m_tokens.at(i);
            if (token.kind == Kind::Comment || token.kind == Kind::Pragma) {
                continue;
            }
            depth += token.kind == Kind::Open ? 1 : (token.kind == Kind::Close ? -1 : 0);
            // Quotes again, so that no text can pose as another.
            construct += token.kind == Kind::String ? '"' + token.text + '"' : token.text;
            construct += ' ';
            m_coveredUntil = i + 1;
            if ((token.kind == Kind::Close || token.kind == Kind::End) && depth <= 0) {
                break;
            }
        }
        return construct;
    }

    /** Whether it is "python(class("…") options(…) …)" with a class of the product's own package. */
    bool isOwnClass(int first) const
    {
        if (keyword(m_tokens.at(first).text) != "python" || first + 5 >= m_tokens.size()
            || m_tokens.at(first + 1).text != "(" || keyword(m_tokens.at(first + 2).text) != "class"
            || m_tokens.at(first + 3).text != "("
            || !m_tokens.at(first + 4).text.startsWith("syslog_ng_mod_nivra.")) {
            return false;
        }
        int depth = 0;
        const int end = std::min(m_tokens.size(), first + ownClassLimit);
        for (int i = first + 1; i < end; ++i) {
            const ServiceToken &token = m_tokens.at(i);
            depth += token.kind == Kind::Open ? 1 : (token.kind == Kind::Close ? -1 : 0);
            if (token.kind == Kind::Word && keyword(token.text) == "loaders") {
                return false;
            }
            if (depth == 0) {
                return true;
            }
        }
        return false;
    }

    /** A path as it is to be judged: quotes and backslashes, where they are escaped, are but parts of names.
     */
    QByteArray judged(int at, const QByteArray &path) const
    {
        if (at >= m_tokens.size() || m_text.at(m_tokens.at(at).position) != '"') {
            return path;
        }
        QByteArray plain;
        for (int i = 0; i < path.size(); ++i) {
            const bool isSign = path.at(i) == '\\' && i + 1 < path.size()
                && (path.at(i + 1) == '\\' || path.at(i + 1) == '"');
            plain += isSign ? '_' : path.at(i);
            i += isSign ? 1 : 0;
        }
        return plain;
    }

    QByteArray argumentAt(int at) const
    {
        if (at >= m_tokens.size()) {
            return {};
        }
        if (m_tokens.at(at).kind == Kind::String) {
            return m_tokens.at(at).text;
        }
        // Without quotes a path falls apart at its dots and colons.
        int end = m_tokens.at(at).position;
        while (end < m_text.size() && !QByteArray(" \t\r\n)(;").contains(m_text.at(end))) {
            ++end;
        }
        return m_text.mid(m_tokens.at(at).position, end - m_tokens.at(at).position);
    }

    const QByteArray &m_text;
    const QVector<ServiceToken> m_tokens;
    QVector<Privilege> m_privileges;
    QVector<Opened> m_open;
    QByteArray m_firstWord;
    QByteArray m_lastWord;
    int m_at = 0;
    int m_coveredUntil = 0;
};

} // namespace

Outcome LoggingCheck::check(const QString &path, const QByteArray &content, const QList<QByteArray> &former)
{
    if (former.contains(content)) {
        return Outcome::success();
    }
    Collector collector(content);
    if (const int line = collector.collect(); line != 0) {
        return Outcome::failure(i18n(
            "Line %1 of the new content of \"%2\": a bracket or a quotation mark lacks its counterpart, or "
            "brackets are nested too deeply.",
            QString::number(line), path));
    }
    if (collector.privileges().isEmpty()) {
        return Outcome::success();
    }
    QSet<QByteArray> known;
    for (const QByteArray &text : former) {
        Collector before(text);
        (void)before.collect();
        for (const Privilege &privilege : before.privileges()) {
            known.insert(privilege.text);
        }
    }
    for (const Privilege &privilege : collector.privileges()) {
        if (!known.contains(privilege.text)) {
            return Outcome::failure(
                i18n("Line %1 of the new content of \"%2\" could run programs, read other files or write to "
                     "files of the system, which the present one does not: %3",
                     QString::number(privilege.line), path, shown(privilege.text)));
        }
    }
    return Outcome::success();
}

bool LoggingCheck::isForNewerService(const QByteArray &content)
{
    static const QRegularExpression number(
        QStringLiteral("^@\\s*version\\s*:?\\s*[\"']?(\\d{1,6})\\.(\\d{1,6})"));
    const QVector<ServiceToken> tokens = splitServiceConfig(content);
    return std::any_of(tokens.cbegin(), tokens.cend(), [](const ServiceToken &token) {
        const QRegularExpressionMatch match = token.kind == Kind::Pragma
            ? number.match(QString::fromUtf8(token.text))
            : QRegularExpressionMatch();
        const int major = match.captured(1).toInt();
        return match.hasMatch()
            && (major > knownMajor || (major == knownMajor && match.captured(2).toInt() > knownMinor));
    });
}

} // namespace AdminEventsHelper
