// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditrulesloader.h"
#include "treesnapshot.h"

#include <QStringList>
#include <QTemporaryDir>

/**
 * A root directory for audit rules, with programs in the places of augenrules and auditctl that keep "the
 * kernel's" rules in a file beside them. They know neither order nor options: what the real ones do with a
 * real kernel has its own test.
 */
class StandInAudit
{
public:
    StandInAudit()
    {
        QDir().mkpath(rulesDirectory());
        QDir().mkpath(m_directory.filePath(QStringLiteral("root/var/lib")));
        m_ready
            = m_directory.isValid()
            && putFile(program("augenrules"),
                       "#!/bin/sh\n"
                       "here=${0%/*}\n"
                       "echo \"augenrules $*\" >> \"$here/calls\"\n"
                       "joined=$here/root/etc/audit/audit.rules\n"
                       "cat \"$here\"/root/etc/audit/rules.d/*.rules > \"$here/new\" 2>/dev/null\n"
                       "if cmp -s \"$here/new\" \"$joined\"; then echo 'augenrules: No change'; fi\n"
                       "[ \"$1\" = --load ] || exit 0\n"
                       "[ ! -e \"$here/load-fails\" ] || { cat \"$here/load-fails\"; exit 1; }\n"
                       "cp \"$here/new\" \"$joined\"\n"
                       "touch \"$here/refused\"\n"
                       "grep '^-[aw]' \"$joined\" | grep -vxFf \"$here/refused\" > \"$here/kernel\"\n"
                       "! grep -qxFf \"$here/refused\" \"$joined\"\n",
                       0755)
            && putFile(
                  program("auditctl"),
                  "#!/bin/sh\n"
                  "here=${0%/*}\n"
                  "echo \"auditctl $*\" >> \"$here/calls\"\n"
                  "[ ! -e \"$here/closed\" ] || { echo 'Operation not permitted'; exit 4; }\n"
                  "case $1 in\n"
                  "-l) if [ -s \"$here/kernel\" ]; then cat \"$here/kernel\"; else echo 'No rules'; fi ;;\n"
                  "*) if grep -qxF -- \"$*\" \"$here/refused\"; then cat \"$here/reason\"; exit 255; fi ;;\n"
                  "esac\n",
                  0755)
            && refuse({});
    }

    bool isReady() const { return m_ready; }
    QString root() const { return m_directory.filePath(QStringLiteral("root")); }
    AdminEventsHelper::AuditRulesLoader::Programs programs() const
    {
        return {program("augenrules"), program("auditctl")};
    }
    AdminEventsHelper::AuditRulesLoader loader(const QByteArray &machine = "x86_64") const
    {
        return AdminEventsHelper::AuditRulesLoader(root(), programs(), machine);
    }

    /** Has the kernel refuse these lines, for this reason. */
    bool refuse(const QList<QByteArray> &lines, const QByteArray &reason = "some reason")
    {
        return put("refused", lines.join('\n') + '\n') && put("reason", reason + '\n');
    }
    bool put(const char *name, const QByteArray &content)
    {
        return putFile(m_directory.filePath(QLatin1String(name)), content);
    }
    bool putRules(const char *name, const QByteArray &content)
    {
        return putFile(rulesDirectory() + QLatin1Char('/') + QLatin1String(name), content);
    }
    QByteArray rules(const char *name) const
    {
        return getFile(rulesDirectory() + QLatin1Char('/') + QLatin1String(name));
    }
    QByteArray kernel() const { return getFile(m_directory.filePath(QStringLiteral("kernel"))); }
    /** The calls since the last time that this was asked. */
    QStringList takeCalls()
    {
        const QString path = m_directory.filePath(QStringLiteral("calls"));
        const QStringList calls
            = QString::fromUtf8(getFile(path)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QFile::remove(path);
        return calls;
    }
    QString rulesDirectory() const { return m_directory.filePath(QStringLiteral("root/etc/audit/rules.d")); }

private:
    QString program(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    QTemporaryDir m_directory;
    bool m_ready = false;
};
