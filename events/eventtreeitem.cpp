// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventtreeitem.h"

#include <algorithm>

namespace {
/// Equality that mostly needs no call: walks over whole trees ask it of every node.
bool isNamed(const QString &name, QLatin1String expected)
{
    if (name.size() != expected.size()) {
        return false;
    }
    const auto *letters = reinterpret_cast<const uchar *>(expected.data());
    return std::equal(name.begin(), name.end(), letters, [](QChar a, uchar b) { return a.unicode() == b; });
}

bool isObjectText(const QVariant &json)
{
    return json.isValid() && json.toString().startsWith(QLatin1Char('{'));
}
} // namespace

EventTreeItem::EventTreeItem(const QVector<QVariant> &itemData, EventTreeItem *parent)
    : TreeItem(itemData, parent)
{
}

EventTreeItem::EventTreeItem(const EventTreeItem &source, EventTreeItem *parent)
    : TreeItem(source.rowData(), parent)
    , checkable(source.checkable)
    , editable(source.editable)
    , childrenEditable(source.childrenEditable)
    , visible(source.visible)
    , overlay(source.overlay)
    , notRedirected(source.notRedirected)
    , generatesLoad(source.generatesLoad)
    , m_hasAuditRules(source.m_hasAuditRules)
    , checkState(source.checkState)
    , notificationState(source.notificationState)
    , kind(source.kind)
    , conflictsWith(source.conflictsWith)
    , nativeName(source.nativeName)
    , localizedName(source.localizedName)
{
}

const QVector<EventTreeItem *> &EventTreeItem::dependencies() const
{
    static const QVector<EventTreeItem *> none;
    return m_links ? m_links->dependencies : none;
}

const QVector<EventTreeItem *> &EventTreeItem::dependents() const
{
    static const QVector<EventTreeItem *> none;
    return m_links ? m_links->dependents : none;
}

void EventTreeItem::addDependency(EventTreeItem *needed)
{
    links().dependencies.append(needed);
    needed->links().dependents.append(this);
}

EventTreeItem::Links &EventTreeItem::links()
{
    if (!m_links) {
        m_links = std::make_unique<Links>();
    }
    return *m_links;
}

EventTreeItem *EventTreeItem::findChildByNativeName(const QString &name) const
{
    for (TreeItem *node : children()) {
        auto *child = static_cast<EventTreeItem *>(node);
        if (child->nativeName == name) {
            return child;
        }
        if (EventTreeItem *found = child->findChildByNativeName(name)) {
            return found;
        }
    }
    return nullptr;
}

EventTreeItem *EventTreeItem::findParentByNativeName(const QString &name) const
{
    EventTreeItem *parent = parentItem();
    if (!parent || parent->nativeName == name) {
        return parent;
    }
    return parent->findChildByNativeName(name);
}

EventTreeItem *EventTreeItem::findChildTopLevelByNativeName(const QString &name) const
{
    for (TreeItem *node : children()) {
        auto *child = static_cast<EventTreeItem *>(node);
        if (child->nativeName == name) {
            return child;
        }
    }
    return nullptr;
}

bool EventTreeItem::isNotificationOn() const
{
    return notificationState == NotificationOn || notificationState == NotificationSwitchedOn;
}

QString EventTreeItem::shownName() const
{
    return localizedName.isEmpty() ? value(0).toString() : localizedName;
}

bool EventTreeItem::isSubject() const
{
    const EventTreeItem *parent = parentItem();
    return parent && parent->kind == Subjects;
}

bool EventTreeItem::isObject() const
{
    if (kind == Parameter || kind == Subjects) {
        return childCount() > 0 || isObjectText(value(2));
    }
    return false;
}

bool EventTreeItem::isAuditSwitch() const
{
    return kind == Parameter && childCount() == 0
        && (isNamed(nativeName, QLatin1String("succ")) || isNamed(nativeName, QLatin1String("fail")))
        && !isSubject() && !isObjectText(value(2));
}

bool EventTreeItem::isSwitchValue() const
{
    return kind == Parameter && isNamed(nativeName, QLatin1String("enabled")) && !isObject();
}

EventTreeItem *EventTreeItem::switchChild() const
{
    if (kind != Event && kind != Parameter) {
        return nullptr;
    }
    for (TreeItem *node : children()) {
        auto *child = static_cast<EventTreeItem *>(node);
        if (child->isSwitchValue()) {
            return child;
        }
    }
    return nullptr;
}

EventTreeItem *EventTreeItem::member(QLatin1String name) const
{
    if (kind == Subjects) {
        return nullptr;
    }
    for (TreeItem *node : children()) {
        auto *child = static_cast<EventTreeItem *>(node);
        if (child->nativeName == name) {
            return child;
        }
    }
    return nullptr;
}
