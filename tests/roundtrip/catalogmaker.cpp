// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogmaker.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {
const QStringList awkwardNames{
    QStringLiteral("users"),    QStringLiteral("groups"),      QStringLiteral("other"),
    QStringLiteral("enabled"),  QStringLiteral("succ"),        QStringLiteral("fail"),
    QStringLiteral("root"),     QStringLiteral("overlay-svc"), QStringLiteral("overlay0"),
    QStringLiteral("mount"),    QStringLiteral("взлом"),       QStringLiteral("a \"b\""),
    QStringLiteral("back\\sl"), QStringLiteral("interval"),    QStringLiteral("message_id"),
    QStringLiteral("x},  }")};

const QStringList parameterNames{
    QStringLiteral("path"),       QStringLiteral("limit"),   QStringLiteral("tty"),
    QStringLiteral("Ёж"),         QStringLiteral("open"),    QStringLiteral("a, b"),
    QStringLiteral("\"quoted\""), QStringLiteral("brace }"), QStringLiteral("time"),
    QStringLiteral("succ"),       QStringLiteral("users"),   QStringLiteral("groups"),
    QStringLiteral("enabled"),    QStringLiteral("")};

const QStringList auditIdentifiers{QStringLiteral("open"), QStringLiteral("mount"), QStringLiteral("exec"),
                                   QStringLiteral("net")};

void writeJson(const QString &path, const QJsonObject &object)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(object).toJson()) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}
} // namespace

CatalogMaker::CatalogMaker(quint32 seed)
    : m_random(seed)
{
}

int CatalogMaker::below(int limit)
{
    return static_cast<int>(m_random.bounded(static_cast<quint32>(limit)));
}

bool CatalogMaker::chance(int percent)
{
    return below(100) < percent;
}

QString CatalogMaker::pick(const QStringList &choices)
{
    return choices.at(below(choices.size()));
}

QStringList CatalogMaker::users() const
{
    return awkwardNames.mid(0, 9) + QStringList{QStringLiteral("alice"), QStringLiteral("bob")};
}

QStringList CatalogMaker::groups() const
{
    return QStringList{QStringLiteral("sudo"), QStringLiteral("users"), QStringLiteral("adm")}
    + awkwardNames.mid(3, 4);
}

QString CatalogMaker::hostileText()
{
    static const QStringList pieces{
        QStringLiteral("a:  }"),      QStringLiteral("},  }"),   QStringLiteral("],  }"),
        QStringLiteral("\",  }"),     QStringLiteral("\""),      QStringLiteral("\\"),
        QStringLiteral(", "),         QStringLiteral("Ёлка"),    QStringLiteral(" "),
        QStringLiteral("{"),          QStringLiteral("\\u007d"), QStringLiteral("0"),
        QStringLiteral("1"),          QStringLiteral("yes"),     QStringLiteral("%1"),
        QStringLiteral("\U0001F512"), QStringLiteral(":"),       QStringLiteral("overlay0")};
    QString text;
    for (int i = below(4); i >= 0; --i) {
        text += pick(pieces);
    }
    return text;
}

QString CatalogMaker::switchValue()
{
    static const QStringList values{QStringLiteral("0"), QStringLiteral("1"),   QStringLiteral("0"),
                                    QStringLiteral("1"), QStringLiteral("yes"), QStringLiteral("")};
    return pick(values);
}

QJsonObject CatalogMaker::makeOutcome(bool override)
{
    QJsonObject outcome;
    if (!override || chance(80)) {
        outcome.insert(QStringLiteral("succ"), switchValue());
    }
    if (!override || chance(60)) {
        outcome.insert(QStringLiteral("fail"), switchValue());
    }
    return outcome;
}

QJsonObject CatalogMaker::makeSubjects(bool override)
{
    QJsonObject subjects;
    for (int i = below(4); i > 0; --i) {
        subjects.insert(pick(awkwardNames), makeOutcome(override));
    }
    return subjects;
}

