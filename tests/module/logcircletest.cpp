// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"
#include "settingswindow.h"

#include <dbusdialog.h>
#include <systempaths.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {
void setUpNotification(AdminEventsModule &page, const QString &event, const QString &title,
                       const QString &command)
{
    page.switchDbus(PageFixture::node(page.workingModel(), event), true);
    auto *dialog = page.findChild<DBusDialog *>();
    QVERIFY(dialog->isVisible());
    dialog->findChild<QLineEdit *>(QStringLiteral("titleLineEdit"))->setText(title);
    dialog->findChild<QCheckBox *>(QStringLiteral("executeCheckBox"))->setChecked(true);
    dialog->findChild<QLineEdit *>(QStringLiteral("executeEdit"))->setText(command);
    dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Ok)->click();
    QVERIFY(!dialog->isVisible());
}
} // namespace

/// What an administrator sets up goes to the service, into an archive, and comes back.
class LogCircleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void whatWasSetUpComesBackWithTheArchive();
    void anotherMachineShowsTheSamePage();
    void aFailedExportLeavesTheFormerArchive();
    void archivesLieBehindALinkedHome();

private:
    [[nodiscard]] QString path(const QString &logical) const { return m_machine.root() + logical; }
    [[nodiscard]] QString archive() const { return m_folder.filePath(QStringLiteral("state.tar.gz")); }
    enum Arrival { Nowhere, InTheLog, InBoth };
    /// Where a new record arrives: in the main log, in the file that was added, or not at all.
    [[nodiscard]] Arrival sendRecord() const;

    PageFixture m_machine;
    QTemporaryDir m_folder;
};

void LogCircleTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void LogCircleTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    QVERIFY(SettingsWindow::putShippedFiles(m_machine, QStringLiteral(SHIPPED_DATA)));
    QFile::remove(archive());
}

void LogCircleTest::cleanup()
{
    RealService::stop(m_machine, QStringLiteral(SYSTEMCTL));
}

LogCircleTest::Arrival LogCircleTest::sendRecord() const
{
    constexpr int patienceMs = 2000;
    constexpr int afterwardsMs = 300;
    static int number = 0;
    const QByteArray user = "user" + QByteArray::number(++number) + '.';
    const auto isIn = [&user](const QString &file) { return PageFixture::read(file).contains(user); };
    const QString log = path(SystemPaths::eventLogFile());
    if (!RealService::send(m_machine, "<13>{\"MSG\":{\"nivra-auth\":{\"user\":\"" + user + "\"}}}")
        || !QTest::qWaitFor([&] { return isIn(log); }, patienceMs)) {
        return Nowhere;
    }
    const QString added = path(QStringLiteral("/var/log/added.log"));
    return QTest::qWaitFor([&] { return isIn(added); }, afterwardsMs) ? InBoth : InTheLog;
}

void LogCircleTest::whatWasSetUpComesBackWithTheArchive()
{
    if (!RealService::prepare(m_machine, QStringLiteral(SYSTEMCTL))) {
        QSKIP("needs syslog-ng");
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    QVERIFY(SettingsWindow::addFileDestination(*page, QStringLiteral("added"),
                                               QStringLiteral("/var/log/added.log")));
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    // The restart takes its time.
    QTRY_COMPARE_WITH_TIMEOUT(sendRecord(), InBoth, 20000);
    const auto *label = PageFixture::serviceLabel(*page);
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service is running."));
    SettingsWindow::setNumberOfLogs(*page, 9);
    QCOMPARE(boxes.boxes().size(), 0);
    const QStringList first = SettingsWindow::picture(*page, {});
    SettingsWindow::transfer(*page, "exportTab", archive());
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().last().text, QStringLiteral("Configuration exported successfully"));

    QVERIFY(SettingsWindow::removeDestination(*page, QStringLiteral("added")));
    SettingsWindow::setNumberOfLogs(*page, 3);
    m_machine.toggle(*page, QStringLiteral("watch"));
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save();
    QTRY_COMPARE_WITH_TIMEOUT(sendRecord(), InTheLog, 20000);
    QVERIFY(SettingsWindow::picture(*page, {}) != first);

    SettingsWindow::transfer(*page, "importTab", archive());
    QCOMPARE(boxes.boxes().size(), 2);
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Configuration imported successfully.\n")));
    QCOMPARE(SettingsWindow::picture(*page, {}), first);
    QVERIFY(page->compareModels());
    // The import starts the service anew, too: records arrive where they did at first.
    QTRY_COMPARE_WITH_TIMEOUT(sendRecord(), InBoth, 20000);
}

