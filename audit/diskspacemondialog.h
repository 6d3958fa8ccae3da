// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "disklimits.h"

#include <QDialog>
#include <QVariant>

#include <memory>

class DiskLimitsModel;
class Ui_DiskSpaceMonDialog;

/// Edits the directories of a disk-space event with their limits.
class DiskSpaceMonDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DiskSpaceMonDialog(QWidget *parent = nullptr);
    ~DiskSpaceMonDialog() override;

    /// @param text a JSON array as DiskLimits::fromJson() reads it; anything else empties the table
    void setData(const QString &text);
    /// Whether the table is another one than setData() gave.
    [[nodiscard]] bool isEdited() const;
    [[nodiscard]] DiskLimitsModel *model() const { return m_model; }

    /// Has a directory chosen and appends it.
    void addNewDirectory();
    /**
     * Appends a directory with default limits, which becomes the current row.
     * @return false when it is in the table already, which makes its row the current one, or when its name
     * cannot be saved; the dialog says so
     */
    bool addDirectory(const QString &path);
    /// Removes the current row; the last one becomes current.
    void removeSelectedDirectory();
    void selectionChanged();
    /// The table: its JSON text as DiskLimits::toJson() makes it, and the directories joined with ", ".
    [[nodiscard]] QList<QVariant> prepareData() const;

    /// Hands the table on and closes; stays open when a value cannot be saved. What was not edited is not
    /// judged.
    void accept() override;

Q_SIGNALS:
    /// @param data as prepareData() gives it
    void directoriesEdited(const QList<QVariant> &data);

private:
    void setUpTable();
    void fitColumns();
    void showProblem(const QString &text);
    void forgetProblem();

    std::unique_ptr<Ui_DiskSpaceMonDialog> m_ui;
    DiskLimitsModel *m_model;
    QString m_givenText; // as by setData()
    QVector<DiskLimit> m_givenRows;
    bool m_rejected = false; // a typed value was not taken
};
