// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectrules.h"
#include "auditoperations.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTest>

#include <algorithm>
#include <sys/utsname.h>
#include <unistd.h>

using namespace AdminEventsHelper;

namespace {

const QString machine = QStringLiteral("x86_64");
const QString leastCalls = QStringLiteral("chroot"); // the operation with the fewest calls

struct Process
{
    quint32 user = 0;
    QSet<quint32> groups;
};

SubjectSettings settingsOf(const OperationSettings &operation, const QString &identifier = leastCalls)
{
    return {{identifier, operation}};
}

/** The rules of 64-bit calls, each without what all of them have. */
QStringList rules(const OperationSettings &operation)
{
    const Result<QList<QByteArray>> made = SubjectRules::make(settingsOf(operation), machine);
    if (!made) {
        return {made.error()};
    }
    QStringList lines;
    for (const QByteArray &rule : made.value()) {
        const QByteArray start("-a always,exit -F arch=b64 -S chroot,pivot_root");
        const QByteArray end(" -F key=nivra-subject-chroot");
        if (rule.startsWith(start) && rule.endsWith(end)) {
            lines << QString::fromLatin1(rule.mid(start.size(), rule.size() - start.size() - end.size()))
                         .trimmed();
        }
    }
    return lines;
}

bool fieldMatches(const QString &field, const Process &process, bool success)
{
    static const QStringList operators{QStringLiteral("!="), QStringLiteral(">="), QStringLiteral("<="),
                                       QStringLiteral("=")};
    for (const QString &op : operators) {
        const int position = field.indexOf(op);
        if (position < 0) {
            continue;
        }
        const QString name = field.left(position);
        const quint32 value = field.mid(position + op.size()).toUInt();
        if (name == QLatin1String("success")) {
            return success == (value == 1);
        }
        if (name == QLatin1String("gid")) {
            return process.groups.contains(value) == (op == QLatin1String("="));
        }
        const quint32 user = process.user;
        return op == QLatin1String("!=") ? user != value
            : op == QLatin1String(">=")  ? user >= value
            : op == QLatin1String("<=")  ? user <= value
                                         : user == value;
    }
    return false;
}

/** What the kernel would say: a rule matches when all of its fields do. */
bool isRecorded(const QStringList &rules, const Process &process, bool success)
{
    for (const QString &rule : rules) {
        bool matches = true;
        const QStringList words = rule.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (int i = 1; i < words.size(); i += 2) {
            matches = matches && fieldMatches(words.at(i), process, success);
        }
        if (matches) {
            return true;
        }
    }
    return false;
}

/** What the settings say, put without rules. */
bool isWanted(const OperationSettings &settings, const Process &process, bool success)
{
    int value = settings.users.value(process.user);
    for (const quint32 group : process.groups) {
        value |= settings.groups.value(group);
    }
    return ((value == 0 ? settings.other : value) & (success ? 1 : 2)) != 0;
}

} // namespace

class SubjectRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneSubjectTakesOneRule_data();
    void oneSubjectTakesOneRule();
    void neighboursShareARule();
    void outcomesShareARuleWhereTheyAgree();
    void everybodyTakesOneRule();
    void manyExceptionsBecomeRanges();
    void groupsAreNeverRanges();
    void tooManyExceptedGroupsAreRefused();
    void theRulesRecordWhatTheSettingsSay();
    void twinsAreBothRecorded();
    void equalTwinsShareTheirRules();
    void everyArchitectureOfTheMachineHasRules_data();
    void everyArchitectureOfTheMachineHasRules();
    void anUnknownMachineIsRefused();
    void tooManyRulesAreRefusedWithTheirNumber();
    void theSameSettingsGiveTheSameText();
    void makingAFileComesBeforeOpeningOne();
    void everyCallIsKnownToTheAuditTools_data();
    void everyCallIsKnownToTheAuditTools();
    void theKernelTakesEveryRule();
};

