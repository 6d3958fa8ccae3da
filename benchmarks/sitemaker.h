// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QRandomGenerator>
#include <QStringList>

/// Writes @p object to the file @p path; false when that fails.
[[nodiscard]] bool writeJson(const QString &path, const QJsonObject &object);

/// How large a site is.
struct SiteSize
{
    int events = 0;
    int groups = 0;
    int auditEvents = 0; ///< how many of the events are audited per subject
    int subjects = 0; ///< users and groups of the system, two users to one group
};

/// The system's accounts.
struct Accounts
{
    QStringList users;
    QStringList groups;

    /// @param subjects how many together, two users to one group
    static Accounts ofSystem(int subjects);
};

/**
 * Makes the files of a large site: a catalog whose events look like the
 * shipped ones, and saved settings for a part of them. One seed gives one
 * site, on every machine.
 */
class SiteMaker
{
public:
    explicit SiteMaker(quint32 seed);

    /// Writes groups and events into @p directory; false when a file cannot be written.
    [[nodiscard]] bool writeCatalog(const QString &directory, const SiteSize &size, const Accounts &accounts);
    /**
     * Settings of an event as an administrator would save them: switched, and
     * every second account audited where the event is audited per subject.
     *
     * @param event its description in the catalog
     */
    [[nodiscard]] QJsonObject makeOverride(const QJsonObject &event, const Accounts &accounts);

private:
    [[nodiscard]] QJsonObject makeEvent(int number, const QString &group, const Accounts *audited);
    [[nodiscard]] QJsonObject makeAuditEvents(const Accounts &accounts);
    [[nodiscard]] QString makeName(int number);
    [[nodiscard]] QString switchValue();
    [[nodiscard]] int below(int limit);

    QRandomGenerator m_random;
};
