// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "adddestinationdialog.h"

#include "destinationnames.h"
#include "destinationsdictionary.h"
#include "destinationtext.h"
#include "ui_adddestinationdialog.h"

#include <treeitem.h>

#include <KColorScheme>
#include <KLocalizedString>

#include <QAccessible>
#include <QFileDialog>
#include <QRegularExpression>

AddDestinationDialog::AddDestinationDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::AddDestinationDialog>())
{
    m_ui->setupUi(this);
    for (const DestinationsDictionary::Entry &entry : DestinationsDictionary::instance().entries()) {
        m_ui->typeEdit->addItem(entry.name, entry.parameter);
    }
    m_ui->chooseFileButton->setIcon(QIcon::fromTheme(QStringLiteral("document-folder")));
    QPalette colors = m_ui->warningLabel->palette();
    KColorScheme::adjustForeground(colors, KColorScheme::NegativeText, QPalette::WindowText);
    m_ui->warningLabel->setPalette(colors);

    connect(m_ui->typeEdit, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        updateControls();
        validateInput();
    });
    connect(m_ui->nameEdit, &QLineEdit::textChanged, this, &AddDestinationDialog::validateInput);
    connect(m_ui->addressEdit, &QLineEdit::textChanged, this, &AddDestinationDialog::validateInput);
    connect(m_ui->chooseFileButton, &QToolButton::clicked, this, &AddDestinationDialog::chooseFile);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &AddDestinationDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &AddDestinationDialog::reject);
    updateControls();
    // Room for the longer of its two texts, so that nothing jumps when the kind changes.
    const QFontMetrics metrics = m_ui->addressLabel->fontMetrics();
    m_ui->addressLabel->setMinimumWidth(
        qMax(metrics.horizontalAdvance(i18n("Address")), metrics.horizontalAdvance(i18n("IP-address"))));
    m_ui->nameEdit->setFocus();
    resize(sizeHint().expandedTo({480, 0}));
}

AddDestinationDialog::~AddDestinationDialog() = default;

void AddDestinationDialog::setDestItems(const QVector<TreeItem *> &items)
{
    m_takenNames.clear();
    for (const TreeItem *item : items) {
        m_takenNames.append(DestinationText::bareName(item->value(1).toString()));
    }
}

QVector<QVariant> AddDestinationDialog::values() const
{
    return {destinationType(), m_ui->nameEdit->text(), m_ui->addressEdit->text(), m_ui->portEdit->value(),
            m_ui->protocolEdit->currentText()};
}

QString AddDestinationDialog::destinationType() const
{
    return m_ui->typeEdit->currentData().toString();
}

bool AddDestinationDialog::isNetwork() const
{
    return destinationType() == DestinationsDictionary::networkParameter();
}

QString AddDestinationDialog::nameValidationError() const
{
    const QString name = m_ui->nameEdit->text();
    if (!DestinationNames::isValid(name)) {
        return i18n("The destination name is not valid.");
    }
    if (m_takenNames.contains(name) || m_otherNames.contains(name)) {
        return i18n("Destination with this name already exists.");
    }
    return {};
}

QString AddDestinationDialog::addressValidationError() const
{
    static const QRegularExpression dottedAddress(
        QStringLiteral("^((25[0-5]|(2[0-4]|1\\d|[1-9]|)\\d)\\.?\\b){4}\\z"));
    if (isNetwork() && !dottedAddress.match(m_ui->addressEdit->text()).hasMatch()) {
        return i18n("The IP-address is not valid.");
    }
    return {};
}

QString AddDestinationDialog::inputValidationError() const
{
    const QString error = nameValidationError();
    return error.isEmpty() ? addressValidationError() : error;
}

bool AddDestinationDialog::validateInput()
{
    const QString error = inputValidationError();
    showWarning(error);
    return error.isEmpty();
}

void AddDestinationDialog::showWarning(const QString &text)
{
    if (m_ui->warningLabel->text() == text) {
        return;
    }
    m_ui->warningLabel->setText(text);
    QAccessibleEvent event(m_ui->warningLabel, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void AddDestinationDialog::updateControls()
{
    const bool network = isNetwork();
    m_ui->addressLabel->setText(network ? i18n("IP-address") : i18n("Address"));
    m_ui->chooseFileButton->setEnabled(!network);
    m_ui->portEdit->setEnabled(network);
    m_ui->protocolEdit->setEnabled(network);
}

void AddDestinationDialog::chooseFile()
{
    const QString path = QFileDialog::getSaveFileName(this, i18n("Choose file"), m_ui->addressEdit->text(),
                                                      QString(), nullptr, QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty()) {
        m_ui->addressEdit->setText(path);
    }
}

void AddDestinationDialog::accept()
{
    if (!validateInput()) {
        return;
    }
    const QString error = DestinationText::keepingError(values());
    if (!error.isEmpty()) {
        showWarning(error);
        return;
    }
    QDialog::accept();
}
