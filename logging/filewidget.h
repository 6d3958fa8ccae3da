// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QWidget>

#include <memory>

class Ui_FileWidget;

/// A line for the path of a configuration archive, with a button that opens a file dialog.
class FileWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FileWidget(QWidget *parent = nullptr);
    ~FileWidget() override;

    /// @param saveMode whether the dialog is for a file to be written (true) or one to be read
    void init(bool saveMode);
    /// The path as it stands in the line.
    [[nodiscard]] QString filePath() const;
    /// Whether the path comes from the dialog, which asks before a file is replaced.
    [[nodiscard]] bool isConfirmed() const;
    void clear();

private:
    void choose();

    std::unique_ptr<Ui_FileWidget> m_ui;
    QString m_chosen;
    bool m_saveMode = false;
};
