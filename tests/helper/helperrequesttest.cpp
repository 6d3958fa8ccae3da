// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwriter.h"
#include "contentcheck.h"
#include "helperoptions.h"
#include "servicecontrol.h"

#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

QVariantMap soundWrite()
{
    return {{QStringLiteral("action"), QStringLiteral("writeConfig")},
            {QStringLiteral("path"), QStringLiteral("/etc/nivra-syslog.conf")},
            {QStringLiteral("content"), QByteArray("{}")}};
}

QVariantMap changed(QVariantMap arguments, const char *key, const QVariant &value)
{
    arguments.insert(QLatin1String(key), value);
    return arguments;
}

QVariantMap without(QVariantMap arguments, const char *key)
{
    arguments.remove(QLatin1String(key));
    return arguments;
}

} // namespace

class HelperRequestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAWriteRequest();
    void refusesAnUnsoundWriteRequest_data();
    void refusesAnUnsoundWriteRequest();
    void readsAServiceCommand_data();
    void readsAServiceCommand();
    void refusesAnUnsoundServiceCommand_data();
    void refusesAnUnsoundServiceCommand();
    void readsOptions();
    void refusesUnsoundOptions_data();
    void refusesUnsoundOptions();
};

void HelperRequestTest::readsAWriteRequest()
{
    const auto request = WriteRequest::read(soundWrite());
    QVERIFY2(request.ok(), qPrintable(request.error()));
    QCOMPARE(request.value().path, QStringLiteral("/etc/nivra-syslog.conf"));
    QCOMPARE(request.value().content, QByteArray("{}"));
}

void HelperRequestTest::refusesAnUnsoundWriteRequest_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const QString action = QStringLiteral("\"action\"");
    const QString path = QStringLiteral("\"path\"");
    const QString content = QStringLiteral("\"content\"");
    const QVariantMap sound = soundWrite();
    QTest::newRow("nothing") << QVariantMap() << action;
    QTest::newRow("no action") << without(sound, "action") << action;
    QTest::newRow("no path") << without(sound, "path") << path;
    QTest::newRow("no content") << without(sound, "content") << content;
    QTest::newRow("another action") << changed(sound, "action", QStringLiteral("deleteConfig"))
                                    << QStringLiteral("\"deleteConfig\"");
    QTest::newRow("action in lower case")
        << changed(sound, "action", QStringLiteral("writeconfig")) << QStringLiteral("\"writeconfig\"");
    QTest::newRow("action as bytes") << changed(sound, "action", QByteArray("writeConfig")) << action;
    QTest::newRow("path as bytes") << changed(sound, "path", QByteArray("/etc/nivra-syslog.conf")) << path;
    QTest::newRow("path as list") << changed(sound, "path",
                                             QStringList{QStringLiteral("/etc/nivra-syslog.conf")})
                                  << path;
    QTest::newRow("path as URL") << changed(sound, "path", QUrl(QStringLiteral("/etc/nivra-syslog.conf")))
                                 << path;
    QTest::newRow("path with a zero")
        << changed(sound, "path", QString(QStringLiteral("/etc/nivra-syslog.conf") + QChar(0))) << path;
    QTest::newRow("endless path") << changed(sound, "path", QString(5000, QLatin1Char('a'))) << path;
    QTest::newRow("content as string") << changed(sound, "content", QStringLiteral("{}")) << content;
    QTest::newRow("content as number") << changed(sound, "content", 5) << content;
    QTest::newRow("content of no type") << changed(sound, "content", QVariant()) << content;
    QTest::newRow("content too large")
        << changed(sound, "content", QByteArray(ContentCheck::sizeLimit + 1, ' '))
        << QStringLiteral("16777216");
    QTest::newRow("one more argument") << changed(sound, "mode", 0777) << QStringLiteral("\"mode\"");
    QTest::newRow("argument without a name") << changed(sound, "", 1) << QStringLiteral("\"\"");
}

void HelperRequestTest::refusesAnUnsoundWriteRequest()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const auto request = WriteRequest::read(arguments);
    QVERIFY(!request.ok());
    QVERIFY2(request.error().contains(named), qPrintable(request.error()));
}

void HelperRequestTest::readsAServiceCommand_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("expected");
    QTest::newRow("start") << QStringLiteral("start") << int(ServiceCommand::Start);
    QTest::newRow("stop") << QStringLiteral("stop") << int(ServiceCommand::Stop);
    QTest::newRow("restart") << QStringLiteral("restart") << int(ServiceCommand::Restart);
}

