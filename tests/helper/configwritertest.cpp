// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwriter.h"
#include "backupstore.h"
#include "fulldisk.h"
#include "targetpaths.h"
#include "treesnapshot.h"

#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>

using namespace AdminEventsHelper;

namespace {

QString backupPath()
{
    return QStringLiteral("/var/lib/adminevents/backup");
}

bool isRoot()
{
    return ::geteuid() == 0;
}

} // namespace

class ConfigWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void writesEveryFileOfTheClosedSet_data();
    void writesEveryFileOfTheClosedSet();
    void refusesEveryOtherPath_data();
    void refusesEveryOtherPath();
    void refusesToReplaceWhatIsNoRegularFile_data();
    void refusesToReplaceWhatIsNoRegularFile();
    void refusesALinkOrFileAtAnyParent_data();
    void refusesALinkOrFileAtAnyParent();
    void namesAMissingDirectory();
    void keepsTheModeOfTheFileItReplaces_data();
    void keepsTheModeOfTheFileItReplaces();
    void keepsTheOwnerOfTheFileItReplaces();
    void keepsTheAccessListOfTheFileItReplaces();
    void leavesTheOtherNameOfAHardLinkAlone();
    void keepsTheLastTenGenerations();
    void keepsNoGenerationOfTheSameContent();
    void makesTheBackupDirectoryPrivateAgain();
    void refusesABackupDirectoryOfAnotherUser();
    void removesOnlyItsOwnLeftovers();
    void changesNothingWhenTheDiskTakesNoMore_data();
    void changesNothingWhenTheDiskTakesNoMore();
    void refusesToReplaceAFileTooLargeToBeKept();
    void refusesWhileAnotherHelperWrites();
    void leavesTheOldOrTheNewFileWhenKilled();

private:
    QString below(const QString &path) const { return m_root->path() + path; }
    Outcome write(const QString &path, const QByteArray &content) const
    {
        return ConfigWriter(m_root->path()).write({path, content});
    }
    TreeSnapshot snapshot() const { return takeSnapshot(m_root->path()); }
    QStringList backups() const
    {
        return QDir(below(backupPath())).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_root;
    mode_t m_umask = 0;
};

void ConfigWriterTest::init()
{
    m_umask = ::umask(022);
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    for (const QString &file : {settingsPath(), rulesPath(), mainPath(), rotationPath()}) {
        QVERIFY(QDir().mkpath(QFileInfo(below(file)).path()));
    }
    // As in the helper, so that a mode that is right owes nothing to the mask.
    ::umask(077);
}

void ConfigWriterTest::cleanup()
{
    m_root.reset();
    ::umask(m_umask);
}

void ConfigWriterTest::writesEveryFileOfTheClosedSet_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("mode");
    QTest::newRow("event settings") << settingsPath() << QByteArray("{\"login\": {\"enabled\": \"0\"}}\n")
                                    << 0644;
    QTest::newRow("audit rules") << rulesPath() << QByteArray("-w /etc/passwd -p wa -k /etc/passwd\n")
                                 << 0640;
    QTest::newRow("main configuration")
        << mainPath() << QByteArray("destination d { file(\"/x\"); };\n") << 0644;
    QTest::newRow("rotation") << rotationPath() << QByteArray("/var/log/x { weekly }\n") << 0644;
}

void ConfigWriterTest::writesEveryFileOfTheClosedSet()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QFETCH(int, mode);
    const Outcome outcome = write(path, content);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(getFile(below(path)), content);
    QCOMPARE(modeOf(below(path)), mode);
    QCOMPARE(backups(), QStringList());
    QStringList files{QFileInfo(path).fileName()};
    if (path == rulesPath()) {
        files.prepend(QStringLiteral("00-nivra-continue.rules")); // has them loaded one by one
    }
    QCOMPARE(QDir(QFileInfo(below(path)).path()).entryList(QDir::Files | QDir::Hidden), files);
}

void ConfigWriterTest::refusesEveryOtherPath_data()
{
    QTest::addColumn<QString>("path");
    const QStringList paths{
        QString(),
        QStringLiteral("/"),
        QStringLiteral("/etc"),
        QStringLiteral("/etc/shadow"),
        QStringLiteral("etc/nivra-syslog.conf"),
        QStringLiteral("nivra-syslog.conf"),
        QStringLiteral("//etc/nivra-syslog.conf"),
        QStringLiteral("/etc//nivra-syslog.conf"),
        QStringLiteral("/etc/./nivra-syslog.conf"),
        QStringLiteral("/etc/nivra-syslog.conf/"),
        QStringLiteral("/etc/audit/../nivra-syslog.conf"),
        QStringLiteral("/etc/nivra-syslog.conf/../shadow"),
        QStringLiteral("/etc/nivra-syslog.conf "),
        QStringLiteral("/ETC/nivra-syslog.conf"),
        QStringLiteral("/etc/audit/rules.d/other.rules"),
        QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf.d"),
        QStringLiteral("/var/lib/adminevents/backup/nivra-syslog.conf.0000000001"),
    };
    for (const QString &path : paths) {
        QTest::newRow(path.isEmpty() ? "empty" : qPrintable(path)) << path;
    }
}

