// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrulesloader.h"
#include "auditcontinuefile.h"
#include "configwriter.h"
#include "servicecontrol.h"
#include "standinaudit.h"
#include "standinsystemctl.h"

#include <QTest>

#include <sys/stat.h>

using namespace AdminEventsHelper;
using namespace std::chrono_literals;

namespace {

const char ownFile[] = "nivra-syslog.rules";
const char subjectsFile[] = "nivra-syslog-subjects.rules";
const char continueFile[] = "00-nivra-continue.rules";
const QByteArray passwd("-w /etc/passwd -p wa -k /etc/passwd");
const QByteArray orphan("-w /no/such/file -p wa -k /no/such/file");
const QByteArray call("-a always,exit -F arch=b64 -S open -F uid=1000 -k a");

} // namespace

/// Bringing audit rules into force, over programs that a test can make fail.
class AuditRulesLoaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void loadsTheRulesOfBothFiles();
    void doesNotLoadWhatIsInForce();
    void loadsWhatIsSwitchedOffToo();
    void namesEveryRuleThatIsNotInForce();
    void explainsAMissingDirectory();
    void countsWhatItDoesNotName();
    void doesNotMissRulesOfForeignProcessors();
    void takesTheKernelsWordForARuleThatItShowsDifferently();
    void doesNotHandOddLinesToTheProgram();
    void isSilentAboutTheRulesOfOthers();
    void tellsWhenFormerRulesMayStillBeInForce();
    void aKernelThatDoesNotTellIsAFailureOnlyWithRules();
    void missingProgramsAreAFailureOnlyWithRules();
    void aHangingLoaderIsEnded();
    void anotherRootNeedsALoaderOfItsOwn();
    void rulesAreWrittenTogetherWithTheFileThatLetsLoadingGoOn();
    void emptyRulesBringNoFileAlong();
    void theServiceLoadsRulesBetweenTheDaemons_data();
    void theServiceLoadsRulesBetweenTheDaemons();
    void theServiceReportsRulesThatAreNotInForce();
    void rulesAreNotLoadedWhileTheDaemonMayStillLoadThem();

private:
    std::unique_ptr<StandInAudit> m_audit;
};

void AuditRulesLoaderTest::init()
{
    m_audit = std::make_unique<StandInAudit>();
    QVERIFY(m_audit->isReady());
}

void AuditRulesLoaderTest::loadsTheRulesOfBothFiles()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(m_audit->putRules(subjectsFile, "# setting\n" + call + "\n# checksum\n"));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(m_audit->kernel(), QByteArray(call + '\n' + passwd + '\n'));
    QVERIFY(m_audit->takeCalls().contains(QStringLiteral("augenrules --load")));
    QVERIFY(m_audit->rules(continueFile).endsWith("\n-D\n-c\n"));
}

void AuditRulesLoaderTest::doesNotLoadWhatIsInForce()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(m_audit->loader().load(10s).ok());
    m_audit->takeCalls();
    QVERIFY(m_audit->loader().load(10s).ok());
    QCOMPARE(m_audit->takeCalls(),
             (QStringList{QStringLiteral("augenrules --check"), QStringLiteral("auditctl -l")}));
    // Somebody changed the kernel's rules meanwhile.
    QVERIFY(m_audit->put("kernel", passwd + "\n-w /x -p wa -k x\n"));
    QVERIFY(m_audit->loader().load(10s).ok());
    QVERIFY(m_audit->takeCalls().contains(QStringLiteral("augenrules --load")));
}

void AuditRulesLoaderTest::loadsWhatIsSwitchedOffToo()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(m_audit->loader().load(10s).ok());
    QVERIFY(m_audit->putRules(ownFile, ""));
    QVERIFY(m_audit->loader().load(10s).ok());
    QCOMPARE(m_audit->kernel(), QByteArray());
}

