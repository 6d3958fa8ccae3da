// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QSet>
#include <QString>

class QModelIndex;
class QTreeView;

/**
 * Remembers which rows of a tree view are open, which one is current and how
 * far it is scrolled, by the nodes' native names, so that a reload leaves the
 * view as it was. A view without rows has nothing to remember.
 */
class TreeViewState
{
public:
    explicit TreeViewState(QTreeView *view);
    void restore() const;

private:
    void collect(const QModelIndex &parent, const QString &path);
    void apply(const QModelIndex &parent, const QString &path) const;

    QTreeView *m_view;
    QSet<QString> m_expanded;
    QString m_current;
    int m_currentColumn = 0;
    int m_scroll = 0;
    bool m_empty = true;
};