void ConfigWriterTest::refusesEveryOtherPath()
{
    QFETCH(QString, path);
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(path, "{}");
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1Char('"') + path + QLatin1Char('"')),
             qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::refusesToReplaceWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"link to a file", "link to nothing", "pipe", "socket", "directory", "device"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void ConfigWriterTest::refusesToReplaceWhatIsNoRegularFile()
{
    QFETCH(QString, kind);
    const QByteArray path = QFile::encodeName(below(settingsPath()));
    QVERIFY(putFile(below(QStringLiteral("/etc/victim")), "precious"));
    if (kind == QLatin1String("link to a file")) {
        QCOMPARE(::symlink("victim", path.constData()), 0);
    } else if (kind == QLatin1String("link to nothing")) {
        QCOMPARE(::symlink("absent", path.constData()), 0);
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkdir(below(settingsPath())));
    } else if (kind == QLatin1String("socket")) {
        QCOMPARE(::mknod(path.constData(), S_IFSOCK | 0600, 0), 0);
    } else if (::mknod(path.constData(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
        QSKIP("only root may make a device");
    }
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(settingsPath(), "{}");
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(settingsPath()), qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(kind.section(QLatin1Char(' '), 0, 0)), qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::refusesALinkOrFileAtAnyParent_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("link");
    const QList<QPair<QString, QString>> rows{
        {QStringLiteral("/etc"), settingsPath()},
        {QStringLiteral("/etc/audit"), rulesPath()},
        {QStringLiteral("/etc/audit/rules.d"), rulesPath()},
        {QStringLiteral("/etc/syslog-ng"), mainPath()},
        {QStringLiteral("/etc/syslog-ng/conf.d"), mainPath()},
        {QStringLiteral("/etc/logrotate.d"), rotationPath()},
        {QStringLiteral("/var"), settingsPath()},
        {QStringLiteral("/var/lib"), settingsPath()},
        {QStringLiteral("/var/lib/adminevents"), settingsPath()},
        {QStringLiteral("/var/lib/adminevents/backup"), settingsPath()},
    };
    for (const auto &[parent, target] : rows) {
        QTest::newRow(qPrintable(QLatin1String("link ") + parent)) << parent << target << true;
        QTest::newRow(qPrintable(QLatin1String("file ") + parent)) << parent << target << false;
    }
}

void ConfigWriterTest::refusesALinkOrFileAtAnyParent()
{
    QFETCH(QString, parent);
    QFETCH(QString, target);
    QFETCH(bool, link);
    QVERIFY(QDir().mkpath(below(backupPath())));
    QVERIFY(putFile(below(target), "former"));
    QVERIFY(QDir().rename(below(parent), below(QStringLiteral("/aside"))));
    if (link) {
        QVERIFY(QFile::link(below(QStringLiteral("/aside")), below(parent)));
    } else {
        QVERIFY(putFile(below(parent), "in the way"));
    }
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(target, "");
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1Char('"') + below(parent) + QLatin1Char('"')),
             qPrintable(outcome.error()));
    QVERIFY2(
        outcome.error().contains(link ? QLatin1String("a symbolic link") : QLatin1String("a regular file")),
        qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::namesAMissingDirectory()
{
    QVERIFY(QDir().rmdir(below(QStringLiteral("/etc/audit/rules.d"))));
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(rulesPath(), "");
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(below(QStringLiteral("/etc/audit/rules.d"))),
             qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::keepsTheModeOfTheFileItReplaces_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("former");
    QTest::addColumn<int>("expected");
    QTest::newRow("private") << settingsPath() << 0600 << 0600;
    QTest::newRow("for a group") << settingsPath() << 0664 << 0664;
    QTest::newRow("rules for all") << rulesPath() << 0644 << 0644;
    QTest::newRow("executable") << rotationPath() << 0755 << 0755;
    QTest::newRow("set-id bits are dropped") << settingsPath() << 06755 << 0755;
}

void ConfigWriterTest::keepsTheModeOfTheFileItReplaces()
{
    QFETCH(QString, path);
    QFETCH(int, former);
    QFETCH(int, expected);
    QVERIFY(putFile(below(path), "former", mode_t(former)));
    QCOMPARE(modeOf(below(path)), former);
    const Outcome outcome = write(path, "");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(getFile(below(path)), QByteArray(""));
    QCOMPARE(modeOf(below(path)), expected);
}

void ConfigWriterTest::keepsTheOwnerOfTheFileItReplaces()
{
    if (!isRoot()) {
        QSKIP("only root may give a file away");
    }
    QVERIFY(putFile(below(settingsPath()), "former", 0640));
    QCOMPARE(::chown(QFile::encodeName(below(settingsPath())).constData(), 1234, 2345), 0);
    const Outcome outcome = write(settingsPath(), "{}");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    const QFileInfo info(below(settingsPath()));
    QCOMPARE(info.ownerId(), 1234U);
    QCOMPARE(info.groupId(), 2345U);
    QCOMPARE(modeOf(below(settingsPath())), 0640);
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{}"));
}

void ConfigWriterTest::keepsTheAccessListOfTheFileItReplaces()
{
    // Version 2, then (tag, rights, id): owner rw-, user 1234 r--, group ---, mask r--, others ---.
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000600ffffffff"
                                                "02000400d2040000"
                                                "04000000ffffffff"
                                                "10000400ffffffff"
                                                "20000000ffffffff");
    const QByteArray path = QFile::encodeName(below(settingsPath()));
    QVERIFY(putFile(below(settingsPath()), "former"));
    if (::setxattr(path.constData(), "system.posix_acl_access", list.constData(), size_t(list.size()), 0)
        != 0) {
        QSKIP("the file system of the temporary directory has no access lists");
    }
    const Outcome outcome = write(settingsPath(), "{}");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QByteArray kept(200, '\0');
    const ssize_t size
        = ::getxattr(path.constData(), "system.posix_acl_access", kept.data(), size_t(kept.size()));
    QCOMPARE(kept.left(int(size)), list);
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{}"));
}

