// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "changesample.h"

#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#ifdef __x86_64__
#include <sys/reg.h>
#endif

using namespace AdminEventsHelper;

namespace {

constexpr int stepLimit = 2000;

/** What the action said, in whose course one system call on a file has failed. */
struct Report
{
    bool isTraced = false;
    bool hasFailed = false; ///< there was a call left to fail
    bool hasEndedWell = false; ///< the action came to its end, with whatever result
    long call = 0; ///< its number
    QString error; ///< of the action
};

#ifdef __x86_64__
/** Whether a traced thread that has stopped is about to tell what came of it. */
bool isAboutToTell(pid_t thread, int pipe)
{
    return ::ptrace(PTRACE_PEEKUSER, thread, sizeof(long) * ORIG_RAX, nullptr) == SYS_write
        && ::ptrace(PTRACE_PEEKUSER, thread, sizeof(long) * RDI, nullptr) == pipe;
}

/** Whether a traced thread that has stopped is about to do something with a file. */
bool isAboutToUseAFile(pid_t thread)
{
    static const QSet<quint64> calls{
        SYS_openat,    SYS_read,      SYS_pread64, SYS_write,      SYS_fsync,     SYS_fchmod,    SYS_fchown,
        SYS_mkdirat,   SYS_unlinkat,  SYS_linkat,  SYS_renameat,   SYS_renameat2, SYS_ftruncate, SYS_flock,
        SYS_fgetxattr, SYS_fsetxattr, SYS_fstat,   SYS_newfstatat, SYS_getdents64};
    const auto number = quint64(::ptrace(PTRACE_PEEKUSER, thread, sizeof(long) * ORIG_RAX, nullptr));
    return calls.contains(number);
}

/** Has the call that a stopped thread is about to make fail, and stops the thread behind it. */
bool failCall(pid_t thread, int error)
{
    int status = 0;
    return ::ptrace(PTRACE_POKEUSER, thread, sizeof(long) * ORIG_RAX, -1L) == 0
        && ::ptrace(PTRACE_SYSCALL, thread, nullptr, nullptr) == 0 && ::waitpid(thread, &status, 0) == thread
        && WIFSTOPPED(status) && ::ptrace(PTRACE_POKEUSER, thread, sizeof(long) * RAX, long(-error)) == 0;
}

/** Follows the stopped child to its end; its call of that number fails. */
void follow(pid_t child, int pipe, int step, int error, Report &report)
{
    int status = 0;
    for (int calls = 0; calls < step;) {
        // To the entry of a call,
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0 || ::waitpid(child, &status, 0) != child
            || !WIFSTOPPED(status)) {
            return;
        }
        if (isAboutToTell(child, pipe)) {
            break;
        }
        if (isAboutToUseAFile(child) && ++calls == step) {
            report.call = ::ptrace(PTRACE_PEEKUSER, child, sizeof(long) * ORIG_RAX, nullptr);
            report.hasFailed = failCall(child, error);
            continue;
        }
        // and to where it returns, unless it is the last.
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0 || ::waitpid(child, &status, 0) != child
            || !WIFSTOPPED(status)) {
            return;
        }
    }
    ::ptrace(PTRACE_CONT, child, nullptr, nullptr);
    ::waitpid(child, &status, 0);
    report.hasEndedWell = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (WIFSTOPPED(status)) {
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
    }
}
#else
void follow(pid_t, int, int, int, Report &)
{
}
#endif

/** Runs the action in a child, in which the file call of the given number fails with the given error. */
Report runAndFail(const std::function<Outcome()> &action, int step, int error)
{
    Report report;
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return report;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(9);
        }
        ::raise(SIGSTOP);
        const QByteArray text = action().error().toUtf8();
        (void)!::write(pipe[1], text.constData(), size_t(text.size()));
        ::_exit(0);
    }
    int status = 0;
    report.isTraced = ::waitpid(child, &status, 0) == child && WIFSTOPPED(status)
        && ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL) == 0;
    if (report.isTraced) {
        follow(child, pipe[1], step, error, report);
    }
    ::close(pipe[1]);
    std::array<char, 4096> text{};
    const ssize_t count = ::read(pipe[0], text.data(), text.size());
    report.error = QString::fromUtf8(text.data(), int(std::max(count, ssize_t(0))));
    ::close(pipe[0]);
    return report;
}

} // namespace

/**
 * Every single system call on a file fails once, as it does on a disk that breaks: the request that meets it
 * says what could not be done and why, or does all of its work; nothing is half changed, and nothing stays.
 */
class FailedStepTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesOldOrNewAndSaysWhy_data();
    void leavesOldOrNewAndSaysWhy();

private:
    static void look(const QString &root, const QMap<QString, QByteArray> &before,
                     const QMap<QString, QByteArray> &after, const Report &report);
};

void FailedStepTest::initTestCase()
{
#ifndef __x86_64__
    QSKIP("knows the registers of x86-64 only");
#endif
}

void FailedStepTest::leavesOldOrNewAndSaysWhy_data()
{
    QTest::addColumn<QString>("kind");
    for (const QString &kind : ChangeSample::kinds()) {
        QTest::newRow(qPrintable(kind)) << kind;
    }
}

void FailedStepTest::look(const QString &root, const QMap<QString, QByteArray> &before,
                          const QMap<QString, QByteArray> &after, const Report &report)
{
    QVERIFY2(report.hasEndedWell, "it did not survive");
    if (!report.error.isEmpty()) {
        QVERIFY2(report.error.contains(root), "it does not say what");
        QVERIFY2(report.error.contains(QLatin1String("Input/output error")), "it does not say why");
    }
    const Outcome next = ChangeSample::carryOutNext(root);
    QVERIFY2(next.ok(), qPrintable(next.error()));
    const QMap<QString, QByteArray> found = TransferSample::contents(root);
    QVERIFY2(found == after || (found == before && !report.error.isEmpty()), "the files are mixed");
    const QStringList leftovers = ChangeSample::temporaryFilesBelow(root);
    QVERIFY2(leftovers.isEmpty(), qPrintable(leftovers.join(QLatin1Char(' '))));
    QCOMPARE(ChangeSample::olderGeneration(root), QByteArray("older"));
}

void FailedStepTest::leavesOldOrNewAndSaysWhy()
{
    QFETCH(QString, kind);
    QMap<QString, QByteArray> before;
    QMap<QString, QByteArray> after;
    QVERIFY(ChangeSample::findContents(kind, before, after));
    int refusals = 0;
    for (int step = 1; step < stepLimit; ++step) {
        QTemporaryDir root;
        QVERIFY(ChangeSample::prepare(root.path()));
        const Report report
            = runAndFail([&] { return ChangeSample::carryOut(kind, root.path()); }, step, EIO);
        if (!report.isTraced) {
            QSKIP("this system does not let a process be traced");
        }
        if (!report.hasFailed) {
            QVERIFY(TransferSample::contents(root.path()) == after);
            qInfo("%s: %d calls failed, %d of them in vain", qPrintable(kind), step - 1, step - 1 - refusals);
            QVERIFY(refusals > 20);
            return;
        }
        look(root.path(), before, after, report);
        refusals += report.error.isEmpty() ? 0 : 1;
        if (QTest::currentTestFailed()) {
            QFAIL(
                qPrintable(QStringLiteral("call %1, which is number %2 of the system's, failed; then: \"%3\"")
                               .arg(step)
                               .arg(report.call)
                               .arg(report.error)));
        }
    }
    QFAIL("it does not end");
}

QTEST_GUILESS_MAIN(FailedStepTest)

#include "failedsteptest.moc"
