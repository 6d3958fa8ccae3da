// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "rotationcheck.h"

#include <QFile>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

Outcome check(const QByteArray &content, const QList<QByteArray> &former = {})
{
    return RotationCheck::check(QStringLiteral("/etc/rotation"), content, former);
}

QByteArray section(const QByteArray &directives)
{
    return "/var/log/x {\n" + directives + "\n}\n";
}

} // namespace

/** Which texts may become the rotation file. */
class RotationCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesWhatOnlyRotates_data();
    void takesWhatOnlyRotates();
    void takesTheShippedFileWithoutAFormer();
    void refusesWhatIsNoRotationFile_data();
    void refusesWhatIsNoRotationFile();
    void refusesWhatBringsMoreIn_data();
    void refusesWhatBringsMoreIn();
    void takesAScriptThatOnlyLooksDifferent();
    void refusesAScriptThatOnlyResembles_data();
    void refusesAScriptThatOnlyResembles();
};

void RotationCheckTest::takesWhatOnlyRotates_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *tag, const QByteArray &content) { QTest::newRow(tag) << content; };
    row("empty", "");
    row("comments", "# postrotate\n\n   # }\n");
    row("defaults for all", "weekly\nrotate 4\n");
    row("one line", "/var/log/x { daily }\n");
    row("brace on its own line", "/var/log/x\n{\n  daily\n}\n");
    row("several files", "/var/log/a /var/log/b.log\n\"/vortan/log/c d\" {\nweekly\n}\n");
    row("patterns", "/vortan/log/nivra/events/*.log{\nsize 10M\nrotate=3\n}");
    row("two sections", section("daily") + section("monthly\nmaxsize 1G\ncreate 0640 root adm"));
    row("every kind",
        section("missingok\nnotifempty\ncompress\ndelaycompress\nsharedscripts\ndateext\ndateformat "
                "-%Y\nextension .log\nmaxage 3\nstart 1\nshred\ncopytruncate\nhourly\nyearly"));
}

void RotationCheckTest::takesWhatOnlyRotates()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = check(content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void RotationCheckTest::takesTheShippedFileWithoutAFormer()
{
    QFile file(QStringLiteral(ADMINEVENTS_DATA "/logrotate/syslog-ng-mod-nivra"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QVERIFY(content.contains("postrotate"));
    const Outcome outcome = check(content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void RotationCheckTest::refusesWhatIsNoRotationFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("line");
    QTest::newRow("words") << QByteArray("anything\n") << 1;
    QTest::newRow("unknown directive") << section("daily\nexplode") << 3;
    QTest::newRow("no end") << QByteArray("/var/log/x {\ndaily\n") << 3;
    QTest::newRow("files without a section") << QByteArray("/var/log/x\n") << 2;
    QTest::newRow("directive between files") << QByteArray("/var/log/x\ndaily\n{ }\n") << 2;
    QTest::newRow("end without beginning") << QByteArray("daily\n}\n") << 2;
    QTest::newRow("section in a section") << section("/var/log/y {\n}") << 2;
    QTest::newRow("brace alone") << QByteArray("{ daily }") << 1;
    QTest::newRow("no end of the script") << section("postrotate\nx") << 5;
    QTest::newRow("script on the line") << section("postrotate reboot\nendscript") << 2;
    QTest::newRow("end of no script") << section("endscript") << 2;
}

void RotationCheckTest::refusesWhatIsNoRotationFile()
{
    QFETCH(QByteArray, content);
    QFETCH(int, line);
    const Outcome outcome = check(content);
    QVERIFY2(outcome.error().contains(
                 QStringLiteral("Line %1 of the new content of \"/etc/rotation\": ").arg(line)),
             qPrintable(outcome.error()));
}

void RotationCheckTest::refusesWhatBringsMoreIn_data()
{
    QTest::addColumn<QByteArray>("content");
    for (const char *script : {"prerotate", "postrotate", "firstaction", "lastaction", "preremove"}) {
        QTest::newRow(script) << section(QByteArray(script) + "\nreboot\nendscript");
    }
    for (const char *directive :
         {"compresscmd /tmp/x", "compresscmd=/tmp/x", "uncompresscmd /tmp/x", "compressoptions --x",
          "include /tmp/x", "su ann ann", "olddir /etc/cron.d", "createolddir 777 ann ann", "mail x@y",
          "extension /../../etc/x", "addextension /x", "dateformat /x", "create 0644 \\"}) {
        QTest::newRow(directive) << section(directive);
    }
    QTest::newRow("include for all") << QByteArray("include /tmp/x\n");
    for (const char *file : {"/etc/shadow", "\"/etc/shadow\"", "'/etc/shadow'", "/var/log/../../etc/shadow",
                             "/home/ann/x", "/*", "/var/log/.hidden", "/var/logs/x"}) {
        QTest::newRow(file) << QByteArray(file) + " {\ndaily\n}\n";
    }
}

void RotationCheckTest::refusesWhatBringsMoreIn()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = check(content);
    QVERIFY2(outcome.error().contains(QLatin1String("which the present one does not")),
             qPrintable(outcome.error()));
    QVERIFY(!check(content, {section("daily")}).ok());
    QVERIFY(check(content, {content}).ok());
    QVERIFY(check("weekly\n" + content, {section("daily"), content}).ok());
}

void RotationCheckTest::takesAScriptThatOnlyLooksDifferent()
{
    const QByteArray former
        = section("\tpostrotate\n\t\t# tell it\n\n\t\tkill   -HUP 1\n    true\n\tendscript");
    const QByteArray content = section("weekly\n  postrotate\nkill -HUP 1\ntrue\nendscript");
    const Outcome outcome = check(content, {former});
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void RotationCheckTest::refusesAScriptThatOnlyResembles_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("another kind") << QByteArray("prerotate\nkill -HUP 1 \\\n2\nendscript");
    QTest::newRow("one line less") << QByteArray("postrotate\n2\nendscript");
    QTest::newRow("one line more") << QByteArray("postrotate\nkill -HUP 1 \\\n2\nreboot\nendscript");
    QTest::newRow("joined") << QByteArray("postrotate\nkill -HUP 1 \\ 2\nendscript");
    QTest::newRow("a comment that ends a line")
        << QByteArray("postrotate\nkill -HUP 1 \\\n# x\n2\nendscript");
}

void RotationCheckTest::refusesAScriptThatOnlyResembles()
{
    QFETCH(QByteArray, script);
    const QByteArray former = section("postrotate\nkill -HUP 1 \\\n2\nendscript");
    QVERIFY(check(former + "weekly\n", {former}).ok());
    QVERIFY(!check(section(script), {former}).ok());
}

QTEST_GUILESS_MAIN(RotationCheckTest)

#include "rotationchecktest.moc"
