// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QDialog>

#include <memory>

class Ui_FileEditor;

/**
 * Shows the text of a file for editing and writes it back, with the rights of
 * the program. A file that could not be read, or that a text field would not
 * give back byte by byte, is shown but not written.
 */
class FileEditor : public QDialog
{
    Q_OBJECT

public:
    explicit FileEditor(const QString &path, QWidget *parent = nullptr);
    ~FileEditor() override;

    /// The text as it is edited.
    [[nodiscard]] QString getFileContents() const;
    /// Reads the file again; what was edited is dropped.
    void resetContents() const;
    /**
     * Writes the edited text, as UTF-8, in the file's place; owner and permissions stay.
     * @return false when it was not written, also because the file has changed since it was read; the dialog
     * says why
     */
    [[nodiscard]] bool writeFile() const;
    /// Writes and closes; stays open when the file was not written.
    void accept() override;

private:
    void showProblem(const QString &text) const;
    void setWritable(bool writable) const;

    std::unique_ptr<Ui_FileEditor> m_ui;
    QString m_path;
    mutable QByteArray m_read; // the file as last read or written
};
