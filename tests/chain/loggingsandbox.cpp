// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "loggingsandbox.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const char eventSocket[] = "run/syslog-ng/nivra-events";

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

LoggingSandbox::LoggingSandbox()
    : LoggingSandbox(QString())
{
}

LoggingSandbox::LoggingSandbox(const QString &root)
    : m_ownRoot(root.isEmpty() ? std::make_unique<QTemporaryDir>() : nullptr)
    , m_root(m_ownRoot ? m_ownRoot->path() : root)
{
    write(QStringLiteral("etc/syslog-ng/syslog-ng.conf"),
          contentsOf(QFileInfo(QStringLiteral(SYSTEMCTL)).path() + QLatin1String("/syslog-ng.conf.in"))
              .replace("@ROOT@", m_root.toUtf8()));
    write(QStringLiteral("etc/syslog-ng/conf.d/mod-nivra.conf"),
          contentsOf(QStringLiteral(SHIPPED_DATA "/syslog-ng/mod-nivra.conf")));
}

LoggingSandbox::~LoggingSandbox()
{
    stop();
}

bool LoggingSandbox::hasSyslogNg()
{
    const QStringList places{QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};
    return !QStandardPaths::findExecutable(QStringLiteral("syslog-ng"), places).isEmpty();
}

bool LoggingSandbox::hasPython()
{
    const QDir modules(QStringLiteral("/usr/lib/syslog-ng"));
    const QStringList versions = modules.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &version : versions) {
        if (!QDir(modules.filePath(version)).entryList({QStringLiteral("libmod-python*.so")}).isEmpty()) {
            return hasSyslogNg();
        }
    }
    return false;
}

QByteArray LoggingSandbox::contents(const QString &path) const
{
    return contentsOf(below(path));
}

bool LoggingSandbox::write(const QString &path, const QByteArray &text) const
{
    QFile file(below(path));
    return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)
        && file.write(text) == text.size();
}

bool LoggingSandbox::stageUsers(bool isAdministrator)
{
    QString library;
    const QDir libraries(QStringLiteral("/usr/lib"));
    const QStringList machines = libraries.entryList({QStringLiteral("*-linux-gnu*")}, QDir::Dirs);
    for (const QString &machine : machines) {
        const QString path = libraries.filePath(machine + QLatin1String("/libnss_wrapper.so"));
        library = QFile::exists(path) ? path : library;
    }
    if (library.isEmpty()) {
        return false;
    }
    write(QStringLiteral("passwd"),
          "tester:x:" + QByteArray::number(::getuid())
              + ":4242:Tester:/:/bin/sh\nother:x:4243:4243:Other:/:/bin/sh\n");
    write(QStringLiteral("group"),
          QByteArray("testers:x:4242:\nnivra-admin:x:4244:") + (isAdministrator ? "other,tester" : "other")
              + "\n");
    setVariable(QStringLiteral("LD_PRELOAD"), library);
    setVariable(QStringLiteral("NSS_WRAPPER_PASSWD"), below(QStringLiteral("passwd")));
    setVariable(QStringLiteral("NSS_WRAPPER_GROUP"), below(QStringLiteral("group")));
    return true;
}

QByteArray LoggingSandbox::serviceManager() const
{
    QByteArray script = "#!/bin/sh\n";
    const QStringList variables = m_environment.toStringList();
    for (const QString &variable : variables) {
        script += "export '" + variable.toLocal8Bit() + "'\n";
    }
    return script + "exec '" SYSTEMCTL "' --sandbox '" + QFile::encodeName(m_root) + "' \"$@\"\n";
}

void LoggingSandbox::setOption(const QByteArray &option) const
{
    const QString path = QStringLiteral("etc/syslog-ng/syslog-ng.conf");
    write(path, contents(path).replace("\noptions { ", "\noptions { " + option + "; "));
}

int LoggingSandbox::control(const QString &operation)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral(SYSTEMCTL),
                  {QStringLiteral("--sandbox"), m_root, operation, QStringLiteral("syslog-ng")});
    const bool ended = process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit;
    m_output = process.readAll();
    return ended ? process.exitCode() : -1;
}

bool LoggingSandbox::start()
{
    if (control(QStringLiteral("start")) != 0) {
        return false;
    }
    const QDeadlineTimer deadline(10000);
    while (!QFileInfo::exists(below(QLatin1String(eventSocket)))) {
        if (deadline.hasExpired()) {
            m_output = "the event source did not appear";
            return false;
        }
        QThread::msleep(10);
    }
    return true;
}

void LoggingSandbox::stop()
{
    control(QStringLiteral("stop"));
}

bool LoggingSandbox::reload()
{
    QProcess process;
    process.start(QStringLiteral("syslog-ng-ctl"),
                  {QStringLiteral("reload"),
                   QLatin1String("--control=") + below(QStringLiteral("run/syslog-ng/syslog-ng.ctl"))});
    const bool ended = process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit;
    m_output = process.readAllStandardOutput();
    return ended && process.exitCode() == 0;
}

bool LoggingSandbox::isRunning()
{
    return control(QStringLiteral("status")) == 0;
}

bool LoggingSandbox::send(const QByteArray &record) const
{
    const QByteArray path = QFile::encodeName(below(QLatin1String(eventSocket)));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<size_t>(path.size()) >= sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const ssize_t sent = ::sendto(socket, record.constData(), static_cast<size_t>(record.size()), 0,
                                  reinterpret_cast<const sockaddr *>(&address), sizeof(address));
    ::close(socket);
    return sent == record.size();
}

QList<QByteArray> LoggingSandbox::logged() const
{
    QList<QByteArray> lines = contents(QStringLiteral("vortan/log/nivra/events/events.log")).split('\n');
    lines.removeLast(); // what follows the last line break
    return lines;
}
