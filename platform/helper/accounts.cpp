// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "accounts.h"

#include "safedirectory.h"
#include "wholefile.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <grp.h>
#include <pwd.h>
#include <vector>

namespace AdminEventsHelper {

namespace {

constexpr int sizeLimit = 16 * 1024 * 1024;
constexpr std::size_t largestEntry = 1024 * 1024;

/** Of several entries of one name the first counts, as it does for the system. */
void insertNew(QHash<QString, quint32> &numbers, const QString &name, quint32 number)
{
    if (!numbers.contains(name)) {
        numbers.insert(name, number);
    }
}

QHash<QString, quint32> parse(const QByteArray &text)
{
    constexpr int numberField = 2;
    QHash<QString, quint32> numbers;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(':');
        bool isNumber = false;
        const quint32 number = fields.value(numberField).toUInt(&isNumber);
        if (isNumber && !fields.first().isEmpty()) {
            insertNew(numbers, QString::fromUtf8(fields.first()), number);
        }
    }
    return numbers;
}

/** Asks for one account, with more room as long as the system wants it. */
template <typename Entry, typename Function>
bool find(Function function, const QByteArray &name, Entry &entry)
{
    std::vector<char> buffer(4096);
    Entry *found = nullptr;
    int number = 0;
    while ((number = function(name.constData(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE
           && buffer.size() < largestEntry) {
        buffer.resize(buffer.size() * 2);
    }
    return number == 0 && found != nullptr;
}

} // namespace

Result<Accounts> Accounts::below(const QString &root)
{
    Accounts accounts;
    if (root != QLatin1String("/")) {
        const Result<SafeDirectory> etc = SafeDirectory::openBelow(root, {QStringLiteral("etc")});
        if (!etc) {
            return etc.outcome();
        }
        const Result<std::optional<QByteArray>> users
            = WholeFile::read(etc.value(), QStringLiteral("passwd"), sizeLimit);
        const Result<std::optional<QByteArray>> groups
            = WholeFile::read(etc.value(), QStringLiteral("group"), sizeLimit);
        if (!users || !groups) {
            return users ? groups.outcome() : users.outcome();
        }
        if (users.value() && groups.value()) {
            accounts.m_users = parse(*users.value());
            accounts.m_groups = parse(*groups.value());
            accounts.m_asksSystem = false;
            return accounts;
        }
    }
    accounts.listSystem();
    return accounts;
}

void Accounts::listSystem()
{
    // Asked for one by one, thousands of accounts would take as many readings of the whole list.
    ::setpwent();
    while (const struct ::passwd *entry = ::getpwent()) {
        insertNew(m_users, QString::fromUtf8(entry->pw_name), entry->pw_uid);
    }
    ::endpwent();
    ::setgrent();
    while (const struct ::group *entry = ::getgrent()) {
        insertNew(m_groups, QString::fromUtf8(entry->gr_name), entry->gr_gid);
    }
    ::endgrent();
}

std::optional<quint32> Accounts::user(const QString &name) const
{
    if (const auto it = m_users.constFind(name); it != m_users.cend()) {
        return *it;
    }
    struct ::passwd entry = {};
    if (m_asksSystem && find(::getpwnam_r, name.toUtf8(), entry)) {
        return entry.pw_uid;
    }
    return {};
}

std::optional<quint32> Accounts::group(const QString &name) const
{
    if (const auto it = m_groups.constFind(name); it != m_groups.cend()) {
        return *it;
    }
    struct ::group entry = {};
    if (m_asksSystem && find(::getgrnam_r, name.toUtf8(), entry)) {
        return entry.gr_gid;
    }
    return {};
}

} // namespace AdminEventsHelper
