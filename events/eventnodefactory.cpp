// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventnodefactory.h"

#include "checkstates.h"
#include "eventtreeclone.h"
#include "jsontext.h"

#include <QJsonObject>

#include <algorithm>

struct EventNodeFactory::Origin
{
    const OverlayMarks *marks = nullptr; // of the value's own object, when merged
    bool overlay = false; // the value, and all below it, came from the override
};

namespace {
const OverlayMarks noMarks;
constexpr int longestShared = 40; // texts beyond these lengths are rarely equal
constexpr int longestSharedValue = 20;
constexpr int initialText = 1 << 14;
constexpr int initialNames = 1 << 8;

const QJsonObject &nothingRecorded()
{
    static const QJsonObject outcome{{QStringLiteral("fail"), QStringLiteral("0")},
                                     {QStringLiteral("succ"), QStringLiteral("0")}};
    return outcome;
}

bool isOverlayName(const QString &name)
{
    return name.startsWith(QLatin1String("overlay"));
}

/// Code looks these members up by their text in column 0, so it stays as it is in every language.
bool isFixedName(const QString &name)
{
    return name == QLatin1String("enabled") || name == QLatin1String("message-depends")
        || name == QLatin1String("message-audit-events") || isOverlayName(name);
}

/// A name as it stands before a member's value.
QString jsonKey(const QString &name)
{
    QString key;
    JsonText::appendQuoted(key, name);
    return key + QLatin1Char(':');
}

/// Adds to the text of an object that starts at @p start and whose end is still open.
void appendMember(QString &json, int start, const QString &member)
{
    if (json.size() > start + 1) {
        json += QLatin1Char(',');
    }
    json += member;
}

/// JSON keys are in the order of their characters, texts in that of their code units: beyond U+FFFF those
/// differ.
bool sortsOtherwiseInJson(const QString &name)
{
    return std::any_of(name.begin(), name.end(), [](QChar c) { return c.isSurrogate(); });
}

/// Marks a subjects object, its audit identifier and "message-audit-events".
void markWithParents(EventTreeItem *subjects)
{
    subjects->overlay = true;
    subjects->parentItem()->overlay = true;
    subjects->parentItem()->parentItem()->overlay = true;
}

bool belowSubjects(const EventTreeItem *node)
{
    for (const EventTreeItem *up = node->parentItem(); up; up = up->parentItem()) {
        if (up->kind == EventTreeItem::Subjects) {
            return true;
        }
    }
    return false;
}

/// A "users" or "groups" object of an audit identifier below "message-audit-events".
bool isSubjectsNode(const EventTreeItem *node)
{
    if (node->nativeName != QLatin1String("users") && node->nativeName != QLatin1String("groups")) {
        return false;
    }
    const EventTreeItem *parent = node->parentItem();
    const EventTreeItem *grandparent = parent ? parent->parentItem() : nullptr;
    return grandparent && grandparent->value(0).toString() == QLatin1String("message-audit-events")
        && !belowSubjects(node);
}
} // namespace

EventNodeFactory::EventNodeFactory(const NodeDictionary &dictionary, const QStringList &users,
                                   const QStringList &groups, bool russian)
    : m_dictionary(dictionary)
    , m_users(switchedOff(users))
    , m_groups(switchedOff(groups))
    , m_russian(russian)
{
    m_json.reserve(initialText);
    m_names.reserve(initialNames);
}

/// Sorted, each account once.
QVector<EventNodeFactory::Account> EventNodeFactory::switchedOff(const QStringList &names)
{
    QStringList sorted = names;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    const QString json = JsonText::compact(nothingRecorded());
    QVector<Account> accounts;
    accounts.reserve(sorted.size());
    for (const QString &name : qAsConst(sorted)) {
        accounts.append({name, {name, QVariant(), json}, jsonKey(name) + json});
    }
    return accounts;
}

QString EventNodeFactory::shared(const QString &text) const
{
    return text.size() > longestShared ? text : *m_texts.insert(text);
}

EventNodeFactory::Name &EventNodeFactory::nameOf(const QString &text) const
{
    Name &name = m_names[text];
    if (name.text.isNull()) {
        name = {text, jsonKey(text), m_dictionary.find(text), isOverlayName(text), {}};
    }
    return name;
}

/// The columns of a node before its children are known.
QVector<QVariant> EventNodeFactory::rowOf(Name &name, const QJsonValue &value) const
{
    if (value.isArray() || value.isObject()) {
        return {name.text, QVariant(), QVariant()};
    }
    if (!value.isString()) {
        return {name.text, value.toVariant(), QVariant()};
    }
    const QString text = value.toString();
    if (text.size() > longestSharedValue) {
        return {name.text, text, QVariant()};
    }
    QVector<QVariant> &row = name.rows[text];
    if (row.isEmpty()) {
        row = {name.text, text, QVariant()};
    }
    return row;
}

/// Ends the text of an object that starts at @p start, and gives the object's node a copy of it.
void EventNodeFactory::closeObject(EventTreeItem *node, int start) const
{
    m_json += QLatin1Char('}');
    // A copy of its own: the whole buffer, which the outermost object would share, has room to grow.
    node->setData(2, shared(QString(m_json.constData() + start, m_json.size() - start)));
}

EventTreeItem *EventNodeFactory::createEvent(const QString &id, const QJsonObject &description,
                                             const OverlayMarks &marks, EventTreeItem *parent) const
{
    auto *event = new EventTreeItem({id, QVariant(), QVariant()}, parent);
    event->nativeName = id;
    event->kind = EventTreeItem::Event;
    if (parent) {
        parent->appendChild(event);
    }
    m_json.resize(0);
    createMembers(event, description, {&marks, false});
    event->checkable = event->switchChild() != nullptr;
    CheckStates::takeFromValue(event);
    return event;
}

