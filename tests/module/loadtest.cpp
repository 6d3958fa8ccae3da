// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <eventtreeitem.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPaintEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <algorithm>

/// Building, loading and watching.
class LoadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void theModelsAreEmptyUntilThePageIsShown();
    void bothModelsGetTreesOfTheirOwn();
    void theViewIsSetUpForTheTree();
    void theWholeRowIsRepaintedWhenTheSelectionMoves();
    void twoArgumentsNameNoEvent();
    void threeArgumentsNameTheEventToShow();
    void aMissingOrEmptyCatalogEndsTheApplication_data();
    void aMissingOrEmptyCatalogEndsTheApplication();
    void aDuplicateEventEndsTheApplicationAndKeepsTheModels();
    void changeDetectionStopsAtTheFirstGroupThatDiffers();
    void togglingBackCountsAsUnchanged();
    void comparingIndexesMarksWhatDiffers();
    void everyExternalChangeReloadsThePage();
    void aFileThatAppearsLaterIsWatched();
    void aLoadListsTheUsersAndTheGroupsOnceAndSideBySide();
    void aChangeMadeDuringALoadIsShownAfterwards();
    void theEventsAreOnTheDisplayBeforeTheServiceManagerAnswers();
    void anExternalChangeDropsUnsavedEditsAndSaysSo();
    void whatOnePageAppliesAnotherShowsAndSaysWhy();
    void whatOnePageAppliesTakesTheEditsOfAnotherAndSaysSo();
    void aDamagedFileDoesNotHideThatEditsAreGone();
    void ownSavesCauseNoReload();
    void aClickOnASwitchInTheViewTurnsItAlone();
    void aRefusedValueIsExplainedInTheMessageBar();
    void theServiceButtonFollowsTheService();
    void aFailedServiceActionIsShownAndTheButtonWorksAgain();

private:
    PageFixture m_machine;
};

void LoadTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void LoadTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

void LoadTest::theModelsAreEmptyUntilThePageIsShown()
{
    AdminEventsModule page(nullptr, {});
    QCOMPARE(page.workingModel()->rowCount(), 0);
    QCOMPARE(page.referenceModel()->rowCount(), 0);
    QVERIFY(page.compareModels());
}

void LoadTest::bothModelsGetTreesOfTheirOwn()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QAbstractItemModelTester working(page->workingModel(),
                                           QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester reference(page->referenceModel(),
                                             QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(page->workingModel()->rowCount(), 3);
    QCOMPARE(page->referenceModel()->rowCount(), 3);
    m_machine.toggle(*page, QStringLiteral("plain"));
    QCOMPARE(m_machine.node(page->referenceModel(), QStringLiteral("plain"))->checkState, int(Qt::Unchecked));
}

void LoadTest::theViewIsSetUpForTheTree()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QTreeView *view = m_machine.view(*page);
    QVERIFY(view);
    QCOMPARE(view->editTriggers(), QAbstractItemView::DoubleClicked);
    QCOMPARE(view->header()->minimumSectionSize(), 170);
    QCOMPARE(view->header()->defaultSectionSize(), 250);
    QCOMPARE(view->header()->sectionResizeMode(0), QHeaderView::ResizeToContents);
    QVERIFY(view->alternatingRowColors());
    const QModelIndex group = view->model()->index(0, 0);
    QVERIFY(view->isExpanded(group));
    QVERIFY(!view->isExpanded(view->model()->index(0, 0, group)));
    QCOMPARE(page->objectName(), QStringLiteral("AdminEventsModule"));
}

void LoadTest::theWholeRowIsRepaintedWhenTheSelectionMoves()
{
    /// Collects what is painted.
    class PaintedRegion : public QObject
    {
    public:
        QRegion region;

    protected:
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint) {
                region += static_cast<QPaintEvent *>(event)->region();
            }
            return false;
        }
    };
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    const QModelIndex event = view->model()->index(0, 0, view->model()->index(0, 0));
    view->setCurrentIndex(event);
    QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    QTest::qWait(50);
    PaintedRegion painted;
    view->viewport()->installEventFilter(&painted);
    view->setCurrentIndex(view->model()->index(1, 0));
    QTRY_VERIFY(!painted.region.isEmpty());
    QVERIFY(painted.region.contains(view->visualRect(event.siblingAtColumn(1)).center()));
}

