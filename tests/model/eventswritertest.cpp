// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <configaccessservice.h>
#include <eventswriter.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace {
const QString rule = QStringLiteral("-w /etc/x -p wa -k /etc/x");

/// The members of @p names get the flag, looked up below @p item.
void flag(EventTreeItem *item, const QStringList &names)
{
    for (const QString &name : names) {
        EventTreeItem *found = item->findChildByNativeName(name);
        if (!found) {
            qFatal("no node %s", qPrintable(name));
        }
        found->overlay = true;
    }
}

void flagAll(EventTreeItem *item)
{
    item->overlay = true;
    for (int row = 0; row < item->childCount(); ++row) {
        flagAll(item->eventChild(row));
    }
}
} // namespace

class EventsWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void treeWithoutOverlayWritesAnEmptyObject();
    void eventWithItsOwnFlagAloneIsSwitchedOff();
    void onlyFlaggedValuesAreWritten();
    void listsAreWrittenAsArrays();
    void emptyListStaysOne();
    void editedListIsSplitAtItsSeparators();
    void listKeepsElementsThatATextCannotTellApart();
    void nestedObjectsHoldOnlyWhatIsFlagged();
    void nestedObjectsWithoutContentAreDropped();
    void flagOfAnObjectWithoutContentSwitchesItsEventOff();
    void emptyObjectStaysOne();
    void accountsBelowAnAuditIdentifierAreNested();
    void accountsBelowAnEventKeepTheirLeadingComma();
    void eventsAreJoinedByCommas();
    void eventsOfInnerGroupsAreFound();
    void deeplyNestedObjectsParse();
    void hostileTextsParse_data();
    void hostileTextsParse();
    void hostileNamesParse();
    void fileIsIndentedJsonInKeyOrder();
    void unknownMembersOfTheFileArePreserved();
    void textThatDoesNotParseIsNotWritable();

    void rulesOfAnEventThatIsOnAreCollected();
    void rulesOfAnEventWithoutASwitchAreCollected();
    void rulesOfAnEventThatIsOffAreNot_data();
    void rulesOfAnEventThatIsOffAreNot();
    void rulesOfAnEventWithoutOverlayAreNot();
    void rulesOfANestedObjectFollowItsOwnSwitch();
    void sameRuleOfTwoEventsIsWrittenOnce();
    void switchingAllOffEmptiesTheRules();
    void accountNamedLikeTheRulesIsNoRule();
    void rulesBelongToOneRun();

    void writerKnowsItsTarget();
    void writerReportsNoErrorsOfItsOwn();

private:
    [[nodiscard]] QStringList fragments() { return m_writer->createConfig(m_root.get()); }
    /// The text of the only event.
    [[nodiscard]] QString eventText()
    {
        const QStringList list = fragments();
        return list.size() == 3 ? list.at(1) : list.join(QLatin1Char('|'));
    }
    [[nodiscard]] QJsonObject saved()
    {
        return QJsonDocument::fromJson(m_writer->settingsContent(m_root.get())).object();
    }
    /// One event that is on and has one rule.
    EventTreeItem *ruledEvent(const char *id, const char *enabled)
    {
        EventTreeItem *event = TreeMaker::event(m_group, id, enabled);
        TreeMaker::parameter(event, "message-audit-rules", rule.toLatin1().constData());
        event->overlay = true;
        return event;
    }
    [[nodiscard]] QByteArray rulesContent()
    {
        (void)fragments();
        return m_writer->auditRulesContent();
    }

    ConfigAccessService m_service{nullptr};
    std::unique_ptr<EventsWriter> m_writer;
    std::unique_ptr<EventTreeItem> m_root;
    EventTreeItem *m_group = nullptr;
};

void EventsWriterTest::init()
{
    m_writer = std::make_unique<EventsWriter>(m_service, QStringLiteral("/etc/nivra-syslog.conf"),
                                              QStringLiteral("/etc/audit/rules.d/nivra-syslog.rules"));
    m_root = TreeMaker::root();
    m_group = TreeMaker::group(m_root.get(), "g");
}

