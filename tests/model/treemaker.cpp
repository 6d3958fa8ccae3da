// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <checkstates.h>
#include <jsontext.h>

namespace {
EventTreeItem *append(EventTreeItem *parent, const char *name, int kind)
{
    const QString text = QString::fromUtf8(name);
    auto *node = new EventTreeItem({text, QVariant(), QVariant()}, parent);
    node->nativeName = text;
    node->kind = kind;
    node->editable = kind >= EventTreeItem::Parameter;
    parent->appendChild(node);
    return node;
}

void collectMarked(const EventTreeItem &item, const QString &path, QStringList &names)
{
    for (int row = 0; row < item.childCount(); ++row) {
        const EventTreeItem &child = *item.eventChild(row);
        const QString name = path + child.nativeName;
        if (child.overlay) {
            names.append(name);
        }
        collectMarked(child, name + QLatin1Char('/'), names);
    }
}
} // namespace

std::unique_ptr<EventTreeItem> TreeMaker::root()
{
    return std::make_unique<EventTreeItem>(
        QVector<QVariant>{QStringLiteral("Parameter"), QStringLiteral("Value")});
}

EventTreeItem *TreeMaker::group(EventTreeItem *root, const char *id, const char *name)
{
    EventTreeItem *node = append(root, id, EventTreeItem::Group);
    node->checkable = true;
    node->localizedName = QString::fromUtf8(name ? name : id);
    node->setData(0, node->localizedName);
    return node;
}

EventTreeItem *TreeMaker::event(EventTreeItem *group, const char *id, const char *enabled)
{
    EventTreeItem *node = append(group, id, EventTreeItem::Event);
    if (enabled) {
        parameter(node, "enabled", enabled);
        node->checkable = true;
        CheckStates::takeFromValue(node);
    }
    return node;
}

EventTreeItem *TreeMaker::parameter(EventTreeItem *parent, const char *name, const char *value)
{
    EventTreeItem *node = append(parent, name, EventTreeItem::Parameter);
    node->setData(1, QString::fromUtf8(value));
    CheckStates::takeFromValue(node);
    return node;
}

EventTreeItem *TreeMaker::object(EventTreeItem *parent, const char *name)
{
    EventTreeItem *node = append(parent, name, EventTreeItem::Parameter);
    node->setData(2, QStringLiteral("{}"));
    return node;
}

EventTreeItem *TreeMaker::switched(EventTreeItem *parent, const char *name, const char *enabled)
{
    EventTreeItem *node = object(parent, name);
    parameter(node, "enabled", enabled);
    CheckStates::takeFromValue(node);
    return node;
}

EventTreeItem *TreeMaker::list(EventTreeItem *parent, const char *name, const char *json)
{
    EventTreeItem *node = append(parent, name, EventTreeItem::List);
    const QString text = QString::fromUtf8(json);
    bool ok = false;
    node->setData(1, JsonText::arrayText(JsonText::parseArray(text, ok)));
    if (!ok) {
        qFatal("no array: %s", json);
    }
    node->setData(2, text);
    return node;
}

EventTreeItem *TreeMaker::subjects(EventTreeItem *identifier, const char *name)
{
    EventTreeItem *node = append(identifier, name, EventTreeItem::Subjects);
    node->setData(2, QStringLiteral("{}"));
    return node;
}

EventTreeItem *TreeMaker::outcome(EventTreeItem *parent, const char *name, const char *fail, const char *succ)
{
    EventTreeItem *node = object(parent, name);
    parameter(node, "fail", fail);
    parameter(node, "succ", succ);
    return node;
}

void TreeMaker::link(EventTreeItem *event, EventTreeItem *needed)
{
    event->addDependency(needed);
}

void TreeMaker::settleGroups(EventTreeItem *root)
{
    for (int row = 0; row < root->childCount(); ++row) {
        CheckStates::setDirChecked(root->eventChild(row));
    }
}

QStringList TreeMaker::marked(const EventTreeItem &root)
{
    QStringList names;
    collectMarked(root, QString(), names);
    names.sort();
    return names;
}
