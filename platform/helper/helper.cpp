// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "helper.h"

#include "auditsettingsstore.h"
#include "callerfile.h"
#include "configtransfer.h"
#include "configwriter.h"
#include "fragmentstore.h"
#include "helperlog.h"
#include "requester.h"
#include "servicecontrol.h"
#include "targz.h"
#include "usernotifications.h"

namespace AdminEventsHelper {

Helper::Helper(const HelperOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
{
}

KAuth::ActionReply Helper::writeconfig(const QVariantMap &arguments)
{
    const Result<WriteRequest> request = WriteRequest::read(arguments);
    if (!request) {
        return answer(QStringLiteral("writeconfig"), request.outcome());
    }
    return answer(QStringLiteral("writeconfig ") + request.value().path,
                  ConfigWriter(m_options.root).write(request.value()));
}

KAuth::ActionReply Helper::loggingservicectl(const QVariantMap &arguments)
{
    const Result<ServiceCommand> command = readServiceCommand(arguments);
    if (!command) {
        return answer(QStringLiteral("loggingservicectl"), command.outcome());
    }
    ServiceControl control(m_options.systemctl);
    const AuditRulesLoader::Programs programs{m_options.augenrules, m_options.auditctl};
    if (AuditRulesLoader::isWanted(m_options.root, programs)) {
        control.setRulesLoader(AuditRulesLoader(m_options.root, programs));
    }
    return answer(QStringLiteral("loggingservicectl ") + arguments.value(QStringLiteral("cmd")).toString(),
                  control.run(command.value()));
}

KAuth::ActionReply Helper::exportconfig(const QVariantMap &arguments)
{
    const Result<uid_t> caller = findRequester();
    const Result<TransferRequest> request = TransferRequest::read(arguments, QStringLiteral("output"));
    if (!caller || !request) {
        return answer(QStringLiteral("exportconfig"), request ? caller.outcome() : request.outcome());
    }
    const Result<ConfigTransfer> transfer = transferFor(caller.value());
    const Result<QByteArray> archive
        = transfer ? transfer.value().pack() : Result<QByteArray>(transfer.outcome());
    return answer(QStringLiteral("exportconfig ") + request.value().path,
                  archive ? CallerFile::write(caller.value(), request.value().path, archive.value())
                          : archive.outcome());
}

KAuth::ActionReply Helper::importconfig(const QVariantMap &arguments)
{
    const Result<uid_t> caller = findRequester();
    const Result<TransferRequest> request = TransferRequest::read(arguments, QStringLiteral("input"));
    if (!caller || !request) {
        return answer(QStringLiteral("importconfig"), request ? caller.outcome() : request.outcome());
    }
    const Result<QByteArray> archive
        = CallerFile::read(caller.value(), request.value().path, TarGz::archiveLimit);
    const Result<ConfigTransfer> transfer = transferFor(caller.value());
    const Result<ConfigTransfer::Report> report = archive && transfer
        ? transfer.value().install(archive.value())
        : Result<ConfigTransfer::Report>(archive ? transfer.outcome() : archive.outcome());
    KAuth::ActionReply reply
        = answer(QStringLiteral("importconfig ") + request.value().path, report.outcome());
    if (report) {
        reply.addData(QStringLiteral("mainConfigImportFault"), report.value().mainConfigLeftOut);
    }
    return reply;
}

KAuth::ActionReply Helper::writenotificationconfigs(const QVariantMap &arguments)
{
    const Result<FragmentWriteRequest> request = FragmentWriteRequest::read(arguments);
    if (!request) {
        return answer(QStringLiteral("writenotificationconfigs"), request.outcome());
    }
    const QStringList names = request.value().fragments.keys();
    return answer(QStringLiteral("writenotificationconfigs ") + names.join(QLatin1Char(' ')),
                  FragmentStore(m_options.root).write(request.value()));
}

KAuth::ActionReply Helper::removenotificationconfigs(const QVariantMap &arguments)
{
    const Result<FragmentRemoveRequest> request = FragmentRemoveRequest::read(arguments);
    if (!request) {
        return answer(QStringLiteral("removenotificationconfigs"), request.outcome());
    }
    const QStringList names = request.value().fileNames;
    return answer(QStringLiteral("removenotificationconfigs ") + names.join(QLatin1Char(' ')),
                  FragmentStore(m_options.root).remove(request.value()));
}

KAuth::ActionReply Helper::getauditsettings(const QVariantMap &arguments)
{
    const QString name = QStringLiteral("getauditsettings");
    const Result<AuditQuery> query = AuditQuery::read(arguments);
    if (!query) {
        return answer(name, query.outcome());
    }
    const Result<QVariantMap> settings = AuditSettingsStore(m_options.root).get(query.value());
    KAuth::ActionReply reply = answer(name, settings.outcome());
    if (settings) {
        reply.setData(settings.value());
    }
    return reply;
}

KAuth::ActionReply Helper::setauditsettings(const QVariantMap &arguments)
{
    const Result<AuditChange> change = AuditChange::read(arguments);
    if (!change) {
        return answer(QStringLiteral("setauditsettings"), change.outcome());
    }
    return answer(QStringLiteral("setauditsettings %1 (%2 settings)")
                      .arg(int(change.value().type))
                      .arg(change.value().values.size()),
                  AuditSettingsStore(m_options.root).set(change.value()));
}

Result<ConfigTransfer> Helper::transferFor(uid_t caller) const
{
    const auto own = UserNotifications::of(caller, m_options.root, m_options.home);
    return own ? Result<ConfigTransfer>(ConfigTransfer(m_options.root, own.value()))
               : Result<ConfigTransfer>(own.outcome());
}

KAuth::ActionReply Helper::answer(const QString &request, const Outcome &outcome) const
{
    const Result<uid_t> user = findRequester();
    const QString who
        = user ? QStringLiteral("user %1: ").arg(user.value()) : QStringLiteral("user unknown: ");
    if (outcome) {
        logLine(LOG_NOTICE, who + request + QLatin1String(": done"));
        return KAuth::ActionReply::SuccessReply();
    }
    logLine(LOG_WARNING, who + request + QLatin1String(": refused or failed: ") + outcome.error());
    KAuth::ActionReply reply = KAuth::ActionReply::HelperErrorReply();
    reply.setErrorDescription(outcome.error());
    return reply;
}

} // namespace AdminEventsHelper
