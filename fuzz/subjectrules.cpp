// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <auditoperations.h>
#include <auditsettingsstore.h>
#include <contentcheck.h>
#include <subjectrules.h>
#include <subjectsettings.h>

#include <QCryptographicHash>

#include <algorithm>

using namespace AdminEventsHelper;

namespace {

bool isSame(const SubjectSettings &a, const SubjectSettings &b)
{
    return a.keys() == b.keys() && std::equal(a.cbegin(), a.cend(), b.cbegin(), [](auto &x, auto &y) {
               return x.users == y.users && x.groups == y.groups && x.other == y.other;
           });
}

SubjectSettings settingsOf(FuzzInput &input)
{
    SubjectSettings settings;
    for (int count = input.below(4); count > 0; --count) {
        OperationSettings &operation = settings[input.one(AuditOperations::identifiers())];
        operation.other = input.below(4);
        for (int subjects = input.below(6); subjects > 0; --subjects) {
            OperationSettings::Values &values = input.coin() ? operation.users : operation.groups;
            values.insert(static_cast<quint32>(input.below(1 << 30)), 1 + input.below(3));
        }
    }
    return settings;
}

/// What is understood is written as it was read, and becomes rules that may be written, or too many.
void check(const SubjectSettings &settings)
{
    const QByteArray text = SubjectText::write(settings);
    const Result<SubjectSettings> again = SubjectText::read(text, QStringLiteral("x"));
    require(again.ok(), "the own text is understood", again.ok() ? QString() : again.error());
    const Result<QList<QByteArray>> rules = SubjectRules::make(settings, QStringLiteral("x86_64"));
    require(rules.ok() || !rules.error().isEmpty(), "a refusal has a text");
    for (const QByteArray &rule : rules ? rules.value() : QList<QByteArray>()) {
        require(ContentCheck::isAuditRule(rule), "a rule is a rule", QString::fromUtf8(rule));
    }
}

/// Whether somebody has to be patient: long ranges are no harm, but take their time.
bool isLong(const QByteArray &text)
{
    int digits = 0;
    int most = 0;
    for (const char c : text) {
        digits = c >= '0' && c <= '9' ? digits + 1 : 0;
        most = std::max(most, digits);
    }
    constexpr int shortNumber = 3;
    return most > shortNumber && text.contains('-');
}

} // namespace

/// Any rules file of the audit settings, also one with a checksum that somebody has worked out, is refused
/// with a text or understood; settings survive being written and read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const QString path = AuditSettingsStore::path();
    const int mode = input.mode(3);
    if (mode == 0) {
        const SubjectSettings settings = settingsOf(input);
        check(settings);
        const Result<SubjectSettings> again
            = SubjectText::read(SubjectText::write(settings), QStringLiteral("x"));
        require(again.ok() && isSame(again.value(), settings), "settings survive");
        return 0;
    }
    QByteArray text = input.rest();
    if (isLong(text)) {
        return 0;
    }
    if (mode == 1) {
        const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
        text += "# checksum " + sum + '\n';
    }
    const Outcome outcome = AuditSettingsStore::check(path, text);
    require(outcome.ok() || outcome.error().contains(path), "a refusal names the file", outcome.error());
    const Result<SubjectSettings> settings = SubjectText::read(text, path);
    if (settings) {
        check(settings.value());
    }
    return 0;
}
