// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "pagefixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QTreeView>
#include <QVBoxLayout>

/// The page without a mouse.
class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void tabReachesEveryControlInTheOrderOfThePage();
    void everyControlHasAName();
    void focusIsVisible();
    void theFindKeyFocusesTheSearchAndEscapeClearsIt();
    void aSearchTakesAwayTheToolTipOfARowThatGoes();
    void theFindKeyWorksFromOutsideThePage();
    void aSearchIsWalkedAndAnEventCheckedByKeys();

private:
    static QVector<QWidget *> controls(const QWidget &page);
    static QLineEdit *search(const QWidget &page)
    {
        return page.findChild<QLineEdit *>(QStringLiteral("eventSearch"));
    }

    PageFixture m_machine;
};

void KeyboardTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void KeyboardTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

/// What a person could want to reach: shown, enabled, and made for input.
QVector<QWidget *> KeyboardTest::controls(const QWidget &page)
{
    QVector<QWidget *> found;
    for (QWidget *widget : page.findChildren<QWidget *>()) {
        const bool input = qobject_cast<QAbstractButton *>(widget) || qobject_cast<QLineEdit *>(widget)
            || qobject_cast<QComboBox *>(widget) || qobject_cast<QTreeView *>(widget);
        // The button inside a line edit that clears it has a key of its own.
        const bool inner = qobject_cast<QLineEdit *>(widget->parentWidget()) != nullptr;
        if (input && !inner && widget->isVisible() && widget->isEnabled()) {
            found.append(widget);
        }
    }
    return found;
}

void KeyboardTest::tabReachesEveryControlInTheOrderOfThePage()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->activateWindow();
    auto *field = search(*page);
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    field->setText(QStringLiteral("Event")); // with matches, so that the step buttons work
    QStringList reached;
    QVector<QWidget *> widgets;
    constexpr int more = 30;
    for (int step = 0; step < more && !widgets.contains(QApplication::focusWidget()); ++step) {
        widgets.append(QApplication::focusWidget());
        reached.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (QWidget *control : controls(*page)) {
        QVERIFY2(widgets.contains(control), qPrintable(control->objectName()));
    }
    const QStringList order{QStringLiteral("eventSearch"), QStringLiteral("searchPrev"),
                            QStringLiteral("searchNext"), QStringLiteral("singleEventsView")};
    QCOMPARE(reached.mid(0, order.size()), order);
    QVERIFY(reached.indexOf(QStringLiteral("sngStartStopButton"))
            > reached.indexOf(QStringLiteral("singleEventsView")));
    // And back again.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), widgets.last());
}

void KeyboardTest::everyControlHasAName()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    int named = 0;
    for (QWidget *widget : page->findChildren<QWidget *>()) {
        if (const auto *button = qobject_cast<QAbstractButton *>(widget)) {
            // Parts of a widget that speaks for them.
            const bool inner = qobject_cast<QLineEdit *>(button->parentWidget())
                || qobject_cast<QAbstractItemView *>(button->parentWidget());
            const bool spoken = inner || !button->text().isEmpty() || !button->accessibleName().isEmpty();
            QVERIFY2(spoken, qPrintable(button->objectName()));
            ++named;
        } else if (qobject_cast<QComboBox *>(widget) || qobject_cast<QLineEdit *>(widget)
                   || qobject_cast<QTreeView *>(widget)) {
            const auto *spinBox = qobject_cast<QAbstractSpinBox *>(widget->parentWidget());
            bool labelled
                = !(spinBox ? static_cast<const QWidget *>(spinBox) : widget)->accessibleName().isEmpty();
            for (const QLabel *label : page->findChildren<QLabel *>()) {
                labelled = labelled || label->buddy() == widget;
            }
            QVERIFY2(labelled, qPrintable(widget->objectName()));
            ++named;
        }
    }
    QVERIFY(named >= 6);
}

void KeyboardTest::focusIsVisible()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->activateWindow();
    PageFixture::view(*page)->setCurrentIndex(PageFixture::view(*page)->model()->index(0, 0));
    search(*page)->setText(QStringLiteral("Event"));
    page->setAttribute(Qt::WA_KeyboardFocusChange); // as the first Tab does
    for (QWidget *control : controls(*page)) {
        control->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY2(control->hasFocus(), qPrintable(control->objectName()));
        const QImage focused = control->grab().toImage();
        control->clearFocus();
        QVERIFY2(control->grab().toImage() != focused, qPrintable(control->objectName()));
    }
}

void KeyboardTest::theFindKeyFocusesTheSearchAndEscapeClearsIt()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->activateWindow();
    QTreeView *view = PageFixture::view(*page);
    view->setFocus();
    QTRY_VERIFY(view->hasFocus());
    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    auto *field = search(*page);
    QVERIFY(field->hasFocus());
    QTest::keyClicks(field, QStringLiteral("watch"));
    QCOMPARE(view->model()->rowCount(), 1);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(field->text().isEmpty());
    QCOMPARE(view->model()->rowCount(), 3);
}

void KeyboardTest::aSearchTakesAwayTheToolTipOfARowThatGoes()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = PageFixture::view(*page);
    QToolTip::showText(view->mapToGlobal(view->rect().center()), QStringLiteral("of a row"), view);
    QVERIFY(QToolTip::isVisible());
    QTest::keyClick(search(*page), Qt::Key_W);
    constexpr int soon = 2000; // unsought it stays up for ten seconds
    QTRY_VERIFY_WITH_TIMEOUT(!QToolTip::isVisible(), soon);
}

void KeyboardTest::theFindKeyWorksFromOutsideThePage()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QWidget window; // the shell's, with a control of its own
    auto *layout = new QVBoxLayout(&window);
    auto *shell = new QPushButton(&window);
    layout->addWidget(shell);
    layout->addWidget(page.get());
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    shell->setFocus();
    QTRY_VERIFY(shell->hasFocus());
    QTest::keyClick(shell, Qt::Key_F, Qt::ControlModifier);
    const bool found = search(*page)->hasFocus();
    page->setParent(nullptr); // this test owns it, not the window
    QVERIFY(found);
}

void KeyboardTest::aSearchIsWalkedAndAnEventCheckedByKeys()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    page->activateWindow();
    auto *field = search(*page);
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    QTest::keyClicks(field, QStringLiteral("plain"));
    QTest::keyClick(field, Qt::Key_Return); // presses nothing
    QVERIFY(m_machine.serviceCalls().indexOf(QStringLiteral("stop")) < 0);
    QTest::keyClick(page->findChild<QWidget *>(QStringLiteral("searchNext")), Qt::Key_Space);
    QTreeView *view = PageFixture::view(*page);
    QTest::keyClick(field, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(view->hasFocus());
    QTest::keyClick(view, Qt::Key_Space);
    QVERIFY(!page->compareModels());
    page->save();
    QCOMPARE(m_machine.settings().keys(), QStringList{QStringLiteral("plain")});
}

QTEST_MAIN(KeyboardTest)

#include "keyboardtest.moc"
