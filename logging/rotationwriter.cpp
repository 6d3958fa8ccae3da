// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "rotationwriter.h"

#include "logrotateparser.h"
#include "rotationkeywords.h"

#include <configaccessservice.h>
#include <treeitem.h>

RotationWriter::RotationWriter(ConfigAccessService &service, const QString &configFile)
    : AbstractWriter(service, configFile)
{
}

QStringList RotationWriter::createConfig(TreeItem *root)
{
    return root ? lines(*root) : QStringList();
}

QStringList RotationWriter::lines(const TreeItem &root)
{
    const TreeItem *section = root.child(0);
    if (!section) {
        return {};
    }
    QStringList lines{section->value(0).toString() + QLatin1String(" {")};
    for (int i = 0; i < section->childCount(); ++i) {
        const QString keyword = section->child(i)->value(0).toString();
        const QVariant &value = section->child(i)->value(1);
        if (!RotationKeywords::isScript(keyword)) {
            const QString text = value.toString();
            lines.append(QLatin1Char('\t') + keyword
                         + (text.isEmpty() ? QString() : QLatin1Char(' ') + text));
            continue;
        }
        lines.append(QLatin1Char('\t') + keyword);
        const QStringList script = value.userType() == QMetaType::QStringList
            ? value.toStringList()
            : value.toString().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &line : script) {
            lines.append(QLatin1String("\t\t") + line);
        }
        lines.append(QLatin1Char('\t') + RotationKeywords::scriptEnd);
    }
    lines.append(QStringLiteral("}"));
    return lines;
}

bool RotationWriter::isReadBack(const TreeItem &root)
{
    const QStringList written = lines(root);
    const RotationScan scan
        = scanRotation(AbstractConfigParser::decode(ConfigAccessService::contentOf(written)));
    const std::unique_ptr<TreeItem> read = LogRotateParser::tree(scan);
    return read && scan.losses.isEmpty() && lines(*read) == written;
}
