// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "checkabletreemodel.h"

#include "checkstates.h"
#include "composedicon.h"
#include "eventdisplay.h"
#include "eventlookup.h"
#include "eventtreeitem.h"
#include "subjectsjson.h"
#include "watchedpaths.h"

#include <KLocalizedString>

#include <QAbstractProxyModel>
#include <QColor>
#include <QPixmap>

namespace {
bool hasName(const EventTreeItem *node, QLatin1String name)
{
    // An account that bears the name is not the member of that name.
    return node->nativeName == name && !node->isSubject();
}

void writeSwitch(EventTreeItem *node, bool on)
{
    const QVariant &value = node->value(1);
    const QChar digit = QLatin1Char(on ? '1' : '0');
    if (value.userType() == QMetaType::QString) {
        // Read in place: a click asks this of every switch of the tree.
        const auto *text = static_cast<const QString *>(value.constData());
        if (text->size() == 1 && text->at(0) == digit) {
            return;
        }
    } else if (value.toString() == digit) {
        return;
    }
    node->setData(1, QString(digit));
}

/// Gives a "succ" or "fail" value the text of its check state.
void followState(EventTreeItem *leaf)
{
    if (leaf->checkState != Qt::PartiallyChecked && leaf->isAuditSwitch()) {
        writeSwitch(leaf, leaf->checkState == Qt::Checked);
    }
}
} // namespace

CheckableTreeModel::CheckableTreeModel(const EventConfigStorage &storage, QObject *parent)
    : QAbstractItemModel(parent)
    , m_rootItem(std::make_shared<EventTreeItem>(QVector<QVariant>{i18n("Name"), i18n("Value")}))
    , m_storage(storage)
{
}

CheckableTreeModel::~CheckableTreeModel() = default;

QPixmap CheckableTreeModel::bothMarks() const
{
    // Made when a row first needs it: looking up theme icons is slow, and the reference model shows none.
    if (m_composedIcon.isNull()) {
        m_composedIcon
            = createComposedIcon(QStringLiteral("zep-notifications"), QStringLiteral("dialog-information"));
    }
    return m_composedIcon.pixmap(32, 16);
}

void CheckableTreeModel::setRootItem(EventTreeItem *root)
{
    beginResetModel();
    m_rootItem.reset(root);
    endResetModel();
}

EventTreeItem *CheckableTreeModel::itemAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<EventTreeItem *>(index.internalPointer()) : m_rootItem.get();
}

EventTreeItem *CheckableTreeModel::shownItem(const QModelIndex &index)
{
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(index.model());
    const QModelIndex source = proxy ? proxy->mapToSource(index) : index;
    return static_cast<EventTreeItem *>(source.internalPointer());
}

QModelIndex CheckableTreeModel::indexOf(const EventTreeItem *item, int column) const
{
    if (!item || item == m_rootItem.get()) {
        return {};
    }
    return createIndex(item->row(), column, const_cast<EventTreeItem *>(item));
}

QModelIndex CheckableTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    TreeItem *child = itemAt(parent)->child(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex CheckableTreeModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? indexOf(itemAt(index)->parentItem()) : QModelIndex();
}

int CheckableTreeModel::rowCount(const QModelIndex &parent) const
{
    const EventTreeItem *item = itemAt(parent);
    return parent.column() > 0 || !item ? 0 : item->childCount();
}

int CheckableTreeModel::columnCount(const QModelIndex &parent) const
{
    const EventTreeItem *item = itemAt(parent);
    return item ? item->columnCount() : 0;
}

QVariant CheckableTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || !m_rootItem) {
        return {};
    }
    return m_rootItem->data(section);
}

QVariant CheckableTreeModel::data(const QModelIndex &index, int role) const
{
    const EventTreeItem *item = index.isValid() ? itemAt(index) : nullptr;
    if (!item) {
        return {};
    }
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return EventDisplay::displayValue(*item, column);
    case Qt::DecorationRole:
        return column == 0 ? decoration(*item) : QVariant();
    case Qt::EditRole:
        return column == 1 || column == 2 ? item->data(column) : QVariant();
    case Qt::ToolTipRole:
        return column == 0 ? toolTip(*item) : QString();
    case Qt::ForegroundRole:
        return column == 1 && !item->editable ? QVariant(QColor(Qt::gray)) : QVariant();
    case Qt::CheckStateRole:
        return EventDisplay::checkStateValue(*item, column);
    default:
        return customRole(index, item, role);
    }
}

QVariant CheckableTreeModel::decoration(const EventTreeItem &item) const
{
    if (item.generatesLoad && item.isNotificationOn()) {
        return bothMarks();
    }
    if (item.generatesLoad) {
        return QIcon::fromTheme(QStringLiteral("dialog-information"));
    }
    return item.isNotificationOn() ? QVariant(QIcon::fromTheme(QStringLiteral("zep-notifications")))
                                   : QVariant();
}

