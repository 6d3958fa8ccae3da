// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

/**
 * Shows the rows of an AuditTableModel whose name contains a text, and sorts them: names as the user's
 * language does, numbers in them by value; outcomes with the recorded ones last, names deciding among equals.
 */
class AuditFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit AuditFilterModel(QObject *parent = nullptr);

    /// @param text in any case; empty for all rows
    void setNameFilter(const QString &text);

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    [[nodiscard]] bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QString m_text;
    QCollator m_collator;
};