void LogCircleTest::anotherMachineShowsTheSamePage()
{
    const QString carried = m_folder.filePath(QStringLiteral("carried.tar.gz"));
    const QStringList events{QStringLiteral("login"), QStringLiteral("plain")};
    QStringList first;
    QByteArray own;
    const auto ownFile
        = [this] { return path(QStringLiteral("/root/.config/nivra-event-watcher_page.notifyrc")); };
    const BoxAnswerer boxes(QMessageBox::No);
    {
        const auto page = m_machine.openPage();
        QVERIFY(page);
        QVERIFY(SettingsWindow::addFileDestination(*page, QStringLiteral("added"),
                                                   QStringLiteral("/var/log/added.log")));
        SettingsWindow::setNumberOfLogs(*page, 9);
        for (const QString &event : {QStringLiteral("plain"), QStringLiteral("watch")}) {
            m_machine.toggle(*page, event);
        }
        setUpNotification(*page, events.first(), QStringLiteral("Вход"), QStringLiteral("/bin/true 'a b'"));
        setUpNotification(*page, events.last(), QStringLiteral("Plain"), QStringLiteral("/bin/false"));
        page->save();
        QVERIFY(page->compareModels());
        first = SettingsWindow::picture(*page, events);
        QVERIFY(first.contains(QStringLiteral("login notifies")));
        QVERIFY(first.contains(QStringLiteral("logRotationSettings qt_spinbox_lineedit 9")));
        QVERIFY(first.contains(QStringLiteral("DBusDialog executeEdit /bin/false")));
        SettingsWindow::transfer(*page, "exportTab", archive());
        QCOMPARE(boxes.boxes().last().text, QStringLiteral("Configuration exported successfully"));
        own = PageFixture::read(ownFile());
        QVERIFY(own.contains("/bin/true"));
        QVERIFY(QFile::rename(archive(), carried));
    }

    // A machine with another configuration, and another home directory with settings of its own.
    init();
    QVERIFY(!QFile::exists(ownFile()));
    PageFixture::write(ownFile(), "[Event/loginMsg]\nAction=Sound\nExecute=/bin/other\n");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    page->save();
    QVERIFY(SettingsWindow::picture(*page, {}) != first);
    SettingsWindow::transfer(*page, "importTab", carried);
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Configuration imported successfully.\n")));
    QCOMPARE(SettingsWindow::picture(*page, events), first);
    QCOMPARE(PageFixture::read(ownFile()), own);
}

void LogCircleTest::aFailedExportLeavesTheFormerArchive()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::Yes);
    SettingsWindow::transfer(*page, "exportTab", archive());
    const QByteArray former = PageFixture::read(archive());
    QVERIFY(former.startsWith("\x1f\x8b"));

    QVERIFY(m_machine.bus->setAllowed(false));
    SettingsWindow::transfer(*page, "exportTab", archive());
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Can not export configuration!\n")));
    QCOMPARE(PageFixture::read(archive()), former);

    QVERIFY(m_machine.bus->setAllowed(true));
    PageFixture::write(m_machine.settingsPath(), "{");
    SettingsWindow::transfer(*page, "exportTab", archive());
    QVERIFY2(boxes.boxes().last().text.contains(QStringLiteral("/etc/nivra-syslog.conf")),
             qPrintable(boxes.boxes().last().text));
    QCOMPARE(PageFixture::read(archive()), former);

    PageFixture::write(m_machine.settingsPath(), "{}");
    SettingsWindow::transfer(*page, "exportTab", archive());
    QCOMPARE(boxes.boxes().last().text, QStringLiteral("Configuration exported successfully"));
    QVERIFY(PageFixture::read(archive()) != former);
    QCOMPARE(QDir(m_folder.path()).entryList({QStringLiteral("*state*")}, QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("state.tar.gz")});
}

void LogCircleTest::archivesLieBehindALinkedHome()
{
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("data/home")));
    QVERIFY(QFile::link(QStringLiteral("data/home"), m_folder.filePath(QStringLiteral("home"))));
    const QString typed = m_folder.filePath(QStringLiteral("home/state.tar.gz"));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    SettingsWindow::transfer(*page, "exportTab", typed);
    QCOMPARE(boxes.boxes().last().text, QStringLiteral("Configuration exported successfully"));
    QVERIFY(QFile::exists(m_folder.filePath(QStringLiteral("data/home/state.tar.gz"))));
    SettingsWindow::transfer(*page, "importTab", typed);
    QVERIFY2(boxes.boxes().last().text.startsWith(QStringLiteral("Configuration imported successfully.\n")),
             qPrintable(boxes.boxes().last().text));
    // The archive itself must be no link.
    QVERIFY(QFile::link(QStringLiteral("state.tar.gz"),
                        m_folder.filePath(QStringLiteral("data/home/link.tar.gz"))));
    SettingsWindow::transfer(*page, "importTab", m_folder.filePath(QStringLiteral("home/link.tar.gz")));
    QVERIFY2(boxes.boxes().last().text.contains(QStringLiteral("symbolic link")),
             qPrintable(boxes.boxes().last().text));
}

QTEST_MAIN(LogCircleTest)

#include "logcircletest.moc"
