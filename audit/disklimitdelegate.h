// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStyledItemDelegate>

/// Edits the limits of a DiskLimitsModel: says why a text is no limit while it is typed.
class DiskLimitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit DiskLimitDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
};
