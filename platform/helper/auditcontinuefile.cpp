// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditcontinuefile.h"

#include "atomicfilewriter.h"
#include "backupstore.h"
#include "safedirectory.h"
#include "wholefile.h"

namespace AdminEventsHelper {

namespace {

constexpr mode_t newFileMode = 0640;
constexpr int sizeLimit = 64 * 1024;
const QByteArray
    text("# Written for the settings page of security events. Before audit rules are loaded, the\n"
         "# former ones are deleted, and a rule that the kernel refuses is passed over.\n"
         "-D\n"
         "-c\n");

} // namespace

QString AuditContinueFile::fileName()
{
    return QStringLiteral("00-nivra-continue.rules");
}

Outcome AuditContinueFile::ensure(const SafeDirectory &rulesDirectory, const BackupStore &backups)
{
    const Result<std::optional<QByteArray>> present = WholeFile::read(rulesDirectory, fileName(), sizeLimit);
    if (present && present.value() == text) {
        return Outcome::success();
    }
    AtomicFileWriter writer(rulesDirectory, fileName(), newFileMode);
    if (Outcome prepared = writer.prepare(); !prepared) {
        return prepared;
    }
    return writer.write(text, backups);
}

} // namespace AdminEventsHelper
