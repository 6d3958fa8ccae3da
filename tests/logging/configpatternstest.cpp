// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <configpatterns.h>

#include <QRandomGenerator>
#include <QRegExp>
#include <QTest>

namespace {
/// Texts of @p pieces in random order, few enough kinds of pieces that matches are frequent.
QString randomText(QRandomGenerator &random, const QStringList &pieces, int longest)
{
    QString text;
    const int count = random.bounded(longest);
    for (int i = 0; i < count; ++i) {
        text += pieces.at(random.bounded(pieces.size()));
    }
    return text;
}

QString shown(const QString &text)
{
    return QString(text).replace(QLatin1Char('\n'), QLatin1String("\\n"));
}
} // namespace

/// The matchers written by hand against the engine whose language the patterns are in.
class ConfigPatternsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocksMatchAsThePatternDoes()
    {
        const QRegExp pattern(QStringLiteral("(([a-z]+)\\s+(\\S*)\\s*\\{(.*)\\};)"));
        const QStringList pieces{QStringLiteral("a"),     QStringLiteral("log"),   QStringLiteral("Z"),
                                 QStringLiteral(" "),     QStringLiteral("\n"),    QStringLiteral("{"),
                                 QStringLiteral("}"),     QStringLiteral(";"),     QStringLiteral("};"),
                                 QStringLiteral("log {"), QStringLiteral("x(y);"), QStringLiteral("\u00a0")};
        QRandomGenerator random(20260113);
        int matches = 0;
        for (int i = 0; i < 40000; ++i) {
            const QString text = randomText(random, pieces, 20);
            const auto found = ConfigPatterns::matchBlock(text);
            const int at = pattern.indexIn(text);
            QVERIFY2(found.has_value() == (at >= 0), qPrintable(shown(text)));
            if (!found) {
                continue;
            }
            ++matches;
            QVERIFY2(found->keywordAt == at && found->keyword == pattern.cap(2)
                         && found->name == pattern.cap(3) && found->body == pattern.cap(4),
                     qPrintable(shown(text) + QLatin1String(" -> ") + found->keyword + QLatin1Char('|')
                                + found->name + QLatin1Char('|') + shown(found->body) + QLatin1String(" vs ")
                                + pattern.cap(2) + QLatin1Char('|') + pattern.cap(3) + QLatin1Char('|')
                                + shown(pattern.cap(4))));
            QCOMPARE(text.mid(found->bodyAt, found->body.size()), found->body);
        }
        QVERIFY(matches > 1000);
    }

    void quotedTextsMatchAsThePatternDoes()
    {
        const QRegExp pattern(QStringLiteral("(.+)\\s+(\\S*)\\s*\"(.*)\""));
        const QStringList pieces{QStringLiteral("a"),  QStringLiteral("@x"), QStringLiteral(" "),
                                 QStringLiteral("\n"), QStringLiteral("\""), QStringLiteral("\" ")};
        QRandomGenerator random(20260114);
        int matches = 0;
        for (int i = 0; i < 40000; ++i) {
            const QString text = randomText(random, pieces, 12);
            const auto found = ConfigPatterns::matchQuoted(text);
            QVERIFY2(found.has_value() == (pattern.indexIn(text) >= 0), qPrintable(shown(text)));
            if (!found) {
                continue;
            }
            ++matches;
            QVERIFY2(found->before == pattern.cap(1) && found->text == pattern.cap(3),
                     qPrintable(shown(text) + QLatin1String(" -> ") + shown(found->before) + QLatin1Char('|')
                                + shown(found->text) + QLatin1String(" vs ") + shown(pattern.cap(1))
                                + QLatin1Char('|') + shown(pattern.cap(3))));
        }
        QVERIFY(matches > 1000);
    }

    void enclosedTextsMatchAsThePatternsDo()
    {
        const QRegExp parentheses(QStringLiteral("\\((.*)\\)"));
        const QRegExp braces(QStringLiteral("\\{(.*)\\}"));
        const QStringList pieces{QStringLiteral("a"), QStringLiteral("\n"), QStringLiteral("("),
                                 QStringLiteral(")"), QStringLiteral("{"),  QStringLiteral("}")};
        QRandomGenerator random(20260115);
        for (int i = 0; i < 20000; ++i) {
            const QString text = randomText(random, pieces, 8);
            const QString inParentheses = ConfigPatterns::matchParentheses(text);
            QCOMPARE(inParentheses.isNull(), parentheses.indexIn(text) < 0);
            QCOMPARE(inParentheses, parentheses.cap(1));
            const QString inBraces = ConfigPatterns::matchBraces(text);
            QCOMPARE(inBraces.isNull(), braces.indexIn(text) < 0);
            QCOMPARE(inBraces, braces.cap(1));
        }
    }

    void longTextsAreNeverTakenForOnesThatDoNotMatch()
    {
        const QString word = QStringLiteral("word ");
        const QString body = word.repeated(200000);
        const auto block
            = ConfigPatterns::matchBlock(QStringLiteral("source s {") + body + QStringLiteral("};"));
        QVERIFY(block);
        QCOMPARE(block->body.size(), body.size());
        const auto quoted
            = ConfigPatterns::matchQuoted(QStringLiteral("@include ") + body + QStringLiteral("\"x\""));
        QVERIFY(quoted);
        QCOMPARE(quoted->text, QStringLiteral("x"));
        QVERIFY(!ConfigPatterns::matchBlock(body));
        QVERIFY(!ConfigPatterns::matchBlock(QStringLiteral("a {").repeated(200000)));
    }
};

QTEST_GUILESS_MAIN(ConfigPatternsTest)

#include "configpatternstest.moc"
