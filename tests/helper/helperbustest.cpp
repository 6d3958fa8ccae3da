// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "helperrequest.h"
#include "privatebus.h"
#include "standinsystemctl.h"
#include "targetpaths.h"
#include "treesnapshot.h"

#include <KAuth/ActionReply>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDataStream>
#include <QTest>

namespace {

constexpr int sizeLimit = 16 * 1024 * 1024;

QString helperId()
{
    return QStringLiteral("org.nivra.kcm.adminevents");
}

QVariantMap writeArguments(const QVariant &path, const QVariant &content)
{
    return {{QStringLiteral("action"), QStringLiteral("writeConfig")},
            {QStringLiteral("path"), path},
            {QStringLiteral("content"), content}};
}

HelperAnswer request(const char *verb, const QVariantMap &arguments)
{
    return requestHelper(QString::fromLatin1(verb), arguments);
}

} // namespace

/** Writes down in which order things were heard on the bus. */
class EventRecorder : public QObject
{
    Q_OBJECT

public:
    QStringList events;

public Q_SLOTS:
    void record(int type, const QString &, const QByteArray &)
    {
        events << QStringLiteral("signal %1").arg(type);
    }
};

class HelperBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void writesAFile();
    void carriesTheLargestContent();
    void aRefusedAuthorityLeavesEverythingAsItWas_data();
    void aRefusedAuthorityLeavesEverythingAsItWas();
    void eachVerbIsGrantedByItself();
    void refusesUnsoundRequests_data();
    void refusesUnsoundRequests();
    void refusesALinkAsTarget();
    void controlsTheLoggingService_data();
    void controlsTheLoggingService();
    void tellsWhyTheServiceManagerFailed();
    void runsNothingForAnUnsoundCommand_data();
    void runsNothingForAnUnsoundCommand();
    void answersRequestsThatFollowAtOnce();
    void announcesTheEndAfterTheReply();
    void endsByItselfWhenIdle();

private:
    QString below(const QString &path) const { return m_bus->root() + path; }

    StandInSystemctl m_systemctl;
    std::unique_ptr<PrivateBus> m_bus;
};

void HelperBusTest::initTestCase()
{
    QVERIFY(m_systemctl.isReady());
    m_bus = std::make_unique<PrivateBus>(QString(),
                                         QStringList{QStringLiteral("--systemctl"), m_systemctl.program()});
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
}

void HelperBusTest::cleanupTestCase()
{
    m_bus.reset();
}

void HelperBusTest::init()
{
    QVERIFY2(m_bus->setAllowed(true), qPrintable(m_bus->errorString()));
    QVERIFY2(m_bus->setAllowedActions({}), qPrintable(m_bus->errorString()));
    QVERIFY(m_systemctl.behave(""));
}

void HelperBusTest::writesAFile()
{
    const HelperAnswer answer = request("writeconfig", writeArguments(settingsPath(), QByteArray("{ }\n")));
    QVERIFY2(answer.ok, qPrintable(answer.text));
    QCOMPARE(answer.error, 0);
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{ }\n"));
    QCOMPARE(modeOf(below(settingsPath())), 0644);
}

void HelperBusTest::carriesTheLargestContent()
{
    const QString path = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
    const QByteArray content(sizeLimit, '#');
    const HelperAnswer answer = request("writeconfig", writeArguments(path, content));
    QVERIFY2(answer.ok, qPrintable(answer.text));
    QVERIFY(getFile(below(path)) == content);
    const HelperAnswer larger = request("writeconfig", writeArguments(path, QByteArray(sizeLimit + 1, '*')));
    QVERIFY(!larger.ok);
    QVERIFY2(larger.text.contains(QLatin1String("16777216")), qPrintable(larger.text));
    QVERIFY(getFile(below(path)) == content);
}

void HelperBusTest::aRefusedAuthorityLeavesEverythingAsItWas_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QVariantMap>("arguments");
    QTest::newRow("write") << QByteArray("writeconfig")
                           << writeArguments(settingsPath(), QByteArray("{\"refused\": {}}"));
    QTest::newRow("service") << QByteArray("loggingservicectl")
                             << QVariantMap{{QStringLiteral("cmd"), QStringLiteral("stop")}};
}

void HelperBusTest::aRefusedAuthorityLeavesEverythingAsItWas()
{
    QFETCH(QByteArray, verb);
    QFETCH(QVariantMap, arguments);
    QVERIFY(m_bus->setAllowed(false));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer answer = request(verb.constData(), arguments);
    QVERIFY(!answer.ok);
    QCOMPARE(answer.error, int(KAuth::ActionReply::AuthorizationDeniedError));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
    QCOMPARE(m_systemctl.calls(), QStringList());
}