QString CheckableTreeModel::toolTip(const EventTreeItem &item) const
{
    if (item.generatesLoad) {
        return EventDisplay::loadText();
    }
    return item.isNotificationOn() ? EventDisplay::notificationText() : QString();
}

QVariant CheckableTreeModel::customRole(const QModelIndex &index, const EventTreeItem *item, int role) const
{
    switch (role) {
    case VisibleRole:
        return item->visible;
    case FileArrayRole:
        return isFileArray(index, item);
    case ParameterRole:
        return item->kind == EventTreeItem::Parameter;
    case NativeNameRole:
        return item->nativeName;
    case DirectoriesRole:
        return hasName(item, QLatin1String("directories"));
    case DirectoryArrayRole:
        return isDirectoryArray(index, item);
    case AuditRulesRole:
        return getAuditRules(index, item);
    case UsersRole:
        return hasName(item, QLatin1String("users"));
    case GroupsRole:
        return hasName(item, QLatin1String("groups"));
    default:
        return {};
    }
}

Qt::ItemFlags CheckableTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (index.column() == 0) {
        return flags | Qt::ItemIsUserCheckable;
    }
    const EventTreeItem *item = itemAt(index);
    if (index.column() != 1) {
        return flags;
    }
    if (EventDisplay::isSwitch(*item)) {
        return flags | Qt::ItemIsUserCheckable;
    }
    const QModelIndex name = index.sibling(index.row(), 0);
    const auto answers = [this, &name](Role role) { return data(name, role).toBool(); };
    // Lists of files, directories and accounts are edited in dialogs of their own.
    if (EventDisplay::isTextEditable(*item) && !answers(FileArrayRole) && !answers(DirectoryArrayRole)
        && !answers(DirectoriesRole) && !answers(UsersRole) && !answers(GroupsRole)) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

bool CheckableTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid()) {
        return false;
    }
    EventTreeItem *item = itemAt(index);
    if (role == Qt::DecorationRole) {
        static const int registered = qRegisterMetaType<EventTreeItem::NotificationState>();
        Q_UNUSED(registered)
        item->notificationState = value.value<EventTreeItem::NotificationState>();
        Q_EMIT notificationChanged(index, index, {Qt::DecorationRole});
        return true;
    }
    if (role == Qt::EditRole) {
        if (!item->setData(index.column(), value)) {
            return false;
        }
        CheckStates::valueChanged(item);
        SubjectsJson::memberChanged(*item);
        Q_EMIT dataChanged(index, index);
        return true;
    }
    return role == Qt::CheckStateRole && toggle(index);
}

bool CheckableTreeModel::toggle(const QModelIndex &index)
{
    EventTreeItem *item = itemAt(index);
    if (item->kind == EventTreeItem::Group) {
        const bool check = item->checkState != Qt::Checked;
        item->checkState = check ? Qt::Checked : Qt::Unchecked;
        setGroupEventsChecked(item, check);
    } else if (item->checkState != Qt::PartiallyChecked) {
        const bool check = item->checkState == Qt::Unchecked;
        setGroupChecked(item, check);
        EventTreeItem *parent = item->parentItem();
        if (item->kind != EventTreeItem::Event && parent) {
            // A switch is not turned by what happens inside it.
            CheckStates::takeFromValue(parent);
        }
        // The groups of linked events show what has become of them.
        const QVector<EventTreeItem *> &linked = check ? item->dependencies() : item->dependents();
        for (const EventTreeItem *event : linked) {
            CheckStates::setDirChecked(event->parentItem());
        }
    }
    checkEnabled(m_rootItem.get());
    SubjectsJson::memberChanged(*item);
    // A range must lie under one parent for views and proxies to heed it; what else the
    // click has changed, below and in other groups, whoever shows the tree repaints.
    Q_EMIT dataChanged(index.siblingAtColumn(0), index.siblingAtColumn(1));
    return true;
}

bool CheckableTreeModel::switchParameter(const QModelIndex &index)
{
    EventTreeItem *item = index.isValid() ? itemAt(index) : nullptr;
    EventTreeItem *enabled = item && item->kind == EventTreeItem::Parameter ? item->switchChild() : nullptr;
    if (!enabled || item->checkState == Qt::PartiallyChecked) {
        return false;
    }
    writeSwitch(enabled, item->checkState == Qt::Unchecked);
    CheckStates::valueChanged(enabled);
    const QModelIndex name = index.sibling(index.row(), 0);
    Q_EMIT dataChanged(name, index.sibling(index.row(), 1));
    return true;
}

bool CheckableTreeModel::setAuditFileRules(const QModelIndex &index, const QVariant &value)
{
    if (!index.isValid()) {
        return false;
    }
    const QString opening = QStringLiteral("file-opened");
    const bool opened = hasName(itemAt(index), QLatin1String("file-opened"))
        || findParentByNativeName(index, opening).isValid();
    return setData(index.siblingAtColumn(1),
                   WatchedPaths::rulesText(WatchedPaths::fromText(value.toString()), opened), Qt::EditRole);
}

