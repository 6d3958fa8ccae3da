// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationssettings.h"

#include "adddestinationdialog.h"
#include "busyindicator.h"
#include "commonsettingsparser.h"
#include "commonwriter.h"
#include "destinationopener.h"
#include "destinationreferences.h"
#include "destinationsmodel.h"
#include "destinationtext.h"
#include "foreigndestinations.h"
#include "losscheck.h"
#include "lossquestion.h"
#include "maintree.h"
#include "ui_destinationssettings.h"

#include <configaccessservice.h>
#include <guiutils.h>
#include <systempaths.h>
#include <treeitem.h>

#include <KLocalizedString>

#include <QAction>
#include <QHeaderView>
#include <QPointer>

namespace {
QString presentPath()
{
    return SystemPaths::resolve(SystemPaths::mainConfiguration());
}
} // namespace

DestinationsSettings::DestinationsSettings(ConfigAccessService &service, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::DestinationsSettings>())
    , m_service(service)
    , m_model(new DestinationsModel(this))
{
    m_ui->setupUi(this);
    m_ui->messageWidget->setMessageType(KMessageWidget::Error);
    m_ui->messageWidget->hide();
    m_ui->destinationsView->setModel(m_model);
    m_ui->destinationsView->header()->setSectionResizeMode(DestinationsModel::KindColumn,
                                                           QHeaderView::ResizeToContents);
    m_ui->destinationsView->header()->resizeSection(DestinationsModel::NameColumn, 180);
    createActions();
    connect(m_ui->destinationsView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DestinationsSettings::selectionChanged);
    connect(m_ui->addButton, &QToolButton::clicked, this, &DestinationsSettings::addDestination);
    connect(m_ui->removeButton, &QToolButton::clicked, this,
            &DestinationsSettings::removeSelectedDestination);
    selectionChanged();
}

DestinationsSettings::~DestinationsSettings() = default;

void DestinationsSettings::createActions()
{
    m_ui->addButton->setIcon(QIcon::fromTheme(QStringLiteral("list-add")));
    m_ui->removeButton->setIcon(QIcon::fromTheme(QStringLiteral("list-remove")));

    m_openAction
        = new QAction(QIcon::fromTheme(QStringLiteral("document-edit")), i18n("Open in editor"), this);
    connect(m_openAction, &QAction::triggered, this, &DestinationsSettings::openInEditor);
    m_ui->destinationsView->addAction(m_openAction);

    m_removeAction = new QAction(QIcon::fromTheme(QStringLiteral("list-remove")),
                                 i18n("Remove selected destination"), this);
    m_removeAction->setShortcut(QKeySequence::Delete);
    m_removeAction->setShortcutContext(Qt::WidgetShortcut);
    connect(m_removeAction, &QAction::triggered, this, &DestinationsSettings::removeSelectedDestination);
    m_ui->destinationsView->addAction(m_removeAction);
}

void DestinationsSettings::loadConfig()
{
    const CommonSettingsParser parser(presentPath(), nullptr);
    m_loadedFile = parser.readBytes();
    m_model->setRootItem(MainTree::read(m_loadedFile).release());
    if (m_loadedFile.isEmpty()) {
        m_ui->messageWidget->setText(
            i18n("The destinations could not be read, so they cannot be changed. %1", parser.errorString()));
    }
    m_ui->messageWidget->setVisible(m_loadedFile.isEmpty());
    selectionChanged();
}

bool DestinationsSettings::isDestinationsModified() const
{
    const CommonSettingsParser parser(presentPath(), nullptr);
    const std::unique_ptr<TreeItem> present(parser.parse());
    return !MainTree::equal(*present, *m_model->rootItem());
}

