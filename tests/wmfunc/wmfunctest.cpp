// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "leashedprocess.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

/** Stands for the session manager: counts requests, and refuses them on demand. */
class FakeShutdown : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.Shutdown")

public:
    int requests = 0;
    bool refuse = false;

public Q_SLOTS:
    void logoutAndReboot()
    {
        ++requests;
        if (refuse) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("locked down"));
        }
    }
};

/** Stands for the login manager. */
class FakeLogin : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    QList<bool> requests;

public Q_SLOTS:
    void Reboot(bool interactive) { requests << interactive; }
};

/** Runs the program against two private buses of its own; the machine's buses are never within its reach. */
class WmfuncTest : public QObject
{
    Q_OBJECT

private:
    struct Bus
    {
        QTemporaryDir directory;
        LeashedProcess daemon;
        QString address;
        QString name;
    };

    std::unique_ptr<Bus> m_session;
    std::unique_ptr<Bus> m_system;
    int m_exitCode = -1;
    QString m_messages;

    static std::unique_ptr<Bus> startBus(const QString &name)
    {
        auto bus = std::make_unique<Bus>();
        const QString socket = bus->directory.filePath(QStringLiteral("bus"));
        bus->name = name;
        bus->address = QLatin1String("unix:path=") + socket;
        bus->daemon.start(QStringLiteral("dbus-daemon"),
                          {QStringLiteral("--session"), QStringLiteral("--nofork"),
                           QStringLiteral("--nopidfile"), QStringLiteral("--address=") + bus->address});
        const bool up = QTest::qWaitFor([&socket] { return QFile::exists(socket); }, 5000);
        return up ? std::move(bus) : nullptr;
    }

    static bool offer(const Bus &bus, const QString &service, const QString &path, QObject *object)
    {
        QDBusConnection connection = QDBusConnection::connectToBus(bus.address, bus.name);
        return connection.registerObject(path, object, QDBusConnection::ExportAllSlots)
            && connection.registerService(service);
    }

    bool offerShutdown(FakeShutdown &shutdown)
    {
        return offer(*m_session, QStringLiteral("org.kde.Shutdown"), QStringLiteral("/Shutdown"), &shutdown);
    }

    bool offerLogin(FakeLogin &login)
    {
        return offer(*m_system, QStringLiteral("org.freedesktop.login1"),
                     QStringLiteral("/org/freedesktop/login1"), &login);
    }

    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_session->address);
        environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), m_system->address);
        return environment;
    }

    void run(const QProcessEnvironment &environment,
             const QStringList &arguments = {QStringLiteral("ZEPWM_REBOOT")})
    {
        LeashedProcess program;
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(WMFUNC), arguments);
        // The fakes answer from this process's event loop, so there must be no blocking wait.
        QVERIFY(QTest::qWaitFor([&program] { return program.state() == QProcess::NotRunning; }, 20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        m_exitCode = program.exitCode();
        m_messages = QString::fromLocal8Bit(program.readAll());
    }

private Q_SLOTS:
    void init()
    {
        m_session = startBus(QStringLiteral("session-of-test"));
        m_system = startBus(QStringLiteral("system-of-test"));
        QVERIFY(m_session && m_system);
    }

    void cleanup()
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("session-of-test"));
        QDBusConnection::disconnectFromBus(QStringLiteral("system-of-test"));
        m_session.reset();
        m_system.reset();
    }

    void asksTheSessionManagerAndNobodyElse()
    {
        FakeShutdown shutdown;
        FakeLogin login;
        QVERIFY(offerShutdown(shutdown) && offerLogin(login));
        run(environment());
        QCOMPARE(m_exitCode, 0);
        QCOMPARE(shutdown.requests, 1);
        QVERIFY(login.requests.isEmpty());
    }

    void findsTheSessionBusInTheRuntimeDirectory()
    {
        FakeShutdown shutdown;
        QVERIFY(offerShutdown(shutdown));
        QProcessEnvironment elevated = environment();
        elevated.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        elevated.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_session->directory.path());
        run(elevated);
        QCOMPARE(m_exitCode, 0);
        QCOMPARE(shutdown.requests, 1);
    }

    void asksTheLoginManagerWhenThereIsNoSessionManager()
    {
        FakeLogin login;
        QVERIFY(offerLogin(login));
        run(environment());
        QCOMPARE(m_exitCode, 0);
        QCOMPARE(login.requests, QList<bool>{true});
    }

    void asksTheLoginManagerWhenThereIsNoSessionBus()
    {
        FakeLogin login;
        QVERIFY(offerLogin(login));
        QProcessEnvironment elevated = environment();
        elevated.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        elevated.insert(QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("/run/user/"));
        run(elevated);
        QCOMPARE(m_exitCode, 0);
        QCOMPARE(login.requests, QList<bool>{true});
    }

    void aRefusalOfTheSessionManagerIsFinal()
    {
        FakeShutdown shutdown;
        FakeLogin login;
        shutdown.refuse = true;
        QVERIFY(offerShutdown(shutdown) && offerLogin(login));
        run(environment());
        QCOMPARE(m_exitCode, 1);
        QVERIFY2(m_messages.contains(QLatin1String("locked down")), qPrintable(m_messages));
        QVERIFY(login.requests.isEmpty());
    }

    void saysSoWhenNobodyAnswers()
    {
        run(environment());
        QCOMPARE(m_exitCode, 1);
        QVERIFY2(m_messages.contains(QLatin1String("org.kde.Shutdown")), qPrintable(m_messages));
        QVERIFY2(m_messages.contains(QLatin1String("org.freedesktop.login1")), qPrintable(m_messages));
    }

    void saysSoWhenThereIsNoBusAtAll()
    {
        QProcessEnvironment bare = environment();
        bare.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                    QStringLiteral("unix:path=/nonexistent/session"));
        bare.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"),
                    QStringLiteral("unix:path=/nonexistent/system"));
        run(bare);
        QCOMPARE(m_exitCode, 1);
        QVERIFY(!m_messages.trimmed().isEmpty());
    }

    void refusesOtherArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList();
        QTest::newRow("unknown") << QStringList{QStringLiteral("ZEPWM_OTHER")};
        QTest::newRow("one too many") << QStringList{QStringLiteral("ZEPWM_REBOOT"), QStringLiteral("now")};
    }

    void refusesOtherArguments()
    {
        QFETCH(QStringList, arguments);
        FakeShutdown shutdown;
        FakeLogin login;
        QVERIFY(offerShutdown(shutdown) && offerLogin(login));
        run(environment(), arguments);
        QCOMPARE(m_exitCode, 2);
        QVERIFY2(m_messages.contains(QLatin1String("ZEPWM_REBOOT")), qPrintable(m_messages));
        QCOMPARE(shutdown.requests, 0);
        QVERIFY(login.requests.isEmpty());
    }
};

QTEST_GUILESS_MAIN(WmfuncTest)
#include "wmfunctest.moc"
