// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAbstractItemModel>
#include <QIcon>

#include <memory>

class EventConfigStorage;
class EventTreeItem;

/**
 * The item model over an event tree: check boxes with their propagation,
 * names, values, and roles that tell views and dialogs what a node stands for.
 */
class CheckableTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// Each answers for the node of the index, in any column.
    enum Role {
        VisibleRole = Qt::UserRole + 1, ///< bool
        FileArrayRole, ///< bool: a list of watched files
        ParameterRole, ///< bool: the node's kind is parameter
        NativeNameRole, ///< QString
        DirectoriesRole, ///< bool: directories with disk-space limits
        DirectoryArrayRole, ///< bool: a list of watched directories
        AuditRulesRole, ///< QModelIndex of the event's "message-audit-rules" node
        UsersRole, ///< bool: the audited users
        GroupsRole ///< bool: the audited groups
    };

    /// @param storage the per-event settings files; kept by reference
    explicit CheckableTreeModel(const EventConfigStorage &storage, QObject *parent = nullptr);
    ~CheckableTreeModel() override;

    /// Takes ownership of @p root; the previous tree is destroyed, unless somebody holds it.
    void setRootItem(EventTreeItem *root);
    [[nodiscard]] EventTreeItem *rootItem() const { return m_rootItem.get(); }
    /// The tree for whoever works on it while the event loop turns: it stays until he is done.
    [[nodiscard]] std::shared_ptr<EventTreeItem> holdTree() const { return m_rootItem; }
    [[nodiscard]] const EventConfigStorage &storage() const { return m_storage; }

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    /**
     * Decoration role: the notification state. Edit role: the value of the
     * column; check states follow it. Check-state role: toggles, whatever the
     * value. False for any other role or a column that the node lacks.
     */
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    /**
     * Turns the On/Off switch of a parameter that has one, and nothing else.
     * A value other than "0" and "1" is not a switch position and stays.
     * @return true when it was turned
     */
    bool switchParameter(const QModelIndex &index);

    /**
     * Stores the audit rules that watch a list of files as the value of a node.
     * @param index of the node that keeps the rules; inside of the event "file-opened", or for a node of that
     * name, they record openings, for any other they record modifications
     * @param value the paths, separated by commas
     * @return false when there is no such node
     */
    bool setAuditFileRules(const QModelIndex &index, const QVariant &value);

    [[nodiscard]] bool isAuditItem(const QString &name) const;
    [[nodiscard]] bool isFileArray(const QModelIndex &index, const EventTreeItem *node) const;
    [[nodiscard]] bool isDirectoryArray(const QModelIndex &index, const EventTreeItem *node) const;
    [[nodiscard]] QModelIndex getAuditRules(const QModelIndex &index, const EventTreeItem *node) const;
    /// The nearest ancestor with that native name.
    [[nodiscard]] QModelIndex findParentByNativeName(const QModelIndex &index, const QString &name) const;
    /// The nearest ancestor that is an event.
    [[nodiscard]] QModelIndex findParentEvent(const QModelIndex &index) const;
    /// The first descendant with that native name; accounts are passed over.
    [[nodiscard]] QModelIndex findChildByNativeName(const QModelIndex &index, const QString &name) const;

    /// The node behind @p index, the root for an invalid one.
    [[nodiscard]] EventTreeItem *itemAt(const QModelIndex &index) const;
    /// The node behind an index of such a model or of a proxy over it, null for an invalid one.
    [[nodiscard]] static EventTreeItem *shownItem(const QModelIndex &index);
    /// The index of a node of this model's tree.
    [[nodiscard]] QModelIndex indexOf(const EventTreeItem *item, int column = 0) const;

    /// Tells views that @p item, and whatever lies below it, was changed in the tree itself.
    void announceChange(const EventTreeItem *item);

    /// Propagation of a check to linked events, the parent and checkable children.
    void setGroupChecked(EventTreeItem *item, bool checked) const;
    /// Checks or unchecks all events of a group.
    void setGroupEventsChecked(EventTreeItem *group, bool checked) const;
    /// Writes check states back into the values of all switches below @p item.
    void checkEnabled(EventTreeItem *item) const;

Q_SIGNALS:
    void notificationChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                             const QVector<int> &roles);

private:
    [[nodiscard]] QVariant decoration(const EventTreeItem &item) const;
    [[nodiscard]] QPixmap bothMarks() const;
    [[nodiscard]] QString toolTip(const EventTreeItem &item) const;
    [[nodiscard]] QVariant customRole(const QModelIndex &index, const EventTreeItem *item, int role) const;
    bool toggle(const QModelIndex &index);

    std::shared_ptr<EventTreeItem> m_rootItem;
    mutable QIcon m_composedIcon; // null until it is needed
    const EventConfigStorage &m_storage;
};
