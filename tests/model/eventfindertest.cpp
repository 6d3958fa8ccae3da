// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <eventfinder.h>
#include <eventsproxymodel.h>

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
/// Counts how often it lays out its rows.
class CountingView : public QTreeView
{
public:
    int layouts = 0;

protected:
    void updateGeometries() override
    {
        ++layouts;
        QTreeView::updateGeometries();
    }
};
} // namespace

class EventFinderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void modesAreListedInTheirOrder();
    void everyControlCanBeNamedAndReached();
    void buttonsRestUntilSomethingIsFound();
    void typedTextFiltersAndSelectsTheFirstRow();
    void textWithoutMatchIsRedUntilItMatches();
    void emptiedFieldShowsEverythingWithoutSelection();
    void ioAndIeFindEachOther_data();
    void ioAndIeFindEachOther();
    void chosenModeFilters_data();
    void chosenModeFilters();
    void changedModeShowsWhetherItMatches();
    void changedModeWithoutTextKeepsTheSelection();
    void stepsFollowTheTable_data();
    void stepsFollowTheTable();
    void stepIntoAGroupWithoutEventsTakesTheGroup();
    void stepWithoutSelectionTakesTheFirstRow();
    void stepStartsFromTheFirstSelectedCellInAnyColumn();
    void stepsWithinTheMatchesOnly();
    void selectedRowIsOpenCurrentAndInSight();
    void matchesAreShownInOpenGroups();
    void manyMatchesAreLaidOutAtOnce();
    void openedEventsStayOpenWhileSearching();
    void escapeEmptiesTheFieldOnly();
    void focusSelectsTheText();
    void newTreeIsSearchedAtOnce();

private:
    [[nodiscard]] QLineEdit *field() const
    {
        return m_finder->findChild<QLineEdit *>(QStringLiteral("eventSearch"));
    }
    [[nodiscard]] QComboBox *modes() const
    {
        return m_finder->findChild<QComboBox *>(QStringLiteral("searchFilter"));
    }
    [[nodiscard]] QToolButton *previous() const
    {
        return m_finder->findChild<QToolButton *>(QStringLiteral("searchPrev"));
    }
    [[nodiscard]] QToolButton *next() const
    {
        return m_finder->findChild<QToolButton *>(QStringLiteral("searchNext"));
    }
    void type(const QString &text) const
    {
        field()->setFocus();
        field()->selectAll();
        if (text.isEmpty()) {
            QTest::keyClick(field(), Qt::Key_Delete);
        } else {
            // One key after the other, except that the test library has no keys for Cyrillic letters.
            for (const QChar letter : text) {
                QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
                QApplication::sendEvent(field(), &press);
            }
        }
    }
    static void press(QToolButton *button) { QTest::mouseClick(button, Qt::LeftButton); }
    [[nodiscard]] bool isRed() const { return field()->palette().color(QPalette::Text) == QColor(Qt::red); }
    [[nodiscard]] static QString nativeName(const QModelIndex &index)
    {
        return index.data(CheckableTreeModel::NativeNameRole).toString();
    }
    /// The names of the selected rows, each as "group/event/parameter".
    [[nodiscard]] QString selected() const
    {
        QStringList rows;
        const QModelIndexList indexes = m_view->selectionModel()->selectedRows();
        for (QModelIndex index : indexes) {
            QString path = nativeName(index);
            while ((index = index.parent()).isValid()) {
                path.prepend(nativeName(index) + QLatin1Char('/'));
            }
            rows.append(path);
        }
        return rows.join(QLatin1Char(' '));
    }
    [[nodiscard]] QModelIndex shownAt(const QString &path) const
    {
        QModelIndex index;
        const QStringList names = path.split(QLatin1Char('/'));
        for (const QString &name : names) {
            QModelIndex found;
            for (int row = 0; row < m_proxy->rowCount(index); ++row) {
                const QModelIndex child = m_proxy->index(row, 0, index);
                found = nativeName(child) == name ? child : found;
            }
            index = found;
        }
        return index;
    }
    void select(const QString &path, int column = 0) const
    {
        const QModelIndex index = shownAt(path);
        QVERIFY2(index.isValid(), qPrintable(path));
        m_view->expand(index.parent());
        m_view->selectionModel()->select(index.siblingAtColumn(column), QItemSelectionModel::ClearAndSelect);
    }
    static std::unique_ptr<EventTreeItem> sampleTree();

    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventsProxyModel> m_proxy;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<QWidget> m_window;
    CountingView *m_view = nullptr;
    EventFinder *m_finder = nullptr;
};

