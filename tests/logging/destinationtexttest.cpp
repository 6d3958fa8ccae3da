// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treetext.h"

#include <destinationnames.h>
#include <destinationreferences.h>
#include <destinationsdictionary.h>
#include <destinationtext.h>
#include <filesystemtree.h>
#include <foreigndestinations.h>
#include <maintree.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

namespace {
QVector<QVariant> fileValues(const QString &path)
{
    return {QStringLiteral("file"), QStringLiteral("d1"), path, 514, QStringLiteral("tcp")};
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}
} // namespace

class DestinationTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileValueIsThePathInQuotes()
    {
        QCOMPARE(DestinationText::value(fileValues(QStringLiteral("/var/log/a b"))),
                 QStringLiteral("\"/var/log/a b\""));
        QCOMPARE(DestinationText::value(fileValues(QStringLiteral("/a\"b\\c`d"))),
                 QStringLiteral("\"/a\\\"b\\\\c``d\""));
    }

    void networkValueHasAllClauses()
    {
        QVector<QVariant> values{QStringLiteral("network"), QStringLiteral("d1"), QStringLiteral("10.0.0.1"),
                                 514, QStringLiteral("tcp")};
        QCOMPARE(DestinationText::value(values),
                 QStringLiteral("\"10.0.0.1\" port(514) transport(tcp) flags(syslog-protocol)"));
        values.removeLast();
        QCOMPARE(DestinationText::value(values), QStringLiteral("\"10.0.0.1\""));
    }

    void shownValuesAreTakenOutOfTheirQuotes_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
        const QString file = QStringLiteral("file");
        const QString network = QStringLiteral("network");
        QTest::newRow("file") << file << QStringLiteral("\"/a b\" template(t)") << QStringLiteral("/a b");
        QTest::newRow("escaped") << file << QStringLiteral("\"/a\\\"b\\\\c``\"")
                                 << QStringLiteral("/a\"b\\c`");
        QTest::newRow("single quotes") << file << QStringLiteral("'/a\\b'") << QStringLiteral("/a\\b");
        QTest::newRow("no quotes") << file << QStringLiteral("/a") << QStringLiteral("/a");
        QTest::newRow("network")
            << network << QStringLiteral("\"10.0.0.1\" port(514) transport(tcp) flags(syslog-protocol)")
            << QStringLiteral("10.0.0.1 port(514) transport(tcp) flags(syslog-protocol)");
        QTest::newRow("address only") << network << QStringLiteral("\"h\"") << QStringLiteral("h");
        QTest::newRow("lines") << network << QStringLiteral("\n\"h\"\nport(1)\n")
                               << QStringLiteral("h port(1)");
        QTest::newRow("other") << QStringLiteral("pipe") << QStringLiteral("\"/p\"\nx")
                               << QStringLiteral("\"/p\" x");
    }

    void shownValuesAreTakenOutOfTheirQuotes()
    {
        QFETCH(QString, kind);
        QFETCH(QString, value);
        QTEST(DestinationText::shown(kind, value), "expected");
    }

    void pathsThatSurviveAreTaken_data()
    {
        QTest::addColumn<QString>("path");
        for (const char *path :
             {"/var/log/a", "relative",    "/a b c",  "/a\"b", "/a\\b", "/a\\", "\"",   "/orders and more",
              "/a(b)c",     "/журнал",     "/a#b",    "/a;b",  "/a'b",  "/a`b", "/a,b", "/$HOST/x",
              "/a@b",       "/if/channel", "/a);b(c", "C:\\x", "//"}) {
            QTest::newRow(path) << QString::fromUtf8(path);
        }
    }

    void pathsThatSurviveAreTaken()
    {
        QFETCH(QString, path);
        QCOMPARE(DestinationText::keepingError(fileValues(path)), QString());
        const auto root = MainTree::read({});
        root->appendChildDestination(DestinationText::makeBlock(fileValues(path), root.get()));
        const auto again = MainTree::read(MainTree::written(*root));
        QVERIFY(MainTree::equal(*again, *root));
        QCOMPARE(DestinationText::firstQuoted(again->child(0)->child(0)->data(2).toString()), path);
    }

    void pathsThatDoNotSurviveAreRefusedWithTheReason_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("reason");
        QTest::newRow("empty") << QString() << QStringLiteral("empty");
        QTest::newRow("blank") << QStringLiteral("  ") << QStringLiteral("empty");
        QTest::newRow("line break") << QStringLiteral("/a\nb") << QStringLiteral("control character");
        QTest::newRow("bell") << QStringLiteral("/a\ab") << QStringLiteral("control character");
        QTest::newRow("separator") << QStringLiteral("/a\u2028b") << QStringLiteral("control character");
        QTest::newRow("brace") << QStringLiteral("/a{b") << QStringLiteral("“{”");
        QTest::newRow("macro") << QStringLiteral("/${HOST}/a") << QStringLiteral("configuration file");
        QTest::newRow("parenthesis") << QStringLiteral("/a(b") << QStringLiteral("“(”");
        QTest::newRow("other parenthesis") << QStringLiteral("/a)b") << QStringLiteral("“)”");
        QTest::newRow("sign before a second quote")
            << QStringLiteral("/a\"b@ \"c") << QStringLiteral("configuration file");
    }

    void pathsThatDoNotSurviveAreRefusedWithTheReason()
    {
        QFETCH(QString, path);
        QFETCH(QString, reason);
        const QString error = DestinationText::keepingError(fileValues(path));
        QVERIFY2(error.contains(reason), qPrintable(error));
    }

    void pathThatTheSessionCannotEncodeIsRefused()
    {
        QTextCodec *before = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        const QString lacking = DestinationText::keepingError(fileValues(QStringLiteral("/журнал")));
        // Latin-1 has the letter, but the file is read as UTF-8.
        const QString other = DestinationText::keepingError(fileValues(QStringLiteral("/tür")));
        QTextCodec::setCodecForLocale(before);
        QVERIFY(lacking.contains(QStringLiteral("encoding")));
        QVERIFY(!other.isEmpty());
    }

    void namesAreLettersDigitsAndUnderscores_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("valid");
        for (const char *name : {"d", "D1", "my_dest", "logs", "iffy", "Log", "order", "and", "or"}) {
            QTest::newRow(name) << QString::fromUtf8(name) << true;
        }
        for (const char *name :
             {"", "1d", "_d", "a-b", "a b", "é", "aя", "a\n", "if", "else", "channel", "log", "junction",
              "source", "destination", "yes", "template", "a\"", "a{"}) {
            QTest::newRow(name) << QString::fromUtf8(name) << false;
        }
    }

    void namesAreLettersDigitsAndUnderscores()
    {
        QFETCH(QString, name);
        QTEST(DestinationNames::isValid(name), "valid");
    }

    void dictionaryKnowsItsTwoKinds()
    {
        const DestinationsDictionary &dictionary = DestinationsDictionary::instance();
        QCOMPARE(dictionary.entries().size(), 2);
        QCOMPARE(dictionary.findByParameter(QStringLiteral("file"))->name, QStringLiteral("File"));
        QCOMPARE(dictionary.findByParameter(QStringLiteral("network"))->name, QStringLiteral("Network"));
        QVERIFY(!dictionary.findByParameter(QStringLiteral("pipe")));
        QCOMPARE(&dictionary, &DestinationsDictionary::instance());
    }

    void mentionsGetNodesOfTheirOwn_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<QString>("left");
        QTest::newRow("one line") << QByteArray("log { source(s); destination(d1); destination(e); };\n\n")
                                  << QStringLiteral("source=s destination=e");
        QTest::newRow("empty value") << QByteArray(
            "log { source(s); flags(); destination(d1); destination(e); };\n\n")
                                     << QStringLiteral("source=s flags= destination=e");
        QTest::newRow("words") << QByteArray(
            "log {\n    source(orders);\n    destination(d1);\n    destination(e);\n};\n")
                               << QStringLiteral("source=orders destination=e");
        QTest::newRow("quotes") << QByteArray(
            "log {\n    source(\"d1\");\n    destination(\"d1\");\n    destination( e );\n};\n")
                                << QStringLiteral("source=\"d1\" destination= e ");
        QTest::newRow("only one") << QByteArray("log { source(d1); destination( d1 ); };\n\n") << QString();
        QTest::newRow("none") << QByteArray("log { source(d1); destination(d11); };\n\n")
                              << QStringLiteral("source=d1 destination=d11");
    }

    void mentionsGetNodesOfTheirOwn()
    {
        QFETCH(QByteArray, log);
        const auto root = MainTree::read(log);
        QCOMPARE(root->childCount(), 1);
        const QString name = QStringLiteral("d1");
        QVERIFY(!DestinationReferences::isNested(*root, name));
        DestinationReferences::isolate(*root, name);
        root->deleteLogChild(name);
        QStringList left;
        const auto parameters = root->child(0) ? DestinationReferences::parameters(*root->child(0))
                                               : QVector<DestinationReferences::Parameter>();
        for (const DestinationReferences::Parameter &parameter : parameters) {
            left.append(parameter.name + QLatin1Char('=') + parameter.value);
        }
        QTEST(left.join(QLatin1Char(' ')), "left");
    }

    void mentionsInNestedBlocksAreSeen_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<bool>("nested");
        QTest::newRow("channel") << QByteArray(
            "log {\n    source(s);\n    channel{\n    destination(d1);\n    };\n};\n")
                                 << true;
        QTest::newRow("quoted") << QByteArray("log {\n    channel{ destination ( 'd1' ); };\n};\n") << true;
        QTest::newRow("another") << QByteArray("log {\n    channel{ destination(d11); };\n};\n") << false;
        QTest::newRow("source") << QByteArray("log {\n    channel{ source(d1); };\n};\n") << false;
        QTest::newRow("plain") << QByteArray("log {\n    destination(d1);\n};\n") << false;
        QTest::newRow("no log path") << QByteArray("junction {\n    channel{ destination(d1); };\n};\n")
                                     << false;
    }

    void mentionsInNestedBlocksAreSeen()
    {
        QFETCH(QByteArray, log);
        const auto root = MainTree::read(log);
        QCOMPARE(root->childCount(), 1);
        QTEST(DestinationReferences::isNested(*root, QStringLiteral("d1")), "nested");
    }

    void directoryTreeHoldsDirectoriesAndFiles()
    {
        const QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("a/b")));
        QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("c")));
        write(directory.filePath(QStringLiteral("1.conf")), "x");
        write(directory.filePath(QStringLiteral("a/b/2.conf")), "x");
        write(directory.filePath(QStringLiteral("a/b/3.conf")), "x");
        QVERIFY(QFile::link(directory.path(), directory.filePath(QStringLiteral("c/above"))));

        const FileSystemTree tree(directory.path());
        QVERIFY(tree.root());
        QCOMPARE(tree.root()->path, directory.path());
        QVERIFY(!tree.root()->parent);
        QCOMPARE(tree.root()->files, QStringList{QStringLiteral("1.conf")});
        QCOMPARE(int(tree.root()->children.size()), 2);
        const FileSystemNode &a = *tree.root()->children.at(0);
        QCOMPARE(a.path, directory.path() + QStringLiteral("/a"));
        QCOMPARE(a.parent, tree.root());
        QCOMPARE(a.children.at(0)->files, (QStringList{QStringLiteral("2.conf"), QStringLiteral("3.conf")}));
        const FileSystemNode &link = *tree.root()->children.at(1)->children.at(0);
        QVERIFY(link.children.empty());
        QVERIFY(!FileSystemTree(directory.filePath(QStringLiteral("1.conf"))).root());
        QVERIFY(!FileSystemTree(directory.filePath(QStringLiteral("absent"))).root());
    }

    void namesInOtherFilesAreFound()
    {
        QCOMPARE(ForeignDestinations::namesIn(
                     QStringLiteral("# destination no { };\ndestination d_a { file(\"/a\"); };\n"
                                    "log { source(s); destination(d_b); destination { file(\"/c\"); }; };\n"
                                    "block destination tpl() { };\ndestination \"d c\"\n{\n};\ndestination")),
                 (QStringList{QStringLiteral("d_a"), QStringLiteral("d c")}));
        const QTemporaryDir root;
        qputenv("ADMINEVENTS_ROOT", root.path().toUtf8());
        QVERIFY(ForeignDestinations::names().isEmpty());
        QVERIFY(QDir(root.path()).mkpath(QStringLiteral("etc/syslog-ng/conf.d")));
        write(root.filePath(QStringLiteral("etc/syslog-ng/syslog-ng.conf")), "destination d_x { };\n");
        write(root.filePath(QStringLiteral("etc/syslog-ng/notes.txt")), "destination d_y { };\n");
        write(root.filePath(QStringLiteral("etc/syslog-ng/conf.d/mod-nivra.conf")), "destination d_z { };\n");
        write(root.filePath(QStringLiteral("etc/syslog-ng/conf.d/b.conf")), "destination d_b { };\n");
        QStringList names = ForeignDestinations::names();
        names.sort();
        QCOMPARE(names, (QStringList{QStringLiteral("d_b"), QStringLiteral("d_x")}));
        qunsetenv("ADMINEVENTS_ROOT");
    }
};

QTEST_GUILESS_MAIN(DestinationTextTest)

#include "destinationtexttest.moc"
