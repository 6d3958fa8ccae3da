// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "privatebus.h"

#include "leashedprocess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>

namespace {

constexpr int startLimitMs = 15000;
const char addressVariable[] = "DBUS_SYSTEM_BUS_ADDRESS";

QString helperId()
{
    return QStringLiteral("org.nivra.kcm.adminevents");
}
QString authorityService()
{
    return QStringLiteral("org.freedesktop.PolicyKit1");
}

// A session-type bus starts services itself, as the user who runs it; the policy allows every user, for the
// authority may run as one of its own.
QString busConfig(const QString &socket, const QString &serviceDirectory)
{
    return QStringLiteral(
               "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
               " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
               "<busconfig>\n"
               "  <type>session</type>\n"
               "  <listen>unix:path=%1</listen>\n"
               "  <auth>EXTERNAL</auth>\n"
               "  <servicedir>%2</servicedir>\n"
               "  <policy context=\"default\">\n"
               "    <allow user=\"*\"/>\n"
               "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
               "    <allow eavesdrop=\"true\"/>\n"
               "    <allow own=\"*\"/>\n"
               "  </policy>\n"
               "  <limit name=\"max_incoming_bytes\">1000000000</limit>\n"
               "  <limit name=\"max_outgoing_bytes\">1000000000</limit>\n"
               "  <limit name=\"max_message_size\">100000000</limit>\n"
               "</busconfig>\n")
        .arg(socket.toHtmlEscaped(), serviceDirectory.toHtmlEscaped());
}

// The Exec line is unescaped once as a value of the file and then split like a shell command.
QString execWord(QString word)
{
    word.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    word.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    return QLatin1Char('\'') + word + QLatin1Char('\'');
}

QString serviceFile(const QStringList &command)
{
    QStringList words;
    for (const QString &word : command) {
        words << execWord(word);
    }
    return QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n")
        .arg(helperId(), words.join(QLatin1Char(' ')));
}

bool writeText(const QString &path, const QString &text)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

class PrivateBusPrivate
{
public:
    bool fail(const QString &text)
    {
        error = text;
        return false;
    }
    bool prepareDirectories();
    bool startBus();
    bool startAuthority();
    bool tellAuthority(const QString &method, const QVariant &argument);
    QDBusConnection connection() const { return QDBusConnection(connectionName); }
    void stop();

    QString root;
    QStringList helperArguments;
    QMap<QString, QString> helperEnvironment;
    QString address;
    QString error;
    QString connectionName;
    QByteArray formerAddress;
    bool hadFormerAddress = false;
    bool pointsHere = false;
    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<LeashedProcess> bus;
    std::unique_ptr<LeashedProcess> authority;
};

bool PrivateBusPrivate::prepareDirectories()
{
    directory = std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String("/adminevents-bus-XXXXXX"));
    if (!directory->isValid()) {
        return fail(QStringLiteral("no temporary directory: %1").arg(directory->errorString()));
    }
    const QDir base(directory->path());
    if (root.isEmpty()) {
        root = base.filePath(QStringLiteral("root"));
        for (const char *path : {"etc/audit/rules.d", "etc/syslog-ng/conf.d", "etc/logrotate.d"}) {
            if (!base.mkpath(QLatin1String("root/") + QLatin1String(path))) {
                return fail(QStringLiteral("cannot make %1 below %2").arg(QLatin1String(path), root));
            }
        }
    } else if (!QDir(root).exists()) {
        return fail(QStringLiteral("the root directory %1 does not exist").arg(root));
    }
    root = QDir::cleanPath(QDir(root).absolutePath());
    const QString services = base.filePath(QStringLiteral("services"));
    const QString socket = base.filePath(QStringLiteral("bus"));
    const QStringList command
        = QStringList{QStringLiteral(ADMINEVENTS_HELPER_PATH), QStringLiteral("--root"), root}
        + helperArguments;
    address = QLatin1String("unix:path=") + socket;
    if (!base.mkpath(services)
        || !writeText(services + QLatin1Char('/') + helperId() + QLatin1String(".service"),
                      serviceFile(command))
        || !writeText(base.filePath(QStringLiteral("bus.conf")), busConfig(socket, services))) {
        return fail(QStringLiteral("cannot write the bus configuration below %1").arg(base.path()));
    }
    return true;
}

