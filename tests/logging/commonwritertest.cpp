// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treetext.h"

#include <commonsettingsparser.h>
#include <commonwriter.h>
#include <configaccessservice.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegExp>
#include <QTest>

#include <memory>

namespace {
TreeItem *add(TreeItem &parent, const QString &first, const QVariant &second, const QVariant &third)
{
    auto *item = new TreeItem({first, second, third}, &parent);
    parent.appendChild(item);
    return item;
}

TreeItem *addBlock(TreeItem &root, const char *keyword, const char *name)
{
    return add(root, QString::fromUtf8(keyword), QString::fromUtf8(name), QVariant());
}

void addParameter(TreeItem *block, const char *name, const char *value)
{
    add(*block, QString::fromUtf8(name), QVariant(), QString::fromUtf8(value));
}

std::unique_ptr<TreeItem> emptyRoot()
{
    return std::make_unique<TreeItem>(
        QVector<QVariant>{QStringLiteral("Parameter"), QStringLiteral("Name"), QStringLiteral("Value")});
}

QString statement(const TreeItem &root)
{
    const QStringList all = CommonWriter::statements(root);
    return all.size() == 1 ? all.first() : QStringLiteral("%1 statements").arg(all.size());
}

std::unique_ptr<TreeItem> parsed(const QStringList &statements)
{
    const QByteArray content = ConfigAccessService::contentOf(statements);
    return std::unique_ptr<TreeItem>(CommonSettingsParser::parseText(AbstractConfigParser::decode(content)));
}
} // namespace

class CommonWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void directiveIsOneLine()
    {
        const auto root = emptyRoot();
        add(*root, QStringLiteral("@version: 3.38\n@include"), QStringLiteral("scl.conf"), QVariant());
        QCOMPARE(statement(*root), QStringLiteral("@version: 3.38\n@include \"scl.conf\"\n"));
        root->child(0)->setData(1, QVariant());
        addParameter(root->child(0), "ignored", "too");
        QCOMPARE(statement(*root), QStringLiteral("@version: 3.38\n@include \"\"\n"));
    }

    void logPathIsFourLines()
    {
        const auto root = emptyRoot();
        TreeItem *log = addBlock(*root, "log", "");
        addParameter(log, "source", "nivra_events_src");
        addParameter(log, "destination", "nivra_json_dst");
        QCOMPARE(
            statement(*root),
            QStringLiteral("log {\n    source(nivra_events_src);\n    destination(nivra_json_dst);\n};\n"));
    }

    void blockWithoutParametersIsHeaderAndEnd()
    {
        const auto root = emptyRoot();
        addBlock(*root, "destination", "d");
        QCOMPARE(statement(*root), QStringLiteral("destination d {\n};\n"));
    }

    void parametersFromChannelOnTakeBraces()
    {
        const auto root = emptyRoot();
        TreeItem *log = addBlock(*root, "log", "");
        addParameter(log, "source", "s");
        addParameter(log, "channel", "\nfilter(f);\n");
        addParameter(log, "destination", "d");
        QCOMPARE(
            statement(*root),
            QStringLiteral("log {\n    source(s);\n    channel{\nfilter(f);\n};\n    destination{d};\n};\n"));
    }

    void parametersFromConditionOnTakeBraces()
    {
        const auto root = emptyRoot();
        TreeItem *log = addBlock(*root, "log", "");
        addParameter(log, "if", "a");
        addParameter(log, "destination", "d");
        QCOMPARE(statement(*root), QStringLiteral("log {\n    if{a};\n    destination{d};\n};\n"));
    }

    void wordInValueTurnsTheNextParameterOnly()
    {
        const auto root = emptyRoot();
        TreeItem *log = addBlock(*root, "log", "");
        addParameter(log, "a", "x if y");
        addParameter(log, "b", "c");
        QCOMPARE(statement(*root), QStringLiteral("log {\n    a(x if y);\n    b{c};\n};\n"));
    }

    void wordsInsideWordsDoNotTurnIt_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"notify", "verif", "iffy", "channels", "my_channel", "channel2", "xchannel"}) {
            QTest::newRow(name) << QString::fromUtf8(name);
        }
    }

    void wordsInsideWordsDoNotTurnIt()
    {
        QFETCH(QString, name);
        const auto root = emptyRoot();
        add(*addBlock(*root, "log", "x"), name, QVariant(), QStringLiteral("v"));
        QCOMPARE(statement(*root), QStringLiteral("log x {\n    %1(v);\n};\n").arg(name));
    }

    void braceTestIsThatOfThePatterns()
    {
        const QRegExp condition(QStringLiteral("\\bif\\b|\\bif\\s*\\{|\\bif\\s"));
        const QRegExp channel(
            QStringLiteral("(^|[^a-zA-Z0-9_])channel(\\s*\\{\\s*\\})?(\\s*\\})?([^a-zA-Z0-9_]|$)"));
        const QStringList pieces{QStringLiteral("if"), QStringLiteral("channel"), QStringLiteral(" "),
                                 QStringLiteral("{"),  QStringLiteral("}"),       QStringLiteral("\n"),
                                 QStringLiteral("_"),  QStringLiteral("a"),       QStringLiteral("7"),
                                 QStringLiteral("-"),  QStringLiteral("\u044f")};
        ConfigAccessService service(nullptr);
        const CommonWriter writer(service, QStringLiteral("/etc/x"));
        QRandomGenerator random(20260117);
        int found = 0;
        for (int i = 0; i < 20000; ++i) {
            QString text;
            const int count = random.bounded(7);
            for (int piece = 0; piece < count; ++piece) {
                text += pieces.at(random.bounded(pieces.size()));
            }
            const bool expected = condition.indexIn(text) >= 0 || channel.indexIn(text) >= 0;
            found += expected ? 1 : 0;
            QVERIFY2(writer.findItemIf(text) == expected, qPrintable(text));
        }
        QVERIFY(found > 2000 && found < 18000);
    }

    /// createConfig() looks at each piece of a block once; the outcome is that of looking at all of it each
    /// time.
    void everyParameterSeesTheWholeStatement()
    {
        ConfigAccessService service(nullptr);
        CommonWriter writer(service, QStringLiteral("/etc/x"));
        const QStringList words{QStringLiteral("if"),      QStringLiteral("i"),    QStringLiteral("f"),
                                QStringLiteral("channel"), QStringLiteral("a if"), QStringLiteral("if_")};
        QRandomGenerator random(20260118);
        for (int i = 0; i < 2000; ++i) {
            const auto root = emptyRoot();
            TreeItem *block = addBlock(*root, "log", i % 3 == 0 ? "if" : "n");
            QString expected = QLatin1String("log ") + block->data(1).toString() + QLatin1String(" {\n");
            for (int parameter = random.bounded(4); parameter > 0; --parameter) {
                const QString &name = words.at(random.bounded(words.size()));
                const QString &value = words.at(random.bounded(words.size()));
                add(*block, name, QVariant(), value);
                expected += QLatin1String("    ") + name;
                expected += writer.findItemIf(expected) ? QLatin1Char('{') + value + QLatin1String("};\n")
                                                        : QLatin1Char('(') + value + QLatin1String(");\n");
            }
            QCOMPARE(writer.getConfig(root.get()), QStringList{expected + QLatin1String("};\n")});
        }
    }

    void emptyTreeGivesNoStatements() { QVERIFY(CommonWriter::statements(*emptyRoot()).isEmpty()); }

    void whatIsReadFromAWrittenFileIsWrittenAgain_data()
    {
        QTest::addColumn<QString>("path");
        const QDir corpus(QStringLiteral(CORPUS_DIR));
        const QStringList names = corpus.entryList({QStringLiteral("*.conf")}, QDir::Files, QDir::Name);
        // Braces inside values come out as something else, so these are not files that were written.
        const QStringList broken{QStringLiteral("balanced-braces-in-string.conf"),
                                 QStringLiteral("if-else.conf"), QStringLiteral("junction.conf"),
                                 QStringLiteral("template-block.conf")};
        for (const QString &name : names) {
            if (!broken.contains(name)) {
                QTest::newRow(qPrintable(name)) << corpus.filePath(name);
            }
        }
    }

    void whatIsReadFromAWrittenFileIsWrittenAgain()
    {
        QFETCH(QString, path);
        const CommonSettingsParser parser(path, nullptr);
        const std::unique_ptr<TreeItem> first(parser.parse());
        const QStringList statements = CommonWriter::statements(*first);
        const auto second = parsed(statements);
        const QStringList again = CommonWriter::statements(*second);
        QCOMPARE(again.size(), statements.size());
        for (int i = 0; i < again.size(); ++i) {
            // A blank line before a directive becomes part of it.
            QCOMPARE(again.at(i).trimmed(), statements.at(i).trimmed());
        }
    }
};

QTEST_GUILESS_MAIN(CommonWriterTest)

#include "commonwritertest.moc"
