// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "accessservice.h"

#include "actiongate.h"

#include <KAuth/ActionReply>
#include <KAuth/ExecuteJob>
#include <KLocalizedString>

#include <QCoreApplication>
#include <QEventLoop>
#include <QHash>
#include <QPointer>

namespace {

// The framework leaves the text of these failures empty; a code it shares with the helper's own has a text.
QString reasonOf(int code)
{
    switch (code) {
    case KAuth::ActionReply::NoResponderError:
    case KAuth::ActionReply::NoSuchActionError:
        return i18n("the helper program does not know this action");
    case KAuth::ActionReply::InvalidActionError:
        return i18n("the action is invalid");
    case KAuth::ActionReply::AuthorizationDeniedError:
        return i18n("the authorization was refused");
    case KAuth::ActionReply::UserCancelledError:
        return i18n("the authorization was cancelled");
    case KAuth::ActionReply::HelperBusyError:
        return i18n("the helper program is busy");
    case KAuth::ActionReply::AlreadyStartedError:
        return i18n("the action is already running");
    case KAuth::ActionReply::DBusError:
        return i18n("the helper program cannot be reached over the message bus");
    case KAuth::ActionReply::BackendError:
        return i18n("the authorization service failed");
    default:
        return i18n("no reason was given");
    }
}

QString errorTextOf(const KJob &job, const KAuth::Action &action)
{
    const QString text = job.errorString();
    if (!text.trimmed().isEmpty())
        return text;
    return i18nc("1: action identifier, 2: reason, 3: number", "The action %1 failed: %2 (error code %3).",
                 action.name(), reasonOf(job.error()), QString::number(job.error()));
}

/** The jobs that are being carried out, by the name of their action. */
QHash<QString, KAuth::ExecuteJob *> &runningJobs()
{
    static QHash<QString, KAuth::ExecuteJob *> jobs;
    return jobs;
}

KAuth::ExecuteJob *createJob(KAuth::Action &action)
{
    KAuth::ExecuteJob *const job = action.execute();
    const QString name = action.name();
    runningJobs().insert(name, job);
    QObject::connect(job, &KJob::finished, [name] { runningJobs().remove(name); });
    return job;
}

} // namespace

AccessService::AccessService(QObject *parent)
    : QObject(parent)
{
}

bool AccessService::execute(KAuth::Action &action)
{
    m_lastError.clear();
    const QPointer<AccessService> self(this);
    while (const KJob *const ahead = runningJobs().value(action.name())) {
        QEventLoop loop;
        connect(ahead, &KJob::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    // The nested event loops may deliver the end of our owner.
    if (self.isNull())
        return false;
    KAuth::ExecuteJob *const job = createJob(action);
    const bool succeeded = job->exec();
    if (self.isNull())
        return false;
    m_lastError = succeeded ? QString() : errorTextOf(*job, action);
    m_lastReply = job->data();
    return m_lastError.isEmpty();
}

void AccessService::executeAsync(KAuth::Action &action)
{
    m_lastError.clear();
    startWhenFree(this, action);
}

void AccessService::startWhenFree(const QPointer<AccessService> &service, KAuth::Action action)
{
    if (const KJob *const ahead = runningJobs().value(action.name())) {
        // Not with the service as context: what was asked for is done even if the one who asked has gone.
        connect(
            ahead, &KJob::finished, QCoreApplication::instance(),
            [service, action] { startWhenFree(service, action); }, Qt::QueuedConnection);
        return;
    }
    KAuth::ExecuteJob *const job = createJob(action);
    if (service) {
        connect(job, &KJob::result, service,
                [service, action](KJob *ended) { service->asyncActionEnded(ended, action); });
    }
    job->start();
}

void AccessService::asyncActionEnded(KJob *job, const KAuth::Action &action)
{
    if (job->error() == KJob::NoError) {
        Q_EMIT finished(&action);
        return;
    }
    m_lastError = errorTextOf(*job, action);
    Q_EMIT error(&action, m_lastError);
}

QString AccessService::errorString() const
{
    return m_lastError;
}

QVariant AccessService::getActionResult(const QString &key) const
{
    return m_lastReply.value(key);
}

QMap<QString, QVariant> AccessService::getActionResults() const
{
    return m_lastReply;
}

void AccessService::setLastError(const QString &text)
{
    m_lastError = text;
}
