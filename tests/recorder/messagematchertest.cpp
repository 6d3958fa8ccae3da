// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "recorderroot.h"

#include <messagematcher.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace NivraRecorder;

namespace {

QByteArray entry(const QString &program, const QString &text, const QString &user = QStringLiteral("0"))
{
    return QJsonDocument(
               QJsonObject{{QStringLiteral("SYSLOG_IDENTIFIER"), program},
                           {QStringLiteral("MESSAGE"), text},
                           {QStringLiteral("_UID"), user},
                           {QStringLiteral("_PID"), QStringLiteral("77")},
                           {QStringLiteral("_HOSTNAME"), QStringLiteral("debian")},
                           {QStringLiteral("_TRANSPORT"), QStringLiteral("syslog")},
                           {QStringLiteral("__REALTIME_TIMESTAMP"), QStringLiteral("1773469613123456")}})
        .toJson(QJsonDocument::Compact);
}

} // namespace

class MessageMatcherTest : public QObject
{
    Q_OBJECT

private:
    RecorderRoot m_root;

    void putEvent(const QByteArray &type, const QByteArray &filter) const
    {
        m_root.putCatalog(
            "{\"group-params\": {\"name_en\": \"G\", \"order\": \"1\"}}",
            "{\"event-group\": \"g\", \"enabled\": \"1\", \"message-type\": \"" + type
                + "\", \"message-params\": {\"message_id\": \"id\"}, \"extend-message-params\": {\"user\": "
                  "\"${.x.user}\", \"pid\": \"${PID}\", \"all\": \"${MESSAGE}\"}, \"filter-values\": "
                + filter + "}");
    }
    int matches(const QByteArray &line) const
    {
        const auto message = SystemMessage::parse(line);
        const QString settings = m_root.settingsFile();
        return message ? MessageMatcher(settings).records(*message).size() : -1;
    }

private Q_SLOTS:
    void init();

    void linesOfTheJournalAreRead();
    void otherLinesAreNoMessages_data();
    void otherLinesAreNoMessages();
    void theUsualWordsAreFound_data();
    void theUsualWordsAreFound();
    void programAndTextDecide();
    void whatUsersSendCountsForTheirOwnEventsOnly();
    void theShippedCatalogKnowsAFailedLogin();
};

void MessageMatcherTest::init()
{
    m_root.renew();
}

void MessageMatcherTest::linesOfTheJournalAreRead()
{
    const auto message = SystemMessage::parse(entry(QStringLiteral("login"), QStringLiteral("Вход \"x\"")));
    QVERIFY(message);
    QCOMPARE(message->program, QStringLiteral("login"));
    QCOMPARE(message->text, QStringLiteral("Вход \"x\""));
    QCOMPARE(message->pid, QStringLiteral("77"));
    QCOMPARE(message->host, QStringLiteral("debian"));
    QCOMPARE(message->time, QDateTime::fromMSecsSinceEpoch(1773469613123).toString(Qt::ISODate));
    QVERIFY(message->isOfSystem);
    const auto bytes = SystemMessage::parse("{\"_COMM\":\"x\",\"MESSAGE\":[97,255,98],\"_UID\":\"1000\"}");
    QVERIFY(bytes);
    QCOMPARE(bytes->program, QStringLiteral("x"));
    QCOMPARE(bytes->text, QStringLiteral("a\ufffdb"));
    QVERIFY(!bytes->isOfSystem);
    QVERIFY(
        SystemMessage::parse("{\"_COMM\":\"x\",\"MESSAGE\":\"m\",\"_TRANSPORT\":\"kernel\"}")->isOfSystem);
    QVERIFY(!SystemMessage::parse("{\"_COMM\":\"x\",\"MESSAGE\":\"m\"}")->isOfSystem);
}

void MessageMatcherTest::otherLinesAreNoMessages_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line : {"", "login: hello", "[]", "{}", "{\"MESSAGE\":\"m\"}",
                             "{\"_COMM\":\"x\",\"MESSAGE\":null}", "{\"_COMM\":\"x\",\"MESSAGE\":\"cut"}) {
        QTest::newRow(line) << QByteArray(line);
    }
}

void MessageMatcherTest::otherLinesAreNoMessages()
{
    QFETCH(QByteArray, line);
    QVERIFY(!SystemMessage::parse(line));
}

