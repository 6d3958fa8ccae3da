// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "singleeventsparser.h"

#include "checkstates.h"
#include "eventlookup.h"
#include "eventnodefactory.h"
#include "eventtreeclone.h"
#include "eventtreeitem.h"
#include "jsontext.h"
#include "mergeddescriptions.h"
#include "watchedpaths.h"

#include <localekeeper.h>
#include <subjectlister.h>
#include <systempaths.h>

#include <KLocalizedString>

#include <QJsonDocument>

namespace {
const QLatin1String customEvents("custom-events");

QJsonObject objectFrom(const QString &json)
{
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

EventTreeItem *appendMember(EventTreeItem *parent, const QString &name)
{
    auto *member = new EventTreeItem({name, QVariant(), QVariant()}, parent);
    member->nativeName = name;
    parent->appendChild(member);
    return member;
}

/// The watched path: every rule ends in it, because it is the rule's key as well.
QString getFileFromRule(const QString &rule)
{
    return rule.mid(rule.lastIndexOf(QLatin1Char(' ')) + 1).trimmed();
}
} // namespace

SingleEventsParser::SingleEventsParser(QObject *parent)
    : SingleEventsParser(std::make_unique<SubjectLister>(), parent)
{
}

// The system is asked before the catalog is read: it answers meanwhile.
SingleEventsParser::SingleEventsParser(std::unique_ptr<SubjectLister> lister, QObject *parent)
    : QObject(parent)
    , m_russian(LocaleKeeper::Instance()->language() == QLatin1String("Russian"))
{
    getNodesDescription();
    initDefaultUsersAndGroups(*lister);
    m_factory = std::make_unique<EventNodeFactory>(m_dictionary, m_users, m_groups, m_russian);
}

SingleEventsParser::SingleEventsParser(const QStringList &users, const QStringList &groups, QObject *parent)
    : QObject(parent)
    , m_users(users)
    , m_groups(groups)
    , m_russian(LocaleKeeper::Instance()->language() == QLatin1String("Russian"))
{
    getNodesDescription();
    m_factory = std::make_unique<EventNodeFactory>(m_dictionary, m_users, m_groups, m_russian);
}

SingleEventsParser::~SingleEventsParser() = default;

void SingleEventsParser::getNodesDescription()
{
    m_dictionary = NodeDictionary::fromFile(SystemPaths::resolve(SystemPaths::nodeDictionary()));
}

void SingleEventsParser::initDefaultUsersAndGroups(SubjectLister &lister)
{
    const Subjects subjects = lister.subjects();
    m_users = subjects.users;
    m_groups = subjects.groups;
}

bool SingleEventsParser::isConfigCorrect() const
{
    return !m_reader.catalogError;
}

EventTreeItem *SingleEventsParser::parse() const
{
    if (!isConfigCorrect()) {
        return nullptr;
    }
    if (m_spare) {
        return m_spare.release();
    }
    auto root = std::make_unique<EventTreeItem>(QVector<QVariant>{i18n("Parameter"), i18n("Value")});
    root->kind = EventTreeItem::Group; // no event, as which every node starts
    createGroups(root.get());
    m_spare = EventTreeClone::copyNode(*root, nullptr);
    MergedDescriptions descriptions(m_reader, m_reader.eventIds);
    for (const QString &id : m_reader.eventIds) {
        if (EventTreeItem *event = createEvent(id, descriptions.next(), root.get())) {
            setItemOptions(event);
            copyToSpare(*event);
        }
        if (m_pause) {
            m_pause();
        }
    }
    makeDependsMap(root.get());
    finish(root.get());
    finish(m_spare.get());
    m_depends.clear();
    return root.release();
}

/// A load needs two equal trees. Copying an event costs a fraction of building it, and least while it is new:
/// a whole tree is far larger than the processor's memory.
void SingleEventsParser::copyToSpare(const EventTreeItem &event) const
{
    const EventTreeItem *group = event.parentItem();
    if (group->row() == m_spare->childCount()) {
        m_spare->appendChild(new EventTreeItem(*group, m_spare.get())); // made for an event, not listed
    }
    EventTreeItem *spareGroup = m_spare->eventChild(group->row());
    spareGroup->appendChild(EventTreeClone::copyNode(event, spareGroup).release());
}

void SingleEventsParser::finish(EventTreeItem *root) const
{
    for (int row = 0; row < root->childCount(); ++row) {
        EventTreeItem *group = root->eventChild(row);
        group->checkable = EventLookup::hasCheckableChild(*group);
        CheckStates::setDirChecked(group);
    }
    checkDepends(root);
}

void SingleEventsParser::createGroups(EventTreeItem *root) const
{
    for (const QString &id : m_reader.groupIds) {
        createGroupNode(id, root);
    }
}

EventTreeItem *SingleEventsParser::createGroupNode(const QString &id, EventTreeItem *root) const
{
    const QString json = id == customEvents
        ? QStringLiteral(
            R"({ "group-params": { "name_en": "Custom events", "name_ru": "Кастомные события" } })")
        : m_reader.getGroupJson(id);
    const QJsonObject params = objectFrom(json).value(QLatin1String("group-params")).toObject();
    const QString name = params.value(QLatin1String(m_russian ? "name_ru" : "name_en")).toString();
    auto *group = new EventTreeItem({name.isEmpty() ? id : name, QVariant(), QVariant()}, root);
    group->kind = EventTreeItem::Group;
    group->nativeName = id;
    group->localizedName = name;
    root->appendChild(group);
    return group;
}

EventTreeItem *SingleEventsParser::groupOf(const EventDescription &description, EventTreeItem *root) const
{
    const QString id = description.group.isEmpty() ? customEvents : description.group;
    // An event whose group the catalog does not list is shown all the same.
    EventTreeItem *group = root->findChildTopLevelByNativeName(id);
    return group ? group : createGroupNode(id, root);
}

EventTreeItem *SingleEventsParser::createEventItem(const QString &id, EventItemType type,
                                                   EventTreeItem *root) const
{
    return createEvent(id,
                       type == MergedEvent ? EventDescription::merged(m_reader, id)
                                           : EventDescription::fromCatalog(m_reader, id),
                       root);
}

EventTreeItem *SingleEventsParser::createEvent(const QString &id, const EventDescription &description,
                                               EventTreeItem *root) const
{
    if (description.object.isEmpty()) {
        return nullptr;
    }
    EventTreeItem *group = root ? groupOf(description, root) : nullptr;
    EventTreeItem *event = m_factory->createEvent(id, description.object, description.marks, group);
    if (event->hasAuditRules()) {
        makeFiltersFromRules(event);
    }
    const QString nameKey = m_russian ? QStringLiteral("name_ru") : QStringLiteral("name_en");
    if (const EventTreeItem *name = EventLookup::findMessageParameter(*event, nameKey)) {
        event->localizedName = name->value(1).toString();
    }
    if (!event->localizedName.isEmpty()) {
        event->setData(0, event->localizedName);
    }
    return event;
}

void SingleEventsParser::makeDependsMap(const EventTreeItem *item) const
{
    // Only events declare dependencies; whatever lies deeper may be called anything.
    for (int row = 0; row < item->childCount(); ++row) {
        const EventTreeItem *child = item->eventChild(row);
        if (child->kind == EventTreeItem::Group || child->kind == EventTreeItem::Event) {
            makeDependsMap(child);
        } else if (item->kind == EventTreeItem::Event
                   && child->value(0).toString() == QLatin1String("message-depends")) {
            const QStringList names = child->value(1).toString().split(QLatin1Char(','));
            for (const QString &name : names) {
                m_depends.insert(item->nativeName, name.trimmed());
            }
        }
    }
}

void SingleEventsParser::checkDepends(EventTreeItem *root) const
{
    if (m_depends.isEmpty()) {
        return;
    }
    // Only events are candidates: an audit identifier may bear an event's name.
    const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(*root);
    for (auto it = m_depends.constBegin(); it != m_depends.constEnd(); ++it) {
        EventTreeItem *event = events.value(it.key());
        EventTreeItem *needed = events.value(it.value());
        if (event && needed) {
            event->addDependency(needed);
        }
    }
}

/// The event's "filter-values", made when missing; the event itself when they are no object that could take a
/// member.
EventTreeItem *SingleEventsParser::filtersOf(EventTreeItem *event) const
{
    const QLatin1String name("filter-values");
    EventTreeItem *filters = event->member(name);
    if (!filters) {
        filters = appendMember(event, name);
        filters->kind = EventTreeItem::Parameter;
        filters->setData(2, QStringLiteral("{}"));
        m_factory->checkDictionary(filters);
    }
    return filters->isObject() ? filters : event;
}

void SingleEventsParser::makeFiltersFromRules(EventTreeItem *event) const
{
    const EventTreeItem *rules = event->member(QLatin1String("message-audit-rules"));
    const QString listName = QStringLiteral(".auditd.key");
    EventTreeItem *list = EventLookup::findParameter(*event, listName);
    if (!list) {
        list = appendMember(filtersOf(event), listName);
        list->kind = EventTreeItem::List;
        m_factory->checkDictionary(list);
    }
    list->setHasAuditRules(true);
    if (list->overlay) {
        return; // the administrator's own list
    }
    QStringList paths;
    const QStringList lines = rules->value(1).toString().split(QLatin1String(", "));
    for (const QString &rule : lines) {
        if (const QString path = getFileFromRule(rule); !path.isEmpty()) {
            paths.append(path);
        }
    }
    paths.removeDuplicates(); // one file may need several rules
    list->kind = EventTreeItem::List;
    list->setData(1, WatchedPaths::toText(paths));
    list->setData(2, JsonText::compact(QJsonArray::fromStringList(paths)));
}

void SingleEventsParser::setItemOptions(EventTreeItem *event) const
{
    event->notRedirected = EventLookup::isFlagSet(*event, QLatin1String("is-not-redirected"));
    event->generatesLoad = EventLookup::isFlagSet(*event, QLatin1String("generates-load"));
    if (event->hasAuditRules()) {
        if (EventTreeItem *list = EventLookup::findParameter(*event, QStringLiteral(".auditd.key"))) {
            list->setHasAuditRules(true);
        }
    }
    const EventTreeItem *messageId = EventLookup::findMessageParameter(*event, QStringLiteral("message_id"));
    if (messageId && m_notificationLookup && m_notificationLookup(messageId->value(1).toString())) {
        event->notificationState = EventTreeItem::NotificationOn;
    }
    if (const EventTreeItem *conflicts = event->member(QLatin1String("conflicts-with"))) {
        event->conflictsWith = conflicts->value(1).toString().split(QLatin1String(", "));
    }
}
