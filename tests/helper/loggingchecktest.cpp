// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "loggingcheck.h"

#include <cpuclock.h>

#include <QFile>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

Outcome check(const QByteArray &content, const QList<QByteArray> &former = {})
{
    return LoggingCheck::check(QStringLiteral("/etc/main.conf"), content, former);
}

} // namespace

/** Which texts may become the main configuration. */
class LoggingCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesWhatOnlyMovesRecords_data();
    void takesWhatOnlyMovesRecords();
    void takesTheShippedFile();
    void refusesWhatIsOutOfBalance_data();
    void refusesWhatIsOutOfBalance();
    void refusesWhatBringsMoreIn_data();
    void refusesWhatBringsMoreIn();
    void takesWhatTheFileAlreadyHas_data();
    void takesWhatTheFileAlreadyHas();
    void refusesWhatOnlyResemblesTheFormer_data();
    void refusesWhatOnlyResemblesTheFormer();
    void namesTheLineOfTheFirstFinding();
    void takesTimeInProportion();
};

void LoggingCheckTest::takesWhatOnlyMovesRecords_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *tag, const char *content) { QTest::newRow(tag) << QByteArray(content); };
    row("empty", "");
    row("comment", "# program(\"x\") { ( \" '\n");
    row("file", "destination d { file(\"/var/log/x y\" perm(0600)); };");
    row("file without quotes", "destination d { file(/var/log/x.log); };");
    row("file with macros", "destination d { file(\"/var/log/$HOST/${YEAR}.log\"); };");
    row("file in a home", "destination d { file(\"/home/ann/events\"); };");
    row("terminal", "destination d { file(\"/dev/tty12\"); pipe(\"/dev/xconsole\"); };");
    row("kernel", "source s { file(\"/proc/kmsg\" program-override(\"kernel\")); };");
    row("network",
        "destination n {\n    network(\"10.0.0.1\" port(514) transport(tcp) flags(syslog-protocol));\n};\n");
    row("socket", "source s { unix-dgram(\"/run/syslog-ng/x\" perm(0600)); system(); internal(); };");
    row("program as a filter", "filter f { program(\"sshd\") and not program('su' type(string)); };");
    row("program as a filter, inside", "log { source(s); filter { program(\"x\"); }; destination(d); };");
    row("program as a condition",
        "log { if (program(\"x\")) { destination(d); } elif (level(err) or program(y)) { destination(e); }; "
        "};");
    row("program as a condition of a rewrite",
        "rewrite r { set(\"x\", value(\"M\") condition(program(\"y\"))); };");
    row("words in strings", "filter f { match(\"program(x) python( `\\\"\" value('exec(')); };");
    row("more words in names", "source python { file(\"/var/log/p\"); }; log { source(python); };");
    row("words in names", "destination program { file(\"/var/log/p\"); }; log { destination(program); };");
    row("version", "@version: 3.38\n@requires json-parser\n");
    row("own class", "destination d { python(class(\"syslog_ng_mod_nivra.x.Y\") options(\"a\", \"b\")); };");
    row("comment within parentheses", "destination d { network(\"h\" # the port( )\n port(1)); };");
    row("empty statements", ";;; log { };;");
    row("escapes", "template t { template(\"\\\"$MSG\\\" \\\\\"); };");
    row("quotes of the other kind", "template t { template('\"') ; template(\"'\"); };");
    row("parser",
        "parser p { db-parser(file(\"/var/patterns.xml\")); csv-parser(columns(\"A\", \"B\") delimiters(\" "
        "\")); };");
}

void LoggingCheckTest::takesWhatOnlyMovesRecords()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = check(content);
    if (QByteArray(QTest::currentDataTag()) == "words in strings") {
        // A backtick works in strings as well.
        QVERIFY(!outcome.ok());
        QVERIFY(check(content.replace("`", "")).ok());
        return;
    }
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void LoggingCheckTest::takesTheShippedFile()
{
    QFile file(QStringLiteral(ADMINEVENTS_DATA "/syslog-ng/mod-nivra.conf"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const Outcome outcome = check(file.readAll());
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void LoggingCheckTest::refusesWhatIsOutOfBalance_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("line");
    QTest::newRow("open brace") << QByteArray("\nlog {\n source(s);\n") << 2;
    QTest::newRow("open parenthesis") << QByteArray("log {\n source(s;\n};\n") << 3;
    QTest::newRow("closed too often") << QByteArray("log { };\n};\n") << 2;
    QTest::newRow("wrong kind") << QByteArray("log (\n}") << 2;
    QTest::newRow("open quote") << QByteArray("log {\n};\ndestination d { file(\"/x); };\n") << 3;
    QTest::newRow("open single quote") << QByteArray("'") << 1;
    QTest::newRow("escape at the end") << QByteArray("\"\\") << 1;
    QTest::newRow("nested too deeply") << QByteArray(300, '(') + QByteArray(300, ')') << 1;
    QTest::newRow("brace in a comment does not count") << QByteArray("log {\n# }\n") << 1;
}

void LoggingCheckTest::refusesWhatIsOutOfBalance()
{
    QFETCH(QByteArray, content);
    QFETCH(int, line);
    const Outcome outcome = check(content);
    QVERIFY2(outcome.error().contains(QStringLiteral("Line %1 ").arg(line)), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("counterpart")), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("\"/etc/main.conf\"")), qPrintable(outcome.error()));
}

