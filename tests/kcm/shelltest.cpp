// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <KCModule>
#include <KCModuleProxy>
#include <KCMultiDialog>
#include <KPluginMetaData>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <memory>

/** The page as a plug-in inside the dialog that the real shell shows. */
class ShellTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<KCMultiDialog> m_dialog;
    KCModule *m_page = nullptr;

    [[nodiscard]] QPushButton *shellButton(QDialogButtonBox::StandardButton which) const
    {
        return m_dialog->findChild<QDialogButtonBox *>()->button(which);
    }
    [[nodiscard]] QLineEdit *edit() const { return m_page->findChild<QLineEdit *>(QStringLiteral("edit")); }
    [[nodiscard]] QString stateText() const
    {
        return m_page->findChild<QLabel *>(QStringLiteral("stateText"))->text();
    }
    [[nodiscard]] QPushButton *pageReset() const
    {
        return m_page->findChild<QPushButton *>(QStringLiteral("resetButton"));
    }

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init()
    {
        m_dialog = std::make_unique<KCMultiDialog>();
        const KPluginMetaData plugin(QStringLiteral(SAMPLE_PLUGIN));
        QVERIFY(plugin.isValid());
        QVERIFY(m_dialog->addModule(plugin));
        m_dialog->show();
        QTRY_VERIFY((m_page = m_dialog->findChild<KCModule *>()) != nullptr);
        QTRY_COMPARE(m_page->property("loads").toInt(), 1);
        QTRY_VERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
    }

    void cleanup()
    {
        m_dialog.reset();
        m_page = nullptr;
    }

    void theShellOffersApplyOnlyForAChangedPage()
    {
        QTest::keyClicks(edit(), QStringLiteral("x"));
        QTRY_VERIFY(shellButton(QDialogButtonBox::Apply)->isEnabled());
        QTest::keyClick(edit(), Qt::Key_Backspace);
        QTRY_VERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
        QCOMPARE(m_page->property("loads").toInt(), 1);
    }

    void applyStoresAndThePageShowsSaved()
    {
        const QString unchanged = stateText();
        QTest::keyClicks(edit(), QStringLiteral("x"));
        const QString changed = stateText();
        QTRY_VERIFY(shellButton(QDialogButtonBox::Apply)->isEnabled());
        shellButton(QDialogButtonBox::Apply)->click();
        QCOMPARE(m_page->property("stored").toString(), QStringLiteral("firstx"));
        QTRY_VERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
        QTest::qWait(50);
        QVERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(stateText() != unchanged && stateText() != changed);
    }

    void aFailedApplyCanBeRepeated()
    {
        QTest::keyClicks(edit(), QStringLiteral("x"));
        const QString changed = stateText();
        m_page->setProperty("refuse", true);
        for (int attempt = 1; attempt <= 3; ++attempt) {
            QTRY_VERIFY(shellButton(QDialogButtonBox::Apply)->isEnabled());
            shellButton(QDialogButtonBox::Apply)->click();
            QCOMPARE(m_page->property("applies").toInt(), attempt);
            QCOMPARE(m_page->property("stored").toString(), QStringLiteral("first"));
            QCOMPARE(stateText(), changed);
        }
        QTRY_VERIFY(shellButton(QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(m_dialog->findChild<KCModuleProxy *>()->isChanged());

        m_page->setProperty("refuse", false);
        shellButton(QDialogButtonBox::Apply)->click();
        QCOMPARE(m_page->property("stored").toString(), QStringLiteral("firstx"));
        QTest::qWait(50);
        QVERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
    }

    void thePagesResetButtonMakesTheShellForgetTheChange()
    {
        QTest::keyClicks(edit(), QStringLiteral("x"));
        QTRY_VERIFY(shellButton(QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(pageReset()->isVisible());
        pageReset()->click();
        QCOMPARE(edit()->text(), QStringLiteral("first"));
        QTRY_VERIFY(!shellButton(QDialogButtonBox::Apply)->isEnabled());
        QVERIFY(!pageReset()->isEnabled());
    }

    void theShellsOwnResetReloadsThePage()
    {
        QTest::keyClicks(edit(), QStringLiteral("x"));
        m_dialog->findChild<KCModuleProxy *>()->load();
        QCOMPARE(m_page->property("loads").toInt(), 2);
        QCOMPARE(edit()->text(), QStringLiteral("first"));
        QVERIFY(!pageReset()->isEnabled());
    }
};

QTEST_MAIN(ShellTest)
#include "shelltest.moc"
