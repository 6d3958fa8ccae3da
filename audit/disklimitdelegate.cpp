// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "disklimitdelegate.h"

#include "disklimitsmodel.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>

namespace {
constexpr char problemProperty[] = "limitProblem";

void showReason(const QLineEdit &edit, const QString &reason)
{
    QToolTip::showText(edit.mapToGlobal(QPoint(0, edit.height())), reason);
}
} // namespace

DiskLimitDelegate::DiskLimitDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

QWidget *DiskLimitDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                         const QModelIndex &index) const
{
    auto *edit = new QLineEdit(parent);
    edit->setFrame(false);
    edit->setAutoFillBackground(true);
    edit->setAlignment(Qt::AlignRight);
    edit->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    connect(edit, &QLineEdit::textChanged, this, [edit, column = index.column()](const QString &text) {
        const QString reason = DiskLimitsModel::problem(column, text.trimmed());
        edit->setProperty(problemProperty, reason);
        QPalette palette;
        if (!reason.isEmpty()) {
            palette.setColor(QPalette::Text, Qt::red);
        }
        edit->setPalette(palette);
        showReason(*edit, reason);
    });
    return edit;
}

void DiskLimitDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
        edit->setText(index.data(Qt::EditRole).toString());
    }
}

void DiskLimitDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                     const QModelIndex &index) const
{
    const auto *edit = qobject_cast<QLineEdit *>(editor);
    // Opening an editor and leaving it changes nothing, whatever the value is.
    if (edit && edit->text() != index.data(Qt::EditRole).toString()) {
        model->setData(index, edit->text(), Qt::EditRole);
    }
}

bool DiskLimitDelegate::eventFilter(QObject *object, QEvent *event)
{
    const auto *edit = qobject_cast<QLineEdit *>(object);
    if (edit && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QString reason = edit->property(problemProperty).toString();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !reason.isEmpty()) {
            // Keep the editor open, so that the value can be mended.
            showReason(*edit, reason);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}
