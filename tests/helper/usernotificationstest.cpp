// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "usernotifications.h"

#include "notifyrccheck.h"
#include "treesnapshot.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/wait.h>

using namespace AdminEventsHelper;

namespace {

constexpr uid_t nobody = 65534;
const QString first = QStringLiteral("nivra-event-watcher_first.notifyrc");
const QString second = QStringLiteral("nivra-event-watcher_second.notifyrc");
const QString third = QStringLiteral("nivra-event-watcher_third.notifyrc");

} // namespace

/** Notification settings in the home directory of the user who asked. */
class UserNotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void readsTheWatchersFilesAndNoOthers();
    void aMissingDirectoryHoldsNone();
    void replacesMakesAndRemoves();
    void removesWhatAnEarlierChangeLeft();
    void makesAMissingDirectory();
    void changesWhatIsDifferentOnly();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void followsALinkToTheHomeDirectoryButNoneInIt();
    void refusesTooMuch();
    void changesNothingWhenOneFileCannotBeReplaced();
    void changesNothingWhenTheDiskTakesNoMore();
    void hasTheRightsOfTheUserOnly();
    void refusesWhatIsNotTheUsers();
    void findsTheHomeDirectory();
    void leavesNoChildBehind();

private:
    QString home() const { return m_home->path(); }
    QString config(const QString &name = QString()) const
    {
        return home() + QLatin1String("/.config/") + name;
    }
    UserNotifications own(uid_t user = ::geteuid()) const { return UserNotifications(user, home()); }
    void expectRefusal(const UserNotifications &settings, const UserNotifications::Changes &changes,
                       const QString &named) const;

    std::unique_ptr<QTemporaryDir> m_home;
};

void UserNotificationsTest::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    QVERIFY(QDir(home()).mkdir(QStringLiteral(".config")));
    QVERIFY(putFile(config(first), "first"));
    QVERIFY(putFile(config(second), "second", 0640));
}

void UserNotificationsTest::expectRefusal(const UserNotifications &settings,
                                          const UserNotifications::Changes &changes,
                                          const QString &named) const
{
    const TreeSnapshot before = takeSnapshot(home());
    const Outcome outcome = settings.change(changes);
    QVERIFY2(outcome.error().contains(named), qPrintable(outcome.error()));
    QCOMPARE(takeSnapshot(home()), before);
}

void UserNotificationsTest::readsTheWatchersFilesAndNoOthers()
{
    QByteArray bytes(300000, 'x');
    bytes[5] = '\0';
    QVERIFY(putFile(config(third), bytes));
    QVERIFY(putFile(config(QStringLiteral("other.notifyrc")), "x"));
    QVERIFY(putFile(config(first + QLatin1Char('~')), "x"));
    const auto files = own().read();
    QVERIFY2(files.ok(), qPrintable(files.error()));
    QCOMPARE(files.value(), (UserNotifications::Files{{first, "first"}, {second, "second"}, {third, bytes}}));
}

void UserNotificationsTest::aMissingDirectoryHoldsNone()
{
    QVERIFY(QDir(config()).removeRecursively());
    QCOMPARE(own().read().value().size(), 0);
    const auto none = UserNotifications(::geteuid(), home() + QLatin1String("/none")).read();
    QVERIFY2(none.ok(), qPrintable(none.error()));
    QCOMPARE(none.value().size(), 0);
}

void UserNotificationsTest::replacesMakesAndRemoves()
{
    QVERIFY(putFile(config(second + QLatin1Char('~')), "long ago"));
    QVERIFY(putFile(config(QStringLiteral("other")), "other"));
    const QByteArray large(200000, 'y');
    const Outcome outcome
        = own().change({{first, std::nullopt}, {second, large}, {third, QByteArray("third")}});
    QVERIFY2(outcome.ok(), qPrintable(outcome.error()));
    QCOMPARE(own().read().value(), (UserNotifications::Files{{second, large}, {third, "third"}}));
    QCOMPARE(modeOf(config(second)), 0640);
    QCOMPARE(modeOf(config(third)), 0600);
    // Nothing is left but what was there before.
    QCOMPARE(QDir(config()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{first + QLatin1Char('~'), second, second + QLatin1Char('~'), third,
                          QStringLiteral("other")}));
    QCOMPARE(getFile(config(first + QLatin1Char('~'))), QByteArray("first"));
    QCOMPARE(getFile(config(second + QLatin1Char('~'))), QByteArray("second"));
}