void EventsWriterTest::treeWithoutOverlayWritesAnEmptyObject()
{
    TreeMaker::parameter(TreeMaker::event(m_group, "e", "1"), "p", "v");
    m_group->overlay = true; // groups are not part of the file
    QCOMPARE(fragments(), (QStringList{QStringLiteral("{"), QStringLiteral("}")}));
    QCOMPARE(m_writer->getConfig(m_root.get()), fragments());
    QVERIFY(!m_writer->settingsContent(m_root.get()).isEmpty());
    QVERIFY(QJsonDocument::fromJson(m_writer->settingsContent(m_root.get())).isObject());
    QVERIFY(saved().isEmpty());
}

void EventsWriterTest::eventWithItsOwnFlagAloneIsSwitchedOff()
{
    TreeMaker::event(m_group, "e", "1")->overlay = true;
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"enabled\": \"0\" }"));
    QCOMPARE(
        saved(),
        (QJsonObject{{QStringLiteral("e"), QJsonObject{{QStringLiteral("enabled"), QStringLiteral("0")}}}}));
}

void EventsWriterTest::onlyFlaggedValuesAreWritten()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    TreeMaker::parameter(event, "p", "v");
    TreeMaker::parameter(event, "q", "w");
    flag(event, {QStringLiteral("enabled"), QStringLiteral("q")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"enabled\" : \"1\", \"q\" : \"w\" }"));
}

void EventsWriterTest::listsAreWrittenAsArrays()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    TreeMaker::list(event, "names", R"(["a","b"])");
    TreeMaker::list(event, "unflagged", R"(["c"])");
    flag(event, {QStringLiteral("names")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"names\" : [ \"a\", \"b\" ] }"));
}

void EventsWriterTest::emptyListStaysOne()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e");
    TreeMaker::list(event, "cleared", R"(["a"])")->setData(1, QString());
    TreeMaker::list(event, "empty", "[]");
    flag(event, {QStringLiteral("cleared"), QStringLiteral("empty")});
    const QJsonObject written = saved().value(QLatin1String("e")).toObject();
    QCOMPARE(written.value(QLatin1String("cleared")), QJsonValue(QJsonArray()));
    QCOMPARE(written.value(QLatin1String("empty")), QJsonValue(QJsonArray()));
}

void EventsWriterTest::editedListIsSplitAtItsSeparators()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e");
    TreeMaker::list(event, "names", R"(["a"])")->setData(1, QStringLiteral("x, y,z"));
    flag(event, {QStringLiteral("names")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"names\" : [ \"x\", \"y,z\" ] }"));
}

void EventsWriterTest::listKeepsElementsThatATextCannotTellApart()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e");
    const QByteArray json = R"([{"limit_bytes":"5","path":"/var"},"a, b",["c"],7,true,null,""])";
    TreeMaker::list(event, "mixed", json.constData());
    TreeMaker::list(TreeMaker::object(event, "deep"), "inner", json.constData());
    flag(event, {QStringLiteral("mixed"), QStringLiteral("inner")});
    const QJsonArray expected = QJsonDocument::fromJson(json).array();
    const QJsonObject written = saved().value(QLatin1String("e")).toObject();
    QCOMPARE(written.value(QLatin1String("mixed")).toArray(), expected);
    QCOMPARE(written.value(QLatin1String("deep")).toObject().value(QLatin1String("inner")).toArray(),
             expected);
}

void EventsWriterTest::nestedObjectsHoldOnlyWhatIsFlagged()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e");
    EventTreeItem *object = TreeMaker::object(event, "o");
    TreeMaker::parameter(object, "p", "v");
    TreeMaker::parameter(object, "q", "w");
    TreeMaker::parameter(TreeMaker::object(object, "unflagged"), "r", "x");
    flag(event, {QStringLiteral("p")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"o\" : { \"p\" : \"v\" } }"));
}

void EventsWriterTest::nestedObjectsWithoutContentAreDropped()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "0");
    TreeMaker::parameter(TreeMaker::object(event, "o"), "p", "v");
    flag(event, {QStringLiteral("enabled")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"enabled\" : \"0\" }"));
}

