// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "configarchive.h"
#include "outcome.h"
#include "usernotifications.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace AdminEventsHelper {

class SafeDirectory;

/** Which archive a request names. */
struct TransferRequest
{
    QString path;

    /** Reads the argument of that key, a string, and no others ("output" for an export, "input" for an
     * import). */
    static Result<TransferRequest> read(const QVariantMap &arguments, const QString &key);
};

/** Makes archives of the configuration below a root directory and of a user's own notification settings, and
 * installs them there. */
class ConfigTransfer
{
public:
    /** What is told about an import that succeeded. */
    struct Report
    {
        /** The main configuration was made for another version and was left out. */
        bool mainConfigLeftOut = false;
    };

    /**
     * @param root the directory that stands for "/".
     * @param own the settings of the user who asked; none to leave users' settings alone.
     */
    explicit ConfigTransfer(const QString &root, const std::optional<UserNotifications> &own = std::nullopt);

    /**
     * The configuration as it is, as the bytes of an archive. A file that an import would refuse is a
     * failure: the archive would be of no use. Notification fragments that somebody else wrote are left out.
     */
    Result<QByteArray> pack() const;

    /**
     * Installs an archive, all of it or nothing: everything is checked before anything is changed. Files that
     * the archive says were absent are removed, and so are notification fragments that it does not hold, but
     * not those that somebody else wrote. Of the user's own notification settings only what the archive holds
     * is left, if it holds any state of them; a crash while they are replaced, last of all, may leave these
     * new and the other files as they were.
     */
    Result<Report> install(const QByteArray &bytes) const;

private:
    static Outcome renewRules(ConfigArchive &archive);
    Outcome addOwn(ConfigArchive &archive) const;
    Outcome carryOut(const ConfigArchive &archive, const SafeDirectory &root) const;
    Outcome checkAll(const ConfigArchive &archive, const SafeDirectory &root) const;

    QString m_root;
    std::optional<UserNotifications> m_own;
};

} // namespace AdminEventsHelper
