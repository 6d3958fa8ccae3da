// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/** How a notification is presented, from its group in a notification settings file. */
struct NotifyrcGroup
{
    bool isDefined = false; ///< the file has such a group
    QString actions; ///< the methods, joined by "|"
    QString executeCommand;
    QString logFile; ///< as in the file, with its "file://"
    QString soundFile;
    QString tts;
    QStringList cutKeys; ///< those whose value in the file is another one than reading gives
};

/**
 * The text of notification settings files (".notifyrc", see KNotification): groups "[Event/KEY]" with lines
 * "Name=Value". A group ends where any other begins.
 */
namespace NotifyrcText {

/**
 * The group of a notification, each value up to a second "=" and with its white space simplified.
 * @param text UTF-8
 */
[[nodiscard]] NotifyrcGroup readGroup(const QByteArray &text, const QString &key);

/**
 * The text with the group's methods replaced, or the group added at the end. All else stays as it is, byte by
 * byte: other groups, comments, and what else the group says.
 * @param content the group's lines as DBusDialog::createEventContent() makes them, each with its line break
 */
[[nodiscard]] QByteArray withGroup(const QByteArray &text, const QString &key, const QStringList &content);

} // namespace NotifyrcText
