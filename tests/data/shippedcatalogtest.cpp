// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <iterator>

namespace {
using Event = CatalogFiles::Event;

QJsonObject changed(QJsonObject object, const QStringList &path, const QJsonValue &value)
{
    const QString &name = path.first();
    if (path.size() > 1) {
        object.insert(name, changed(object.value(name).toObject(), path.mid(1), value));
    } else if (value.isUndefined()) {
        object.remove(name);
    } else {
        object.insert(name, value);
    }
    return object;
}

/// Changes one value of an event, given the names on the way to it set apart by "/"; undefined removes it.
void change(CatalogFiles &catalog, const char *id, const char *path, const QJsonValue &value)
{
    for (Event &event : catalog.events) {
        if (event.id == QLatin1String(id)) {
            event.description
                = changed(event.description, QString::fromUtf8(path).split(QLatin1Char('/')), value);
        }
    }
}

void rename(CatalogFiles &catalog, const char *id, const char *newId)
{
    for (Event &event : catalog.events) {
        if (event.id == QLatin1String(id)) {
            event.id = QLatin1String(newId);
        }
    }
}

QJsonValue text(const char *value)
{
    return QString::fromUtf8(value);
}

struct Rule
{
    const char *name;
    QStringList (*breaches)(const CatalogFiles &);
    void (*breakIt)(CatalogFiles &);
    const char *culprit; ///< the event or group that the broken catalog is blamed on
};

using Files = CatalogFiles;

const Rule rules[] = {
    {"values are strings", CatalogRules::onlyStrings,
     [](Files &c) {
         change(c, "disk-space-low", "directories",
                QJsonArray{QJsonObject{{QStringLiteral("limit_bytes"), 5}}});
     },
     "disk-space-low"},
    {"members are known", CatalogRules::onlyKnownMembers,
     [](Files &c) { change(c, "login-failed", "colour", text("red")); }, "login-failed"},
    {"no member is an overlay record", CatalogRules::noOverlayMembers,
     [](Files &c) { change(c, "login-failed", "filter-values/overlay0", text("PROGRAM")); }, "login-failed"},
    {"switches are 0 or 1", CatalogRules::switchesAreZeroOrOne,
     [](Files &c) { change(c, "filesystem-mounted", "message-audit-events/mount/other/succ", text("yes")); },
     "filesystem-mounted"},
    {"a parameter is a switch everywhere or nowhere", CatalogRules::parametersAreSwitchesEverywhereOrNowhere,
     [](Files &c) { change(c, "login-failed", "extend-message-params/pid", text("${PID}")); },
     "login-succeeded"},
    {"filters select something", CatalogRules::filtersSelectSomething,
     [](Files &c) { change(c, "login-failed", "filter-values", QJsonObject()); }, "login-failed"},
    {"intervals are in range", CatalogRules::intervalsInRange,
     [](Files &c) { change(c, "login-failed", "notification_repetition/interval", text("4")); },
     "login-failed"},
    {"directories have limits", CatalogRules::directoriesHaveLimits,
     [](Files &c) { change(c, "log-space-low", "directories", QJsonArray()); }, "log-space-low"},
    {"identifiers are unique", CatalogRules::uniqueIdentifiers,
     [](Files &c) { rename(c, "print-job-failed", "login-failed"); }, "printing/login-failed"},
    {"identifiers are plain", CatalogRules::plainIdentifiers,
     [](Files &c) { rename(c, "print-job-failed", "print-if-failed"); }, "print-if-failed"},
    {"identifiers are no parameter names", CatalogRules::identifiersAreNoParameterNames,
     [](Files &c) { rename(c, "filesystem-mounted", "mount"); }, "mount"},
    {"events lie in their groups", CatalogRules::eventsLieInTheirGroups,
     [](Files &c) { change(c, "login-failed", "event-group", text("printing")); }, "login-failed"},
    {"names exist in both languages", CatalogRules::namesInBothLanguages,
     [](Files &c) { change(c, "login-failed", "message-params/name_ru", text("Failed login")); },
     "login-failed"},
    {"names are unique", CatalogRules::uniqueNames,
     [](Files &c) { change(c, "print-job-failed", "message-params/name_en", text("failed LOGIN")); },
     "print-job-failed"},
    {"message identifiers are unique", CatalogRules::uniqueMessageIdentifiers,
     [](Files &c) { change(c, "print-job-failed", "message-params/message_id", text("user-login_failed")); },
     "print-job-failed"},
    {"message types are plain", CatalogRules::plainMessageTypes,
     [](Files &c) { change(c, "login-failed", "message-type", text("user-auth")); }, "login-failed"},
    {"links name events", CatalogRules::linksNameEvents,
     [](Files &c) { change(c, "account-locked-out", "message-depends", text("login-failed,no-such-event")); },
     "account-locked-out"},
    {"dependencies have no cycles", CatalogRules::noDependencyCycles,
     [](Files &c) { change(c, "login-failed", "message-depends", text("account-locked-out")); },
     "login-failed"},
    {"dependencies are on by default", CatalogRules::dependenciesAreOnByDefault,
     [](Files &c) { change(c, "login-failed", "enabled", text("0")); }, "account-locked-out"},
    {"conflicts are mutual", CatalogRules::conflictsAreMutual,
     [](Files &c) { change(c, "file-opened", "conflicts-with", QJsonValue::Undefined); },
     "file-opening-audited"},
    {"conflicting events are not both on by default", CatalogRules::conflictsAreOffByDefault,
     [](Files &c) { change(c, "package-any-action", "enabled", text("1")); }, "package-installed"},
    {"audit is off by default", CatalogRules::auditIsOffByDefault,
     [](Files &c) { change(c, "sudoers-changed", "enabled", QJsonValue::Undefined); }, "sudoers-changed"},
    {"audit rules are well formed", CatalogRules::auditRulesAreWellFormed,
     [](Files &c) {
         change(c, "sudoers-changed", "message-audit-rules", text("-w /etc/sudoers -p wa -k sudoers"));
     },
     "sudoers-changed"},
    {"lists of files have their rules", CatalogRules::openedFilesHaveThreeRules,
     [](Files &c) {
         change(c, "file-opened", "message-audit-rules", text("-w /etc/issue -p r -k /etc/issue"));
     },
     "file-opened"},
    {"every path is watched once", CatalogRules::pathsAreWatchedOnce,
     [](Files &c) {
         change(c, "sudoers-changed", "message-audit-rules", text("-w /etc/passwd -p wa -k /etc/passwd"));
     },
     "sudoers-changed"},
    {"audit keys follow the rules", CatalogRules::auditKeysFollowRules,
     [](Files &c) { change(c, "sudoers-changed", "filter-values/.auditd.key", text("/etc/sudoers")); },
     "sudoers-changed"},
    {"audit of subjects is complete", CatalogRules::subjectAuditIsComplete,
     [](Files &c) {
         change(c, "filesystem-mounted", "message-audit-events/mount/other", QJsonValue::Undefined);
     },
     "filesystem-mounted"},
};

int countEvents(const Files &catalog, bool (*has)(const Event &))
{
    return int(std::count_if(catalog.events.begin(), catalog.events.end(), has));
}

template <typename Predicate> bool anyExtended(const Event &event, Predicate predicate)
{
    const QJsonObject parameters = extendedParameters(event);
    return std::any_of(parameters.begin(), parameters.end(), predicate);
}

QString messageId(const Event &event)
{
    return event.description.value(QLatin1String("message-params"))
        .toObject()
        .value(QLatin1String("message_id"))
        .toString();
}

bool has(const Event &event, const char *member)
{
    return event.description.contains(QLatin1String(member));
}

bool namesSubject(const Event &event, QLatin1String kind)
{
    const QJsonObject operations = event.description.value(QLatin1String("message-audit-events")).toObject();
    return std::any_of(operations.begin(), operations.end(), [kind](const QJsonValue &operation) {
        return !operation.toObject().value(kind).toObject().isEmpty();
    });
}

struct Feature
{
    const char *name;
    bool (*has)(const Event &);
};

const Feature features[] = {
    {"on by default",
     [](const Event &e) { return e.description.value(QLatin1String("enabled")) == QLatin1String("1"); }},
    {"off by default",
     [](const Event &e) { return e.description.value(QLatin1String("enabled")) == QLatin1String("0"); }},
    {"without a switch", [](const Event &e) { return !has(e, "enabled"); }},
    {"extended parameter that is on",
     [](const Event &e) {
         return anyExtended(e, [](const QJsonValue &v) {
             return v.toObject().value(QLatin1String("enabled")) == QLatin1String("1");
         });
     }},
    {"extended parameter that is off",
     [](const Event &e) {
         return anyExtended(e, [](const QJsonValue &v) {
             return v.toObject().value(QLatin1String("enabled")) == QLatin1String("0");
         });
     }},
    {"extended parameter without a switch",
     [](const Event &e) { return anyExtended(e, [](const QJsonValue &v) { return v.isString(); }); }},
    {"the time as a parameter",
     [](const Event &e) { return extendedParameters(e).contains(QLatin1String("time")); }},
    {"repetition that is on",
     [](const Event &e) {
         return e.description.value(QLatin1String("notification_repetition"))[QLatin1String("enabled")]
             == QLatin1String("1");
     }},
    {"repetition that is off",
     [](const Event &e) {
         return e.description.value(QLatin1String("notification_repetition"))[QLatin1String("enabled")]
             == QLatin1String("0");
     }},
    {"one dependency",
     [](const Event &e) {
         return listed(e.description.value(QLatin1String("message-depends")).toString()).size() == 1;
     }},
    {"several dependencies",
     [](const Event &e) {
         return listed(e.description.value(QLatin1String("message-depends")).toString()).size() > 1;
     }},
    {"one conflict",
     [](const Event &e) {
         return listed(e.description.value(QLatin1String("conflicts-with")).toString()).size() == 1;
     }},
    {"several conflicts",
     [](const Event &e) {
         return listed(e.description.value(QLatin1String("conflicts-with")).toString()).size() > 1;
     }},
    {"heavy load",
     [](const Event &e) {
         return e.description.value(QLatin1String("generates-load")) == QLatin1String("1");
     }},
    {"not redirected",
     [](const Event &e) {
         return e.description.value(QLatin1String("is-not-redirected")) == QLatin1String("1");
     }},
    {"audit rules", [](const Event &e) { return CatalogRules::auditRules(e).size() == 1; }},
    {"several audit rules", [](const Event &e) { return CatalogRules::auditRules(e).size() > 1; }},
    {"audit of subjects", [](const Event &e) { return has(e, "message-audit-events"); }},
    {"audit of a named user", [](const Event &e) { return namesSubject(e, QLatin1String("users")); }},
    {"directories with limits", [](const Event &e) { return has(e, "directories"); }},
    {"filter with a list",
     [](const Event &e) {
         const QJsonObject filters = e.description.value(QLatin1String("filter-values")).toObject();
         return std::any_of(filters.begin(), filters.end(), [](const QJsonValue &v) { return v.isArray(); });
     }},
    {"sample of an event of one's own",
     [](const Event &e) {
         return e.description.value(QLatin1String("event-group")) == QLatin1String("custom-events");
     }},
    {"message identifier with _ only",
     [](const Event &e) {
         return messageId(e).contains(QLatin1Char('_')) && !messageId(e).contains(QLatin1Char('-'));
     }},
    {"message identifier with - only",
     [](const Event &e) {
         return messageId(e).contains(QLatin1Char('-')) && !messageId(e).contains(QLatin1Char('_'));
     }},
    {"message identifier with _ and -",
     [](const Event &e) {
         return messageId(e).contains(QLatin1Char('_')) && messageId(e).contains(QLatin1Char('-'));
     }},
    {"message identifier with neither",
     [](const Event &e) {
         return !messageId(e).contains(QLatin1Char('_')) && !messageId(e).contains(QLatin1Char('-'));
     }},
};
} // namespace

class ShippedCatalogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theRuleIsKept_data();
    void theRuleIsKept();
    void aBreachIsBlamedOnItsEvent_data();
    void aBreachIsBlamedOnItsEvent();
    void aFileThatDoesNotParseIsNamed();
    void thereAreEnoughEventsInEnoughGroups();
    void severalEventsUseTheFeature_data();
    void severalEventsUseTheFeature();
    void theEventsKnownByNameExist();
    void everyAuditOperationHasItsEvent();
    void aFewEventsOnlyHaveNoSwitch();
    void theGroupOfCustomEventsBearsItsFixedName();
    void groupsAreOrderedByDistinctNumbers();

private:
    CatalogFiles m_catalog;
};

void ShippedCatalogTest::initTestCase()
{
    m_catalog = CatalogFiles::read(QStringLiteral(SHIPPED_DATA "/event-settings"));
    QVERIFY2(m_catalog.problems.isEmpty(), qPrintable(m_catalog.problems.join(QLatin1Char('\n'))));
}

void ShippedCatalogTest::theRuleIsKept_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(rules)); ++i) {
        QTest::newRow(rules[i].name) << i;
    }
}

void ShippedCatalogTest::theRuleIsKept()
{
    QFETCH(int, index);
    const QStringList breaches = rules[index].breaches(m_catalog);
    QVERIFY2(breaches.isEmpty(), qPrintable(breaches.join(QLatin1Char('\n'))));
}

