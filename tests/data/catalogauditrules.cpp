// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
using Event = CatalogFiles::Event;

QString rulesText(const Event &event)
{
    return event.description.value(QLatin1String("message-audit-rules")).toString();
}

/// The path that a rule watches, empty when the rule has neither of the two forms.
QString watchedPath(const QString &rule)
{
    static const QRegularExpression watch(
        QStringLiteral("\\A-w (?<path>/[^ ,\"\\\\]*) -p [rwxa]{1,4} -k (?<key>[^ ]+)\\z"));
    static const QRegularExpression call(QStringLiteral(
        "\\A-a always,exit -F arch=(?:b64|b32|x86_64|armv7l|aarch64) -F path=(?<path>/[^ ,\"\\\\]+) "
        "-S [a-z0-9_]+(?:,[a-z0-9_]+)* -k (?<key>[^ ]+)\\z"));
    for (const QRegularExpression &form : {watch, call}) {
        const QRegularExpressionMatch match = form.match(rule);
        if (match.hasMatch()
            && match.captured(QStringLiteral("path")) == match.captured(QStringLiteral("key"))) {
            return match.captured(QStringLiteral("path"));
        }
    }
    return {};
}

QStringList watchedPaths(const Event &event)
{
    QStringList paths;
    const QStringList rules = CatalogRules::auditRules(event);
    for (const QString &rule : rules) {
        const QString path = watchedPath(rule);
        if (!paths.contains(path)) {
            paths.append(path);
        }
    }
    return paths;
}

bool isFileList(const QString &id)
{
    return id == QLatin1String("file-opened") || id == QLatin1String("modifying-file")
        || id == QLatin1String("modifying-directory");
}

bool hasResults(const QJsonValue &subject)
{
    return subject.toObject().keys() == QStringList{QStringLiteral("fail"), QStringLiteral("succ")};
}
} // namespace

QStringList CatalogRules::auditIdentifiers()
{
    return {QStringLiteral("open"),   QStringLiteral("create"), QStringLiteral("exec"),
            QStringLiteral("delete"), QStringLiteral("chmod"),  QStringLiteral("chown"),
            QStringLiteral("mount"),  QStringLiteral("module"), QStringLiteral("uid"),
            QStringLiteral("gid"),    QStringLiteral("audit"),  QStringLiteral("acl"),
            QStringLiteral("mac"),    QStringLiteral("cap"),    QStringLiteral("chroot"),
            QStringLiteral("rename"), QStringLiteral("net")};
}

QStringList CatalogRules::auditRules(const CatalogFiles::Event &event)
{
    const QString text = rulesText(event);
    return text.isEmpty() ? QStringList() : text.split(QLatin1String(", "));
}

QStringList CatalogRules::auditIsOffByDefault(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const bool audited = event.description.contains(QLatin1String("message-audit-rules"))
            || event.description.contains(QLatin1String("message-audit-events"));
        if (audited && event.description.value(QLatin1String("enabled")) != QLatin1String("0")) {
            problems.append(breach(event.id, QStringLiteral("audited, but not switched off")));
        }
    }
    return problems;
}

QStringList CatalogRules::auditRulesAreWellFormed(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        if (event.description.contains(QLatin1String("message-audit-rules")) && rulesText(event).isEmpty()) {
            problems.append(breach(event.id, QStringLiteral("no rules")));
        }
        const QStringList rules = auditRules(event);
        for (const QString &rule : rules) {
            if (watchedPath(rule).isEmpty() || rules.count(rule) > 1) {
                problems.append(breach(event.id, QLatin1String("bad or repeated rule ") + rule));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::openedFilesHaveThreeRules(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        if (!isFileList(event.id)) {
            continue;
        }
        QStringList expected;
        const QStringList paths = watchedPaths(event);
        for (const QString &path : paths) {
            if (event.id != QLatin1String("file-opened")) {
                expected.append(QStringLiteral("-w %1 -p wa -k %1").arg(path));
                continue;
            }
            for (const QLatin1String call : {QLatin1String("x86_64 -F path=%1 -S open,openat"),
                                             QLatin1String("armv7l -F path=%1 -S open,openat"),
                                             QLatin1String("aarch64 -F path=%1 -S openat")}) {
                expected.append(
                    QString(QLatin1String("-a always,exit -F arch=") + call + QLatin1String(" -k %1"))
                        .arg(path));
            }
        }
        if (paths.isEmpty() || auditRules(event) != expected) {
            problems.append(breach(event.id, QStringLiteral("not the rules that its list of paths gives")));
        }
    }
    return problems;
}

QStringList CatalogRules::pathsAreWatchedOnce(const CatalogFiles &catalog)
{
    // The path is the key: it tells which event a record belongs to.
    QStringList problems;
    QHash<QString, QString> owners;
    for (const Event &event : catalog.events) {
        const QStringList paths = watchedPaths(event);
        for (const QString &path : paths) {
            if (owners.contains(path)) {
                problems.append(
                    breach(event.id, path + QLatin1String(" is watched by ") + owners.value(path)));
            }
            owners.insert(path, event.id);
        }
    }
    return problems;
}

QStringList CatalogRules::auditKeysFollowRules(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QString key = event.description.value(QLatin1String("filter-values"))
                                .toObject()
                                .value(QLatin1String(".auditd.key"))
                                .toString();
        const QString paths = watchedPaths(event).join(QLatin1String(", "));
        // The page itself fills the keys of the file lists.
        if (key != (isFileList(event.id) ? QString() : paths)) {
            problems.append(
                breach(event.id, QLatin1String("audit key “") + key + QLatin1String("” for ") + paths));
        }
    }
    return problems;
}

QStringList CatalogRules::subjectAuditIsComplete(const CatalogFiles &catalog)
{
    QStringList problems;
    QHash<QString, QString> owners;
    const QStringList known = auditIdentifiers();
    for (const Event &event : catalog.events) {
        const QJsonValue audit = event.description.value(QLatin1String("message-audit-events"));
        if (!audit.isUndefined() && audit.toObject().isEmpty()) {
            problems.append(breach(event.id, QStringLiteral("audits nothing")));
        }
        const QJsonObject operations = audit.toObject();
        for (auto it = operations.begin(); it != operations.end(); ++it) {
            const QJsonObject subjects = it->toObject();
            const QJsonObject users = subjects.value(QLatin1String("users")).toObject();
            const QJsonObject groups = subjects.value(QLatin1String("groups")).toObject();
            const bool whole = subjects.keys()
                    == QStringList{QStringLiteral("groups"), QStringLiteral("other"), QStringLiteral("users")}
                && subjects.value(QLatin1String("users")).isObject()
                && subjects.value(QLatin1String("groups")).isObject()
                && hasResults(subjects.value(QLatin1String("other")))
                && std::all_of(users.begin(), users.end(), hasResults)
                && std::all_of(groups.begin(), groups.end(), hasResults);
            if (!known.contains(it.key()) || !whole) {
                problems.append(breach(
                    event.id, QLatin1String("audit of ") + it.key() + QLatin1String(" is not complete")));
            }
            if (owners.contains(it.key())) {
                problems.append(
                    breach(event.id, it.key() + QLatin1String(" is audited by ") + owners.value(it.key())));
            }
            owners.insert(it.key(), event.id);
        }
    }
    return problems;
}
