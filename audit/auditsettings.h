// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QStringList>

/**
 * Which operations of which users, groups and all others are recorded by the audit system.
 *
 * A setting is a number made of two bits, Success and Failure: 0 nothing is recorded, 3 everything is. An
 * operation is named by an audit identifier, one of auditIDs().
 */
class AuditSettings
{
public:
    enum AuditType : int { Other = 0, Users = 1, Groups = 2 };
    enum Outcome : int { None = 0, Success = 1, Failure = 2, Both = 3 };

    /// A subject's name and an audit identifier.
    using SubjectKey = QPair<QString, QString>;
    using SubjectValues = QHash<SubjectKey, int>;
    /// By audit identifier.
    using OtherValues = QHash<QString, int>;

    /// The audit identifiers that the system knows, in the order in which they are asked for.
    [[nodiscard]] static const QStringList &auditIDs();

    /// @param type Users or Groups; any other is ignored
    void prepareAuditSettings(const QString &name, int type, const QString &identifier, int value);
    void prepareOtherAuditSettings(const QString &identifier, int value);
    void clearAuditSettings();

    [[nodiscard]] const SubjectValues &users() const { return m_users; }
    [[nodiscard]] const SubjectValues &groups() const { return m_groups; }
    [[nodiscard]] const OtherValues &other() const { return m_other; }

    /// Takes over a whole kind of settings.
    void setUsers(const SubjectValues &values) { m_users = values; }
    void setGroups(const SubjectValues &values) { m_groups = values; }
    void setOther(const OtherValues &values) { m_other = values; }

    /// The settings of this object that say something else than @p present, where what it lacks counts as
    /// None.
    [[nodiscard]] AuditSettings differencesFrom(const AuditSettings &present) const;
    /// Takes over what @p changes holds; everything else stays.
    void merge(const AuditSettings &changes);
    [[nodiscard]] bool isEmpty() const
    {
        return m_users.isEmpty() && m_groups.isEmpty() && m_other.isEmpty();
    }

private:
    SubjectValues m_users;
    SubjectValues m_groups;
    OtherValues m_other;
};
