// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventitemdelegate.h"

#include "checkabletreemodel.h"
#include "eventdisplay.h"
#include "eventtreeitem.h"
#include "valuecheck.h"

#include <QAbstractProxyModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>

namespace {
constexpr char problemProperty[] = "valueProblem";

QModelIndex sourceIndex(const QModelIndex &index)
{
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(index.model());
    return proxy ? proxy->mapToSource(index) : index;
}

const EventTreeItem *itemOf(const QModelIndex &index)
{
    return CheckableTreeModel::shownItem(index);
}

CheckableTreeModel *treeModel(QAbstractItemModel *model)
{
    auto *proxy = qobject_cast<QAbstractProxyModel *>(model);
    return qobject_cast<CheckableTreeModel *>(proxy ? proxy->sourceModel() : model);
}

bool isTurn(const QEvent &event, const QRect &cell)
{
    if (event.type() == QEvent::MouseButtonRelease) {
        const auto &mouse = static_cast<const QMouseEvent &>(event);
        return mouse.button() == Qt::LeftButton && cell.contains(mouse.pos());
    }
    if (event.type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent &>(event).key();
        return key == Qt::Key_Space || key == Qt::Key_Select;
    }
    return false;
}
} // namespace

EventItemDelegate::EventItemDelegate(const NodeDictionary &dictionary, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_dictionary(dictionary)
{
}

QWidget *EventItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                         const QModelIndex &index) const
{
    auto *edit = new QLineEdit(parent);
    edit->setFrame(false);
    edit->setAutoFillBackground(true);
    const QPersistentModelIndex cell(index);
    connect(edit, &QLineEdit::textChanged, this, [this, edit, cell](const QString &text) {
        const QString problem
            = cell.isValid() ? ValueCheck::problem(*itemOf(cell), text, m_dictionary) : QString();
        edit->setProperty(problemProperty, problem);
        QPalette palette;
        if (!problem.isEmpty()) {
            palette.setColor(QPalette::Text, Qt::red);
        }
        edit->setPalette(palette);
        QToolTip::showText(edit->mapToGlobal(QPoint(0, edit->height())), problem, edit);
    });
    return edit;
}

void EventItemDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
        edit->setText(index.data(Qt::EditRole).toString());
    }
}

void EventItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                     const QModelIndex &index) const
{
    const auto *edit = qobject_cast<QLineEdit *>(editor);
    // Opening an editor and leaving it changes nothing, whatever the value is.
    if (!edit || edit->text() == index.data(Qt::EditRole).toString()) {
        return;
    }
    const QString problem = ValueCheck::problem(*itemOf(index), edit->text(), m_dictionary);
    if (problem.isEmpty()) {
        model->setData(index, edit->text(), Qt::EditRole);
    } else {
        Q_EMIT valueRejected(problem);
    }
}

bool EventItemDelegate::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QString problem = object->property(problemProperty).toString();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !problem.isEmpty()) {
            // Keep the editor open, so that the value can be mended.
            auto *edit = static_cast<QWidget *>(object);
            QToolTip::showText(edit->mapToGlobal(QPoint(0, edit->height())), problem, edit);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

bool EventItemDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                    const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const EventTreeItem *item = itemOf(index);
    if (index.column() == 0 && event->type() == QEvent::KeyPress && item && !item->checkable
        && EventDisplay::isSwitch(*item)) {
        // A view of whole rows takes keys in the first column; the switch is in the second.
        return editorEvent(event, model, option, index.siblingAtColumn(1));
    }
    if (index.column() == 1 && item && EventDisplay::isSwitch(*item) && item->switchChild()) {
        CheckableTreeModel *tree = treeModel(model);
        return tree && isTurn(*event, option.rect) && tree->switchParameter(sourceIndex(index));
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

void EventItemDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const EventTreeItem *item = itemOf(index);
    if (index.column() == 0 && item && item->kind >= EventTreeItem::Parameter
        && !item->localizedName.isEmpty()) {
        option->text = item->localizedName;
    }
}
