// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "pagefixture.h"

#include <auditdialog.h>
#include <checkabletreemodel.h>
#include <commonsettingswindow.h>
#include <eventtreeitem.h>
#include <statewidget.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTreeView>

namespace {
const QString opened = QStringLiteral("opened");
const QString awkward = QStringLiteral("Иван \"Ё\" \\");
const QByteArray passwd = "root:x:0:0::/root:/bin/sh\n"
                          "alice:x:1000:1000::/:/bin/sh\n"
                          "bob:x:1001:1001::/:/bin/sh\n"
                          "overlay0:x:1002:1002::/:/bin/sh\n"
                          "two words:x:1003:1003::/:/bin/sh\n"
                          "Иван \"Ё\" \\:x:1004:1004::/:/bin/sh\n"
                          "a/b:x:1005:1005::/:/bin/sh\n";
const QString rebootText
    = QStringLiteral("The audit settings will take effect only after the system is rebooted.\nReboot now?");

QStringList operation(const QStringList &rest)
{
    return QStringList{QStringLiteral("message-audit-events"), QStringLiteral("open")} + rest;
}
QStringList user(const QString &name, const char *outcome)
{
    return operation({QStringLiteral("users"), name, QString::fromLatin1(outcome)});
}
} // namespace

/// Audit settings of users and groups on the page: through the real helper, into the rules and back.
class AuditPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void whatIsSetInTheDialogIsEverywhereAndStays();
    void awkwardNamesTakeTheWholeWay();
    void anApplyWithoutAnAuditChangeWritesNoneAndAsksNothing();
    void whatTheSystemRecordsIsShownAndCountsAsUnchanged();
    void switchingAnEventOffTakesItsSettingsBack();
    void agreeingToTheRebootStartsItInPlaceOfTheService();
    void aNameThatCannotBeSentIsRefusedBeforeAnythingIsSaved();
    void settingsThatCouldNotBeReadAreNotWritten();
    void aFailedWriteKeepsTheEditsAndSaysWhy();
    void aReloadDoesNotReadTheSettingsAgain();
    void aFailedReadDoesNotHideThatEditsAreGone();
    void aCatalogWithoutAuditedOperationsAsksForNothing();
    void aReloadUnderTheOpenDialogLosesNoAnswer();
    void editsInTheOpenDialogAreNotReplacedByAnotherValue();
    void everybodyElseIsRecordedByTheSwitchesOfOther();
    void anImportIsShownAndTheNextApplyMakesTheSystemAgree();

private:
    [[nodiscard]] QString rulesPath() const
    {
        return m_machine.root() + QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules");
    }
    [[nodiscard]] QByteArray rules() const { return m_machine.read(rulesPath()); }
    [[nodiscard]] static AuditDialog *dialog(const AdminEventsModule &page)
    {
        return page.findChild<AuditDialog *>();
    }
    [[nodiscard]] static QString value(const AdminEventsModule &page, const QStringList &path)
    {
        const EventTreeItem *node = PageFixture::node(page.workingModel(), opened, path);
        return node ? node->value(1).toString() : QStringLiteral("no node");
    }
    static void doubleClick(AdminEventsModule &page, const QStringList &path);
    static void check(const AuditDialog &dialog, const QString &name, int column);
    [[nodiscard]] static QMap<QString, int> shown(const AuditDialog &dialog);
    static void accept(AuditDialog &dialog);

    PageFixture m_machine;
};