void HelperRequestTest::readsAServiceCommand()
{
    QFETCH(QString, word);
    const auto command = readServiceCommand({{QStringLiteral("cmd"), word}});
    QVERIFY2(command.ok(), qPrintable(command.error()));
    QTEST(int(command.value()), "expected");
}

void HelperRequestTest::refusesAnUnsoundServiceCommand_data()
{
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
    const QString cmd = QStringLiteral("cmd");
    QTest::newRow("nothing") << QVariantMap() << QStringLiteral("\"cmd\"");
    QTest::newRow("bytes") << QVariantMap{{cmd, QByteArray("start")}} << QStringLiteral("\"cmd\"");
    QTest::newRow("number") << QVariantMap{{cmd, 0}} << QStringLiteral("\"cmd\"");
    QTest::newRow("empty") << QVariantMap{{cmd, QString()}} << QStringLiteral("\"\"");
    for (const char *word :
         {"Start", "start ", "reload", "status", "start auditd", "start;reboot", "--version"}) {
        const QString text = QLatin1String(word);
        QTest::newRow(word) << QVariantMap{{cmd, text}}
                            << QString(QLatin1Char('"') + text + QLatin1Char('"'));
    }
    QTest::newRow("one more argument")
        << QVariantMap{{cmd, QStringLiteral("start")}, {QStringLiteral("unit"), QStringLiteral("ssh")}}
        << QStringLiteral("\"unit\"");
}

void HelperRequestTest::refusesAnUnsoundServiceCommand()
{
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const auto command = readServiceCommand(arguments);
    QVERIFY(!command.ok());
    QVERIFY2(command.error().contains(named), qPrintable(command.error()));
}

void HelperRequestTest::readsOptions()
{
    // The variable serves the unprivileged side only.
    qputenv("ADMINEVENTS_ROOT", "/tmp");
    const auto none = HelperOptions::parse({});
    QVERIFY(none.ok());
    QCOMPARE(none.value().root, QStringLiteral("/"));
    QCOMPARE(none.value().systemctl, QString());
    QCOMPARE(none.value().home, QString());

    const QTemporaryDir directory;
    const auto all = HelperOptions::parse(
        {QStringLiteral("--systemctl"), QStringLiteral("/bin/sh"), QStringLiteral("--auditctl"),
         QStringLiteral("/bin/cat"), QStringLiteral("--root"), directory.path(), QStringLiteral("--home"),
         QStringLiteral("/usr"), QStringLiteral("--augenrules"), QStringLiteral("/bin/ls")});
    QVERIFY2(all.ok(), qPrintable(all.error()));
    QCOMPARE(all.value().root, directory.path());
    QCOMPARE(all.value().home, QStringLiteral("/usr"));
    QCOMPARE(all.value().systemctl, QStringLiteral("/bin/sh"));
    QCOMPARE(all.value().auditctl, QStringLiteral("/bin/cat"));
    QCOMPARE(all.value().augenrules, QStringLiteral("/bin/ls"));
    qunsetenv("ADMINEVENTS_ROOT");
}

void HelperRequestTest::refusesUnsoundOptions_data()
{
    QTest::addColumn<QStringList>("words");
    for (const char *line : {"--root",
                             "--systemctl",
                             "--help",
                             "-h",
                             "/tmp",
                             "--root=/tmp",
                             "--root tmp",
                             "--root ..",
                             "--root /does/not/exist",
                             "--root /etc/passwd",
                             "--root /tmp --root /tmp",
                             "--systemctl sh",
                             "--systemctl /etc/passwd",
                             "--systemctl /usr",
                             "--root /tmp extra",
                             "--systemctl /bin/sh --root",
                             "--augenrules",
                             "--augenrules /tmp",
                             "--auditctl auditctl",
                             "--home",
                             "--home usr",
                             "--home /etc/passwd"}) {
        QTest::newRow(line) << QString::fromLatin1(line).split(QLatin1Char(' '));
    }
    QTest::newRow("empty word") << QStringList{QString()};
    QTest::newRow("empty root") << QStringList{QStringLiteral("--root"), QString()};
}

void HelperRequestTest::refusesUnsoundOptions()
{
    QFETCH(QStringList, words);
    const auto options = HelperOptions::parse(words);
    QVERIFY(!options.ok());
    QVERIFY2(options.error().contains(QLatin1String("option")), qPrintable(options.error()));
}

QTEST_GUILESS_MAIN(HelperRequestTest)

#include "helperrequesttest.moc"
