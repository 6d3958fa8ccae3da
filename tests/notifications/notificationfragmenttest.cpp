// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfragment.h"
#include "fragmentoptions.h"
#include "notificationcheck.h"
#include "notificationname.h"

#include <commonwriter.h>
#include <configaccessservice.h>
#include <treeitem.h>

#include <QTest>

/** The text of a notification fragment, and reading its options back. */
class NotificationFragmentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theKeyRaisesWhatFollowsASeparator_data();
    void theKeyRaisesWhatFollowsASeparator();
    void namesOfTheFragment();
    void theFragmentToTheLetter();
    void recipients_data();
    void recipients();
    void noParametersGiveAnEmptyMessage();
    void titleIsEscapedAndNeverSubstituted();
    void readsItsOwnOptionsBack();
    void splitsAnOptionLine_data();
    void splitsAnOptionLine();
    void otherLinesThatHoldAnOptionsWordHaveNoValue();
    void aTitleThatReadingCutsIsKnown_data();
    void aTitleThatReadingCutsIsKnown();
    void titlesThatCannotBeStored_data();
    void titlesThatCannotBeStored();
    void settingsThatCannotBeStored_data();
    void settingsThatCannotBeStored();
    void eventsThatCannotHaveNotifications_data();
    void eventsThatCannotHaveNotifications();

private:
    static NotificationFragment sample();
    static QStringList lines(const NotificationFragment &fragment);
};

NotificationFragment NotificationFragmentTest::sample()
{
    NotificationFragment fragment;
    fragment.messageId = QStringLiteral("a-b_c");
    fragment.messageType = QStringLiteral("auth");
    fragment.title = QStringLiteral("Failed login");
    fragment.parameters = QStringList{QStringLiteral("user"), QStringLiteral("terminal")};
    return fragment;
}

QStringList NotificationFragmentTest::lines(const NotificationFragment &fragment)
{
    ConfigAccessService service(nullptr);
    CommonWriter writer(service, NotificationName::fragmentPath(fragment.messageId));
    return fragment.lines(writer);
}

void NotificationFragmentTest::theKeyRaisesWhatFollowsASeparator_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("key");
    QTest::newRow("both") << QStringLiteral("user_login-failed") << QStringLiteral("userLoginFailed");
    QTest::newRow("dash first") << QStringLiteral("a-b_c") << QStringLiteral("aBC");
    QTest::newRow("neither") << QStringLiteral("coredumped") << QStringLiteral("coredumped");
    QTest::newRow("at the end") << QStringLiteral("a-") << QStringLiteral("a");
    QTest::newRow("at the beginning") << QStringLiteral("_a") << QStringLiteral("A");
    QTest::newRow("in a row") << QStringLiteral("a-_b") << QStringLiteral("aB");
    QTest::newRow("before a digit") << QStringLiteral("a_1b") << QStringLiteral("a1b");
    QTest::newRow("capitals stay") << QStringLiteral("aB-cD") << QStringLiteral("aBCD");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("separators only") << QStringLiteral("-_") << QString();
}

void NotificationFragmentTest::theKeyRaisesWhatFollowsASeparator()
{
    QFETCH(QString, id);
    QTEST(NotificationName::key(id), "key");
}

