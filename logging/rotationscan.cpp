// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "rotationscan.h"

#include "rotationkeywords.h"

#include <KLocalizedString>

namespace {
constexpr int longestExcerpt = 80;

QString excerpt(const QString &text)
{
    const QString shown = text.simplified();
    return shown.size() <= longestExcerpt ? shown : shown.left(longestExcerpt - 1) + QChar(0x2026);
}

bool beginsFileName(const QString &text)
{
    return text.startsWith(QLatin1Char('/')) || text.startsWith(QLatin1Char('"'))
        || text.startsWith(QLatin1Char('\'')) || text.startsWith(QLatin1Char('~'));
}

bool holdsQuote(const QString &text)
{
    return text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\''));
}

bool isComment(const QString &simplified)
{
    return simplified.startsWith(QLatin1Char('#'));
}

class Scanner
{
public:
    [[nodiscard]] RotationScan scan(const QString &text);

private:
    enum State { BeforeSection, InSection, InScript, AfterSection };

    void line(const QString &text);
    void headerLine(const QString &text);
    void sectionLine(const QString &text);
    void directive(const QString &text);
    void scriptLine(const QString &text);
    void closed(const QString &rest);
    void finish();

    void lostComment(const QString &text)
    {
        m_scan.losses.append(
            i18n("Line %1: the comment “%2” would be lost.", QString::number(m_number), excerpt(text)));
    }
    void lost(const QString &text)
    {
        m_scan.losses.append(i18n("Line %1: “%2” would be lost.", QString::number(m_number), excerpt(text)));
    }
    void fail(const QString &reason)
    {
        if (m_scan.error.isEmpty()) {
            m_scan.error = reason;
        }
    }

    RotationScan m_scan;
    QStringList m_header;
    State m_state = BeforeSection;
    int m_number = 0;
    bool m_hereDocument = false;
};

RotationScan Scanner::scan(const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &each : lines) {
        ++m_number;
        line(each);
        if (!m_scan.isGood()) {
            break;
        }
    }
    finish();
    return m_scan;
}

void Scanner::line(const QString &text)
{
    const QString simplified = text.simplified();
    const bool droppedComment = text.startsWith(QLatin1Char('#'));
    if (droppedComment || (m_state != InScript && isComment(simplified))) {
        lostComment(text);
    } else if (m_state == InScript) {
        scriptLine(text); // an empty line, too, is part of a script
    } else if (simplified.isEmpty()) {
        return;
    } else if (m_state == BeforeSection) {
        headerLine(text);
    } else if (m_state == InSection) {
        if (holdsQuote(text) && text.trimmed() != simplified) {
            m_scan.losses.append(i18n("Line %1: blanks in “%2” would be altered.", QString::number(m_number),
                                      excerpt(simplified)));
        }
        sectionLine(simplified);
    } else {
        fail(i18n("Line %1: a second section begins with “%2”; this page knows files of one section only.",
                  QString::number(m_number), excerpt(text)));
    }
}

void Scanner::headerLine(const QString &text)
{
    const int brace = text.indexOf(QLatin1Char('{'));
    const QString names = brace < 0 ? text : text.left(brace);
    const QString simplified = names.simplified();
    if (!simplified.isEmpty()) {
        if (m_header.isEmpty() && !beginsFileName(simplified)) {
            fail(i18n("Line %1: “%2” stands before the names of the log files.", QString::number(m_number),
                      excerpt(simplified)));
            return;
        }
        if (simplified.contains(QLatin1Char('}')) || simplified.contains(QLatin1String(" #"))) {
            fail(i18n("Line %1: “%2” is not a list of log files.", QString::number(m_number),
                      excerpt(simplified)));
            return;
        }
        if (holdsQuote(names) && names.trimmed() != simplified) {
            m_scan.losses.append(i18n("Line %1: blanks in “%2” would be altered.", QString::number(m_number),
                                      excerpt(simplified)));
        }
        m_header.append(simplified);
    }
    if (brace < 0) {
        return;
    }
    if (m_header.isEmpty()) {
        fail(i18n("Line %1: no log files are named before “{”.", QString::number(m_number)));
        return;
    }
    m_scan.header = m_header.join(QLatin1Char(' '));
    m_state = InSection;
    const QString rest = text.mid(brace + 1).simplified();
    if (isComment(rest)) {
        lostComment(rest);
    } else if (!rest.isEmpty()) {
        sectionLine(rest);
    }
}

