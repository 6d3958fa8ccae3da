// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "kernelaudit.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <watchedlists.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString opened = QStringLiteral("file-opened");
const QString modified = QStringLiteral("modifying-file");
} // namespace

/**
 * What the page applies is what the kernel records: the real helper, the real programs that load rules, the
 * real kernel and an audit daemon, all for a root directory and files of the test's own.
 */
class KernelWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void appliedRulesAreInTheKernel();
    void whatIsDoneIsRecordedUnderThePath();
    void oneRefusedRuleIsNamedAndTheOthersStay();
    void eventsSwitchedOffLeaveNoRules();
    void cleanupTestCase();

private:
    void apply();
    void watch(const QString &event, const QStringList &paths);
    [[nodiscard]] QString file(const char *name) const { return m_files.filePath(QString::fromUtf8(name)); }
    static QByteArray bytes(const QString &text) { return text.toUtf8(); }

    std::unique_ptr<KernelAudit> m_kernel;
    std::unique_ptr<PageFixture> m_machine;
    std::unique_ptr<AdminEventsModule> m_page;
    QTemporaryDir m_tools;
    QTemporaryDir m_files; // watched
};

void KernelWatchTest::initTestCase()
{
    m_kernel = std::make_unique<KernelAudit>();
    if (!m_kernel->obstacle().isEmpty()) {
        QSKIP(qPrintable(m_kernel->obstacle()));
    }
    QString problem = m_kernel->start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    const QString loader = m_tools.filePath(QStringLiteral("augenrules"));
    m_machine = std::make_unique<PageFixture>(QStringList{QStringLiteral("--augenrules"), loader});
    const QString program = m_kernel->augenrulesFor(m_machine->root());
    QVERIFY(!program.isEmpty() && QFile::link(program, loader));
    problem = m_machine->start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY(m_machine->bus->setAllowed(true));
    const QString group = QStringLiteral("/watched-files");
    QVERIFY(QDir().mkpath(m_machine->catalogPath() + group));
    for (const QString &name : {QString(group), QString(group + QLatin1Char('/') + opened),
                                QString(group + QLatin1Char('/') + modified)}) {
        m_machine->write(
            m_machine->catalogPath() + name + QStringLiteral(".json"),
            m_machine->read(QStringLiteral(SHIPPED_DATA "/event-settings") + name + QStringLiteral(".json")));
    }
    for (const char *name : {"opened", "изменён"}) {
        m_machine->write(file(name), "before\n");
    }
    m_page = m_machine->openPage();
    QVERIFY(m_page);
}

/// Applies, and waits until the logging service has been restarted: what the helper does last.
void KernelWatchTest::apply()
{
    const int before = m_machine->serviceCalls().count(QStringLiteral("status syslog-ng"));
    m_page->save();
    // The helper asks for the service's state after its start, and the page when it hears of it.
    QTRY_VERIFY_WITH_TIMEOUT(m_machine->serviceCalls().count(QStringLiteral("status syslog-ng")) > before + 1,
                             30000);
    QTest::qWait(200);
}

void KernelWatchTest::watch(const QString &event, const QStringList &paths)
{
    CheckableTreeModel *model = m_page->workingModel();
    EventTreeItem *list
        = PageFixture::node(model, event, {QStringLiteral("filter-values"), QStringLiteral(".auditd.key")});
    QVERIFY(list);
    QVERIFY(WatchedLists::storePaths(*model, list, paths.join(QLatin1String(", "))));
}

void KernelWatchTest::appliedRulesAreInTheKernel()
{
    const BoxAnswerer boxes;
    watch(opened, {file("opened")});
    watch(modified, {file("изменён")});
    m_machine->toggle(*m_page, opened);
    m_machine->toggle(*m_page, modified);
    apply();
    for (const BoxAnswerer::Box &box : boxes.boxes()) {
        QFAIL(qPrintable(box.text));
    }
    // An opening takes a rule for each of three processors.
    QCOMPARE(m_kernel->rules().size(), 4);
    QList<QByteArray> keys{bytes(file("opened")), bytes(file("изменён"))};
    std::sort(keys.begin(), keys.end());
    QCOMPARE(m_kernel->keys(), keys);
}

void KernelWatchTest::whatIsDoneIsRecordedUnderThePath()
{
    const QByteArray openedKey = bytes(file("opened"));
    const QByteArray modifiedKey = bytes(file("изменён"));
    QCOMPARE(m_kernel->records(openedKey), 0);
    QCOMPARE(m_kernel->records(modifiedKey), 0);
    // Programs that start now: one that ran before auditing was switched on leaves no records.
    QCOMPARE(QProcess::execute(QStringLiteral("/bin/cat"), {file("opened")}), 0);
    QTRY_VERIFY(m_kernel->records(openedKey) > 0);
    QCOMPARE(QProcess::execute(QStringLiteral("/bin/cat"), {file("изменён")}), 0);
    QTest::qWait(300);
    QCOMPARE(m_kernel->records(modifiedKey), 0); // reading is no modification
    QCOMPARE(
        QProcess::execute(QStringLiteral("/bin/sh"),
                          {QStringLiteral("-c"), QStringLiteral("echo after >> \"$0\""), file("изменён")}),
        0);
    QTRY_VERIFY(m_kernel->records(modifiedKey) > 0);
}

void KernelWatchTest::oneRefusedRuleIsNamedAndTheOthersStay()
{
    const QString orphan = file("no-directory/file");
    const BoxAnswerer boxes;
    watch(modified, {orphan, file("изменён")});
    apply();
    QTRY_COMPARE(boxes.boxes().size(), 1);
    const QString text = boxes.boxes().at(0).text;
    QVERIFY2(text.contains(QStringLiteral("-w %1 -p wa -k %1: the directory").arg(orphan)), qPrintable(text));
    QVERIFY2(!text.contains(file("изменён")) && !text.contains(file("opened")), qPrintable(text));
    QCOMPARE(m_kernel->rules().size(), 4);
    QVERIFY(m_kernel->keys().contains(bytes(file("изменён"))));
    // Once the directory is there, the next restart brings the rule into force.
    QVERIFY(QDir(m_files.path()).mkpath(QStringLiteral("no-directory")));
    m_machine->type(*m_page, modified,
                    {QStringLiteral("notification_repetition"), QStringLiteral("interval")},
                    QStringLiteral("31"));
    apply();
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(m_kernel->rules().size(), 5);
}

void KernelWatchTest::eventsSwitchedOffLeaveNoRules()
{
    const BoxAnswerer boxes;
    m_machine->toggle(*m_page, opened);
    m_machine->toggle(*m_page, modified);
    apply();
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(m_machine->read(m_machine->rulesPath()), QByteArray());
    QCOMPARE(m_kernel->rules(), QList<QByteArray>());
}

void KernelWatchTest::cleanupTestCase()
{
    m_page.reset();
    m_kernel.reset();
    const KernelAudit after;
    if (m_machine) {
        QCOMPARE(after.obstacle(), QString()); // no rules, no daemon
    }
}

QTEST_MAIN(KernelWatchTest)

#include "kernelwatchtest.moc"
