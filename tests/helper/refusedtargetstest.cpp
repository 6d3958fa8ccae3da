// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "refusalfixture.h"

#include <QTest>

#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace {

/** Verbs and the file that each writes or removes. */
QList<QPair<QString, QString>> writers()
{
    const QString write = QStringLiteral("writeconfig");
    const QString import = QStringLiteral("importconfig");
    const QString fragment = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf");
    const QStringList named{QStringLiteral("/etc/nivra-syslog.conf"),
                            QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"),
                            QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"),
                            QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra")};
    QList<QPair<QString, QString>> all;
    for (const QString &path : named) {
        all << qMakePair(write, path) << qMakePair(import, path);
    }
    all << qMakePair(import, fragment) << qMakePair(QStringLiteral("writenotificationconfigs"), fragment)
        << qMakePair(QStringLiteral("removenotificationconfigs"), fragment)
        << qMakePair(QStringLiteral("setauditsettings"),
                     QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules"));
    return all;
}

QStringList parentsOf(const QString &path)
{
    QStringList parents;
    for (int slash = path.indexOf(QLatin1Char('/'), 1); slash > 0;
         slash = path.indexOf(QLatin1Char('/'), slash + 1)) {
        parents << path.left(slash);
    }
    return parents;
}

bool putInTheWay(const QString &kind, const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (kind == QLatin1String("symbolic link")) {
        return ::symlink("victim", name.constData()) == 0;
    }
    if (kind == QLatin1String("link to nothing")) {
        return ::symlink("/nowhere", name.constData()) == 0;
    }
    if (kind == QLatin1String("named pipe")) {
        return ::mkfifo(name.constData(), 0600) == 0;
    }
    if (kind == QLatin1String("socket")) {
        return ::mknod(name.constData(), S_IFSOCK | 0600, 0) == 0;
    }
    if (kind == QLatin1String("directory")) {
        return QDir().mkdir(path);
    }
    if (kind == QLatin1String("regular file")) {
        return putFile(path, "in the way");
    }
    return ::mknod(name.constData(), S_IFCHR | 0600, makedev(1, 3)) == 0;
}

} // namespace

/**
 * Sound requests that meet files and file systems as they should not be: through the framework to the real
 * helper. Each is refused with a text that names the place and the reason, and nothing changes.
 */
class RefusedTargetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void refusesWhatStandsInForAParent_data();
    void refusesWhatStandsInForAParent();
    void grantsTheRemovalOfWhatHasNoDirectory_data();
    void grantsTheRemovalOfWhatHasNoDirectory();
    void refusesABackupDirectoryThatIsNone_data();
    void refusesABackupDirectoryThatIsNone();
    void leavesTheOtherNameOfAHardLinkAlone_data();
    void leavesTheOtherNameOfAHardLinkAlone();
    void refusesOnAReadOnlyFileSystem_data();
    void refusesOnAReadOnlyFileSystem();
    void leavesOldOrNewOnAFullFileSystem_data();
    void leavesOldOrNewOnAFullFileSystem();

private:
    QString below(const QString &path) const { return m_fixture.root() + path; }
    void expectRefusal(const QString &verb, const QString &target, const QString &place,
                       const QString &reason);

    RefusalFixture m_fixture;
    int m_count = 0;
};

void RefusedTargetsTest::initTestCase()
{
    QVERIFY2(m_fixture.start(), qPrintable(m_fixture.errorString()));
}

void RefusedTargetsTest::cleanupTestCase()
{
    qInfo("%d requests met something in their way", m_count);
    m_fixture.stop();
}

void RefusedTargetsTest::init()
{
    QVERIFY(m_fixture.reset());
    QVERIFY(putFile(below(QStringLiteral("/victim")), "precious"));
}

void RefusedTargetsTest::expectRefusal(const QString &verb, const QString &target, const QString &place,
                                       const QString &reason)
{
    const TreeSnapshot before = m_fixture.snapshot();
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb, target));
    QVERIFY2(!answer.ok, "the request was granted");
    QVERIFY2(answer.text.contains(QLatin1Char('"') + below(place) + QLatin1Char('"')),
             qPrintable(answer.text));
    QVERIFY2(answer.text.contains(reason), qPrintable(answer.text));
    QCOMPARE(m_fixture.snapshot(), before);
    ++m_count;
}