void LoggingCheckTest::refusesWhatBringsMoreIn_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *tag, const char *content) { QTest::newRow(tag) << QByteArray(content); };
    row("program destination", "destination d { program(\"/bin/sh\"); };");
    row("program source", "source d { program(\"/bin/sh\"); };");
    row("program without quotes", "source d { program(reboot); };");
    row("blanks before the parenthesis", "source d { program\n\t (\"x\"); };");
    row("comment before the parenthesis", "source d { program # filter\n (\"x\"); };");
    row("directive before the parenthesis", "source d { program\n@requires x\n(\"x\"); };");
    row("inside a log path", "log { source { program(\"x\"); }; };");
    row("inside a channel", "log { channel { destination { program(\"x\"); }; }; };");
    row("a filter by name", "destination filter { program(\"x\"); };");
    row("after a filter", "filter f { level(err); }; destination d { program(\"x\"); };");
    row("capital letters", "destination d { PROGRAM(\"x\"); };");
    row("block", "block destination d() { file(\"/var/log/x\"); };");
    row("program in a block", "block filter f() { program(\"x\") };");
    row("python", "destination d { python(class(\"os.x\")); };");
    row("program in own class",
        "destination d { python(class(\"syslog_ng_mod_nivra.x\") y(program(\"x\"))); };");
    row("python code", "python {\nimport os\n};");
    row("python with loaders",
        "destination d { python(class(\"syslog_ng_mod_nivra.x\") loaders(\"/tmp\")); };");
    row("python without class", "destination d { python(\"syslog_ng_mod_nivra.x\"); };");
    row("similar class", "destination d { python(class(\"syslog_ng_mod_nivra_x.Y\")); };");
    row("python fetcher", "source s { python-fetcher(class(\"x\")); };");
    row("python with the other sign", "source s { python_fetcher(class(\"x\")); };");
    row("python header", "destination d { http(url(\"u\") python_http_header(class(\"x\"))); };");
    row("java", "destination d { java(class-name(\"x\") class-path(\"/tmp\")); };");
    row("hooks", "source s { file(\"/var/log/x\" hook-commands(startup(\"reboot\"))); };");
    row("hooks with the other sign",
        "source s { file(\"/var/log/x\" hook_commands(startup(\"reboot\"))); };");
    row("generated configuration", "@module confgen context(source) name(x) exec(\"reboot\")\n");
    row("module", "@module mod-python\n");
    row("include", "@include \"/tmp/x\"\n");
    row("include as a statement", "include \"/tmp/x\";\n");
    row("definition", "@define x \"y\"\n");
    row("directive after blanks", "  \t@include \"/tmp/x\"\n");
    row("directive after a statement", "log { }; @include \"/tmp/x\"\n");
    row("backticks", "destination d { `x`(\"y\"); };");
    row("backticks in a string", "destination d { file(\"/var/log/`x`\"); };");
    row("backticks in a comment", "# `x`\n");
    row("one backtick", "# `\n");
    row("comment that may be none", "destination d { x( # ) }; destination e { program(\"y\") };\n ); };");
    row("directory of programs", "destination d { file(\"/usr/bin/x\"); };");
    row("directory of jobs",
        "destination d { file(\"/etc/cron.d/x\" template(\"* * * * * root reboot\\n\")); };");
    row("without quotes", "destination d { file(/etc/cron.d/x); };");
    row("with two slashes", "destination d { file(\"//etc/cron.d/x\"); };");
    row("over a parent", "destination d { file(\"/var/log/../../etc/x\"); };");
    row("relative", "destination d { file(\"etc/x\"); };");
    row("hidden", "destination d { file(\"/root/.ssh/authorized_keys\"); };");
    row("macro in front", "destination d { file(\"/${HOST}/x\"); };");
    row("macro at the beginning of a name", "destination d { file(\"/e$X/x\"); };");
    row("macro before a directory of jobs", "destination d { file(\"/var/$X/cron/x\"); };");
    row("escape", "destination d { file(\"/\\x65tc/x\"); };");
    row("disk", "destination d { file(\"/dev/sda\"); };");
    row("terminal that is none", "destination d { file(\"/dev/tty1/../sda\"); };");
    row("kernel settings", "destination d { pseudofile(\"/sys/power/state\" template(\"mem\")); };");
    row("pipe", "destination d { pipe(\"/etc/x\"); };");
    row("many files", "source s { wildcard-file(base-dir(\"/etc\") filename-pattern(\"shadow\")); };");
    row("comment before a file", "destination d { file( # x\n \"/etc/x\"); };");
    row("secrets as a source", "source s { file(\"/etc/shadow\"); };");
}

