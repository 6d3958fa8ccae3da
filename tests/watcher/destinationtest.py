#!/usr/bin/python3 -I
# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""Tests the python destination without syslog-ng. Usage: destinationtest.py DIRECTORY-OF-THE-PACKAGE"""

import contextlib
import grp
import io
import os
import pwd
import sys
import unittest
from unittest import mock

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv.pop(1))
try:
    import dbus
except ImportError:
    print("needs python3-dbus")
    sys.exit(0)

from syslog_ng_mod_nivra import nivra_syslog_ng_destination as destination
from syslog_ng_mod_nivra.recipients import Recipients

USERS = {"root": (0, 0), "ivanov": (1000, 1000), "petrov": (1001, 50), "1000": (1002, 1002)}
GROUPS = {"nivra-admin": (50, ["ivanov"]), "root": (0, [])}


def passwd(name):
    uid, gid = USERS[name]
    return mock.Mock(pw_name=name, pw_uid=uid, pw_gid=gid)


def passwd_by_number(uid):
    for name, numbers in USERS.items():
        if numbers[0] == uid:
            return passwd(name)
    raise KeyError(uid)


def group_list(name, gid):
    return [gid] + [number for number, members in GROUPS.values() if name in members]


class StagedAccounts(unittest.TestCase):
    def setUp(self):
        stack = contextlib.ExitStack()
        self.addCleanup(stack.close)
        for module, function, replacement in (
            (pwd, "getpwnam", passwd),
            (pwd, "getpwuid", passwd_by_number),
            (grp, "getgrnam", lambda name: mock.Mock(gr_gid=GROUPS[name][0])),
            (os, "getgrouplist", group_list),
        ):
            stack.enter_context(mock.patch.object(module, function, replacement))


class RecipientsTest(StagedAccounts):
    def told(self, recipients, *record):
        return [uid for uid in (0, 1000, 1001, 1002, 4242) if recipients.include(uid, *record)]

    def test_everybody_is_told_even_unknown_users(self):
        self.assertEqual(self.told(Recipients("@all", "@all")), [0, 1000, 1001, 1002, 4242])

    def test_administrators_are_members_by_list_or_by_primary_group(self):
        self.assertEqual(self.told(Recipients("@all", "nivra-admin")), [1000, 1001])

    def test_a_group_that_does_not_exist_has_no_members(self):
        self.assertEqual(self.told(Recipients("@all", "nobody-has-it")), [])

    def test_user_and_group_restrict_each_other(self):
        self.assertEqual(self.told(Recipients("ivanov", "@all")), [1000])
        self.assertEqual(self.told(Recipients("ivanov", "nivra-admin")), [1000])
        self.assertEqual(self.told(Recipients("root", "nivra-admin")), [])

    def test_half_a_choice_tells_nobody(self):
        self.assertEqual(self.told(Recipients("", "nivra-admin"), ("ivanov",), ()), [])
        self.assertEqual(self.told(Recipients("@all", ""), ("ivanov",), ()), [])

    def test_the_record_names_users_and_groups(self):
        self.assertEqual(self.told(Recipients("", ""), ("ivanov",), ()), [1000])
        self.assertEqual(self.told(Recipients("", ""), ("1001",), ("root",)), [0, 1001])
        self.assertEqual(self.told(Recipients("", ""), (), ("50",)), [1000, 1001])
        self.assertEqual(self.told(Recipients("", ""), (), ()), [])

    def test_a_name_of_digits_is_a_name_first(self):
        self.assertEqual(self.told(Recipients("", ""), ("1000",), ()), [1002])

    def test_record_values_that_are_no_accounts_name_nobody(self):
        for value in ("", "@all", "unset", "4294967295", "-1", "0x0", "ivanov ", "\u0661", "$(id)", "a\nb"):
            self.assertEqual(self.told(Recipients("", ""), (value,), (value,)), [], value)