void HelperBusTest::eachVerbIsGrantedByItself()
{
    QVERIFY(m_bus->setAllowed(false));
    QVERIFY(m_bus->setAllowedActions({helperId() + QLatin1String(".loggingservicectl")}));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    QVERIFY(!request("writeconfig", writeArguments(settingsPath(), QByteArray("{\"x\": {}}"))).ok);
    QCOMPARE(takeSnapshot(m_bus->root()), before);
    QVERIFY(request("loggingservicectl", {{QStringLiteral("cmd"), QStringLiteral("stop")}}).ok);
    QCOMPARE(m_systemctl.calls(), QStringList{QStringLiteral("stop syslog-ng")});
}

void HelperBusTest::refusesUnsoundRequests_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const QByteArray content("{\"new\": {}}");
    const QVariantMap sound = writeArguments(settingsPath(), content);
    for (const char *key : {"action", "path", "content"}) {
        QVariantMap lacking = sound;
        lacking.remove(QLatin1String(key));
        QTest::newRow(qPrintable(QLatin1String("without ") + QLatin1String(key)))
            << lacking << QString(QLatin1Char('"') + QLatin1String(key) + QLatin1Char('"'));
    }
    QVariantMap more = sound;
    more.insert(QStringLiteral("mode"), 0777);
    QTest::newRow("unknown argument") << more << QStringLiteral("\"mode\"");
    QTest::newRow("content as string")
        << writeArguments(settingsPath(), QString::fromLatin1(content)) << QStringLiteral("\"content\"");
    QTest::newRow("path as bytes") << writeArguments(settingsPath().toLatin1(), content)
                                   << QStringLiteral("\"path\"");
    QTest::newRow("broken JSON") << writeArguments(settingsPath(), QByteArray("{")) << settingsPath();
    QTest::newRow("zero byte") << writeArguments(settingsPath(), QByteArray("{}\0", 3)) << settingsPath();
    QTest::newRow("audit rules that delete")
        << writeArguments(QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"), QByteArray("-D\n"))
        << QStringLiteral("Line 1");
    for (const char *path : {"/etc/passwd", "etc/nivra-syslog.conf", "/etc/../etc/nivra-syslog.conf",
                             "//etc/nivra-syslog.conf", "../etc/nivra-syslog.conf", ""}) {
        const QString text = QLatin1String(path);
        QTest::newRow(qPrintable(QLatin1String("path ") + text))
            << writeArguments(text, content) << QString(QLatin1Char('"') + text + QLatin1Char('"'));
    }
}

void HelperBusTest::refusesUnsoundRequests()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer answer = request("writeconfig", arguments);
    QVERIFY(!answer.ok);
    QVERIFY(answer.error != 0);
    QVERIFY2(answer.text.contains(named), qPrintable(answer.text));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
}

void HelperBusTest::refusesALinkAsTarget()
{
    const QString path = QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
    QVERIFY(putFile(below(QStringLiteral("/etc/victim")), "precious"));
    QVERIFY(QFile::link(below(QStringLiteral("/etc/victim")), below(path)));
    const TreeSnapshot before = takeSnapshot(m_bus->root());
    const HelperAnswer answer = request("writeconfig", writeArguments(path, QByteArray("new")));
    QVERIFY(!answer.ok);
    QVERIFY2(answer.text.contains(path), qPrintable(answer.text));
    QCOMPARE(takeSnapshot(m_bus->root()), before);
}

void HelperBusTest::controlsTheLoggingService_data()
{
    QTest::addColumn<QString>("cmd");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("start") << QStringLiteral("start")
                           << QStringList{QStringLiteral("status auditd"), QStringLiteral("start syslog-ng"),
                                          QStringLiteral("status syslog-ng")};
    QTest::newRow("stop") << QStringLiteral("stop") << QStringList{QStringLiteral("stop syslog-ng")};
    QTest::newRow("restart") << QStringLiteral("restart")
                             << QStringList{QStringLiteral("restart auditd"),
                                            QStringLiteral("restart syslog-ng"),
                                            QStringLiteral("status syslog-ng")};
}

void HelperBusTest::controlsTheLoggingService()
{
    QFETCH(QString, cmd);
    const HelperAnswer answer = request("loggingservicectl", {{QStringLiteral("cmd"), cmd}});
    QVERIFY2(answer.ok, qPrintable(answer.text));
    QTEST(m_systemctl.calls(), "calls");
}

