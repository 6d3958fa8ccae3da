# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""The way from the logging service to the users' sessions: the system message bus.

Each session's watcher owns a name below WATCHERS. An event goes as a signal to the watchers of the users concerned and
to nobody else; the bus lets root alone own SERVICE, so that a watcher knows whom to believe.

The signal "Event" has the arguments
  s   notification key of the event
  s   title
  s   icon name, or nothing
  s   format of the text: "{0}" stands for the first value, and so on
  as  names of the values
  as  values, as the record has them
"""

import threading
import time

import dbus
import dbus.bus
import dbus.lowlevel

SERVICE = "org.nivra.EventLog"
PATH = "/org/nivra/EventLog"
INTERFACE = "org.nivra.EventLog"
WATCHERS = "org.nivra.EventWatcher."

# For how long, in seconds, the list of watchers is good: a flood of events must not become one of questions.
WATCHERS_AGE = 1.0
# How long the bus itself may take to answer, in seconds.
ANSWER_LIMIT = 5.0


class EventBus:
    """One connection for all destinations, each of which works in a thread of its own.

    Failures are reported as dbus.DBusException.
    """

    def __init__(self):
        self._lock = threading.Lock()
        self._connection = None
        self._watchers = []
        self._watchers_until = 0.0

    def is_connected(self):
        with self._lock:
            return self._connection is not None and self._connection.get_is_connected()

    def connect(self):
        """Connects, unless that is done already."""
        with self._lock:
            if self._connection is not None and self._connection.get_is_connected():
                return
            self._drop()
            connection = dbus.bus.BusConnection(dbus.bus.BusConnection.TYPE_SYSTEM)
            # The library would end the whole logging service with the bus.
            connection.set_exit_on_disconnect(False)
            try:
                owned = connection.request_name(SERVICE, dbus.bus.NAME_FLAG_DO_NOT_QUEUE)
                if owned != dbus.bus.REQUEST_NAME_REPLY_PRIMARY_OWNER:
                    raise dbus.DBusException(f"another program owns the name {SERVICE}")
            except dbus.DBusException:
                connection.close()
                raise
            self._connection = connection

    def send(self, includes, arguments):
        """Sends an event to the watchers of all users for whose number includes(uid) is true."""
        with self._lock:
            if self._connection is None:
                raise dbus.DBusException("not connected to the message bus")
            try:
                for uid, address in self._current_watchers():
                    if includes(uid):
                        self._send_to(address, arguments)
                self._connection.flush()
            except dbus.DBusException:
                if not self._connection.get_is_connected():
                    self._drop()
                raise

    def _send_to(self, address, arguments):
        message = dbus.lowlevel.SignalMessage(PATH, INTERFACE, "Event")
        message.set_destination(address)
        message.append(*arguments, signature="ssssasas")
        self._connection.send_message(message)

    def _current_watchers(self):
        """Pairs of a user's number and the address of a connection, which is never given to another one."""
        now = time.monotonic()
        if now >= self._watchers_until:
            watchers = []
            for name in self._ask("ListNames"):
                if name.startswith(WATCHERS):
                    try:
                        address = str(self._ask("GetNameOwner", name))
                        watchers.append((int(self._ask("GetConnectionUnixUser", address)), address))
                    except dbus.DBusException:
                        if not self._connection.get_is_connected():
                            raise
                        # It has gone meanwhile.
            self._watchers = watchers
            self._watchers_until = now + WATCHERS_AGE
        return self._watchers

    def _ask(self, method, *arguments):
        return self._connection.call_blocking(
            dbus.bus.BUS_DAEMON_NAME,
            dbus.bus.BUS_DAEMON_PATH,
            dbus.bus.BUS_DAEMON_IFACE,
            method,
            "s" * len(arguments),
            arguments,
            timeout=ANSWER_LIMIT,
        )

    def _drop(self):
        if self._connection is not None:
            self._connection.close()
        self._connection = None
        self._watchers_until = 0.0
