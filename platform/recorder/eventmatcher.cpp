// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventmatcher.h"

#include <nivraevents.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>

namespace NivraRecorder {

namespace {

constexpr int valueLimit = 4096;

QString fieldPrefix()
{
    return QStringLiteral(".auditd.");
}

QJsonObject object(const char *json)
{
    return json == nullptr ? QJsonObject() : QJsonDocument::fromJson(json).object();
}

/** @p changes over @p base, object by object. */
QJsonObject merged(QJsonObject base, const QJsonObject &changes)
{
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        const QJsonValue former = base.value(it.key());
        base.insert(it.key(),
                    former.isObject() && it->isObject()
                        ? QJsonValue(merged(former.toObject(), it->toObject()))
                        : QJsonValue(*it));
    }
    return base;
}

QStringList parts(const QString &text)
{
    QStringList list;
    const QStringList raw = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &part : raw) {
        list << part.trimmed();
    }
    return list;
}

/** A text, a list in a text, or an array of texts. */
QStringList valuesOf(const QJsonValue &value)
{
    QStringList values;
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const QJsonValue &one : array) {
            values << one.toString();
        }
        return values;
    }
    return parts(value.toString());
}

/** The keys after "-k" in rules that are joined with ", ". */
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

QStringList keysOf(const QJsonObject &event)
{
    const QJsonValue rules = event.value(QStringLiteral("message-audit-rules"));
    // Not split at each comma: a rule holds some itself.
    QStringList keys
        = keysOfRules(rules.isArray() ? valuesOf(rules) : rules.toString().split(QLatin1String(", ")));
    keys += valuesOf(
        event.value(QStringLiteral("filter-values")).toObject().value(fieldPrefix() + QLatin1String("key")));
    const QStringList operations = event.value(QStringLiteral("message-audit-events")).toObject().keys();
    for (const QString &operation : operations) {
        keys << QLatin1String("nivra-subject-") + operation;
    }
    keys.removeDuplicates();
    return keys;
}

bool isOn(const QJsonValue &value)
{
    return value.isString() ? value.toString() == QLatin1String("1") : value.toInt() == 1;
}

/** The audit field that "${.auditd.FIELD}" stands for; a null string for anything else. */
QString fieldIn(const QString &macro)
{
    const QString opening = QLatin1String("${") + fieldPrefix();
    return macro.startsWith(opening) && macro.endsWith(QLatin1Char('}'))
        ? macro.mid(opening.size()).chopped(1)
        : QString();
}

QList<QPair<QString, QString>> parametersOf(const QJsonObject &event)
{
    QList<QPair<QString, QString>> parameters;
    const QJsonObject described = event.value(QStringLiteral("extend-message-params")).toObject();
    for (auto it = described.begin(); it != described.end(); ++it) {
        const QJsonObject detail = it->toObject();
        const QString field
            = fieldIn(it->isObject() ? detail.value(QStringLiteral("field")).toString() : it->toString());
        if (!field.isEmpty() && (!it->isObject() || isOn(detail.value(QStringLiteral("enabled"))))) {
            parameters.append({it.key(), field});
        }
    }
    return parameters;
}

/** "name_en" and "type_en", or the same in Russian; nothing for other languages. */
QJsonObject namesIn(const QJsonObject &event, const QJsonObject &group)
{
    const QLocale::Language language = QLocale::system().language();
    const bool isRussian = language == QLocale::Russian;
    if (!isRussian && language != QLocale::English && language != QLocale::C) {
        return {};
    }
    const QString suffix = isRussian ? QStringLiteral("_ru") : QStringLiteral("_en");
    const QString name = QLatin1String("name") + suffix;
    return {
        {name, event.value(QStringLiteral("message-params")).toObject().value(name)},
        {QLatin1String("type") + suffix, group.value(QStringLiteral("group-params")).toObject().value(name)}};
}

} // namespace

