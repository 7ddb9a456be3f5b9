"""A desktop without any tray: the helper says so once, and is reached without one."""

import os
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402 (after the version)

from desktop import *
from neighbours import BUS, labels, ticks

MESSAGE = "this desktop has no status bar"
PATIENCE = 60  # seconds; the helper waits forty for a tray before it says that there is none


class NoTray(Desktop):
    def run_program(self, *words):
        result = subprocess.run(words, env=self.environment(), capture_output=True, text=True, timeout=LIMIT)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def reach(self, *words):
        self.run_program(*words)
        menu()
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")

    def test_it_is_reached_by_command_and_second_start(self):
        self.write_preferences([preset("Plain", "Plain folder")])
        self.start()
        self.reach(os.environ["ORVANE_TEST_HELPER"])
        self.reach(os.environ["ORVANE_TEST_ORVANE"], "menu")
        self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(self.projects))
        menu()
        keys("Down", "Return")
        self.wait_for_folder(self.projects / "Plain folder")
        self.assert_alive()


class MessagesOfTheDesktop:
    """Stands in for what shows messages; `shown` is (title, text) of each."""

    XML = """<node><interface name="org.freedesktop.Notifications"><method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
    <arg type="u" direction="out"/></method></interface></node>"""

    def __init__(self):
        self.shown = []
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        [interface] = Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces
        self.connection.register_object("/org/freedesktop/Notifications", interface, self._notify, None, None)
        self.connection.call_sync(*BUS, "RequestName", GLib.Variant("(su)", ("org.freedesktop.Notifications", 4)), None, 0, 5000, None)
        self._loop = GLib.MainLoop()
        threading.Thread(target=self._loop.run, daemon=True).start()

    def _notify(self, _connection, _sender, _path, _interface, _method, parameters, invocation):
        arguments = parameters.unpack()
        self.shown.append((arguments[3], arguments[4]))
        invocation.return_value(GLib.Variant("(u)", (1,)))

    def stop(self):
        self.connection.close_sync(None)
        self._loop.quit()


class Told(NoTray):
    """Long: run on demand."""

    def test_the_desktop_shows_it_once_and_never_again(self):
        messages = MessagesOfTheDesktop()
        self.addCleanup(messages.stop)
        self.write_preferences([preset("Plain", "Plain folder")])
        for start in (1, 2):
            self.start()
            wait(lambda: self.said().count(MESSAGE) == start, "the message in the log", PATIENCE)
            wait(lambda: messages.shown, "the message on the desktop")
            self.assertTrue(holds(lambda: len(messages.shown) == 1, 1), messages.shown)
            self.process.terminate()
            self.process.wait(LIMIT)
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")
        [(title, text)] = messages.shown
        self.assertEqual(title, "Orvane has no icon on this desktop")
        self.assertIn("“orvane menu”", text)

    def test_it_says_so_once(self):
        self.write_preferences([preset("Plain", "Plain folder")])
        self.start()
        wait(lambda: MESSAGE in self.said(), "the message", PATIENCE)
        self.reach(os.environ["ORVANE_TEST_HELPER"])
        for shown in (False, True):
            self.write_preferences([preset("Plain", "Plain folder")], ORVShowMenubar=shown)
            self.announce_change()
            wait(lambda: bool(labels(self.process, 1) or labels(self.process, 2)) == shown, "the change")
        self.assertTrue(holds(lambda: self.said().count(MESSAGE) == 1, 45), self.said())
        used = ticks(self.process)
        self.assertTrue(holds(lambda: ticks(self.process) == used, 3), "nothing goes on after that")


def load_tests(loader, _tests, _pattern):
    """The long ones only when asked for, so that nobody waits for them unawares."""
    return loader.loadTestsFromTestCase(Told if "ORVANE_TEST_LONG" in os.environ else NoTray)


if __name__ == "__main__":
    unittest.main()
