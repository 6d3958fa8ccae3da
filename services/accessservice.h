// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <KAuth/Action>

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

class KJob;

/**
 * Runs privileged actions of the desktop's authorisation framework and keeps what came of the last one: its
 * error text and its reply. Used from the GUI thread only; nothing is retried. Actions of one process run one
 * after the other (see ActionGate): a call waits for those asked for before it.
 */
class AccessService : public QObject
{
    Q_OBJECT

public:
    explicit AccessService(QObject *parent);

    /** The action of @p verb (see ActionIds), for the helper to carry out. */
    [[nodiscard]] static KAuth::Action makeAction(QLatin1String verb);

    /**
     * Runs @p action and waits for its end in a nested event loop, in which timers, notifications and user
     * input are delivered: callers that can be re-entered guard themselves.
     *
     * The last reply is replaced in every case, also by the (often empty) data of a failed action.
     * @return true exactly when errorString() is empty afterwards.
     */
    [[nodiscard]] bool execute(KAuth::Action &action);

    /**
     * Starts @p action and returns at once. Its end is reported by finished() or error(); its reply is not
     * kept. Actions in flight at the same time share the error text: the last failure's stays.
     */
    void executeAsync(KAuth::Action &action);

    /**
     * What the last action failed of, fit for a message box; empty when it succeeded. Never empty after a
     * failure: where the framework gives no text (a refused authorisation), it names the action and the code.
     */
    [[nodiscard]] QString errorString() const;

    /** The framework's code for what the last synchronous action failed of; 0 when it succeeded or did not
     * run. */
    [[nodiscard]] int errorCode() const { return m_lastErrorCode; }

    /** @return the value of @p key in the last reply, or an invalid variant when the reply has no such key.
     */
    [[nodiscard]] QVariant getActionResult(const QString &key) const;

    /** The whole reply of the last synchronous action. */
    [[nodiscard]] QMap<QString, QVariant> getActionResults() const;

    /** For failures found before an action runs; the last reply stays. */
    void setLastError(const QString &text);

Q_SIGNALS:
    /** An asynchronous action succeeded. @p action is valid only while the signal is delivered. */
    void finished(const KAuth::Action *action);

    /** An asynchronous action failed of @p text. @p action is valid only while the signal is delivered. */
    void error(const KAuth::Action *action, const QString &text);

private:
    void asyncActionEnded(KJob *job, const KAuth::Action &action);
    void asyncActionFailed(const QString &text, const KAuth::Action &action);

    QString m_lastError;
    int m_lastErrorCode = 0;
    QMap<QString, QVariant> m_lastReply;
};
