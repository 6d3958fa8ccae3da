// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QString>

class EventTreeItem;
class QHelpEvent;
class QModelIndex;
class QTreeView;

/**
 * Shows the tool tips of a view of the event tree: over an icon what the icon
 * means, everywhere else the text of the cell. To be installed as event filter
 * on the view's viewport.
 *
 * Icons are told apart by the distance from the edge of the item where its check box begins:
 * | distance | with both icons | with one icon |
 * |---|---|---|
 * | 0 to 28 | check box: the text of the cell | likewise |
 * | 29 to 45 | notification | that icon |
 * | 46 to 61 | load | the text of the cell |
 * | from 62 | the text of the cell | likewise |
 * Where no check box is drawn, icons begin that much earlier.
 */
class ToolTipper : public QObject
{
    Q_OBJECT

public:
    /// @param view the tree, over a CheckableTreeModel or one proxy of it; becomes the parent
    explicit ToolTipper(QTreeView *view);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    /// A part of an item's first cell, from @p begin to before @p end.
    struct Zone
    {
        int begin;
        int end;
        QString text; // empty for the text of the cell
    };

    void showToolTip(const QHelpEvent &event);
    [[nodiscard]] static Zone zoneAt(const EventTreeItem &item, int distance, int width);
    [[nodiscard]] static QString cellText(const QModelIndex &index, const EventTreeItem &item);

    QTreeView *m_view;
};