void SubjectRulesTest::oneSubjectTakesOneRule_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("success") << 1 << QStringLiteral(" -F success=1");
    QTest::newRow("failure") << 2 << QStringLiteral(" -F success=0");
    QTest::newRow("both") << 3 << QString();
}

void SubjectRulesTest::oneSubjectTakesOneRule()
{
    QFETCH(int, value);
    QFETCH(QString, outcome);
    QCOMPARE(rules({{{1000, value}}, {}, 0}), QStringList(QStringLiteral("-F uid=1000") + outcome));
    QCOMPARE(rules({{}, {{27, value}}, 0}), QStringList(QStringLiteral("-F gid=27") + outcome));
    QCOMPARE(rules({{}, {}, value}), QStringList(outcome.trimmed()));
}

void SubjectRulesTest::neighboursShareARule()
{
    QCOMPARE(rules({{{1000, 3}, {1001, 3}, {1002, 3}, {1004, 3}}, {}, 0}),
             (QStringList{QStringLiteral("-F uid>=1000 -F uid<=1002"), QStringLiteral("-F uid=1004")}));
    QCOMPARE(rules({{{0, 3}, {1, 3}}, {}, 0}), QStringList(QStringLiteral("-F uid<=1")));
}

void SubjectRulesTest::outcomesShareARuleWhereTheyAgree()
{
    QCOMPARE(rules({{{1, 1}, {2, 3}, {3, 2}}, {}, 0}),
             (QStringList{QStringLiteral("-F uid>=1 -F uid<=2 -F success=1"),
                          QStringLiteral("-F uid>=2 -F uid<=3 -F success=0")}));
}

void SubjectRulesTest::everybodyTakesOneRule()
{
    QCOMPARE(rules({{{1000, 3}}, {{27, 3}}, 3}), QStringList(QString())); // no exception, no other rule
    QCOMPARE(rules({{{1000, 1}}, {}, 3}),
             (QStringList{QStringLiteral("-F success=1"), QStringLiteral("-F uid!=1000 -F success=0")}));
    // A member of the group who is named is recorded by name.
    QCOMPARE(
        rules({{{1000, 1}}, {{27, 2}}, 1}),
        (QStringList{QStringLiteral("-F gid!=27 -F success=1"), QStringLiteral("-F uid=1000 -F success=1"),
                     QStringLiteral("-F gid=27 -F success=0")}));
}

void SubjectRulesTest::manyExceptionsBecomeRanges()
{
    OperationSettings settings;
    settings.other = 2;
    for (quint32 id = 1000; id < 3000; ++id) {
        settings.users.insert(id, 1);
    }
    QCOMPARE(rules(settings),
             (QStringList{QStringLiteral("-F uid>=1000 -F uid<=2999 -F success=1"),
                          QStringLiteral("-F uid<=999 -F success=0"),
                          QStringLiteral("-F uid>=3000 -F success=0")}));
}

void SubjectRulesTest::groupsAreNeverRanges()
{
    // Ranges would pass over supplementary groups.
    QCOMPARE(rules({{}, {{100, 3}, {101, 3}}, 0}),
             (QStringList{QStringLiteral("-F gid=100"), QStringLiteral("-F gid=101")}));
}

void SubjectRulesTest::tooManyExceptedGroupsAreRefused()
{
    OperationSettings settings;
    settings.other = 2;
    for (quint32 id = 0; id < 56; ++id) {
        settings.groups.insert(id, 1);
    }
    QVERIFY(SubjectRules::make(settingsOf(settings), machine).ok());
    settings.groups.insert(56, 1);
    const Result<QList<QByteArray>> made = SubjectRules::make(settingsOf(settings), machine);
    QVERIFY(!made.ok());
    QVERIFY2(made.error().contains(QLatin1String("57")), qPrintable(made.error()));
}

