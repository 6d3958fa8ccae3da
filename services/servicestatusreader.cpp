// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "servicestatusreader.h"

ServiceStatusReader::ServiceStatusReader(QObject *parent)
    : QObject(parent)
{
    for (const Service service : {Auditd, SyslogNg}) {
        QProcess &question = m_questions.at(service);
        question.setStandardOutputFile(QProcess::nullDevice());
        question.setStandardErrorFile(QProcess::nullDevice());
        connect(&question, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
                [this, service](int code, QProcess::ExitStatus status) {
                    answered(service, status == QProcess::NormalExit && code == 0);
                });
        connect(&question, &QProcess::errorOccurred, this, [this, service](QProcess::ProcessError error) {
            // After any other error, it reports its end as well.
            if (error == QProcess::FailedToStart) {
                answered(service, false);
            }
        });
    }
}

ServiceStatusReader::~ServiceStatusReader()
{
    for (QProcess &question : m_questions) {
        question.disconnect(this);
        question.kill();
        question.waitForFinished();
    }
}

void ServiceStatusReader::read()
{
    if (m_pending > 0) {
        m_askAgain = true;
        return;
    }
    m_pending = ServiceCount;
    ask(SyslogNg);
    ask(Auditd);
}

void ServiceStatusReader::ask(Service service)
{
    const QString name = service == Auditd ? QStringLiteral("auditd") : QStringLiteral("syslog-ng");
    m_questions.at(service).start(QStringLiteral("systemctl"), {QStringLiteral("status"), name},
                                  QIODevice::NotOpen);
}

void ServiceStatusReader::answered(Service service, bool runs)
{
    m_runs.at(service) = runs;
    if (--m_pending > 0) {
        return;
    }
    if (m_askAgain) {
        m_askAgain = false;
        // What was just learnt may be out of date. Not at once: a process that reports a failure is not done
        // with it.
        QMetaObject::invokeMethod(this, &ServiceStatusReader::read, Qt::QueuedConnection);
        return;
    }
    Q_EMIT finished(m_runs[Auditd], m_runs[SyslogNg]);
}
