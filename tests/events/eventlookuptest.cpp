// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

#include <QTest>

class EventLookupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageParametersComeBeforeOthersOfTheirName()
    {
        const auto add = [](EventTreeItem *parent, const char *name, const char *value) {
            auto *node = new EventTreeItem(
                {QString::fromLatin1(name), QString::fromLatin1(value), QVariant()}, parent);
            node->nativeName = QString::fromLatin1(name);
            node->kind = EventTreeItem::Parameter;
            parent->appendChild(node);
            return node;
        };
        EventTreeItem event({QStringLiteral("e"), QVariant(), QVariant()});
        EventTreeItem *extended = add(&event, "extend-message-params", "");
        EventTreeItem *other = add(extended, "name_en", "parameter");
        EventTreeItem *lone = add(extended, "lone", "x");
        EventTreeItem *name = add(add(&event, "message-params", ""), "name_en", "event");
        QCOMPARE(EventLookup::findParameter(event, QStringLiteral("name_en")), other);
        QCOMPARE(EventLookup::findMessageParameter(event, QStringLiteral("name_en")), name);
        QCOMPARE(EventLookup::findMessageParameter(event, QStringLiteral("lone")), lone);
        QVERIFY(!EventLookup::findMessageParameter(event, QStringLiteral("none")));
    }

    void init()
    {
        m_sandbox = std::make_unique<CatalogSandbox>();
        m_sandbox->addGroup("mount", "Mounts", "Тома");
        m_sandbox->addEvent("a", "first", R"({"event-group": "a", "enabled": "1", "delay": "5", "mount": "x",
            "message-audit-events": {"mount": {"users": {"delay": {"succ": "1", "secret": "2"}, "second": {"succ": "1"}}}},
            "zone": {"delay": "7", "inner": {"target": "8"}}, "message-params": {"name_en": "Same", "name_ru": "Одно"}})");
        m_sandbox->addEvent("a", "second", R"({"event-group": "a", "delay": "6",
            "message-params": {"name_en": "Same", "name_ru": "Одно"}})");
        m_sandbox->addEvent("mount", "mount", R"({"event-group": "mount", "enabled": "0"})");
        m_root = m_sandbox->parse({QStringLiteral("target")});
    }

    void cleanup()
    {
        m_root.reset();
        m_sandbox.reset();
    }

    void parametersAreFoundAtAnyDepth()
    {
        const EventTreeItem &event = *Tree::at(m_root, "a/first");
        const auto find = [&event](const char *name) {
            return EventLookup::findParameter(event, QString::fromUtf8(name));
        };

        QCOMPARE(find("delay"), Tree::at(m_root, "a/first/delay"));
        QCOMPARE(find("inner"), Tree::at(m_root, "a/first/zone/inner"));
        QCOMPARE(find("name_en"), Tree::at(m_root, "a/first/message-params/name_en"));
        QCOMPARE(find("users"), Tree::at(m_root, "a/first/message-audit-events/mount/users"));
        QCOMPARE(find("first"), nullptr);
        QCOMPARE(find("Delay"), nullptr);
    }

    void accountsAndWhatLiesBelowThemAreNoParameters()
    {
        const EventTreeItem &event = *Tree::at(m_root, "a/first");
        QVERIFY(Tree::at(m_root, "a/first/message-audit-events/mount/users/target"));
        QVERIFY(Tree::at(m_root, "a/first/message-audit-events/mount/users/delay/secret"));

        QCOMPARE(EventLookup::findParameter(event, QStringLiteral("target")),
                 Tree::at(m_root, "a/first/zone/inner/target"));
        QCOMPARE(EventLookup::findParameter(event, QStringLiteral("secret")), nullptr);
        QCOMPARE(EventLookup::findParameter(event, QStringLiteral("succ")), nullptr);
        QCOMPARE(EventLookup::findParameter(*Tree::at(m_root, "a/first/message-audit-events/mount/users"),
                                            QStringLiteral("target")),
                 nullptr);
    }

    void eventIsFoundByItsIdentifierOnly()
    {
        const auto find
            = [this](const char *id) { return EventLookup::findEvent(*m_root, QString::fromUtf8(id)); };
        QCOMPARE(find("mount"), Tree::at(m_root, "mount/mount"));
        QCOMPARE(find("second"), Tree::at(m_root, "a/second"));
        QCOMPARE(find("a"), nullptr);
        QCOMPARE(find("delay"), nullptr);
        QCOMPARE(find("Same"), nullptr);
        QCOMPARE(find(""), nullptr);
    }

    void twoEventsOfOneNameAreToldApart()
    {
        EventTreeItem *first = Tree::at(m_root, "a/first");
        EventTreeItem *second = Tree::at(m_root, "a/second");
        QCOMPARE(first->data(0), second->data(0));
        QCOMPARE(first->localizedName, second->localizedName);

        QCOMPARE(EventLookup::findEvent(*m_root, first->nativeName), first);
        QCOMPARE(EventLookup::findEvent(*m_root, second->nativeName), second);
        QCOMPARE(EventLookup::enclosingEvent(Tree::at(m_root, "a/first/delay")), first);
        QCOMPARE(EventLookup::enclosingEvent(Tree::at(m_root, "a/second/delay")), second);
    }

    void allEventsAreListedByIdentifier()
    {
        const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(*m_root);
        QCOMPARE(events.size(), 3);
        QCOMPARE(events.value(QStringLiteral("first")), Tree::at(m_root, "a/first"));
        QCOMPARE(events.value(QStringLiteral("second")), Tree::at(m_root, "a/second"));
        QCOMPARE(events.value(QStringLiteral("mount")), Tree::at(m_root, "mount/mount"));
    }

    void enclosingEventIsTheSelectedNodesOwn()
    {
        EventTreeItem *first = Tree::at(m_root, "a/first");
        for (EventTreeItem *node : Tree::all(first)) {
            QCOMPARE(EventLookup::enclosingEvent(node), first);
        }
        QCOMPARE(EventLookup::enclosingEvent(Tree::at(m_root, "a")), nullptr);
        QCOMPARE(EventLookup::enclosingEvent(m_root.get()), nullptr);
        QCOMPARE(EventLookup::enclosingEvent(nullptr), nullptr);
    }

    void onlyEventsAreEvents()
    {
        for (const EventTreeItem *node : Tree::all(m_root.get())) {
            const bool belowGroup = node->parentItem() && node->parentItem()->parentItem() == m_root.get();
            if (node != m_root.get()) {
                QCOMPARE(node->kind == EventTreeItem::Event, belowGroup);
                QCOMPARE(node->kind == EventTreeItem::Group, node->parentItem() == m_root.get());
            }
        }
    }

    void checkableChildrenAreDirectOnes()
    {
        QVERIFY(EventLookup::hasCheckableChild(*Tree::at(m_root, "a")));
        QVERIFY(EventLookup::hasCheckableChild(*m_root));
        QVERIFY(!EventLookup::hasCheckableChild(*Tree::at(m_root, "a/first")));
        Tree::at(m_root, "a")->checkable = false;
        Tree::at(m_root, "mount")->checkable = false;
        QVERIFY(!EventLookup::hasCheckableChild(*m_root));
    }

private:
    std::unique_ptr<CatalogSandbox> m_sandbox;
    std::unique_ptr<EventTreeItem> m_root;
};

QTEST_GUILESS_MAIN(EventLookupTest)
#include "eventlookuptest.moc"