void ShippedCatalogTest::aBreachIsBlamedOnItsEvent_data()
{
    theRuleIsKept_data();
}

void ShippedCatalogTest::aBreachIsBlamedOnItsEvent()
{
    QFETCH(int, index);
    CatalogFiles broken = m_catalog;
    rules[index].breakIt(broken);
    const QStringList breaches = rules[index].breaches(broken);
    const QString culprit = QLatin1String(rules[index].culprit);
    const bool blamed = std::any_of(breaches.begin(), breaches.end(), [&culprit](const QString &line) {
        return line.startsWith(culprit + QLatin1Char(':')) || line.startsWith(culprit + QLatin1Char('/'));
    });
    QVERIFY2(blamed,
             qPrintable(culprit + QLatin1String(" is not among: ") + breaches.join(QLatin1Char('\n'))));
}

void ShippedCatalogTest::aFileThatDoesNotParseIsNamed()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid() && QDir(directory.path()).mkdir(QStringLiteral("samples")));
    QFile file(directory.filePath(QStringLiteral("samples/cut-off.json")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{\"enabled\": \"1\"") > 0);
    file.close();
    const CatalogFiles catalog = CatalogFiles::read(directory.path());
    QCOMPARE(catalog.problems.size(), 1);
    QVERIFY(catalog.problems.first().contains(QLatin1String("cut-off.json")));
}

