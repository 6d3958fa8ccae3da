// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

class PrivateBusPrivate;

/**
 * A message bus of the test's own that takes the place of the system bus: the real helper is activated on it
 * for a root directory of its own, and only the answer of the authorisation authority is staged
 * (python3-dbusmock).
 *
 * At most one object in a process may be started: the toolkit connects to the system bus once for ever. Start
 * it in initTestCase(), before anything asks for QDBusConnection::systemBus() or runs an action; a
 * QCoreApplication must exist.
 *
 * Destroy it last: the authority's client library ends the process when its event loop runs after the bus has
 * gone.
 *
 * Until setAllowed() or setAllowedActions() the authority refuses every action.
 */
class PrivateBus
{
public:
    /**
     * @param root an existing directory that the helper takes for "/"; when empty, a temporary one is made
     * that holds the directories etc, etc/audit/rules.d, etc/syslog-ng/conf.d and etc/logrotate.d and is
     *             removed with this object.
     * @param helperArguments appended to the helper's command line "--root DIR".
     * @param helperEnvironment variables added to what the helper inherits (e.g. "PATH").
     */
    explicit PrivateBus(const QString &root = QString(), const QStringList &helperArguments = {},
                        const QMap<QString, QString> &helperEnvironment = {});
    /** Stops the bus, the authority and a helper that still runs, and restores DBUS_SYSTEM_BUS_ADDRESS. */
    ~PrivateBus();

    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /**
     * Starts the bus and the authority and points this process at them (DBUS_SYSTEM_BUS_ADDRESS).
     * @return false when a part could not be started; errorString() then says which and why.
     */
    [[nodiscard]] bool start();

    /** The absolute path of the helper's root directory, without a trailing slash. */
    [[nodiscard]] QString root() const;

    /** The bus address, in the form that DBUS_SYSTEM_BUS_ADDRESS takes; empty before start(). */
    [[nodiscard]] QString address() const;

    /** Has the authority grant (true) or refuse (false) every action that setAllowedActions() did not name.
     */
    [[nodiscard]] bool setAllowed(bool allowed);

    /** Has the authority grant exactly these action identifiers, beside what setAllowed() says of the others.
     */
    [[nodiscard]] bool setAllowedActions(const QStringList &actions);

    /** The process id of the activated helper, or 0 while none runs. */
    [[nodiscard]] qint64 helperPid() const;

    /** What the last failed call failed of; empty after a success. */
    [[nodiscard]] QString errorString() const;

private:
    std::unique_ptr<PrivateBusPrivate> d;
};
