// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonsettingswindow.h"

#include "busyindicator.h"
#include "destinationssettings.h"
#include "logrotationsettings.h"
#include "settingsexporter.h"
#include "settingsimporter.h"
#include "ui_commonsettingswindow.h"

#include <guiutils.h>

#include <KLocalizedString>

#include <QPointer>

CommonSettingsWindow::CommonSettingsWindow(ConfigAccessService &service, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_CommonSettingsWindow>())
{
    m_ui->setupUi(this);
    m_destinationsSettings = new DestinationsSettings(service, this);
    m_logRotationSettings = new LogRotationSettings(service, this);
    m_settingsExporter = new SettingsExporter(service, this);
    m_settingsImporter = new SettingsImporter(service, this);
    m_ui->tabWidget->setTabText(m_ui->tabWidget->indexOf(m_ui->logRotateTab), i18n("Main log rotation"));
    m_destinationsSettings->setObjectName(QStringLiteral("destinationsSettings"));
    m_logRotationSettings->setObjectName(QStringLiteral("logRotationSettings"));
    m_settingsExporter->setObjectName(QStringLiteral("settingsExporter"));
    m_settingsImporter->setObjectName(QStringLiteral("settingsImporter"));
    connect(m_settingsImporter, &SettingsImporter::importStarted, this, &CommonSettingsWindow::importStarted);
    connect(m_settingsImporter, &SettingsImporter::importFinished, this,
            &CommonSettingsWindow::importFinished);
    m_ui->destinationsTabLayout->addWidget(m_destinationsSettings);
    m_ui->logRotateTabLayout->addWidget(m_logRotationSettings);
    m_ui->exportTabLayout->addWidget(m_settingsExporter);
    m_ui->importTabLayout->addWidget(m_settingsImporter);
    // Taken out and put in again, the buttons follow the pages when the focus moves on.
    m_ui->buttonBox->setParent(nullptr);
    m_ui->verticalLayout->addWidget(m_ui->buttonBox);
    setModal(true);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &CommonSettingsWindow::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &CommonSettingsWindow::reject);
}

CommonSettingsWindow::~CommonSettingsWindow() = default;

void CommonSettingsWindow::loadConfig()
{
    m_destinationsSettings->loadConfig();
    m_logRotationSettings->loadConfig();
}

void CommonSettingsWindow::open()
{
    if (!isVisible()) {
        loadConfig(); // others may have written the files since the dialog was closed
        m_destinationsSettings->selectionChanged();
        m_logRotationSettings->getLogStatistics();
        m_settingsExporter->clear();
        m_settingsImporter->clear();
    }
    Gui::Utils::bringUp(*this);
}

void CommonSettingsWindow::openDestinationSettings()
{
    m_ui->tabWidget->setCurrentWidget(m_ui->destinationsTab);
    open();
}

void CommonSettingsWindow::accept()
{
    if (BusyIndicator::isBusy(this)) {
        return;
    }
    const QPointer<CommonSettingsWindow> self(this);
    // What is under way runs an event loop, in which the page may be closed.
    if (!act() || !self) {
        return;
    }
    loadConfig();
    QDialog::accept();
}

bool CommonSettingsWindow::act()
{
    const QWidget *current = m_ui->tabWidget->currentWidget();
    if (current == m_ui->destinationsTab) {
        return m_destinationsSettings->saveConfig();
    }
    if (current == m_ui->logRotateTab) {
        return m_logRotationSettings->saveConfig();
    }
    if (current == m_ui->exportTab) {
        return m_settingsExporter->exportConfig();
    }
    const QPointer<CommonSettingsWindow> self(this);
    if (m_settingsImporter->importConfig() && self) {
        Q_EMIT configurationImported();
    }
    return true;
}

void CommonSettingsWindow::reject()
{
    if (BusyIndicator::isBusy(this)) {
        return;
    }
    QDialog::reject();
    loadConfig();
}
