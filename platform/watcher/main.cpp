// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventwatcher.h"

#include <KLocalizedString>

#include <QApplication>
#include <QDBusConnectionInterface>
#include <QTextStream>

namespace {

QString settingsFile()
{
    // The catalog library, which reads the file, follows the same variable.
    return qEnvironmentVariable("ADMINEVENTS_ROOT") + QStringLiteral("/etc/nivra-syslog.conf");
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("nivra-event-watcher"));
    QApplication::setQuitOnLastWindowClosed(false);

    QDBusConnection session = QDBusConnection::sessionBus();
    if (session.isConnected() && !session.registerService(QStringLiteral("org.nivra.EventWatcher"))) {
        // The session has its watcher.
        return 0;
    }
    NivraWatcher::EventWatcher watcher(settingsFile());
    const QString error = watcher.start(QDBusConnection::systemBus(), session);
    if (!error.isEmpty()) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    return QApplication::exec();
}
