// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <disklimitsmodel.h>
#include <diskspacemondialog.h>
#include <eventtreeitem.h>
#include <filesdialog.h>
#include <statewidget.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QDir>
#include <QJsonArray>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

namespace {
const QStringList keyPath{QStringLiteral("filter-values"), QStringLiteral(".auditd.key")};
const QStringList rulesPath{QStringLiteral("message-audit-rules")};
const QStringList directoriesPath{QStringLiteral("directories")};
const QString opened = QStringLiteral("file-opened");
const QString modifiedFile = QStringLiteral("modifying-file");
const QString modifiedDirectory = QStringLiteral("modifying-directory");
const QString disk = QStringLiteral("disk-space-low");
} // namespace

/// From the double click on a list to the files and back: the shipped events on the page, the real helper.
class WatchedPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void aDoubleClickOpensTheDialogOfTheValue_data();
    void aDoubleClickOpensTheDialogOfTheValue();
    void editedFilesAreInTheFilesAndInTheDialogAgain_data();
    void editedFilesAreInTheFilesAndInTheDialogAgain();
    void openingAndAcceptingNeverMakesAChange_data();
    void openingAndAcceptingNeverMakesAChange();
    void anEmptiedListIsEmptyAfterSavingToo();
    void switchingTheEventOffTakesTheRulesAway();
    void editedLimitsSurviveApplyAndReload();
    void removedDirectoriesStayRemoved();
    void aReloadWhileTheDialogIsOpenLosesNothing();
    void anEventThatHasGoneIsSaidToBeGone();
    void editsInAnOpenDialogAreNotReplacedByAnotherValue();
    void editedLimitsAreNotReplacedByTheStoredOnes();

private:
    static void doubleClick(AdminEventsModule &page, const QString &event, const QStringList &path);
    template <typename Dialog> static Dialog *open(AdminEventsModule &page)
    {
        auto *dialog = page.findChild<Dialog *>();
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }
    static void press(QDialog *dialog, QDialogButtonBox::StandardButton button)
    {
        QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(button), Qt::LeftButton);
    }
    void copyCatalog(const QString &group, const QString &event);

    PageFixture m_machine;
};

void WatchedPageTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void WatchedPageTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    const QString groupName = QStringLiteral("watched-files");
    QDir().mkpath(m_machine.catalogPath() + QStringLiteral("/watched-files"));
    QDir().mkpath(m_machine.catalogPath() + QStringLiteral("/storage-capacity"));
    copyCatalog(groupName, QString());
    copyCatalog(QStringLiteral("storage-capacity"), QString());
    for (const QString &event : {opened, modifiedFile, modifiedDirectory}) {
        copyCatalog(groupName, event);
    }
    copyCatalog(QStringLiteral("storage-capacity"), disk);
    m_machine.write(m_machine.root() + QStringLiteral("/etc/zep-admin-events/eventsdictionary.json"),
                    m_machine.read(QStringLiteral(SHIPPED_DATA "/zep-admin-events/eventsdictionary.json")));
}

/// The shipped description of an event, or of a group when none is named.
void WatchedPageTest::copyCatalog(const QString &group, const QString &event)
{
    const QString name = event.isEmpty() ? group : group + QLatin1Char('/') + event;
    const QString source = QStringLiteral(SHIPPED_DATA "/event-settings/%1.json").arg(name);
    m_machine.write(QStringLiteral("%1/%2.json").arg(m_machine.catalogPath(), name), m_machine.read(source));
}

void WatchedPageTest::doubleClick(AdminEventsModule &page, const QString &event, const QStringList &path)
{
    QTreeView *view = PageFixture::view(page);
    const QModelIndex index = PageFixture::shown(page, event, path, 1);
    QVERIFY(index.isValid());
    view->scrollTo(index);
    const QPoint centre = view->visualRect(index).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, centre);
}