void LoadTest::twoArgumentsNameNoEvent()
{
    const AdminEventsModule page(nullptr, {QStringLiteral("plain"), QStringLiteral("plain_msg")});
    QVERIFY(page.firstViewerArgument().isEmpty());
    QVERIFY(page.secondViewerArgument().isEmpty());
}

void LoadTest::threeArgumentsNameTheEventToShow()
{
    const auto page
        = m_machine.openPage({QStringLiteral("plain"), QStringLiteral("plain_msg"), QStringLiteral("x")});
    QVERIFY(page);
    QCOMPARE(page->firstViewerArgument(), QStringLiteral("plain"));
    QCOMPARE(page->secondViewerArgument(), QStringLiteral("plain_msg"));
    QTRY_COMPARE(m_machine.view(*page)->currentIndex().data().toString(), QStringLiteral("Event plain"));
    QTRY_VERIFY(page->findChild<QWidget *>(QStringLiteral("DBusDialog"))->isVisible());

    // Only one of the two is not enough to name an event.
    const auto oneEmpty = m_machine.openPage({QStringLiteral("plain"), QString(), QStringLiteral("x")});
    QVERIFY(oneEmpty);
    QTest::qWait(100);
    QVERIFY(!oneEmpty->findChild<QWidget *>(QStringLiteral("DBusDialog"))->isVisible());
    QVERIFY(m_machine.view(*oneEmpty)->currentIndex().data().toString() != QStringLiteral("Event plain"));
}

void LoadTest::aMissingOrEmptyCatalogEndsTheApplication_data()
{
    QTest::addColumn<bool>("missing");
    QTest::addRow("missing") << true;
    QTest::addRow("empty") << false;
}

void LoadTest::aMissingOrEmptyCatalogEndsTheApplication()
{
    QFETCH(bool, missing);
    QVERIFY(QDir(m_machine.catalogPath()).removeRecursively());
    QVERIFY(missing || QDir().mkpath(m_machine.catalogPath()));
    AdminEventsModule page(nullptr, {});
    const BoxAnswerer boxes;
    QTimer::singleShot(0, &page, [&page] { page.load_p(); });
    QTimer::singleShot(5000, &page, [] { QCoreApplication::exit(99); });
    QCOMPARE(QCoreApplication::exec(), -1);
    QVERIFY(!boxes.boxes().isEmpty());
    QCOMPARE(boxes.boxes().at(0).title, QStringLiteral("No event configuration detected"));
    QCOMPARE(boxes.boxes().at(0).icon, QMessageBox::Critical);
    QCOMPARE(boxes.boxes().at(0).text,
             QStringLiteral("The directory \"%1\" does not exist or is empty.\n"
                            "The application cannot continue and will be terminated.")
                 .arg(m_machine.catalogPath()));
}

void LoadTest::aDuplicateEventEndsTheApplicationAndKeepsTheModels()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(QFile::copy(m_machine.catalogPath() + QStringLiteral("/first/login.json"),
                        m_machine.catalogPath() + QStringLiteral("/last/login.json")));
    const BoxAnswerer boxes;
    QTimer::singleShot(0, page.get(), [&page] { page->load_p(); });
    QTimer::singleShot(5000, page.get(), [] { QCoreApplication::exit(99); });
    QCOMPARE(QCoreApplication::exec(), -1);
    QVERIFY(!boxes.boxes().isEmpty());
    QCOMPARE(boxes.boxes().at(0).title, QStringLiteral("Event configuration is incorrect."));
    QCOMPARE(
        boxes.boxes().at(0).text,
        QStringLiteral(
            "Check if there are no duplicate event_id in event configuration(even in different groups).\n"
            "The application cannot continue and will be terminated."));
    QCOMPARE(page->workingModel()->rowCount(), 3);
}

void LoadTest::changeDetectionStopsAtTheFirstGroupThatDiffers()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    m_machine.toggle(*page, QStringLiteral("watch"));
    QVERIFY(!page->compareModels());
    QVERIFY(m_machine.node(page->workingModel(), QStringLiteral("login"))->overlay);
    QVERIFY(!m_machine.node(page->workingModel(), QStringLiteral("watch"))->overlay);
}

