// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "lossanswerer.h"

#include <boxanswerer.h>
#include <configaccessservice.h>
#include <logrotationsettings.h>
#include <privatebus.h>
#include <rotationwriter.h>
#include <systempaths.h>
#include <treeitem.h>

#include <KFormat>
#include <KLocalizedString>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QProcess>
#include <QSpinBox>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTest>
#include <QTextCodec>

/// The page over the real helper, which writes into a root directory of the test's own.
class LogRotationSettingsTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString path() const { return m_bus.root() + SystemPaths::rotationFile(); }

    void write(const QByteArray &content) const
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    [[nodiscard]] QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    [[nodiscard]] std::unique_ptr<LogRotationSettings> page(const QByteArray &file)
    {
        write(file);
        auto page = std::make_unique<LogRotationSettings>(m_service, nullptr);
        page->show();
        return page;
    }

    template <typename Widget> static Widget *field(const LogRotationSettings &page, const char *name)
    {
        auto *widget = page.findChild<Widget *>(QString::fromLatin1(name));
        if (!widget) {
            qFatal("no field %s", name);
        }
        return widget;
    }
    static QCheckBox *box(const LogRotationSettings &page, const char *name)
    {
        return field<QCheckBox>(page, name);
    }
    static QSpinBox *number(const LogRotationSettings &page) { return field<QSpinBox>(page, "numberOfLogs"); }
    static QSpinBox *size(const LogRotationSettings &page) { return field<QSpinBox>(page, "logSize"); }
    static QComboBox *period(const LogRotationSettings &page)
    {
        return field<QComboBox>(page, "periodComboBox");
    }
    static QString note(const LogRotationSettings &page) { return field<QLabel>(page, "noteLabel")->text(); }

    /// The lines that the page would write, without the names and the braces, in one line.
    static QString directives(const LogRotationSettings &page)
    {
        const std::unique_ptr<TreeItem> root = page.createConfig();
        return root ? RotationWriter::lines(*root).mid(1).join(QLatin1Char(',')).remove(QLatin1Char('\t'))
                    : QStringLiteral("none");
    }

    static QString debugOutput(const QString &file)
    {
        QProcess logrotate;
        logrotate.setProcessChannelMode(QProcess::MergedChannels);
        logrotate.start(QStringLiteral("logrotate"),
                        {QStringLiteral("-d"), QStringLiteral("-s"), QStringLiteral("/dev/null"), file});
        logrotate.waitForFinished();
        const QString output = QString::fromUtf8(logrotate.readAll());
        return logrotate.exitCode() == 0 ? output : QStringLiteral("failed: ") + output;
    }

    PrivateBus m_bus;
    ConfigAccessService m_service{nullptr};

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
        qputenv("ADMINEVENTS_ROOT", m_bus.root().toLocal8Bit());
        // Rotation rules that others may write are refused.
        QDir(m_bus.root()).mkpath(SystemPaths::eventLogDirectory().mid(1));
    }
    void init() { QVERIFY(m_bus.setAllowed(true)); }

    void fileFillsTheFields()
    {
        const auto page = this->page("/a {\n\tmonthly\n\tsize 100M\n\trotate 7\n\tcompress\n}\n");
        QVERIFY(field<QGroupBox>(*page, "rotationGroupBox")->isEnabled());
        QVERIFY(box(*page, "numberCheckBox")->isChecked());
        QCOMPARE(number(*page)->value(), 7);
        QVERIFY(box(*page, "logSizeCheckBox")->isChecked());
        QCOMPARE(size(*page)->value(), 100);
        QVERIFY(box(*page, "periodCheckBox")->isChecked());
        QCOMPARE(period(*page)->currentData().toString(), QStringLiteral("monthly"));
        QCOMPARE(page->errorString(), QString());
    }

    void fileWithoutTermsLeavesTheFieldsOff()
    {
        const auto page = this->page("/a {\n\tcompress\n}\n");
        for (const char *name : {"numberCheckBox", "logSizeCheckBox", "periodCheckBox"}) {
            QVERIFY(!box(*page, name)->isChecked());
            QVERIFY(box(*page, name)->isEnabled());
        }
        for (const char *name : {"numberOfLogs", "logSize", "periodComboBox"}) {
            QVERIFY(!field<QWidget>(*page, name)->isEnabled());
        }
        QTest::mouseClick(box(*page, "logSizeCheckBox"), Qt::LeftButton);
        QVERIFY(size(*page)->isEnabled());
        QVERIFY(!number(*page)->isEnabled());
    }

    void periodsStandInOrder()
    {
        const auto page = this->page("/a {\n}\n");
        QStringList shown;
        QStringList kept;
        for (int i = 0; i < period(*page)->count(); ++i) {
            shown.append(period(*page)->itemText(i));
            kept.append(period(*page)->itemData(i).toString());
        }
        QCOMPARE(shown.join(QLatin1Char(' ')), QStringLiteral("day week month year"));
        QCOMPARE(kept.join(QLatin1Char(' ')), QStringLiteral("daily weekly monthly yearly"));
    }

    void storedValueIsShownAndKept_data()
    {
        QTest::addColumn<QByteArray>("directive");
        QTest::addColumn<int>("shownNumber");
        QTest::addColumn<int>("shownSize");
        const int noNumber = 4;
        const int noSize = 100;
        QTest::newRow("megabytes") << QByteArray("size 100M") << noNumber << 100;
        QTest::newRow("more than the field takes") << QByteArray("size 5000M") << noNumber << 4096;
        QTest::newRow("the most") << QByteArray("size 4096M") << noNumber << 4096;
        QTest::newRow("gigabytes") << QByteArray("size 2G") << noNumber << 2048;
        QTest::newRow("too many gigabytes") << QByteArray("size 5G") << noNumber << 4096;
        QTest::newRow("kilobytes") << QByteArray("size 2048k") << noNumber << 2;
        QTest::newRow("kilobytes, the other letter") << QByteArray("size 2049K") << noNumber << 3;
        QTest::newRow("bytes") << QByteArray("size 100") << noNumber << 1;
        QTest::newRow("more bytes") << QByteArray("size 3145729") << noNumber << 4;
        QTest::newRow("nothing") << QByteArray("size 0") << noNumber << 1;
        QTest::newRow("with a sign") << QByteArray("size +7M") << noNumber << 7;
        QTest::newRow("files") << QByteArray("rotate 0") << 0 << noSize;
        QTest::newRow("the most files") << QByteArray("rotate 99") << 99 << noSize;
        QTest::newRow("more files than the field takes") << QByteArray("rotate 150") << 99 << noSize;
        QTest::newRow("all files") << QByteArray("rotate -1") << -1 << noSize;
    }

    void storedValueIsShownAndKept()
    {
        QFETCH(const QByteArray, directive);
        QFETCH(const int, shownNumber);
        QFETCH(const int, shownSize);
        const QByteArray before = "/a {\n\t" + directive + "\n\tcompress\n}\n";
        const auto page = this->page(before);
        QCOMPARE(page->errorString(), QString());
        QCOMPARE(number(*page)->value(), shownNumber);
        QCOMPARE(size(*page)->value(), shownSize);
        QVERIFY(directives(*page).contains(QString::fromLatin1(directive)));
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), before);
        // Nor does another edit touch it.
        QTest::mouseClick(box(*page, "periodCheckBox"), Qt::LeftButton);
        QVERIFY(page->saveConfig());
        QVERIFY2(content().contains("\t" + directive + "\n"), content().constData());
        QVERIFY(content().contains("\tweekly\n"));
    }

    void editedValueIsWritten()
    {
        const auto page = this->page("/a {\n\tsize 5000M\n\tcompress\n\trotate 150\n\tweekly 3\n}\n");
        QVERIFY(note(*page).contains(QLatin1String("150")));
        QVERIFY(note(*page).contains(QLatin1String("5000M")));
        number(*page)->setValue(98);
        QVERIFY(!note(*page).contains(QLatin1String("150")));
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a {\n\trotate 98\n\tsize 5000M\n\tweekly 3\n\tcompress\n}\n"));
        size(*page)->setValue(4000);
        size(*page)->setValue(4096);
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a {\n\tcompress\n\tweekly 3\n\tsize 4096M\n\trotate 98\n}\n"));
        period(*page)->setCurrentIndex(0);
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a {\n\tcompress\n\tdaily\n\tsize 4096M\n\trotate 98\n}\n"));
    }

    void withoutTermsTheRestIsKept()
    {
        const auto page = this->page("/a /b {\n\tdaily\n\tcreate 0640 root adm\n\tpostrotate\n\t\techo x\n"
                                     "\tendscript\n\tsize 3M\n\trotate 2\n\thourly\n}\n");
        for (const char *name : {"numberCheckBox", "logSizeCheckBox", "periodCheckBox"}) {
            QTest::mouseClick(box(*page, name), Qt::LeftButton);
        }
        QVERIFY(page->saveConfig());
        QCOMPARE(content(),
                 QByteArray("/a /b {\n\tcreate 0640 root adm\n\tpostrotate\n\t\techo x\n\tendscript\n"
                            "\thourly\n}\n"));
    }

    void termsStandBehindTheRest()
    {
        const auto page = this->page("/a {\n\tcompress\n}\n");
        for (const char *name : {"numberCheckBox", "logSizeCheckBox", "periodCheckBox"}) {
            QTest::mouseClick(box(*page, name), Qt::LeftButton);
        }
        QCOMPARE(directives(*page), QStringLiteral("compress,weekly,size 100M,rotate 4,}"));
        QCOMPARE(content(), QByteArray("/a {\n\tcompress\n}\n"));
    }

    void changeTakenBackWritesNothing()
    {
        const QByteArray before("/a {\n  rotate 5\n\n  size 3M\n}");
        const auto page = this->page(before);
        number(*page)->setValue(6);
        number(*page)->setValue(5);
        box(*page, "logSizeCheckBox")->click();
        box(*page, "logSizeCheckBox")->click();
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), before);
    }

    void duplicateTermsBecomeOne()
    {
        const auto page = this->page("/a {\n\trotate 5\n\tdaily\n\trotate 7\n\tmonthly\n}\n");
        QCOMPARE(number(*page)->value(), 7); // as in the program that reads it
        QCOMPARE(period(*page)->currentData().toString(), QStringLiteral("monthly"));
        number(*page)->setValue(8);
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a {\n\tmonthly\n\trotate 8\n}\n"));
    }

    void pageSaysWhichTermWins()
    {
        const auto page = this->page("/a {\n\tweekly\n\tsize 5M\n}\n");
        QVERIFY(note(*page).contains(QLatin1String("the size decides")));
        QVERIFY(field<QLabel>(*page, "noteLabel")->isVisible());
        box(*page, "periodCheckBox")->click();
        QVERIFY(!note(*page).contains(QLatin1String("decides")));
        QVERIFY(!field<QLabel>(*page, "noteLabel")->isVisible());

        const auto other = this->page("/a {\n\tsize 5M\n\tweekly\n}\n");
        QVERIFY(note(*other).contains(QLatin1String("the period decides")));
        size(*other)->setValue(6);
        QVERIFY(note(*other).contains(QLatin1String("the size decides")));

        const auto hourly = this->page("/a {\n\tsize 5M\n\thourly\n}\n");
        QVERIFY(note(*hourly).contains(QLatin1String("hourly")));
        box(*hourly, "periodCheckBox")->click();
        QVERIFY(note(*hourly).contains(QLatin1String("the size decides")));
    }

    void whatDecidesStaysUnlessEdited_data()
    {
        QTest::addColumn<QByteArray>("terms");
        QTest::addColumn<QString>("written");
        QTest::newRow("size") << QByteArray("daily\nsize 5M") << "daily,size 5M,rotate 9,}";
        QTest::newRow("period") << QByteArray("size 5M\ndaily") << "rotate 9,size 5M,daily,}";
        QTest::newRow("hour") << QByteArray("daily\nhourly") << "rotate 9,daily,hourly,}";
        QTest::newRow("not the hour") << QByteArray("hourly\ndaily") << "hourly,daily,rotate 9,}";
    }

    void whatDecidesStaysUnlessEdited()
    {
        QFETCH(const QByteArray, terms);
        QFETCH(const QString, written);
        const auto page = this->page("/a {\n" + terms + "\nrotate 8\n}\n");
        number(*page)->setValue(9);
        QCOMPARE(directives(*page), written);
        const BoxAnswerer answerer;
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.boxes().size(), 0);
        QVERIFY(content().contains("rotate 9"));
    }

    void shiftInWhatDecidesIsAskedAbout()
    {
        const QByteArray before("/a {\n\thourly\n\tsize 5M\n\tdaily\n}\n");
        const auto page = this->page(before);
        box(*page, "numberCheckBox")->click();
        const LossAnswerer answerer(false);
        QVERIFY(!page->saveConfig());
        QCOMPARE(
            answerer.lists(),
            QVector<QStringList>{{QStringLiteral("So far “daily” decides when the log is rotated; from now "
                                                 "on “size” would.")}});
        QCOMPARE(content(), before);
    }

    void lossIsAskedAbout()
    {
        const QByteArray before("# my rules\n/a {\n\trotate 5\n\tdaily # mine\n\tprerotate\n\t\techo 'a  b'\n"
                                "\tendscript\n}\n");
        const auto page = this->page(before);
        QVERIFY(page->saveConfig());
        number(*page)->setValue(6);
        const QString comment = QStringLiteral("Line 1: the comment “# my rules” would be lost.");
        const QString blanks = QStringLiteral("Line 6: blanks in “echo 'a b'” would be altered.");
        {
            const LossAnswerer answerer(false);
            QVERIFY(!page->saveConfig());
            QCOMPARE(answerer.lists(), (QVector<QStringList>{{comment, blanks}}));
            QVERIFY(answerer.texts().contains(
                QStringLiteral("Saving rewrites the whole file /etc/logrotate.d/syslog-ng-mod-nivra, and not "
                               "all of its text can "
                               "be kept:")));
            QCOMPARE(content(), before);
            QCOMPARE(number(*page)->value(), 6);
        }
        period(*page)->setCurrentIndex(1);
        {
            const LossAnswerer answerer(true);
            QVERIFY(page->saveConfig());
            QCOMPARE(answerer.lists(),
                     (QVector<QStringList>{
                         {comment, blanks, QStringLiteral("Line 4: the comment “# mine” would be lost.")}}));
        }
        QCOMPARE(content(),
                 QByteArray("/a {\n\tprerotate\n\t\techo 'a b'\n\tendscript\n\tweekly\n\trotate 6\n}\n"));
    }

    void changeByAnotherWhileTheQuestionStandsOpenIsKept_data()
    {
        QTest::addColumn<QByteArray>("changed");
        QTest::addColumn<int>("questions");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("the same losses") << QByteArray("# mine\n/a {\n\trotate 4\n\tcompress\n}\n") << 1
                                         << QByteArray("/a {\n\tcompress\n\trotate 5\n}\n");
        QTest::newRow("other losses") << QByteArray("# theirs\n/a {\n\trotate 4\n\tcompress\n}\n") << 2
                                      << QByteArray("/a {\n\tcompress\n\trotate 5\n}\n");
        QTest::newRow("no losses") << QByteArray("/a {\n\trotate 4\n\tcompress\n}\n") << 1
                                   << QByteArray("/a {\n\tcompress\n\trotate 5\n}\n");
    }

    void changeByAnotherWhileTheQuestionStandsOpenIsKept()
    {
        QFETCH(const QByteArray, changed);
        QFETCH(const int, questions);
        QFETCH(const QByteArray, written);
        const auto page = this->page("# mine\n/a {\n\trotate 4\n}\n");
        number(*page)->setValue(5);
        const LossAnswerer answerer(true);
        // Runs first thing in the question's event loop.
        QTimer::singleShot(0, page.get(), [this, &changed] { write(changed); });
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.lists().size(), questions);
        QCOMPARE(content(), written);
    }

    void textForACommandIsAskedAboutOnce()
    {
        const auto page = this->page("/a {\n\trotate 5\n\tprerotate\n\t\tcat <<X\na\nX\n\tendscript\n}\n");
        number(*page)->setValue(6);
        const LossAnswerer answerer(true);
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.lists().size(), 1);
        number(*page)->setValue(7);
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.lists().size(), 1);
        QVERIFY(content().contains("rotate 7"));
    }

    void badFileDisablesThePageAndIsNotWritten_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown directive")
            << QByteArray("/a {\n\trotate 4\n\tsu <b>root</b> adm\n}\n")
            << "Bad config file\nLine 3: the directive “su” is not one that this page knows.";
        QTest::newRow("no number") << QByteArray("/a {\n\trotate many\n}\n")
                                   << "Line 2: “rotate many” is not one directive with its value.";
        QTest::newRow("negative") << QByteArray("/a {\n\trotate -2\n}\n") << "Line 2: “rotate -2”";
        QTest::newRow("no size") << QByteArray("/a {\n\tsize\n}\n") << "Line 2: “size”";
        QTest::newRow("unknown unit") << QByteArray("/a {\n\tsize 5m\n}\n") << "Line 2: “size 5m”";
        QTest::newRow("fraction") << QByteArray("/a {\n\tsize 1.5M\n}\n") << "Line 2: “size 1.5M”";
        QTest::newRow("size beyond reason")
            << QByteArray("/a {\n\tsize 99999999999999999999\n}\n") << "Line 2: “size 9999";
        QTest::newRow("gigabytes beyond reason")
            << QByteArray("/a {\n\tsize 9223372036854775807G\n}\n") << "Line 2: “size 9223372036854775807G”";
        QTest::newRow("two switches in a line")
            << QByteArray("/a {\n\tcompress daily\n}\n") << "Line 2: “compress daily”";
        QTest::newRow("no such weekday") << QByteArray("/a {\n\tweekly 8\n}\n") << "Line 2: “weekly 8”";
        QTest::newRow("empty") << QByteArray() << "Bad config file";
    }

    void badFileDisablesThePageAndIsNotWritten()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const QString, reason);
        const auto page = this->page(file);
        QVERIFY2(page->errorString().contains(reason), qPrintable(page->errorString()));
        QVERIFY(page->errorString().startsWith(path()));
        QVERIFY(!field<QGroupBox>(*page, "rotationGroupBox")->isEnabled());
        QVERIFY(!box(*page, "numberCheckBox")->isEnabled());
        QVERIFY(!box(*page, "numberCheckBox")->isChecked());
        const auto *bar = field<QWidget>(*page, "rotationMessageBar");
        QVERIFY(bar->isVisible());
        QVERIFY(!page->createConfig());
        box(*page, "numberCheckBox")->setChecked(true);
        const BoxAnswerer answerer;
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.boxes().size(), 0);
        QCOMPARE(content(), file);

        write("/a {\n\trotate 4\n}\n");
        page->loadConfig();
        QVERIFY(field<QGroupBox>(*page, "rotationGroupBox")->isEnabled());
        QVERIFY(!bar->isVisible());
        QCOMPARE(number(*page)->value(), 4);
    }

    void missingFileIsNotMade()
    {
        auto page = this->page("/a {\n}\n");
        QVERIFY(QFile::remove(path()));
        page->loadConfig();
        QCOMPARE(page->errorString(), QString(path() + QStringLiteral(": No such file or directory")));
        QVERIFY(page->saveConfig());
        QVERIFY(!QFile::exists(path()));
    }

    void fileSpoiledMeanwhileIsNotWritten()
    {
        const auto page = this->page("/a {\n\trotate 4\n}\n");
        number(*page)->setValue(5);
        write("/a {\n\trotate four\n}\n");
        const BoxAnswerer answerer;
        QVERIFY(!page->saveConfig());
        QCOMPARE(answerer.boxes().size(), 1);
        QCOMPARE(answerer.boxes().first().icon, QMessageBox::Critical);
        QVERIFY(answerer.boxes().first().text.contains(QStringLiteral("Line 2: “rotate four”")));
        QCOMPARE(content(), QByteArray("/a {\n\trotate four\n}\n"));
    }

    void changeByAnotherIsKeptBesideTheEdit()
    {
        const auto page = this->page("/a {\n\trotate 4\n}\n");
        number(*page)->setValue(5);
        write("/a /b {\n\trotate 7\n\tcompress\n\tsize 9M\n}\n");
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a /b {\n\tcompress\n\tsize 9M\n\trotate 5\n}\n"));
    }

    void nameBeyondTheLocaleIsNotSpoiled()
    {
        const QByteArray before("/журнал {\n\trotate 4\n}\n");
        const auto page = this->page(before);
        number(*page)->setValue(5);
        QTextCodec *locale = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        const BoxAnswerer answerer;
        const bool saved = page->saveConfig();
        QTextCodec::setCodecForLocale(locale);
        QVERIFY(!saved);
        QCOMPARE(answerer.boxes().size(), 1);
        QVERIFY(answerer.boxes().first().text.contains(QLatin1String("could not be read again")));
        QCOMPARE(content(), before);
    }

    void refusedWriteIsToldAndKeepsTheEdit()
    {
        const QByteArray before("/a {\n\trotate 4\n}\n");
        const auto page = this->page(before);
        number(*page)->setValue(5);
        QVERIFY(m_bus.setAllowed(false));
        const BoxAnswerer answerer;
        QVERIFY(!page->saveConfig());
        QCOMPARE(answerer.boxes().size(), 1);
        QCOMPARE(answerer.boxes().first().title, QStringLiteral("Error"));
        QVERIFY(answerer.boxes().first().text.contains(m_service.errorString()));
        QVERIFY(!m_service.errorString().isEmpty());
        QCOMPARE(content(), before);
        QCOMPARE(number(*page)->value(), 5);
        QVERIFY(page->isEnabled());
        QVERIFY(!QGuiApplication::overrideCursor());
        QVERIFY(m_bus.setAllowed(true));
        QVERIFY(page->saveConfig());
        QCOMPARE(content(), QByteArray("/a {\n\trotate 5\n}\n"));
    }

    void tabGoesThroughTheFieldsInOrder()
    {
        const auto page = this->page("/a {\n\trotate 4\n\tsize 5M\n\tdaily\n}\n");
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        box(*page, "numberCheckBox")->setFocus();
        QStringList names;
        for (int i = 0; i < 6; ++i) {
            names.append(page->focusWidget()->objectName());
            QVERIFY(!page->focusWidget()->accessibleName().isEmpty()
                    || qobject_cast<QCheckBox *>(page->focusWidget()));
            QTest::keyClick(page->focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("numberCheckBox numberOfLogs logSizeCheckBox logSize periodCheckBox "
                                "periodComboBox"));
    }

    void statisticsAreReadable()
    {
        const auto page = this->page("/a {\n}\n");
        const auto *logSize = field<QLabel>(*page, "logSizeLabel");
        const auto *diskSpace = field<QLabel>(*page, "diskSpaceLabel");
        const QString log = m_bus.root() + SystemPaths::eventLogFile();
        QFile::remove(log);
        page->getLogStatistics();
        QCOMPARE(logSize->text(), QStringLiteral("unknown"));
        QFile file(log);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(1536 * 1024));
        page->getLogStatistics();
        QCOMPARE(logSize->text(), QStringLiteral("1.5 MiB"));
        const QStorageInfo storage(m_bus.root());
        QVERIFY2(diskSpace->text().startsWith(KFormat().formatByteSize(double(storage.bytesTotal()))
                                              + QStringLiteral(" / ")),
                 qPrintable(diskSpace->text()));
        QVERIFY(QFile::remove(log));
        QVERIFY(QDir().rmdir(m_bus.root() + SystemPaths::eventLogDirectory()));
        page->getLogStatistics();
        QCOMPARE(diskSpace->text(), QStringLiteral("unknown"));
        QVERIFY(QDir().mkpath(m_bus.root() + SystemPaths::eventLogDirectory()));
    }

    void whatIsSavedIsTakenByTheRealProgram()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("logrotate")).isEmpty()) {
            QSKIP("needs logrotate");
        }
        const QString log = m_bus.root() + SystemPaths::eventLogFile();
        const auto page = this->page(QByteArray("# rules\n") + log.toLocal8Bit()
                                     + "\n{\n\tmissingok\n\tcreate 0600\n\tpostrotate\n\t\techo done > "
                                     + m_bus.root().toLocal8Bit() + "/done\n\tendscript\n}\n");
        box(*page, "numberCheckBox")->click();
        number(*page)->setValue(2);
        box(*page, "periodCheckBox")->click();
        const LossAnswerer answerer(true);
        QVERIFY(page->saveConfig());
        QCOMPARE(answerer.lists().size(), 1);
        QString output = debugOutput(path());
        QVERIFY2(output.contains(QLatin1String("weekly (2 rotations)")), qPrintable(output));
        QVERIFY2(!output.contains(QLatin1String("error")), qPrintable(output));
        box(*page, "logSizeCheckBox")->click();
        size(*page)->setValue(3);
        QVERIFY(page->saveConfig());
        output = debugOutput(path());
        QVERIFY2(output.contains(QLatin1String("3145728 bytes (2 rotations)")), qPrintable(output));

        QFile file(log);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("record\n") > 0);
        file.close();
        for (int i = 0; i < 4; ++i) {
            QProcess logrotate;
            logrotate.setProcessChannelMode(QProcess::MergedChannels);
            logrotate.start(QStringLiteral("logrotate"),
                            {QStringLiteral("-f"), QStringLiteral("-s"),
                             QString(m_bus.root() + QStringLiteral("/state")), path()});
            QVERIFY(logrotate.waitForFinished());
            QVERIFY2(logrotate.exitCode() == 0, logrotate.readAll().constData());
            if (i == 0) {
                QFile rotated(log + QStringLiteral(".1"));
                QVERIFY(rotated.open(QIODevice::ReadOnly));
                QCOMPARE(rotated.readAll(), QByteArray("record\n"));
            }
        }
        QVERIFY(QFile::exists(m_bus.root() + QStringLiteral("/done")));
        QVERIFY(QFile::exists(log + QStringLiteral(".2")));
        QVERIFY(!QFile::exists(log + QStringLiteral(".3")));
    }

    void shippedFileIsTakenByTheRealProgram()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("logrotate")).isEmpty()) {
            QSKIP("needs logrotate");
        }
        const QString output = debugOutput(QStringLiteral(SHIPPED_DATA "/logrotate/syslog-ng-mod-nivra"));
        QVERIFY2(!output.contains(QLatin1String("error")), qPrintable(output));
        QVERIFY2(output.contains(QLatin1String("weekly (4 rotations)")), qPrintable(output));
    }
};

QTEST_MAIN(LogRotationSettingsTest)
#include "logrotationsettingstest.moc"
