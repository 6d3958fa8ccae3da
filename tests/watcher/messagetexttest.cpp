// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <floodguard.h>
#include <messagetext.h>

#include <QTest>

using namespace NivraWatcher;

class MessageTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesTakeTheirPlaces_data();
    void valuesTakeTheirPlaces();
    void aLongTextIsCutBetweenCharacters();
    void aLineStaysOneLine();
    void aFloodIsHeldBackAndItsKindOnly();
};

void MessageTextTest::valuesTakeTheirPlaces_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("text");
    QTest::newRow("as written by the page") << QStringLiteral("{0} {1}") << QStringLiteral("a {0}");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("words and order") << QStringLiteral("to {1}: {0}!") << QStringLiteral("to {0}: a!");
    QTest::newRow("no such value") << QStringLiteral("{0} {2} {-1}") << QStringLiteral("a {2} {-1}");
    QTest::newRow("no number") << QStringLiteral("{} {x} {0.__class__}{0}")
                               << QStringLiteral("{} {x} {0.__class__}a");
    QTest::newRow("open end") << QStringLiteral("{0} {1") << QStringLiteral("a {1");
    QTest::newRow("nested") << QStringLiteral("{{0}}") << QStringLiteral("{a}");
}

void MessageTextTest::valuesTakeTheirPlaces()
{
    QFETCH(QString, format);
    QFETCH(QString, text);
    QCOMPARE(MessageText::compose(format, {QStringLiteral("a"), QStringLiteral("{0}")}), text);
}

void MessageTextTest::aLongTextIsCutBetweenCharacters()
{
    QCOMPARE(MessageText::cut(QStringLiteral("four"), 4), QStringLiteral("four"));
    QCOMPARE(MessageText::cut(QStringLiteral("fives"), 4), QStringLiteral("fiv…"));
    const QString pair = QString::fromUcs4(U"\U0001F600", 1);
    QCOMPARE(MessageText::cut(pair + pair, 4), pair + pair);
    QCOMPARE(MessageText::cut(pair + pair + pair, 4), pair + QStringLiteral("…"));
}

void MessageTextTest::aLineStaysOneLine()
{
    QCOMPARE(MessageText::oneLine(QStringLiteral("a\nb\tc\rd\\n") + QChar(0x2028) + QChar(0x85) + QChar(0)
                                  + QStringLiteral("Вход")),
             QStringLiteral("a\\nb\\tc\\u000dd\\\\n\\u2028\\u0085\\u0000Вход"));
}

void MessageTextTest::aFloodIsHeldBackAndItsKindOnly()
{
    FloodGuard guard(2, 300);
    const QString one = QStringLiteral("one");
    QVERIFY(guard.allows(one));
    QVERIFY(guard.allows(one));
    QVERIFY(!guard.allows(one));
    QVERIFY(guard.allows(QStringLiteral("other")));
    QVERIFY(QTest::qWaitFor([&] { return guard.allows(one); }, 2000));
}

QTEST_GUILESS_MAIN(MessageTextTest)
#include "messagetexttest.moc"
