// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventfinder.h"

#include "checkabletreemodel.h"
#include "eventsproxymodel.h"

#include "ui_eventfinder.h"

#include <KLocalizedString>

#include <QAction>
#include <QKeyEvent>
#include <QToolTip>
#include <QTreeView>

EventFinder::EventFinder(QTreeView *view, CheckableTreeModel *model, EventsProxyModel *proxy, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui_EventFinder>())
    , m_view(view)
    , m_model(model)
    , m_proxy(proxy)
{
    m_ui->setupUi(this);
    QLineEdit *field = m_ui->eventSearch;
    QAction *icon
        = field->addAction(QIcon::fromTheme(QStringLiteral("edit-find")), QLineEdit::LeadingPosition);
    icon->setText(i18n("Event search"));
    connect(icon, &QAction::triggered, this, &EventFinder::focusSearch);
    field->installEventFilter(this);
    m_ui->searchPrev->setIcon(QIcon::fromTheme(QStringLiteral("previous")));
    m_ui->searchNext->setIcon(QIcon::fromTheme(QStringLiteral("next")));
    createSearchFilter();

    connect(field, &QLineEdit::textChanged, this, &EventFinder::searchEvent);
    connect(m_ui->searchPrev, &QToolButton::clicked, this, &EventFinder::selectPrevEvent);
    connect(m_ui->searchNext, &QToolButton::clicked, this, &EventFinder::selectNextEvent);
    connect(m_model, &CheckableTreeModel::modelReset, this, [this, field] { showMatches(field->text()); });
}

EventFinder::~EventFinder() = default;

void EventFinder::createSearchFilter()
{
    QComboBox *filter = m_ui->searchFilter;
    filter->addItem(i18n("All"), EventsProxyModel::All);
    filter->addItem(i18n("Event ID"), EventsProxyModel::EventId);
    filter->addItem(i18n("Event name"), EventsProxyModel::EventName);
    filter->addItem(i18n("Group ID"), EventsProxyModel::GroupId);
    filter->addItem(i18n("Group name"), EventsProxyModel::GroupName);
    connect(filter, qOverload<int>(&QComboBox::currentIndexChanged), this, [this, filter] {
        m_proxy->setFilterMode(static_cast<EventsProxyModel::FilterMode>(filter->currentData().toInt()));
        if (const QString text = m_ui->eventSearch->text(); !text.isEmpty()) {
            // What matched in the old mode may not match any more.
            showResult(text);
        }
    });
}

void EventFinder::searchEvent(const QString &text) const
{
    // Not before there is something to clear: looking for its icon would delay the page's first appearance.
    m_ui->eventSearch->setClearButtonEnabled(true);
    QToolTip::hideText(); // it may speak of a row that goes
    m_proxy->setFilterQuery(text);
    showResult(text);
}

void EventFinder::showResult(const QString &text) const
{
    m_view->clearSelection();
    openGroups();
    if (showMatches(text)) {
        selectRow(m_proxy->index(0, 0));
    }
}

bool EventFinder::showMatches(const QString &text) const
{
    QLineEdit *field = m_ui->eventSearch;
    const bool searching = !text.isEmpty();
    const bool found = m_proxy->rowCount() > 0;
    QPalette palette;
    if (searching && !found) {
        palette.setColor(QPalette::Text, Qt::red);
    }
    field->setPalette(palette);
    field->setAccessibleDescription(searching && !found ? i18n("No event matches.") : QString());
    m_ui->searchPrev->setEnabled(searching && found);
    m_ui->searchNext->setEnabled(searching && found);
    return searching && found;
}

void EventFinder::openGroups() const
{
    for (int row = 0; row < m_proxy->rowCount(); ++row) {
        m_view->expand(m_proxy->index(row, 0));
    }
}

void EventFinder::selectNextEvent() const
{
    const QModelIndex current = selectedRow();
    if (!current.isValid()) {
        selectRow(m_proxy->index(0, 0));
        return;
    }
    const QModelIndex parent = current.parent();
    const QModelIndex neighbour = m_proxy->index(current.row() + 1, 0, parent);
    if (neighbour.isValid()) {
        selectRow(neighbour);
        return;
    }
    // From a last row the walk goes into the parent's neighbour, from the last group into the first.
    const QModelIndex next = parent.isValid() ? parent.sibling(parent.row() + 1, 0) : m_proxy->index(0, 0);
    const QModelIndex child = next.isValid() ? m_proxy->index(0, 0, next) : QModelIndex();
    selectRow(child.isValid() ? child : next);
}

void EventFinder::selectPrevEvent() const
{
    const QModelIndex current = selectedRow();
    if (!current.isValid()) {
        selectRow(m_proxy->index(0, 0));
        return;
    }
    const QModelIndex parent = current.parent();
    if (current.row() > 0) {
        selectRow(m_proxy->index(current.row() - 1, 0, parent));
        return;
    }
    if (!parent.isValid()) {
        selectRow(m_proxy->index(m_proxy->rowCount() - 1, 0));
        return;
    }
    const QModelIndex previous = parent.sibling(parent.row() - 1, 0);
    const QModelIndex child
        = previous.isValid() ? m_proxy->index(m_proxy->rowCount(previous) - 1, 0, previous) : QModelIndex();
    selectRow(child.isValid() ? child : previous);
}

void EventFinder::selectIndex(const QModelIndex &first, const QModelIndex &last) const
{
    m_view->expand(first);
    QItemSelectionModel *selection = m_view->selectionModel();
    selection->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    selection->select(QItemSelection(first, last),
                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_view->scrollTo(first);
}

void EventFinder::selectRow(const QModelIndex &index) const
{
    if (index.isValid()) {
        selectIndex(index, index.siblingAtColumn(1));
    }
}

QModelIndex EventFinder::selectedRow() const
{
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QModelIndex() : selected.first().siblingAtColumn(0);
}

void EventFinder::focusSearch() const
{
    m_ui->eventSearch->setFocus(Qt::ShortcutFocusReason);
    m_ui->eventSearch->selectAll();
}

bool EventFinder::eventFilter(QObject *object, QEvent *event)
{
    // With an empty field the key is the window's, which closes at it.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (object != m_ui->eventSearch || !key || m_ui->eventSearch->text().isEmpty()
        || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape) {
        return QWidget::eventFilter(object, event);
    }
    event->accept();
    if (event->type() == QEvent::KeyPress) {
        m_ui->eventSearch->clear();
    }
    return true;
}
