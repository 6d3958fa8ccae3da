// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treetext.h"

#include <configtokens.h>
#include <losscheck.h>
#include <maintree.h>
#include <tokendiff.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <QTextCodec>

namespace {
QByteArray sample(const QString &name)
{
    QFile file(QStringLiteral(CORPUS_DIR) + QLatin1Char('/') + name + QLatin1String(".conf"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList findings(const QByteArray &content)
{
    return LossCheck::findings(content, content, *MainTree::read(content));
}

QStringList tokenTexts(const QByteArray &text)
{
    const ConfigTokens tokens(QString::fromUtf8(text));
    QStringList texts;
    for (const ConfigTokens::Token &token : tokens.tokens()) {
        texts.append(QStringLiteral("%1:%2").arg(token.line).arg(tokens.view(token)));
    }
    return texts;
}

QVector<int> numbers(const char *text)
{
    QVector<int> result;
    for (; *text; ++text) {
        result.append(*text);
    }
    return result;
}

/// The old sequence with the changes done to it.
QVector<int> applied(const QVector<int> &before, const QVector<int> &after,
                     const QVector<TokenDiff::Change> &changes)
{
    QVector<int> result;
    int at = 0;
    for (const TokenDiff::Change &change : changes) {
        result += before.mid(at, change.oldBegin - at)
            + after.mid(change.newBegin, change.newEnd - change.newBegin);
        at = change.oldEnd;
    }
    return result + before.mid(at);
}
} // namespace

class LossCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokensAreThoseOfTheDaemon()
    {
        QCOMPARE(tokenTexts("a (\"b \\\" c\"); # d\n'e\\' f{}"),
                 (QStringList{QStringLiteral("1:a"), QStringLiteral("1:("), QStringLiteral("1:\"b \\\" c\""),
                              QStringLiteral("1:)"), QStringLiteral("1:;"), QStringLiteral("2:'e\\'"),
                              QStringLiteral("2:f"), QStringLiteral("2:{"), QStringLiteral("2:}")}));
        QCOMPARE(tokenTexts("\"a\nb\" c \"d"),
                 (QStringList{QStringLiteral("1:\"a\nb\""), QStringLiteral("2:c"), QStringLiteral("2:\"d")}));
        QCOMPARE(tokenTexts("python {\nif a:\n\n    b = {}\n};\nx"),
                 (QStringList{QStringLiteral("1:python"), QStringLiteral("1:{"), QStringLiteral("2:if a:"),
                              QStringLiteral("4:    b = {}"), QStringLiteral("5:}"), QStringLiteral("5:;"),
                              QStringLiteral("6:x")}));
    }

    void changesTurnTheOldSequenceIntoTheNewOne()
    {
        QRandomGenerator random(20260119);
        for (int i = 0; i < 5000; ++i) {
            QVector<int> before;
            QVector<int> after;
            for (int n = random.bounded(12); n > 0; --n) {
                before.append(random.bounded(3));
            }
            for (int n = random.bounded(12); n > 0; --n) {
                after.append(random.bounded(3));
            }
            QCOMPARE(applied(before, after, TokenDiff::changes(before, after)), after);
            QCOMPARE(applied(before, after, TokenDiff::changes(before, after, 2)), after);
        }
    }

    void changesAreTheFewestPossible()
    {
        QVERIFY(TokenDiff::changes(numbers("abc"), numbers("abc")).isEmpty());
        const auto found = TokenDiff::changes(numbers("abcabba"), numbers("cbabac"));
        int elements = 0;
        for (const TokenDiff::Change &change : found) {
            elements += change.oldEnd - change.oldBegin + change.newEnd - change.newBegin;
        }
        QCOMPARE(elements, 5);
    }

    void tooManyChangesAreOne()
    {
        const auto found = TokenDiff::changes(numbers("xabcdefy"), numbers("xghijkly"), 4);
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.first().oldBegin, 1);
        QCOMPARE(found.first().oldEnd, 7);
    }

    void harmlessSamplesPassWithoutAWord_data() { addSamples(true); }
    void harmlessSamplesPassWithoutAWord()
    {
        QFETCH(QString, name);
        const QByteArray content = sample(name);
        QVERIFY(!content.isEmpty());
        QCOMPARE(findings(content), QStringList());
        const auto root = MainTree::read(content);
        const QByteArray written = MainTree::written(*root);
        QVERIFY(MainTree::equal(*MainTree::read(written), *root));
        QCOMPARE(findings(written), QStringList());
    }

    void shippedFilePassesWithoutAWord()
    {
        QFile file(QStringLiteral(SHIPPED_FILE));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        QVERIFY(content.contains("nivra_json_dst"));
        QCOMPARE(findings(content), QStringList());
        QCOMPARE(findings(MainTree::written(*MainTree::read(content))), QStringList());
    }

    void everyOtherSampleIsToldOf_data() { addSamples(false); }
    void everyOtherSampleIsToldOf()
    {
        QFETCH(QString, name);
        const QStringList found = findings(sample(name));
        QVERIFY(!found.isEmpty());
        for (const QString &finding : found) {
            QVERIFY(finding.size() < 250);
        }
    }

    void findingsNameLineAndText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("expected");
        const QByteArray tail("log {\n    source(s);\n};\n");
        QTest::newRow("comment") << QByteArray(
            "# why?\n" + tail) << QStringList{QStringLiteral("Line 1: the comment “# why?” would be lost.")};
        QTest::newRow("comment in a value")
            << QByteArray("destination d {\n    file(\"/a\" # why?\n    );\n};\n") << QStringList();
        QTest::newRow("parameter behind a comment")
            << QByteArray("source s {\n    # x\n    file(\"/a\");\n};\n")
            << QStringList{QStringLiteral("Line 2: the comment “# x” would be lost."),
                           QStringLiteral("Line 3: “file(\"/a\");” would be lost.")};
        QTest::newRow("negation") << QByteArray("filter f {\n    not facility(mail);\n};\n")
                                  << QStringList{QStringLiteral(
                                         "Line 2: “not facility” would become “notfacility”.")};
        QTest::newRow("order") << QByteArray(tail + "\n@include \"a.conf\"\n" + tail)
                               << QStringList{QStringLiteral(
                                      "Line 5: “@include \"a.conf\"” would be moved to another place.")};
        QTest::newRow("bare directive")
            << QByteArray("@version: 3.38\n\n" + tail)
            << QStringList{QStringLiteral("Line 1: “@version: 3.38” would be lost.")};
        QTest::newRow("semicolon") << QByteArray("destination d {\n    a(b\n    c(d))\n    e(f);\n};\n")
                                   << QStringList{QStringLiteral("Line 4: “;” would be added.")};
        QTest::newRow("zero byte")
            << QByteArray(tail + '\0' + tail)
            << QStringList{QStringLiteral(
                   "Line 4: everything from the zero byte to the end of the file would be lost.")};
        QTest::newRow("other encoding")
            << QByteArray("destination d {\n    file(\"/\xe4\");\n};\n")
            << QStringList{QStringLiteral("Line 2: the bytes that are not UTF-8 would be lost.")};
        QTest::newRow("channel") << QByteArray(
            "log {\n    source(s);\n    channel{\n    filter(f);\n    };\n    destination(e);\n};\n")
                                 << QStringList{QStringLiteral(
                                        "Line 6: “destination(e)” would become “destination{e}”.")};
    }

