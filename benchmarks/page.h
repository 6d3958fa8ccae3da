// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <checkabletreemodel.h>
#include <eventconfigstorage.h>
#include <eventsproxymodel.h>

#include <QTreeView>

class Site;

/// The part of the page that the measured operations need: both models, the proxy and the view.
class Page
{
public:
    explicit Page(const Site &site);

    /// Reads the site into both models, as the page does; false when the catalog cannot be read.
    [[nodiscard]] static bool load(const Site &site, CheckableTreeModel &working,
                                   CheckableTreeModel &reference);
    [[nodiscard]] bool isValid() const { return m_valid; }

    [[nodiscard]] CheckableTreeModel &working() { return m_working; }
    [[nodiscard]] const EventTreeItem &workingRoot() const { return *m_working.rootItem(); }
    [[nodiscard]] const EventTreeItem &referenceRoot() const { return *m_reference.rootItem(); }
    /// The reference tree, which no click changes, as the writer takes it.
    [[nodiscard]] EventTreeItem *referenceItem() { return m_reference.rootItem(); }
    [[nodiscard]] const EventConfigStorage &storage() const { return m_storage; }
    /// The last event with a check box in the last group, invalid when there is none.
    [[nodiscard]] QModelIndex lastEvent() const;

    /// Toggles the event's check box; true when the page now has unsaved changes.
    bool click(const QModelIndex &event);
    void openGroups();
    /// Filters; when it returns, the proxy has settled, and the view knows which rows are left.
    void type(const QString &query);
    /// Waits until the view has laid out its rows anew; nothing is painted.
    void layOut();
    [[nodiscard]] int shownEvents() const;

private:
    EventConfigStorage m_storage;
    CheckableTreeModel m_working;
    CheckableTreeModel m_reference;
    EventsProxyModel m_proxy;
    QTreeView m_view;
    bool m_valid;
};
