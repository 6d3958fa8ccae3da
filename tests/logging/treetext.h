// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <treeitem.h>

#include <QString>

/// A tree of the main configuration as text, to be compared and kept beside a sample: one line per node,
/// indented by its level, with the columns in square brackets; "-" stands for a column without a value, and
/// line breaks and backslashes are escaped.
inline QString treeText(const TreeItem &root, int level = 0)
{
    QString text = QString(level * 2, QLatin1Char(' '));
    for (int column = 0; column < root.columnCount(); ++column) {
        QString value = root.value(column).toString();
        value.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char('\n'), QLatin1String("\\n"));
        value.replace(QLatin1Char('\t'), QLatin1String("\\t"))
            .replace(QLatin1Char('\r'), QLatin1String("\\r"));
        text += root.value(column).isValid() ? QLatin1Char('[') + value + QLatin1Char(']')
                                             : QStringLiteral("-");
    }
    text += QLatin1Char('\n');
    for (int row = 0; row < root.childCount(); ++row) {
        text += treeText(*root.child(row), level + 1);
    }
    return text;
}
