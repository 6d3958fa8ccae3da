// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditsettingsstore.h"
#include "auditoperations.h"
#include "backupstore.h"
#include "subjectrules.h"
#include "treesnapshot.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace AdminEventsHelper;

namespace {

const QString opening = QStringLiteral("open");
const QString modes = QStringLiteral("chmod");
const QString machine = QStringLiteral("x86_64");

AuditChange changeOf(SubjectType type, const QMap<QPair<QString, QString>, int> &values)
{
    return {type, values};
}

/// As somebody who wants to do harm would make it: the checksum is right.
QByteArray forged(const QByteArray &settings)
{
    return settings + "# checksum " + QCryptographicHash::hash(settings, QCryptographicHash::Sha256).toHex()
        + '\n';
}

} // namespace

class AuditSettingsStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tellsNothingBeforeAnythingWasSet();
    void tellsWhatWasSet();
    void settingsThatARequestDoesNotHoldStay();
    void zeroTakesASettingBack();
    void carriesNamesOfAnyKind();
    void namesOfOneNumberShareASetting();
    void ofAccountsOfOneNameTheFirstIsMeant();
    void theFileHoldsTheRules();
    void theSameSettingsGiveTheSameFile();
    void theFileIsForAdministratorsOnlyAndItsFormerContentIsKept();
    void unknownSubjectsAreRefusedAndNothingChanges();
    void tooManyRulesAreRefusedAndNothingChanges();
    void aFileChangedByHandIsNeitherReadNorReplaced_data();
    void aFileChangedByHandIsNeitherReadNorReplaced();
    void aFileThatNamesTooManySubjectsIsRefused();
    void aFileThatNeedsFarTooManyRulesIsRefusedSoon();
    void aLinkInThePlaceOfTheFileIsRefused();
    void settingsOfAnAccountThatIsGoneStayWithItsNumber();
    void largeSitesAreRememberedInShortLines();
    void theSystemsOwnAccountsServeWhereTheRootHasNone();

private:
    AuditSettingsStore store() const { return AuditSettingsStore(m_root->path(), machine); }
    QString rulesPath() const { return m_root->path() + AuditSettingsStore::path(); }
    QVariantMap get(SubjectType type, const QStringList &identifiers, const QStringList &names) const
    {
        const Result<QVariantMap> reply = store().get({type, identifiers, names});
        return reply ? reply.value() : QVariantMap{{QStringLiteral("error"), reply.error()}};
    }

    std::unique_ptr<QTemporaryDir> m_root;
};

void AuditSettingsStoreTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("etc/audit/rules.d")));
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/passwd")),
                    "root:x:0:0::/root:/bin/sh\n"
                    "alice:x:1000:1000::/:/bin/sh\n"
                    "bob:x:1001:1001::/:/bin/sh\n"
                    "toor:x:0:0::/root:/bin/sh\n"
                    "overlay0:x:1002:1002::/:/bin/sh\n"
                    "two words:x:1003:1003::/:/bin/sh\n"
                    "Иван \"Ё\" \\:x:1004:1004::/:/bin/sh\n"
                    "a/b:x:1005:1005::/:/bin/sh\n"));
    QVERIFY(
        putFile(m_root->filePath(QStringLiteral("etc/group")), "root:x:0:\nstaff:x:50:\nalice:x:1000:\n"));
}

void AuditSettingsStoreTest::cleanup()
{
    m_root.reset();
}

void AuditSettingsStoreTest::tellsNothingBeforeAnythingWasSet()
{
    QCOMPARE(get(SubjectType::Users, {opening}, {QStringLiteral("alice")}), QVariantMap());
    QCOMPARE(get(SubjectType::Other, {opening}, {}), QVariantMap());
    QVERIFY(!QFile::exists(rulesPath()));
}

void AuditSettingsStoreTest::tellsWhatWasSet()
{
    const QString alice = QStringLiteral("alice");
    const QString bob = QStringLiteral("bob");
    QVERIFY(store().set(
        changeOf(SubjectType::Users, {{{alice, opening}, 3}, {{bob, opening}, 1}, {{bob, modes}, 2}})));
    QVERIFY(store().set(changeOf(SubjectType::Groups, {{{QStringLiteral("staff"), opening}, 2}})));
    QVERIFY(store().set(changeOf(SubjectType::Other, {{{QString(), modes}, 1}})));
    QCOMPARE(get(SubjectType::Users, {opening, modes, QStringLiteral("net")},
                 {alice, bob, QStringLiteral("root")}),
             (QVariantMap{{QStringLiteral("alice/open"), 3},
                          {QStringLiteral("bob/open"), 1},
                          {QStringLiteral("root/open"), 0},
                          {QStringLiteral("alice/chmod"), 0},
                          {QStringLiteral("bob/chmod"), 2},
                          {QStringLiteral("root/chmod"), 0}}));
    QCOMPARE(get(SubjectType::Groups, {opening}, {QStringLiteral("staff"), alice}),
             (QVariantMap{{QStringLiteral("staff/open"), 2}, {QStringLiteral("alice/open"), 0}}));
    QCOMPARE(get(SubjectType::Other, {opening, modes}, {}), (QVariantMap{{opening, 0}, {modes, 1}}));
}

