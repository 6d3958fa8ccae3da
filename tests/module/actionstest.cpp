// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <eventtreeitem.h>

#include <QDialog>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

/// What mouse and keyboard do on the page.
class ActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void withoutASelectionTheMenuOnlyOpensAndCloses();
    void anEventHasItsOwnActions();
    void groupsAndParametersHaveNoEventActions();
    void collapseAllAndExpandAllStopAtTheGroups();
    void aResetEventHasItsCatalogValues();
    void aResetFollowedByApplyRemovesNothingElse();
    void aParameterThatTheCatalogLacksKeepsItsValueOnReset();
    void accountsAreResetWithTheirText();
    void theMenuResetsTheEventThatWasSelectedNotAnotherOfThatName();
    void theMenuOutlivesAReload();
    void aClickSelectsTheCellAndTheValue();
    void aRowWithoutNeighbourIsNotSelectedAnew();
    void arrowKeysSelectAsAClickDoes();
    void enterPressesTheFocusedButtonOnly();
    void aDoubleClickBesideTheValueOpensNothing();
    void aResetTakesTheIconOfTheCatalogBack();

private:
    void addEvent(const QString &id, const QJsonObject &members);
    static QStringList menuTexts(const AdminEventsModule &page, const QPoint &position);
    static QPoint centre(const AdminEventsModule &page, const QModelIndex &index);
    static void rightClick(const AdminEventsModule &page, const QPoint &position);
    static QMenu *menu();
    static bool hasTheme() { return !QIcon::fromTheme(QStringLiteral("edit-copy")).isNull(); }

    PageFixture m_machine;
};

void ActionsTest::initTestCase()
{
    QIcon::setThemeName(QStringLiteral("breeze"));
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void ActionsTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

void ActionsTest::addEvent(const QString &id, const QJsonObject &members)
{
    QJsonObject event{{QStringLiteral("event-group"), QStringLiteral("last")},
                      {QStringLiteral("enabled"), QStringLiteral("0")},
                      {QStringLiteral("message-params"),
                       QJsonObject{{QStringLiteral("message_id"), id},
                                   {QStringLiteral("name_en"), QStringLiteral("Added")}}}};
    for (auto it = members.begin(); it != members.end(); ++it) {
        event.insert(it.key(), *it);
    }
    PageFixture::write(QStringLiteral("%1/last/%2.json").arg(m_machine.catalogPath(), id),
                       QJsonDocument(event).toJson());
}

QMenu *ActionsTest::menu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QPoint ActionsTest::centre(const AdminEventsModule &page, const QModelIndex &index)
{
    QTreeView *view = PageFixture::view(page);
    view->scrollTo(index);
    return view->visualRect(index).center();
}

/// The press selects; the event that follows on a real desktop asks for the menu.
void ActionsTest::rightClick(const AdminEventsModule &page, const QPoint &position)
{
    QWidget *viewport = PageFixture::view(page)->viewport();
    QTest::mouseClick(viewport, Qt::RightButton, {}, position);
    QContextMenuEvent request(QContextMenuEvent::Mouse, position, viewport->mapToGlobal(position));
    QCoreApplication::sendEvent(viewport, &request);
}

QStringList ActionsTest::menuTexts(const AdminEventsModule &page, const QPoint &position)
{
    rightClick(page, position);
    QStringList texts;
    if (QMenu *open = menu()) {
        for (const QAction *action : open->actions()) {
            texts << (action->isEnabled() ? action->text() : QLatin1Char('(') + action->text());
            if (hasTheme() && action->icon().isNull()) {
                texts << QStringLiteral("without icon");
            }
        }
        open->close();
    }
    return texts;
}

void ActionsTest::withoutASelectionTheMenuOnlyOpensAndCloses()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    const QPoint below(10, view->viewport()->height() - 5);
    QVERIFY(!view->indexAt(below).isValid());
    QCOMPARE(menuTexts(*page, below),
             (QStringList{QStringLiteral("Collapse all"), QStringLiteral("Expand all")}));
}

void ActionsTest::anEventHasItsOwnActions()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QStringList texts
        = menuTexts(*page, centre(*page, PageFixture::shown(*page, QStringLiteral("login"))));
    QCOMPARE(texts.mid(0, 4),
             (QStringList{QStringLiteral("Collapse all"), QStringLiteral("Expand all"),
                          QStringLiteral("Show example of an event"),
                          QStringLiteral("Reset to the default state")}));
    QVERIFY(!texts.contains(QStringLiteral("without icon")));
}