void AuditPageTest::initTestCase()
{
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void AuditPageTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
    QVERIFY(m_machine.bus->setAllowedActions({}));
    m_machine.write(m_machine.root() + QStringLiteral("/etc/passwd"), passwd);
    m_machine.write(m_machine.root() + QStringLiteral("/etc/group"), "staff:x:50:\nusers:x:100:\n");
    const QString getent = m_machine.root() + QStringLiteral("/bin/getent");
    m_machine.write(getent, "#!/bin/sh\ncat \"$(dirname \"$0\")/../etc/$1\"\n");
    QVERIFY(QFile::setPermissions(getent, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    m_machine.write(
        m_machine.catalogPath() + QStringLiteral("/middle/opened.json"),
        QByteArray("{ 'event-group': 'middle', 'enabled': '1',"
                   "  'message-params': { 'message_id': 'opened_msg', 'name_en': 'Opened' },"
                   "  'message-audit-events': { 'open': { 'users': { 'root': { 'succ': '0', 'fail': '0' } },"
                   "    'groups': {}, 'other': { 'succ': '0', 'fail': '0' } } } }")
            .replace('\'', '"'));
}

void AuditPageTest::doubleClick(AdminEventsModule &page, const QStringList &path)
{
    QTreeView *view = PageFixture::view(page);
    CheckableTreeModel *model = page.workingModel();
    const EventTreeItem *item = PageFixture::node(model, opened, path);
    QVERIFY(item);
    QModelIndex index;
    // The view shows a proxy: walk down in it by the nodes' names.
    QVector<const EventTreeItem *> nodes;
    for (const EventTreeItem *node = item; node->parentItem(); node = node->parentItem()) {
        nodes.prepend(node);
    }
    for (const EventTreeItem *node : qAsConst(nodes)) {
        view->setExpanded(index, true);
        const QModelIndex parent = index;
        for (int row = 0; row < view->model()->rowCount(parent); ++row) {
            const QModelIndex child = view->model()->index(row, 0, parent);
            if (child.data(CheckableTreeModel::NativeNameRole).toString() == node->nativeName) {
                index = child;
                break;
            }
        }
        QVERIFY2(index != parent, qPrintable(node->nativeName));
    }
    const QModelIndex cell = index.siblingAtColumn(1);
    view->scrollTo(cell);
    const QPoint point = view->visualRect(cell).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, point);
}

void AuditPageTest::check(const AuditDialog &dialog, const QString &name, int column)
{
    QAbstractItemModel *model = dialog.findChild<QTableView *>(QStringLiteral("auditTableView"))->model();
    const QModelIndexList found
        = model->match(model->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    QVERIFY2(found.size() == 1, qPrintable(name));
    const QModelIndex cell = found.first().siblingAtColumn(column);
    const int state = cell.data(Qt::CheckStateRole).toInt();
    QVERIFY(model->setData(cell, state == Qt::Checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole));
}

QMap<QString, int> AuditPageTest::shown(const AuditDialog &dialog)
{
    const QAbstractItemModel *model
        = dialog.findChild<QTableView *>(QStringLiteral("auditTableView"))->model();
    QMap<QString, int> values;
    for (int row = 0; row < model->rowCount(); ++row) {
        const auto isSet = [model, row](int column) {
            return model->index(row, column).data(Qt::CheckStateRole).toInt() == Qt::Checked;
        };
        values.insert(model->index(row, 0).data().toString(), (isSet(1) ? 1 : 0) | (isSet(2) ? 2 : 0));
    }
    return values;
}

void AuditPageTest::accept(AuditDialog &dialog)
{
    dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Ok)->click();
}

void AuditPageTest::whatIsSetInTheDialogIsEverywhereAndStays()
{
    auto page = m_machine.openPage();
    QVERIFY(page);
    const QAbstractItemModelTester tester(page->workingModel(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(page->compareModels());
    doubleClick(*page, operation({QStringLiteral("users")}));
    AuditDialog *audit = dialog(*page);
    QVERIFY(audit->isVisible());
    QCOMPARE(audit->windowTitle(), QStringLiteral("users"));
    QCOMPARE(shown(*audit).size(), 7);
    check(*audit, QStringLiteral("alice"), 1);
    check(*audit, QStringLiteral("bob"), 1);
    check(*audit, QStringLiteral("bob"), 2);
    accept(*audit);

    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);
    {
        const BoxAnswerer answerer(QMessageBox::No);
        page->save();
        QCOMPARE(answerer.boxes().size(), 1);
        QCOMPARE(answerer.boxes().at(0).title, QStringLiteral("Reboot"));
        QCOMPARE(answerer.boxes().at(0).text, rebootText);
    }
    QTRY_VERIFY(m_machine.serviceCalls().contains(QLatin1String("restart syslog-ng")));
    const QJsonObject users = m_machine.settings()
                                  .value(opened)
                                  .toObject()
                                  .value(QLatin1String("message-audit-events"))
                                  .toObject()
                                  .value(QLatin1String("open"))
                                  .toObject()
                                  .value(QLatin1String("users"))
                                  .toObject();
    const QJsonObject alice{{QStringLiteral("succ"), QStringLiteral("1")},
                            {QStringLiteral("fail"), QStringLiteral("0")}};
    const QJsonObject bob{{QStringLiteral("succ"), QStringLiteral("1")},
                          {QStringLiteral("fail"), QStringLiteral("1")}};
    QCOMPARE(users, (QJsonObject{{QStringLiteral("alice"), alice}, {QStringLiteral("bob"), bob}}));
    QVERIFY(rules().contains(" -F uid>=1000 -F uid<=1001 -F success=1 "));
    QVERIFY(rules().contains(" -F uid=1001 -F success=0 "));
    QVERIFY(page->compareModels());

    // Applying again, after the reload that followed, leaves everything as it is.
    const QByteArray written = rules();
    const QByteArray settings = m_machine.read(m_machine.settingsPath());
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("60"));
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("30"));
    {
        const BoxAnswerer answerer(QMessageBox::Yes);
        page->change();
        QVERIFY(answerer.boxes().isEmpty());
    }
    QCOMPARE(rules(), written);
    QCOMPARE(m_machine.settings().value(opened), QJsonDocument::fromJson(settings).object().value(opened));
    doubleClick(*page, operation({QStringLiteral("users")}));
    QCOMPARE(shown(*audit).value(QStringLiteral("alice")), 1);
    QCOMPARE(shown(*audit).value(QStringLiteral("bob")), 3);

    // And so does a new start.
    page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(page->compareModels());
    doubleClick(*page, operation({QStringLiteral("users")}));
    QCOMPARE(shown(*dialog(*page)).value(QStringLiteral("alice")), 1);
    QCOMPARE(shown(*dialog(*page)).value(QStringLiteral("bob")), 3);
}

