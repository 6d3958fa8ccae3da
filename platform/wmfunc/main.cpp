// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <KLocalizedString>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QFile>
#include <QTextStream>

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUsage = 2 };

// Callers wait 30 seconds in all, and two services may be asked.
constexpr int replyLimitMs = 12000;

void complain(const QString &text)
{
    QTextStream(stderr) << text << '\n';
}

// The message bus library would look for the socket too, but takes it only when it belongs to the calling
// user. An elevated caller reaches into the session of the user who elevated it.
QDBusConnection sessionBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) {
        return QDBusConnection::sessionBus();
    }
    const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1String("/bus");
    const QString address = QLatin1String("unix:path=") + socket;
    // An absent socket must not make the library start a bus of its own.
    return QDBusConnection::connectToBus(QFile::exists(socket) ? address
                                                               : QStringLiteral("unix:path=/nonexistent"),
                                         QStringLiteral("session"));
}

QDBusError call(QDBusConnection bus, const QDBusMessage &message)
{
    if (!bus.isConnected()) {
        return bus.lastError().isValid()
            ? bus.lastError()
            : QDBusError(QDBusError::Disconnected, i18n("The message bus cannot be reached."));
    }
    const QDBusMessage reply = bus.call(message, QDBus::Block, replyLimitMs);
    return reply.type() == QDBusMessage::ErrorMessage ? QDBusError(reply) : QDBusError();
}

bool isAbsent(const QDBusConnection &bus, const QDBusError &error)
{
    return !bus.isConnected() || error.type() == QDBusError::ServiceUnknown
        || error.type() == QDBusError::UnknownObject || error.type() == QDBusError::UnknownMethod;
}

int reboot()
{
    const QDBusConnection session = sessionBus();
    const QDBusError sessionError
        = call(session,
               QDBusMessage::createMethodCall(QStringLiteral("org.kde.Shutdown"), QStringLiteral("/Shutdown"),
                                              QStringLiteral("org.kde.Shutdown"),
                                              QStringLiteral("logoutAndReboot")));
    if (!sessionError.isValid()) {
        return Done;
    }
    if (!isAbsent(session, sessionError)) {
        complain(i18n("The session manager did not reboot: %1", sessionError.message()));
        return Failed;
    }
    // Without a session manager nobody asks the applications to close, but the administrator did ask for a
    // reboot.
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Reboot"));
    message << true;
    message.setInteractiveAuthorizationAllowed(true);
    const QDBusError systemError = call(QDBusConnection::systemBus(), message);
    if (!systemError.isValid()) {
        return Done;
    }
    complain(i18n("No session manager answers: %1", sessionError.message()));
    complain(i18n("The login manager did not reboot: %1", systemError.message()));
    return Failed;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments == QStringList{QStringLiteral("ZEPWM_REBOOT")}) {
        return reboot();
    }
    complain(i18n("Usage: %1 ZEPWM_REBOOT\nAsks the session manager to end the session and to reboot.",
                  QStringLiteral("zep-wmfunc")));
    return WrongUsage;
}