void UserNotificationsTest::removesWhatAnEarlierChangeLeft()
{
    const auto halfWritten = [](const QString &name) {
        return QString(QLatin1Char('.') + name + QStringLiteral(".adminevents-"));
    };
    const QString left = halfWritten(third) + QStringLiteral("0123456789abcdef~");
    // Nearly, or of somebody else.
    const QStringList others{halfWritten(third) + QStringLiteral("0123456789abcdef"),
                             halfWritten(third) + QStringLiteral("0123456789abcde~"),
                             halfWritten(third) + QStringLiteral("0123456789abcdeF~"),
                             halfWritten(QStringLiteral("other")) + QStringLiteral("0123456789abcdef~")};
    for (const QString &name : others + QStringList{left}) {
        QVERIFY(putFile(config(name), "half"));
    }
    expectRefusal(own(), {{QStringLiteral("a/b"), QByteArray("x")}}, QStringLiteral("cannot be"));
    QVERIFY(own().change({{first, QByteArray("new")}}).ok());
    QVERIFY(!QFile::exists(config(left)));
    for (const QString &name : others) {
        QVERIFY2(QFile::exists(config(name)), qPrintable(name));
    }
}

void UserNotificationsTest::makesAMissingDirectory()
{
    QVERIFY(QDir(config()).removeRecursively());
    QVERIFY(own().change({{first, std::nullopt}, {third, QByteArray("third")}}).ok());
    QCOMPARE(own().read().value(), (UserNotifications::Files{{third, "third"}}));
    QCOMPARE(modeOf(config()), 0700);
    const Outcome lost
        = UserNotifications(::geteuid(), home() + QLatin1String("/none")).change({{third, QByteArray()}});
    QVERIFY2(lost.error().contains(QLatin1String("/none/.config\" cannot be opened: No such file")),
             qPrintable(lost.error()));
}

void UserNotificationsTest::changesWhatIsDifferentOnly()
{
    using Files = UserNotifications::Files;
    const UserNotifications::Changes changes = UserNotifications::difference(
        Files{{first, "same"}, {second, "old"}}, Files{{first, "same"}, {third, ""}});
    QCOMPARE(changes.keys(), (QStringList{second, third}));
    QVERIFY(!changes.value(second).has_value());
    QCOMPARE(*changes.value(third), QByteArray());
    QVERIFY(UserNotifications::difference(Files{{first, ""}}, Files{{first, ""}}).isEmpty());
    const TreeSnapshot before = takeSnapshot(home());
    QVERIFY(own().change({}).ok());
    QCOMPARE(takeSnapshot(home()), before);
}

void UserNotificationsTest::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"symbolic link", "named pipe", "directory"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void UserNotificationsTest::refusesWhatIsNoRegularFile()
{
    QFETCH(QString, kind);
    QVERIFY(QFile::rename(config(second), config(QStringLiteral("victim"))));
    if (kind == QLatin1String("symbolic link")) {
        QVERIFY(QFile::link(QStringLiteral("victim"), config(second)));
    } else if (kind == QLatin1String("named pipe")) {
        QCOMPARE(::mkfifo(QFile::encodeName(config(second)).constData(), 0600), 0);
    } else {
        QVERIFY(QDir().mkdir(config(second)));
    }
    expectRefusal(own(), {{first, QByteArray("new")}, {second, QByteArray("new")}}, kind);
    expectRefusal(own(), {{first, QByteArray("new")}, {second, std::nullopt}}, config(second));
    const auto files = own().read();
    QVERIFY2(files.error().contains(config(second)) && files.error().contains(kind),
             qPrintable(files.error()));
}

