// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditrequests.h"
#include "outcome.h"
#include "subjectsettings.h"

#include <QByteArray>
#include <QVariantMap>

namespace AdminEventsHelper {

class SafeDirectory;

/**
 * Keeps the audit settings of users, groups and all others in a rules file of its own,
 * "/etc/audit/rules.d/nivra-syslog-subjects.rules".
 *
 * The file holds the settings as comment lines (see SubjectText), the rules that carry them out (see
 * SubjectRules), and a last line with a checksum of all that. A file that was changed by hand could say one
 * thing and do another: it is neither read nor replaced. The name sorts after the rules of single events, so
 * that a watched file's record bears that event's key (augenrules(8) joins the files in version order, and
 * the kernel takes the first rule that matches).
 *
 * The rules come into force when the audit daemon loads its rules the next time.
 */
class AuditSettingsStore
{
public:
    /**
     * @param root the directory that stands for "/".
     * @param machine as uname(2) names it; empty for the one that this runs on.
     */
    explicit AuditSettingsStore(const QString &root, const QString &machine = QString());

    /** The rules file's absolute path below the root. */
    static QString path();

    /**
     * Whether a text is a rules file as set() writes it on this machine: unchanged since, and with the rules
     * that carry its settings out.
     * @param path named in the error.
     */
    static Outcome check(const QString &path, const QByteArray &text);

    /**
     * The text with the rules that carry its settings out on this machine: another version, or a version for
     * another kind of machine, may have made others of them. A text that was changed by hand is a failure.
     * @param path named in the error.
     */
    static Result<QByteArray> renewed(const QString &path, const QByteArray &text);

    /**
     * Answers by "NAME/IDENTIFIER", or "IDENTIFIER" for all others. Left out are names that nobody bears or
     * that hold a "/", and identifiers for which no setting was ever made.
     */
    Result<QVariantMap> get(const AuditQuery &query) const;

    /**
     * Takes over the change; settings that it does not hold stay. An unknown subject, or more rules than
     * SubjectRules::ruleLimit, is a failure that changes nothing.
     */
    Outcome set(const AuditChange &change) const;

private:
    Result<SubjectSettings> present(const SafeDirectory &directory) const;
    Result<QByteArray> changed(const SafeDirectory &directory, const AuditChange &change) const;

    QString m_root;
    QString m_machine;
};

} // namespace AdminEventsHelper
