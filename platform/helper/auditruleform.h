// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

namespace AdminEventsHelper {

/** Audit rules as lines for auditctl(8), compared by what they mean. */
namespace AuditRuleForm {

/** Whether the line adds a rule: it begins with the option "-a", "-A" or "-w". */
bool isRule(const QByteArray &line);

/**
 * The one form of all lines that mean the same: a watch and the rule with the fields "path" (or "dir") and
 * "perm" that it stands for, options in any order, "-k" and "-F key=", calls in one list or several, unset
 * numbers in each of their spellings.
 * @param foldProcessors name processors as the kernel's list does, "b64" or "b32".
 */
QByteArray canonical(const QByteArray &line, bool foldProcessors);

/**
 * Whether the rule is for calls of a processor that cannot run on this machine.
 * @param machine as uname(2) names it.
 */
bool isForeign(const QByteArray &line, const QByteArray &machine);

/** How many different rules there are of each form that the kernel's list tells apart. */
QHash<QByteArray, int> counts(const QList<QByteArray> &lines);

/** The lines among "wanted" that "present" lacks, each once, in the order of "wanted". */
QList<QByteArray> missing(const QList<QByteArray> &wanted, const QList<QByteArray> &present);

} // namespace AuditRuleForm

} // namespace AdminEventsHelper
