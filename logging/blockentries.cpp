// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "blockentries.h"

#include <QVector>

namespace {
const QLatin1String braceEnd("};");
const QLatin1String parenthesisEnd(");");

class EntrySplitter
{
public:
    void add(const QString &line);
    [[nodiscard]] const QStringList &entries() const { return m_entries; }

private:
    void count(const QString &line);
    [[nodiscard]] bool closes(const QString &line) const;
    void continueWith(const QString &line);
    void closeWith(const QString &line);

    QStringList m_entries;
    QString m_entry;
    int m_parentheses = 0;
    int m_braces = 0;
    // Kept while the entry grows, line by line, so that it is not searched again for each line.
    bool m_hasBraceEnd = false;
    bool m_hasParenthesisEnd = false;
    bool m_hasAnd = false;
};

void EntrySplitter::count(const QString &line)
{
    const int opened = line.count(QLatin1Char('('));
    if (opened > 0) {
        m_parentheses += opened;
    } else {
        m_braces += line.count(QLatin1Char('{'));
    }
    const int closed = line.count(QLatin1Char(')'));
    if (closed > 0) {
        m_parentheses -= closed;
    } else {
        m_braces -= line.count(QLatin1Char('}'));
    }
}

bool EntrySplitter::closes(const QString &line) const
{
    const bool hasOr = line.contains(QLatin1String("or"));
    const bool hasEnd = line.contains(parenthesisEnd);
    if (!line.isEmpty() && line.at(0) != QLatin1Char('(') && !line.contains(QLatin1String("and")) && !hasOr
        && hasEnd) {
        return true;
    }
    return !m_entry.isEmpty() && !m_hasAnd && !hasOr && !hasEnd && line.contains(QLatin1String("))"));
}

void EntrySplitter::continueWith(const QString &line)
{
    const QString trimmed = line.trimmed();
    m_hasBraceEnd = m_hasBraceEnd || trimmed.contains(braceEnd);
    m_hasParenthesisEnd = m_hasParenthesisEnd || trimmed.contains(parenthesisEnd);
    m_hasAnd = m_hasAnd || trimmed.contains(QLatin1String("and"));
    m_entry += trimmed + QLatin1Char('\n');
}

void EntrySplitter::closeWith(const QString &line)
{
    m_entries.append(m_entry + line.trimmed());
    m_entry.clear();
    m_hasBraceEnd = m_hasParenthesisEnd = m_hasAnd = false;
}

void EntrySplitter::add(const QString &line)
{
    count(line);
    const bool isOpen = m_parentheses != 0 || m_braces != 0;
    if ((m_braces == 0 && m_hasBraceEnd) || (!isOpen && (m_hasParenthesisEnd || closes(line)))) {
        closeWith(line);
    } else {
        continueWith(line);
    }
}
} // namespace

QStringList splitBlockEntries(const QString &body)
{
    EntrySplitter splitter;
    const QStringList lines = body.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        splitter.add(line);
    }
    return splitter.entries();
}
