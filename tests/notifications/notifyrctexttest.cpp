// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrctext.h"
#include "notificationfixture.h"
#include "notifyrcfile.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

/** Reading and rewriting one group of a notification settings file. */
class NotifyrcTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheGroupOfTheKey();
    void aValueEndsAtItsSecondEqualsSign();
    void aGroupEndsAtTheNextOfAnyName();
    void replacesOneGroupAndKeepsTheRest_data();
    void replacesOneGroupAndKeepsTheRest();
    void theSecondRewriteChangesNothing_data();
    void theSecondRewriteChangesNothing();
    void makesTheFileForItsUserAloneAndItsDirectory();
    void leavesAFileThatCannotBeRead();
    void keepsTheRightsOfTheFile();
    void tellsWhyItCannotBeWritten();

private:
    static QStringList content()
    {
        return {QStringLiteral("[Event/key]\n"), QStringLiteral("Action=Popup\n"),
                QStringLiteral("Execute=\n"),    QStringLiteral("Logfile=\n"),
                QStringLiteral("Sound=\n"),      QStringLiteral("TTS=\n")};
    }

    NotificationFixture m_machine;
};

namespace {
const QByteArray written = "[Event/key]\nAction=Popup\nExecute=\nLogfile=\nSound=\nTTS=\n";

struct Case
{
    const char *name;
    QByteArray before;
    QByteArray after;
};

QVector<Case> cases()
{
    return {
        {"empty", "", written},
        {"no group", "[Global]\nName=x\n", "[Global]\nName=x\n\n" + written},
        {"no group, blank line", "[Global]\n\n", "[Global]\n\n" + written},
        {"no line break at the end", "[Global]\nName=x", "[Global]\nName=x\n\n" + written},
        {"group in the middle",
         "# for all\n[Event/a]\nAction=Sound\n\n[Event/key]\nAction=Sound\nSound=x\n[Event/b]\n\tName=б\t\n",
         "# for all\n[Event/a]\nAction=Sound\n\n" + written + "[Event/b]\n\tName=б\t\n"},
        {"followed by a group of another kind", "[Event/key]\nAction=Sound\n[Context/x]\nAction=Sound\n",
         written + "[Context/x]\nAction=Sound\n"},
        {"comments and other values of the group",
         "[Event/key]\n# mine\nAction=Sound\nUrgency=High\nName[ru]=Имя\n\n# next\n[Event/b]\nTTS=x\n",
         written + "# mine\nUrgency=High\nName[ru]=Имя\n\n# next\n[Event/b]\nTTS=x\n"},
        {"a key that begins alike", "[Event/key2]\nAction=Sound\n",
         "[Event/key2]\nAction=Sound\n\n" + written},
        {"a key in a comment", "# [Event/key]\nAction=Sound\n", "# [Event/key]\nAction=Sound\n\n" + written},
        {"blanks around the line", " [Event/key] \n Action=Sound\n[x]\n", written + "[x]\n"},
        {"bytes that are no text", "[Event/a]\nName=\xff\xfe\n[Event/key]\n",
         "[Event/a]\nName=\xff\xfe\n" + written},
        {"carriage returns", "[Event/a]\r\nAction=Sound\r\n[Event/key]\r\nAction=Sound\r\n",
         "[Event/a]\r\nAction=Sound\r\n" + written},
        {"the group twice", "[Event/key]\nSound=1\n[Event/a]\n[Event/key]\nSound=2\nUrgency=Low\n",
         written + "[Event/a]\n[Event/key]\nUrgency=Low\n"},
    };
}
} // namespace