void WatchedPageTest::aDoubleClickOpensTheDialogOfTheValue_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QStringList>("path");
    QTest::addColumn<QString>("addText");
    QTest::addColumn<int>("rows");
    QTest::newRow("opened") << opened << keyPath << QStringLiteral("Add new file") << 2;
    QTest::newRow("modified") << modifiedFile << keyPath << QStringLiteral("Add new file") << 4;
    QTest::newRow("directory") << modifiedDirectory << keyPath << QStringLiteral("Add new directory") << 3;
}

void WatchedPageTest::aDoubleClickOpensTheDialogOfTheValue()
{
    QFETCH(QString, event);
    QFETCH(QStringList, path);
    QFETCH(int, rows);
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(!open<FilesDialog>(*page));
    doubleClick(*page, event, path);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog);
    QVERIFY(!dialog->isModal());
    QVERIFY(!open<DiskSpaceMonDialog>(*page));
    QCOMPARE(dialog->windowTitle(), PageFixture::shown(*page, event, path, 0).data().toString());
    QTEST(dialog->findChild<QPushButton *>(QStringLiteral("addButton"))->text(), "addText");
    QCOMPARE(dialog->paths().size(), rows);
}

void WatchedPageTest::editedFilesAreInTheFilesAndInTheDialogAgain_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QByteArray>("addedRules");
    QTest::newRow("opened") << opened
                            << QByteArray(
                                   "-a always,exit -F arch=x86_64 -F path=/Файл -S open,openat -k /Файл\n"
                                   "-a always,exit -F arch=armv7l -F path=/Файл -S open,openat -k /Файл\n"
                                   "-a always,exit -F arch=aarch64 -F path=/Файл -S openat -k /Файл\n");
    QTest::newRow("modified") << modifiedFile << QByteArray("-w /Файл -p wa -k /Файл\n");
    QTest::newRow("directory") << modifiedDirectory << QByteArray("-w /Файл -p wa -k /Файл\n");
}

void WatchedPageTest::editedFilesAreInTheFilesAndInTheDialogAgain()
{
    QFETCH(QString, event);
    QFETCH(QByteArray, addedRules);
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QAbstractItemModelTester tester(page->workingModel(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_machine.toggle(*page, event);
    page->save();
    const QByteArray before = m_machine.read(m_machine.rulesPath());
    QVERIFY(before.startsWith('-'));

    doubleClick(*page, event, keyPath);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog);
    const QStringList edited = dialog->paths() + QStringList{QStringLiteral("/Файл")};
    QVERIFY(dialog->addPath(QStringLiteral("/Файл")));
    press(dialog, QDialogButtonBox::Ok);
    QVERIFY(!page->compareModels());
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);
    QCOMPARE(PageFixture::shown(*page, event, keyPath, 1).data().toString(),
             edited.join(QLatin1String(", ")));
    page->save();

    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray(before + addedRules));
    QVERIFY(page->compareModels());
    const QByteArray saved = m_machine.read(m_machine.settingsPath());
    for (int round = 0; round < 2; ++round) {
        doubleClick(*page, event, keyPath);
        QVERIFY(open<FilesDialog>(*page));
        QCOMPARE(dialog->paths(), edited);
        press(dialog, QDialogButtonBox::Ok);
        QVERIFY(page->compareModels());
        page->save();
        QCOMPARE(m_machine.read(m_machine.settingsPath()), saved);
        QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray(before + addedRules));
    }
    // A page of a later day.
    const auto later = m_machine.openPage();
    QVERIFY(later);
    QCOMPARE(PageFixture::shown(*later, event, keyPath, 1).data().toString(),
             edited.join(QLatin1String(", ")));
}

void WatchedPageTest::openingAndAcceptingNeverMakesAChange_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QStringList>("path");
    QTest::newRow("opened") << opened << keyPath;
    QTest::newRow("modified") << modifiedFile << keyPath;
    QTest::newRow("directory") << modifiedDirectory << keyPath;
    QTest::newRow("disk space") << disk << directoriesPath;
}

