// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwriter.h"
#include "contentcheck.h"
#include "targetpaths.h"
#include "treesnapshot.h"

#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

class ConfigContentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void acceptsSoundContent_data();
    void acceptsSoundContent();
    void refusesUnsoundContent_data();
    void refusesUnsoundContent();
    void namesTheBadLineOfAuditRules();

private:
    QString below(const QString &path) const { return m_root->path() + path; }
    Outcome write(const QString &path, const QByteArray &content) const
    {
        return ConfigWriter(m_root->path()).write({path, content});
    }
    TreeSnapshot snapshot() const { return takeSnapshot(m_root->path()); }

    std::unique_ptr<QTemporaryDir> m_root;
};

void ConfigContentTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    for (const QString &file : {settingsPath(), rulesPath(), mainPath(), rotationPath()}) {
        QVERIFY(QDir().mkpath(QFileInfo(below(file)).path()));
    }
}

void ConfigContentTest::acceptsSoundContent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty settings") << settingsPath() << QByteArray();
    QTest::newRow("empty object") << settingsPath() << QByteArray("{\n}\n");
    QTest::newRow("Cyrillic") << settingsPath() << QByteArray("{\"вход\": {\"enabled\": \"1\"}}");
    QTest::newRow("no rules") << rulesPath() << QByteArray();
    QTest::newRow("empty lines and comments") << rulesPath() << QByteArray("\n# watched files\n\n  \n");
    QTest::newRow("opened file") << rulesPath()
                                 << QByteArray(
                                        "-a always,exit -F arch=x86_64 -F path=/a -S open,openat -k /a\n"
                                        "-a always,exit -F arch=armv7l -F path=/a -S open,openat -k /a\n"
                                        "-a always,exit -F arch=aarch64 -F path=/a -S openat -k /a\n");
    QTest::newRow("watch") << rulesPath() << QByteArray("-w /srv/файл -p wa -k /srv/файл\n");
    QTest::newRow("list first") << rulesPath()
                                << QByteArray("-a exit,always -S all -F auid>=1000 -F auid!=-1 -C uid!=euid");
    QTest::newRow("text without line end") << mainPath() << QByteArray("options { };");
    QTest::newRow("largest") << mainPath() << QByteArray(ContentCheck::sizeLimit, '#');
}

void ConfigContentTest::acceptsSoundContent()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    const Outcome outcome = write(path, content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QVERIFY(getFile(below(path)) == content);
}

void ConfigContentTest::refusesUnsoundContent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    const QByteArray zero("{}\0", 3);
    QTest::newRow("zero byte in settings") << settingsPath() << zero;
    QTest::newRow("zero byte in rules") << rulesPath() << QByteArray("#\0", 2);
    QTest::newRow("zero byte in main configuration") << mainPath() << zero;
    QTest::newRow("zero byte in rotation") << rotationPath() << zero;
    QTest::newRow("too large") << mainPath() << QByteArray(ContentCheck::sizeLimit + 1, '#');
    QTest::newRow("broken JSON") << settingsPath() << QByteArray("{\"a\": ");
    QTest::newRow("JSON and more") << settingsPath() << QByteArray("{} x");
    QTest::newRow("JSON array") << settingsPath() << QByteArray("[]");
    QTest::newRow("blank settings") << settingsPath() << QByteArray("\n");
    const QList<QByteArray> lines{"-D",
                                  "-e 0",
                                  "-b 1",
                                  "-f 0",
                                  "-R /tmp/rules",
                                  "-w",
                                  "-w relative -p wa -k x",
                                  "-w /a -p",
                                  "-w /a -p wz -k x",
                                  "-w /a -p wa -k",
                                  "-w /a -p wa -k x -D",
                                  "-w /a -e 0",
                                  "-W /a -p wa -k x",
                                  "-d always,exit -S open",
                                  "-a never,exit -S open",
                                  "-a exit,never -S open",
                                  "-a always,exclude -F msgtype=CWD",
                                  "-a always,exit,user -S open",
                                  "-a always -S open",
                                  "-a always,exit -S open -D",
                                  "-a always,exit -S open -e 0",
                                  "-a always,exit -S open stray",
                                  "-a always,exit -S -D",
                                  "-A always,exit -S open",
                                  "always,exit -S open",
                                  "rule",
                                  "-w /a -p wa -k x\r",
                                  "# comment\rwith a return",
                                  "-w /a\x1b[31m -p wa -k x"};
    for (const QByteArray &line : lines) {
        QTest::newRow(qPrintable(QLatin1String("rule ") + QString::fromUtf8(line))) << rulesPath() << line;
        QTest::newRow(qPrintable(QLatin1String("last rule ") + QString::fromUtf8(line)))
            << rulesPath() << QByteArray("-w /a -p wa -k a\n" + line + "\n");
    }
}

void ConfigContentTest::refusesUnsoundContent()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QVERIFY(putFile(below(path), "former\n"));
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(path, content);
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(path), qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigContentTest::namesTheBadLineOfAuditRules()
{
    const Outcome outcome = write(rulesPath(), "# one\n-w /a -p wa -k a\n-D\n");
    QVERIFY2(outcome.error().contains(QLatin1String("Line 3 ")), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().endsWith(QLatin1String(": -D")), qPrintable(outcome.error()));
}

QTEST_GUILESS_MAIN(ConfigContentTest)

#include "configcontenttest.moc"