void NotificationFragmentTest::namesOfTheFragment()
{
    QCOMPARE(NotificationName::fragmentPath(QStringLiteral("a-b_c")),
             QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf"));
    QCOMPARE(NotificationName::fromFragmentFile(QStringLiteral("mod-nivra-a_b_c.conf")),
             QStringLiteral("a_b_c"));
    QCOMPARE(NotificationName::canonical(QStringLiteral("a_b_c")),
             NotificationName::canonical(QStringLiteral("a-b-c")));
    QVERIFY(!NotificationName::isFragmentFile(QStringLiteral("mod-nivra.conf")));
    QVERIFY(NotificationName::isFragmentFile(QStringLiteral("mod-nivra-.conf")));
}

void NotificationFragmentTest::theFragmentToTheLetter()
{
    const QStringList expected{
        QStringLiteral("filter nivra_a-b_c_filter {"),
        QStringLiteral("    match(\"^a-b_c$\" value(\"MSG.nivra-auth.message_id\"));"),
        QStringLiteral("};"),
        QStringLiteral("destination nivra_a-b_c_dbus_dst {"),
        QStringLiteral("    python("),
        QStringLiteral(
            "\tclass(\"syslog_ng_mod_nivra.nivra_syslog_ng_destination.NivraSyslogNgDestination\")"),
        QStringLiteral("\toptions(\"destination_type\", \"dbus\""),
        QStringLiteral("\t\t\"message_type\", \"auth\""),
        QStringLiteral("\t\t\"event_user\", \"@all\""),
        QStringLiteral("\t\t\"event_group\", \"@all\""),
        QStringLiteral("\t\t\"event_id\", \"aBC\""),
        QStringLiteral("\t\t\"event_title\", \"Failed login\""),
        QStringLiteral("\t\t\"event_icon\", \"\""),
        QStringLiteral("\t\t\"event_params\", \"user,terminal\""),
        QStringLiteral("\t\t\"event_format\", \"{0} {1}\")"),
        QStringLiteral("\tpersist-name(\"a-b_c\")"),
        QStringLiteral("\t);"),
        QStringLiteral("};"),
        QStringLiteral("log {"),
        QStringLiteral("    source(nivra_events_src);"),
        QStringLiteral("    parser(nivra_events_parser);"),
        QStringLiteral("    filter(nivra_a-b_c_filter);"),
        QStringLiteral("    destination(nivra_a-b_c_dbus_dst);"),
        QStringLiteral("};"),
    };
    QCOMPARE(lines(sample()), expected);
}

void NotificationFragmentTest::recipients_data()
{
    QTest::addColumn<int>("choice");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("group");
    QTest::newRow("all") << 0 << QStringLiteral("@all") << QStringLiteral("@all");
    QTest::newRow("administrators") << 1 << QStringLiteral("@all") << QStringLiteral("nivra-admin");
    QTest::newRow("of the event") << 2 << QString() << QString();
}

void NotificationFragmentTest::recipients()
{
    QFETCH(int, choice);
    QFETCH(QString, user);
    QFETCH(QString, group);
    NotificationFragment fragment = sample();
    fragment.recipients = NotificationFragment::Recipients(choice);
    const QStringList text = lines(fragment);
    QCOMPARE(text.at(8), QString(QLatin1String("\t\t\"event_user\", \"") + user + QLatin1Char('"')));
    QCOMPARE(text.at(9), QString(QLatin1String("\t\t\"event_group\", \"") + group + QLatin1Char('"')));
    QCOMPARE(FragmentOptions::read(text).recipients(), choice);
}

void NotificationFragmentTest::noParametersGiveAnEmptyMessage()
{
    NotificationFragment fragment = sample();
    fragment.parameters.clear();
    const QStringList text = lines(fragment);
    QCOMPARE(text.at(13), QStringLiteral("\t\t\"event_params\", \"\""));
    QCOMPARE(text.at(14), QStringLiteral("\t\t\"event_format\", \"\")"));
    QCOMPARE(FragmentOptions::read(text).parameters, QStringList());
}

void NotificationFragmentTest::titleIsEscapedAndNeverSubstituted()
{
    NotificationFragment fragment = sample();
    fragment.title = QStringLiteral("%1 \"%8\" %%6");
    QCOMPARE(lines(fragment).at(11), QStringLiteral("\t\t\"event_title\", \"%1 \\\"%8\\\" %%6\""));
}

void NotificationFragmentTest::readsItsOwnOptionsBack()
{
    NotificationFragment fragment = sample();
    fragment.title = QStringLiteral("Неудачный вход: event_user event_params");
    const FragmentOptions options = FragmentOptions::read(lines(fragment));
    QCOMPARE(options.title, fragment.title);
    QCOMPARE(options.parameters, fragment.parameters);
    QCOMPARE(options.recipients(), 0);
    QVERIFY(!options.titleWasCut);
}

void NotificationFragmentTest::splitsAnOptionLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("parameters") << QStringLiteral("\t\t\"event_params\", \"a,b\"")
                                << QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("empty value") << QStringLiteral("\t\t\"event_user\", \"\"") << QStringList{QString()};
    QTest::newRow("two blanks") << QStringLiteral("x,  a") << QStringList{QStringLiteral(" a")};
    QTest::newRow("empty parts") << QStringLiteral("x,,a,")
                                 << QStringList{QString(), QStringLiteral("a"), QString()};
    QTest::newRow("no comma") << QStringLiteral("x") << QStringList();
    QTest::newRow("nothing") << QString() << QStringList();
}

void NotificationFragmentTest::splitsAnOptionLine()
{
    QFETCH(QString, line);
    QTEST(FragmentOptions::values(line), "values");
}

void NotificationFragmentTest::otherLinesThatHoldAnOptionsWordHaveNoValue()
{
    for (const char *word : {"event_user", "event_group", "event_title", "event_params"}) {
        NotificationFragment fragment = sample();
        fragment.messageId = QLatin1String(word);
        fragment.messageType = QLatin1String(word);
        fragment.title = QLatin1String(word);
        const FragmentOptions options = FragmentOptions::read(lines(fragment));
        QCOMPARE(options.recipients(), 0);
        QCOMPARE(options.title, fragment.title);
        QCOMPARE(options.parameters, fragment.parameters);
    }
}

void NotificationFragmentTest::aTitleThatReadingCutsIsKnown_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("cut");
    QTest::newRow("whole") << QStringLiteral("\t\t\"event_title\", \"a b\"") << QStringLiteral("a b")
                           << false;
    QTest::newRow("comma") << QStringLiteral("\t\t\"event_title\", \"a, b\"") << QStringLiteral("a") << true;
    QTest::newRow("quote") << QStringLiteral("\t\t\"event_title\", \"a \\\"b\\\"\"")
                           << QStringLiteral("a \\b\\") << true;
    QTest::newRow("blank first") << QStringLiteral("\t\t\"event_title\",\" a\"") << QStringLiteral("a")
                                 << true;
}