void EventsWriterTest::flagOfAnObjectWithoutContentSwitchesItsEventOff()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    TreeMaker::parameter(TreeMaker::object(event, "o"), "p", "v");
    flag(event, {QStringLiteral("o")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"enabled\": \"0\" }"));
}

void EventsWriterTest::emptyObjectStaysOne()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e");
    TreeMaker::object(event, "first");
    EventTreeItem *outer = TreeMaker::object(event, "outer");
    TreeMaker::object(outer, "inner");
    TreeMaker::parameter(outer, "p", "v");
    flag(event, {QStringLiteral("first"), QStringLiteral("inner"), QStringLiteral("p")});
    const QJsonObject expected{
        {QStringLiteral("first"), QJsonObject()},
        {QStringLiteral("outer"),
         QJsonObject{{QStringLiteral("inner"), QJsonObject()}, {QStringLiteral("p"), QStringLiteral("v")}}}};
    QCOMPARE(saved().value(QLatin1String("e")).toObject(), expected);
}

void EventsWriterTest::accountsBelowAnAuditIdentifierAreNested()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    flagAll(TreeMaker::outcome(users, "alice", "0", "1"));
    TreeMaker::outcome(users, "bob", "0", "1");
    TreeMaker::subjects(open, "groups")->overlay = true;
    QCOMPARE(
        eventText(),
        QStringLiteral("\t\"e\" : { \"message-audit-events\" : { \"open\" : { \"users\" : { \"alice\" : { "
                       "\"fail\" : \"0\", \"succ\" : \"1\" } }, \"groups\" : {} } } }"));
    QVERIFY(!saved().isEmpty());
}

void EventsWriterTest::accountsBelowAnEventKeepTheirLeadingComma()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    TreeMaker::subjects(event, "users")->setData(2, QStringLiteral(R"({"a":"1"})"));
    TreeMaker::subjects(event, "groups");
    flag(event, {QStringLiteral("enabled"), QStringLiteral("users")});
    QCOMPARE(eventText(), QStringLiteral("\t\"e\" : { \"enabled\" : \"1\", ,\"users\" : {\"a\":\"1\"} }"));
}

