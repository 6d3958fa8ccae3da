// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "subjectsjson.h"

#include "eventtreeitem.h"
#include "jsontext.h"

namespace {
bool isRecord(const EventTreeItem &item)
{
    return !item.isSubject() && item.nativeName.startsWith(QLatin1String("overlay"));
}

QString valueText(const EventTreeItem &item)
{
    const QVariant &json = item.value(2);
    if (json.isValid()) {
        return json.toString();
    }
    const QVariant &value = item.value(1);
    QString text;
    if (value.userType() == QMetaType::QString) {
        JsonText::appendQuoted(text, value.toString());
        return text;
    }
    return JsonText::compact(QJsonValue::fromVariant(value));
}

void refresh(EventTreeItem &object)
{
    QString json(QLatin1Char('{'));
    for (int row = 0; row < object.childCount(); ++row) {
        const EventTreeItem *child = object.eventChild(row);
        if (isRecord(*child)) {
            continue; // bookkeeping, not part of the description
        }
        if (json.size() > 1) {
            json += QLatin1Char(',');
        }
        JsonText::appendQuoted(json, child->nativeName);
        json += QLatin1Char(':');
        json += valueText(*child);
    }
    json += QLatin1Char('}');
    if (object.value(2).toString() != json) {
        object.setData(2, json);
    }
}
} // namespace

void SubjectsJson::refreshSubject(EventTreeItem &subject)
{
    if (subject.isObject()) {
        refresh(subject);
    }
}

void SubjectsJson::refreshList(EventTreeItem &subjects)
{
    refresh(subjects);
}

void SubjectsJson::memberChanged(const EventTreeItem &item)
{
    if (item.isSubject()) {
        refreshList(*item.parentItem());
        return;
    }
    EventTreeItem *subject = item.parentItem();
    while (subject && !subject->isSubject()) {
        subject = subject->parentItem();
    }
    if (subject) {
        refreshSubject(*subject);
        refreshList(*subject->parentItem());
    }
}
