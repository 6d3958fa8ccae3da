// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <shownmodel.h>
#include <treemaker.h>

#include <changemarker.h>
#include <disklimits.h>
#include <eventtreeclone.h>
#include <watchedlists.h>

#include <QSignalSpy>
#include <QTest>

/// What the dialogs for files, directories and disk space leave on their event.
class WatchedListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void pathsChangeTheListAndTheRules();
    void theSamePathsChangeNothing();
    void noPathLeavesEmptyListAndRules();
    void otherListsHaveNoRules();
    void takingAChangeBackIsNoChange();
    void directoriesChangeBothForms();
    void theSameDirectoriesChangeNothing();
    void whatIsNoArrayIsNotStored();

private:
    std::unique_ptr<EventTreeItem> m_root;
    std::unique_ptr<EventTreeItem> m_reference;
    EventTreeItem *m_rules = nullptr;
    EventTreeItem *m_keys = nullptr;
    EventTreeItem *m_programs = nullptr;
    EventTreeItem *m_directories = nullptr;
};

void WatchedListsTest::init()
{
    m_root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(m_root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "modifying-file", "1");
    EventTreeItem *filters = TreeMaker::object(event, "filter-values");
    m_keys = TreeMaker::list(filters, ".auditd.key", R"(["/a"])");
    m_keys->setHasAuditRules(true);
    m_programs = TreeMaker::list(filters, ".auditd.msg.exe", R"(["/bin/a"])");
    m_rules = TreeMaker::parameter(event, "message-audit-rules", "-w /a -p rwxa -k /a");
    event->setHasAuditRules(true);
    m_directories = TreeMaker::list(TreeMaker::event(group, "disk", "1"), "directories",
                                    R"([{"limit_bytes":"1","limit_percent":"2","path":"/"}])");
    m_reference = EventTreeClone::copyNode(*m_root, nullptr);
}

void WatchedListsTest::pathsChangeTheListAndTheRules()
{
    ShownModel model(std::move(m_root));
    QVERIFY(WatchedLists::storePaths(*model, m_keys, QStringLiteral("/b, /c")));
    QCOMPARE(m_keys->data(1).toString(), QStringLiteral("/b, /c"));
    QCOMPARE(m_keys->data(2).toString(), QStringLiteral(R"(["/b","/c"])"));
    QCOMPARE(m_rules->data(1).toString(), QStringLiteral("-w /b -p wa -k /b, -w /c -p wa -k /c"));
    QVERIFY(!ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

void WatchedListsTest::theSamePathsChangeNothing()
{
    ShownModel model(std::move(m_root));
    QSignalSpy changes(&*model, &CheckableTreeModel::dataChanged);
    for (const char *text : {"/a", " /a , ", "/a,/a"}) {
        QVERIFY(!WatchedLists::storePaths(*model, m_keys, QString::fromLatin1(text)));
    }
    QCOMPARE(changes.size(), 0);
    // Rules of another form than the dialog would write stay as well.
    QCOMPARE(m_rules->data(1).toString(), QStringLiteral("-w /a -p rwxa -k /a"));
    QVERIFY(ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

void WatchedListsTest::noPathLeavesEmptyListAndRules()
{
    ShownModel model(std::move(m_root));
    QVERIFY(WatchedLists::storePaths(*model, m_keys, QString()));
    QCOMPARE(m_keys->data(1).toString(), QString());
    QCOMPARE(m_keys->data(2).toString(), QStringLiteral("[]"));
    QCOMPARE(m_rules->data(1).toString(), QString());
    QVERIFY(!WatchedLists::storePaths(*model, m_keys, QStringLiteral(" ,\n")));
}

void WatchedListsTest::otherListsHaveNoRules()
{
    ShownModel model(std::move(m_root));
    QVERIFY(WatchedLists::storePaths(*model, m_programs, QStringLiteral("/bin/b")));
    QCOMPARE(m_programs->data(1).toString(), QStringLiteral("/bin/b"));
    QCOMPARE(m_rules->data(1).toString(), QStringLiteral("-w /a -p rwxa -k /a"));
    QCOMPARE(m_keys->data(1).toString(), QStringLiteral("/a"));
}

void WatchedListsTest::takingAChangeBackIsNoChange()
{
    m_rules->setData(1, QStringLiteral("-w /a -p wa -k /a"));
    m_reference = EventTreeClone::copyNode(*m_root, nullptr);
    ShownModel model(std::move(m_root));
    QVERIFY(WatchedLists::storePaths(*model, m_keys, QStringLiteral("/a, /b")));
    QVERIFY(WatchedLists::storePaths(*model, m_keys, QStringLiteral("/a")));
    QVERIFY(ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

void WatchedListsTest::directoriesChangeBothForms()
{
    ShownModel model(std::move(m_root));
    QVector<DiskLimit> rows(2);
    rows[0].path = QStringLiteral("/a\"b");
    rows[1].path = QStringLiteral("/c, d");
    QVERIFY(WatchedLists::storeDirectories(*model, m_directories, DiskLimits::toJson(rows)));
    QCOMPARE(m_directories->data(1).toString(), QStringLiteral("/a\"b, /c, d"));
    QCOMPARE(DiskLimits::fromJson(m_directories->data(2).toString()), rows);
    QVERIFY(!ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

void WatchedListsTest::theSameDirectoriesChangeNothing()
{
    ShownModel model(std::move(m_root));
    QSignalSpy changes(&*model, &CheckableTreeModel::dataChanged);
    const QString same = DiskLimits::toJson(DiskLimits::fromJson(m_directories->data(2).toString()));
    QVERIFY(same != m_directories->data(2).toString());
    QVERIFY(!WatchedLists::storeDirectories(*model, m_directories, same));
    QCOMPARE(changes.size(), 0);
    QVector<DiskLimit> rows(1);
    QVERIFY(WatchedLists::storeDirectories(*model, m_directories, DiskLimits::toJson(rows)));
    QVERIFY(WatchedLists::storeDirectories(*model, m_directories, same));
    QVERIFY(ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

void WatchedListsTest::whatIsNoArrayIsNotStored()
{
    ShownModel model(std::move(m_root));
    for (const char *text : {"", "{}", "[ {\"path\": \"/a\" ]"}) {
        QVERIFY(!WatchedLists::storeDirectories(*model, m_directories, QString::fromLatin1(text)));
    }
    QVERIFY(ChangeMarker::compareTrees(*m_reference, *model->rootItem()));
}

QTEST_MAIN(WatchedListsTest)

#include "watchedliststest.moc"
