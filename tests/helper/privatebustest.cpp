// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "privatebus.h"
#include "treesnapshot.h"

#include <KAuth/Action>
#include <KAuth/ExecuteJob>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

namespace {

bool write(const QByteArray &content)
{
    KAuth::Action action(QStringLiteral("org.nivra.kcm.adminevents.writeconfig"));
    action.setHelperId(QStringLiteral("org.nivra.kcm.adminevents"));
    action.setArguments({{QStringLiteral("action"), QStringLiteral("writeConfig")},
                         {QStringLiteral("path"), QStringLiteral("/etc/nivra-syslog.conf")},
                         {QStringLiteral("content"), content}});
    return action.execute()->exec();
}

// The running processes whose command line or environment holds the text, but not this one.
QStringList processesWith(const QByteArray &text)
{
    QStringList found;
    const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &process : processes) {
        const QString directory = QLatin1String("/proc/") + process;
        if (process.toLongLong() > 0 && process.toLongLong() != QCoreApplication::applicationPid()
            && (getFile(directory + QLatin1String("/cmdline")).contains(text)
                || getFile(directory + QLatin1String("/environ")).contains(text))) {
            found << process;
        }
    }
    return found;
}

// Holds a bus with a running helper until it is killed.
int holdBus()
{
    // A job that ends would end the program with it.
    QCoreApplication::setQuitLockEnabled(false);
    PrivateBus bus;
    if (!bus.start() || !bus.setAllowed(true) || !write("{}")) {
        return 1;
    }
    std::printf("%s\n", qPrintable(bus.address()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

class PrivateBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesBeforeTheStart();
    void refusesAnAbsentRoot();
    void endsWithAKilledTestProgram();
    // Last: a process whose bus has gone must not run an event loop any more, see PrivateBus.
    void servesAnAwkwardRootAndLeavesNothingRunning();
};

void PrivateBusTest::refusesBeforeTheStart()
{
    PrivateBus bus;
    QVERIFY(!bus.setAllowed(true));
    QVERIFY(!bus.errorString().isEmpty());
    QCOMPARE(bus.helperPid(), qint64(0));
}

void PrivateBusTest::refusesAnAbsentRoot()
{
    PrivateBus bus(QStringLiteral("/does/not/exist"));
    QVERIFY(!bus.start());
    QVERIFY2(bus.errorString().contains(QLatin1String("/does/not/exist")), qPrintable(bus.errorString()));
}

void PrivateBusTest::servesAnAwkwardRootAndLeavesNothingRunning()
{
    const QTemporaryDir base;
    const QString root = base.filePath(QStringLiteral("it's a \"root\" \\s & <dir> $HOME"));
    QVERIFY(QDir().mkpath(root + QLatin1String("/etc")));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/former");
    QByteArray address;
    {
        PrivateBus bus(root, {}, {{QStringLiteral("ADMINEVENTS_TEST_MARK"), QStringLiteral("seen")}});
        QVERIFY2(bus.start(), qPrintable(bus.errorString()));
        QCOMPARE(bus.root(), root);
        address = bus.address().toLocal8Bit();
        QCOMPARE(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), address);

        QVERIFY(!write("{}"));
        QVERIFY(!QFileInfo::exists(root + QLatin1String("/etc/nivra-syslog.conf")));
        QVERIFY(bus.setAllowed(true));
        QVERIFY(write("{}"));
        QCOMPARE(getFile(root + QLatin1String("/etc/nivra-syslog.conf")), QByteArray("{}"));

        const qint64 helper = bus.helperPid();
        QVERIFY(helper > 0);
        const QByteArray environment = getFile(QStringLiteral("/proc/%1/environ").arg(helper));
        QVERIFY(environment.contains("ADMINEVENTS_TEST_MARK=seen"));
        QVERIFY(environment.contains(address));
        // The bus, the authority and the helper.
        QCOMPARE(processesWith(address).size(), 3);

        PrivateBus second;
        QVERIFY(!second.start());
        QVERIFY(!second.errorString().isEmpty());
    }
    QCOMPARE(processesWith(address), QStringList());
    QCOMPARE(qgetenv("DBUS_SYSTEM_BUS_ADDRESS"), QByteArray("unix:path=/former"));
    const QString directory = QFileInfo(QString::fromLocal8Bit(address.mid(address.indexOf('/')))).path();
    QVERIFY2(!QFileInfo::exists(directory), qPrintable(directory));
}

void PrivateBusTest::endsWithAKilledTestProgram()
{
    QProcess holder;
    holder.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    holder.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--hold")});
    QVERIFY(holder.waitForReadyRead(30000));
    const QByteArray address = holder.readLine().trimmed();
    QVERIFY(address.startsWith("unix:path="));
    const QString directory = QFileInfo(QString::fromLocal8Bit(address.mid(address.indexOf('/')))).path();
    QCOMPARE(processesWith(address).size(), 3);
    holder.kill();
    QVERIFY(holder.waitForFinished());
    // The kernel ends the bus and the authority; the helper ends for want of a bus, at the latest when idle.
    QTRY_COMPARE_WITH_TIMEOUT(processesWith(address), QStringList(), 20000);
    QVERIFY(QDir(directory).removeRecursively());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(QLatin1String("--hold"))) {
        return holdBus();
    }
    PrivateBusTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "privatebustest.moc"
