// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditruleform.h"

#include <QTest>

using namespace AdminEventsHelper;

/// Audit rules compared by what they mean.
class AuditRuleFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsRulesFromOtherLines();
    void linesOfOneMeaningHaveOneForm_data();
    void linesOfOneMeaningHaveOneForm();
    void linesOfTwoMeaningsHaveTwoForms_data();
    void linesOfTwoMeaningsHaveTwoForms();
    void processorsOfOneWidthAreToldApartByTheirNumber();
    void aRepeatedRuleIsWantedOnce();
    void whatIsMissingIsNamedAsItWasWritten();
    void foreignProcessors_data();
    void foreignProcessors();
};

void AuditRuleFormTest::tellsRulesFromOtherLines()
{
    for (const char *rule : {"-w /a -p wa -k a", "  -a always,exit -S open", "-A exit,always"}) {
        QVERIFY2(AuditRuleForm::isRule(rule), rule);
    }
    for (const char *line : {"", "# -w /a", "-D", "-e 1", "-b 8192", "No rules", "-wx /a", "-c"}) {
        QVERIFY2(!AuditRuleForm::isRule(line), line);
    }
}

void AuditRuleFormTest::linesOfOneMeaningHaveOneForm_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    const auto add = [](const char *first, const char *second) {
        QTest::newRow(second) << QByteArray(first) << QByteArray(second);
    };
    add("-w /a -p wa -k a", "-w /a -p aw -k a");
    add("-w /a -p wa -k a", "-w /a/ -p wa -k a");
    add("-w /a -p wa -k a", "-k a -p wa -w /a");
    add("-w /a -p wa -k a", "-a always,exit -F path=/a -F perm=wa -F key=a");
    add("-w /a -p wa -k a", "-a exit,always -F perm=aw -F dir=/a/ -k a");
    add("-w /a -p wa -k a", "-a always,exit -S all -F path=/a -F perm=wa -F key=a");
    add("-w /a -k a", "-w /a -p rwxa -k a");
    add("-a always,exit -F arch=x86_64 -F path=/a -S open,openat -k a",
        "-a always,exit -F arch=b64 -S open,openat -F path=/a -F key=a");
    add("-a always,exit -F arch=armv7l -F path=/a -S open -S openat -k a",
        "-a always,exit -F arch=b32 -S openat,open -F path=/a -F key=a");
    add("-a always,exit -F arch=aarch64 -S openat -k a", "-a always,exit -F arch=b64 -S openat -F key=a");
    add("-a always,exit -F auid>=1000 -F auid!=4294967295 -S open",
        "-a always,exit -F auid>=1000 -F auid!=-1 -S open");
    add("-a always,exit -F auid!=unset -S open", "-a always,exit -S open -F auid!=-1");
    add("-w / -p wa -k /", "-w // -p wa -k /");
}

void AuditRuleFormTest::linesOfOneMeaningHaveOneForm()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QCOMPARE(AuditRuleForm::canonical(first, true), AuditRuleForm::canonical(second, true));
}

void AuditRuleFormTest::linesOfTwoMeaningsHaveTwoForms_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    const auto add = [](const char *first, const char *second) {
        QTest::newRow(second) << QByteArray(first) << QByteArray(second);
    };
    add("-w /a -p wa -k a", "-w /a -p wa -k b");
    add("-w /a -p wa -k a", "-w /b -p wa -k a");
    add("-w /a -p wa -k a", "-w /a -p r -k a");
    add("-w /a -p wa -k a", "-w /a -p wa");
    add("-w /a -p wa -k a", "-a never,exit -F path=/a -F perm=wa -F key=a");
    add("-w /a -p wa -k a", "-a always,exit -F arch=b64 -F path=/a -F perm=wa -F key=a");
    add("-a always,exit -F arch=b64 -S open", "-a always,exit -F arch=b32 -S open");
    add("-a always,exit -F arch=b64 -S open", "-a always,exit -F arch=b64 -S open,openat");
    add("-a always,exit -S open -F uid=1", "-a always,exit -S open -F uid!=1");
    add("-a always,exit -S open -F uid=1", "-a always,exit -S open -F uid>=1");
    add("-a always,exit -S open -F path=/a", "-a always,exit -S open -F path!=/a");
    add("-a always,exit -S open -C uid!=euid", "-a always,exit -S open -C gid!=egid");
}

void AuditRuleFormTest::linesOfTwoMeaningsHaveTwoForms()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QVERIFY(AuditRuleForm::canonical(first, true) != AuditRuleForm::canonical(second, true));
}

void AuditRuleFormTest::processorsOfOneWidthAreToldApartByTheirNumber()
{
    const QByteArray intel = "-a always,exit -F arch=x86_64 -S openat -k a";
    const QByteArray arm = "-a always,exit -F arch=aarch64 -S openat -k a";
    const QByteArray listed = "-a always,exit -F arch=b64 -S openat -F key=a";
    QCOMPARE(AuditRuleForm::missing({intel, arm}, {listed, listed}), QList<QByteArray>());
    QCOMPARE(AuditRuleForm::missing({intel, arm}, {listed}), QList<QByteArray>{arm});
    QCOMPARE(AuditRuleForm::counts({intel, arm, intel}).values(), QList<int>{2});
}

void AuditRuleFormTest::aRepeatedRuleIsWantedOnce()
{
    const QByteArray rule = "-w /a -p wa -k a";
    QCOMPARE(AuditRuleForm::missing({rule, "-w /a -p aw -k a", rule}, {rule}), QList<QByteArray>());
    QCOMPARE(AuditRuleForm::missing({rule, rule}, {}), QList<QByteArray>{rule});
}

void AuditRuleFormTest::whatIsMissingIsNamedAsItWasWritten()
{
    QCOMPARE(AuditRuleForm::missing({"-w /a -p wa -k a", "-w /b/ -p aw -k b", "-w /c -p wa -k c"},
                                    {"-w /c -p wa -k c", "-w /x -p wa -k x"}),
             (QList<QByteArray>{"-w /a -p wa -k a", "-w /b/ -p aw -k b"}));
}

void AuditRuleFormTest::foreignProcessors_data()
{
    QTest::addColumn<QByteArray>("processor");
    QTest::addColumn<QByteArray>("machine");
    QTest::addColumn<bool>("foreign");
    const auto add = [](const char *processor, const char *machine, bool foreign) {
        QTest::addRow("%s on %s", processor, machine)
            << QByteArray(processor) << QByteArray(machine) << foreign;
    };
    add("x86_64", "x86_64", false);
    add("b64", "x86_64", false);
    add("b32", "x86_64", false);
    add("i386", "x86_64", false);
    add("armv7l", "x86_64", true);
    add("aarch64", "x86_64", true);
    add("aarch64", "aarch64", false);
    add("armv7l", "aarch64", false);
    add("x86_64", "aarch64", true);
    add("armv7l", "armv7l", false);
    add("aarch64", "armv7l", true);
    add("x86_64", "i686", true);
    add("i386", "i686", false);
}

void AuditRuleFormTest::foreignProcessors()
{
    QFETCH(QByteArray, processor);
    QFETCH(QByteArray, machine);
    QFETCH(bool, foreign);
    QCOMPARE(AuditRuleForm::isForeign("-a always,exit -F arch=" + processor + " -S openat -k a", machine),
             foreign);
    QVERIFY(!AuditRuleForm::isForeign("-w /arch=" + processor + " -p wa -k a", machine));
}

QTEST_APPLESS_MAIN(AuditRuleFormTest)

#include "auditruleformtest.moc"
