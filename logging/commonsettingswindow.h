// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDialog>

#include <memory>

class ConfigAccessService;
class DestinationsSettings;
class LogRotationSettings;
class SettingsExporter;
class SettingsImporter;
class Ui_CommonSettingsWindow;

/**
 * The dialog for what concerns the logging service as a whole: destinations, rotation, export and import, one
 * tab each. OK acts on the tab that is shown, and on no other; edits of the others are dropped.
 */
class CommonSettingsWindow : public QDialog
{
    Q_OBJECT

public:
    /// @param service kept by reference
    CommonSettingsWindow(ConfigAccessService &service, QWidget *parent);
    ~CommonSettingsWindow() override;

    /// Reads all files anew and drops all edits.
    void loadConfig();

public Q_SLOTS:
    /// Prepares the pages and shows the dialog, modal, with the tab that was shown last. Returns at once.
    void open() override;
    /// The same with the destinations.
    void openDestinationSettings();
    /// Saves, exports or imports and closes the dialog; stays open when edits could not be saved.
    void accept() override;
    /// Closes the dialog and drops all edits; not while it is at work.
    void reject() override;

Q_SIGNALS:
    /// As those of the page for the import.
    void importStarted();
    void importFinished(bool imported);
    /// All configuration files may have been replaced, and the user has been told.
    void configurationImported();

private:
    [[nodiscard]] bool act();

    std::unique_ptr<Ui_CommonSettingsWindow> m_ui;
    DestinationsSettings *m_destinationsSettings = nullptr;
    LogRotationSettings *m_logRotationSettings = nullptr;
    SettingsExporter *m_settingsExporter = nullptr;
    SettingsImporter *m_settingsImporter = nullptr;
};
