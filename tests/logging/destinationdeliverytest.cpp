// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "dialoganswerer.h"
#include "loggingsandbox.h"
#include "loopbacklistener.h"

#include <configaccessservice.h>
#include <destinationnames.h>
#include <destinationsmodel.h>
#include <destinationssettings.h>
#include <destinationtext.h>
#include <maintree.h>
#include <privatebus.h>
#include <treeitem.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace {
const QByteArray
    record("{\"PRIORITY\":\"notice\",\"MSG\":{\"nivra-auth\":{\"name_en\":\"Failed login\","
           "\"user\":\"ivanov\",\"message_id\":\"user_login-failed\"}},"
           "\"ISODATE\":\"2026-03-14T09:26:53+03:00\",\"HOST\":\"debian\",\"FACILITY\":\"user\"}");

QVector<QVariant> fileDestination(const QString &name, const QString &path)
{
    return {QStringLiteral("file"), name, path, 514, QStringLiteral("tcp")};
}

/// What syslog-ng, run by an ordinary user, has to say against a configuration; empty when it takes it.
QByteArray daemonComplaints(const QByteArray &configuration)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("syslog-ng.conf")));
    if (!file.open(QIODevice::WriteOnly)) {
        return "not written";
    }
    file.write("@version: 3.38\n" + configuration);
    file.close();
    QFile::setPermissions(directory.path(), QFile::Permissions(0x7555));
    file.setPermissions(QFile::Permissions(0x6444));
    QString program = QStringLiteral("syslog-ng");
    QStringList arguments{QStringLiteral("--no-caps"), QStringLiteral("--syntax-only"),
                          QStringLiteral("--cfgfile=") + file.fileName()};
    if (::geteuid() == 0) {
        arguments = QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                                QStringLiteral("--clear-groups"), program}
            + arguments;
        program = QStringLiteral("setpriv");
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(30000);
    const QByteArray output = process.readAll();
    return ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
        ? QByteArray()
        : "refused: " + output;
}
} // namespace

/// What the page saves, in the hands of the real daemon.
class DestinationDeliveryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void namesThatTheDialogTakesAreTakenByTheDaemon();
    void pathsThatTheDialogTakesAreTakenByTheDaemon();
    void daemonRefusesWhatItShould();
    void recordsReachAddedDestinations();

private:
    std::unique_ptr<LoggingSandbox> m_sandbox;
    std::unique_ptr<PrivateBus> m_bus;
};

void DestinationDeliveryTest::initTestCase()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    m_sandbox = std::make_unique<LoggingSandbox>();
    const QString root = QDir::cleanPath(m_sandbox->below(QString()));
    m_bus = std::make_unique<PrivateBus>(root);
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
    QVERIFY(m_bus->setAllowed(true));
    qputenv("ADMINEVENTS_ROOT", root.toUtf8());
}

void DestinationDeliveryTest::namesThatTheDialogTakesAreTakenByTheDaemon()
{
    const auto root = MainTree::read("source nivra_events_src {\n    internal();\n};\n");
    int taken = 0;
    for (const char *name :
         {"and",        "or",     "not",      "file",    "network", "tcp",       "udp",     "level",
          "facility",   "d1",     "a_b",      "Log",     "IF",      "iffy",      "logs",    "final",
          "flags",      "source", "template", "block",   "owner",   "type",      "value",   "set",
          "subst",      "match",  "program",  "host",    "port",    "transport", "port_",   "python",
          "unix_dgram", "syslog", "tags",     "true",    "null",    "default",   "version", "include",
          "define",     "module", "rewrite",  "options", "parser",  "priority",  "severity"}) {
        const QString text = QString::fromUtf8(name);
        if (DestinationNames::isValid(text)) {
            root->appendChildDestination(
                DestinationText::makeBlock(fileDestination(text, QStringLiteral("/tmp/x")), root.get()));
            ++taken;
        }
    }
    QVERIFY(taken > 25);
    QCOMPARE(daemonComplaints(MainTree::written(*root)), QByteArray());
}

void DestinationDeliveryTest::pathsThatTheDialogTakesAreTakenByTheDaemon()
{
    const auto root = MainTree::read("source nivra_events_src {\n    internal();\n};\n");
    int number = 0;
    for (const char *path :
         {"/var/log/a b", "relative", "/a\"b", "/a\\b", "/a\\", "\"", "/orders and more", "/a(b)c", "/журнал",
          "/a#b", "/a;b", "/a'b", "/a`b", "/$HOST/x", "/a@b", "/a);b(c"}) {
        const auto values = fileDestination(QStringLiteral("d%1").arg(++number), QString::fromUtf8(path));
        QCOMPARE(DestinationText::keepingError(values), QString());
        root->appendChildDestination(DestinationText::makeBlock(values, root.get()));
    }
    QCOMPARE(daemonComplaints(MainTree::written(*root)), QByteArray());
}

void DestinationDeliveryTest::daemonRefusesWhatItShould()
{
    for (const char *name : {"if", "channel", "log", "junction", "template", "yes"}) {
        QVERIFY(!DestinationNames::isValid(QString::fromUtf8(name)));
        QVERIFY2(
            !daemonComplaints(QByteArray("destination ") + name + " {\n    file(\"/a\");\n};\n").isEmpty(),
            name);
    }
}

void DestinationDeliveryTest::recordsReachAddedDestinations()
{
    LoopbackListener stream(SOCK_STREAM);
    LoopbackListener datagram(SOCK_DGRAM);
    QVERIFY(stream.port() > 0 && datagram.port() > 0);
    const QString odd = QStringLiteral("/var/log/odd \"q\" b\\s `t` журнал.log");
    const QString plain = QStringLiteral("/var/log/added.log");
    const QString loopback = QStringLiteral("127.0.0.1");
    {
        ConfigAccessService service(nullptr);
        DestinationsSettings page(service);
        page.loadConfig();
        QCOMPARE(page.model()->rowCount(), 1);
        page.insertNewDest(fileDestination(QStringLiteral("d_plain"), plain));
        page.insertNewDest(fileDestination(QStringLiteral("d_odd"), odd));
        page.insertNewDest(fileDestination(QStringLiteral("d_gone"), QStringLiteral("/var/log/gone.log")));
        page.insertNewDest({QStringLiteral("network"), QStringLiteral("d_tcp"), loopback, stream.port(),
                            QStringLiteral("tcp")});
        page.insertNewDest({QStringLiteral("network"), QStringLiteral("d_udp"), loopback, datagram.port(),
                            QStringLiteral("udp")});
        page.findChild<QTreeView *>()->setCurrentIndex(page.model()->index(3, 0));
        page.removeSelectedDestination();
        DialogAnswerer answerer(false);
        QVERIFY(page.saveConfig());
        QCOMPARE(answerer.texts(), QStringList());
        QCOMPARE(page.model()->rowCount(), 5);
    }
    QVERIFY2(m_sandbox->start(), m_sandbox->output().constData());
    QVERIFY(m_sandbox->send("<11>" + record));
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->contents(plain.mid(1)).contains("ivanov"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->contents(odd.mid(1)).contains("ivanov"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->logged().join().contains("ivanov"), 10000);
    QVERIFY(stream.receives("ivanov"));
    QVERIFY(datagram.receives("ivanov"));
    QVERIFY(!QFile::exists(m_sandbox->below(QStringLiteral("var/log/gone.log"))));
    m_sandbox->stop();
}

QTEST_MAIN(DestinationDeliveryTest)

#include "destinationdeliverytest.moc"