void LoggingCheckTest::refusesWhatBringsMoreIn()
{
    QFETCH(QByteArray, content);
    const Outcome outcome = check(content);
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1String("which the present one does not")),
             qPrintable(outcome.error()));
    QVERIFY(!check(content, {"log { };"}).ok());
    // The same is allowed where it already is, also after the page wrote the rest anew.
    QVERIFY(check(content, {content}).ok());
    QVERIFY(check(content + "\nlog { };\n", {content}).ok());
    QVERIFY(check(content + "\nlog { };\n", {"log { };", content}).ok());
}

void LoggingCheckTest::takesWhatTheFileAlreadyHas_data()
{
    QTest::addColumn<QByteArray>("former");
    QTest::addColumn<QByteArray>("content");
    const QByteArray former(
        "@include \"scl.conf\"\n# my script\ndestination d { program(\"/opt/x\" flush-lines(1)); };\n");
    QTest::newRow("written in another way")
        << former
        << QByteArray("@include \"scl.conf\"\ndestination d {\n    "
                      "program(\"/opt/x\"\nflush-lines(1));\n};\nlog {\n};\n");
    QTest::newRow("less of it") << former << QByteArray("@include  \"scl.conf\"\n");
    QTest::newRow("not sound, as it stands") << QByteArray("log { \"") << QByteArray("log { \"");
    QTest::newRow("python code") << QByteArray("python {\nimport os # don't\n};\nlog { };")
                                 << QByteArray("log { };\npython {\nimport os\n};\n");
}

void LoggingCheckTest::takesWhatTheFileAlreadyHas()
{
    QFETCH(QByteArray, former);
    QFETCH(QByteArray, content);
    const Outcome outcome = check(content, {former});
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void LoggingCheckTest::refusesWhatOnlyResemblesTheFormer_data()
{
    QTest::addColumn<QByteArray>("former");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("another argument") << QByteArray("destination d { program(\"/opt/x\"); };")
                                      << QByteArray("destination d { program(\"/opt/y\"); };");
    QTest::newRow("one more argument")
        << QByteArray("destination d { program(\"/opt/x\"); };")
        << QByteArray("destination d { program(\"/opt/x\" template(\"y\")); };");
    QTest::newRow("a filter becomes a program") << QByteArray("filter f { program(\"/opt/x\"); };")
                                                << QByteArray("destination f { program(\"/opt/x\"); };");
    QTest::newRow("a comment becomes code") << QByteArray("# destination d { program(\"/opt/x\"); };")
                                            << QByteArray("destination d { program(\"/opt/x\"); };");
    QTest::newRow("a string becomes code") << QByteArray("template t { template('program(\"/opt/x\")'); };")
                                           << QByteArray("destination d { program(\"/opt/x\"); };");
    QTest::newRow("quotes within quotes") << QByteArray("destination d { program(\"a\" b(\"c\")); };")
                                          << QByteArray("destination d { program('a\" b(\"c')); };");
    QTest::newRow("another file") << QByteArray("destination d { file(\"/etc/x\"); };")
                                  << QByteArray("destination d { file(\"/etc/y\"); };");
    QTest::newRow("another file to include")
        << QByteArray("@include \"scl.conf\"\n") << QByteArray("@include \"x.conf\"\n");
}

void LoggingCheckTest::refusesWhatOnlyResemblesTheFormer()
{
    QFETCH(QByteArray, former);
    QFETCH(QByteArray, content);
    QVERIFY(!check(content, {former}).ok());
}

void LoggingCheckTest::namesTheLineOfTheFirstFinding()
{
    const Outcome outcome = check("log {\n};\n'two\nlines';\ndestination d { program(\"\x07reboot\"); };\n");
    QVERIFY2(outcome.error().contains(QLatin1String("Line 5 ")), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("reboot")), qPrintable(outcome.error()));
    QVERIFY(!outcome.error().contains(QChar(7)));
}

void LoggingCheckTest::takesTimeInProportion()
{
    const QList<QByteArray> pieces{"destination d { file(\"/var/log/x\"); };\n",
                                   "(",
                                   "`",
                                   "@a\n",
                                   "\"",
                                   "program(",
                                   "# x\n",
                                   "x program python(class(\"syslog_ng_mod_nivra.\"",
                                   "program();",
                                   "file(",
                                   "python ",
                                   "(program)",
                                   "a(#b program\n"};
    for (const QByteArray &piece : pieces) {
        const CpuClock clock;
        (void)check(piece.repeated(4000000 / piece.size()), {"log { };"});
        // Some hundred milliseconds; a search within a search would take hours.
        QVERIFY2(clock.elapsed() < 10000, piece.constData());
    }
}

QTEST_GUILESS_MAIN(LoggingCheckTest)

#include "loggingchecktest.moc"
