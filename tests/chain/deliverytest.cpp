// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "loggingsandbox.h"
#include "notificationserver.h"

#include <commonwriter.h>
#include <leashedprocess.h>
#include <notificationfragment.h>
#include <treeitem.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTest>

#include <memory>

namespace {

const char watcherPrefix[] = "org.nivra.EventWatcher.";

/** A fragment as the page writes it for an identifier of letters. */
QByteArray fragment(const QByteArray &id, const QByteArray &user, const QByteArray &group,
                    const QByteArray &params = "user,terminal", const QByteArray &format = "{0} {1}")
{
    return "filter nivra_" + id + "_filter {\n    match(\"^" + id
        + "$\" value(\"MSG.nivra-auth.message_id\"));\n};\ndestination nivra_" + id
        + "_dbus_dst {\n    python(\n"
          "\tclass(\"syslog_ng_mod_nivra.nivra_syslog_ng_destination.NivraSyslogNgDestination\")\n"
          "\toptions(\"destination_type\", \"dbus\"\n"
          "\t\t\"message_type\", \"auth\"\n"
          "\t\t\"event_user\", \""
        + user + "\"\n\t\t\"event_group\", \"" + group + "\"\n\t\t\"event_id\", \"" + id
        + "\"\n\t\t\"event_title\", \"The \\\"title\\\" of " + id
        + "\"\n\t\t\"event_icon\", \"\"\n\t\t\"event_params\", \"" + params + "\"\n\t\t\"event_format\", \""
        + format + "\")\n\tpersist-name(\"" + id
        + "\")\n\t);\n};\nlog {\n    source(nivra_events_src);\n    parser(nivra_events_parser);\n    "
          "filter(nivra_"
        + id + "_filter);\n    destination(nivra_" + id + "_dbus_dst);\n};\n";
}

QByteArray record(const QByteArray &id, const QByteArray &user, const QByteArray &more = QByteArray())
{
    return "{\"PRIORITY\":\"notice\",\"MSG\":{\"nivra-auth\":{\"name_en\":\"Failed login\",\"user\":\"" + user
        + "\",\"terminal\":\"pts/0\"," + more + "\"message_id\":\"" + id
        + "\"}},\"ISODATE\":\"2026-03-14T09:26:53+03:00\",\"HOST\":\"debian\",\"FACILITY\":\"user\"}";
}

/** What the page says to the session once it has saved the settings of the sample events. */
QDBusMessage settingsHaveChanged()
{
    QDBusMessage signal
        = QDBusMessage::createSignal(QStringLiteral("/Config"), QStringLiteral("org.kde.knotification"),
                                     QStringLiteral("reparseConfiguration"));
    signal << QStringLiteral("nivra-event-watcher_samples");
    return signal;
}

} // namespace

/** From a record to the session: a real syslog-ng, the python destination, the watcher and a notification
 * service. */
class DeliveryTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LoggingSandbox> m_sandbox;
    std::unique_ptr<NotificationServer> m_server;
    std::unique_ptr<LeashedProcess> m_bus;
    std::unique_ptr<LeashedProcess> m_watcher;
    QString m_address;

    QDBusConnection bus() const { return QDBusConnection(QStringLiteral("delivery")); }
    QString below(const char *path) const { return m_sandbox->below(QLatin1String(path)); }
    bool put(const char *path, const QByteArray &text) const
    {
        return m_sandbox->write(QLatin1String(path), text);
    }
    bool startBus();
    bool startWatcher();
    bool putFragment(const QByteArray &id, const QByteArray &user, const QByteArray &group)
    {
        return m_sandbox->write(QLatin1String("etc/syslog-ng/conf.d/mod-nivra-") + QLatin1String(id)
                                    + QLatin1String(".conf"),
                                fragment(id, user, group));
    }
    /** Sends a record of an event for everybody, waits for its popup and takes it away: what was sent before
     * has come. */
    bool settle();

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void theFragmentIsThatOfThePage();
    void exactlyTheMatchingRecordIsShown();
    void hostileValuesStayData();
    void onlyAdministratorsAreTold_data();
    void onlyAdministratorsAreTold();
    void theUserWhomTheRecordNamesIsTold();
    void theMessageIsRepeatedUntilTheUserSaysStop();
    void theRepetitionEndsWhenItIsSwitchedOff();
    void whatIsSwitchedOffIsTakenDownLongBeforeItWouldBeRepeated_data();
    void whatIsSwitchedOffIsTakenDownLongBeforeItWouldBeRepeated();
    void settingsAreReadAgainWhenTheyAreSaidToHaveChanged();
    void theServiceWaitsForTheBus();
    void theServiceOutlivesTheBus();
    void aReloadChangesNothing();
    void onlyTheLoggingServiceIsBelieved();
};

