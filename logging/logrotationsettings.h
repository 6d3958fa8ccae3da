// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "rotationscan.h"
#include "rotationterms.h"

#include <QWidget>

#include <memory>

class ConfigAccessService;
class KMessageWidget;
class TreeItem;
class Ui_LogRotationSettings;

/**
 * The page for the rotation of the event log: how large it is now, how many files are kept, and at which size
 * or after which period a new one begins. Only these terms of the rotation file are changed, and of them only
 * those that the user edited: what a field cannot show exactly stays in the file as it is.
 */
class LogRotationSettings : public QWidget
{
    Q_OBJECT

public:
    /// @param service kept by reference
    LogRotationSettings(ConfigAccessService &service, QWidget *parent);
    ~LogRotationSettings() override;

    /// Reads the file and fills the page; edits are dropped. A file that cannot be taken over leaves the
    /// defaults, disabled, with the reason above them.
    void loadConfig();
    /// The present file with the page's terms; null when it cannot be taken over, see errorString().
    [[nodiscard]] std::unique_ptr<TreeItem> createConfig() const;
    /**
     * Writes the file, unless it would say the same as before. Asks first where the file holds what
     * cannot be kept.
     * @return false when the edits are not in the file; the user has been told, or has declined.
     */
    [[nodiscard]] bool saveConfig();
    /// Shows the present size of the log and of its file system.
    void getLogStatistics();

    /// Why the file could not be taken over, translated, with the line; empty when it could.
    [[nodiscard]] const QString &errorString() const { return m_error; }

private:
    struct Touched
    {
        bool number = false;
        bool size = false;
        bool period = false;
    };

    void connectFields();
    void enableFields();
    void showTerms(const RotationTerms &terms);
    void showError();
    void updateNotes();
    [[nodiscard]] QStringList keptAsTheyAre(const RotationTerms &present) const;
    [[nodiscard]] RotationTerms editedTerms(const RotationTerms &present) const;
    [[nodiscard]] std::unique_ptr<TreeItem> newTree(const RotationScan &scan) const;
    /// What writing @p section in place of the file's own would lose or alter, a sentence each.
    [[nodiscard]] QStringList lossesOf(const RotationScan &scan, const TreeItem &section) const;
    [[nodiscard]] bool write(TreeItem *root);
    void showFailure(const QString &reason);

    std::unique_ptr<Ui_LogRotationSettings> m_ui;
    ConfigAccessService &m_service;
    KMessageWidget *m_messageBar;
    RotationScan m_loaded;
    QString m_error;
    Touched m_touched; // by the user, since the file was read
    bool m_loading = false;
};
