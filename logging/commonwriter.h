// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <abstractwriter.h>

/**
 * Writes the main logging configuration, in the daemon's language (syslog-ng.conf(5)), from the tree that
 * CommonSettingsParser makes.
 *
 * Each child of the root becomes one statement: a directive, when its column 0 contains "@", else a block
 * with one line per parameter.
 */
class CommonWriter : public AbstractWriter
{
public:
    /**
     * @param service kept by reference
     * @param configFile the target as the privileged helper knows it (see SystemPaths::mainConfiguration())
     */
    CommonWriter(ConfigAccessService &service, const QString &configFile);

    /// One text per statement, each with its final line break.
    [[nodiscard]] QStringList createConfig(TreeItem *root) override;

    /// Whether the statement @p text, written so far, holds a conditional or a channel: from there on,
    /// parameters take braces.
    [[nodiscard]] bool findItemIf(const QString &text) const;

    /// As createConfig(), for callers that have nothing to write to.
    [[nodiscard]] static QStringList statements(const TreeItem &root);
};