void ActionsTest::groupsAndParametersHaveNoEventActions()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    PageFixture::view(*page)->expandAll();
    const QModelIndex event = PageFixture::shown(*page, QStringLiteral("watch"));
    const QModelIndex parameter
        = PageFixture::shown(*page, QStringLiteral("watch"), {QStringLiteral("interval")});
    for (const QModelIndex &index : {event.parent(), parameter}) {
        QVERIFY(index.isValid());
        QCOMPARE(menuTexts(*page, centre(*page, index)).size(), 2);
    }
}

void ActionsTest::collapseAllAndExpandAllStopAtTheGroups()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    view->expandAll();
    const QModelIndex event = PageFixture::shown(*page, QStringLiteral("login"));
    const QPoint below(10, view->viewport()->height() - 5);
    rightClick(*page, below);
    QVERIFY(menu());
    menu()->actions().at(0)->trigger();
    menu()->close();
    QVERIFY(!view->isExpanded(event.parent()));
    rightClick(*page, below);
    QVERIFY(menu());
    menu()->actions().at(1)->trigger();
    menu()->close();
    QVERIFY(view->isExpanded(event.parent()));
    QVERIFY(!view->isExpanded(event));
}

void ActionsTest::aResetEventHasItsCatalogValues()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QString watch = QStringLiteral("watch");
    m_machine.type(*page, watch, {QStringLiteral("interval")}, QStringLiteral("75"));
    m_machine.toggle(*page, watch);
    EventTreeItem *event = m_machine.node(page->workingModel(), watch);
    QCOMPARE(event->parentItem()->checkState, int(Qt::Checked));
    QVERIFY(!page->compareModels());
    QSignalSpy changes(page.get(), qOverload<bool>(&KCModule::changed));

    rightClick(*page, centre(*page, PageFixture::shown(*page, watch)));
    QVERIFY(menu());
    for (QAction *action : menu()->actions()) {
        if (action->text() == QLatin1String("Reset to the default state")) {
            action->trigger();
        }
    }
    menu()->close();

    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("30"));
    QCOMPARE(event->member(QLatin1String("enabled"))->data(1).toString(), QStringLiteral("0"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(event->parentItem()->checkState, int(Qt::Unchecked));
    QVERIFY(page->compareModels());
    QVERIFY(!changes.isEmpty());
    QCOMPARE(changes.last().at(0).toBool(), false);
}

void ActionsTest::aResetFollowedByApplyRemovesNothingElse()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    m_machine.toggle(*page, QStringLiteral("plain"));
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("75"));
    page->save();
    const QJsonObject before = m_machine.settings();
    QCOMPARE(before.keys(),
             (QStringList{QStringLiteral("login"), QStringLiteral("plain"), QStringLiteral("watch")}));

    page->resetEvent(m_machine.node(page->workingModel(), QStringLiteral("watch")));
    QVERIFY(!page->compareModels());
    page->save();

    QJsonObject after = m_machine.settings();
    const QJsonObject watch = after.take(QStringLiteral("watch")).toObject();
    QCOMPARE(watch.value(QStringLiteral("interval")).toString(QStringLiteral("30")), QStringLiteral("30"));
    QCOMPARE(watch.value(QStringLiteral("enabled")).toString(QStringLiteral("0")), QStringLiteral("0"));
    QCOMPARE(after.value(QStringLiteral("login")), before.value(QStringLiteral("login")));
    QCOMPARE(after.value(QStringLiteral("plain")), before.value(QStringLiteral("plain")));
    const EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("30"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
}

