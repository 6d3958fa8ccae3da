// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "helperoptions.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace AdminEventsHelper {

Result<HelperOptions> HelperOptions::parse(const QStringList &words)
{
    HelperOptions options;
    const QHash<QString, QString *> targets{{QStringLiteral("--root"), &options.root},
                                            {QStringLiteral("--home"), &options.home},
                                            {QStringLiteral("--systemctl"), &options.systemctl},
                                            {QStringLiteral("--augenrules"), &options.augenrules},
                                            {QStringLiteral("--auditctl"), &options.auditctl}};
    QSet<QString> seen;
    for (int i = 0; i < words.size(); i += 2) {
        const QString &option = words.at(i);
        const bool isDirectory = option == QLatin1String("--root") || option == QLatin1String("--home");
        QString *const target = targets.value(option);
        if (!target) {
            return Outcome::failure(QStringLiteral("unknown option \"%1\"").arg(option));
        }
        if (seen.contains(option)) {
            return Outcome::failure(QStringLiteral("option %1 stands twice").arg(option));
        }
        seen.insert(option);
        if (i + 1 >= words.size()) {
            return Outcome::failure(QStringLiteral("option %1 lacks its value").arg(option));
        }
        const QFileInfo value(words.at(i + 1));
        if (!value.isAbsolute()
            || (isDirectory ? !value.isDir() : !(value.isFile() && value.isExecutable()))) {
            return Outcome::failure(
                QStringLiteral("option %1: \"%2\" is not the absolute path of an existing %3")
                    .arg(option, value.filePath(),
                         isDirectory ? QStringLiteral("directory") : QStringLiteral("program")));
        }
        *target = value.filePath();
    }
    return options;
}

} // namespace AdminEventsHelper