void HelperBusTest::tellsWhyTheServiceManagerFailed()
{
    QVERIFY(m_systemctl.behave("echo 'Unit syslog-ng.service is masked.' >&2\nexit 1\n"));
    const HelperAnswer answer
        = request("loggingservicectl", {{QStringLiteral("cmd"), QStringLiteral("stop")}});
    QVERIFY(!answer.ok);
    QVERIFY2(answer.text.contains(QLatin1String("stop syslog-ng")), qPrintable(answer.text));
    QVERIFY2(answer.text.contains(QLatin1String("is masked")), qPrintable(answer.text));
}

void HelperBusTest::runsNothingForAnUnsoundCommand_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    const QString cmd = QStringLiteral("cmd");
    QTest::newRow("none") << QVariantMap();
    QTest::newRow("another word") << QVariantMap{{cmd, QStringLiteral("reboot")}};
    QTest::newRow("two words") << QVariantMap{{cmd, QStringLiteral("stop auditd")}};
    QTest::newRow("bytes") << QVariantMap{{cmd, QByteArray("stop")}};
    QTest::newRow("one more argument")
        << QVariantMap{{cmd, QStringLiteral("stop")}, {QStringLiteral("unit"), 1}};
}

void HelperBusTest::runsNothingForAnUnsoundCommand()
{
    QFETCH(QVariantMap, arguments);
    const HelperAnswer answer = request("loggingservicectl", arguments);
    QVERIFY(!answer.ok);
    QVERIFY(!answer.text.isEmpty());
    QCOMPARE(m_systemctl.calls(), QStringList());
}

void HelperBusTest::answersRequestsThatFollowAtOnce()
{
    for (int i = 0; i < 20; ++i) {
        // Running programs gives the framework the most to look at before it is ready again.
        const HelperAnswer service
            = request("loggingservicectl", {{QStringLiteral("cmd"), QStringLiteral("start")}});
        QVERIFY2(service.ok, qPrintable(service.text));
        const QByteArray content = "{\"" + QByteArray::number(i) + "\": {}}";
        const HelperAnswer write = request("writeconfig", writeArguments(settingsPath(), content));
        QVERIFY2(write.ok, qPrintable(write.text));
        QCOMPARE(getFile(below(settingsPath())), content);
    }
}

void HelperBusTest::announcesTheEndAfterTheReply()
{
    QDBusConnection bus = QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("observer"));
    EventRecorder recorder;
    QVERIFY(bus.connect(helperId(), QStringLiteral("/"), QStringLiteral("org.kde.kf5auth"),
                        QStringLiteral("remoteSignal"), &recorder, SLOT(record(int, QString, QByteArray))));
    QByteArray arguments;
    QDataStream stream(&arguments, QIODevice::WriteOnly);
    stream << writeArguments(settingsPath(), QByteArray("{}"));
    QDBusMessage call = QDBusMessage::createMethodCall(
        helperId(), QStringLiteral("/"), QStringLiteral("org.kde.kf5auth"), QStringLiteral("performAction"));
    call << QString(helperId() + QLatin1String(".writeconfig")) << bus.baseService().toUtf8() << QVariantMap()
         << arguments;
    QDBusPendingCallWatcher watcher(bus.asyncCall(call));
    connect(&watcher, &QDBusPendingCallWatcher::finished, &recorder, [&recorder, &watcher] {
        recorder.events << (watcher.isError() ? watcher.error().message() : QStringLiteral("reply"));
    });
    // The framework's own numbers: an action was started, and it was performed.
    const QString performed = QStringLiteral("signal 1");
    QTRY_VERIFY(recorder.events.contains(performed) && recorder.events.size() >= 3);
    QVERIFY2(recorder.events.contains(QLatin1String("reply")),
             qPrintable(recorder.events.join(QLatin1String(", "))));
    QVERIFY2(recorder.events.indexOf(performed) > recorder.events.indexOf(QLatin1String("reply")),
             qPrintable(recorder.events.join(QLatin1String(", "))));
    QDBusConnection::disconnectFromBus(QStringLiteral("observer"));
}

void HelperBusTest::endsByItselfWhenIdle()
{
    QVERIFY(request("writeconfig", writeArguments(settingsPath(), QByteArray("{}"))).ok);
    QVERIFY(m_bus->helperPid() > 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_bus->helperPid(), qint64(0), 20000);
    QVERIFY(request("writeconfig", writeArguments(settingsPath(), QByteArray("{ }"))).ok);
}

QTEST_GUILESS_MAIN(HelperBusTest)

#include "helperbustest.moc"
