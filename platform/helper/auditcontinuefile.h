// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

namespace AdminEventsHelper {

class BackupStore;
class SafeDirectory;

/**
 * The rules file "/etc/audit/rules.d/00-nivra-continue.rules", which augenrules(8) puts before all others.
 * By its options rules that were switched off go when rules are loaded ("-D"), and a line that the kernel
 * refuses does not keep the following ones from being loaded ("-c"): without it auditctl(8) stops there.
 */
namespace AuditContinueFile {

QString fileName();

/**
 * Writes the file where it is missing or different.
 * @param rulesDirectory "/etc/audit/rules.d" below the root.
 */
Outcome ensure(const SafeDirectory &rulesDirectory, const BackupStore &backups);

} // namespace AuditContinueFile

} // namespace AdminEventsHelper
