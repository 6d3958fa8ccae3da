// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configtransfer.h"

#include "archiveforge.h"
#include "auditsettingsstore.h"
#include "notifyrccheck.h"
#include "targz.h"
#include "transfersample.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

const QByteArray settingsName("etc/nivra-syslog.conf");
const QByteArray ownDirectory("home/.config/");
const QByteArray firstName("nivra-event-watcher_first.notifyrc");
const QByteArray secondName("nivra-event-watcher_second.notifyrc");
const QByteArray group("[Event/loginMsg]\nAction=Popup\nExecute=/bin/true\n");
const QByteArray otherGroup("[Event/plainMsg]\nAction=Sound\n");

ForgedEntry settingsEntry()
{
    return {settingsName, "{\"x\": {}}"};
}

ForgedEntry ownEntry(const QByteArray &content, const QByteArray &name = firstName)
{
    return {ownDirectory + name, content};
}

QByteArray ownArchive(const QList<ForgedEntry> &files, bool own = true)
{
    return soundArchive(files, QStringLiteral("ownNotificationSettings"), own);
}

} // namespace

/** The notification settings of the user who asks, in archives and out of them. */
class OwnSettingsTransferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void carriesThemToAnotherHome();
    void bringsTheFirstStateBack();
    void leavesThemAloneWhenTheArchiveDoesNotSay_data();
    void leavesThemAloneWhenTheArchiveDoesNotSay();
    void touchesNoneThatIsTheSame();
    void exportsNoneThatCouldNotBeImported();
    void refusesWhatIsNotSound_data();
    void refusesWhatIsNotSound();
    void refusesTargetsThatAreNotRegular();
    void takesTheOtherFilesBackWhenTheyCannotBeReplaced();
    void replacesNoneWhenTheOtherFilesCannotBe();
    void makesAuditRulesAnew();

private:
    QString config(const QByteArray &name = QByteArray()) const
    {
        return m_machine->path() + QLatin1String("/home/me/.config/") + QString::fromLatin1(name);
    }
    QString root() const { return m_machine->path() + QLatin1String("/root"); }
    ConfigTransfer transfer() const
    {
        const QString home = m_machine->path() + QLatin1String("/home/me");
        return ConfigTransfer(root(), UserNotifications(::geteuid(), home));
    }
    void expectRefusal(const QByteArray &archive, const QString &named) const;

    std::unique_ptr<QTemporaryDir> m_machine;
};

void OwnSettingsTransferTest::init()
{
    m_machine = std::make_unique<QTemporaryDir>();
    QVERIFY(m_machine->isValid());
    QVERIFY(QDir().mkpath(config()));
    QVERIFY(TransferSample::fill(root()));
    QVERIFY(putFile(config(firstName), group));
    QVERIFY(putFile(config("other.notifyrc"), "of another program"));
}

void OwnSettingsTransferTest::expectRefusal(const QByteArray &archive, const QString &named) const
{
    // All but the kept generations: they are made before anything is replaced.
    const auto all = [this] {
        TreeSnapshot snapshot = takeSnapshot(m_machine->path() + QLatin1String("/home"));
        snapshot.insert(takeSnapshot(root() + QLatin1String("/etc")));
        return snapshot;
    };
    const TreeSnapshot before = all();
    QVERIFY(!before.isEmpty());
    const auto report = transfer().install(archive);
    QVERIFY(!report.ok());
    QVERIFY2(report.error().contains(named), qPrintable(report.error()));
    QCOMPARE(all(), before);
}

void OwnSettingsTransferTest::carriesThemToAnotherHome()
{
    QVERIFY(putFile(config(secondName), "# вход\n" + otherGroup));
    const auto archive = transfer().pack();
    QVERIFY2(archive.ok(), qPrintable(archive.error()));
    QTemporaryDir other;
    const QString otherRoot = other.filePath(QStringLiteral("root"));
    QVERIFY(TransferSample::makeDirectories(otherRoot));
    QVERIFY(QDir().mkdir(other.filePath(QStringLiteral("me"))));
    const UserNotifications own(::geteuid(), other.filePath(QStringLiteral("me")));
    const auto report = ConfigTransfer(otherRoot, own).install(archive.value());
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(own.read().value(),
             (UserNotifications::Files{{QString::fromLatin1(firstName), group},
                                       {QString::fromLatin1(secondName), "# вход\n" + otherGroup}}));
    QCOMPARE(TransferSample::contents(otherRoot), TransferSample::files());
    // A machine on which nobody's own settings are kept takes all else of it.
    QTemporaryDir third;
    QVERIFY(TransferSample::makeDirectories(third.path()));
    QVERIFY(ConfigTransfer(third.path()).install(archive.value()).ok());
    QCOMPARE(TransferSample::contents(third.path()), TransferSample::files());
}

