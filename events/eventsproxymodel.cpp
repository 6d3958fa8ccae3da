// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventsproxymodel.h"

#include "checkabletreemodel.h"
#include "eventtreeitem.h"
#include "fuzzymatch.h"

EventsProxyModel::EventsProxyModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

void EventsProxyModel::setFilterQuery(const QString &query)
{
    m_query = FuzzyMatch::folded(query);
    invalidateFilter();
}

void EventsProxyModel::setFilterMode(FilterMode mode)
{
    m_mode = mode;
    invalidateFilter();
}

bool EventsProxyModel::matchFilter(const QString &text) const
{
    return FuzzyMatch::containsFolded(text, m_query);
}

bool EventsProxyModel::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const EventTreeItem *above = m_tree ? m_tree->itemAt(parent) : nullptr;
    const EventTreeItem *item = above ? above->eventChild(row) : nullptr;
    if (!item) {
        return false;
    }
    switch (item->kind) {
    case EventTreeItem::Event:
        return acceptsEvent(*item);
    case EventTreeItem::Group:
        return acceptsGroup(*item);
    default:
        // Rows are shown only below accepted rows, so the query plays no part here.
        return item->visible;
    }
}

bool EventsProxyModel::hasChildren(const QModelIndex &parent) const
{
    const EventTreeItem *item = parent.isValid() ? CheckableTreeModel::shownItem(parent) : nullptr;
    if (!item || item->kind == EventTreeItem::Group) {
        return QSortFilterProxyModel::hasChildren(parent);
    }
    // A view asks this of every event. The base class would answer by looking at all of its children,
    // and would filter them again at every key stroke.
    if (parent.column() > 0) {
        return false;
    }
    for (int row = 0; row < item->childCount(); ++row) {
        if (item->eventChild(row)->visible) {
            return true;
        }
    }
    return false;
}

void EventsProxyModel::setSourceModel(QAbstractItemModel *model)
{
    m_tree = qobject_cast<CheckableTreeModel *>(model);
    QSortFilterProxyModel::setSourceModel(model);
}

bool EventsProxyModel::acceptsEvent(const EventTreeItem &event) const
{
    const EventTreeItem *group = event.parentItem();
    switch (m_mode) {
    case All:
        return matchFilter(event.nativeName) || matchFilter(event.localizedName)
            || (group && (matchFilter(group->nativeName) || matchFilter(group->localizedName)));
    case EventName:
        return matchFilter(event.localizedName);
    case EventId:
        return matchFilter(event.nativeName);
    case GroupName:
        return group && matchFilter(group->localizedName);
    case GroupId:
        return group && matchFilter(group->nativeName);
    }
    return false;
}

bool EventsProxyModel::acceptsGroup(const EventTreeItem &group) const
{
    switch (m_mode) {
    case All:
        if (matchFilter(group.localizedName) || matchFilter(group.nativeName)) {
            return true;
        }
        break;
    case GroupName:
        return matchFilter(group.localizedName);
    case GroupId:
        return matchFilter(group.nativeName);
    case EventName:
    case EventId:
        break;
    }
    for (int row = 0; row < group.childCount(); ++row) {
        const EventTreeItem *child = group.eventChild(row);
        if (child->kind != EventTreeItem::Event) {
            continue;
        }
        if ((m_mode != EventName && matchFilter(child->nativeName))
            || (m_mode != EventId && matchFilter(child->localizedName))) {
            return true;
        }
    }
    return false;
}
