// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "messagematcher.h"

#include <algorithm>

namespace NivraRecorder {

namespace {

/** What a parameter's macro stands for: a part of the message itself, or something that its text says. */
QString valueOf(const QString &macro, const SystemMessage &message)
{
    if (macro == QLatin1String("PROGRAM")) {
        return message.program;
    }
    if (macro == QLatin1String("MESSAGE")) {
        return message.text;
    }
    if (macro == QLatin1String("PID")) {
        return message.pid;
    }
    if (macro == QLatin1String("HOST")) {
        return message.host;
    }
    if (macro == QLatin1String("ISODATE")) {
        return message.time;
    }
    return message.find(macro.section(QLatin1Char('.'), -1));
}

} // namespace

std::optional<MessageMatcher::Rule> MessageMatcher::Rule::of(const CatalogEvent &event)
{
    const QJsonObject filter = event.filter();
    Rule rule;
    rule.event = event;
    for (auto it = filter.begin(); it != filter.end(); ++it) {
        if (it.key() == QLatin1String("PROGRAM")) {
            rule.programs = CatalogEvents::values(*it);
        } else if (it.key() == QLatin1String("MESSAGE")) {
            // A text may hold commas.
            rule.texts = it->isArray() ? CatalogEvents::values(*it) : QStringList{it->toString()};
        } else {
            return {}; // an event of the audit daemon
        }
    }
    if (rule.programs.isEmpty() && rule.texts.isEmpty()) {
        return {};
    }
    return rule;
}

bool MessageMatcher::Rule::matches(const SystemMessage &message) const
{
    if (!message.isOfSystem && event.messageType() != QLatin1String("custom")) {
        return false;
    }
    if (!programs.isEmpty() && !programs.contains(message.program)) {
        return false;
    }
    return texts.isEmpty() || std::any_of(texts.cbegin(), texts.cend(), [&](const QString &text) {
               return message.text.contains(text);
           });
}

QByteArray MessageMatcher::Rule::record(const SystemMessage &message) const
{
    QList<QPair<QString, QString>> values;
    const QList<QPair<QString, QString>> parameters = event.parameters();
    for (const auto &[name, macro] : parameters) {
        values.append({name, valueOf(macro, message)});
    }
    return event.record(values);
}

} // namespace NivraRecorder