void AuditSettingsStoreTest::settingsThatARequestDoesNotHoldStay()
{
    const QString alice = QStringLiteral("alice");
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{alice, opening}, 3}})));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("bob"), opening}, 1}})));
    QVERIFY(store().set(changeOf(SubjectType::Users, {})));
    QCOMPARE(get(SubjectType::Users, {opening}, {alice}), (QVariantMap{{QStringLiteral("alice/open"), 3}}));
}

void AuditSettingsStoreTest::zeroTakesASettingBack()
{
    const QString alice = QStringLiteral("alice");
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{alice, opening}, 3}})));
    QVERIFY(getFile(rulesPath()).contains("-F uid=1000 "));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{alice, opening}, 0}})));
    QVERIFY(!getFile(rulesPath()).contains("-a "));
    QCOMPARE(get(SubjectType::Users, {opening}, {alice}), (QVariantMap{{QStringLiteral("alice/open"), 0}}));
}

void AuditSettingsStoreTest::carriesNamesOfAnyKind()
{
    const QStringList names{QStringLiteral("overlay0"), QStringLiteral("two words"),
                            QStringLiteral("Иван \"Ё\" \\")};
    for (const QString &name : names) {
        QVERIFY2(store().set(changeOf(SubjectType::Users, {{{name, opening}, 2}})), qPrintable(name));
        QCOMPARE(get(SubjectType::Users, {opening}, {name}),
                 (QVariantMap{{QString(name + QLatin1String("/open")), 2}}));
    }
    QVERIFY(getFile(rulesPath()).contains("uid>=1002 -F uid<=1004 "));
    // Nothing in the reply tells where such a name ends.
    QCOMPARE(get(SubjectType::Users, {opening}, {QStringLiteral("a/b")}), QVariantMap());
}

void AuditSettingsStoreTest::namesOfOneNumberShareASetting()
{
    const QString root = QStringLiteral("root");
    const QString toor = QStringLiteral("toor");
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{root, opening}, 2}, {{toor, opening}, 0}})));
    QCOMPARE(get(SubjectType::Users, {opening}, {toor}), (QVariantMap{{QStringLiteral("toor/open"), 2}}));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{toor, opening}, 0}})));
    QCOMPARE(get(SubjectType::Users, {opening}, {root}), (QVariantMap{{QStringLiteral("root/open"), 0}}));
}

void AuditSettingsStoreTest::ofAccountsOfOneNameTheFirstIsMeant()
{
    const QString alice = QStringLiteral("alice");
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/passwd")),
                    "alice:x:1000:1000::/home/alice:/bin/sh\nalice:x:2000:2000::/srv/alice:/bin/sh\n"));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{alice, opening}, 3}})));
    QVERIFY(getFile(rulesPath()).contains("-F uid=1000 "));
    QVERIFY(!getFile(rulesPath()).contains("-F uid=2000 "));
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/group")), "alice:x:1000:\nalice:x:2000:\n"));
    QVERIFY(store().set(changeOf(SubjectType::Groups, {{{alice, opening}, 3}})));
    QVERIFY(getFile(rulesPath()).contains("-F gid=1000 "));
    QVERIFY(!getFile(rulesPath()).contains("-F gid=2000 "));
}

void AuditSettingsStoreTest::theFileHoldsTheRules()
{
    QVERIFY(store().set(
        changeOf(SubjectType::Users, {{{QStringLiteral("alice"), QStringLiteral("chroot")}, 1}})));
    const QByteArrayList lines = getFile(rulesPath()).split('\n');
    QVERIFY(lines.contains("-a always,exit -F arch=b64 -S chroot,pivot_root -F uid=1000 -F success=1 "
                           "-F key=nivra-subject-chroot"));
    QVERIFY(lines.contains("-a always,exit -F arch=b32 -S chroot,pivot_root -F uid=1000 -F success=1 "
                           "-F key=nivra-subject-chroot"));
    const auto rules = std::count_if(lines.cbegin(), lines.cend(),
                                     [](const QByteArray &line) { return line.startsWith("-"); });
    QCOMPARE(int(rules), 2);
    for (const QByteArray &line : lines) {
        QVERIFY2(line.isEmpty() || line.startsWith('#') || line.startsWith("-a "), line.constData());
    }
}

