// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "changesample.h"
#include "changingcalls.h"
#include "notifyrcwork.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <sys/wait.h>

using namespace AdminEventsHelper;

namespace {

constexpr int stepLimit = 2000;

/** Runs the action in a child that is killed as it is about to change something for the given time. */
enum class End { Killed, Done, NotTraced };
End runAndKill(const std::function<bool()> &action, int step)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(9);
        }
        ::raise(SIGSTOP);
        const bool done = action();
        // What it writes from here on counts lines of code.
        ::raise(SIGSTOP);
        ::_exit(done ? 0 : 1);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFSTOPPED(status)
        || ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD) != 0) {
        return End::NotTraced;
    }
    for (int changes = 0; changes < step; changes += isAboutToChange(child) ? 1 : 0) {
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0 || ::waitpid(child, &status, 0) != child
            || !WIFSTOPPED(status)) {
            return End::NotTraced;
        }
        if (WSTOPSIG(status) == SIGSTOP) {
            ::ptrace(PTRACE_CONT, child, nullptr, nullptr);
            ::waitpid(child, &status, 0);
            return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? End::Done : End::NotTraced;
        }
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return End::Killed;
}

} // namespace

/**
 * The program that writes is killed before every single system call that changes something: whichever it was,
 * each file is the old one or the new one, after the next write of anything all of them are the old ones or
 * all are the new ones, and nothing half-written stays.
 */
class KilledAtStepTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOldOrNew_data();
    void leavesOldOrNew();
    void leavesAUsersOwnFilesOldOrNew();

private:
    void look(const QString &root, const QMap<QString, QByteArray> &before,
              const QMap<QString, QByteArray> &after, bool isOne);
};

void KilledAtStepTest::leavesOldOrNew_data()
{
    QTest::addColumn<QString>("kind");
    for (const QString &kind : ChangeSample::kinds()) {
        QTest::newRow(qPrintable(kind)) << kind;
    }
}

void KilledAtStepTest::look(const QString &root, const QMap<QString, QByteArray> &before,
                            const QMap<QString, QByteArray> &after, bool isOne)
{
    QMap<QString, QByteArray> found = TransferSample::contents(root);
    if (isOne) {
        QVERIFY2(found == before || found == after, "the files are neither the old nor the new ones");
        return;
    }
    for (auto it = found.cbegin(); it != found.cend(); ++it) {
        if (!it.key().contains(QLatin1String(".adminevents-"))) {
            QVERIFY2(*it == before.value(it.key()) || *it == after.value(it.key()), qPrintable(it.key()));
        }
    }
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        QVERIFY2(found.contains(it.key()) || !after.contains(it.key()), qPrintable(it.key()));
    }
}

void KilledAtStepTest::leavesOldOrNew()
{
    QFETCH(QString, kind);
    QMap<QString, QByteArray> before;
    QMap<QString, QByteArray> after;
    QVERIFY(ChangeSample::findContents(kind, before, after));
    int halfway = 0;
    for (int step = 1; step < stepLimit; ++step) {
        QTemporaryDir root;
        QVERIFY(ChangeSample::prepare(root.path()));
        const End end = runAndKill([&] { return ChangeSample::carryOut(kind, root.path()).ok(); }, step);
        if (end == End::NotTraced && step == 1) {
            QSKIP("this system does not let a process be traced");
        }
        QVERIFY2(end != End::NotTraced, "the program ended in another way");
        look(root.path(), before, after, false);
        halfway += ChangeSample::temporaryFilesBelow(root.path()).isEmpty() ? 0 : 1;
        // The next write of another file.
        const Outcome next = ChangeSample::carryOutNext(root.path());
        QVERIFY2(next.ok(), qPrintable(next.error()));
        look(root.path(), before, after, true);
        const QStringList leftovers = ChangeSample::temporaryFilesBelow(root.path());
        QVERIFY2(leftovers.isEmpty(), qPrintable(leftovers.join(QLatin1Char(' '))));
        if (QTest::currentTestFailed()) {
            QFAIL(qPrintable(QStringLiteral("killed at step %1").arg(step)));
        }
        if (end == End::Done) {
            qInfo("%s: killed at %d steps, %d of them left something half-written", qPrintable(kind),
                  step - 1, halfway);
            QVERIFY(halfway > 0);
            QVERIFY(TransferSample::contents(root.path()) == after);
            return;
        }
    }
    QFAIL("it does not end");
}

void KilledAtStepTest::leavesAUsersOwnFilesOldOrNew()
{
    const QString replaced = QStringLiteral("nivra-event-watcher_a.notifyrc");
    const QString removed = QStringLiteral("nivra-event-watcher_b.notifyrc");
    const QString made = QStringLiteral("nivra-event-watcher_c.notifyrc");
    const UserNotifications::Changes changes{
        {replaced, QByteArray("new")}, {removed, std::nullopt}, {made, QByteArray("made")}};
    QSet<QByteArrayList> states;
    int halfway = 0;
    for (int step = 1; step < stepLimit; ++step) {
        QTemporaryDir home;
        const QString directory = home.filePath(QStringLiteral(".config/"));
        QVERIFY(QDir().mkdir(directory));
        QVERIFY(putFile(directory + replaced, "former"));
        QVERIFY(putFile(directory + removed, "removed"));
        // What runs as the user, in the process that is traced.
        const NotifyrcWriting writing(::geteuid(), QFile::encodeName(home.path()), changes);
        const End end = runAndKill(
            [&writing] {
                writing.run(::open("/dev/null", O_WRONLY | O_CLOEXEC));
                return true;
            },
            step);
        if (end == End::NotTraced && step == 1) {
            QSKIP("this system does not let a process be traced");
        }
        const QByteArrayList state{getFile(directory + replaced), getFile(directory + removed),
                                   getFile(directory + made)};
        const bool isSound = (state.at(0) == "former" || state.at(0) == "new")
            && (state.at(1) == "removed" || state.at(1).isNull())
            && (state.at(2).isNull() || state.at(2) == "made");
        QVERIFY2(isSound, qPrintable(QString::number(step)));
        states << state;
        halfway += ChangeSample::temporaryFilesBelow(home.path()).isEmpty() ? 0 : 1;
        // The next change of another file.
        const UserNotifications own(::geteuid(), home.path());
        const Outcome next
            = own.change({{QStringLiteral("nivra-event-watcher_d.notifyrc"), QByteArray("next")}});
        QVERIFY2(next.ok(), qPrintable(next.error()));
        const QStringList leftovers = ChangeSample::temporaryFilesBelow(home.path());
        QVERIFY2(leftovers.isEmpty(), qPrintable(leftovers.join(QLatin1Char(' '))));
        if (end == End::Done) {
            QCOMPARE(state, (QByteArrayList{"new", QByteArray(), "made"}));
            QVERIFY(states.size() > 2);
            QVERIFY(halfway > 0);
            return;
        }
    }
    QFAIL("it does not end");
}

QTEST_GUILESS_MAIN(KilledAtStepTest)

#include "killedatsteptest.moc"
