// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samples.h"

#include <eventmatcher.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace NivraRecorder;

class EventMatcherTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    void put(const QString &path, const QByteArray &text) const
    {
        QFile file(m_root->filePath(path));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }
    /** An event "e" of the shape of a watched file, with more members or others. */
    void putEvent(const QByteArray &members) const
    {
        put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g.json"),
            "{\"group-params\": {\"name_en\": \"Group\", \"name_ru\": \"Г\", \"order\": \"1\"}}");
        put(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/g/e.json"),
            "{\"event-group\": \"g\", \"enabled\": \"1\", \"message-type\": \"file\", \"message-params\": "
            "{\"message_id\": \"file_changed\", \"name_en\": \"Name\", \"name_ru\": \"И\"}, "
            "\"extend-message-params\": {\"path\": \"${.auditd.name}\", \"pid\": \"${PID}\", \"login_user\": "
            "{\"enabled\": \"1\", \"field\": \"${.auditd.auid}\"}, \"command\": {\"enabled\": \"0\", "
            "\"field\": "
            "\"${.auditd.comm}\"}}, "
                + members + "}");
    }
    QString settingsFile() const { return m_root->filePath(QStringLiteral("etc/nivra-syslog.conf")); }
    static AuditEvent event(const QByteArray &lines)
    {
        AuditAssembler assembler;
        QList<AuditEvent> events;
        const QList<QByteArray> list = lines.split('\n');
        for (const QByteArray &line : list) {
            events += assembler.add(line);
        }
        events += assembler.takeAll();
        return events.value(0);
    }
    int matches(const QByteArray &lines) const
    {
        return EventMatcher(settingsFile()).records(event(lines)).size();
    }

private Q_SLOTS:
    void init();

    void aRecordHoldsWhatTheEventDescribes();
    void theKeyDecidesWhichWatchItWas();
    void theKeyOfAnOperationMatches();
    void aCallWithoutKeysMatchesNothing();
    void conditionsHoldTogether();
    void anEventThatIsSwitchedOffIsNotRecorded();
    void theSettingsAreReadAgain();
    void whatOtherMessagesSayIsLeftToThem();
    void valuesOfARecordStayValues();
    void theShippedCatalogKnowsTheSample();
};

void EventMatcherTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    qputenv("ADMINEVENTS_ROOT", m_root->path().toUtf8());
}

void EventMatcherTest::aRecordHoldsWhatTheEventDescribes()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\"}, \"message-audit-rules\": "
             "\"-w /etc/group -p wa -k /etc/group, -w /etc/passwd -p wa -k /etc/passwd\"");
    const QList<QByteArray> records = EventMatcher(settingsFile()).records(event(passwdWritten()));
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first(),
             QByteArray("{\"MSG\":{\"nivra-file\":{\"login_user\":\"ivanov\",\"message_id\":\"file_changed\","
                        "\"name_en\":\"Name\",\"path\":\"/etc/passwd\",\"type_en\":\"Group\"}}}"));
}

void EventMatcherTest::theKeyDecidesWhichWatchItWas()
{
    putEvent(
        "\"filter-values\": {\".auditd.type\": \"SYSCALL\", \".auditd.key\": \"/etc/shadow, /etc/gshadow\"}, "
        "\"message-audit-rules\": \"-w /etc/passwd -p wa -k /etc/passwd\"");
    QCOMPARE(matches(passwdWritten("1")), 1);
    QCOMPARE(matches(passwdWritten("1", "\"/etc/gshadow\"")), 1);
    QCOMPARE(matches(passwdWritten("1", "2F782F79012F6574632F736861646F77")), 1);
    QCOMPARE(matches(passwdWritten("1", "\"/etc/pass\"")), 0);
    QCOMPARE(matches(passwdWritten("1", "(null)")), 0);
}

void EventMatcherTest::theKeyOfAnOperationMatches()
{
    putEvent(
        "\"filter-values\": {\".auditd.type\": \"SYSCALL\"}, \"message-audit-events\": {\"delete\": {}}");
    QCOMPARE(matches(passwdWritten("1", "\"nivra-subject-delete\"")), 1);
    QCOMPARE(matches(passwdWritten("1", "\"nivra-subject-rename\"")), 0);
}

void EventMatcherTest::aCallWithoutKeysMatchesNothing()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\", \".auditd.key\": \"\"}");
    QCOMPARE(matches(passwdWritten()), 0);
    QCOMPARE(matches(passwdWritten("1", "(null)")), 0);
}

