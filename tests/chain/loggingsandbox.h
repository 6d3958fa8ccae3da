// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>

/**
 * A root directory with the shipped main logging configuration, on which the real syslog-ng of the machine
 * runs as an ordinary process. It is stopped with the object.
 */
class LoggingSandbox
{
public:
    LoggingSandbox();
    /** On a root directory that somebody else has made. */
    explicit LoggingSandbox(const QString &root);
    ~LoggingSandbox();
    LoggingSandbox(const LoggingSandbox &) = delete;
    LoggingSandbox &operator=(const LoggingSandbox &) = delete;

    [[nodiscard]] static bool hasSyslogNg();
    /** Whether syslog-ng has its python module. */
    [[nodiscard]] static bool hasPython();

    /** Absolute path of a file below the root, given without a leading slash. */
    [[nodiscard]] QString below(const QString &path) const { return m_root + QLatin1Char('/') + path; }
    [[nodiscard]] QByteArray contents(const QString &path) const;
    bool write(const QString &path, const QByteArray &text) const;

    /** A variable of the service's environment. */
    void setVariable(const QString &name, const QString &value) { m_environment.insert(name, value); }
    /**
     * Has the service see a user database of the test's own: the user who runs the test, as "tester", and the
     * group "nivra-admin" with another member.
     * @param isAdministrator whether "tester" is a member, too
     * @return false where the means for that are missing
     */
    [[nodiscard]] bool stageUsers(bool isAdministrator);
    /** A shell script that controls this service in its environment, called as systemctl is. */
    [[nodiscard]] QByteArray serviceManager() const;
    /** Adds a global option to the service's configuration. */
    void setOption(const QByteArray &option) const;

    /** Starts the service and waits for its event source, or says in output() why it does not. */
    [[nodiscard]] bool start();
    void stop();
    /** Has the running service read its configuration again, and waits until it has. */
    [[nodiscard]] bool reload();
    [[nodiscard]] bool isRunning();
    /** What the last call had to say. */
    [[nodiscard]] QByteArray output() const { return m_output; }

    /** Hands one record to the event source, as the programs that watch for events do. */
    [[nodiscard]] bool send(const QByteArray &record) const;
    /** The lines of the event log. */
    [[nodiscard]] QList<QByteArray> logged() const;

private:
    int control(const QString &operation);

    std::unique_ptr<QTemporaryDir> m_ownRoot;
    QString m_root;
    QProcessEnvironment m_environment;
    QByteArray m_output;
};
