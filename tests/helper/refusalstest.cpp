// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "refusalfixture.h"

#include <QTest>

namespace {

constexpr int longText = 5000;

struct Hostile
{
    const char *tag;
    QString text;
};

/** Texts that are no path of a file that any request may name. */
QList<Hostile> hostilePaths(const QString &sound)
{
    const QString name = sound.section(QLatin1Char('/'), -1);
    const QString directory = sound.chopped(name.size() + 1);
    return {{"empty", QString()},
            {"oversized", QString(longText, QLatin1Char('x'))},
            {"oversized and absolute", directory + QLatin1Char('/') + QString(longText, QLatin1Char('x'))},
            {"zero at the end", sound + QChar(0)},
            {"zero inside", directory + QChar(0) + QLatin1Char('/') + name},
            {"newline at the end", sound + QLatin1Char('\n')},
            {"newline inside", directory + QLatin1String("/\n") + name},
            {"two dots", directory + QLatin1String("/x/../") + name},
            {"only two dots", QStringLiteral("..")},
            {"one dot", directory + QLatin1String("/./") + name},
            {"relative", sound.mid(1)},
            {"only the name", name},
            {"absolute elsewhere", QStringLiteral("/etc/shadow")},
            {"the directory", directory},
            {"slash at the end", sound + QLatin1Char('/')},
            {"two slashes", directory + QLatin1String("//") + name},
            {"blank at the end", sound + QLatin1Char(' ')},
            {"root", QStringLiteral("/")}};
}

/** What a hostile text has to be named by in the refusal. */
QString nameOf(const Hostile &hostile, const QString &key)
{
    const bool isAboutTheArgument = hostile.text.size() >= longText || hostile.text.contains(QChar(0));
    return QLatin1Char('"') + (isAboutTheArgument ? key : hostile.text) + QLatin1Char('"');
}

/** A text of a request as a refusal shows it. */
QString asShown(QString text)
{
    return text.replace(QLatin1Char('\n'), QChar(QChar::ReplacementCharacter));
}

QVariantMap changed(QVariantMap arguments, const QString &key, const QVariant &value)
{
    arguments.insert(key, value);
    return arguments;
}

} // namespace

/**
 * Requests that no honest program sends, of every kind and for every verb, through the framework to the real
 * helper: each is refused with a text that names what is wrong, and nothing changes.
 */
class RefusalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init() { QVERIFY(m_fixture.forgetServiceCalls()); }

    void grantsWhatIsSound_data();
    void grantsWhatIsSound();
    void refusesArguments_data();
    void refusesArguments();
    void refusesTexts_data();
    void refusesTexts() { refusesArguments(); }
    void refusesContents_data();
    void refusesContents() { refusesArguments(); }
    void refusesNotifications_data();
    void refusesNotifications() { refusesArguments(); }
    void refusesAuditSettings_data();
    void refusesAuditSettings() { refusesArguments(); }
    void everyArgumentOfEveryVerbWasTried();

private:
    static void addColumns();
    void addRow(const QString &tag, const QString &verb, const QVariantMap &arguments, const QString &named);

    RefusalFixture m_fixture;
    QMap<QString, int> m_tried; ///< by verb and argument: values of the right type that are not sound
    int m_count = 0;
};

void RefusalsTest::initTestCase()
{
    QVERIFY2(m_fixture.start(), qPrintable(m_fixture.errorString()));
}

void RefusalsTest::cleanupTestCase()
{
    qInfo("%d requests were refused and changed nothing", m_count);
    m_fixture.stop();
}

void RefusalsTest::grantsWhatIsSound_data()
{
    QTest::addColumn<QString>("verb");
    for (const QString &verb : RefusalFixture::verbs()) {
        QTest::newRow(qPrintable(verb)) << verb;
    }
}

