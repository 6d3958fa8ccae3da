// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <logrotateparser.h>
#include <rotationkeywords.h>
#include <rotationwriter.h>

#include <treeitem.h>

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {
/// The section as text: its header, then one directive a line, a script's lines behind it in brackets.
QString sectionText(const TreeItem &root)
{
    const TreeItem *section = root.child(0);
    QStringList lines{section->value(0).toString()};
    for (int i = 0; i < section->childCount(); ++i) {
        const TreeItem *directive = section->child(i);
        const QString keyword = directive->value(0).toString();
        lines.append(directive->value(1).userType() == QMetaType::QStringList
                         ? keyword + QLatin1String(" [")
                             + directive->value(1).toStringList().join(QLatin1Char('|')) + QLatin1Char(']')
                         : QString(keyword + QLatin1Char(' ') + directive->value(1).toString()).trimmed());
    }
    return lines.join(QLatin1Char('\n'));
}

QString sectionOf(const QString &text)
{
    const std::unique_ptr<TreeItem> root = LogRotateParser::tree(scanRotation(text));
    return root ? sectionText(*root) : QStringLiteral("no tree: ") + scanRotation(text).error;
}

QStringList lossesOf(const QString &text)
{
    const RotationScan scan = scanRotation(text);
    return scan.isGood() ? scan.losses : QStringList{QStringLiteral("bad: ") + scan.error};
}

QString anyOf(const QStringList &texts, QRandomGenerator &random)
{
    return texts.at(random.bounded(texts.size()));
}

/// A well-formed file in a style of its own.
QString randomFile(QRandomGenerator &random)
{
    const QStringList blanks{QStringLiteral(" "), QStringLiteral("\t"), QStringLiteral("  ")};
    const QStringList fillers{QString(), QStringLiteral("\n"), QStringLiteral("# note\n"),
                              QStringLiteral("  # {\n"), QStringLiteral(" \t \n")};
    QString text = anyOf(fillers, random) + QStringLiteral("/var/log/a.log");
    text += anyOf({QStringLiteral(" {\n"), QStringLiteral("\n{\n"), QStringLiteral("{\n"),
                   QStringLiteral("\n/b/*.log\n{\n"), QStringLiteral(" \"/c/d e\" {  # x\n")},
                  random);
    const int count = random.bounded(8);
    for (int i = 0; i < count; ++i) {
        const QString keyword = anyOf(RotationKeywords::directives(), random);
        text += anyOf(fillers, random) + anyOf(blanks, random) + keyword;
        if (!RotationKeywords::isSwitch(keyword)) {
            text += anyOf({QStringLiteral(" "), QStringLiteral("="), QStringLiteral(" = "),
                           QStringLiteral("\t")},
                          random)
                + QString::number(random.bounded(200));
        }
        text += anyOf(blanks, random) + QLatin1Char('\n');
        if (random.bounded(4) == 0) {
            text += QStringLiteral("\tpostrotate\n\t\tif true; then\n\n\t\t\techo }  {\n  fi\n endscript\n");
        }
    }
    return text
        + anyOf({QStringLiteral("}"), QStringLiteral("}\n"), QStringLiteral(" } \n\n# end\n")}, random);
}
} // namespace

class LogRotateParserTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString file(const QByteArray &content) const
    {
        const QString path = m_directory.filePath(QStringLiteral("rotation"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write %s", qPrintable(path));
        }
        return path;
    }

    QTemporaryDir m_directory;

private Q_SLOTS:
    void treeHasTheSectionAndItsDirectives()
    {
        const LogRotateParser parser(
            file("/var/log/a.log   /var/log/b.log\t{\n\trotate 4\n  create 0640   root adm\n\n\tmissingok\n"
                 "\tpostrotate\n\t\techo a\n\t\techo   b\n\tendscript\n\tsize 5M\n}\n"),
            nullptr);
        const std::unique_ptr<TreeItem> root(parser.parse());
        QVERIFY(root);
        QCOMPARE(parser.errorString(), QString());
        QCOMPARE(root->rowData(), (QVector<QVariant>{QStringLiteral("Parameter"), QStringLiteral("Value")}));
        QCOMPARE(root->childCount(), 1);
        QCOMPARE(root->child(0)->parentItem(), root.get());
        QCOMPARE(root->child(0)->columnCount(), 2);
        QCOMPARE(sectionText(*root),
                 QStringLiteral("/var/log/a.log /var/log/b.log\nrotate 4\ncreate 0640 root adm\nmissingok\n"
                                "postrotate [echo a|echo b]\nsize 5M"));
    }

    void formsOfOneFile_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("section");
        const QString one = QStringLiteral("/a\nrotate 4");
        QTest::newRow("brace on the names' line") << QStringLiteral("/a {\nrotate 4\n}\n") << one;
        QTest::newRow("brace without a blank") << QStringLiteral("/a{\nrotate 4\n}\n") << one;
        QTest::newRow("brace on its own line") << QStringLiteral("/a\n{\nrotate 4\n}\n") << one;
        QTest::newRow("directive behind the brace") << QStringLiteral("/a { rotate 4\n}\n") << one;
        QTest::newRow("no line break at the end") << QStringLiteral("/a {\nrotate 4\n}") << one;
        QTest::newRow("empty lines before") << QStringLiteral("\n \n/a {\n\nrotate 4\n\n}\n\n") << one;
        QTest::newRow("comments everywhere")
            << QStringLiteral("# a\n/a {\n#rotate 5\n  # b\nrotate 4\n}\n# c\n") << one;
        QTest::newRow("comment behind a brace") << QStringLiteral("/a { # a\nrotate 4\n} # b\n") << one;
        QTest::newRow("carriage returns") << QStringLiteral("/a {\r\n\trotate 4\r\n}\r\n") << one;
        QTest::newRow("equals sign") << QStringLiteral("/a {\nrotate=4\n}") << one;
        QTest::newRow("equals sign with blanks") << QStringLiteral("/a {\nrotate = 4\n}") << one;
        QTest::newRow("end of the file for the brace") << QStringLiteral("/a {\nrotate 4\n") << one;
        QTest::newRow("names on several lines")
            << QStringLiteral("/a\n/b /c\n# x\n{\ndaily\n}") << QStringLiteral("/a /b /c\ndaily");
        QTest::newRow("quoted name") << QStringLiteral("\"/a b\" {\n}") << QStringLiteral("\"/a b\"");
        QTest::newRow("brace behind a switch")
            << QStringLiteral("/a { daily }") << QStringLiteral("/a\ndaily");
        QTest::newRow("comment behind a switch")
            << QStringLiteral("/a {\ndaily # x\n}") << QStringLiteral("/a\ndaily # x");
        QTest::newRow("braces in a script") << QStringLiteral("/a {\nprerotate\n}\n{ x }\nendscript\n}")
                                            << QStringLiteral("/a\nprerotate [}|{ x }]");
        QTest::newRow("keywords in a script")
            << QStringLiteral("/a {\nprerotate\nunknown\n\nendscript\nhourly\n}")
            << QStringLiteral("/a\nprerotate [unknown|]\nhourly");
        QTest::newRow("more behind the end of a script")
            << QStringLiteral("/a {\nprerotate\nx\nendscript # y\n}") << QStringLiteral("/a\nprerotate [x]");
    }

    void formsOfOneFile()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, section);
        QCOMPARE(sectionOf(text), section);
    }

    void everyKnownDirectiveIsTaken()
    {
        QCOMPARE(RotationKeywords::directives().size(), 20);
        for (const QString &keyword : RotationKeywords::directives()) {
            QCOMPARE(sectionOf(QStringLiteral("/a {\n%1 7\n}").arg(keyword)),
                     QStringLiteral("/a\n%1 7").arg(keyword));
        }
    }

    void badFileHasNoTreeAndSaysWhere_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown directive") << QByteArray("/a {\nrotate 4\nsu root adm\n}\n")
                                           << "Line 3: the directive “su” is not one that this page knows.";
        QTest::newRow("keyword in capitals")
            << QByteArray("/a {\nDaily\n}\n")
            << "Line 2: the directive “Daily” is not one that this page knows.";
        QTest::newRow("script without end") << QByteArray("/a {\n\npostrotate\necho\n}\n")
                                            << "Line 3: the script “postrotate” has no “endscript”.";
        QTest::newRow("end that is none") << QByteArray("/a {\npostrotate\nendscripts\n}\n")
                                          << "Line 2: the script “postrotate” has no “endscript”.";
        QTest::newRow("end without a script")
            << QByteArray("/a {\nendscript\n}\n")
            << "Line 2: the directive “endscript” is not one that this page knows.";
        QTest::newRow("other script")
            << QByteArray("/a {\nlastaction\nx\nendscript\n}\n")
            << "Line 2: the directive “lastaction” is not one that this page knows.";
        QTest::newRow("second section")
            << QByteArray("/a {\n}\n\n/b {\n}\n")
            << "Line 4: a second section begins with “/b {”; this page knows files of one section only.";
        QTest::newRow("directive before the section")
            << QByteArray("compress\n/a {\n}\n")
            << "Line 1: “compress” stands before the names of the log files.";
        QTest::newRow("no names") << QByteArray("{\ndaily\n}\n")
                                  << "Line 1: no log files are named before “{”.";
        QTest::newRow("no brace") << QByteArray("/a\n")
                                  << "The names of the log files are not followed by “{”.";
        QTest::newRow("comments only") << QByteArray("# a\n\n#b\n") << "The file names no log files.";
        QTest::newRow("value and brace on one line")
            << QByteArray("/a {\nrotate 4 }\n")
            << "Line 2: “rotate 4 }” is not one directive with its value.";
        QTest::newRow("two equals signs") << QByteArray("/a {\nrotate==4\n}\n")
                                          << "Line 2: “rotate==4” is not one directive with its value.";
        QTest::newRow("two braces") << QByteArray("/a {\n}}\n")
                                    << "Line 2: “}” stands behind the closing brace.";
        QTest::newRow("name inside") << QByteArray("/a {\n/b\n}\n")
                                     << "Line 2: the log file “/b” stands inside a section.";
        QTest::newRow("comment among the names")
            << QByteArray("/a # {\n{\n}\n") << "Line 1: “/a #” is not a list of log files.";
    }

    void badFileHasNoTreeAndSaysWhere()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QString, reason);
        const QString path = file(text);
        const LogRotateParser parser(path, nullptr);
        QVERIFY(!parser.parse());
        QCOMPARE(parser.errorString(), QString(path + QStringLiteral(": Bad config file")));
        QCOMPARE(parser.scan().error, reason);
        QVERIFY(!LogRotateParser::tree(parser.scan()));
    }

    void unreadableFileHasNoTreeAndSaysWhy()
    {
        const QString missing = m_directory.filePath(QStringLiteral("missing"));
        const LogRotateParser absent(missing, nullptr);
        QVERIFY(!absent.parse());
        QCOMPARE(absent.errorString(), QString(missing + QStringLiteral(": No such file or directory")));
        QCOMPARE(absent.scan().error, absent.errorString());
        const QString path = file({});
        const LogRotateParser empty(path, nullptr);
        QVERIFY(!empty.parse());
        QCOMPARE(empty.errorString(), QString(path + QStringLiteral(": Bad config file")));
        QVERIFY(!empty.scan().isGood());
    }

    void errorGoesWithTheNextGoodFile()
    {
        const LogRotateParser parser(file("/a {\nbad\n}"), nullptr);
        QVERIFY(!parser.parse());
        QVERIFY(!parser.errorString().isEmpty());
        QCOMPARE(file("/a {\n}"), parser.configFile());
        QVERIFY(std::unique_ptr<TreeItem>(parser.parse()));
        QCOMPARE(parser.errorString(), QString());
    }

    void whatTheTreeDoesNotCarryIsNamed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("losses");
        QTest::newRow("nothing") << QStringLiteral(
            "/a\t/b\n{\n\n rotate  4\n\tprerotate\n  x y\n\nendscript\n}")
                                 << QStringList();
        QTest::newRow("comments") << QStringLiteral("# one\n/a { # two\n  # three\n}  # four")
                                  << QStringList{
                                         QStringLiteral("Line 1: the comment “# one” would be lost."),
                                         QStringLiteral("Line 2: the comment “# two” would be lost."),
                                         QStringLiteral("Line 3: the comment “# three” would be lost."),
                                         QStringLiteral("Line 4: the comment “# four” would be lost.")};
        QTest::newRow("comment in a script")
            << QStringLiteral("/a {\nprerotate\n# x\n # kept\nendscript\n}")
            << QStringList{QStringLiteral("Line 3: the comment “# x” would be lost.")};
        QTest::newRow("blanks in a script")
            << QStringLiteral("/a {\nprerotate\necho 'a  b'\nendscript\n}")
            << QStringList{QStringLiteral("Line 3: blanks in “echo 'a b'” would be altered.")};
        QTest::newRow("text for a command in a script")
            << QStringLiteral("/a {\nprerotate\ncat <<X\n a\nX\nendscript\n}")
            << QStringList{QStringLiteral("Line 4: the indentation of “a” would be altered."),
                           QStringLiteral("Line 5: the indentation of “X” would be altered.")};
        QTest::newRow("text for a command as it was written")
            << "/a {\n\tprerotate\n\t\tcat <<X\n\t\ta\n\t\t\n\t\tX\n\tendscript\n}" << QStringList();
        QTest::newRow("around a script") << QStringLiteral("/a {\nprerotate now\nendscript # x\n}")
                                         << QStringList{QStringLiteral("Line 2: “now” would be lost."),
                                                        QStringLiteral("Line 3: “# x” would be lost.")};
        QTest::newRow("quoted names")
            << QStringLiteral("\"/a  b\" {\nolddir \"/c  d\"\n}")
            << QStringList{QStringLiteral("Line 1: blanks in “\"/a b\"” would be altered."),
                           QStringLiteral("Line 2: blanks in “olddir \"/c d\"” would be altered.")};
    }

    void whatTheTreeDoesNotCarryIsNamed()
    {
        QFETCH(const QString, text);
        QFETCH(const QStringList, losses);
        QCOMPARE(lossesOf(text), losses);
    }

    void bytesThatDecodingLosesAreNamed()
    {
        const LogRotateParser latin(file("/a {\nolddir /gr\xfc\xdf\n}\n"), nullptr);
        QCOMPARE(latin.scan().losses,
                 QStringList{QStringLiteral("Line 2: the bytes that are not UTF-8 would be lost.")});
        const LogRotateParser zero(file(QByteArray("/a {\ndaily\n}\n\0rest\n", 18)), nullptr);
        QCOMPARE(zero.scan().losses,
                 QStringList{QStringLiteral(
                     "Line 4: everything from the zero byte to the end of the file would be lost.")});
        const LogRotateParser plain(file("/журнал {\ndaily\n}\n"), nullptr);
        QCOMPARE(plain.scan().losses, QStringList());
    }

    void whatIsWrittenIsReadBack()
    {
        QRandomGenerator random(4711);
        for (int i = 0; i < 2000; ++i) {
            const QString text = randomFile(random);
            const std::unique_ptr<TreeItem> root = LogRotateParser::tree(scanRotation(text));
            QVERIFY2(root, qPrintable(scanRotation(text).error + QLatin1Char('\n') + text));
            const QString written = RotationWriter::lines(*root).join(QLatin1Char('\n')) + QLatin1Char('\n');
            QCOMPARE(sectionOf(written), sectionText(*root));
            QCOMPARE(lossesOf(written), QStringList());
            const std::unique_ptr<TreeItem> again = LogRotateParser::tree(scanRotation(written));
            QCOMPARE(RotationWriter::lines(*again).join(QLatin1Char('\n')) + QLatin1Char('\n'), written);
        }
    }

    void noTextStopsTheScan()
    {
        QRandomGenerator random(17);
        const QStringList pieces{
            QStringLiteral("{"),         QStringLiteral("}"),         QStringLiteral("\n"),
            QStringLiteral("/a"),        QStringLiteral(" "),         QStringLiteral("#"),
            QStringLiteral("prerotate"), QStringLiteral("endscript"), QStringLiteral("size"),
            QStringLiteral("="),         QStringLiteral("\""),        QStringLiteral("daily")};
        int good = 0;
        for (int i = 0; i < 20000; ++i) {
            QString text = QStringLiteral("/x {\n");
            const int count = random.bounded(12);
            for (int piece = 0; piece < count; ++piece) {
                text += anyOf(pieces, random);
            }
            const RotationScan scan = scanRotation(text);
            if (!scan.isGood()) {
                continue;
            }
            ++good;
            const std::unique_ptr<TreeItem> root = LogRotateParser::tree(scan);
            const QString written = RotationWriter::lines(*root).join(QLatin1Char('\n'));
            QVERIFY2(sectionOf(written) == sectionText(*root), qPrintable(text));
        }
        QVERIFY(good > 1000);
    }

    void shippedFileIsInWrittenForm()
    {
        const LogRotateParser parser(QStringLiteral(SHIPPED_DATA "/logrotate/syslog-ng-mod-nivra"), nullptr);
        const RotationScan scan = parser.scan();
        QCOMPARE(scan.error, QString());
        QCOMPARE(scan.losses, QStringList());
        const std::unique_ptr<TreeItem> root = LogRotateParser::tree(scan);
        QCOMPARE((RotationWriter::lines(*root).join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8(),
                 parser.readBytes());
    }
};

QTEST_GUILESS_MAIN(LogRotateParserTest)
#include "logrotateparsertest.moc"
