// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <eventitemdelegate.h>
#include <eventsproxymodel.h>
#include <nodedictionary.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

namespace {
/// Shows what the delegate paints.
class OpenDelegate : public EventItemDelegate
{
public:
    using EventItemDelegate::EventItemDelegate;

    [[nodiscard]] QString paintedText(const QModelIndex &index) const
    {
        QStyleOptionViewItem option;
        initStyleOption(&option, index);
        return option.text;
    }
};

/// A tree with one of everything that is edited or switched in place.
struct Sample
{
    Sample()
    {
        group = TreeMaker::group(root.get(), "g");
        event = TreeMaker::event(group, "e", "0");
        twin = TreeMaker::event(group, "e2", "0");
        twin->setData(0, QStringLiteral("e"));
        extended = TreeMaker::object(event, "extend-message-params");
        size = TreeMaker::switched(extended, "size", "0");
        odd = TreeMaker::switched(extended, "odd", "maybe");
        repetition = TreeMaker::switched(event, "notification_repetition", "0");
        interval = TreeMaker::parameter(repetition, "interval", "30");
        text = TreeMaker::parameter(event, "text", "old");
        number = TreeMaker::parameter(event, "number", "");
        number->setData(1, 5.0);
        list = TreeMaker::list(event, "names", R"(["a","b"])");
        directories = TreeMaker::list(event, "directories", R"(["/var"])");
        open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
        users = TreeMaker::subjects(open, "users");
        alice = TreeMaker::outcome(users, "alice", "0", "0");
        TreeMaker::settleGroups(root.get());
    }

    std::unique_ptr<EventTreeItem> root = TreeMaker::root();
    EventTreeItem *group, *event, *twin, *extended, *size, *odd, *repetition, *interval, *text, *number,
        *list, *directories, *open, *users, *alice;
};
} // namespace

class EventItemDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

    void doubleClickOpensAnEditorWithTheValue();
    void returnStoresTheTypedText_data();
    void returnStoresTheTypedText();
    void escapeKeepsTheValue();
    void unchangedTextStoresNothing_data();
    void unchangedTextStoresNothing();
    void numberOutsideItsRangeKeepsTheEditorOpenUntilMended();
    void refusedValueIsShownInRedWhileItIsTyped();
    void escapeLeavesARefusedValueWithoutAMessage();
    void leavingARefusedValueStoresNothingAndSaysWhy();
    void controlCharactersAreRefused();
    void typedSwitchValueTurnsItsEvent();
    void nodesWithoutATextOfferNoEditor();
    void newTreeClosesTheEditor();

    void clickTurnsTheSwitchOfAParameterAndNothingElse();
    void spaceTurnsTheSwitchOfAParameterAndNothingElse();
    void spaceOnTheNameTurnsTheSwitchOfTheRow();
    void repetitionIsSwitchedWithoutItsEvent();
    void otherButtonsTurnNothing();
    void releaseInAnotherCellTurnsNothing();
    void switchWithAnOddValueStays();
    void clickOnItsBoxTurnsAnOutcome();
    void spaceTurnsAnOutcome();
    void clickBesideTheBoxOfAnOutcomeTurnsNothing();
    void clickOnItsBoxTurnsAnEvent();
    void spaceTurnsAnEvent();
    void eventOfTheSameNameIsLeftAlone();
    void nodesWithoutABoxIgnoreSpace();

    void namesThatCodeNeedsAreShownTranslated();

