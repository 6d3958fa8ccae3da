// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingsexporter.h"

#include "archivemessages.h"
#include "busyindicator.h"
#include "formerarchive.h"
#include "ui_settingsexporter.h"

#include <configaccessservice.h>
#include <guiutils.h>

#include <KLocalizedString>

#include <QFileInfo>
#include <QPointer>

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
    if (const QString problem = targetProblem(path); !problem.isEmpty()) {
        showFailure(problem);
        return true;
    }
    if (!m_ui->fileWidget->isConfirmed() && !mayReplace(path)) {
        return false;
    }
    const bool existed = QFileInfo::exists(path);
    FormerArchive former(path);
    if (const QString problem = former.setAside(); !problem.isEmpty()) {
        showFailure(problem);
        return true;
    }
    const QPointer<SettingsExporter> self(this); // the page may be closed while the helper works
    bool exported = false;
    {
        const BusyIndicator busy(this);
        exported = m_service.exportConfig(path);
    }
    if (exported) {
        former.drop();
    }
    if (!self) {
        return true;
    }
    if (exported) {
        Gui::Utils::showText(this, QMessageBox::Information, i18n("Information"),
                             i18n("Configuration exported successfully"));
        return true;
    }
    if (!existed && QFileInfo(path).isFile() && QFileInfo(path).size() == 0) {
        QFile::remove(path); // made to prove that the user may write there
    }
    const QString kept = former.putBack();
    showFailure(kept.isEmpty() ? m_service.errorString()
                               : m_service.errorString() + QLatin1Char('\n') + kept);
    return true;
}

void SettingsExporter::showFailure(const QString &reason)
{
    ArchiveMessages::showFailure(this, i18n("Can not export configuration!"), reason);
}

QString SettingsExporter::targetProblem(const QString &path)
{
    // The helper refuses it, but opening it to prove the user's right would have emptied what it points to.
    return QFileInfo(path).isSymLink()
        ? i18n("“%1” is a symbolic link; no archive is written through it.", path)
        : ArchiveMessages::pathProblem(path);
}

bool SettingsExporter::mayReplace(const QString &path)
{
    const QFileInfo present(path);
    if (!present.isFile() || present.size() == 0) {
        return true;
    }
    return Gui::Utils::showText(this, QMessageBox::Question, i18n("Replace file"),
                                i18n("The file %1 already exists. Replace it?", path),
                                QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        == QMessageBox::Yes;
}

void SettingsExporter::clear()
{
    m_ui->fileWidget->clear();
}
