// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "diskspacemondialog.h"

#include "disklimitdelegate.h"
#include "disklimitsmodel.h"
#include "ui_diskspacemondialog.h"

#include <plainmessage.h>

#include <KLocalizedString>

#include <QFileDialog>
#include <QHeaderView>
#include <QShortcut>

#include <utility>

DiskSpaceMonDialog::DiskSpaceMonDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_DiskSpaceMonDialog>())
    , m_model(new DiskLimitsModel(this))
{
    m_ui->setupUi(this);
    m_ui->addButton->setText(i18n("Add new directory"));
    m_ui->addButton->setIcon(QIcon::fromTheme(QStringLiteral("list-add")));
    m_ui->removeButton->setText(i18n("Remove selected directory"));
    m_ui->removeButton->setIcon(QIcon::fromTheme(QStringLiteral("list-remove")));
    // Return is for the dialog, not for the button that happens to come first.
    m_ui->addButton->setAutoDefault(false);
    m_ui->removeButton->setAutoDefault(false);
    m_ui->messageWidget->hide();
    setUpTable();
    connect(m_ui->addButton, &QPushButton::clicked, this, &DiskSpaceMonDialog::addNewDirectory);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &DiskSpaceMonDialog::removeSelectedDirectory);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &DiskSpaceMonDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &DiskSpaceMonDialog::reject);
    connect(m_model, &DiskLimitsModel::valueRejected, this, [this](const QString &reason) {
        m_rejected = true;
        showProblem(reason);
    });
    connect(m_model, &DiskLimitsModel::dataChanged, this, &DiskSpaceMonDialog::forgetProblem);
    selectionChanged();
}

DiskSpaceMonDialog::~DiskSpaceMonDialog() = default;

void DiskSpaceMonDialog::setUpTable()
{
    QTableView *table = m_ui->directoriesTable;
    table->setAccessibleName(i18n("Directories with their limits"));
    table->setModel(m_model);
    table->setItemDelegate(new DiskLimitDelegate(table));
    table->verticalHeader()->hide();
    fitColumns();
    connect(m_model, &DiskLimitsModel::modelReset, this, &DiskSpaceMonDialog::fitColumns);
    connect(m_model, &DiskLimitsModel::rowsInserted, this, &DiskSpaceMonDialog::fitColumns);
    connect(m_model, &DiskLimitsModel::dataChanged, this, &DiskSpaceMonDialog::fitColumns);
    auto *remove = new QShortcut(QKeySequence::Delete, table);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &DiskSpaceMonDialog::removeSelectedDirectory);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DiskSpaceMonDialog::selectionChanged);
}

/// The header fits its columns once, when it is told how to.
void DiskSpaceMonDialog::fitColumns()
{
    QHeaderView *header = m_ui->directoriesTable->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(DiskLimitsModel::PathColumn, QHeaderView::Stretch);
}

void DiskSpaceMonDialog::setData(const QString &text)
{
    m_givenText = text;
    m_givenRows = DiskLimits::fromJson(text);
    m_model->setRows(m_givenRows);
    forgetProblem();
    selectionChanged();
}

bool DiskSpaceMonDialog::isEdited() const
{
    return m_model->rows() != m_givenRows;
}

void DiskSpaceMonDialog::addNewDirectory()
{
    QFileDialog chooser(this, i18n("Choose a directory to monitor"), QStringLiteral("/"));
    chooser.setObjectName(QStringLiteral("pathChooser"));
    chooser.setFileMode(QFileDialog::Directory);
    chooser.setOption(QFileDialog::ShowDirsOnly);
    chooser.setFilter(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    if (chooser.exec() == QDialog::Accepted && !chooser.selectedFiles().isEmpty()) {
        addDirectory(chooser.selectedFiles().constFirst());
    }
}

bool DiskSpaceMonDialog::addDirectory(const QString &path)
{
    if (const QString problem = DiskLimits::pathProblem(path); !problem.isEmpty()) {
        showProblem(problem);
        return false;
    }
    const int present = m_model->rowOf(path);
    if (present < 0) {
        DiskLimit row;
        row.path = path;
        m_model->append(row);
        forgetProblem();
    } else {
        showProblem(i18n("“%1” is in the list already.", path));
    }
    const int row = present < 0 ? m_model->rowCount() - 1 : present;
    m_ui->directoriesTable->setCurrentIndex(m_model->index(row, DiskLimitsModel::PathColumn));
    return present < 0;
}

void DiskSpaceMonDialog::removeSelectedDirectory()
{
    QTableView *table = m_ui->directoriesTable;
    const QModelIndex current = table->currentIndex();
    if (current.isValid()) {
        m_model->removeRow(current.row());
        forgetProblem();
    }
    table->setCurrentIndex(m_model->index(m_model->rowCount() - 1, DiskLimitsModel::PathColumn));
    selectionChanged();
}

void DiskSpaceMonDialog::selectionChanged()
{
    m_ui->removeButton->setEnabled(m_ui->directoriesTable->selectionModel()->hasSelection());
}

QList<QVariant> DiskSpaceMonDialog::prepareData() const
{
    const QVector<DiskLimit> &rows = m_model->rows();
    return {DiskLimits::toJson(rows), DiskLimits::paths(rows).join(QLatin1String(", "))};
}

void DiskSpaceMonDialog::accept()
{
    // An open editor gives its text away when it loses the focus.
    m_ui->directoriesTable->setFocus();
    if (std::exchange(m_rejected, false)) {
        return; // the value that was typed is not in the table, and the dialog says why
    }
    const bool edited = isEdited();
    const QModelIndex bad = edited ? m_model->firstProblem() : QModelIndex();
    if (bad.isValid()) {
        m_ui->directoriesTable->setCurrentIndex(bad);
        showProblem(DiskLimitsModel::problem(bad.column(), bad.data(Qt::EditRole).toString()));
        return;
    }
    QList<QVariant> data = prepareData();
    if (!edited) {
        data[0] = m_givenText;
    }
    Q_EMIT directoriesEdited(data);
    QDialog::accept();
}

void DiskSpaceMonDialog::showProblem(const QString &text)
{
    PlainMessage::show(m_ui->messageWidget, KMessageWidget::Error, {text});
}

void DiskSpaceMonDialog::forgetProblem()
{
    m_rejected = false;
    m_ui->messageWidget->hide();
}
