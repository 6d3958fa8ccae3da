// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentcheck.h"
#include "samplefragment.h"

#include <QTest>

using namespace AdminEventsHelper;

namespace {
QString sampleName()
{
    return QStringLiteral("mod-nivra-a_b_c.conf");
}
} // namespace

/** Which texts pass for a notification fragment. */
class FragmentCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheShapeThatThePageWrites_data();
    void takesTheShapeThatThePageWrites();
    void refusesAnyLineThatDiffers_data();
    void refusesAnyLineThatDiffers();
    void refusesValuesThatMeanMore_data();
    void refusesValuesThatMeanMore();
    void knowsTheFragmentsByTheirPaths_data();
    void knowsTheFragmentsByTheirPaths();
};

void FragmentCheckTest::takesTheShapeThatThePageWrites_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray sample = sampleFragment();
    QTest::newRow("sample") << sample;
    QTest::newRow("empty line at the end") << sample + '\n';
    QTest::newRow("quotes in the title") << sampleFragment("\\\"Failed\\\" login, again $(x) ${HOST} 100%");
    QTest::newRow("Russian title") << sampleFragment("Неудачный вход");
    QTest::newRow("character beyond the first plane") << sampleFragment("\xf0\x9f\x94\x92");
    QTest::newRow("empty title") << sampleFragment("");
    QByteArray content = sample;
    QTest::newRow("all users") << content.replace("nivra-admin", "@all");
    content = sample;
    QTest::newRow("user and group of the event") << content.replace("@all", "").replace("nivra-admin", "");
    content = sample;
    QTest::newRow("no parameters") << content.replace("user,terminal", "").replace("{0} {1}", "");
}

void FragmentCheckTest::takesTheShapeThatThePageWrites()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = FragmentCheck::check(sampleName(), content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void FragmentCheckTest::refusesAnyLineThatDiffers_data()
{
    QTest::addColumn<QByteArray>("content");
    QList<QByteArray> lines = sampleFragment().split('\n');
    for (int i = 0; i < lines.size() - 1; ++i) {
        const QString number = QString::number(i + 1);
        const auto with = [lines, i](const QByteArray &line) {
            QList<QByteArray> changed = lines;
            changed[i] = line;
            return changed.join('\n');
        };
        QTest::newRow(qPrintable(QLatin1String("blank at the end of line ") + number))
            << with(lines.at(i) + ' ');
        QTest::newRow(qPrintable(QLatin1String("comment at the end of line ") + number))
            << with(lines.at(i) + " # more");
        QTest::newRow(qPrintable(QLatin1String("blank at the beginning of line ") + number))
            << with(' ' + lines.at(i));
        QTest::newRow(qPrintable(QLatin1String("carriage return in line ") + number))
            << with(lines.at(i) + '\r');
        QTest::newRow(qPrintable(QLatin1String("statement in line ") + number))
            << with(lines.at(i) + " @include \"/tmp/x\"");
        QList<QByteArray> without = lines;
        without.removeAt(i);
        QTest::newRow(qPrintable(QLatin1String("without line ") + number)) << without.join('\n');
        QList<QByteArray> twice = lines;
        twice.insert(i, lines.at(i));
        QTest::newRow(qPrintable(QLatin1String("twice line ") + number)) << twice.join('\n');
    }
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("cut") << sampleFragment().chopped(1);
    QTest::newRow("two empty lines at the end") << sampleFragment() + "\n\n";
    QTest::newRow("another statement") << sampleFragment() + "log { };\n";
    QTest::newRow("oversized") << QByteArray(FragmentCheck::sizeLimit + 1, '\n');
}

void FragmentCheckTest::refusesAnyLineThatDiffers()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = FragmentCheck::check(sampleName(), content);
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(sampleName()), qPrintable(outcome.error()));
}

