// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventtreeclone.h"

#include "eventlookup.h"
#include "eventtreeitem.h"

std::unique_ptr<EventTreeItem> EventTreeClone::copyNode(const EventTreeItem &source, EventTreeItem *parent)
{
    auto copy = std::make_unique<EventTreeItem>(source.rowData(), parent);
    copy->checkable = source.checkable;
    copy->checkState = source.checkState;
    copy->editable = source.editable;
    copy->childrenEditable = source.childrenEditable;
    copy->visible = source.visible;
    copy->overlay = source.overlay;
    copy->notRedirected = source.notRedirected;
    copy->generatesLoad = source.generatesLoad;
    copy->setHasAuditRules(source.hasAuditRules());
    copy->notificationState = source.notificationState;
    copy->conflictsWith = source.conflictsWith;
    copy->kind = source.kind;
    copy->nativeName = source.nativeName;
    copy->localizedName = source.localizedName;
    copy->reserve(source.childCount());
    for (int row = 0; row < source.childCount(); ++row) {
        copy->appendChild(copyNode(*source.eventChild(row), copy.get()).release());
    }
    return copy;
}

std::unique_ptr<EventTreeItem> EventTreeClone::clone(const EventTreeItem &root)
{
    std::unique_ptr<EventTreeItem> copy = copyNode(root, nullptr);
    // Links between events point into the tree that they belong to.
    const QHash<QString, EventTreeItem *> originals = EventLookup::eventsById(root);
    const QHash<QString, EventTreeItem *> copies = EventLookup::eventsById(*copy);
    for (const EventTreeItem *original : originals) {
        EventTreeItem *event = copies.value(original->nativeName);
        for (const EventTreeItem *needed : original->dependencies) {
            event->dependencies.append(copies.value(needed->nativeName));
        }
        for (const EventTreeItem *dependent : original->dependents) {
            event->dependents.append(copies.value(dependent->nativeName));
        }
    }
    return copy;
}
