// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"
#include "settingswindow.h"

#include <checkabletreemodel.h>
#include <destinationsmodel.h>
#include <destinationssettings.h>
#include <eventtreeitem.h>
#include <systempaths.h>

#include <KMessageWidget>

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

namespace {
QPushButton *settingsButton(const AdminEventsModule &page)
{
    return page.findChild<QPushButton *>(QStringLiteral("commonSettingsButton"));
}

QSpinBox *numberOfLogs(const CommonSettingsWindow &window)
{
    return window.findChild<QSpinBox *>(QStringLiteral("numberOfLogs"));
}
} // namespace

/// The window of the common settings as the page opens it, down to the files and the service.
class CommonSettingsPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void buttonOpensTheDestinations();
    void importBringsTheExportedStateBack();
    void importIsNobodyElsesChange();
    void importTellsOfEditsThatItDrops();
    void failedImportLeavesThePageAlone();
    void recordReachesTheDestinationThatWasAdded();

private:
    [[nodiscard]] QString path(const QString &logical) const { return m_machine.root() + logical; }
    /// The files of the configuration, one after the other.
    [[nodiscard]] QList<QByteArray> files() const;
    void edit(const AdminEventsModule &page, const QString &destination, int number) const;

    PageFixture m_machine;
    QTemporaryDir m_home;
};

void CommonSettingsPageTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void CommonSettingsPageTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    QVERIFY(SettingsWindow::putShippedFiles(m_machine, QStringLiteral(SHIPPED_DATA)));
}

void CommonSettingsPageTest::cleanup()
{
    RealService::stop(m_machine, QStringLiteral(SYSTEMCTL));
}

QList<QByteArray> CommonSettingsPageTest::files() const
{
    return {PageFixture::read(path(SystemPaths::mainConfiguration())),
            PageFixture::read(path(SystemPaths::rotationFile())), PageFixture::read(m_machine.settingsPath()),
            PageFixture::read(m_machine.rulesPath())};
}

void CommonSettingsPageTest::edit(const AdminEventsModule &page, const QString &destination, int number) const
{
    SettingsWindow::open(page, "destinationsTab");
    SettingsWindow::of(page).findChild<DestinationsSettings *>()->insertNewDest(
        {QStringLiteral("file"), destination,
         QString(QStringLiteral("/var/log/") + destination + QStringLiteral(".log")), 514,
         QStringLiteral("tcp")});
    SettingsWindow::clickOk(page);
    SettingsWindow::setNumberOfLogs(page, number);
    QVERIFY(!SettingsWindow::of(page).isVisible());
}

void CommonSettingsPageTest::buttonOpensTheDestinations()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(settingsButton(*page)->isEnabled());
    QCOMPARE(settingsButton(*page)->text(), QStringLiteral("Settings"));
    QVERIFY(!SettingsWindow::of(*page).isVisible());
    SettingsWindow::open(*page, "importTab");
    SettingsWindow::of(*page).reject();
    QTest::mouseClick(settingsButton(*page), Qt::LeftButton);
    QVERIFY(SettingsWindow::of(*page).isVisible());
    QCOMPARE(SettingsWindow::of(*page).windowTitle(), QStringLiteral("Common parameters"));
    QCOMPARE(SettingsWindow::of(*page).parentWidget(), page.get());
    QVERIFY(page->findChild<DestinationsSettings *>()->isVisible());
    QCOMPARE(page->findChild<DestinationsSettings *>()->model()->rowCount(), 1);
}

void CommonSettingsPageTest::importBringsTheExportedStateBack()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    const CommonSettingsWindow &dialog = SettingsWindow::of(*page);
    edit(*page, QStringLiteral("first"), 9);
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    QTRY_COMPARE(m_machine.serviceCalls().count(QStringLiteral("restart syslog-ng")), 1);
    QCOMPARE(boxes.boxes().size(), 0);
    const QList<QByteArray> exported = files();
    QVERIFY(exported.at(0).contains("first.log"));
    QVERIFY(exported.at(1).contains("rotate 9\n"));
    QVERIFY(exported.at(2).contains("watch"));
    QVERIFY(exported.at(3).contains("/etc/shadow"));

    const QString archive = m_home.filePath(QStringLiteral("state.tar.gz"));
    SettingsWindow::transfer(*page, "exportTab", archive);
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().last().text, QStringLiteral("Configuration exported successfully"));
    QVERIFY(QFileInfo(archive).size() > 0);

    edit(*page, QStringLiteral("second"), 3);
    m_machine.toggle(*page, QStringLiteral("watch"));
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save();
    QTRY_COMPARE(m_machine.serviceCalls().count(QStringLiteral("restart syslog-ng")), 2);
    const QList<QByteArray> changed = files();
    for (int i = 0; i < changed.size(); ++i) {
        QVERIFY(changed.at(i) != exported.at(i));
    }

    const QSignalSpy pageChanged(page.get(), qOverload<bool>(&AdminEventsModule::changed));
    SettingsWindow::transfer(*page, "importTab", archive);
    QCOMPARE(boxes.boxes().size(), 2);
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Configuration imported successfully.\n")));
    QCOMPARE(files(), exported);
    QVERIFY(!pageChanged.isEmpty());
    QCOMPARE(pageChanged.last().first().toBool(), false);
    QTRY_COMPARE(m_machine.serviceCalls().count(QStringLiteral("restart syslog-ng")), 3);
    QCOMPARE(PageFixture::node(page->workingModel(), QStringLiteral("watch"))->checkState, int(Qt::Checked));
    QCOMPARE(PageFixture::node(page->workingModel(), QStringLiteral("plain"))->checkState,
             int(Qt::Unchecked));
    settingsButton(*page)->click();
    QCOMPARE(numberOfLogs(dialog)->value(), 9);
    QCOMPARE(page->findChild<DestinationsSettings *>()->model()->rowCount(), 2);
    // And the same again leaves nothing to save.
    SettingsWindow::clickOk(*page);
    QCOMPARE(files(), exported);
}

