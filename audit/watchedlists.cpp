// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "watchedlists.h"

#include <checkabletreemodel.h>
#include <eventtreeitem.h>
#include <jsontext.h>
#include <watchedpaths.h>

namespace {
/// Both forms of a list agree at any time that the model announces a change of it.
void storeList(CheckableTreeModel &model, EventTreeItem *list, const QJsonArray &elements)
{
    list->kind = EventTreeItem::List;
    list->setData(EventTreeItem::JsonColumn, JsonText::compact(elements));
    model.setData(model.indexOf(list, EventTreeItem::ValueColumn), JsonText::arrayText(elements),
                  Qt::EditRole);
}
} // namespace

bool WatchedLists::storePaths(CheckableTreeModel &model, EventTreeItem *list, const QString &paths)
{
    const QStringList edited = WatchedPaths::fromText(paths);
    if (edited == WatchedPaths::fromText(list->value(EventTreeItem::ValueColumn).toString())) {
        return false;
    }
    const QModelIndex rules = model.indexOf(list).data(CheckableTreeModel::AuditRulesRole).toModelIndex();
    if (rules.isValid() && list->nativeName == QLatin1String(".auditd.key")) {
        model.setAuditFileRules(rules, WatchedPaths::toText(edited));
    }
    storeList(model, list, QJsonArray::fromStringList(edited));
    return true;
}

bool WatchedLists::storeDirectories(CheckableTreeModel &model, EventTreeItem *directories,
                                    const QString &json)
{
    bool isArray = false;
    const QJsonArray edited = JsonText::parseArray(json, isArray);
    bool wasArray = false;
    const QJsonArray former
        = JsonText::parseArray(directories->value(EventTreeItem::JsonColumn).toString(), wasArray);
    if (!isArray || (wasArray && edited == former)) {
        return false;
    }
    storeList(model, directories, edited);
    return true;
}
