// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <QTest>

namespace {
/// The place of a node in its tree, as rows from the root.
QVector<int> placeOf(const EventTreeItem *item)
{
    QVector<int> place;
    for (; item->parentItem(); item = item->parentItem()) {
        place.prepend(item->row());
    }
    return place;
}

QVector<QVector<int>> placesOf(const QVector<EventTreeItem *> &nodes)
{
    QVector<QVector<int>> places;
    for (const EventTreeItem *node : nodes) {
        places.append(placeOf(node));
    }
    return places;
}

struct Trees
{
    std::unique_ptr<EventTreeItem> root;
    std::unique_ptr<EventTreeItem> copy;
};

/// Both trees of a load. Every field differs from its initial value somewhere.
Trees loaded()
{
    const CatalogSandbox sandbox;
    sandbox.setDictionary(
        R"({"delay": {"visible": "false"}, "open": {"children_editable": "true", "ru": "Открыт"}})");
    sandbox.addEvent("g", "event",
                     R"({"event-group": "g", "enabled": "1", "delay": "5", "open": {"a": ["1", "2"]},
        "is-not-redirected": "1", "generates-load": "1", "conflicts-with": "x, y", "message-depends": "two,one",
        "message-audit-rules": "-w /a -k /a", "message-audit-events": {"login": {"users": {"alice": {"succ": "1"}}}},
        "message-params": {"name_en": "E", "name_ru": "С", "message_id": "m"}})");
    sandbox.addEvent("g", "one", R"({"event-group": "g", "message-depends": "two"})");
    sandbox.addEvent("h", "two",
                     R"({"event-group": "unlisted", "enabled": "0", "message-depends": "event"})");
    sandbox.setSettings(R"({"event": {"open": {"b": "1"}}})");
    SingleEventsParser parser({QStringLiteral("root")}, {}, nullptr);
    parser.setNotificationLookup([](const QString &) { return true; });
    std::unique_ptr<EventTreeItem> root(parser.parse());
    return {std::move(root), std::unique_ptr<EventTreeItem>(parser.parse())};
}
} // namespace

class EventTreeCloneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyEqualsItsSourceInEveryField()
    {
        const auto [root, copy] = loaded();
        const QVector<EventTreeItem *> originals = Tree::all(root.get());
        const QVector<EventTreeItem *> copies = Tree::all(copy.get());

        QVERIFY(originals.size() > 30);
        QCOMPARE(copies.size(), originals.size());
        for (int i = 0; i < originals.size(); ++i) {
            const EventTreeItem &a = *originals.at(i);
            const EventTreeItem &b = *copies.at(i);
            QVERIFY(&a != &b);
            QCOMPARE(placeOf(&b), placeOf(&a));
            QCOMPARE(b.rowData(), a.rowData());
            QCOMPARE(b.checkable, a.checkable);
            QCOMPARE(b.checkState, a.checkState);
            QCOMPARE(b.editable, a.editable);
            QCOMPARE(b.childrenEditable, a.childrenEditable);
            QCOMPARE(b.visible, a.visible);
            QCOMPARE(b.overlay, a.overlay);
            QCOMPARE(b.notRedirected, a.notRedirected);
            QCOMPARE(b.generatesLoad, a.generatesLoad);
            QCOMPARE(b.hasAuditRules(), a.hasAuditRules());
            QCOMPARE(int(b.notificationState), int(a.notificationState));
            QCOMPARE(b.kind, a.kind);
            QCOMPARE(b.nativeName, a.nativeName);
            QCOMPARE(b.localizedName, a.localizedName);
            QCOMPARE(b.conflictsWith, a.conflictsWith);
        }
    }

    void linksLeadIntoTheCopyInTheSameOrder()
    {
        const auto [root, copy] = loaded();
        const QVector<EventTreeItem *> originals = Tree::all(root.get());
        const QVector<EventTreeItem *> copies = Tree::all(copy.get());
        int links = 0;
        for (int i = 0; i < originals.size(); ++i) {
            const EventTreeItem &a = *originals.at(i);
            const EventTreeItem &b = *copies.at(i);
            QCOMPARE(placesOf(b.dependencies()), placesOf(a.dependencies()));
            QCOMPARE(placesOf(b.dependents()), placesOf(a.dependents()));
            for (EventTreeItem *linked : b.dependencies() + b.dependents()) {
                QVERIFY(copies.contains(linked));
                ++links;
            }
        }
        QCOMPARE(links, 8);
    }

    void copyLivesOnItsOwn()
    {
        auto [root, copy] = loaded();
        Tree::at(root, "g/event/open")->setData(1, QStringLiteral("edited"));
        Tree::at(root, "g/event")->checkState = Qt::PartiallyChecked;
        QVERIFY(!Tree::at(copy, "g/event/open")->data(1).isValid());
        QCOMPARE(Tree::at(copy, "g/event")->checkState, int(Qt::Checked));
        root.reset();
        QCOMPARE(Tree::valueAt(copy, "g/event/delay"), QStringLiteral("5"));
        QCOMPARE(Tree::names(Tree::at(copy, "g/one")->dependencies()), QStringList{QStringLiteral("two")});
    }
};

QTEST_GUILESS_MAIN(EventTreeCloneTest)
#include "eventtreeclonetest.moc"
