// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "leashedprocess.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>

/**
 * The auditing of this machine's kernel, borrowed for a test: an audit daemon with a log of the test's own
 * receives the records. When the object goes, the kernel has no rules and its former state again.
 *
 * A machine has only one kernel: tests that use it share the ctest resource "audit-kernel".
 */
class KernelAudit
{
public:
    KernelAudit();
    ~KernelAudit();

    KernelAudit(const KernelAudit &) = delete;
    KernelAudit &operator=(const KernelAudit &) = delete;

    /** Why the kernel cannot be borrowed here; empty when it can. Nothing has been changed then. */
    [[nodiscard]] QString obstacle() const { return m_obstacle; }

    /** Starts the audit daemon and switches auditing on; a reason, empty when all went well. */
    [[nodiscard]] QString start();

    /** A program that does what augenrules(8) does, with the rules below another root directory. */
    [[nodiscard]] QString augenrulesFor(const QString &root) const;

    /** The kernel's rules as auditctl(8) lists them. */
    [[nodiscard]] QList<QByteArray> rules() const;
    /** The keys of these rules, sorted, each once. */
    [[nodiscard]] QList<QByteArray> keys() const;
    void deleteRules() const;
    /** How many calls were recorded under that key. */
    [[nodiscard]] int records(const QByteArray &key) const;
    /** How many times a rule was deleted, as recorded. */
    [[nodiscard]] int deletions() const;

private:
    QByteArray run(const QString &program, const QStringList &arguments) const;
    [[nodiscard]] QList<QByteArray> recorded() const;
    [[nodiscard]] QByteArray status(const char *name) const;
    [[nodiscard]] QString findObstacle();

    QTemporaryDir m_directory;
    QString m_auditctl;
    QString m_augenrules;
    QString m_auditd;
    QByteArray m_enabledBefore;
    QString m_obstacle;
    LeashedProcess m_daemon;
    bool m_started = false;
};
