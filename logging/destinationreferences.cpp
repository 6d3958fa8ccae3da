// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationreferences.h"

#include "configtokens.h"
#include "destinationtext.h"

#include <treeitem.h>

#include <algorithm>

namespace {
using Parameter = DestinationReferences::Parameter;

const QLatin1String destinationKeyword("destination");

QString between(const ConfigTokens &tokens, int first, int last)
{
    const int from = tokens.tokens().at(first).at + tokens.tokens().at(first).size;
    return tokens.text().mid(from, tokens.tokens().at(last).at - from);
}

/// The node taken apart where parentheses close and a semicolon follows; just itself where it is not a plain
/// sequence of "name(value);".
QVector<Parameter> split(const TreeItem &node)
{
    const Parameter whole{node.value(0).toString(), node.value(2).toString()};
    if (!whole.value.contains(QLatin1Char(';'))) {
        return {whole};
    }
    const ConfigTokens tokens(whole.name + QLatin1Char('(') + whole.value + QLatin1String(");"));
    QVector<Parameter> parts;
    int depth = 0;
    int open = 0;
    for (int i = 0; i < tokens.tokens().size(); ++i) {
        const QStringView text = tokens.view(tokens.tokens().at(i));
        if (depth == 0) {
            const bool expected = i == open
                ? tokens.tokens().at(i).kind == ConfigTokens::Word
                : text == (i == open + 1 ? QLatin1String("(") : QLatin1String(";"));
            if (!expected) {
                return {whole};
            }
            if (i > open + 1) { // the semicolon
                open = i + 1;
                continue;
            }
        }
        depth += text == QLatin1String("(") ? 1 : 0;
        depth -= text == QLatin1String(")") ? 1 : 0;
        if (depth == 0 && i > open + 1) {
            parts.append({tokens.view(tokens.tokens().at(open)).toString(), between(tokens, open + 1, i)});
        }
    }
    return depth == 0 && open == tokens.tokens().size() ? parts : QVector<Parameter>{whole};
}

bool isLog(const TreeItem &block)
{
    return block.value(0).toString() == QLatin1String("log");
}

bool isReference(const Parameter &parameter, const QString &name)
{
    return parameter.name == destinationKeyword && DestinationText::bareName(parameter.value) == name;
}

/// Whether "destination(name)", or the same with braces, stands anywhere in @p text.
bool mentions(const QString &text, const QString &name)
{
    const ConfigTokens tokens(text);
    for (int i = 2; i < tokens.tokens().size(); ++i) {
        const QStringView before = tokens.view(tokens.tokens().at(i - 1));
        if (tokens.view(tokens.tokens().at(i - 2)) == destinationKeyword
            && (before == QLatin1String("(") || before == QLatin1String("{"))
            && DestinationText::bareName(tokens.view(tokens.tokens().at(i)).toString()) == name) {
            return true;
        }
    }
    return false;
}
} // namespace

QVector<DestinationReferences::Parameter> DestinationReferences::parameters(const TreeItem &block)
{
    QVector<Parameter> all;
    for (int row = 0; row < block.childCount(); ++row) {
        all += split(*block.child(row));
    }
    return all;
}

bool DestinationReferences::isNested(const TreeItem &root, const QString &name)
{
    const QString bare = DestinationText::bareName(name);
    for (int row = 0; row < root.childCount(); ++row) {
        if (!isLog(*root.child(row))) {
            continue;
        }
        const QVector<Parameter> all = parameters(*root.child(row));
        if (std::any_of(all.begin(), all.end(),
                        [&bare](const Parameter &parameter) { return mentions(parameter.value, bare); })) {
            return true;
        }
    }
    return false;
}

void DestinationReferences::isolate(const TreeItem &root, const QString &name)
{
    const QString bare = DestinationText::bareName(name);
    for (int row = 0; row < root.childCount(); ++row) {
        TreeItem *block = root.child(row);
        if (!isLog(*block)) {
            continue;
        }
        const QVector<Parameter> all = parameters(*block);
        const auto named = [&bare](const Parameter &parameter) { return isReference(parameter, bare); };
        if (std::none_of(all.begin(), all.end(), named)) {
            continue;
        }
        while (block->childCount() > 0) {
            block->deleteChild(block->childCount() - 1);
        }
        for (const Parameter &parameter : all) {
            const QString value = named(parameter) ? name : parameter.value;
            block->appendChild(new TreeItem({parameter.name, QVariant(), value}, block));
        }
    }
}