void FragmentCheckTest::refusesValuesThatMeanMore_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("quote that ends the title") << QByteArray("Failed login") << QByteArray("a\" \"b");
    QTest::newRow("backslash in the title") << QByteArray("Failed login") << QByteArray("a\\nb");
    QTest::newRow("two backslashes before a quote") << QByteArray("Failed login") << QByteArray("a\\\\\"b");
    QTest::newRow("backslash at the title's end") << QByteArray("Failed login") << QByteArray("a\\");
    QTest::newRow("backtick in the title") << QByteArray("Failed login") << QByteArray("`sysconfdir`");
    QTest::newRow("tab in the title") << QByteArray("Failed login") << QByteArray("a\tb");
    QTest::newRow("escape character in the title") << QByteArray("Failed login") << QByteArray("a\x1b[1m");
    QTest::newRow("line separator in the title")
        << QByteArray("Failed login") << QByteArray("a\xe2\x80\xa8z");
    QTest::newRow("zero in the title") << QByteArray("Failed login") << QByteArray("a\0b", 3);
    QTest::newRow("no UTF-8") << QByteArray("Failed login") << QByteArray("\xff");
    QTest::newRow("half a character") << QByteArray("Failed login") << QByteArray("\xed\xa0\x80");
    QTest::newRow("long title") << QByteArray("Failed login") << QByteArray(1001, 'x');
    QTest::newRow("unknown user") << QByteArray("@all") << QByteArray("root");
    QTest::newRow("unknown group") << QByteArray("nivra-admin") << QByteArray("users");
    QTest::newRow("user without group") << QByteArray("nivra-admin") << QByteArray();
    QTest::newRow("another key") << QByteArray("aBC") << QByteArray("abc");
    QTest::newRow("wrong number of places") << QByteArray("{0} {1}") << QByteArray("{0}");
    QTest::newRow("places out of order") << QByteArray("{0} {1}") << QByteArray("{1} {0}");
    QTest::newRow("format with text") << QByteArray("{0} {1}") << QByteArray("{0}, {1}");
    QTest::newRow("empty parameter") << QByteArray("user,terminal") << QByteArray("user,");
    QTest::newRow("blank before a parameter") << QByteArray("user,terminal") << QByteArray("user, terminal");
    QTest::newRow("quote in a parameter") << QByteArray("user,terminal") << QByteArray("user\",\"terminal");
    QTest::newRow("backtick in a parameter") << QByteArray("user,terminal") << QByteArray("user,`x`");
    QTest::newRow("another type in one place")
        << QByteArray("\"message_type\", \"auth\"") << QByteArray("\"message_type\", \"file\"");
    QTest::newRow("regular expression as type") << QByteArray("auth") << QByteArray("a.*");
    QTest::newRow("empty type") << QByteArray("auth") << QByteArray();
    QTest::newRow("another event") << QByteArray("a-b_c") << QByteArray("a-b_d");
    QTest::newRow("same file, other identifier in one place")
        << QByteArray("\"a-b_c\"") << QByteArray("\"a_b_c\"");
    QTest::newRow("regular expression as identifier") << QByteArray("a-b_c") << QByteArray("a.b_c");
    QTest::newRow("empty identifier") << QByteArray("a-b_c") << QByteArray();
    QTest::newRow("another class") << QByteArray("NivraSyslogNgDestination") << QByteArray("Other");
    QTest::newRow("another destination") << QByteArray("python(") << QByteArray("program(");
    QTest::newRow("another parser") << QByteArray("nivra_events_parser") << QByteArray("other_parser");
    QTest::newRow("icon") << QByteArray("\"event_icon\", \"\"") << QByteArray("\"event_icon\", \"x\"");
}

void FragmentCheckTest::refusesValuesThatMeanMore()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QByteArray content = sampleFragment();
    QVERIFY(content.contains(before));
    content.replace(before, after);
    const Outcome outcome = FragmentCheck::check(sampleName(), content);
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(sampleName()), qPrintable(outcome.error()));
}

void FragmentCheckTest::knowsTheFragmentsByTheirPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("fileName");
    const QString folder = QStringLiteral("/etc/syslog-ng/conf.d/");
    for (const char *name : {"mod-nivra-a_b_c.conf", "mod-nivra-a-b.conf", "mod-nivra-X9.conf"}) {
        QTest::newRow(name) << folder + QLatin1String(name) << QString(QLatin1String(name));
    }
    for (const char *path :
         {"", "/", "/etc/syslog-ng/conf.d/", "/etc/syslog-ng/conf.d/mod-nivra.conf",
          "/etc/syslog-ng/conf.d/mod-nivra-.conf", "/etc/syslog-ng/conf.d/mod-nivra-a.b.conf",
          "/etc/syslog-ng/conf.d/mod-nivra-a/../../passwd.conf", "/etc/syslog-ng/conf.d/mod-nivra-a.conf\n",
          "/etc/syslog-ng/conf.d/mod-nivra-a.conf/", "/etc/syslog-ng/conf.d//mod-nivra-a.conf",
          "/etc/syslog-ng/./conf.d/mod-nivra-a.conf", "/etc/syslog-ng/mod-nivra-a.conf",
          "etc/syslog-ng/conf.d/mod-nivra-a.conf", "mod-nivra-a.conf", "/etc/syslog-ng/conf.d/other.conf",
          "/etc/syslog-ng/conf.d/mod-nivra-a b.conf", "/etc/nivra-syslog.conf",
          "/etc/syslog-ng/conf.d/mod-nivra-a.confx"}) {
        QTest::newRow(qPrintable(QLatin1String("refused: ") + QLatin1String(path)))
            << QString(QLatin1String(path)) << QString();
    }
    QTest::newRow("refused: long") << folder + QLatin1String("mod-nivra-") + QString(129, QLatin1Char('a'))
            + QLatin1String(".conf")
                                   << QString();
    QTest::newRow("refused: letters of other alphabets")
        << folder + QStringLiteral("mod-nivra-а.conf") << QString();
}

void FragmentCheckTest::knowsTheFragmentsByTheirPaths()
{
    QFETCH(QString, path);
    QFETCH(QString, fileName);
    const Result<QString> found = FragmentCheck::fileNameOf(path);
    QCOMPARE(found.ok(), !fileName.isEmpty());
    if (found.ok()) {
        QCOMPARE(found.value(), fileName);
    } else {
        QVERIFY2(found.error().contains(QLatin1Char('"') + path + QLatin1Char('"')),
                 qPrintable(found.error()));
    }
}

QTEST_GUILESS_MAIN(FragmentCheckTest)

#include "fragmentchecktest.moc"