void WatchedPageTest::openingAndAcceptingNeverMakesAChange()
{
    QFETCH(QString, event);
    QFETCH(QStringList, path);
    const auto page = m_machine.openPage();
    QVERIFY(page);
    for (int round = 0; round < 3; ++round) {
        doubleClick(*page, event, path);
        QDialog *dialog = open<FilesDialog>(*page);
        dialog = dialog ? dialog : open<DiskSpaceMonDialog>(*page);
        QVERIFY(dialog);
        press(dialog, QDialogButtonBox::Ok);
        QVERIFY(!dialog->isVisible());
        QVERIFY(page->compareModels());
    }
    page->save();
    QVERIFY(m_machine.settings().isEmpty());
}

void WatchedPageTest::anEmptiedListIsEmptyAfterSavingToo()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, modifiedFile);
    doubleClick(*page, modifiedFile, keyPath);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog);
    auto *list = dialog->findChild<QListWidget *>(QStringLiteral("filesList"));
    list->setCurrentRow(0);
    while (list->count() > 0) {
        dialog->removeSelectedFile();
    }
    press(dialog, QDialogButtonBox::Ok);
    page->save();
    QCOMPARE(m_machine.read(m_machine.rulesPath()).trimmed(), QByteArray());
    QCOMPARE(PageFixture::shown(*page, modifiedFile, keyPath, 1).data().toString(), QString());
    doubleClick(*page, modifiedFile, keyPath);
    QCOMPARE(dialog->paths(), QStringList());
    QVERIFY(dialog->addPath(QStringLiteral("/etc/passwd")));
    press(dialog, QDialogButtonBox::Ok);
    page->save();
    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray("-w /etc/passwd -p wa -k /etc/passwd\n"));
}

void WatchedPageTest::switchingTheEventOffTakesTheRulesAway()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, opened);
    page->save();
    QCOMPARE(m_machine.read(m_machine.rulesPath()).count('\n'), 6);
    m_machine.toggle(*page, opened);
    page->save();
    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray());
}

void WatchedPageTest::editedLimitsSurviveApplyAndReload()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QAbstractItemModelTester tester(page->workingModel(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    doubleClick(*page, disk, directoriesPath);
    auto *dialog = open<DiskSpaceMonDialog>(*page);
    QVERIFY(dialog);
    QCOMPARE(dialog->windowTitle(), PageFixture::shown(*page, disk, directoriesPath, 0).data().toString());
    QVector<DiskLimit> expected = dialog->model()->rows();
    QCOMPARE(expected.size(), 3);
    QVERIFY(dialog->model()->setData(dialog->model()->index(1, DiskLimitsModel::BytesColumn), 4096));
    QVERIFY(dialog->model()->setData(dialog->model()->index(1, DiskLimitsModel::PercentColumn),
                                     QStringLiteral("7.25")));
    QVERIFY(dialog->addDirectory(QStringLiteral("/mnt/\"a\", b")));
    expected[1].bytes = QStringLiteral("4096");
    expected[1].percent = QStringLiteral("7.25");
    expected.append(DiskLimit());
    expected.last().path = QStringLiteral("/mnt/\"a\", b");
    press(dialog, QDialogButtonBox::Ok);
    QVERIFY(!page->compareModels());
    page->save();
    QVERIFY(page->compareModels());

    const QJsonArray saved
        = m_machine.settings().value(disk).toObject().value(QLatin1String("directories")).toArray();
    QCOMPARE(saved.size(), 4);
    QCOMPARE(saved.at(1).toObject().value(QLatin1String("limit_percent")).toString(), QStringLiteral("7.25"));
    const auto later = m_machine.openPage();
    QVERIFY(later);
    for (AdminEventsModule *each : {page.get(), later.get()}) {
        doubleClick(*each, disk, directoriesPath);
        auto *again = open<DiskSpaceMonDialog>(*each);
        QVERIFY(again);
        QCOMPARE(again->model()->rows(), expected);
        press(again, QDialogButtonBox::Ok);
        QVERIFY(each->compareModels());
    }
    const QByteArray first = m_machine.read(m_machine.settingsPath());
    page->save();
    QCOMPARE(m_machine.read(m_machine.settingsPath()), first);
}

void WatchedPageTest::removedDirectoriesStayRemoved()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, disk, directoriesPath);
    auto *dialog = open<DiskSpaceMonDialog>(*page);
    QVERIFY(dialog);
    QVERIFY(dialog->model()->removeRows(0, 3));
    press(dialog, QDialogButtonBox::Ok);
    page->save();
    const QJsonObject event = m_machine.settings().value(disk).toObject();
    QVERIFY(event.contains(QLatin1String("directories")));
    QVERIFY(event.value(QLatin1String("directories")).toArray().isEmpty());
    doubleClick(*page, disk, directoriesPath);
    QCOMPARE(dialog->model()->rowCount(), 0);
}

