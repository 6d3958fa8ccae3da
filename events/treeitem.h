// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QVariant>
#include <QVector>

/**
 * A generic node: ordered children that it owns, one value per column, and a
 * pointer back to its parent. Every tree that the page shows or writes is
 * made of these, so the class knows nothing about events or files.
 */
class TreeItem
{
public:
    /**
     * @param itemData one value per column, copied
     * @param parent the parent node, not owned; the new node is not added to
     *        its children, see appendChild()
     */
    explicit TreeItem(const QVector<QVariant> &itemData, TreeItem *parent = nullptr);
    /// Destroys all children, each as what it is, then the node.
    virtual ~TreeItem();
    TreeItem(const TreeItem &) = delete;
    TreeItem &operator=(const TreeItem &) = delete;

    /// The child at @p row, null when there is none.
    [[nodiscard]] TreeItem *child(int row) const
    {
        return row >= 0 && row < m_children.size() ? m_children.at(row) : nullptr;
    }
    [[nodiscard]] int childCount() const { return m_children.size(); }
    /// The number of columns of this node; nodes of one tree may differ.
    [[nodiscard]] int columnCount() const { return m_itemData.size(); }
    /// The value of @p column, an invalid variant when there is no such column.
    [[nodiscard]] QVariant data(int column) const;
    /// As data(), without a copy; for walks over whole trees.
    [[nodiscard]] const QVariant &value(int column) const
    {
        return column >= 0 && column < m_itemData.size() ? m_itemData.at(column) : noValue();
    }
    /// Stores @p value; false, and no change, when there is no such column.
    bool setData(int column, const QVariant &value);
    /// Replaces the whole row of values, whatever its length.
    void setData(const QVector<QVariant> &itemData);
    /// All columns; the copy shares its storage with the node until one of them is written.
    [[nodiscard]] const QVector<QVariant> &rowData() const { return m_itemData; }
    /// The position among the parent's children, 0 without parent, -1 when the parent does not list this
    /// node.
    [[nodiscard]] int row() const;
    [[nodiscard]] TreeItem *parentItem() const { return m_parentItem; }

    /// Takes ownership of @p child and adds it at the end, or as row 0 when @p prepend is set. Its parent
    /// pointer stays.
    void appendChild(TreeItem *child, bool prepend = false);
    /**
     * Destroys the child at @p row. False for a negative row or one greater
     * than childCount(). A row equal to childCount() passes that guard: callers
     * rely on the answer, so it is kept, and nothing is destroyed.
     */
    bool deleteChild(int row);

    /// The first descendant in pre-order whose text in @p column equals @p name; never the node itself.
    [[nodiscard]] TreeItem *findChild(const QString &name, int column) const;
    /// As findChild(), but the direct children themselves are not compared.
    [[nodiscard]] TreeItem *findChildWithoutTopLevel(const QString &name, int column) const;
    /// The first direct child whose column 0 equals @p name.
    [[nodiscard]] TreeItem *findChildTopLevel(const QString &name) const;

    /// On the root of the main logging configuration: appends the log path from the event source to the
    /// destination @p name.
    void createDestChain(const QString &name);
    /**
     * On the root of the main logging configuration: inserts the destination block @p item, and appends its
     * log path (see createDestChain()).
     * @param item owned from here on; created with this node as its parent, its name in column 1. It goes
     *        behind the last destination, else before the first log path, else to the end.
     */
    void appendChildDestination(TreeItem *item);
    /**
     * On the root of the main logging configuration: takes the destination @p name out of the log paths. A
     * log path that has no other destination goes as a whole; one that has others keeps them.
     * @return whether any log path named the destination.
     */
    bool deleteLogChild(const QString &name);

protected:
    [[nodiscard]] const QVector<TreeItem *> &children() const { return m_children; }
    void reserveChildren(int count) { m_children.reserve(count); }

private:
    [[nodiscard]] static const QVariant &noValue();
    [[nodiscard]] int destinationPosition() const;
    [[nodiscard]] bool hasDestinationOtherThan(const QString &name) const;

    QVector<TreeItem *> m_children;
    QVector<QVariant> m_itemData;
    TreeItem *m_parentItem = nullptr;
    mutable int m_rowHint = 0; // where row() last found the node
};