void NotifyrcTextTest::readsTheGroupOfTheKey()
{
    const QByteArray text
        = "[Event/a]\nAction=Sound\n[Event/key]\nAction=Popup|Logfile\nExecute=  run   it \n"
          "Logfile=file:///log\nSound=/x y.ogg\nTTS=say\n[Event/b]\nAction=Execute\n";
    const NotifyrcGroup group = NotifyrcText::readGroup(text, QStringLiteral("key"));
    QVERIFY(group.isDefined);
    QCOMPARE(group.actions, QStringLiteral("Popup|Logfile"));
    QCOMPARE(group.executeCommand, QStringLiteral("run it"));
    QCOMPARE(group.logFile, QStringLiteral("file:///log"));
    QCOMPARE(group.soundFile, QStringLiteral("/x y.ogg"));
    QCOMPARE(group.tts, QStringLiteral("say"));
    QCOMPARE(group.cutKeys, QStringList{QStringLiteral("Execute")});
    const NotifyrcGroup none = NotifyrcText::readGroup(text, QStringLiteral("ke"));
    QVERIFY(!none.isDefined);
    QCOMPARE(none.actions, QString());
}

void NotifyrcTextTest::aValueEndsAtItsSecondEqualsSign()
{
    const NotifyrcGroup group
        = NotifyrcText::readGroup("[Event/key]\nExecute=run --a=b\nSound=x\n", QStringLiteral("key"));
    QCOMPARE(group.executeCommand, QStringLiteral("run --a"));
    QCOMPARE(group.cutKeys, QStringList{QStringLiteral("Execute")});
}

void NotifyrcTextTest::aGroupEndsAtTheNextOfAnyName()
{
    const NotifyrcGroup group = NotifyrcText::readGroup(
        "[Event/key]\nAction=Popup\n[Context/x]\nAction=Sound\n", QStringLiteral("key"));
    QCOMPARE(group.actions, QStringLiteral("Popup"));
}

void NotifyrcTextTest::replacesOneGroupAndKeepsTheRest_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QVector<Case> all = cases();
    for (const Case &row : all) {
        QTest::newRow(row.name) << row.before << row.after;
    }
}

void NotifyrcTextTest::replacesOneGroupAndKeepsTheRest()
{
    QFETCH(QByteArray, before);
    QTEST(NotifyrcText::withGroup(before, QStringLiteral("key"), content()), "after");
}

void NotifyrcTextTest::theSecondRewriteChangesNothing_data()
{
    replacesOneGroupAndKeepsTheRest_data();
}

void NotifyrcTextTest::theSecondRewriteChangesNothing()
{
    QFETCH(QByteArray, after);
    QCOMPARE(NotifyrcText::withGroup(after, QStringLiteral("key"), content()), after);
}

void NotifyrcTextTest::makesTheFileForItsUserAloneAndItsDirectory()
{
    m_machine.reset();
    QVERIFY(QDir(m_machine.path("/root")).removeRecursively());
    const QString path = m_machine.ownFile("first");
    const QString problem = NotifyrcFile(path).replaceGroup(QStringLiteral("key"), content());
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QCOMPARE(m_machine.read(path), written);
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, 0600U);
}

void NotifyrcTextTest::leavesAFileThatCannotBeRead()
{
    m_machine.reset();
    const QString path = m_machine.ownFile("first");
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0); // a pipe in its place
    const NotifyrcFile file(path);
    QVERIFY2(file.readProblem().contains(path), qPrintable(file.readProblem()));
    QVERIFY(!file.replaceGroup(QStringLiteral("key"), content()).isEmpty());
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void NotifyrcTextTest::keepsTheRightsOfTheFile()
{
    m_machine.reset();
    const QString path = m_machine.ownFile("first");
    m_machine.write(path, "[Event/other]\n");
    constexpr QFile::Permissions rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QVERIFY(QFile::setPermissions(path, rights));
    QVERIFY(NotifyrcFile(path).replaceGroup(QStringLiteral("key"), content()).isEmpty());
    QCOMPARE(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser), rights);
    QCOMPARE(QDir(m_machine.path("/root/.config")).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void NotifyrcTextTest::tellsWhyItCannotBeWritten()
{
    m_machine.reset();
    QVERIFY(QDir(m_machine.path("/root/.config")).removeRecursively());
    m_machine.write(m_machine.path("/root/.config"), "a file in the directory's place");
    const QString path = m_machine.ownFile("first");
    const QString problem = NotifyrcFile(path).replaceGroup(QStringLiteral("key"), content());
    QVERIFY2(problem.contains(path), qPrintable(problem));
}

QTEST_GUILESS_MAIN(NotifyrcTextTest)

#include "notifyrctexttest.moc"
