// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "maintree.h"

#include "commonsettingsparser.h"
#include "commonwriter.h"

#include <configaccessservice.h>
#include <treeitem.h>

std::unique_ptr<TreeItem> MainTree::read(const QByteArray &content)
{
    return std::unique_ptr<TreeItem>(CommonSettingsParser::parseText(AbstractConfigParser::decode(content)));
}

QByteArray MainTree::written(const TreeItem &root)
{
    return ConfigAccessService::contentOf(CommonWriter::statements(root));
}

bool MainTree::equal(const TreeItem &first, const TreeItem &second)
{
    if (first.childCount() != second.childCount()) {
        return false;
    }
    // A blank line before a directive becomes part of its first column.
    if (first.value(0).toString().trimmed() != second.value(0).toString().trimmed()) {
        return false;
    }
    for (int column = 1; column < qMax(first.columnCount(), second.columnCount()); ++column) {
        if (first.value(column).toString() != second.value(column).toString()) {
            return false;
        }
    }
    for (int row = 0; row < first.childCount(); ++row) {
        if (!equal(*first.child(row), *second.child(row))) {
            return false;
        }
    }
    return true;
}

QString MainTree::title(const TreeItem &statement)
{
    return QString(statement.value(0).toString() + QLatin1Char(' ') + statement.value(1).toString())
        .simplified();
}
