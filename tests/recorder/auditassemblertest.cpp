// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samples.h"

#include <auditassembler.h>

#include <QTest>

using namespace NivraRecorder;

class AuditAssemblerTest : public QObject
{
    Q_OBJECT

private:
    static QString field(const QByteArray &fields, const char *name)
    {
        const auto record = AuditRecord::parse("type=SYSCALL msg=audit(1.2:3): " + fields);
        return record ? record->fields.value(QLatin1String(name), QStringLiteral("absent"))
                      : QStringLiteral("no record");
    }
    static QList<AuditEvent> addAll(AuditAssembler &assembler, const QByteArray &lines)
    {
        QList<AuditEvent> events;
        const QList<QByteArray> list = lines.split('\n');
        for (const QByteArray &line : list) {
            events += assembler.add(line);
        }
        return events;
    }

private Q_SLOTS:
    void aLineIsTakenApart();
    void valuesAreDecoded_data();
    void valuesAreDecoded();
    void otherLinesAreNoRecords_data();
    void otherLinesAreNoRecords();
    void theRecordsOfAnEventComeTogether();
    void mixedEventsAreToldApart();
    void anEventWithoutAnEndWaitsOnlySoLong();
    void aFloodWithoutEndsIsBounded();
};

void AuditAssemblerTest::aLineIsTakenApart()
{
    const auto record = AuditRecord::parse(
        "node=host type=USER_LOGIN msg=audit(1773469613.123:77): pid=5 uid=0 auid=1000 msg='op=login id=1000 "
        "exe=\"/usr/bin/login\" hostname=? addr=192.0.2.1 terminal=/dev/tty1 res=success'\x1d"
        "UID=\"root\" AUID=\"ivanov\" ID=\"petrov\"");
    QVERIFY(record);
    QCOMPARE(record->type, QStringLiteral("USER_LOGIN"));
    QCOMPARE(record->event, QByteArray("1773469613.123:77"));
    QCOMPARE(record->fields.value(QStringLiteral("auid")), QStringLiteral("ivanov"));
    QCOMPARE(record->fields.value(QStringLiteral("msg.exe")), QStringLiteral("/usr/bin/login"));
    QCOMPARE(record->fields.value(QStringLiteral("msg.addr")), QStringLiteral("192.0.2.1"));
    QCOMPARE(record->fields.value(QStringLiteral("msg.res")), QStringLiteral("success"));
    QVERIFY(!record->fields.contains(QStringLiteral("exe")));
    QVERIFY(!record->fields.contains(QStringLiteral("id")));
}

void AuditAssemblerTest::valuesAreDecoded_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *fields, const char *name, const QString &value) {
        QTest::newRow(fields) << QByteArray(fields) << QByteArray(name) << value;
    };
    row("name=\"/tmp/a b\" x=1", "name", QStringLiteral("/tmp/a b"));
    row("name=2F746D702FD092D185D0BED0B4 x=1", "name", QStringLiteral("/tmp/Вход"));
    row("name=(null) x=1", "name", QString());
    row("comm=746F202220276F75636820783D31 exe=\"/x\"", "exe", QStringLiteral("/x"));
    row("comm=61206E616D653D22782220 name=\"y\"", "name", QStringLiteral("y"));
    row("pid=1234 uid=0", "pid", QStringLiteral("1234"));
    row("old=64 res=1", "old", QStringLiteral("64"));
    row("a1=CAFE uid=0", "a1", QStringLiteral("CAFE"));
    row("key=2F6574632F61012F6574632F62", "key", QStringLiteral("/etc/a,/etc/b"));
    row("key=\"/etc/a\"", "key", QStringLiteral("/etc/a"));
    row("success=no exit=-13 key=\"open end", "key", QStringLiteral("open end"));
    row("auid=4294967295\x1d"
        "AUID=\"unset\"",
        "auid", QStringLiteral("4294967295"));
    row("uid=0\x1d"
        "NEW=\"x\"",
        "new", QStringLiteral("absent"));
    row("words and more=x y", "more", QStringLiteral("x"));
    row("", "pid", QStringLiteral("absent"));
}

void AuditAssemblerTest::valuesAreDecoded()
{
    QFETCH(QByteArray, fields);
    QFETCH(QByteArray, name);
    QFETCH(QString, value);
    QCOMPARE(field(fields, name.constData()), value);
}

void AuditAssemblerTest::otherLinesAreNoRecords_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line : {"", "hello", "type=SYSCALL", "type=SYSCALL msg=audit(1.2:3",
                             "msg=audit(1.2:3): a=b", "xtype=SYSCALL msg=audit(1.2:3): a=b"}) {
        QTest::newRow(line) << QByteArray(line);
    }
}

void AuditAssemblerTest::otherLinesAreNoRecords()
{
    QFETCH(QByteArray, line);
    QVERIFY(!AuditRecord::parse(line));
}

void AuditAssemblerTest::theRecordsOfAnEventComeTogether()
{
    AuditAssembler assembler;
    const QList<AuditEvent> events = addAll(assembler, passwdWritten());
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().types.contains(QStringLiteral("SYSCALL")));
    QVERIFY(events.first().types.contains(QStringLiteral("PATH")));
    const QHash<QString, QString> fields = events.first().fields;
    QCOMPARE(fields.value(QStringLiteral("name")), QStringLiteral("/etc/passwd"));
    QCOMPARE(fields.value(QStringLiteral("syscall")), QStringLiteral("openat"));
    QCOMPARE(fields.value(QStringLiteral("auid")), QStringLiteral("ivanov"));
    QCOMPARE(fields.value(QStringLiteral("exe")), QStringLiteral("/usr/bin/vim.basic"));
    QCOMPARE(fields.value(QStringLiteral("mode")), QStringLiteral("0100644"));
    QVERIFY(assembler.isEmpty());
}

void AuditAssemblerTest::mixedEventsAreToldApart()
{
    const QList<QByteArray> first = passwdWritten("1").split('\n');
    const QList<QByteArray> second = passwdWritten("2", "\"other\"").split('\n');
    QCOMPARE(first.size(), second.size());
    QList<AuditEvent> events;
    AuditAssembler assembler;
    for (int i = 0; i < first.size(); ++i) {
        events += assembler.add(first.at(i));
        events += assembler.add(second.at(i));
    }
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(0).fields.value(QStringLiteral("key")), QStringLiteral("/etc/passwd"));
    QCOMPARE(events.at(1).fields.value(QStringLiteral("key")), QStringLiteral("other"));
}

void AuditAssemblerTest::anEventWithoutAnEndWaitsOnlySoLong()
{
    AuditAssembler assembler;
    QVERIFY(assembler.add("type=DAEMON_END msg=audit(1.2:3): op=terminate res=success").isEmpty());
    QVERIFY(assembler.takeOverdue().isEmpty());
    QTest::qWait(int(AuditAssembler::patience) + 50);
    const QList<AuditEvent> events = assembler.takeOverdue();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().types.contains(QStringLiteral("DAEMON_END")));
    QVERIFY(assembler.takeAll().isEmpty());
}

void AuditAssemblerTest::aFloodWithoutEndsIsBounded()
{
    AuditAssembler assembler;
    int completed = 0;
    for (int i = 0; i < 2000; ++i) {
        completed += assembler.add("type=SYSCALL msg=audit(1.2:" + QByteArray::number(i) + "): a=b").size();
    }
    QVERIFY(completed >= 1500);
    QCOMPARE(completed + assembler.takeAll().size(), 2000);
}

QTEST_GUILESS_MAIN(AuditAssemblerTest)
#include "auditassemblertest.moc"