void AuditPageTest::awkwardNamesTakeTheWholeWay()
{
    auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, operation({QStringLiteral("users")}));
    const QStringList names{QStringLiteral("overlay0"), QStringLiteral("two words"), awkward};
    for (const QString &name : names) {
        check(*dialog(*page), name, 2);
    }
    accept(*dialog(*page));
    doubleClick(*page, operation({QStringLiteral("groups")}));
    QCOMPARE(shown(*dialog(*page)).size(), 2);
    check(*dialog(*page), QStringLiteral("users"), 1);
    accept(*dialog(*page));
    {
        const BoxAnswerer answerer(QMessageBox::No);
        page->save();
        QCOMPARE(answerer.boxes().size(), 1);
    }
    QVERIFY(rules().contains(" -F uid>=1002 -F uid<=1004 -F success=0 "));
    QVERIFY(rules().contains(" -F gid=100 -F success=1 "));
    page = m_machine.openPage();
    QVERIFY(page);
    for (const QString &name : names) {
        QCOMPARE(value(*page, user(name, "fail")), QStringLiteral("1"));
        QCOMPARE(value(*page, user(name, "succ")), QStringLiteral("0"));
    }
    const EventTreeItem *users
        = m_machine.node(page->workingModel(), opened, operation({QStringLiteral("users")}));
    QCOMPARE(QJsonDocument::fromJson(users->value(2).toString().toUtf8()).object().size(),
             users->childCount());
    QVERIFY(page->compareModels());
}