std::unique_ptr<EventTreeItem> EventFinderTest::sampleTree()
{
    auto root = TreeMaker::root();
    EventTreeItem *files = TreeMaker::group(root.get(), "files", "Watched things");
    EventTreeItem *open = TreeMaker::event(files, "open", "0");
    open->localizedName = QStringLiteral("File opened");
    TreeMaker::parameter(open, "mode", "x");
    TreeMaker::event(files, "rotate", "0")->localizedName = QStringLiteral("Rotation");
    EventTreeItem *logins = TreeMaker::group(root.get(), "sessions", "Logins");
    EventTreeItem *enter = TreeMaker::event(logins, "enter", "1");
    enter->localizedName = QStringLiteral("Учёт входов");
    EventTreeItem *leave = TreeMaker::event(logins, "leave", "0");
    leave->localizedName = QStringLiteral("УЧЕТ ВЫХОДОВ");
    TreeMaker::parameter(leave, "tty", "x");
    EventTreeItem *last = TreeMaker::group(root.get(), "time", "Clock");
    TreeMaker::event(last, "set", "1")->localizedName = QStringLiteral("Clock set");
    TreeMaker::event(last, "zone", "0")->localizedName = QStringLiteral("Zone changed");
    return root;
}

void EventFinderTest::init()
{
    m_model = std::make_unique<ShownModel>(sampleTree());
    m_proxy = std::make_unique<EventsProxyModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_proxy.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_proxy->setSourceModel(&**m_model);
    m_window = std::make_unique<QWidget>();
    m_view = new CountingView;
    m_view->setModel(m_proxy.get());
    m_view->setAnimated(false);
    m_finder = new EventFinder(m_view, &**m_model, m_proxy.get(), nullptr);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->addWidget(m_finder);
    layout->addWidget(m_view);
    m_window->resize(600, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void EventFinderTest::cleanup()
{
    m_window.reset();
    m_tester.reset();
    m_proxy.reset();
    m_model.reset();
}

void EventFinderTest::modesAreListedInTheirOrder()
{
    QStringList texts;
    QVector<int> values;
    for (int row = 0; row < modes()->count(); ++row) {
        texts.append(modes()->itemText(row));
        values.append(modes()->itemData(row).toInt());
    }
    QCOMPARE(texts,
             (QStringList{QStringLiteral("All"), QStringLiteral("Event ID"), QStringLiteral("Event name"),
                          QStringLiteral("Group ID"), QStringLiteral("Group name")}));
    QCOMPARE(values, (QVector<int>{0, 2, 1, 4, 3}));
    QCOMPARE(modes()->currentIndex(), 0);
    QCOMPARE(modes()->toolTip(), QStringLiteral("Search filter"));
}

void EventFinderTest::everyControlCanBeNamedAndReached()
{
    const QList<QWidget *> controls{modes(), field(), previous(), next()};
    for (const QWidget *control : controls) {
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    }
    QCOMPARE(field()->placeholderText(), QStringLiteral("Event search"));
    QCOMPARE(previous()->toolTip(), previous()->accessibleName());
    QCOMPARE(next()->toolTip(), next()->accessibleName());
    QVERIFY(previous()->toolTip() != next()->toolTip());
    QVERIFY(!field()->actions().isEmpty());

    type(QStringLiteral("e"));
    modes()->setFocus();
    QStringList chain;
    for (int step = 0; step < controls.size(); ++step) {
        chain.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(chain,
             (QStringList{QStringLiteral("searchFilter"), QStringLiteral("eventSearch"),
                          QStringLiteral("searchPrev"), QStringLiteral("searchNext")}));
    QCOMPARE(QApplication::focusWidget(), m_view);
    next()->setFocus();
    QTest::keyClick(next(), Qt::Key_Space);
    QCOMPARE(selected(), QStringLiteral("sessions"));
}

void EventFinderTest::buttonsRestUntilSomethingIsFound()
{
    QVERIFY(!previous()->isEnabled());
    QVERIFY(!next()->isEnabled());
    type(QStringLiteral("o"));
    QVERIFY(previous()->isEnabled());
    QVERIFY(next()->isEnabled());
    type(QStringLiteral("zzz"));
    QVERIFY(!previous()->isEnabled());
    QVERIFY(!next()->isEnabled());
    type(QStringLiteral("o"));
    QVERIFY(next()->isEnabled());
    type(QString());
    QVERIFY(!previous()->isEnabled());
    QVERIFY(!next()->isEnabled());
}

void EventFinderTest::typedTextFiltersAndSelectsTheFirstRow()
{
    type(QStringLiteral("leave"));
    QCOMPARE(m_proxy->rowCount(), 1);
    QCOMPARE(selected(), QStringLiteral("sessions"));
    QVERIFY(m_view->isExpanded(m_proxy->index(0, 0)));
    QCOMPARE(m_proxy->rowCount(m_proxy->index(0, 0)), 1);
    // The whole row is selected, the value as well.
    QVERIFY(m_view->selectionModel()->isSelected(m_proxy->index(0, 1)));
}

void EventFinderTest::textWithoutMatchIsRedUntilItMatches()
{
    const QColor normal = field()->palette().color(QPalette::Text);
    QVERIFY(!isRed());
    type(QStringLiteral("opx"));
    QVERIFY(isRed());
    QCOMPARE(m_proxy->rowCount(), 0);
    QCOMPARE(selected(), QString());
    QVERIFY(!field()->accessibleDescription().isEmpty());
    QTest::keyClick(field(), Qt::Key_Backspace);
    QCOMPARE(field()->text(), QStringLiteral("op"));
    QCOMPARE(field()->palette().color(QPalette::Text), normal);
    QVERIFY(field()->accessibleDescription().isEmpty());
    QCOMPARE(selected(), QStringLiteral("files"));
    type(QStringLiteral("opx"));
    type(QString());
    QCOMPARE(field()->palette().color(QPalette::Text), normal);
}

void EventFinderTest::emptiedFieldShowsEverythingWithoutSelection()
{
    type(QStringLiteral("enter"));
    QCOMPARE(m_proxy->rowCount(), 1);
    type(QString());
    QCOMPARE(m_proxy->rowCount(), 3);
    QCOMPARE(selected(), QString());
}

void EventFinderTest::ioAndIeFindEachOther_data()
{
    QTest::addColumn<QString>("query");
    for (const char *query : {"учёт", "учет", "УЧЁТ", "УЧЕТ", "уЧЁт"}) {
        QTest::newRow(query) << QString::fromUtf8(query);
    }
}

void EventFinderTest::ioAndIeFindEachOther()
{
    QFETCH(QString, query);
    type(query);
    QCOMPARE(field()->text(), query);
    QCOMPARE(m_proxy->rowCount(), 1);
    QCOMPARE(m_proxy->rowCount(m_proxy->index(0, 0)), 2);
}

void EventFinderTest::chosenModeFilters_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("shown");
    const auto row = [](const char *mode, const char *query, const QStringList &shown) {
        QTest::addRow("%s: %s", mode, query) << QString::fromUtf8(mode) << QString::fromUtf8(query) << shown;
    };
    row("All", "clock", {QStringLiteral("time/set"), QStringLiteral("time/zone")});
    row("Event ID", "ENTER", {QStringLiteral("sessions/enter")});
    row("Event ID", "clock", {});
    row("Event name", "clock", {QStringLiteral("time/set")});
    row("Event name", "zone", {QStringLiteral("time/zone")});
    row("Group ID", "sess", {QStringLiteral("sessions/enter"), QStringLiteral("sessions/leave")});
    row("Group ID", "clock", {});
    row("Group name", "clock", {QStringLiteral("time/set"), QStringLiteral("time/zone")});
    row("Group name", "time", {});
}

void EventFinderTest::chosenModeFilters()
{
    QFETCH(QString, mode);
    QFETCH(QString, query);
    QFETCH(QStringList, shown);
    modes()->setFocus();
    while (modes()->currentText() != mode && modes()->currentIndex() + 1 < modes()->count()) {
        QTest::keyClick(modes(), Qt::Key_Down);
    }
    QCOMPARE(modes()->currentText(), mode);
    type(query);
    QStringList rows;
    for (int group = 0; group < m_proxy->rowCount(); ++group) {
        const QModelIndex parent = m_proxy->index(group, 0);
        for (int event = 0; event < m_proxy->rowCount(parent); ++event) {
            rows.append(nativeName(parent) + QLatin1Char('/') + nativeName(m_proxy->index(event, 0, parent)));
        }
    }
    QCOMPARE(rows, shown);
    QCOMPARE(isRed(), shown.isEmpty());
}

void EventFinderTest::changedModeShowsWhetherItMatches()
{
    type(QStringLiteral("leave"));
    QVERIFY(next()->isEnabled());
    modes()->setFocus();
    QTest::keyClick(modes(), Qt::Key_End);
    QCOMPARE(modes()->currentText(), QStringLiteral("Group name"));
    QVERIFY(isRed());
    QVERIFY(!next()->isEnabled());
    QVERIFY(!previous()->isEnabled());
    QTest::keyClick(modes(), Qt::Key_Home);
    QVERIFY(!isRed());
    QVERIFY(next()->isEnabled());
    QCOMPARE(selected(), QStringLiteral("sessions"));
}

void EventFinderTest::changedModeWithoutTextKeepsTheSelection()
{
    select(QStringLiteral("sessions/leave"));
    modes()->setFocus();
    QTest::keyClick(modes(), Qt::Key_Down);
    QCOMPARE(selected(), QString()); // one cell is no row
    QCOMPARE(m_view->selectionModel()->selectedIndexes(),
             QModelIndexList{shownAt(QStringLiteral("sessions/leave"))});
    QVERIFY(!next()->isEnabled());
}

void EventFinderTest::stepsFollowTheTable_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("forwards");
    QTest::addColumn<QString>("backwards");
    const auto row = [](const char *from, const char *forwards, const char *backwards) {
        QTest::newRow(from) << QString::fromUtf8(from) << QString::fromUtf8(forwards)
                            << QString::fromUtf8(backwards);
    };
    row("files", "sessions", "time");
    row("sessions", "time", "files");
    row("time", "files/open", "sessions");
    row("files/open", "files/rotate", "files/open"); // no way back from the very first
    row("files/rotate", "sessions/enter", "files/open");
    row("sessions/enter", "sessions/leave", "files/rotate");
    row("sessions/leave", "time/set", "sessions/enter");
    row("time/set", "time/zone", "sessions/leave");
    row("time/zone", "time/zone", "time/set"); // no way on from the very last
    row("files/open/enabled", "files/open/mode", "files/open/enabled");
    row("files/open/mode", "files/rotate/enabled", "files/open/enabled");
    row("files/rotate/enabled", "files/rotate/enabled", "files/open/mode");
    row("sessions/leave/tty", "sessions/leave/tty", "sessions/leave/enabled");
}

void EventFinderTest::stepsFollowTheTable()
{
    QFETCH(QString, from);
    QFETCH(QString, forwards);
    QFETCH(QString, backwards);
    // What every row matches leaves the tree whole and the buttons enabled.
    type(QStringLiteral("e"));
    QCOMPARE(m_proxy->rowCount(), 3);
    for (const auto &[button, expected] : {qMakePair(next(), forwards), qMakePair(previous(), backwards)}) {
        const QModelIndex start = shownAt(from);
        QVERIFY2(start.isValid(), qPrintable(from));
        m_finder->selectIndex(start, start.siblingAtColumn(1));
        QCOMPARE(selected(), from);
        press(button);
        QCOMPARE(selected(), expected);
        QVERIFY(button->isEnabled());
    }
}

void EventFinderTest::stepIntoAGroupWithoutEventsTakesTheGroup()
{
    auto root = TreeMaker::root();
    TreeMaker::group(root.get(), "void1");
    TreeMaker::event(TreeMaker::group(root.get(), "group"), "event", "0");
    TreeMaker::group(root.get(), "void2");
    (*m_model)->setRootItem(root.release());
    m_finder->searchEvent(QStringLiteral("o"));
    QCOMPARE(m_proxy->rowCount(), 3);
    select(QStringLiteral("group/event"));
    m_finder->selectNextEvent();
    QCOMPARE(selected(), QStringLiteral("void2"));
    m_finder->selectNextEvent();
    QCOMPARE(selected(), QStringLiteral("void1"));
    select(QStringLiteral("group/event"));
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QStringLiteral("void1"));
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QStringLiteral("void2"));
}

