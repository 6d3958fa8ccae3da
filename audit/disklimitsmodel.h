// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "disklimits.h"

#include <QAbstractTableModel>

/**
 * Directories with their disk-space limits. The display text of a limit has
 * its unit, the edit text is the bare number; only limits can be edited.
 */
class DiskLimitsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { PathColumn, BytesColumn, PercentColumn, ColumnCount };
    /// Of a horizontal header: the key of the column in the JSON text.
    static constexpr int KeyRole = Qt::UserRole;

    explicit DiskLimitsModel(QObject *parent = nullptr);

    void setRows(const QVector<DiskLimit> &rows);
    [[nodiscard]] const QVector<DiskLimit> &rows() const { return m_rows; }
    void append(const DiskLimit &row);
    /// The row of that directory, -1 when there is none.
    [[nodiscard]] int rowOf(const QString &path) const;
    /// Why a text cannot stand in the column, translated; empty when it can.
    [[nodiscard]] static QString problem(int column, const QString &text);
    /// The first cell with a value that cannot be saved, invalid when all can.
    [[nodiscard]] QModelIndex firstProblem() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Takes the edit text of a limit; false, and valueRejected(), when it is none.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

Q_SIGNALS:
    /// @param reason translated
    void valueRejected(const QString &reason);

private:
    [[nodiscard]] QString text(const QModelIndex &index) const;

    QVector<DiskLimit> m_rows;
};