bool PrivateBusPrivate::startBus()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = helperEnvironment.cbegin(); it != helperEnvironment.cend(); ++it) {
        environment.insert(it.key(), it.value());
    }
    environment.insert(QLatin1String(addressVariable), address);
    bus = std::make_unique<LeashedProcess>();
    bus->setProcessEnvironment(environment);
    bus->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    bus->start(QStringLiteral("dbus-daemon"),
               {QLatin1String("--config-file=") + directory->filePath(QStringLiteral("bus.conf")),
                QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                QStringLiteral("--print-address=1")});
    // It prints the address when it listens.
    if (!bus->waitForStarted(startLimitMs) || !bus->waitForReadyRead(startLimitMs)) {
        return fail(QStringLiteral("dbus-daemon did not start: %1").arg(bus->errorString()));
    }
    connectionName = QStringLiteral("adminevents-private-bus");
    if (!QDBusConnection::connectToBus(address, connectionName).isConnected()) {
        return fail(
            QStringLiteral("no connection to %1: %2").arg(address, connection().lastError().message()));
    }
    return true;
}

bool PrivateBusPrivate::startAuthority()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(addressVariable), address);
    authority = std::make_unique<LeashedProcess>();
    authority->setProcessEnvironment(environment);
    authority->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    authority->setStandardOutputFile(QProcess::nullDevice());
    // By its path and isolated: another Python may come first, and only the system's has the module.
    authority->start(QStringLiteral("/usr/bin/python3"),
                     {QStringLiteral("-I"), QStringLiteral("-m"), QStringLiteral("dbusmock"),
                      QStringLiteral("--system"), QStringLiteral("--template"), QStringLiteral("polkitd")});
    if (!authority->waitForStarted(startLimitMs)) {
        return fail(QStringLiteral("/usr/bin/python3 did not start: %1").arg(authority->errorString()));
    }
    const QDeadlineTimer deadline(startLimitMs);
    while (!connection().interface()->isServiceRegistered(authorityService())) {
        if (authority->waitForFinished(10)) {
            return fail(
                QStringLiteral("the staged authority ended with code %1; is python3-dbusmock installed?")
                    .arg(authority->exitCode()));
        }
        if (deadline.hasExpired()) {
            return fail(QStringLiteral("the staged authority did not appear on the bus"));
        }
    }
    // The name is taken before the template is loaded: the first answered call shows that it is.
    while (!tellAuthority(QStringLiteral("AllowUnknown"), false)) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::msleep(10);
    }
    return true;
}

bool PrivateBusPrivate::tellAuthority(const QString &method, const QVariant &argument)
{
    if (!authority) {
        return fail(QStringLiteral("the bus is not started"));
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        authorityService(), QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
        QStringLiteral("org.freedesktop.DBus.Mock"), method);
    message << argument;
    const QDBusMessage reply = connection().call(message);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return fail(
            QStringLiteral("the staged authority did not take %1: %2").arg(method, reply.errorMessage()));
    }
    error.clear();
    return true;
}

void PrivateBusPrivate::stop()
{
    if (!connectionName.isEmpty()) {
        QDBusConnection::disconnectFromBus(connectionName);
        connectionName.clear();
    }
    authority.reset();
    bus.reset();
}

PrivateBus::PrivateBus(const QString &root, const QStringList &helperArguments,
                       const QMap<QString, QString> &helperEnvironment)
    : d(std::make_unique<PrivateBusPrivate>())
{
    d->root = root;
    d->helperArguments = helperArguments;
    d->helperEnvironment = helperEnvironment;
}

PrivateBus::~PrivateBus()
{
    d->stop();
    if (!d->pointsHere) {
        return;
    }
    if (d->hadFormerAddress) {
        qputenv(addressVariable, d->formerAddress);
    } else {
        qunsetenv(addressVariable);
    }
}

bool PrivateBus::start()
{
    static bool startedOnce = false;
    if (startedOnce) {
        return d->fail(QStringLiteral("a process can be pointed at one private bus only"));
    }
    if (!d->prepareDirectories() || !d->startBus() || !d->startAuthority()) {
        d->stop();
        return false;
    }
    startedOnce = true;
    d->pointsHere = true;
    d->hadFormerAddress = qEnvironmentVariableIsSet(addressVariable);
    d->formerAddress = qgetenv(addressVariable);
    qputenv(addressVariable, d->address.toLocal8Bit());
    d->error.clear();
    return true;
}

QString PrivateBus::root() const
{
    return d->root;
}

QString PrivateBus::address() const
{
    return d->address;
}

bool PrivateBus::setAllowed(bool allowed)
{
    return d->tellAuthority(QStringLiteral("AllowUnknown"), allowed);
}

bool PrivateBus::setAllowedActions(const QStringList &actions)
{
    return d->tellAuthority(QStringLiteral("SetAllowed"), actions);
}

qint64 PrivateBus::helperPid() const
{
    if (d->connectionName.isEmpty()) {
        return 0;
    }
    const QDBusReply<uint> pid = d->connection().interface()->servicePid(helperId());
    return pid.isValid() ? pid.value() : 0;
}

QString PrivateBus::errorString() const
{
    return d->error;
}
