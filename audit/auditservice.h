// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditsettings.h"

#include <accessservice.h>

#include <QVariantMap>

/**
 * Has the privileged helper read and write the audit settings of users, groups and all others.
 *
 * On the way to the helper a setting is named by the subject, a "/" and the audit identifier. A subject whose
 * name has a "/" itself could be taken for another one: it is not asked for, and a request to set one is
 * refused as a whole before anything is sent.
 */
class AuditService : public AccessService
{
    Q_OBJECT

public:
    explicit AuditService(QObject *parent);

    /**
     * Reads the settings of the users or groups @p names.
     *
     * @param auditType AuditSettings::Users or AuditSettings::Groups
     * @return the settings that the system knows of; an operation for which none was ever set is not among
     *         them. Empty after a failure, which errorString() tells.
     */
    [[nodiscard]] AuditSettings::SubjectValues getAuditSettings(int auditType, const QStringList &auditIDs,
                                                                const QStringList &names);
    /// As getAuditSettings(), of everybody who is not named.
    [[nodiscard]] AuditSettings::OtherValues getOtherAuditSettings(const QStringList &auditIDs);

    /**
     * Sets the given settings; those that are not given stay as they are.
     *
     * @param auditType AuditSettings::Users or AuditSettings::Groups
     * @return false on failure; errorString() then says why, and nothing was changed.
     */
    [[nodiscard]] bool setAuditSettings(const AuditSettings::SubjectValues &settings, int auditType);
    [[nodiscard]] bool setOtherAuditSettings(const AuditSettings::OtherValues &settings);

    /// Why these settings cannot be sent; empty when they can.
    [[nodiscard]] static QString refusalOf(const AuditSettings::SubjectValues &settings);

    [[nodiscard]] static QVariantMap convertAuditSettingsToMap(const AuditSettings::SubjectValues &settings);
    [[nodiscard]] static AuditSettings::SubjectValues convertAuditSettingsToHash(const QVariantMap &map);
    [[nodiscard]] static QVariantMap
    convertOtherAuditSettingsToMap(const AuditSettings::OtherValues &settings);
    [[nodiscard]] static AuditSettings::OtherValues convertOtherAuditSettingsToHash(const QVariantMap &map);

private:
    [[nodiscard]] bool get(int auditType, const QStringList &auditIDs, const QStringList &names);
    [[nodiscard]] bool set(QVariantMap settings, int auditType);
};