void AuditSettingsStoreTest::theSameSettingsGiveTheSameFile()
{
    const QPair<QString, QString> alice{QStringLiteral("alice"), opening};
    const QPair<QString, QString> bob{QStringLiteral("bob"), modes};
    QVERIFY(store().set(changeOf(SubjectType::Users, {{alice, 3}, {bob, 1}})));
    const QByteArray first = getFile(rulesPath());
    QVERIFY(QFile::remove(rulesPath()));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{bob, 1}})));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{alice, 1}})));
    QVERIFY(getFile(rulesPath()) != first);
    QVERIFY(store().set(changeOf(SubjectType::Users, {{alice, 3}})));
    QCOMPARE(getFile(rulesPath()), first);
}

void AuditSettingsStoreTest::theFileIsForAdministratorsOnlyAndItsFormerContentIsKept()
{
    const QPair<QString, QString> alice{QStringLiteral("alice"), opening};
    QVERIFY(store().set(changeOf(SubjectType::Users, {{alice, 3}})));
    QCOMPARE(modeOf(rulesPath()), 0640);
    const QByteArray former = getFile(rulesPath());
    QVERIFY(store().set(changeOf(SubjectType::Users, {{alice, 1}})));
    const QString backup = m_root->filePath(
        QStringLiteral("var/lib/adminevents/backup/nivra-syslog-subjects.rules.0000000001"));
    QCOMPARE(getFile(backup), former);
}

void AuditSettingsStoreTest::unknownSubjectsAreRefusedAndNothingChanges()
{
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("alice"), opening}, 3}})));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    const Outcome user = store().set(
        changeOf(SubjectType::Users,
                 {{{QStringLiteral("bob"), opening}, 3}, {{QStringLiteral("nobody else"), opening}, 1}}));
    QVERIFY2(user.error().contains(QLatin1String("nobody else")), qPrintable(user.error()));
    // A user's name is no group's.
    const Outcome group = store().set(changeOf(SubjectType::Groups, {{{QStringLiteral("bob"), opening}, 3}}));
    QVERIFY2(group.error().contains(QLatin1String("bob")), qPrintable(group.error()));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void AuditSettingsStoreTest::tooManyRulesAreRefusedAndNothingChanges()
{
    QByteArray groups;
    QMap<QPair<QString, QString>, int> values;
    for (int i = 0; i <= SubjectRules::ruleLimit / 2; ++i) {
        groups += "g" + QByteArray::number(i) + ":x:" + QByteArray::number(i) + ":\n";
        values.insert({QStringLiteral("g%1").arg(i), modes}, 3);
    }
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/group")), groups));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    const Outcome refused = store().set(changeOf(SubjectType::Groups, values));
    QVERIFY2(refused.error().contains(QString::number(SubjectRules::ruleLimit + 2)),
             qPrintable(refused.error()));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void AuditSettingsStoreTest::aFileChangedByHandIsNeitherReadNorReplaced_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::newRow("a rule") << QByteArray("uid=1000") << QByteArray("uid=1001");
    QTest::newRow("a setting") << QByteArray("#@ open users 3 1000") << QByteArray("#@ open users 1 1000");
    QTest::newRow("a line more") << QByteArray("# checksum") << QByteArray("-D\n# checksum");
    QTest::newRow("a line behind") << QByteArray("\n# checksum") << QByteArray("\n# nothing\n# checksum");
    QTest::newRow("no checksum") << QByteArray("# checksum") << QByteArray("# check");
}

