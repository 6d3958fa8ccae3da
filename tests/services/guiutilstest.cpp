// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "guiutils.h"

#include <KLocalizedString>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

class GuiUtilsTest : public QObject
{
    Q_OBJECT

private:
    /** Looks at the box once it is open, and closes it at all costs, so that no test hangs. */
    void whenOpen(const std::function<void(QMessageBox *)> &visit)
    {
        m_seen = false;
        QTimer::singleShot(0, this, [this, visit] {
            auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            m_seen = box != nullptr;
            const QPointer<QMessageBox> open(box);
            if (box) {
                visit(box);
                if (open && open->isVisible())
                    open->close();
            }
        });
    }

    bool m_seen = false;

private Q_SLOTS:
    void initTestCase() { KLocalizedString::setLanguages({QStringLiteral("en")}); }

    void theRebootQuestionShowsTheTextAboveTheQuestion()
    {
        whenOpen([](QMessageBox *box) {
            QCOMPARE(box->windowTitle(), QStringLiteral("Reboot"));
            QCOMPARE(box->text(), QStringLiteral("100%2 sure\nReboot now?"));
            QCOMPARE(box->icon(), QMessageBox::Question);
            QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
            QVERIFY(box->parentWidget() == nullptr);
            box->button(QMessageBox::Yes)->click();
        });
        QVERIFY(Gui::Utils::confirmAboutReboot(QStringLiteral("100%2 sure")));
        QVERIFY(m_seen);
    }

    void aBoxMayGoWithItsWindow()
    {
        auto parent = std::make_unique<QWidget>();
        whenOpen([&parent](QMessageBox *box) {
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->standardButton(box->defaultButton()), QMessageBox::No);
            parent.reset();
        });
        const auto answer = Gui::Utils::showText(parent.get(), QMessageBox::Question, QStringLiteral("Title"),
                                                 QStringLiteral("<b>text</b>"),
                                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        QVERIFY(m_seen);
        QVERIFY(!parent);
        QCOMPARE(answer, QMessageBox::NoButton);
    }

    void noMeansNoReboot()
    {
        whenOpen([](QMessageBox *box) { box->button(QMessageBox::No)->click(); });
        QVERIFY(!Gui::Utils::confirmAboutReboot(QStringLiteral("text")));
        QVERIFY(m_seen);
    }

    void closingTheQuestionMeansNoReboot()
    {
        whenOpen([](QMessageBox *) {});
        QVERIFY(!Gui::Utils::confirmAboutReboot(QStringLiteral("text")));
        QVERIFY(m_seen);
    }

    void escapeMeansNoReboot()
    {
        whenOpen([](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Escape); });
        QVERIFY(!Gui::Utils::confirmAboutReboot(QStringLiteral("text")));
        QVERIFY(m_seen);
    }

    void theWarningNamesTheFileAndBelongsToItsWindow_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << QStringLiteral("LoginFailed");
        QTest::newRow("markup") << QStringLiteral("<b>bold</b> & \"%1\"");
    }
    void theWarningNamesTheFileAndBelongsToItsWindow()
    {
        QFETCH(QString, name);
        QWidget parent;
        whenOpen([&parent, &name](QMessageBox *box) {
            QCOMPARE(box->windowTitle(), QStringLiteral("Error"));
            QCOMPARE(box->text(),
                     QString(QLatin1String("Config file for \"") + name + QLatin1String("\" is broken.")));
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->icon(), QMessageBox::Warning);
            QCOMPARE(box->standardButtons(), QMessageBox::Ok);
            QCOMPARE(box->parentWidget(), &parent);
        });
        Gui::Utils::confirmAboutBrokenNotifyConfig(&parent, name);
        QVERIFY(m_seen);
    }
};

QTEST_MAIN(GuiUtilsTest)

#include "guiutilstest.moc"
