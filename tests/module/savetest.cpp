// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <eventtreeitem.h>
#include <statewidget.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

/// Saving through the real helper over the real authorisation framework, on a private bus.
class SaveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void whatIsAppliedIsInTheFilesAndOnThePageAgain();
    void editsInTheFirstAndTheLastGroupAreBothSaved();
    void typingAParameterLeavesAnEventThatIsOffOff();
    void aNotificationAloneLeavesAnEventThatIsOnOn();
    void anExtendedParameterSwitchesAloneAndIsSavedWhole();
    void switchingAuditRulesOffEmptiesTheRulesFile();
    void applyingTwiceWritesTheSameFile();
    void applyRestartsTheLoggingService();
    void refusedAuthorisationKeepsTheEditsAndSaysWhy();
    void oneFailedFileKeepsTheEditsAndNamesTheFile();
    void settingsOfUnknownEventsStay();
    void aFileThatDoesNotParseIsReplacedOnlyOnRequest();
    void aFileThatCannotBeReadIsNeverReplaced();
    void aFileChangedBehindThePageIsReplacedOnlyOnRequest();
    void applyKeepsTheViewAsItWas();

private:
    PageFixture m_machine;
};

void SaveTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void SaveTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

void SaveTest::whatIsAppliedIsInTheFilesAndOnThePageAgain()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const QAbstractItemModelTester tester(page->workingModel(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy changes(page.get(), qOverload<bool>(&KCModule::changed));
    m_machine.toggle(*page, QStringLiteral("watch"));
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("60"));
    QCOMPARE(changes.last().at(0).toBool(), true);
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);

    page->save();

    const QJsonObject expected{{QStringLiteral("watch"),
                                QJsonObject{{QStringLiteral("enabled"), QStringLiteral("1")},
                                            {QStringLiteral("interval"), QStringLiteral("60")}}}};
    QCOMPARE(m_machine.settings(), expected);
    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray("-w /etc/shadow -p wa -k /etc/shadow\n"));
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Saved);
    QVERIFY(page->compareModels());
    EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QCOMPARE(event->checkState, int(Qt::Checked));
    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("60"));
}

void SaveTest::editsInTheFirstAndTheLastGroupAreBothSaved()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    QCOMPARE(m_machine.settings().keys(), (QStringList{QStringLiteral("login"), QStringLiteral("watch")}));
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("login"))->checkState, int(Qt::Unchecked));
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("watch"))->checkState, int(Qt::Checked));
}

void SaveTest::typingAParameterLeavesAnEventThatIsOffOff()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("45"));
    page->save();
    const EventTreeItem *event = m_machine.node(page->workingModel(), QStringLiteral("watch"));
    QCOMPARE(event->checkState, int(Qt::Unchecked));
    QCOMPARE(event->member(QLatin1String("interval"))->data(1).toString(), QStringLiteral("45"));
}

void SaveTest::aNotificationAloneLeavesAnEventThatIsOnOn()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    CheckableTreeModel *model = page->workingModel();
    const QModelIndex index = model->indexOf(m_machine.node(model, QStringLiteral("login")));
    QVERIFY(model->setData(index, QVariant::fromValue(EventTreeItem::NotificationSwitchedOn),
                           Qt::DecorationRole));
    QVERIFY(!page->compareModels());
    page->save();
    QCOMPARE(m_machine.node(model, QStringLiteral("login"))->checkState, int(Qt::Checked));
    QCOMPARE(m_machine.settings()
                 .value(QStringLiteral("login"))
                 .toObject()
                 .value(QStringLiteral("enabled"))
                 .toString(),
             QStringLiteral("1"));
}

