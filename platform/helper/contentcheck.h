// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "configtarget.h"

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

class SafeDirectory;

/** Whether bytes may become the content of a configuration file. */
namespace ContentCheck {

/** The largest content that is taken, in bytes (16 MiB). */
constexpr int sizeLimit = 16 * 1024 * 1024;

/**
 * Checks a content for its target; the error names the file and, for audit rules, the line.
 *
 * Nothing may hold a NUL. Event settings are empty or one JSON object. Audit rules are the lines
 * "-a always,LIST" with -F, -C, -S and -k, and "-w /PATH" with -p and -k: lines that record more. A rule that
 * keeps something from being recorded, deletes rules or turns auditing off is refused. The others are as
 * LoggingCheck, RotationCheck and FragmentCheck have it.
 * @param former as formerTexts() tells them.
 */
Outcome check(const ConfigTarget &target, const QByteArray &content, const QList<QByteArray> &former);

/**
 * The texts of a target that count as an administrator's own: the present one and the generations that are
 * kept. None for targets whose check asks for none.
 */
Result<QList<QByteArray>> formerTexts(const SafeDirectory &root, const ConfigTarget &target);

/** Whether a line is one of the audit rules that may be written. */
bool isAuditRule(const QByteArray &line);

} // namespace ContentCheck

} // namespace AdminEventsHelper