void EventsWriterTest::eventsAreJoinedByCommas()
{
    TreeMaker::event(m_group, "a", "1")->overlay = true;
    TreeMaker::event(m_group, "skipped", "1");
    TreeMaker::event(TreeMaker::group(m_root.get(), "h"), "b", "1")->overlay = true;
    QCOMPARE(fragments(),
             (QStringList{QStringLiteral("{"), QStringLiteral("\t\"a\" : { \"enabled\": \"0\" },"),
                          QStringLiteral("\t\"b\" : { \"enabled\": \"0\" }"), QStringLiteral("}")}));
    QCOMPARE(saved().keys(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

void EventsWriterTest::eventsOfInnerGroupsAreFound()
{
    TreeMaker::event(TreeMaker::group(m_group, "inner"), "e", "1")->overlay = true;
    QCOMPARE(saved().keys(), QStringList{QStringLiteral("e")});
}

void EventsWriterTest::deeplyNestedObjectsParse()
{
    for (const char *name : {"plain", "message-audit-events"}) {
        init();
        EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
        EventTreeItem *object = TreeMaker::object(event, name);
        QJsonObject expected{{QStringLiteral("p"), QStringLiteral("v")}};
        constexpr int depth = 20;
        for (int level = 0; level < depth; ++level) {
            object = TreeMaker::object(object, "o");
            expected = QJsonObject{{QStringLiteral("o"), expected}};
        }
        TreeMaker::parameter(object, "p", "v")->overlay = true;
        const QJsonObject written = saved().value(QLatin1String("e")).toObject();
        QCOMPARE(written, (QJsonObject{{QString::fromLatin1(name), expected}}));
    }
}

void EventsWriterTest::hostileTextsParse_data()
{
    QTest::addColumn<QString>("text");
    const QStringList texts{QStringLiteral("a:  }"),
                            QStringLiteral("},  }"),
                            QStringLiteral("],  }"),
                            QStringLiteral("\",  }"),
                            QStringLiteral("\""),
                            QStringLiteral("\\"),
                            QStringLiteral("\\u007d"),
                            QStringLiteral("Ёлка, \U0001F512"),
                            QStringLiteral(", "),
                            QStringLiteral(" x "),
                            QStringLiteral("{ \"a\": 1 }"),
                            QStringLiteral("%1"),
                            QString(),
                            QStringLiteral("tab\there"),
                            QStringLiteral("},  },  },  }")};
    for (const QString &text : texts) {
        QTest::newRow(qPrintable(QLatin1Char('[') + text + QLatin1Char(']'))) << text;
    }
}

void EventsWriterTest::hostileTextsParse()
{
    QFETCH(QString, text);
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    TreeMaker::parameter(event, "p", text.toUtf8().constData());
    TreeMaker::parameter(TreeMaker::object(event, "o"), "q", text.toUtf8().constData());
    const QJsonArray elements{text, QJsonObject{{text, text}}, QJsonArray{text}};
    TreeMaker::list(event, "l", QJsonDocument(elements).toJson(QJsonDocument::Compact).constData());
    flagAll(event);
    const QJsonObject expected{{QStringLiteral("enabled"), QStringLiteral("1")},
                               {QStringLiteral("p"), text},
                               {QStringLiteral("o"), QJsonObject{{QStringLiteral("q"), text}}},
                               {QStringLiteral("l"), elements}};
    QCOMPARE(saved().value(QLatin1String("e")).toObject(), expected);
}

void EventsWriterTest::hostileNamesParse()
{
    const char *name = "\"a\\:  }";
    EventTreeItem *event = TreeMaker::event(m_group, name);
    TreeMaker::parameter(TreeMaker::object(event, name), name, "v");
    TreeMaker::list(event, "},  }", "[]");
    flagAll(event);
    const QString text = QString::fromLatin1(name);
    const QJsonObject members{{text, QJsonObject{{text, QStringLiteral("v")}}},
                              {QStringLiteral("},  }"), QJsonArray()}};
    QCOMPARE(saved(), (QJsonObject{{text, members}}));
}

void EventsWriterTest::fileIsIndentedJsonInKeyOrder()
{
    for (const char *id : {"zebra", "ant"}) {
        EventTreeItem *event = TreeMaker::event(m_group, id, "0");
        flag(event, {QStringLiteral("enabled")});
    }
    QCOMPARE(m_writer->settingsContent(m_root.get()),
             QByteArray("{\n    \"ant\": {\n        \"enabled\": \"0\"\n    },\n"
                        "    \"zebra\": {\n        \"enabled\": \"0\"\n    }\n}\n"));
}

void EventsWriterTest::unknownMembersOfTheFileArePreserved()
{
    flag(TreeMaker::event(m_group, "e", "0"), {QStringLiteral("enabled")});
    const QJsonObject gone{{QStringLiteral("p"), QJsonArray{1, QStringLiteral("},  }")}}};
    m_writer->setPreserved({{QStringLiteral("gone"), gone}, {QStringLiteral("e"), QStringLiteral("stale")}});
    QCOMPARE(
        saved(),
        (QJsonObject{{QStringLiteral("gone"), gone},
                     {QStringLiteral("e"), QJsonObject{{QStringLiteral("enabled"), QStringLiteral("0")}}}}));
}

void EventsWriterTest::textThatDoesNotParseIsNotWritable()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    EventTreeItem *users = TreeMaker::subjects(event, "users");
    QVERIFY(m_writer->prepare(m_root.get()));
    flag(event, {QStringLiteral("enabled")});
    users->overlay = true;
    QVERIFY(!m_writer->prepare(m_root.get()));
    QCOMPARE(m_writer->settingsContent(m_root.get()), QByteArray());
}

void EventsWriterTest::rulesOfAnEventThatIsOnAreCollected()
{
    EventTreeItem *event = ruledEvent("e", "1");
    event->eventChild(1)->setData(1, QString(rule + QStringLiteral(", , -w /b -p r -k /b")));
    (void)fragments();
    QVERIFY(m_writer->hasAuditRules());
    QCOMPARE(m_writer->auditRules(), (QStringList{rule, QString(), QStringLiteral("-w /b -p r -k /b")}));
    QCOMPARE(m_writer->auditRulesContent(), rule.toUtf8() + "\n\n-w /b -p r -k /b\n");
}

void EventsWriterTest::rulesOfAnEventWithoutASwitchAreCollected()
{
    ruledEvent("e", nullptr);
    QCOMPARE(rulesContent(), rule.toUtf8() + '\n');
}

void EventsWriterTest::rulesOfAnEventThatIsOffAreNot_data()
{
    QTest::addColumn<QString>("enabled");
    for (const char *value : {"0", "", "true", " 1", "01"}) {
        QTest::addRow("[%s]", value) << QString::fromLatin1(value);
    }
}

void EventsWriterTest::rulesOfAnEventThatIsOffAreNot()
{
    QFETCH(QString, enabled);
    ruledEvent("e", enabled.toLatin1().constData());
    (void)fragments();
    QVERIFY(!m_writer->hasAuditRules());
    QCOMPARE(m_writer->auditRulesContent(), QByteArray());
}

void EventsWriterTest::rulesOfAnEventWithoutOverlayAreNot()
{
    ruledEvent("e", "1")->overlay = false;
    QCOMPARE(rulesContent(), QByteArray());
    QVERIFY(!m_writer->hasAuditRules());
    // Nor are they when another event has rules to write.
    ruledEvent("f", "1")->eventChild(1)->setData(1, QStringLiteral("-w /f -k /f"));
    QCOMPARE(rulesContent(), QByteArray("-w /f -k /f\n"));
}

void EventsWriterTest::rulesOfANestedObjectFollowItsOwnSwitch()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "0");
    EventTreeItem *on = TreeMaker::switched(event, "on", "1");
    EventTreeItem *off = TreeMaker::switched(event, "off", "0");
    EventTreeItem *rules = TreeMaker::parameter(on, "message-audit-rules", "-w /on -k /on");
    TreeMaker::parameter(off, "message-audit-rules", "-w /off -k /off")->overlay = true;
    QCOMPARE(rulesContent(), QByteArray());
    rules->overlay = true;
    QCOMPARE(rulesContent(), QByteArray("-w /on -k /on\n"));
}