void AuditPageTest::anApplyWithoutAnAuditChangeWritesNoneAndAsksNothing()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.type(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, QStringLiteral("60"));
    // Looking at the settings is no change.
    doubleClick(*page, operation({QStringLiteral("users")}));
    accept(*dialog(*page));
    const BoxAnswerer answerer(QMessageBox::Yes);
    page->save();
    QVERIFY(answerer.boxes().isEmpty());
    QVERIFY(!QFile::exists(rulesPath()));
    QVERIFY(!m_machine.settings().contains(opened));
    QVERIFY(m_machine.settings().contains(QStringLiteral("watch")));
}

void AuditPageTest::whatTheSystemRecordsIsShownAndCountsAsUnchanged()
{
    {
        const auto page = m_machine.openPage();
        m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
        const BoxAnswerer answerer(QMessageBox::No);
        page->save();
    }
    QVERIFY(rules().contains("-F uid=1000 "));
    // Nothing but the system knows of it any more.
    QVERIFY(QFile::remove(m_machine.settingsPath()));
    const QByteArray before = rules();
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "fail")), QStringLiteral("0"));
    QVERIFY(page->compareModels());
    m_machine.toggle(*page, QStringLiteral("watch"));
    const BoxAnswerer answerer(QMessageBox::Yes);
    page->save();
    QVERIFY(answerer.boxes().isEmpty());
    QCOMPARE(rules(), before);
}

void AuditPageTest::switchingAnEventOffTakesItsSettingsBack()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer answerer(QMessageBox::No);
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
    page->save();
    const QByteArray before = rules();
    QVERIFY(before.contains("-F uid=1000 "));
    m_machine.toggle(*page, opened);
    page->save();
    QVERIFY(!rules().contains("-a "));
    QCOMPARE(answerer.boxes().size(), 2);
    // It still knows what it will ask for.
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    m_machine.toggle(*page, opened);
    page->save();
    QCOMPARE(rules(), before);
}

void AuditPageTest::agreeingToTheRebootStartsItInPlaceOfTheService()
{
    const QString helper = m_machine.root() + QStringLiteral("/usr/bin/zep-wmfunc");
    QVERIFY(QDir().mkpath(m_machine.root() + QStringLiteral("/usr/bin")));
    m_machine.write(helper, "#!/bin/sh\necho \"$@\" > \"$0.called\"\n");
    QVERIFY(QFile::setPermissions(helper, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    // Requests are carried out in turn: what earlier pages asked for is done by now.
    m_machine.write(m_machine.root() + QStringLiteral("/bin/calls"), {});
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
    const BoxAnswerer answerer(QMessageBox::Yes);
    page->save();
    QCOMPARE(answerer.boxes().size(), 1);
    QCOMPARE(m_machine.read(helper + QStringLiteral(".called")), QByteArray("ZEPWM_REBOOT\n"));
    QTest::qWait(100);
    QVERIFY2(!m_machine.serviceCalls().contains(QLatin1String("restart")),
             qPrintable(m_machine.serviceCalls()));
}

void AuditPageTest::aNameThatCannotBeSentIsRefusedBeforeAnythingIsSaved()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, operation({QStringLiteral("users")}));
    check(*dialog(*page), QStringLiteral("a/b"), 1);
    accept(*dialog(*page));
    const BoxAnswerer answerer;
    page->save();
    QCOMPARE(answerer.boxes().size(), 1);
    QVERIFY2(answerer.boxes().at(0).text.contains(QLatin1String("\"a/b\"")),
             qPrintable(answerer.boxes().at(0).text));
    QVERIFY(!QFile::exists(rulesPath()));
    QVERIFY(!QFile::exists(m_machine.settingsPath()));
    QCOMPARE(value(*page, user(QStringLiteral("a/b"), "succ")), QStringLiteral("1"));
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);
}

