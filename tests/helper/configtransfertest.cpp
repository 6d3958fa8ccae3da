// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configtransfer.h"

#include "archiveforge.h"
#include "backupstore.h"
#include "fulldisk.h"
#include "safedirectory.h"
#include "targz.h"
#include "transfersample.h"

#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

const QByteArray settingsName("etc/nivra-syslog.conf");
const QByteArray mainName("etc/syslog-ng/conf.d/mod-nivra.conf");
const QByteArray rotationName("etc/logrotate.d/syslog-ng-mod-nivra");
const QByteArray fragmentName("etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf");

ForgedEntry settingsEntry(const QByteArray &content = "{\"x\": {}}")
{
    return {settingsName, content};
}

QByteArray pathOf(const QByteArray &name)
{
    return '/' + name;
}

} // namespace

/** Making archives of the configuration and installing them. */
class ConfigTransferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void carriesAConfigurationToAnotherRoot();
    void bringsBackTheFirstState();
    void leavesFilesOfOthersAlone();
    void doesNotTouchWhatIsTheSame();
    void keepsWhatItReplacesAndRemoves();
    void leavesOutAMainConfigurationOfAnotherVersion_data();
    void leavesOutAMainConfigurationOfAnotherVersion();
    void takesAnArchiveWithoutAFileThatCameLater();
    void carriesAConfigurationOfManyEvents();
    void exportsNothingThatCouldNotBeImported_data();
    void exportsNothingThatCouldNotBeImported();
    void refusesArchivesThatAreNotSound_data();
    void refusesArchivesThatAreNotSound();
    void refusesATruncatedArchiveAtEveryLength();
    void refusesAFlippedBitOrInstallsTheSame();
    void refusesContentThatIsNotSound_data();
    void refusesContentThatIsNotSound();
    void refusesTargetsThatAreNotRegular_data();
    void refusesTargetsThatAreNotRegular();
    void refusesWhileAnotherHelperWrites();
    void changesNothingWhenTheDiskTakesNoMore();

private:
    QString below(const QString &path) const { return m_root->path() + path; }
    Result<ConfigTransfer::Report> install(const QByteArray &archive) const
    {
        return ConfigTransfer(m_root->path()).install(archive);
    }
    TreeSnapshot snapshot() const { return takeSnapshot(m_root->path()); }
    void expectRefusal(const QByteArray &archive, const QString &named) const;

    std::unique_ptr<QTemporaryDir> m_root;
};

void ConfigTransferTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    QVERIFY(TransferSample::fill(m_root->path()));
}