void EventFinderTest::stepWithoutSelectionTakesTheFirstRow()
{
    type(QStringLiteral("e"));
    for (QToolButton *button : {previous(), next()}) {
        m_view->clearSelection();
        press(button);
        QCOMPARE(selected(), QStringLiteral("files"));
    }
    // Without any row nothing happens.
    type(QStringLiteral("zzz"));
    m_finder->selectNextEvent();
    m_finder->selectPrevEvent();
    QCOMPARE(selected(), QString());
}

void EventFinderTest::stepStartsFromTheFirstSelectedCellInAnyColumn()
{
    type(QStringLiteral("e"));
    select(QStringLiteral("sessions/enter"), 1);
    press(next());
    QCOMPARE(selected(), QStringLiteral("sessions/leave"));
    select(QStringLiteral("sessions/leave"), 1);
    press(previous());
    QCOMPARE(selected(), QStringLiteral("sessions/enter"));
}

void EventFinderTest::stepsWithinTheMatchesOnly()
{
    type(QStringLiteral("ed"));
    // "File opened", "Watched things" as a whole, "Zone changed"
    QCOMPARE(selected(), QStringLiteral("files"));
    QStringList path;
    for (int step = 0; step < 5; ++step) {
        press(next());
        path.append(selected());
    }
    QCOMPARE(
        path,
        (QStringList{QStringLiteral("time"), QStringLiteral("files/open"), QStringLiteral("files/rotate"),
                     QStringLiteral("time/zone"), QStringLiteral("time/zone")}));
}

