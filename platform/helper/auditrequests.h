// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"
#include "subjectsettings.h"

#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace AdminEventsHelper {

/** A request for the audit settings of subjects. */
struct AuditQuery
{
    SubjectType type = SubjectType::Other;
    QStringList identifiers;
    QStringList names;

    /**
     * Reads the arguments "auditType" (an integer: 1 users, 2 groups, 0 all others), "auditIDs" and "list"
     * (lists of strings); no others. "list" is empty for all others.
     */
    static Result<AuditQuery> read(const QVariantMap &arguments);
};

/** A request to change audit settings. */
struct AuditChange
{
    SubjectType type = SubjectType::Other;
    /** By the subject's name (empty for all others) and the audit identifier. */
    QMap<QPair<QString, QString>, int> values;

    /**
     * Reads the argument "AUDIT_TYPE" (an integer as "auditType" above). Every other argument is a setting:
     * an integer from 0 to 3, named by the subject, a "/" and the identifier, or by the identifier alone for
     * all others.
     */
    static Result<AuditChange> read(const QVariantMap &arguments);
};

} // namespace AdminEventsHelper
