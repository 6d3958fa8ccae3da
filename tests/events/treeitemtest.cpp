// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <treeitem.h>

#include <QTest>

#include <memory>

namespace {
QVector<QVariant> row(const char *first, const char *second = "", const char *third = "")
{
    return {QString::fromUtf8(first), QString::fromUtf8(second), QString::fromUtf8(third)};
}

TreeItem *append(TreeItem *parent, const QVector<QVariant> &values, bool prepend = false)
{
    auto *item = new TreeItem(values, parent);
    parent->appendChild(item, prepend);
    return item;
}

/// Writes down when it is destroyed, and whether its children went first.
class Witness : public TreeItem
{
public:
    Witness(const char *name, TreeItem *parent, QStringList &log)
        : TreeItem({QString::fromUtf8(name)}, parent)
        , m_log(log)
    {
    }
    ~Witness() override { m_log.append(data(0).toString()); }

private:
    QStringList &m_log;
};
} // namespace

class TreeItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructorCopiesValuesAndLeavesParentAlone()
    {
        QVector<QVariant> values = row("a", "b", "c");
        TreeItem parent(row("root"));
        const TreeItem item(values, &parent);
        values[0] = QStringLiteral("changed");

        QCOMPARE(item.data(0).toString(), QStringLiteral("a"));
        QCOMPARE(item.parentItem(), &parent);
        QCOMPARE(parent.childCount(), 0);
        QCOMPARE(parent.parentItem(), nullptr);
    }

    void nodesOfOneTreeMayDifferInColumns()
    {
        TreeItem root({QStringLiteral("Parameter"), QStringLiteral("Value")});
        const TreeItem *narrow = append(&root, {QStringLiteral("x")});
        const TreeItem *empty = append(&root, {});

        QCOMPARE(root.columnCount(), 2);
        QCOMPARE(narrow->columnCount(), 1);
        QCOMPARE(empty->columnCount(), 0);
        QVERIFY(!empty->data(0).isValid());
    }

    void childOutsideTheRowsIsNull()
    {
        TreeItem root(row("root"));
        TreeItem *first = append(&root, row("first"));
        TreeItem *second = append(&root, row("second"));

        QCOMPARE(root.childCount(), 2);
        QCOMPARE(root.child(0), first);
        QCOMPARE(root.child(1), second);
        QCOMPARE(root.child(-1), nullptr);
        QCOMPARE(root.child(2), nullptr);
        QCOMPARE(root.child(3), nullptr);
    }

    void dataOutsideTheColumnsIsInvalid()
    {
        const TreeItem item(row("a", "b", "c"));

        QCOMPARE(item.data(2).toString(), QStringLiteral("c"));
        QVERIFY(!item.data(3).isValid());
        QVERIFY(!item.data(-1).isValid());
        QVERIFY(!item.value(3).isValid());
        QVERIFY(!item.value(-1).isValid());
        QCOMPARE(item.value(1).toString(), QStringLiteral("b"));
    }

    void settingAColumnNeverGrowsTheRow()
    {
        TreeItem item(row("a", "b", "c"));

        QVERIFY(!item.setData(3, QStringLiteral("x")));
        QVERIFY(!item.setData(-1, QStringLiteral("x")));
        QCOMPARE(item.rowData(), row("a", "b", "c"));
        QVERIFY(item.setData(2, 7));
        QCOMPARE(item.columnCount(), 3);
        QCOMPARE(item.data(2), QVariant(7));
        QCOMPARE(item.data(0).toString(), QStringLiteral("a"));
    }

    void settingTheRowReplacesItWhateverItsLength()
    {
        TreeItem item(row("a", "b", "c"));

        item.setData({QStringLiteral("only")});
        QCOMPARE(item.columnCount(), 1);
        QCOMPARE(item.data(0).toString(), QStringLiteral("only"));
        QVERIFY(!item.data(1).isValid());
        item.setData({1, 2, 3, 4, 5});
        QCOMPARE(item.columnCount(), 5);
        QCOMPARE(item.data(4), QVariant(5));
    }

    void rowOfARootIsZero()
    {
        const TreeItem root(row("root"));
        QCOMPARE(root.row(), 0);
    }

    void rowIsMinusOneWhenTheParentDoesNotListTheNode()
    {
        TreeItem parent(row("root"));
        const TreeItem stranger(row("stranger"), &parent);
        QCOMPARE(stranger.row(), -1);
        append(&parent, row("sibling"));
        QCOMPARE(stranger.row(), -1);
    }

    void rowFollowsInsertionsAndDeletions()
    {
        TreeItem root(row("root"));
        QVector<TreeItem *> items;
        for (int i = 0; i < 6; ++i) {
            items.append(append(&root, row("item")));
            QCOMPARE(items.constLast()->row(), i);
        }
        items.prepend(append(&root, row("first"), true));
        const auto check = [&root, &items] {
            QCOMPARE(root.childCount(), items.size());
            for (int i = 0; i < items.size(); ++i) {
                QCOMPARE(items.at(i)->row(), i);
                QCOMPARE(root.child(i), items.at(i));
            }
        };
        check();
        for (const int gone : {3, 0, 4}) {
            QVERIFY(root.deleteChild(gone));
            items.remove(gone);
            check();
        }
        items.append(append(&root, row("late")));
        check();
    }

    void appendingInFrontMovesTheOthersDown()
    {
        TreeItem root(row("root"));
        const TreeItem *one = append(&root, row("one"));
        const TreeItem *two = append(&root, row("two"));
        const TreeItem *front = append(&root, row("front"), true);

        QCOMPARE(root.childCount(), 3);
        QCOMPARE(front->row(), 0);
        QCOMPARE(one->row(), 1);
        QCOMPARE(two->row(), 2);
    }

    void appendingKeepsTheParentPointerOfTheChild()
    {
        TreeItem root(row("root"));
        TreeItem other(row("other"));
        auto *child = new TreeItem(row("child"), &other);
        root.appendChild(child, false);

        QCOMPARE(root.child(0), child);
        QCOMPARE(child->parentItem(), &other);
    }

    void deletingRejectsOnlyRowsBelowZeroOrAboveTheCount()
    {
        QStringList log;
        TreeItem root(row("root"));
        for (const char *name : {"a", "b", "c"}) {
            root.appendChild(new Witness(name, &root, log));
        }

        QVERIFY(!root.deleteChild(-1));
        QVERIFY(!root.deleteChild(4));
        QVERIFY(root.deleteChild(3));
        QCOMPARE(root.childCount(), 3);
        QVERIFY(log.isEmpty());
        QVERIFY(root.deleteChild(1));
        QCOMPARE(log, QStringList{QStringLiteral("b")});
        QCOMPARE(root.childCount(), 2);
        QCOMPARE(root.child(1)->data(0).toString(), QStringLiteral("c"));
    }

    void deletingAChildDestroysItsWholeSubtree()
    {
        QStringList log;
        TreeItem root(row("root"));
        auto *child = new Witness("child", &root, log);
        root.appendChild(child);
        auto *grandchild = new Witness("grandchild", child, log);
        child->appendChild(grandchild);
        grandchild->appendChild(new Witness("leaf", grandchild, log));
        root.appendChild(new Witness("other", &root, log));

        QVERIFY(root.deleteChild(0));
        log.sort();
        QCOMPARE(
            log,
            QStringList({QStringLiteral("child"), QStringLiteral("grandchild"), QStringLiteral("leaf")}));
    }

    void findChildPrefersAGrandchildOfAnEarlierRow()
    {
        TreeItem root(row("root"));
        TreeItem *first = append(&root, row("first"));
        const TreeItem *grandchild = append(first, row("wanted", "grandchild"));
        append(&root, row("wanted", "second"));

        QCOMPARE(root.findChild(QStringLiteral("wanted"), 0), grandchild);
    }

    void findChildPrefersANodeToItsDescendants()
    {
        TreeItem root(row("root"));
        TreeItem *first = append(&root, row("wanted", "child"));
        append(first, row("wanted", "grandchild"));

        QCOMPARE(root.findChild(QStringLiteral("wanted"), 0), first);
    }

    void findChildComparesTheGivenColumnExactly()
    {
        TreeItem root(row("root", "x"));
        append(&root, row("x", "X", "1"));
        TreeItem *number = append(&root, {QStringLiteral("n"), 42, QStringLiteral("x")});

        QCOMPARE(root.findChild(QStringLiteral("42"), 1), number);
        QCOMPARE(root.findChild(QStringLiteral("x"), 2), number);
        QCOMPARE(root.findChild(QStringLiteral("x"), 1), nullptr);
        QCOMPARE(root.findChild(QStringLiteral("4"), 1), nullptr);
        QCOMPARE(root.findChild(QStringLiteral("N"), 0), nullptr);
    }

    void findChildNeverReturnsTheStartItself()
    {
        TreeItem root(row("root"));
        TreeItem *child = append(&root, row("child"));

        QCOMPARE(root.findChild(QStringLiteral("root"), 0), nullptr);
        QCOMPARE(child->findChild(QStringLiteral("child"), 0), nullptr);
    }

    void findChildWithoutTopLevelPassesDirectChildrenOver()
    {
        TreeItem root(row("root"));
        append(&root, row("wanted", "leaf child"));
        TreeItem *branch = append(&root, row("wanted", "branch child"));
        QCOMPARE(root.findChildWithoutTopLevel(QStringLiteral("wanted"), 0), nullptr);

        append(branch, row("plain"));
        TreeItem *deep = append(branch->child(0), row("wanted", "deep"));
        QCOMPARE(root.findChildWithoutTopLevel(QStringLiteral("wanted"), 0), deep);
        const TreeItem *grandchild = append(branch, row("wanted", "grandchild"), true);
        QCOMPARE(root.findChildWithoutTopLevel(QStringLiteral("wanted"), 0), grandchild);
        QCOMPARE(root.findChildWithoutTopLevel(QStringLiteral("deep"), 1), deep);
    }

    void findChildTopLevelDoesNotDescend()
    {
        TreeItem root(row("root"));
        TreeItem *first = append(&root, row("first", "wanted"));
        append(first, row("wanted"));
        QCOMPARE(root.findChildTopLevel(QStringLiteral("wanted")), nullptr);

        const TreeItem *direct = append(&root, row("wanted", "direct"));
        append(&root, row("wanted", "later"));
        QCOMPARE(root.findChildTopLevel(QStringLiteral("wanted")), direct);
    }

    void destinationChainComesLastWithSourceAndDestination()
    {
        TreeItem root(row("Parameter", "Name", "Value"));
        append(&root, row("log"));
        root.createDestChain(QStringLiteral("d1"));

        QCOMPARE(root.childCount(), 2);
        const TreeItem *chain = root.child(1);
        QCOMPARE(chain->rowData(), (QVector<QVariant>{QStringLiteral("log"), QString(), QVariant()}));
        QVERIFY(chain->data(1).isValid());
        QCOMPARE(chain->parentItem(), &root);
        QCOMPARE(chain->childCount(), 2);
        QCOMPARE(
            chain->child(0)->rowData(),
            (QVector<QVariant>{QStringLiteral("source"), QVariant(), QStringLiteral("nivra_events_src")}));
        QCOMPARE(chain->child(1)->rowData(),
                 (QVector<QVariant>{QStringLiteral("destination"), QVariant(), QStringLiteral("d1")}));
        QCOMPARE(chain->child(1)->parentItem(), chain);
    }

    void destinationGoesBehindTheLastOneOrBeforeTheFirstLogPath_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<int>("position");
        const QString source = QStringLiteral("source");
        const QString destination = QStringLiteral("destination");
        const QString log = QStringLiteral("log");
        QTest::newRow("empty") << QStringList() << 0;
        QTest::newRow("neither") << QStringList{source, source} << 2;
        QTest::newRow("log paths only") << QStringList{source, log, source, log} << 1;
        QTest::newRow("destinations") << QStringList{destination, source, destination, source, log} << 3;
        QTest::newRow("destination behind a log path") << QStringList{log, destination, log} << 2;
    }

    void destinationGoesBehindTheLastOneOrBeforeTheFirstLogPath()
    {
        QFETCH(QStringList, before);
        QFETCH(int, position);
        TreeItem root(row("Parameter", "Name", "Value"));
        for (const QString &keyword : before) {
            append(&root, row(qPrintable(keyword), "x"));
        }
        auto *added = new TreeItem(row("destination", "new"), &root);
        root.appendChildDestination(added);

        QCOMPARE(root.childCount(), before.size() + 2);
        QCOMPARE(root.child(position), added);
        QCOMPARE(added->row(), position);
        QCOMPARE(root.child(root.childCount() - 1)->child(1)->data(2).toString(), QStringLiteral("new"));
    }

    void logPathsOfADestinationAreDeleted()
    {
        TreeItem root(row("Parameter", "Name", "Value"));
        append(&root, row("destination", "d1"));
        root.createDestChain(QStringLiteral("d1"));
        root.createDestChain(QStringLiteral("d2"));
        root.createDestChain(QStringLiteral("d1"));

        QVERIFY(root.deleteLogChild(QStringLiteral("d1")));
        QCOMPARE(root.childCount(), 2);
        QCOMPARE(root.child(0)->data(0).toString(), QStringLiteral("destination"));
        QCOMPARE(root.child(1)->child(1)->data(2).toString(), QStringLiteral("d2"));
        QVERIFY(!root.deleteLogChild(QStringLiteral("d1")));
        QCOMPARE(root.childCount(), 2);
    }

    void logPathKeepsItsOtherDestinations()
    {
        TreeItem root(row("Parameter", "Name", "Value"));
        root.createDestChain(QStringLiteral("d1"));
        TreeItem *chain = root.child(0);
        append(chain, row("destination", "", "d2"));
        append(chain, row("destination", "", "d1"));

        QVERIFY(root.deleteLogChild(QStringLiteral("d1")));
        QCOMPARE(root.childCount(), 1);
        QCOMPARE(chain->childCount(), 2);
        QCOMPARE(chain->child(0)->data(2).toString(), QStringLiteral("nivra_events_src"));
        QCOMPARE(chain->child(1)->data(2).toString(), QStringLiteral("d2"));
    }

    void logPathKeepsANestedBlockWithDestinations()
    {
        TreeItem root(row("Parameter", "Name", "Value"));
        root.createDestChain(QStringLiteral("d1"));
        append(root.child(0), row("channel", "", " destination(d2); "));

        QVERIFY(root.deleteLogChild(QStringLiteral("d1")));
        QCOMPARE(root.childCount(), 1);
        QCOMPARE(root.child(0)->childCount(), 2);
        QCOMPARE(root.child(0)->child(1)->data(0).toString(), QStringLiteral("channel"));
    }

    void sourceOfTheSameNameIsNoDestination()
    {
        TreeItem root(row("Parameter", "Name", "Value"));
        root.createDestChain(QStringLiteral("d2"));
        root.child(0)->child(0)->setData(2, QStringLiteral("d1"));
        auto *other = append(&root, row("junction"));
        append(other, row("destination", "", "d1"));

        QVERIFY(!root.deleteLogChild(QStringLiteral("d1")));
        QCOMPARE(root.childCount(), 2);
        QCOMPARE(root.child(0)->childCount(), 2);
    }
};

QTEST_GUILESS_MAIN(TreeItemTest)
#include "treeitemtest.moc"
