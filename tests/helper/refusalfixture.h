// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "archiveforge.h"
#include "helperrequest.h"
#include "privatebus.h"
#include "standinsystemctl.h"
#include "transfersample.h"

#include <QTemporaryDir>

#include <memory>
#include <sched.h>
#include <sys/mount.h>

/**
 * The helper on a bus of its own, below a root that is filled anew for each request. Where the process may,
 * the root is a small file system that no other process sees, so that it can be filled and locked.
 */
class RefusalFixture
{
public:
    /** @return false when a part could not be started; errorString() says which. */
    bool start()
    {
        m_isMounted = ::unshare(CLONE_NEWNS) == 0
            && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
            && ::mount("none", path().constData(), "tmpfs", 0, "size=400k") == 0;
        if (!m_systemctl.isReady() || !reset()) {
            m_error = QStringLiteral("the root directory cannot be filled");
            return false;
        }
        m_bus = std::make_unique<PrivateBus>(
            m_folder.path(), QStringList{QStringLiteral("--systemctl"), m_systemctl.program()});
        const bool started = m_bus->start() && m_bus->setAllowed(true);
        m_error = m_bus->errorString();
        return started;
    }

    void stop()
    {
        m_bus.reset();
        if (m_isMounted) {
            ::umount2(path().constData(), MNT_DETACH);
        }
    }

    /** Whether the root is a file system of its own. */
    bool isMounted() const { return m_isMounted; }
    bool setReadOnly(bool readOnly) const
    {
        return ::mount("none", path().constData(), nullptr, MS_REMOUNT | (readOnly ? MS_RDONLY : 0),
                       "size=400k")
            == 0;
    }

    /** A whole configuration, accounts, an empty backup directory and an archive to import and export. */
    bool reset() const
    {
        const QStringList entries
            = QDir(root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QString &entry : entries) {
            const QFileInfo info(root() + QLatin1Char('/') + entry);
            if (info.isDir() && !info.isSymLink() ? !QDir(info.filePath()).removeRecursively()
                                                  : !QFile::remove(info.filePath())) {
                return false;
            }
        }
        const QString backups = root() + QLatin1String("/var/lib/adminevents/backup");
        return TransferSample::fill(root()) && QDir().mkpath(backups)
            && ::chmod(QFile::encodeName(backups).constData(), 0700) == 0
            && putFile(root() + QLatin1String("/etc/passwd"), "root:x:0:0:root:/root:/bin/sh\n")
            && putFile(root() + QLatin1String("/etc/group"), "root:x:0:\n")
            && putFile(archive(), soundArchive(archiveFiles()));
    }

    /** What an import of the archive changes: every kind of file. */
    static QList<ForgedEntry> archiveFiles()
    {
        return {{"etc/nivra-syslog.conf", "{\"imported\": {}}"},
                {"etc/audit/rules.d/nivra-syslog.rules", "-w /imported -p wa -k imported\n"},
                {"etc/syslog-ng/conf.d/mod-nivra.conf", "log { };\n"},
                {"etc/logrotate.d/syslog-ng-mod-nivra", "/var/log/imported { daily }\n"},
                {"etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf", sampleFragment("Imported")}};
    }

    /** The verbs of the actions that are installed. */
    static QStringList verbs()
    {
        const QByteArray start = "[org.nivra.kcm.adminevents.";
        QStringList verbs;
        const QList<QByteArray> lines = getFile(QStringLiteral(ACTIONS)).split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith(start) && line.endsWith(']')) {
                verbs << QString::fromLatin1(line.mid(start.size()).chopped(1));
            }
        }
        return verbs;
    }

    /** Arguments that are as they should be, none for a verb not known here. @param target for writeconfig.
     */
    QVariantMap sound(const QString &verb,
                      const QString &target = QStringLiteral("/etc/nivra-syslog.conf")) const
    {
        const QString fragment = QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-a_b_c.conf");
        const QString operation = QStringLiteral("open");
        if (verb == QLatin1String("writeconfig")) {
            return {{QStringLiteral("action"), QStringLiteral("writeConfig")},
                    {QStringLiteral("path"), target},
                    {QStringLiteral("content"), contentFor(target)}};
        }
        if (verb == QLatin1String("exportconfig")) {
            return {{QStringLiteral("output"), archive()}};
        }
        if (verb == QLatin1String("importconfig")) {
            return {{QStringLiteral("input"), archive()}};
        }
        if (verb == QLatin1String("loggingservicectl")) {
            return {{QStringLiteral("cmd"), QStringLiteral("stop")}};
        }
        if (verb == QLatin1String("getauditsettings")) {
            return {{QStringLiteral("auditType"), 1},
                    {QStringLiteral("auditIDs"), QStringList{operation}},
                    {QStringLiteral("list"), QStringList{QStringLiteral("root")}}};
        }
        if (verb == QLatin1String("setauditsettings")) {
            return {{QStringLiteral("AUDIT_TYPE"), 1}, {QLatin1String("root/") + operation, 3}};
        }
        if (verb == QLatin1String("writenotificationconfigs")) {
            return {{QStringLiteral("notifications"),
                     QVariantMap{{fragment, QString::fromUtf8(sampleFragment("Other title"))}}}};
        }
        if (verb == QLatin1String("removenotificationconfigs")) {
            return {{QStringLiteral("paths"), QStringList{fragment}}};
        }
        return {};
    }

    static QByteArray contentFor(const QString &target)
    {
        for (const ForgedEntry &entry : archiveFiles()) {
            if ('/' + entry.name == target.toUtf8()) {
                return entry.content;
            }
        }
        return {};
    }

    QString root() const { return m_folder.path(); }
    QString archive() const { return root() + QLatin1String("/archive.tar.gz"); }
    TreeSnapshot snapshot() const { return takeSnapshot(root()); }
    QStringList serviceCalls() const { return m_systemctl.calls(); }
    bool forgetServiceCalls() { return m_systemctl.behave(""); }
    QString errorString() const { return m_error; }

private:
    QByteArray path() const { return QFile::encodeName(m_folder.path()); }

    QTemporaryDir m_folder;
    StandInSystemctl m_systemctl;
    std::unique_ptr<PrivateBus> m_bus;
    QString m_error;
    bool m_isMounted = false;
};