void OwnSettingsTransferTest::bringsTheFirstStateBack()
{
    const auto archive = transfer().pack();
    QVERIFY(putFile(config(firstName), otherGroup));
    QVERIFY(putFile(config(secondName), otherGroup));
    const auto report = transfer().install(archive.value());
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(getFile(config(firstName)), group);
    QVERIFY(!QFile::exists(config(secondName)));
    QCOMPARE(getFile(config("other.notifyrc")), QByteArray("of another program"));
    // What was replaced is still there.
    QCOMPARE(getFile(config(firstName + '~')), otherGroup);
    QCOMPARE(getFile(config(secondName + '~')), otherGroup);
}

void OwnSettingsTransferTest::leavesThemAloneWhenTheArchiveDoesNotSay_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::newRow("older archive") << soundArchive({settingsEntry()});
    QTest::newRow("says nothing of them") << ownArchive({settingsEntry()}, false);
}

void OwnSettingsTransferTest::leavesThemAloneWhenTheArchiveDoesNotSay()
{
    QFETCH(QByteArray, archive);
    const TreeSnapshot before = takeSnapshot(config());
    const auto report = transfer().install(archive);
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(takeSnapshot(config()), before);
    QCOMPARE(getFile(root() + QLatin1String("/etc/nivra-syslog.conf")), settingsEntry().content);
    // Unlike one that says that there were none.
    QVERIFY(transfer().install(ownArchive({settingsEntry()})).ok());
    QVERIFY(!QFile::exists(config(firstName)));
}

void OwnSettingsTransferTest::touchesNoneThatIsTheSame()
{
    const auto archive = transfer().pack();
    QVERIFY(putFile(root() + QLatin1String("/etc/nivra-syslog.conf"), "{}"));
    const TreeSnapshot before = takeSnapshot(config());
    QVERIFY(transfer().install(archive.value()).ok());
    QCOMPARE(takeSnapshot(config()), before);
}

void OwnSettingsTransferTest::exportsNoneThatCouldNotBeImported()
{
    QVERIFY(putFile(config(firstName), "[Event/a]\nno entry\n"));
    const auto archive = transfer().pack();
    QVERIFY2(archive.error().contains(QLatin1String("Line 2 of \"") + config(firstName)),
             qPrintable(archive.error()));
    QVERIFY(QFile::remove(config(firstName)));
    QVERIFY(QFile::link(QStringLiteral("other.notifyrc"), config(firstName)));
    QVERIFY2(transfer().pack().error().contains(QLatin1String("a symbolic link")),
             qPrintable(transfer().pack().error()));
}

void OwnSettingsTransferTest::refusesWhatIsNotSound_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *tag, const QByteArray &archive, const char *named) {
        QTest::newRow(tag) << archive << QString::fromLatin1(named);
    };
    row("no settings", ownArchive({settingsEntry(), ownEntry("word\n")}), "Line 1 of \"nivra-event-watcher");
    row("not text", ownArchive({settingsEntry(), ownEntry("a=\xff\n")}), "not text in UTF-8");
    QByteArray large = "#";
    quint32 state = 1;
    while (large.size() <= NotifyrcCheck::sizeLimit) {
        state = state * 1664525 + 1013904223;
        large += char('a' + (state >> 24) % 26);
    }
    row("too large", ownArchive({settingsEntry(), ownEntry(large)}), "larger than 1048576 bytes");
    row("in an archive without any", ownArchive({settingsEntry(), ownEntry(group)}, false),
        "\"home/.config/nivra-event-watcher_first.notifyrc\" is not a file of this configuration");
    for (const char *name : {"../.bashrc", "other.notifyrc", "../nivra-event-watcher.notifyrc",
                             "a/nivra-event-watcher.notifyrc", "nivra-event-watcher.notifyrc~"}) {
        row(name, ownArchive({settingsEntry(), ownEntry(group, name)}), "is not a file");
    }
    row("absent",
        soundArchive({settingsEntry()}, QStringLiteral("files"),
                     QJsonArray{manifestRow(settingsName, settingsEntry().content),
                                absentRow(ownDirectory + firstName)}),
        "is not a file of this configuration");
    row("a link",
        forgeArchive({manifestEntry(manifestOf({})), {ownDirectory + firstName, {}, AE_IFLNK, {}, "x"}}),
        "is not a regular file");
    QList<ForgedEntry> many{settingsEntry()};
    for (int i = 0; i <= NotifyrcFiles::countLimit; ++i) {
        many << ownEntry(group, "nivra-event-watcher_" + QByteArray::number(i) + ".notifyrc");
    }
    row("too many", ownArchive(many), "more than 64 files");
}

