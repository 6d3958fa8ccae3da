// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "commonsettingsfixture.h"

#include <boxanswerer.h>
#include <destinationssettings.h>
#include <filewidget.h>
#include <logrotationsettings.h>
#include <settingsexporter.h>
#include <settingsimporter.h>
#include <systempaths.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <sys/stat.h>

/// What the window asks of the helper, and what it tells the user.
class CommonSettingsWindowTest : public CommonSettingsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void tabsStandInOrder()
    {
        const auto *tabs = find<QTabWidget>("tabWidget");
        QStringList titles;
        QStringList names;
        for (int i = 0; i < tabs->count(); ++i) {
            titles.append(tabs->tabText(i));
            names.append(tabs->widget(i)->objectName());
        }
        QCOMPARE(
            titles,
            (QStringList{QStringLiteral("Destinations"), QStringLiteral("Main log rotation"),
                         QStringLiteral("Export configuration"), QStringLiteral("Import configuration")}));
        QCOMPARE(names,
                 (QStringList{QStringLiteral("destinationsTab"), QStringLiteral("logRotateTab"),
                              QStringLiteral("exportTab"), QStringLiteral("importTab")}));
        QCOMPARE(find<DestinationsSettings>("destinationsSettings")->parentWidget(), tabs->widget(0));
        QCOMPARE(find<LogRotationSettings>("logRotationSettings")->parentWidget(), tabs->widget(1));
        QCOMPARE(find<SettingsExporter>("settingsExporter")->parentWidget(), tabs->widget(2));
        QCOMPARE(find<SettingsImporter>("settingsImporter")->parentWidget(), tabs->widget(3));
    }

    void openPreparesThePages()
    {
        fileLine("exportTab")->setText(QStringLiteral("/x"));
        fileLine("importTab")->setText(QStringLiteral("/y"));
        write(m_bus.root() + SystemPaths::eventLogFile(), QByteArray(2048, 'x'));
        write(m_bus.root() + SystemPaths::rotationFile(), "/a {\n\trotate 9\n}\n");
        find<QTabWidget>("tabWidget")->setCurrentIndex(2);
        m_window->open();
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->isModal());
        QCOMPARE(find<QTabWidget>("tabWidget")->currentIndex(), 2);
        QCOMPARE(fileLine("exportTab")->text(), QString());
        QCOMPARE(fileLine("importTab")->text(), QString());
        QCOMPARE(find<QLabel>("logSizeLabel")->text(), QStringLiteral("2.0 KiB"));
        QCOMPARE(find<QSpinBox>("numberOfLogs")->value(), 9);
    }

    void destinationsCanBeAskedFor()
    {
        find<QTabWidget>("tabWidget")->setCurrentIndex(3);
        m_window->openDestinationSettings();
        QVERIFY(m_window->isVisible());
        QCOMPARE(find<QTabWidget>("tabWidget")->currentWidget()->objectName(),
                 QStringLiteral("destinationsTab"));
    }

    void onlyTheShownTabActs_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("expected");
        QTest::newRow("destinations")
            << "destinationsTab" << QString(QLatin1String("write ") + SystemPaths::mainConfiguration());
        QTest::newRow("rotation") << "logRotateTab"
                                  << QString(QLatin1String("write ") + SystemPaths::rotationFile());
        QTest::newRow("export") << "exportTab"
                                << "export out.tar.gz";
        QTest::newRow("import") << "importTab"
                                << "import in.tar.gz";
    }

    void onlyTheShownTabActs()
    {
        QFETCH(const QString, tab);
        QFETCH(const QString, expected);
        write(archive("in.tar.gz"), "x");
        show(tab.toLatin1().constData());
        auto *destinations = find<DestinationsSettings>("destinationsSettings");
        destinations->insertNewDest({QStringLiteral("file"), QStringLiteral("added"),
                                     QStringLiteral("/tmp/x"), QStringLiteral("514"), QStringLiteral("tcp")});
        QVERIFY(destinations->isDestinationsModified());
        editRotation(7);
        fileLine("exportTab")->setText(archive("out.tar.gz"));
        fileLine("importTab")->setText(archive("in.tar.gz"));
        const QSignalSpy imported(m_window.get(), &CommonSettingsWindow::configurationImported);
        const BoxAnswerer answerer(QMessageBox::No);
        clickOk();
        QCOMPARE(asked(), expected);
        QVERIFY(!m_window->isVisible());
        QCOMPARE(m_window->result(), int(QDialog::Accepted));
        QCOMPARE(imported.size(), tab == QLatin1String("importTab") ? 1 : 0);
        // The helper has written nothing, so this is what the files say.
        QVERIFY(!destinations->isDestinationsModified());
        QCOMPARE(find<QSpinBox>("numberOfLogs")->value(), 4);
    }

    void okWithoutAChangeAsksForNothing()
    {
        for (const char *tab : {"destinationsTab", "logRotateTab"}) {
            show(tab);
            clickOk();
            QVERIFY(!m_window->isVisible());
        }
        QCOMPARE(asked(), QString());
    }

    void emptyFileFieldIsToldAndAsksForNothing()
    {
        for (const char *tab : {"exportTab", "importTab"}) {
            show(tab);
            const QSignalSpy imported(m_window.get(), &CommonSettingsWindow::configurationImported);
            const BoxAnswerer answerer;
            clickOk();
            QCOMPARE(answerer.boxes().size(), 1);
            QCOMPARE(answerer.boxes().first().icon, QMessageBox::Critical);
            QCOMPARE(answerer.boxes().first().title, QStringLiteral("Error"));
            QCOMPARE(answerer.boxes().first().text, QStringLiteral("No file selected"));
            QCOMPARE(imported.size(), 0);
            QVERIFY(!m_window->isVisible());
        }
        QCOMPARE(asked(), QString());
    }

    void exportTellsOfItsSuccess()
    {
        show("exportTab");
        fileLine("exportTab")->setText(archive("new.tar.gz"));
        const BoxAnswerer answerer;
        clickOk();
        QCOMPARE(answerer.boxes().size(), 1);
        QCOMPARE(answerer.boxes().first().icon, QMessageBox::Information);
        QCOMPARE(answerer.boxes().first().title, QStringLiteral("Information"));
        QCOMPARE(answerer.boxes().first().text, QStringLiteral("Configuration exported successfully"));
    }

    void failedExportIsToldAndLeavesNoEmptyFile()
    {
        show("exportTab");
        fileLine("exportTab")->setText(archive("bad.tar.gz"));
        const BoxAnswerer answerer;
        clickOk();
        QCOMPARE(answerer.boxes().size(), 1);
        QCOMPARE(answerer.boxes().first().icon, QMessageBox::Critical);
        QCOMPARE(answerer.boxes().first().title, QStringLiteral("Error"));
        QCOMPARE(answerer.boxes().first().text,
                 QStringLiteral("Can not export configuration!\n<b>staged</b> failure"));
        QVERIFY(!QFile::exists(archive("bad.tar.gz")));
        QVERIFY(!m_window->isVisible());
    }

    void failedExportLeavesTheFormerArchive()
    {
        write(archive("bad-kept.tar.gz"), "former");
        show("exportTab");
        fileLine("exportTab")->setText(archive("bad-kept.tar.gz"));
        const BoxAnswerer answerer(QMessageBox::Yes);
        clickOk();
        QCOMPARE(answerer.boxes().size(), 2);
        QCOMPARE(answerer.boxes().last().text,
                 QStringLiteral("Can not export configuration!\n<b>staged</b> failure"));
        QCOMPARE(asked(), QStringLiteral("export bad-kept.tar.gz"));
        QCOMPARE(read(archive("bad-kept.tar.gz")), QByteArray("former"));
        QCOMPARE(QDir(m_bus.root()).entryList({QStringLiteral("bad-kept*")}).size(), 1);
    }

    void exportThroughALinkIsRefusedBeforeAnythingIsEmptied()
    {
        write(archive("victim.tar.gz"), "of somebody");
        QVERIFY(QFile::link(archive("victim.tar.gz"), archive("link.tar.gz")));
        show("exportTab");
        fileLine("exportTab")->setText(archive("link.tar.gz"));
        const BoxAnswerer answerer(QMessageBox::Yes);
        clickOk();
        QCOMPARE(answerer.boxes().size(), 1);
        QVERIFY2(answerer.boxes().first().text.contains(QStringLiteral("link.tar.gz” is a symbolic link")),
                 qPrintable(answerer.boxes().first().text));
        QCOMPARE(asked(), QString());
        QCOMPARE(read(archive("victim.tar.gz")), QByteArray("of somebody"));
    }

    void aPipeIsNotEvenOpened()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(archive("pipe.tar.gz")).constData(), 0600), 0);
        const BoxAnswerer answerer;
        for (const char *tab : {"exportTab", "importTab"}) {
            show(tab);
            fileLine(tab)->setText(archive("pipe.tar.gz"));
            clickOk();
            QVERIFY2(
                answerer.boxes().last().text.contains(QStringLiteral("pipe.tar.gz” is not a regular file")),
                qPrintable(answerer.boxes().last().text));
        }
        QCOMPARE(answerer.boxes().size(), 2);
        QCOMPARE(asked(), QString());
        QVERIFY(QFile::remove(archive("pipe.tar.gz")));
    }

    void exportWhereTheUserMayNotWriteAsksForNothing()
    {
        show("exportTab");
        fileLine("exportTab")->setText(archive("missing/out.tar.gz"));
        const BoxAnswerer answerer;
        clickOk();
        QCOMPARE(answerer.boxes().first().text,
                 QStringLiteral("Can not export configuration!\nNo such file or directory"));
        QCOMPARE(asked(), QString());
    }

    void typedPathBeginsInTheHomeDirectory()
    {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", m_bus.root().toLocal8Bit());
        const BoxAnswerer answerer;
        for (const char *typed : {"relative.tar.gz", "~/tilde.tar.gz"}) {
            show("exportTab");
            fileLine("exportTab")->setText(QLatin1String(typed));
            clickOk();
        }
        qputenv("HOME", home);
        QCOMPARE(asked(), QStringLiteral("export relative.tar.gz\nexport tilde.tar.gz"));
    }

    void typedNameOfAPresentFileIsAskedAbout()
    {
        write(archive("kept.tar.gz"), "old");
        show("exportTab");
        fileLine("exportTab")->setText(archive("kept.tar.gz"));
        {
            const BoxAnswerer answerer(QMessageBox::No);
            clickOk();
            QCOMPARE(answerer.boxes().size(), 1);
            QVERIFY(answerer.boxes().first().text.contains(QLatin1String("Replace it?")));
        }
        QVERIFY(m_window->isVisible());
        QCOMPARE(fileLine("exportTab")->text(), archive("kept.tar.gz"));
        QCOMPARE(asked(), QString());
        QCOMPARE(read(archive("kept.tar.gz")), QByteArray("old"));
        const BoxAnswerer answerer(QMessageBox::Yes);
        clickOk();
        QCOMPARE(answerer.boxes().size(), 2);
        QCOMPARE(asked(), QStringLiteral("export kept.tar.gz"));
    }

    void importAsksAboutTheReboot()
    {
        const QString marker = m_bus.root() + QStringLiteral("/rebooted");
        const QString helper = SystemPaths::resolve(SystemPaths::rebootHelper());
        QVERIFY(QDir().mkpath(QFileInfo(helper).path()));
        write(helper, "#!/bin/sh\necho \"$1\" > " + marker.toLocal8Bit() + "\n");
        QVERIFY(QFile::setPermissions(helper, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner));
        write(archive("in.tar.gz"), "x");
        for (const auto choice : {QMessageBox::No, QMessageBox::Yes}) {
            show("importTab");
            fileLine("importTab")->setText(archive("in.tar.gz"));
            const QSignalSpy imported(m_window.get(), &CommonSettingsWindow::configurationImported);
            const BoxAnswerer answerer(choice);
            clickOk();
            QCOMPARE(answerer.boxes().size(), 1);
            QCOMPARE(answerer.boxes().first().title, QStringLiteral("Reboot"));
            QCOMPARE(
                answerer.boxes().first().text,
                QStringLiteral("Configuration imported successfully.\nThe notification settings will take "
                               "effect only after the system is rebooted.\nReboot now?"));
            QCOMPARE(imported.size(), 1);
            QCOMPARE(QFile::exists(marker), choice == QMessageBox::Yes);
            QVERIFY(!find<SettingsImporter>("settingsImporter")->mainConfigImportFault());
        }
    }

    void faultOfTheMainConfigurationIsToldBeforeTheSuccess()
    {
        write(archive("fault.tar.gz"), "x");
        show("importTab");
        fileLine("importTab")->setText(archive("fault.tar.gz"));
        const QSignalSpy imported(m_window.get(), &CommonSettingsWindow::configurationImported);
        const BoxAnswerer answerer(QMessageBox::No);
        clickOk();
        QCOMPARE(answerer.boxes().size(), 2);
        QCOMPARE(answerer.boxes().first().icon, QMessageBox::Warning);
        QCOMPARE(answerer.boxes().first().title, QStringLiteral("Warning"));
        QCOMPARE(
            answerer.boxes().first().text,
            QStringLiteral("Failed to import /etc/syslog-ng/conf.d/mod-nivra.conf!\nThe contents of the file "
                           "are not compatible with the current version of the event logging subsystem."));
        QCOMPARE(answerer.boxes().last().title, QStringLiteral("Reboot"));
        QCOMPARE(imported.size(), 1);
        QVERIFY(find<SettingsImporter>("settingsImporter")->mainConfigImportFault());
    }

    void failedImportIsToldAndAnnouncesNothing()
    {
        write(archive("bad.tar.gz"), "x");
        const QSignalSpy imported(m_window.get(), &CommonSettingsWindow::configurationImported);
        for (const char *name : {"bad.tar.gz", "missing.tar.gz"}) {
            show("importTab");
            fileLine("importTab")->setText(archive(name));
            const BoxAnswerer answerer;
            clickOk();
            QCOMPARE(answerer.boxes().size(), 1);
            QCOMPARE(answerer.boxes().first().icon, QMessageBox::Critical);
            QCOMPARE(answerer.boxes().first().title, QStringLiteral("Error"));
            QVERIFY(
                answerer.boxes().first().text.startsWith(QLatin1String("Can not import configuration!\n")));
            QVERIFY(answerer.boxes().first().text.endsWith(m_service->errorString()));
        }
        QCOMPARE(imported.size(), 0);
        QCOMPARE(asked(), QStringLiteral("import bad.tar.gz"));
    }

    void editsThatWereNotSavedStay()
    {
        QVERIFY(m_bus.setAllowed(false));
        show("logRotateTab");
        editRotation(8);
        const BoxAnswerer answerer;
        clickOk();
        QCOMPARE(answerer.boxes().size(), 1);
        QVERIFY(m_window->isVisible());
        QCOMPARE(find<QSpinBox>("numberOfLogs")->value(), 8);
        QVERIFY(m_bus.setAllowed(true));
        clickOk();
        QCOMPARE(asked(), QString(QLatin1String("write ") + SystemPaths::rotationFile()));
        QVERIFY(!m_window->isVisible());
    }

    void cancelDropsTheEdits()
    {
        show("logRotateTab");
        editRotation(8);
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
        QCOMPARE(find<QSpinBox>("numberOfLogs")->value(), 4);
        QCOMPARE(asked(), QString());
    }

    void fileIsChosenInADialog_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<int>("mode");
        QTest::newRow("export") << "exportTab" << int(QFileDialog::AcceptSave);
        QTest::newRow("import") << "importTab" << int(QFileDialog::AcceptOpen);
    }

    void fileIsChosenInADialog()
    {
        QFETCH(const QString, tab);
        QFETCH(const int, mode);
        const QByteArray name = tab.toLatin1();
        write(archive("chosen.tar.gz"), "x");
        show(name.constData());
        auto *button
            = find<QWidget>(name.constData())->findChild<QToolButton *>(QStringLiteral("fileToolButton"));
        int seen = 0;
        bool accept = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog) {
                return;
            }
            ++seen;
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Choose file"));
            QCOMPARE(dialog->nameFilters(), QStringList{QStringLiteral("*.tar.gz")});
            QCOMPARE(int(dialog->acceptMode()), mode);
            if (!accept) {
                dialog->reject();
                return;
            }
            // Typed: a file that the dialog has not listed yet cannot be selected.
            auto *line = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            line->setText(mode == QFileDialog::AcceptSave ? archive("fresh") : archive("chosen.tar.gz"));
            QMetaObject::invokeMethod(dialog, "accept");
        });
        timer.start(20);
        fileLine(name.constData())->setText(archive("typed"));
        button->click();
        QCOMPARE(seen, 1);
        QCOMPARE(fileLine(name.constData())->text(), archive("typed"));
        auto *file = find<QWidget>(name.constData())->findChild<FileWidget *>();
        QVERIFY(!file->isConfirmed());
        accept = true;
        button->click();
        QCOMPARE(file->filePath(),
                 mode == QFileDialog::AcceptSave ? archive("fresh.tar.gz") : archive("chosen.tar.gz"));
        QVERIFY(file->isConfirmed());
        file->clear();
        QCOMPARE(file->filePath(), QString());
        QVERIFY(!file->isConfirmed());
    }

    void tabReachesEveryControl_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("export") << "exportTab"
                                << QStringList{QStringLiteral("fileLineEdit"),
                                               QStringLiteral("fileToolButton")};
        QTest::newRow("import") << "importTab"
                                << QStringList{QStringLiteral("fileLineEdit"),
                                               QStringLiteral("fileToolButton")};
        QTest::newRow("rotation") << "logRotateTab"
                                  << QStringList{
                                         QStringLiteral("numberCheckBox"), QStringLiteral("numberOfLogs"),
                                         QStringLiteral("logSizeCheckBox"), QStringLiteral("periodCheckBox")};
    }

    void tabReachesEveryControl()
    {
        QFETCH(const QString, tab);
        QFETCH(const QStringList, order);
        show(tab.toLatin1().constData());
        auto *bar = find<QTabWidget>("tabWidget")->tabBar();
        bar->setFocus();
        QStringList reached;
        QVector<QWidget *> widgets;
        do {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            widgets.append(QApplication::focusWidget());
            reached.append(QApplication::focusWidget()->objectName());
        } while (QApplication::focusWidget() != bar && widgets.size() < 20);
        QCOMPARE(reached.mid(0, order.size()), order);
        const auto *box = find<QDialogButtonBox>("buttonBox");
        QVERIFY(widgets.contains(box->button(QDialogButtonBox::Ok)));
        QVERIFY(widgets.contains(box->button(QDialogButtonBox::Cancel)));
        QCOMPARE(widgets.last(), bar);
    }
};

QTEST_MAIN(CommonSettingsWindowTest)
#include "commonsettingswindowtest.moc"
