// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemeaning.h"

#include <eventtreeitem.h>
#include <jsontext.h>

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace {
/// What the writer makes of a list: its elements, unless the shown text was edited.
QJsonArray effectiveList(const EventTreeItem &item)
{
    bool ok = false;
    const QJsonArray array = JsonText::parseArray(item.value(2).toString(), ok);
    const QString shown = item.value(1).toString();
    if (ok && JsonText::arrayText(array) == shown) {
        return array;
    }
    return shown.isEmpty() ? QJsonArray() : QJsonArray::fromStringList(shown.split(QStringLiteral(", ")));
}

/// Children in the order of their names: a list that the builder adds stands last until it is saved.
QVector<const EventTreeItem *> sortedChildren(const EventTreeItem &item)
{
    QVector<const EventTreeItem *> children;
    for (int row = 0; row < item.childCount(); ++row) {
        children.append(item.eventChild(row));
    }
    std::stable_sort(children.begin(), children.end(), [](const EventTreeItem *a, const EventTreeItem *b) {
        return a->nativeName < b->nativeName;
    });
    return children;
}

/// Everything that a tree means, one line a node.
void describe(const EventTreeItem &item, const QString &indent, QStringList &lines)
{
    const QVector<const EventTreeItem *> children = sortedChildren(item);
    for (const EventTreeItem *node : children) {
        const EventTreeItem &child = *node;
        if (TreeMeaning::isRecord(child)) {
            continue;
        }
        const QString value = child.kind == EventTreeItem::List ? JsonText::compact(effectiveList(child))
            : child.isObject()                                  ? QStringLiteral("{}")
                                                                : child.value(1).toString();
        const bool hasState = child.checkable || child.switchChild() || child.isAuditSwitch();
        lines.append(QStringLiteral("%1%2 kind=%3 state=%4 value=%5")
                         .arg(indent, child.nativeName)
                         .arg(child.kind)
                         .arg(hasState ? child.checkState : -1)
                         .arg(value));
        describe(child, indent + QLatin1Char(' '), lines);
    }
}
} // namespace

bool TreeMeaning::isRecord(const EventTreeItem &item)
{
    static const QRegularExpression pattern(QStringLiteral("^overlay\\d+$"));
    return !item.overlay && !item.isSubject() && pattern.match(item.nativeName).hasMatch();
}

QStringList TreeMeaning::of(const EventTreeItem &root)
{
    QStringList lines;
    describe(root, {}, lines);
    return lines;
}

QString TreeMeaning::firstDifference(const QStringList &expected, const QStringList &actual)
{
    for (int i = 0; i < qMax(expected.size(), actual.size()); ++i) {
        if (expected.value(i) != actual.value(i)) {
            return QStringLiteral("line %1: expected \"%2\", got \"%3\"")
                .arg(i)
                .arg(expected.value(i), actual.value(i));
        }
    }
    return {};
}
