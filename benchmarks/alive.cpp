// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "session.h"
#include "site.h"

#include <systempaths.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <cstdio>

namespace {
constexpr double limit = 100; // ms

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size();
}

/// A stand-in for "getent" that lists the accounts of the site, first on the search path.
bool stageAccounts(const QString &directory, const Accounts &accounts)
{
    const auto list = [&directory](const char *database, const QStringList &names) {
        return write(directory + QLatin1Char('/') + QLatin1String(database),
                     names.join(QLatin1String(":x\n")).toUtf8() + ":x\n");
    };
    const QString getent = directory + QStringLiteral("/getent");
    const QByteArray path = QFile::encodeName(directory) + ':' + qgetenv("PATH");
    return list("passwd", accounts.users) && list("group", accounts.groups)
        && write(getent, "#!/bin/sh\nexec cat \"${0%/*}/$1\"\n")
        && QFile::setPermissions(getent, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
        && qputenv("PATH", path);
}

/// Says of every event how its notifications are presented; without that, no dialog opens.
bool writeNotifications(const QString &path, int events)
{
    QByteArray text;
    for (int i = 0; i < events; ++i) {
        text += QStringLiteral("[Event/message%1]\nAction=Popup\n").arg(i, 4, 10, QLatin1Char('0')).toUtf8();
    }
    return write(path, text);
}

/// Puts a large site in the place of what is installed below the sandbox's root.
bool moveIn(const QString &root, Site &site)
{
    constexpr SiteSize size{1000, 20, 200, 600};
    if (!site.makeLarge(size)) {
        return false;
    }
    const QString catalog = SystemPaths::resolve(SystemPaths::eventSettingsDirectory());
    const QString settings = SystemPaths::resolve(SystemPaths::eventSettingsFile());
    qputenv("ADMINEVENTS_ROOT", QFile::encodeName(root));
    const QString place = SystemPaths::resolve(SystemPaths::eventSettingsDirectory());
    QDir(place).removeRecursively();
    return QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), catalog, place}) == 0
        && QProcess::execute(QStringLiteral("cp"),
                             {settings, SystemPaths::resolve(SystemPaths::eventSettingsFile())})
        == 0
        && writeNotifications(
               root + QStringLiteral("/usr/share/knotifications5/nivra-event-watcher_site.notifyrc"),
               size.events)
        && stageAccounts(root + QStringLiteral("/accounts"), site.accounts());
}

const char *verdict(const Session::Act &act)
{
    if (act.gap.wall <= limit) {
        return "met";
    }
    if (act.mayTakeLonger && act.busySign) {
        return "longer, with a sign of it";
    }
    return act.gap.processor <= limit ? "waited" : "MISSED";
}

void print(const std::vector<Session::Act> &acts)
{
    std::printf("%-44s %14s %14s %9s %5s\n", "longest time without the event loop", "on the wall", "worked",
                "in all", "sign");
    for (const Session::Act &act : acts) {
        std::printf("%-44s %11.1f ms %11.1f ms %6.0f ms %5s  %s\n", act.name.c_str(), act.gap.wall,
                    act.gap.processor, act.total, act.busySign ? "yes" : "", verdict(act));
    }
    const auto missed = std::count_if(acts.begin(), acts.end(), [](const Session::Act &act) {
        return act.gap.processor > limit && !(act.mayTakeLonger && act.busySign);
    });
    std::printf("%d of %d acts let the event loop turn within %.0f ms. \"Waited\": that long only because "
                "another program had the processor, or was waited for.\n",
                static_cast<int>(acts.size()) - static_cast<int>(missed), static_cast<int>(acts.size()),
                limit);
}
} // namespace

/// Prints, act by act, how long the page keeps the event loop on a large site. Works inside a sandbox only.
/// Fails only where it cannot measure.
int main(int argc, char *argv[])
{
    const QString root = QFile::decodeName(qgetenv("ADMINEVENTS_ROOT"));
    if (root.isEmpty() || qEnvironmentVariableIsEmpty("ADMINEVENTS_SANDBOX")) {
        std::fputs("Works only inside a sandbox.\n", stderr);
        return 1;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);
    Site site;
    if (!moveIn(root, site)) {
        std::fputs("The site cannot be written.\n", stderr);
        return 1;
    }
    Session session;
    const QString error = session.run();
    print(session.acts());
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    return 0;
}