void AuditPageTest::settingsThatCouldNotBeReadAreNotWritten()
{
    {
        const auto page = m_machine.openPage();
        m_machine.type(*page, opened, user(QStringLiteral("bob"), "fail"), QStringLiteral("1"));
        const BoxAnswerer answerer(QMessageBox::No);
        page->save();
    }
    const QByteArray before = rules();
    QVERIFY(!before.isEmpty());
    QVERIFY(m_machine.bus->setAllowed(false));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisible());
    QVERIFY(m_machine.bus->setAllowed(true));
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
    const QByteArray settings = m_machine.read(m_machine.settingsPath());
    {
        const BoxAnswerer answerer(QMessageBox::Yes);
        page->save();
        QCOMPARE(answerer.boxes().size(), 1);
        QVERIFY2(answerer.boxes().at(0).text.contains(QLatin1String("Nothing was saved")),
                 qPrintable(answerer.boxes().at(0).text));
    }
    QCOMPARE(rules(), before);
    QCOMPARE(m_machine.read(m_machine.settingsPath()), settings);
    // Everything else can be saved.
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("0"));
    m_machine.toggle(*page, QStringLiteral("watch"));
    const BoxAnswerer answerer(QMessageBox::Yes);
    page->save();
    QVERIFY(answerer.boxes().isEmpty());
    QCOMPARE(rules(), before);
    QVERIFY(m_machine.settings().contains(QStringLiteral("watch")));
}

void AuditPageTest::aFailedWriteKeepsTheEditsAndSaysWhy()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    m_machine.write(rulesPath(), "# somebody's own\n");
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
    {
        const BoxAnswerer answerer(QMessageBox::Yes);
        page->save();
        QCOMPARE(answerer.boxes().size(), 1);
        QVERIFY2(answerer.boxes().at(0).text.contains(QLatin1String("nivra-syslog-subjects.rules")),
                 qPrintable(answerer.boxes().at(0).text));
    }
    QCOMPARE(rules(), QByteArray("# somebody's own\n"));
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Changed);
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    QVERIFY(QFile::remove(rulesPath()));
    const BoxAnswerer answerer(QMessageBox::No);
    page->save();
    QCOMPARE(answerer.boxes().size(), 1);
    QCOMPARE(answerer.boxes().at(0).title, QStringLiteral("Reboot"));
    QVERIFY(rules().contains("-F uid=1000 "));
}

void AuditPageTest::aReloadDoesNotReadTheSettingsAgain()
{
    {
        const auto page = m_machine.openPage();
        m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
        const BoxAnswerer answerer(QMessageBox::No);
        page->save();
    }
    QVERIFY(QFile::remove(m_machine.settingsPath()));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(QFile::remove(rulesPath()));
    QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
    m_machine.replace(m_machine.settingsPath(), "{ \"watch\": { \"enabled\": \"1\" } }");
    QTRY_COMPARE(resets.size(), 1);
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    QVERIFY(page->compareModels());
}

void AuditPageTest::aFailedReadDoesNotHideThatEditsAreGone()
{
    QVERIFY(m_machine.bus->setAllowed(false));
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const auto *bar = page->findChild<KMessageWidget *>(QStringLiteral("messageBar"));
    QVERIFY2(bar->text().contains(QStringLiteral("could not be read")), qPrintable(bar->text()));
    m_machine.toggle(*page, QStringLiteral("watch"));
    QSignalSpy resets(page->workingModel(), &QAbstractItemModel::modelReset);
    m_machine.replace(m_machine.settingsPath(), "{ \"plain\": { \"enabled\": \"1\" } }");
    QTRY_COMPARE(resets.size(), 1);
    QTRY_VERIFY2(bar->text().contains(QStringLiteral("not saved are gone")), qPrintable(bar->text()));
    QVERIFY2(bar->text().contains(m_machine.settingsPath()), qPrintable(bar->text()));
    QVERIFY2(bar->text().contains(QStringLiteral("audited could not be read")), qPrintable(bar->text()));
}