void RefusedTargetsTest::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("kind");
    auto all = writers();
    for (const auto &[verb, path] : writers()) {
        if (verb == QLatin1String("importconfig")) {
            all << qMakePair(QStringLiteral("exportconfig"), path);
        }
    }
    for (const auto &[verb, path] : all) {
        for (const char *kind :
             {"symbolic link", "link to nothing", "named pipe", "socket", "directory", "device"}) {
            QTest::newRow(
                qPrintable(verb + QLatin1Char(' ') + path + QLatin1String(": ") + QLatin1String(kind)))
                << verb << path << QString::fromLatin1(kind);
        }
    }
}

void RefusedTargetsTest::refusesWhatIsNoRegularFile()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    QFETCH(QString, kind);
    QFile::remove(below(path));
    if (!putInTheWay(kind, below(path))) {
        QSKIP("only root may make a device");
    }
    expectRefusal(verb, path, path,
                  kind == QLatin1String("link to nothing") ? QStringLiteral("a symbolic link") : kind);
}

void RefusedTargetsTest::refusesWhatStandsInForAParent_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("kind");
    for (const auto &[verb, path] : writers()) {
        for (const QString &parent : parentsOf(path)) {
            for (const char *kind : {"symbolic link", "regular file", "named pipe", "nothing"}) {
                if (verb == QLatin1String("removenotificationconfigs")
                    && QLatin1String(kind) == QLatin1String("nothing")) {
                    continue; // what is to be removed is not there
                }
                QTest::newRow(qPrintable(verb + QLatin1Char(' ') + path + QLatin1String(": ")
                                         + QLatin1String(kind) + QLatin1String(" for ") + parent))
                    << verb << path << parent << QString::fromLatin1(kind);
            }
        }
    }
}

void RefusedTargetsTest::refusesWhatStandsInForAParent()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    QFETCH(QString, parent);
    QFETCH(QString, kind);
    const QString aside = below(QStringLiteral("/victim"));
    QVERIFY(QFile::remove(aside));
    QVERIFY(QDir().rename(below(parent), aside));
    if (kind == QLatin1String("symbolic link")) {
        // With the same files behind it.
        QVERIFY(QFile::link(aside, below(parent)));
    } else if (kind != QLatin1String("nothing")) {
        QVERIFY(putInTheWay(kind, below(parent)));
    }
    // An import looks at its files in an order of its own.
    const bool isFirst = verb != QLatin1String("importconfig") || parent == QLatin1String("/etc")
        || path.startsWith(QLatin1String("/etc/audit"));
    const QString reason = kind == QLatin1String("nothing") ? QStringLiteral("No such file") : kind;
    if (isFirst || kind != QLatin1String("nothing")) {
        expectRefusal(verb, path, parent, reason);
        return;
    }
    const TreeSnapshot before = m_fixture.snapshot();
    QVERIFY(!requestHelper(verb, m_fixture.sound(verb, path)).ok);
    QCOMPARE(m_fixture.snapshot(), before);
    ++m_count;
}

void RefusedTargetsTest::grantsTheRemovalOfWhatHasNoDirectory_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    for (const auto &[verb, path] : writers()) {
        if (verb == QLatin1String("removenotificationconfigs")) {
            for (const QString &parent : parentsOf(path)) {
                QTest::newRow(qPrintable(parent)) << path << parent;
            }
        }
    }
}

void RefusedTargetsTest::grantsTheRemovalOfWhatHasNoDirectory()
{
    QFETCH(QString, path);
    QFETCH(QString, parent);
    const QString verb = QStringLiteral("removenotificationconfigs");
    QVERIFY(QDir().rename(below(parent), below(QStringLiteral("/aside"))));
    const TreeSnapshot before = m_fixture.snapshot();
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb, path));
    QVERIFY2(answer.ok, qPrintable(answer.text));
    QCOMPARE(m_fixture.snapshot(), before);
}

void RefusedTargetsTest::refusesABackupDirectoryThatIsNone_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("kind");
    for (const auto &[verb, path] : writers()) {
        for (const char *level :
             {"/var", "/var/lib", "/var/lib/adminevents", "/var/lib/adminevents/backup"}) {
            for (const char *kind : {"symbolic link", "regular file"}) {
                QTest::newRow(qPrintable(verb + QLatin1Char(' ') + path + QLatin1String(": ")
                                         + QLatin1String(kind) + QLatin1String(" for ")
                                         + QLatin1String(level)))
                    << verb << path << QString::fromLatin1(level) << QString::fromLatin1(kind);
            }
        }
    }
}

void RefusedTargetsTest::refusesABackupDirectoryThatIsNone()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    QFETCH(QString, level);
    QFETCH(QString, kind);
    QVERIFY(QDir().rename(below(level), below(QStringLiteral("/aside"))));
    if (kind == QLatin1String("symbolic link")) {
        QVERIFY(QFile::link(below(QStringLiteral("/aside")), below(level)));
    } else {
        QVERIFY(putInTheWay(kind, below(level)));
    }
    expectRefusal(verb, path, level, kind);
}

