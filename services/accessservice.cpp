// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "accessservice.h"

#include <KAuth/ActionReply>
#include <KAuth/ExecuteJob>
#include <KLocalizedString>

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

} // namespace

AccessService::AccessService(QObject *parent)
    : QObject(parent)
{
}

bool AccessService::execute(KAuth::Action &action)
{
    m_lastError.clear();
    KAuth::ExecuteJob *const job = action.execute();
    const QPointer<AccessService> self(this);
    const bool succeeded = job->exec();
    // The nested event loop may have delivered the end of our owner.
    if (self.isNull())
        return false;
    m_lastError = succeeded ? QString() : errorTextOf(*job, action);
    m_lastReply = job->data();
    return m_lastError.isEmpty();
}

void AccessService::executeAsync(KAuth::Action &action)
{
    m_lastError.clear();
    KAuth::ExecuteJob *const job = action.execute();
    connect(job, &KJob::result, this, [this, action](KJob *ended) { asyncActionEnded(ended, action); });
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
