// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "watchpathcheck.h"

#include <QDialog>
#include <QStringList>
#include <QVariant>

#include <memory>

class QListWidgetItem;
class Ui_FilesDialog;

/**
 * Edits the list of files, or of directories, that an event watches. A path that audit rules cannot carry is
 * refused with the reason; one that does not exist is taken and marked.
 */
class FilesDialog : public QDialog
{
    Q_OBJECT

public:
    enum DialogType { Files = 0, Directories = 1 };

    explicit FilesDialog(QWidget *parent = nullptr);
    ~FilesDialog() override;

    /// Every value but Files stands for directories.
    void setDialogType(DialogType type);
    /// @param value the paths as text, separated by commas
    void setData(const QVariant &value);
    /// The paths as they are shown.
    [[nodiscard]] QStringList paths() const;
    /// Whether the list is another one than setData() gave.
    [[nodiscard]] bool isEdited() const { return paths() != m_given; }

    /// Has a path chosen and appends it.
    void addNewFile();
    /**
     * Appends a path, which becomes the current row.
     * @return false when it is in the list already, which makes its row the current one, or when it cannot be
     * watched; the dialog says so
     */
    bool addPath(const QString &path);
    /// Removes the current row; the last one becomes current.
    void removeSelectedFile() const;
    void selectionChanged() const;
    /// Hands the list on and closes; stays open when a path cannot be watched. What was not edited is not
    /// judged.
    void on_buttonBox_accepted();

Q_SIGNALS:
    /// @param value the paths joined with ", "
    void fileListEdited(const QVariant &value);

private:
    [[nodiscard]] WatchPathCheck::Target target() const;
    QListWidgetItem *appendRow(const QString &path);
    void showState(QListWidgetItem *item) const;
    void showNotes() const;
    void showProblem(const QString &text) const;

    std::unique_ptr<Ui_FilesDialog> m_ui;
    DialogType m_type = Files;
    QStringList m_given; // as by setData()
};
