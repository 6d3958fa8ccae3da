// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QWidget>

#include <memory>

class ConfigAccessService;
class Ui_SettingsImporter;

/// The page on which the whole logging configuration is taken from an archive.
class SettingsImporter : public QWidget
{
    Q_OBJECT

public:
    /// @param service kept by reference
    SettingsImporter(ConfigAccessService &service, QWidget *parent);
    ~SettingsImporter() override;

    /**
     * Has the archive installed that the page names. The user is told what came of it, and is asked after a
     * success whether to reboot now.
     * @return whether the configuration was replaced.
     */
    bool importConfig();
    /// Whether the last import left the main logging configuration out, because another version made it.
    [[nodiscard]] bool mainConfigImportFault() const;
    /// Empties the file field.
    void clear();

Q_SIGNALS:
    /// From here on files may be replaced.
    void importStarted();
    /**
     * No more files are replaced. Comes before the user is told.
     * @param imported whether the configuration was replaced.
     */
    void importFinished(bool imported);

private:
    std::unique_ptr<Ui_SettingsImporter> m_ui;
    ConfigAccessService &m_service;
};
