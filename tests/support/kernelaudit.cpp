// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "kernelaudit.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>

#include <unistd.h>

namespace {

QString systemProgram(const char *name)
{
    return QStandardPaths::findExecutable(QLatin1String(name),
                                          {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool put(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

KernelAudit::KernelAudit()
    : m_auditctl(systemProgram("auditctl"))
    , m_augenrules(systemProgram("augenrules"))
    , m_auditd(systemProgram("auditd"))
    , m_obstacle(findObstacle())
{
}

QString KernelAudit::findObstacle()
{
    if (::geteuid() != 0) {
        return QStringLiteral("only root may change audit rules");
    }
    if (m_auditctl.isEmpty() || m_augenrules.isEmpty() || m_auditd.isEmpty()) {
        return QStringLiteral("the audit daemon is not installed");
    }
    m_enabledBefore = status("enabled");
    if (m_enabledBefore != "0" && m_enabledBefore != "1") {
        return QStringLiteral("the kernel lets nobody change audit rules here");
    }
    if (status("pid") != "0") {
        return QStringLiteral("an audit daemon of the machine's own is running");
    }
    if (!rules().isEmpty()) {
        return QStringLiteral("audit rules of the machine's own are in force");
    }
    // Containers may read the kernel's list and not change it.
    const QString probe = m_directory.filePath(QStringLiteral("probe"));
    const QByteArray said
        = run(m_auditctl, {QStringLiteral("-w"), probe, QStringLiteral("-k"), QStringLiteral("probe")});
    const bool taken = rules().size() == 1;
    run(m_auditctl, {QStringLiteral("-D")});
    return taken
        ? QString()
        : QStringLiteral("the kernel refuses audit rules here: ") + QString::fromUtf8(said.trimmed());
}

QString KernelAudit::start()
{
    const QString directory = m_directory.filePath(QStringLiteral("daemon"));
    QDir().mkpath(directory + QStringLiteral("/plugins.d"));
    const QByteArray place = QFile::encodeName(directory);
    if (!put(directory + QStringLiteral("/auditd.conf"),
             "local_events = yes\nwrite_logs = yes\nlog_format = RAW\nlog_group = root\nlog_file = " + place
                 + "/audit.log\nplugin_dir = " + place
                 + "/plugins.d\nflush = INCREMENTAL_ASYNC\nfreq = 1\nmax_log_file = 64\n"
                   "max_log_file_action = IGNORE\nspace_left = 2\nspace_left_action = IGNORE\n"
                   "admin_space_left = 1\nadmin_space_left_action = IGNORE\ndisk_full_action = IGNORE\n"
                   "disk_error_action = IGNORE\n")) {
        return QStringLiteral("the audit daemon's configuration could not be written");
    }
    m_started = true;
    m_daemon.setProcessChannelMode(QProcess::MergedChannels);
    m_daemon.start(m_auditd, {QStringLiteral("-n"), QStringLiteral("-c"), directory});
    const QDeadlineTimer deadline(10000);
    while (m_daemon.waitForStarted() && !deadline.hasExpired()) {
        if (status("enabled") == "1" && status("pid") == QByteArray::number(m_daemon.processId())) {
            return {};
        }
        QThread::msleep(20);
    }
    return QStringLiteral("the audit daemon did not start: ") + QString::fromUtf8(m_daemon.readAll());
}

KernelAudit::~KernelAudit()
{
    if (m_started) {
        // Asked to end, it takes itself off the kernel.
        m_daemon.terminate();
        m_daemon.waitForFinished(5000);
        m_daemon.stop();
        run(m_auditctl, {QStringLiteral("-D")});
        run(m_auditctl, {QStringLiteral("-e"), QString::fromLatin1(m_enabledBefore)});
    }
}

QString KernelAudit::augenrulesFor(const QString &root) const
{
    // The program knows its two places as words of its text.
    QByteArray text = content(m_augenrules);
    text.replace("=/etc/audit/", "=" + QFile::encodeName(root) + "/etc/audit/");
    const QString path = m_directory.filePath(QStringLiteral("augenrules"));
    const bool written = put(path, text)
        && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return written && text.contains(QFile::encodeName(root) + "/etc/audit/rules.d") ? path : QString();
}

QList<QByteArray> KernelAudit::rules() const
{
    QList<QByteArray> rules;
    for (const QByteArray &line : run(m_auditctl, {QStringLiteral("-l")}).split('\n')) {
        if (line.startsWith("-a") || line.startsWith("-w")) {
            rules << line;
        }
    }
    return rules;
}

QList<QByteArray> KernelAudit::keys() const
{
    QList<QByteArray> keys;
    for (const QByteArray &rule : rules()) {
        const int option = rule.indexOf(" -k ");
        const QByteArray key = option < 0 ? rule.mid(rule.indexOf("key=") + 4) : rule.mid(option + 4);
        if (!keys.contains(key)) {
            keys << key;
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

void KernelAudit::deleteRules() const
{
    run(m_auditctl, {QStringLiteral("-D")});
}

int KernelAudit::records(const QByteArray &key) const
{
    // A key with anything but plain ASCII stands there in hexadecimal.
    const bool plain
        = std::all_of(key.begin(), key.end(), [](char c) { return c > ' ' && c < 127 && c != '"'; });
    const QByteArray wanted = " key=" + (plain ? QByteArray('"' + key + '"') : key.toHex().toUpper());
    const QList<QByteArray> lines = recorded();
    return int(std::count_if(lines.begin(), lines.end(), [&wanted](const QByteArray &line) {
        return line.startsWith("type=SYSCALL ") && line.endsWith(wanted);
    }));
}

int KernelAudit::deletions() const
{
    const QList<QByteArray> lines = recorded();
    return int(std::count_if(lines.begin(), lines.end(), [](const QByteArray &line) {
        return line.startsWith("type=CONFIG_CHANGE ") && line.contains(" op=remove_rule ");
    }));
}

QList<QByteArray> KernelAudit::recorded() const
{
    return content(m_directory.filePath(QStringLiteral("daemon/audit.log"))).split('\n');
}

QByteArray KernelAudit::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished();
    return process.readAll();
}

QByteArray KernelAudit::status(const char *name) const
{
    for (const QByteArray &line : run(m_auditctl, {QStringLiteral("-s")}).split('\n')) {
        if (line.startsWith(name + QByteArray(" "))) {
            return line.mid(int(qstrlen(name)) + 1).trimmed();
        }
    }
    return {};
}
