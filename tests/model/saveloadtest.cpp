// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "shownmodel.h"

#include <changemarker.h>
#include <configaccessservice.h>
#include <eventlookup.h>
#include <eventswriter.h>
#include <singleeventsparser.h>
#include <systempaths.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace {
void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

QJsonObject objectOf(const char *json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        qFatal("no object: %s", json);
    }
    return document.object();
}
} // namespace

/// A page's models over a catalog of one's own: load, change, save, load.
class SaveLoadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void unchangedPageSavesNothing();
    void editsOfTheFirstAndTheLastGroupAreSaved();
    void typedParameterKeepsItsEventOff();
    void notificationKeepsItsEventOn();
    void switchedEventIsSavedWithItsSwitchOnly();
    void clickSavesLinkedEventsAndNobodyElse();
    void checkingAndUncheckingLeavesThePageUnchanged();
    void savedUserStaysInTheFile();
    void savedUserNamedLikeARecordStaysInTheFile();
    void outcomeOfADefaultUserIsSaved();
    void accountsWithAwkwardNamesAreSavedAsAccounts();
    void insertedObjectStaysInTheFile();
    void emptyObjectAndArraysStayInTheFile();
    void hostileValuesAreSavedAsTheyAre();
    void dependencyFindsTheEventNotTheIdentifier();
    void objectsAreParametersAndOnlyEventsAreEvents();
    void eventsWithASwitchAndTheirGroupsAreCheckable();
    void twoEventsOfOneNameAreToldApart();
    void watchedFileIsListedOnceAndKept();
    void rulesFollowTheSwitchOfTheirEvent();
    void oddSwitchesSurviveClicksAndSaves();
    void namesThatCodeNeedsStayInEveryLanguage();

private:
    void addEvent(const char *group, const char *id, const QJsonObject &description)
    {
        QJsonObject event = description;
        event.insert(QStringLiteral("event-group"), QString::fromLatin1(group));
        const QString directory = SystemPaths::resolve(SystemPaths::eventSettingsDirectory());
        const QString groupPath = directory + QLatin1Char('/') + QLatin1String(group);
        writeFile(groupPath + QLatin1String(".json"),
                  QJsonDocument(QJsonObject{{QStringLiteral("group-params"),
                                             QJsonObject{{QStringLiteral("name_en"), QLatin1String(group)},
                                                         {QStringLiteral("name_ru"), QLatin1String(group)}}}})
                      .toJson());
        writeFile(groupPath + QLatin1Char('/') + QLatin1String(id) + QLatin1String(".json"),
                  QJsonDocument(event).toJson());
    }
    void addEvent(const char *group, const char *id, const char *json)
    {
        addEvent(group, id, objectOf(json));
    }
    void setSettings(const char *json)
    {
        writeFile(SystemPaths::resolve(SystemPaths::eventSettingsFile()), json);
    }
    void load()
    {
        const SingleEventsParser parser({QStringLiteral("alice"), QStringLiteral("root")},
                                        {QStringLiteral("adm"), QStringLiteral("users")}, nullptr);
        QVERIFY(parser.isConfigCorrect());
        m_model->operator->()->setRootItem(parser.parse());
        m_reference.reset(parser.parse());
        QVERIFY(m_reference);
    }
    /// Writes the file as the page does and loads it again; checks that the next save changes nothing.
    QJsonObject save()
    {
        const QByteArray first = saveOnce();
        load();
        const QByteArray second = saveOnce();
        load();
        return first == second ? QJsonDocument::fromJson(first).object()
                               : QJsonObject{{QStringLiteral("second save"), QString::fromUtf8(second)}};
    }
    QByteArray saveOnce()
    {
        ChangeMarker::markAll(*m_reference, *root());
        EventsWriter writer(m_service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile());
        const QByteArray content = writer.settingsContent(root());
        m_rules = writer.auditRulesContent();
        writeFile(SystemPaths::resolve(SystemPaths::eventSettingsFile()), content);
        return content;
    }
    [[nodiscard]] EventTreeItem *root() const { return (*m_model)->rootItem(); }
    [[nodiscard]] EventTreeItem *event(const char *id) const
    {
        EventTreeItem *found = EventLookup::findEvent(*root(), QString::fromLatin1(id));
        if (!found) {
            qFatal("no event %s", id);
        }
        return found;
    }
    [[nodiscard]] EventTreeItem *node(const char *id, const QString &path) const
    {
        EventTreeItem *item = event(id);
        const QStringList names = path.split(QLatin1Char('/'));
        for (const QString &name : names) {
            item = item->findChildTopLevelByNativeName(name);
            if (!item) {
                qFatal("no node %s in %s", qPrintable(name), qPrintable(path));
            }
        }
        return item;
    }
    void type(EventTreeItem *item, const QString &text)
    {
        const QModelIndex index = m_model->value(item);
        QVERIFY(index.flags() & Qt::ItemIsEditable);
        QVERIFY((*m_model)->setData(index, text, Qt::EditRole));
    }
    void turn(EventTreeItem *outcome)
    {
        QVERIFY((*m_model)->setData(m_model->value(outcome), QVariant(), Qt::CheckStateRole));
    }
    [[nodiscard]] bool isUnchanged() const { return ChangeMarker::compareTrees(*m_reference, *root()); }

    std::unique_ptr<QTemporaryDir> m_directory;
    ConfigAccessService m_service{nullptr};
    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventTreeItem> m_reference;
    QByteArray m_rules;
};

