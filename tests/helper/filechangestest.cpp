// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "filechanges.h"

#include "backupstore.h"
#include "changejournal.h"
#include "configarchive.h"
#include "configwriter.h"
#include "targetpaths.h"
#include "transfersample.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>
#include <functional>
#include <sys/wait.h>

using namespace AdminEventsHelper;

namespace {

QString notePath()
{
    return QStringLiteral("/var/lib/adminevents/backup/pending-changes");
}

ConfigTarget targetOf(const QString &path)
{
    return ConfigTarget::find(path).value();
}

/** A new name in the form of half-written files. */
QString temporaryOf(const QString &fileName)
{
    return QLatin1Char('.') + fileName + QLatin1String(".adminevents-0123456789abcdef~");
}

} // namespace

/** Several files changed as one. */
class FileChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void putsEverythingBackWhenOneFileCannotBeReplaced();
    void takesBackWhatACrashLeft_data();
    void takesBackWhatACrashLeft();
    void leavesAFileThatWasChangedAfterTheCrash();
    void believesANoteOnlyAboutItsOwnFiles_data();
    void believesANoteOnlyAboutItsOwnFiles();
    void passesOverADamagedNote();
    void removesHalfWrittenFilesOfEveryKind();
    void leavesOldOrNewWhenKilled();

private:
    QString below(const QString &path) const { return m_root->path() + path; }
    Outcome write(const QString &path, const QByteArray &content) const
    {
        return ConfigWriter(m_root->path()).write({path, content});
    }
    bool leaveNote(const QList<ChangeJournal::Row> &rows) const;
    Outcome changeAll(const QMap<QString, QByteArray> &files) const;

    std::unique_ptr<QTemporaryDir> m_root;
};

void FileChangesTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    QVERIFY(TransferSample::fill(m_root->path()));
    // Makes the backup directory.
    QVERIFY(write(settingsPath(), "{\"first\": {}}").ok());
}

bool FileChangesTest::leaveNote(const QList<ChangeJournal::Row> &rows) const
{
    const auto root = SafeDirectory::openRoot(m_root->path());
    const auto backups = BackupStore::open(root.value());
    return backups.ok() && ChangeJournal::write(backups.value().directory(), rows).ok();
}

Outcome FileChangesTest::changeAll(const QMap<QString, QByteArray> &files) const
{
    const auto root = SafeDirectory::openRoot(m_root->path());
    FileChanges changes(root.value());
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const ConfigTarget target = it.key().contains(QLatin1String("mod-nivra-"))
            ? ConfigArchive::fragmentTarget(it.key().section(QLatin1Char('/'), -1))
            : targetOf(it.key());
        const auto content = it->isNull() ? std::nullopt : std::optional<QByteArray>(*it);
        if (Outcome added = changes.add(target, content); !added) {
            return added;
        }
    }
    const auto backups = FileChanges::begin(root.value());
    return backups ? changes.carryOut(backups.value()) : backups.outcome();
}

