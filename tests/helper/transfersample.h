// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "samplefragment.h"
#include "treesnapshot.h"

#include <QMap>
#include <QStringList>

/** A whole configuration, as files below a root directory. */
namespace TransferSample {

inline QMap<QString, QByteArray> files()
{
    return {
        {QStringLiteral("/etc/nivra-syslog.conf"), "{\"root-login\": {\"enabled\": \"1\"}}\n"},
        {QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"),
         "-w /etc/passwd -p wa -k /etc/passwd\n# вход\n"},
        {QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"),
         "destination d1 {\n    file(\"/var/log/events\");\n};\nlog {\n    source(nivra_events_src);\n    "
         "destination(d1);\n};\n"},
        {QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf"), sampleFragment()},
        {QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"),
         "/vortan/log/nivra/events/*.log {\n\tweekly\n\trotate 5\n\tmissingok\n}\n"},
    };
}

inline QStringList directories()
{
    return {QStringLiteral("/etc/audit/rules.d"), QStringLiteral("/etc/syslog-ng/conf.d"),
            QStringLiteral("/etc/logrotate.d")};
}

inline bool makeDirectories(const QString &root)
{
    bool made = true;
    for (const QString &directory : directories()) {
        made = QDir().mkpath(root + directory) && made;
    }
    return made;
}

inline bool fill(const QString &root)
{
    bool filled = makeDirectories(root);
    const QMap<QString, QByteArray> all = files();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        filled = putFile(root + it.key(), *it) && filled;
    }
    return filled;
}

/** The contents of all files below "/etc" of a root, by their paths there. */
inline QMap<QString, QByteArray> contents(const QString &root)
{
    QMap<QString, QByteArray> found;
    QDirIterator it(root + QLatin1String("/etc"), QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        found.insert(path.mid(root.size()), getFile(path));
    }
    return found;
}

} // namespace TransferSample