void UserNotificationsTest::followsALinkToTheHomeDirectoryButNoneInIt()
{
    QTemporaryDir elsewhere;
    QVERIFY(QFile::link(home(), elsewhere.filePath(QStringLiteral("home"))));
    const UserNotifications linked(::geteuid(), elsewhere.filePath(QStringLiteral("home")));
    QCOMPARE(linked.read().value().size(), 2);
    QVERIFY(linked.change({{first, QByteArray("new")}}).ok());
    QCOMPARE(getFile(config(first)), QByteArray("new"));

    QVERIFY(QDir(home()).rename(QStringLiteral(".config"), QStringLiteral("moved")));
    QVERIFY(QFile::link(QStringLiteral("moved"), home() + QLatin1String("/.config")));
    expectRefusal(own(), {{first, QByteArray("newer")}}, home() + QLatin1String("/.config\" is a symbolic"));
    QVERIFY(own().read().error().contains(QLatin1String("symbolic link")));
}

void UserNotificationsTest::refusesTooMuch()
{
    QVERIFY(putFile(config(first), QByteArray(NotifyrcCheck::sizeLimit, 'x')));
    QVERIFY(own().read().ok());
    QVERIFY(putFile(config(first), QByteArray(NotifyrcCheck::sizeLimit + 1, 'x')));
    QVERIFY2(own().read().error().contains(QLatin1String("larger than 1048576 bytes")),
             qPrintable(own().read().error()));
    QVERIFY(putFile(config(first), "x"));
    const auto fill = [this](int count) {
        return putFile(config(QStringLiteral("nivra-event-watcher_%1.notifyrc").arg(count)),
                       QByteArray::number(count));
    };
    for (int i = 2; i < NotifyrcFiles::countLimit; ++i) {
        QVERIFY(fill(i));
    }
    QCOMPARE(own().read().value().size(), NotifyrcFiles::countLimit);
    QVERIFY(fill(NotifyrcFiles::countLimit));
    QVERIFY2(own().read().error().contains(QLatin1String("more than 64")), qPrintable(own().read().error()));
}

void UserNotificationsTest::changesNothingWhenOneFileCannotBeReplaced()
{
    if (::geteuid() != 0) {
        QSKIP("only root may make a file immutable");
    }
    const QString chattr = QStringLiteral("chattr");
    if (QProcess::execute(chattr, {QStringLiteral("+i"), config(second)}) != 0) {
        QSKIP("the file system knows no immutable files");
    }
    const TreeSnapshot before = takeSnapshot(home());
    const Outcome outcome
        = own().change({{first, QByteArray("new")}, {second, QByteArray("new")}, {third, QByteArray("new")}});
    const Outcome removal = own().change({{first, std::nullopt}, {second, std::nullopt}});
    const TreeSnapshot after = takeSnapshot(home());
    QCOMPARE(QProcess::execute(chattr, {QStringLiteral("-i"), config(second)}), 0);
    QVERIFY2(outcome.error().contains(config(second)), qPrintable(outcome.error()));
    QVERIFY2(removal.error().contains(config(second)), qPrintable(removal.error()));
    QCOMPARE(after, before);
}

void UserNotificationsTest::changesNothingWhenTheDiskTakesNoMore()
{
    rlimit former = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &former), 0);
    rlimit tight = former;
    tight.rlim_cur = 1000;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    expectRefusal(own(), {{first, QByteArray("new")}, {second, QByteArray(2000, 'x')}},
                  second + QLatin1String("\" cannot be written: File too large"));
    QVERIFY(QDir(config()).removeRecursively());
    expectRefusal(own(), {{second, QByteArray(2000, 'x')}}, QStringLiteral("File too large"));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &former), 0);
}