bool DeliveryTest::startBus()
{
    m_bus = std::make_unique<LeashedProcess>();
    m_bus->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_bus->start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                  QStringLiteral("--print-address=1"), QLatin1String("--address=") + m_address});
    if (!m_bus->waitForStarted() || !m_bus->waitForReadyRead(15000)) {
        return false;
    }
    QDBusConnection connection = QDBusConnection::connectToBus(m_address, QStringLiteral("delivery"));
    return connection.registerService(QStringLiteral("org.freedesktop.Notifications"))
        && connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"), m_server.get(),
                                     QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
}

bool DeliveryTest::startWatcher()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), m_address);
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
    environment.insert(QStringLiteral("ADMINEVENTS_ROOT"), m_sandbox->below(QString()));
    environment.insert(QStringLiteral("HOME"), below("home"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), below("home/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), below("home/.local/share"));
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), below("usr/share"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), below("runtime"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("CANBERRA_DRIVER"), QStringLiteral("null"));
    m_watcher = std::make_unique<LeashedProcess>();
    m_watcher->setProcessEnvironment(environment);
    m_watcher->setProcessChannelMode(QProcess::ForwardedChannels);
    m_watcher->start(QStringLiteral(WATCHER), QStringList());
    if (!m_watcher->waitForStarted()) {
        return false;
    }
    return QTest::qWaitFor(
        [this] {
            const QStringList names = bus().interface()->registeredServiceNames();
            return !names.filter(QLatin1String(watcherPrefix)).isEmpty();
        },
        15000);
}

bool DeliveryTest::settle()
{
    const auto takeLast = [this] {
        for (int i = 0; i < m_server->shown.size(); ++i) {
            if (m_server->shown.at(i).text == QLatin1String("last pts/0")) {
                m_server->shown.removeAt(i);
                return true;
            }
        }
        return false;
    };
    if (!m_sandbox->send(record("last", "last")) || !QTest::qWaitFor(takeLast, 15000)) {
        return false;
    }
    // Each event has a thread of its own in the service.
    QTest::qWait(500);
    return true;
}

void DeliveryTest::initTestCase()
{
    if (!LoggingSandbox::hasPython()) {
        QSKIP("needs syslog-ng with its python module");
    }
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral("-I"), QStringLiteral("-c"), QStringLiteral("import dbus")});
    if (!python.waitForFinished() || python.exitCode() != 0) {
        QSKIP("needs python3-dbus");
    }
}