QJsonObject CatalogMaker::makeAuditEvents(bool override)
{
    QJsonObject events;
    for (int i = below(3); i >= 0; --i) {
        QJsonObject identifier;
        if (!override || chance(50)) {
            identifier.insert(QStringLiteral("users"), makeSubjects(override));
        }
        if (chance(60)) {
            identifier.insert(QStringLiteral("groups"), makeSubjects(override));
        }
        if (chance(60)) {
            identifier.insert(QStringLiteral("other"), makeOutcome(override));
        }
        events.insert(pick(auditIdentifiers), identifier);
    }
    return events;
}

QJsonArray CatalogMaker::makeArray(int depth)
{
    QJsonArray array;
    for (int i = below(4); i > 0; --i) {
        if (chance(25)) {
            array.append(QJsonObject{{QStringLiteral("path"), hostileText()},
                                     {QStringLiteral("limit_bytes"), QStringLiteral("5")}});
        } else {
            array.append(chance(15) && depth > 0 ? anyValue(depth - 1) : QJsonValue(hostileText()));
        }
    }
    return array;
}

QJsonValue CatalogMaker::anyValue(int depth)
{
    const int kind = below(10);
    if (kind < 2 && depth > 0) {
        QJsonObject object;
        for (int i = below(4); i > 0; --i) {
            object.insert(pick(parameterNames), anyValue(depth - 1));
        }
        return object;
    }
    if (kind == 2) {
        return makeArray(depth);
    }
    if (kind == 3) {
        return chance(50) ? QJsonValue(below(1000)) : QJsonValue(chance(50));
    }
    return kind == 4 ? QJsonValue(switchValue()) : QJsonValue(hostileText());
}

QJsonObject CatalogMaker::makeExtended()
{
    QJsonObject extended;
    for (int i = below(4); i > 0; --i) {
        QJsonObject parameter{{QStringLiteral("enabled"), switchValue()}};
        for (int j = below(3); j > 0; --j) {
            parameter.insert(pick(parameterNames), anyValue(1));
        }
        extended.insert(pick(parameterNames), chance(70) ? QJsonValue(parameter) : QJsonValue(hostileText()));
    }
    return extended;
}

QJsonObject CatalogMaker::makeEvent(const QString &id, const QString &group)
{
    QJsonObject event{{QStringLiteral("event-group"), group}};
    const auto add = [&](int percent, const char *name, const auto &make) {
        if (chance(percent)) {
            event.insert(QLatin1String(name), QJsonValue(make()));
        }
    };
    add(85, "enabled", [&] { return switchValue(); });
    add(80, "message-params", [&] {
        return QJsonObject{
            {QStringLiteral("message_id"), QString(id)},
            {QStringLiteral("name_en"), chance(80) ? QString(id) : QStringLiteral("Same name")},
            {QStringLiteral("name_ru"), QStringLiteral("Событие %1").arg(id)}};
    });
    add(50, "message-audit-events", [&] { return makeAuditEvents(false); });
    add(50, "extend-message-params", [&] { return makeExtended(); });
    add(40, "notification_repetition", [&] {
        return QJsonObject{{QStringLiteral("enabled"), switchValue()},
                           {QStringLiteral("interval"), QStringLiteral("30")}};
    });
    add(40, "message-depends",
        [&] { return QString(pick(m_eventIds) + QLatin1String(" ,  ") + pick(m_eventIds)); });
    add(30, "message-audit-rules",
        [&] { return QStringLiteral("-w /etc/%1 -p wa -k /etc/%1, -w /etc/x -p wa -k /etc/x").arg(id); });
    add(50, "filter-values", [&] {
        QJsonObject filters{{QStringLiteral("PROGRAM"), hostileText()}};
        if (chance(30)) {
            filters.insert(QStringLiteral(".auditd.key"),
                           chance(50) ? QJsonValue(hostileText()) : QJsonValue(makeArray(0)));
        }
        return filters;
    });
    add(20, "directories", [&] { return makeArray(1); });
    add(20, "generates-load", [&] { return switchValue(); });
    for (int i = below(4); i > 0; --i) {
        event.insert(QStringLiteral("p-") + pick(parameterNames), anyValue(3));
    }
    return event;
}