void ShippedCatalogTest::thereAreEnoughEventsInEnoughGroups()
{
    QVERIFY2(m_catalog.events.size() >= 80, QByteArray::number(m_catalog.events.size()).constData());
    QVERIFY2(m_catalog.groups.size() >= 14, QByteArray::number(m_catalog.groups.size()).constData());
}

void ShippedCatalogTest::severalEventsUseTheFeature_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(features)); ++i) {
        QTest::newRow(features[i].name) << i;
    }
}

void ShippedCatalogTest::severalEventsUseTheFeature()
{
    QFETCH(int, index);
    const int users = countEvents(m_catalog, features[index].has);
    QVERIFY2(users >= 2, qPrintable(QStringLiteral("%1 events").arg(users)));
}

void ShippedCatalogTest::theEventsKnownByNameExist()
{
    for (const char *id : {"file-opened", "modifying-file", "modifying-directory"}) {
        const Event *event = m_catalog.find(QLatin1String(id));
        QVERIFY2(event, id);
        QVERIFY2(has(*event, "message-audit-rules"), id);
    }
}

void ShippedCatalogTest::everyAuditOperationHasItsEvent()
{
    QSet<QString> audited;
    for (const Event &event : std::as_const(m_catalog.events)) {
        const QStringList operations
            = event.description.value(QLatin1String("message-audit-events")).toObject().keys();
        audited.unite(QSet<QString>(operations.begin(), operations.end()));
    }
    const QStringList identifiers = CatalogRules::auditIdentifiers();
    for (const QString &identifier : identifiers) {
        QVERIFY2(audited.contains(identifier), qPrintable(identifier));
    }
}

void ShippedCatalogTest::aFewEventsOnlyHaveNoSwitch()
{
    const int count = countEvents(m_catalog, [](const Event &e) { return !has(e, "enabled"); });
    QVERIFY2(count <= 3, QByteArray::number(count).constData());
}

void ShippedCatalogTest::theGroupOfCustomEventsBearsItsFixedName()
{
    const QJsonValue names
        = m_catalog.groups.value(QStringLiteral("custom-events")).value(QLatin1String("group-params"));
    QCOMPARE(names[QLatin1String("name_en")].toString(), QStringLiteral("Custom events"));
    QCOMPARE(names[QLatin1String("name_ru")].toString(), QStringLiteral("Кастомные события"));
}

void ShippedCatalogTest::groupsAreOrderedByDistinctNumbers()
{
    QSet<int> orders;
    for (auto it = m_catalog.groups.cbegin(); it != m_catalog.groups.cend(); ++it) {
        bool isNumber = false;
        const QJsonValue order = it->value(QLatin1String("group-params"))[QLatin1String("order")];
        const int number = order.toString().toInt(&isNumber);
        QVERIFY2(isNumber && !orders.contains(number), qPrintable(it.key()));
        orders.insert(number);
    }
}

QTEST_GUILESS_MAIN(ShippedCatalogTest)

#include "shippedcatalogtest.moc"
