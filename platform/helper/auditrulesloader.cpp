// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrulesloader.h"

#include "auditcontinuefile.h"
#include "auditoperations.h"
#include "auditruleform.h"
#include "backupstore.h"
#include "commandrunner.h"
#include "configtarget.h"
#include "contentcheck.h"
#include "filechanges.h"
#include "safedirectory.h"
#include "shown.h"
#include "wholefile.h"

#include <KLocalizedString>
#include <QStandardPaths>

namespace AdminEventsHelper {

namespace {

constexpr int sizeLimit = 64 * 1024 * 1024;
constexpr int mostNamed = 20;
constexpr int longestLine = 700; // path and key may have 256 bytes each
constexpr std::chrono::seconds shortest{1}; // for what is still to be asked when the time is over

// Not from PATH: whoever activates the helper may have set that.
QString systemProgram(const QString &name)
{
    return QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
}

QList<QByteArray> rulesIn(const QByteArray &text)
{
    QList<QByteArray> rules;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        if (AuditRuleForm::isRule(line)) {
            rules << line.simplified();
        }
    }
    return rules;
}

std::chrono::milliseconds left(const QDeadlineTimer &deadline)
{
    return std::max<std::chrono::milliseconds>(shortest, std::chrono::milliseconds(deadline.remainingTime()));
}

QList<ConfigTarget> ownFiles()
{
    return {ConfigTarget::of(ConfigTarget::Format::AuditRules),
            ConfigTarget::of(ConfigTarget::Format::SubjectRules)};
}

} // namespace

AuditRulesLoader::AuditRulesLoader(const QString &root, const Programs &programs, const QByteArray &machine)
    : m_root(root)
    , m_programs(programs)
    , m_machine(machine.isEmpty() ? AuditOperations::thisMachine().toLatin1() : machine)
{
    if (m_programs.augenrules.isEmpty()) {
        m_programs.augenrules = systemProgram(QStringLiteral("augenrules"));
    }
    if (m_programs.auditctl.isEmpty()) {
        m_programs.auditctl = systemProgram(QStringLiteral("auditctl"));
    }
}

bool AuditRulesLoader::isWanted(const QString &root, const Programs &programs)
{
    return root == QLatin1String("/") || !programs.augenrules.isEmpty();
}

Outcome AuditRulesLoader::load(std::chrono::milliseconds limit) const
{
    const QDeadlineTimer deadline(limit);
    const Result<QList<QByteArray>> own = ownRules();
    if (!own) {
        return own.outcome();
    }
    if (m_programs.augenrules.isEmpty() || m_programs.auditctl.isEmpty()) {
        return own.value().isEmpty()
            ? Outcome::success()
            : Outcome::failure(i18n("The audit rules were not loaded: the programs \"augenrules\" and "
                                    "\"auditctl\" are neither in /usr/sbin nor in /sbin."));
    }
    if (!own.value().isEmpty()) {
        if (Outcome ensured = ensureContinueFile(); !ensured) {
            return ensured;
        }
    }
    if (isInForce(deadline)) {
        return Outcome::success();
    }
    // Its code tells nothing about our rules: it also fails for a rule of somebody else.
    const Outcome loading
        = CommandRunner::run(m_programs.augenrules, {QStringLiteral("--load")}, left(deadline));
    return compare(own.value(), loading, deadline);
}

Result<QList<QByteArray>> AuditRulesLoader::ownRules() const
{
    QList<QByteArray> rules;
    for (const ConfigTarget &file : ownFiles()) {
        const Result<SafeDirectory> directory = SafeDirectory::openBelow(m_root, file.directory);
        if (!directory) {
            continue; // without the directory there is no rules file either
        }
        const Result<std::optional<QByteArray>> text
            = WholeFile::read(directory.value(), file.fileName, sizeLimit);
        if (!text) {
            return text.outcome();
        }
        rules << rulesIn(text.value().value_or(QByteArray()));
    }
    return rules;
}

Outcome AuditRulesLoader::ensureContinueFile() const
{
    const Result<SafeDirectory> root = SafeDirectory::openRoot(m_root);
    const Result<SafeDirectory> directory
        = SafeDirectory::openBelow(m_root, ConfigTarget::of(ConfigTarget::Format::AuditRules).directory);
    if (!root || !directory) {
        return root ? directory.outcome() : root.outcome();
    }
    const Result<BackupStore> backups = FileChanges::begin(root.value());
    return backups ? AuditContinueFile::ensure(directory.value(), backups.value()) : backups.outcome();
}

