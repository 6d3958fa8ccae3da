// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventreset.h"

#include "checkstates.h"
#include "eventtreeitem.h"
#include "jsontext.h"

#include <QHash>
#include <QJsonObject>

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

/// The text of an account list names every account, also those that the catalog knows nothing of.
void writeSubjectsText(EventTreeItem *subjects)
{
    QJsonObject text;
    for (int row = 0; row < subjects->childCount(); ++row) {
        const EventTreeItem *subject = subjects->eventChild(row);
        QJsonObject values;
        for (int member = 0; member < subject->childCount(); ++member) {
            const EventTreeItem *value = subject->eventChild(member);
            if (value->nativeName.startsWith(QLatin1String("overlay"))) {
                continue; // a record of the merge
            }
            values.insert(value->nativeName, value->value(1).toString());
        }
        text.insert(subject->nativeName, values);
    }
    subjects->setData(2, JsonText::compact(text));
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
        writeSubjectsText(item);
    }
}

bool isSet(const EventTreeItem &event, QLatin1String flag)
{
    const EventTreeItem *member = event.member(flag);
    return member && member->value(1).toDouble() != 0;
}
} // namespace

void EventReset::reset(EventTreeItem &event, const EventTreeItem &defaults)
{
    copyMembers(&event, &defaults);
    event.notRedirected = isSet(event, QLatin1String("is-not-redirected"));
    event.generatesLoad = isSet(event, QLatin1String("generates-load"));
    if (EventTreeItem *group = event.parentItem()) {
        CheckStates::setDirChecked(group);
    }
}