void LoadTest::togglingBackCountsAsUnchanged()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QSignalSpy changes(page.get(), qOverload<bool>(&KCModule::changed));
    m_machine.toggle(*page, QStringLiteral("plain"));
    m_machine.toggle(*page, QStringLiteral("plain"));
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes.at(0).at(0).toBool(), true);
    QCOMPARE(changes.at(1).at(0).toBool(), false);
    QVERIFY(m_machine.node(page->workingModel(), QStringLiteral("plain"))
                ->overlay); // marks stay until the next load
}

void LoadTest::comparingIndexesMarksWhatDiffers()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("7"));
    const QModelIndex reference
        = page->referenceModel()->indexOf(m_machine.node(page->referenceModel(), QStringLiteral("watch")));
    EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QVERIFY(!page->compareIndexes(reference, page->workingModel()->indexOf(event)));
    QVERIFY(event->member(QLatin1String("interval"))->overlay);
    QVERIFY(!event->overlay);
    QVERIFY(page->compareIndexes(reference.siblingAtColumn(1), page->workingModel()->indexOf(event, 1)));
}

void LoadTest::everyExternalChangeReloadsThePage()
{
    m_machine.write(m_machine.settingsPath(), "{}");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
    for (int i = 1; i <= 10; ++i) {
        m_machine.replace(m_machine.settingsPath(),
                          QStringLiteral(R"({"watch": {"enabled": "0", "interval": "%1"}})").arg(i).toUtf8());
        QTRY_COMPARE(resets.size(), i);
        QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("watch"), {QStringLiteral("interval")})
                     ->data(1)
                     .toString(),
                 QString::number(i));
    }
    QCOMPARE(page->workingModel()->rowCount(), page->referenceModel()->rowCount());
    QVERIFY(page->compareModels());
}

void LoadTest::aFileThatAppearsLaterIsWatched()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
    m_machine.write(m_machine.settingsPath(), R"({"plain": {"enabled": "1"}})");
    QTRY_COMPARE(m_machine.node(page->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Checked));
    m_machine.replace(m_machine.settingsPath(), R"({"plain": {"enabled": "0"}})");
    QTRY_COMPARE(m_machine.node(page->workingModel(), QStringLiteral("plain"))->checkState,
                 int(Qt::Unchecked));
    QVERIFY(resets.size() >= 2);
}

void LoadTest::anExternalChangeDropsUnsavedEditsAndSaysSo()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    QSignalSpy changes(page.get(), qOverload<bool>(&KCModule::changed));
    m_machine.write(m_machine.settingsPath(), R"({"watch": {"enabled": "1"}})");
    QTRY_COMPARE(m_machine.node(page->workingModel(), QStringLiteral("watch"))->checkState, int(Qt::Checked));
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Unchecked));
    QVERIFY(!changes.isEmpty());
    QCOMPARE(changes.last().at(0).toBool(), false);
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QVERIFY(bar->isVisibleTo(page.get()));
    QVERIFY2(bar->text().contains(m_machine.settingsPath()), qPrintable(bar->text()));
    QVERIFY(bar->text().contains(QStringLiteral("not saved are gone")));
}

void LoadTest::whatOnePageAppliesAnotherShowsAndSaysWhy()
{
    const auto one = m_machine.openPage();
    const auto other = m_machine.openPage();
    QVERIFY(one && other);
    m_machine.toggle(*one, QStringLiteral("plain"));
    one->save();
    QTRY_COMPARE(m_machine.node(other->workingModel(), QStringLiteral("plain"))->checkState,
                 int(Qt::Checked));
    const auto *bar = other->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QTRY_VERIFY(bar->isVisibleTo(other.get()));
    QVERIFY2(bar->text().contains(m_machine.settingsPath()), qPrintable(bar->text()));
    QVERIFY(!bar->text().contains(QStringLiteral("gone"))); // nothing was lost there
    QVERIFY(other->compareModels());
    QVERIFY(!one->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisibleTo(one.get()));
}

