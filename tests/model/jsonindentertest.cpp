// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <jsonindenter.h>

#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

namespace {
/// What the toolkit's own parser and writer make of the text.
QByteArray rewritten(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isObject() ? document.toJson(QJsonDocument::Indented) : QByteArray();
}

/// Makes texts of objects that are not always right.
class TextMaker
{
public:
    explicit TextMaker(quint32 seed)
        : m_random(seed)
        , m_rare(below(40))
    {
    }

    QString object(int depth)
    {
        QString text = QStringLiteral("{") + blanks();
        // The toolkit's parser loses lists and objects of names given twice, and some of names with escapes.
        const bool hostile = below(8) == 0;
        for (int i = below(6); i > 0; --i) {
            text += hostile ? hostileName() : quoted(plainName() + QString::number(i));
            text += blanks() + QLatin1Char(':') + blanks() + (hostile ? string() : value(depth));
            text += i > 1 ? blanks() + QLatin1Char(',') + blanks() : blanks();
        }
        return text + (below(300) == 0 ? QString() : QStringLiteral("}"));
    }

    QString blanks() { return pick({"", "", " ", "\n", "\t", " \r\n "}); }

private:
    int below(int limit) { return static_cast<int>(m_random.bounded(static_cast<quint32>(limit))); }

    QString pick(const QVector<const char *> &choices)
    {
        return QString::fromUtf8(choices.at(below(choices.size())));
    }

    QString quoted(const QString &content) { return QLatin1Char('"') + content + QLatin1Char('"'); }

    QString plainName()
    {
        return pick({"a", "ab", "b", "enabled", "Имя", "Имена", "é", "z z", "}", ", ", "", "~"});
    }

    QString hostileName() { return quoted(below(2) == 0 ? plainName() : plainName() + rarePiece()); }

    QString rarePiece()
    {
        const int kind = below(18);
        if (kind < 3) {
            return QString(QChar(QVector<ushort>{0x7f, 0x85, 0xfeff}.at(kind)));
        }
        if (kind == 3) {
            return QString(QChar(0xd83d));
        }
        return pick({"\\n", "\\u007f", "\\u0001", "\\u0041", "\\ud83d", "\\udd12\\ud83d", "\\ud83d\\udd12",
                     "\\/", "\\b", "\\x", "\U0001F512", "\uE000", "\uFFFD", "\uFEFF", "\t", "\\", "\""});
    }

    QString string()
    {
        QString text;
        for (int i = below(4); i > 0; --i) {
            text += below(100) < m_rare
                ? rarePiece()
                : pick({"1", "0", "Ёж", "\\\"", "\\\\", "},  }", "[ ", "漢", "-w /etc/x -p wa", "ÿ"});
        }
        return quoted(text);
    }

    QString value(int depth)
    {
        const int kind = below(12);
        if (kind < 3 && depth > 0) {
            return object(depth - 1);
        }
        if (kind == 3 && depth > 0) {
            QString text = QStringLiteral("[") + blanks();
            for (int i = below(4); i > 0; --i) {
                text += value(depth - 1) + (i > 1 ? blanks() + QLatin1Char(',') : blanks());
            }
            return text + QLatin1Char(']');
        }
        if (kind == 4) {
            return pick(
                {"true", "false", "null", "0", "7", "-7", "123456789", "{}", "[]", "[ ]", "{ }", "[[],{}]"});
        }
        if (below(100) < m_rare) {
            return pick({"-0",
                         "-0.0",
                         "0.1",
                         "1e5",
                         "1E400",
                         "-1e400",
                         "1e-400",
                         "01",
                         "00",
                         "-",
                         "+1",
                         "12345678901234567890",
                         "9007199254740993",
                         "1234567890",
                         "1.0",
                         "1.",
                         "tru",
                         "nul",
                         "truefalse",
                         "12x",
                         "",
                         "NaN",
                         "[1,]",
                         "{,}",
                         "[,]",
                         "'a'"});
        }
        return string();
    }

    QRandomGenerator m_random;
    int m_rare; // share of unusual things in this text, in percent
};

QString nested(const char *opening, int depth, const char *closing)
{
    return QStringLiteral("{\"a\":") + QString::fromLatin1(opening).repeated(depth)
        + QString::fromLatin1(closing).repeated(depth) + QLatin1Char('}');
}
} // namespace

class JsonIndenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usualTextIsIndentedWithoutADocument_data();
    void usualTextIsIndentedWithoutADocument();
    void unusualTextIsLeftToTheToolkit_data();
    void unusualTextIsLeftToTheToolkit();
    void brokenTextHasNoIndentedForm_data();
    void brokenTextHasNoIndentedForm();
    void shippedDescriptionsKeepTheirForm();
    void anyTextIsWrittenAsTheToolkitWritesIt();
    void anyCharacterIsWrittenAsTheToolkitWritesIt();
    void cutTextHasNoIndentedForm();
};

void JsonIndenterTest::usualTextIsIndentedWithoutADocument_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("nothing") << QByteArray("{}");
    QTest::newRow("blanks") << QByteArray(" \n\t{ \r\n } \n");
    QTest::newRow("order") << QByteArray(R"({"b":"1","a":"2","ab":"3","B":"4","":"5","c":"6"})");
    QTest::newRow("order of letters") << QByteArray("{\"я\":\"1\",\"é\":\"2\",\"z\":\"3\",\"漢\":\"4\"}");
    QTest::newRow("order at every depth")
        << QByteArray(R"({"b":{"d":"1","c":{"f":"2","e":"3"}},"a":["1",{"h":0,"g":1}]})");
    QTest::newRow("empty values") << QByteArray(R"({"a":{},"b":[],"c":"","d":[[],{}],"e":{"f":{}}})");
    QTest::newRow("words") << QByteArray(R"({"a":true,"b":false,"c":null,"d":[true,null]})");
    QTest::newRow("integers") << QByteArray(R"({"a":0,"b":-1,"c":123456789,"d":-987654321})");
    QTest::newRow("quotes and backslashes") << QByteArray(R"({"a":"\"\\\" \\\\","b":"\\"})");
    QTest::newRow("delete") << QByteArray("{\"a\":\"\x7f\"}");
    QTest::newRow("spaced") << QByteArray(
        "{\n\t\"e\" : { \"enabled\" : \"0\", \"l\" : [ \"x\", \"y\" ] }\n}\n");
}

void JsonIndenterTest::usualTextIsIndentedWithoutADocument()
{
    QFETCH(QByteArray, json);
    const QByteArray expected = rewritten(json);
    QVERIFY(!expected.isEmpty());
    QCOMPARE(JsonIndenter::indentedUsual(json), expected);
    QCOMPARE(JsonIndenter::indented(QString::fromUtf8(json)), expected);
}

void JsonIndenterTest::unusualTextIsLeftToTheToolkit_data()
{
    QTest::addColumn<QString>("json");
    QTest::newRow("members of one name") << QStringLiteral(R"({"a":"1","b":"2","a":"3"})");
    QTest::newRow("members of one name side by side") << QStringLiteral(R"({"a":"1","a":"3"})");
    QTest::newRow("escape in a name") << QStringLiteral(R"({"a\"":"1"})");
    QTest::newRow("line break") << QStringLiteral(R"({"a":"\n"})");
    QTest::newRow("escaped letter") << QStringLiteral(R"({"a":"\u0041"})");
    QTest::newRow("escaped delete") << QStringLiteral(R"({"a":"\u007f"})");
    QTest::newRow("escaped slash") << QStringLiteral(R"({"a":"\/"})");
    QTest::newRow("half of a pair") << QStringLiteral(R"({"a":"\ud83d"})");
    QTest::newRow("pair") << QStringLiteral("{\"a\":\"\U0001F512\"}");
    QTest::newRow("byte order mark") << QStringLiteral("{\"a\":\"\uFEFFb\"}");
    QTest::newRow("negative nothing") << QStringLiteral(R"({"a":-0})");
    QTest::newRow("fraction") << QStringLiteral(R"({"a":1.50})");
    QTest::newRow("exponent") << QStringLiteral(R"({"a":1e3})");
    QTest::newRow("long integer") << QStringLiteral(R"({"a":12345678901234567890})");
    QTest::newRow("depth") << nested("[", 200, "]");
}

void JsonIndenterTest::unusualTextIsLeftToTheToolkit()
{
    QFETCH(QString, json);
    const QByteArray expected = rewritten(json.toUtf8());
    QVERIFY(!expected.isEmpty());
    QCOMPARE(JsonIndenter::indentedUsual(json.toUtf8()), QByteArray());
    QCOMPARE(JsonIndenter::indented(json), expected);
}