void RefusedTargetsTest::leavesTheOtherNameOfAHardLinkAlone_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    for (const auto &[verb, path] : writers()) {
        if (verb == QLatin1String("setauditsettings")) {
            continue; // makes its file
        }
        QTest::newRow(qPrintable(verb + QLatin1Char(' ') + path)) << verb << path;
    }
}

void RefusedTargetsTest::leavesTheOtherNameOfAHardLinkAlone()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    const QString other = below(QStringLiteral("/other"));
    QCOMPARE(::link(QFile::encodeName(below(path)).constData(), QFile::encodeName(other).constData()), 0);
    const QByteArray before = describeFile(other);
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb, path));
    QVERIFY2(answer.ok, qPrintable(answer.text));
    QCOMPARE(describeFile(other), before);
    QVERIFY(describeFile(below(path)) != before);
    ++m_count;
}

void RefusedTargetsTest::refusesOnAReadOnlyFileSystem_data()
{
    leavesTheOtherNameOfAHardLinkAlone_data();
    for (const char *verb : {"exportconfig", "setauditsettings"}) {
        QTest::newRow(verb) << QString::fromLatin1(verb) << QString();
    }
}

void RefusedTargetsTest::refusesOnAReadOnlyFileSystem()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    if (!m_fixture.isMounted()) {
        QSKIP("only root may lock a file system");
    }
    const TreeSnapshot before = m_fixture.snapshot();
    QVERIFY(m_fixture.setReadOnly(true));
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb, path));
    QVERIFY(m_fixture.setReadOnly(false));
    QVERIFY(!answer.ok);
    QVERIFY2(answer.text.contains(QLatin1String("Read-only file system")), qPrintable(answer.text));
    QVERIFY2(answer.text.contains(QLatin1Char('"') + m_fixture.root()), qPrintable(answer.text));
    QCOMPARE(m_fixture.snapshot(), before);
    ++m_count;
}

void RefusedTargetsTest::leavesOldOrNewOnAFullFileSystem_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("freePages");
    for (const auto &[verb, path] : writers()) {
        for (int pages = 0; pages <= 6; ++pages) {
            QTest::newRow(qPrintable(QStringLiteral("%1 %2, %3 pages").arg(verb, path).arg(pages)))
                << verb << path << pages;
        }
    }
    QTest::newRow("exportconfig") << QStringLiteral("exportconfig") << QString() << 0;
}

void RefusedTargetsTest::leavesOldOrNewOnAFullFileSystem()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    QFETCH(int, freePages);
    if (!m_fixture.isMounted()) {
        QSKIP("only root may make a file system");
    }
    if (verb == QLatin1String("exportconfig")) {
        QVERIFY(putFile(m_fixture.archive(), ""));
    }
    const QMap<QString, QByteArray> before = TransferSample::contents(m_fixture.root());
    struct statvfs status = {};
    QCOMPARE(::statvfs(QFile::encodeName(m_fixture.root()).constData(), &status), 0);
    const QString filler = below(QStringLiteral("/filler"));
    QVERIFY(
        putFile(filler, QByteArray(int(status.f_bavail - fsblkcnt_t(freePages)) * int(status.f_bsize), 'x')));
    const HelperAnswer answer = requestHelper(verb, m_fixture.sound(verb, path));
    QVERIFY(QFile::remove(filler));
    QMap<QString, QByteArray> after = TransferSample::contents(m_fixture.root());
    // Always the same, and written before the rules that it belongs to.
    after.remove(QStringLiteral("/etc/audit/rules.d/00-nivra-continue.rules"));
    if (answer.ok) {
        QVERIFY(after != before);
    } else {
        QVERIFY2(answer.text.contains(QLatin1String("No space left on device")), qPrintable(answer.text));
        QVERIFY2(answer.text.contains(QLatin1Char('"') + m_fixture.root()), qPrintable(answer.text));
        QCOMPARE(after, before);
    }
    QVERIFY2(answer.ok || freePages < 6 || verb == QLatin1String("importconfig"), qPrintable(answer.text));
    QVERIFY(!answer.ok || freePages > 0);
    const TreeSnapshot all = m_fixture.snapshot();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        QVERIFY2(!it.key().contains(QLatin1String(".adminevents-")), qPrintable(it.key()));
    }
    ++m_count;
}

QTEST_GUILESS_MAIN(RefusedTargetsTest)

#include "refusedtargetstest.moc"
