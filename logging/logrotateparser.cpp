// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "logrotateparser.h"

#include <treeitem.h>

#include <KLocalizedString>

namespace {
TreeItem *append(TreeItem *parent, const QVector<QVariant> &data)
{
    auto *item = new TreeItem(data, parent);
    parent->appendChild(item);
    return item;
}
} // namespace

LogRotateParser::LogRotateParser(const QString &configFile, QObject *parent)
    : AbstractConfigParser(configFile, parent)
{
}

TreeItem *LogRotateParser::parse() const
{
    return tree(scan()).release();
}

RotationScan LogRotateParser::scan() const
{
    const QByteArray bytes = readBytes();
    RotationScan scan;
    if (bytes.isEmpty()) {
        scan.error = errorString();
        return scan;
    }
    scan = scanRotation(decode(bytes));
    if (scan.isGood()) {
        scan.losses = lostByDecoding(bytes) + scan.losses;
    } else {
        setErrorString(configFile() + QLatin1String(": ") + i18n("Bad config file"));
    }
    return scan;
}

std::unique_ptr<TreeItem> LogRotateParser::tree(const RotationScan &scan)
{
    if (!scan.isGood()) {
        return nullptr;
    }
    auto root = std::make_unique<TreeItem>(QVector<QVariant>{i18n("Parameter"), i18n("Value")});
    TreeItem *section = append(root.get(), {scan.header, QString()});
    for (const RotationScan::Directive &directive : scan.directives) {
        append(
            section,
            {directive.keyword, directive.isScript ? QVariant(directive.script) : QVariant(directive.value)});
    }
    return root;
}
