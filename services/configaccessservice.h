// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "accessservice.h"

#include <QByteArray>
#include <QStringList>

/** Has the privileged helper replace system files and exchange the configuration with an archive. */
class ConfigAccessService : public AccessService
{
    Q_OBJECT

public:
    explicit ConfigAccessService(QObject *parent);

    /**
     * Replaces the system file at the logical path @p path by @p content.
     * @return false on failure; errorString() then says why.
     */
    [[nodiscard]] bool writeConfig(const QString &path, QByteArray content);

    /** The same with contentOf() @p lines. */
    [[nodiscard]] bool writeConfig(const QString &path, const QStringList &lines);

    /** The bytes of @p lines in the locale's encoding, each followed by a line feed. */
    [[nodiscard]] static QByteArray contentOf(const QStringList &lines);

    /**
     * Has the helper write the configuration as a tar.gz archive to the user's file @p path, which is created
     * or emptied first. When the user may not write there, no action is run and the last reply stays.
     */
    [[nodiscard]] bool exportConfig(const QString &path);

    /**
     * Has the helper install the configuration from the user's archive @p path; the reply is left for
     * getActionResult(). When the user may not read the file, no action is run and the last reply stays.
     */
    [[nodiscard]] bool importConfig(const QString &path);
};
