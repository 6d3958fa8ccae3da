// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samplepage.h"
#include "statewidget.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

using KCMNV::StateWidget;

class NivraKCModuleTest : public QObject
{
    Q_OBJECT

private:
    static void showFirst(SamplePage &page)
    {
        page.show();
        QTRY_COMPARE(page.loads, 1);
    }
    static void type(SamplePage &page, const char *keys) { QTest::keyClicks(page.edit, QLatin1String(keys)); }

private Q_SLOTS:
    void keepsTheComponentName()
    {
        const SamplePage page(nullptr);
        QCOMPARE(page.componentName(), QStringLiteral("sample"));
    }

    void doesNotLoadBeforeItIsShown()
    {
        const SamplePage page(nullptr);
        QTest::qWait(50);
        QCOMPARE(page.loads, 0);
    }

    void loadsOnceWhenFirstShownAndNotWhenShownAgain()
    {
        SamplePage page(nullptr);
        showFirst(page);
        QCOMPARE(page.edit->text(), QStringLiteral("first"));
        page.hide();
        page.show();
        QTest::qWait(50);
        QCOMPARE(page.loads, 1);
    }

    void loadsAtEveryRequest()
    {
        SamplePage page(nullptr);
        showFirst(page);
        page.load();
        page.load();
        QCOMPARE(page.loads, 3);
    }

    void thePageIsChosenAndUnchosenAsItComesAndGoes()
    {
        SamplePage page(nullptr);
        showFirst(page);
        QCOMPARE(page.chosen, 1);
        QCOMPARE(page.unchosen, 0);
        page.hide();
        QCOMPARE(page.unchosen, 1);
        page.show();
        QCOMPARE(page.chosen, 2);
    }

    void theStateBarStandsLastInThePagesLayout()
    {
        SamplePage page(nullptr);
        QVERIFY(page.stateWidget()->isHidden());
        showFirst(page);
        auto *box = qobject_cast<QVBoxLayout *>(page.layout());
        QVERIFY(box);
        QCOMPARE(box->itemAt(box->count() - 1)->widget(), page.stateWidget());
        QVERIFY(page.stateWidget()->isVisible());
        page.hide();
        page.show();
        QCOMPARE(box->indexOf(page.stateWidget()), box->count() - 1);
    }

    void theStateBarFollowsThePagesReports()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Changed);
        QTest::keyClick(page.edit, Qt::Key_Backspace);
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Unchanged);
    }

    void theResetButtonReloadsThePage()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        const QSignalSpy changed(&page, qOverload<bool>(&KCModule::changed));
        page.findChild<QPushButton *>(QStringLiteral("resetButton"))->click();
        QCOMPARE(page.loads, 2);
        QCOMPARE(page.edit->text(), QStringLiteral("first"));
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Unchanged);
        QVERIFY(!changed.isEmpty());
        QCOMPARE(changed.last().first().toBool(), false);
    }

    void savingAppliesAndShowsSavedUntilTheNextLoad()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        page.save();
        QCOMPARE(page.applies, 1);
        QCOMPARE(page.stored, QStringLiteral("firstx"));
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Saved);
        page.load();
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Unchanged);
    }

    void aFailedApplyKeepsThePageChangedAndTellsTheShellAfterwards()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        page.refuse = true;
        const QSignalSpy changed(&page, qOverload<bool>(&KCModule::changed));
        page.save();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Changed);
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.last().first().toBool(), true);
        QCOMPARE(page.stored, QStringLiteral("first"));
        QCOMPARE(page.edit->text(), QStringLiteral("firstx"));
    }

    void anApplyAfterAFailedOneSucceeds()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        page.refuse = true;
        page.save();
        page.refuse = false;
        page.save();
        QCOMPARE(page.stored, QStringLiteral("firstx"));
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Saved);
    }

    void anInvalidPageIsNotAppliedAndStaysChanged()
    {
        SamplePage page(nullptr);
        showFirst(page);
        type(page, "x");
        page.valid = false;
        page.save();
        QCOMPARE(page.applies, 0);
        QCOMPARE(page.stateWidget()->state(), StateWidget::State::Changed);
    }

    void thePageMayBeDestroyedInsideItsHooks()
    {
        auto *page = new SamplePage(nullptr);
        QPointer<SamplePage> alive(page);
        // The function must outlive the page that it is stored in.
        const std::function<void()> destroy = [&alive] { delete alive.data(); };
        page->duringAccess = [&destroy] {
            QTimer::singleShot(0, qApp, destroy);
            QTest::qWait(20);
        };
        page->KCMNV::NivraKCModule::load();
        QVERIFY(!alive);
    }
};

QTEST_MAIN(NivraKCModuleTest)
#include "nivrakcmoduletest.moc"
