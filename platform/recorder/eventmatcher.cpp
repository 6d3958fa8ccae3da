// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventmatcher.h"

#include <algorithm>

namespace NivraRecorder {

namespace {

QString fieldPrefix()
{
    return QStringLiteral(".auditd.");
}

/** The keys after "-k" in rules. */
QStringList keysOfRules(const QStringList &rules)
{
    QStringList keys;
    for (const QString &rule : rules) {
        const QStringList words = rule.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (int i = 0; i + 1 < words.size(); ++i) {
            if (words.at(i) == QLatin1String("-k")) {
                keys << words.at(i + 1);
            }
        }
    }
    return keys;
}

QStringList keysOf(const CatalogEvent &event)
{
    const QJsonValue rules = event.description.value(QStringLiteral("message-audit-rules"));
    // Not split at each comma: a rule holds some itself.
    QStringList keys = keysOfRules(rules.isArray() ? CatalogEvents::values(rules)
                                                   : rules.toString().split(QLatin1String(", ")));
    keys += CatalogEvents::values(event.filter().value(fieldPrefix() + QLatin1String("key")));
    const QStringList operations
        = event.description.value(QStringLiteral("message-audit-events")).toObject().keys();
    for (const QString &operation : operations) {
        keys << QLatin1String("nivra-subject-") + operation;
    }
    keys.removeDuplicates();
    return keys;
}

} // namespace

std::optional<EventMatcher::Rule> EventMatcher::Rule::of(const CatalogEvent &event)
{
    const QJsonObject filter = event.filter();
    Rule rule;
    rule.event = event;
    rule.type = filter.value(fieldPrefix() + QLatin1String("type")).toString();
    rule.keys = keysOf(event);
    if (rule.type.isEmpty()) {
        return {};
    }
    for (auto it = filter.begin(); it != filter.end(); ++it) {
        if (!it.key().startsWith(fieldPrefix())) {
            return {}; // what other messages say cannot be looked for here
        }
        const QString field = it.key().mid(fieldPrefix().size());
        if (field != QLatin1String("type") && field != QLatin1String("key")) {
            rule.conditions.insert(field, CatalogEvents::values(*it));
        }
    }
    return rule;
}

bool EventMatcher::Rule::matches(const AuditEvent &happened) const
{
    if (!happened.types.contains(type)) {
        return false;
    }
    if (type == QLatin1String("SYSCALL")) {
        const QStringList found = CatalogEvents::parts(happened.fields.value(QStringLiteral("key")));
        if (std::none_of(found.cbegin(), found.cend(),
                         [&](const QString &key) { return keys.contains(key); })) {
            return false;
        }
    }
    for (auto it = conditions.cbegin(); it != conditions.cend(); ++it) {
        if (!it->contains(happened.fields.value(it.key()))) {
            return false;
        }
    }
    return true;
}

QByteArray EventMatcher::Rule::record(const AuditEvent &happened) const
{
    QList<QPair<QString, QString>> values;
    const QList<QPair<QString, QString>> parameters = event.parameters();
    for (const auto &[name, macro] : parameters) {
        if (macro.startsWith(fieldPrefix())) {
            values.append({name, happened.fields.value(macro.mid(fieldPrefix().size()))});
        }
    }
    return event.record(values);
}

} // namespace NivraRecorder
