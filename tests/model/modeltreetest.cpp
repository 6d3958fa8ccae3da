// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"
#include "treemaker.h"

#include <QSignalSpy>
#include <QTest>

namespace {
/// Tells when it is destroyed.
class WatchedNode : public EventTreeItem
{
public:
    WatchedNode(EventTreeItem *parent, int *destroyed)
        : EventTreeItem({QStringLiteral("watched"), QVariant(), QVariant()}, parent)
        , m_destroyed(destroyed)
    {
        if (parent) {
            parent->appendChild(this);
        }
    }
    ~WatchedNode() override { ++*m_destroyed; }

private:
    int *m_destroyed;
};
} // namespace

class ModelTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyModelHasTheHeadersNameAndValue();
    void headersAreTheTextsOfTheRoot();
    void newRootResetsTheModelAndDestroysTheOldTree();
    void modelDestroysItsTree();
    void indexesFollowTheTree();
    void indexesOutsideTheTreeAreInvalid();
    void onlyTheFirstColumnHasRows();
    void parentIsTheFirstColumnOfTheParentRow();
    void columnCountIsThatOfTheParentNode();
    void indexOfFindsEveryNode();
    void ancestorsAreFoundByNativeName();
    void accountIsNotTakenForAnAncestorOfItsName();
    void enclosingEventIsTheNearestOne();
    void objectBelowAnEventIsNoEvent();
    void childrenAreFoundByNativeNameInPreOrder();
    void accountsArePassedOverWhenChildrenAreLookedUp();
};

void ModelTreeTest::emptyModelHasTheHeadersNameAndValue()
{
    ShownModel model;
    QCOMPARE(model->columnCount(), 2);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(model->headerData(0, Qt::Horizontal), QVariant(QStringLiteral("Name")));
    QCOMPARE(model->headerData(1, Qt::Horizontal), QVariant(QStringLiteral("Value")));
}

