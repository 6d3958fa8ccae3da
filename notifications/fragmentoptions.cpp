// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentoptions.h"

#include "notificationfragment.h"

namespace {
/// The title as it stands in the file, with its escapes resolved.
QString exactTitle(const QString &line)
{
    const int begin = line.indexOf(QLatin1Char('"'), line.indexOf(QLatin1Char(',')) + 1);
    const int end = line.lastIndexOf(QLatin1Char('"'));
    QString title = end > begin ? line.mid(begin + 1, end - begin - 1) : QString();
    return title.replace(QLatin1String("\\\""), QLatin1String("\""));
}
} // namespace

int FragmentOptions::recipients() const
{
    const QString blank = QStringLiteral(" ");
    const QString everybody = QStringLiteral("@all");
    if (user == blank || group == blank || (user == everybody && group == everybody)) {
        return NotificationFragment::AllUsers;
    }
    if (user == everybody && group == QLatin1String("nivra-admin")) {
        return NotificationFragment::Administrators;
    }
    return NotificationFragment::UserAndGroup;
}

QStringList FragmentOptions::values(const QString &line)
{
    QStringList values = line.split(QLatin1Char(','));
    values.removeFirst();
    for (QString &value : values) {
        value.remove(QLatin1Char('"'));
        if (value.startsWith(QLatin1Char(' '))) {
            value.remove(0, 1);
        }
    }
    return values;
}

FragmentOptions FragmentOptions::read(const QStringList &lines)
{
    FragmentOptions options;
    for (const QString &line : lines) {
        // Only the name counts: identifiers and titles may hold the same words.
        const QString name = line.section(QLatin1Char(','), 0, 0);
        const QStringList values = FragmentOptions::values(line);
        if (values.isEmpty()) {
            continue;
        }
        if (name.contains(QLatin1String("event_user"))) {
            options.user = values.first();
        } else if (name.contains(QLatin1String("event_group"))) {
            options.group = values.first();
        } else if (name.contains(QLatin1String("event_title"))) {
            options.title = values.first();
            options.titleWasCut = line.contains(QLatin1Char('"')) && options.title != exactTitle(line);
        } else if (name.contains(QLatin1String("event_params"))) {
            options.parameters = values;
        }
    }
    options.parameters.removeAll(QString());
    return options;
}