void CommonSettingsPageTest::importIsNobodyElsesChange()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QString archive = m_home.filePath(QStringLiteral("own.tar.gz"));
    {
        const BoxAnswerer boxes(QMessageBox::No);
        SettingsWindow::transfer(*page, "exportTab", archive);
        m_machine.toggle(*page, QStringLiteral("plain"));
        page->save();
        QTRY_VERIFY(m_machine.serviceCalls().contains(QStringLiteral("restart syslog-ng")));
    }
    const QByteArray saved = PageFixture::read(m_machine.settingsPath());
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    // The question about a reboot stays for longer than the watch needs to notice something.
    int looks = 0;
    bool wasToldOfAnother = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            wasToldOfAnother |= bar->isVisibleTo(page.get());
            if (++looks == 5) {
                box->button(QMessageBox::No)->click();
            }
        }
    });
    look.start(300);
    SettingsWindow::transfer(*page, "importTab", archive);
    QCOMPARE(looks, 5);
    QVERIFY2(!wasToldOfAnother, qPrintable(bar->text()));
    QVERIFY(PageFixture::read(m_machine.settingsPath()) != saved);
    QCOMPARE(PageFixture::node(page->workingModel(), QStringLiteral("plain"))->checkState,
             int(Qt::Unchecked));
    // The watch goes on.
    m_machine.replace(m_machine.settingsPath(), saved);
    QTRY_VERIFY(bar->isVisibleTo(page.get()));
    QCOMPARE(PageFixture::node(page->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Checked));
}

void CommonSettingsPageTest::importTellsOfEditsThatItDrops()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    const QString archive = m_home.filePath(QStringLiteral("plain.tar.gz"));
    SettingsWindow::transfer(*page, "exportTab", archive);
    m_machine.toggle(*page, QStringLiteral("plain"));
    SettingsWindow::transfer(*page, "importTab", archive);
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Configuration imported successfully.\n")));
    QCOMPARE(PageFixture::node(page->workingModel(), QStringLiteral("plain"))->checkState,
             int(Qt::Unchecked));
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QTRY_VERIFY(bar->isVisible());
    QVERIFY2(bar->text().contains(QStringLiteral("not saved are gone")), qPrintable(bar->text()));
    QTRY_VERIFY(m_machine.serviceCalls().contains(QStringLiteral("restart syslog-ng")));
}

void CommonSettingsPageTest::failedImportLeavesThePageAlone()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer boxes(QMessageBox::No);
    const QString archive = m_home.filePath(QStringLiteral("none.tar.gz"));
    PageFixture::write(archive, "no archive");
    const QList<QByteArray> before = files();
    m_machine.toggle(*page, QStringLiteral("plain"));
    SettingsWindow::transfer(*page, "importTab", archive);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(boxes.boxes().last().text.startsWith(QStringLiteral("Can not import configuration!\n")));
    QCOMPARE(files(), before);
    QVERIFY(!page->compareModels());
    QVERIFY(!m_machine.serviceCalls().contains(QStringLiteral("restart")));
}

void CommonSettingsPageTest::recordReachesTheDestinationThatWasAdded()
{
    if (!RealService::prepare(m_machine, QStringLiteral(SYSTEMCTL))) {
        QSKIP("needs syslog-ng");
    }
    const auto page = m_machine.openPage();
    QVERIFY(page);
    edit(*page, QStringLiteral("added"), 2);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save(); // which starts the service anew
    const auto *label = PageFixture::serviceLabel(*page);
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    QTRY_VERIFY_WITH_TIMEOUT(
        RealService::send(m_machine, "<13>{\"MSG\":{\"nivra-auth\":{\"user\":\"ivanov\"}}}"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(PageFixture::read(path(QStringLiteral("/var/log/added.log"))).contains("ivanov"),
                             10000);
    QTRY_VERIFY_WITH_TIMEOUT(PageFixture::read(path(SystemPaths::eventLogFile())).contains("ivanov"), 10000);
    // The page shows how large the log has become.
    settingsButton(*page)->click();
    const QString size = page->findChild<QLabel *>(QStringLiteral("logSizeLabel"))->text();
    QVERIFY2(size != QStringLiteral("0 B") && size.endsWith(QStringLiteral(" B")), qPrintable(size));
}

QTEST_MAIN(CommonSettingsPageTest)
#include "commonsettingspagetest.moc"
