// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <jsontext.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

class JsonTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotedTextReadsBack_data();
    void quotedTextReadsBack();
    void anyValueHasACompactText();
    void arrayTextJoinsElementsAndPaths();
    void onlyPlainListsCanBeTyped();
    void onlyArraysAreParsedAsArrays();
};

void JsonTextTest::quotedTextReadsBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("quotes") << QStringLiteral("say \"so\"");
    QTest::newRow("backslashes") << QStringLiteral("\\n \\\\ \\u0041");
    QTest::newRow("braces") << QStringLiteral("},  } { ]");
    QTest::newRow("control characters") << QString(QStringLiteral("a\nb\tc\r") + QChar(1) + QChar(0x7f));
    QTest::newRow("letters of all kinds") << QStringLiteral("Ёж é 漢 \U0001F512");
    QTest::newRow("halves of pairs") << QString(QChar(0xdd12)) + QChar(0xd83d) + QLatin1Char('x')
            + QChar(0xd83d);
}

void JsonTextTest::quotedTextReadsBack()
{
    QFETCH(QString, text);
    QString json = QStringLiteral("[");
    JsonText::appendQuoted(json, text);
    json += QLatin1Char(']');
    QCOMPARE(QJsonDocument::fromJson(json.toUtf8()).array(), QJsonArray{text});
}

void JsonTextTest::anyValueHasACompactText()
{
    QCOMPARE(JsonText::compact(QStringLiteral("a\"b")), QStringLiteral("\"a\\\"b\""));
    QCOMPARE(JsonText::compact(5), QStringLiteral("5"));
    QCOMPARE(JsonText::compact(true), QStringLiteral("true"));
    QCOMPARE(JsonText::compact(QJsonValue::Null), QStringLiteral("null"));
    QCOMPARE(JsonText::compact(QJsonArray{1, QStringLiteral("x")}), QStringLiteral("[1,\"x\"]"));
    QCOMPARE(JsonText::compact(QJsonObject()), QStringLiteral("{}"));
}

void JsonTextTest::arrayTextJoinsElementsAndPaths()
{
    const QJsonObject directory{{QStringLiteral("path"), QStringLiteral("/var")},
                                {QStringLiteral("limit_bytes"), QStringLiteral("5")}};
    const QJsonObject other{{QStringLiteral("x"), QStringLiteral("y")}};
    QCOMPARE(JsonText::arrayText({}), QString());
    QCOMPARE(JsonText::arrayText({QStringLiteral("a"), QStringLiteral("b")}), QStringLiteral("a, b"));
    QCOMPARE(JsonText::arrayText({directory, QStringLiteral("b"), 7, other}),
             QStringLiteral("/var, b, 7, {\"x\":\"y\"}"));
}

void JsonTextTest::onlyPlainListsCanBeTyped()
{
    QVERIFY(JsonText::isPlainList({}));
    QVERIFY(JsonText::isPlainList({QStringLiteral("a,b"), QStringLiteral("c ")}));
    QVERIFY(!JsonText::isPlainList({QStringLiteral("a, b")}));
    QVERIFY(!JsonText::isPlainList({QStringLiteral("a"), 1}));
    QVERIFY(!JsonText::isPlainList({QJsonObject()}));
}

void JsonTextTest::onlyArraysAreParsedAsArrays()
{
    bool ok = false;
    QCOMPARE(JsonText::parseArray(QStringLiteral("[\"Ё\"]"), ok), QJsonArray{QStringLiteral("Ё")});
    QVERIFY(ok);
    for (const char *text : {"{}", "", "[", "\"a\""}) {
        ok = true;
        QVERIFY(JsonText::parseArray(QString::fromLatin1(text), ok).isEmpty());
        QVERIFY2(!ok, text);
    }
}

QTEST_MAIN(JsonTextTest)

#include "jsontexttest.moc"
