// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "sitemaker.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <array>

namespace {
constexpr int namedPerEvent = 6; // accounts that an audited event's description names itself

const std::array<const char *, 16> nouns{"login",   "account", "session", "service",  "module", "mount",
                                         "package", "socket",  "printer", "password", "clock",  "firewall",
                                         "device",  "policy",  "archive", "journal"};
const std::array<const char *, 8> verbs{"opened", "closed",  "changed", "removed",
                                        "failed", "started", "stopped", "refused"};

QJsonObject outcome(const QString &success, const QString &failure)
{
    return {{QStringLiteral("succ"), success}, {QStringLiteral("fail"), failure}};
}

QString numbered(const char *stem, int number)
{
    return QStringLiteral("%1%2").arg(QLatin1String(stem)).arg(number, 4, 10, QLatin1Char('0'));
}
} // namespace

Accounts Accounts::ofSystem(int subjects)
{
    Accounts accounts;
    for (int i = 0; i < subjects; ++i) {
        if (i % 3 == 2) {
            accounts.groups.append(numbered("team", i));
        } else {
            accounts.users.append(numbered("user", i));
        }
    }
    return accounts;
}

bool writeJson(const QString &path, const QJsonObject &object)
{
    QFile file(path);
    const QByteArray content = QJsonDocument(object).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

SiteMaker::SiteMaker(quint32 seed)
    : m_random(seed)
{
}

int SiteMaker::below(int limit)
{
    return static_cast<int>(m_random.bounded(static_cast<quint32>(limit)));
}

QString SiteMaker::switchValue()
{
    return below(2) == 0 ? QStringLiteral("0") : QStringLiteral("1");
}

QString SiteMaker::makeName(int number)
{
    const char *noun = nouns.at(static_cast<std::size_t>(below(static_cast<int>(nouns.size()))));
    const char *verb = verbs.at(static_cast<std::size_t>(below(static_cast<int>(verbs.size()))));
    return QStringLiteral("%1 %2 %3").arg(QLatin1String(noun), QLatin1String(verb)).arg(number);
}

QJsonObject SiteMaker::makeAuditEvents(const Accounts &accounts)
{
    const auto some = [this](const QStringList &names) {
        QJsonObject subjects;
        for (int i = 0; i < namedPerEvent && !names.isEmpty(); ++i) {
            subjects.insert(names.at(below(names.size())), outcome(switchValue(), switchValue()));
        }
        return subjects;
    };
    return {{QStringLiteral("open"),
             QJsonObject{{QStringLiteral("users"), some(accounts.users)},
                         {QStringLiteral("groups"), some(accounts.groups)},
                         {QStringLiteral("other"), outcome(switchValue(), switchValue())}}}};
}

QJsonObject SiteMaker::makeEvent(int number, const QString &group, const Accounts *audited)
{
    const QString name = makeName(number);
    const auto extended = [](const char *field, const QString &on) {
        return QJsonObject{{QStringLiteral("enabled"), on}, {QStringLiteral("field"), QLatin1String(field)}};
    };
    QJsonObject event{
        {QStringLiteral("event-group"), group},
        {QStringLiteral("enabled"), switchValue()},
        {QStringLiteral("message-type"), QStringLiteral("access")},
        {QStringLiteral("message-params"),
         QJsonObject{{QStringLiteral("message_id"), numbered("message", number)},
                     {QStringLiteral("name_en"), name},
                     {QStringLiteral("name_ru"), QStringLiteral("Событие %1").arg(number)}}},
        {QStringLiteral("extend-message-params"),
         QJsonObject{{QStringLiteral("path"), QStringLiteral("${.auditd.name}")},
                     {QStringLiteral("login_user"), extended("${.auditd.auid}", switchValue())},
                     {QStringLiteral("executable"), extended("${.auditd.exe}", switchValue())}}},
        {QStringLiteral("filter-values"),
         QJsonObject{{QStringLiteral(".auditd.type"), QStringLiteral("SYSCALL")}}},
        {QStringLiteral("notification_repetition"),
         QJsonObject{{QStringLiteral("enabled"), switchValue()},
                     {QStringLiteral("interval"), QString::number(10 + below(50))}}}};
    if (audited) {
        event.insert(QStringLiteral("message-audit-events"), makeAuditEvents(*audited));
    }
    return event;
}

bool SiteMaker::writeCatalog(const QString &directory, const SiteSize &size, const Accounts &accounts)
{
    bool written = true;
    for (int i = 0; i < size.groups; ++i) {
        const QString group = numbered("group-", i);
        const QString name = QStringLiteral("Group %1").arg(i);
        const QJsonObject params{{QStringLiteral("name_en"), name}, {QStringLiteral("name_ru"), name}};
        written = QDir().mkpath(directory + QLatin1Char('/') + group)
            && writeJson(QStringLiteral("%1/%2.json").arg(directory, group),
                         {{QStringLiteral("group-params"), params}})
            && written;
    }
    for (int i = 0; i < size.events; ++i) {
        // Every group gets its share of the audited events.
        const QString group = numbered("group-", i * size.groups / size.events);
        const bool audited = i * size.auditEvents / size.events != (i + 1) * size.auditEvents / size.events;
        const QString id = numbered("event-", i);
        written = writeJson(QStringLiteral("%1/%2/%3.json").arg(directory, group, id),
                            makeEvent(i, group, audited ? &accounts : nullptr))
            && written;
    }
    return written;
}

QJsonObject SiteMaker::makeOverride(const QJsonObject &event, const Accounts &accounts)
{
    QJsonObject settings{{QStringLiteral("enabled"), switchValue()}};
    const QString auditEvents = QStringLiteral("message-audit-events");
    const QJsonObject audits = event.value(auditEvents).toObject();
    const auto everySecond = [this](const QStringList &names) {
        QJsonObject subjects;
        for (int i = 0; i < names.size(); i += 2) {
            subjects.insert(names.at(i), outcome(QStringLiteral("1"), switchValue()));
        }
        return subjects;
    };
    QJsonObject changed;
    for (auto it = audits.begin(); it != audits.end(); ++it) {
        changed.insert(it.key(),
                       QJsonObject{{QStringLiteral("users"), everySecond(accounts.users)},
                                   {QStringLiteral("groups"), everySecond(accounts.groups)},
                                   {QStringLiteral("other"), outcome(switchValue(), switchValue())}});
    }
    if (!changed.isEmpty()) {
        settings.insert(auditEvents, changed);
    }
    const QString extended = QStringLiteral("extend-message-params");
    const QJsonObject parameters = event.value(extended).toObject();
    QJsonObject turned;
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        if (it->isObject() && it->toObject().contains(QLatin1String("enabled"))) {
            QJsonObject parameter = it->toObject();
            parameter.insert(QStringLiteral("enabled"), switchValue());
            turned.insert(it.key(), parameter);
        }
    }
    if (!turned.isEmpty()) {
        settings.insert(extended, turned);
    }
    return settings;
}
