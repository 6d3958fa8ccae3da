// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <dbusdialog.h>
#include <eventtreeitem.h>

#include <KMessageWidget>

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

/// For whom it holds how a notification is presented: whom the page gives its settings, and what it says of
/// others.
class UsersPresentationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void allUsersGetTheSuperusersSettings();
    void whoCannotBeGivenThemIsNamed();
    void anotherAdministratorIsToldThatHisSettingsAreHisOwn();

private:
    static void setUp(AdminEventsModule &page);
    static KMessageWidget *bar(const AdminEventsModule &page)
    {
        return page.findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    }
    QString homes() const { return m_machine.root() + QStringLiteral("/home/"); }

    PageFixture m_machine;
    QByteArray m_superusersHome;
    QString m_user; // who runs the test: the one account that surely exists
    const QString m_fileName = QStringLiteral("/.config/nivra-event-watcher_page.notifyrc");
};

void UsersPresentationTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    const passwd *user = ::getpwuid(::geteuid());
    QVERIFY(user);
    m_user = QString::fromLocal8Bit(user->pw_name);
    m_superusersHome = qgetenv("HOME");
}

void UsersPresentationTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    QVERIFY(QDir().mkpath(homes() + m_user));
}

void UsersPresentationTest::cleanup()
{
    qputenv("HOME", m_superusersHome);
    QVERIFY(QDir(homes()).removeRecursively());
}

void UsersPresentationTest::setUp(AdminEventsModule &page)
{
    page.switchDbus(PageFixture::node(page.workingModel(), QStringLiteral("login")), true);
    auto *dialog = page.findChild<DBusDialog *>(QStringLiteral("DBusDialog"));
    QVERIFY(dialog->isVisible());
    auto *buttons = dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    buttons->button(QDialogButtonBox::Ok)->click();
    QVERIFY(!dialog->isVisible());
}

void UsersPresentationTest::allUsersGetTheSuperusersSettings()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save();
    QCOMPARE(boxes.boxes().size(), 0); // no notification was set up
    setUp(*page);
    const QString copy = homes() + m_user + m_fileName;
    QVERIFY(!QFile::exists(copy));
    page->save();
    QVERIFY(m_machine.read(copy).contains("[Event/loginMsg]\nAction=Popup\n"));
    QCOMPARE(m_machine.read(copy), m_machine.read(QString::fromLocal8Bit(m_superusersHome) + m_fileName));
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(
        boxes.boxes().at(0).text,
        QStringLiteral(
            "The notification settings will take effect only after the system is rebooted.\nReboot now?"));
    QVERIFY2(bar(*page)->isHidden(), qPrintable(bar(*page)->text()));
}

void UsersPresentationTest::whoCannotBeGivenThemIsNamed()
{
    m_machine.write(homes() + m_user + QStringLiteral("/.config"), "in the way");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    setUp(*page);
    page->save();
    QCOMPARE(boxes.boxes().size(), 0); // nobody waits for a reboot
    QVERIFY(!bar(*page)->isHidden());
    QVERIFY2(
        bar(*page)->text().contains(QStringLiteral("could not be given to these users: %1.").arg(m_user)),
        qPrintable(bar(*page)->text()));
    QVERIFY(page->compareModels());
    QVERIFY(
        m_machine.read(QString::fromLocal8Bit(m_superusersHome) + m_fileName).contains("[Event/loginMsg]"));
}

void UsersPresentationTest::anotherAdministratorIsToldThatHisSettingsAreHisOwn()
{
    const QByteArray former = "[Event/loginMsg]\nAction=Execute\nExecute=/superusers\n";
    const QString superusers = QString::fromLocal8Bit(m_superusersHome) + m_fileName;
    m_machine.write(superusers, former);
    const QString own = homes() + QStringLiteral("administrator");
    qputenv("HOME", QFile::encodeName(own));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    setUp(*page);
    QVERIFY(bar(*page)->isHidden());
    page->save();
    QVERIFY(!bar(*page)->isHidden());
    QVERIFY2(bar(*page)->text().contains(QLatin1String("for your account only")),
             qPrintable(bar(*page)->text()));
    QCOMPARE(boxes.boxes().size(), 0);
    QVERIFY(m_machine.read(own + m_fileName).contains("[Event/loginMsg]\nAction=Popup\n"));
    QCOMPARE(m_machine.read(superusers), former);
    QVERIFY2(!QFile::exists(homes() + m_user + m_fileName),
             "settings that nobody has set up here were copied");
}

QTEST_MAIN(UsersPresentationTest)

#include "userspresentationtest.moc"
