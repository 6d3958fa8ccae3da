// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditrecord.h"

#include <QAbstractTableModel>
#include <QVector>

/// The table of the audit dialog: a name, and a check box for each outcome.
class AuditTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name = 0, Success = 1, Failure = 2, ColumnCount = 3 };

    explicit AuditTableModel(QObject *parent = nullptr);

    /// Replaces all rows.
    void updateData(const QList<AuditRecord> &records);
    [[nodiscard]] const QVector<AuditRecord> &records() const { return m_records; }
    /// The record of that row; an empty one for a row that does not exist.
    [[nodiscard]] AuditRecord getRecord(int row) const;
    /// Switches one outcome of many rows, and tells it once. @param column Success or Failure
    void setColumn(const QVector<int> &rows, Column column, bool on);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    [[nodiscard]] bool *outcomeAt(int row, int column);

    QVector<AuditRecord> m_records;
};
