// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonsettingsfixture.h"

#include <boxanswerer.h>
#include <systempaths.h>

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QProgressBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

/// The window while it is at work, and when it closes meanwhile.
class CommonSettingsAtWorkTest : public CommonSettingsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void windowShowsThatItIsAtWork()
    {
        write(archive("slow.tar.gz"), "x");
        show("importTab");
        fileLine("importTab")->setText(archive("slow.tar.gz"));
        fileLine("importTab")->setFocus();
        QVERIFY(!find<QProgressBar>("busyBar")->isVisible());
        int looks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            if (!QApplication::activeModalWidget() || QApplication::activeModalWidget() == m_window.get()) {
                ++looks;
                timer.stop();
                QVERIFY(find<QProgressBar>("busyBar")->isVisible());
                QVERIFY(QGuiApplication::overrideCursor());
                QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
                QVERIFY(!find<QTabWidget>("tabWidget")->isEnabled());
                m_window->accept();
                m_window->close();
                m_window->reject();
                QVERIFY(m_window->isVisible());
            }
        });
        const BoxAnswerer answerer(QMessageBox::No);
        timer.start(100);
        clickOk();
        QCOMPARE(looks, 1);
        QCOMPARE(asked(), QStringLiteral("import slow.tar.gz"));
        QVERIFY(!m_window->isVisible());
        QVERIFY(m_window->isEnabled());
    }

    void pageMayCloseWhileTheHelperWorks()
    {
        write(archive("slow-kept.tar.gz"), "former");
        for (const char *tab : {"exportTab", "importTab"}) {
            init();
            show(tab);
            fileLine(tab)->setText(archive("slow-kept.tar.gz"));
            const BoxAnswerer answerer(QMessageBox::Yes);
            QTimer::singleShot(200, this, [this] {
                m_window.reset();
                m_service.reset();
            });
            // Not by the mouse: the button does not outlive the click.
            QMetaObject::invokeMethod(m_window.get(), &CommonSettingsWindow::accept, Qt::QueuedConnection);
            QTRY_VERIFY(!m_window);
            QTRY_VERIFY(asked().endsWith(QLatin1String("slow-kept.tar.gz")));
            QTRY_COMPARE(read(archive("slow-kept.tar.gz")), QByteArray("former"));
        }
    }

    void exportThatSucceedsAfterThePageHasClosedIsNotTakenBack()
    {
        write(archive("slow-new.tar.gz"), "former");
        show("exportTab");
        fileLine("exportTab")->setText(archive("slow-new.tar.gz"));
        const BoxAnswerer answerer(QMessageBox::Yes);
        QTimer::singleShot(200, this, [this] { m_window.reset(); });
        // Not by the mouse: the button does not outlive the click.
        QMetaObject::invokeMethod(m_window.get(), &CommonSettingsWindow::accept, Qt::QueuedConnection);
        QTRY_VERIFY(!m_window);
        QTRY_COMPARE(QDir(m_bus.root()).entryList({QStringLiteral("slow-new*")}),
                     QStringList{QStringLiteral("slow-new.tar.gz")});
        QCOMPARE(read(archive("slow-new.tar.gz")), QByteArray()); // as the helper has left it
        QCOMPARE(answerer.boxes().size(), 1);
    }

    void pageMayCloseWhileItsRotationIsWritten()
    {
        write(m_bus.root() + SystemPaths::rotationFile(), "/slow-bad {\n\trotate 4\n}\n");
        show("logRotateTab");
        editRotation(5);
        const BoxAnswerer answerer;
        QTimer::singleShot(200, this, [this] { m_window.reset(); });
        QMetaObject::invokeMethod(m_window.get(), &CommonSettingsWindow::accept, Qt::QueuedConnection);
        QTRY_VERIFY(!m_window);
        QTRY_VERIFY(!QGuiApplication::overrideCursor());
        QCOMPARE(asked(), QString(QLatin1String("write ") + SystemPaths::rotationFile()));
        QCOMPARE(answerer.boxes().size(), 0);
    }

    void pageThatClosesWhileItAsksWritesAndAnnouncesNothing_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("expected");
        QTest::newRow("rotation") << "logRotateTab"
                                  << "";
        QTest::newRow("export") << "exportTab"
                                << "";
        QTest::newRow("import") << "importTab"
                                << "import kept.tar.gz";
    }

    void pageThatClosesWhileItAsksWritesAndAnnouncesNothing()
    {
        QFETCH(const QString, tab);
        QFETCH(const QString, expected);
        write(m_bus.root() + SystemPaths::rotationFile(), "# mine\n/a {\n\trotate 4\n}\n");
        write(archive("kept.tar.gz"), "former");
        show(tab.toLatin1().constData());
        editRotation(5);
        for (const char *page : {"exportTab", "importTab"}) {
            fileLine(page)->setText(archive("kept.tar.gz"));
        }
        bool announced = false;
        connect(m_window.get(), &CommonSettingsWindow::configurationImported, this,
                [&announced] { announced = true; });
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [this] {
            QWidget *question = QApplication::activeModalWidget();
            if (question && question != m_window.get() && !QGuiApplication::overrideCursor()) {
                const QPointer<QWidget> open(question);
                m_window.reset();
                if (open) {
                    open->close(); // the question about the reboot belongs to no window
                }
            }
        });
        closer.start(20);
        QMetaObject::invokeMethod(m_window.get(), &CommonSettingsWindow::accept, Qt::QueuedConnection);
        QTRY_VERIFY(!m_window);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        closer.stop();
        QCOMPARE(asked(), expected);
        QVERIFY(!announced);
        QCOMPARE(read(archive("kept.tar.gz")), QByteArray("former"));
    }
};

QTEST_MAIN(CommonSettingsAtWorkTest)
#include "commonsettingsatworktest.moc"