namespace {
constexpr char plainOn[] = R"({ "enabled": "1", "message-params": { "message_id": "m" }, "p": "v" })";
constexpr char plainOff[] = R"({ "enabled": "0", "message-params": { "message_id": "m" }, "p": "v" })";
constexpr char audited[] = R"({ "enabled": "1", "message-params": { "message_id": "m" },
    "message-audit-events": { "open": { "users": { "root": { "fail": "0", "succ": "1" } },
        "groups": { }, "other": { "fail": "0", "succ": "0" } } } })";
} // namespace

void SaveLoadTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    qputenv("ADMINEVENTS_ROOT", QFile::encodeName(m_directory->path()));
    m_model = std::make_unique<ShownModel>();
    writeFile(SystemPaths::resolve(SystemPaths::nodeDictionary()),
              R"({ "enabled": { "ru": "Включено", "editable": "true" }, "users": { "ru": "Пользователи" },
                   "message-depends": { "ru": "Зависит от" }, "message-audit-events": { "ru": "Аудит" },
                   "groups": { "ru": "Группы" }, "other": { "ru": "Прочие" }, "p": { "ru": "Параметр",
                   "editable": "true" }, "succ": { "ru": "Успех", "editable": "true" } })");
}

void SaveLoadTest::cleanup()
{
    m_model.reset();
    m_reference.reset();
    qunsetenv("ADMINEVENTS_ROOT");
}

void SaveLoadTest::unchangedPageSavesNothing()
{
    addEvent("a", "on", plainOn);
    addEvent("a", "audited", audited);
    load();
    QVERIFY(isUnchanged());
    QCOMPARE(save(), QJsonObject());
    QVERIFY(isUnchanged());
}

void SaveLoadTest::editsOfTheFirstAndTheLastGroupAreSaved()
{
    addEvent("a", "first", plainOn);
    addEvent("m", "middle", plainOn);
    addEvent("z", "last", plainOn);
    load();
    type(node("first", QStringLiteral("p")), QStringLiteral("one"));
    type(node("last", QStringLiteral("p")), QStringLiteral("two"));
    QVERIFY(!isUnchanged());
    QCOMPARE(save(), objectOf(R"({ "first": { "enabled": "1", "p": "one" },
                                   "last": { "enabled": "1", "p": "two" } })"));
}

void SaveLoadTest::typedParameterKeepsItsEventOff()
{
    addEvent("a", "off", plainOff);
    load();
    type(node("off", QStringLiteral("p")), QStringLiteral("new"));
    QCOMPARE(save(), objectOf(R"({ "off": { "enabled": "0", "p": "new" } })"));
    QCOMPARE(event("off")->checkState, int(Qt::Unchecked));
    QCOMPARE(node("off", QStringLiteral("p"))->value(1).toString(), QStringLiteral("new"));
}

void SaveLoadTest::notificationKeepsItsEventOn()
{
    addEvent("a", "on", plainOn);
    load();
    QVERIFY((*m_model)->setData(m_model->name(event("on")),
                                QVariant::fromValue(EventTreeItem::NotificationSwitchedOn),
                                Qt::DecorationRole));
    QVERIFY(!isUnchanged());
    QCOMPARE(save(), objectOf(R"({ "on": { "enabled": "1" } })"));
    QCOMPARE(event("on")->checkState, int(Qt::Checked));
}

