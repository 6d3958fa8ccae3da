// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "audittablemodel.h"

#include <KLocalizedString>

AuditTableModel::AuditTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void AuditTableModel::updateData(const QList<AuditRecord> &records)
{
    beginResetModel();
    m_records = records.toVector();
    endResetModel();
}

AuditRecord AuditTableModel::getRecord(int row) const
{
    return m_records.value(row);
}

bool *AuditTableModel::outcomeAt(int row, int column)
{
    if (row < 0 || row >= m_records.size() || (column != Success && column != Failure)) {
        return nullptr;
    }
    AuditRecord &record = m_records[row];
    return column == Success ? &record.success : &record.failure;
}

void AuditTableModel::setColumn(const QVector<int> &rows, Column column, bool on)
{
    int first = m_records.size();
    int last = -1;
    for (const int row : rows) {
        bool *outcome = outcomeAt(row, column);
        if (outcome && *outcome != on) {
            *outcome = on;
            first = qMin(first, row);
            last = qMax(last, row);
        }
    }
    if (last >= first) {
        Q_EMIT dataChanged(index(first, column), index(last, column), {Qt::CheckStateRole});
    }
}

int AuditTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_records.size();
}

int AuditTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant AuditTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const AuditRecord &record = m_records.at(index.row());
    if (index.column() == Name) {
        return role == Qt::DisplayRole || role == Qt::ToolTipRole ? QVariant(record.name) : QVariant();
    }
    const bool on = index.column() == Success ? record.success : record.failure;
    if (role == Qt::CheckStateRole) {
        return on ? Qt::Checked : Qt::Unchecked;
    }
    // A reader that sees neither header nor box.
    if (role == Qt::AccessibleTextRole) {
        return index.column() == Success ? i18n("Record successes of %1", record.name)
                                         : i18n("Record failures of %1", record.name);
    }
    return {};
}

bool AuditTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    bool *outcome = role == Qt::CheckStateRole && checkIndex(index, CheckIndexOption::IndexIsValid)
        ? outcomeAt(index.row(), index.column())
        : nullptr;
    if (!outcome) {
        return false;
    }
    const bool on = value.toInt() == Qt::Checked;
    if (*outcome != on) {
        *outcome = on;
        Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    }
    return true;
}

QVariant AuditTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return i18nc("of a user or group", "Name");
    case Success:
        return i18n("Success");
    case Failure:
        return i18n("Failure");
    default:
        return {};
    }
}

Qt::ItemFlags AuditTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return index.column() == Name ? flags : flags | Qt::ItemIsUserCheckable;
}
