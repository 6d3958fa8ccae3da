// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAbstractTableModel>
#include <QVector>

#include <memory>

class TreeItem;

/**
 * The destinations of the main logging configuration, one a row: kind, name, and where it leads to. It keeps
 * the file's whole tree, so that what is inserted and deleted here reaches the writer.
 */
class DestinationsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { KindColumn, NameColumn, ValueColumn, ColumnCount };

    explicit DestinationsModel(QObject *parent = nullptr);
    ~DestinationsModel() override;

    /// Takes ownership of @p root (see CommonSettingsParser::parse()) and destroys the former one.
    void setRootItem(TreeItem *root);
    /// Never null.
    [[nodiscard]] TreeItem *rootItem() const { return m_root.get(); }
    /// The destination blocks of @p root in their order.
    [[nodiscard]] static QVector<TreeItem *> extractDestinations(const TreeItem *root);
    [[nodiscard]] const QVector<TreeItem *> &destinations() const { return m_destinations; }
    /// The destination block in @p row; null when there is none.
    [[nodiscard]] TreeItem *destination(int row) const { return m_destinations.value(row); }

    /// Adds the destination block @p item, made with rootItem() as its parent, and its log path; owns it.
    void insertItem(TreeItem *item);
    /// Destroys the destination block @p item, its log paths stay; false when it is none of the root's.
    bool deleteItem(TreeItem *item);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Destinations are added and removed, not edited: always false.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    std::unique_ptr<TreeItem> m_root;
    QVector<TreeItem *> m_destinations;
};