void LoadTest::whatOnePageAppliesTakesTheEditsOfAnotherAndSaysSo()
{
    const auto one = m_machine.openPage();
    const auto other = m_machine.openPage();
    QVERIFY(one && other);
    m_machine.toggle(*other, QStringLiteral("watch"));
    m_machine.toggle(*one, QStringLiteral("plain"));
    m_machine.type(*one, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("60"));
    QSignalSpy changes(other.get(), qOverload<bool>(&KCModule::changed));
    one->save();
    const auto *bar = other->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QTRY_VERIFY(bar->isVisibleTo(other.get()));
    QVERIFY2(bar->text().contains(m_machine.settingsPath()), qPrintable(bar->text()));
    QVERIFY2(bar->text().contains(QStringLiteral("not saved are gone")), qPrintable(bar->text()));
    QCOMPARE(bar->messageType(), KMessageWidget::Warning);
    CheckableTreeModel *shown = other->workingModel();
    QCOMPARE(m_machine.node(shown, QStringLiteral("plain"))->checkState, int(Qt::Checked));
    QCOMPARE(m_machine.node(shown, QStringLiteral("watch"))->checkState, int(Qt::Unchecked));
    QCOMPARE(m_machine.node(shown, QStringLiteral("watch"), {QStringLiteral("interval")})->data(1).toString(),
             QStringLiteral("60"));
    QCOMPARE(changes.last().at(0).toBool(), false);
    // Applied in turn: nobody asks whether to replace what is known.
    m_machine.toggle(*other, QStringLiteral("watch"));
    other->save();
    QTRY_COMPARE(m_machine.node(one->workingModel(), QStringLiteral("watch"))->checkState, int(Qt::Checked));
    QCOMPARE(m_machine.node(one->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Checked));
}

void LoadTest::aDamagedFileDoesNotHideThatEditsAreGone()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    m_machine.write(m_machine.settingsPath(), "{ damaged");
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QTRY_VERIFY(bar->isVisibleTo(page.get()));
    QVERIFY2(bar->text().contains(QStringLiteral("could not be read")), qPrintable(bar->text()));
    QVERIFY2(bar->text().contains(QStringLiteral("not saved are gone")), qPrintable(bar->text()));
    QCOMPARE(bar->messageType(), KMessageWidget::Warning);
}

void LoadTest::ownSavesCauseNoReload()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    for (int i = 0; i < 3; ++i) {
        m_machine.toggle(*page, QStringLiteral("plain"));
        page->save();
        QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
        QTest::qWait(400); // long enough for a notification that is late
        QCOMPARE(resets.size(), 0);
    }
    // And the watch still works afterwards.
    QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
    m_machine.replace(m_machine.settingsPath(), "{}");
    QTRY_COMPARE(resets.size(), 1);
}

void LoadTest::aClickOnASwitchInTheViewTurnsItAlone()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login")); // off
    QTreeView *view = m_machine.view(*page);
    view->expandAll();
    const QModelIndex cell = PageFixture::shown(
        *page, QStringLiteral("login"), {QStringLiteral("extend-message-params"), QStringLiteral("tty")}, 1);
    QVERIFY(cell.isValid());
    view->scrollTo(cell);
    QCOMPARE(cell.data().toString(), QStringLiteral("Off"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell).center());
    QCOMPARE(cell.data().toString(), QStringLiteral("On"));
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("login"))->checkState, int(Qt::Unchecked));
    view->setCurrentIndex(cell);
    QTest::keyClick(view, Qt::Key_Space);
    QCOMPARE(cell.data().toString(), QStringLiteral("Off"));
}

void LoadTest::aRefusedValueIsExplainedInTheMessageBar()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    view->expandAll();
    const QModelIndex cell
        = PageFixture::shown(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, 1);
    view->scrollTo(cell);
    view->edit(cell);
    auto *editor = view->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText(QStringLiteral("soon"));
    view->setCurrentIndex(view->model()->index(0, 0)); // leaves the editor
    editor->clearFocus();
    QTRY_VERIFY(page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisibleTo(page.get()));
    QCOMPARE(cell.data().toString(), QStringLiteral("30"));
    QVERIFY(page->compareModels());
    // The next change that is taken takes the message away.
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("60"));
    QVERIFY(!page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisibleTo(page.get()));
}

