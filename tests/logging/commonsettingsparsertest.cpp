// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "referenceparser.h"
#include "treetext.h"

#include <commonsettingsparser.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

namespace {
QString parsed(const QString &text)
{
    const std::unique_ptr<TreeItem> root(CommonSettingsParser::parseText(text));
    return treeText(*root);
}

QString parsed(const char *text)
{
    return parsed(QString::fromUtf8(text));
}

const QString header = QStringLiteral("[Parameter][Name][Value]\n");

QString withHeader(const char *lines)
{
    return header + QString::fromUtf8(lines);
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}
} // namespace

class CommonSettingsParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesGiveTheTreesBesideThem_data()
    {
        QTest::addColumn<QString>("name");
        const QDir corpus(QStringLiteral(CORPUS_DIR));
        const QStringList names = corpus.entryList({QStringLiteral("*.conf")}, QDir::Files, QDir::Name);
        QVERIFY(names.size() >= 30);
        for (const QString &name : names) {
            QTest::newRow(qPrintable(name)) << corpus.filePath(name);
        }
    }

    void samplesGiveTheTreesBesideThem()
    {
        QFETCH(QString, name);
        QFile expected(QString(name).replace(QLatin1String(".conf"), QLatin1String(".tree")));
        QVERIFY(expected.open(QIODevice::ReadOnly));
        const CommonSettingsParser parser(name, nullptr);
        const std::unique_ptr<TreeItem> root(parser.parse());
        QCOMPARE(parser.errorString(), QString());
        QCOMPARE(treeText(*root), QString::fromUtf8(expected.readAll()));
        const std::unique_ptr<TreeItem> reference(ReferenceParser::parse(parser.readConfig()));
        if (!name.contains(QLatin1String("capital"))) {
            QCOMPARE(treeText(*root), treeText(*reference));
        }
    }

    void anyTextGivesTheTreeOfTheSlowParser()
    {
        const QStringList pieces{QStringLiteral("\n"),
                                 QStringLiteral("};\n"),
                                 QStringLiteral("log {\n"),
                                 QStringLiteral("    a(b);\n"),
                                 QStringLiteral("};\n"),
                                 QStringLiteral("log {\n"),
                                 QStringLiteral("    c (d);\n"),
                                 QStringLiteral("source s {"),
                                 QStringLiteral("{"),
                                 QStringLiteral("}"),
                                 QStringLiteral("and"),
                                 QStringLiteral("or"),
                                 QStringLiteral("("),
                                 QStringLiteral(")"),
                                 QStringLiteral("));"),
                                 QStringLiteral("\"x\""),
                                 QStringLiteral("@i \"x\"\n"),
                                 QStringLiteral(" "),
                                 QStringLiteral("\t"),
                                 QStringLiteral("# c\n"),
                                 QStringLiteral("if {"),
                                 QStringLiteral("e(f\n"),
                                 QStringLiteral("g(h))\n"),
                                 QStringLiteral("))\n")};
        QRandomGenerator random(20260116);
        int withParameters = 0;
        for (int i = 0; i < 15000; ++i) {
            QString text;
            const int count = random.bounded(30);
            for (int piece = 0; piece < count; ++piece) {
                text += pieces.at(random.bounded(pieces.size()));
            }
            const std::unique_ptr<TreeItem> expected(ReferenceParser::parse(text));
            withParameters += treeText(*expected).contains(QLatin1String("\n    [")) ? 1 : 0;
            QVERIFY2(parsed(text) == treeText(*expected),
                     qPrintable(text + parsed(text) + treeText(*expected)));
        }
        QVERIFY(withParameters > 300);
    }

    void directiveLinesFormOneStatement()
    {
        QCOMPARE(parsed("@version: 3.38\n@include \"scl.conf\""),
                 withHeader("  [@version: 3.38\\n@include][scl.conf]-\n"));
    }

    void blockOnTheLastLineProducesNothing()
    {
        QCOMPARE(parsed("destination d { file(\"/a\"); };"), header);
        QCOMPARE(parsed("destination d { file(\"/a\"); };\n"),
                 withHeader("  [destination][d]-\n    [file]-[\"/a\"]\n"));
    }

    void logPathOfFourLinesGivesItsTwoParameters()
    {
        QCOMPARE(
            parsed("log {\n    source(nivra_events_src);\n    destination(nivra_json_dst);\n};"),
            withHeader("  [log][]-\n    [source]-[nivra_events_src]\n    [destination]-[nivra_json_dst]\n"));
    }

    void blockWithCapitalKeywordIsDropped_data()
    {
        QTest::addColumn<QString>("head");
        for (const char *head :
             {"Source s", "SOURCE s", "SOURCE s_local", "Log", "LOG", "sourcE s", "Source  S1"}) {
            QTest::newRow(head) << QString::fromUtf8(head);
        }
    }

    void blockWithCapitalKeywordIsDropped()
    {
        QFETCH(QString, head);
        QCOMPARE(parsed(head + QStringLiteral(" {\n    file(\"/a\");\n};\n")), header);
    }

    void capitalsElsewhereDoNoHarm()
    {
        QCOMPARE(parsed("# NOTE\nlog {\n    source(S);\n};"), withHeader("  [log][]-\n    [source]-[S]\n"));
        QCOMPARE(parsed("# Paths\nlog {\n    source(S);\n};"),
                 withHeader("  [aths][log]-\n    [source]-[S]\n"));
        QCOMPARE(parsed("source Main {\n    a(\"X\");\n};"),
                 withHeader("  [source][Main]-\n    [a]-[\"X\"]\n"));
    }

    void twoParenthesesEndAnEntryUnlessItIsAConjunction()
    {
        QCOMPARE(parsed("destination d {\n    a(b\n    c(d))\n    e(f);\n};\n"),
                 withHeader("  [destination][d]-\n    [a]-[b\\nc(d)]\n    [e]-[f]\n"));
        QCOMPARE(parsed("filter f {\n    a(b and\n    c(d))\n    e(f);\n};\n"),
                 withHeader("  [filter][f]-\n    [a]-[b and\\nc(d))\\ne(f]\n"));
    }

    void blanksInsideNamesAreRemoved()
    {
        QCOMPARE(parsed("source s {\n    file (\"/a b\");\n};"),
                 withHeader("  [source][s]-\n    [file]-[\"/a b\"]\n"));
    }

    void valueReachesToTheLastParenthesis()
    {
        QCOMPARE(parsed("destination d {\n    file(\"/a\" template(t));\n};"),
                 withHeader("  [destination][d]-\n    [file]-[\"/a\" template(t)]\n"));
    }

    void missingFileIsToldWithItsPath()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("absent.conf"));
        const CommonSettingsParser parser(path, nullptr);
        const std::unique_ptr<TreeItem> root(parser.parse());
        QCOMPARE(treeText(*root), header);
        QCOMPARE(parser.errorString(), path + QStringLiteral(": No such file or directory"));
    }

    void fileWithoutTextIsBad()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a.conf"));
        for (const QByteArray &content : {QByteArray(), QByteArray("\0log {\n a(b);\n};", 16)}) {
            write(path, content);
            const CommonSettingsParser parser(path, nullptr);
            const std::unique_ptr<TreeItem> root(parser.parse());
            QCOMPARE(treeText(*root), header);
            QCOMPARE(parser.errorString(), path + QStringLiteral(": Bad config file"));
        }
    }

    void textEndsAtTheFirstZeroByte()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a.conf"));
        write(path, QByteArray("log {\n a(b);\n};\n") + '\0' + "log {\n c(d);\n};\n");
        const CommonSettingsParser parser(path, nullptr);
        const std::unique_ptr<TreeItem> root(parser.parse());
        QCOMPARE(root->childCount(), 1);
    }

    void errorGoesWithTheNextSuccess()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a.conf"));
        const CommonSettingsParser parser(path, nullptr);
        QVERIFY(parser.readConfig().isEmpty());
        QVERIFY(!parser.errorString().isEmpty());
        write(path, "log {\n a(b);\n};\n");
        QVERIFY(!parser.readConfig().isEmpty());
        QCOMPARE(parser.errorString(), QString());
        QCOMPARE(parser.configFile(), path);
    }

    void pipeInPlaceOfTheFileIsRefused()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        const CommonSettingsParser parser(path, nullptr);
        const std::unique_ptr<TreeItem> root(parser.parse());
        QCOMPARE(treeText(*root), header);
        QVERIFY(parser.errorString().startsWith(path + QStringLiteral(": ")));
    }

    void everyNodeKnowsItsParent()
    {
        const std::unique_ptr<TreeItem> root(
            CommonSettingsParser::parseText(QStringLiteral("@i \"x\"\n\nlog {\n a(b);\n};\n")));
        QCOMPARE(root->childCount(), 2);
        QCOMPARE(root->child(0)->parentItem(), root.get());
        QCOMPARE(root->child(1)->parentItem(), root.get());
        QCOMPARE(root->child(1)->child(0)->parentItem(), root->child(1));
        QCOMPARE(root->child(1)->child(0)->columnCount(), 3);
    }
};

QTEST_GUILESS_MAIN(CommonSettingsParserTest)

#include "commonsettingsparsertest.moc"
