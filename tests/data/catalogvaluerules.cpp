// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogrules.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace {
using Event = CatalogFiles::Event;

bool isSwitchValue(const QJsonValue &value)
{
    return value == QLatin1String("0") || value == QLatin1String("1");
}

void findOtherValues(const QJsonValue &value, const QString &where, QStringList &problems)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            findOtherValues(*it, where + QLatin1Char('/') + it.key(), problems);
        }
    } else if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const QJsonValue &element : array) {
            findOtherValues(element, where + QLatin1String("/[]"), problems);
        }
    } else if (!value.isString()) {
        problems.append(where + QLatin1String(": not a string"));
    }
}

void findBadSwitches(const QJsonObject &object, const QString &where, QStringList &problems)
{
    static const QSet<QString> switches{QStringLiteral("enabled"), QStringLiteral("generates-load"),
                                        QStringLiteral("is-not-redirected"), QStringLiteral("succ"),
                                        QStringLiteral("fail")};
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (switches.contains(it.key()) && !isSwitchValue(*it)) {
            problems.append(where + QLatin1Char('/') + it.key() + QLatin1String(": neither 0 nor 1"));
        }
        findBadSwitches(it->toObject(), where + QLatin1Char('/') + it.key(), problems);
    }
}

bool isFieldName(const QJsonValue &value)
{
    static const QRegularExpression macro(QStringLiteral("\\A\\$\\{[A-Za-z0-9._]+\\}\\z"));
    return macro.match(value.toString()).hasMatch();
}

/// Whether @p text is a decimal number, with a fraction or without, from 0 to @p most.
bool isNumberUpTo(double most, const QString &text)
{
    static const QRegularExpression decimal(QStringLiteral("\\A[0-9]+(\\.[0-9]+)?\\z"));
    return decimal.match(text).hasMatch() && text.toDouble() <= most;
}

bool isWholeNumber(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9]{1,18}\\z"));
    return digits.match(text).hasMatch();
}
} // namespace

QStringList CatalogRules::onlyStrings(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        findOtherValues(event.description, event.id, problems);
    }
    for (auto it = catalog.groups.begin(); it != catalog.groups.end(); ++it) {
        findOtherValues(*it, it.key(), problems);
    }
    return problems;
}

QStringList CatalogRules::onlyKnownMembers(const CatalogFiles &catalog)
{
    static const QSet<QString> known{
        QStringLiteral("event-group"),           QStringLiteral("enabled"),
        QStringLiteral("message-type"),          QStringLiteral("message-params"),
        QStringLiteral("extend-message-params"), QStringLiteral("notification_repetition"),
        QStringLiteral("message-depends"),       QStringLiteral("conflicts-with"),
        QStringLiteral("generates-load"),        QStringLiteral("is-not-redirected"),
        QStringLiteral("filter-values"),         QStringLiteral("message-audit-rules"),
        QStringLiteral("message-audit-events"),  QStringLiteral("directories")};
    QStringList problems;
    for (const Event &event : catalog.events) {
        for (auto it = event.description.begin(); it != event.description.end(); ++it) {
            if (!known.contains(it.key())) {
                problems.append(breach(event.id, QLatin1String("unknown member ") + it.key()));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::noOverlayMembers(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QSet<QString> names = memberNames(event.description);
        for (const QString &name : names) {
            if (name.startsWith(QLatin1String("overlay"), Qt::CaseInsensitive)) {
                problems.append(breach(event.id, QLatin1String("member ") + name));
            }
        }
    }
    return problems;
}

QStringList CatalogRules::switchesAreZeroOrOne(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        findBadSwitches(event.description, event.id, problems);
    }
    return problems;
}

QStringList CatalogRules::parametersAreSwitchesEverywhereOrNowhere(const CatalogFiles &catalog)
{
    QStringList problems;
    QHash<QString, bool> isSwitch;
    for (const Event &event : catalog.events) {
        const QJsonObject parameters = extendedParameters(event);
        if (parameters.isEmpty()) {
            problems.append(breach(event.id, QStringLiteral("no extended parameters")));
        }
        for (auto it = parameters.begin(); it != parameters.end(); ++it) {
            const QString &name = it.key();
            const QJsonObject object = it->toObject();
            if (it->isObject()
                && object.keys() != QStringList{QStringLiteral("enabled"), QStringLiteral("field")}) {
                problems.append(breach(event.id, name + QLatin1String(" needs a switch and a field")));
            }
            if (!isFieldName(it->isObject() ? object.value(QLatin1String("field")) : *it)) {
                problems.append(breach(event.id, name + QLatin1String(" names no field of the record")));
            }
            const auto known = isSwitch.constFind(name);
            if (known != isSwitch.constEnd() && *known != it->isObject()) {
                problems.append(breach(event.id, name + QLatin1String(" is a switch in some events only")));
            }
            isSwitch.insert(name, it->isObject());
        }
    }
    return problems;
}

QStringList CatalogRules::filtersSelectSomething(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QJsonObject filters = event.description.value(QLatin1String("filter-values")).toObject();
        bool selects = false;
        for (auto it = filters.begin(); it != filters.end(); ++it) {
            const QJsonArray choices = it->isArray() ? it->toArray() : QJsonArray{*it};
            selects = selects || (!choices.isEmpty() && !choices.first().toString().isEmpty());
            for (const QJsonValue &choice : choices) {
                // Lists are edited as one text, their elements set apart by commas.
                if (it->isArray()
                    && (choice.toString().isEmpty() || choice.toString().contains(QLatin1Char(',')))) {
                    problems.append(
                        breach(event.id, it.key() + QLatin1String(" has an element with a comma or none")));
                }
            }
        }
        if (!selects) {
            problems.append(breach(event.id, QStringLiteral("no filter value")));
        }
    }
    return problems;
}

QStringList CatalogRules::intervalsInRange(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QJsonValue repetition = event.description.value(QLatin1String("notification_repetition"));
        if (repetition.isUndefined()) {
            continue;
        }
        const QString interval = repetition[QLatin1String("interval")].toString();
        if (!isWholeNumber(interval) || interval.toInt() < 5 || interval.toInt() > 3600) {
            problems.append(breach(event.id, QLatin1String("interval ") + interval));
        }
        if (!isSwitchValue(repetition[QLatin1String("enabled")])) {
            problems.append(breach(event.id, QStringLiteral("repetition without a switch")));
        }
    }
    return problems;
}

QStringList CatalogRules::directoriesHaveLimits(const CatalogFiles &catalog)
{
    QStringList problems;
    for (const Event &event : catalog.events) {
        const QJsonValue directories = event.description.value(QLatin1String("directories"));
        if (directories.isUndefined()) {
            continue;
        }
        if (directories.toArray().isEmpty()) {
            problems.append(breach(event.id, QStringLiteral("no directories")));
        }
        const QJsonArray array = directories.toArray();
        for (const QJsonValue &directory : array) {
            if (!directory[QLatin1String("path")].toString().startsWith(QLatin1Char('/'))
                || !isWholeNumber(directory[QLatin1String("limit_bytes")].toString())
                || !isNumberUpTo(100, directory[QLatin1String("limit_percent")].toString())
                || directory.toObject().size() != 3) {
                problems.append(
                    breach(event.id,
                           QStringLiteral("bad directory ") + directory[QLatin1String("path")].toString()));
            }
        }
    }
    return problems;
}
