// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "usernotifications.h"

#include "notifyrcwork.h"

#include <KLocalizedString>
#include <QFile>

#include <array>
#include <pwd.h>

namespace AdminEventsHelper {

UserNotifications::UserNotifications(uid_t user, const QString &home)
    : m_user(user)
    , m_home(home)
{
}

Result<std::optional<UserNotifications>> UserNotifications::of(uid_t user, const QString &root,
                                                               const QString &home)
{
    if (!home.isEmpty()) {
        return std::optional<UserNotifications>(UserNotifications(user, home));
    }
    if (root != QLatin1String("/")) {
        return std::optional<UserNotifications>();
    }
    constexpr size_t bufferSize = 65536;
    std::array<char, bufferSize> buffer{};
    struct passwd entry = {};
    struct passwd *found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr
        || entry.pw_dir[0] != '/') {
        return Outcome::failure(
            i18n("The home directory of the user %1 cannot be found out.", QString::number(user)));
    }
    return std::optional<UserNotifications>(UserNotifications(user, QFile::decodeName(entry.pw_dir)));
}

QString UserNotifications::pathOf(const QString &fileName) const
{
    return m_home + QLatin1String("/.config/") + fileName;
}

Result<UserNotifications::Files> UserNotifications::read() const
{
    const NotifyrcReading reading(m_user, QFile::encodeName(m_home));
    const QString directory = m_home + QLatin1String("/.config");
    const Result<CallerProcess::Report> told
        = CallerProcess::run(m_user, reading, directory, NotifyrcReading::mostBytes());
    if (!told) {
        return told.outcome();
    }
    return NotifyrcReading::filesIn(told.value(), directory);
}

Outcome UserNotifications::change(const Changes &changes) const
{
    if (changes.isEmpty()) {
        return Outcome::success();
    }
    const NotifyrcWriting writing(m_user, QFile::encodeName(m_home), changes);
    const QString directory = m_home + QLatin1String("/.config");
    const Result<CallerProcess::Report> told
        = CallerProcess::run(m_user, writing, directory, NotifyrcWriting::mostBytes());
    return told ? NotifyrcWriting::outcomeIn(told.value(), directory) : told.outcome();
}

UserNotifications::Changes UserNotifications::difference(const Files &present, const Files &wanted)
{
    Changes changes;
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (!present.contains(it.key()) || present.value(it.key()) != *it) {
            changes.insert(it.key(), *it);
        }
    }
    for (auto it = present.cbegin(); it != present.cend(); ++it) {
        if (!wanted.contains(it.key())) {
            changes.insert(it.key(), std::nullopt);
        }
    }
    return changes;
}

} // namespace AdminEventsHelper