bool CheckableTreeModel::isAuditItem(const QString &name) const
{
    return name == QLatin1String("succ") || name == QLatin1String("fail");
}

bool CheckableTreeModel::isFileArray(const QModelIndex &index, const EventTreeItem *node) const
{
    if (!hasName(node, QLatin1String(".auditd.msg.exe")) && !hasName(node, QLatin1String(".auditd.key"))) {
        return false;
    }
    return findParentByNativeName(index, QStringLiteral("modifying-file")).isValid()
        || findParentByNativeName(index, QStringLiteral("file-opened")).isValid();
}

bool CheckableTreeModel::isDirectoryArray(const QModelIndex &index, const EventTreeItem *node) const
{
    return hasName(node, QLatin1String(".auditd.key"))
        && findParentByNativeName(index, QStringLiteral("modifying-directory")).isValid();
}

QModelIndex CheckableTreeModel::getAuditRules(const QModelIndex &index, const EventTreeItem *node) const
{
    if (!node || !node->hasAuditRules()) {
        return {};
    }
    // The event itself bears the flag as well as the list below it.
    const QModelIndex event
        = node->kind == EventTreeItem::Event ? index.sibling(index.row(), 0) : findParentEvent(index);
    return event.isValid() ? findChildByNativeName(event, QStringLiteral("message-audit-rules"))
                           : QModelIndex();
}

QModelIndex CheckableTreeModel::findParentByNativeName(const QModelIndex &index, const QString &name) const
{
    for (QModelIndex up = index.parent(); up.isValid(); up = up.parent()) {
        const EventTreeItem *node = itemAt(up);
        if (node->nativeName == name && !node->isSubject()) {
            return up;
        }
    }
    return {};
}

QModelIndex CheckableTreeModel::findParentEvent(const QModelIndex &index) const
{
    for (QModelIndex up = index.parent(); up.isValid(); up = up.parent()) {
        if (itemAt(up)->kind == EventTreeItem::Event) {
            return up;
        }
    }
    return {};
}

QModelIndex CheckableTreeModel::findChildByNativeName(const QModelIndex &index, const QString &name) const
{
    return indexOf(EventLookup::findParameter(*itemAt(index), name));
}

void CheckableTreeModel::announceChange(const EventTreeItem *item)
{
    // Values below it are drawn anew by the page; proxies only need to know that the row changed.
    Q_EMIT dataChanged(indexOf(item, 0), indexOf(item, 1));
}

void CheckableTreeModel::setGroupChecked(EventTreeItem *item, bool checked) const
{
    const int state = checked ? Qt::Checked : Qt::Unchecked;
    item->checkState = state;
    const QVector<EventTreeItem *> &linked = checked ? item->dependencies() : item->dependents();
    for (EventTreeItem *event : linked) {
        event->checkState = state;
    }
    if (EventTreeItem *parent = item->parentItem()) {
        const CheckStates::Count count = CheckStates::countChildren(*parent);
        if (count.partial > 0) {
            parent->checkState = Qt::PartiallyChecked;
        } else if (count.checkable == 0) {
            parent->checkState = Qt::Checked;
        } else if (count.checked == 0) {
            parent->checkState = Qt::Unchecked;
        } else {
            parent->checkState = count.checkable > count.checked ? Qt::PartiallyChecked : Qt::Checked;
        }
    }
    for (int row = 0; row < item->childCount(); ++row) {
        if (EventTreeItem *child = item->eventChild(row); child->checkable) {
            setGroupChecked(child, checked);
        }
    }
}

void CheckableTreeModel::setGroupEventsChecked(EventTreeItem *group, bool checked) const
{
    if (group->kind != EventTreeItem::Group) {
        return;
    }
    for (int row = 0; row < group->childCount(); ++row) {
        EventTreeItem *child = group->eventChild(row);
        if (child->kind == EventTreeItem::Event) {
            child->checkState = checked ? Qt::Checked : Qt::Unchecked;
        }
    }
}

void CheckableTreeModel::checkEnabled(EventTreeItem *item) const
{
    if (item->childCount() == 0) {
        followState(item);
        return;
    }
    // Only the first switch of an event or parameter counts.
    bool wantsSwitch = (item->kind == EventTreeItem::Event || item->kind == EventTreeItem::Parameter)
        && item->checkState != Qt::PartiallyChecked;
    for (TreeItem *node : item->nodes()) {
        auto *child = static_cast<EventTreeItem *>(node);
        if (child->childCount() > 0) {
            checkEnabled(child);
            continue;
        }
        // Most nodes are leaves without any part in this, and a click visits them all: their kind and the
        // length of their name say so without a call.
        if (child->kind != EventTreeItem::Parameter) {
            continue;
        }
        switch (child->nativeName.size()) {
        case 4: // succ, fail
            followState(child);
            break;
        case 7: // enabled
            if (wantsSwitch && child->isSwitchValue()) {
                wantsSwitch = false;
                writeSwitch(child, item->checkState == Qt::Checked);
            }
            break;
        default:
            break;
        }
    }
}
