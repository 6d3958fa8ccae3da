// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include <QSet>

namespace {
using Event = CatalogFiles::Event;

QStringList dependencies(const Event &event)
{
    return listed(event.description.value(QLatin1String("message-depends")).toString());
}

QStringList conflicts(const Event &event)
{
    return listed(event.description.value(QLatin1String("conflicts-with")).toString());
}

bool isOn(const Event *event)
{
    return event && event->description.value(QLatin1String("enabled")) == QLatin1String("1");
}

bool isSwitchedOff(const Event *event)
{
    return event && event->description.value(QLatin1String("enabled")) == QLatin1String("0");
}

/// Whether @p target is reached from @p event along dependencies, at any distance.
bool leadsTo(const CatalogFiles &catalog, const Event *event, const QString &target, QSet<QString> &seen)
{
    if (!event || seen.contains(event->id)) {
        return false;
    }
    seen.insert(event->id);
    const QStringList next = dependencies(*event);
    for (const QString &id : next) {
        if (id == target || leadsTo(catalog, catalog.find(id), target, seen)) {
            return true;
        }
    }
    return false;
}
} // namespace

QStringList CatalogRules::linksNameEvents(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        for (const QLatin1String member :
             {QLatin1String("message-depends"), QLatin1String("conflicts-with")}) {
            const QJsonValue value = event.description.value(member);
            // Conflicts are split at the comma and the blank together.
            const QStringList ids = listed(value.toString());
            if (!value.isUndefined()
                && (ids.isEmpty() || ids.join(QLatin1String(", ")) != value.toString())) {
                problems.append(breach(event.id, member + QLatin1String(" is not a list")));
            }
            for (const QString &id : ids) {
                if (!catalog.find(id) || id == event.id || ids.count(id) > 1) {
                    problems.append(breach(event.id, member + QLatin1String(" names ") + id));
                }
            }
        }
        const QStringList needed = dependencies(event);
        for (const QString &id : needed) {
            if (conflicts(event).contains(id)) {
                problems.append(breach(event.id, QLatin1String("needs and excludes ") + id));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::noDependencyCycles(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        QSet<QString> seen;
        if (leadsTo(catalog, &event, event.id, seen)) {
            problems.append(breach(event.id, QStringLiteral("depends on itself")));
        }
    }
    return problems;
}

QStringList CatalogRules::dependenciesAreOnByDefault(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QStringList needed = isOn(&event) ? dependencies(event) : QStringList();
        for (const QString &id : needed) {
            if (isSwitchedOff(catalog.find(id))) {
                problems.append(breach(event.id, QLatin1String("is on while off is ") + id));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::conflictsAreMutual(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QStringList others = conflicts(event);
        for (const QString &id : others) {
            const Event *other = catalog.find(id);
            if (other && !conflicts(*other).contains(event.id)) {
                problems.append(breach(event.id, QLatin1String("excludes, but is not excluded by ") + id));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::conflictsAreOffByDefault(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QStringList others = isSwitchedOff(&event) ? QStringList() : conflicts(event);
        for (const QString &id : others) {
            const Event *other = catalog.find(id);
            if (other && !isSwitchedOff(other)) {
                problems.append(breach(event.id, QLatin1String("is on together with ") + id));
            }
        }
    }
    return problems;
}
