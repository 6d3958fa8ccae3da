// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "archiveforge.h"
#include "auditsettingsstore.h"
#include "configtransfer.h"
#include "configwriter.h"
#include "fragmentstore.h"
#include "transfersample.h"

#include <QTemporaryDir>

/** Changes of every kind that the helper makes, on a sample of a whole configuration. */
namespace ChangeSample {

using namespace AdminEventsHelper;

inline QStringList kinds()
{
    return {QStringLiteral("write"), QStringLiteral("import"), QStringLiteral("notifications"),
            QStringLiteral("removal"), QStringLiteral("audit settings")};
}

/** A generation that is kept of the settings file, as prepare() leaves it. */
inline QString olderPath(const QString &root)
{
    return root + QLatin1String("/var/lib/adminevents/backup/nivra-syslog.conf.0000000001");
}

inline QByteArray olderGeneration(const QString &root)
{
    return getFile(olderPath(root));
}

inline bool prepare(const QString &root)
{
    const QString backups = QFileInfo(olderPath(root)).path();
    return TransferSample::fill(root) && QDir().mkpath(backups)
        && ::chmod(QFile::encodeName(backups).constData(), 0700) == 0 && putFile(olderPath(root), "older")
        && putFile(root + QLatin1String("/etc/syslog-ng/conf.d/mod-nivra-other.conf"),
                   sampleFragmentOf("other"))
        && putFile(root + QLatin1String("/etc/passwd"), "root:x:0:0::/root:/bin/sh\n")
        && putFile(root + QLatin1String("/etc/group"), "root:x:0:\n");
}

/** @param kind one of kinds(). */
inline Outcome carryOut(const QString &kind, const QString &root)
{
    if (kind == QLatin1String("write")) {
        return ConfigWriter(root).write({QStringLiteral("/etc/nivra-syslog.conf"), "{\"new\": {}}"});
    }
    if (kind == QLatin1String("import")) {
        const Result<ConfigTransfer::Report> report = ConfigTransfer(root).install(
            soundArchive({{"etc/nivra-syslog.conf", "{\"new\": {}}"},
                          {"etc/syslog-ng/conf.d/mod-nivra.conf", "log { };\n"},
                          {"etc/syslog-ng/conf.d/mod-nivra-new.conf", sampleFragmentOf("new")}}));
        return report.outcome();
    }
    if (kind == QLatin1String("notifications")) {
        FragmentWriteRequest request;
        request.fragments.insert(QStringLiteral("mod-nivra-a_b_c.conf"), sampleFragment("New"));
        request.fragments.insert(QStringLiteral("mod-nivra-new.conf"), sampleFragmentOf("new"));
        return FragmentStore(root).write(request);
    }
    if (kind == QLatin1String("removal")) {
        return FragmentStore(root).remove(
            {{QStringLiteral("mod-nivra-a_b_c.conf"), QStringLiteral("mod-nivra-other.conf")}});
    }
    return AuditSettingsStore(root).set(
        {SubjectType::Users, {{{QStringLiteral("root"), QStringLiteral("open")}, 3}}});
}

/** Fills in what the files hold before and after a change of a whole sample. @return false when it fails. */
inline bool findContents(const QString &kind, QMap<QString, QByteArray> &before,
                         QMap<QString, QByteArray> &after)
{
    const QTemporaryDir root;
    if (!prepare(root.path())) {
        return false;
    }
    before = TransferSample::contents(root.path());
    const bool isChanged = carryOut(kind, root.path()).ok();
    after = TransferSample::contents(root.path());
    return isChanged && before != after;
}

/** A change of another file, as the next request makes it: it puts right what an earlier one left. */
inline Outcome carryOutNext(const QString &root)
{
    const QString rotation = QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra");
    return ConfigWriter(root).write({rotation, TransferSample::files().value(rotation)});
}

/** Half-written files, and the notes of what a crash would have to put back. */
inline QStringList temporaryFilesBelow(const QString &root)
{
    QStringList found;
    const TreeSnapshot all = takeSnapshot(root);
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (it.key().contains(QLatin1String(".adminevents-"))
            || it.key().endsWith(QLatin1String("pending-changes"))) {
            found << it.key();
        }
    }
    return found;
}

} // namespace ChangeSample