void FileChangesTest::putsEverythingBackWhenOneFileCannotBeReplaced()
{
    if (::geteuid() != 0) {
        QSKIP("only root may make a file immutable");
    }
    const QByteArray immutable
        = QFile::encodeName(below(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf")));
    const QMap<QString, QByteArray> before = TransferSample::contents(m_root->path());
    // An immutable file can be read, but neither linked nor replaced.
    QProcess attribute;
    attribute.start(QStringLiteral("chattr"), {QStringLiteral("+i"), QFile::decodeName(immutable)});
    if (!attribute.waitForFinished() || attribute.exitCode() != 0) {
        QSKIP("the file system of the temporary directory has no immutable files");
    }
    const Outcome outcome
        = changeAll({{settingsPath(), "{}"},
                     {QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"), "log { };\n"},
                     {QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf"), QByteArray()},
                     {QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-new.conf"), sampleFragmentOf("new")}});
    QProcess::execute(QStringLiteral("chattr"), {QStringLiteral("-i"), QFile::decodeName(immutable)});
    QVERIFY(!outcome.ok());
    QVERIFY2(outcome.error().contains(QLatin1String("mod-nivra.conf")), qPrintable(outcome.error()));
    QCOMPARE(TransferSample::contents(m_root->path()), before);
    QVERIFY(!QFile::exists(below(notePath())));
}

void FileChangesTest::takesBackWhatACrashLeft_data()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps <= 6; ++steps) {
        QTest::newRow(qPrintable(QStringLiteral("after %1 steps").arg(steps))) << steps;
    }
}

void FileChangesTest::takesBackWhatACrashLeft()
{
    QFETCH(int, steps);
    const QMap<QString, QByteArray> before = TransferSample::contents(m_root->path());
    const ConfigTarget settings = targetOf(settingsPath());
    const ConfigTarget removed = targetOf(rotationPath());
    const ConfigTarget made = ConfigArchive::fragmentTarget(QStringLiteral("mod-nivra-new.conf"));
    const QString keptSettings = temporaryOf(settings.fileName);
    const QString keptRotation = temporaryOf(removed.fileName);
    QVERIFY(leaveNote({ChangeJournal::rowFor(settings, keptSettings, QByteArray("{}")),
                       ChangeJournal::rowFor(removed, keptRotation, std::nullopt),
                       ChangeJournal::rowFor(made, QString(), sampleFragmentOf("new"))}));
    const QString etc = below(QStringLiteral("/etc/"));
    // What an import does, step by step, up to where the machine stopped.
    const QList<std::function<bool()>> all{
        [&] {
            return putFile(etc + QLatin1String(".nivra-syslog.conf.adminevents-fedcba9876543210~"), "{}");
        },
        [&] {
            return ::link(QFile::encodeName(below(settingsPath())).constData(),
                          QFile::encodeName(etc + keptSettings).constData())
                == 0;
        },
        [&] {
            return ::rename(QFile::encodeName(
                                etc + QLatin1String(".nivra-syslog.conf.adminevents-fedcba9876543210~"))
                                .constData(),
                            QFile::encodeName(below(settingsPath())).constData())
                == 0;
        },
        [&] {
            return QFile::rename(below(rotationPath()), etc + QLatin1String("logrotate.d/") + keptRotation);
        },
        [&] { return putFile(below(made.path()), sampleFragmentOf("new")); },
        [&] { return true; },
    };
    for (int i = 0; i < steps; ++i) {
        QVERIFY(all.at(i)());
    }
    // The next write of whatever file puts things right.
    const QString main = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
    const Outcome outcome = write(main, before.value(main));
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(TransferSample::contents(m_root->path()), before);
    QVERIFY(!QFile::exists(below(notePath())));
}

void FileChangesTest::leavesAFileThatWasChangedAfterTheCrash()
{
    const ConfigTarget settings = targetOf(settingsPath());
    const ConfigTarget made = ConfigArchive::fragmentTarget(QStringLiteral("mod-nivra-new.conf"));
    const QString kept = temporaryOf(settings.fileName);
    QVERIFY(leaveNote({ChangeJournal::rowFor(settings, kept, QByteArray("{}")),
                       ChangeJournal::rowFor(made, QString(), sampleFragmentOf("new"))}));
    QVERIFY(putFile(below(QStringLiteral("/etc/") + kept), "{\"first\": {}}"));
    QVERIFY(putFile(below(settingsPath()), "{\"by hand\": {}}"));
    QVERIFY(putFile(below(made.path()), "# by hand\n"));
    QVERIFY(write(rotationPath(), "daily\n").ok());
    QCOMPARE(getFile(below(settingsPath())), QByteArray("{\"by hand\": {}}"));
    QCOMPARE(getFile(below(made.path())), QByteArray("# by hand\n"));
    QVERIFY(!QFile::exists(below(QStringLiteral("/etc/") + kept)));
    QVERIFY(!QFile::exists(below(notePath())));
}

void FileChangesTest::believesANoteOnlyAboutItsOwnFiles_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("kept");
    QTest::newRow("another file") << QStringLiteral("/etc/victim") << QString();
    QTest::newRow("dots") << QStringLiteral("/etc/syslog-ng/../victim") << QString();
    QTest::newRow("another name") << settingsPath() << QStringLiteral("victim");
    QTest::newRow("name elsewhere") << settingsPath() << QStringLiteral("../etc/victim");
    QTest::newRow("of another file") << settingsPath() << temporaryOf(QStringLiteral("victim"));
    QTest::newRow("no path") << QString() << QString();
}

void FileChangesTest::believesANoteOnlyAboutItsOwnFiles()
{
    QFETCH(QString, path);
    QFETCH(QString, kept);
    QVERIFY(putFile(below(QStringLiteral("/etc/victim")), "precious"));
    QVERIFY(leaveNote(
        {{path, kept, ChangeJournal::rowFor(targetOf(settingsPath()), {}, QByteArray("precious")).sha256}}));
    const QByteArray settings = getFile(below(settingsPath()));
    QVERIFY(write(rotationPath(), "daily\n").ok());
    QCOMPARE(getFile(below(QStringLiteral("/etc/victim"))), QByteArray("precious"));
    QCOMPARE(getFile(below(settingsPath())), settings);
    QVERIFY(!QFile::exists(below(notePath())));
}

void FileChangesTest::passesOverADamagedNote()
{
    for (const QByteArray &note :
         {QByteArray(), QByteArray("[{"), QByteArray("{}"), QByteArray("[1, null, [], {}]")}) {
        QVERIFY(putFile(below(notePath()), note));
        const QMap<QString, QByteArray> before = TransferSample::contents(m_root->path());
        QVERIFY(write(settingsPath(), before.value(settingsPath())).ok());
        QCOMPARE(TransferSample::contents(m_root->path()), before);
        QVERIFY(!QFile::exists(below(notePath())));
    }
}

void FileChangesTest::removesHalfWrittenFilesOfEveryKind()
{
    const QMap<QString, QByteArray> before = TransferSample::contents(m_root->path());
    const QString other
        = below(QStringLiteral("/etc/syslog-ng/conf.d/") + temporaryOf(QStringLiteral("other.conf")));
    QVERIFY(putFile(other, "someone's"));
    for (const QString &path :
         {settingsPath(), rotationPath(), QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"),
          QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules"),
          QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-x.conf")}) {
        const QFileInfo file(below(path));
        QVERIFY(putFile(file.path() + QLatin1Char('/') + temporaryOf(file.fileName()), "half"));
    }
    QVERIFY(write(settingsPath(), before.value(settingsPath())).ok());
    QVERIFY(QFile::remove(other));
    QCOMPARE(TransferSample::contents(m_root->path()), before);
}

void FileChangesTest::leavesOldOrNewWhenKilled()
{
    constexpr int rounds = 40;
    const auto state = [](int version) {
        QMap<QString, QByteArray> files;
        const QByteArray number = QByteArray::number(version);
        const QByteArray padding(200000, ' ');
        files.insert(settingsPath(), "{\"" + number + "\": {}}" + padding);
        files.insert(rotationPath(), "rotate " + number + '\n' + QByteArray(100000, '\n'));
        files.insert(QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"), "# " + number + '\n');
        files.insert(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf"), "# " + number + '\n');
        for (int i = 0; i < 10; ++i) {
            const QString path = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-e%1.conf").arg(i);
            // Half of them are there in every other version only.
            files.insert(path,
                         i % 2 == version % 2 ? sampleFragmentOf("e" + QByteArray::number(i)) : QByteArray());
        }
        return files;
    };
    const auto asFound = [](QMap<QString, QByteArray> files) {
        for (auto it = files.begin(); it != files.end();) {
            it = it->isNull() ? files.erase(it) : std::next(it);
        }
        files.insert(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf"), sampleFragment());
        return files;
    };
    int current = 1;
    QVERIFY(changeAll(state(current)).ok());
    QCOMPARE(TransferSample::contents(m_root->path()), asFound(state(current)));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(changeAll(state(++current)).ok());
    const qint64 whole = clock.nsecsElapsed() / 1000;
    int killed = 0;
    int halfway = 0;
    for (int round = 0; round < rounds; ++round) {
        const int next = current + 1;
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(changeAll(state(next)).ok() ? 0 : 1);
        }
        QVERIFY(child > 0);
        // From the middle to after the end: files are replaced in the second half.
        QThread::usleep(ulong(whole * (rounds / 2 + round) / rounds));
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        killed += WIFSIGNALED(status) ? 1 : 0;
        halfway += QFile::exists(below(notePath())) ? 1 : 0;
        const auto root = SafeDirectory::openRoot(m_root->path());
        QVERIFY(FileChanges::begin(root.value()).ok());
        const QMap<QString, QByteArray> found = TransferSample::contents(m_root->path());
        const bool isNew = found == asFound(state(next));
        QVERIFY2(isNew || found == asFound(state(current)), "the files are neither the old nor the new ones");
        current = isNew ? next : current;
    }
    qInfo("%d of %d were killed before they ended, %d of them while files were being replaced", killed,
          rounds, halfway);
}

QTEST_GUILESS_MAIN(FileChangesTest)

#include "filechangestest.moc"
