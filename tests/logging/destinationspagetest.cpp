// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "dialoganswerer.h"

#include <adddestinationdialog.h>
#include <configaccessservice.h>
#include <destinationsmodel.h>
#include <destinationssettings.h>
#include <privatebus.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>

namespace {
const char written[] = R"(source nivra_events_src {
    internal();
};

destination nivra_json_dst {
    file("/vortan/log/events.log" template(t));
};

log {
    source(nivra_events_src);
    destination(nivra_json_dst);
};

)";

QVector<QVariant> fileDestination(const char *name, const char *path)
{
    return {QStringLiteral("file"), QString::fromUtf8(name), QString::fromUtf8(path), 514,
            QStringLiteral("tcp")};
}
} // namespace

/// The page over the real helper, on a root directory of the test's own.
class DestinationsPageTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void urlOpened(const QUrl &url) { m_opened.append(url.toLocalFile()); }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void addedDestinationIsWritten();
    void untouchedPageWritesNothing();
    void removedDestinationLeavesNoLogPathBehind();
    void removalKeepsWhatOthersNeed();
    void destinationInANestedBlockIsNotRemoved();
    void lossesAreShownAndSavedOnlyWhenToldTo();
    void changesOfAnotherProgramAreShown();
    void changeDuringTheQuestionIsAskedAbout();
    void pageMayCloseDuringAQuestion();
    void unreadableFileDisablesThePage_data();
    void unreadableFileDisablesThePage();
    void fileThatVanishedIsNotWritten();
    void refusedWriteKeepsTheEdits();
    void buttonsFollowTheSelection();
    void dialogAddsADestination();
    void fileIsOpenedInItsProgram();
    void whatCannotBeOpenedIsExplained_data();
    void whatCannotBeOpenedIsExplained();

private:
    [[nodiscard]] QString path() const
    {
        return m_bus->root() + QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra.conf");
    }
    [[nodiscard]] QByteArray present() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }
    void load(const QByteArray &content)
    {
        put(path(), content);
        m_page->loadConfig();
    }
    static void put(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    void select(int row) { view()->setCurrentIndex(m_page->model()->index(row, 0)); }
    [[nodiscard]] QTreeView *view() const
    {
        return m_page->findChild<QTreeView *>(QStringLiteral("destinationsView"));
    }
    [[nodiscard]] QToolButton *button(const char *name) const
    {
        return m_page->findChild<QToolButton *>(QString::fromUtf8(name));
    }
    [[nodiscard]] QAction *openAction() const { return view()->actions().first(); }

    std::unique_ptr<PrivateBus> m_bus;
    ConfigAccessService m_service{nullptr};
    std::unique_ptr<DestinationsSettings> m_page;
    QStringList m_opened;
};

void DestinationsPageTest::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
    qputenv("ADMINEVENTS_ROOT", m_bus->root().toUtf8());
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "urlOpened");
}