void ModelTreeTest::headersAreTheTextsOfTheRoot()
{
    ShownModel model(TreeMaker::root());
    QCOMPARE(model->headerData(0, Qt::Horizontal), QVariant(QStringLiteral("Parameter")));
    QCOMPARE(model->headerData(1, Qt::Horizontal), QVariant(QStringLiteral("Value")));
    QVERIFY(!model->headerData(2, Qt::Horizontal).isValid());
    QVERIFY(!model->headerData(-1, Qt::Horizontal).isValid());
    QVERIFY(!model->headerData(0, Qt::Vertical).isValid());
    QVERIFY(!model->headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
}

void ModelTreeTest::newRootResetsTheModelAndDestroysTheOldTree()
{
    int destroyed = 0;
    auto *oldRoot = new WatchedNode(nullptr, &destroyed);
    new WatchedNode(new WatchedNode(oldRoot, &destroyed), &destroyed);
    ShownModel model;
    model->setRootItem(oldRoot);
    QCOMPARE(destroyed, 0);
    QCOMPARE(model->rootItem(), oldRoot);

    QSignalSpy aboutToReset(&*model, &QAbstractItemModel::modelAboutToBeReset);
    QSignalSpy reset(&*model, &QAbstractItemModel::modelReset);
    std::unique_ptr<EventTreeItem> root = TreeMaker::root();
    TreeMaker::group(root.get(), "g");
    EventTreeItem *newRoot = root.release();
    model->setRootItem(newRoot);
    QCOMPARE(destroyed, 3);
    QCOMPARE(aboutToReset.count(), 1);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(model->rootItem(), newRoot);
    QCOMPARE(model->rowCount(), 1);
}

void ModelTreeTest::modelDestroysItsTree()
{
    int destroyed = 0;
    {
        ShownModel model;
        auto *root = new WatchedNode(nullptr, &destroyed);
        new WatchedNode(root, &destroyed);
        model->setRootItem(root);
    }
    QCOMPARE(destroyed, 2);
}

void ModelTreeTest::indexesFollowTheTree()
{
    auto root = TreeMaker::root();
    TreeMaker::group(root.get(), "first");
    EventTreeItem *group = TreeMaker::group(root.get(), "second");
    TreeMaker::event(group, "a");
    EventTreeItem *event = TreeMaker::event(group, "b");
    ShownModel model(std::move(root));

    QCOMPARE(model->rowCount(), 2);
    const QModelIndex groupIndex = model->index(1, 0);
    QVERIFY(groupIndex.isValid());
    QCOMPARE(model->itemAt(groupIndex), group);
    QCOMPARE(model->rowCount(groupIndex), 2);
    const QModelIndex eventIndex = model->index(1, 1, groupIndex);
    QCOMPARE(model->itemAt(eventIndex), event);
    QCOMPARE(eventIndex.row(), 1);
    QCOMPARE(eventIndex.column(), 1);
    QCOMPARE(model->itemAt({}), model->rootItem());
}

void ModelTreeTest::indexesOutsideTheTreeAreInvalid()
{
    auto root = TreeMaker::root();
    TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    ShownModel model(std::move(root));
    const QModelIndex group = model->index(0, 0);
    QVERIFY(!model->index(1, 0).isValid());
    QVERIFY(!model->index(-1, 0).isValid());
    QVERIFY(!model->index(0, 2).isValid()); // the root has two columns
    QVERIFY(!model->index(0, -1).isValid());
    QVERIFY(model->index(0, 2, group).isValid());
    QVERIFY(!model->index(0, 3, group).isValid());
    QVERIFY(!model->index(1, 0, group).isValid());
}

void ModelTreeTest::onlyTheFirstColumnHasRows()
{
    auto root = TreeMaker::root();
    TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    ShownModel model(std::move(root));
    QCOMPARE(model->rowCount(model->index(0, 0)), 1);
    QCOMPARE(model->rowCount(model->index(0, 1)), 0);
}

void ModelTreeTest::parentIsTheFirstColumnOfTheParentRow()
{
    auto root = TreeMaker::root();
    TreeMaker::group(root.get(), "first");
    EventTreeItem *group = TreeMaker::group(root.get(), "second");
    EventTreeItem *event = TreeMaker::event(group, "e", "1");
    ShownModel model(std::move(root));
    QCOMPARE(model->parent(model.value(event)), model->index(1, 0));
    QCOMPARE(model->parent(model.name(event->eventChild(0))), model.name(event));
    QVERIFY(!model->parent(model->index(1, 0)).isValid());
    QVERIFY(!model->parent(QModelIndex()).isValid());
}

void ModelTreeTest::columnCountIsThatOfTheParentNode()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e", "1");
    event->eventChild(0)->setData(QVector<QVariant>{QStringLiteral("one column only")});
    ShownModel model(std::move(root));
    QCOMPARE(model->columnCount(), 2);
    QCOMPARE(model->columnCount(model.name(group)), 3);
    QCOMPARE(model->columnCount(model.name(event->eventChild(0))), 1);
}

void ModelTreeTest::indexOfFindsEveryNode()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e", "1");
    EventTreeItem *value = TreeMaker::parameter(event, "p", "v");
    ShownModel model(std::move(root));
    QCOMPARE(model->indexOf(value, 1), model->index(1, 1, model->index(0, 0, model->index(0, 0))));
    QVERIFY(!model->indexOf(model->rootItem()).isValid());
    QVERIFY(!model->indexOf(nullptr).isValid());
}

