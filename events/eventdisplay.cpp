// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventdisplay.h"

#include "eventtreeitem.h"
#include "jsontext.h"

#include <KLocalizedString>

namespace {
using EventDisplay::SwitchText;

SwitchText textOf(const QVariant &value)
{
    bool isNumber = false;
    const uint number = value.toString().toUInt(&isNumber);
    if (!isNumber || number > 1) {
        return SwitchText::None;
    }
    return number == 1 ? SwitchText::On : SwitchText::Off;
}

/// A switch shows its state as text, everything else its value.
bool hasCheckBox(const EventTreeItem &item, int column)
{
    return column == 0 ? item.checkable : column == 1 && item.isAuditSwitch() && !item.switchChild();
}
} // namespace

EventDisplay::SwitchText EventDisplay::switchText(const EventTreeItem &item)
{
    if (item.kind != EventTreeItem::Parameter) {
        return SwitchText::NotASwitch;
    }
    if (item.childCount() > 0) {
        const EventTreeItem *enabled = item.switchChild();
        return enabled ? textOf(enabled->value(1)) : SwitchText::NotASwitch;
    }
    return item.isAuditSwitch() ? textOf(item.value(1)) : SwitchText::NotASwitch;
}

QVariant EventDisplay::displayValue(const EventTreeItem &item, int column)
{
    if (column == 1) {
        switch (switchText(item)) {
        case SwitchText::On:
            return i18n("On");
        case SwitchText::Off:
            return i18n("Off");
        case SwitchText::None:
            return {};
        case SwitchText::NotASwitch:
            break;
        }
    }
    return item.data(column);
}

QVariant EventDisplay::checkStateValue(const EventTreeItem &item, int column)
{
    return hasCheckBox(item, column) ? QVariant(item.checkState) : QVariant();
}

bool EventDisplay::sameDisplay(const EventTreeItem &reference, const EventTreeItem &working, int column)
{
    const SwitchText before = column == 1 ? switchText(reference) : SwitchText::NotASwitch;
    const SwitchText now = column == 1 ? switchText(working) : SwitchText::NotASwitch;
    if (before != now) {
        // Where nothing was shown before, nothing shown now is no difference.
        return before == SwitchText::None && displayValue(working, column).toString().isEmpty();
    }
    if (before == SwitchText::NotASwitch) {
        const QVariant &old = reference.value(column);
        const QVariant &value = working.value(column);
        // Values of different types would be converted, and every text counts as "true".
        const bool same
            = old.userType() == value.userType() ? old == value : old.toString() == value.toString();
        if (!same) {
            return !old.isValid() && value.toString().isEmpty();
        }
    }
    const bool boxBefore = hasCheckBox(reference, column);
    return boxBefore == hasCheckBox(working, column)
        && (!boxBefore || reference.checkState == working.checkState);
}

bool EventDisplay::isSwitch(const EventTreeItem &item)
{
    return item.kind == EventTreeItem::Parameter && (item.isAuditSwitch() || item.switchChild());
}

bool EventDisplay::isTextEditable(const EventTreeItem &item)
{
    // What is typed over an object, or over elements that a text cannot tell apart, could not be kept.
    if (!item.editable || isSwitch(item) || item.isObject() || item.childCount() > 0
        || item.kind < EventTreeItem::Parameter) {
        return false;
    }
    // Rules follow from the list of watched files; typed over, the two would disagree.
    if (item.nativeName == QLatin1String("message-audit-rules") && !item.isSubject()) {
        return false;
    }
    if (item.kind != EventTreeItem::List) {
        return item.kind == EventTreeItem::Parameter;
    }
    bool ok = false;
    const QJsonArray array = JsonText::parseArray(item.value(2).toString(), ok);
    return !ok || JsonText::arrayText(array) != item.value(1).toString() || JsonText::isPlainList(array);
}

QString EventDisplay::loadText()
{
    return i18n("This event generates a large volume of records in the logs");
}

QString EventDisplay::notificationText()
{
    return i18n("Notifications are enabled for this event");
}