void EventFinderTest::selectedRowIsOpenCurrentAndInSight()
{
    type(QStringLiteral("e"));
    m_view->collapseAll();
    const QModelIndex leave = shownAt(QStringLiteral("sessions/leave"));
    m_finder->selectIndex(leave, leave.siblingAtColumn(1));
    QVERIFY(m_view->isExpanded(leave));
    QVERIFY(m_view->isExpanded(leave.parent()));
    QCOMPARE(m_view->currentIndex(), leave);
    QVERIFY(m_view->viewport()->rect().contains(m_view->visualRect(leave).center()));
    select(QStringLiteral("time"));
    press(next());
    QCOMPARE(selected(), QStringLiteral("files/open"));
    QVERIFY(m_view->viewport()->rect().contains(
        m_view->visualRect(shownAt(QStringLiteral("files/open"))).center()));
}

void EventFinderTest::matchesAreShownInOpenGroups()
{
    type(QStringLiteral("zzz"));
    type(QStringLiteral("o"));
    QCOMPARE(m_proxy->rowCount(), 3);
    for (int row = 0; row < 3; ++row) {
        QVERIFY(m_view->isExpanded(m_proxy->index(row, 0)));
    }
    type(QString());
    for (int row = 0; row < 3; ++row) {
        QVERIFY(m_view->isExpanded(m_proxy->index(row, 0)));
    }
}

