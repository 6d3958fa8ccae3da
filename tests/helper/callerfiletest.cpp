// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "callerfile.h"
#include "treesnapshot.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

using namespace AdminEventsHelper;

namespace {

constexpr uid_t nobody = 65534;
constexpr int limit = 1000000;

} // namespace

/** Files of the user who sent a request. */
class CallerFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void writesAndReads();
    void refusesPathsThatAreNotPlain_data();
    void refusesPathsThatAreNotPlain();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void followsNoLinkAnywhereOnTheWay();
    void refusesAFileOverTheLimit();
    void leavesTheFileEmptyWhenItCannotBeWritten();
    void hasTheRightsOfTheCallerOnly();
    void writesForTheCallerOnlyWhatIsTheCallers();
    void knowsTheCallersGroups();
    void leavesNoChildBehind();

private:
    QString path() const { return m_folder->path() + QLatin1String("/file"); }
    void expectRefusal(uid_t caller, const QString &path, const QString &named) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void CallerFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(putFile(path(), "former"));
}

void CallerFileTest::expectRefusal(uid_t caller, const QString &path, const QString &named) const
{
    const TreeSnapshot before = takeSnapshot(m_folder->path());
    const Outcome written = CallerFile::write(caller, path, "new");
    QVERIFY2(written.error().contains(named), qPrintable(written.error()));
    const Result<QByteArray> bytes = CallerFile::read(caller, path, limit);
    QVERIFY2(bytes.error().contains(named), qPrintable(bytes.error()));
    QCOMPARE(takeSnapshot(m_folder->path()), before);
}

void CallerFileTest::writesAndReads()
{
    QByteArray bytes;
    for (int i = 0; i < 300000; ++i) {
        bytes += char(i * 7 + i / 256);
    }
    for (const QByteArray &content : {bytes, QByteArray("short"), QByteArray()}) {
        const Outcome written = CallerFile::write(::geteuid(), path(), content);
        QVERIFY2(written.ok(), qPrintable(written.error()));
        QCOMPARE(getFile(path()), content);
        const Result<QByteArray> back = CallerFile::read(::geteuid(), path(), limit);
        QVERIFY2(back.ok(), qPrintable(back.error()));
        QCOMPARE(back.value(), content);
    }
}

void CallerFileTest::refusesPathsThatAreNotPlain_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("root") << QStringLiteral("/") << QString();
    QTest::newRow("relative") << QStringLiteral("file") << QString();
    QTest::newRow("dots") << QStringLiteral("FOLDER/x/../file") << QString();
    QTest::newRow("dot") << QStringLiteral("FOLDER/./file") << QString();
    QTest::newRow("two slashes") << QStringLiteral("FOLDER//file") << QString();
    QTest::newRow("slash at the end") << QStringLiteral("FOLDER/file/") << QString();
    QTest::newRow("zero") << QStringLiteral("FOLDER/file") << QString(QChar(0));
    QTest::newRow("too long") << QString(QLatin1String("FOLDER/") + QString(5000, QLatin1Char('x')))
                              << QString();
}

void CallerFileTest::refusesPathsThatAreNotPlain()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    expectRefusal(::geteuid(), before.replace(QLatin1String("FOLDER"), m_folder->path()) + after,
                  QStringLiteral("not an absolute and plain path"));
}

void CallerFileTest::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"symbolic link", "named pipe", "socket", "directory", "device"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void CallerFileTest::refusesWhatIsNoRegularFile()
{
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(path());
    QVERIFY(QFile::rename(path(), m_folder->path() + QLatin1String("/victim")));
    if (kind == QLatin1String("symbolic link")) {
        QCOMPARE(::symlink("victim", name.constData()), 0);
    } else if (kind == QLatin1String("named pipe")) {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else if (kind == QLatin1String("socket")) {
        QCOMPARE(::mknod(name.constData(), S_IFSOCK | 0600, 0), 0);
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkdir(path()));
    } else if (::mknod(name.constData(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
        QSKIP("only root may make a device");
    }
    expectRefusal(::geteuid(), path(), kind);
}

void CallerFileTest::followsNoLinkAnywhereOnTheWay()
{
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("real/deep")));
    QVERIFY(putFile(m_folder->path() + QLatin1String("/real/deep/file"), "former"));
    QVERIFY(QFile::link(m_folder->path() + QLatin1String("/real"), m_folder->path() + QLatin1String("/one")));
    QVERIFY(QFile::link(m_folder->path() + QLatin1String("/real/deep"),
                        m_folder->path() + QLatin1String("/real/two")));
    QVERIFY(CallerFile::read(::geteuid(), m_folder->path() + QLatin1String("/real/deep/file"), limit).ok());
    expectRefusal(::geteuid(), m_folder->path() + QLatin1String("/one/deep/file"),
                  QLatin1Char('"') + m_folder->path() + QLatin1String("/one\""));
    expectRefusal(::geteuid(), m_folder->path() + QLatin1String("/real/two/file"),
                  QLatin1Char('"') + m_folder->path() + QLatin1String("/real/two\""));
    expectRefusal(::geteuid(), path() + QLatin1String("/file"), QLatin1Char('"') + path() + QLatin1Char('"'));
}

