// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <eventtreeitem.h>

#include <QTest>

#include <memory>

namespace {
EventTreeItem *append(EventTreeItem *parent, const char *nativeName, int kind = EventTreeItem::Parameter,
                      const QVariant &value = {}, const QVariant &json = {})
{
    auto *item = new EventTreeItem({QString::fromUtf8(nativeName), value, json}, parent);
    item->nativeName = QString::fromUtf8(nativeName);
    item->kind = kind;
    parent->appendChild(item);
    return item;
}

class Counted : public EventTreeItem
{
public:
    Counted(EventTreeItem *parent, QHash<int, int> &destroyed, int number)
        : EventTreeItem({number}, parent)
        , m_destroyed(destroyed)
        , m_number(number)
    {
    }
    ~Counted() override { ++m_destroyed[m_number]; }

private:
    QHash<int, int> &m_destroyed;
    const int m_number;
};
} // namespace

class EventTreeItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshNodeHasTheInitialValues()
    {
        EventTreeItem parent({QStringLiteral("p")});
        const EventTreeItem item({QStringLiteral("a"), QStringLiteral("b")}, &parent);

        QCOMPARE(item.columnCount(), 2);
        QCOMPARE(item.parentItem(), &parent);
        QCOMPARE(parent.childCount(), 0);
        QVERIFY(!item.checkable);
        QCOMPARE(item.checkState, 0);
        QVERIFY(!item.editable);
        QVERIFY(!item.childrenEditable);
        QVERIFY(item.visible);
        QVERIFY(!item.overlay);
        QVERIFY(!item.notRedirected);
        QVERIFY(!item.generatesLoad);
        QVERIFY(!item.hasAuditRules());
        QCOMPARE(int(item.notificationState), 0);
        QVERIFY(item.conflictsWith.isEmpty());
        QCOMPARE(item.kind, 1);
        QVERIFY(item.nativeName.isEmpty());
        QVERIFY(item.localizedName.isEmpty());
        QVERIFY(item.dependencies().isEmpty());
        QVERIFY(item.dependents().isEmpty());
    }

    void kindsHaveTheirNumbers()
    {
        QCOMPARE(int(EventTreeItem::Group), 0);
        QCOMPARE(int(EventTreeItem::Event), 1);
        QCOMPARE(int(EventTreeItem::Parameter), 2);
        QCOMPARE(int(EventTreeItem::List), 3);
        QCOMPARE(int(EventTreeItem::Subjects), 4);
    }

    void auditRulesFlagIsReadAndWritten()
    {
        EventTreeItem item({});
        item.setHasAuditRules(true);
        QVERIFY(item.hasAuditRules());
        item.setHasAuditRules(false);
        QVERIFY(!item.hasAuditRules());
    }

    void notificationIsOnForStatesOneAndTwoOnly_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("on");
        QTest::newRow("off") << 0 << false;
        QTest::newRow("on") << 1 << true;
        QTest::newRow("on as well") << 2 << true;
        QTest::newRow("beyond") << 3 << false;
        QTest::newRow("negative") << -1 << false;
    }
    void notificationIsOnForStatesOneAndTwoOnly()
    {
        QFETCH(int, state);
        EventTreeItem item({});
        item.notificationState = static_cast<EventTreeItem::NotificationState>(state);
        QTEST(item.isNotificationOn(), "on");
    }

    void notificationStateTravelsInAVariant()
    {
        const int type = qMetaTypeId<EventTreeItem::NotificationState>();
        QCOMPARE(QMetaType::typeName(type), "EventTreeItem::NotificationState");
        QCOMPARE(QMetaType::type("EventTreeItem::NotificationState"), type);
        QCOMPARE(sizeof(EventTreeItem::NotificationState), sizeof(int));

        const auto variant = QVariant::fromValue(static_cast<EventTreeItem::NotificationState>(2));
        QVERIFY(variant.canConvert<EventTreeItem::NotificationState>());
        QCOMPARE(int(variant.value<EventTreeItem::NotificationState>()), 2);
        QCOMPARE(variant.toInt(), 2);
    }

    void nativeNameIsFoundInPreOrder()
    {
        EventTreeItem root({QStringLiteral("root")});
        root.nativeName = QStringLiteral("wanted");
        EventTreeItem *first = append(&root, "first");
        first->setData(0, QStringLiteral("wanted")); // what is shown does not count
        EventTreeItem *grandchild = append(first, "wanted");
        append(&root, "wanted");

        QCOMPARE(root.findChildByNativeName(QStringLiteral("wanted")), grandchild);
        QCOMPARE(root.findChildByNativeName(QStringLiteral("Wanted")), nullptr);
        append(grandchild, "wanted");
        QCOMPARE(root.findChildByNativeName(QStringLiteral("wanted")), grandchild);
    }

    void topLevelSearchByNativeNameDoesNotDescend()
    {
        EventTreeItem root({QStringLiteral("root")});
        EventTreeItem *first = append(&root, "first");
        append(first, "wanted");
        QCOMPARE(root.findChildTopLevelByNativeName(QStringLiteral("wanted")), nullptr);

        EventTreeItem *direct = append(&root, "wanted");
        append(&root, "wanted");
        QCOMPARE(root.findChildTopLevelByNativeName(QStringLiteral("wanted")), direct);
    }

    void parentSearchStartsWithTheParentAndGoesOnBelowIt()
    {
        EventTreeItem root({QStringLiteral("root")});
        root.nativeName = QStringLiteral("root");
        EventTreeItem *event = append(&root, "event");
        EventTreeItem *node = append(event, "node");
        EventTreeItem *below = append(node, "below");
        EventTreeItem *sibling = append(event, "sibling");
        EventTreeItem *nephew = append(sibling, "nephew");
        const auto find
            = [node](const char *name) { return node->findParentByNativeName(QString::fromUtf8(name)); };

        QCOMPARE(find("event"), event);
        QCOMPARE(find("sibling"), sibling);
        QCOMPARE(find("nephew"), nephew);
        QCOMPARE(find("node"), node);
        QCOMPARE(find("below"), below);
        QCOMPARE(find("root"), nullptr); // the search does not go further up
        QCOMPARE(root.findParentByNativeName(QStringLiteral("event")), nullptr);
        append(event, "event");
        QCOMPARE(find("event"), event);
    }

    void destroyingARootDestroysEveryNodeOnce()
    {
        QHash<int, int> destroyed;
        int count = 0;
        auto root = std::make_unique<Counted>(nullptr, destroyed, count++);
        QVector<Counted *> events;
        for (int group = 0; group < 3; ++group) {
            auto *groupItem = new Counted(root.get(), destroyed, count++);
            root->appendChild(groupItem);
            for (int event = 0; event < 4; ++event) {
                auto *item = new Counted(groupItem, destroyed, count++);
                groupItem->appendChild(item, event % 2 == 1);
                item->appendChild(new Counted(item, destroyed, count++));
                events.append(item);
            }
        }
        // Links cross the tree both ways, in circles, and do not own.
        for (Counted *event : qAsConst(events)) {
            for (Counted *other : qAsConst(events)) {
                event->addDependency(other);
            }
        }
        QVERIFY(destroyed.isEmpty());
        root.reset();
        QCOMPARE(destroyed.size(), count);
        for (const int times : qAsConst(destroyed)) {
            QCOMPARE(times, 1);
        }
    }

    void linksAreNotFollowedOutOfTheTree()
    {
        QHash<int, int> destroyed;
        auto kept = std::make_unique<Counted>(nullptr, destroyed, 1);
        {
            Counted linked(nullptr, destroyed, 2);
            linked.addDependency(kept.get());
            kept->addDependency(&linked);
        }
        QCOMPARE(destroyed.value(2), 1);
        QCOMPARE(destroyed.value(1), 0);
    }

    void aSubjectIsAChildOfASubjectsNodeOnly()
    {
        EventTreeItem root({QStringLiteral("root")});
        EventTreeItem *identifier = append(&root, "login");
        EventTreeItem *users = append(identifier, "users", EventTreeItem::Subjects);
        EventTreeItem *alice = append(users, "alice");
        EventTreeItem *success = append(alice, "succ", EventTreeItem::Parameter, QStringLiteral("1"));

        QVERIFY(alice->isSubject());
        QVERIFY(!users->isSubject());
        QVERIFY(!success->isSubject());
        QVERIFY(!root.isSubject());
        QCOMPARE(users->member(QLatin1String("alice")), nullptr);
        QCOMPARE(identifier->member(QLatin1String("users")), users);
        QCOMPARE(identifier->member(QLatin1String("alice")), nullptr);
    }

    void anObjectIsOneEvenWhenEmpty()
    {
        EventTreeItem root({QStringLiteral("root")});
        QVERIFY(append(&root, "empty", EventTreeItem::Parameter, {}, QStringLiteral("{}"))->isObject());
        QVERIFY(append(&root, "users", EventTreeItem::Subjects, {}, QStringLiteral("{}"))->isObject());
        QVERIFY(!append(&root, "text", EventTreeItem::Parameter, QStringLiteral("{}"))->isObject());
        QVERIFY(!append(&root, "list", EventTreeItem::List, {}, QStringLiteral("[]"))->isObject());
        QVERIFY(!append(&root, "event", EventTreeItem::Event, {}, QStringLiteral("{}"))->isObject());
    }

    void onlySuccAndFailValuesAreAuditSwitches()
    {
        EventTreeItem root({QStringLiteral("root")});
        EventTreeItem *users = append(&root, "users", EventTreeItem::Subjects);
        EventTreeItem *alice = append(users, "alice");
        const QString on = QStringLiteral("1");

        QVERIFY(append(alice, "succ", EventTreeItem::Parameter, on)->isAuditSwitch());
        QVERIFY(append(alice, "fail", EventTreeItem::Parameter, on)->isAuditSwitch());
        QVERIFY(!append(alice, "other", EventTreeItem::Parameter, on)->isAuditSwitch());
        QVERIFY(!append(alice, "succ", EventTreeItem::List, on)->isAuditSwitch());
        QVERIFY(!append(alice, "succ", EventTreeItem::Parameter, {}, QStringLiteral("{}"))->isAuditSwitch());
        QVERIFY(!append(users, "succ", EventTreeItem::Parameter, on)->isAuditSwitch()); // an account
    }

    void theSwitchOfANodeIsItsOwnEnabledValue()
    {
        EventTreeItem root({QStringLiteral("root")});
        EventTreeItem *event = append(&root, "event", EventTreeItem::Event);
        EventTreeItem *object
            = append(event, "parameter", EventTreeItem::Parameter, {}, QStringLiteral("{}"));
        EventTreeItem *inner = append(object, "enabled", EventTreeItem::Parameter, QStringLiteral("0"));
        QCOMPARE(event->switchChild(), nullptr);
        QCOMPARE(object->switchChild(), inner);
        append(event, "enabled", EventTreeItem::Parameter, {}, QStringLiteral("{}"));
        append(event, "enabled", EventTreeItem::List);
        QCOMPARE(event->switchChild(), nullptr);
        EventTreeItem *own = append(event, "enabled", EventTreeItem::Parameter, QStringLiteral("1"));
        QCOMPARE(event->switchChild(), own);

        EventTreeItem *users = append(&root, "users", EventTreeItem::Subjects);
        append(users, "enabled", EventTreeItem::Parameter, QStringLiteral("1"));
        QCOMPARE(users->switchChild(), nullptr);
        EventTreeItem *group = append(&root, "group", EventTreeItem::Group);
        append(group, "enabled", EventTreeItem::Event);
        QCOMPARE(group->switchChild(), nullptr);
    }
};

QTEST_GUILESS_MAIN(EventTreeItemTest)
#include "eventtreeitemtest.moc"
