// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrulesloader.h"
#include "auditsettingsstore.h"
#include "kernelaudit.h"
#include "treesnapshot.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <grp.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace AdminEventsHelper;
using namespace std::chrono_literals;

/// What the real kernel records under the rules of the audit settings.
class KernelSubjectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void auditedUsersGroupsAndOthersAreRecordedAndNobodyElse();
    void operationsOfTheSameCallsAreRecordedUnderBothKeys();

private:
    using Values = QMap<QPair<QString, QString>, int>;

    [[nodiscard]] QString set(SubjectType type, const Values &values) const
    {
        return AuditSettingsStore(m_root.path()).set({type, values}).error();
    }
    [[nodiscard]] QString load() const
    {
        return AuditRulesLoader(m_root.path(), {m_kernel->augenrulesFor(m_root.path()), QString()})
            .load(30s)
            .error();
    }
    /// How many records a program leaves under a key that a user with one further group runs.
    [[nodiscard]] int recordsOf(const char *key, int user, int group, const QStringList &program) const
    {
        const int before = m_kernel->records(key);
        QProcess::execute(QStringLiteral("setpriv"),
                          QStringList{QStringLiteral("--reuid=%1").arg(user), QStringLiteral("--regid=60001"),
                                      QStringLiteral("--groups=%1").arg(group)}
                              + program);
        // The daemon writes a moment later.
        QTest::qWait(300);
        return m_kernel->records(key) - before;
    }

    std::unique_ptr<KernelAudit> m_kernel;
    QTemporaryDir m_root;
};

void KernelSubjectsTest::initTestCase()
{
    if (QStandardPaths::findExecutable(QStringLiteral("setpriv")).isEmpty()) {
        QSKIP("setpriv is not installed");
    }
    m_kernel = std::make_unique<KernelAudit>();
    if (!m_kernel->obstacle().isEmpty()) {
        QSKIP(qPrintable(m_kernel->obstacle()));
    }
    const QString problem = m_kernel->start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY(QDir(m_root.path()).mkpath(QStringLiteral("etc/audit/rules.d")));
    QVERIFY(QDir(m_root.path()).mkpath(QStringLiteral("var/lib")));
    QVERIFY(putFile(m_root.filePath(QStringLiteral("etc/passwd")),
                    "root:x:0:0::/:/bin/sh\nalice:x:60002:60001::/:/bin/sh\n"));
    QVERIFY(putFile(m_root.filePath(QStringLiteral("etc/group")), "staff:x:60050:\n"));
}

void KernelSubjectsTest::cleanupTestCase()
{
    m_kernel.reset();
}

void KernelSubjectsTest::cleanup()
{
    m_kernel->deleteRules();
    QFile::remove(m_root.path() + AuditSettingsStore::path());
}

void KernelSubjectsTest::operationsOfTheSameCallsAreRecordedUnderBothKeys()
{
    const QString alice = QStringLiteral("alice");
    QCOMPARE(
        set(SubjectType::Users, {{{alice, QStringLiteral("acl")}, 3}, {{alice, QStringLiteral("mac")}, 2}}),
        QString());
    QCOMPARE(load(), QString());
    const QByteArray both("nivra-subject-acl\x01nivra-subject-mac");
    const int before = m_kernel->records(both);
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isAlice = ::setgroups(0, nullptr) == 0 && ::setgid(60001) == 0 && ::setuid(60002) == 0;
        ::_exit(isAlice && ::setxattr("/etc/passwd", "user.test", "x", 1, 0) != 0 ? 0 : 1);
    }
    int status = -1;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QCOMPARE(status, 0);
    QTRY_COMPARE(m_kernel->records(both), before + 1);
}

void KernelSubjectsTest::auditedUsersGroupsAndOthersAreRecordedAndNobodyElse()
{
    constexpr int alice = 60002;
    constexpr int bob = 60003;
    constexpr int staff = 60050;
    constexpr int noGroup = 60001;
    const QString modes = QStringLiteral("chmod");
    const QString linking = QStringLiteral("create");
    const QString leaving = QStringLiteral("chroot"); // which nothing else on a busy machine tries and fails
    QCOMPARE(set(SubjectType::Users,
                 {{{QStringLiteral("alice"), modes}, 2}, {{QStringLiteral("alice"), leaving}, 1}}),
             QString());
    QCOMPARE(set(SubjectType::Groups, {{{QStringLiteral("staff"), linking}, 1}}), QString());
    QCOMPARE(set(SubjectType::Other, {{{QString(), leaving}, 2}}), QString());
    QCOMPARE(load(), QString());
    QCOMPARE(m_kernel->keys(),
             (QList<QByteArray>{"nivra-subject-chmod", "nivra-subject-chroot", "nivra-subject-create"}));

    // Changing a foreign file's mode fails; the user's own succeeds.
    const QString shared = m_root.filePath(QStringLiteral("shared"));
    QVERIFY(QDir().mkpath(shared));
    QCOMPARE(::chmod(QFile::encodeName(m_root.path()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(shared).constData(), 0777), 0);
    const QStringList foreign{QStringLiteral("chmod"), QStringLiteral("0600"), QStringLiteral("/etc/passwd")};
    QCOMPARE(recordsOf("nivra-subject-chmod", alice, noGroup, foreign), 1);
    QCOMPARE(recordsOf("nivra-subject-chmod", bob, noGroup, foreign), 0);
    // A further group counts as well as the first one.
    const auto make = [&shared](const char *name) {
        return QStringList{QStringLiteral("touch"), shared + QLatin1Char('/') + QLatin1String(name)};
    };
    QCOMPARE(recordsOf("nivra-subject-create", bob, staff, make("one")), 1);
    QCOMPARE(recordsOf("nivra-subject-create", bob, noGroup, make("two")), 0);
    QCOMPARE(recordsOf("nivra-subject-create", alice, noGroup, make("hers")), 0);
    QVERIFY(QFile::exists(shared + QLatin1String("/two")));
    const QString hers = shared + QLatin1String("/hers");
    QCOMPARE(recordsOf("nivra-subject-chmod", alice, noGroup,
                       {QStringLiteral("chmod"), QStringLiteral("0600"), hers}),
             0); // only failures
    // All others: failures of everybody but her, of whom only successes are recorded.
    const QStringList leave{QStringLiteral("/usr/sbin/chroot"), QStringLiteral("/"), QStringLiteral("true")};
    QCOMPARE(recordsOf("nivra-subject-chroot", bob, noGroup, leave), 1);
    QCOMPARE(recordsOf("nivra-subject-chroot", alice, noGroup, leave), 0);

    QCOMPARE(set(SubjectType::Users,
                 {{{QStringLiteral("alice"), modes}, 0}, {{QStringLiteral("alice"), leaving}, 0}}),
             QString());
    QCOMPARE(set(SubjectType::Groups, {{{QStringLiteral("staff"), linking}, 0}}), QString());
    QCOMPARE(set(SubjectType::Other, {{{QString(), leaving}, 0}}), QString());
    QCOMPARE(load(), QString());
    QCOMPARE(m_kernel->rules(), QList<QByteArray>());
}

QTEST_GUILESS_MAIN(KernelSubjectsTest)

#include "kernelsubjectstest.moc"