void DeliveryTest::init()
{
    m_sandbox = std::make_unique<LoggingSandbox>();
    m_server = std::make_unique<NotificationServer>();
    m_address = QLatin1String("unix:path=") + below("bus");
    QVERIFY(put("run/dbus-address", m_address.toUtf8()));
    QVERIFY(QDir().mkpath(below("usr/lib/python3")));
    QVERIFY(QFile::link(QStringLiteral(DESTINATION), below("usr/lib/python3/dist-packages")));
    QVERIFY(QDir().mkpath(below("usr/share/knotifications5")));
    QVERIFY(QFile::copy(QStringLiteral(WATCHER_SOURCE "/nivra-event-watcher.notifyrc"),
                        below("usr/share/knotifications5/nivra-event-watcher.notifyrc")));
    QVERIFY(put("usr/share/knotifications5/nivra-event-watcher_samples.notifyrc",
                "[Event/first]\nName=First\nAction=Popup\n\n[Event/second]\nName=Second\nAction=Popup\n\n"
                "[Event/last]\nName=Last\nAction=Popup\n"));
    QVERIFY(put(
        "usr/share/syslog-ng-mod-nivra/event-settings/samples/first.json",
        "{\"event-group\": \"samples\", \"enabled\": \"1\", \"message-type\": \"auth\", \"message-params\": "
        "{\"message_id\": \"first\"}, \"notification_repetition\": {\"enabled\": \"0\", \"interval\": "
        "\"3000\"}}"));
    QVERIFY(
        put("usr/share/syslog-ng-mod-nivra/event-settings/samples.json",
            "{\"group-params\": {\"name_en\": \"Samples\", \"name_ru\": \"Samples\", \"order\": \"1\"}}"));
    QVERIFY(putFragment("first", "@all", "@all"));
    QVERIFY(putFragment("last", "@all", "@all"));
    QVERIFY(QDir().mkpath(below("home/.config")));
    QVERIFY(QDir().mkpath(below("runtime")));
    QVERIFY(QFile::setPermissions(below("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(startBus());
}

void DeliveryTest::cleanup()
{
    m_watcher.reset();
    m_sandbox->stop();
    QDBusConnection::disconnectFromBus(QStringLiteral("delivery"));
    m_bus.reset();
    m_server.reset();
    m_sandbox.reset();
}

void DeliveryTest::theFragmentIsThatOfThePage()
{
    NotificationFragment written;
    written.messageId = QStringLiteral("first");
    written.messageType = QStringLiteral("auth");
    written.title = QStringLiteral("The \"title\" of first");
    written.parameters = QStringList{QStringLiteral("user"), QStringLiteral("terminal")};
    written.recipients = NotificationFragment::Administrators;
    QCOMPARE(CommonWriter::statements(*written.tree()).join(QString()).toUtf8(),
             fragment("first", "@all", "nivra-admin"));
    written.recipients = NotificationFragment::UserAndGroup;
    QCOMPARE(CommonWriter::statements(*written.tree()).join(QString()).toUtf8(), fragment("first", "", ""));
    written.recipients = NotificationFragment::AllUsers;
    QCOMPARE(CommonWriter::statements(*written.tree()).join(QString()).toUtf8(),
             fragment("first", "@all", "@all"));
}

void DeliveryTest::exactlyTheMatchingRecordIsShown()
{
    QVERIFY(put("home/.config/nivra-event-watcher_samples.notifyrc",
                "[Event/first]\nAction=Popup|Logfile|Execute\nExecute=" + QFile::encodeName(below("command"))
                    + " 'one word'\nLogfile=file://" + QFile::encodeName(below("log file%20"))
                    + "\nSound=\nTTS=\n"));
    QVERIFY(put("command",
                "#!/bin/sh\nprintf '%s|%s|%s|%s\\n' \"$#\" \"$1\" \"$NIVRA_EVENT_TITLE\" "
                "\"$NIVRA_EVENT_VALUE_user\" >>\"${0%/*}/output\"\n"));
    QFile::setPermissions(below("command"), QFile::ReadOwner | QFile::ExeOwner);
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("firstborn", "other")));
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QVERIFY(m_sandbox->send(record("second", "other")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), 1);
    QCOMPARE(m_server->shown.first().title, QStringLiteral("The \"title\" of first"));
    QCOMPARE(m_server->shown.first().text, QStringLiteral("ivanov pts/0"));
    const QString line = QString::fromUtf8(m_sandbox->contents(QStringLiteral("log file%20")));
    QCOMPARE(line.section(QLatin1Char(' '), 1), QStringLiteral("The \"title\" of first: ivanov pts/0\n"));
    QTRY_COMPARE(m_sandbox->contents(QStringLiteral("output")),
                 QByteArray("1|one word|The \"title\" of first|ivanov\n"));
}

void DeliveryTest::hostileValuesStayData()
{
    const QByteArray path = QFile::encodeName(below("created"));
    QVERIFY(
        put("home/.config/nivra-event-watcher_samples.notifyrc",
            "[Event/first]\nAction=Popup|Logfile|Execute\nExecute=sh -c 'printf %s \"$NIVRA_EVENT_TEXT\" >"
                + QFile::encodeName(below("output")) + "'\nLogfile=file://" + QFile::encodeName(below("log"))
                + "\n"));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    const QByteArray hostile
        = "$(touch " + path + ")`touch " + path + "`';touch " + path + ";' <b>{1}</b> & ";
    QVERIFY(m_sandbox->send(
        record("first", hostile + "\\\"; touch " + path + "\\n2026-01-01T00:00:00 forged: line")));
    QVERIFY(settle());
    const QString expected = QString::fromUtf8(hostile) + QLatin1String("\"; touch ") + below("created")
        + QLatin1String("\n2026-01-01T00:00:00 forged: line pts/0");
    QTRY_COMPARE(m_server->shown.size(), 1);
    QCOMPARE(m_server->shown.first().text, expected.toHtmlEscaped());
    QTRY_COMPARE(QString::fromUtf8(m_sandbox->contents(QStringLiteral("output"))), expected);
    const QByteArray log = m_sandbox->contents(QStringLiteral("log"));
    QCOMPARE(log.count('\n'), 1);
    QVERIFY(log.endsWith("\\n2026-01-01T00:00:00 forged: line pts/0\n"));
    QVERIFY(!QFile::exists(below("created")));
}

void DeliveryTest::onlyAdministratorsAreTold_data()
{
    QTest::addColumn<bool>("isAdministrator");
    QTest::newRow("administrator") << true;
    QTest::newRow("another user") << false;
}

void DeliveryTest::onlyAdministratorsAreTold()
{
    QFETCH(bool, isAdministrator);
    if (!m_sandbox->stageUsers(isAdministrator)) {
        QSKIP("needs libnss-wrapper");
    }
    QVERIFY(putFragment("first", "@all", "nivra-admin"));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), isAdministrator ? 1 : 0);
}