    void findingsNameLineAndText()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, expected);
        QCOMPARE(findings(content), expected);
    }

    void whatAnotherProgramWroteIsFound()
    {
        const QByteArray loaded("log {\n    source(s);\n};\n\n");
        const QByteArray present = loaded + "destination new {\n    file(\"/n\");\n};\n";
        QCOMPARE(
            LossCheck::findings(present, loaded, *MainTree::read(loaded)),
            QStringList{QStringLiteral("Lines 5 to 7: “destination new { file(\"/n\"); };” would be lost.")});
    }

    void newStatementThatIsNotReadBackIsFound()
    {
        const auto root = MainTree::read("log {\n    source(s);\n};\n");
        auto *block
            = new TreeItem({QStringLiteral("destination"), QStringLiteral("d"), QVariant()}, root.get());
        block->appendChild(
            new TreeItem({QStringLiteral("file"), QVariant(), QStringLiteral("\"/a(b\"")}, block));
        root->appendChild(block);
        QCOMPARE(LossCheck::notReadBack(*root),
                 QStringList{QStringLiteral("“destination d” would not be read back as it is.")});
    }

    void textThatTheSessionCannotEncodeIsFound()
    {
        QTextCodec *before = QTextCodec::codecForLocale();
        const auto root = MainTree::read(sample(QStringLiteral("cyrillic")));
        QCOMPARE(LossCheck::notReadBack(*root), QStringList());
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("KOI8-R"));
        const QStringList found = LossCheck::notReadBack(*root);
        QTextCodec::setCodecForLocale(before);
        QVERIFY(!found.isEmpty());
        QVERIFY(found.first().contains(QStringLiteral("журнал")));
    }

    void anyTextIsToldOfOrReadBackAsItWas()
    {
        const QStringList pieces{QStringLiteral("\n"),
                                 QStringLiteral("log {\n    a(b);\n};\n"),
                                 QStringLiteral("destination d {\n    c(\"}\" x({)\n);\n};\n"),
                                 QStringLiteral("destination d {\n    c(\"x\"\ny)\n;\n};\n"),
                                 QStringLiteral("filter f {\n    a(x)\n    or b(y);\n};\n"),
                                 QStringLiteral("filter f {\n    not a(x);\n};\n"),
                                 QStringLiteral("log { a(b); };\n"),
                                 QStringLiteral("log {\n    channel{\n    a(b);\n};\n};\n"),
                                 QStringLiteral("log {\n    if (a) {\n    a(b);\n};\n};\n"),
                                 QStringLiteral("# c\n"),
                                 QStringLiteral("@i \"x\"\n"),
                                 QStringLiteral("};\n")};
        QRandomGenerator random(20260120);
        int silent = 0;
        for (int i = 0; i < 6000; ++i) {
            QString text;
            for (int n = random.bounded(6); n > 0; --n) {
                text += pieces.at(random.bounded(pieces.size()));
            }
            const QByteArray content = text.toUtf8();
            if (!findings(content).isEmpty()) {
                continue;
            }
            silent += text.size() > 20 ? 1 : 0;
            const QByteArray written = MainTree::written(*MainTree::read(content));
            QCOMPARE(QString::fromUtf8(MainTree::written(*MainTree::read(written))).simplified(),
                     QString::fromUtf8(written).simplified());
            const auto words = [](const QByteArray &bytes) {
                QString all = QString::fromUtf8(bytes);
                return all.remove(QLatin1Char(' ')).remove(QLatin1Char('\n'));
            };
            QVERIFY2(words(written) == words(content), content.constData());
        }
        QVERIFY(silent > 50);
    }

