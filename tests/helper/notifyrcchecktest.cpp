// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrccheck.h"

#include <QTest>

using namespace AdminEventsHelper;

/** What may be a user's own notification settings. */
class NotifyrcCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsTheFilesByTheirNames_data();
    void knowsTheFilesByTheirNames();
    void takesSettings_data();
    void takesSettings();
    void refusesOtherText_data();
    void refusesOtherText();
    void refusesALargeFile();
};

void NotifyrcCheckTest::knowsTheFilesByTheirNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("known");
    for (const char *name : {"nivra-event-watcher.notifyrc", "nivra-event-watcher_auth.notifyrc",
                             "nivra-event-watcher_a.b-c_2.notifyrc", "my-nivra-event-watcher_x.notifyrc"}) {
        QTest::newRow(name) << QByteArray(name) << true;
    }
    for (const char *name : {"", ".notifyrc", "other.notifyrc", "nivra-event-watcher",
                             "nivra-event-watcher.notifyrc~", ".nivra-event-watcher.notifyrc",
                             "nivra-event-watcher_a/b.notifyrc", "../nivra-event-watcher.notifyrc",
                             "nivra-event-watcher_a b.notifyrc", "nivra-event-watcher_\xd1\x8f.notifyrc"}) {
        QTest::newRow(name) << QByteArray(name) << false;
    }
    const QByteArray rest = "nivra-event-watcher.notifyrc";
    QTest::newRow("line break") << QByteArray("nivra-event-watcher\n.notifyrc") << false;
    QTest::newRow("longest") << QByteArray(100 - rest.size(), 'x') + rest << true;
    QTest::newRow("too long") << QByteArray(101 - rest.size(), 'x') + rest << false;
}

void NotifyrcCheckTest::knowsTheFilesByTheirNames()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, known);
    QCOMPARE(NotifyrcCheck::isFileName(name.toStdString()), known);
}

void NotifyrcCheckTest::takesSettings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("event") << QByteArray("[Event/loginMsg]\nAction=Popup|Sound\nExecute=/bin/true 'a=b'\n"
                                         "Logfile=file:///var/log/x\nSound=\nTTS=\n");
    QTest::newRow("other groups") << QByteArray("[$Version]\nupdate_info=x:1\n[Global]\nIconName=x\n"
                                                "[Context/a]\nName[ru]=Вход\n");
    QTest::newRow("comments") << QByteArray("# first\n\n  # second [\n");
    QTest::newRow("expanded") << QByteArray("[Event/a]\nLogfile[$e]=$HOME/x\n\tSound = y\n");
    QTest::newRow("line ends") << QByteArray("[Event/a]\r\nSound=y\r\n");
    QTest::newRow("before a group") << QByteArray("Sound=y");
}

void NotifyrcCheckTest::takesSettings()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = NotifyrcCheck::check(QStringLiteral("/file"), content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void NotifyrcCheckTest::refusesOtherText_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line :
         {"word", "=value", "[Event/a", "[Other]", "[Event/a][b]", "[]", "[Event/a] x", "a;b=c", "a/b=c",
          "[Desktop Entry]", "a=\x01", "a=\x1b[0m", "a=\x7f", "a\rb=c", "\xd1\x8f=c"}) {
        QTest::newRow(line) << QByteArray(line);
    }
    QTest::newRow("zero") << QByteArray("a=\0b", 4);
}

void NotifyrcCheckTest::refusesOtherText()
{
    QFETCH(QByteArray, line);
    const Outcome outcome = NotifyrcCheck::check(QStringLiteral("/file"), "[Event/a]\nSound=x\n" + line);
    QVERIFY2(outcome.error().contains(QLatin1String("Line 3 of \"/file\"")), qPrintable(outcome.error()));
    const Outcome broken = NotifyrcCheck::check(QStringLiteral("/file"), "a=\xd1\n" + line);
    QVERIFY2(broken.error().contains(QLatin1String("not text in UTF-8")), qPrintable(broken.error()));
}

void NotifyrcCheckTest::refusesALargeFile()
{
    const QByteArray largest = '#' + QByteArray(NotifyrcCheck::sizeLimit - 1, 'x');
    QVERIFY(NotifyrcCheck::check(QStringLiteral("/file"), largest).ok());
    const Outcome outcome = NotifyrcCheck::check(QStringLiteral("/file"), largest + 'x');
    QVERIFY2(outcome.error().contains(QLatin1String("1048576 bytes")), qPrintable(outcome.error()));
}

QTEST_GUILESS_MAIN(NotifyrcCheckTest)

#include "notifyrcchecktest.moc"
