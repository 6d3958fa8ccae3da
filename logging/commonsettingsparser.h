// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "abstractconfigparser.h"

#include <QStringList>

/**
 * Reads the main logging configuration, which is in the daemon's language (syslog-ng.conf(5)).
 *
 * The file is split into statements where the braces balance, line by line; no keyword has a meaning here,
 * and what does not look like a directive or a block is dropped (LossCheck tells what). The tree has three
 * columns, "Parameter", "Name" and "Value"; below the root stand, in this order,
 * - the directives, such as an include: what stands before the quoted text, and the quoted text;
 * - the blocks: keyword and name (empty for log paths), with one child per parameter: its name, nothing, and
 *   what its parentheses or braces enclose, as it stands.
 *
 * Takes time linear in the size of the file.
 */
class CommonSettingsParser : public AbstractConfigParser
{
    Q_OBJECT

public:
    /// @param configFile the file as it is on this machine (see SystemPaths::resolve())
    CommonSettingsParser(const QString &configFile, QObject *parent);

    [[nodiscard]] TreeItem *parse() const override;

    /// The tree of the file content @p text; never null, owned by the caller.
    [[nodiscard]] static TreeItem *parseText(const QString &text);

private:
    [[nodiscard]] static QStringList splitStatements(const QString &text);
    static void appendDirectives(TreeItem *root, const QStringList &statements);
    static void appendBlocks(TreeItem *root, const QStringList &statements);
    static void appendParameter(TreeItem *block, const QString &entry);
};