private:
    static void addSamples(bool harmless)
    {
        const QStringList silent{QStringLiteral("blank-before-parenthesis"),
                                 QStringLiteral("blank-lines"),
                                 QStringLiteral("brace-on-next-line"),
                                 QStringLiteral("directive-before-block"),
                                 QStringLiteral("directive-glued-to-block"),
                                 QStringLiteral("driver-closed-by-two-parentheses"),
                                 QStringLiteral("driver-over-several-lines"),
                                 QStringLiteral("filter-words-inside-words"),
                                 QStringLiteral("many-blocks"),
                                 QStringLiteral("network-destination"),
                                 QStringLiteral("no-final-line-break"),
                                 QStringLiteral("one-line-blocks"),
                                 QStringLiteral("one-line-directive"),
                                 QStringLiteral("options-block"),
                                 QStringLiteral("parser-block"),
                                 QStringLiteral("rewrite-block"),
                                 QStringLiteral("several-drivers"),
                                 QStringLiteral("tabs-and-windows-lines"),
                                 QStringLiteral("three-directives"),
                                 QStringLiteral("version-and-include"),
                                 QStringLiteral("written-form")};
        QTest::addColumn<QString>("name");
        const QStringList files
            = QDir(QStringLiteral(CORPUS_DIR)).entryList({QStringLiteral("*.conf")}, QDir::Files, QDir::Name);
        int added = 0;
        for (const QString &file : files) {
            const QString name = file.section(QLatin1Char('.'), 0, 0);
            if (silent.contains(name) == harmless) {
                QTest::newRow(qPrintable(name)) << name;
                ++added;
            }
        }
        QVERIFY(added > 15);
    }
};

QTEST_GUILESS_MAIN(LossCheckTest)

#include "losschecktest.moc"
