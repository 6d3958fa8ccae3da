// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "audittree.h"
#include "auditcollector.h"
#include "catalogsandbox.h"

#include <changemarker.h>
#include <checkabletreemodel.h>
#include <eventconfigstorage.h>
#include <eventreset.h>
#include <eventtreeclone.h>
#include <eventtreeitem.h>
#include <subjectsjson.h>

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace {
const QStringList userNames{QStringLiteral("alice"),     QStringLiteral("a/b"),
                            QStringLiteral("overlay0"),  QStringLiteral("root"),
                            QStringLiteral("two words"), QStringLiteral("Иван \"Ё\" \\")};
const QStringList groupNames{QStringLiteral("staff"), QStringLiteral("users")};
const QString opening = QStringLiteral("open");

QByteArray eventText(const char *id, const char *enabled, const char *auditEvents)
{
    const QByteArray text = QByteArray("{ 'event-group': 'g', 'enabled': '") + enabled
        + "', 'message-params': { 'message_id': '" + id + "' }, 'message-audit-events': ";
    return QByteArray(text).replace('\'', '"') + auditEvents + " }";
}

constexpr char openRootOther[]
    = R"({ "open": { "users": { "root": { "succ": "1", "fail": "0" } }, "groups": {},
                                                "other": { "succ": "0", "fail": "1" } } })";
constexpr char openStaff[] = R"({ "open": { "users": {}, "groups": { "staff": { "succ": "1", "fail": "1" } },
                                            "other": { "succ": "0", "fail": "0" } } })";

/// Whether text, values and check boxes of a list of accounts say the same.
QString disagreement(const EventTreeItem &subjects)
{
    const QJsonDocument document = QJsonDocument::fromJson(subjects.value(2).toString().toUtf8());
    if (!document.isObject()) {
        return QStringLiteral("no JSON: ") + subjects.value(2).toString();
    }
    const QJsonObject object = document.object();
    if (object.size() != subjects.childCount()) {
        return QStringLiteral("%1 members for %2 accounts").arg(object.size()).arg(subjects.childCount());
    }
    for (int row = 0; row < subjects.childCount(); ++row) {
        const EventTreeItem *subject = subjects.eventChild(row);
        const QJsonObject own = QJsonDocument::fromJson(subject->value(2).toString().toUtf8()).object();
        const QJsonObject listed = object.value(subject->nativeName).toObject();
        for (const QLatin1String name : {QLatin1String("succ"), QLatin1String("fail")}) {
            const EventTreeItem *member = subject->member(name);
            const QString value = member ? member->value(1).toString() : QStringLiteral("none");
            const int state = value == QLatin1String("1") ? Qt::Checked : Qt::Unchecked;
            if (!member || listed.value(name).toString() != value || own.value(name).toString() != value
                || member->checkState != state) {
                return subject->nativeName + QLatin1Char('/') + name;
            }
        }
    }
    return {};
}

int valueOf(const EventTreeItem *holder)
{
    return (holder->member(QLatin1String("succ"))->value(1).toString() == QLatin1String("1") ? 1 : 0)
        | (holder->member(QLatin1String("fail"))->value(1).toString() == QLatin1String("1") ? 2 : 0);
}

void setValue(EventTreeItem *holder, int value)
{
    const auto set = [holder](QLatin1String name, bool on) {
        EventTreeItem *member = holder->member(name);
        member->setData(1, on ? QStringLiteral("1") : QStringLiteral("0"));
        member->checkState = on ? Qt::Checked : Qt::Unchecked;
        SubjectsJson::memberChanged(*member);
    };
    set(QLatin1String("succ"), (value & 1) != 0);
    set(QLatin1String("fail"), (value & 2) != 0);
}

void switchEvent(EventTreeItem *event, bool on)
{
    event->checkState = on ? Qt::Checked : Qt::Unchecked;
    event->switchChild()->setData(1, on ? QStringLiteral("1") : QStringLiteral("0"));
}
} // namespace

/// What the tree shows of the system's settings, and what it asks the system to record.
class AuditTreeTest : public QObject
{
    Q_OBJECT

private:
    using Root = std::unique_ptr<EventTreeItem>;

    void add(const char *id, const char *enabled, const char *auditEvents) const
    {
        m_sandbox->addEvent("g", id, eventText(id, enabled, auditEvents));
    }
    [[nodiscard]] Root load(const AuditSettings &system = {}) const
    {
        Root root = m_sandbox->parse(userNames, groupNames);
        AuditTree::synchronize(*root, system);
        return root;
    }
    [[nodiscard]] static AuditSettings collect(const Root &working, const Root &reference)
    {
        return AuditCollector(userNames, groupNames).collect(*working, *reference);
    }
    [[nodiscard]] static EventTreeItem *at(const Root &root, const char *event, const char *path)
    {
        const QByteArray whole = QByteArray("g/") + event + "/message-audit-events/" + path;
        return Tree::at(root, whole.constData());
    }
    [[nodiscard]] static AuditSettings settings(const AuditSettings::SubjectValues &users,
                                                const AuditSettings::OtherValues &other = {})
    {
        AuditSettings made;
        made.setUsers(users);
        made.setOther(other);
        return made;
    }