private:
    [[nodiscard]] QModelIndex shown(const EventTreeItem *item, int column) const
    {
        const QModelIndex source = (*m_model)->indexOf(item, column);
        return m_view->model() == m_proxy.get() ? m_proxy->mapFromSource(source) : source;
    }
    [[nodiscard]] QRect cellOf(const EventTreeItem *item, int column) const
    {
        const QModelIndex index = shown(item, column);
        m_view->scrollTo(index);
        return m_view->visualRect(index);
    }
    [[nodiscard]] QPoint boxOf(const EventTreeItem *item, int column) const
    {
        QStyleOptionViewItem option;
        option.initFrom(m_view.get());
        option.rect = cellOf(item, column);
        option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        option.text = shown(item, column).data().toString();
        option.widget = m_view.get();
        return m_view->style()
            ->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, m_view.get())
            .center();
    }
    void click(QPoint position, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(m_view->viewport(), button, Qt::NoModifier, position);
    }
    void press(const EventTreeItem *item, int column, Qt::Key key) const
    {
        m_view->setCurrentIndex(shown(item, column));
        QTest::keyClick(m_view.get(), key);
    }
    void doubleClick(const EventTreeItem *item) const
    {
        const QPoint position = cellOf(item, 1).center();
        click(position);
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, position);
    }
    [[nodiscard]] QLineEdit *editor() const { return m_view->viewport()->findChild<QLineEdit *>(); }
    /// Opens the editor of a value with its text selected, as the view does it.
    [[nodiscard]] QLineEdit *openEditor(const EventTreeItem *item) const
    {
        const QModelIndex index = shown(item, 1);
        m_view->scrollTo(index);
        m_view->setCurrentIndex(index);
        m_view->edit(index);
        QLineEdit *edit = editor();
        if (edit) {
            edit->selectAll();
        }
        return edit;
    }
    [[nodiscard]] static QString valueOf(const EventTreeItem *item) { return item->value(1).toString(); }
    [[nodiscard]] static QString enabledOf(const EventTreeItem *item) { return valueOf(item->switchChild()); }

    NodeDictionary m_dictionary;
    std::unique_ptr<Sample> m_sample;
    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventsProxyModel> m_proxy;
    std::unique_ptr<QAbstractItemModelTester> m_proxyTester;
    std::unique_ptr<OpenDelegate> m_delegate;
    std::unique_ptr<QTreeView> m_view;
    std::unique_ptr<QSignalSpy> m_changed;
    std::unique_ptr<QSignalSpy> m_rejected;
};

void EventItemDelegateTest::initTestCase_data()
{
    QTest::addColumn<bool>("proxied");
    QTest::newRow("through the search proxy") << true;
    QTest::newRow("directly on the model") << false;
}

void EventItemDelegateTest::init()
{
    QFETCH_GLOBAL(bool, proxied);
    m_dictionary
        = NodeDictionary::fromJson(R"({ "interval": { "type": "number", "min": "5", "max": "3600" } })");
    m_sample = std::make_unique<Sample>();
    m_model = std::make_unique<ShownModel>(std::move(m_sample->root));
    m_proxy = std::make_unique<EventsProxyModel>();
    m_proxyTester = std::make_unique<QAbstractItemModelTester>(
        m_proxy.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_proxy->setSourceModel(&**m_model);
    m_delegate = std::make_unique<OpenDelegate>(m_dictionary);
    m_view = std::make_unique<QTreeView>();
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked);
    m_view->setItemDelegate(m_delegate.get());
    if (proxied) {
        m_view->setModel(m_proxy.get());
    } else {
        m_view->setModel(&**m_model);
    }
    m_view->resize(800, 600);
    m_view->setColumnWidth(0, 400);
    m_view->setExpandsOnDoubleClick(false);
    m_view->expandAll();
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_changed = std::make_unique<QSignalSpy>(&**m_model, &QAbstractItemModel::dataChanged);
    m_rejected = std::make_unique<QSignalSpy>(m_delegate.get(), &EventItemDelegate::valueRejected);
}

void EventItemDelegateTest::cleanup()
{
    m_view.reset();
    m_proxyTester.reset();
    m_proxy.reset();
}

void EventItemDelegateTest::doubleClickOpensAnEditorWithTheValue()
{
    QVERIFY(!editor());
    doubleClick(m_sample->list);
    QVERIFY(editor());
    QCOMPARE(editor()->text(), QStringLiteral("a, b"));
    QVERIFY(editor()->hasFocus());
}

void EventItemDelegateTest::returnStoresTheTypedText_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void EventItemDelegateTest::returnStoresTheTypedText()
{
    QFETCH(int, key);
    QLineEdit *edit = openEditor(m_sample->text);
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("new \"},  }"));
    QTest::keyClick(edit, static_cast<Qt::Key>(key));
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(m_sample->text), QStringLiteral("new \"},  }"));
    QCOMPARE(m_changed->count(), 1);
    QCOMPARE(m_changed->at(0).at(0).toModelIndex(), (*m_model)->indexOf(m_sample->text, 1));
    QCOMPARE(m_rejected->count(), 0);
}

