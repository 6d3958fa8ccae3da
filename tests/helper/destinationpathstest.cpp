// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <loggingcheck.h>

#include <QTest>

using namespace AdminEventsHelper;

/// Which file destinations may be added to the main configuration of the logging service.
class DestinationPathsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void escapesHideNothing_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("plain") << QByteArray("\"/var/log/a b\"") << true;
        QTest::newRow("quote") << QByteArray("\"/var/log/a\\\"b\"") << true;
        QTest::newRow("backslash") << QByteArray("\"/var/log/a\\\\b\"") << true;
        QTest::newRow("backtick") << QByteArray("\"/var/log/a``b\"") << true;
        QTest::newRow("system") << QByteArray("\"/etc/passwd\"") << false;
        QTest::newRow("letter as a number") << QByteArray("\"/\\x65tc/passwd\"") << false;
        QTest::newRow("line break") << QByteArray("\"/var/log/a\\nb\"") << false;
        QTest::newRow("sign behind two backslashes") << QByteArray("\"/var/log/\\\\\\x2e\"") << false;
        QTest::newRow("upwards behind a quote") << QByteArray("\"/var/log/\\\"/../../etc/passwd\"") << false;
        QTest::newRow("variable") << QByteArray("\"/`x`tc/passwd\"") << false;
        QTest::newRow("variable behind a backtick") << QByteArray("\"/a```x`tc/passwd\"") << false;
        QTest::newRow("backslash in single quotes") << QByteArray("'/var/log/a\\\\b'") << false;
    }

    void escapesHideNothing()
    {
        QFETCH(QByteArray, path);
        const QByteArray text = "destination d {\n    file(" + path + ");\n};\n";
        const Outcome outcome = LoggingCheck::check(QStringLiteral("/etc/x"), text, {});
        QTEST(outcome.ok(), "allowed");
        QVERIFY(LoggingCheck::check(QStringLiteral("/etc/x"), text, {text}).ok());
    }
};

QTEST_GUILESS_MAIN(DestinationPathsTest)

#include "destinationpathstest.moc"