class DestinationTest(StagedAccounts):
    OPTIONS = {
        "destination_type": "dbus",
        "message_type": "auth",
        "event_user": "@all",
        "event_group": "@all",
        "event_id": "aBC",
        "event_title": 'A "title"',
        "event_icon": "",
        "event_params": "user,terminal",
        "event_format": "{0} {1}",
    }

    def setUp(self):
        super().setUp()
        self.bus = mock.Mock()
        self.bus.is_connected.return_value = True
        patch = mock.patch.object(destination, "_bus", self.bus)
        patch.start()
        self.addCleanup(patch.stop)

    def made(self, **changes):
        made = destination.NivraSyslogNgDestination()
        with contextlib.redirect_stderr(io.StringIO()):
            return made if made.init({**self.OPTIONS, **changes}) else None

    def sent(self, made, record):
        with contextlib.redirect_stderr(io.StringIO()) as errors:
            result = made.send(record)
        return result, errors.getvalue()

    def test_a_record_is_sent_with_its_values(self):
        record = {"MSG.nivra-auth.user": b"ivanov", "MSG.nivra-auth.terminal": "Вход".encode(), "MSG.nivra-auth.x": b""}
        self.assertEqual(self.sent(self.made(), record), (True, ""))
        (includes, arguments), _ = self.bus.send.call_args
        self.assertTrue(includes(4242))
        self.assertEqual(arguments, ["aBC", 'A "title"', "", "{0} {1}", ["user", "terminal"], ["ivanov", "Вход"]])

    def test_only_the_wanted_keys_are_read(self):
        record = mock.MagicMock()
        record.__getitem__.return_value = b""
        self.sent(self.made(), record)
        self.assertEqual(
            [call.args[0] for call in record.__getitem__.call_args_list],
            ["MSG.nivra-auth.user", "MSG.nivra-auth.terminal"],
        )
        self.assertEqual([name for name, _, _ in record.mock_calls if name != "__getitem__"], [])

    def test_what_the_bus_does_not_carry_is_replaced(self):
        record = {"MSG.nivra-auth.user": b"a\0b\xff\xfe"}
        self.assertEqual(self.sent(self.made(event_params="user"), record), (True, ""))
        (_, arguments), _ = self.bus.send.call_args
        self.assertEqual(arguments[5], ["a\ufffdb\ufffd\ufffd"])

    def test_without_parameters_there_are_no_values(self):
        self.assertEqual(self.sent(self.made(event_params="", event_format=""), {}), (True, ""))
        (_, arguments), _ = self.bus.send.call_args
        self.assertEqual(arguments[3:], ["", [], []])

    def test_the_recipients_are_those_whom_the_record_names(self):
        made = self.made(event_user="", event_group="", event_params="")
        record = {"MSG.nivra-auth.login_user": b"1001", "MSG.nivra-auth.group_name": b"root"}
        self.assertEqual(self.sent(made, record), (True, ""))
        (includes, _), _ = self.bus.send.call_args
        self.assertEqual([uid for uid in (0, 1000, 1001) if includes(uid)], [0, 1001])

    def test_options_that_are_missing_or_of_another_kind_are_refused(self):
        for changes in ({"destination_type": "mail"}, {"message_type": ""}, {"event_id": ""}):
            self.assertIsNone(self.made(**changes), changes)

    def test_a_lost_bus_keeps_the_record_and_a_lost_answer_does_not(self):
        self.bus.send.side_effect = dbus.DBusException("gone")
        self.bus.is_connected.return_value = False
        made = self.made(event_params="")
        result, errors = self.sent(made, {})
        self.assertFalse(result)
        self.assertIn("gone", errors)
        self.bus.is_connected.return_value = True
        self.assertEqual(self.sent(made, {}), (True, ""))

    def test_a_failure_is_said_once_until_it_is_over(self):
        self.bus.send.side_effect = ValueError("odd")
        made = self.made(event_params="")
        self.assertEqual([bool(self.sent(made, {})[1]) for _ in range(3)], [True, False, False])
        self.bus.send.side_effect = None
        self.sent(made, {})
        self.bus.send.side_effect = ValueError("odd")
        self.assertIn("odd", self.sent(made, {})[1])

    def test_a_bus_that_is_not_there_is_no_reason_to_end(self):
        self.bus.connect.side_effect = dbus.DBusException("no such socket")
        made = self.made()
        with contextlib.redirect_stderr(io.StringIO()) as errors:
            self.assertFalse(made.open())
            self.assertFalse(made.open())
        self.assertEqual(errors.getvalue().count("no such socket"), 1)


if __name__ == "__main__":
    unittest.main()
