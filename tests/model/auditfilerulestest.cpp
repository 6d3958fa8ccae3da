// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <watchedpaths.h>

#include <QSignalSpy>
#include <QTest>

/// The rules that watch a list of files, and where they are kept.
class AuditFileRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anOpenedFileHasThreeRulesInOrder();
    void theKindOfTheRulesIsThatOfTheEvent();
    void blanksAroundAPathAreNoPartOfIt();
    void emptyPartsAndRepeatedPathsMakeNoRules_data();
    void emptyPartsAndRepeatedPathsMakeNoRules();
    void aPathWithAPlaceholderStaysAsItIs();
    void thereIsNothingToStoreWithoutANode();
    void whatIsReadBackFromTheTextIsTheList();

private:
    std::unique_ptr<EventTreeItem> m_root;
    EventTreeItem *m_opened = nullptr;
    EventTreeItem *m_modified = nullptr;
};

void AuditFileRulesTest::init()
{
    m_root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(m_root.get(), "watched-files");
    m_opened = TreeMaker::parameter(TreeMaker::event(group, "file-opened", "1"), "message-audit-rules", "");
    m_modified
        = TreeMaker::parameter(TreeMaker::event(group, "modifying-file", "1"), "message-audit-rules", "");
}

void AuditFileRulesTest::anOpenedFileHasThreeRulesInOrder()
{
    ShownModel model(std::move(m_root));
    QSignalSpy changes(&*model, &CheckableTreeModel::dataChanged);
    QVERIFY(model->setAuditFileRules(model.name(m_opened), QStringLiteral("/a, /b")));
    QCOMPARE(m_opened->data(1).toString(),
             QStringLiteral("-a always,exit -F arch=x86_64 -F path=/a -S open,openat -k /a, "
                            "-a always,exit -F arch=armv7l -F path=/a -S open,openat -k /a, "
                            "-a always,exit -F arch=aarch64 -F path=/a -S openat -k /a, "
                            "-a always,exit -F arch=x86_64 -F path=/b -S open,openat -k /b, "
                            "-a always,exit -F arch=armv7l -F path=/b -S open,openat -k /b, "
                            "-a always,exit -F arch=aarch64 -F path=/b -S openat -k /b"));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), model.value(m_opened));
}

void AuditFileRulesTest::theKindOfTheRulesIsThatOfTheEvent()
{
    ShownModel model(std::move(m_root));
    QVERIFY(model->setAuditFileRules(model.value(m_modified), QStringLiteral("/a, /b")));
    QCOMPARE(m_modified->data(1).toString(), QStringLiteral("-w /a -p wa -k /a, -w /b -p wa -k /b"));
    // A node may also bear the name itself.
    EventTreeItem *event = m_opened->parentItem();
    QVERIFY(model->setAuditFileRules(model.name(event), QStringLiteral("/a")));
    QCOMPARE(event->data(1).toString().count(QLatin1String("-S open")), 3);
}

void AuditFileRulesTest::blanksAroundAPathAreNoPartOfIt()
{
    ShownModel model(std::move(m_root));
    QVERIFY(model->setAuditFileRules(model.name(m_modified), QStringLiteral("  /etc/motd \t")));
    QCOMPARE(m_modified->data(1).toString(), QStringLiteral("-w /etc/motd -p wa -k /etc/motd"));
}

void AuditFileRulesTest::emptyPartsAndRepeatedPathsMakeNoRules_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rules");
    const QString one = QStringLiteral("-w /a -p wa -k /a");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("blanks") << QStringLiteral("  ,  ") << QString();
    QTest::newRow("line breaks") << QStringLiteral("\n,/a,\n") << one;
    QTest::newRow("a comma at the end") << QStringLiteral("/a, ") << one;
    QTest::newRow("twice the same") << QStringLiteral("/a,/a, /a") << one;
}

void AuditFileRulesTest::emptyPartsAndRepeatedPathsMakeNoRules()
{
    QFETCH(QString, text);
    ShownModel model(std::move(m_root));
    QVERIFY(model->setAuditFileRules(model.name(m_modified), text));
    QTEST(m_modified->data(1).toString(), "rules");
}

void AuditFileRulesTest::aPathWithAPlaceholderStaysAsItIs()
{
    QCOMPARE(WatchedPaths::rulesText({QStringLiteral("/a%1b%2")}, false),
             QStringLiteral("-w /a%1b%2 -p wa -k /a%1b%2"));
}

void AuditFileRulesTest::thereIsNothingToStoreWithoutANode()
{
    ShownModel model(std::move(m_root));
    QVERIFY(!model->setAuditFileRules(QModelIndex(), QStringLiteral("/a")));
}

void AuditFileRulesTest::whatIsReadBackFromTheTextIsTheList()
{
    QStringList paths{QStringLiteral("/a"), QStringLiteral("/Папка/файл"), QStringLiteral("/q\"#\\")};
    for (int round = 0; round < 3; ++round) {
        const QStringList again = WatchedPaths::fromText(WatchedPaths::toText(paths));
        QCOMPARE(again, paths);
        paths = again;
    }
}

QTEST_GUILESS_MAIN(AuditFileRulesTest)

#include "auditfilerulestest.moc"
