// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "helperrequest.h"
#include "privatebus.h"
#include "samplefragment.h"
#include "treesnapshot.h"

#include <KAuth/ActionReply>
#include <QTest>

namespace {

QString path(const char *id)
{
    return QLatin1String("/etc/syslog-ng/conf.d/mod-nivra-") + QLatin1String(id) + QLatin1String(".conf");
}

QVariantMap notifications(const QVariantMap &fragments)
{
    return {{QStringLiteral("notifications"), fragments}};
}

QVariantMap paths(const QStringList &list)
{
    return {{QStringLiteral("paths"), list}};
}

QString text(const QByteArray &content)
{
    return QString::fromUtf8(content);
}

HelperAnswer request(const QByteArray &verb, const QVariantMap &arguments)
{
    return requestHelper(QString::fromLatin1(verb), arguments);
}

} // namespace

/** The two notification requests, from the caller through the framework to the files. */
class NotificationVerbsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_bus.reset(); }
    void init();

    void writesAndRemovesFragments();
    void aRefusedAuthorityLeavesEverythingAsItWas_data();
    void aRefusedAuthorityLeavesEverythingAsItWas();
    void refusesUnsoundRequests_data();
    void refusesUnsoundRequests();

private:
    QString below(const QString &file) const { return m_bus->root() + file; }

    std::unique_ptr<PrivateBus> m_bus;
};

void NotificationVerbsTest::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
}

void NotificationVerbsTest::init()
{
    QVERIFY2(m_bus->setAllowed(true), qPrintable(m_bus->errorString()));
    const QString folder = below(QStringLiteral("/etc/syslog-ng/conf.d"));
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::System);
    for (const QString &name : names) {
        QVERIFY(QFile::remove(folder + QLatin1Char('/') + name));
    }
    QVERIFY(putFile(below(path("present")), sampleFragmentOf("present")));
    QVERIFY(putFile(below(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf")), "main"));
}

void NotificationVerbsTest::writesAndRemovesFragments()
{
    const QByteArray russian = sampleFragment("Неудачный вход");
    const HelperAnswer written = request(
        "writenotificationconfigs",
        notifications({{path("a_b_c"), text(russian)}, {path("other"), text(sampleFragmentOf("other"))}}));
    QVERIFY2(written.ok, qPrintable(written.text));
    QCOMPARE(getFile(below(path("a_b_c"))), russian);
    QCOMPARE(getFile(below(path("other"))), sampleFragmentOf("other"));
    QCOMPARE(getFile(below(path("present"))), sampleFragmentOf("present"));
    const HelperAnswer removed = request("removenotificationconfigs", paths({path("a_b_c"), path("absent")}));
    QVERIFY2(removed.ok, qPrintable(removed.text));
    QVERIFY(!QFileInfo::exists(below(path("a_b_c"))));
    QVERIFY(QFileInfo::exists(below(path("other"))));
}

void NotificationVerbsTest::aRefusedAuthorityLeavesEverythingAsItWas_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QVariantMap>("arguments");
    QTest::newRow("write") << QByteArray("writenotificationconfigs")
                           << notifications({{path("a_b_c"), text(sampleFragment())}});
    QTest::newRow("remove") << QByteArray("removenotificationconfigs") << paths({path("present")});
}

void NotificationVerbsTest::aRefusedAuthorityLeavesEverythingAsItWas()
{
    QFETCH(QByteArray, verb);
    QFETCH(QVariantMap, arguments);
    QVERIFY(m_bus->setAllowed(false));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer answer = request(verb, arguments);
    QVERIFY(!answer.ok);
    QCOMPARE(answer.error, int(KAuth::ActionReply::AuthorizationDeniedError));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
}

void NotificationVerbsTest::refusesUnsoundRequests_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const QByteArray write = "writenotificationconfigs";
    const QString sample = text(sampleFragment());
    const QVariantMap sound{{path("a_b_c"), sample}};
    const auto both = [&sound](const QString &file, const QVariant &value) {
        QVariantMap fragments = sound;
        fragments.insert(file, value);
        return notifications(fragments);
    };
    const QString key = QStringLiteral("\"notifications\"");
    QTest::newRow("no argument") << write << QVariantMap() << key;
    QTest::newRow("list for map") << write
                                  << QVariantMap{{QStringLiteral("notifications"), QStringList{sample}}}
                                  << key;
    QVariantMap more = notifications(sound);
    more.insert(QStringLiteral("mode"), 0777);
    QTest::newRow("unknown argument") << write << more << QStringLiteral("\"mode\"");
    QTest::newRow("nothing to write") << write << notifications({}) << QStringLiteral("no notification");
    QTest::newRow("bytes for text") << write << both(path("other"), sampleFragmentOf("other"))
                                    << path("other");
    QTest::newRow("zero character") << write << both(path("other"), QString(QChar(0))) << key;
    QTest::newRow("oversized text") << write << both(path("other"), QString(70000, QLatin1Char('x'))) << key;
    QTest::newRow("main configuration")
        << write << both(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"), sample)
        << QStringLiteral("\"/etc/syslog-ng/conf.d/mod-nivra.conf\"");
    QTest::newRow("path elsewhere") << write << both(QStringLiteral("/etc/cron.d/x"), sample)
                                    << QStringLiteral("\"/etc/cron.d/x\"");
    QTest::newRow("path with dots") << write
                                    << both(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-../x.conf"),
                                            sample)
                                    << QStringLiteral("mod-nivra-../x.conf");
    QTest::newRow("fragment of another event")
        << write << both(path("other"), sample) << QStringLiteral("mod-nivra-other.conf");
    QTest::newRow("another statement")
        << write
        << both(path("other"), QString(text(sampleFragmentOf("other")) + QLatin1String("log { };\n")))
        << QStringLiteral("mod-nivra-other.conf");
    QTest::newRow("title that runs on")
        << write
        << both(path("a_b_c"),
                text(sampleFragment("\")) persist-name(\"x\") class(\"os.system\") options((\"")))
        << QStringLiteral("mod-nivra-a_b_c.conf");

    const QByteArray remove = "removenotificationconfigs";
    const QString present = path("present");
    QTest::newRow("remove without argument") << remove << QVariantMap() << QStringLiteral("\"paths\"");
    QTest::newRow("remove one string")
        << remove << QVariantMap{{QStringLiteral("paths"), present}} << QStringLiteral("\"paths\"");
    QTest::newRow("remove nothing") << remove << paths({}) << QStringLiteral("no notification");
    QTest::newRow("remove the main configuration")
        << remove << paths({present, QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf")})
        << QStringLiteral("mod-nivra.conf");
    QTest::newRow("remove another file")
        << remove << paths({present, QStringLiteral("/etc/passwd")}) << QStringLiteral("/etc/passwd");
    QTest::newRow("remove by dots")
        << remove << paths({present, QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-x/../mod-nivra.conf")})
        << QStringLiteral("..");
    QTest::newRow("remove with more")
        << remove
        << QVariantMap{{QStringLiteral("paths"), QStringList{present}}, {QStringLiteral("force"), true}}
        << QStringLiteral("\"force\"");
}

void NotificationVerbsTest::refusesUnsoundRequests()
{
    QFETCH(QByteArray, verb);
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer answer = request(verb, arguments);
    QVERIFY(!answer.ok);
    QVERIFY2(answer.text.contains(named), qPrintable(answer.text));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
}

QTEST_GUILESS_MAIN(NotificationVerbsTest)

#include "notificationverbstest.moc"
