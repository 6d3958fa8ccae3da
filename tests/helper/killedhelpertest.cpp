// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "archiveforge.h"
#include "changingcalls.h"
#include "helperrequest.h"
#include "privatebus.h"
#include "transfersample.h"
#include "treesnapshot.h"

#include <accessservice.h>
#include <actionids.h>

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <future>
#include <memory>
#include <sys/wait.h>
#include <thread>

namespace {

constexpr int stepLimit = 400;

/** Follows a process from now on and kills it before the given change; from a thread of its own. */
class Killer
{
public:
    Killer(pid_t process, int step)
        : m_process(process)
        , m_isFollowing(m_started.get_future())
        , m_thread([this, step] { follow(step); })
    {
    }
    ~Killer()
    {
        ::kill(m_process, SIGKILL);
        m_thread.join();
    }
    Killer(const Killer &) = delete;
    Killer &operator=(const Killer &) = delete;

    /** @return false when the system does not let this process follow others. */
    bool isFollowing() { return m_isFollowing.get(); }
    bool hasStruck() const { return m_hasStruck; }

private:
    void follow(int step)
    {
        int status = 0;
        const bool follows = ::ptrace(PTRACE_SEIZE, m_process, nullptr, PTRACE_O_TRACESYSGOOD) == 0
            && ::ptrace(PTRACE_INTERRUPT, m_process, nullptr, nullptr) == 0
            && ::waitpid(m_process, &status, __WALL) == m_process;
        m_started.set_value(follows);
        int changes = 0;
        while (follows && WIFSTOPPED(status)) {
            if (isAboutToChange(m_process) && ++changes == step) {
                m_hasStruck = true;
                ::kill(m_process, SIGKILL);
            }
            const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80) || WSTOPSIG(status) == SIGTRAP;
            ::ptrace(PTRACE_SYSCALL, m_process, nullptr, isCall ? 0 : WSTOPSIG(status));
            if (::waitpid(m_process, &status, __WALL) != m_process) {
                return;
            }
        }
    }

    pid_t m_process;
    std::promise<bool> m_started;
    std::future<bool> m_isFollowing;
    std::atomic<bool> m_hasStruck = false;
    std::thread m_thread;
};

/** What came of a request whose helper was to be killed in its course. */
struct Blow
{
    bool isFollowed = false;
    bool hasStruck = false;
    bool isDone = false; ///< as the requester was told
    QString error;
};

/** Asks as the page does. */
class Page : public AccessService
{
public:
    Page()
        : AccessService(nullptr)
    {
    }
    bool ask(const QString &verb, const QVariantMap &arguments)
    {
        KAuth::Action action(ActionIds::helper() + QLatin1Char('.') + verb);
        action.setHelperId(ActionIds::helper());
        action.setArguments(arguments);
        return execute(action);
    }
};

} // namespace

/**
 * The helper that the bus has started is killed before every single change that a request makes: the
 * requester is told, each file is the old one or the new one, and the next request finds all of them whole.
 */
class KilledHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void leavesOldOrNewAndSaysSo_data();
    void leavesOldOrNewAndSaysSo();
    void leavesTheUsersArchiveEmptyOrWhole();

private:
    Blow requestAndKill(const QString &verb, const QVariantMap &arguments, int step) const;
    QVariantMap argumentsOf(const QString &verb) const;
    bool prepare() const;
    QString temporaryFile() const;

    QTemporaryDir m_root;
    std::unique_ptr<PrivateBus> m_bus;
    int m_killed = 0;
};

void KilledHelperTest::initTestCase()
{
    QVERIFY(prepare());
    m_bus = std::make_unique<PrivateBus>(m_root.path());
    QVERIFY2(m_bus->start() && m_bus->setAllowed(true), qPrintable(m_bus->errorString()));
}

void KilledHelperTest::cleanupTestCase()
{
    qInfo("the helper was killed %d times", m_killed);
    m_bus.reset();
}

bool KilledHelperTest::prepare() const
{
    const QStringList entries = QDir(m_root.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (!QDir(m_root.filePath(entry)).removeRecursively()) {
            return false;
        }
    }
    return TransferSample::fill(m_root.path())
        && putFile(m_root.filePath(QStringLiteral("etc/passwd")), "root:x:0:0::/root:/bin/sh\n")
        && putFile(m_root.filePath(QStringLiteral("etc/group")), "root:x:0:\n")
        && putFile(m_root.filePath(QStringLiteral("archive.tar.gz")),
                   soundArchive({{"etc/nivra-syslog.conf", "{\"new\": {}}"},
                                 {"etc/syslog-ng/conf.d/mod-nivra.conf", "log { };\n"},
                                 {"etc/syslog-ng/conf.d/mod-nivra-new.conf", sampleFragmentOf("new")}}));
}

QVariantMap KilledHelperTest::argumentsOf(const QString &verb) const
{
    const QString fragment = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf");
    if (verb == QLatin1String("writeconfig")) {
        return {{QStringLiteral("action"), QStringLiteral("writeConfig")},
                {QStringLiteral("path"), QStringLiteral("/etc/nivra-syslog.conf")},
                {QStringLiteral("content"), QByteArray("{\"new\": {}}")}};
    }
    if (verb == QLatin1String("importconfig")) {
        return {{QStringLiteral("input"), m_root.filePath(QStringLiteral("archive.tar.gz"))}};
    }
    if (verb == QLatin1String("setauditsettings")) {
        return {{QStringLiteral("AUDIT_TYPE"), 1}, {QStringLiteral("root/open"), 3}};
    }
    if (verb == QLatin1String("writenotificationconfigs")) {
        return {{QStringLiteral("notifications"),
                 QVariantMap{{fragment, QString::fromUtf8(sampleFragment("New"))}}}};
    }
    return {{QStringLiteral("paths"), QStringList{fragment}}};
}

