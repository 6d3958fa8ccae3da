// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QString>

#include <chrono>

namespace AdminEventsHelper {

/**
 * Brings the audit rules files into force and looks whether the kernel has taken every rule that is ours:
 * those of "/etc/audit/rules.d/nivra-syslog.rules" and "nivra-syslog-subjects.rules".
 *
 * Rules are loaded by augenrules(8), which joins all rules files of the system, and read back by auditctl(8).
 * Nothing is loaded when the kernel has them already, as after a restart of the audit daemon: deleting a
 * thousand rules takes 12 seconds.
 */
class AuditRulesLoader
{
public:
    struct Programs
    {
        /** The absolute paths; when empty, the programs of that name from /usr/sbin or /sbin. */
        QString augenrules;
        QString auditctl;
    };

    /**
     * @param root the directory that stands for "/". The programs know no root: with one other than "/", what
     * they do has to be led there by whoever names them.
     * @param machine as uname(2) names it; empty for the one that this runs on.
     */
    AuditRulesLoader(const QString &root, const Programs &programs, const QByteArray &machine = QByteArray());

    /**
     * Whether rules are to be loaded at all: rules of another root are not for this machine's kernel, unless
     * the service file names a program that loads them.
     */
    static bool isWanted(const QString &root, const Programs &programs);

    /**
     * Loads the rules.
     * @return a failure when a rule of ours is not in force, which it names with the reason, when rules that
     * were switched off may still be, or when the kernel does not tell and there are rules of ours. A rule
     * for calls of a foreign processor, which cannot happen here, is not missed.
     */
    Outcome load(std::chrono::milliseconds limit) const;

private:
    Result<QList<QByteArray>> ownRules() const;
    Outcome ensureContinueFile() const;
    QList<QByteArray> joinedRules() const;
    Result<QList<QByteArray>> kernelRules(const QDeadlineTimer &deadline) const;
    bool isInForce(const QDeadlineTimer &deadline) const;
    Outcome compare(const QList<QByteArray> &own, const Outcome &loading,
                    const QDeadlineTimer &deadline) const;
    Outcome reportMissing(const QList<QByteArray> &lines, const QDeadlineTimer &deadline) const;
    QString refusal(const QByteArray &line, const QDeadlineTimer &deadline) const;

    QString m_root;
    Programs m_programs;
    QByteArray m_machine;
};

} // namespace AdminEventsHelper
