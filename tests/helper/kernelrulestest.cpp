// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditoperations.h"
#include "auditruleform.h"
#include "auditrulesloader.h"
#include "kernelaudit.h"
#include "subjectrules.h"
#include "treesnapshot.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <sys/utsname.h>

using namespace AdminEventsHelper;
using namespace std::chrono_literals;

/// Loading rules into the real kernel with the real programs.
class KernelRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void everyShippedRuleIsTaken();
    void everyRuleForSubjectsIsTakenAndRecognised();
    void oddPathsAreTakenAndRecognised();
    void loadingGoesOnAfterEveryKindOfBadLine();
    void rulesInForceAreNotLoadedAgain();

private:
    void putRules(const char *name, const QByteArray &text)
    {
        QVERIFY(putFile(m_root->filePath(QStringLiteral("etc/audit/rules.d/")) + QLatin1String(name), text,
                        0640));
    }
    Outcome load() const
    {
        return AuditRulesLoader(m_root->path(), {m_kernel->augenrulesFor(m_root->path()), QString()})
            .load(30s);
    }

    std::unique_ptr<KernelAudit> m_kernel;
    std::unique_ptr<QTemporaryDir> m_root;
};

void KernelRulesTest::initTestCase()
{
    m_kernel = std::make_unique<KernelAudit>();
    if (!m_kernel->obstacle().isEmpty()) {
        QSKIP(qPrintable(m_kernel->obstacle()));
    }
    const QString problem = m_kernel->start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void KernelRulesTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("etc/audit/rules.d")));
    QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("var/lib")));
}

void KernelRulesTest::everyShippedRuleIsTaken()
{
    QList<QByteArray> lines;
    QDirIterator files(QStringLiteral(SHIPPED_DATA "/event-settings"), QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QJsonObject event = QJsonDocument::fromJson(getFile(files.next())).object();
        const QStringList rules = event.value(QLatin1String("message-audit-rules"))
                                      .toString()
                                      .split(QLatin1String(", "), Qt::SkipEmptyParts);
        for (const QString &rule : rules) {
            lines << rule.toUtf8();
        }
    }
    QVERIFY(lines.size() > 50);
    putRules("nivra-syslog.rules", lines.join('\n') + '\n');
    QStringList refused = load().error().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (!refused.isEmpty()) {
        refused.removeFirst(); // the heading
    }
    // The machine may lack the directory of a watched file, and nothing else may be wrong.
    for (const QString &line : qAsConst(refused)) {
        QVERIFY2(line.endsWith(QLatin1String(": the directory of the watched path does not exist")),
                 qPrintable(line));
    }
    QCOMPARE(AuditRuleForm::missing(lines, m_kernel->rules()).size(), refused.size());
    QVERIFY(m_kernel->rules().size() > 40);
}

void KernelRulesTest::everyRuleForSubjectsIsTakenAndRecognised()
{
    SubjectSettings settings;
    for (const QString &identifier : AuditOperations::identifiers()) {
        settings.insert(identifier, {{{1000, 1}, {1001, 2}, {1002, 2}}, {{100, 3}}, 1});
    }
    utsname names = {};
    QCOMPARE(::uname(&names), 0);
    const Result<QList<QByteArray>> made = SubjectRules::make(settings, QString::fromLatin1(names.machine));
    if (!made) {
        QSKIP(qPrintable(made.error()));
    }
    QVERIFY(made.value().size() > 50);
    putRules("nivra-syslog-subjects.rules", made.value().join('\n') + '\n');
    const Outcome outcome = load();
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    const QList<QByteArray> missing = AuditRuleForm::missing(made.value(), m_kernel->rules());
    QVERIFY2(missing.isEmpty(), missing.value(0).constData());
    QCOMPARE(m_kernel->rules().size(), made.value().size());
}

