// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "abstractconfigparser.h"
#include "rotationscan.h"

#include <memory>

/**
 * Reads the rotation file of the event log, one section in the language of logrotate(8).
 *
 * The tree: a root with the columns "Parameter" and "Value"; its only child is the section, the names of the
 * log files in column 0; its children are the directives, keyword and value, in file order. The value of
 * "prerotate" and "postrotate" is the list of the script's lines (QStringList). Comments are dropped.
 */
class LogRotateParser : public AbstractConfigParser
{
    Q_OBJECT

public:
    /// @param configFile the file as it is on this machine (see SystemPaths::resolve())
    LogRotateParser(const QString &configFile, QObject *parent);

    /// As the base class says, but null when the file cannot be read or taken over, see errorString().
    [[nodiscard]] TreeItem *parse() const override;

    /**
     * The same file as found line by line, with the reason and the line of what is wrong with it, and with
     * what the tree does not carry. Sets errorString() as parse() does.
     */
    [[nodiscard]] RotationScan scan() const;

    /// @return the tree of @p scan, null when that is not good
    [[nodiscard]] static std::unique_ptr<TreeItem> tree(const RotationScan &scan);
};
