// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventnodefactory.h"

#include "checkstates.h"
#include "eventtreeclone.h"
#include "jsontext.h"
#include "nodedictionary.h"

#include <algorithm>

struct EventNodeFactory::Origin
{
    const OverlayMarks *marks = nullptr; // of the value's own object, when merged
    bool overlay = false; // the value, and all below it, came from the override
};

namespace {
const OverlayMarks noMarks;
constexpr int longestShared = 40;

QStringList sortedUnique(QStringList names)
{
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
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

/// Appends a member to the text of an object whose end is still open.
void appendMember(QString &json, const QString &name, const QString &value)
{
    json += json.size() > 1 ? QLatin1String(",") : QLatin1String();
    JsonText::appendQuoted(json, name);
    json += QLatin1Char(':');
    json += value;
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

EventNodeFactory::EventNodeFactory(const NodeDictionary &dictionary, QStringList users, QStringList groups,
                                   bool russian)
    : m_dictionary(dictionary)
    , m_users(sortedUnique(std::move(users)))
    , m_groups(sortedUnique(std::move(groups)))
    , m_russian(russian)
{
}

QString EventNodeFactory::shared(const QString &text) const
{
    return text.size() > longestShared ? text : *m_strings.insert(text);
}

/// The columns of a node before its children are known. Most nodes of a large tree are equal switches of many
/// accounts: they share one row until it is written.
QVector<QVariant> EventNodeFactory::rowOf(const QString &name, const QJsonValue &value) const
{
    if (value.isArray() || value.isObject()) {
        return {name, QVariant(), QVariant()};
    }
    if (!value.isString()) {
        return {name, value.toVariant(), QVariant()};
    }
    const QString text = shared(value.toString());
    if (name.size() > longestShared || text.size() > longestShared) {
        return {name, text, QVariant()};
    }
    QVector<QVariant> &row = m_rows[{name.constData(), text.constData()}];
    if (row.isEmpty()) {
        row = {name, text, QVariant()};
    }
    return row;
}

/// Texts put together piece by piece have room to grow, which a tree of thousands need not carry.
QString EventNodeFactory::kept(QString &text) const
{
    text.squeeze();
    return shared(text);
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
    createMembers(event, description, {&marks, false});
    event->checkable = event->switchChild() != nullptr;
    CheckStates::takeFromValue(event);
    return event;
}

EventTreeItem *EventNodeFactory::createNode(const QString &name, const QJsonValue &value,
                                            const Origin &origin, EventTreeItem *parent) const
{
    const QString text = shared(name);
    auto *node = new EventTreeItem(rowOf(text, value), parent);
    node->nativeName = text;
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
    checkDictionary(node);
    if (value.isObject()) {
        if (node->kind == EventTreeItem::Subjects) {
            createSubjects(node, value.toObject(), origin);
        } else {
            createMembers(node, value.toObject(), origin);
        }
    }
    if (name == QLatin1String("message-audit-rules") && !node->isSubject()) {
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
    QString json(QLatin1Char('{'));
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = it.key();
        const QJsonValue value = *it;
        const auto merged = marks.merged.constFind(key);
        const bool isRecord = marks.records.contains(key);
        const Origin inner{merged == marks.merged.constEnd() ? nullptr : &*merged,
                           !isRecord && (origin.overlay || marks.named.contains(key))};
        const EventTreeItem *child = createNode(key, value, inner, node);
        if (isRecord) {
            continue; // bookkeeping, not part of the description
        }
        if (json.size() > 1) {
            json += QLatin1Char(',');
        }
        JsonText::appendQuoted(json, key);
        json += QLatin1Char(':');
        if (child->kind == EventTreeItem::List || value.isObject()) {
            json += child->value(2).toString();
        } else if (value.isString()) {
            JsonText::appendQuoted(json, value.toString());
        } else {
            json += JsonText::compact(value);
        }
    }
    json += QLatin1Char('}');
    node->setData(2, kept(json));
}

void EventNodeFactory::createSubjects(EventTreeItem *node, const QJsonObject &object,
                                      const Origin &origin) const
{
    static const QJsonObject switchedOff{{QStringLiteral("fail"), QStringLiteral("0")},
                                         {QStringLiteral("succ"), QStringLiteral("0")}};
    const OverlayMarks &marks = origin.marks ? *origin.marks : noMarks;
    if (!marks.named.isEmpty()) {
        markWithParents(node); // records of what was named are no members of these objects
    }
    const QStringList &accounts = node->nativeName == QLatin1String("users") ? m_users : m_groups;
    node->reserve(accounts.size() + object.size());
    QString json(QLatin1Char('{'));
    const auto add = [&](const QString &name, const QJsonValue &value, const Origin &inner) {
        const EventTreeItem *child = createNode(name, value, inner, node);
        appendMember(json, name, value.isObject() ? child->value(2).toString() : JsonText::compact(value));
        return child;
    };
    const EventTreeItem *pattern = nullptr; // accounts that nothing is said of differ in their names only
    const auto addMissing = [&](const QString &name) {
        if (object.contains(name) && !marks.records.contains(name)) {
            return;
        }
        if (!pattern) {
            pattern = add(name, switchedOff, {});
            return;
        }
        EventTreeItem *child = EventTreeClone::copyNode(*pattern, node).release();
        child->nativeName = name;
        child->setData(0, name);
        node->appendChild(child);
        appendMember(json, name, child->value(2).toString());
    };
    // Both lists are sorted, all but alike (JSON keys differ beyond U+FFFF): walk them side by side.
    auto account = accounts.begin();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = it.key();
        if (marks.records.contains(key)) {
            continue; // an account of that name is still to come
        }
        for (; account != accounts.end() && *account < key; ++account) {
            addMissing(*account);
        }
        if (account != accounts.end() && *account == key) {
            ++account;
        }
        const auto merged = marks.merged.constFind(key);
        add(key, *it,
            {merged == marks.merged.constEnd() ? nullptr : &*merged,
             origin.overlay || marks.named.contains(key)});
    }
    for (; account != accounts.end(); ++account) {
        addMissing(*account);
    }
    json += QLatin1Char('}');
    node->setData(2, kept(json));
}

void EventNodeFactory::checkDictionary(EventTreeItem *node) const
{
    if (node->kind != EventTreeItem::Parameter && node->kind != EventTreeItem::List
        && node->kind != EventTreeItem::Subjects) {
        return;
    }
    // An account that is called like a parameter is not that parameter.
    const NodeDictionary::Entry *entry = node->isSubject() ? nullptr : m_dictionary.find(node->nativeName);
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
        }
    }
}
