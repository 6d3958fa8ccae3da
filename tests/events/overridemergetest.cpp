// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <overridemerge.h>

#include <QTest>

namespace {
QStringList sorted(const QSet<QString> &names)
{
    QStringList list(names.begin(), names.end());
    list.sort();
    return list;
}
} // namespace

class OverrideMergeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mergedObjectHoldsTheRecords_data()
    {
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("override");
        QTest::addColumn<QByteArray>("expected");

        QTest::newRow("value replaced")
            << QByteArray(R"({"a": "1", "b": "2"})") << QByteArray(R"({"a": "9"})")
            << QByteArray(R"({"a": "9", "b": "2", "overlay0": "a"})");
        QTest::newRow("same value") << QByteArray(R"({"a": "1"})") << QByteArray(R"({"a": "1"})")
                                    << QByteArray(R"({"a": "1", "overlay0": "a"})");
        QTest::newRow("value inserted") << QByteArray(R"({"b": "2"})") << QByteArray(R"({"a": "9"})")
                                        << QByteArray(R"({"a": "9", "b": "2", "overlay0": "a"})");
        QTest::newRow("object inserted") << QByteArray(R"({})") << QByteArray(R"({"a": {"b": "1"}})")
                                         << QByteArray(R"({"a": {"b": "1"}, "overlay0": "a"})");
        QTest::newRow("keys in order")
            << QByteArray(R"({"b": "2", "a": "1"})") << QByteArray(R"({"c": "3", "b": "x", "a": "y"})")
            << QByteArray(
                   R"({"a": "y", "b": "x", "c": "3",
                                                  "overlay0": "a", "overlay1": "b", "overlay2": "c"})");
        QTest::newRow("objects merged, not recorded")
            << QByteArray(R"({"o": {"a": "1", "b": "2"}})") << QByteArray(R"({"o": {"b": "9", "c": "3"}})")
            << QByteArray(R"({"o": {"a": "1", "b": "9", "c": "3", "overlay0": "b", "overlay1": "c"}})");
        QTest::newRow("every level counts from 0")
            << QByteArray(R"({"a": "1", "o": {"p": {"x": "1"}}, "z": "1"})")
            << QByteArray(R"({"a": "2", "o": {"p": {"x": "2"}}, "z": "2"})")
            << QByteArray(R"({"a": "2", "o": {"p": {"x": "2", "overlay0": "x"}}, "z": "2",
                              "overlay0": "a", "overlay1": "z"})");
        QTest::newRow("object by value")
            << QByteArray(R"({"a": {"b": "1"}})") << QByteArray(R"({"a": "text"})")
            << QByteArray(R"({"a": "text", "overlay0": "a"})");
        QTest::newRow("value by object")
            << QByteArray(R"({"a": "text"})") << QByteArray(R"({"a": {"b": "1"}})")
            << QByteArray(R"({"a": {"b": "1"}, "overlay0": "a"})");
        QTest::newRow("array replaced whole")
            << QByteArray(R"({"a": ["1", "2"]})") << QByteArray(R"({"a": []})")
            << QByteArray(R"({"a": [], "overlay0": "a"})");
        QTest::newRow("empty override")
            << QByteArray(R"({"a": "1"})") << QByteArray(R"({})") << QByteArray(R"({"a": "1"})");
        QTest::newRow("switched on") << QByteArray(R"({"enabled": "0", "message-params": {}})")
                                     << QByteArray(R"({"a": "1"})")
                                     << QByteArray(R"({"a": "1", "enabled": "1", "message-params": {},
                              "overlay0": "enabled", "overlay1": "a"})");
        QTest::newRow("switched on by an empty override")
            << QByteArray(R"({"enabled": "0", "message-params": {}})") << QByteArray(R"({})")
            << QByteArray(R"({"enabled": "1", "message-params": {}, "overlay0": "enabled"})");
        QTest::newRow("switch given") << QByteArray(R"({"enabled": "1", "message-params": {}})")
                                      << QByteArray(R"({"enabled": "0", "a": "1"})")
                                      << QByteArray(
                                             R"({"a": "1", "enabled": "0", "message-params": {},
                                                 "overlay0": "a", "overlay1": "enabled"})");
        QTest::newRow("no message parameters")
            << QByteArray(R"({"enabled": "0"})") << QByteArray(R"({"a": "1"})")
            << QByteArray(R"({"a": "1", "enabled": "0", "overlay0": "a"})");
        QTest::newRow("no switch in the description")
            << QByteArray(R"({"message-params": {}})") << QByteArray(R"({"a": "1"})")
            << QByteArray(R"({"a": "1", "message-params": {}, "overlay0": "a"})");
        QTest::newRow("accounts get no records")
            << QByteArray(R"({"message-audit-events": {"exec": {"other": {"succ": "0"},
                              "users": {"root": {"succ": "0"}}}}})")
            << QByteArray(R"({"message-audit-events": {"exec": {"other": {"succ": "1"}, "new": "1",
                              "users": {"bin": {"succ": "1"}, "root": {"succ": "1"}}}}})")
            << QByteArray(R"({"message-audit-events": {"exec": {"other": {"succ": "1", "overlay0": "succ"},
                              "new": "1", "overlay0": "new", "users": {"bin": {"succ": "1"},
                              "root": {"succ": "1", "overlay0": "succ"}}}}})");
        QTest::newRow("members called users elsewhere get them")
            << QByteArray(R"({"users": {}, "a": {"users": {}, "b": {"users": {}}},
                              "message-audit-events": {"users": {}}})")
            << QByteArray(R"({"users": {"c": "1"}, "a": {"users": {"c": "1"}, "b": {"users": {"c": "1"}}},
                              "message-audit-events": {"users": {"c": "1"}}})")
            << QByteArray(R"({"users": {"c": "1", "overlay0": "c"},
                              "a": {"users": {"c": "1", "overlay0": "c"},
                                    "b": {"users": {"c": "1", "overlay0": "c"}}},
                              "message-audit-events": {"users": {"c": "1", "overlay0": "c"}}})");
        QTest::newRow("an account called like an object that holds accounts")
            << QByteArray(R"({"message-audit-events": {"exec": {"groups":
                              {"message-audit-events": {"x": {"users": {}}}}}}})")
            << QByteArray(R"({"message-audit-events": {"exec": {"groups":
                              {"message-audit-events": {"x": {"users": {"c": "1"}}}}}}})")
            << QByteArray(R"({"message-audit-events": {"exec": {"groups":
                              {"message-audit-events": {"x": {"users": {"c": "1", "overlay0": "c"}}}}}}})");
    }
    void mergedObjectHoldsTheRecords()
    {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, override);
        QFETCH(QByteArray, expected);
        OverlayMarks marks;
        QCOMPARE(mergeNodes(Tree::object(base), Tree::object(override), marks), Tree::object(expected));
    }

    void marksNameWhatCameFromTheOverride()
    {
        OverlayMarks marks;
        (void)mergeNodes(Tree::object(R"({"a": "1", "o": {"x": "1", "p": {"y": "1"}}, "same": {"k": "1"}})"),
                         Tree::object(R"({"new": {"n": "1"}, "a": "2", "o": {"p": {"y": "2"}}, "same": {}})"),
                         marks);

        QCOMPARE(sorted(marks.named), QStringList({QStringLiteral("a"), QStringLiteral("new")}));
        QCOMPARE(sorted(marks.records),
                 QStringList({QStringLiteral("overlay0"), QStringLiteral("overlay1")}));
        QCOMPARE(marks.merged.keys(), QStringList{QStringLiteral("o")});
        const OverlayMarks &outer = marks.merged[QStringLiteral("o")];
        QVERIFY(outer.named.isEmpty());
        QCOMPARE(sorted(outer.merged[QStringLiteral("p")].named), QStringList{QStringLiteral("y")});
        QVERIFY(outer.merged[QStringLiteral("p")].merged.isEmpty());
    }

    void mergeWithoutEffectLeavesNoMarks()
    {
        OverlayMarks marks;
        QCOMPARE(mergeNodes(Tree::object(R"({"o": {"a": "1"}})"), Tree::object(R"({"o": {}})"), marks),
                 Tree::object(R"({"o": {"a": "1"}})"));
        QVERIFY(marks.isEmpty());
    }

    void membersNamedLikeRecordsKeepTheirValues()
    {
        OverlayMarks marks;
        const QJsonObject merged
            = mergeNodes(Tree::object(R"({"a": "1", "overlay0": "mine"})"),
                         Tree::object(R"({"a": "2", "overlay1": {"succ": "1"}})"), marks);

        QCOMPARE(merged.value(QStringLiteral("overlay0")).toString(), QStringLiteral("mine"));
        QCOMPARE(merged.value(QStringLiteral("overlay1")).toObject(), Tree::object(R"({"succ": "1"})"));
        QCOMPARE(sorted(marks.named), QStringList({QStringLiteral("a"), QStringLiteral("overlay1")}));
        QCOMPARE(marks.records.size(), 2);
        QVERIFY(!marks.records.contains(QStringLiteral("overlay0")));
        QVERIFY(!marks.records.contains(QStringLiteral("overlay1")));
        QCOMPARE(merged.size(), 5);
    }
};

QTEST_GUILESS_MAIN(OverrideMergeTest)
#include "overridemergetest.moc"