void SaveTest::anExtendedParameterSwitchesAloneAndIsSavedWhole()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login")); // off, so that a parent switched on by mistake is seen
    CheckableTreeModel *model = page->workingModel();
    const QStringList path{QStringLiteral("extend-message-params"), QStringLiteral("tty")};
    QVERIFY(model->switchParameter(model->indexOf(m_machine.node(model, QStringLiteral("login"), path), 1)));
    page->save();
    const QJsonObject login = m_machine.settings().value(QStringLiteral("login")).toObject();
    const QJsonObject tty = login.value(path.at(0)).toObject().value(path.at(1)).toObject();
    QCOMPARE(tty,
             (QJsonObject{{QStringLiteral("enabled"), QStringLiteral("1")},
                          {QStringLiteral("source"), QStringLiteral("pam")}}));
    QCOMPARE(login.value(QStringLiteral("enabled")).toString(), QStringLiteral("0"));
    QCOMPARE(m_machine.node(model, QStringLiteral("login"))->checkState, int(Qt::Unchecked));
    QCOMPARE(model->data(model->indexOf(m_machine.node(model, QStringLiteral("login"), path), 1)).toString(),
             QStringLiteral("On"));
}

void SaveTest::switchingAuditRulesOffEmptiesTheRulesFile()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    QVERIFY(!m_machine.read(m_machine.rulesPath()).isEmpty());
    m_machine.toggle(*page, QStringLiteral("watch"));
    page->save();
    QVERIFY(QFile::exists(m_machine.rulesPath()));
    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray());
}

void SaveTest::applyingTwiceWritesTheSameFile()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("5"));
    page->save();
    const QByteArray first = m_machine.read(m_machine.settingsPath());
    page->save();
    QCOMPARE(m_machine.read(m_machine.settingsPath()), first);
}

void SaveTest::applyRestartsTheLoggingService()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    page->save();
    QTRY_VERIFY(m_machine.serviceCalls().contains(QStringLiteral("restart syslog-ng")));
}

void SaveTest::refusedAuthorisationKeepsTheEditsAndSaysWhy()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("login"));
    QVERIFY(m_machine.bus->setAllowed(false));
    QSignalSpy changes(page.get(), qOverload<bool>(&KCModule::changed));
    const BoxAnswerer boxes;
    page->save();
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(!boxes.boxes().at(0).text.trimmed().isEmpty());
    QCOMPARE(boxes.boxes().at(0).parent, page.get());
    QVERIFY(!QFile::exists(m_machine.settingsPath()));
    QCOMPARE(m_machine.node(page->workingModel(), QStringLiteral("login"))->checkState, int(Qt::Unchecked));
    // The shell takes a page for saved as soon as save() returns; it is told otherwise from the event loop.
    QTRY_VERIFY(!changes.isEmpty() && changes.last().at(0).toBool());
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);

    QVERIFY(m_machine.bus->setAllowed(true));
    page->save();
    QCOMPARE(m_machine.settings().keys(), QStringList{QStringLiteral("login")});
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Saved);
}

void SaveTest::oneFailedFileKeepsTheEditsAndNamesTheFile()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("watch"));
    QVERIFY(QDir(m_machine.root()).rmdir(QStringLiteral("etc/audit/rules.d")));
    const BoxAnswerer boxes;
    page->save();
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY2(boxes.boxes().at(0).text.contains(QStringLiteral("rules")),
             qPrintable(boxes.boxes().at(0).text));
    QVERIFY(!page->compareModels());
    QVERIFY(QDir(m_machine.root()).mkpath(QStringLiteral("etc/audit/rules.d")));
    page->save();
    QCOMPARE(boxes.boxes().size(), 1); // nobody else changed the file meanwhile: no further question
    QCOMPARE(m_machine.read(m_machine.rulesPath()), QByteArray("-w /etc/shadow -p wa -k /etc/shadow\n"));
}

void SaveTest::settingsOfUnknownEventsStay()
{
    const QJsonObject unknown{{QStringLiteral("param"), QStringLiteral("value")}};
    m_machine.write(m_machine.settingsPath(),
                    R"({"removed-event": {"param": "value"}, "login": "no object"})");
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save();
    QCOMPARE(m_machine.settings().value(QStringLiteral("removed-event")).toObject(), unknown);
    QCOMPARE(m_machine.settings().value(QStringLiteral("login")).toString(), QStringLiteral("no object"));
    QVERIFY(m_machine.settings().contains(QStringLiteral("plain")));
}

