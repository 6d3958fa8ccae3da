// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class ConfigAccessService;
class TreeItem;

/// Turns a tree into the content of one system file and has the privileged service write it.
class AbstractWriter
{
public:
    /**
     * @param configAccessService kept by reference
     * @param configFile the target, an absolute path as the privileged helper knows it
     */
    AbstractWriter(ConfigAccessService &configAccessService, const QString &configFile);
    virtual ~AbstractWriter() = default;
    AbstractWriter(const AbstractWriter &) = delete;
    AbstractWriter &operator=(const AbstractWriter &) = delete;

    /// Writes createConfig() to configFile(); false when the service refused or failed (its error text says
    /// why).
    virtual bool writeConfig(TreeItem *root);
    /// The content without writing it.
    [[nodiscard]] virtual QStringList getConfig(TreeItem *root);
    /// The file's lines.
    [[nodiscard]] virtual QStringList createConfig(TreeItem *root) = 0;

    [[nodiscard]] const QString &configFile() const { return m_configFile; }
    [[nodiscard]] ConfigAccessService &configAccessService() const { return m_configAccessService; }

private:
    ConfigAccessService &m_configAccessService;
    QString m_configFile;
};