void EventItemDelegateTest::escapeKeepsTheValue()
{
    QLineEdit *edit = openEditor(m_sample->text);
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("new"));
    QTest::keyClick(edit, Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(m_sample->text), QStringLiteral("old"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::unchangedTextStoresNothing_data()
{
    QTest::addColumn<bool>("retyped");
    QTest::newRow("left as it was") << false;
    QTest::newRow("typed over and typed again") << true;
}

void EventItemDelegateTest::unchangedTextStoresNothing()
{
    QFETCH(bool, retyped);
    m_sample->interval->setData(1, QStringLiteral("4")); // would be refused
    for (const EventTreeItem *item : {m_sample->text, m_sample->number, m_sample->list, m_sample->interval}) {
        const QVector<QVariant> before = item->rowData();
        QLineEdit *edit = openEditor(item);
        QVERIFY2(edit, qPrintable(item->nativeName));
        const QString text = edit->text();
        if (retyped) {
            QTest::keyClick(edit, Qt::Key_Delete);
            QTest::keyClicks(edit, text);
        }
        m_view->setCurrentIndex(shown(m_sample->group, 0)); // accepts what is in the editor
        QTRY_VERIFY(!editor());
        QCOMPARE(item->rowData(), before);
        QCOMPARE(item->value(1).userType(), before.at(1).userType());
    }
    QCOMPARE(m_changed->count(), 0);
    QCOMPARE(m_rejected->count(), 0);
}

void EventItemDelegateTest::numberOutsideItsRangeKeepsTheEditorOpenUntilMended()
{
    QPointer<QLineEdit> edit = openEditor(m_sample->interval);
    QVERIFY(edit);
    for (const char *text : {"4", "3601", "many", "-5"}) {
        edit->selectAll();
        QTest::keyClicks(edit, QString::fromLatin1(text));
        QTest::keyClick(edit, Qt::Key_Return);
        QCoreApplication::processEvents();
        QVERIFY2(edit && editor() == edit, text);
        QCOMPARE(valueOf(m_sample->interval), QStringLiteral("30"));
    }
    QCOMPARE(m_changed->count(), 0);
    edit->selectAll();
    QTest::keyClicks(edit, QStringLiteral("60"));
    QTest::keyClick(edit, Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(m_sample->interval), QStringLiteral("60"));
    QCOMPARE(m_changed->count(), 1);
    QCOMPARE(m_rejected->count(), 0);
}

void EventItemDelegateTest::refusedValueIsShownInRedWhileItIsTyped()
{
    QLineEdit *edit = openEditor(m_sample->interval);
    QVERIFY(edit);
    const QColor red(Qt::red);
    QVERIFY(edit->palette().color(QPalette::Text) != red);
    QTest::keyClicks(edit, QStringLiteral("4"));
    QCOMPARE(edit->palette().color(QPalette::Text), red);
    QTest::keyClicks(edit, QStringLiteral("0"));
    QVERIFY(edit->palette().color(QPalette::Text) != red);
}

void EventItemDelegateTest::escapeLeavesARefusedValueWithoutAMessage()
{
    QLineEdit *edit = openEditor(m_sample->interval);
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("4"));
    QTest::keyClick(edit, Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(m_sample->interval), QStringLiteral("30"));
    QCOMPARE(m_rejected->count(), 0);
}

void EventItemDelegateTest::leavingARefusedValueStoresNothingAndSaysWhy()
{
    QLineEdit *edit = openEditor(m_sample->interval);
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("4"));
    m_view->setCurrentIndex(shown(m_sample->group, 0));
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(m_sample->interval), QStringLiteral("30"));
    QCOMPARE(m_changed->count(), 0);
    QCOMPARE(m_rejected->count(), 1);
    const QString reason = m_rejected->at(0).at(0).toString();
    QVERIFY2(reason.contains(QLatin1String("interval")) && reason.contains(QLatin1String("3600")),
             qPrintable(reason));
}

