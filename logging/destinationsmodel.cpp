// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationsmodel.h"

#include "destinationreferences.h"
#include "destinationsdictionary.h"
#include "destinationtext.h"
#include "maintree.h"

#include <treeitem.h>

#include <KLocalizedString>

#include <QTextDocument>

namespace {
/// A block may have several drivers; they share the row.
QStringList texts(const TreeItem &block, int column)
{
    QStringList all;
    const auto parameters = DestinationReferences::parameters(block);
    for (const DestinationReferences::Parameter &parameter : parameters) {
        if (column == DestinationsModel::ValueColumn) {
            all.append(DestinationText::shown(parameter.name, parameter.value));
            continue;
        }
        const auto *entry = DestinationsDictionary::instance().findByParameter(parameter.name);
        const QString kind = entry ? entry->name : parameter.name;
        if (!all.contains(kind)) {
            all.append(kind);
        }
    }
    return all;
}

QString cellText(const TreeItem &block, int column)
{
    if (column == DestinationsModel::NameColumn) {
        return block.value(1).toString();
    }
    const QLatin1String separator(column == DestinationsModel::KindColumn ? ", " : "; ");
    return texts(block, column).join(separator);
}
} // namespace

DestinationsModel::DestinationsModel(QObject *parent)
    : QAbstractTableModel(parent)
    , m_root(MainTree::read({}))
{
}

DestinationsModel::~DestinationsModel() = default;

void DestinationsModel::setRootItem(TreeItem *root)
{
    beginResetModel();
    m_root.reset(root);
    m_destinations = extractDestinations(root);
    endResetModel();
}

QVector<TreeItem *> DestinationsModel::extractDestinations(const TreeItem *root)
{
    QVector<TreeItem *> found;
    for (int row = 0; row < root->childCount(); ++row) {
        if (root->child(row)->value(0).toString() == QLatin1String("destination")) {
            found.append(root->child(row));
        }
    }
    return found;
}

void DestinationsModel::insertItem(TreeItem *item)
{
    beginInsertRows({}, m_destinations.size(), m_destinations.size());
    m_root->appendChildDestination(item);
    m_destinations.append(item);
    endInsertRows();
}

bool DestinationsModel::deleteItem(TreeItem *item)
{
    const int row = m_destinations.indexOf(item);
    if (row < 0) {
        return false;
    }
    beginRemoveRows({}, row, row);
    m_destinations.removeAt(row);
    m_root->deleteChild(item->row());
    endRemoveRows();
    return true;
}

int DestinationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_destinations.size();
}

int DestinationsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

Qt::ItemFlags DestinationsModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

QVariant DestinationsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)
        || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) {
        return {};
    }
    const QString text = cellText(*m_destinations.at(index.row()), index.column());
    // A tool tip would take a path for markup that looks like it.
    return role == Qt::ToolTipRole && Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

bool DestinationsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    Q_UNUSED(index)
    Q_UNUSED(value)
    Q_UNUSED(role)
    return false;
}

QVariant DestinationsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case KindColumn:
        return i18nc("column of the destinations", "Parameter");
    case NameColumn:
        return i18nc("column of the destinations", "Name");
    case ValueColumn:
        return i18nc("column of the destinations", "Value");
    default:
        return {};
    }
}