void AuditPageTest::aCatalogWithoutAuditedOperationsAsksForNothing()
{
    QVERIFY(QFile::remove(m_machine.catalogPath() + QStringLiteral("/middle/opened.json")));
    QVERIFY(m_machine.bus->setAllowed(false)); // a request would be refused, and that shown
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(!page->findChild<KMessageWidget *>(QStringLiteral("messageBar"))->isVisible());
}

void AuditPageTest::aReloadUnderTheOpenDialogLosesNoAnswer()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, operation({QStringLiteral("users")}));
    check(*dialog(*page), QStringLiteral("alice"), 1);
    page->load_p();
    accept(*dialog(*page));
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
    QVERIFY(!page->compareModels());
}

void AuditPageTest::editsInTheOpenDialogAreNotReplacedByAnotherValue()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    doubleClick(*page, operation({QStringLiteral("groups")}));
    doubleClick(*page, operation({QStringLiteral("users")})); // nothing was edited
    check(*dialog(*page), QStringLiteral("alice"), 1);
    doubleClick(*page, operation({QStringLiteral("other")})); // opens nothing
    const BoxAnswerer boxes;
    doubleClick(*page, operation({QStringLiteral("users")}));
    QCOMPARE(boxes.boxes().size(), 0);
    doubleClick(*page, operation({QStringLiteral("groups")}));
    QCOMPARE(boxes.boxes().size(), 1);
    accept(*dialog(*page));
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("1"));
}

void AuditPageTest::everybodyElseIsRecordedByTheSwitchesOfOther()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    CheckableTreeModel *model = page->workingModel();
    const EventTreeItem *failure
        = m_machine.node(model, opened, operation({QStringLiteral("other"), QStringLiteral("fail")}));
    QVERIFY(model->setData(model->indexOf(failure, 1), QVariant(), Qt::CheckStateRole));
    const BoxAnswerer answerer(QMessageBox::No);
    page->save();
    QCOMPARE(answerer.boxes().size(), 1);
    QVERIFY(rules().contains(
        "-S open,openat,openat2,open_by_handle_at -F success=0 -F key=nivra-subject-open\n"));
    QCOMPARE(value(*page, operation({QStringLiteral("other"), QStringLiteral("fail")})), QStringLiteral("1"));
    QVERIFY(page->compareModels());
}

void AuditPageTest::anImportIsShownAndTheNextApplyMakesTheSystemAgree()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    const BoxAnswerer answerer(QMessageBox::No);
    m_machine.type(*page, opened, user(QStringLiteral("alice"), "succ"), QStringLiteral("1"));
    page->save();
    m_machine.replace(
        m_machine.settingsPath(),
        QByteArray("{ 'opened': { 'enabled': '1', 'message-audit-events': { 'open': { 'users': {"
                   "  'bob': { 'succ': '1', 'fail': '0' } } } } } }")
            .replace('\'', '"'));
    Q_EMIT page->findChild<CommonSettingsWindow *>()->configurationImported();
    QCOMPARE(value(*page, user(QStringLiteral("alice"), "succ")), QStringLiteral("0"));
    QCOMPARE(value(*page, user(QStringLiteral("bob"), "succ")), QStringLiteral("1"));
    QVERIFY(page->compareModels());
    m_machine.type(*page, opened, user(QStringLiteral("root"), "fail"), QStringLiteral("1"));
    page->save();
    QVERIFY(rules().contains(" -F uid=0 -F success=0 "));
    QVERIFY(rules().contains(" -F uid=1001 -F success=1 "));
    QVERIFY(!rules().contains("1000"));
}

QTEST_MAIN(AuditPageTest)

#include "auditpagetest.moc"