    std::unique_ptr<CatalogSandbox> m_sandbox;

private Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<CatalogSandbox>();
        m_sandbox->addGroup("g", "g", "g");
    }
    void cleanup() { m_sandbox.reset(); }

    void whatTheSystemRecordsIsShownByAnEventThatIsOn()
    {
        add("e", "1", openRootOther);
        const Root root = load(settings({{{QStringLiteral("root"), opening}, 0},
                                         {{QStringLiteral("alice"), opening}, 3},
                                         {{QStringLiteral("overlay0"), opening}, 1},
                                         {{userNames.last(), opening}, 2}},
                                        {{opening, 1}}));
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 0);
        QCOMPARE(valueOf(at(root, "e", "open/users/alice")), 3);
        QCOMPARE(valueOf(at(root, "e", "open/users/overlay0")), 1);
        QCOMPARE(valueOf(at(root, "e", "open/users")->findChildTopLevelByNativeName(userNames.last())), 2);
        QCOMPARE(valueOf(at(root, "e", "open/other")), 1);
        QCOMPARE(at(root, "e", "open/other/succ")->checkState, int(Qt::Checked));
        QCOMPARE(at(root, "e", "open/other/fail")->checkState, int(Qt::Unchecked));
        QCOMPARE(disagreement(*at(root, "e", "open/users")), QString());
        QCOMPARE(disagreement(*at(root, "e", "open/groups")), QString());
    }

    void whatTheSystemSaysNothingOfStays()
    {
        add("e", "1", openRootOther);
        const Root root = load(settings({{{QStringLiteral("alice"), QStringLiteral("chmod")}, 3}}));
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 1);
        QCOMPARE(valueOf(at(root, "e", "open/users/alice")), 0);
        QCOMPARE(valueOf(at(root, "e", "open/other")), 2);
    }

    void bothTreesShowTheSameAndCountAsUnchanged()
    {
        add("e", "1", openRootOther);
        const AuditSettings system = settings({{{QStringLiteral("alice"), opening}, 3}}, {{opening, 0}});
        const Root working = load(system);
        const Root reference = load(system);
        QVERIFY(ChangeMarker::compareTrees(*reference, *working));
        QVERIFY(collect(working, reference).differencesFrom(collect(reference, reference)).isEmpty());
        QVERIFY(Tree::overlayPaths(working.get()).isEmpty());
    }

    void anEventThatIsOffKeepsWhatItWillAskFor()
    {
        add("e", "0", openRootOther);
        const Root root = load(settings({{{QStringLiteral("root"), opening}, 0}}, {{opening, 0}}));
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 1);
        QCOMPARE(valueOf(at(root, "e", "open/other")), 2);
    }

    void whatIsRecordedForNoEventThatIsOnIsShownByOneThatIsOff()
    {
        add("e", "0", openRootOther);
        const AuditSettings system = settings({{{QStringLiteral("alice"), opening}, 3}}, {{opening, 0}});
        QCOMPARE(valueOf(at(load(system), "e", "open/users/alice")), 3);
        QCOMPARE(valueOf(at(load(system), "e", "open/other")), 0);
        add("f", "1", openStaff); // has it recorded
        const Root root = load(system);
        QCOMPARE(valueOf(at(root, "e", "open/users/alice")), 0);
        QCOMPARE(valueOf(at(root, "e", "open/other")), 2);
        QCOMPARE(valueOf(at(root, "f", "open/users/alice")), 3);
    }

    void anEventThatIsOnAsksForItsSettings()
    {
        add("e", "1", openRootOther);
        const Root root = load();
        const AuditSettings collected = collect(root, root);
        QCOMPARE(collected.users().size(), userNames.size());
        QCOMPARE(collected.users().value({QStringLiteral("root"), opening}), 1);
        QCOMPARE(collected.users().value({QStringLiteral("alice"), opening}), 0);
        QCOMPARE(collected.groups().size(), groupNames.size());
        QCOMPARE(collected.other(), (AuditSettings::OtherValues{{opening, 2}}));
    }

    void switchingAnEventOffTakesItsSettingsBack()
    {
        add("e", "1", openRootOther);
        const Root reference = load();
        const Root working = load();
        switchEvent(Tree::at(working, "g/e"), false);
        const AuditSettings collected = collect(working, reference);
        QCOMPARE(collected.users().value({QStringLiteral("root"), opening}, -1), 0);
        QCOMPARE(collected.other().value(opening, -1), 0);
    }

    void whatAnotherEventNeedsStays()
    {
        add("e", "1", openRootOther);
        add("f", "1", openStaff);
        const Root reference = load();
        const Root working = load();
        switchEvent(Tree::at(working, "g/e"), false);
        const AuditSettings collected = collect(working, reference);
        QCOMPARE(collected.users().value({QStringLiteral("root"), opening}, -1), 0);
        QCOMPARE(collected.groups().value({QStringLiteral("staff"), opening}, -1), 3);
    }

    void whatTwoEventsAskForIsJoined()
    {
        add("e", "1", openRootOther);
        add("f", "1", openStaff);
        const Root root = load();
        const AuditSettings collected = collect(root, root);
        QCOMPARE(collected.users().value({QStringLiteral("root"), opening}), 1);
        QCOMPARE(collected.groups().value({QStringLiteral("staff"), opening}), 3);
        QCOMPARE(collected.other().value(opening), 2);
    }

    void aTurnedSwitchDecidesForAllEventsOfItsOperation()
    {
        add("e", "1", openRootOther);
        add("f", "1", openRootOther);
        const AuditSettings system
            = settings({{{QStringLiteral("root"), opening}, 3}, {{QStringLiteral("alice"), opening}, 1}},
                       {{opening, 2}});
        const Root reference = load(system);
        const Root working = load(system);
        setValue(at(working, "e", "open/users/root"), 1); // failures are taken back
        setValue(at(working, "f", "open/users/alice"), 3); // failures are added
        const AuditSettings collected = collect(working, reference);
        QCOMPARE(collected.users().value({QStringLiteral("root"), opening}), 1);
        QCOMPARE(collected.users().value({QStringLiteral("alice"), opening}), 3);
        QCOMPARE(collected.other().value(opening), 2);
    }

    void accountsThatTheSystemLacksAreNotAskedFor()
    {
        add("e", "1", R"({ "open": { "users": { "gone": { "succ": "1", "fail": "1" } }, "groups": {},
                                     "other": { "succ": "0", "fail": "0" } } })");
        const Root root = load();
        QCOMPARE(valueOf(at(root, "e", "open/users/gone")), 3);
        QVERIFY(!collect(root, root).users().contains({QStringLiteral("gone"), opening}));
    }

    void unknownOperationsAreNotAskedFor()
    {
        add("e", "1", R"({ "fly": { "users": { "root": { "succ": "1", "fail": "1" } }, "groups": {},
                                    "other": { "succ": "1", "fail": "0" } } })");
        const Root root = load();
        QVERIFY(collect(root, root).isEmpty());
        switchEvent(Tree::at(root, "g/e"), false);
        QVERIFY(collect(root, root).isEmpty());
    }

    void theOlderLayoutAsksForEverybody_data()
    {
        QTest::addColumn<QByteArray>("auditEvents");
        QTest::newRow("array") << QByteArray(R"([ "open", "chmod", "fly" ])");
        QTest::newRow("text") << QByteArray("\"open, chmod\"");
        QTest::newRow("plain members") << QByteArray(R"({ "open": "1", "chmod": "" })");
    }
    void theOlderLayoutAsksForEverybody()
    {
        QFETCH(QByteArray, auditEvents);
        add("e", "1", auditEvents.constData());
        const Root root = load();
        QVERIFY(AuditTree::namesOperations(*root));
        QCOMPARE(collect(root, root).other(),
                 (AuditSettings::OtherValues{{opening, 3}, {QStringLiteral("chmod"), 3}}));
        switchEvent(Tree::at(root, "g/e"), false);
        QCOMPARE(collect(root, root).other(),
                 (AuditSettings::OtherValues{{opening, 0}, {QStringLiteral("chmod"), 0}}));
    }

    void aTreeWithoutOperationsSaysSo()
    {
        m_sandbox->addEvent("g", "e", R"({ "event-group": "g", "enabled": "1" })");
        const Root root = load();
        QVERIFY(!AuditTree::namesOperations(*root));
        QVERIFY(collect(root, root).isEmpty());
    }

    void aMissingOutcomeIsAddedSwitchedOff()
    {
        add("e", "1", R"({ "open": { "users": { "root": { "succ": "1" }, "alice": {} }, "groups": {},
                                     "other": { "succ": "0", "fail": "0" } } })");
        const Root root = load(settings({{{QStringLiteral("root"), opening}, 2}}));
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 2);
        QCOMPARE(disagreement(*at(root, "e", "open/users")), QString());
        QCOMPARE(at(root, "e", "open/users/root")->value(2).toString(),
                 QStringLiteral(R"({"fail":"1","succ":"0"})"));
    }

    void theDialogsTextIsTakenOver()
    {
        add("e", "1", openRootOther);
        const Root root = load();
        EventTreeItem *users = at(root, "e", "open/users");
        QJsonObject edited;
        for (const QString &name : userNames) {
            edited.insert(name,
                          QJsonObject{{QStringLiteral("succ"), QStringLiteral("1")},
                                      {QStringLiteral("fail"), QStringLiteral("0")}});
        }
        edited.insert(QStringLiteral("not there"), QJsonObject());
        QVERIFY(AuditTree::setSubjects(*users, QString::fromUtf8(QJsonDocument(edited).toJson())));
        for (int row = 0; row < users->childCount(); ++row) {
            QCOMPARE(valueOf(users->eventChild(row)), 1);
        }
        QCOMPARE(users->childCount(), userNames.size());
        QCOMPARE(disagreement(*users), QString());
    }

    void aTextOfAnotherFormChangesNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("no JSON") << QStringLiteral("{ \"root\" : { \"succ\": \"0\" } , , }");
        QTest::newRow("array") << QStringLiteral("[]");
        QTest::newRow("no objects") << QStringLiteral("{ \"alice\": { \"succ\": \"1\" }, \"root\": \"0\" }");
    }
    void aTextOfAnotherFormChangesNothing()
    {
        QFETCH(QString, text);
        add("e", "1", openRootOther);
        const Root root = load();
        const Root before = load();
        QVERIFY(!AuditTree::setSubjects(*at(root, "e", "open/users"), text));
        QVERIFY(ChangeMarker::compareTrees(*before, *root));
        QVERIFY(!AuditTree::setSubjects(*at(root, "e", "open/other"), QStringLiteral("{}")));
    }

    void changingBackGivesTheTreeAsLoaded()
    {
        add("e", "1", openRootOther);
        const Root working = load();
        const Root reference = load();
        const QString text = at(working, "e", "open/users")->value(2).toString();
        QVERIFY(AuditTree::setSubjects(*at(working, "e", "open/users"),
                                       QStringLiteral(R"({ "alice": { "succ": "1", "fail": "1" } })")));
        QVERIFY(!ChangeMarker::compareTrees(*reference, *working));
        QVERIFY(AuditTree::setSubjects(*at(working, "e", "open/users"), text));
        QVERIFY(ChangeMarker::compareTrees(*reference, *working));
        QCOMPARE(at(working, "e", "open/users")->value(2).toString(), text);
    }

    void savedSettingsAndAResetKeepTheTextInAgreement()
    {
        add("e", "1", openRootOther);
        const Root defaults = load();
        m_sandbox->setSettings(R"({ "e": { "enabled": "1", "message-audit-events": { "open": { "users": {
            "alice": { "succ": "1", "fail": "1" }, "root": { "succ": "0", "fail": "0" },
            "overlay0": { "succ": "0", "fail": "1" } } } } } })");
        const Root root = load();
        EventTreeItem *users = at(root, "e", "open/users");
        QCOMPARE(valueOf(at(root, "e", "open/users/alice")), 3);
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 0);
        QCOMPARE(valueOf(at(root, "e", "open/users/overlay0")), 2);
        QCOMPARE(disagreement(*users), QString());
        const QString built = users->value(2).toString();
        SubjectsJson::memberChanged(*users->eventChild(0)->eventChild(0));
        QCOMPARE(users->value(2).toString(), built); // put together as the builder does
        EventReset::reset(*Tree::at(root, "g/e"), *Tree::at(defaults, "g/e"));
        QCOMPARE(valueOf(at(root, "e", "open/users/alice")), 0);
        QCOMPARE(valueOf(at(root, "e", "open/users/root")), 1);
        QCOMPARE(disagreement(*users), QString());
    }

    void aClickInTheTreeKeepsTheTextInAgreement()
    {
        add("e", "1", openRootOther);
        const EventConfigStorage storage(m_sandbox->path(QString()));
        CheckableTreeModel model(storage, nullptr);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        EventTreeItem *root = load().release();
        model.setRootItem(root);
        EventTreeItem *users = Tree::at(*root, "g/e/message-audit-events/open/users");
        const QString before = users->value(2).toString();
        const QModelIndex outcome = model.indexOf(users->eventChild(0)->member(QLatin1String("succ")), 1);
        QVERIFY(model.setData(outcome, QVariant(), Qt::CheckStateRole));
        QVERIFY(users->value(2).toString() != before);
        QCOMPARE(disagreement(*users), QString());
        QVERIFY(model.setData(outcome, QVariant(), Qt::CheckStateRole));
        QCOMPARE(users->value(2).toString(), before);
    }
};

QTEST_GUILESS_MAIN(AuditTreeTest)

#include "audittreetest.moc"