void SaveLoadTest::switchedEventIsSavedWithItsSwitchOnly()
{
    addEvent("a", "on", audited);
    addEvent("a", "off", plainOff);
    load();
    QVERIFY(m_model->click(event("on")));
    QVERIFY(m_model->click(event("off")));
    QCOMPARE(save(), objectOf(R"({ "on": { "enabled": "0" }, "off": { "enabled": "1" } })"));
    QCOMPARE(event("on")->checkState, int(Qt::Unchecked));
    QCOMPARE(event("off")->checkState, int(Qt::Checked));
    QCOMPARE(event("off")->parentItem()->checkState, int(Qt::PartiallyChecked));
}

void SaveLoadTest::clickSavesLinkedEventsAndNobodyElse()
{
    QJsonObject needing = objectOf(plainOff);
    needing.insert(QStringLiteral("message-depends"), QStringLiteral("needed"));
    addEvent("a", "needing", needing);
    addEvent("b", "needed", plainOff);
    addEvent("b", "bystander", plainOff);
    load();
    QVERIFY(m_model->click(event("needing")));
    QCOMPARE(event("needed")->parentItem()->checkState, int(Qt::PartiallyChecked));
    QCOMPARE(save(), objectOf(R"({ "needing": { "enabled": "1" }, "needed": { "enabled": "1" } })"));
}

void SaveLoadTest::checkingAndUncheckingLeavesThePageUnchanged()
{
    addEvent("a", "off", plainOff);
    addEvent("b", "audited", audited);
    load();
    for (const char *id : {"off", "audited"}) {
        QVERIFY(m_model->click(event(id)));
        QVERIFY(!isUnchanged());
        QVERIFY(m_model->click(event(id)));
        QVERIFY(isUnchanged());
    }
}

void SaveLoadTest::savedUserStaysInTheFile()
{
    addEvent("a", "audited", audited);
    const char settings[] = R"({ "audited": { "enabled": "1", "message-audit-events": { "open": {
        "users": { "gone": { "fail": "1", "succ": "0" } } } } } })";
    setSettings(settings);
    load();
    QCOMPARE(save(), objectOf(settings));
    QCOMPARE(
        node("audited", QStringLiteral("message-audit-events/open/users/gone/fail"))->value(1).toString(),
        QStringLiteral("1"));
}

void SaveLoadTest::savedUserNamedLikeARecordStaysInTheFile()
{
    addEvent("a", "audited", audited);
    const char settings[] = R"({ "audited": { "enabled": "1", "message-audit-events": { "open": {
        "users": { "overlay0": { "fail": "1", "succ": "0" }, "overlay": { "fail": "0", "succ": "1" } } } } } })";
    setSettings(settings);
    load();
    QCOMPARE(save(), objectOf(settings));
}

void SaveLoadTest::outcomeOfADefaultUserIsSaved()
{
    addEvent("a", "audited", audited);
    load();
    turn(node("audited", QStringLiteral("message-audit-events/open/users/alice/succ")));
    const QJsonObject saved = save();
    const QJsonObject open = saved.value(QLatin1String("audited"))
                                 .toObject()
                                 .value(QLatin1String("message-audit-events"))
                                 .toObject()
                                 .value(QLatin1String("open"))
                                 .toObject();
    // A changed list is kept with the settings of everybody else.
    QCOMPARE(open, objectOf(R"({ "users": { "alice": { "fail": "0", "succ": "1" } },
                           "other": { "fail": "0", "succ": "0" } })"));
    QCOMPARE(saved.value(QLatin1String("audited")).toObject().value(QLatin1String("enabled")),
             QJsonValue(QStringLiteral("1")));
}

void SaveLoadTest::accountsWithAwkwardNamesAreSavedAsAccounts()
{
    addEvent("a", "audited", audited);
    load();
    // Debian has a group called "users".
    turn(node("audited", QStringLiteral("message-audit-events/open/groups/users/succ")));
    const QJsonObject open = save()
                                 .value(QLatin1String("audited"))
                                 .toObject()
                                 .value(QLatin1String("message-audit-events"))
                                 .toObject()
                                 .value(QLatin1String("open"))
                                 .toObject();
    QCOMPARE(open, objectOf(R"({ "groups": { "users": { "fail": "0", "succ": "1" } },
                           "other": { "fail": "0", "succ": "0" } })"));
    const EventTreeItem *account = node("audited", QStringLiteral("message-audit-events/open/groups/users"));
    QCOMPARE(account->value(0).toString(), QStringLiteral("users")); // not the dictionary's name
    QCOMPARE(m_model->name(account).data(CheckableTreeModel::UsersRole), QVariant(false));
}

