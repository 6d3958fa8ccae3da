// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonsettingsparser.h"

#include "blockentries.h"
#include "configpatterns.h"

#include <treeitem.h>

#include <algorithm>

namespace {
int tokenStart(const QString &text, int at, bool (*ends)(QChar))
{
    while (at > 0 && !ends(text.at(at - 1))) {
        --at;
    }
    return at;
}

bool isKeywordWithCapital(const QString &word)
{
    const auto isCapital = [](QChar c) { return c >= QLatin1Char('A') && c <= QLatin1Char('Z'); };
    const auto isSmall = [](QChar c) { return c >= QLatin1Char('a') && c <= QLatin1Char('z'); };
    return std::any_of(word.begin(), word.end(), isCapital)
        && std::all_of(word.begin(), word.end(), [&](QChar c) { return isCapital(c) || isSmall(c); });
}

/// Whether what matched as a keyword is but the end of the header of a block whose real keyword has a capital
/// letter, as in "Source s {" or "SOURCE s_local {".
bool belongsToCapitalKeyword(const QString &statement, const ConfigPatterns::Block &block)
{
    const auto endsToken = [](QChar c) { return c.isSpace(); };
    if (!block.name.isEmpty()) {
        const int keywordEnd = block.keywordAt + block.keyword.size();
        const int nameAt = statement.indexOf(block.name, keywordEnd);
        if (statement.midRef(keywordEnd, nameAt - keywordEnd).contains(QLatin1Char('\n'))) {
            return false; // the end of a comment, and then a keyword that is taken for a name
        }
    }
    const int start = tokenStart(statement, block.keywordAt, endsToken);
    const QString word = statement.mid(start, block.keywordAt - start + block.keyword.size());
    if (isKeywordWithCapital(word)) {
        return true;
    }
    if (!block.name.isEmpty()) {
        return false;
    }
    int gap = start;
    while (gap > 0 && statement.at(gap - 1).isSpace() && statement.at(gap - 1) != QLatin1Char('\n')) {
        --gap;
    }
    const int before = tokenStart(statement, gap, endsToken);
    return isKeywordWithCapital(statement.mid(before, gap - before));
}
} // namespace

CommonSettingsParser::CommonSettingsParser(const QString &configFile, QObject *parent)
    : AbstractConfigParser(configFile, parent)
{
}

TreeItem *CommonSettingsParser::parse() const
{
    return parseText(readConfig());
}

TreeItem *CommonSettingsParser::parseText(const QString &text)
{
    auto *root = new TreeItem({QStringLiteral("Parameter"), QStringLiteral("Name"), QStringLiteral("Value")});
    const QStringList statements = splitStatements(text);
    appendDirectives(root, statements);
    appendBlocks(root, statements);
    return root;
}

QStringList CommonSettingsParser::splitStatements(const QString &text)
{
    QStringList statements;
    QString statement;
    qint64 depth = 0;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        depth += line.count(QLatin1Char('{')) - line.count(QLatin1Char('}'));
        if (depth == 0 && !statement.isEmpty()) {
            statements.append(statement + line);
            statement.clear();
        } else {
            statement += line + QLatin1Char('\n');
        }
    }
    return statements;
}

void CommonSettingsParser::appendDirectives(TreeItem *root, const QStringList &statements)
{
    for (const QString &statement : statements) {
        const auto quoted = ConfigPatterns::matchQuoted(statement);
        if (quoted && quoted->before.contains(QLatin1Char('@'))) {
            root->appendChild(new TreeItem({quoted->before, quoted->text, QVariant()}, root));
        }
    }
}

void CommonSettingsParser::appendBlocks(TreeItem *root, const QStringList &statements)
{
    for (const QString &statement : statements) {
        const auto found = ConfigPatterns::matchBlock(statement);
        if (!found || belongsToCapitalKeyword(statement, *found)) {
            continue;
        }
        auto *block = new TreeItem({found->keyword, found->name, QVariant()}, root);
        const QStringList entries = splitBlockEntries(found->body);
        for (const QString &entry : entries) {
            appendParameter(block, entry);
        }
        root->appendChild(block);
    }
}

void CommonSettingsParser::appendParameter(TreeItem *block, const QString &entry)
{
    const QString inParentheses = ConfigPatterns::matchParentheses(entry);
    const QString inBraces = ConfigPatterns::matchBraces(entry);
    if (inParentheses.isNull() && inBraces.isNull()) {
        return;
    }
    const int brace = entry.indexOf(QLatin1Char('{'));
    const bool nested = brace >= 0;
    QString name = entry.left(nested ? brace : entry.indexOf(QLatin1Char('(')));
    name.remove(QLatin1Char(' ')).remove(QLatin1Char('\n'));
    const QString value = nested ? inBraces : inParentheses;
    block->appendChild(
        new TreeItem({name, QVariant(), value.isNull() ? QString(QLatin1String("")) : value}, block));
}
