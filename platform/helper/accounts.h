// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QHash>
#include <QString>

#include <optional>

namespace AdminEventsHelper {

/** The numbers of users and groups by name. */
class Accounts
{
public:
    /**
     * Looks at the system's accounts, or, for a root directory of its own that has the files etc/passwd and
     * etc/group (see passwd(5), group(5)), at those.
     */
    static Result<Accounts> below(const QString &root);

    /** From here on, only who is listed is known: nobody is looked up by name, which may take long. */
    void forgetUnlisted() { m_asksSystem = false; }

    std::optional<quint32> user(const QString &name) const;
    std::optional<quint32> group(const QString &name) const;

private:
    Accounts() = default;
    void listSystem();

    QHash<QString, quint32> m_users;
    QHash<QString, quint32> m_groups;
    bool m_asksSystem = true; // for those that the lists lack
};

} // namespace AdminEventsHelper
