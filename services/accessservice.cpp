// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "accessservice.h"

#include "actiongate.h"
#include "actionids.h"

#include <KAuth/ActionReply>
#include <KAuth/ExecuteJob>
#include <KLocalizedString>

#include <QEventLoop>
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
    const bool hasText = !text.trimmed().isEmpty();
    // What the framework says of the bus names nothing that was asked for.
    if (hasText && job.error() != KAuth::ActionReply::DBusError)
        return text;
    return i18nc("1: action identifier, 2: reason, 3: number", "The action %1 failed: %2 (error code %3).",
                 action.name(), hasText ? text : reasonOf(job.error()), QString::number(job.error()));
}

QString interruptedText(const KAuth::Action &action)
{
    return i18nc("1: action identifier", "The program ended before the action %1 did.", action.name());
}

QString lostText(const KAuth::Action &action)
{
    return i18nc("1: action identifier",
                 "The helper program ended before it told what became of the action %1.", action.name());
}

QString otherProgramText(const KAuth::Action &action)
{
    return i18nc("1: action identifier",
                 "The action %1 was not started: another of your programs is having system settings changed, "
                 "or waits for a password. Finish that first.",
                 action.name());
}

} // namespace

AccessService::AccessService(QObject *parent)
    : QObject(parent)
{
}

KAuth::Action AccessService::makeAction(QLatin1String verb)
{
    KAuth::Action action(ActionIds::action(verb));
    action.setHelperId(ActionIds::helper());
    return action;
}

bool AccessService::execute(KAuth::Action &action)
{
    m_lastError.clear();
    m_lastErrorCode = 0;
    ActionGate &gate = ActionGate::instance();
    const QPointer<AccessService> self(this);
    const ActionGate::Wait wait = gate.waitUntilFree();
    // The nested event loops may deliver the end of our owner.
    if (self.isNull()) {
        if (wait == ActionGate::Wait::Free)
            gate.giveUp();
        return false;
    }
    if (wait != ActionGate::Wait::Free) {
        m_lastError
            = wait == ActionGate::Wait::OtherProgram ? otherProgramText(action) : interruptedText(action);
        return false;
    }
    KAuth::ExecuteJob *const job = action.execute();
    gate.pass(job);
    QString errorText = interruptedText(action);
    int errorCode = 0;
    QMap<QString, QVariant> reply;
    QEventLoop loop;
    bool hasEnded = false;
    // Read at once: the reply to a later action of the same name, carried out above us, would change them.
    connect(job, &KJob::result, &loop, [&] {
        errorCode = job->error();
        errorText = job->error() == KJob::NoError ? QString() : errorTextOf(*job, action);
        reply = job->data();
        hasEnded = true;
        loop.quit();
    });
    connect(&gate, &ActionGate::lost, &loop, [&](const KJob *which) {
        if (which == job) {
            errorText = lostText(action);
            job->deleteLater();
            loop.quit();
        }
    });
    job->start();
    if (!hasEnded)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (self.isNull())
        return false;
    m_lastError = errorText;
    m_lastErrorCode = errorCode;
    m_lastReply = reply;
    return m_lastError.isEmpty();
}

void AccessService::executeAsync(KAuth::Action &action)
{
    m_lastError.clear();
    // What was asked for is done even if the one who asked has gone when its turn comes.
    ActionGate::instance().whenFree([service = QPointer<AccessService>(this), action] {
        KAuth::ExecuteJob *const job = KAuth::Action(action).execute();
        ActionGate::instance().pass(job);
        if (service) {
            connect(job, &KJob::result, service,
                    [service, action](KJob *ended) { service->asyncActionEnded(ended, action); });
            connect(&ActionGate::instance(), &ActionGate::lost, job,
                    [service, action, job](const KJob *which) {
                        if (which == job && service)
                            service->asyncActionFailed(lostText(action), action);
                    });
        }
        connect(&ActionGate::instance(), &ActionGate::lost, job, [job](const KJob *which) {
            if (which == job)
                job->deleteLater();
        });
        job->start();
    });
}

void AccessService::asyncActionEnded(KJob *job, const KAuth::Action &action)
{
    if (job->error() == KJob::NoError) {
        Q_EMIT finished(&action);
        return;
    }
    asyncActionFailed(errorTextOf(*job, action), action);
}

void AccessService::asyncActionFailed(const QString &text, const KAuth::Action &action)
{
    m_lastError = text;
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