void ModelTreeTest::ancestorsAreFoundByNativeName()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e");
    EventTreeItem *outer = TreeMaker::object(event, "same");
    EventTreeItem *inner = TreeMaker::object(outer, "same");
    EventTreeItem *value = TreeMaker::parameter(inner, "p", "v");
    event->setData(0, QStringLiteral("shown name"));
    ShownModel model(std::move(root));
    const QModelIndex index = model.value(value);
    QCOMPARE(model->findParentByNativeName(index, QStringLiteral("same")), model.name(inner));
    QCOMPARE(model->findParentByNativeName(model.name(inner), QStringLiteral("same")), model.name(outer));
    QCOMPARE(model->findParentByNativeName(index, QStringLiteral("e")), model.name(event));
    QCOMPARE(model->findParentByNativeName(index, QStringLiteral("g")), model.name(group));
    QVERIFY(!model->findParentByNativeName(index, QStringLiteral("p")).isValid());
    QVERIFY(!model->findParentByNativeName(index, QStringLiteral("shown name")).isValid());
    QVERIFY(!model->findParentByNativeName(QModelIndex(), QStringLiteral("g")).isValid());
}

void ModelTreeTest::accountIsNotTakenForAnAncestorOfItsName()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *account
        = TreeMaker::outcome(TreeMaker::subjects(open, "users"), "modifying-file", "0", "0");
    EventTreeItem *key = TreeMaker::parameter(account, ".auditd.key", "/etc/x");
    ShownModel model(std::move(root));
    QVERIFY(!model->findParentByNativeName(model.name(key), QStringLiteral("modifying-file")).isValid());
    QCOMPARE(model->data(model.name(key), CheckableTreeModel::FileArrayRole), QVariant(false));
}

void ModelTreeTest::enclosingEventIsTheNearestOne()
{
    auto root = TreeMaker::root();
    EventTreeItem *group = TreeMaker::group(root.get(), "g");
    EventTreeItem *event = TreeMaker::event(group, "e");
    EventTreeItem *value = TreeMaker::parameter(TreeMaker::object(event, "o"), "p", "v");
    ShownModel model(std::move(root));
    QCOMPARE(model->findParentEvent(model.value(value)), model.name(event));
    QVERIFY(!model->findParentEvent(model.name(event)).isValid());
    QVERIFY(!model->findParentEvent(model.name(group)).isValid());
}

void ModelTreeTest::objectBelowAnEventIsNoEvent()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *extended = TreeMaker::object(event, "extend-message-params");
    EventTreeItem *parameter = TreeMaker::switched(extended, "size", "1");
    ShownModel model(std::move(root));
    QCOMPARE(model->findParentEvent(model.name(parameter->eventChild(0))), model.name(event));
    QVERIFY(model->data(model.name(extended), CheckableTreeModel::ParameterRole).toBool());
    QVERIFY(!model->data(model.name(event), CheckableTreeModel::ParameterRole).toBool());
}

void ModelTreeTest::childrenAreFoundByNativeNameInPreOrder()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *first = TreeMaker::parameter(TreeMaker::object(event, "o"), "p", "deep");
    EventTreeItem *second = TreeMaker::parameter(event, "p", "shallow");
    second->setData(0, QStringLiteral("o"));
    ShownModel model(std::move(root));
    QCOMPARE(model->findChildByNativeName(model.name(event), QStringLiteral("p")), model.name(first));
    QVERIFY(!model->findChildByNativeName(model.name(event), QStringLiteral("e")).isValid());
    QVERIFY(!model->findChildByNativeName(model.name(first), QStringLiteral("p")).isValid());
}

void ModelTreeTest::accountsArePassedOverWhenChildrenAreLookedUp()
{
    auto root = TreeMaker::root();
    EventTreeItem *event = TreeMaker::event(TreeMaker::group(root.get(), "g"), "e");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    TreeMaker::outcome(TreeMaker::subjects(open, "users"), "message_id", "0", "0");
    EventTreeItem *params = TreeMaker::object(event, "message-params");
    EventTreeItem *messageId = TreeMaker::parameter(params, "message_id", "e");
    ShownModel model(std::move(root));
    QCOMPARE(model->findChildByNativeName(model.name(event), QStringLiteral("message_id")),
             model.name(messageId));
}

QTEST_MAIN(ModelTreeTest)

#include "modeltreetest.moc"