void DeliveryTest::theUserWhomTheRecordNamesIsTold()
{
    if (!m_sandbox->stageUsers(false)) {
        QSKIP("needs libnss-wrapper");
    }
    QVERIFY(putFragment("first", "", ""));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("first", "other")));
    QVERIFY(m_sandbox->send(record("first", "nobody-known", "\"group_name\":\"nivra-admin\",")));
    QVERIFY(m_sandbox->send(record("first", "tester")));
    QVERIFY(m_sandbox->send(record("first", "other", "\"group_name\":\"testers\",")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), 2);
    QCOMPARE(m_server->shown.at(0).text, QStringLiteral("tester pts/0"));
    QCOMPARE(m_server->shown.at(1).text, QStringLiteral("other pts/0"));
}

void DeliveryTest::theMessageIsRepeatedUntilTheUserSaysStop()
{
    QVERIFY(put("etc/nivra-syslog.conf",
                "{\"first\": {\"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"5\"}}}"));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 3, 25000);
    for (int i = 1; i < 3; ++i) {
        const qint64 distance = m_server->shown.at(i).time - m_server->shown.at(i - 1).time;
        QVERIFY2(distance > 4500 && distance < 9000, QByteArray::number(distance).constData());
        QCOMPARE(m_server->shown.at(i).text, QStringLiteral("ivanov pts/0"));
    }
    const NotificationServer::Shown last = m_server->shown.constLast();
    QCOMPARE(last.actions.value(1), QStringLiteral("Stop Repeating"));
    m_server->invoke(last.id, last.actions.value(0));
    QTest::qWait(6500);
    QCOMPARE(m_server->shown.size(), 3);
}

void DeliveryTest::theRepetitionEndsWhenItIsSwitchedOff()
{
    const auto put = [this](const QByteArray &enabled) {
        return this->put("etc/nivra-syslog.conf",
                         "{\"first\": {\"notification_repetition\": {\"enabled\": \"" + enabled
                             + "\", \"interval\": \"5\"}}}");
    };
    QVERIFY(put("1"));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, 15000);
    QVERIFY(put("0"));
    QTest::qWait(6500);
    QCOMPARE(m_server->shown.size(), 1);
}

void DeliveryTest::whatIsSwitchedOffIsTakenDownLongBeforeItWouldBeRepeated_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"repetition", "notification", "popup"}) {
        QTest::newRow(what) << QString::fromLatin1(what);
    }
}

