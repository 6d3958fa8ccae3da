// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treeitem.h"

#include <algorithm>

namespace {
bool isBlock(const TreeItem *item, QLatin1String keyword)
{
    return item->value(0).toString() == keyword;
}

const QLatin1String sourceKeyword("source");
const QLatin1String destinationKeyword("destination");
const QLatin1String logKeyword("log");
const QLatin1String eventSource("nivra_events_src");
} // namespace

TreeItem::TreeItem(const QVector<QVariant> &itemData, TreeItem *parent)
    : m_itemData(itemData)
    , m_parentItem(parent)
{
}

TreeItem::~TreeItem()
{
    qDeleteAll(m_children);
}

QVariant TreeItem::data(int column) const
{
    return value(column);
}

const QVariant &TreeItem::noValue()
{
    static const QVariant invalid;
    return invalid;
}

bool TreeItem::setData(int column, const QVariant &value)
{
    if (column < 0 || column >= m_itemData.size()) {
        return false;
    }
    m_itemData[column] = value;
    return true;
}

void TreeItem::setData(const QVector<QVariant> &itemData)
{
    m_itemData = itemData;
}

int TreeItem::row() const
{
    if (!m_parentItem) {
        return 0;
    }
    // Views ask for the row of the same nodes again and again; a list of
    // thousands of subjects is searched only after it has changed.
    const QVector<TreeItem *> &siblings = m_parentItem->m_children;
    if (m_rowHint >= siblings.size() || siblings.at(m_rowHint) != this) {
        const int found = siblings.indexOf(const_cast<TreeItem *>(this));
        if (found < 0) {
            return -1;
        }
        m_rowHint = found;
    }
    return m_rowHint;
}

void TreeItem::appendChild(TreeItem *child, bool prepend)
{
    if (prepend) {
        m_children.prepend(child);
    } else {
        child->m_rowHint = m_children.size();
        m_children.append(child);
    }
}

bool TreeItem::deleteChild(int row)
{
    if (row < 0 || row > m_children.size()) {
        return false;
    }
    if (row < m_children.size()) {
        delete m_children.takeAt(row);
    }
    return true;
}

TreeItem *TreeItem::findChild(const QString &name, int column) const
{
    for (TreeItem *child : m_children) {
        if (child->value(column).toString() == name) {
            return child;
        }
        if (TreeItem *found = child->findChild(name, column)) {
            return found;
        }
    }
    return nullptr;
}

TreeItem *TreeItem::findChildWithoutTopLevel(const QString &name, int column) const
{
    for (const TreeItem *child : m_children) {
        if (TreeItem *found = child->findChild(name, column)) {
            return found;
        }
    }
    return nullptr;
}

TreeItem *TreeItem::findChildTopLevel(const QString &name) const
{
    for (TreeItem *child : m_children) {
        if (child->value(0).toString() == name) {
            return child;
        }
    }
    return nullptr;
}

void TreeItem::createDestChain(const QString &name)
{
    auto *chain = new TreeItem({QString(logKeyword), QString(QLatin1String("")), QVariant()}, this);
    chain->appendChild(new TreeItem({QString(sourceKeyword), QVariant(), QString(eventSource)}, chain));
    chain->appendChild(new TreeItem({QString(destinationKeyword), QVariant(), name}, chain));
    appendChild(chain);
}

int TreeItem::destinationPosition() const
{
    for (int i = m_children.size() - 1; i >= 0; --i) {
        if (isBlock(m_children.at(i), destinationKeyword)) {
            return i + 1;
        }
    }
    for (int i = 0; i < m_children.size(); ++i) {
        if (isBlock(m_children.at(i), logKeyword)) {
            return i;
        }
    }
    return m_children.size();
}

void TreeItem::appendChildDestination(TreeItem *item)
{
    m_children.insert(destinationPosition(), item);
    createDestChain(item->value(1).toString());
}

bool TreeItem::hasDestinationOtherThan(const QString &name) const
{
    return std::any_of(m_children.begin(), m_children.end(), [&name](const TreeItem *child) {
        const QString value = child->value(2).toString();
        // A nested block may have destinations of its own.
        return isBlock(child, destinationKeyword) ? value != name : value.contains(destinationKeyword);
    });
}

bool TreeItem::deleteLogChild(const QString &name)
{
    const auto namesIt = [&name](const TreeItem *child) {
        return isBlock(child, destinationKeyword) && child->value(2).toString() == name;
    };
    QVector<TreeItem *> found;
    for (TreeItem *block : qAsConst(m_children)) {
        if (isBlock(block, logKeyword)
            && std::any_of(block->m_children.begin(), block->m_children.end(), namesIt)) {
            found.append(block);
        }
    }
    for (TreeItem *block : qAsConst(found)) {
        if (!block->hasDestinationOtherThan(name)) {
            m_children.removeOne(block);
            delete block;
            continue;
        }
        for (int row = block->childCount() - 1; row >= 0; --row) {
            if (namesIt(block->child(row))) {
                block->deleteChild(row);
            }
        }
    }
    return !found.isEmpty();
}
