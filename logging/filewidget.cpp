// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "filewidget.h"

#include "ui_filewidget.h"

#include <KLocalizedString>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

FileWidget::FileWidget(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui_FileWidget>())
{
    m_ui->setupUi(this);
    m_ui->fileToolButton->setIcon(QIcon::fromTheme(QStringLiteral("document-folder")));
    setFocusProxy(m_ui->fileLineEdit);
    connect(m_ui->fileToolButton, &QToolButton::clicked, this, &FileWidget::choose);
}

FileWidget::~FileWidget() = default;

void FileWidget::init(bool saveMode)
{
    m_saveMode = saveMode;
}

QString FileWidget::filePath() const
{
    return m_ui->fileLineEdit->text();
}

bool FileWidget::isConfirmed() const
{
    return !m_chosen.isEmpty() && m_chosen == filePath();
}

void FileWidget::clear()
{
    m_ui->fileLineEdit->clear();
    m_chosen.clear();
}

void FileWidget::choose()
{
    const QString present = filePath();
    const QString folder = present.isEmpty() ? QDir::homePath() : QFileInfo(present).path();
    QFileDialog dialog(this, i18n("Choose file"), folder, QStringLiteral("*.tar.gz"));
    dialog.setAcceptMode(m_saveMode ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(m_saveMode ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(QStringLiteral("tar.gz"));
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const QString path = dialog.selectedFiles().value(0);
    if (!path.isEmpty()) {
        m_chosen = path;
        m_ui->fileLineEdit->setText(path);
    }
}