void RefusalsTest::grantsWhatIsSound()
{
    QFETCH(QString, verb);
    QVERIFY2(!m_fixture.sound(verb).isEmpty(), "no sound request is known");
    QVERIFY(m_fixture.reset());
    const TreeSnapshot before = m_fixture.snapshot();
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb));
    QVERIFY2(answer.ok, qPrintable(answer.text));
    const bool changesFiles
        = verb != QLatin1String("loggingservicectl") && verb != QLatin1String("getauditsettings");
    QCOMPARE(m_fixture.snapshot() != before, changesFiles);
}

void RefusalsTest::addColumns()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QVariantMap>("arguments");
    QTest::addColumn<QString>("named");
}

void RefusalsTest::addRow(const QString &tag, const QString &verb, const QVariantMap &arguments,
                          const QString &named)
{
    const QVariantMap sound = m_fixture.sound(verb);
    for (auto it = sound.cbegin(); it != sound.cend(); ++it) {
        const QVariant value = arguments.value(it.key());
        if (value.userType() == it->userType() && value != *it) {
            ++m_tried[verb + QLatin1Char(' ') + it.key()];
        }
    }
    QTest::newRow(qPrintable(verb + QLatin1String(": ") + tag)) << verb << arguments << named;
}

void RefusalsTest::refusesArguments_data()
{
    addColumns();
    const QVariantMap nested{{QStringLiteral("a"), QStringLiteral("b")}};
    const QList<QVariant> values{
        QStringLiteral("text"),           QByteArray("bytes"), 1,      qlonglong(1), 1.5, true,
        QStringList{QStringLiteral("a")}, QVariantList{1},     nested, QVariant()};
    for (const QString &verb : RefusalFixture::verbs()) {
        const QVariantMap sound = m_fixture.sound(verb);
        for (auto it = sound.cbegin(); it != sound.cend(); ++it) {
            // A single setting may be absent: the request then changes nothing.
            const bool isSetting = it.key().contains(QLatin1Char('/'));
            QVariantMap lacking = sound;
            lacking.remove(it.key());
            if (!isSetting) {
                addRow(QLatin1String("without ") + it.key(), verb, lacking,
                       QLatin1Char('"') + it.key() + QLatin1Char('"'));
            }
            for (const QVariant &value : values) {
                if (value.userType() != it->userType()) {
                    const QString type = QString::fromLatin1(value.isValid() ? value.typeName() : "nothing");
                    addRow(it.key() + QLatin1String(" as ") + type, verb, changed(sound, it.key(), value),
                           QLatin1Char('"') + it.key() + QLatin1Char('"'));
                }
            }
        }
        for (const char *key : {"mode", "owner", "path.", ""}) {
            addRow(QLatin1String("with the unknown argument ") + QLatin1String(key), verb,
                   changed(sound, QLatin1String(key), QStringLiteral("x")),
                   QLatin1Char('"') + QLatin1String(key) + QLatin1Char('"'));
        }
        addRow(QStringLiteral("nothing at all"), verb, {}, QStringLiteral("lacks the argument"));
    }
}

void RefusalsTest::refusesArguments()
{
    QFETCH(QString, verb);
    QFETCH(QVariantMap, arguments);
    QFETCH(QString, named);
    const TreeSnapshot before = m_fixture.snapshot();
    const HelperAnswer answer = requestHelper(verb, arguments);
    QVERIFY2(!answer.ok, "the request was granted");
    QVERIFY(answer.error != 0);
    QVERIFY2(answer.text.contains(named), qPrintable(answer.text));
    QVERIFY2(answer.text.size() > named.size() + 10, qPrintable(answer.text));
    QVERIFY2(answer.text.size() < 5500, "the text is as long as what was sent");
    QVERIFY(answer.data.isEmpty() || verb == QLatin1String("getauditsettings"));
    QCOMPARE(m_fixture.snapshot(), before);
    QCOMPARE(m_fixture.serviceCalls(), QStringList());
    ++m_count;
}