bool DestinationsSettings::saveConfig()
{
    // What another program wrote in the meantime is not an edit of this page.
    if (!isDestinationsModified() || MainTree::equal(*MainTree::read(m_loadedFile), *m_model->rootItem())) {
        return true;
    }
    if (!mayReplaceFile()) {
        return false;
    }
    const QPointer<DestinationsSettings> self(this); // the page may be closed while the helper works
    bool written = false;
    {
        const BusyIndicator busy(this);
        CommonWriter writer(m_service, SystemPaths::mainConfiguration());
        written = writer.writeConfig(m_model->rootItem());
    }
    if (!self) {
        return written;
    }
    if (!written) {
        showError(i18n("The destinations could not be saved in %1. %2", SystemPaths::mainConfiguration(),
                       m_service.errorString()));
        return false;
    }
    loadConfig();
    return true;
}

bool DestinationsSettings::mayReplaceFile()
{
    const QPointer<DestinationsSettings> self(this);
    const CommonSettingsParser parser(presentPath(), nullptr);
    QByteArray present = parser.readBytes();
    QByteArray asked;
    // The file may change once more while the user reads what would be lost.
    while (!present.isEmpty() && present != asked) {
        const QStringList losses = LossCheck::findings(present, m_loadedFile, *m_model->rootItem());
        if (!LossQuestion::isAgreed(this, SystemPaths::mainConfiguration(), losses) || !self) {
            return false;
        }
        asked = present;
        present = parser.readBytes();
    }
    if (present.isEmpty()) {
        showError(i18n("The destinations were not saved, because the file cannot be read any more. %1",
                       parser.errorString()));
        return false;
    }
    return true;
}

void DestinationsSettings::showError(const QString &text)
{
    Gui::Utils::showText(this, QMessageBox::Critical, i18n("Error"), text);
}

void DestinationsSettings::addDestination()
{
    // On the heap: closing the page destroys the dialog, too.
    const QPointer<AddDestinationDialog> dialog(new AddDestinationDialog(this));
    dialog->setDestItems(m_model->destinations());
    dialog->setOtherNames(ForeignDestinations::names());
    const int result = dialog->exec();
    if (!dialog) {
        return;
    }
    const QVector<QVariant> values = dialog->values();
    delete dialog;
    if (result == QDialog::Accepted) {
        insertNewDest(values);
    }
}

void DestinationsSettings::insertNewDest(const QVector<QVariant> &values)
{
    m_model->insertItem(DestinationText::makeBlock(values, m_model->rootItem()));
    const QModelIndex added = m_model->index(m_model->rowCount() - 1, DestinationsModel::KindColumn);
    m_ui->destinationsView->setCurrentIndex(added);
    Q_EMIT edited();
}

TreeItem *DestinationsSettings::selectedDestination() const
{
    const QModelIndexList rows = m_ui->destinationsView->selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : m_model->destination(rows.first().row());
}

void DestinationsSettings::removeSelectedDestination()
{
    TreeItem *block = selectedDestination();
    if (!block) {
        return;
    }
    const QString name = block->value(1).toString();
    TreeItem *root = m_model->rootItem();
    if (DestinationReferences::isNested(*root, name)) {
        showError(i18n("The destination “%1” cannot be removed here, because a nested block of a log path "
                       "names it. Take it out of %2 first.",
                       name, SystemPaths::mainConfiguration()));
        return;
    }
    m_model->deleteItem(block);
    DestinationReferences::isolate(*root, name);
    root->deleteLogChild(name);
    selectionChanged();
    Q_EMIT edited();
}

void DestinationsSettings::selectionChanged()
{
    const bool editable = !m_loadedFile.isEmpty();
    const bool selected = editable && selectedDestination();
    m_ui->destinationsView->setEnabled(editable);
    m_ui->addButton->setEnabled(editable);
    m_ui->removeButton->setEnabled(selected);
    m_removeAction->setEnabled(selected);
    m_openAction->setEnabled(selected);
}

void DestinationsSettings::openInEditor()
{
    const TreeItem *block = selectedDestination();
    if (!block) {
        return;
    }
    const QString error = DestinationOpener::open(*block);
    if (!error.isEmpty()) {
        Gui::Utils::showText(this, QMessageBox::Information, i18n("Open in editor"), error);
    }
}