void SaveTest::aFileThatDoesNotParseIsReplacedOnlyOnRequest()
{
    const QByteArray damaged = "{\"login\": {\"enabled\": ";
    m_machine.write(m_machine.settingsPath(), damaged);
    const auto page = m_machine.openPage();
    QVERIFY(page);
    auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QVERIFY(bar && bar->isVisibleTo(page.get()));
    QVERIFY2(bar->text().contains(QStringLiteral("nivra-syslog.conf")), qPrintable(bar->text()));
    m_machine.toggle(*page, QStringLiteral("plain"));
    {
        const BoxAnswerer no(QMessageBox::No);
        page->save();
        QCOMPARE(no.boxes().size(), 1);
        QCOMPARE(m_machine.read(m_machine.settingsPath()), damaged);
        QVERIFY(!page->compareModels());
    }
    const BoxAnswerer yes(QMessageBox::Yes);
    page->save();
    QCOMPARE(yes.boxes().size(), 1);
    QCOMPARE(m_machine.settings().keys(), QStringList{QStringLiteral("plain")});
    QVERIFY(!bar->isVisibleTo(page.get()));
}

void SaveTest::aFileThatCannotBeReadIsNeverReplaced()
{
    // A directory in its place cannot be read as a file, not even by root.
    QVERIFY(QDir(m_machine.root()).mkpath(QStringLiteral("etc/nivra-syslog.conf/inner")));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisibleTo(page.get()));
    m_machine.toggle(*page, QStringLiteral("plain"));
    const BoxAnswerer boxes(QMessageBox::Yes);
    page->save();
    QCOMPARE(boxes.boxes().size(), 1);
    QCOMPARE(boxes.boxes().at(0).icon, QMessageBox::Critical);
    QVERIFY(QFileInfo(m_machine.settingsPath() + QStringLiteral("/inner")).isDir());
    QVERIFY(!QFile::exists(m_machine.rulesPath()));
    QVERIFY(!page->compareModels());
}

void SaveTest::aFileChangedBehindThePageIsReplacedOnlyOnRequest()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->stopWatchConfigs(); // as when the notification is still under way
    const QByteArray foreign = R"({"login": {"enabled": "0"}})";
    m_machine.replace(m_machine.settingsPath(), foreign);
    {
        const BoxAnswerer no(QMessageBox::No);
        QVERIFY(!page->save_p());
        QCOMPARE(no.boxes().size(), 1);
        QCOMPARE(m_machine.read(m_machine.settingsPath()), foreign);
    }
    page->stopWatchConfigs();
    const BoxAnswerer yes(QMessageBox::Yes);
    QVERIFY(page->save_p());
    QCOMPARE(m_machine.settings().keys(), QStringList{QStringLiteral("plain")});
}

void SaveTest::applyKeepsTheViewAsItWas()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QTreeView *view = m_machine.view(*page);
    const QModelIndex group = view->model()->index(0, 0);
    const QModelIndex event = view->model()->index(0, 0, group);
    const QString name = event.data().toString();
    view->expand(event);
    view->setCurrentIndex(event.sibling(0, 1));
    view->collapse(view->model()->index(1, 0));
    m_machine.toggle(*page, QStringLiteral("plain"));
    page->save();
    const QModelIndex again = view->model()->index(0, 0, view->model()->index(0, 0));
    QCOMPARE(again.data().toString(), name);
    QVERIFY(view->isExpanded(again));
    QVERIFY(!view->isExpanded(view->model()->index(1, 0)));
    QCOMPARE(view->currentIndex(), again.sibling(0, 1));
}

QTEST_MAIN(SaveTest)

#include "savetest.moc"
