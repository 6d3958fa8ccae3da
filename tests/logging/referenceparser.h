// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <treeitem.h>

#include <QRegExp>
#include <QStringList>

/**
 * The splitting of the main configuration, one step after the other and with the patterns themselves: slow,
 * and nothing is kept between two steps. What the real parser makes of small files is held against it.
 */
class ReferenceParser
{
public:
    /// A root that the caller owns.
    [[nodiscard]] static TreeItem *parse(const QString &text)
    {
        auto *root
            = new TreeItem({QStringLiteral("Parameter"), QStringLiteral("Name"), QStringLiteral("Value")});
        const QStringList statements = split(text);
        QRegExp quoted(QStringLiteral("(.+)\\s+(\\S*)\\s*\"(.*)\""));
        for (const QString &statement : statements) {
            if (quoted.indexIn(statement) >= 0 && quoted.cap(1).contains(QLatin1Char('@'))) {
                root->appendChild(new TreeItem({quoted.cap(1), quoted.cap(3), QVariant()}, root));
            }
        }
        QRegExp block(QStringLiteral("(([a-z]+)\\s+(\\S*)\\s*\\{(.*)\\};)"));
        for (const QString &statement : statements) {
            if (block.indexIn(statement) < 0) {
                continue;
            }
            auto *item = new TreeItem({block.cap(2), block.cap(3), QVariant()}, root);
            addParameters(item, block.cap(4));
            root->appendChild(item);
        }
        return root;
    }

private:
    static QStringList split(const QString &text)
    {
        QStringList statements;
        QString accumulator;
        int depth = 0;
        const QStringList lines = text.split(QLatin1Char('\n'), Qt::KeepEmptyParts);
        for (const QString &line : lines) {
            if (line.contains(QLatin1Char('{'))) {
                depth += line.count(QLatin1Char('{'));
            }
            if (line.contains(QLatin1Char('}'))) {
                depth -= line.count(QLatin1Char('}'));
            }
            if (depth == 0 && !accumulator.isEmpty()) {
                accumulator.append(line);
                statements.append(accumulator);
                accumulator.clear();
            } else {
                accumulator.append(line).append(QLatin1Char('\n'));
            }
        }
        return statements;
    }

    static bool closesEntry(const QString &line, const QString &accumulator)
    {
        const bool first = !line.isEmpty() && line.at(0) != QLatin1Char('(')
            && !line.contains(QLatin1String("and")) && !line.contains(QLatin1String("or"))
            && line.contains(QLatin1String(");"));
        const bool second = !accumulator.isEmpty() && !accumulator.contains(QLatin1String("and"))
            && !line.contains(QLatin1String("or")) && !line.contains(QLatin1String(");"))
            && line.contains(QLatin1String("))"));
        return first || second;
    }

    static void addParameters(TreeItem *block, const QString &body)
    {
        QStringList entries;
        QString accumulator;
        int parentheses = 0;
        int braces = 0;
        const auto close = [&](const QString &line) {
            entries.append(accumulator + line.trimmed());
            accumulator.clear();
        };
        const QStringList lines = body.split(QLatin1Char('\n'), Qt::KeepEmptyParts);
        for (const QString &line : lines) {
            if (line.contains(QLatin1Char('('))) {
                parentheses += line.count(QLatin1Char('('));
            } else if (line.contains(QLatin1Char('{'))) {
                braces += line.count(QLatin1Char('{'));
            }
            if (line.contains(QLatin1Char(')'))) {
                parentheses -= line.count(QLatin1Char(')'));
            } else if (line.contains(QLatin1Char('}'))) {
                braces -= line.count(QLatin1Char('}'));
            }
            if (braces == 0 && !accumulator.isEmpty() && accumulator.contains(QLatin1String("};"))) {
                close(line);
            } else if (parentheses != 0 || braces != 0) {
                accumulator.append(line.trimmed()).append(QLatin1Char('\n'));
            } else if (!accumulator.isEmpty() && accumulator.contains(QLatin1String(");"))) {
                close(line);
            } else if (closesEntry(line, accumulator)) {
                close(line);
            } else {
                accumulator.append(line.trimmed()).append(QLatin1Char('\n'));
            }
        }
        for (const QString &entry : qAsConst(entries)) {
            addParameter(block, entry);
        }
    }

    static void addParameter(TreeItem *block, const QString &entry)
    {
        QRegExp parentheses(QStringLiteral("\\((.*)\\)"));
        QRegExp braces(QStringLiteral("\\{(.*)\\}"));
        const bool inParentheses = parentheses.indexIn(entry) >= 0;
        const bool inBraces = braces.indexIn(entry) >= 0;
        if (!inParentheses && !inBraces) {
            return;
        }
        const bool nested = entry.contains(QLatin1Char('{'));
        const QString value = nested ? braces.cap(1) : parentheses.cap(1);
        QString name = entry.section(QLatin1Char(nested ? '{' : '('), 0, 0);
        name.remove(QLatin1Char(' '));
        name.remove(QLatin1Char('\n'));
        block->appendChild(new TreeItem({name, QVariant(), value}, block));
    }
};
