// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectlister.h"
#include "stagedprogram.h"

#include <QTest>

class SubjectListerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSystemsOwnNamesAreFound()
    {
        const Subjects subjects = SubjectLister().subjects();
        QVERIFY(subjects.users.contains(QStringLiteral("root")));
        QVERIFY(subjects.groups.contains(QStringLiteral("root")));
        QVERIFY(!subjects.users.contains(QString()));
        QVERIFY(!subjects.groups.contains(QString()));
    }

    void theFirstFieldOfEveryLineIsTheNameInTheOrderGiven()
    {
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("getent"),
                             "[ $# = 1 ] || exit 9\n"
                             "[ \"$1\" = passwd ] && printf 'zoe:x:1:\\n\\n:x:2:\\nusers\\nann b:x'\n"
                             "[ \"$1\" = group ] && printf 'users:x:100:ann,zoe\\nother:x:1:\\n'\n"
                             "exit 0"));
        const Subjects subjects = SubjectLister().subjects();
        QCOMPARE(subjects.users,
                 QStringList({QStringLiteral("zoe"), QStringLiteral("users"), QStringLiteral("ann b")}));
        QCOMPARE(subjects.groups, QStringList({QStringLiteral("users"), QStringLiteral("other")}));
    }

    void bothAreAskedAtTheSameTime()
    {
        // Each waits for the other to have been started: one after the other, both would give up.
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("getent"),
                             "other=group; [ \"$1\" = group ] && other=passwd\n"
                             ": > \"$here/$1.started\"\n"
                             "i=0\n"
                             "while [ ! -e \"$here/$other.started\" ]; do\n"
                             "  i=$((i+1)); [ $i -gt 80 ] && exit 1\n"
                             "  /bin/sleep 0.05\n"
                             "done\n"
                             "echo \"$1-name:x\""));
        const Subjects subjects = SubjectLister().subjects();
        QCOMPARE(subjects.users, QStringList({QStringLiteral("passwd-name")}));
        QCOMPARE(subjects.groups, QStringList({QStringLiteral("group-name")}));
    }

    void aLongListArrivesWholeWhileTheOtherIsWaitedFor()
    {
        StagedPrograms programs;
        QVERIFY(
            programs.add(QStringLiteral("getent"),
                         "[ \"$1\" = passwd ] && { /bin/sleep 0.5; echo last:x; exit 0; }\n"
                         "i=0\n"
                         "while [ $i -lt 5000 ]; do echo \"group$i:x:$i:a,b,c,d,e,f,g\"; i=$((i+1)); done"));
        const Subjects subjects = SubjectLister().subjects();
        QCOMPARE(subjects.users, QStringList({QStringLiteral("last")}));
        QCOMPARE(subjects.groups.size(), 5000);
        QCOMPARE(subjects.groups.last(), QStringLiteral("group4999"));
    }

    void aFailureLeavesItsListEmptyAndTheOtherWhole_data()
    {
        QTest::addColumn<QByteArray>("ending");
        QTest::newRow("exit code") << QByteArray("exit 2");
        QTest::newRow("crash") << QByteArray("kill -KILL $$");
    }
    void aFailureLeavesItsListEmptyAndTheOtherWhole()
    {
        QFETCH(QByteArray, ending);
        StagedPrograms programs;
        QVERIFY(programs.add(QStringLiteral("getent"),
                             "echo name:x\n[ \"$1\" = passwd ] && " + ending + "\nexit 0"));
        const Subjects subjects = SubjectLister().subjects();
        QCOMPARE(subjects.users, QStringList());
        QCOMPARE(subjects.groups, QStringList({QStringLiteral("name")}));
    }

    void withoutTheProgramBothListsAreEmpty()
    {
        StagedPrograms programs;
        const Subjects subjects = SubjectLister().subjects();
        QCOMPARE(subjects.users, QStringList());
        QCOMPARE(subjects.groups, QStringList());
    }
};

QTEST_GUILESS_MAIN(SubjectListerTest)

#include "subjectlistertest.moc"