void DestinationsPageTest::init()
{
    QVERIFY(m_bus->setAllowed(true));
    m_opened.clear();
    m_page = std::make_unique<DestinationsSettings>(m_service);
    new QAbstractItemModelTester(m_page->model(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                 m_page.get());
    load(written);
    m_page->show();
}

void DestinationsPageTest::cleanup()
{
    m_page.reset();
}

void DestinationsPageTest::addedDestinationIsWritten()
{
    DialogAnswerer answerer;
    QSignalSpy edited(m_page.get(), &DestinationsSettings::edited);
    QVERIFY(!m_page->isDestinationsModified());
    m_page->insertNewDest(fileDestination("d_file", "/var/log/a \"b\""));
    m_page->insertNewDest({QStringLiteral("network"), QStringLiteral("d1"), QStringLiteral("10.0.0.1"), 514,
                           QStringLiteral("tcp")});
    QCOMPARE(edited.size(), 2);
    QVERIFY(m_page->isDestinationsModified());
    QVERIFY2(m_page->saveConfig(), qPrintable(answerer.texts().join(QLatin1Char(0x7c))));
    QCOMPARE(answerer.texts(), QStringList());
    QCOMPARE(QString::fromUtf8(present()),
             QStringLiteral(
                 "source nivra_events_src {\n    internal();\n};\n\n"
                 "destination nivra_json_dst {\n    file(\"/vortan/log/events.log\" template(t));\n};\n\n"
                 "destination d_file {\n    file(\"/var/log/a \\\"b\\\"\");\n};\n\n"
                 "destination d1 {\n    network(\"10.0.0.1\" port(514) transport(tcp) "
                 "flags(syslog-protocol));\n};\n\n"
                 "log {\n    source(nivra_events_src);\n    destination(nivra_json_dst);\n};\n\n"
                 "log {\n    source(nivra_events_src);\n    destination(d_file);\n};\n\n"
                 "log {\n    source(nivra_events_src);\n    destination(d1);\n};\n\n"));
    QVERIFY(!m_page->isDestinationsModified());
    QCOMPARE(m_page->model()->rowCount(), 3);
}

void DestinationsPageTest::untouchedPageWritesNothing()
{
    const QByteArray commented = QByteArray("# mine?\n") + written;
    load(commented);
    DialogAnswerer answerer;
    QVERIFY(m_page->saveConfig());
    QCOMPARE(present(), commented);
    // What another program writes is not this page's edit.
    const QByteArray other = commented + "destination x {\n    file(\"/x\");\n};\n";
    put(path(), other);
    QVERIFY(m_page->isDestinationsModified());
    QVERIFY(m_page->saveConfig());
    QCOMPARE(present(), other);
    QCOMPARE(answerer.texts(), QStringList());
}

void DestinationsPageTest::removedDestinationLeavesNoLogPathBehind()
{
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    m_page->removeSelectedDestination();
    QVERIFY(!m_page->isDestinationsModified());
    select(0);
    m_page->removeSelectedDestination();
    QVERIFY(m_page->saveConfig());
    QCOMPARE(present(), QByteArray("source nivra_events_src {\n    internal();\n};\n\n"));
}

void DestinationsPageTest::removalKeepsWhatOthersNeed()
{
    load("source d1 {\n    internal();\n};\n"
         "destination d1 {\n    file(\"/1\");\n};\n"
         "destination d_orders {\n    file(\"/2\");\n};\n"
         "log {\n    source(d1);\n    destination(d_orders);\n    destination(d1);\n};\n"
         "log {\n    source(d1);\n    destination(d_orders);\n};\n"
         "log {\n    source(d1);\n    destination(\"d1\");\n};\n");
    select(0);
    m_page->removeSelectedDestination();
    QVERIFY(m_page->saveConfig());
    QCOMPARE(QString::fromUtf8(present()),
             QStringLiteral("source d1 {\n    internal();\n};\n\n"
                            "destination d_orders {\n    file(\"/2\");\n};\n\n"
                            "log {\n    source(d1);\n    destination(d_orders);\n};\n\n"
                            "log {\n    source(d1);\n    destination(d_orders);\n};\n\n"));
}

void DestinationsPageTest::destinationInANestedBlockIsNotRemoved()
{
    load(QByteArray(written)
         + "log {\n    source(nivra_events_src);\n    channel{\n    destination(nivra_json_dst);\n    "
           "};\n};\n");
    select(0);
    DialogAnswerer answerer;
    m_page->removeSelectedDestination();
    QCOMPARE(answerer.texts().size(), 1);
    QVERIFY(answerer.texts().first().contains(QStringLiteral("nivra_json_dst")));
    QCOMPARE(m_page->model()->rowCount(), 1);
    QVERIFY(!m_page->isDestinationsModified());
}

void DestinationsPageTest::lossesAreShownAndSavedOnlyWhenToldTo()
{
    const QByteArray commented = QByteArray("# mine?\n") + written;
    load(commented);
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    {
        DialogAnswerer refusing(false);
        QVERIFY(!m_page->saveConfig());
        QCOMPARE(refusing.lists(),
                 QStringList{QStringLiteral("Line 1: the comment “# mine?” would be lost.")});
        QCOMPARE(present(), commented);
        QCOMPARE(m_page->model()->rowCount(), 2);
    }
    DialogAnswerer agreeing(true);
    QVERIFY(m_page->saveConfig());
    QCOMPARE(agreeing.texts().size(), 1);
    QVERIFY(present().contains("d_file"));
    QVERIFY(!present().contains("mine"));
}

void DestinationsPageTest::changesOfAnotherProgramAreShown()
{
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    const QByteArray other = QByteArray(written) + "destination x {\n    file(\"/x\");\n};\n";
    put(path(), other);
    DialogAnswerer refusing(false);
    QVERIFY(!m_page->saveConfig());
    QCOMPARE(
        refusing.lists(),
        QStringList{QStringLiteral("Lines 14 to 16: “destination x { file(\"/x\"); };” would be lost.")});
    QCOMPARE(present(), other);
}

void DestinationsPageTest::changeDuringTheQuestionIsAskedAbout()
{
    load(QByteArray("# one?\n") + written);
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    QTimer::singleShot(0, this, [this] { put(path(), QByteArray("# two?\n") + written); });
    DialogAnswerer agreeing(true);
    QVERIFY(m_page->saveConfig());
    QCOMPARE(agreeing.lists(),
             (QStringList{QStringLiteral("Line 1: the comment “# one?” would be lost."),
                          QStringLiteral("Line 1: the comment “# two?” would be lost.")}));
    QVERIFY(present().contains("d_file"));
}

void DestinationsPageTest::pageMayCloseDuringAQuestion()
{
    QTimer::singleShot(50, this, [this] { m_page.reset(); });
    button("addButton")->click();
    QVERIFY(!m_page);
}

void DestinationsPageTest::unreadableFileDisablesThePage_data()
{
    QTest::addColumn<bool>("there");
    QTest::newRow("absent") << false;
    QTest::newRow("empty") << true;
}

void DestinationsPageTest::unreadableFileDisablesThePage()
{
    QFETCH(bool, there);
    load({});
    if (!there) {
        QVERIFY(QFile::remove(path()));
        m_page->loadConfig();
    }
    const auto *message = m_page->findChild<KMessageWidget *>();
    QVERIFY(message->isVisible());
    QVERIFY(message->text().contains(path()));
    QVERIFY(!view()->isEnabled());
    QVERIFY(!button("addButton")->isEnabled());
    QVERIFY(!button("removeButton")->isEnabled());
    DialogAnswerer answerer;
    QVERIFY(m_page->saveConfig());
    QCOMPARE(answerer.texts(), QStringList());
    QCOMPARE(present(), there ? QByteArray() : QByteArray("not there"));
    load(written);
    QVERIFY(!message->isVisible());
    QVERIFY(button("addButton")->isEnabled());
}

void DestinationsPageTest::fileThatVanishedIsNotWritten()
{
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    QVERIFY(QFile::remove(path()));
    DialogAnswerer answerer;
    QVERIFY(!m_page->saveConfig());
    QCOMPARE(answerer.texts().size(), 1);
    QVERIFY(answerer.texts().first().contains(path()));
    QVERIFY(!QFile::exists(path()));
    QCOMPARE(m_page->model()->rowCount(), 2);
}

void DestinationsPageTest::refusedWriteKeepsTheEdits()
{
    QVERIFY(m_bus->setAllowed(false));
    m_page->insertNewDest(fileDestination("d_file", "/a"));
    DialogAnswerer answerer;
    QVERIFY(!m_page->saveConfig());
    QCOMPARE(answerer.texts().size(), 1);
    QVERIFY(answerer.texts().first().contains(QStringLiteral("mod-nivra.conf")));
    QVERIFY(answerer.texts().first().contains(m_service.errorString()));
    QCOMPARE(present(), QByteArray(written));
    QVERIFY(m_page->isDestinationsModified());
}

void DestinationsPageTest::buttonsFollowTheSelection()
{
    QCOMPARE(button("addButton")->toolTip(), QStringLiteral("Add new destination"));
    QCOMPARE(button("removeButton")->toolTip(), QStringLiteral("Remove selected destination"));
    view()->clearSelection();
    QVERIFY(button("addButton")->isEnabled());
    QVERIFY(!button("removeButton")->isEnabled());
    QVERIFY(!openAction()->isEnabled());
    select(0);
    QVERIFY(button("removeButton")->isEnabled());
    QVERIFY(openAction()->isEnabled());
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    view()->setFocus();
    QTest::keyClick(view(), Qt::Key_Delete);
    QCOMPARE(m_page->model()->rowCount(), 0);
    QVERIFY(!button("removeButton")->isEnabled());
    for (const char *name : {"addButton", "removeButton"}) {
        QVERIFY(!button(name)->accessibleName().isEmpty());
        QVERIFY((button(name)->focusPolicy() & Qt::TabFocus) == Qt::TabFocus);
    }
    QVERIFY(!view()->accessibleName().isEmpty());
}

void DestinationsPageTest::dialogAddsADestination()
{
    QTimer::singleShot(0, this, [] {
        auto *dialog = qobject_cast<AddDestinationDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("nameEdit"));
        name->setText(QStringLiteral("nivra_json_dst"));
        QVERIFY(!dialog->validateInput());
        name->setText(QStringLiteral("d_new"));
        dialog->findChild<QLineEdit *>(QStringLiteral("addressEdit"))->setText(QStringLiteral("/n"));
        dialog->accept();
        if (dialog->isVisible()) {
            dialog->reject();
        }
    });
    button("addButton")->click();
    QCOMPARE(m_page->model()->rowCount(), 2);
    QCOMPARE(view()->currentIndex().row(), 1);
    QCOMPARE(m_page->model()->index(1, 1).data().toString(), QStringLiteral("d_new"));
}

