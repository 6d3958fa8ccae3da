// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "foreigndestinations.h"

#include "abstractconfigparser.h"
#include "configtokens.h"
#include "destinationtext.h"
#include "filesystemtree.h"

#include <regularfile.h>
#include <systempaths.h>

namespace {
void addNames(const FileSystemNode &node, QStringList &names)
{
    const QString own = SystemPaths::resolve(SystemPaths::mainConfiguration());
    for (const QString &file : node.files) {
        const QString path = node.path + QLatin1Char('/') + file;
        if (file.endsWith(QLatin1String(".conf")) && path != own) {
            names += ForeignDestinations::namesIn(AbstractConfigParser::decode(readRegularFile(path).bytes));
        }
    }
    for (const auto &child : node.children) {
        addNames(*child, names);
    }
}
} // namespace

QStringList ForeignDestinations::names()
{
    QStringList names;
    const FileSystemTree tree(SystemPaths::resolve(SystemPaths::daemonDirectory()));
    if (tree.root()) {
        addNames(*tree.root(), names);
    }
    return names;
}

QStringList ForeignDestinations::namesIn(const QString &text)
{
    const ConfigTokens tokens(text);
    QStringList names;
    int depth = 0;
    for (int i = 0; i < tokens.tokens().size(); ++i) {
        const QStringView token = tokens.view(tokens.tokens().at(i));
        depth += token == QLatin1String("{") ? 1 : 0;
        depth -= token == QLatin1String("}") ? 1 : 0;
        if (depth == 0 && token == QLatin1String("destination") && i + 2 < tokens.tokens().size()
            && tokens.view(tokens.tokens().at(i + 2)) == QLatin1String("{")
            && (i == 0 || tokens.view(tokens.tokens().at(i - 1)) != QLatin1String("block"))) {
            names.append(DestinationText::bareName(tokens.view(tokens.tokens().at(i + 1)).toString()));
        }
    }
    return names;
}
