// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "checkstates.h"

#include "eventtreeitem.h"

namespace {
int stateOf(const QVariant &value)
{
    const QString text = value.toString();
    if (text == QLatin1String("1")) {
        return Qt::Checked;
    }
    return text == QLatin1String("0") ? Qt::Unchecked : Qt::PartiallyChecked;
}
} // namespace

void CheckStates::takeFromValue(EventTreeItem *node)
{
    if (node->isAuditSwitch()) {
        node->checkState = stateOf(node->value(1));
    } else if (const EventTreeItem *enabled = node->switchChild()) {
        node->checkState = stateOf(enabled->value(1));
    }
}

void CheckStates::valueChanged(EventTreeItem *node)
{
    takeFromValue(node);
    EventTreeItem *owner = node->parentItem();
    if (!owner || owner->switchChild() != node) {
        return;
    }
    takeFromValue(owner);
    EventTreeItem *group = owner->parentItem();
    if (owner->kind == EventTreeItem::Event && group) {
        setDirChecked(group);
    }
}

CheckStates::Count CheckStates::countChildren(const EventTreeItem &item)
{
    Count count;
    for (int row = 0; row < item.childCount(); ++row) {
        const EventTreeItem *child = item.eventChild(row);
        if (child->checkable) {
            ++count.checkable;
            count.checked += child->checkState == Qt::Checked ? 1 : 0;
            count.partial += child->checkState == Qt::PartiallyChecked ? 1 : 0;
        }
    }
    return count;
}

void CheckStates::setDirChecked(EventTreeItem *group)
{
    if (group->kind != EventTreeItem::Group || !group->checkable || group->childCount() == 0) {
        return;
    }
    for (int row = 0; row < group->childCount(); ++row) {
        if (EventTreeItem *child = group->eventChild(row); child->checkable) {
            setDirChecked(child);
        }
    }
    const Count count = countChildren(*group);
    if (count.partial > 0) {
        group->checkState = Qt::PartiallyChecked;
    } else if (count.checked == 0) {
        group->checkState = Qt::Unchecked;
    } else {
        group->checkState = count.checked == count.checkable ? Qt::Checked : Qt::PartiallyChecked;
    }
}
