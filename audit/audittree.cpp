// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "audittree.h"

#include "auditnodes.h"

#include <eventtreeitem.h>
#include <subjectsjson.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <optional>

namespace {
const QLatin1String succ("succ");
const QLatin1String fail("fail");

/// What the system records of one operation.
struct Operation
{
    QHash<QString, int> users;
    QHash<QString, int> groups;
    std::optional<int> other;
    bool recorded = false;
};
using Operations = QHash<QString, Operation>;

void addSubjects(const AuditSettings::SubjectValues &values, QHash<QString, int> Operation::*member,
                 Operations &operations)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        Operation &operation = operations[it.key().second];
        (operation.*member).insert(it.key().first, it.value());
        operation.recorded = operation.recorded || it.value() != AuditSettings::None;
    }
}

Operations operationsOf(const AuditSettings &system)
{
    Operations operations;
    addSubjects(system.users(), &Operation::users, operations);
    addSubjects(system.groups(), &Operation::groups, operations);
    for (auto it = system.other().cbegin(); it != system.other().cend(); ++it) {
        Operation &operation = operations[it.key()];
        operation.other = it.value();
        operation.recorded = operation.recorded || it.value() != AuditSettings::None;
    }
    return operations;
}

EventTreeItem *switchOf(EventTreeItem &holder, QLatin1String name)
{
    EventTreeItem *member = holder.member(name);
    return member && member->isAuditSwitch() ? member : nullptr;
}

void addMissingSwitch(EventTreeItem &holder, QLatin1String name, bool first)
{
    if (holder.member(name)) {
        return;
    }
    auto *node = new EventTreeItem({QString(name), QStringLiteral("0"), QVariant()}, &holder);
    node->nativeName = name;
    node->kind = EventTreeItem::Parameter;
    if (const EventTreeItem *sibling = holder.eventChild(0)) {
        node->editable = sibling->editable;
    }
    holder.appendChild(node, first);
}

/// In the order of JSON keys, as the builder makes them.
void addMissingSwitches(EventTreeItem &holder)
{
    if (holder.isObject()) {
        addMissingSwitch(holder, fail, true);
        addMissingSwitch(holder, succ, false);
    }
}

/// True when that changed something.
bool setSwitch(EventTreeItem *node, bool on)
{
    const QString value = on ? QStringLiteral("1") : QStringLiteral("0");
    if (!node || node->value(1).toString() == value) {
        return false;
    }
    node->setData(1, value);
    node->checkState = on ? Qt::Checked : Qt::Unchecked;
    return true;
}

bool setValue(EventTreeItem &holder, int value)
{
    const bool success = setSwitch(switchOf(holder, succ), (value & AuditSettings::Success) != 0);
    const bool failure = setSwitch(switchOf(holder, fail), (value & AuditSettings::Failure) != 0);
    return success || failure;
}

void copySubjects(EventTreeItem *subjects, const QHash<QString, int> &values)
{
    if (!subjects || subjects->kind != EventTreeItem::Subjects) {
        return;
    }
    bool changed = false;
    for (int row = 0; row < subjects->childCount(); ++row) {
        EventTreeItem *subject = subjects->eventChild(row);
        const auto value = values.constFind(subject->nativeName);
        if (value != values.cend() && setValue(*subject, *value)) {
            SubjectsJson::refreshSubject(*subject);
            changed = true;
        }
    }
    if (changed) {
        SubjectsJson::refreshList(*subjects);
    }
}

void completeSubjects(EventTreeItem *subjects)
{
    if (!subjects || subjects->kind != EventTreeItem::Subjects) {
        return;
    }
    bool changed = false;
    for (int row = 0; row < subjects->childCount(); ++row) {
        EventTreeItem *subject = subjects->eventChild(row);
        const int members = subject->childCount();
        addMissingSwitches(*subject);
        if (subject->childCount() != members) {
            SubjectsJson::refreshSubject(*subject);
            changed = true;
        }
    }
    if (changed) {
        SubjectsJson::refreshList(*subjects);
    }
}

void copyOperation(EventTreeItem &node, const Operation &operation)
{
    copySubjects(node.member(AuditNodes::users), operation.users);
    copySubjects(node.member(AuditNodes::groups), operation.groups);
    EventTreeItem *other = node.member(AuditNodes::other);
    if (other && operation.other) {
        setValue(*other, *operation.other);
    }
}
} // namespace

bool AuditTree::namesOperations(const EventTreeItem &root)
{
    bool found = false;
    AuditNodes::forEachEvent(root, [&found](const EventTreeItem &event) {
        found = found || AuditNodes::auditEvents(event) != nullptr;
    });
    return found;
}

void AuditTree::synchronize(EventTreeItem &root, const AuditSettings &system)
{
    const Operations operations = operationsOf(system);
    QSet<QString> claimed;
    AuditNodes::forEachEvent(root, [&claimed](EventTreeItem &event) {
        const bool on = AuditNodes::isOn(event);
        AuditNodes::forEachOperation(event, [&claimed, on](EventTreeItem &operation) {
            completeSubjects(operation.member(AuditNodes::users));
            completeSubjects(operation.member(AuditNodes::groups));
            if (on) {
                claimed.insert(operation.nativeName);
            }
        });
    });
    AuditNodes::forEachEvent(root, [&claimed, &operations](EventTreeItem &event) {
        const bool on = AuditNodes::isOn(event);
        AuditNodes::forEachOperation(event, [&claimed, &operations, on](EventTreeItem &node) {
            const auto operation = operations.constFind(node.nativeName);
            if (operation != operations.cend()
                && (on || (operation->recorded && !claimed.contains(node.nativeName)))) {
                copyOperation(node, *operation);
            }
        });
    });
}

bool AuditTree::setSubjects(EventTreeItem &subjects, const QString &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject() || subjects.kind != EventTreeItem::Subjects) {
        return false;
    }
    const QJsonObject object = document.object();
    QHash<QString, int> values;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it->isObject()) {
            return false;
        }
        const auto isSet = [settings = it->toObject()](QLatin1String name) {
            return settings.value(name).toString() == QLatin1String("1");
        };
        values.insert(it.key(),
                      (isSet(succ) ? AuditSettings::Success : 0)
                          | (isSet(fail) ? AuditSettings::Failure : 0));
    }
    copySubjects(&subjects, values);
    return true;
}