void CallerFileTest::refusesAFileOverTheLimit()
{
    QVERIFY(putFile(path(), QByteArray(limit, 'x')));
    QVERIFY(CallerFile::read(::geteuid(), path(), limit).ok());
    for (const int size : {limit + 1, limit * 3}) {
        QVERIFY(putFile(path(), QByteArray(size, 'x')));
        const Result<QByteArray> bytes = CallerFile::read(::geteuid(), path(), limit);
        QVERIFY2(bytes.error().contains(QLatin1String("larger than 1000000 bytes")),
                 qPrintable(bytes.error()));
    }
}

void CallerFileTest::leavesTheFileEmptyWhenItCannotBeWritten()
{
    rlimit former = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &former), 0);
    rlimit tight = former;
    tight.rlim_cur = 1000;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    const Outcome written = CallerFile::write(::geteuid(), path(), QByteArray(2000, 'x'));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &former), 0);
    QVERIFY2(written.error().contains(path()), qPrintable(written.error()));
    QVERIFY2(written.error().contains(QLatin1String("File too large")), qPrintable(written.error()));
    QCOMPARE(getFile(path()), QByteArray(""));
}

void CallerFileTest::hasTheRightsOfTheCallerOnly()
{
    if (::geteuid() != 0) {
        QSKIP("only root may act for another user");
    }
    QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
    QVERIFY(putFile(path(), "for all", 0644));
    const Result<QByteArray> bytes = CallerFile::read(nobody, path(), limit);
    QVERIFY2(bytes.ok(), qPrintable(bytes.error()));
    QCOMPARE(bytes.value(), QByteArray("for all"));
    QVERIFY(putFile(path(), "private", 0600));
    expectRefusal(nobody, path(), QStringLiteral("Permission denied"));
    QVERIFY(putFile(path(), "for all", 0644));
    QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0700), 0);
    expectRefusal(nobody, path(), QStringLiteral("Permission denied"));
    expectRefusal(nobody, QStringLiteral("/etc/shadow"), QStringLiteral("Permission denied"));
    QCOMPARE(::geteuid(), 0U);
}

void CallerFileTest::writesForTheCallerOnlyWhatIsTheCallers()
{
    if (::geteuid() != 0) {
        QSKIP("only root may act for another user");
    }
    QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
    QVERIFY(putFile(path(), "of root, for all", 0666));
    const TreeSnapshot before = takeSnapshot(m_folder->path());
    const Outcome refused = CallerFile::write(nobody, path(), "new");
    QVERIFY2(refused.error().contains(QLatin1String("does not belong")), qPrintable(refused.error()));
    QCOMPARE(takeSnapshot(m_folder->path()), before);
    QCOMPARE(::chown(QFile::encodeName(path()).constData(), nobody, nobody), 0);
    const Outcome written = CallerFile::write(nobody, path(), "new");
    QVERIFY2(written.ok(), qPrintable(written.error()));
    QCOMPARE(getFile(path()), QByteArray("new"));
    QCOMPARE(QFileInfo(path()).ownerId(), nobody);
    // Root itself does not write to it either.
    QVERIFY(CallerFile::write(0, path(), "newer").error().contains(QLatin1String("does not belong")));
    QCOMPARE(::link(QFile::encodeName(path()).constData(),
                    QFile::encodeName(m_folder->path() + QLatin1String("/other")).constData()),
             0);
    QVERIFY(CallerFile::write(nobody, path(), "newer").error().contains(QLatin1String("another name")));
    QCOMPARE(getFile(path()), QByteArray("new"));
}

void CallerFileTest::knowsTheCallersGroups()
{
    if (::geteuid() != 0) {
        QSKIP("only root may act for another user");
    }
    QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
    QVERIFY(putFile(path(), "for the group", 0640));
    QCOMPARE(::chown(QFile::encodeName(path()).constData(), 0, 65534), 0);
    QVERIFY(CallerFile::read(nobody, path(), limit).ok());
    // A group of root's own does not help.
    QCOMPARE(::chown(QFile::encodeName(path()).constData(), 0, 0), 0);
    expectRefusal(nobody, path(), QStringLiteral("Permission denied"));
    expectRefusal(uid_t(4000000000U), path(), QStringLiteral("does not know the user 4000000000"));
}

void CallerFileTest::leavesNoChildBehind()
{
    for (int i = 0; i < 20; ++i) {
        QVERIFY(CallerFile::write(::geteuid(), path(), "x").ok());
        QVERIFY(CallerFile::read(::geteuid(), path(), limit).ok());
    }
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
}

QTEST_GUILESS_MAIN(CallerFileTest)

#include "callerfiletest.moc"