void OwnSettingsTransferTest::refusesWhatIsNotSound()
{
    QFETCH(QByteArray, archive);
    QFETCH(QString, named);
    expectRefusal(archive, named);
}

void OwnSettingsTransferTest::refusesTargetsThatAreNotRegular()
{
    QVERIFY(QFile::link(QStringLiteral("other.notifyrc"), config(secondName)));
    expectRefusal(ownArchive({settingsEntry(), ownEntry(otherGroup, secondName)}),
                  QStringLiteral("a symbolic link"));
    QVERIFY(QFile::remove(config(secondName)));
    QVERIFY(QDir(m_machine->path() + QLatin1String("/home"))
                .rename(QStringLiteral("me"), QStringLiteral("moved")));
    expectRefusal(ownArchive({settingsEntry(), ownEntry(otherGroup, secondName)}),
                  QStringLiteral("No such file"));
}

void OwnSettingsTransferTest::takesTheOtherFilesBackWhenTheyCannotBeReplaced()
{
    if (::geteuid() != 0) {
        QSKIP("only root may make a file immutable");
    }
    // Makes the backup directory, and leaves nothing else to compare.
    QVERIFY(transfer().install(ownArchive({settingsEntry(), ownEntry(group)})).ok());
    const QString chattr = QStringLiteral("chattr");
    if (QProcess::execute(chattr, {QStringLiteral("+i"), config(firstName)}) != 0) {
        QSKIP("the file system knows no immutable files");
    }
    const auto changed = ownArchive({{settingsName, "{\"y\": {}}"},
                                     {"etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf", sampleFragment()},
                                     ownEntry(otherGroup),
                                     ownEntry(otherGroup, secondName)});
    expectRefusal(changed, config(firstName));
    QCOMPARE(QProcess::execute(chattr, {QStringLiteral("-i"), config(firstName)}), 0);
    QVERIFY(transfer().install(changed).ok());
    QCOMPARE(getFile(config(firstName)), otherGroup);
}

void OwnSettingsTransferTest::replacesNoneWhenTheOtherFilesCannotBe()
{
    if (::geteuid() != 0) {
        QSKIP("only root may make a file immutable");
    }
    QVERIFY(transfer().install(ownArchive({settingsEntry(), ownEntry(group)})).ok());
    const QString settings = root() + QLatin1String("/etc/nivra-syslog.conf");
    const QString chattr = QStringLiteral("chattr");
    if (QProcess::execute(chattr, {QStringLiteral("+i"), settings}) != 0) {
        QSKIP("the file system knows no immutable files");
    }
    expectRefusal(ownArchive({{settingsName, "{\"y\": {}}"}, ownEntry(otherGroup)}), settings);
    QCOMPARE(QProcess::execute(chattr, {QStringLiteral("-i"), settings}), 0);
}

void OwnSettingsTransferTest::makesAuditRulesAnew()
{
    QVERIFY(putFile(root() + QLatin1String("/etc/passwd"), "root:x:0:0::/root:/bin/sh\n"));
    QVERIFY(putFile(root() + QLatin1String("/etc/group"), "root:x:0:\n"));
    const AuditChange change{SubjectType::Users, {{{QStringLiteral("root"), QStringLiteral("open")}, 3}}};
    QVERIFY(AuditSettingsStore(root()).set(change).ok());
    const QString path = root() + AuditSettingsStore::path();
    const QByteArray here = getFile(path);
    // As another version, or one for another kind of machine, would have written it.
    QByteArray there = here.left(here.lastIndexOf("# checksum"));
    there.replace("arch=b64", "arch=elsewhere");
    QVERIFY(!here.startsWith(there));
    there += "# checksum " + QCryptographicHash::hash(there, QCryptographicHash::Sha256).toHex() + '\n';
    QVERIFY(putFile(path, there));
    const auto archive = transfer().pack();
    QVERIFY2(archive.ok(), qPrintable(archive.error()));
    QVERIFY(QFile::remove(path));
    const auto report = transfer().install(archive.value());
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(getFile(path), here);
    // What was changed by hand is not certain.
    const QByteArray name = AuditSettingsStore::path().mid(1).toLatin1();
    there.replace("users 3 0", "users 1 0");
    expectRefusal(ownArchive({settingsEntry(), {name, there}}), QStringLiteral("changed by hand"));
}

QTEST_GUILESS_MAIN(OwnSettingsTransferTest)

#include "ownsettingstransfertest.moc"
