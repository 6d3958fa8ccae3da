// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <jsontext.h>
#include <settingstidy.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

class JsonTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotedTextReadsBack_data();
    void quotedTextReadsBack();
    void shieldedTextHoldsNoClosingBrace();
    void anyValueHasACompactText();
    void arrayTextJoinsElementsAndPaths();
    void onlyPlainListsCanBeTyped();
    void onlyArraysAreParsedAsArrays();

    void tidyingRepairsSeparators_data();
    void tidyingRepairsSeparators();
    void tidyingClosesEveryLevel();
    void tidyingKeepsWhatIsInOrder();
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
    for (const auto append : {&JsonText::appendQuoted, &JsonText::appendShielded}) {
        QString json = QStringLiteral("[");
        append(json, text);
        json += QLatin1Char(']');
        QCOMPARE(QJsonDocument::fromJson(json.toUtf8()).array(), QJsonArray{text});
    }
}

void JsonTextTest::shieldedTextHoldsNoClosingBrace()
{
    QString plain = QStringLiteral("x");
    JsonText::appendQuoted(plain, QStringLiteral("a}"));
    QCOMPARE(plain, QStringLiteral("x\"a}\""));
    QString shielded = QStringLiteral("x");
    JsonText::appendShielded(shielded, QStringLiteral("a}\"},  }"));
    QVERIFY(!shielded.contains(QLatin1Char('}')));
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

void JsonTextTest::tidyingRepairsSeparators_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("object") << QStringLiteral("{ \"a\" : {},  }") << QStringLiteral("{ \"a\" : {} }");
    QTest::newRow("array") << QStringLiteral("{ \"a\" : [ ],  }") << QStringLiteral("{ \"a\" : [ ] }");
    QTest::newRow("text") << QStringLiteral("{ \"a\" : \"b\",  }") << QStringLiteral("{ \"a\" : \"b\" }");
    QTest::newRow("nothing") << QStringLiteral("\"e\" :  }")
                             << QStringLiteral("\"e\" : { \"enabled\": \"0\" }");
    QTest::newRow("all kinds in one")
        << QStringLiteral("{ [ \"a\" ],  },  }, \"b\" :  },  }, { \"c\",  } }")
        << QStringLiteral("{ [ \"a\" ] } }, \"b\" : { \"enabled\": \"0\" } }, { \"c\" } }");
    QTest::newRow("other blanks before an end")
        << QStringLiteral("{  } a  },   }") << QStringLiteral("{  } a  },   }");
    QTest::newRow("two levels") << QStringLiteral("{ { \"b\",  },  }") << QStringLiteral("{ { \"b\" } }");
}

void JsonTextTest::tidyingRepairsSeparators()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    SettingsTidy::tidy(text);
    QCOMPARE(text, expected);
}

void JsonTextTest::tidyingClosesEveryLevel()
{
    QString text = QStringLiteral("\"e\" : ");
    constexpr int depth = 30;
    for (int level = 0; level < depth; ++level) {
        text += QStringLiteral("{ \"o\" : ");
    }
    text += QStringLiteral("{ \"p\" : \"v\", ");
    for (int level = 0; level < depth; ++level) {
        text += QStringLiteral(" }, ");
    }
    text += QStringLiteral(" }");
    SettingsTidy::tidy(text);
    QVERIFY(!text.contains(QLatin1Char(',')));
    const QString document = QStringLiteral("{ %1 }").arg(text);
    QVERIFY(QJsonDocument::fromJson(document.toUtf8()).isObject());
}

void JsonTextTest::tidyingKeepsWhatIsInOrder()
{
    const QString text = QStringLiteral("\"e\" : { \"a\" : [ \"b\", \"c\" ], \"d\" : { \"f\" : \"g\" } }");
    QString tidied = text;
    SettingsTidy::tidy(tidied);
    QCOMPARE(tidied, text);
}

QTEST_MAIN(JsonTextTest)

#include "jsontexttest.moc"