void JsonIndenterTest::brokenTextHasNoIndentedForm_data()
{
    QTest::addColumn<QString>("json");
    for (const char *json : {"",
                             " ",
                             "{",
                             "}",
                             "{}}",
                             "{} x",
                             "[]",
                             "[\"a\"]",
                             "\"a\"",
                             "{\"a\"}",
                             "{\"a\":}",
                             "{a:1}",
                             "{\"a\":1,}",
                             "{,\"a\":1}",
                             "{\"a\":1 \"b\":2}",
                             "{\"a\" \"b\"}",
                             "{\"a\":[1,]}",
                             "{\"a\":[,1]}",
                             "{\"a\":[1 2]}",
                             "{\"a\":[1}",
                             "{\"a\":{]}",
                             "{\"a\":01}",
                             "{\"a\":-}",
                             "{\"a\":+1}",
                             "{\"a\":tru}",
                             "{\"a\":trues}",
                             "{\"a\":12x}",
                             "{\"a\":\"b}",
                             "{\"a\":\"b\\",
                             "{\"a\":\"b\\\"}",
                             "{1:2}",
                             "{\"a\":1e400}",
                             "{ \"e\" : { \"enabled\" : \"0\", ,\"users\" : {} } }"}) {
        QTest::addRow("%s", json) << QString::fromLatin1(json);
    }
    QTest::newRow("too deep") << nested("[", 5000, "]");
    QTest::newRow("too deep and open") << nested("{\"a\":", 5000, "");
}

void JsonIndenterTest::brokenTextHasNoIndentedForm()
{
    QFETCH(QString, json);
    QCOMPARE(rewritten(json.toUtf8()), QByteArray());
    QCOMPARE(JsonIndenter::indentedUsual(json.toUtf8()), QByteArray());
    QCOMPARE(JsonIndenter::indented(json), QByteArray());
}

void JsonIndenterTest::shippedDescriptionsKeepTheirForm()
{
    int events = 0;
    QDirIterator files(QStringLiteral(ADMINEVENTS_DATA_PATH "/event-settings"), {QStringLiteral("*.json")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray json = file.readAll();
        QCOMPARE(JsonIndenter::indented(QString::fromUtf8(json)), rewritten(json));
        ++events;
    }
    QVERIFY(events > 100);
}

void JsonIndenterTest::anyTextIsWrittenAsTheToolkitWritesIt()
{
    int usual = 0;
    int unusual = 0;
    int broken = 0;
    for (quint32 seed = 1; seed <= 20000; ++seed) {
        TextMaker maker(seed);
        const QString json = maker.blanks() + maker.object(4) + maker.blanks();
        const QByteArray expected = rewritten(json.toUtf8());
        const QByteArray text = JsonIndenter::indentedUsual(json.toUtf8());
        QVERIFY2(text.isEmpty() || text == expected, qPrintable(json));
        QVERIFY2(JsonIndenter::indented(json) == expected, qPrintable(json));
        ++(expected.isEmpty() ? broken : text.isEmpty() ? unusual : usual);
    }
    // Each way has been gone many times.
    QVERIFY2(usual > 1000 && unusual > 1000 && broken > 1000,
             qPrintable(QStringLiteral("%1 %2 %3").arg(usual).arg(unusual).arg(broken)));
}

void JsonIndenterTest::anyCharacterIsWrittenAsTheToolkitWritesIt()
{
    for (uint code = 0; code <= 0xffff; ++code) {
        const QChar character(static_cast<ushort>(code));
        const QString json = QStringLiteral("{\"b\":\"x") + character + QStringLiteral("y\",\"a") + character
            + QStringLiteral("\":\"") + character + QStringLiteral("\",\"a\":[]}");
        const QByteArray expected = rewritten(json.toUtf8());
        const QByteArray text = JsonIndenter::indentedUsual(json.toUtf8());
        QVERIFY2(text.isEmpty() || text == expected, qPrintable(QString::number(code, 16)));
        QVERIFY2(JsonIndenter::indented(json) == expected, qPrintable(QString::number(code, 16)));
    }
}

void JsonIndenterTest::cutTextHasNoIndentedForm()
{
    const QByteArray whole(R"({"b":{"d":[1,true,"x\"",{}],"c":"Ёж"},"a":[null,-12]})");
    QVERIFY(!JsonIndenter::indentedUsual(whole).isEmpty());
    for (int size = 0; size < whole.size(); ++size) {
        QVERIFY2(JsonIndenter::indentedUsual(whole.left(size)).isEmpty(), whole.left(size).constData());
    }
}

QTEST_GUILESS_MAIN(JsonIndenterTest)

#include "jsonindentertest.moc"