void EventMatcherTest::conditionsHoldTogether()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\", \".auditd.success\": \"yes\", "
             "\".auditd.syscall\": \"open, openat\", \".auditd.key\": \"/etc/passwd\"}");
    QCOMPARE(matches(passwdWritten()), 1);
    QCOMPARE(matches(passwdWritten("1", "\"/etc/passwd\"", "no")), 0);
    QCOMPARE(matches(passwdWritten().replace("SYSCALL=openat", "SYSCALL=unlink")), 0);
    putEvent("\"filter-values\": {\".auditd.type\": \"CONFIG_CHANGE\", \".auditd.op\": \"add_rule\"}");
    QCOMPARE(
        matches("type=CONFIG_CHANGE msg=audit(1.2:3): auid=1000 ses=1 op=add_rule key=\"x\" list=4 res=1"),
        1);
    QCOMPARE(matches("type=CONFIG_CHANGE msg=audit(1.2:3): auid=1000 ses=1 op=remove_rule key=\"x\" list=4"),
             0);
    QCOMPARE(matches("type=CONFIG_CHANGE msg=audit(1.2:3): auid=1000"), 0);
}

void EventMatcherTest::anEventThatIsSwitchedOffIsNotRecorded()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"DAEMON_END\"}");
    const QByteArray line = "type=DAEMON_END msg=audit(1.2:3): op=terminate";
    QCOMPARE(matches(line), 1);
    put(QStringLiteral("etc/nivra-syslog.conf"), "{\"e\": {\"enabled\": \"0\"}}");
    QCOMPARE(matches(line), 0);
}

void EventMatcherTest::theSettingsAreReadAgain()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\"}, \"message-audit-rules\": "
             "\"-w /etc/group -p wa -k /etc/group\"");
    EventMatcher matcher(settingsFile());
    const AuditEvent written = event(passwdWritten());
    QCOMPARE(matcher.records(written).size(), 0);
    put(QStringLiteral("etc/nivra-syslog.conf"),
        "{\"e\": {\"message-audit-rules\": [\"-w /etc/passwd -p wa -k /etc/passwd\"], "
        "\"extend-message-params\": "
        "{\"command\": {\"enabled\": \"1\"}}}}");
    QCOMPARE(matcher.records(written).size(), 1);
    QVERIFY(matcher.records(written).first().contains("\"command\":\"vim\""));
    QVERIFY(QFile::remove(settingsFile()));
    QCOMPARE(matcher.records(written).size(), 0);
}

void EventMatcherTest::whatOtherMessagesSayIsLeftToThem()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"DAEMON_END\", \"PROGRAM\": \"auditd\"}");
    QCOMPARE(matches("type=DAEMON_END msg=audit(1.2:3): op=terminate"), 0);
    putEvent("\"filter-values\": {\"PROGRAM\": \"auditd\"}");
    QCOMPARE(matches("type=DAEMON_END msg=audit(1.2:3): op=terminate"), 0);
}

void EventMatcherTest::valuesOfARecordStayValues()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\", \".auditd.key\": \"/etc/passwd\"}");
    const QByteArray name = "x\",\"message_id\":\"forged\n$(id)";
    const QByteArray lines = passwdWritten().replace("name=\"passwd\"", "name=" + name.toHex().toUpper());
    const QList<QByteArray> records = EventMatcher(settingsFile()).records(event(lines));
    QCOMPARE(records.size(), 1);
    QVERIFY(!records.first().contains('\n'));
    const QJsonObject content = QJsonDocument::fromJson(records.first())
                                    .object()
                                    .value(QStringLiteral("MSG"))
                                    .toObject()
                                    .value(QStringLiteral("nivra-file"))
                                    .toObject();
    QCOMPARE(content.value(QStringLiteral("message_id")).toString(), QStringLiteral("file_changed"));
    QCOMPARE(content.value(QStringLiteral("path")).toString(),
             QLatin1String("/etc/") + QString::fromUtf8(name));
}

void EventMatcherTest::theShippedCatalogKnowsTheSample()
{
    const QString share = m_root->filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra"));
    QVERIFY(QDir().mkpath(share));
    QVERIFY(QFile::link(QStringLiteral(SHIPPED_DATA "/event-settings"),
                        share + QStringLiteral("/event-settings")));
    put(QStringLiteral("etc/nivra-syslog.conf"), "{\"account-files-changed\": {\"enabled\": \"1\"}}");
    const QList<QByteArray> records = EventMatcher(settingsFile()).records(event(passwdWritten()));
    QCOMPARE(records.size(), 1);
    QVERIFY2(records.first().contains("\"path\":\"/etc/passwd\""), records.first().constData());
}

QTEST_GUILESS_MAIN(EventMatcherTest)
#include "eventmatchertest.moc"
