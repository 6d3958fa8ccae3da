// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class AbstractWriter;
class TreeItem;

/**
 * One event's fragment of the logging configuration (syslog-ng.conf(5)): a filter for the event's records, a
 * destination that hands them to the desktop, and the log statement that joins the two.
 */
struct NotificationFragment
{
    enum Recipients : int {
        AllUsers = 0,
        Administrators = 1,
        UserAndGroup = 2, ///< those that the record names
    };

    QString messageId;
    QString messageType;
    Recipients recipients = AllUsers;
    QString title; ///< as it is shown; its double quotes are escaped in the fragment
    QStringList parameters; ///< native names, in the order of the message

    /// The three statements, as the writer of the main configuration takes them.
    [[nodiscard]] std::unique_ptr<TreeItem> tree() const;

    /// The fragment's lines, without line breaks. @param writer turns the tree into text
    [[nodiscard]] QStringList lines(AbstractWriter &writer) const;
};