void ConfigWriterTest::leavesTheOtherNameOfAHardLinkAlone()
{
    const QString other = below(QStringLiteral("/etc/other"));
    QVERIFY(putFile(other, "precious"));
    QCOMPARE(
        ::link(QFile::encodeName(other).constData(), QFile::encodeName(below(settingsPath())).constData()),
        0);
    const QByteArray before = describeFile(other);
    const Outcome outcome = write(settingsPath(), "{}");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(describeFile(other), before);
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{}"));
}

void ConfigWriterTest::keepsTheLastTenGenerations()
{
    const auto content
        = [](int version) -> QByteArray { return QByteArray("# version ") + QByteArray::number(version); };
    for (int version = 0; version <= 13; ++version) {
        const Outcome outcome = write(mainPath(), content(version));
        QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    }
    QVERIFY(write(rotationPath(), "weekly\n").ok());
    QVERIFY(write(rotationPath(), "daily\n").ok());
    QCOMPARE(modeOf(below(backupPath())), 0700);
    QCOMPARE(modeOf(below(QStringLiteral("/var/lib"))), 0755);
    QStringList expected;
    for (int generation = 4; generation <= 13; ++generation) {
        const QString name = QStringLiteral("mod-nivra.conf.%1").arg(generation, 10, 10, QLatin1Char('0'));
        expected << name;
        // Generation 1 holds version 0.
        QCOMPARE(getFile(below(backupPath() + QLatin1Char('/') + name)), content(generation - 1));
        QCOMPARE(modeOf(below(backupPath() + QLatin1Char('/') + name)), 0600);
    }
    expected << QStringLiteral("syslog-ng-mod-nivra.0000000001");
    QCOMPARE(backups(), expected);
    QCOMPARE(getFile(below(mainPath())), content(13));
}

void ConfigWriterTest::keepsNoGenerationOfTheSameContent()
{
    QVERIFY(write(settingsPath(), "{}").ok());
    QVERIFY(write(settingsPath(), "{ }").ok());
    const QStringList one{QStringLiteral("nivra-syslog.conf.0000000001")};
    QCOMPARE(backups(), one);
    QVERIFY(write(settingsPath(), "{ }").ok());
    QCOMPARE(backups(), one);
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{ }"));
}

void ConfigWriterTest::makesTheBackupDirectoryPrivateAgain()
{
    QVERIFY(write(settingsPath(), "{}").ok());
    QCOMPARE(::chmod(QFile::encodeName(below(backupPath())).constData(), 0777), 0);
    QVERIFY(write(settingsPath(), "{ }").ok());
    QCOMPARE(modeOf(below(backupPath())), 0700);
}

