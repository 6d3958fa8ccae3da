// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStyledItemDelegate>

class EventTreeItem;
class NodeDictionary;

/**
 * Shows and edits the nodes of the event tree: On/Off switches turn by a click
 * or Space, typed values are checked before they are stored, and names that
 * code needs in column 0 are shown in the user's language all the same.
 * Works on a CheckableTreeModel, directly or through one proxy.
 */
class EventItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param dictionary tells which values are numbers; kept by reference
    explicit EventItemDelegate(const NodeDictionary &dictionary, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

Q_SIGNALS:
    /// A typed value was not taken; @p reason is translated and names the parameter.
    void valueRejected(const QString &reason) const;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    const NodeDictionary &m_dictionary;
};