void RefusalsTest::refusesTexts_data()
{
    addColumns();
    const QList<QPair<QString, QString>> keys{{QStringLiteral("writeconfig"), QStringLiteral("path")},
                                              {QStringLiteral("exportconfig"), QStringLiteral("output")},
                                              {QStringLiteral("importconfig"), QStringLiteral("input")}};
    for (const auto &[verb, key] : keys) {
        const QVariantMap sound = m_fixture.sound(verb);
        for (const Hostile &hostile : hostilePaths(sound.value(key).toString())) {
            QString named = nameOf(hostile, key);
            if (verb != QLatin1String("writeconfig") && hostile.text == QLatin1String("/etc/shadow")) {
                continue; // a file like any other for root, who asks here
            }
            addRow(key + QLatin1String(", ") + QLatin1String(hostile.tag), verb,
                   changed(sound, key, hostile.text), named);
        }
    }
    for (const auto &[verb, key, values] : {std::tuple{"writeconfig", "action",
                                                       QStringList{{},
                                                                   QStringLiteral("writeconfig"),
                                                                   QStringLiteral("writeConfig "),
                                                                   QStringLiteral("writeConfig\n"),
                                                                   QStringLiteral("remove")}},
                                            std::tuple{"loggingservicectl", "cmd",
                                                       QStringList{{},
                                                                   QStringLiteral("reboot"),
                                                                   QStringLiteral("stop "),
                                                                   QStringLiteral("stop\n"),
                                                                   QStringLiteral("STOP"),
                                                                   QStringLiteral("stop auditd"),
                                                                   QStringLiteral("stop;reboot"),
                                                                   QStringLiteral("--force"),
                                                                   QStringLiteral("../stop")}}}) {
        const QString verbName = QLatin1String(verb);
        const QString keyName = QLatin1String(key);
        for (const QString &value : values) {
            addRow(keyName + QLatin1String(" \"") + value + QLatin1Char('"'), verbName,
                   changed(m_fixture.sound(verbName), keyName, value),
                   QLatin1Char('"') + value + QLatin1Char('"'));
        }
        for (const QString &value :
             {QString(longText, QLatin1Char('s')), QString(QLatin1String("stop") + QChar(0))}) {
            addRow(keyName + QStringLiteral(" of %1 characters").arg(value.size()), verbName,
                   changed(m_fixture.sound(verbName), keyName, value),
                   QLatin1Char('"') + keyName + QLatin1Char('"'));
        }
    }
}

void RefusalsTest::refusesContents_data()
{
    addColumns();
    const QString verb = QStringLiteral("writeconfig");
    const QString settings = QStringLiteral("/etc/nivra-syslog.conf");
    const QString rules = QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules");
    const QString main = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
    const QString rotation = QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
    const auto row
        = [&](const char *tag, const QString &path, const QByteArray &content, const QString &named = {}) {
              addRow(path + QLatin1String(", ") + QLatin1String(tag), verb,
                     changed(m_fixture.sound(verb, path), QStringLiteral("content"), content),
                     named.isEmpty() ? path : named);
          };
    for (const QString &path : {settings, rules, main, rotation}) {
        const QByteArray sound = RefusalFixture::contentFor(path);
        row("a zero at the end", path, sound + '\0');
        row("a zero in front", path, '\0' + sound);
        row("oversized", path, QByteArray(16 * 1024 * 1024 + 1, '#'), QStringLiteral("\"content\""));
        row("an archive", path, getFile(m_fixture.archive()));
    }
    for (const char *text : {"{", "[]", "\"text\"", "1", "null", "{}{}", "{\"a\": 1,}", "# comment"}) {
        row(text, settings, text);
    }
    for (const char *text :
         {"-D", "-e 0", "-e 2", "-R /tmp/x", "-a never,exit", "-a exclude,always", "-A always,exit -S open",
          "-d always,exit -S open", "-W /etc/passwd", "-w etc", "-f 2", "-b 0", "--backlog 0", "text",
          "-w /x -p wa -D", "-a always,exit -S open -S", "-w /x\x01 -p wa"}) {
        row(text, rules, text);
    }
    for (const char *text :
         {"log {", "};", "source s { program(\"x\"); };", "destination d { file(\"/etc/cron.d/x\"); };",
          "@include \"/tmp/x\"", "@module confgen exec(\"x\")", "python { };", "log { \"", "# `x`"}) {
        row(text, main, text);
    }
    for (const char *text : {"text", "{", "}", "/var/log/x {", "/etc/shadow {\n}", "include /tmp",
                             "/var/log/x {\nprerotate\nx\nendscript\n}"}) {
        row(text, rotation, text);
    }
}