void MessageMatcherTest::theUsualWordsAreFound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *text, const char *name, const char *value) {
        QTest::addRow("%s: %s", name, text)
            << QString::fromUtf8(text) << QString::fromUtf8(name) << QString::fromUtf8(value);
    };
    const char *sudo = "  ivanov : TTY=pts/0 ; PWD=/home/ivanov ; USER=root ; COMMAND=/bin/ls -l; id";
    row(sudo, "user", "ivanov");
    row(sudo, "target_user", "root");
    row(sudo, "terminal", "pts/0");
    row(sudo, "working_directory", "/home/ivanov");
    row(sudo, "command", "/bin/ls -l; id");
    const char *accepted = "Accepted publickey for ivanov from 192.0.2.7 port 51514 ssh2: ED25519 SHA256:x";
    row(accepted, "user", "ivanov");
    row(accepted, "address", "192.0.2.7");
    row(accepted, "remote_port", "51514");
    row(accepted, "method", "publickey");
    const char *unknown = "Invalid user petrov from 2001:db8::1 port 40022";
    row(unknown, "user", "petrov");
    row(unknown, "address", "2001:db8::1");
    row("Disconnected from user ivanov 192.0.2.7 port 51514", "user", "ivanov");
    row("Connection closed by authenticating user root 192.0.2.7 port 1 [preauth]", "user", "root");
    row("Connection closed by authenticating user root 192.0.2.7 port 1 [preauth]", "address", "192.0.2.7");
    row("User petrov from 192.0.2.7 not allowed because not listed in AllowUsers", "user", "petrov");
    row("User petrov from 192.0.2.7 not allowed because not listed in AllowUsers", "reason",
        "not listed in AllowUsers");
    const char *failure
        = "pam_unix(login:auth): authentication failure; logname= uid=0 euid=0 tty=/dev/tty1 ruser= "
          "rhost=  user=ivanov";
    row(failure, "user", "ivanov");
    row(failure, "terminal", "/dev/tty1");
    row(failure, "address", "");
    row("FAILED LOGIN (1) on '/dev/tty1' FOR 'ivanov', Authentication failure", "user", "ivanov");
    row("FAILED LOGIN (1) on '/dev/tty1' FOR 'ivanov', Authentication failure", "terminal", "/dev/tty1");
    row("LOGIN ON tty1 BY ivanov", "user", "ivanov");
    row("LOGIN ON tty1 BY ivanov", "terminal", "tty1");
    row("FAILED SU (to root) ivanov on pts/0", "user", "ivanov");
    row("FAILED SU (to root) ivanov on pts/0", "target_user", "root");
    row("FAILED SU (to root) ivanov on pts/0", "terminal", "pts/0");
    row("pam_unix(su:session): session opened for user root(uid=0) by ivanov(uid=1000)", "user", "ivanov");
    row("pam_unix(su:session): session opened for user root(uid=0) by ivanov(uid=1000)", "target_user",
        "root");
    row("(root) CMD (test -x /x && (y))", "user", "root");
    row("(root) CMD (test -x /x && (y))", "command", "test -x /x && (y)");
    row("New session 3 of user ivanov.", "user", "ivanov");
    row("New session 3 of user ivanov.", "session_id", "3");
    row("new user: name=petrov, UID=1001, GID=1001, home=/home/petrov", "target_user", "petrov");
    row("new user: name=petrov, UID=1001, GID=1001, home=/home/petrov", "user_id", "1001");
    row("add 'petrov' to group 'sudo'", "group_name", "sudo");
    row("lock user 'petrov' password", "target_user", "petrov");
    row("pam_unix(passwd:chauthtok): password changed for petrov", "target_user", "petrov");
    row("[UFW BLOCK] IN=eth0 OUT= MAC=x SRC=192.0.2.1 DST=192.0.2.2 PROTO=TCP SPT=1 DPT=22", "interface",
        "eth0");
    row("[UFW BLOCK] IN=eth0 OUT= MAC=x SRC=192.0.2.1 DST=192.0.2.2 PROTO=TCP SPT=1 DPT=22", "source_address",
        "192.0.2.1");
    row("[UFW BLOCK] IN=eth0 OUT= MAC=x SRC=192.0.2.1 DST=192.0.2.2 PROTO=TCP SPT=1 DPT=22",
        "destination_port", "22");
    row("apparmor=\"DENIED\" operation=\"open\" profile=\"/usr/sbin/cupsd\" name=\"/etc/a b\" comm=\"cupsd\"",
        "profile", "/usr/sbin/cupsd");
    row("apparmor=\"DENIED\" operation=\"open\" profile=\"/usr/sbin/cupsd\" name=\"/etc/a b\" comm=\"cupsd\"",
        "path", "/etc/a b");
    row("cups.service: Failed with result 'exit-code'.", "service", "cups.service");
    row("cups.service: Failed with result 'exit-code'.", "reason", "exit-code");
    row("Started cups.service - CUPS Scheduler.", "service", "cups.service");
    row("Changed time zone to 'Europe/Moscow' (MSK).", "new_value", "Europe/Moscow");
    row("Hostname set to <debian>", "new_value", "debian");
    row("changed user 'ivanov' shell to /bin/sh", "new_value", "/bin/sh");
    row("NOTICE [sshd] Ban 192.0.2.9", "address", "192.0.2.9");
    row("NOTICE [sshd] Ban 192.0.2.9", "rule", "sshd");
    row("sd 6:0:0:0: [sdb] Attached SCSI removable disk", "device", "sdb");
    row("Mounted /dev/sdb1 at /media/ivanov/BACKUP on behalf of uid 1000", "mount_point",
        "/media/ivanov/BACKUP");
    row("Process 123 (vim) of user 1000 dumped core.", "command", "vim");
    row("superuser=no one", "user", "");
    row("nothing of the kind", "address", "");
    row("anything", "no_such_parameter", "");
}

