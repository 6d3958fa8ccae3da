// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samplepage.h"
#include "statewidget.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

/** The page in a window with a button of the shell's own. */
class GuardKCModuleTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> m_shell;
    SamplePage *m_page = nullptr;
    QPushButton *m_apply = nullptr;
    int m_applyClicks = 0;

private Q_SLOTS:
    void init()
    {
        m_shell = std::make_unique<QWidget>();
        auto *box = new QVBoxLayout(m_shell.get());
        m_page = new SamplePage(m_shell.get());
        m_apply = new QPushButton(QStringLiteral("&Apply"), m_shell.get());
        box->addWidget(m_page);
        box->addWidget(m_apply);
        m_applyClicks = 0;
        connect(m_apply, &QPushButton::clicked, this, [this] { ++m_applyClicks; });
        m_shell->show();
        QVERIFY(QTest::qWaitForWindowActive(m_shell.get()));
        QTRY_COMPARE(m_page->loads, 1);
    }

    void cleanup() { m_shell.reset(); }

    void aSecondRequestWhileLoadingIsDropped()
    {
        m_page->duringAccess = [this] {
            QVERIFY(m_page->isBusy());
            m_page->load();
            m_page->save();
        };
        m_page->load();
        QCOMPARE(m_page->loads, 2);
        QCOMPARE(m_page->applies, 0);
        QVERIFY(!m_page->isBusy());
    }

    void aSecondRequestWhileApplyingIsDropped()
    {
        QTest::keyClicks(m_page->edit, QStringLiteral("x"));
        m_page->duringChange = [this] {
            m_page->save();
            m_page->load();
        };
        m_page->save();
        QCOMPARE(m_page->applies, 1);
        QCOMPARE(m_page->loads, 1);
        QCOMPARE(m_page->stored, QStringLiteral("firstx"));
        QVERIFY(!m_page->isBusy());
        m_page->duringChange = nullptr;
        m_page->load();
        QCOMPARE(m_page->loads, 2);
    }

    void aResetWhileAFailingApplyRunsKeepsTheEdits()
    {
        QTest::keyClicks(m_page->edit, QStringLiteral("x"));
        m_page->refuse = true;
        m_page->duringChange = [this] { m_page->load(); };
        m_page->save();
        QCOMPARE(m_page->edit->text(), QStringLiteral("firstx"));
        QCOMPARE(m_page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);
    }

    void itsWidgetsTakeNoInputWhileAHookRuns()
    {
        m_page->duringChange = [this] {
            QTest::keyClicks(m_page->edit, QStringLiteral("y"));
            QTest::mouseClick(m_apply, Qt::LeftButton);
        };
        m_page->save();
        QCOMPARE(m_page->edit->text(), QStringLiteral("first"));
        QCOMPARE(m_applyClicks, 0);
    }

    void theWindowTakesNoInputWhileAHookRuns()
    {
        m_page->edit->setFocus();
        m_page->duringChange = [this] {
            // Through the window, the way the windowing system delivers it.
            QTest::keyClick(m_shell->windowHandle(), Qt::Key_Z);
            QTest::keyClick(m_shell->windowHandle(), Qt::Key_A, Qt::AltModifier);
            QTest::mouseClick(m_shell->windowHandle(), Qt::LeftButton, {}, m_apply->geometry().center());
            QTest::qWait(20);
        };
        m_page->save();
        QCOMPARE(m_page->edit->text(), QStringLiteral("first"));
        QCOMPARE(m_applyClicks, 0);
        QVERIFY(m_page->edit->hasFocus());
    }

    void theWindowTakesInputAgainAfterwards()
    {
        m_page->save();
        QTest::keyClick(m_shell->windowHandle(), Qt::Key_A, Qt::AltModifier);
        QTRY_COMPARE(m_applyClicks, 1);
        QTest::mouseClick(m_shell->windowHandle(), Qt::LeftButton, {}, m_apply->geometry().center());
        QTRY_COMPARE(m_applyClicks, 2);
        m_page->edit->setFocus();
        QTest::keyClick(m_shell->windowHandle(), Qt::Key_Z);
        QTRY_COMPARE(m_page->edit->text(), QStringLiteral("firstz"));
    }

    void theWindowDoesNotCloseWhileAHookRuns()
    {
        m_page->duringChange = [this] {
            QVERIFY(!m_shell->close());
            QVERIFY(m_shell->isVisible());
        };
        m_page->save();
        QVERIFY(m_shell->close());
    }

    void aMessageBoxOfThePageIsAnsweredWhileAHookRuns()
    {
        int answer = 0;
        m_page->duringChange = [this, &answer] {
            QTimer::singleShot(0, this, [] {
                auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                QVERIFY(box);
                QVERIFY(QTest::qWaitForWindowExposed(box));
                QWidget *yes = box->button(QMessageBox::Yes);
                QVERIFY(yes->isEnabled());
                QTest::mouseClick(box->windowHandle(), Qt::LeftButton, {},
                                  yes->mapTo(box, yes->rect().center()));
            });
            QTimer::singleShot(5000, this, [] {
                if (auto *box = QApplication::activeModalWidget()) {
                    box->close();
                }
            });
            answer = QMessageBox::question(m_page, QStringLiteral("t"), QStringLiteral("q"));
        };
        m_page->save();
        QCOMPARE(answer, int(QMessageBox::Yes));
    }

    void theOpenDialogsOfThePageTakeNoInputWhileAHookRuns()
    {
        QDialog dialog(m_page);
        auto *edit = new QLineEdit(&dialog);
        auto *box = new QVBoxLayout(&dialog);
        box->addWidget(edit);
        dialog.show();
        m_page->duringChange = [edit, &dialog] {
            QTest::keyClicks(edit, QStringLiteral("y"));
            QVERIFY(!dialog.close());
        };
        m_page->save();
        QCOMPARE(edit->text(), QString());
        QTest::keyClicks(edit, QStringLiteral("y"));
        QCOMPARE(edit->text(), QStringLiteral("y"));
    }

    void otherWindowsAreLeftAlone()
    {
        QLineEdit other;
        other.show();
        m_page->duringChange = [&other] { QTest::keyClicks(&other, QStringLiteral("y")); };
        m_page->save();
        QCOMPARE(other.text(), QStringLiteral("y"));
    }
};

QTEST_MAIN(GuardKCModuleTest)
#include "guardkcmoduletest.moc"
