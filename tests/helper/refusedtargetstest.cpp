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

    void everyVerbThatUsesFilesIsTried();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void refusesWhatStandsInForAParent_data();
    void refusesWhatStandsInForAParent();
    void grantsTheRemovalOfWhatHasNoDirectory_data();
    void grantsTheRemovalOfWhatHasNoDirectory();
    void refusesWhatStandsInForTheArchive_data();
    void refusesWhatStandsInForTheArchive();
    void refusesToReadWhatIsNoRegularFile_data();
    void refusesToReadWhatIsNoRegularFile();
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
    void expectRefusal(const QString &verb, const QVariantMap &arguments, const QString &place,
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

void RefusedTargetsTest::expectRefusal(const QString &verb, const QVariantMap &arguments,
                                       const QString &place, const QString &reason)
{
    const TreeSnapshot before = m_fixture.snapshot();
    const HelperAnswer answer = requestHelper(verb, arguments);
    QVERIFY2(!answer.ok, "the request was granted");
    QVERIFY2(answer.text.contains(QLatin1Char('"') + below(place) + QLatin1Char('"')),
             qPrintable(answer.text));
    QVERIFY2(answer.text.contains(reason), qPrintable(answer.text));
    QCOMPARE(m_fixture.snapshot(), before);
    ++m_count;
}

void RefusedTargetsTest::everyVerbThatUsesFilesIsTried()
{
    // These have functions of their own below, but for the last, which opens no file.
    QSet<QString> tried{QStringLiteral("exportconfig"), QStringLiteral("getauditsettings"),
                        QStringLiteral("loggingservicectl")};
    for (const auto &[verb, path] : writers()) {
        tried << verb;
    }
    const QStringList verbs = RefusalFixture::verbs();
    QCOMPARE(tried, QSet<QString>(verbs.cbegin(), verbs.cend()));
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
    expectRefusal(verb, m_fixture.sound(verb, path), path,
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
        expectRefusal(verb, m_fixture.sound(verb, path), parent, reason);
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

void RefusedTargetsTest::refusesWhatStandsInForTheArchive_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("kind");
    const QString archive = QStringLiteral("/home/user/archive.tar.gz");
    const QStringList kinds = QStringLiteral("symbolic link,link to nothing,named pipe,socket,directory,"
                                             "regular file,device,nothing")
                                  .split(QLatin1Char(','));
    for (const char *verb : {"exportconfig", "importconfig"}) {
        const QString name = QLatin1String(verb);
        for (const QString &place : parentsOf(archive) + QStringList{archive}) {
            const QString usual
                = place == archive ? QStringLiteral("regular file") : QStringLiteral("directory");
            for (const QString &kind : kinds) {
                if (kind != usual) {
                    QTest::newRow(qPrintable(QStringLiteral("%1: %2 for %3").arg(name, kind, place)))
                        << name << place << kind;
                }
            }
        }
    }
    QTest::newRow("exportconfig: another name")
        << QStringLiteral("exportconfig") << archive << QStringLiteral("other name");
}

void RefusedTargetsTest::refusesWhatStandsInForTheArchive()
{
    QFETCH(QString, verb);
    QFETCH(QString, place);
    QFETCH(QString, kind);
    const QString archive = below(QStringLiteral("/home/user/archive.tar.gz"));
    QVERIFY(QDir().mkpath(below(QStringLiteral("/home/user"))));
    QVERIFY(QFile::copy(m_fixture.archive(), archive));
    const QString aside = below(QStringLiteral("/aside"));
    QString reason = kind;
    if (kind == QLatin1String("other name")) {
        QCOMPARE(::link(QFile::encodeName(archive).constData(), QFile::encodeName(aside).constData()), 0);
        reason = QStringLiteral("another name");
    } else {
        QVERIFY(QDir().rename(below(place), aside));
    }
    if (kind == QLatin1String("symbolic link")) {
        QVERIFY(QFile::link(aside, below(place)));
    } else if (kind == QLatin1String("nothing")) {
        reason = QStringLiteral("No such file");
    } else if (kind != QLatin1String("other name") && !putInTheWay(kind, below(place))) {
        QSKIP("only root may make a device");
    }
    if (place != QLatin1String("/home/user/archive.tar.gz") && kind != QLatin1String("nothing")) {
        reason = QStringLiteral("a symbolic link or no directory");
    } else if (kind == QLatin1String("link to nothing")) {
        reason = QStringLiteral("a symbolic link");
    }
    const QString key
        = verb == QLatin1String("exportconfig") ? QStringLiteral("output") : QStringLiteral("input");
    expectRefusal(verb, {{key, archive}}, place, reason);
}

void RefusedTargetsTest::refusesToReadWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("kind");
    const QString rules = QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules");
    for (const QString &place : parentsOf(rules) + QStringList{rules}) {
        for (const char *kind : {"symbolic link", "named pipe", "socket", "directory", "regular file"}) {
            const QString usual
                = place == rules ? QStringLiteral("regular file") : QStringLiteral("directory");
            if (QLatin1String(kind) != usual) {
                QTest::newRow(qPrintable(QLatin1String(kind) + QLatin1String(" for ") + place))
                    << place << QString::fromLatin1(kind);
            }
        }
    }
}

void RefusedTargetsTest::refusesToReadWhatIsNoRegularFile()
{
    QFETCH(QString, place);
    QFETCH(QString, kind);
    QVERIFY(
        requestHelper(QStringLiteral("setauditsettings"), m_fixture.sound(QStringLiteral("setauditsettings")))
            .ok);
    const QString aside = below(QStringLiteral("/aside"));
    QVERIFY(QDir().rename(below(place), aside));
    QVERIFY(kind == QLatin1String("symbolic link") ? QFile::link(aside, below(place))
                                                   : putInTheWay(kind, below(place)));
    const QString verb = QStringLiteral("getauditsettings");
    expectRefusal(verb, m_fixture.sound(verb, {}), place, kind);
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
    expectRefusal(verb, m_fixture.sound(verb, path), level, kind);
}

void RefusedTargetsTest::leavesTheOtherNameOfAHardLinkAlone_data()
{
    QTest::addColumn<QString>("verb");
    QTest::addColumn<QString>("path");
    for (const auto &[verb, path] : writers()) {
        QTest::newRow(qPrintable(verb + QLatin1Char(' ') + path)) << verb << path;
    }
}

void RefusedTargetsTest::leavesTheOtherNameOfAHardLinkAlone()
{
    QFETCH(QString, verb);
    QFETCH(QString, path);
    if (verb == QLatin1String("setauditsettings")) {
        const HelperAnswer made
            = requestHelper(verb, {{QStringLiteral("AUDIT_TYPE"), 0}, {QStringLiteral("open"), 1}});
        QVERIFY2(made.ok, qPrintable(made.text));
    }
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
    QTest::newRow("exportconfig") << QStringLiteral("exportconfig") << QString();
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
