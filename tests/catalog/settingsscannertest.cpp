// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingsscanner.h"
#include "jsontext.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <random>
#include <string>

using Nivra::SettingsScanner;

class SettingsScannerTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray bytes(std::string_view view) { return {view.data(), static_cast<int>(view.size())}; }

    // The outermost object as the scanner's members give it, through the parser one by one.
    static QJsonObject rebuild(const SettingsScanner &scanner)
    {
        QJsonObject object;
        for (const SettingsScanner::Member &member : scanner.members()) {
            const std::string compact = SettingsScanner::compact(member.value);
            const QJsonObject wrapped = QJsonDocument::fromJson("{\"v\":" + bytes(compact) + "}").object();
            object.insert(QString::fromUtf8(bytes(member.name)), wrapped.value(QLatin1String("v")));
        }
        return object;
    }

private Q_SLOTS:
    void findsMembersWithTheirText()
    {
        const std::string text = " { \"a\" : { \"b\" : [ 1 , 2 ] } ,\n\"c\":\"d\", \"\":null } ";
        SettingsScanner scanner(text);
        QVERIFY(scanner.scan());
        QCOMPARE(scanner.members().size(), 3U);
        QCOMPARE(bytes(scanner.members()[0].name), QByteArray("a"));
        QCOMPARE(bytes(scanner.members()[0].value), QByteArray("{ \"b\" : [ 1 , 2 ] }"));
        QVERIFY(scanner.members()[0].isObject());
        QCOMPARE(bytes(scanner.members()[1].name), QByteArray("c"));
        QCOMPARE(bytes(scanner.members()[1].value), QByteArray("\"d\""));
        QVERIFY(!scanner.members()[1].isObject());
        QCOMPARE(bytes(scanner.members()[2].name), QByteArray());
        QCOMPARE(bytes(scanner.members()[2].value), QByteArray("null"));
    }

    void takesPlainJson_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("words") << json("{'a':true,'b':false,'c':null}");
        QTest::newRow("numbers") << json("{'a':0,'b':-0,'c':-17,'d':999999999999999}");
        QTest::newRow("escapes") << json("{'a':'\\'\\\\\\/\\b\\f\\n\\r\\t\\u00e9\\uD83D\\uDE00'}");
        QTest::newRow("escapes in inner names") << json("{'a':{'\\u0041\\'':'1'}}");
        QTest::newRow("nested") << json("{'a':[[],{},[{'b':[]}],''],'c':{'d':{'e':{}}}}");
        QTest::newRow("text beyond ASCII") << json("{'вход':{'ёж':'€'}}");
        QTest::newRow("64 levels") << json("{'a':") + QByteArray(64, '[') + '1' + QByteArray(64, ']') + '}';
    }

    void takesPlainJson()
    {
        QFETCH(QByteArray, text);
        const std::string source = text.toStdString();
        SettingsScanner scanner(source);
        QVERIFY(scanner.scan());
        QCOMPARE(rebuild(scanner), QJsonDocument::fromJson(text).object());
    }

    void declinesTheRest_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray texts[] = {"",
                                    "[]",
                                    "{",
                                    "{}}",
                                    "{},",
                                    "{,}",
                                    json("{'a'}"),
                                    json("{'a':}"),
                                    json("{'a':1,}"),
                                    json("{'a':1 'b':2}"),
                                    "{a:1}",
                                    "{'a':1}",
                                    json("{'a':[1,]}"),
                                    json("{'a':[1}}"),
                                    json("{'a':{'b':1]}"),
                                    json("{'a':{'b'}}"),
                                    json("{'a':{1:2}}"),
                                    json("{'a':{'b':1,}}"),
                                    json("{'a':tru}"),
                                    json("{'a':truex}"),
                                    json("{'a':01}"),
                                    json("{'a':-}"),
                                    json("{'a':+1}"),
                                    json("{'a':1.5}"),
                                    json("{'a':1e5}"),
                                    json("{'a':0.1}"),
                                    json("{'a':1000000000000000}"),
                                    json("{'a':'b"),
                                    json("{'a':'b\\"),
                                    json("{'a':'\\q'}"),
                                    json("{'a':'\\u12'}"),
                                    json("{'a':'\\u12g4'}"),
                                    json("{'\\u0041':1}"),
                                    "{\"a\":\"tab\there\"}",
                                    "{\"a\":\"line\nhere\"}",
                                    "{\"a\":\"\xFF\"}",
                                    "{\"\xC3\":1}",
                                    "{\v}",
                                    "{} // why"};
        int row = 0;
        for (const QByteArray &text : texts) {
            QTest::addRow("%d: %s", row++, text.toPercentEncoding("{}[]\\\":,' /").constData()) << text;
        }
        QTest::newRow("NUL in a string") << QByteArray("{\"a\":\"\0\"}", 9);
        QTest::newRow("NUL behind the end") << QByteArray("{}\0", 3);
        QTest::newRow("65 levels") << json("{'a':") + QByteArray(65, '[') + '1' + QByteArray(65, ']') + '}';
        QTest::newRow("very deep") << json("{'a':") + QByteArray(1 << 20, '[');
    }

    void declinesTheRest()
    {
        QFETCH(QByteArray, text);
        const std::string source = text.toStdString();
        SettingsScanner scanner(source);
        QVERIFY(!scanner.scan());
    }

    void compactingKeepsTextBetweenQuotes()
    {
        const std::string value = json("{ 'a b' :\t' \\' c \\\\' , 'd' : [ 1 , 2 ] }").toStdString();
        QCOMPARE(SettingsScanner::compact(value), json("{'a b':' \\' c \\\\','d':[1,2]}").toStdString());
    }

    void whatIsTakenMeansTheSameToTheParser()
    {
        const QByteArray seeds[] = {
            json("{'login': {'enabled': '1', 'list': ['a, b', 'c'], 'o': {'users': {'root': {'succ': "
                 "'0'}}}}, 'b': 5}"),
            "{\n    \"вход\": {\n        \"t\": \"\\\"\\\\ \\u0432 },  }\"\n    },\n    \"n\": [-1, 0, true, "
            "null, {}]\n}\n",
        };
        static const char characters[] = " \n\t{}[]:,\"\"\\\\untf0123-+.eE\xD0\xB2\x80\0\x1F";
        const QByteArray alphabet(characters, sizeof characters - 1);
        std::mt19937 random(20260117);
        const auto below
            = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        int taken = 0;
        int declined = 0;
        for (int round = 0; round < 40000; ++round) {
            QByteArray text = seeds[below(2)];
            for (int change = below(4); change >= 0; --change) {
                const int at = below(text.size());
                switch (below(3)) {
                case 0:
                    text[at] = alphabet.at(below(alphabet.size()));
                    break;
                case 1:
                    text.insert(at, alphabet.at(below(alphabet.size())));
                    break;
                default:
                    text.remove(at, 1 + below(3));
                }
            }
            const std::string source = text.toStdString();
            SettingsScanner scanner(source);
            if (!scanner.scan()) {
                ++declined;
                continue;
            }
            ++taken;
            const QJsonDocument parsed = QJsonDocument::fromJson(text);
            QVERIFY2(parsed.isObject(), text.constData());
            QVERIFY2(rebuild(scanner) == parsed.object(), text.constData());
        }
        // Both ways must have been walked often for this to say anything.
        QVERIFY2(taken > 2000, qPrintable(QString::number(taken)));
        QVERIFY2(declined > 2000, qPrintable(QString::number(declined)));
    }
};

QTEST_GUILESS_MAIN(SettingsScannerTest)

#include "settingsscannertest.moc"