void SubjectRulesTest::theRulesRecordWhatTheSettingsSay()
{
    QRandomGenerator random(20260101);
    for (int round = 0; round < 400; ++round) {
        OperationSettings settings;
        settings.other = random.bounded(4);
        const int named = random.bounded(round % 4 == 0 ? 90 : 6);
        for (int i = 0; i < named; ++i) {
            settings.users.insert(random.bounded(120u), 1 + random.bounded(3));
        }
        for (int i = random.bounded(4); i > 0; --i) {
            settings.groups.insert(random.bounded(8u), 1 + random.bounded(3));
        }
        const QStringList made = rules(settings);
        for (quint32 user = 0; user < 122; ++user) {
            const Process process{user, {random.bounded(10u), random.bounded(10u)}};
            for (const bool success : {true, false}) {
                if (isRecorded(made, process, success) != isWanted(settings, process, success)) {
                    QFAIL(qPrintable(QStringLiteral("round %1, user %2, success %3: %4")
                                         .arg(round)
                                         .arg(user)
                                         .arg(success)
                                         .arg(made.join(QLatin1Char('\n')))));
                }
            }
        }
    }
}

void SubjectRulesTest::equalTwinsShareTheirRules()
{
    OperationSettings groups;
    for (quint32 id = 1; id <= 50; ++id) {
        groups.groups.insert(id, 3);
    }
    const QString acl = QStringLiteral("acl");
    const QString mac = QStringLiteral("mac");
    const Result<QList<QByteArray>> made = SubjectRules::make({{acl, groups}, {mac, groups}}, machine);
    QVERIFY2(made.ok(), qPrintable(made.error()));
    QCOMPARE(made.value().size(), 100);
    for (const QByteArray &rule : made.value()) {
        QVERIFY2(rule.endsWith(" -F key=nivra-subject-acl -F key=nivra-subject-mac"), rule.constData());
    }
    const Result<QList<QByteArray>> one = SubjectRules::make({{mac, groups}}, machine);
    QVERIFY(one.ok() && one.value().size() == 100);
    QVERIFY(!one.value().first().contains("acl"));
}

void SubjectRulesTest::twinsAreBothRecorded()
{
    QRandomGenerator random(20260102);
    const auto some = [&random] {
        OperationSettings settings;
        settings.other = random.bounded(4);
        for (int i = random.bounded(4); i > 0; --i) {
            settings.users.insert(random.bounded(12u), 1 + random.bounded(3));
        }
        for (int i = random.bounded(3); i > 0; --i) {
            settings.groups.insert(random.bounded(6u), 1 + random.bounded(3));
        }
        return settings;
    };
    for (int round = 0; round < 300; ++round) {
        const OperationSettings acl = some();
        const OperationSettings mac = some();
        const Result<QList<QByteArray>> made = SubjectRules::make(
            {{QStringLiteral("acl"), acl}, {QStringLiteral("mac"), mac}}, QStringLiteral("i686"));
        QVERIFY2(made.ok(), qPrintable(made.error()));
        for (quint32 user = 0; user < 14; ++user) {
            const Process process{user, {random.bounded(7u), random.bounded(7u)}};
            for (const bool success : {true, false}) {
                QByteArrayList keys; // of the first rule that matches, as the kernel does it
                for (const QByteArray &rule : made.value()) {
                    const QByteArray calls(
                        "-S setxattr,lsetxattr,fsetxattr,removexattr,lremovexattr,fremovexattr");
                    const QByteArray fields = rule.mid(rule.indexOf(calls) + calls.size());
                    const int end = fields.indexOf(" -F key=");
                    if (isRecorded({QString::fromLatin1(fields.left(end))}, process, success)) {
                        keys = QByteArray(fields.mid(end))
                                   .replace(" -F key=nivra-subject-", " ")
                                   .simplified()
                                   .split(' ');
                        break;
                    }
                }
                QCOMPARE(keys.contains("acl"), isWanted(acl, process, success));
                QCOMPARE(keys.contains("mac"), isWanted(mac, process, success));
            }
        }
    }
}

