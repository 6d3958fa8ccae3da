// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingsexporter.h"

#include "archivemessages.h"
#include "busyindicator.h"
#include "ui_settingsexporter.h"

#include <configaccessservice.h>

#include <KLocalizedString>

#include <QFileInfo>
#include <QMessageBox>

SettingsExporter::SettingsExporter(ConfigAccessService &service, QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui_SettingsExporter>())
    , m_service(service)
{
    m_ui->setupUi(this);
    m_ui->fileWidget->init(true);
}

SettingsExporter::~SettingsExporter() = default;

bool SettingsExporter::exportConfig()
{
    if (m_ui->fileWidget->filePath().isEmpty()) {
        ArchiveMessages::showError(this, i18n("No file selected"));
        return true;
    }
    const QString path = ArchiveMessages::absolutePath(m_ui->fileWidget->filePath());
    if (!m_ui->fileWidget->isConfirmed() && !mayReplace(path)) {
        return false;
    }
    const bool existed = QFileInfo::exists(path);
    bool exported = false;
    {
        const BusyIndicator busy(this);
        exported = m_service.exportConfig(path);
    }
    if (exported) {
        QMessageBox::information(this, i18n("Information"), i18n("Configuration exported successfully"));
        return true;
    }
    if (!existed && QFileInfo(path).isFile() && QFileInfo(path).size() == 0) {
        QFile::remove(path); // made to prove that the user may write there
    }
    ArchiveMessages::showFailure(this, i18n("Can not export configuration!"), m_service.errorString());
    return true;
}

bool SettingsExporter::mayReplace(const QString &path)
{
    const QFileInfo present(path);
    if (!present.isFile() || present.size() == 0) {
        return true;
    }
    QMessageBox box(QMessageBox::Question, i18n("Replace file"),
                    i18n("The file %1 already exists. Replace it?", path), QMessageBox::Yes | QMessageBox::No,
                    this);
    box.setDefaultButton(QMessageBox::No);
    box.setTextFormat(Qt::PlainText);
    return box.exec() == QMessageBox::Yes;
}

void SettingsExporter::clear()
{
    m_ui->fileWidget->clear();
}