void EventsWriterTest::sameRuleOfTwoEventsIsWrittenOnce()
{
    ruledEvent("a", "1");
    EventTreeItem *second = ruledEvent("b", "1");
    second->eventChild(1)->setData(1, QString(QStringLiteral("-w /b -p r -k /b, ") + rule));
    QCOMPARE(rulesContent(), rule.toUtf8() + "\n-w /b -p r -k /b\n");
    QCOMPARE(m_writer->auditRules().size(), 3);
}

void EventsWriterTest::switchingAllOffEmptiesTheRules()
{
    EventTreeItem *event = ruledEvent("e", "1");
    QCOMPARE(rulesContent(), rule.toUtf8() + '\n');
    event->switchChild()->setData(1, QStringLiteral("0"));
    QCOMPARE(rulesContent(), QByteArray());
}

void EventsWriterTest::accountNamedLikeTheRulesIsNoRule()
{
    EventTreeItem *event = TreeMaker::event(m_group, "e", "1");
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    TreeMaker::parameter(users, "message-audit-rules", "-w /account -k /account");
    flagAll(event);
    QCOMPARE(rulesContent(), QByteArray());
}

void EventsWriterTest::rulesBelongToOneRun()
{
    ruledEvent("e", "1");
    (void)fragments();
    (void)fragments();
    QCOMPARE(m_writer->auditRules(), QStringList{rule});
}

void EventsWriterTest::writerKnowsItsTarget()
{
    QCOMPARE(m_writer->configFile(), QStringLiteral("/etc/nivra-syslog.conf"));
    QCOMPARE(&m_writer->configAccessService(), &m_service);
}

void EventsWriterTest::writerReportsNoErrorsOfItsOwn()
{
    ruledEvent("e", "1");
    (void)m_writer->settingsContent(m_root.get());
    QCOMPARE(m_writer->errors(), QStringList());
    QCOMPARE(m_writer->failures(), QStringList());
}

QTEST_MAIN(EventsWriterTest)

#include "eventswritertest.moc"
