// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <auditruleform.h>
#include <contentcheck.h>
#include <watchedpaths.h>
#include <watchpathcheck.h>

#include <numeric>

using namespace AdminEventsHelper;

namespace {

ConfigTarget rulesFile()
{
    return ConfigTarget::find(QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules")).value();
}

/// A path that may be watched gives rules that may be written, and survives its list.
void checkPath(const QString &path, WatchPathCheck::Target target)
{
    if (!WatchPathCheck::problem(path, target).isEmpty()) {
        return;
    }
    require(WatchedPaths::fromText(WatchedPaths::toText({path, QStringLiteral("/x")})).value(0) == path,
            "a path survives its list", path);
    for (const bool opened : {false, true}) {
        const QStringList lines = WatchedPaths::ruleLines({path}, opened);
        QList<QByteArray> rules;
        for (const QString &line : lines) {
            rules << line.toUtf8();
            require(ContentCheck::isAuditRule(rules.last()), "a watch is a rule", line);
        }
        require(AuditRuleForm::missing(rules, rules).isEmpty(), "rules in force are not missed", path);
    }
}

} // namespace

/// What is watched can be written, and any list of rules is taken apart without harm: none is missing from
/// itself, and those of a file that is taken are rules.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const int mode = input.mode(3);
    if (mode == 0) {
        checkPath(QLatin1Char('/') + input.text(400), WatchPathCheck::Target::File);
        checkPath(input.text(400), WatchPathCheck::Target::Directory);
        return 0;
    }
    const QByteArray content = input.rest();
    const bool isTaken = ContentCheck::check(rulesFile(), content, {}).ok();
    const QList<QByteArray> lines = content.split('\n');
    QList<QByteArray> rules;
    for (const QByteArray &line : lines) {
        (void)AuditRuleForm::isForeign(line, "x86_64");
        if (!AuditRuleForm::isRule(line)) {
            continue;
        }
        rules << line;
        require(!isTaken || ContentCheck::isAuditRule(line), "what is taken is a rule");
        require(AuditRuleForm::canonical(line.simplified(), true) == AuditRuleForm::canonical(line, true),
                "blanks mean nothing", QString::fromUtf8(line));
    }
    require(AuditRuleForm::missing(rules, rules).isEmpty(), "rules in force are not missed");
    const QHash<QByteArray, int> counts = AuditRuleForm::counts(rules);
    require(std::accumulate(counts.cbegin(), counts.cend(), 0) <= rules.size(), "rules are counted once");
    return 0;
}
