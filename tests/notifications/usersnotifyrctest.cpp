// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <usersnotifyrc.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

/** Giving every user a copy of the notification settings. */
class UsersNotifyrcTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyUserGetsACopyOfHisOwn();
    void replacesWhatWasThere();
    void passesOverWhatIsNoUsersHome();
    void followsNoLinkAndSaysWhoGotNothing_data();
    void followsNoLinkAndSaysWhoGotNothing();
    void oneFailureLeavesTheOthersTheirCopies();
    void nothingToCopyIsNoSuccess();

private:
    struct User
    {
        QString name;
        uid_t id = 0;
        gid_t group = 0;
    };
    void makeHome(const User &user, bool withConfig = true);
    [[nodiscard]] QString copyOf(const User &user) const;
    [[nodiscard]] bool copy() const;

    NotificationFixture m_machine;
    User m_me;
    User m_other; // as root: an account that owns something else
};

void UsersNotifyrcTest::init()
{
    m_machine.reset();
    const passwd *me = ::getpwuid(::geteuid());
    QVERIFY(me);
    m_me = {QString::fromLocal8Bit(me->pw_name), me->pw_uid, me->pw_gid};
    if (const passwd *other = ::getpwnam("nobody")) {
        m_other = {QStringLiteral("nobody"), other->pw_uid, other->pw_gid};
    }
    m_machine.write(m_machine.ownFile("first"), "[Event/aBC]\nAction=Popup\n");
}

void UsersNotifyrcTest::makeHome(const User &user, bool withConfig)
{
    const QString home = m_machine.path("/home/") + user.name;
    const QString config = home + QStringLiteral("/.config");
    QVERIFY(QDir().mkpath(withConfig ? config : home));
    if (::geteuid() == 0) {
        QCOMPARE(::chown(QFile::encodeName(home).constData(), user.id, user.group), 0);
        if (withConfig) {
            QCOMPARE(::chown(QFile::encodeName(config).constData(), user.id, user.group), 0);
        }
    }
}

QString UsersNotifyrcTest::copyOf(const User &user) const
{
    return m_machine.path("/home/") + user.name
        + QStringLiteral("/.config/nivra-event-watcher_first.notifyrc");
}

bool UsersNotifyrcTest::copy() const
{
    QFile source(m_machine.ownFile("first"));
    return Core::Utils::makeNotifyrcForUsers(m_machine.path("/home"), source);
}

void UsersNotifyrcTest::everyUserGetsACopyOfHisOwn()
{
    makeHome(m_me);
    const bool asRoot = ::geteuid() == 0;
    if (asRoot) {
        makeHome(m_other, false);
    }
    QVERIFY(copy());
    QCOMPARE(m_machine.read(copyOf(m_me)), m_machine.read(m_machine.ownFile("first")));
    if (!asRoot) {
        QSKIP("only root may hand files to other users");
    }
    QCOMPARE(m_machine.read(copyOf(m_other)), m_machine.read(m_machine.ownFile("first")));
    const QFileInfo info(copyOf(m_other));
    QCOMPARE(info.ownerId(), m_other.id);
    QCOMPARE(info.groupId(), m_other.group);
    QCOMPARE(QFileInfo(info.path()).ownerId(), m_other.id);
    QCOMPARE(QDir(info.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void UsersNotifyrcTest::replacesWhatWasThere()
{
    makeHome(m_me);
    m_machine.write(copyOf(m_me), "old and longer than what comes now, for certain");
    QVERIFY(copy());
    QCOMPARE(m_machine.read(copyOf(m_me)), m_machine.read(m_machine.ownFile("first")));
}

void UsersNotifyrcTest::passesOverWhatIsNoUsersHome()
{
    makeHome(m_me);
    for (const char *name :
         {"/home/.pdp/.config", "/home/lost+found/.config", "/home/no-such-user/.config"}) {
        QVERIFY(QDir().mkpath(m_machine.path(name)));
    }
    if (::geteuid() == 0) {
        QVERIFY(QDir().mkpath(m_machine.path("/home/nobody/.config"))); // but another one's directory
    }
    QVERIFY(copy());
    for (const char *name : {".pdp", "lost+found", "no-such-user", "nobody"}) {
        QVERIFY2(!QFileInfo::exists(copyOf({QLatin1String(name)})), name);
    }
}

void UsersNotifyrcTest::followsNoLinkAndSaysWhoGotNothing_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("configuration directory") << QStringLiteral(".config");
    QTest::newRow("settings file") << QStringLiteral(".config/nivra-event-watcher_first.notifyrc");
    QTest::newRow("temporary name") << QStringLiteral(".config/.nivra-event-watcher_first.notifyrc.new~");
    QTest::newRow("home") << QString();
}

void UsersNotifyrcTest::followsNoLinkAndSaysWhoGotNothing()
{
    QFETCH(QString, link);
    const QString victim = m_machine.path("/etc/victim");
    const bool isDirectory = !link.contains(QLatin1String("notifyrc"));
    makeHome(m_me, !isDirectory);
    QString place = m_machine.path("/home/") + m_me.name;
    if (link.isEmpty()) {
        QVERIFY(QDir(place).removeRecursively());
    } else {
        place += QLatin1Char('/') + link;
    }
    if (isDirectory) {
        QVERIFY(QDir().mkpath(victim));
    } else {
        m_machine.write(victim, "precious");
    }
    QVERIFY(QFile::link(victim, place));
    QFile source(m_machine.ownFile("first"));
    QStringList failed;
    QCOMPARE(Core::Utils::makeNotifyrcForUsers(m_machine.path("/home"), source, &failed), !isDirectory);
    QCOMPARE(failed, isDirectory ? QStringList{m_me.name} : QStringList());
    if (isDirectory) {
        QVERIFY(QDir(victim).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    } else {
        QCOMPARE(m_machine.read(victim), QByteArray("precious"));
        QVERIFY(!QFileInfo(copyOf(m_me)).isSymLink());
        QCOMPARE(m_machine.read(copyOf(m_me)), m_machine.read(m_machine.ownFile("first")));
    }
}

void UsersNotifyrcTest::oneFailureLeavesTheOthersTheirCopies()
{
    if (::geteuid() != 0) {
        QSKIP("only root may hand files to other users");
    }
    makeHome(m_me);
    makeHome(m_other);
    QVERIFY(QDir().mkpath(copyOf(m_other) + QStringLiteral("/in the way")));
    QVERIFY(!copy());
    QVERIFY(QFileInfo(copyOf(m_me)).isFile());
    QVERIFY(QFileInfo(copyOf(m_other)).isDir());
}

void UsersNotifyrcTest::nothingToCopyIsNoSuccess()
{
    QVERIFY(!copy()); // no user
    makeHome(m_me);
    QVERIFY(QFile::remove(m_machine.ownFile("first")));
    QVERIFY(!copy());
    QVERIFY(!QFileInfo::exists(copyOf(m_me)));
}

QTEST_GUILESS_MAIN(UsersNotifyrcTest)

#include "usersnotifyrctest.moc"
