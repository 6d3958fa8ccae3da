// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonwriter.h"

#include <treeitem.h>

namespace {
bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == QLatin1Char('_');
}

bool isIdentifierCharacter(QChar character)
{
    return character.unicode() < 128 && isWordCharacter(character);
}

/// Whether @p word stands in @p text at or behind @p from with no character on either side that belongs to
/// it.
bool hasWord(const QString &text, QLatin1String word, int from, bool (*belongs)(QChar))
{
    for (int at = text.indexOf(word, from); at >= 0; at = text.indexOf(word, at + 1)) {
        const int end = at + word.size();
        if ((at == 0 || !belongs(text.at(at - 1))) && (end == text.size() || !belongs(text.at(end)))) {
            return true;
        }
    }
    return false;
}

bool needsBraces(const QString &text, int from)
{
    return hasWord(text, QLatin1String("if"), from, isWordCharacter)
        || hasWord(text, QLatin1String("channel"), from, isIdentifierCharacter);
}

QString directive(const TreeItem &item)
{
    return item.value(0).toString() + QLatin1String(" \"") + item.value(1).toString() + QLatin1String("\"\n");
}

QString block(const TreeItem &item)
{
    QString text = item.value(0).toString();
    const QString name = item.value(1).toString();
    if (!name.isEmpty()) {
        text += QLatin1Char(' ') + name;
    }
    text += QLatin1String(" {\n");
    // What made braces necessary stays in the text, so only what was added since has to be looked at. No word
    // spans the seam: a parameter's name is followed by a brace or parenthesis.
    bool braces = false;
    int seen = 0;
    for (int i = 0; i < item.childCount(); ++i) {
        const TreeItem *parameter = item.child(i);
        text += QLatin1String("    ") + parameter->value(0).toString();
        braces = braces || needsBraces(text, seen);
        seen = text.size();
        text += QLatin1Char(braces ? '{' : '(') + parameter->value(2).toString()
            + QLatin1String(braces ? "};\n" : ");\n");
    }
    return text + QLatin1String("};\n");
}
} // namespace

CommonWriter::CommonWriter(ConfigAccessService &service, const QString &configFile)
    : AbstractWriter(service, configFile)
{
}

QStringList CommonWriter::createConfig(TreeItem *root)
{
    return statements(*root);
}

bool CommonWriter::findItemIf(const QString &text) const
{
    return needsBraces(text, 0);
}

QStringList CommonWriter::statements(const TreeItem &root)
{
    QStringList texts;
    texts.reserve(root.childCount());
    for (int i = 0; i < root.childCount(); ++i) {
        const TreeItem &item = *root.child(i);
        const bool isDirective = item.value(0).toString().contains(QLatin1Char('@'));
        texts.append(isDirective ? directive(item) : block(item));
    }
    return texts;
}
