// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "systempaths.h"
#include "actionids.h"

#include <QDir>
#include <QTest>

class SystemPathsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("ADMINEVENTS_ROOT"); }

    void theRootIsTheSlashUnlessTheEnvironmentNamesAnother()
    {
        QCOMPARE(SystemPaths::root(), QStringLiteral("/"));
        qputenv("ADMINEVENTS_ROOT", "");
        QCOMPARE(SystemPaths::root(), QStringLiteral("/"));
        qputenv("ADMINEVENTS_ROOT", "/tmp/one//two/../three/");
        QCOMPARE(SystemPaths::root(), QStringLiteral("/tmp/one/three"));
    }

    void aRelativeRootIsTakenFromTheWorkingDirectory()
    {
        qputenv("ADMINEVENTS_ROOT", "sandbox");
        QCOMPARE(SystemPaths::root(), QDir::currentPath() + QLatin1String("/sandbox"));
    }

    void everyCallReadsTheRootAgain()
    {
        qputenv("ADMINEVENTS_ROOT", "/tmp/one");
        QCOMPARE(SystemPaths::resolve(QStringLiteral("/etc/x")), QStringLiteral("/tmp/one/etc/x"));
        qputenv("ADMINEVENTS_ROOT", "/tmp/two");
        QCOMPARE(SystemPaths::resolve(QStringLiteral("/etc/x")), QStringLiteral("/tmp/two/etc/x"));
        qunsetenv("ADMINEVENTS_ROOT");
        QCOMPARE(SystemPaths::resolve(QStringLiteral("/etc/x")), QStringLiteral("/etc/x"));
    }

    void resolvingNeverLeavesTheRoot_data()
    {
        QTest::addColumn<QString>("logical");
        QTest::addColumn<QString>("resolved");
        QTest::newRow("plain") << QStringLiteral("/etc/a b") << QStringLiteral("/root/etc/a b");
        QTest::newRow("relative") << QStringLiteral("etc/x") << QStringLiteral("/root/etc/x");
        QTest::newRow("dots") << QStringLiteral("/etc/./a/../x") << QStringLiteral("/root/etc/x");
        QTest::newRow("upwards") << QStringLiteral("/../../etc/x") << QStringLiteral("/root/etc/x");
        QTest::newRow("slashes") << QStringLiteral("//etc//x/") << QStringLiteral("/root/etc/x");
        QTest::newRow("root") << QStringLiteral("/") << QStringLiteral("/root");
        QTest::newRow("nothing") << QString() << QStringLiteral("/root");
        QTest::newRow("dotted name") << QStringLiteral("/etc/..x") << QStringLiteral("/root/etc/..x");
    }
    void resolvingNeverLeavesTheRoot()
    {
        QFETCH(QString, logical);
        QFETCH(QString, resolved);
        qputenv("ADMINEVENTS_ROOT", "/root");
        QCOMPARE(SystemPaths::resolve(logical), resolved);
    }

    void logicalPathsDoNotFollowTheRoot()
    {
        qputenv("ADMINEVENTS_ROOT", "/tmp/one");
        QCOMPARE(SystemPaths::eventSettingsDirectory(),
                 QStringLiteral("/usr/share/syslog-ng-mod-nivra/event-settings"));
        QCOMPARE(SystemPaths::eventSettingsFile(), QStringLiteral("/etc/nivra-syslog.conf"));
        QCOMPARE(SystemPaths::auditRulesFile(), QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"));
        QCOMPARE(SystemPaths::nodeDictionary(),
                 QStringLiteral("/etc/zep-admin-events/eventsdictionary.json"));
        QCOMPARE(SystemPaths::exampleData(), QStringLiteral("/etc/zep-admin-events/eventexample.json"));
        QCOMPARE(SystemPaths::mainConfiguration(), QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"));
        QCOMPARE(SystemPaths::fragmentDirectory(), QStringLiteral("/etc/syslog-ng/conf.d"));
        QCOMPARE(SystemPaths::rotationFile(), QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"));
        QCOMPARE(SystemPaths::eventLogDirectory(), QStringLiteral("/vortan/log/nivra/events"));
        QCOMPARE(SystemPaths::eventLogFile(), QStringLiteral("/vortan/log/nivra/events/events.log"));
        QCOMPARE(SystemPaths::rebootHelper(), QStringLiteral("/usr/bin/zep-wmfunc"));
    }

    void actionIdentifiersBeginWithTheHelpersName()
    {
        QCOMPARE(ActionIds::helper(), QStringLiteral("org.nivra.kcm.adminevents"));
        QCOMPARE(ActionIds::action(ActionIds::writeConfig),
                 QStringLiteral("org.nivra.kcm.adminevents.writeconfig"));
        QCOMPARE(ActionIds::action(ActionIds::loggingServiceControl),
                 QStringLiteral("org.nivra.kcm.adminevents.loggingservicectl"));
    }
};

QTEST_GUILESS_MAIN(SystemPathsTest)

#include "systempathstest.moc"