void AuditRulesLoaderTest::namesEveryRuleThatIsNotInForce()
{
    QVERIFY(m_audit->putRules(ownFile, orphan + '\n' + passwd + '\n'));
    QVERIFY(m_audit->putRules(subjectsFile, call + '\n'));
    QVERIFY(m_audit->refuse({orphan, call}, "noise\nUnknown user: joe"));
    const Outcome outcome = m_audit->loader().load(10s);
    QCOMPARE(outcome.error(),
             QStringLiteral("These audit rules are not in force:\n"
                            "-w /no/such/file -p wa -k /no/such/file: Unknown user: joe\n"
                            "-a always,exit -F arch=b64 -S open -F uid=1000 -k a: "
                            "Unknown user: joe"));
    QCOMPARE(m_audit->kernel(), QByteArray(passwd + '\n'));
}

void AuditRulesLoaderTest::explainsAMissingDirectory()
{
    QVERIFY(m_audit->putRules(ownFile, orphan + '\n'));
    QVERIFY(m_audit->refuse({orphan}, "Error sending add rule data request (No such file or directory)"));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.error().endsWith(QLatin1String(": the directory of the watched path does not exist")),
             qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::countsWhatItDoesNotName()
{
    QList<QByteArray> lines;
    for (int i = 0; i < 23; ++i) {
        lines << "-w /no/" + QByteArray::number(i) + " -p wa -k k";
    }
    QVERIFY(m_audit->putRules(ownFile, lines.join('\n') + '\n'));
    QVERIFY(m_audit->refuse(lines));
    const QStringList said = m_audit->loader().load(20s).error().split(QLatin1Char('\n'));
    QCOMPARE(said.size(), 22);
    QVERIFY(said.at(20).startsWith(QLatin1String("-w /no/19 ")));
    QCOMPARE(said.last(), QStringLiteral("and 3 more rules"));
}

void AuditRulesLoaderTest::doesNotMissRulesOfForeignProcessors()
{
    const QByteArray intel = "-a always,exit -F arch=x86_64 -F path=/a -S open,openat -k /a";
    const QByteArray arm = "-a always,exit -F arch=aarch64 -F path=/a -S openat -k /a";
    QVERIFY(m_audit->putRules(ownFile, intel + '\n' + arm + '\n'));
    QVERIFY(m_audit->refuse({arm}));
    QVERIFY(m_audit->loader("x86_64").load(10s).ok());
    const Outcome outcome = m_audit->loader("aarch64").load(10s);
    QVERIFY2(outcome.error().contains(QLatin1String("arch=aarch64")), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::takesTheKernelsWordForARuleThatItShowsDifferently()
{
    const QByteArray rule = "-a always,exit -F arch=b64 -S 257 -k a";
    QVERIFY(m_audit->putRules(ownFile, rule + '\n'));
    QVERIFY(m_audit->refuse({rule}, "Error sending add rule data request (Rule exists)"));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::doesNotHandOddLinesToTheProgram()
{
    // Written by hand: options that do more than add a rule.
    const QByteArray odd = "-a always,exit -S open -D";
    QVERIFY(m_audit->putRules(ownFile, odd + '\n'));
    QVERIFY(m_audit->refuse({odd}));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.error().contains(QLatin1String("it is not a rule of the settings page")),
             qPrintable(outcome.error()));
    for (const QString &made : m_audit->takeCalls()) {
        QVERIFY2(!made.contains(QLatin1String("-D")), qPrintable(made));
    }
}

void AuditRulesLoaderTest::isSilentAboutTheRulesOfOthers()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(m_audit->putRules("site.rules", orphan + '\n'));
    QVERIFY(m_audit->refuse({orphan}));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::tellsWhenFormerRulesMayStillBeInForce()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n' + call + '\n'));
    QVERIFY(m_audit->loader().load(10s).ok());
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(m_audit->put("load-fails", "disk full\n"));
    QVERIFY(m_audit->put("root/etc/audit/audit.rules", passwd + '\n'));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.error().startsWith(QLatin1String("Audit rules that were switched off")),
             qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("disk full")), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::aKernelThatDoesNotTellIsAFailureOnlyWithRules()
{
    QVERIFY(m_audit->put("closed", ""));
    QVERIFY(m_audit->putRules("site.rules", passwd + '\n'));
    QVERIFY(m_audit->loader().load(10s).ok());
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    const Outcome outcome = m_audit->loader().load(10s);
    QVERIFY2(outcome.error().startsWith(QLatin1String("The kernel does not tell")),
             qPrintable(outcome.error()));
    QVERIFY2(outcome.error().contains(QLatin1String("Operation not permitted")), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::missingProgramsAreAFailureOnlyWithRules()
{
    const QString absent = m_audit->root() + QStringLiteral("/absent");
    const AuditRulesLoader loader(m_audit->root(), {absent, absent}, "x86_64");
    QVERIFY(loader.load(10s).ok());
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    const Outcome outcome = loader.load(10s);
    QVERIFY2(outcome.error().contains(absent), qPrintable(outcome.error()));
}

void AuditRulesLoaderTest::aHangingLoaderIsEnded()
{
    QVERIFY(m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(putFile(m_audit->programs().augenrules, "#!/bin/sh\n[ $1 = --check ] || sleep 60\n", 0755));
    QVERIFY(m_audit->put("kernel", ""));
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = m_audit->loader().load(700ms);
    QVERIFY(timer.elapsed() < 10000);
    QCOMPARE(outcome.error(),
             QStringLiteral("These audit rules are not in force:\n"
                            "-w /etc/passwd -p wa -k /etc/passwd: there was no time left to "
                            "load it or to ask why"));
}

void AuditRulesLoaderTest::anotherRootNeedsALoaderOfItsOwn()
{
    QVERIFY(AuditRulesLoader::isWanted(QStringLiteral("/"), {}));
    QVERIFY(!AuditRulesLoader::isWanted(m_audit->root(), {}));
    QVERIFY(!AuditRulesLoader::isWanted(m_audit->root(), {QString(), m_audit->programs().auditctl}));
    QVERIFY(AuditRulesLoader::isWanted(m_audit->root(), m_audit->programs()));
}

void AuditRulesLoaderTest::rulesAreWrittenTogetherWithTheFileThatLetsLoadingGoOn()
{
    const ConfigWriter writer(m_audit->root());
    const WriteRequest request{QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"), passwd + '\n'};
    QVERIFY(writer.write(request).ok());
    const QByteArray text = m_audit->rules(continueFile);
    QVERIFY(text.endsWith("\n-D\n-c\n"));
    struct stat status = {};
    const QString path = m_audit->rulesDirectory() + QLatin1Char('/') + AuditContinueFile::fileName();
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0640);
    // It is left alone as long as it says the same, and mended when it does not.
    const QByteArray before = describeFile(path);
    QVERIFY(writer.write(request).ok());
    QCOMPARE(describeFile(path), before);
    QVERIFY(m_audit->putRules(continueFile, "# nothing\n"));
    QVERIFY(writer.write(request).ok());
    QCOMPARE(m_audit->rules(continueFile), text);
    // What stands in its place and is no file keeps the rules from being written.
    QVERIFY(QFile::remove(path) && QFile::link(QStringLiteral("/etc/passwd"), path));
    const TreeSnapshot snapshot = takeSnapshot(m_audit->rulesDirectory());
    const Outcome refused = writer.write({request.path, call + '\n'});
    QVERIFY2(refused.error().contains(AuditContinueFile::fileName()), qPrintable(refused.error()));
    QCOMPARE(takeSnapshot(m_audit->rulesDirectory()), snapshot);
}

void AuditRulesLoaderTest::emptyRulesBringNoFileAlong()
{
    const ConfigWriter writer(m_audit->root());
    QVERIFY(writer.write({QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"), "\n"}).ok());
    QVERIFY(writer.write({QStringLiteral("/etc/nivra-syslog.conf"), "{}"}).ok());
    QCOMPARE(QDir(m_audit->rulesDirectory()).entryList(QDir::Files), QStringList{QLatin1String(ownFile)});
}

void AuditRulesLoaderTest::theServiceLoadsRulesBetweenTheDaemons_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QStringList>("calls");
    const QString load = QStringLiteral("augenrules --load");
    const QString status = QStringLiteral("status syslog-ng");
    QTest::newRow("restart") << int(ServiceCommand::Restart)
                             << QStringList{QStringLiteral("restart auditd"), load,
                                            QStringLiteral("restart syslog-ng"), status};
    QTest::newRow("start") << int(ServiceCommand::Start)
                           << QStringList{QStringLiteral("status auditd"), load,
                                          QStringLiteral("start syslog-ng"), status};
    QTest::newRow("stop") << int(ServiceCommand::Stop) << QStringList{QStringLiteral("stop syslog-ng")};
}

void AuditRulesLoaderTest::theServiceLoadsRulesBetweenTheDaemons()
{
    QFETCH(int, command);
    StandInSystemctl systemctl;
    QVERIFY(systemctl.isReady() && m_audit->putRules(ownFile, passwd + '\n'));
    // Both write down their calls; the order tells in one list.
    QVERIFY(putFile(m_audit->programs().augenrules,
                    "#!/bin/sh\n[ $1 = --check ] || echo \"augenrules $*\" >> '"
                        + QFile::encodeName(systemctl.program()).replace("/systemctl", "/calls") + "'\n",
                    0755));
    QVERIFY(m_audit->put("kernel", passwd + '\n'));
    ServiceControl control(systemctl.program());
    control.setRulesLoader(m_audit->loader());
    const Outcome outcome = control.run(static_cast<ServiceCommand>(command));
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QTEST(systemctl.calls(), "calls");
}

void AuditRulesLoaderTest::theServiceReportsRulesThatAreNotInForce()
{
    StandInSystemctl systemctl;
    QVERIFY(systemctl.isReady() && m_audit->putRules(ownFile, orphan + '\n'));
    QVERIFY(m_audit->refuse({orphan}));
    ServiceControl control(systemctl.program());
    control.setRulesLoader(m_audit->loader());
    const Outcome outcome = control.run(ServiceCommand::Restart);
    QVERIFY2(outcome.error().startsWith(QLatin1String("These audit rules are not in force:")),
             qPrintable(outcome.error()));
    QVERIFY(systemctl.calls().contains(QStringLiteral("restart syslog-ng")));

    QVERIFY(systemctl.behave("case \"$*\" in *auditd) echo refused; exit 1;; esac\n"));
    const Outcome both = control.run(ServiceCommand::Restart);
    QVERIFY2(both.error().contains(QLatin1String("may still use the former rules")),
             qPrintable(both.error()));
    QVERIFY2(both.error().contains(QLatin1String("not in force:")), qPrintable(both.error()));
    QVERIFY(m_audit->refuse({}));
    const Outcome loaded = control.run(ServiceCommand::Restart);
    QVERIFY2(loaded.error().contains(QLatin1String("the audit rules were loaded")),
             qPrintable(loaded.error()));
}

void AuditRulesLoaderTest::rulesAreNotLoadedWhileTheDaemonMayStillLoadThem()
{
    StandInSystemctl systemctl;
    QVERIFY(systemctl.isReady() && m_audit->putRules(ownFile, passwd + '\n'));
    QVERIFY(systemctl.behave("case \"$*\" in *auditd) sleep 60;; esac\n"));
    ServiceControl control(systemctl.program(), 2500ms);
    control.setRulesLoader(m_audit->loader());
    const Outcome outcome = control.run(ServiceCommand::Restart);
    QVERIFY2(outcome.error().contains(QLatin1String("restart auditd\" did not end within")),
             qPrintable(outcome.error()));
    QCOMPARE(m_audit->takeCalls(), QStringList());
    QVERIFY(systemctl.calls().contains(QStringLiteral("restart syslog-ng")));
}

QTEST_GUILESS_MAIN(AuditRulesLoaderTest)

#include "auditrulesloadertest.moc"
