// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <eventtreeitem.h>
#include <nodeaddress.h>

#include <QTest>

#include <memory>

/// Nodes found again in another tree.
class NodeAddressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNodeIsFoundInAnotherTree();
    void theEventItselfHasAnAddress();
    void groupsHaveNone();
    void whatTheOtherTreeLacksIsNotFound();
};

namespace {
EventTreeItem *add(EventTreeItem *parent, const char *name, int kind)
{
    auto *item = new EventTreeItem({QLatin1String(name), {}, {}}, parent);
    item->nativeName = QLatin1String(name);
    item->kind = kind;
    parent->appendChild(item);
    return item;
}

/// A group with two events that both have the parameter "list/users".
std::unique_ptr<EventTreeItem> tree()
{
    auto root = std::make_unique<EventTreeItem>(QVector<QVariant>{{}, {}});
    root->kind = EventTreeItem::Group;
    EventTreeItem *group = add(root.get(), "group", EventTreeItem::Group);
    for (const char *id : {"first", "second"}) {
        EventTreeItem *event = add(group, id, EventTreeItem::Event);
        add(add(event, "list", EventTreeItem::Parameter), "users", EventTreeItem::Parameter);
    }
    return root;
}
} // namespace

void NodeAddressTest::aNodeIsFoundInAnotherTree()
{
    const auto one = tree();
    const auto other = tree();
    const NodeAddress address(*one->eventChild(0)->eventChild(1)->eventChild(0)->eventChild(0));
    EventTreeItem *event = other->eventChild(0)->eventChild(1);
    QCOMPARE(address.eventId(), QStringLiteral("second"));
    QCOMPARE(address.find(*other), event->eventChild(0)->eventChild(0));
    QCOMPARE(address.findEvent(*other), event);
}

void NodeAddressTest::theEventItselfHasAnAddress()
{
    const auto one = tree();
    EventTreeItem *event = one->eventChild(0)->eventChild(0);
    QCOMPARE(NodeAddress(*event).find(*one), event);
}

void NodeAddressTest::groupsHaveNone()
{
    const auto one = tree();
    for (const EventTreeItem *item : {one->eventChild(0), one.get()}) {
        const NodeAddress address(*item);
        QVERIFY(address.isEmpty());
        QVERIFY(!address.find(*one));
    }
    QVERIFY(!NodeAddress().findEvent(*one));
}

void NodeAddressTest::whatTheOtherTreeLacksIsNotFound()
{
    const auto one = tree();
    const auto other = tree();
    const NodeAddress address(*one->eventChild(0)->eventChild(1)->eventChild(0)->eventChild(0));
    other->eventChild(0)->eventChild(1)->deleteChild(0);
    QVERIFY(!address.find(*other));
    other->eventChild(0)->deleteChild(1);
    QVERIFY(!address.find(*other));
    QVERIFY(!address.findEvent(*other));
}

QTEST_GUILESS_MAIN(NodeAddressTest)

#include "nodeaddresstest.moc"
