// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <KAuth/Action>
#include <KAuth/ActionReply>
#include <KAuth/ExecuteJob>
#include <QEventLoop>
#include <QTimer>

struct HelperAnswer
{
    bool ok = false;
    int error = 0;
    QString text;
    QVariantMap data;
};

/** Sends one request through the framework to the helper of the private bus and waits for its answer. */
inline HelperAnswer requestHelper(const QString &verb, const QVariantMap &arguments)
{
    constexpr int answerLimitMs = 40000;
    const QString helper = QStringLiteral("org.nivra.kcm.adminevents");
    KAuth::Action action(helper + QLatin1Char('.') + verb);
    action.setHelperId(helper);
    action.setArguments(arguments);
    KAuth::ExecuteJob *const job = action.execute();
    job->setAutoDelete(false);
    QEventLoop loop;
    QObject::connect(job, &KJob::result, &loop, [&loop] { loop.exit(1); });
    // A request that is never answered should fail its test and not hold up all of them.
    QTimer::singleShot(answerLimitMs, &loop, [&loop] { loop.exit(0); });
    job->start();
    if (loop.exec() == 0) {
        return {false, -1, QStringLiteral("no answer at all"), {}};
    }
    const HelperAnswer answer{job->error() == 0, job->error(), job->errorText(), job->data()};
    delete job;
    return answer;
}
