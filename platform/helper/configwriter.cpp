// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwriter.h"

#include "argumentreader.h"
#include "atomicfilewriter.h"
#include "auditcontinuefile.h"
#include "backupstore.h"
#include "configtarget.h"
#include "contentcheck.h"
#include "filechanges.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

namespace {

constexpr int pathLimit = 4096;

}

Result<WriteRequest> WriteRequest::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QString action = reader.string(QStringLiteral("action"), pathLimit);
    WriteRequest request;
    request.path = reader.string(QStringLiteral("path"), pathLimit);
    request.content = reader.bytes(QStringLiteral("content"), ContentCheck::sizeLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    if (action != QLatin1String("writeConfig")) {
        return Outcome::failure(i18n("\"%1\" is not an action of this request.", action));
    }
    return request;
}

ConfigWriter::ConfigWriter(const QString &root)
    : m_root(root)
{
}

Outcome ConfigWriter::write(const WriteRequest &request) const
{
    const Result<ConfigTarget> target = ConfigTarget::find(request.path);
    if (!target) {
        return target.outcome();
    }
    const Result<SafeDirectory> root = SafeDirectory::openRoot(m_root);
    if (!root) {
        return root.outcome();
    }
    const Result<QList<QByteArray>> former = ContentCheck::formerTexts(root.value(), target.value());
    if (!former) {
        return former.outcome();
    }
    if (Outcome checked = ContentCheck::check(target.value(), request.content, former.value()); !checked) {
        return checked;
    }
    const Result<SafeDirectory> directory = root.value().descend(target.value().directory);
    if (!directory) {
        return directory.outcome();
    }
    AtomicFileWriter writer(directory.value(), target.value().fileName, target.value().newFileMode);
    // Before the backup directory is made: a refusal must change nothing.
    if (Outcome prepared = writer.prepare(); !prepared) {
        return prepared;
    }
    const Result<BackupStore> backups = FileChanges::begin(root.value());
    if (!backups) {
        return backups.outcome();
    }
    // Again under the lock: another helper may have replaced the file meanwhile.
    if (Outcome prepared = writer.prepare(); !prepared) {
        return prepared;
    }
    if (target.value().format == ConfigTarget::Format::AuditRules && !request.content.trimmed().isEmpty()) {
        if (Outcome ensured = AuditContinueFile::ensure(directory.value(), backups.value()); !ensured) {
            return ensured;
        }
    }
    return writer.write(request.content, backups.value());
}

} // namespace AdminEventsHelper