void Scanner::sectionLine(const QString &text)
{
    if (text.startsWith(QLatin1Char('}'))) {
        closed(text.mid(1).trimmed());
        return;
    }
    // A switch may share its line with the closing brace; a value would swallow it.
    const QString keyword = text.section(QLatin1Char(' '), 0, 0);
    if (text.endsWith(QLatin1String(" }")) && RotationKeywords::isSwitch(keyword)) {
        directive(text.left(text.size() - 2));
        closed(QString());
        return;
    }
    directive(text);
}

void Scanner::closed(const QString &rest)
{
    if (isComment(rest)) {
        lostComment(rest);
    } else if (!rest.isEmpty()) {
        fail(
            i18n("Line %1: “%2” stands behind the closing brace.", QString::number(m_number), excerpt(rest)));
    }
    m_state = AfterSection;
}

void Scanner::directive(const QString &text)
{
    int end = 0;
    while (end < text.size() && text.at(end) != QLatin1Char(' ') && text.at(end) != QLatin1Char('=')) {
        ++end;
    }
    const QString keyword = text.left(end);
    QString value = text.mid(end).trimmed();
    if (value.startsWith(QLatin1Char('='))) {
        value = value.mid(1).trimmed(); // "rotate = 4" and "rotate 4" are the same
    }
    const bool isScript = RotationKeywords::isScript(keyword);
    if (!isScript && !RotationKeywords::isDirective(keyword)) {
        fail(beginsFileName(keyword) ? i18n("Line %1: the log file “%2” stands inside a section.",
                                            QString::number(m_number), excerpt(keyword))
                                     : i18n("Line %1: the directive “%2” is not one that this page knows.",
                                            QString::number(m_number), excerpt(keyword)));
        return;
    }
    const QStringList words = value.split(QLatin1Char(' '));
    if (value.startsWith(QLatin1Char('=')) || words.contains(QLatin1String("{"))
        || words.contains(QLatin1String("}"))) {
        fail(i18n("Line %1: “%2” is not one directive with its value.", QString::number(m_number),
                  excerpt(text)));
        return;
    }
    if (isScript) {
        if (!value.isEmpty()) {
            lost(value);
        }
        m_state = InScript;
        m_hereDocument = false;
        value.clear();
    }
    m_scan.directives.append({m_number, keyword, value, {}, isScript});
}

void Scanner::scriptLine(const QString &text)
{
    const QString simplified = text.simplified();
    const QString first = simplified.section(QLatin1Char(' '), 0, 0);
    if (first == RotationKeywords::scriptEnd) {
        if (simplified.size() > first.size()) {
            lost(simplified.mid(first.size()));
        }
        m_state = InSection;
        return;
    }
    if (text.trimmed() != simplified) {
        m_scan.losses.append(i18n("Line %1: blanks in “%2” would be altered.", QString::number(m_number),
                                  excerpt(simplified)));
    } else if (m_hereDocument && text != QLatin1String("\t\t") + simplified) {
        m_scan.losses.append(i18n("Line %1: the indentation of “%2” would be altered.",
                                  QString::number(m_number), excerpt(simplified)));
    }
    m_hereDocument = m_hereDocument || simplified.contains(QLatin1String("<<"));
    m_scan.directives.last().script.append(simplified);
}

void Scanner::finish()
{
    if (!m_scan.isGood()) {
        return;
    }
    if (m_state == BeforeSection) {
        fail(m_header.isEmpty() ? i18n("The file names no log files.")
                                : i18n("The names of the log files are not followed by “{”."));
    } else if (m_state == InScript) {
        fail(i18n("Line %1: the script “%2” has no “endscript”.",
                  QString::number(m_scan.directives.last().line), m_scan.directives.last().keyword));
    }
}
} // namespace

RotationScan scanRotation(const QString &text)
{
    return Scanner().scan(text);
}
