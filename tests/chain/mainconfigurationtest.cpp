// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "loggingsandbox.h"

#include <commonsettingsparser.h>
#include <commonwriter.h>
#include <configaccessservice.h>
#include <losscheck.h>
#include <treeitem.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <memory>

/** The shipped main logging configuration: through the page's hands, and in the real service. */
class MainConfigurationTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray shipped()
    {
        QFile file(QStringLiteral(SHIPPED_DATA "/syslog-ng/mod-nivra.conf"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QByteArray record(const QByteArray &type, const QByteArray &id, const QByteArray &user = "ivanov")
    {
        return "{\"PRIORITY\":\"notice\",\"MSG\":{\"nivra-" + type
            + "\":{\"name_en\":\"Failed login\",\"type_en\":\"Local logins\",\"user\":\"" + user
            + "\",\"message_id\":\"" + id
            + "\"}},\"ISODATE\":\"2026-03-14T09:26:53+03:00\",\"HOST\":\"debian\",\"FACILITY\":\"user\"}";
    }

    static QJsonObject object(const QByteArray &line) { return QJsonDocument::fromJson(line).object(); }

private Q_SLOTS:
    void readingAndWritingChangesNoByte();
    void itDefinesWhatThePageRefersTo();
    void aRecordIsLoggedInTheFormOfTheExample();
    void hostileValuesArriveAsTheyAre();
    void whatIsNoRecordIsNotLogged();
    void onlyItsOwnerMayHandInRecords();
    void aFilterOnTheIdentifierMatchesItsRecordsOnly();
};

void MainConfigurationTest::readingAndWritingChangesNoByte()
{
    const std::unique_ptr<TreeItem> root(CommonSettingsParser::parseText(QString::fromUtf8(shipped())));
    QVERIFY(root->childCount() >= 5);
    const QStringList statements = CommonWriter::statements(*root);
    QCOMPARE(ConfigAccessService::contentOf(statements), shipped());
    QCOMPARE(LossCheck::lostByRewriting(shipped(), shipped()), QStringList());
    QCOMPARE(LossCheck::notReadBack(*root), QStringList());
}

void MainConfigurationTest::itDefinesWhatThePageRefersTo()
{
    const std::unique_ptr<TreeItem> root(CommonSettingsParser::parseText(QString::fromUtf8(shipped())));
    QStringList blocks;
    for (int row = 0; row < root->childCount(); ++row) {
        const TreeItem *block = root->child(row);
        blocks << block->value(0).toString() + QLatin1Char(' ') + block->value(1).toString();
        if (blocks.last() == QLatin1String("destination nivra_json_dst")) {
            QCOMPARE(block->childCount(), 1);
            QCOMPARE(block->child(0)->value(0).toString(), QStringLiteral("file"));
            QVERIFY(block->child(0)->value(2).toString().startsWith(
                QLatin1String("\"/vortan/log/nivra/events/events.log\"")));
        }
    }
    QCOMPARE(blocks,
             (QStringList{QStringLiteral("source nivra_events_src"),
                          QStringLiteral("parser nivra_events_parser"), QStringLiteral("template nivra_json"),
                          QStringLiteral("destination nivra_json_dst"), QStringLiteral("log ")}));
}

void MainConfigurationTest::aRecordIsLoggedInTheFormOfTheExample()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    QVERIFY(sandbox.send("<11>" + record("auth", "user_login-failed")));
    QTRY_COMPARE(sandbox.logged().size(), 1);
    const QJsonObject logged = object(sandbox.logged().constFirst());
    const QJsonObject sent = object(record("auth", "user_login-failed"));
    QCOMPARE(logged.keys(), sent.keys());
    QCOMPARE(logged.value(QStringLiteral("MSG")), sent.value(QStringLiteral("MSG")));
    QCOMPARE(logged.value(QStringLiteral("HOST")), sent.value(QStringLiteral("HOST")));
    QCOMPARE(logged.value(QStringLiteral("FACILITY")), sent.value(QStringLiteral("FACILITY")));
    // The page shows the size of the log to people who may not read it.
    const QFileInfo log(sandbox.below(QStringLiteral("vortan/log/nivra/events/events.log")));
    QVERIFY(QFileInfo(log.path()).permission(QFile::ReadOther | QFile::ExeOther));
    QVERIFY(QFileInfo(QFileInfo(log.path()).path()).permission(QFile::ReadOther | QFile::ExeOther));
    // Priority and time are those of the hand-over.
    QCOMPARE(logged.value(QStringLiteral("PRIORITY")).toString(), QStringLiteral("err"));
    const QString time = logged.value(QStringLiteral("ISODATE")).toString();
    const qint64 age = QDateTime::fromString(time, Qt::ISODate).secsTo(QDateTime::currentDateTime());
    QVERIFY2(age >= 0 && age < 60, qPrintable(time));
}

void MainConfigurationTest::hostileValuesArriveAsTheyAre()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    const QByteArray hostile = "$(id) ${HOST} `x` \\\"q\\\" 'a' <b>&amp; \\\\n \\n\\t\\u0001 Вход";
    LoggingSandbox sandbox;
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    QVERIFY(sandbox.send(record("auth", "user_login-failed", hostile)));
    QTRY_COMPARE(sandbox.logged().size(), 1);
    QCOMPARE(object(sandbox.logged().constFirst()).value(QStringLiteral("MSG")),
             object(record("auth", "user_login-failed", hostile)).value(QStringLiteral("MSG")));
}