void SubjectRulesTest::everyArchitectureOfTheMachineHasRules_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArrayList>("arches");
    QTest::newRow("x86_64") << "x86_64" << QByteArrayList{"b64", "b32"};
    QTest::newRow("aarch64") << "aarch64" << QByteArrayList{"b64", "b32"};
    QTest::newRow("i686") << "i686" << QByteArrayList{"b32"};
    QTest::newRow("armv7l") << "armv7l" << QByteArrayList{"b32"};
    QTest::newRow("ppc64le") << "ppc64le" << QByteArrayList{"b64"};
    QTest::newRow("s390x") << "s390x" << QByteArrayList{"b64"};
}

void SubjectRulesTest::everyArchitectureOfTheMachineHasRules()
{
    QFETCH(QString, name);
    QFETCH(QByteArrayList, arches);
    for (const QString &identifier : AuditOperations::identifiers()) {
        QByteArrayList found;
        const QList<AuditOperations::Calls> calls = AuditOperations::calls(identifier, name);
        for (const AuditOperations::Calls &call : calls) {
            if (!found.contains(call.arch)) {
                found << call.arch;
            }
        }
        QVERIFY2(found == arches, qPrintable(identifier));
    }
}

void SubjectRulesTest::anUnknownMachineIsRefused()
{
    const Result<QList<QByteArray>> made
        = SubjectRules::make(settingsOf({{{1000, 3}}, {}, 0}), QStringLiteral("abacus"));
    QVERIFY(!made.ok());
    QVERIFY2(made.error().contains(QLatin1String("abacus")), qPrintable(made.error()));
    QVERIFY(SubjectRules::make(settingsOf({}), QStringLiteral("abacus")).ok()); // nothing to record
}

void SubjectRulesTest::tooManyRulesAreRefusedWithTheirNumber()
{
    OperationSettings settings;
    for (quint32 id = 1; id <= 500; ++id) {
        settings.groups.insert(id, 3);
    }
    const Result<QList<QByteArray>> most = SubjectRules::make(settingsOf(settings), machine);
    QVERIFY2(most.ok(), qPrintable(most.error()));
    QCOMPARE(most.value().size(), 1000);
    settings.groups.insert(501, 3);
    const Result<QList<QByteArray>> made = SubjectRules::make(settingsOf(settings), machine);
    QVERIFY(!made.ok());
    QVERIFY2(made.error().contains(QLatin1String("1002")) && made.error().contains(QLatin1String("1000")),
             qPrintable(made.error()));
}

void SubjectRulesTest::theSameSettingsGiveTheSameText()
{
    const SubjectSettings settings{{QStringLiteral("open"), {{{5, 1}, {3, 2}}, {{9, 3}, {2, 1}}, 2}},
                                   {QStringLiteral("net"), {{}, {}, 3}}};
    const Result<QList<QByteArray>> first = SubjectRules::make(settings, machine);
    const Result<QList<QByteArray>> second = SubjectRules::make(settings, machine);
    QVERIFY(first.ok() && second.ok());
    QVERIFY(first.value().size() > 4);
    QCOMPARE(first.value(), second.value());
}

void SubjectRulesTest::makingAFileComesBeforeOpeningOne()
{
    const SubjectSettings settings{{QStringLiteral("open"), {{}, {}, 3}},
                                   {QStringLiteral("create"), {{}, {}, 3}}};
    const Result<QList<QByteArray>> made = SubjectRules::make(settings, machine);
    QVERIFY(made.ok());
    QVERIFY(made.value().first().endsWith("key=nivra-subject-create"));
    QVERIFY(made.value().last().endsWith("key=nivra-subject-open"));
}