void KernelRulesTest::oddPathsAreTakenAndRecognised()
{
    QByteArray text;
    const QStringList paths{
        QStringLiteral("/Файл"),        QStringLiteral("/a\"b"),
        QStringLiteral("/a#b"),         QStringLiteral("/a\\b"),
        QStringLiteral("/a=b<c>d&e!f"), QStringLiteral("/a*?[b]"),
        QStringLiteral("/-a"),          QLatin1Char('/') + QString(255, QLatin1Char('x'))};
    for (const QString &path : paths) {
        for (const char *form :
             {"-w %1 -p wa -k %1", "-a always,exit -F arch=x86_64 -F path=%1 -S open,openat -k %1",
              "-a always,exit -F arch=armv7l -F path=%1 -S open,openat -k %1",
              "-a always,exit -F arch=aarch64 -F path=%1 -S openat -k %1"}) {
            text += QString::fromLatin1(form).replace(QLatin1String("%1"), path).toUtf8() + '\n';
        }
    }
    putRules("nivra-syslog.rules", text);
    const Outcome outcome = load();
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(m_kernel->rules().size(), paths.size() * 4);
    QCOMPARE(m_kernel->keys().size(), paths.size());
    QVERIFY(AuditRuleForm::missing(text.trimmed().split('\n'), m_kernel->rules()).isEmpty());
}

void KernelRulesTest::loadingGoesOnAfterEveryKindOfBadLine()
{
    const QList<QByteArray> bad{"-w /no/such/file -p wa -k a",
                                "-w /a!=b -p wa -k /a!=b",
                                "-w /c -p wa -k " + QByteArray(257, 'x'),
                                "-a always,exit -F arch=b64 -S nosuchcall -k d",
                                "-a always,exit -F arch=b64 -S open -F auid=nosuchuser -k e",
                                "-a always,exit -F arch=b64 -S open -F path=relative -k f"};
    putRules("nivra-syslog.rules", bad.join('\n') + "\n-w /good -p wa -k good\n");
    putRules("nivra-syslog-subjects.rules", "-a always,exit -F arch=b64 -S open -F uid=1000 -k subject\n");
    putRules("aaa-site.rules", "-w site -p wa -k site\n"); // not ours
    const QStringList said = load().error().split(QLatin1Char('\n'));
    QCOMPARE(said.size(), 1 + bad.size());
    for (int i = 0; i < bad.size(); ++i) {
        QVERIFY2(said.at(i + 1).startsWith(QString::fromUtf8(bad.at(i)) + QLatin1String(": ")),
                 qPrintable(said.at(i + 1)));
        QVERIFY(said.at(i + 1).size() > bad.at(i).size() + 5); // with a reason
    }
    QVERIFY2(said.at(4).contains(QLatin1String("nosuchcall")), qPrintable(said.at(4)));
    QCOMPARE(m_kernel->keys(), (QList<QByteArray>{"good", "subject"}));
    // So they are when the system starts and nobody looks after single rules.
    m_kernel->deleteRules();
    QCOMPARE(m_kernel->rules().size(), 0);
    QProcess::execute(m_kernel->augenrulesFor(m_root->path()), {QStringLiteral("--load")});
    QCOMPARE(m_kernel->keys(), (QList<QByteArray>{"good", "subject"}));
}

void KernelRulesTest::rulesInForceAreNotLoadedAgain()
{
    QByteArray text;
    for (int i = 0; i < 100; ++i) {
        text += "-w /watched" + QByteArray::number(i) + " -p wa -k k\n";
    }
    putRules("nivra-syslog.rules", text);
    QVERIFY(load().ok());
    QCOMPARE(m_kernel->rules().size(), 100);
    const int deleted = m_kernel->deletions();
    QVERIFY(load().ok());
    QCOMPARE(m_kernel->rules().size(), 100);
    putRules("nivra-syslog.rules", "");
    QVERIFY(load().ok());
    // Each was deleted once: when it was switched off.
    QTRY_COMPARE(m_kernel->deletions(), deleted + 100);
    QCOMPARE(m_kernel->rules(), QList<QByteArray>());
}

QTEST_GUILESS_MAIN(KernelRulesTest)

#include "kernelrulestest.moc"