void ActionsTest::aParameterThatTheCatalogLacksKeepsItsValueOnReset()
{
    PageFixture::write(m_machine.settingsPath(),
                       R"({"watch": {"enabled": "1", "interval": "75", "note": "mine"}})");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QVERIFY(event->member(QLatin1String("note")));
    page->resetEvent(event);
    QCOMPARE(event->member(QLatin1String("note"))->data(1).toString(), QStringLiteral("mine"));
    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("30"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
}

void ActionsTest::accountsAreResetWithTheirText()
{
    const QJsonObject off{{QStringLiteral("succ"), QStringLiteral("0")},
                          {QStringLiteral("fail"), QStringLiteral("0")}};
    const QJsonObject on{{QStringLiteral("succ"), QStringLiteral("1")},
                         {QStringLiteral("fail"), QStringLiteral("0")}};
    const auto audit = [&](const QJsonObject &root) {
        return QJsonObject{
            {QStringLiteral("open"),
             QJsonObject{{QStringLiteral("users"), QJsonObject{{QStringLiteral("root"), root}}},
                         {QStringLiteral("groups"), QJsonObject()},
                         {QStringLiteral("other"), off}}}};
    };
    addEvent(QStringLiteral("opened"), {{QStringLiteral("message-audit-events"), audit(off)}});
    const QJsonObject saved{{QStringLiteral("opened"),
                             QJsonObject{{QStringLiteral("enabled"), QStringLiteral("1")},
                                         {QStringLiteral("message-audit-events"), audit(on)}}}};
    PageFixture::write(m_machine.settingsPath(), QJsonDocument(saved).toJson());
    const auto page = m_machine.openPage();
    QVERIFY(page);
    EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("opened"));
    const QStringList path{QStringLiteral("message-audit-events"), QStringLiteral("open"),
                           QStringLiteral("users")};
    EventTreeItem *users = m_machine.node(page->workingModel(), QStringLiteral("opened"), path);
    EventTreeItem *succ = users->findChildTopLevelByNativeName(QStringLiteral("root"))
                              ->findChildTopLevelByNativeName(QStringLiteral("succ"));
    QCOMPARE(succ->checkState, int(Qt::Checked));

    page->resetEvent(event);

    QCOMPARE(succ->data(1).toString(), QStringLiteral("0"));
    QCOMPARE(succ->checkState, int(Qt::Unchecked));
    const QJsonObject text = QJsonDocument::fromJson(users->data(2).toString().toUtf8()).object();
    QCOMPARE(text.size(), users->childCount());
    QCOMPARE(text.value(QStringLiteral("root")).toObject(), off);
}

void ActionsTest::theMenuResetsTheEventThatWasSelectedNotAnotherOfThatName()
{
    addEvent(QStringLiteral("twin-a"), {{QStringLiteral("interval"), QStringLiteral("10")}});
    addEvent(QStringLiteral("twin-b"), {{QStringLiteral("interval"), QStringLiteral("20")}});
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QStringList interval{QStringLiteral("interval")};
    m_machine.type(*page, QStringLiteral("twin-a"), interval, QStringLiteral("11"));
    m_machine.type(*page, QStringLiteral("twin-b"), interval, QStringLiteral("21"));
    rightClick(*page, centre(*page, PageFixture::shown(*page, QStringLiteral("twin-b"))));
    QVERIFY(menu());
    for (QAction *action : menu()->actions()) {
        if (action->text() == QLatin1String("Reset to the default state")) {
            action->trigger();
        }
    }
    menu()->close();
    const auto value = [&](const char *event) {
        return m_machine.node(page->workingModel(), QLatin1String(event), interval)->data(1).toString();
    };
    QCOMPARE(value("twin-a"), QStringLiteral("11"));
    QCOMPARE(value("twin-b"), QStringLiteral("20"));
}

void ActionsTest::theMenuOutlivesAReload()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    rightClick(*page, centre(*page, PageFixture::shown(*page, QStringLiteral("watch"))));
    QPointer<QMenu> open = menu();
    QVERIFY(open);
    page->load_p(); // as the watch does when somebody else changed the files
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("75"));
    for (QAction *action : open->actions()) {
        if (action->text() == QLatin1String("Reset to the default state")) {
            action->trigger();
        }
    }
    open->close();
    const EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("30"));
}

void ActionsTest::aClickSelectsTheCellAndTheValue()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    view->expandAll();
    const QModelIndex index
        = PageFixture::shown(*page, QStringLiteral("watch"), {QStringLiteral("interval")});
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre(*page, index));
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    QCOMPARE(selected.size(), 2);
    QVERIFY(selected.contains(index));
    QVERIFY(selected.contains(index.siblingAtColumn(1)));
    // A click on the value leaves the value alone selected.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre(*page, index.siblingAtColumn(1)));
    QCOMPARE(view->selectionModel()->selectedIndexes(), QModelIndexList{index.siblingAtColumn(1)});
}

