// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <abstractwriter.h>

/// Writes the rotation file of the event log (logrotate(8)) from the tree that LogRotateParser makes.
class RotationWriter : public AbstractWriter
{
public:
    /**
     * @param service kept by reference
     * @param configFile the target as the privileged helper knows it (see SystemPaths::rotationFile())
     */
    RotationWriter(ConfigAccessService &service, const QString &configFile);

    /// One text per line of the file, without its line break; none for a tree without a section.
    [[nodiscard]] QStringList createConfig(TreeItem *root) override;

    /// As createConfig(), for callers that have nothing to write to.
    [[nodiscard]] static QStringList lines(const TreeItem &root);
    /// Whether the file that writing @p root makes, in the locale's encoding, reads back as the same tree.
    [[nodiscard]] static bool isReadBack(const TreeItem &root);
};
