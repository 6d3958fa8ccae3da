// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditsettingsstore.h"

#include "accounts.h"
#include "atomicfilewriter.h"
#include "auditoperations.h"
#include "backupstore.h"
#include "checksum.h"
#include "configtarget.h"
#include "filechanges.h"
#include "safedirectory.h"
#include "subjectrules.h"
#include "wholefile.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

namespace {

constexpr int sizeLimit = 16 * 1024 * 1024;
const QByteArray checksumMark("# checksum ");
const QByteArray
    heading("# Which operations of which users and groups are recorded. Written by the settings page for\n"
            "# security events, which refuses to work with a file that was changed by hand.\n");

ConfigTarget target()
{
    return ConfigTarget::of(ConfigTarget::Format::SubjectRules);
}

QByteArray checksumLine(const QByteArray &text)
{
    return checksumMark + checksum(text).toLatin1() + '\n';
}

std::optional<quint32> numberOf(const Accounts &accounts, SubjectType type, const QString &name)
{
    return type == SubjectType::Users ? accounts.user(name) : accounts.group(name);
}

Result<SubjectSettings> settingsIn(const QByteArray &text, const QString &path)
{
    const int position = text.lastIndexOf(checksumMark);
    if (position < 0 || text.mid(position) != checksumLine(text.left(position))) {
        return Outcome::failure(i18n(
            "\"%1\" was changed by hand, so that its audit settings are not certain. Move it away to have it "
            "written anew.",
            path));
    }
    return SubjectText::read(text, path);
}

Result<QByteArray> textOf(const SubjectSettings &settings, const QString &machine)
{
    // What is written can be read again.
    if (const quint32 count = SubjectText::subjectsIn(settings); count > SubjectText::subjectLimit) {
        return Outcome::failure(i18n("At most %1 audit settings of users and groups can be kept, not %2.",
                                     QString::number(SubjectText::subjectLimit), QString::number(count)));
    }
    const Result<QList<QByteArray>> rules = SubjectRules::make(settings, machine);
    if (!rules) {
        return rules.outcome();
    }
    QByteArray text = heading + SubjectText::write(settings);
    for (const QByteArray &rule : rules.value()) {
        text += rule + '\n';
    }
    text += checksumLine(text);
    return text;
}

Outcome apply(const AuditChange &change, const Accounts &accounts, SubjectSettings &settings)
{
    // Several names may share a number: what one of them records is recorded.
    QMap<QPair<quint32, QString>, int> values;
    for (auto it = change.values.cbegin(); it != change.values.cend(); ++it) {
        const QString &name = it.key().first;
        if (change.type == SubjectType::Other) {
            settings[it.key().second].other = it.value();
            continue;
        }
        const std::optional<quint32> number = numberOf(accounts, change.type, name);
        if (!number) {
            return Outcome::failure(change.type == SubjectType::Users
                                        ? i18n("There is no user \"%1\".", name)
                                        : i18n("There is no group \"%1\".", name));
        }
        values[{*number, it.key().second}] |= it.value();
    }
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        OperationSettings::Values &of = settings[it.key().second].of(change.type);
        if (it.value() == 0) {
            of.remove(it.key().first);
        } else {
            of.insert(it.key().first, it.value());
        }
    }
    return Outcome::success();
}

} // namespace

AuditSettingsStore::AuditSettingsStore(const QString &root, const QString &machine)
    : m_root(root)
    , m_machine(machine.isEmpty() ? AuditOperations::thisMachine() : machine)
{
}

QString AuditSettingsStore::path()
{
    return target().path();
}

Outcome AuditSettingsStore::check(const QString &path, const QByteArray &text)
{
    const Result<QByteArray> expected = renewed(path, text);
    if (!expected) {
        return expected.outcome();
    }
    return expected.value() == text
        ? Outcome::success()
        : Outcome::failure(
            i18n("\"%1\" does not hold the rules that belong to its audit settings on this machine.", path));
}

Result<QByteArray> AuditSettingsStore::renewed(const QString &path, const QByteArray &text)
{
    const Result<SubjectSettings> settings = settingsIn(text, path);
    return settings ? textOf(settings.value(), AuditOperations::thisMachine())
                    : Result<QByteArray>(settings.outcome());
}

Result<SubjectSettings> AuditSettingsStore::present(const SafeDirectory &directory) const
{
    const Result<std::optional<QByteArray>> text = WholeFile::read(directory, target().fileName, sizeLimit);
    if (!text) {
        return text.outcome();
    }
    if (!text.value()) {
        return SubjectSettings();
    }
    return settingsIn(*text.value(), directory.pathOf(target().fileName));
}

Result<QVariantMap> AuditSettingsStore::get(const AuditQuery &query) const
{
    const Result<SafeDirectory> directory = SafeDirectory::openBelow(m_root, target().directory);
    if (!directory) {
        return directory.outcome();
    }
    const Result<SubjectSettings> settings = present(directory.value());
    if (!settings) {
        return settings.outcome();
    }
    QVariantMap reply;
    if (settings.value().isEmpty()) {
        return reply;
    }
    const Result<Accounts> listed = Accounts::below(m_root);
    if (!listed) {
        return listed.outcome();
    }
    // Anybody may ask, for a great many names that do not exist.
    Accounts accounts = listed.value();
    accounts.forgetUnlisted();
    for (const QString &identifier : query.identifiers) {
        const auto operation = settings.value().constFind(identifier);
        if (operation == settings.value().cend()) {
            continue;
        }
        if (query.type == SubjectType::Other) {
            reply.insert(identifier, operation->other);
            continue;
        }
        for (const QString &name : query.names) {
            const std::optional<quint32> number = numberOf(accounts, query.type, name);
            if (number && !name.contains(QLatin1Char('/'))) {
                reply.insert(name + QLatin1Char('/') + identifier, operation->of(query.type).value(*number));
            }
        }
    }
    return reply;
}

Result<QByteArray> AuditSettingsStore::changed(const SafeDirectory &directory,
                                               const AuditChange &change) const
{
    Result<SubjectSettings> settings = present(directory);
    if (!settings) {
        return settings.outcome();
    }
    const Result<Accounts> accounts = Accounts::below(m_root);
    if (!accounts) {
        return accounts.outcome();
    }
    SubjectSettings wanted = settings.takeValue();
    if (Outcome applied = apply(change, accounts.value(), wanted); !applied) {
        return applied;
    }
    return textOf(wanted, m_machine);
}

Outcome AuditSettingsStore::set(const AuditChange &change) const
{
    const Result<SafeDirectory> root = SafeDirectory::openRoot(m_root);
    const Result<SafeDirectory> directory
        = root ? root.value().descend(target().directory) : Result<SafeDirectory>(root.outcome());
    if (!directory) {
        return directory.outcome();
    }
    AtomicFileWriter writer(directory.value(), target().fileName, target().newFileMode);
    if (Outcome prepared = writer.prepare(); !prepared) {
        return prepared;
    }
    // Before the backup directory is made: a refusal must change nothing.
    if (const Result<QByteArray> first = changed(directory.value(), change); !first) {
        return first.outcome();
    }
    if (change.values.isEmpty()) {
        return Outcome::success();
    }
    const Result<BackupStore> backups = FileChanges::begin(root.value());
    if (!backups) {
        return backups.outcome();
    }
    // Again under the lock: another helper may have replaced the file meanwhile.
    if (Outcome prepared = writer.prepare(); !prepared) {
        return prepared;
    }
    const Result<QByteArray> text = changed(directory.value(), change);
    return text ? writer.write(text.value(), backups.value()) : text.outcome();
}

} // namespace AdminEventsHelper
