# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""The python destination that has the users notified of an event; see "python destination" in syslog-ng's manual."""

import sys

import dbus

from .event_bus import EventBus
from .recipients import Recipients

try:
    from syslogng import LogDestination
except ImportError:  # outside syslog-ng, as in tests
    LogDestination = object

# Where a record names users and groups; the audit daemon's records name the user who logged in.
USER_FIELDS = ("user", "login_user")
GROUP_FIELDS = ("group_name", "group_id")

_bus = EventBus()


def _complain(text):
    # syslog-ng has its messages here, too, when the service manager runs it.
    print(f"nivra notification destination: {text}", file=sys.stderr, flush=True)


class NivraSyslogNgDestination(LogDestination):
    """Hands the records that reach it over to the session watchers.

    Options, all texts:
      destination_type  "dbus"
      message_type      the record's member below MSG, without its "nivra-"
      event_user        "@all", a user's name, or nothing
      event_group       "@all", a group's name, or nothing; see Recipients
      event_id          notification key of the event
      event_title       title of the notification
      event_icon        icon name, or nothing
      event_params      names of the values to show, joined with ","
      event_format      how they are shown, such as "{0} {1}"
    """

    def init(self, options):
        if options.get("destination_type") != "dbus":
            _complain('the option "destination_type" must be "dbus"')
            return False
        for name in ("message_type", "event_id"):
            if not options.get(name):
                _complain(f'the option "{name}" is missing')
                return False
        self._prefix = "MSG.nivra-" + options["message_type"] + "."
        self._recipients = Recipients(options.get("event_user", ""), options.get("event_group", ""))
        self._names = [name for name in options.get("event_params", "").split(",") if name]
        self._fixed = [
            options["event_id"],
            options.get("event_title", ""),
            options.get("event_icon", ""),
            options.get("event_format", ""),
        ]
        self._complained = False
        return True

    def open(self):
        # Not connected is no fault at the start, when the bus may come up later: syslog-ng tries again.
        try:
            _bus.connect()
        except dbus.DBusException as error:
            self._complain_once(f"no connection to the message bus: {error}")
            return False
        self._complained = False
        return True

    def is_opened(self):
        return _bus.is_connected()

    def close(self):
        # Other destinations use the connection.
        pass

    def deinit(self):
        pass

    def send(self, msg):
        try:
            values = [self._value(msg, name) for name in self._names]
            users, groups = self._named_by(msg)
            _bus.send(
                lambda uid: self._recipients.include(uid, users, groups),
                [*self._fixed, dbus.Array(self._names, signature="s"), dbus.Array(values, signature="s")],
            )
        except dbus.DBusException as error:
            self._complain_once(f"an event was not delivered: {error}")
            return self._try_later() if not _bus.is_connected() else True
        except Exception as error:  # pylint: disable=broad-except
            # What goes wrong with one record would go wrong with it for ever.
            self._complain_once(f"a record was left out: {error!r}")
            return True
        self._complained = False
        return True

    def _named_by(self, msg):
        if not self._recipients.depend_on_record:
            return (), ()
        users = filter(None, (self._value(msg, field) for field in USER_FIELDS))
        groups = filter(None, (self._value(msg, field) for field in GROUP_FIELDS))
        return tuple(users), tuple(groups)

    def _value(self, msg, name):
        """The text of a field; nothing when the record lacks it. No other names are asked for: some end the daemon."""
        try:
            value = msg[self._prefix + name]
        except KeyError:
            return ""
        if isinstance(value, bytes):
            value = value.decode("utf-8", "replace")
        # The bus carries no such character.
        return value.replace("\0", "\N{REPLACEMENT CHARACTER}")

    def _try_later(self):
        return getattr(self, "NOT_CONNECTED", False)

    def _complain_once(self, text):
        if not self._complained:
            _complain(text)
            self._complained = True