void RefusalsTest::refusesNotifications_data()
{
    addColumns();
    const QString write = QStringLiteral("writenotificationconfigs");
    const QString remove = QStringLiteral("removenotificationconfigs");
    const QString text = QString::fromUtf8(sampleFragment());
    const QString path = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf");
    const auto both
        = [&](const QString &tag, const QString &hostile, const QString &ownName, const QString &otherName) {
              addRow(tag, write, {{QStringLiteral("notifications"), QVariantMap{{hostile, text}}}}, ownName);
              addRow(tag + QLatin1String(", beside a sound one"), remove,
                     {{QStringLiteral("paths"), QStringList{path, hostile}}}, otherName);
          };
    for (const Hostile &hostile : hostilePaths(path)) {
        const bool isPlain = !hostile.text.contains(QChar(0)) && hostile.text.size() < longText;
        const QString named = QLatin1Char('"') + hostile.text + QLatin1Char('"');
        const QString start = QLatin1Char('"') + hostile.text.left(20).section(QChar(0), 0, 0);
        both(QLatin1String(hostile.tag), hostile.text,
             isPlain ? named
                     : (hostile.text.contains(QChar(0)) ? QStringLiteral("\"notifications\"") : start),
             isPlain ? named : (hostile.text.contains(QChar(0)) ? QStringLiteral("\"paths\"") : start));
    }
    for (const char *name : {"mod-nivra.conf", "mod-nivra-.conf", "mod-nivra-a.conf.d", "mod-nivra-a b.conf",
                             "mod-nivra-\xd1\x8f.conf", "other.conf"}) {
        const QString other = QLatin1String("/etc/syslog-ng/conf.d/") + QString::fromUtf8(name);
        both(QString::fromUtf8(name), other, QLatin1Char('"') + other + QLatin1Char('"'),
             QLatin1Char('"') + other + QLatin1Char('"'));
    }
    for (const auto &[tag, content] :
         {std::pair("empty", QString()),
          std::pair("a line more", QString(text + QLatin1String("log { };\n"))),
          std::pair("oversized", QString(text + QString(70000, QLatin1Char('\n')))),
          std::pair("of another event", QString(text).replace(QLatin1String("a-b_c"), QLatin1String("x"))),
          std::pair("another class",
                    QString(text).replace(QLatin1String("NivraSyslogNg"), QLatin1String("Other"))),
          std::pair("a macro of the service",
                    QString(text).replace(QLatin1String("Failed"), QLatin1String("`x`"))),
          std::pair("a quote that ends the title",
                    QString(text).replace(QLatin1String("Failed"), QLatin1String("\" x \""))),
          std::pair("a zero", QString(text).replace(QLatin1String("Failed"), QString(QChar(0))))}) {
        const bool isArgument = content.contains(QChar(0)) || content.size() > 65536;
        addRow(QLatin1String("text, ") + QLatin1String(tag), write,
               {{QStringLiteral("notifications"), QVariantMap{{path, content}}}},
               isArgument ? QStringLiteral("\"notifications\"") : QStringLiteral("\"mod-nivra-a_b_c.conf\""));
    }
    addRow(QStringLiteral("text as bytes"), write,
           {{QStringLiteral("notifications"), QVariantMap{{path, text.toUtf8()}}}},
           QStringLiteral("\"notifications\""));
    addRow(QStringLiteral("none"), write, {{QStringLiteral("notifications"), QVariantMap()}},
           QStringLiteral("no notification file"));
    addRow(QStringLiteral("none"), remove, {{QStringLiteral("paths"), QStringList()}},
           QStringLiteral("no notification file"));
}