void AuditSettingsStoreTest::aFileChangedByHandIsNeitherReadNorReplaced()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("alice"), opening}, 3}})));
    QByteArray text = getFile(rulesPath());
    QVERIFY(text.contains(from));
    QVERIFY(putFile(rulesPath(), text.replace(from, to)));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    const Result<QVariantMap> read = store().get({SubjectType::Users, {opening}, {QStringLiteral("alice")}});
    QVERIFY2(read.error().contains(QLatin1String("nivra-syslog-subjects.rules")), qPrintable(read.error()));
    const Outcome written
        = store().set(changeOf(SubjectType::Users, {{{QStringLiteral("bob"), opening}, 3}}));
    QVERIFY2(written.error().contains(QLatin1String("nivra-syslog-subjects.rules")),
             qPrintable(written.error()));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void AuditSettingsStoreTest::aFileThatNamesTooManySubjectsIsRefused()
{
    QByteArray settings = "#@ open users 3";
    for (int i = 0; i < 3; ++i) {
        settings += ' ' + QByteArray::number(i * 1000000) + '-' + QByteArray::number(i * 1000000 + 700000);
    }
    const QString path = AuditSettingsStore::path();
    const Outcome refused = AuditSettingsStore::check(path, forged(settings + '\n'));
    QVERIFY2(refused.error().contains(QLatin1String("Line 1 of \"") + path), qPrintable(refused.error()));
    QVERIFY(putFile(rulesPath(), forged("#@ open users 3 0-4294967295\n")));
    QVERIFY(!store().set(changeOf(SubjectType::Users, {{{QStringLiteral("bob"), opening}, 3}})));
    // As many as a file may name, and one more by a request.
    const QByteArray most = "#@ open users 3 2000-" + QByteArray::number(SubjectText::subjectLimit + 1999);
    QVERIFY(putFile(rulesPath(), forged(most + '\n')));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    const Outcome more = store().set(changeOf(SubjectType::Users, {{{QStringLiteral("bob"), opening}, 3}}));
    QVERIFY2(more.error().contains(QString::number(SubjectText::subjectLimit)), qPrintable(more.error()));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void AuditSettingsStoreTest::aFileThatNeedsFarTooManyRulesIsRefusedSoon()
{
    const int groups = 100000;
    QByteArray settings;
    for (const QString &identifier : AuditOperations::identifiers()) {
        settings += "#@ " + identifier.toLatin1() + " groups 3 1-" + QByteArray::number(groups) + '\n';
    }
    QElapsedTimer timer;
    timer.start();
    const Outcome refused = AuditSettingsStore::check(AuditSettingsStore::path(), forged(settings));
    QVERIFY2(refused.error().contains(QString::number(SubjectRules::ruleLimit)), qPrintable(refused.error()));
    // The bus does not wait longer than that for an answer.
    QVERIFY2(timer.elapsed() < 25000, qPrintable(QString::number(timer.elapsed())));
}

void AuditSettingsStoreTest::aLinkInThePlaceOfTheFileIsRefused()
{
    const QString elsewhere = m_root->filePath(QStringLiteral("etc/elsewhere"));
    QVERIFY(putFile(elsewhere, "kept"));
    QVERIFY(QFile::link(elsewhere, rulesPath()));
    const TreeSnapshot before = takeSnapshot(m_root->path());
    QVERIFY(!store().get({SubjectType::Users, {opening}, {QStringLiteral("alice")}}));
    QVERIFY(!store().set(changeOf(SubjectType::Users, {{{QStringLiteral("alice"), opening}, 3}})));
    QCOMPARE(takeSnapshot(m_root->path()), before);
}

void AuditSettingsStoreTest::settingsOfAnAccountThatIsGoneStayWithItsNumber()
{
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("alice"), opening}, 3}})));
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/passwd")),
                    "carol:x:1000:1000::/:/bin/sh\nbob:x:1001:1::/:/\n"));
    // The kernel knows numbers only: this is who is recorded now.
    QCOMPARE(get(SubjectType::Users, {opening}, {QStringLiteral("carol"), QStringLiteral("alice")}),
             (QVariantMap{{QStringLiteral("carol/open"), 3}}));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("bob"), opening}, 3}})));
    QVERIFY(getFile(rulesPath()).contains("-F uid>=1000 -F uid<=1001 "));
}

void AuditSettingsStoreTest::largeSitesAreRememberedInShortLines()
{
    QByteArray users;
    QMap<QPair<QString, QString>, int> values;
    QStringList names;
    for (int i = 0; i < 5000; ++i) {
        const QString name = QStringLiteral("user%1").arg(i);
        users += name.toLatin1() + ":x:" + QByteArray::number(10000 + i) + ":100::/:/bin/sh\n";
        names << name;
        values.insert({name, opening}, i < 4000 ? 3 : i % 20 == 0 ? 1 : 0);
    }
    QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/passwd")), users));
    QVERIFY2(store().set(changeOf(SubjectType::Users, values)), "large site");
    const QByteArrayList lines = getFile(rulesPath()).split('\n');
    for (const QByteArray &line : lines) {
        QVERIFY2(line.size() <= 300, line.constData());
    }
    const QVariantMap reply = get(SubjectType::Users, {opening}, names);
    QCOMPARE(reply.size(), 5000);
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        QCOMPARE(reply.value(it.key().first + QLatin1String("/open")).toInt(), it.value());
    }
}

void AuditSettingsStoreTest::theSystemsOwnAccountsServeWhereTheRootHasNone()
{
    QVERIFY(QFile::remove(m_root->filePath(QStringLiteral("etc/passwd"))));
    QVERIFY(store().set(changeOf(SubjectType::Users, {{{QStringLiteral("root"), opening}, 3}})));
    QVERIFY(getFile(rulesPath()).contains("-F uid=0 "));
    QVERIFY(!store().set(changeOf(SubjectType::Users, {{{QStringLiteral("no such account"), opening}, 3}})));
}

QTEST_GUILESS_MAIN(AuditSettingsStoreTest)

#include "auditsettingsstoretest.moc"