void MessageMatcherTest::theUsualWordsAreFound()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QFETCH(QString, value);
    SystemMessage message;
    message.text = text;
    QCOMPARE(message.find(name), value);
}

void MessageMatcherTest::programAndTextDecide()
{
    putEvent("auth", "{\"PROGRAM\": [\"login\", \"other\"], \"MESSAGE\": [\"FAILED, LOGIN\", \"second\"]}");
    const QString text = QStringLiteral("a FAILED, LOGIN b");
    QCOMPARE(matches(entry(QStringLiteral("login"), text)), 1);
    QCOMPARE(matches(entry(QStringLiteral("other"), QStringLiteral("second"))), 1);
    QCOMPARE(matches(entry(QStringLiteral("logins"), text)), 0);
    QCOMPARE(matches(entry(QStringLiteral("login"), QStringLiteral("FAILED"))), 0);
    putEvent("auth", "{\"MESSAGE\": \"FAILED, LOGIN\"}");
    QCOMPARE(matches(entry(QStringLiteral("any"), text)), 1);
    QCOMPARE(matches(entry(QStringLiteral("any"), QStringLiteral("FAILED"))), 0);
    putEvent("auth", "{\".auditd.type\": \"SYSCALL\"}");
    QCOMPARE(matches(entry(QStringLiteral("any"), text)), 0);
    putEvent("auth", "{}");
    QCOMPARE(matches(entry(QStringLiteral("any"), text)), 0);
}

void MessageMatcherTest::whatUsersSendCountsForTheirOwnEventsOnly()
{
    const QString user = QStringLiteral("1000");
    putEvent("auth", "{\"PROGRAM\": \"logger\"}");
    QCOMPARE(matches(entry(QStringLiteral("logger"), QStringLiteral("x"))), 1);
    QCOMPARE(matches(entry(QStringLiteral("logger"), QStringLiteral("x"), user)), 0);
    putEvent("custom", "{\"PROGRAM\": \"logger\"}");
    QCOMPARE(matches(entry(QStringLiteral("logger"), QStringLiteral("x"), user)), 1);
}

void MessageMatcherTest::theShippedCatalogKnowsAFailedLogin()
{
    m_root.linkCatalog(QStringLiteral(SHIPPED_DATA));
    const auto message = SystemMessage::parse(
        entry(QStringLiteral("login"),
              QStringLiteral("FAILED LOGIN (1) on '/dev/tty1' FOR 'ivanov', Authentication failure")));
    QVERIFY(message);
    const QList<QByteArray> records = MessageMatcher(m_root.settingsFile()).records(*message);
    QCOMPARE(records.size(), 1);
    const QJsonObject content = QJsonDocument::fromJson(records.first())
                                    .object()
                                    .value(QStringLiteral("MSG"))
                                    .toObject()
                                    .value(QStringLiteral("nivra-auth"))
                                    .toObject();
    QCOMPARE(content.value(QStringLiteral("message_id")).toString(), QStringLiteral("user_login-failed"));
    QCOMPARE(content.value(QStringLiteral("user")).toString(), QStringLiteral("ivanov"));
    QCOMPARE(content.value(QStringLiteral("terminal")).toString(), QStringLiteral("/dev/tty1"));
    QVERIFY(!content.contains(QStringLiteral("pid")));
}

QTEST_GUILESS_MAIN(MessageMatcherTest)
#include "messagematchertest.moc"