void EventItemDelegateTest::controlCharactersAreRefused()
{
    QPointer<QLineEdit> edit = openEditor(m_sample->text);
    QVERIFY(edit);
    edit->insert(QString(QStringLiteral("a") + QChar(7) + QLatin1Char('b')));
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::processEvents();
    QVERIFY(edit && editor() == edit);
    QCOMPARE(valueOf(m_sample->text), QStringLiteral("old"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::typedSwitchValueTurnsItsEvent()
{
    QLineEdit *edit = openEditor(m_sample->event->switchChild());
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("1"));
    QTest::keyClick(edit, Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(m_sample->event->checkState, int(Qt::Checked));
    QCOMPARE(m_sample->group->checkState, int(Qt::PartiallyChecked));
}

void EventItemDelegateTest::nodesWithoutATextOfferNoEditor()
{
    const QVector<EventTreeItem *> nodes{
        m_sample->group, m_sample->event, m_sample->extended, m_sample->directories,         m_sample->open,
        m_sample->users, m_sample->alice, m_sample->odd,      m_sample->alice->eventChild(0)};
    for (const EventTreeItem *node : nodes) {
        doubleClick(node);
        QVERIFY2(!editor(), qPrintable(node->nativeName));
    }
}

void EventItemDelegateTest::newTreeClosesTheEditor()
{
    QLineEdit *edit = openEditor(m_sample->text);
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("new"));
    Sample fresh;
    (*m_model)->setRootItem(fresh.root.release());
    QTRY_VERIFY(!editor());
    QCOMPARE(valueOf(fresh.text), QStringLiteral("old"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::clickTurnsTheSwitchOfAParameterAndNothingElse()
{
    click(cellOf(m_sample->size, 1).center());
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("1"));
    QCOMPARE(shown(m_sample->size, 1).data(), QVariant(QStringLiteral("On")));
    QCOMPARE(m_sample->event->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    QCOMPARE(enabledOf(m_sample->repetition), QStringLiteral("0"));
    QCOMPARE(enabledOf(m_sample->odd), QStringLiteral("maybe"));
    QCOMPARE(m_changed->count(), 1);
    click(cellOf(m_sample->size, 1).center());
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("0"));
    QCOMPARE(shown(m_sample->size, 1).data(), QVariant(QStringLiteral("Off")));
}

void EventItemDelegateTest::spaceTurnsTheSwitchOfAParameterAndNothingElse()
{
    press(m_sample->size, 1, Qt::Key_Space);
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("1"));
    QCOMPARE(m_sample->event->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    press(m_sample->size, 1, Qt::Key_A);
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("1"));
    m_view->setCurrentIndex(shown(m_sample->size, 1)); // letters search
    // The test library cannot type this key of small keyboards.
    QKeyEvent select(QEvent::KeyPress, Qt::Key_Select, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view.get(), &select);
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("0"));
}

void EventItemDelegateTest::spaceOnTheNameTurnsTheSwitchOfTheRow()
{
    // Arrow keys stay in the first column of a view that selects rows.
    m_view->setCurrentIndex(shown(m_sample->size, 0));
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QCOMPARE(m_view->currentIndex().siblingAtColumn(0), m_view->currentIndex());
    press(m_sample->size, 0, Qt::Key_Space);
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("1"));
    press(m_sample->alice->eventChild(0), 0, Qt::Key_Space);
    QCOMPARE(valueOf(m_sample->alice->eventChild(0)), QStringLiteral("1"));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    QCOMPARE(m_changed->count(), 2);
}

void EventItemDelegateTest::repetitionIsSwitchedWithoutItsEvent()
{
    click(cellOf(m_sample->repetition, 1).center());
    QCOMPARE(enabledOf(m_sample->repetition), QStringLiteral("1"));
    QCOMPARE(m_sample->event->checkState, int(Qt::Unchecked));
    QCOMPARE(m_sample->group->checkState, int(Qt::Unchecked));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    QCOMPARE(valueOf(m_sample->interval), QStringLiteral("30"));
}

void EventItemDelegateTest::otherButtonsTurnNothing()
{
    click(cellOf(m_sample->size, 1).center(), Qt::RightButton);
    click(cellOf(m_sample->size, 1).center(), Qt::MiddleButton);
    click(cellOf(m_sample->size, 0).center());
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("0"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::releaseInAnotherCellTurnsNothing()
{
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, cellOf(m_sample->text, 1).center());
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                        cellOf(m_sample->size, 1).center());
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("0"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::switchWithAnOddValueStays()
{
    click(cellOf(m_sample->odd, 1).center());
    press(m_sample->odd, 1, Qt::Key_Space);
    QCOMPARE(enabledOf(m_sample->odd), QStringLiteral("maybe"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::clickOnItsBoxTurnsAnOutcome()
{
    EventTreeItem *fail = m_sample->alice->eventChild(0);
    click(boxOf(fail, 1));
    QCOMPARE(valueOf(fail), QStringLiteral("1"));
    QCOMPARE(valueOf(m_sample->alice->eventChild(1)), QStringLiteral("0"));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    click(boxOf(fail, 1));
    QCOMPARE(valueOf(fail), QStringLiteral("0"));
}

void EventItemDelegateTest::spaceTurnsAnOutcome()
{
    press(m_sample->alice->eventChild(1), 1, Qt::Key_Space);
    QCOMPARE(valueOf(m_sample->alice->eventChild(1)), QStringLiteral("1"));
    QCOMPARE(valueOf(m_sample->alice->eventChild(0)), QStringLiteral("0"));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
}

void EventItemDelegateTest::clickBesideTheBoxOfAnOutcomeTurnsNothing()
{
    click(cellOf(m_sample->alice->eventChild(0), 1).center());
    QCOMPARE(valueOf(m_sample->alice->eventChild(0)), QStringLiteral("0"));
    QCOMPARE(m_changed->count(), 0);
}

void EventItemDelegateTest::clickOnItsBoxTurnsAnEvent()
{
    click(boxOf(m_sample->event, 0));
    QCOMPARE(m_sample->event->checkState, int(Qt::Checked));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("1"));
    QCOMPARE(enabledOf(m_sample->size), QStringLiteral("0"));
}

void EventItemDelegateTest::spaceTurnsAnEvent()
{
    press(m_sample->event, 0, Qt::Key_Space);
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("1"));
    press(m_sample->event, 0, Qt::Key_Space);
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
    QCOMPARE(m_changed->count(), 2);
}

void EventItemDelegateTest::eventOfTheSameNameIsLeftAlone()
{
    QCOMPARE(shown(m_sample->twin, 0).data(), shown(m_sample->event, 0).data());
    click(boxOf(m_sample->twin, 0));
    QCOMPARE(enabledOf(m_sample->twin), QStringLiteral("1"));
    QCOMPARE(enabledOf(m_sample->event), QStringLiteral("0"));
}

void EventItemDelegateTest::nodesWithoutABoxIgnoreSpace()
{
    press(m_sample->extended, 1, Qt::Key_Space);
    press(m_sample->extended, 0, Qt::Key_Space);
    press(m_sample->text, 1, Qt::Key_Space);
    press(m_sample->users, 1, Qt::Key_Space);
    press(m_sample->event, 1, Qt::Key_Space);
    QCOMPARE(m_changed->count(), 0);
    QVERIFY(!editor());
}

void EventItemDelegateTest::namesThatCodeNeedsAreShownTranslated()
{
    EventTreeItem *enabled = m_sample->event->switchChild();
    QCOMPARE(m_delegate->paintedText(shown(enabled, 0)), QStringLiteral("enabled"));
    enabled->localizedName = QStringLiteral("Включено");
    QCOMPARE(m_delegate->paintedText(shown(enabled, 0)), QStringLiteral("Включено"));
    QCOMPARE(m_delegate->paintedText(shown(enabled, 1)), QStringLiteral("0"));
    QCOMPARE(shown(enabled, 0).data(), QVariant(QStringLiteral("enabled")));
    // Events and groups carry their name in the first column anyway.
    m_sample->event->localizedName = QStringLiteral("Событие");
    QCOMPARE(m_delegate->paintedText(shown(m_sample->event, 0)), QStringLiteral("e"));
}

QTEST_MAIN(EventItemDelegateTest)

#include "eventitemdelegatetest.moc"
