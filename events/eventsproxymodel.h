// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QPointer>
#include <QSortFilterProxyModel>

class CheckableTreeModel;
class EventTreeItem;

/// Shows the rows of a CheckableTreeModel that match a query; what is hidden by its description stays hidden.
class EventsProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// What the query is compared with.
    enum FilterMode { All = 0, EventName = 1, EventId = 2, GroupName = 3, GroupId = 4 };
    Q_ENUM(FilterMode)

    explicit EventsProxyModel(QObject *parent = nullptr);

    /// @param model a CheckableTreeModel; nothing of any other model is shown
    void setSourceModel(QAbstractItemModel *model) override;

    void setFilterQuery(const QString &query);
    void setFilterMode(FilterMode mode);
    /// True when the query occurs in @p text under the fuzzy comparison.
    [[nodiscard]] bool matchFilter(const QString &text) const;

    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;

private:
    [[nodiscard]] bool acceptsEvent(const EventTreeItem &event) const;
    [[nodiscard]] bool acceptsGroup(const EventTreeItem &group) const;

    QPointer<CheckableTreeModel> m_tree;
    QString m_query; // folded
    FilterMode m_mode = All;
};
