// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditfiltermodel.h"

#include "audittablemodel.h"

namespace {
QString nameOf(const QModelIndex &index)
{
    return index.siblingAtColumn(AuditTableModel::Name).data().toString();
}
} // namespace

AuditFilterModel::AuditFilterModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    m_collator.setNumericMode(true);
    // A row must not jump away under the pointer that just switched it.
    setDynamicSortFilter(false);
}

void AuditFilterModel::setNameFilter(const QString &text)
{
    m_text = text;
    invalidateFilter();
}

bool AuditFilterModel::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    return m_text.isEmpty()
        || nameOf(sourceModel()->index(row, AuditTableModel::Name, parent))
               .contains(m_text, Qt::CaseInsensitive);
}

bool AuditFilterModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (left.column() != AuditTableModel::Name) {
        const int leftState = left.data(Qt::CheckStateRole).toInt();
        const int rightState = right.data(Qt::CheckStateRole).toInt();
        if (leftState != rightState) {
            return leftState < rightState;
        }
    }
    return m_collator.compare(nameOf(left), nameOf(right)) < 0;
}