void NotificationFragmentTest::aTitleThatReadingCutsIsKnown()
{
    QFETCH(QString, line);
    const FragmentOptions options = FragmentOptions::read({line});
    QTEST(options.title, "title");
    QTEST(options.titleWasCut, "cut");
}

void NotificationFragmentTest::titlesThatCannotBeStored_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("good");
    for (const char *title : {"Failed login", "", "100% $x (a) [b] {0} #c;d:e = f'g", "%1"}) {
        QTest::newRow(title) << QString(QLatin1String(title)) << true;
    }
    QTest::newRow("Russian") << QStringLiteral("Неудачный вход — «x»") << true;
    QTest::newRow("pair") << QString::fromUtf8("\xf0\x9f\x94\x92") << true;
    QTest::newRow("half a pair") << QString(QChar(0xd83d)) << false;
    for (const char *title : {"a,b", "a\"b", "a\\b", "a`b", "a\nb", "a\tb", "a\x7f", " a", "a "}) {
        QTest::newRow(title) << QString(QLatin1String(title)) << false;
    }
    QTest::newRow("line separator") << QString(QChar(QChar::LineSeparator)) << false;
    QTest::newRow("longest") << QString(1000, QLatin1Char('x')) << true;
    QTest::newRow("too long") << QString(1001, QLatin1Char('x')) << false;
}

void NotificationFragmentTest::titlesThatCannotBeStored()
{
    QFETCH(QString, title);
    QFETCH(bool, good);
    const QString problem = NotificationCheck::titleProblem(title);
    QVERIFY2(problem.isEmpty() == good, qPrintable(problem));
    if (good) {
        // What is taken comes back as it was.
        NotificationFragment fragment = sample();
        fragment.title = title;
        const FragmentOptions options = FragmentOptions::read(lines(fragment));
        QCOMPARE(options.title, title);
        QVERIFY(!options.titleWasCut);
    }
}

void NotificationFragmentTest::settingsThatCannotBeStored_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("good");
    for (const char *value : {"", "/usr/bin/x -a 'b c' `d` $(e), \"f\"", "/x#y;z"}) {
        QTest::newRow(value) << QString(QLatin1String(value)) << true;
    }
    QTest::newRow("Russian") << QStringLiteral("/домой/файл") << true;
    for (const char *value : {"a=b", "a\\b", "a\nb", "a\rb", "a\tb", " a", "a ", "a  b"}) {
        QTest::newRow(value) << QString(QLatin1String(value)) << false;
    }
    QTest::newRow("hard blanks") << QString(QStringLiteral("a") + QChar(0xa0) + QChar(0xa0)
                                            + QStringLiteral("b"))
                                 << false;
}

void NotificationFragmentTest::settingsThatCannotBeStored()
{
    QFETCH(QString, value);
    QFETCH(bool, good);
    const QString problem = NotificationCheck::settingProblem(QStringLiteral("Command"), value);
    QVERIFY2(problem.isEmpty() == good, qPrintable(problem));
    QCOMPARE(problem.contains(QLatin1String("Command")), !good);
}

void NotificationFragmentTest::eventsThatCannotHaveNotifications_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("good");
    const QString type = QStringLiteral("auth");
    for (const char *id :
         {"a-b_c", "if", "if-a", "a-if", "a_if_b", "notify-x", "channel", "sub-channels-x"}) {
        QTest::newRow(id) << QString(QLatin1String(id)) << type << true;
    }
    for (const char *id :
         {"", "a.b", "a b", "a+", "^a", "a$", "a/b", "a-if-b", "a-channel-b", "a\"b", "../a"}) {
        QTest::newRow(qPrintable(QLatin1String("bad ") + QLatin1String(id)))
            << QString(QLatin1String(id)) << type << false;
    }
    QTest::newRow("long") << QString(129, QLatin1Char('a')) << type << false;
    QTest::newRow("bad type") << QStringLiteral("a") << QStringLiteral("a.b") << false;
    QTest::newRow("no type") << QStringLiteral("a") << QString() << false;
}

void NotificationFragmentTest::eventsThatCannotHaveNotifications()
{
    QFETCH(QString, id);
    QFETCH(QString, type);
    QFETCH(bool, good);
    const QString problem = NotificationCheck::eventProblem(id, type);
    QVERIFY2(problem.isEmpty() == good, qPrintable(problem));
    // What is refused for its words is what the writer would write with braces.
    NotificationFragment fragment = sample();
    fragment.messageId = id;
    const bool braces = lines(fragment).join(QLatin1Char('\n')).contains(QLatin1String("destination{"));
    QVERIFY(!braces || !good);
    if (good) {
        QVERIFY(!braces);
    }
}

QTEST_GUILESS_MAIN(NotificationFragmentTest)

#include "notificationfragmenttest.moc"