void EventFinderTest::manyMatchesAreLaidOutAtOnce()
{
    auto root = TreeMaker::root();
    constexpr int groups = 60;
    for (int number = 0; number < groups; ++number) {
        EventTreeItem *group = TreeMaker::group(root.get(), "group");
        for (const char *name : {"one", "two", "three"}) {
            TreeMaker::event(group, name, "0");
        }
    }
    (*m_model)->setRootItem(root.release());
    m_view->setUniformRowHeights(true);
    for (const char *text : {"zzz", "o", "tw", "e", "two"}) {
        m_finder->searchEvent(QStringLiteral("zzz"));
        QCoreApplication::processEvents();
        m_view->layouts = 0;
        m_finder->searchEvent(QString::fromUtf8(text));
        QCoreApplication::processEvents();
        QVERIFY2(m_view->layouts < groups / 4, qPrintable(QString::number(m_view->layouts)));
    }
    QCOMPARE(m_proxy->rowCount(), groups);
    QVERIFY(m_view->isExpanded(m_proxy->index(groups - 1, 0)));
}

void EventFinderTest::openedEventsStayOpenWhileSearching()
{
    m_view->expandToDepth(0);
    m_view->expand(shownAt(QStringLiteral("sessions/leave")));
    type(QStringLiteral("leave"));
    QVERIFY(m_view->isExpanded(shownAt(QStringLiteral("sessions/leave"))));
    type(QString());
    QVERIFY(m_view->isExpanded(shownAt(QStringLiteral("sessions/leave"))));
    QVERIFY(!m_view->isExpanded(shownAt(QStringLiteral("sessions/enter"))));
}

