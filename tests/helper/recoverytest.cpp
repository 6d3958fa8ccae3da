// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwriter.h"
#include "treesnapshot.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace AdminEventsHelper;

/** The command of the handbook that brings a file back, on generations that the helper kept. */
class RecoveryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bringsTheFileBeforeThePresentOneBack_data();
    void bringsTheFileBeforeThePresentOneBack();

private:
    /** As the handbook has it, without what makes the caller root. */
    static QString command();
};

QString RecoveryTest::command()
{
    const QStringList lines = QString::fromUtf8(getFile(QStringLiteral(HANDBOOK))).split(QLatin1Char('\n'));
    const QString root = QStringLiteral("sudo ");
    for (const QString &line : lines) {
        if (line.startsWith(root)) {
            return line.mid(root.size());
        }
    }
    return {};
}

void RecoveryTest::bringsTheFileBeforeThePresentOneBack_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("form"); ///< a content, with a number to come
    QTest::newRow("event settings") << QStringLiteral("/etc/nivra-syslog.conf")
                                    << QByteArray("{\"login%1\": {\"enabled\": \"0\"}}\n");
    QTest::newRow("audit rules") << QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules")
                                 << QByteArray("-w /etc/passwd%1 -p wa -k /etc/passwd\n");
    QTest::newRow("main configuration") << QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf")
                                        << QByteArray("destination d%1 { file(\"/x\"); };\n");
    QTest::newRow("rotation") << QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra")
                              << QByteArray("/var/log/x%1 { weekly }\n");
}

void RecoveryTest::bringsTheFileBeforeThePresentOneBack()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, form);
    const QTemporaryDir root;
    const QString file = root.path() + path;
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    const auto content
        = [&form](int number) { return QByteArray(form).replace("%1", QByteArray::number(number)); };
    // So many that older ones have gone and the number has one digit more.
    constexpr int writes = 12;
    for (int i = 1; i <= writes; ++i) {
        const Outcome outcome = ConfigWriter(root.path()).write({path, content(i)});
        QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    }
    QCOMPARE(getFile(file), content(writes));
    struct stat before = {};
    QCOMPARE(::stat(qPrintable(file), &before), 0);

    QString line = command();
    QVERIFY(line.contains(QLatin1String("nivra-syslog.conf")));
    line.replace(QLatin1String("/etc/nivra-syslog.conf"), file)
        .replace(QLatin1String("nivra-syslog.conf.*"), QFileInfo(path).fileName() + QLatin1String(".*"))
        .replace(QLatin1String("/var/lib"), root.path() + QLatin1String("/var/lib"));
    QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), line}), 0);
    QCOMPARE(getFile(file), content(writes - 1));
    struct stat after = {};
    QCOMPARE(::stat(qPrintable(file), &after), 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
}

QTEST_GUILESS_MAIN(RecoveryTest)

#include "recoverytest.moc"
