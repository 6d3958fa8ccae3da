// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectlister.h"

namespace {

constexpr int waitLimit = 30000; // ms
const QString program = QStringLiteral("getent");

QStringList namesFrom(const QByteArray &listing)
{
    QStringList names;
    const QStringList lines = QString::fromLocal8Bit(listing).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString name = line.section(QLatin1Char(':'), 0, 0);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

} // namespace

SubjectLister::SubjectLister()
    : m_users(program, {QStringLiteral("passwd")})
    , m_groups(program, {QStringLiteral("group")})
{
}

Subjects SubjectLister::subjects()
{
    return {namesFrom(m_users.wait(waitLimit).value_or(QByteArray())),
            namesFrom(m_groups.wait(waitLimit).value_or(QByteArray()))};
}
