// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "disklimitsmodel.h"

#include <KFormat>
#include <KLocalizedString>

#include <QColor>

namespace {
QString withUnit(int column, const QString &text)
{
    if (column == DiskLimitsModel::BytesColumn) {
        const double bytes = static_cast<double>(text.toLongLong());
        return i18nc("@item a number of bytes, and the same in a larger unit", "%1 B (%2)", text,
                     KFormat().formatByteSize(bytes, 2));
    }
    return column == DiskLimitsModel::PercentColumn ? i18nc("@item a percentage", "%1 %", text) : text;
}
} // namespace

DiskLimitsModel::DiskLimitsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void DiskLimitsModel::setRows(const QVector<DiskLimit> &rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

void DiskLimitsModel::append(const DiskLimit &row)
{
    beginInsertRows({}, m_rows.size(), m_rows.size());
    m_rows.append(row);
    endInsertRows();
}

int DiskLimitsModel::rowOf(const QString &path) const
{
    return DiskLimits::paths(m_rows).indexOf(path);
}

QString DiskLimitsModel::problem(int column, const QString &text)
{
    switch (column) {
    case PathColumn:
        return DiskLimits::pathProblem(text);
    case BytesColumn:
        return DiskLimits::bytesProblem(text);
    default:
        return DiskLimits::percentProblem(text);
    }
}

QModelIndex DiskLimitsModel::firstProblem() const
{
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            const QModelIndex cell = index(row, column);
            if (!problem(column, text(cell)).isEmpty()) {
                return cell;
            }
        }
    }
    return {};
}

int DiskLimitsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int DiskLimitsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DiskLimitsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    if (role == Qt::DisplayRole) {
        const QStringList titles{i18n("Directory"), i18n("Limit (bytes)"), i18n("Limit (%)")};
        return titles.at(section);
    }
    if (role == KeyRole) {
        static const QStringList keys{QStringLiteral("path"), QStringLiteral("limit_bytes"),
                                      QStringLiteral("limit_percent")};
        return keys.at(section);
    }
    return {};
}

QString DiskLimitsModel::text(const QModelIndex &index) const
{
    const DiskLimit &row = m_rows.at(index.row());
    switch (index.column()) {
    case PathColumn:
        return row.path;
    case BytesColumn:
        return row.bytes;
    default:
        return row.percent;
    }
}

QVariant DiskLimitsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const QString value = text(index);
    const QString reason = problem(index.column(), value);
    switch (role) {
    case Qt::EditRole:
        return value;
    case Qt::DisplayRole:
        return reason.isEmpty() ? withUnit(index.column(), value) : value;
    case Qt::ToolTipRole:
        return reason.isEmpty() ? value : reason;
    case Qt::AccessibleDescriptionRole:
        return reason;
    case Qt::ForegroundRole:
        return reason.isEmpty() ? QVariant() : QVariant(QColor(Qt::red));
    case Qt::TextAlignmentRole:
        return index.column() == PathColumn ? QVariant() : QVariant(int(Qt::AlignRight | Qt::AlignVCenter));
    default:
        return {};
    }
}

Qt::ItemFlags DiskLimitsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() && index.column() != PathColumn ? flags | Qt::ItemIsEditable : flags;
}

bool DiskLimitsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid)
        || index.column() == PathColumn) {
        return false;
    }
    const QString typed = value.toString().trimmed();
    if (const QString reason = problem(index.column(), typed); !reason.isEmpty()) {
        Q_EMIT valueRejected(reason);
        return false;
    }
    DiskLimit &row = m_rows[index.row()];
    if (index.column() == BytesColumn) {
        row.bytes = QString::number(typed.toLongLong());
    } else {
        row.percent = DiskLimits::normalizedPercent(typed);
    }
    Q_EMIT dataChanged(index, index);
    return true;
}

bool DiskLimitsModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > m_rows.size()) {
        return false;
    }
    beginRemoveRows({}, row, row + count - 1);
    m_rows.remove(row, count);
    endRemoveRows();
    return true;
}
