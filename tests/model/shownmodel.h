// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <checkabletreemodel.h>
#include <eventconfigstorage.h>
#include <eventtreeitem.h>

#include <QAbstractItemModelTester>

#include <memory>

/// A model over a tree, watched by the toolkit's model test.
class ShownModel
{
public:
    ShownModel() = default;
    explicit ShownModel(std::unique_ptr<EventTreeItem> root) { m_model.setRootItem(root.release()); }

    [[nodiscard]] CheckableTreeModel *operator->() { return &m_model; }
    [[nodiscard]] CheckableTreeModel &operator*() { return m_model; }
    [[nodiscard]] QModelIndex name(const EventTreeItem *item) const { return m_model.indexOf(item, 0); }
    [[nodiscard]] QModelIndex value(const EventTreeItem *item) const { return m_model.indexOf(item, 1); }
    /// One click on the check box of column 0.
    bool click(const EventTreeItem *item)
    {
        return m_model.setData(name(item), Qt::Checked, Qt::CheckStateRole);
    }

private:
    EventConfigStorage m_storage{QString()};
    CheckableTreeModel m_model{m_storage};
    QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::QtTest};
};
