#!/usr/bin/python3
"""Notifications, and what becomes of everything when the session bus goes away and comes back."""

import os
import socket
import sys
import time

from gi.repository import GLib

from support import BusTest, Watcher, call, connect, run, wait_until

NAME = "ORVPresetConfigurationChangedNotification"
PATH = "/org/orvane/DistributedNotifications"
INTERFACE = "org.orvane.DistributedNotifications"
DROP, COALESCE, HOLD, IMMEDIATELY = 1, 2, 3, 4


def send(name, path=PATH, interface=INTERFACE):
    connection = connect()
    connection.emit_signal(None, path, interface, name, None)
    connection.flush_sync(None)
    connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", None, None, 0, 5000, None)
    connection.close_sync(None)


def instead_of_bus(path):
    """A socket in the bus's place: whoever looks for the bus from now on comes here."""
    listener = socket.socket(socket.AF_UNIX)
    listener.bind(path + ".new")
    listener.listen()
    listener.settimeout(10)
    os.rename(path + ".new", path)
    return listener


class NotificationTest(BusTest):
    def observing(self, *behaviours):
        self.private_bus()
        probe = self.probe()
        for behaviour in behaviours:
            probe.ask(f"observe|{NAME}|{behaviour}", "observing")
        return probe

    def test_arrives_from_any_sender(self):
        probe = self.observing(COALESCE)
        for number in range(1, 4):
            send(NAME)
            wait_until(lambda number=number: probe.count("notified") == number, what=f"notification {number}")

    def test_other_names_paths_and_interfaces_do_not_count(self):
        probe = self.observing(COALESCE)
        send("SomethingElse")
        send(NAME, path="/org/orvane/Other")
        send(NAME, interface="org.orvane.Other")
        send(NAME)
        probe.expect("notified")
        probe.settle()
        self.assertEqual(probe.count("notified"), 1)

    def test_nothing_arrives_after_removal(self):
        probe = self.observing(COALESCE)
        probe.tell(f"ignore|{NAME}")
        probe.ask("observe|Marker|4", "observing")
        send(NAME)
        send("Marker")
        probe.expect("notified Marker")
        self.assertEqual(probe.count(f"notified {NAME}"), 0)

    def test_coalesces_while_suspended(self):
        for behaviour, expected in ((COALESCE, 1), (HOLD, 3), (DROP, 0)):
            with self.subTest(behaviour=behaviour):
                probe = self.observing(behaviour)
                probe.ask(f"observe|Marker|{IMMEDIATELY}", "observing")
                probe.tell("suspend")
                probe.settle()
                for _ in range(3):
                    send(NAME)
                send("Marker")
                probe.expect("notified Marker")
                self.assertEqual(probe.count(f"notified {NAME}"), 0)
                probe.tell("resume")
                probe.settle()
                self.assertEqual(probe.count(f"notified {NAME}"), expected)

    def test_posts(self):
        probe = self.observing(COALESCE)
        heard = []
        connection = connect()
        connection.signal_subscribe(None, INTERFACE, None, PATH, None, 0, lambda *rest: heard.append((rest[4], rest[5].unpack())))
        connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", None, None, 0, 5000, None)
        self.assertEqual(probe.ask(f"post|{NAME}", "posted"), "posted")
        probe.expect("notified")  # any sender, ourselves included
        wait_until(lambda: heard, what="the signal")
        self.assertEqual(heard, [(NAME, ())])
        probe.ask("post|not a name", "not posted")


class LostBusTest(BusTest):
    def test_everything_is_there_again_after_the_bus_came_back(self):
        bus = self.private_bus()
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.tell("provide")
        probe.ask("claim", "claimed")
        probe.ask(f"observe|{NAME}|{COALESCE}", "observing")
        probe.ask("menu|A", "menu")
        probe.ask("show", "shown")
        watcher = Watcher()
        self.assertEqual(watcher.item().labels(), ["A"])
        with instead_of_bus(bus.folder + "/bus") as attempts:
            bus.kill()
            probe.expect("log The session bus has gone")
            probe.ask(f"post|{NAME}", "not posted")
            for _ in ("the program's", "its item's"):
                attempts.accept()[0].close()
            attempts.setblocking(False)
            before = probe.seconds_of_processor()
            time.sleep(1)  # slept deliberately: what a loop that never rests costs shows over some time only
            self.assertLess(probe.seconds_of_processor() - before, 0.1, "a busy loop")
            with self.assertRaises(BlockingIOError, msg="none is due for two seconds"):
                attempts.accept()
        bus.start()
        probe.expect("log The session bus is back", 15)
        send(NAME)
        probe.expect("notified")
        call("org.orvane.Helper", "/org/orvane/Helper", "org.orvane.Services", "makePresetFromService", "(ss)", "", "")
        probe.expect("service")
        watcher = Watcher()
        self.addCleanup(watcher.crash)
        self.assertEqual(watcher.item(20).labels(), ["A"])
        self.assertEqual(probe.count("log"), 2)

    def test_is_idle_while_nothing_happens(self):
        self.private_bus()
        probe = self.probe(QT_QPA_PLATFORM="offscreen", ORVANE_TEST_FALLBACK_MS="50")
        probe.ask("claim", "claimed")
        probe.ask("show", "shown")
        probe.expect("no fallback")  # the last that is to happen for 40 s
        probe.settle()
        before = probe.seconds_of_processor()
        time.sleep(2)  # slept deliberately: that nothing is done shows over some time only
        self.assertLessEqual(probe.seconds_of_processor() - before, 0.01)


class NoBusTest(BusTest):
    def test_works_without_a_bus(self):
        self.assertNotIn("DBUS_SESSION_BUS_ADDRESS", os.environ)
        probe = self.probe(ORVANE_TEST_FALLBACK_MS="100", ORVANE_TEST_MISSING_MS="1000")
        self.assertIn("log There is no session bus", "\n".join(probe.lines))
        start = time.monotonic()
        probe.tell("provide")
        probe.ask("claim", "claimed")
        probe.ask(f"observe|{NAME}|{COALESCE}", "observing")
        probe.ask(f"post|{NAME}", "not posted")
        probe.ask("pane|org.orvane.ORVPrefPane", "nobody")
        probe.ask("menu|A", "menu")
        probe.ask("show", "shown")
        self.assertLess(time.monotonic() - start, 1)
        probe.expect("fallback")
        probe.expect("missing")
        self.assertEqual(probe.stop(), 0)

    def test_never_starts_a_bus(self):
        probe = self.probe()
        probe.ask("show", "shown")
        probe.settle()
        with open(f"/proc/{probe.process.pid}/task/{probe.process.pid}/children", encoding="ascii") as file:
            self.assertEqual(file.read().split(), [])


if "--no-bus" in sys.argv:
    sys.argv.remove("--no-bus")
    del NotificationTest, LostBusTest
else:
    del NoBusTest

if __name__ == "__main__":
    run()