void MainConfigurationTest::whatIsNoRecordIsNotLogged()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    QVERIFY(sandbox.send("<13>login: no record at all"));
    QVERIFY(sandbox.send("{\"MSG\":{\"nivra-auth\":{\"message_id\":\"cut"));
    QVERIFY(sandbox.send(record("auth", "last")));
    QTRY_VERIFY(!sandbox.logged().isEmpty());
    QVERIFY(sandbox.logged().constFirst().contains("\"last\""));
}

void MainConfigurationTest::onlyItsOwnerMayHandInRecords()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    const QFileInfo socket(sandbox.below(QStringLiteral("run/syslog-ng/nivra-events")));
    QTRY_VERIFY(socket.exists());
    constexpr auto others
        = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    QTRY_COMPARE(int(QFileInfo(socket.filePath()).permissions() & others), 0);
}

void MainConfigurationTest::aFilterOnTheIdentifierMatchesItsRecordsOnly()
{
    if (!LoggingSandbox::hasSyslogNg()) {
        QSKIP("needs syslog-ng");
    }
    LoggingSandbox sandbox;
    QVERIFY(sandbox.write(
        QStringLiteral("etc/syslog-ng/conf.d/mod-nivra-user_login_failed.conf"),
        "filter nivra_user_login-failed_filter {\n"
        "    match(\"^user_login-failed$\" value(\"MSG.nivra-auth.message_id\"));\n"
        "};\n"
        "destination seen {\n"
        "    file(\"/var/log/seen\" template(\"${MSG.nivra-auth.message_id} ${MSG.nivra-auth.user}\\n\"));\n"
        "};\n"
        "log {\n"
        "    source(nivra_events_src);\n"
        "    parser(nivra_events_parser);\n"
        "    filter(nivra_user_login-failed_filter);\n"
        "    destination(seen);\n"
        "};\n"));
    QVERIFY2(sandbox.start(), sandbox.output().constData());
    QVERIFY(sandbox.send(record("auth", "user_login-failed-again")));
    QVERIFY(sandbox.send(record("remote", "user_login-failed")));
    QVERIFY(sandbox.send(record("auth", "xuser_login-failed")));
    QVERIFY(sandbox.send(record("auth", "user_login-failed", "petrov")));
    QTRY_COMPARE(sandbox.logged().size(), 4);
    QTRY_COMPARE(sandbox.contents(QStringLiteral("var/log/seen")), QByteArray("user_login-failed petrov\n"));
}

QTEST_GUILESS_MAIN(MainConfigurationTest)
#include "mainconfigurationtest.moc"
