// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "processexecutor.h"

ProcessExecutor::ProcessExecutor()
{
    setProcessChannelMode(QProcess::MergedChannels);
}

ProcessExecutor::~ProcessExecutor()
{
    closeReadChannel(QProcess::StandardOutput);
    closeReadChannel(QProcess::StandardError);
    closeWriteChannel();
    close();
}

std::pair<int, QString> ProcessExecutor::execProcess(const QString &program, const QStringList &arguments,
                                                     int waitLimit)
{
    start(program, arguments, QIODevice::ReadWrite);
    const bool ended = waitForFinished(waitLimit);
    // The toolkit reports exit code 0 for a process that never ran.
    const int code = ended && exitStatus() == QProcess::NormalExit ? exitCode() : failed;
    const QByteArray output = readAll();
    return {code, QString::fromUtf8(output.constData())};
}
