// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "changemarker.h"

#include "eventdisplay.h"
#include "eventtreeitem.h"

namespace {
void mark(EventTreeItem *item)
{
    if (item) {
        item->overlay = true;
    }
}

void markMember(EventTreeItem *item, QLatin1String name)
{
    if (item) {
        mark(item->member(name));
    }
}

EventTreeItem *parentOf(const EventTreeItem *item)
{
    return item ? item->parentItem() : nullptr;
}

/// Success and failure are kept together, and with the objects around them.
void markOutcome(EventTreeItem &item)
{
    EventTreeItem *parent = parentOf(&item);
    EventTreeItem *grandparent = parentOf(parent);
    markMember(parent, QLatin1String("fail"));
    markMember(parent, QLatin1String("succ"));
    mark(parent);
    mark(grandparent);
    mark(parentOf(grandparent));
    markMember(grandparent, QLatin1String("users"));
    markMember(grandparent, QLatin1String("groups"));
}

/// A changed list of subjects is kept with the other settings of its audit identifier.
void markSubjects(EventTreeItem &item, QLatin1String sibling)
{
    EventTreeItem *parent = parentOf(&item);
    mark(parent);
    mark(parentOf(parent));
    if (!parent) {
        return;
    }
    if (EventTreeItem *other = parent->member(QLatin1String("other"))) {
        mark(other);
        markMember(other, QLatin1String("fail"));
        markMember(other, QLatin1String("succ"));
    }
    markMember(parent, sibling);
}

void markChanged(EventTreeItem &item)
{
    mark(&item);
    // The names below are members of descriptions; accounts may bear them too.
    if (item.isSubject()) {
        return;
    }
    const QString &name = item.nativeName;
    if (name == QLatin1String("fail") || name == QLatin1String("succ")) {
        markOutcome(item);
    } else if (name == QLatin1String("groups")) {
        markSubjects(item, QLatin1String("users"));
    } else if (name == QLatin1String("users")) {
        markSubjects(item, QLatin1String("groups"));
    } else if (name == QLatin1String("enabled")) {
        EventTreeItem *parent = parentOf(&item);
        const EventTreeItem *grandparent = parentOf(parent);
        if (grandparent && grandparent->nativeName == QLatin1String("extend-message-params")) {
            // An extended parameter that is switched is written whole.
            for (int row = 0; row < parent->childCount(); ++row) {
                EventTreeItem *sibling = parent->eventChild(row);
                if (!sibling->nativeName.startsWith(QLatin1String("overlay"))) {
                    mark(sibling);
                }
            }
        }
    }
}

using Pause = std::function<void()>;

bool compareData(const EventTreeItem &reference, EventTreeItem &working, int column)
{
    if (!EventDisplay::sameDisplay(reference, working, column)) {
        markChanged(working);
        return false;
    }
    if (reference.notificationState != working.notificationState) {
        mark(&working);
        return false;
    }
    return true;
}

bool compareChildren(const EventTreeItem &reference, EventTreeItem &working);

/// True when both nodes still share the values of the load.
bool isUntouched(const EventTreeItem &reference, const EventTreeItem &working)
{
    return reference.rowData().constData() == working.rowData().constData()
        && reference.checkState == working.checkState
        && reference.notificationState == working.notificationState;
}

bool compareColumns(const EventTreeItem &reference, EventTreeItem &working, int columns)
{
    bool equal = compareChildren(reference, working);
    // What an untouched node shows depends on its switch at most, which is one of the children.
    if (isUntouched(reference, working)
        && (equal || reference.childCount() == 0 || reference.kind != EventTreeItem::Parameter)) {
        return equal;
    }
    for (int column = 0; column < columns; ++column) {
        equal = compareData(reference, working, column) && equal;
    }
    return equal;
}

bool compareChildren(const EventTreeItem &reference, EventTreeItem &working)
{
    const QVector<TreeItem *> &before = reference.nodes();
    if (before.isEmpty()) {
        return true;
    }
    const QVector<TreeItem *> &now = working.nodes();
    const int columns = reference.columnCount();
    bool equal = before.size() == now.size() && columns == working.columnCount();
    for (int row = 0; row < before.size(); ++row) {
        if (row >= now.size()) {
            return false;
        }
        const auto &was = *static_cast<const EventTreeItem *>(before.at(row));
        auto &is = *static_cast<EventTreeItem *>(now.at(row));
        // Most nodes are leaves that nobody has touched: they are worth no call each.
        if (was.childCount() > 0 || !isUntouched(was, is)) {
            equal = compareColumns(was, is, columns) && equal;
        }
    }
    return equal;
}

/// As compareColumns() of a group, with pauses between its events.
void compareGroup(const EventTreeItem &reference, EventTreeItem &working, int columns, const Pause &pause)
{
    for (int row = 0; row < reference.childCount() && row < working.childCount(); ++row) {
        compareColumns(*reference.eventChild(row), *working.eventChild(row), reference.columnCount());
        pause();
    }
    if (!isUntouched(reference, working)) {
        for (int column = 0; column < columns; ++column) {
            (void)compareData(reference, working, column);
        }
    }
}

/// Settles the marks below @p working; true when it is or holds something to write.
bool settle(const EventTreeItem *reference, EventTreeItem &working, const Pause &pause)
{
    bool holdsContent = false;
    for (int row = 0; row < working.childCount(); ++row) {
        const EventTreeItem *counterpart = reference ? reference->eventChild(row) : nullptr;
        holdsContent = settle(counterpart, *working.eventChild(row), pause) || holdsContent;
    }
    const bool isEvent = working.kind == EventTreeItem::Event;
    EventTreeItem *enabled = working.switchChild();
    const bool fromFile = reference && reference->overlay;
    if (working.overlay && !holdsContent && (working.isObject() || (isEvent && !enabled)) && !fromFile) {
        working.overlay = false;
    }
    const bool hasContent = working.overlay || holdsContent;
    if (hasContent && enabled && (isEvent || working.member(QLatin1String("message-params")))) {
        enabled->overlay = true;
    }
    if (isEvent) {
        pause();
    }
    return hasContent;
}
} // namespace

bool ChangeMarker::compareTrees(const EventTreeItem &reference, EventTreeItem &working)
{
    const int rows = reference.childCount();
    const int columns = reference.columnCount();
    if (rows != working.childCount() || columns != working.columnCount()) {
        return false;
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (!compareItems(*reference.eventChild(row), *working.eventChild(row), column)) {
                return false;
            }
        }
    }
    return true;
}

bool ChangeMarker::compareItems(const EventTreeItem &reference, EventTreeItem &working, int column)
{
    const bool equal = compareData(reference, working, column);
    // Only column 0 has children.
    return (column != 0 || compareChildren(reference, working)) && equal;
}

void ChangeMarker::markAll(const EventTreeItem &reference, EventTreeItem &working,
                           const std::function<void()> &pause)
{
    for (int row = 0; row < reference.childCount() && row < working.childCount(); ++row) {
        compareGroup(*reference.eventChild(row), *working.eventChild(row), reference.columnCount(), pause);
    }
    settle(&reference, working, pause);
}