void LoadTest::aLoadListsTheUsersAndTheGroupsOnceAndSideBySide()
{
    // Each listing waits for the other one to have been started.
    const QString getent = m_machine.root() + QStringLiteral("/bin/getent");
    m_machine.write(getent,
                    "#!/bin/sh\n"
                    "cd \"$(dirname \"$0\")\" || exit 1\n"
                    "echo \"$1\" >> listings\n"
                    "other=group; [ \"$1\" = group ] && other=passwd\n"
                    "i=0\n"
                    "until grep -q $other listings; do\n"
                    "  i=$((i+1)); [ $i -gt 80 ] && { echo alone >> listings; exit 1; }\n"
                    "  sleep 0.05\n"
                    "done\n"
                    "echo root:x\n");
    QVERIFY(QFile::setPermissions(getent, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const auto listings = [this] {
        QList<QByteArray> lines
            = m_machine.read(m_machine.root() + QStringLiteral("/bin/listings")).trimmed().split('\n');
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QCOMPARE(listings(), QList<QByteArray>({"group", "passwd"}));
    page->load_p();
    QCOMPARE(listings(), QList<QByteArray>({"group", "group", "passwd", "passwd"}));
    QVERIFY(QFile::remove(getent));
}

void LoadTest::aChangeMadeDuringALoadIsShownAfterwards()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    // The accounts are listed while the settings are read, which takes some milliseconds; the load waits for
    // the list.
    const QString getent = m_machine.root() + QStringLiteral("/bin/getent");
    m_machine.write(getent,
                    "#!/bin/sh\n"
                    "dir=${0%/*}\n"
                    "sleep 1\n"
                    "mkdir \"$dir/changed\" 2>/dev/null && echo '{\"plain\": {\"enabled\": \"1\"}}' > \""
                        + m_machine.settingsPath().toUtf8() + "\"\necho root:x\n");
    QVERIFY(QFile::setPermissions(getent, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    page->load();
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Unchecked));
    QTRY_COMPARE(m_machine.node(page->workingModel(), QStringLiteral("plain"))->checkState, int(Qt::Checked));
    QVERIFY(QFile::remove(getent));
}

void LoadTest::theEventsAreOnTheDisplayBeforeTheServiceManagerAnswers()
{
    // Answers when it is allowed to, at last.
    const QString manager = m_machine.root() + QStringLiteral("/bin/systemctl");
    m_machine.write(
        manager,
        "#!/bin/sh\n"
        "i=0\n"
        "until [ -e \"$(dirname \"$0\")/answer\" ] || [ $i -gt 200 ]; do i=$((i+1)); sleep 0.05; done\n"
        "exit 0\n");
    AdminEventsModule page(nullptr, {});
    auto *button = PageFixture::serviceButton(page);
    const auto *label = PageFixture::serviceLabel(page);
    page.show();
    QTRY_VERIFY(page.workingModel()->rowCount() > 0);
    QVERIFY(!page.isBusy());
    QVERIFY(label->text().isEmpty());
    QVERIFY(!button->isEnabled());
    m_machine.write(m_machine.root() + QStringLiteral("/bin/answer"), {});
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service is running."));
    QVERIFY(button->isEnabled());
    QCOMPARE(label->toolTip(), QStringLiteral("auditd: on, syslog-ng: on"));
}

void LoadTest::theServiceButtonFollowsTheService()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *button = PageFixture::serviceButton(*page);
    auto *label = PageFixture::serviceLabel(*page);
    QCOMPARE(label->text(), QStringLiteral("Logging service is running."));
    QCOMPARE(button->text(), QStringLiteral("Stop logging service"));
    QVERIFY(button->isEnabled());
    button->click();
    QVERIFY(!button->isEnabled());
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service stopped."));
    QCOMPARE(button->text(), QStringLiteral("Start logging service"));
    QVERIFY(button->isEnabled());
    button->click();
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service is running."));
    QVERIFY(m_machine.serviceCalls().contains(QStringLiteral("stop syslog-ng")));
    QVERIFY(m_machine.serviceCalls().contains(QStringLiteral("start syslog-ng")));
    QVERIFY(!label->toolTip().isEmpty());
}

void LoadTest::aFailedServiceActionIsShownAndTheButtonWorksAgain()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(m_machine.bus->setAllowed(false));
    auto *button = PageFixture::serviceButton(*page);
    const BoxAnswerer boxes;
    button->click();
    QTRY_COMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).title, QStringLiteral("org.nivra.kcm.adminevents.loggingservicectl"));
    QVERIFY(!boxes.boxes().at(0).text.trimmed().isEmpty());
    QTRY_VERIFY(button->isEnabled());
}

QTEST_MAIN(LoadTest)

#include "loadtest.moc"