void RefusalsTest::refusesAuditSettings_data()
{
    addColumns();
    const QString get = QStringLiteral("getauditsettings");
    const QString set = QStringLiteral("setauditsettings");
    const auto quoted
        = [](const QString &text) { return QString(QLatin1Char('"') + text + QLatin1Char('"')); };
    for (const int type : {-1, 3, 4, 2147483647}) {
        addRow(QStringLiteral("type %1").arg(type), get,
               changed(m_fixture.sound(get), QStringLiteral("auditType"), type),
               quoted(QString::number(type)));
        addRow(QStringLiteral("type %1").arg(type), set,
               changed(m_fixture.sound(set), QStringLiteral("AUDIT_TYPE"), type),
               quoted(QString::number(type)));
    }
    for (const char *text : {"", "OPEN", "open ", "open\n", "../open", "/etc/shadow", "unknown"}) {
        const QString identifier = QLatin1String(text);
        addRow(QLatin1String("operation ") + quoted(identifier), get,
               changed(m_fixture.sound(get), QStringLiteral("auditIDs"), QStringList{identifier}),
               quoted(asShown(identifier)));
    }
    for (const QString &text :
         {QString(longText, QLatin1Char('x')), QString(QLatin1String("open") + QChar(0))}) {
        for (const char *key : {"auditIDs", "list"}) {
            addRow(QStringLiteral("%1 with %2 characters").arg(QLatin1String(key)).arg(text.size()), get,
                   changed(m_fixture.sound(get), QLatin1String(key), QStringList{text}),
                   quoted(QLatin1String(key)));
        }
    }
    addRow(QStringLiteral("more operations than there are"), get,
           changed(m_fixture.sound(get), QStringLiteral("auditIDs"),
                   QVariant(QStringList(QVector<QString>(100, QStringLiteral("open")).toList()))),
           quoted(QStringLiteral("auditIDs")));
    addRow(QStringLiteral("somebody among all others"), get,
           changed(m_fixture.sound(get), QStringLiteral("auditType"), 0), QStringLiteral("names nobody"));
    for (const char *text : {"root", "/open", "root/", "root/open/open", "root/unknown", "root/open\n", "/",
                             "../root/open", "root//open"}) {
        const QString key = QLatin1String(text);
        addRow(QLatin1String("setting ") + quoted(key), set, changed(m_fixture.sound(set), key, 1),
               QString(QLatin1Char('"')
                       + asShown(key.section(
                           QLatin1Char('/'),
                           key.count(QLatin1Char('/')) == 1 && !key.startsWith(QLatin1Char('/')) ? 1 : 0))));
    }
    addRow(QStringLiteral("a subject nobody knows"), set,
           changed(m_fixture.sound(set), QStringLiteral("no such user/open"), 1),
           QStringLiteral("\"no such user\""));
    addRow(QStringLiteral("an oversized subject"), set,
           changed(m_fixture.sound(set), QString(longText, QLatin1Char('x')) + QLatin1String("/open"), 1),
           QStringLiteral("300 characters"));
    for (const int value : {-1, 4, 2147483647}) {
        addRow(QStringLiteral("value %1").arg(value), set,
               changed(m_fixture.sound(set), QStringLiteral("root/open"), value),
               quoted(QString::number(value)));
    }
}

/** What the tables above have for each argument, beside those of the wrong type: a new verb has none. */
void RefusalsTest::everyArgumentOfEveryVerbWasTried()
{
    if (m_tried.isEmpty()) {
        QSKIP("counts the rows of the other functions");
    }
    const QStringList verbs = RefusalFixture::verbs();
    QVERIFY(verbs.size() > 1);
    for (const QString &verb : verbs) {
        const QStringList keys = m_fixture.sound(verb).keys();
        QVERIFY2(!keys.isEmpty(), qPrintable(verb));
        for (const QString &key : keys) {
            QVERIFY2(m_tried.value(verb + QLatin1Char(' ') + key) > 1,
                     qPrintable(verb + QLatin1Char(' ') + key));
        }
    }
}

QTEST_GUILESS_MAIN(RefusalsTest)

#include "refusalstest.moc"