void WatchedPageTest::aReloadWhileTheDialogIsOpenLosesNothing()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, modifiedFile, keyPath);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog);
    // Another dialog beside it must not lead the first one's result astray.
    doubleClick(*page, disk, directoriesPath);
    QVERIFY(open<DiskSpaceMonDialog>(*page));
    QVERIFY(dialog->addPath(QStringLiteral("/etc/passwd")));
    page->load_p();
    press(dialog, QDialogButtonBox::Ok);
    QVERIFY(PageFixture::shown(*page, modifiedFile, keyPath, 1)
                .data()
                .toString()
                .endsWith(QLatin1String(", /etc/passwd")));
    QVERIFY(PageFixture::node(page->workingModel(), modifiedFile, rulesPath)
                ->data(1)
                .toString()
                .endsWith(QLatin1String("-w /etc/passwd -p wa -k /etc/passwd")));
}

void WatchedPageTest::anEventThatHasGoneIsSaidToBeGone()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, modifiedFile, keyPath);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog && dialog->addPath(QStringLiteral("/etc/passwd")));
    QVERIFY(QFile::remove(m_machine.catalogPath() + QStringLiteral("/watched-files/modifying-file.json")));
    page->load_p();
    QVERIFY(!PageFixture::node(page->workingModel(), modifiedFile));
    press(dialog, QDialogButtonBox::Ok);
    auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QVERIFY(bar->isVisibleTo(page.get()));
    QVERIFY2(bar->text().contains(modifiedFile), qPrintable(bar->text()));
    QVERIFY(page->compareModels());
}

void WatchedPageTest::editsInAnOpenDialogAreNotReplacedByAnotherValue()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, opened, keyPath);
    auto *dialog = open<FilesDialog>(*page);
    QVERIFY(dialog);
    doubleClick(*page, modifiedFile, keyPath); // nothing was edited
    const QStringList stored = dialog->paths();
    QCOMPARE(stored.size(), 4);
    QVERIFY(dialog->addPath(QStringLiteral("/etc/added")));
    const QStringList edited = dialog->paths();

    const BoxAnswerer boxes;
    doubleClick(*page, modifiedFile, keyPath); // the same again
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(dialog->paths(), edited);
    doubleClick(*page, modifiedDirectory, keyPath);
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(dialog->windowTitle()), qPrintable(boxes.boxes().at(0).text));
    QCOMPARE(dialog->paths(), edited);
    press(dialog, QDialogButtonBox::Ok);
    QVERIFY(PageFixture::node(page->workingModel(), modifiedFile, keyPath)
                ->value(1)
                .toString()
                .contains(QStringLiteral("/etc/added")));
    doubleClick(*page, modifiedDirectory, keyPath);
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(dialog->paths().size(), 3);
}

void WatchedPageTest::editedLimitsAreNotReplacedByTheStoredOnes()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, disk, directoriesPath);
    auto *dialog = open<DiskSpaceMonDialog>(*page);
    QVERIFY(dialog);
    const int stored = dialog->model()->rowCount();
    QVERIFY(dialog->addDirectory(QStringLiteral("/srv")));
    doubleClick(*page, disk, directoriesPath);
    QCOMPARE(dialog->model()->rowCount(), stored + 1);
    press(dialog, QDialogButtonBox::Cancel);
    doubleClick(*page, disk, directoriesPath);
    QCOMPARE(dialog->model()->rowCount(), stored);
}

QTEST_MAIN(WatchedPageTest)

#include "watchedpagetest.moc"