QList<QByteArray> AuditRulesLoader::joinedRules() const
{
    const Result<SafeDirectory> directory
        = SafeDirectory::openBelow(m_root, {QStringLiteral("etc"), QStringLiteral("audit")});
    if (!directory) {
        return {};
    }
    const Result<std::optional<QByteArray>> text
        = WholeFile::read(directory.value(), QStringLiteral("audit.rules"), sizeLimit);
    return rulesIn(text ? text.value().value_or(QByteArray()) : QByteArray());
}

Result<QList<QByteArray>> AuditRulesLoader::kernelRules(const QDeadlineTimer &deadline) const
{
    const CommandResult listed
        = CommandRunner::capture(m_programs.auditctl, {QStringLiteral("-l")}, left(deadline));
    if (!listed.outcome) {
        return listed.outcome;
    }
    return rulesIn(listed.output);
}

bool AuditRulesLoader::isInForce(const QDeadlineTimer &deadline) const
{
    const CommandResult check
        = CommandRunner::capture(m_programs.augenrules, {QStringLiteral("--check")}, left(deadline));
    if (!check.outcome || !check.output.contains("No change")) {
        return false;
    }
    const Result<QList<QByteArray>> kernel = kernelRules(deadline);
    if (!kernel) {
        return false;
    }
    QHash<QByteArray, int> present;
    for (const QByteArray &line : kernel.value()) {
        ++present[AuditRuleForm::canonical(line, true)];
    }
    return present == AuditRuleForm::counts(joinedRules());
}

Outcome AuditRulesLoader::compare(const QList<QByteArray> &own, const Outcome &loading,
                                  const QDeadlineTimer &deadline) const
{
    const Result<QList<QByteArray>> kernel = kernelRules(deadline);
    if (!kernel) {
        return own.isEmpty()
            ? Outcome::success()
            : Outcome::failure(
                i18n("The kernel does not tell which audit rules are in force, so that the events which need "
                     "them may not be recorded: %1",
                     kernel.error()));
    }
    QList<QByteArray> missing;
    for (const QByteArray &line : AuditRuleForm::missing(own, kernel.value())) {
        if (!AuditRuleForm::isForeign(line, m_machine)) {
            missing << line;
        }
    }
    if (Outcome complete = reportMissing(missing, deadline); !complete) {
        return complete;
    }
    if (!loading && !AuditRuleForm::missing(kernel.value(), joinedRules()).isEmpty()) {
        return Outcome::failure(
            i18n("Audit rules that were switched off may still be in force: %1", loading.error()));
    }
    return Outcome::success();
}

Outcome AuditRulesLoader::reportMissing(const QList<QByteArray> &lines, const QDeadlineTimer &deadline) const
{
    QStringList named;
    int unnamed = 0;
    for (const QByteArray &line : lines) {
        if (named.size() == mostNamed) {
            ++unnamed;
            continue;
        }
        if (const QString reason = refusal(line, deadline); !reason.isEmpty()) {
            named << i18nc("%1 is an audit rule, %2 the reason", "%1: %2", shown(line, longestLine), reason);
        }
    }
    if (named.isEmpty() && unnamed == 0) {
        return Outcome::success();
    }
    if (unnamed > 0) {
        named << i18np("and one more rule", "and %1 more rules", unnamed);
    }
    return Outcome::failure(i18n("These audit rules are not in force:") + QLatin1Char('\n')
                            + named.join(QLatin1Char('\n')));
}

/** Why the kernel does not take the rule; empty when it does after all. */
QString AuditRulesLoader::refusal(const QByteArray &line, const QDeadlineTimer &deadline) const
{
    if (!ContentCheck::isAuditRule(line)) {
        return i18n("it is not a rule of the settings page");
    }
    if (deadline.hasExpired()) {
        return i18n("there was no time left to load it or to ask why");
    }
    // The loader does not say what it finds wrong with the words of a rule; asked for one rule, it does.
    QStringList words;
    for (const QByteArray &word : line.split(' ')) {
        words << QString::fromUtf8(word);
    }
    const CommandResult added = CommandRunner::capture(m_programs.auditctl, words, left(deadline));
    if (added.outcome || added.output.contains("(Rule exists)")) {
        return {};
    }
    if (added.output.contains("(No such file or directory)") || added.output.contains("(Not a directory)")) {
        return i18n("the directory of the watched path does not exist");
    }
    const QByteArray said = added.output.trimmed();
    return said.isEmpty() ? added.outcome.error() : shown(said.split('\n').constLast());
}

} // namespace AdminEventsHelper