EventTreeItem *EventNodeFactory::createNode(Name &name, const QJsonValue &value, const Origin &origin,
                                            EventTreeItem *parent) const
{
    auto *node = new EventTreeItem(rowOf(name, value), parent);
    node->nativeName = name.text;
    node->kind = EventTreeItem::Parameter;
    node->overlay = origin.overlay;
    parent->appendChild(node);
    if (value.isArray()) {
        node->kind = EventTreeItem::List;
        const QJsonArray array = value.toArray();
        node->setData(1, JsonText::arrayText(array));
        node->setData(2, JsonText::compact(array));
    } else if (value.isObject() && isSubjectsNode(node)) {
        node->kind = EventTreeItem::Subjects;
    }
    // An account that is called like a parameter is not that parameter.
    const bool isSubject = node->isSubject();
    applyEntry(node, isSubject ? nullptr : name.entry);
    if (name.overlay && !isSubject) {
        node->visible = false;
    }
    if (node->kind == EventTreeItem::Subjects) {
        createSubjects(node, value.toObject(), origin);
    } else if (value.isObject()) {
        createMembers(node, value.toObject(), origin);
    } else if (value.isString()) {
        JsonText::appendQuoted(m_json, node->value(1).toString());
    } else {
        m_json += value.isArray() ? node->value(2).toString() : JsonText::compact(value);
    }
    if (!isSubject && name.text == QLatin1String("message-audit-rules")) {
        parent->setHasAuditRules(true);
    }
    // A click rewrites values from check states over the whole tree, so every
    // switch carries the state of its value from the start.
    CheckStates::takeFromValue(node);
    return node;
}

void EventNodeFactory::createMembers(EventTreeItem *node, const QJsonObject &object,
                                     const Origin &origin) const
{
    const OverlayMarks &marks = origin.marks ? *origin.marks : noMarks;
    node->reserve(object.size());
    const int start = m_json.size();
    m_json += QLatin1Char('{');
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = it.key();
        const auto merged = marks.merged.constFind(key);
        const bool isRecord = marks.records.contains(key);
        const Origin inner{merged == marks.merged.constEnd() ? nullptr : &*merged,
                           !isRecord && (origin.overlay || marks.named.contains(key))};
        const int end = m_json.size();
        Name &name = nameOf(key);
        appendMember(m_json, start, name.key);
        createNode(name, *it, inner, node);
        if (isRecord) {
            m_json.truncate(end); // bookkeeping, not part of the description
        }
    }
    closeObject(node, start);
}

void EventNodeFactory::createSubjects(EventTreeItem *node, const QJsonObject &object,
                                      const Origin &origin) const
{
    const OverlayMarks &marks = origin.marks ? *origin.marks : noMarks;
    if (!marks.named.isEmpty()) {
        markWithParents(node); // records of what was named are no members of these objects
    }
    const QVector<Account> &accounts = node->nativeName == QLatin1String("users") ? m_users : m_groups;
    node->reserve(accounts.size() + object.size());
    const int start = m_json.size();
    m_json += QLatin1Char('{');
    const EventTreeItem *pattern = nullptr; // accounts that nothing is said of differ in their names only
    const auto addMissing = [&](const Account &account) {
        // The two orders differ, so the account may be still to come.
        if (sortsOtherwiseInJson(account.name) && object.contains(account.name)
            && !marks.records.contains(account.name)) {
            return;
        }
        if (!pattern) {
            Name &name = nameOf(account.name);
            appendMember(m_json, start, name.key);
            pattern = createNode(name, nothingRecorded(), {}, node);
            return;
        }
        EventTreeItem *child = EventTreeClone::copyNode(*pattern, node).release();
        child->nativeName = account.name;
        child->setData(account.row);
        node->appendChild(child);
        appendMember(m_json, start, account.member);
    };
    // Both lists are sorted, all but alike: walk them side by side.
    auto account = accounts.begin();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = it.key();
        if (marks.records.contains(key)) {
            continue; // an account of that name is still to come
        }
        for (; account != accounts.end() && account->name < key; ++account) {
            addMissing(*account);
        }
        if (account != accounts.end() && account->name == key) {
            ++account;
        }
        const auto merged = marks.merged.constFind(key);
        Name &name = nameOf(key);
        appendMember(m_json, start, name.key);
        createNode(name, *it,
                   {merged == marks.merged.constEnd() ? nullptr : &*merged,
                    origin.overlay || marks.named.contains(key)},
                   node);
    }
    for (; account != accounts.end(); ++account) {
        addMissing(*account);
    }
    closeObject(node, start);
}

void EventNodeFactory::checkDictionary(EventTreeItem *node) const
{
    if (node->kind != EventTreeItem::Parameter && node->kind != EventTreeItem::List
        && node->kind != EventTreeItem::Subjects) {
        return;
    }
    applyEntry(node, node->isSubject() ? nullptr : m_dictionary.find(node->nativeName));
}

void EventNodeFactory::applyEntry(EventTreeItem *node, const NodeDictionary::Entry *entry) const
{
    if (!entry) {
        node->editable = true;
        return;
    }
    node->visible = entry->visible;
    if (!node->visible) {
        return;
    }
    node->editable = entry->editable || (node->parentItem() && node->parentItem()->childrenEditable);
    node->childrenEditable = entry->childrenEditable;
    if (m_russian && !entry->russianName.isEmpty()) {
        node->localizedName = entry->russianName;
        if (!isFixedName(node->nativeName)) {
            node->setData(0, entry->russianName);
            node->visible = !isOverlayName(entry->russianName);
        }
    }
}