void EventFinderTest::escapeEmptiesTheFieldOnly()
{
    QWidget *window = m_window.get();
    struct KeyCounter : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::KeyPress ? 1 : 0;
            return false;
        }
        int count = 0;
    } keys;
    window->installEventFilter(&keys);
    type(QStringLiteral("leave"));
    const int before = keys.count;
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(field()->text(), QString());
    QCOMPARE(m_proxy->rowCount(), 3);
    QCOMPARE(keys.count, before);
    // With nothing to empty, the window gets the key.
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(keys.count, before + 1);
    window->removeEventFilter(&keys);
}

void EventFinderTest::focusSelectsTheText()
{
    type(QStringLiteral("leave"));
    m_view->setFocus();
    m_finder->focusSearch();
    QCOMPARE(QApplication::focusWidget(), field());
    QCOMPARE(field()->selectedText(), QStringLiteral("leave"));
    m_view->setFocus();
    field()->actions().constFirst()->trigger();
    QCOMPARE(QApplication::focusWidget(), field());
}

void EventFinderTest::newTreeIsSearchedAtOnce()
{
    type(QStringLiteral("later"));
    QVERIFY(isRed());
    auto root = TreeMaker::root();
    TreeMaker::event(TreeMaker::group(root.get(), "g"), "later", "0");
    (*m_model)->setRootItem(root.release());
    QVERIFY(!isRed());
    QVERIFY(next()->isEnabled());
    press(next());
    QCOMPARE(selected(), QStringLiteral("g"));
    (*m_model)->setRootItem(sampleTree().release());
    QVERIFY(isRed());
    QVERIFY(!next()->isEnabled());
}

QTEST_MAIN(EventFinderTest)

#include "eventfindertest.moc"
