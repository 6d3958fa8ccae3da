// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "audittablemodel.h"

#include <QDialog>
#include <QList>
#include <QStringList>
#include <QVariant>

#include <memory>

class AuditFilterModel;
class QCheckBox;
class Ui_AuditDialog;

/**
 * Lets the administrator choose of which users or groups the successes and failures of an operation are
 * recorded.
 *
 * What comes in and goes out is the JSON text of a "users" or "groups" object: one member an account, whose
 * value is an object with the members "succ" and "fail", each "0" or "1".
 */
class AuditDialog : public QDialog
{
    Q_OBJECT

public:
    enum DialogType { Groups = 0, Users = 1 };

    /// The members behind the columns of the table.
    static const QStringList &keyColumns();

    explicit AuditDialog(QWidget *parent);
    ~AuditDialog() override;

    /// Names what the rows are.
    void setDialogType(DialogType type);
    /// Fills the table; a text of another form leaves it empty.
    void setTableData(const QString &json);
    /// Whether the table is another one than setTableData() gave.
    [[nodiscard]] bool isEdited() const { return m_model->records() != m_given; }

Q_SIGNALS:
    /// The dialog was accepted; one entry, the JSON text of all rows, shown or not.
    void auditSettingsEdited(const QList<QVariant> &result);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void on_buttonBox_accepted();
    [[nodiscard]] QString tableData() const;
    [[nodiscard]] QVector<int> shownRows() const;
    void setShownRows(QCheckBox *box, AuditTableModel::Column column);
    void showWhatIsSet();
    void showColumn(QCheckBox *box, AuditTableModel::Column column);

    std::unique_ptr<Ui_AuditDialog> m_ui;
    AuditTableModel *m_model;
    AuditFilterModel *m_filter;
    QVector<AuditRecord> m_given;
};