EventMatcher::EventMatcher(const QString &settingsFile)
    : m_settingsFile(settingsFile)
{
}

QList<QByteArray> EventMatcher::records(const AuditEvent &event)
{
    loadWhenChanged();
    QList<QByteArray> records;
    for (const Rule &rule : qAsConst(m_rules)) {
        if (matches(rule, event)) {
            records << record(rule, event);
        }
    }
    return records;
}

void EventMatcher::loadWhenChanged()
{
    const QFileInfo file(m_settingsFile);
    if (!m_loaded || file.lastModified() != m_modified || file.size() != m_size) {
        m_modified = file.lastModified();
        m_size = file.size();
        m_loaded = true;
        load();
    }
}

void EventMatcher::load()
{
    m_rules.clear();
    if (nvev_init() < 0) {
        qWarning("the event catalog cannot be read: no audit event is recorded");
        return;
    }
    char **ids = nvev_get_event_ids();
    const uint64_t count = ids == nullptr ? 0 : nvev_events_count();
    for (uint64_t i = 0; i < count; ++i) {
        if (ids[i] != nullptr) {
            const QJsonObject event
                = merged(object(nvev_get_event_json(ids[i])), object(nvev_get_override_event_json(ids[i])));
            const QByteArray group = event.value(QStringLiteral("event-group")).toString().toUtf8();
            addRule(event, object(nvev_get_group_json(group.constData())));
        }
    }
    nvev_free_string_array(ids);
    nvev_free();
}

void EventMatcher::addRule(const QJsonObject &event, const QJsonObject &group)
{
    const QJsonObject filter = event.value(QStringLiteral("filter-values")).toObject();
    const QString messageId = event.value(QStringLiteral("message-params"))
                                  .toObject()
                                  .value(QStringLiteral("message_id"))
                                  .toString();
    Rule rule;
    rule.type = filter.value(fieldPrefix() + QLatin1String("type")).toString();
    if (rule.type.isEmpty() || messageId.isEmpty() || !isOn(event.value(QStringLiteral("enabled")))) {
        return;
    }
    for (auto it = filter.begin(); it != filter.end(); ++it) {
        const QString field = it.key().mid(fieldPrefix().size());
        if (!it.key().startsWith(fieldPrefix())) {
            return; // what other messages say cannot be looked for here
        }
        if (field != QLatin1String("type") && field != QLatin1String("key")) {
            rule.conditions.insert(field, valuesOf(*it));
        }
    }
    rule.keys = keysOf(event);
    rule.member = QLatin1String("nivra-") + event.value(QStringLiteral("message-type")).toString();
    rule.fixed = namesIn(event, group);
    rule.fixed.insert(QStringLiteral("message_id"), messageId);
    rule.parameters = parametersOf(event);
    m_rules << rule;
}

bool EventMatcher::matches(const Rule &rule, const AuditEvent &event)
{
    if (!event.types.contains(rule.type)) {
        return false;
    }
    if (rule.type == QLatin1String("SYSCALL")) {
        const QStringList keys = parts(event.fields.value(QStringLiteral("key")));
        if (std::none_of(keys.cbegin(), keys.cend(),
                         [&](const QString &key) { return rule.keys.contains(key); })) {
            return false;
        }
    }
    for (auto it = rule.conditions.cbegin(); it != rule.conditions.cend(); ++it) {
        if (!it->contains(event.fields.value(it.key()))) {
            return false;
        }
    }
    return true;
}

QByteArray EventMatcher::record(const Rule &rule, const AuditEvent &event)
{
    QJsonObject content = rule.fixed;
    for (const auto &[name, field] : rule.parameters) {
        content.insert(name, event.fields.value(field).left(valueLimit));
    }
    const QJsonObject message{{QStringLiteral("MSG"), QJsonObject{{rule.member, content}}}};
    return QJsonDocument(message).toJson(QJsonDocument::Compact);
}

} // namespace NivraRecorder