void ActionsTest::aRowWithoutNeighbourIsNotSelectedAnew()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    const QModelIndex only = PageFixture::shown(*page, QStringLiteral("plain"));
    QCOMPARE(view->model()->rowCount(only.parent()), 1);
    view->selectionModel()->clearSelection();
    page->editSelection(only);
    QVERIFY(view->selectionModel()->selectedIndexes().isEmpty());
    page->editSelection(QModelIndex());
    QVERIFY(view->selectionModel()->selectedIndexes().isEmpty());
    page->editSelection(only.parent()); // the groups are three
    QCOMPARE(view->selectionModel()->selectedIndexes().size(), 2);
}

void ActionsTest::arrowKeysSelectAsAClickDoes()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    page->activateWindow();
    view->setFocus();
    QTRY_VERIFY(view->hasFocus());
    view->expandAll();
    const QModelIndex index
        = PageFixture::shown(*page, QStringLiteral("watch"), {QStringLiteral("interval")});
    view->setCurrentIndex(view->indexAbove(index));
    QTest::keyClick(view, Qt::Key_Down);
    QCOMPARE(view->currentIndex(), index);
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    QCOMPARE(selected.size(), 2); // the row's third cell is not among them
    QVERIFY(selected.contains(index) && selected.contains(index.siblingAtColumn(1)));
}

void ActionsTest::enterPressesTheFocusedButtonOnly()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->activateWindow();
    QTreeView *view = PageFixture::view(*page);
    auto *button = PageFixture::serviceButton(*page);
    QSignalSpy clicks(button, &QPushButton::clicked);
    view->setFocus();
    QTRY_VERIFY(view->hasFocus());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QVERIFY(QCoreApplication::sendEvent(view, &press));
        QVERIFY2(press.isAccepted(), "the shell's window would take it for its OK button");
    }
    QCOMPARE(clicks.size(), 0);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    QCOMPARE(clicks.size(), 1);
    auto *label = PageFixture::serviceLabel(*page);
    QTRY_COMPARE(label->text(), QStringLiteral("Logging service stopped."));
}

void ActionsTest::aDoubleClickBesideTheValueOpensNothing()
{
    const QString id = QStringLiteral("modifying-file");
    addEvent(id,
             {{QStringLiteral("message-audit-rules"), QStringLiteral("-w /etc/hosts -p wa -k /etc/hosts")}});
    const auto page = m_machine.openPage();
    QVERIFY(page);
    PageFixture::view(*page)->expandAll();
    const QModelIndex name
        = PageFixture::shown(*page, id, {QStringLiteral("filter-values"), QStringLiteral(".auditd.key")});
    QVERIFY(name.isValid());
    const auto openDialogs = [&page] {
        int open = 0;
        for (const QDialog *dialog : page->findChildren<QDialog *>()) {
            open += dialog->isVisible() ? 1 : 0;
        }
        return open;
    };
    for (const int column : {0, 2}) {
        page->editEvent(name.siblingAtColumn(column));
        QCOMPARE(openDialogs(), 0);
    }
    page->editEvent(name.siblingAtColumn(1)); // the value opens one
    QCOMPARE(openDialogs(), 1);
}

void ActionsTest::aResetTakesTheIconOfTheCatalogBack()
{
    addEvent(QStringLiteral("heavy"), {{QStringLiteral("generates-load"), QStringLiteral("1")}});
    const auto page = m_machine.openPage();
    QVERIFY(page);
    EventTreeItem *heavy = m_machine.node(page->workingModel(), QStringLiteral("heavy"));
    QVERIFY(heavy->generatesLoad);
    m_machine.type(*page, QStringLiteral("heavy"), {QStringLiteral("generates-load")}, QStringLiteral("0"));
    heavy->generatesLoad = false; // as after a load of that edit
    page->resetEvent(heavy);
    QVERIFY(heavy->generatesLoad);
    QCOMPARE(heavy->member(QLatin1String("generates-load"))->data(1).toString(), QStringLiteral("1"));
}

QTEST_MAIN(ActionsTest)

#include "actionstest.moc"
