// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QWidget>

#include <memory>

class ConfigAccessService;
class Ui_SettingsExporter;

/// The page on which the whole logging configuration is saved in an archive.
class SettingsExporter : public QWidget
{
    Q_OBJECT

public:
    /// @param service kept by reference
    SettingsExporter(ConfigAccessService &service, QWidget *parent);
    ~SettingsExporter() override;

    /**
     * Has the archive written that the page names, a tar.gz file; the user is told what came of it.
     * @return false when the user would rather not replace a file: nothing was done then.
     */
    bool exportConfig();
    /// Empties the file field.
    void clear();

private:
    [[nodiscard]] bool mayReplace(const QString &path);
    [[nodiscard]] static QString targetProblem(const QString &path);
    void showFailure(const QString &reason);

    std::unique_ptr<Ui_SettingsExporter> m_ui;
    ConfigAccessService &m_service;
};