void UserNotificationsTest::hasTheRightsOfTheUserOnly()
{
    if (::geteuid() != 0) {
        QSKIP("only root may act for another user");
    }
    for (const QString &path : {home(), config(), config(first), config(second)}) {
        QCOMPARE(::chown(QFile::encodeName(path).constData(), nobody, nobody), 0);
    }
    QCOMPARE(own(nobody).read().value().size(), 2);
    QVERIFY(own(nobody).change({{first, std::nullopt}, {third, QByteArray("third")}}).ok());
    QCOMPARE(QFileInfo(config(third)).ownerId(), nobody);
    QCOMPARE(QFileInfo(config(first + QLatin1Char('~'))).ownerId(), nobody);
    QVERIFY(QDir(config()).removeRecursively());
    QVERIFY(own(nobody).change({{third, QByteArray("third")}}).ok());
    QCOMPARE(QFileInfo(config()).ownerId(), nobody);

    QCOMPARE(::chmod(QFile::encodeName(config(third)).constData(), 0), 0);
    QVERIFY2(own(nobody).read().error().contains(QLatin1String("Permission denied")),
             qPrintable(own(nobody).read().error()));
    QCOMPARE(::chmod(QFile::encodeName(config()).constData(), 0500), 0);
    expectRefusal(own(nobody), {{third, QByteArray("new")}}, QStringLiteral("Permission denied"));
    QCOMPARE(::chmod(QFile::encodeName(home()).constData(), 0), 0);
    expectRefusal(own(nobody), {{third, QByteArray("new")}}, QStringLiteral("Permission denied"));
    QVERIFY(!own(nobody).read().ok());
    QCOMPARE(::geteuid(), 0U);
}

void UserNotificationsTest::refusesWhatIsNotTheUsers()
{
    if (::geteuid() != 0) {
        QSKIP("only root may act for another user");
    }
    for (const QString &path : {home(), config(), config(first)}) {
        QCOMPARE(::chown(QFile::encodeName(path).constData(), nobody, nobody), 0);
    }
    // Of root, though the user may read it, and even replace it.
    QCOMPARE(::chmod(QFile::encodeName(config(second)).constData(), 0644), 0);
    const QString foreign = second + QLatin1String("\" does not belong");
    QVERIFY2(own(nobody).read().error().contains(foreign), qPrintable(own(nobody).read().error()));
    expectRefusal(own(nobody), {{first, QByteArray("new")}, {second, QByteArray("new")}}, foreign);
    expectRefusal(own(nobody), {{second, std::nullopt}}, foreign);
    // And root itself does not change a user's.
    const QString directory = QStringLiteral(".config\" does not belong");
    expectRefusal(own(0), {{first, QByteArray("new")}}, directory);
    QVERIFY(own(0).read().error().contains(directory));
}

void UserNotificationsTest::findsTheHomeDirectory()
{
    const QString root = QStringLiteral("/");
    const auto given = UserNotifications::of(::geteuid(), root, home());
    QCOMPARE(given.value()->pathOf(first), config(first));
    QVERIFY(!UserNotifications::of(::geteuid(), home(), QString()).value().has_value());
    QVERIFY(UserNotifications::of(::geteuid(), home(), home()).value().has_value());
    const passwd *const account = ::getpwuid(::geteuid());
    QVERIFY(account);
    QCOMPARE(UserNotifications::of(::geteuid(), root, QString()).value()->pathOf(first),
             QFile::decodeName(account->pw_dir) + QLatin1String("/.config/") + first);
    const auto unknown = UserNotifications::of(4000000000U, root, QString());
    QVERIFY2(unknown.error().contains(QLatin1String("4000000000")), qPrintable(unknown.error()));
}

void UserNotificationsTest::leavesNoChildBehind()
{
    for (int i = 0; i < 20; ++i) {
        QVERIFY(own().change({{first, QByteArray::number(i)}}).ok());
        QVERIFY(own().read().ok());
    }
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
}

QTEST_GUILESS_MAIN(UserNotificationsTest)

#include "usernotificationstest.moc"