void SaveLoadTest::insertedObjectStaysInTheFile()
{
    addEvent("a", "on", plainOn);
    const char settings[] = R"({ "on": { "enabled": "1", "new": { "inner": { "deep": "x" }, "q": "w" } } })";
    setSettings(settings);
    load();
    QCOMPARE(save(), objectOf(settings));
}

void SaveLoadTest::emptyObjectAndArraysStayInTheFile()
{
    addEvent("a", "on", plainOn);
    const char settings[] = R"({ "on": { "enabled": "1", "empty": {}, "none": [], "names": ["a, b", "c"],
        "directories": [{ "path": "/var", "limit_bytes": "5" }, "/srv"] } })";
    setSettings(settings);
    load();
    QCOMPARE(save(), objectOf(settings));
}

void SaveLoadTest::hostileValuesAreSavedAsTheyAre()
{
    addEvent("a", "on", plainOn);
    load();
    for (const QString &text : {QStringLiteral("a:  }"), QStringLiteral("},  }"), QStringLiteral("\"\\"),
                                QStringLiteral("Ёлка, 1")}) {
        type(node("on", QStringLiteral("p")), text);
        const QJsonObject expected{{QStringLiteral("enabled"), QStringLiteral("1")},
                                   {QStringLiteral("p"), text}};
        QCOMPARE(save(), (QJsonObject{{QStringLiteral("on"), expected}}));
        QCOMPARE(node("on", QStringLiteral("p"))->value(1).toString(), text);
    }
}

void SaveLoadTest::dependencyFindsTheEventNotTheIdentifier()
{
    QJsonObject needing = objectOf(R"({ "enabled": "0", "message-depends": "mount",
        "message-audit-events": { "mount": { "users": { }, "other": { "fail": "0", "succ": "0" } } } })");
    addEvent("a", "needing", needing);
    addEvent("b", "mount", plainOff);
    load();
    QCOMPARE(event("needing")->dependencies(), QVector<EventTreeItem *>{event("mount")});
    QVERIFY(m_model->click(event("needing")));
    QCOMPARE(event("mount")->checkState, int(Qt::Checked));
}

void SaveLoadTest::objectsAreParametersAndOnlyEventsAreEvents()
{
    addEvent("a", "audited", audited);
    load();
    const EventTreeItem *open = node("audited", QStringLiteral("message-audit-events/open"));
    QCOMPARE(open->kind, int(EventTreeItem::Parameter));
    QCOMPARE(open->eventChild(0)->kind, int(EventTreeItem::Subjects));
    const EventTreeItem *alice = node("audited", QStringLiteral("message-audit-events/open/users/alice"));
    QCOMPARE((*m_model)->findParentEvent(m_model->name(alice->eventChild(0))),
             m_model->name(event("audited")));
    const QVector<const EventTreeItem *> objects{open, open->parentItem(), alice, alice->parentItem()};
    for (const EventTreeItem *item : objects) {
        QVERIFY(!(m_model->value(item).flags() & Qt::ItemIsEditable));
    }
}

void SaveLoadTest::eventsWithASwitchAndTheirGroupsAreCheckable()
{
    addEvent("a", "on", plainOn);
    addEvent("a", "fixed", R"({ "p": "v" })");
    addEvent("b", "alone", R"({ "p": "v" })");
    load();
    QVERIFY(m_model->name(event("on")).data(Qt::CheckStateRole).isValid());
    QVERIFY(m_model->name(event("on")->parentItem()).data(Qt::CheckStateRole).isValid());
    QVERIFY(!m_model->name(event("fixed")).data(Qt::CheckStateRole).isValid());
    QVERIFY(!m_model->name(event("alone")).data(Qt::CheckStateRole).isValid());
    QVERIFY(!m_model->name(event("alone")->parentItem()).data(Qt::CheckStateRole).isValid());
}