QString KilledHelperTest::temporaryFile() const
{
    const TreeSnapshot all = takeSnapshot(m_root.path());
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (it.key().contains(QLatin1String(".adminevents-"))
            || it.key().endsWith(QLatin1String("pending-changes"))) {
            return it.key();
        }
    }
    return {};
}

void KilledHelperTest::leavesOldOrNewAndSaysSo_data()
{
    QTest::addColumn<QString>("verb");
    for (const char *verb : {"writeconfig", "importconfig", "setauditsettings", "writenotificationconfigs",
                             "removenotificationconfigs"}) {
        QTest::newRow(verb) << QString::fromLatin1(verb);
    }
}

Blow KilledHelperTest::requestAndKill(const QString &verb, const QVariantMap &arguments, int step) const
{
    // It is there before the request, and has made no step of it.
    (void)requestHelper(verb, {});
    const auto helper = static_cast<pid_t>(m_bus->helperPid());
    Blow blow{true, false, false, QStringLiteral("the helper did not start")};
    if (helper > 0) {
        Killer killer(helper, step);
        blow.isFollowed = killer.isFollowing();
        if (blow.isFollowed) {
            Page page;
            blow.isDone = page.ask(verb, arguments);
            blow.hasStruck = killer.hasStruck();
            blow.error = page.errorString();
        }
    }
    return blow;
}

void KilledHelperTest::leavesOldOrNewAndSaysSo()
{
    QFETCH(QString, verb);
    QVERIFY(prepare());
    const QMap<QString, QByteArray> before = TransferSample::contents(m_root.path());
    const HelperAnswer sound = requestHelper(verb, argumentsOf(verb));
    QVERIFY2(sound.ok, qPrintable(sound.text));
    const QMap<QString, QByteArray> after = TransferSample::contents(m_root.path());
    QVERIFY(before != after);
    const QString rotation = QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
    const QVariantMap another{{QStringLiteral("action"), QStringLiteral("writeConfig")},
                              {QStringLiteral("path"), rotation},
                              {QStringLiteral("content"), before.value(rotation)}};
    for (int step = 1; step < stepLimit; ++step) {
        QVERIFY(prepare());
        const Blow blow = requestAndKill(verb, argumentsOf(verb), step);
        if (!blow.isFollowed) {
            QSKIP("this system does not let a process follow another one");
        }
        const bool isNew = TransferSample::contents(m_root.path()) == after;
        QVERIFY2(blow.isDone ? isNew : blow.hasStruck, qPrintable(blow.error));
        QVERIFY2(blow.isDone || blow.error.contains(verb), qPrintable(blow.error));
        QTRY_COMPARE(m_bus->helperPid(), 0);
        const HelperAnswer next = requestHelper(QStringLiteral("writeconfig"), another);
        QVERIFY2(next.ok, qPrintable(next.text));
        const QMap<QString, QByteArray> found = TransferSample::contents(m_root.path());
        QVERIFY2(found == before || found == after,
                 qPrintable(QStringLiteral("killed at step %1, the files are mixed").arg(step)));
        QVERIFY2(temporaryFile().isEmpty(), qPrintable(temporaryFile()));
        if (!blow.hasStruck) {
            qInfo("%s: killed at %d steps", qPrintable(verb), step - 1);
            QVERIFY(step > 5 && found == after);
            return;
        }
        ++m_killed;
    }
    QFAIL("it does not end");
}

void KilledHelperTest::leavesTheUsersArchiveEmptyOrWhole()
{
    const QString verb = QStringLiteral("exportconfig");
    const QString archive = m_root.filePath(QStringLiteral("exported.tar.gz"));
    for (int step = 1; step < stepLimit; ++step) {
        QVERIFY(prepare());
        // As the page makes it, to prove that the user may write there.
        QVERIFY(putFile(archive, ""));
        const Blow blow = requestAndKill(verb, {{QStringLiteral("output"), archive}}, step);
        if (!blow.isFollowed) {
            QSKIP("this system does not let a process follow another one");
        }
        QVERIFY2(blow.isDone || (blow.hasStruck && blow.error.contains(verb)), qPrintable(blow.error));
        QTRY_COMPARE(m_bus->helperPid(), 0);
        // The user's part is done by another process, which is not killed; a part of an archive is refused.
        const auto isWhole = [&archive] {
            return requestHelper(QStringLiteral("importconfig"), {{QStringLiteral("input"), archive}}).ok;
        };
        QTRY_VERIFY((!blow.isDone && getFile(archive) == QByteArray("")) || isWhole());
        if (!blow.hasStruck) {
            qInfo("%s: killed at %d steps", qPrintable(verb), step - 1);
            QVERIFY(step > 1);
            return;
        }
        ++m_killed;
    }
    QFAIL("it does not end");
}

QTEST_GUILESS_MAIN(KilledHelperTest)

#include "killedhelpertest.moc"
