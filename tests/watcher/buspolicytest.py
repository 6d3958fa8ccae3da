#!/usr/bin/python3 -I
# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""Tests who may do what on the system bus, with a bus of its own under the shipped policy.

Usage: buspolicytest.py DIRECTORY-OF-THE-DESTINATION
"""

import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
source = os.path.abspath(sys.argv.pop(1))
sys.path.insert(0, source)
if os.getuid() != 0:
    print("needs root, to be several users")
    sys.exit(0)
try:
    import dbus
    import dbus.bus
    import gi  # noqa: F401  pylint: disable=unused-import
except ImportError:
    print("needs python3-dbus and python3-gi")
    sys.exit(0)

# What Debian's own configuration of the system bus says, without its directories.
CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={directory}/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus"/>
  </policy>
  <include>{policy}</include>
</busconfig>
"""

OWNER = """
import sys, dbus, dbus.bus
bus = dbus.bus.BusConnection(sys.argv[1])
try:
    print(bus.request_name(sys.argv[2]))
except dbus.DBusException as error:
    print(error.get_dbus_name())
"""

WATCHER = """
import sys, dbus, dbus.bus, dbus.mainloop.glib
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.bus.BusConnection(sys.argv[1])
loop = GLib.MainLoop()
def receive(*arguments):
    print(*arguments[:2], *arguments[5], flush=True)
    loop.quit()
bus.add_signal_receiver(receive, "Event", "org.nivra.EventLog", bus_name="org.nivra.EventLog")
bus.request_name("org.nivra.EventWatcher." + sys.argv[2])
print("ready", flush=True)
GLib.timeout_add(4000, loop.quit)
loop.run()
"""


class BusPolicyTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="adminevents-policy-")
        self.addCleanup(directory.cleanup)
        os.chmod(directory.name, 0o755)
        configuration = directory.name + "/bus.conf"
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(
                CONFIGURATION.format(directory=directory.name, policy=os.path.join(source, "org.nivra.EventLog.conf"))
            )
        daemon = subprocess.Popen(
            ["dbus-daemon", "--nofork", "--nopidfile", "--print-address=1", "--config-file=" + configuration],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        self.addCleanup(self.end, daemon)
        self.address = f"unix:path={directory.name}/bus"
        self.assertTrue(daemon.stdout.readline(), "the bus did not start")

    @staticmethod
    def end(process):
        process.terminate()
        process.wait()
        process.stdout.close()

    def python(self, uid, script, argument):
        process = subprocess.Popen(
            ["/usr/bin/python3", "-I", "-c", script, self.address, argument],
            user=uid,
            group=uid,
            extra_groups=[],
            stdout=subprocess.PIPE,
            text=True,
        )
        self.addCleanup(self.end, process)
        return process

    def owned(self, uid, name):
        return self.python(uid, OWNER, name).communicate(timeout=20)[0].strip()

    def test_root_alone_may_be_the_logging_service(self):
        self.assertEqual(self.owned(0, "org.nivra.EventLog"), "1")
        self.assertEqual(self.owned(65534, "org.nivra.EventLog"), "org.freedesktop.DBus.Error.AccessDenied")

    def test_every_user_may_watch_and_own_nothing_else(self):
        self.assertEqual(self.owned(65534, "org.nivra.EventWatcher.u65534_p1"), "1")
        for name in ("org.nivra.EventWatcherX", "org.nivra.Other"):
            self.assertEqual(self.owned(65534, name), "org.freedesktop.DBus.Error.AccessDenied", name)

    def test_an_event_reaches_the_users_meant_and_nobody_else(self):
        from syslog_ng_mod_nivra.event_bus import EventBus

        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = self.address
        watchers = {uid: self.python(uid, WATCHER, f"u{uid}_p1") for uid in (0, 65534, 1)}
        for watcher in watchers.values():
            self.assertEqual(watcher.stdout.readline(), "ready\n")
        bus = EventBus()
        bus.connect()
        names = dbus.Array(["user"], signature="s")
        values = dbus.Array(["ivanov"], signature="s")
        bus.send(lambda uid: uid == 65534, ["aBC", "Title", "", "{0}", names, values])
        outputs = {uid: watcher.communicate(timeout=20)[0] for uid, watcher in watchers.items()}
        self.assertEqual(outputs, {0: "", 65534: "aBC Title ivanov\n", 1: ""})


if __name__ == "__main__":
    unittest.main()