void SaveLoadTest::twoEventsOfOneNameAreToldApart()
{
    const char named[] = R"({ "enabled": "1", "message-params": { "name_en": "Same", "name_ru": "Same" },
                              "p": "v" })";
    addEvent("a", "one", named);
    addEvent("a", "two", named);
    load();
    QCOMPARE(m_model->name(event("one")).data(), m_model->name(event("two")).data());
    type(node("two", QStringLiteral("p")), QStringLiteral("new"));
    QCOMPARE((*m_model)->findParentEvent(m_model->name(node("two", QStringLiteral("p")))),
             m_model->name(event("two")));
    QCOMPARE(save(), objectOf(R"({ "two": { "enabled": "1", "p": "new" } })"));
}

void SaveLoadTest::watchedFileIsListedOnceAndKept()
{
    addEvent("a", "file-opened",
             R"({ "enabled": "0", "message-audit-rules": "-w /etc/x -p r -k /etc/x, -w /etc/x -p x -k /etc/x",
                  "filter-values": { ".auditd.key": "" } })");
    load();
    const EventTreeItem *list = node("file-opened", QStringLiteral("filter-values/.auditd.key"));
    QCOMPARE(list->value(1).toString(), QStringLiteral("/etc/x"));
    QVERIFY(m_model->value(list).data(CheckableTreeModel::FileArrayRole).toBool());
    QVERIFY((*m_model)->setData(m_model->value(list), list->value(1), Qt::EditRole));
    QVERIFY(isUnchanged());
    QCOMPARE(save(), QJsonObject());
    const char settings[]
        = R"({ "file-opened": { "enabled": "1", "filter-values": { ".auditd.key": ["/own"] } } })";
    setSettings(settings);
    load();
    QCOMPARE(node("file-opened", QStringLiteral("filter-values/.auditd.key"))->value(1).toString(),
             QStringLiteral("/own"));
    QCOMPARE(save(), objectOf(settings));
}

void SaveLoadTest::rulesFollowTheSwitchOfTheirEvent()
{
    for (const char *id : {"one", "two"}) {
        addEvent("a", id, R"({ "enabled": "0", "message-audit-rules": "-w /etc/x -p r -k /etc/x" })");
    }
    load();
    QVERIFY(m_model->click(event("one")));
    QVERIFY(m_model->click(event("two")));
    QCOMPARE(save(), objectOf(R"({ "one": { "enabled": "1" }, "two": { "enabled": "1" } })"));
    QCOMPARE(m_rules, QByteArray("-w /etc/x -p r -k /etc/x\n"));
    QVERIFY(m_model->click(event("one")->parentItem()));
    QCOMPARE(save(), objectOf(R"({ "one": { "enabled": "0" }, "two": { "enabled": "0" } })"));
    QCOMPARE(m_rules, QByteArray());
}

void SaveLoadTest::oddSwitchesSurviveClicksAndSaves()
{
    addEvent("a", "odd", R"({ "enabled": "yes", "extend-message-params": { "size": { "enabled": "" } } })");
    addEvent("a", "off", plainOff);
    load();
    QVERIFY(m_model->click(event("odd")));
    QVERIFY(m_model->click(event("off")));
    QCOMPARE(save(), objectOf(R"({ "off": { "enabled": "1" } })"));
    QCOMPARE(event("odd")->switchChild()->value(1).toString(), QStringLiteral("yes"));
    QCOMPARE(event("odd")->checkState, int(Qt::PartiallyChecked));
}

void SaveLoadTest::namesThatCodeNeedsStayInEveryLanguage()
{
    addEvent("a", "audited", audited);
    addEvent("a", "on", plainOn);
    load();
    const bool russian = qgetenv("LANGUAGE") == "ru";
    QCOMPARE(node("on", QStringLiteral("p"))->value(0).toString(),
             russian ? QStringLiteral("Параметр") : QStringLiteral("p"));
    const EventTreeItem *users = node("audited", QStringLiteral("message-audit-events/open/users"));
    QCOMPARE(users->value(0).toString(), russian ? QStringLiteral("Пользователи") : QStringLiteral("users"));
    QCOMPARE(users->kind, int(EventTreeItem::Subjects));
    QCOMPARE(event("on")->switchChild()->value(0).toString(), QStringLiteral("enabled"));
    QCOMPARE(node("audited", QStringLiteral("message-audit-events"))->value(0).toString(),
             QStringLiteral("message-audit-events"));
}

QTEST_MAIN(SaveLoadTest)

#include "saveloadtest.moc"
