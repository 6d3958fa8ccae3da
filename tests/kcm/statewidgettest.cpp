// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "statewidget.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using KCMNV::StateWidget;

class StateWidgetTest : public QObject
{
    Q_OBJECT

private:
    static QString text(const StateWidget &widget)
    {
        return widget.findChild<QLabel *>(QStringLiteral("stateText"))->text();
    }
    static QPushButton *reset(const StateWidget &widget)
    {
        return widget.findChild<QPushButton *>(QStringLiteral("resetButton"));
    }

private Q_SLOTS:
    void startsUnchangedWithoutResetButton()
    {
        const StateWidget widget;
        QCOMPARE(widget.state(), StateWidget::State::Unchanged);
        QVERIFY(reset(widget)->isHidden());
        QVERIFY(!reset(widget)->isEnabled());
    }

    void eachStateHasATextOfItsOwn()
    {
        StateWidget widget;
        const QString unchanged = text(widget);
        widget.setChanged(true);
        const QString changed = text(widget);
        widget.setSaved();
        const QString saved = text(widget);
        QVERIFY(!unchanged.isEmpty() && !changed.isEmpty() && !saved.isEmpty());
        QVERIFY(unchanged != changed && changed != saved && saved != unchanged);
        QCOMPARE(widget.accessibleName(), saved);
    }

    void followsTheStates_data()
    {
        // c: changed, n: not changed, s: saved, r: reset
        QTest::addColumn<QString>("steps");
        QTest::addColumn<StateWidget::State>("expected");
        QTest::newRow("edited") << QStringLiteral("c") << StateWidget::State::Changed;
        QTest::newRow("edited and taken back") << QStringLiteral("cn") << StateWidget::State::Unchanged;
        QTest::newRow("saved") << QStringLiteral("cs") << StateWidget::State::Saved;
        QTest::newRow("saved, then reported unchanged") << QStringLiteral("csn") << StateWidget::State::Saved;
        QTest::newRow("saved, then edited") << QStringLiteral("csc") << StateWidget::State::Changed;
        QTest::newRow("saved, then edited and taken back")
            << QStringLiteral("cscn") << StateWidget::State::Unchanged;
        QTest::newRow("saved, then loaded") << QStringLiteral("csr") << StateWidget::State::Unchanged;
        QTest::newRow("edited, then loaded") << QStringLiteral("cr") << StateWidget::State::Unchanged;
    }

    void followsTheStates()
    {
        QFETCH(QString, steps);
        QFETCH(StateWidget::State, expected);
        StateWidget widget;
        for (const QChar step : steps) {
            switch (step.unicode()) {
            case 'c':
                widget.setChanged(true);
                break;
            case 'n':
                widget.setChanged(false);
                break;
            case 's':
                widget.setSaved();
                break;
            case 'r':
                widget.resetState();
                break;
            default:
                QFAIL("unknown step");
            }
        }
        QCOMPARE(widget.state(), expected);
        QCOMPARE(reset(widget)->isEnabled(), expected == StateWidget::State::Changed);
    }

    void theResetButtonAsksForAResetAndChangesNothingItself()
    {
        StateWidget widget;
        widget.setResetButtonVisible(true);
        QVERIFY(!reset(widget)->isHidden());
        const QSignalSpy requests(&widget, &StateWidget::resetRequested);
        reset(widget)->click();
        QCOMPARE(requests.count(), 0);
        widget.setChanged(true);
        reset(widget)->click();
        QCOMPARE(requests.count(), 1);
        QCOMPARE(widget.state(), StateWidget::State::Changed);
        widget.setResetButtonVisible(false);
        QVERIFY(reset(widget)->isHidden());
    }

    void staysSlim()
    {
        StateWidget widget;
        widget.setResetButtonVisible(true);
        widget.resize(800, 400);
        QCOMPARE(widget.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
        QVERIFY(widget.sizeHint().height() <= reset(widget)->sizeHint().height() + 2);
    }
};

QTEST_MAIN(StateWidgetTest)
#include "statewidgettest.moc"
