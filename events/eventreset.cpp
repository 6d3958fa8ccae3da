// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventreset.h"

#include "checkstates.h"
#include "eventlookup.h"
#include "eventtreeitem.h"
#include "subjectsjson.h"

#include <QHash>

#include <optional>

namespace {
/// What a switch value says; nothing for a value that is no position of a switch.
std::optional<Qt::CheckState> stateOf(const QVariant &value)
{
    const QString text = value.toString();
    if (text == QLatin1String("1")) {
        return Qt::Checked;
    }
    if (text == QLatin1String("0")) {
        return Qt::Unchecked;
    }
    return {};
}

void copyLeaf(EventTreeItem *item, const EventTreeItem *defaults)
{
    item->setData(1, defaults->data(1));
    item->setData(2, defaults->data(2));
    EventTreeItem *switched = nullptr;
    if (item->isAuditSwitch()) {
        switched = item;
    } else if (item->parentItem()->switchChild() == item) {
        switched = item->parentItem();
    }
    const std::optional<Qt::CheckState> state = stateOf(item->value(1));
    if (switched && state) {
        switched->checkState = *state;
    }
}

void copyMembers(EventTreeItem *item, const EventTreeItem *defaults)
{
    QHash<QString, const EventTreeItem *> byName;
    for (int row = 0; row < defaults->childCount(); ++row) {
        const EventTreeItem *child = defaults->eventChild(row);
        byName.insert(child->nativeName, child);
    }
    for (int row = 0; row < item->childCount(); ++row) {
        EventTreeItem *child = item->eventChild(row);
        const EventTreeItem *counterpart = byName.value(child->nativeName);
        if (!counterpart) {
            continue;
        }
        if (child->childCount() > 0) {
            copyMembers(child, counterpart);
        } else {
            copyLeaf(child, counterpart);
        }
    }
    if (item->kind == EventTreeItem::Subjects) {
        // The text names every account, also those that the catalog knows nothing of.
        for (int row = 0; row < item->childCount(); ++row) {
            SubjectsJson::refreshSubject(*item->eventChild(row));
        }
        SubjectsJson::refreshList(*item);
    }
}
} // namespace

void EventReset::reset(EventTreeItem &event, const EventTreeItem &defaults)
{
    copyMembers(&event, &defaults);
    event.notRedirected = EventLookup::isFlagSet(event, QLatin1String("is-not-redirected"));
    event.generatesLoad = EventLookup::isFlagSet(event, QLatin1String("generates-load"));
    if (EventTreeItem *group = event.parentItem()) {
        CheckStates::setDirChecked(group);
    }
}
