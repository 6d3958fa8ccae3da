// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditdialog.h"

#include "auditfiltermodel.h"
#include "ui_auditdialog.h"

#include <jsontext.h>

#include <KLocalizedString>

#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>

namespace {
const QLatin1String on("1");

QString switchText(bool isOn)
{
    return isOn ? QString(on) : QStringLiteral("0");
}
} // namespace

const QStringList &AuditDialog::keyColumns()
{
    static const QStringList keys{QStringLiteral("name"), QStringLiteral("succ"), QStringLiteral("fail")};
    return keys;
}

AuditDialog::AuditDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_AuditDialog>())
    , m_model(new AuditTableModel(this))
    , m_filter(new AuditFilterModel(this))
{
    m_ui->setupUi(this);
    m_filter->setSourceModel(m_model);
    QTableView *view = m_ui->auditTableView;
    view->setModel(m_filter);
    view->verticalHeader()->hide();
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->horizontalHeader()->setSectionResizeMode(AuditTableModel::Name, QHeaderView::Stretch);
    view->horizontalHeader()->setSortIndicator(AuditTableModel::Name, Qt::AscendingOrder);
    view->setSortingEnabled(true);
    connect(m_ui->filterEdit, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_filter->setNameFilter(text.trimmed());
        showWhatIsSet();
    });
    connect(m_model, &QAbstractItemModel::dataChanged, this, &AuditDialog::showWhatIsSet);
    connect(m_ui->allSuccessCheckBox, &QCheckBox::clicked, this,
            [this] { setShownRows(m_ui->allSuccessCheckBox, AuditTableModel::Success); });
    connect(m_ui->allFailureCheckBox, &QCheckBox::clicked, this,
            [this] { setShownRows(m_ui->allFailureCheckBox, AuditTableModel::Failure); });
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &AuditDialog::on_buttonBox_accepted);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &AuditDialog::reject);
    setDialogType(Users);
}

AuditDialog::~AuditDialog() = default;

void AuditDialog::setDialogType(DialogType type)
{
    const bool users = type == Users;
    m_ui->tableLabel->setText(
        users ? i18n("Record the operation when it is done by these &users:")
              : i18n("Record the operation when it is done by members of these &groups:"));
    m_ui->auditTableView->setAccessibleName(users ? i18n("Audited users") : i18n("Audited groups"));
    m_ui->filterEdit->setPlaceholderText(users ? i18n("Part of a user's name")
                                               : i18n("Part of a group's name"));
}

void AuditDialog::setTableData(const QString &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
    const QStringList &keys = keyColumns();
    QList<AuditRecord> records;
    records.reserve(object.size());
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QJsonObject settings = it->toObject();
        records.append({it.key(), settings.value(keys.at(AuditTableModel::Success)).toString() == on,
                        settings.value(keys.at(AuditTableModel::Failure)).toString() == on});
    }
    m_ui->filterEdit->clear();
    m_model->updateData(records);
    m_given = m_model->records();
    m_ui->auditTableView->sortByColumn(AuditTableModel::Name, Qt::AscendingOrder);
    m_ui->auditTableView->scrollToTop();
    m_ui->filterEdit->setFocus();
    showWhatIsSet();
}

void AuditDialog::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && m_ui->filterEdit->hasFocus()) {
        // Ends typing the filter, not the dialog.
        m_ui->auditTableView->setFocus();
        return;
    }
    QDialog::keyPressEvent(event);
}

void AuditDialog::on_buttonBox_accepted()
{
    Q_EMIT auditSettingsEdited({tableData()});
    accept();
}

QString AuditDialog::tableData() const
{
    QStringList rows;
    rows.reserve(m_model->rowCount());
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const AuditRecord record = m_model->getRecord(row);
        QString name;
        JsonText::appendQuoted(name, record.name);
        // Joining adds the commas, so no row ends in one.
        rows.append(QStringLiteral("%1 : { \"succ\": \"%2\", \"fail\": \"%3\" } %4")
                        .arg(name, switchText(record.success), switchText(record.failure), QString()));
    }
    return QLatin1String("{ ") + rows.join(QLatin1String(", ")) + QLatin1Char('}');
}

QVector<int> AuditDialog::shownRows() const
{
    QVector<int> rows;
    rows.reserve(m_filter->rowCount());
    for (int row = 0; row < m_filter->rowCount(); ++row) {
        rows.append(m_filter->mapToSource(m_filter->index(row, 0)).row());
    }
    return rows;
}

void AuditDialog::setShownRows(QCheckBox *box, AuditTableModel::Column column)
{
    // A click on a box that says "some" sets all; only then is the next one for taking them back.
    m_model->setColumn(shownRows(), column, box->checkState() != Qt::Unchecked);
    showWhatIsSet();
}

void AuditDialog::showWhatIsSet()
{
    showColumn(m_ui->allSuccessCheckBox, AuditTableModel::Success);
    showColumn(m_ui->allFailureCheckBox, AuditTableModel::Failure);
}

void AuditDialog::showColumn(QCheckBox *box, AuditTableModel::Column column)
{
    const QVector<int> rows = shownRows();
    int set = 0;
    for (const int row : rows) {
        const AuditRecord record = m_model->getRecord(row);
        set += (column == AuditTableModel::Success ? record.success : record.failure) ? 1 : 0;
    }
    box->setEnabled(!rows.isEmpty());
    box->setTristate(set > 0 && set < rows.size());
    box->setCheckState(set == 0 ? Qt::Unchecked : set == rows.size() ? Qt::Checked : Qt::PartiallyChecked);
}
