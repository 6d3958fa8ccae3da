// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace AdminEventsHelper {

/**
 * What the audit identifiers stand for: the system calls that carry out an operation, as auditctl(8) names
 * them for the architectures of a machine.
 */
namespace AuditOperations {

/** System calls that one rule covers. */
struct Calls
{
    /** "b64" or "b32", as the field "arch" takes it. */
    QByteArray arch;
    /** The names, joined with commas. */
    QByteArray names;
    /** Fields about the calls' arguments, each "-F FIELD"; mostly empty. */
    QByteArray fields;
};

/**
 * The identifiers in the order of their rules: the kernel records a call once, under the key of the first
 * rule that matches, so what is special (making a file) comes before what is general (opening one).
 */
const QStringList &identifiers();

/**
 * The later operation that is the same system calls, and empty for most: access lists and security labels are
 * both extended attributes of a file, and no rule can see the attribute's name.
 */
QString twinOf(const QString &identifier);

/** The machine that this runs on, as uname(2) names it; empty when that cannot be found out. */
QString thisMachine();

/**
 * @param identifier one of identifiers().
 * @param machine as uname(2) names it, e.g. "x86_64".
 * @return empty for a machine whose system calls are not known.
 */
QList<Calls> calls(const QString &identifier, const QString &machine);

} // namespace AuditOperations

} // namespace AdminEventsHelper
