// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "logrotateparser.h"

#include <treeitem.h>

#include <KLocalizedString>

namespace {
/// What decoding has lost already.
QStringList undecoded(const QByteArray &bytes, const QString &text)
{
    QStringList losses;
    const int zero = bytes.indexOf('\0');
    const QList<QByteArray> before = (zero < 0 ? bytes : bytes.left(zero)).split('\n');
    const QStringList after = text.split(QLatin1Char('\n'));
    for (int i = 0; i < before.size(); ++i) {
        if (i >= after.size() || after.at(i).toUtf8() != before.at(i)) {
            losses.append(
                i18n("Line %1: bytes that are not UTF-8 text would be altered.", QString::number(i + 1)));
        }
    }
    if (zero >= 0) {
        losses.append(
            i18n("Line %1: everything from the zero byte on would be lost.", QString::number(before.size())));
    }
    return losses;
}

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
    const QString text = decode(bytes);
    scan = scanRotation(text);
    if (scan.isGood()) {
        scan.losses = undecoded(bytes, text) + scan.losses;
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