void DestinationsPageTest::fileIsOpenedInItsProgram()
{
    const QString log = m_bus->root() + QStringLiteral("/vortan/log/events.log");
    put(log, "an event\n");
    select(0);
    DialogAnswerer answerer;
    openAction()->trigger();
    QCOMPARE(m_opened, QStringList{log});
    QCOMPARE(answerer.texts(), QStringList());
    QCOMPARE(openAction()->text(), QStringLiteral("Open in editor"));
}

void DestinationsPageTest::whatCannotBeOpenedIsExplained_data()
{
    QTest::addColumn<QByteArray>("driver");
    QTest::addColumn<QString>("reason");
    QTest::newRow("network") << QByteArray("network(\"10.0.0.1\")")
                             << QStringLiteral("does not lead to a file");
    QTest::newRow("macro") << QByteArray("file(\"/var/log/$HOST\")")
                           << QStringLiteral("depends on the event");
    QTest::newRow("relative") << QByteArray("file(\"a.log\")") << QStringLiteral("not absolute");
    QTest::newRow("absent") << QByteArray("file(\"/var/log/absent\")") << QStringLiteral("does not exist");
    QTest::newRow("directory") << QByteArray("file(\"/etc\")") << QStringLiteral("not a regular file");
}

void DestinationsPageTest::whatCannotBeOpenedIsExplained()
{
    QFETCH(QByteArray, driver);
    QFETCH(QString, reason);
    load("destination d_any {\n    " + driver + ";\n};\n");
    select(0);
    DialogAnswerer answerer;
    openAction()->trigger();
    QCOMPARE(m_opened, QStringList());
    QCOMPARE(answerer.texts().size(), 1);
    QVERIFY2(answerer.texts().first().contains(reason), qPrintable(answerer.texts().first()));
}

QTEST_MAIN(DestinationsPageTest)

#include "destinationspagetest.moc"
