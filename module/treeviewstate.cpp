// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treeviewstate.h"

#include <checkabletreemodel.h>

#include <QScrollBar>
#include <QTreeView>

namespace {
QString pathOf(const QString &parentPath, const QModelIndex &index)
{
    // No identifier holds a line break.
    return parentPath + QLatin1Char('\n') + index.data(CheckableTreeModel::NativeNameRole).toString();
}
} // namespace

TreeViewState::TreeViewState(QTreeView *view)
    : m_view(view)
    , m_currentColumn(view->currentIndex().column())
    , m_scroll(view->verticalScrollBar()->value())
    , m_empty(view->model()->rowCount() == 0)
{
    collect({}, {});
}

void TreeViewState::collect(const QModelIndex &parent, const QString &path)
{
    const QAbstractItemModel *model = m_view->model();
    const QModelIndex current = m_view->currentIndex();
    const QModelIndex currentRow = current.sibling(current.row(), 0);
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        if (index == currentRow) {
            m_current = pathOf(path, index);
        }
        // What lies below a closed row cannot be open to the eye.
        if (m_view->isExpanded(index)) {
            const QString own = pathOf(path, index);
            m_expanded.insert(own);
            collect(index, own);
        }
    }
}

void TreeViewState::restore() const
{
    if (m_empty) {
        return;
    }
    apply({}, {});
    m_view->verticalScrollBar()->setValue(m_scroll);
}

void TreeViewState::apply(const QModelIndex &parent, const QString &path) const
{
    const QAbstractItemModel *model = m_view->model();
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        const QString own = pathOf(path, index);
        if (own == m_current) {
            m_view->setCurrentIndex(index.sibling(row, m_currentColumn));
        }
        const bool expanded = m_expanded.contains(own);
        m_view->setExpanded(index, expanded);
        if (expanded) {
            apply(index, own);
        }
    }
}
