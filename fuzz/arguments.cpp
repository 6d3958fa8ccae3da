// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <auditoperations.h>
#include <auditrequests.h>
#include <configtransfer.h>
#include <configwriter.h>
#include <contentcheck.h>
#include <fragmentcheck.h>
#include <fragmentstore.h>
#include <servicecontrol.h>

using namespace AdminEventsHelper;

namespace {

const QStringList &words()
{
    static const QStringList list{QStringLiteral("action"),
                                  QStringLiteral("writeConfig"),
                                  QStringLiteral("path"),
                                  QStringLiteral("content"),
                                  QStringLiteral("output"),
                                  QStringLiteral("input"),
                                  QStringLiteral("cmd"),
                                  QStringLiteral("start"),
                                  QStringLiteral("stop"),
                                  QStringLiteral("restart"),
                                  QStringLiteral("auditType"),
                                  QStringLiteral("auditIDs"),
                                  QStringLiteral("list"),
                                  QStringLiteral("AUDIT_TYPE"),
                                  QStringLiteral("open"),
                                  QStringLiteral("root/open"),
                                  QStringLiteral("notifications"),
                                  QStringLiteral("paths"),
                                  QStringLiteral("/etc/nivra-syslog.conf"),
                                  QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"),
                                  QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"),
                                  QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"),
                                  QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a.conf"),
                                  QString()};
    return list;
}

/// The arguments that a verb takes, of types that it takes, mostly.
QVariantMap nearlySound(FuzzInput &input, int verb)
{
    const auto word = [&] { return input.oneOrText(words()); };
    switch (verb) {
    case 0:
        return {{QStringLiteral("action"), QStringLiteral("writeConfig")},
                {QStringLiteral("path"), word()},
                {QStringLiteral("content"), input.bytes(2000)}};
    case 1:
        return {{QStringLiteral("output"), word()}};
    case 2:
        return {{QStringLiteral("input"), word()}};
    case 3:
        return {{QStringLiteral("cmd"), word()}};
    case 4:
        return {{QStringLiteral("auditType"), input.below(4)},
                {QStringLiteral("auditIDs"), input.strings(words())},
                {QStringLiteral("list"), input.strings(words())}};
    case 5: {
        QVariantMap settings = input.map(words(), 0);
        settings.insert(QStringLiteral("AUDIT_TYPE"), input.below(4));
        settings.insert(QStringLiteral("root/") + input.one(AuditOperations::identifiers()), input.below(5));
        return settings;
    }
    case 6:
        return {{QStringLiteral("notifications"), input.map(words(), 0)}};
    default:
        return {{QStringLiteral("paths"), input.strings(words())}};
    }
}

/// Reads a request; what is taken must be what the verb is for.
Outcome read(int verb, const QVariantMap &arguments)
{
    if (verb == 0) {
        const Result<WriteRequest> request = WriteRequest::read(arguments);
        const Result<ConfigTarget> target
            = request ? ConfigTarget::find(request.value().path) : Result<ConfigTarget>(request.outcome());
        require(!target || target.value().path() == request.value().path, "a target is named by its path");
        return target ? ContentCheck::check(target.value(), request.value().content, {}) : target.outcome();
    }
    if (verb == 1 || verb == 2) {
        return TransferRequest::read(arguments,
                                     verb == 1 ? QStringLiteral("output") : QStringLiteral("input"))
            .outcome();
    }
    if (verb == 3) {
        return readServiceCommand(arguments).outcome();
    }
    if (verb == 4) {
        const Result<AuditQuery> query = AuditQuery::read(arguments);
        for (const QString &identifier : query ? query.value().identifiers : QStringList()) {
            require(AuditOperations::identifiers().contains(identifier), "operations are known");
        }
        return query.outcome();
    }
    if (verb == 5) {
        const Result<AuditChange> change = AuditChange::read(arguments);
        const auto values = change ? change.value().values : QMap<QPair<QString, QString>, int>();
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            require(AuditOperations::identifiers().contains(it.key().second) && *it >= 0 && *it <= 3
                        && !it.key().first.contains(QLatin1Char('/')),
                    "settings are settings", it.key().first);
        }
        return change.outcome();
    }
    if (verb == 6) {
        const Result<FragmentWriteRequest> request = FragmentWriteRequest::read(arguments);
        const auto fragments = request ? request.value().fragments : QMap<QString, QByteArray>();
        for (auto it = fragments.cbegin(); it != fragments.cend(); ++it) {
            require(FragmentCheck::isFragmentName(it.key()) && FragmentCheck::check(it.key(), *it).ok(),
                    "fragments are fragments", it.key());
        }
        return request.outcome();
    }
    const Result<FragmentRemoveRequest> request = FragmentRemoveRequest::read(arguments);
    for (const QString &name : request ? request.value().fileNames : QStringList()) {
        require(FragmentCheck::isFragmentName(name), "only fragments are removed", name);
    }
    return request.outcome();
}

} // namespace

/// Any arguments of any verb are taken or refused with a text. What is taken is refused with one argument
/// more, and without its first one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int verbs = 8;
    constexpr int settingsVerb = 5;
    FuzzInput input(data, size);
    const int verb = input.below(verbs);
    QVariantMap arguments = input.coin() ? nearlySound(input, verb) : input.map(words());
    if (input.below(4) == 0) {
        const QString key = input.oneOrText(words());
        arguments.insert(key, input.variant(words()));
    }
    const Outcome outcome = read(verb, arguments);
    require(outcome.ok() || !outcome.error().isEmpty(), "a refusal has a text");
    if (outcome.ok()) {
        QVariantMap more = arguments;
        more.insert(QStringLiteral("unknown"), 1);
        require(!read(verb, more).ok(), "unknown arguments are refused");
        const QString first = verb == settingsVerb ? QStringLiteral("AUDIT_TYPE") : arguments.firstKey();
        arguments.remove(first);
        require(!read(verb, arguments).ok(), "no argument may be missing", first);
    }
    return 0;
}
