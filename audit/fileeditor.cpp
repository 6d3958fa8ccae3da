// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fileeditor.h"

#include "ui_fileeditor.h"

#include <plainmessage.h>

#include <KLocalizedString>

#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QSaveFile>

#include <optional>

namespace {
constexpr qint64 largestFile = 4 * 1024 * 1024;

/// No value when the file cannot be read; @p reason then says why.
std::optional<QByteArray> contentOf(const QString &path, QString &reason)
{
    QFile file(path);
    if (!QFileInfo(path).isFile()) {
        reason = i18n("“%1” is not a file.", path);
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        reason = i18n("“%1” could not be read: %2", path, file.errorString());
        return std::nullopt;
    }
    QByteArray content = file.read(largestFile + 1);
    if (file.error() != QFile::NoError) {
        reason = i18n("“%1” could not be read: %2", path, file.errorString());
        return std::nullopt;
    }
    if (content.size() > largestFile) {
        reason = i18n("“%1” is too large to be edited here.", path);
        return std::nullopt;
    }
    return content;
}
} // namespace

FileEditor::FileEditor(const QString &path, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_FileEditor>())
    , m_path(path)
{
    m_ui->setupUi(this);
    setWindowTitle(path);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &FileEditor::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FileEditor::reject);
    connect(m_ui->buttonBox->button(QDialogButtonBox::Reset), &QPushButton::clicked, this,
            &FileEditor::resetContents);
    resetContents();
}

FileEditor::~FileEditor() = default;

QString FileEditor::getFileContents() const
{
    // The plain text of a document has blanks where the file has no-break spaces.
    QString text = m_ui->textEdit->document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

void FileEditor::resetContents() const
{
    QString reason;
    const std::optional<QByteArray> content = contentOf(m_path, reason);
    m_read = content.value_or(QByteArray());
    m_ui->textEdit->setPlainText(QString::fromUtf8(m_read));
    m_ui->messageWidget->hide();
    const bool faithful = getFileContents().toUtf8() == m_read;
    setWritable(content && faithful);
    if (!content) {
        showProblem(reason);
    } else if (!faithful) {
        showProblem(i18n("“%1” holds what a text field would change, such as other line ends or bytes that "
                         "are not UTF-8. It is only shown.",
                         m_path));
    }
}

void FileEditor::setWritable(bool writable) const
{
    m_ui->textEdit->setReadOnly(!writable);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(writable);
}

bool FileEditor::writeFile() const
{
    if (m_ui->textEdit->isReadOnly()) {
        return false; // the dialog says why since it was filled
    }
    QString reason;
    const std::optional<QByteArray> present = contentOf(m_path, reason);
    if (!present) {
        showProblem(reason);
        return false;
    }
    if (*present != m_read) {
        showProblem(i18n("“%1” was changed by another program meanwhile. Nothing was written.", m_path));
        return false;
    }
    const QByteArray edited = getFileContents().toUtf8();
    if (edited == m_read) {
        return true;
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(edited) != edited.size() || !file.commit()) {
        showProblem(i18n("“%1” could not be written: %2", m_path, file.errorString()));
        return false;
    }
    m_read = edited;
    m_ui->messageWidget->hide();
    return true;
}

void FileEditor::accept()
{
    if (writeFile()) {
        QDialog::accept();
    }
}

void FileEditor::showProblem(const QString &text) const
{
    PlainMessage::show(m_ui->messageWidget, KMessageWidget::Error, {text});
}
