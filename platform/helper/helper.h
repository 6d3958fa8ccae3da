// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "configtransfer.h"
#include "helperoptions.h"

#include <KAuth/ActionReply>
#include <QObject>
#include <QVariantMap>

namespace AdminEventsHelper {

/**
 * Answers the authorised requests; the slots bear the last word of the actions' identifiers.
 *
 * A refused or failed request is answered by a helper error whose description names the object and the
 * reason. Every request is put into the system log with the requester's user id.
 */
class Helper : public QObject
{
    Q_OBJECT

public:
    explicit Helper(const HelperOptions &options, QObject *parent = nullptr);

public Q_SLOTS:
    /** Replaces a configuration file; arguments as WriteRequest::read() takes them, no reply data. */
    KAuth::ActionReply writeconfig(const QVariantMap &arguments);
    /** Starts, stops or restarts the logging service; arguments as readServiceCommand() takes them, no reply
     * data. */
    KAuth::ActionReply loggingservicectl(const QVariantMap &arguments);
    /**
     * Writes the archive of the configuration to a file of the requester's; arguments as
     * TransferRequest::read() takes them with "output", no reply data.
     */
    KAuth::ActionReply exportconfig(const QVariantMap &arguments);
    /**
     * Installs the configuration from an archive that the requester may read; arguments as
     * TransferRequest::read() takes them with "input". Reply data: "mainConfigImportFault" (bool), true when
     * the main configuration was made for another version and was left out.
     */
    KAuth::ActionReply importconfig(const QVariantMap &arguments);
    /** Writes notification fragments; arguments as FragmentWriteRequest::read() takes them, no reply data. */
    KAuth::ActionReply writenotificationconfigs(const QVariantMap &arguments);
    /** Removes notification fragments; arguments as FragmentRemoveRequest::read() takes them, no reply data.
     */
    KAuth::ActionReply removenotificationconfigs(const QVariantMap &arguments);
    /** Tells the audit settings of subjects; arguments as AuditQuery::read() takes them, reply data as
     * AuditSettingsStore::get() makes them. */
    KAuth::ActionReply getauditsettings(const QVariantMap &arguments);
    /** Changes audit settings of subjects; arguments as AuditChange::read() takes them, no reply data. */
    KAuth::ActionReply setauditsettings(const QVariantMap &arguments);

private:
    Result<ConfigTransfer> transferFor(uid_t caller) const;
    KAuth::ActionReply answer(const QString &request, const Outcome &outcome) const;

    HelperOptions m_options;
};

} // namespace AdminEventsHelper
