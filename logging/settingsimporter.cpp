// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingsimporter.h"

#include "archivemessages.h"
#include "busyindicator.h"
#include "ui_settingsimporter.h"

#include <configaccessservice.h>
#include <coreutils.h>
#include <guiutils.h>

#include <KLocalizedString>

#include <QPointer>

SettingsImporter::SettingsImporter(ConfigAccessService &service, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui_SettingsImporter>())
    , m_service(service)
{
    m_ui->setupUi(this);
    m_ui->fileWidget->init(false);
}

SettingsImporter::~SettingsImporter() = default;

bool SettingsImporter::importConfig()
{
    if (m_ui->fileWidget->filePath().isEmpty()) {
        ArchiveMessages::showError(this, i18n("No file selected"));
        return false;
    }
    const QString path = ArchiveMessages::absolutePath(m_ui->fileWidget->filePath());
    const QPointer<SettingsImporter> self(this); // the page may be closed while the helper works
    QString problem = ArchiveMessages::pathProblem(path);
    bool imported = false;
    if (problem.isEmpty()) {
        const BusyIndicator busy(this);
        Q_EMIT importStarted();
        imported = m_service.importConfig(path);
        if (self) {
            Q_EMIT importFinished(imported);
        }
    }
    if (!self) {
        return false;
    }
    if (!imported) {
        ArchiveMessages::showFailure(this, i18n("Can not import configuration!"),
                                     problem.isEmpty() ? m_service.errorString() : problem);
        return false;
    }
    if (mainConfigImportFault()) {
        Gui::Utils::showText(this, QMessageBox::Warning, i18n("Warning"),
                             i18n("Failed to import /etc/syslog-ng/conf.d/mod-nivra.conf!\n"
                                  "The contents of the file are not compatible with the current version of "
                                  "the event logging subsystem."));
    }
    const QString text = QStringLiteral("%1.\n%2").arg(
        i18n("Configuration imported successfully"),
        i18n("The notification settings will take effect only after the system is rebooted."));
    if (Gui::Utils::confirmAboutReboot(text)) {
        Core::Utils::rebootSystem();
    }
    return true;
}

bool SettingsImporter::mainConfigImportFault() const
{
    return m_service.getActionResult(QStringLiteral("mainConfigImportFault")).toBool();
}

void SettingsImporter::clear()
{
    m_ui->fileWidget->clear();
}