void SubjectRulesTest::everyCallIsKnownToTheAuditTools_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("arch");
    QTest::addColumn<QString>("toolName");
    QTest::newRow("x86_64") << "x86_64" << QByteArray("b64") << "x86_64";
    QTest::newRow("x86_64, 32 bits") << "x86_64" << QByteArray("b32") << "i386";
    QTest::newRow("aarch64") << "aarch64" << QByteArray("b64") << "aarch64";
    QTest::newRow("aarch64, 32 bits") << "aarch64" << QByteArray("b32") << "arm";
    QTest::newRow("ppc64le") << "ppc64le" << QByteArray("b64") << "ppc64le";
    QTest::newRow("s390x") << "s390x" << QByteArray("b64") << "s390x";
}

void SubjectRulesTest::everyCallIsKnownToTheAuditTools()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, arch);
    QFETCH(QString, toolName);
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("ausyscall"));
    if (tool.isEmpty()) {
        QSKIP("ausyscall is not installed");
    }
    QProcess process;
    process.start(tool, {toolName, QStringLiteral("--dump")});
    QVERIFY(process.waitForFinished());
    QSet<QByteArray> known;
    const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        known.insert(line.simplified().split(' ').last());
    }
    QVERIFY(known.size() > 100);
    for (const QString &identifier : AuditOperations::identifiers()) {
        const QList<AuditOperations::Calls> calls = AuditOperations::calls(identifier, name);
        for (const AuditOperations::Calls &call : calls) {
            const QList<QByteArray> names = call.arch == arch ? call.names.split(',') : QList<QByteArray>();
            for (const QByteArray &callName : names) {
                QVERIFY2(known.contains(callName), callName.constData());
            }
        }
    }
}

void SubjectRulesTest::theKernelTakesEveryRule()
{
    const QString tool
        = QStandardPaths::findExecutable(QStringLiteral("auditctl"), {QStringLiteral("/usr/sbin")});
    if (::geteuid() != 0 || tool.isEmpty()) {
        QSKIP("needs root and auditctl");
    }
    const auto run = [&tool](const QStringList &arguments) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(tool, arguments);
        process.waitForFinished();
        return process.readAll();
    };
    if (!run({QStringLiteral("-s")}).contains("enabled")) {
        QSKIP("the kernel lets nobody change audit rules here");
    }
    SubjectSettings settings;
    int value = 0;
    for (const QString &identifier : AuditOperations::identifiers()) {
        settings.insert(identifier, {{{1000, 1 + value % 3}, {1001, 1}}, {{27, 2}}, value % 4});
        ++value;
    }
    // The most fields that a rule gets.
    OperationSettings wide{{}, {}, 2};
    for (quint32 id = 1; id <= 56; ++id) {
        wide.groups.insert(id, 1);
    }
    for (quint32 id = 1000; id < 1003; ++id) {
        wide.users.insert(id * 2, 1);
    }
    settings.insert(QStringLiteral("net"), wide);
    utsname names = {};
    QCOMPARE(::uname(&names), 0);
    const Result<QList<QByteArray>> made = SubjectRules::make(settings, QString::fromLatin1(names.machine));
    QVERIFY2(made.ok(), qPrintable(made.error()));
    QTemporaryFile file;
    QVERIFY(file.open());
    for (const QByteArray &rule : made.value()) {
        file.write(rule + '\n');
    }
    QVERIFY(file.flush());
    const auto removeRules = qScopeGuard([&run] {
        for (const QString &identifier : AuditOperations::identifiers()) {
            run({QStringLiteral("-D"), QStringLiteral("-k"),
                 QString::fromLatin1(SubjectRules::keyOf(identifier))});
        }
    });
    const QByteArray said = run({QStringLiteral("-R"), file.fileName()});
    const QByteArrayList loaded = run({QStringLiteral("-l")}).split('\n');
    const auto count = std::count_if(loaded.cbegin(), loaded.cend(), [](const QByteArray &line) {
        return line.contains("key=nivra-subject-");
    });
    QVERIFY2(count == made.value().size(), said.constData());
}

QTEST_GUILESS_MAIN(SubjectRulesTest)

#include "subjectrulestest.moc"
