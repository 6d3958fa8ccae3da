// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <boxanswerer.h>
#include <commonsettingswindow.h>
#include <configaccessservice.h>
#include <destinationssettings.h>
#include <filewidget.h>
#include <leashedprocess.h>
#include <logrotationsettings.h>
#include <privatebus.h>
#include <settingsexporter.h>
#include <settingsimporter.h>
#include <systempaths.h>

#include <KLocalizedString>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <sys/stat.h>

namespace {
constexpr char mainConfiguration[]
    = "source nivra_events_src {\n    internal();\n};\n"
      "destination nivra_json_dst {\n    file(\"/x\");\n};\n"
      "log {\n    source(nivra_events_src);\n    destination(nivra_json_dst);\n};\n";
constexpr char rotation[] = "/a {\n\trotate 4\n}\n";
} // namespace

/// The window over a helper that only notes what it is asked for.
class CommonSettingsWindowTest : public QObject
{
    Q_OBJECT

private:
    void write(const QString &path, const QByteArray &content) const
    {
        QFile file(path);
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
        QCOMPARE(file.write(content), content.size());
    }
    [[nodiscard]] static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// What the helper was asked for, without the paths of this run.
    [[nodiscard]] QString asked() const
    {
        return QString::fromLocal8Bit(read(m_bus.root() + QStringLiteral("/asked")))
            .remove(m_bus.root() + QLatin1Char('/'))
            .trimmed();
    }
    [[nodiscard]] QString archive(const char *name) const
    {
        return m_bus.root() + QLatin1Char('/') + QLatin1String(name);
    }

    template <typename Widget> Widget *find(const char *name) const
    {
        auto *widget = m_window->findChild<Widget *>(QLatin1String(name));
        if (!widget) {
            qFatal("no %s", name);
        }
        return widget;
    }
    void show(const char *tab) const
    {
        m_window->open();
        find<QTabWidget>("tabWidget")->setCurrentWidget(find<QWidget>(tab));
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    [[nodiscard]] QLineEdit *fileLine(const char *page) const
    {
        return find<QWidget>(page)->findChild<QLineEdit *>(QStringLiteral("fileLineEdit"));
    }
    void clickOk() const
    {
        QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    }
    void editRotation(int number) const { find<QSpinBox>("numberOfLogs")->setValue(number); }

    PrivateBus m_bus;
    std::unique_ptr<LeashedProcess> m_helper;
    std::unique_ptr<ConfigAccessService> m_service;
    std::unique_ptr<CommonSettingsWindow> m_window;

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
        qputenv("ADMINEVENTS_ROOT", m_bus.root().toLocal8Bit());
        m_helper = std::make_unique<LeashedProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("STAGED_HELPER_LOG"), m_bus.root() + QStringLiteral("/asked"));
        m_helper->setProcessEnvironment(environment);
        m_helper->setProcessChannelMode(QProcess::ForwardedChannels);
        m_helper->start(QStringLiteral(STAGED_HELPER_PATH), QStringList());
        QVERIFY(m_helper->waitForStarted());
        QTRY_COMPARE(m_bus.helperPid(), m_helper->processId());
        QVERIFY(QDir().mkpath(m_bus.root() + SystemPaths::eventLogDirectory()));
    }

    void init()
    {
        QVERIFY(m_bus.setAllowed(true));
        QFile::remove(m_bus.root() + QStringLiteral("/asked"));
        write(m_bus.root() + SystemPaths::mainConfiguration(), mainConfiguration);
        write(m_bus.root() + SystemPaths::rotationFile(), rotation);
        m_service = std::make_unique<ConfigAccessService>(nullptr);
        m_window = std::make_unique<CommonSettingsWindow>(*m_service, nullptr);
    }

    void cleanup()
    {
        m_window.reset();
        m_service.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

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
