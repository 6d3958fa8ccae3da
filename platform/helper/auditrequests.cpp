// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrequests.h"

#include "argumentreader.h"
#include "auditoperations.h"
#include "shown.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

namespace {

// 17 operations of 100,000 subjects are beyond every list that can still be shown and chosen from.
constexpr int namesLimit = 100000;
constexpr int settingsLimit = 2000000;
constexpr int nameLimit = 300;
const QLatin1Char separator('/');

Result<SubjectType> typeOf(int number)
{
    for (const SubjectType type : {SubjectType::Other, SubjectType::Users, SubjectType::Groups}) {
        if (number == int(type)) {
            return type;
        }
    }
    return Outcome::failure(i18n("\"%1\" is not a type of audit settings.", QString::number(number)));
}

Outcome checkIdentifier(const QString &identifier)
{
    if (AuditOperations::identifiers().contains(identifier)) {
        return Outcome::success();
    }
    return Outcome::failure(i18n("\"%1\" is not an operation that can be audited.", shown(identifier)));
}

Outcome readSetting(const QString &key, const QVariant &value, AuditChange &change)
{
    if (key.size() > nameLimit) {
        return Outcome::failure(i18n("The argument \"%1\" has a name longer than %2 characters.", shown(key),
                                     QString::number(nameLimit)));
    }
    QString name;
    QString identifier = key;
    if (change.type != SubjectType::Other) {
        // Two separators leave open where the name ends.
        if (key.count(separator) != 1 || key.startsWith(separator)) {
            return Outcome::failure(i18n("\"%1\" does not name one subject and one operation.", shown(key)));
        }
        name = key.section(separator, 0, 0);
        identifier = key.section(separator, 1);
    }
    if (Outcome known = checkIdentifier(identifier); !known) {
        return known;
    }
    if (value.userType() != QMetaType::Int) {
        return Outcome::failure(i18n("The argument \"%1\" has the type \"%2\" in place of \"%3\".",
                                     shown(key), QString::fromLatin1(value.typeName()),
                                     QStringLiteral("int")));
    }
    const int number = value.toInt();
    if (number < 0 || number > largestAuditValue) {
        return Outcome::failure(
            i18n("\"%1\" is not an audit setting for \"%2\".", QString::number(number), shown(key)));
    }
    change.values.insert({name, identifier}, number);
    return Outcome::success();
}

} // namespace

Result<AuditQuery> AuditQuery::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const int number = reader.integer(QStringLiteral("auditType"));
    AuditQuery query;
    query.identifiers
        = reader.strings(QStringLiteral("auditIDs"), AuditOperations::identifiers().size(), nameLimit);
    query.names = reader.strings(QStringLiteral("list"), namesLimit, nameLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    const Result<SubjectType> type = typeOf(number);
    if (!type) {
        return type.outcome();
    }
    query.type = type.value();
    if (query.type == SubjectType::Other && !query.names.isEmpty()) {
        return Outcome::failure(i18n("A request for the settings of all others names nobody."));
    }
    for (const QString &identifier : qAsConst(query.identifiers)) {
        if (Outcome known = checkIdentifier(identifier); !known) {
            return known;
        }
    }
    return query;
}

Result<AuditChange> AuditChange::read(const QVariantMap &arguments)
{
    const QString typeKey = QStringLiteral("AUDIT_TYPE");
    QVariantMap settings = arguments;
    QVariantMap header;
    if (settings.contains(typeKey)) {
        header.insert(typeKey, settings.take(typeKey));
    }
    ArgumentReader reader(header);
    const int number = reader.integer(typeKey);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    const Result<SubjectType> type = typeOf(number);
    if (!type) {
        return type.outcome();
    }
    if (settings.size() > settingsLimit) {
        return Outcome::failure(i18n("A request may hold at most %1 audit settings, not %2.",
                                     QString::number(settingsLimit), QString::number(settings.size())));
    }
    AuditChange change;
    change.type = type.value();
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        if (Outcome read = readSetting(it.key(), *it, change); !read) {
            return read;
        }
    }
    return change;
}

} // namespace AdminEventsHelper
