// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"
#include "subjectsettings.h"

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

/**
 * Turns settings into the fewest lines for auditctl(8) that the fields of a kernel rule allow.
 *
 * A user is who a process acts for (the field "uid", the real user), not who logged in ("auid"): services
 * have no login, and what somebody does as root after su or sudo belongs to root, as it does for groups,
 * which have no login counterpart at all. The field "gid" also matches supplementary groups, but only in
 * "=" and "!=".
 *
 * Neighbouring user numbers of equal settings share a rule; a rule of "other" holds for every user that
 * has no setting of its own and is in no group that has one. Of two names, user and group, the one that
 * records more wins.
 */
namespace SubjectRules {

/** Kernel rules are compared one by one at every call, and deleting a thousand of them takes 12 s. */
constexpr int ruleLimit = 1000;

/** The key of an identifier's rules, by which records are found. */
QByteArray keyOf(const QString &identifier);

/**
 * @param machine as uname(2) names it.
 * @return the rules, the same ones in the same order for the same settings; a failure for a machine that is
 * not known and for more than ruleLimit rules, which it counts.
 */
Result<QList<QByteArray>> make(const SubjectSettings &settings, const QString &machine);

} // namespace SubjectRules

} // namespace AdminEventsHelper