void DeliveryTest::whatIsSwitchedOffIsTakenDownLongBeforeItWouldBeRepeated()
{
    QFETCH(QString, what);
    const char *const settings = "etc/nivra-syslog.conf";
    const QByteArray repetition = "{\"first\": {\"notification_repetition\": {\"enabled\": \"";
    QVERIFY(put(settings, repetition + "1\", \"interval\": \"3600\"}}}"));
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, 15000);
    // One look at the settings finds nothing to take down.
    QTest::qWait(6500);
    QCOMPARE(m_server->closed, QList<uint>());
    if (what == QLatin1String("repetition")) {
        QVERIFY(put(settings, repetition + "0\"}}}"));
    } else if (what == QLatin1String("notification")) {
        QVERIFY(QFile::remove(below("etc/syslog-ng/conf.d/mod-nivra-first.conf")));
    } else {
        QVERIFY(put("home/.config/nivra-event-watcher_samples.notifyrc", "[Event/first]\nAction=\n"));
        QVERIFY(bus().send(settingsHaveChanged()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_server->closed, QList<uint>{m_server->shown.constFirst().id}, 15000);
    QCOMPARE(m_server->shown.size(), 1);
}

void DeliveryTest::settingsAreReadAgainWhenTheyAreSaidToHaveChanged()
{
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(put("home/.config/nivra-event-watcher_samples.notifyrc", "[Event/first]\nAction=\n"));
    QVERIFY(m_sandbox->send(record("first", "before")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), 1);
    QVERIFY(bus().send(settingsHaveChanged()));
    // The signal and the records come by different ways; few enough not to be held back as a flood.
    bool isSilent = false;
    for (int i = 0; i < 4 && !isSilent; ++i) {
        m_server->shown.clear();
        QVERIFY(m_sandbox->send(record("first", "after")));
        QVERIFY(settle());
        isSilent = m_server->shown.isEmpty();
    }
    QVERIFY(isSilent);
}

void DeliveryTest::theServiceWaitsForTheBus()
{
    QDBusConnection::disconnectFromBus(QStringLiteral("delivery"));
    m_bus.reset();
    m_sandbox->setOption("time-reopen(1)");
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(m_sandbox->send(record("first", "early")));
    QVERIFY(startBus());
    QVERIFY(startWatcher());
    QVERIFY(m_sandbox->isRunning());
    QTest::qWait(1500);
    QVERIFY(settle());
}

void DeliveryTest::theServiceOutlivesTheBus()
{
    m_sandbox->setOption("time-reopen(1)");
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(settle());
    m_watcher.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("delivery"));
    m_bus.reset();
    m_server->shown.clear();
    QVERIFY(m_sandbox->send(record("first", "unheard")));
    QTest::qWait(1500);
    QVERIFY(m_sandbox->isRunning());
    QVERIFY(startBus());
    QVERIFY(startWatcher());
    QTest::qWait(1500);
    QVERIFY(settle());
    QVERIFY(m_sandbox->isRunning());
}

void DeliveryTest::aReloadChangesNothing()
{
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(settle());
    // As after a rotation of the log.
    QVERIFY(m_sandbox->reload());
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), 1);
    QVERIFY(m_sandbox->isRunning());
}

void DeliveryTest::onlyTheLoggingServiceIsBelieved()
{
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(startWatcher());
    QVERIFY(settle());
    const QString watcher = bus()
                                .interface()
                                ->registeredServiceNames()
                                .value()
                                .filter(QLatin1String(watcherPrefix))
                                .constFirst();
    QDBusMessage forged
        = QDBusMessage::createTargetedSignal(watcher, QStringLiteral("/org/nivra/EventLog"),
                                             QStringLiteral("org.nivra.EventLog"), QStringLiteral("Event"));
    forged << QStringLiteral("first") << QStringLiteral("Forged") << QString() << QStringLiteral("{0}")
           << QStringList{QStringLiteral("user")} << QStringList{QStringLiteral("forged")};
    QVERIFY(bus().send(forged));
    QVERIFY(m_sandbox->send(record("first", "ivanov")));
    QVERIFY(settle());
    QTRY_COMPARE(m_server->shown.size(), 1);
    QCOMPARE(m_server->shown.first().text, QStringLiteral("ivanov pts/0"));
}

QTEST_GUILESS_MAIN(DeliveryTest)
#include "deliverytest.moc"
