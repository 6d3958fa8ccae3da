// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrequests.h"

#include <QTest>

using namespace AdminEventsHelper;

namespace {
const QString typeKey = QStringLiteral("AUDIT_TYPE");
const QString queryTypeKey = QStringLiteral("auditType");
const QString identifiersKey = QStringLiteral("auditIDs");
const QString namesKey = QStringLiteral("list");
} // namespace

class AuditRequestsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAQuery();
    void refusesUnsoundQueries_data();
    void refusesUnsoundQueries();
    void readsAChange_data();
    void readsAChange();
    void refusesUnsoundChanges_data();
    void refusesUnsoundChanges();
};

void AuditRequestsTest::readsAQuery()
{
    const Result<AuditQuery> query
        = AuditQuery::read({{queryTypeKey, 2},
                            {identifiersKey, QStringList{QStringLiteral("open"), QStringLiteral("net")}},
                            {namesKey, QStringList{QStringLiteral("staff")}}});
    QVERIFY2(query.ok(), qPrintable(query.error()));
    QCOMPARE(int(query.value().type), 2);
    QCOMPARE(query.value().identifiers, (QStringList{QStringLiteral("open"), QStringLiteral("net")}));
    QCOMPARE(query.value().names, QStringList(QStringLiteral("staff")));
    QVERIFY(AuditQuery::read({{queryTypeKey, 0},
                              {identifiersKey, QStringList{QStringLiteral("open")}},
                              {namesKey, QStringList()}}));
}

void AuditRequestsTest::refusesUnsoundQueries_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const QVariantMap sound{{queryTypeKey, 1},
                            {identifiersKey, QStringList{QStringLiteral("open")}},
                            {namesKey, QStringList{QStringLiteral("a")}}};
    const auto with = [&sound](const QString &key, const QVariant &value) {
        QVariantMap arguments = sound;
        arguments.insert(key, value);
        return arguments;
    };
    const auto without = [&sound](const QString &key) {
        QVariantMap arguments = sound;
        arguments.remove(key);
        return arguments;
    };
    QTest::newRow("no type") << without(queryTypeKey) << queryTypeKey;
    QTest::newRow("no identifiers") << without(identifiersKey) << identifiersKey;
    QTest::newRow("no names") << without(namesKey) << namesKey;
    QTest::newRow("type as text") << with(queryTypeKey, QStringLiteral("1")) << queryTypeKey;
    QTest::newRow("type too large") << with(queryTypeKey, 3) << QStringLiteral("\"3\"");
    QTest::newRow("negative type") << with(queryTypeKey, -1) << QStringLiteral("\"-1\"");
    QTest::newRow("one identifier as text") << with(identifiersKey, QStringLiteral("open")) << identifiersKey;
    QTest::newRow("unknown identifier")
        << with(identifiersKey, QStringList{QStringLiteral("open"), QStringLiteral("fly")})
        << QStringLiteral("fly");
    QTest::newRow("too long a name") << with(namesKey, QStringList(QString(301, QLatin1Char('a'))))
                                     << namesKey;
    QTest::newRow("names of others") << with(queryTypeKey, 0) << QStringLiteral("others");
    QTest::newRow("more") << with(QStringLiteral("more"), 1) << QStringLiteral("more");
}

void AuditRequestsTest::refusesUnsoundQueries()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const Result<AuditQuery> query = AuditQuery::read(arguments);
    QVERIFY(!query.ok());
    QVERIFY2(query.error().contains(named), qPrintable(query.error()));
}

void AuditRequestsTest::readsAChange_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("name");
    QTest::newRow("user") << QVariantMap{{typeKey, 1}, {QStringLiteral("a b\"/open"), 2}}
                          << QStringLiteral("a b\"");
    QTest::newRow("called like the type")
        << QVariantMap{{typeKey, 2}, {QStringLiteral("AUDIT_TYPE/open"), 2}} << QStringLiteral("AUDIT_TYPE");
    QTest::newRow("all others") << QVariantMap{{typeKey, 0}, {QStringLiteral("open"), 2}} << QString();
}

void AuditRequestsTest::readsAChange()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, name);
    const Result<AuditChange> change = AuditChange::read(arguments);
    QVERIFY2(change.ok(), qPrintable(change.error()));
    QCOMPARE(int(change.value().type), arguments.value(typeKey).toInt());
    QCOMPARE(change.value().values.size(), 1);
    QCOMPARE(change.value().values.value({name, QStringLiteral("open")}), 2);
}

void AuditRequestsTest::refusesUnsoundChanges_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const auto setting = [](const QString &key, const QVariant &value) {
        return QVariantMap{{typeKey, 1}, {key, value}};
    };
    const QString sound = QStringLiteral("alice/open");
    QTest::newRow("no type") << QVariantMap{{sound, 1}} << typeKey;
    QTest::newRow("type as text") << QVariantMap{{typeKey, QStringLiteral("1")}} << typeKey;
    QTest::newRow("unknown type") << QVariantMap{{typeKey, 7}} << QStringLiteral("\"7\"");
    QTest::newRow("four") << setting(sound, 4) << QStringLiteral("\"4\"");
    QTest::newRow("negative") << setting(sound, -1) << QStringLiteral("\"-1\"");
    QTest::newRow("text") << setting(sound, QStringLiteral("1")) << sound;
    QTest::newRow("truth") << setting(sound, true) << sound;
    QTest::newRow("unknown identifier") << setting(QStringLiteral("alice/fly"), 1) << QStringLiteral("fly");
    QTest::newRow("no subject") << setting(QStringLiteral("open"), 1) << QStringLiteral("open");
    QTest::newRow("empty subject") << setting(QStringLiteral("/open"), 1) << QStringLiteral("/open");
    QTest::newRow("two separators") << setting(QStringLiteral("a/b/open"), 1) << QStringLiteral("a/b/open");
    QTest::newRow("subject of others") << QVariantMap{{typeKey, 0}, {sound, 1}} << sound;
    QTest::newRow("very long") << setting(QString(400, QLatin1Char('a')) + QLatin1String("/open"), 1)
                               << QStringLiteral("300");
}

void AuditRequestsTest::refusesUnsoundChanges()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const Result<AuditChange> change = AuditChange::read(arguments);
    QVERIFY(!change.ok());
    QVERIFY2(change.error().contains(named), qPrintable(change.error()));
}

QTEST_GUILESS_MAIN(AuditRequestsTest)

#include "auditrequeststest.moc"
