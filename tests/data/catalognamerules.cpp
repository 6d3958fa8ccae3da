// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
using CatalogRules::breach;
using Event = CatalogFiles::Event;

bool isPlain(const QString &identifier)
{
    static const QRegularExpression allowed(QStringLiteral("\\A[A-Za-z0-9_-]+\\z"));
    static const QRegularExpression words(QStringLiteral("[_-]"));
    const QStringList parts = identifier.toLower().split(words);
    return allowed.match(identifier).hasMatch() && !parts.contains(QStringLiteral("if"))
        && !parts.contains(QStringLiteral("channel"));
}

QString parameter(const Event &event, QLatin1String name)
{
    return event.description.value(QLatin1String("message-params")).toObject().value(name).toString();
}

QString messageId(const Event &event)
{
    return parameter(event, QLatin1String("message_id"));
}

QString groupParameter(const QJsonObject &group, QLatin1String name)
{
    return group.value(QLatin1String("group-params")).toObject().value(name).toString();
}

/// Collects who uses a text, and tells when somebody else had it before.
class Users
{
public:
    void claim(const QString &text, const QString &id, QStringList &problems)
    {
        if (m_owners.contains(text)) {
            problems.append(breach(id, text + QLatin1String(" is taken by ") + m_owners.value(text)));
        }
        m_owners.insert(text, id);
    }

private:
    QHash<QString, QString> m_owners;
};

void checkNames(const QString &id, const QString &english, const QString &russian, QStringList &problems)
{
    static const QRegularExpression latin(QStringLiteral("\\A[A-Z][A-Za-z0-9 -]*[A-Za-z0-9]\\z"));
    static const QRegularExpression cyrillic(
        QStringLiteral("\\A[А-ЯЁ][А-Яа-яЁёA-Za-z0-9 ,-]*[А-Яа-яЁёA-Za-z0-9]\\z"));
    if (!latin.match(english).hasMatch()) {
        problems.append(breach(id, QLatin1String("English name “") + english + QLatin1String("”")));
    }
    if (!cyrillic.match(russian).hasMatch()) {
        problems.append(breach(id, QLatin1String("Russian name “") + russian + QLatin1String("”")));
    }
}
} // namespace

QStringList CatalogRules::uniqueIdentifiers(const CatalogFiles &catalog)
{
    QStringList problems;
    Users users;
    for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
        users.claim(it.key(), it.key(), problems);
    }
    for (const Event &event : catalog.events) {
        users.claim(event.id, event.folder + QLatin1Char('/') + event.id, problems);
    }
    return problems;
}

QStringList CatalogRules::plainIdentifiers(const CatalogFiles &catalog)
{
    QStringList problems;
    QStringList identifiers = catalog.groups.keys();
    for (const Event &event : catalog.events) {
        identifiers.append(event.id);
        if (!isPlain(messageId(event))) {
            problems.append(breach(event.id, QLatin1String("message identifier ") + messageId(event)));
        }
    }
    for (const QString &identifier : std::as_const(identifiers)) {
        if (!isPlain(identifier)) {
            problems.append(breach(identifier, QStringLiteral("not a plain identifier")));
        }
    }
    return problems;
}

QStringList CatalogRules::identifiersAreNoParameterNames(const CatalogFiles &catalog)
{
    const QStringList audit = auditIdentifiers();
    QSet<QString> names(audit.begin(), audit.end());
    for (const Event &event : catalog.events) {
        names.unite(memberNames(event.description));
    }
    QStringList problems;
    for (const Event &event : catalog.events) {
        if (names.contains(event.id)) {
            problems.append(breach(event.id, QStringLiteral("also the name of a parameter")));
        }
    }
    for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
        if (names.contains(it.key())) {
            problems.append(breach(it.key(), QStringLiteral("also the name of a parameter")));
        }
    }
    return problems;
}

QStringList CatalogRules::eventsLieInTheirGroups(const CatalogFiles &catalog)
{
    QStringList problems;
    QSet<QString> used;
    for (const Event &event : catalog.events) {
        const QString group = event.description.value(QLatin1String("event-group")).toString();
        used.insert(group);
        if (group != event.folder || !catalog.groups.contains(group)) {
            problems.append(breach(
                event.id, QLatin1String("lies in ") + event.folder + QLatin1String(", belongs to ") + group));
        }
    }
    for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
        if (!used.contains(it.key())) {
            problems.append(breach(it.key(), QStringLiteral("a group without events")));
        }
    }
    return problems;
}

QStringList CatalogRules::namesInBothLanguages(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        checkNames(event.id, parameter(event, QLatin1String("name_en")),
                   parameter(event, QLatin1String("name_ru")), problems);
    }
    for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
        checkNames(it.key(), groupParameter(*it, QLatin1String("name_en")),
                   groupParameter(*it, QLatin1String("name_ru")), problems);
    }
    return problems;
}

QStringList CatalogRules::uniqueNames(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const QLatin1String language : {QLatin1String("name_en"), QLatin1String("name_ru")}) {
        Users users;
        for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
            users.claim(groupParameter(*it, language).toLower(), it.key(), problems);
        }
        for (const Event &event : catalog.events) {
            users.claim(parameter(event, language).toLower(), event.id, problems);
        }
    }
    return problems;
}

QString CatalogRules::notificationKey(const QString &messageId)
{
    QString key;
    bool raise = false;
    for (const QChar c : messageId) {
        const bool separator = c == QLatin1Char('_') || c == QLatin1Char('-');
        if (!separator) {
            key.append(raise ? c.toUpper() : c);
        }
        raise = separator;
    }
    return key;
}

QStringList CatalogRules::uniqueMessageIdentifiers(const CatalogFiles &catalog)
{
    QStringList problems;
    Users keys;
    Users fileNames;
    for (const Event &event : catalog.events) {
        const QString id = messageId(event);
        keys.claim(notificationKey(id), event.id, problems);
        fileNames.claim(QString(id).replace(QLatin1Char('-'), QLatin1Char('_')), event.id, problems);
    }
    return problems;
}

QStringList CatalogRules::plainMessageTypes(const CatalogFiles &catalog)
{
    static const QRegularExpression word(QStringLiteral("\\A[a-z]+\\z"));
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QString type = event.description.value(QLatin1String("message-type")).toString();
        if (!word.match(type).hasMatch()) {
            problems.append(breach(event.id, QLatin1String("message type ") + type));
        }
    }
    return problems;
}