void ConfigTransferTest::expectRefusal(const QByteArray &archive, const QString &named) const
{
    const TreeSnapshot before = snapshot();
    const Result<ConfigTransfer::Report> report = install(archive);
    QVERIFY(!report.ok());
    QVERIFY2(report.error().contains(named), qPrintable(report.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigTransferTest::carriesAConfigurationToAnotherRoot()
{
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY2(archive.ok(), qPrintable(archive.error()));
    QTemporaryDir other;
    QVERIFY(TransferSample::makeDirectories(other.path()));
    const Result<ConfigTransfer::Report> report = ConfigTransfer(other.path()).install(archive.value());
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QVERIFY(!report.value().mainConfigLeftOut);
    QCOMPARE(TransferSample::contents(other.path()), TransferSample::files());
    QCOMPARE(modeOf(other.path() + QLatin1String("/etc/audit/rules.d/nivra-syslog.rules")), 0640);
    QCOMPARE(modeOf(other.path() + QLatin1String("/etc/nivra-syslog.conf")), 0644);
}

void ConfigTransferTest::bringsBackTheFirstState()
{
    QVERIFY(QFile::remove(below(QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"))));
    const QMap<QString, QByteArray> first = TransferSample::contents(m_root->path());
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY2(archive.ok(), qPrintable(archive.error()));
    QVERIFY(putFile(below(QStringLiteral("/etc/nivra-syslog.conf")), "{}"));
    QVERIFY(putFile(below(QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra")), "/var/log/x { daily }\n"));
    QVERIFY(QFile::remove(below(QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"))));
    const QByteArray another = sampleFragmentOf("other");
    QVERIFY(putFile(below(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-other.conf")), another));
    QVERIFY(TransferSample::contents(m_root->path()) != first);
    const Result<ConfigTransfer::Report> report = install(archive.value());
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(TransferSample::contents(m_root->path()), first);
}

void ConfigTransferTest::leavesFilesOfOthersAlone()
{
    const QString own = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-mine.conf");
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY(putFile(below(own), "log { source(s_local); destination(d_local); };\n"));
    QVERIFY(putFile(below(QStringLiteral("/etc/syslog-ng/conf.d/other.conf")), "#"));
    QVERIFY(install(archive.value()).ok());
    QCOMPARE(getFile(below(own)), QByteArray("log { source(s_local); destination(d_local); };\n"));
    QCOMPARE(getFile(below(QStringLiteral("/etc/syslog-ng/conf.d/other.conf"))), QByteArray("#"));
    const Result<QByteArray> again = ConfigTransfer(m_root->path()).pack();
    QVERIFY2(again.ok(), qPrintable(again.error()));
    QVERIFY(QFile::remove(below(own)));
    QVERIFY(install(again.value()).ok());
    QVERIFY(!QFile::exists(below(own)));
}

void ConfigTransferTest::doesNotTouchWhatIsTheSame()
{
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    const TreeSnapshot before = takeSnapshot(below(QStringLiteral("/etc")));
    QVERIFY(install(archive.value()).ok());
    QCOMPARE(takeSnapshot(below(QStringLiteral("/etc"))), before);
}

void ConfigTransferTest::keepsWhatItReplacesAndRemoves()
{
    const QByteArray former = getFile(below(QStringLiteral("/etc/nivra-syslog.conf")));
    QCOMPARE(::chmod(QFile::encodeName(below(QStringLiteral("/etc/nivra-syslog.conf"))).constData(), 0600),
             0);
    const Result<ConfigTransfer::Report> report = install(soundArchive({settingsEntry()}));
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(getFile(below(QStringLiteral("/etc/nivra-syslog.conf"))), QByteArray("{\"x\": {}}"));
    QCOMPARE(modeOf(below(QStringLiteral("/etc/nivra-syslog.conf"))), 0600);
    QVERIFY(!QFile::exists(below(QString::fromLatin1(pathOf(fragmentName)))));
    const QString backups = below(QStringLiteral("/var/lib/adminevents/backup"));
    QCOMPARE(QDir(backups).entryList(QDir::Files | QDir::Hidden, QDir::Name),
             (QStringList{QStringLiteral("mod-nivra-a_b_c.conf.0000000001"),
                          QStringLiteral("nivra-syslog.conf.0000000001")}));
    QCOMPARE(getFile(backups + QLatin1String("/nivra-syslog.conf.0000000001")), former);
    QCOMPARE(getFile(backups + QLatin1String("/mod-nivra-a_b_c.conf.0000000001")), sampleFragment());
}

void ConfigTransferTest::leavesOutAMainConfigurationOfAnotherVersion_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("leftOut");
    QTest::newRow("the same") << QByteArray("log { };\n") << 1 << false;
    QTest::newRow("newer form") << QByteArray("log { };\n") << 2 << true;
    QTest::newRow("older form") << QByteArray("log { };\n") << 0 << true;
    QTest::newRow("known service") << QByteArray("@version: 3.38\nlog { };\n") << 1 << false;
    QTest::newRow("older service") << QByteArray("@version: \"3.5\"\nlog { };\n") << 1 << false;
    QTest::newRow("newer service") << QByteArray("@version: 4.0\nlog { };\n") << 1 << true;
    QTest::newRow("newer service, quoted") << QByteArray("@version: \"3.39\"\nlog { };\n") << 1 << true;
    QTest::newRow("in a comment") << QByteArray("# @version: 4.0\nlog { };\n") << 1 << false;
    QTest::newRow("newer and not sound")
        << QByteArray("@version: 4.0\nlog { program(\"x\") ;\n") << 1 << true;
}

void ConfigTransferTest::leavesOutAMainConfigurationOfAnotherVersion()
{
    QFETCH(QByteArray, text);
    QFETCH(int, version);
    QFETCH(bool, leftOut);
    const QByteArray former = getFile(below(QString::fromLatin1(pathOf(mainName))));
    const Result<ConfigTransfer::Report> report = install(
        soundArchive({settingsEntry(), {mainName, text}}, QStringLiteral("mainConfigVersion"), version));
    QVERIFY2(report.ok(), qPrintable(report.error()));
    QCOMPARE(report.value().mainConfigLeftOut, leftOut);
    QCOMPARE(getFile(below(QString::fromLatin1(pathOf(mainName)))), leftOut ? former : text);
    QCOMPARE(getFile(below(QString::fromLatin1(pathOf(settingsName)))), QByteArray("{\"x\": {}}"));
}

void ConfigTransferTest::takesAnArchiveWithoutAFileThatCameLater()
{
    const QByteArray rotation = getFile(below(QString::fromLatin1(pathOf(rotationName))));
    QVERIFY(install(soundArchive({settingsEntry()})).ok());
    QCOMPARE(getFile(below(QString::fromLatin1(pathOf(rotationName)))), rotation);
}

void ConfigTransferTest::carriesAConfigurationOfManyEvents()
{
    constexpr int count = 300;
    for (int i = 0; i < count; ++i) {
        const QByteArray id = "event" + QByteArray::number(i);
        QVERIFY(putFile(below(QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-event%1.conf").arg(i)),
                        sampleFragmentOf(id)));
    }
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY2(archive.ok(), qPrintable(archive.error()));
    QTemporaryDir other;
    QVERIFY(TransferSample::makeDirectories(other.path()));
    QVERIFY(ConfigTransfer(other.path()).install(archive.value()).ok());
    QCOMPARE(TransferSample::contents(other.path()), TransferSample::contents(m_root->path()));
    QCOMPARE(TransferSample::contents(other.path()).size(), count + 5);
}

void ConfigTransferTest::exportsNothingThatCouldNotBeImported_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("settings") << QStringLiteral("/etc/nivra-syslog.conf") << QByteArray("{");
    QTest::newRow("rules") << QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules") << QByteArray("-D\n");
    QTest::newRow("audit settings") << QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules")
                                    << QByteArray("# changed by hand\n");
}

void ConfigTransferTest::exportsNothingThatCouldNotBeImported()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QVERIFY(putFile(below(path), content));
    const TreeSnapshot before = snapshot();
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY(!archive.ok());
    QVERIFY2(archive.error().contains(path), qPrintable(archive.error()));
    QCOMPARE(snapshot(), before);
}

void ConfigTransferTest::refusesArchivesThatAreNotSound_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("named");
    const auto row = [](const char *tag, const QByteArray &archive, const char *named) {
        QTest::newRow(tag) << archive << QString::fromUtf8(named);
    };
    const ForgedEntry settings = settingsEntry();
    const QJsonObject settingsRow = manifestRow(settings.name, settings.content);
    const ForgedEntry manifest = manifestEntry(manifestOf({settingsRow}));
    row("empty", {}, "archive is empty");
    row("text", "this is no archive at all, only text", "not a tar archive compressed with gzip");
    row("zeros", QByteArray(2048, '\0'), "not a tar archive compressed with gzip");
    row("tar without gzip", forgeArchive({manifest, settings}, ARCHIVE_FILTER_NONE),
        "not a tar archive compressed with gzip");
    row("gzip in gzip", forgeArchive({manifest, settings}, ARCHIVE_FILTER_GZIP, 2),
        "not a tar archive compressed with gzip");
    row("xz", forgeArchive({manifest, settings}, ARCHIVE_FILTER_XZ),
        "not a tar archive compressed with gzip");
    row("too large as it is", QByteArray(TarGz::archiveLimit + 1, '\x1f'), "33554432 bytes");
    row("no manifest", forgeArchive({settings}), "no list of its files");
    row("only directories", forgeArchive({{"etc", {}, AE_IFDIR}}),
        "\"etc/\" in the archive is not a file of");
    row("bomb in one entry", forgeArchive({{settingsName, QByteArray(100 * 1024 * 1024, '0')}}), "200 times");
    row("over the whole", forgeArchive({{settingsName, QByteArray(140 * 1024 * 1024, '0')}}),
        "134217728 bytes");
    for (const char *name :
         {"../etc/nivra-syslog.conf", "/etc/nivra-syslog.conf", "etc/../etc/nivra-syslog.conf",
          "./etc/nivra-syslog.conf", "etc//nivra-syslog.conf", "etc/passwd", "etc/nivra-syslog.conf/",
          "ETC/nivra-syslog.conf", "etc/syslog-ng/conf.d/mod-nivra-.conf",
          "etc/syslog-ng/conf.d/mod-nivra-../../x.conf", "etc/syslog-ng/conf.d/mod-nivra-a b.conf"}) {
        row(name, forgeArchive({manifest, settings, {name, "x"}}),
            qPrintable(QLatin1Char('"') + QLatin1String(name)
                       + QLatin1String("\" in the archive is not a file")));
    }
    row("name that is not text", forgeArchive({manifest, settings, {"etc/\xff\xfe", "x"}}),
        "not text in UTF-8");
    row("twice", forgeArchive({manifest, settings, settings}), "stands twice");
    row("manifest twice", forgeArchive({manifest, settings, manifest}), "\"manifest.json\" stands twice");
    row("symbolic link", forgeArchive({manifest, {settingsName, {}, AE_IFLNK, {}, "/etc/shadow"}}),
        "\"etc/nivra-syslog.conf\" in the archive is not a regular file");
    row("hard link", forgeArchive({manifest, {settingsName, {}, AE_IFREG, "etc/shadow"}}),
        "\"etc/nivra-syslog.conf\" in the archive is not a regular file");
    for (const auto &[tag, type] : {std::pair("character device", AE_IFCHR),
                                    std::pair("block device", AE_IFBLK), std::pair("pipe", AE_IFIFO)}) {
        row(tag, forgeArchive({manifest, {settingsName, {}, type}}), "is not a regular file");
    }
    row("entry too large", soundArchive({{settingsName, QByteArray(TarGz::entryLimit + 1, ' ')}}),
        "200 times");
    QByteArray noise(TarGz::entryLimit + 1, ' ');
    quint32 state = 1;
    for (char &c : noise) {
        state = state * 1664525 + 1013904223;
        c = char(state >> 24);
    }
    row("entry too large, dense", soundArchive({{settingsName, noise}}), "16777216 bytes");
    row("future format", soundArchive({settings}, QStringLiteral("format"), 2), "format 2");
    row("format as text", soundArchive({settings}, QStringLiteral("format"), QStringLiteral("1")),
        "in which format");
    row("format with a fraction", soundArchive({settings}, QStringLiteral("format"), 1.5), "in which format");
    row("another product", soundArchive({settings}, QStringLiteral("product"), QStringLiteral("x")),
        "does not hold a configuration of security event logging");
    row("no version", soundArchive({settings}, QStringLiteral("mainConfigVersion"), QJsonValue::Null),
        "which version the main configuration has");
    row("no files", soundArchive({}, QStringLiteral("files"), QJsonArray()), "names no file");
    row("files as text", soundArchive({}, QStringLiteral("files"), QStringLiteral("all")), "names no file");
    row("not named", soundArchive({settings}, QStringLiteral("files"), QJsonArray{absentRow(mainName)}),
        "does not name \"etc/nivra-syslog.conf\"");
    row("named twice",
        soundArchive({settings}, QStringLiteral("files"), QJsonArray{settingsRow, settingsRow}),
        "\"etc/nivra-syslog.conf\" is missing");
    row("absent twice",
        soundArchive({settings}, QStringLiteral("files"),
                     QJsonArray{settingsRow, absentRow(mainName), absentRow(mainName)}),
        "stands in it twice");
    row("absent and there",
        soundArchive({settings}, QStringLiteral("files"), QJsonArray{absentRow(settingsName)}),
        "although it is said to be absent");
    row("missing", forgeArchive({manifest}), "\"etc/nivra-syslog.conf\" is missing");
    row("named but unknown",
        soundArchive({settings}, QStringLiteral("files"), QJsonArray{settingsRow, absentRow("etc/passwd")}),
        "\"etc/passwd\" is not a file of this configuration");
    QJsonObject wrong = settingsRow;
    wrong.insert(QStringLiteral("sha256"), QStringLiteral("00"));
    row("wrong checksum", soundArchive({settings}, QStringLiteral("files"), QJsonArray{wrong}),
        "size and checksum");
    wrong = settingsRow;
    wrong.insert(QStringLiteral("size"), settings.content.size() + 1);
    row("wrong size", soundArchive({settings}, QStringLiteral("files"), QJsonArray{wrong}),
        "size and checksum");
    wrong.remove(QStringLiteral("present"));
    row("present or not", soundArchive({settings}, QStringLiteral("files"), QJsonArray{wrong}),
        "whether \"etc/nivra-syslog.conf\" is present");
    row("manifest that is no JSON", forgeArchive({{"manifest.json", "{"}, settings}), "not JSON");
    QList<ForgedEntry> many{manifest};
    for (int i = 0; i <= TarGz::countLimit; ++i) {
        many << ForgedEntry{"etc/syslog-ng/conf.d/mod-nivra-" + QByteArray::number(i) + ".conf",
                            QByteArray::number(i * 7919)};
    }
    row("too many", forgeArchive(many), "10100 files");
}

void ConfigTransferTest::refusesArchivesThatAreNotSound()
{
    QFETCH(QByteArray, archive);
    QFETCH(QString, named);
    expectRefusal(archive, named);
}

void ConfigTransferTest::refusesATruncatedArchiveAtEveryLength()
{
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY(putFile(below(QStringLiteral("/etc/nivra-syslog.conf")), "{}"));
    const TreeSnapshot before = snapshot();
    for (int size = 0; size < archive.value().size(); ++size) {
        const Result<ConfigTransfer::Report> report = install(archive.value().left(size));
        QVERIFY2(!report.ok(), qPrintable(QString::number(size)));
        QVERIFY(!report.error().isEmpty());
    }
    QCOMPARE(snapshot(), before);
    QVERIFY(install(archive.value()).ok());
}

void ConfigTransferTest::refusesAFlippedBitOrInstallsTheSame()
{
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    const QMap<QString, QByteArray> files = TransferSample::contents(m_root->path());
    int refused = 0;
    for (int i = 0; i < archive.value().size(); ++i) {
        QByteArray damaged = archive.value();
        damaged[i] = char(damaged.at(i) ^ (1 << (i % 8)));
        refused += install(damaged).ok() ? 0 : 1;
        QCOMPARE(TransferSample::contents(m_root->path()), files);
    }
    // Time, system and checksum of the compression, and its padding, are bytes that nobody reads.
    constexpr int idleBytes = 40;
    QVERIFY2(refused > archive.value().size() - idleBytes,
             qPrintable(QStringLiteral("%1 of %2").arg(refused).arg(archive.value().size())));
}

void ConfigTransferTest::refusesContentThatIsNotSound_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("settings") << settingsName << QByteArray("{\"x\": ");
    QTest::newRow("settings with a zero") << settingsName << QByteArray("{}\0", 3);
    QTest::newRow("rules") << QByteArray("etc/audit/rules.d/nivra-syslog.rules") << QByteArray("-e 0\n");
    QTest::newRow("audit settings") << QByteArray("etc/audit/rules.d/nivra-syslog-subjects.rules")
                                    << QByteArray("-a never,task\n");
    QTest::newRow("main configuration, out of balance") << mainName << QByteArray("log {\n");
    QTest::newRow("main configuration, program")
        << mainName << QByteArray("destination d { program(\"/bin/sh\"); };\n");
    QTest::newRow("rotation") << rotationName
                              << QByteArray("/var/log/x {\n\tpostrotate\n\treboot\n\tendscript\n}\n");
    QTest::newRow("fragment") << fragmentName << QByteArray("log { };\n");
    QTest::newRow("fragment of another event")
        << QByteArray("etc/syslog-ng/conf.d/mod-nivra-x.conf") << sampleFragment();
}

void ConfigTransferTest::refusesContentThatIsNotSound()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, content);
    // Sound files around it must not be installed either.
    QList<ForgedEntry> files{{name, content}};
    if (name != settingsName) {
        files << settingsEntry();
    }
    expectRefusal(soundArchive(files), QString::fromLatin1(name.mid(name.lastIndexOf('/') + 1)));
}

void ConfigTransferTest::refusesTargetsThatAreNotRegular_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"symbolic link", "pipe", "directory"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void ConfigTransferTest::refusesTargetsThatAreNotRegular()
{
    QFETCH(QString, kind);
    const QString path = below(QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra"));
    QVERIFY(QFile::remove(path));
    if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkdir(path));
    } else if (kind == QLatin1String("pipe")) {
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    } else {
        QVERIFY(QFile::link(QStringLiteral("victim"), path));
    }
    expectRefusal(soundArchive({settingsEntry(), {rotationName, "/var/log/x { daily }\n"}}), path);
    const Result<QByteArray> archive = ConfigTransfer(m_root->path()).pack();
    QVERIFY(!archive.ok());
    QVERIFY2(archive.error().contains(path) && archive.error().contains(kind), qPrintable(archive.error()));
}

void ConfigTransferTest::refusesWhileAnotherHelperWrites()
{
    QVERIFY(install(soundArchive({settingsEntry()})).ok());
    const auto root = SafeDirectory::openRoot(m_root->path());
    {
        const auto held = BackupStore::open(root.value());
        QVERIFY(held.ok());
        expectRefusal(soundArchive({settingsEntry("{}")}), QStringLiteral("being written"));
    }
    QVERIFY(install(soundArchive({settingsEntry("{}")})).ok());
}

void ConfigTransferTest::changesNothingWhenTheDiskTakesNoMore()
{
    QVERIFY(install(soundArchive({settingsEntry()})).ok());
    const QByteArray large = "{\"y\": {}}" + QByteArray(20000, ' ');
    QByteArray fragment = sampleFragment();
    const TreeSnapshot before = snapshot();
    // The fragment comes first and fits; the settings do not.
    const auto report = asOnAFullDisk([&] {
        return install(soundArchive({{fragmentName, fragment}, settingsEntry(large)}));
    });
    QVERIFY(!report.ok());
    QVERIFY2(report.error().contains(QLatin1String("nivra-syslog.conf")), qPrintable(report.error()));
    QCOMPARE(snapshot(), before);
}

QTEST_GUILESS_MAIN(ConfigTransferTest)

#include "configtransfertest.moc"
