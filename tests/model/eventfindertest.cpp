// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "finderfixture.h"

#include <QAction>
#include <QSignalSpy>

class EventFinderTest : public QObject, private FinderFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { show(); }
    void cleanup() { close(); }

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
    void matchesAreShownInOpenGroups();
    void manyMatchesAreLaidOutAtOnce();
    void openedEventsStayOpenWhileSearching();
    void escapeEmptiesTheFieldOnly();
    void focusSelectsTheText();
    void newTreeIsSearchedAtOnce();
};

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
