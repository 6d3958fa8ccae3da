// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditservice.h"

#include <actionids.h>

#include <KLocalizedString>

namespace {
const QLatin1Char separator('/');
} // namespace

AuditService::AuditService(QObject *parent)
    : AccessService(parent)
{
}

AuditSettings::SubjectValues AuditService::getAuditSettings(int auditType, const QStringList &auditIDs,
                                                            const QStringList &names)
{
    QStringList asked;
    asked.reserve(names.size());
    for (const QString &name : names) {
        if (!name.contains(separator)) {
            asked.append(name);
        }
    }
    return get(auditType, auditIDs, asked) ? convertAuditSettingsToHash(getActionResults())
                                           : AuditSettings::SubjectValues();
}

AuditSettings::OtherValues AuditService::getOtherAuditSettings(const QStringList &auditIDs)
{
    return get(AuditSettings::Other, auditIDs, {}) ? convertOtherAuditSettingsToHash(getActionResults())
                                                   : AuditSettings::OtherValues();
}

bool AuditService::setAuditSettings(const AuditSettings::SubjectValues &settings, int auditType)
{
    const QString refusal = refusalOf(settings);
    if (!refusal.isEmpty()) {
        setLastError(refusal);
        return false;
    }
    return set(convertAuditSettingsToMap(settings), auditType);
}

bool AuditService::setOtherAuditSettings(const AuditSettings::OtherValues &settings)
{
    return set(convertOtherAuditSettingsToMap(settings), AuditSettings::Other);
}

bool AuditService::get(int auditType, const QStringList &auditIDs, const QStringList &names)
{
    KAuth::Action action = makeAction(ActionIds::getAuditSettings);
    action.setArguments({
        {QStringLiteral("auditType"), auditType},
        {QStringLiteral("auditIDs"), auditIDs},
        {QStringLiteral("list"), names},
    });
    return execute(action);
}

bool AuditService::set(QVariantMap settings, int auditType)
{
    settings.insert(QStringLiteral("AUDIT_TYPE"), auditType);
    KAuth::Action action = makeAction(ActionIds::setAuditSettings);
    action.setArguments(settings);
    return execute(action);
}

QString AuditService::refusalOf(const AuditSettings::SubjectValues &settings)
{
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        if (it.key().first.contains(separator)) {
            return i18n("The audit settings of \"%1\" cannot be set, because the name contains the character "
                        "\"/\".",
                        it.key().first);
        }
    }
    return {};
}

QVariantMap AuditService::convertAuditSettingsToMap(const AuditSettings::SubjectValues &settings)
{
    QVariantMap map;
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        map.insert(it.key().first + separator + it.key().second, it.value());
    }
    return map;
}

AuditSettings::SubjectValues AuditService::convertAuditSettingsToHash(const QVariantMap &map)
{
    AuditSettings::SubjectValues settings;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        // No identifier has a separator, so the last one is the one that was put there.
        const int position = it.key().lastIndexOf(separator);
        if (position >= 0) {
            settings.insert({it.key().left(position), it.key().mid(position + 1)}, it->toInt());
        }
    }
    return settings;
}

QVariantMap AuditService::convertOtherAuditSettingsToMap(const AuditSettings::OtherValues &settings)
{
    QVariantMap map;
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        map.insert(it.key(), it.value());
    }
    return map;
}

AuditSettings::OtherValues AuditService::convertOtherAuditSettingsToHash(const QVariantMap &map)
{
    AuditSettings::OtherValues settings;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        settings.insert(it.key(), it->toInt());
    }
    return settings;
}