void CatalogMaker::writeCatalog(const QString &root)
{
    const QString directory = root + QStringLiteral("/usr/share/syslog-ng-mod-nivra/event-settings");
    static const QStringList ids{
        QStringLiteral("mount"),  QStringLiteral("file-opened"), QStringLiteral("modifying-file"),
        QStringLiteral("login"),  QStringLiteral("log_out-x"),   QStringLiteral("event7"),
        QStringLiteral("event8"), QStringLiteral("interval"),    QStringLiteral("событие")};
    m_eventIds = ids.mid(0, 3 + below(ids.size() - 3));
    QStringList groupIds{QStringLiteral("g1"), QStringLiteral("g2"), QStringLiteral("custom-events")};
    for (const QString &group : qAsConst(groupIds)) {
        QDir().mkpath(directory + QLatin1Char('/') + group);
        writeJson(directory + QLatin1Char('/') + group + QStringLiteral(".json"),
                  {{QStringLiteral("group-params"),
                    QJsonObject{{QStringLiteral("name_en"), group},
                                {QStringLiteral("name_ru"), QStringLiteral("Группа")}}}});
    }
    for (const QString &id : qAsConst(m_eventIds)) {
        const QString group = pick(groupIds);
        const QJsonObject event = makeEvent(id, group);
        m_events.insert(id, event);
        writeJson(QStringLiteral("%1/%2/%3.json").arg(directory, group, id), event);
    }
}

QJsonObject CatalogMaker::overrideOf(const QJsonObject &event, int depth)
{
    QJsonObject settings;
    for (auto it = event.begin(); it != event.end(); ++it) {
        if (!chance(30)) {
            continue;
        }
        if (it.key() == QLatin1String("message-audit-events")) {
            settings.insert(it.key(), makeAuditEvents(true));
        } else if (it->isObject() && chance(80)) {
            settings.insert(it.key(), overrideOf(it->toObject(), depth));
        } else if (it->isArray() && chance(70)) {
            settings.insert(it.key(), makeArray(1));
        } else if (it.key() == QLatin1String("enabled")) {
            settings.insert(it.key(), switchValue());
        } else {
            settings.insert(it.key(), anyValue(depth)); // sometimes of another type than the catalog's
        }
    }
    if (chance(25)) {
        settings.insert(pick(parameterNames), anyValue(depth));
    }
    if (chance(10)) {
        settings.insert(QStringLiteral("overlay%1").arg(below(3)), hostileText());
    }
    return settings;
}

QJsonObject CatalogMaker::makeSettings()
{
    QJsonObject settings;
    for (const QString &id : qAsConst(m_eventIds)) {
        if (chance(50)) {
            settings.insert(id, overrideOf(m_events.value(id), 3));
        }
    }
    if (chance(40)) {
        settings.insert(QStringLiteral("gone-event"), anyValue(2));
    }
    return settings;
}

void CatalogMaker::writeDictionary(const QString &root)
{
    if (chance(50)) {
        return;
    }
    static const QStringList names{QStringLiteral("enabled"),
                                   QStringLiteral("message-depends"),
                                   QStringLiteral("message-audit-events"),
                                   QStringLiteral("overlay0"),
                                   QStringLiteral("users"),
                                   QStringLiteral("groups"),
                                   QStringLiteral("other"),
                                   QStringLiteral("succ"),
                                   QStringLiteral("message-audit-rules"),
                                   QStringLiteral("mount"),
                                   QStringLiteral("extend-message-params"),
                                   QStringLiteral("interval")};
    QJsonObject dictionary;
    for (const QString &name : names) {
        if (chance(70)) {
            dictionary.insert(name,
                              QJsonObject{{QStringLiteral("ru"), QStringLiteral("Имя %1").arg(name)},
                                          {QStringLiteral("visible"), QStringLiteral("true")},
                                          {QStringLiteral("editable"), QStringLiteral("true")},
                                          {QStringLiteral("children_editable"), QStringLiteral("true")}});
        }
    }
    QDir().mkpath(root + QStringLiteral("/etc/zep-admin-events"));
    writeJson(root + QStringLiteral("/etc/zep-admin-events/eventsdictionary.json"), dictionary);
}