void ConfigWriterTest::refusesABackupDirectoryOfAnotherUser()
{
    if (!isRoot()) {
        QSKIP("only root may give a directory away");
    }
    QVERIFY(write(settingsPath(), "{}").ok());
    QCOMPARE(::chown(QFile::encodeName(below(backupPath())).constData(), 1234, 1234), 0);
    const TreeSnapshot before = snapshot();
    const Outcome outcome = write(settingsPath(), "{ }");
    QVERIFY2(outcome.error().contains(backupPath()), qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::removesOnlyItsOwnLeftovers()
{
    const QStringList kept{
        QStringLiteral("/etc/.nivra-syslog.conf.adminevents-0123456789abcdef"),
        QStringLiteral("/etc/.nivra-syslog.conf.adminevents-0123456789abcde~"),
        QStringLiteral("/etc/.nivra-syslog.conf.adminevents-0123456789abcdeg~"),
        QStringLiteral("/etc/.nivra-syslog.conf.adminevents-0123456789abcdef0~"),
        QStringLiteral("/etc/.other.conf.adminevents-0123456789abcdef~"),
        QStringLiteral("/etc/nivra-syslog.conf~"),
    };
    for (const QString &name : kept) {
        QVERIFY(putFile(below(name), "someone's"));
    }
    const QString leftover = below(QStringLiteral("/etc/.nivra-syslog.conf.adminevents-0123456789abcdef~"));
    QVERIFY(putFile(leftover, "half"));
    const Outcome outcome = write(settingsPath(), "{}");
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QVERIFY(!QFileInfo::exists(leftover));
    for (const QString &name : kept) {
        QCOMPARE(getFile(below(name)), QByteArray("someone's"));
    }
}

void ConfigWriterTest::changesNothingWhenTheDiskTakesNoMore_data()
{
    QTest::addColumn<int>("formerSize");
    QTest::addColumn<int>("newSize");
    QTest::newRow("for the file") << 100 << 100000;
    QTest::newRow("for the backup") << 100000 << 100;
}

void ConfigWriterTest::changesNothingWhenTheDiskTakesNoMore()
{
    QFETCH(int, formerSize);
    QFETCH(int, newSize);
    QVERIFY(write(mainPath(), "first").ok());
    QVERIFY(write(mainPath(), QByteArray(formerSize, 'a')).ok());
    const TreeSnapshot before = snapshot();
    const Outcome outcome = asOnAFullDisk([&] { return write(mainPath(), QByteArray(newSize, 'b')); });
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1String("mod-nivra.conf")), qPrintable(outcome.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigWriterTest::refusesToReplaceAFileTooLargeToBeKept()
{
    QVERIFY(write(settingsPath(), "{}").ok());
    // With nothing but a hole behind the first bytes.
    const qint64 size = 65 * 1024 * 1024;
    QVERIFY(QFile::resize(below(settingsPath()), size));
    const Outcome outcome = write(settingsPath(), "{ }");
    QVERIFY2(outcome.error().contains(QLatin1Char('"') + below(settingsPath()) + QLatin1Char('"')),
             qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("larger than 67108864 bytes")),
             qPrintable(outcome.error()));
    QCOMPARE(QFileInfo(below(settingsPath())).size(), size);
    QVERIFY(getFile(below(settingsPath())).startsWith("{}"));
}

void ConfigWriterTest::refusesWhileAnotherHelperWrites()
{
    QVERIFY(write(settingsPath(), "{}").ok());
    const TreeSnapshot before = snapshot();
    {
        const auto root = SafeDirectory::openRoot(m_root->path());
        QVERIFY(root.ok());
        const auto held = BackupStore::open(root.value());
        QVERIFY(held.ok());
        QVERIFY(!write(settingsPath(), "{ }").ok());
        QCOMPARE(snapshot(), before);
    }
    QVERIFY(write(settingsPath(), "{ }").ok());
}

void ConfigWriterTest::leavesTheOldOrTheNewFileWhenKilled()
{
    constexpr int size = 2000000;
    QByteArray current(size, '0');
    QVERIFY(write(mainPath(), current).ok());
    int unfinished = 0;
    for (int round = 1; round <= 40; ++round) {
        const QByteArray next(size, char('0' + round % 10));
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(write(mainPath(), next).ok() ? 0 : 1);
        }
        QVERIFY(child > 0);
        QThread::usleep(ulong(round) * 300);
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        unfinished += WIFSIGNALED(status) ? 1 : 0;
        const QByteArray found = getFile(below(mainPath()));
        QVERIFY2(found == current || found == next, "the file is neither the old nor the new one");
        current = found;
    }
    qInfo("%d of 40 writers were killed before they ended", unfinished);
    // What the killed ones left goes with the next write, here and among the backups.
    QVERIFY(write(mainPath(), "last").ok());
    QCOMPARE(QDir(QFileInfo(below(mainPath())).path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("mod-nivra.conf")});
    const QStringList kept = backups();
    QVERIFY(kept.size() <= BackupStore::generationsKept);
    QVERIFY(std::none_of(kept.cbegin(), kept.cend(),
                         [](const QString &name) { return name.startsWith(QLatin1Char('.')); }));
}

QTEST_GUILESS_MAIN(ConfigWriterTest)

#include "configwritertest.moc"
