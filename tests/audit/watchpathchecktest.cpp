// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <watchpathcheck.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using WatchPathCheck::Presence;
using WatchPathCheck::Target;

/// Which paths audit rules can carry, and what is said of paths that are not there.
class WatchPathCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWhatRulesCannotCarry_data();
    void refusesWhatRulesCannotCarry();
    void takesWhatRulesCarry_data();
    void takesWhatRulesCarry();
    void takesKeysUpToTheirLargestSizeInBytes();
    void onlyDirectoriesMayBeTheRoot();
    void tellsAPathToComeFromOneWithoutDirectory();
    void aDanglingLinkIsThere();
    void aDirectoryToComeIsNotedDifferentlyFromAFile();
};

void WatchPathCheckTest::refusesWhatRulesCannotCarry_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");
    const auto add = [](const char *name, const QString &path, const char *reason) {
        QTest::newRow(name) << path << QString::fromUtf8(reason);
    };
    add("nothing", QString(), "not an absolute path");
    add("relative", QStringLiteral("etc/passwd"), "not an absolute path");
    add("home", QStringLiteral("~/x"), "not an absolute path");
    add("blank", QStringLiteral("/a b"), "blank");
    add("blank at the end", QStringLiteral("/a "), "blank");
    add("no-break space", QStringLiteral("/a\u00a0b"), "blank");
    add("ideographic space", QStringLiteral("/a\u3000b"), "blank");
    add("line break", QStringLiteral("/a\nb"), "line break");
    add("carriage return", QStringLiteral("/a\rb"), "line break");
    add("tab", QStringLiteral("/a\tb"), "control character");
    add("paragraph", QStringLiteral("/a\u2029b"), "line break");
    add("delete", QStringLiteral("/a\u007fb"), "control character");
    add("zero", QString::fromLatin1("/a\0b", 4), "control character");
    add("comma", QStringLiteral("/a,b"), "comma");
    add("unequal", QStringLiteral("/a!=b"), "“!=”");
    add("at least", QStringLiteral("/a>=b"), "“>=”");
    add("at most", QStringLiteral("/a<=b"), "“<=”");
    add("bits", QStringLiteral("/a&=b"), "“&=”");
    add("trailing slash", QStringLiteral("/etc/"), "slash");
    add("the root as a file", QStringLiteral("/"), "slash");
    add("half a character", QStringLiteral("/a") + QChar(0xd800), "UTF-8");
    add("bytes that are no text", QFile::decodeName("/a\xff"), "UTF-8");
}

void WatchPathCheckTest::refusesWhatRulesCannotCarry()
{
    QFETCH(QString, path);
    QFETCH(QString, reason);
    const QString problem = WatchPathCheck::problem(path, Target::File);
    QVERIFY2(problem.contains(reason), qPrintable(problem));
    QVERIFY(!problem.contains(QLatin1Char('\n')));
}

void WatchPathCheckTest::takesWhatRulesCarry_data()
{
    QTest::addColumn<QString>("path");
    const QStringList paths{QStringLiteral("/etc/passwd"), QStringLiteral("/Документы/отчёт"),
                            QStringLiteral("/a\"b"),       QStringLiteral("/a'b"),
                            QStringLiteral("/a#b"),        QStringLiteral("/a\\b"),
                            QStringLiteral("/a=b"),        QStringLiteral("/a<b>c&d!e"),
                            QStringLiteral("/-x"),         QStringLiteral("/a*?[b]"),
                            QStringLiteral("/a%1"),        QStringLiteral("/a..b")};
    for (const QString &path : paths) {
        QTest::newRow(qPrintable(path)) << path;
    }
}

void WatchPathCheckTest::takesWhatRulesCarry()
{
    QFETCH(QString, path);
    QCOMPARE(WatchPathCheck::problem(path, Target::File), QString());
    QCOMPARE(WatchPathCheck::problem(path, Target::Directory), QString());
}

void WatchPathCheckTest::takesKeysUpToTheirLargestSizeInBytes()
{
    const QString longest = QLatin1Char('/') + QString(255, QLatin1Char('x'));
    QCOMPARE(WatchPathCheck::problem(longest, Target::File), QString());
    const QString problem = WatchPathCheck::problem(longest + QLatin1Char('x'), Target::File);
    QVERIFY2(problem.contains(QLatin1String("257")) && problem.contains(QLatin1String("256")),
             qPrintable(problem));
    // Two bytes a letter.
    QCOMPARE(WatchPathCheck::problem(QLatin1Char('/') + QString(127, QChar(0x0416)), Target::File),
             QString());
    QVERIFY(!WatchPathCheck::problem(QLatin1Char('/') + QString(128, QChar(0x0416)), Target::File).isEmpty());
}

void WatchPathCheckTest::onlyDirectoriesMayBeTheRoot()
{
    QCOMPARE(WatchPathCheck::problem(QStringLiteral("/"), Target::Directory), QString());
    QVERIFY(!WatchPathCheck::problem(QStringLiteral("//"), Target::Directory).isEmpty());
}

void WatchPathCheckTest::tellsAPathToComeFromOneWithoutDirectory()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("file"));
    QCOMPARE(WatchPathCheck::presence(directory.path()), Presence::Present);
    QCOMPARE(WatchPathCheck::presence(QStringLiteral("/")), Presence::Present);
    QCOMPARE(WatchPathCheck::presence(file), Presence::Missing);
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    QCOMPARE(WatchPathCheck::presence(file), Presence::Present);
    QCOMPARE(WatchPathCheck::presence(file + QStringLiteral("/below")), Presence::ParentMissing);
    QCOMPARE(WatchPathCheck::presence(directory.filePath(QStringLiteral("no/file"))),
             Presence::ParentMissing);
    QCOMPARE(WatchPathCheck::presence(QStringLiteral("/no-such-file-at-the-root")), Presence::Missing);
}

void WatchPathCheckTest::aDanglingLinkIsThere()
{
    const QTemporaryDir directory;
    const QString link = directory.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(directory.filePath(QStringLiteral("nowhere")), link));
    QCOMPARE(WatchPathCheck::presence(link), Presence::Present);
    QCOMPARE(WatchPathCheck::presence(link + QStringLiteral("/below")), Presence::ParentMissing);
}

void WatchPathCheckTest::aDirectoryToComeIsNotedDifferentlyFromAFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("later"));
    const QString asFile = WatchPathCheck::note(path, Target::File);
    const QString asDirectory = WatchPathCheck::note(path, Target::Directory);
    QVERIFY2(asFile.contains(path) && asFile.contains(QLatin1String("as soon as it is created")),
             qPrintable(asFile));
    QVERIFY2(asDirectory.contains(path) && asDirectory.contains(QLatin1String("restarted")),
             qPrintable(asDirectory));
    const QString orphan = WatchPathCheck::note(path + QStringLiteral("/below"), Target::File);
    QVERIFY2(orphan.contains(QLatin1String("is not watched until")), qPrintable(orphan));
    QCOMPARE(WatchPathCheck::note(directory.path(), Target::Directory), QString());
}

QTEST_GUILESS_MAIN(WatchPathCheckTest)

#include "watchpathchecktest.moc"
