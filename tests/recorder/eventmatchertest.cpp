// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "recorderroot.h"
#include "samples.h"

#include <eventmatcher.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace NivraRecorder;

class EventMatcherTest : public QObject
{
    Q_OBJECT

private:
    RecorderRoot m_root;

    /** An event "e" of the shape of a watched file, with more members or others. */
    void putEvent(const QByteArray &members) const
    {
        m_root.putCatalog(
            "{\"group-params\": {\"name_en\": \"Group\", \"name_ru\": \"Г\", \"order\": \"1\"}}",
            "{\"event-group\": \"g\", \"enabled\": \"1\", \"message-type\": \"file\", \"message-params\": "
            "{\"message_id\": \"file_changed\", \"name_en\": \"Name\", \"name_ru\": \"И\"}, "
            "\"extend-message-params\": {\"path\": \"${.auditd.name}\", \"pid\": \"${PID}\", \"login_user\": "
            "{\"enabled\": \"1\", \"field\": \"${.auditd.auid}\"}, \"command\": {\"enabled\": \"0\", "
            "\"field\": "
            "\"${.auditd.comm}\"}}, "
                + members + "}");
    }
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
        return EventMatcher(m_root.settingsFile()).records(event(lines)).size();
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
    m_root.renew();
}

void EventMatcherTest::aRecordHoldsWhatTheEventDescribes()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\"}, \"message-audit-rules\": "
             "\"-w /etc/group -p wa -k /etc/group, -w /etc/passwd -p wa -k /etc/passwd\"");
    const QList<QByteArray> records = EventMatcher(m_root.settingsFile()).records(event(passwdWritten()));
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
    m_root.put(QStringLiteral("etc/nivra-syslog.conf"), "{\"e\": {\"enabled\": \"0\"}}");
    QCOMPARE(matches(line), 0);
}

void EventMatcherTest::theSettingsAreReadAgain()
{
    putEvent("\"filter-values\": {\".auditd.type\": \"SYSCALL\"}, \"message-audit-rules\": "
             "\"-w /etc/group -p wa -k /etc/group\"");
    EventMatcher matcher(m_root.settingsFile());
    const AuditEvent written = event(passwdWritten());
    QCOMPARE(matcher.records(written).size(), 0);
    m_root.put(QStringLiteral("etc/nivra-syslog.conf"),
               "{\"e\": {\"message-audit-rules\": [\"-w /etc/passwd -p wa -k /etc/passwd\"], "
               "\"extend-message-params\": "
               "{\"command\": {\"enabled\": \"1\"}}}}");
    QCOMPARE(matcher.records(written).size(), 1);
    QVERIFY(matcher.records(written).first().contains("\"command\":\"vim\""));
    QVERIFY(QFile::remove(m_root.settingsFile()));
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
    const QList<QByteArray> records = EventMatcher(m_root.settingsFile()).records(event(lines));
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
    m_root.linkCatalog(QStringLiteral(SHIPPED_DATA));
    m_root.put(QStringLiteral("etc/nivra-syslog.conf"), "{\"account-files-changed\": {\"enabled\": \"1\"}}");
    const QList<QByteArray> records = EventMatcher(m_root.settingsFile()).records(event(passwdWritten()));
    QCOMPARE(records.size(), 1);
    QVERIFY2(records.first().contains("\"path\":\"/etc/passwd\""), records.first().constData());
}

QTEST_GUILESS_MAIN(EventMatcherTest)
#include "eventmatchertest.moc"
