// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include "ui_admineventsmodule.h"

#include <checkabletreemodel.h>
#include <eventexample.h>
#include <eventlookup.h>
#include <eventreset.h>
#include <eventsproxymodel.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <singleeventsparser.h>

#include <KLocalizedString>

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

namespace {
bool isSendKey(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool isArrowKey(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Up || key == Qt::Key_Right || key == Qt::Key_Down;
}
} // namespace

EventExample &AdminEventsModule::example()
{
    if (!m_example) {
        m_example = new EventExample(this);
    }
    return *m_example;
}

EventTreeItem *AdminEventsModule::itemAt(const QModelIndex &proxyIndex) const
{
    return proxyIndex.isValid() ? m_workingModel->itemAt(m_proxy->mapToSource(proxyIndex)) : nullptr;
}

void AdminEventsModule::editSelection(const QModelIndex &index)
{
    if (!index.isValid()) {
        return;
    }
    // A look at the second row, not at the second column: a row without a neighbour is left as it is.
    constexpr int probedRow = 1;
    if (index.row() != probedRow && !index.sibling(probedRow, index.column()).isValid()) {
        return;
    }
    QItemSelectionModel *selection = m_ui->singleEventsView->selectionModel();
    const QModelIndex value = index.siblingAtColumn(EventTreeItem::ValueColumn);
    selection->select(value, QItemSelectionModel::Clear | QItemSelectionModel::Rows);
    selection->select(value, QItemSelectionModel::Select);
    selection->select(index, QItemSelectionModel::Select);
}

void AdminEventsModule::editEvent(const QModelIndex &index)
{
    if (!index.isValid() || index.column() != EventTreeItem::ValueColumn) {
        return;
    }
    editWatched(index);
    editAudited(index);
}

bool AdminEventsModule::keepEdits(QDialog &dialog, bool isEdited, bool showsNode)
{
    if (!dialog.isVisible() || !isEdited) {
        return false;
    }
    const QPointer<QDialog> open(&dialog); // may end in the message box
    if (!showsNode) {
        Gui::Utils::showText(
            this, QMessageBox::Information, dialog.windowTitle(),
            i18n("Accept or cancel the changes in the window “%1” first.", dialog.windowTitle()));
    }
    if (open) {
        Gui::Utils::bringUp(dialog);
    }
    return true;
}

void AdminEventsModule::contextMenuRequested(const QPoint &position)
{
    QTreeView *view = m_ui->singleEventsView;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QIcon::fromTheme(QStringLiteral("draw-arrow-up")), i18n("Collapse all"), view,
                    &QTreeView::collapseAll);
    menu->addAction(QIcon::fromTheme(QStringLiteral("draw-arrow-down")), i18n("Expand all"), this,
                    &AdminEventsModule::expandSeView);
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    if (!selected.isEmpty()) {
        // The row itself, not its shown name: two events may be called alike.
        EventTreeItem *item = itemAt(selected.first().siblingAtColumn(0));
        if (item && item->kind == EventTreeItem::Event) {
            addEventActions(menu, item);
        }
    }
    menu->popup(view->viewport()->mapToGlobal(position));
}

void AdminEventsModule::addEventActions(QMenu *menu, EventTreeItem *event)
{
    example().prepareExample(event);
    menu->addAction(QIcon::fromTheme(QStringLiteral("document-edit")), i18n("Show example of an event"),
                    m_example, &EventExample::showExample);
    // The page may load its trees anew while the menu is open.
    const NodeAddress address(*event);
    menu->addAction(QIcon::fromTheme(QStringLiteral("edit-reset")), i18n("Reset to the default state"), this,
                    [this, address] {
                        if (EventTreeItem *item = address.findEvent(*m_workingModel->rootItem())) {
                            resetEvent(item);
                        }
                    });
    addNotificationActions(menu, *event);
}

void AdminEventsModule::resetEvent(EventTreeItem *item)
{
    const SingleEventsParser parser(m_users, m_groups, nullptr);
    const std::unique_ptr<EventTreeItem> defaults(
        parser.createEventItem(item->nativeName, SingleEventsParser::DefaultEvent, nullptr));
    if (defaults) {
        EventReset::reset(*item, *defaults);
        m_workingModel->announceChange(item); // and so the page learns whether it is unsaved
    }
}

void AdminEventsModule::keyPressEvent(QKeyEvent *event)
{
    if (!isSendKey(event->key())) {
        GuardKCModule::keyPressEvent(event);
        return;
    }
    // Swallowed where no button has the focus, or the shell's window would take it for its OK.
    for (QPushButton *button : {m_ui->sngStartStopButton, m_ui->commonSettingsButton}) {
        if (button->hasFocus()) {
            Q_EMIT button->clicked();
            return;
        }
    }
}

void AdminEventsModule::keyReleaseEvent(QKeyEvent *event)
{
    if (isArrowKey(event->key())) {
        editSelection(m_ui->singleEventsView->currentIndex());
    }
    GuardKCModule::keyReleaseEvent(event);
}
