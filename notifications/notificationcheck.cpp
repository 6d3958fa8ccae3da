// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationcheck.h"

#include <textcheck.h>

#include <KLocalizedString>

#include <QRegularExpression>

#include <algorithm>

namespace {
constexpr int longestWord = 128;
constexpr int longestTitle = 1000; // as the helper takes it

bool isWordCharacter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
        || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
        || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_') || c == QLatin1Char('-');
}

bool cannotBeWritten(const QString &text)
{
    return TextCheck::holdsControl(text) || !TextCheck::survivesUtf8(text);
}

bool holdsAny(const QString &text, const QString &characters)
{
    return std::any_of(text.cbegin(), text.cend(), [&characters](QChar c) { return characters.contains(c); });
}

/// Words of the logging service's language that would change how the fragment is written.
bool holdsKeyword(const QString &messageId)
{
    static const QRegularExpression keyword(QStringLiteral("-(if|channel)-"));
    return keyword.match(messageId).hasMatch();
}
} // namespace

bool NotificationCheck::isWord(const QString &text)
{
    return !text.isEmpty() && text.size() <= longestWord
        && std::all_of(text.cbegin(), text.cend(), isWordCharacter);
}

QString NotificationCheck::eventProblem(const QString &messageId, const QString &messageType)
{
    if (!isWord(messageId) || holdsKeyword(messageId)) {
        return i18n(
            "The message identifier “%1” cannot stand in the configuration of the logging service, so "
            "this event cannot have notifications.",
            messageId);
    }
    if (!isWord(messageType)) {
        return i18n("The message type “%1” cannot stand in the configuration of the logging service, so this "
                    "event cannot have notifications.",
                    messageType);
    }
    return {};
}

QString NotificationCheck::titleProblem(const QString &title)
{
    if (cannotBeWritten(title)) {
        return i18n("The title cannot hold line breaks or control characters.");
    }
    if (holdsAny(title, QStringLiteral(",\"\\`"))) {
        return i18n("The title cannot hold commas, double quotes, backslashes or backticks: the notification "
                    "file could not give them back.");
    }
    if (title != title.trimmed()) {
        return i18n("The title cannot begin or end with a blank.");
    }
    if (title.size() > longestTitle) {
        return i18np("The title cannot be longer than %1 character.",
                     "The title cannot be longer than %1 characters.", longestTitle);
    }
    return {};
}

QString NotificationCheck::parameterProblem(const QString &name)
{
    if (name.isEmpty() || cannotBeWritten(name) || holdsAny(name, QStringLiteral(",\"\\`"))
        || name != name.trimmed()) {
        return i18n("The parameter “%1” cannot be part of a message: its name cannot stand in the "
                    "notification file.",
                    name);
    }
    return {};
}

QString NotificationCheck::settingProblem(const QString &what, const QString &value)
{
    if (cannotBeWritten(value)) {
        return i18n("“%1” cannot hold line breaks, tabs or control characters.", what);
    }
    if (holdsAny(value, QStringLiteral("=\\"))) {
        return i18n(
            "“%1” cannot hold “=” or a backslash: the notification settings could not give them back. "
            "Put a longer command into a script.",
            what);
    }
    if (value != value.simplified()) {
        return i18n("“%1” cannot begin or end with a blank or hold several blanks in a row.", what);
    }
    return {};
}
