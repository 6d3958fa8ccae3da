// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QModelIndex>
#include <QWidget>

#include <memory>

class CheckableTreeModel;
class EventsProxyModel;
class QTreeView;
class Ui_EventFinder;

/**
 * The search bar above the event tree: what is typed filters the tree, and two
 * buttons walk through the rows that are left. Escape empties the field.
 */
class EventFinder : public QWidget
{
    Q_OBJECT

public:
    /**
     * @param view the tree that shows @p proxy; rows are selected and opened in it
     * @param model the source of @p proxy; after a reset the field shows whether the new tree has matches
     * @param proxy is given query and mode
     * None of them is owned, and all must outlive the search bar.
     */
    explicit EventFinder(QTreeView *view, CheckableTreeModel *model, EventsProxyModel *proxy,
                         QWidget *parent = nullptr);
    ~EventFinder() override;

    /// Shows what matches @p text with all its groups open and selects the first row; an empty text shows
    /// everything.
    void searchEvent(const QString &text) const;
    /**
     * Steps to the next row under the same parent, from the last one into the next parent, and from the last
     * top-level row to the first child of the first one. A row that has no child to step into is taken
     * itself. Without a selection the first row is taken.
     */
    void selectNextEvent() const;
    /// Steps backwards likewise, but from the first top-level row to the last one itself.
    void selectPrevEvent() const;
    /// Opens @p first, selects the row from @p first to @p last, makes it current and scrolls to it.
    void selectIndex(const QModelIndex &first, const QModelIndex &last) const;

    /// Puts the keyboard focus into the field, with all its text selected.
    void focusSearch() const;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void createSearchFilter();
    /// Enables the buttons and colours the text as the number of matches demands; true when there is one.
    bool showMatches(const QString &text) const;
    void showResult(const QString &text) const;
    void openGroups() const;
    void selectRow(const QModelIndex &index) const;
    /// The first selected row in column 0, invalid when there is none.
    [[nodiscard]] QModelIndex selectedRow() const;

    std::unique_ptr<Ui_EventFinder> m_ui;
    QTreeView *m_view;
    CheckableTreeModel *m_model;
    EventsProxyModel *m_proxy;
};
