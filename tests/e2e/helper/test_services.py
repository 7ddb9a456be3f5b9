"""The helper for other programs: actions and services on the bus, start by the bus, second starts, `orvane menu`."""

import os
import pty
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402 (after the version)

from desktop import *
from neighbours import BUS, DesktopWithOwnBus, call, labels, names

PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"


class RefusingHelper:
    """Has the helper's name on the bus and refuses everything in these words."""

    XML = """<node><interface name="org.freedesktop.Application"><method name="ActivateAction"><arg type="s" direction="in"/>
    <arg type="av" direction="in"/><arg type="a{sv}" direction="in"/></method></interface></node>"""

    def __init__(self, words):
        self._words = words
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        [interface] = Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces
        self._connection.register_object("/" + NAME.replace(".", "/"), interface, self._refuse, None, None)
        self._connection.call_sync(*BUS, "RequestName", GLib.Variant("(su)", (NAME, 4)), None, 0, 5000, None)
        self._loop = GLib.MainLoop()
        threading.Thread(target=self._loop.run, daemon=True).start()

    def _refuse(self, _connection, _sender, _path, _interface, _method, _parameters, invocation):
        invocation.return_dbus_error("org.orvane.Refused", self._words)

    def stop(self):
        self._connection.close_sync(None)
        self._loop.quit()


class Services(DesktopWithOwnBus):
    def setUp(self):
        super().setUp()
        self.write_preferences([preset("Film", "Film {Client}"), preset("Plain", "Plain folder")])
        self.log = self.home / "helper.log"

    def run_program(self, *words, **more):
        return subprocess.run(words, env=self.environment(**more), capture_output=True, text=True, timeout=LIMIT)

    def close_menu(self):
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")

    def make_startable(self):
        """The bus knows how to start the helper, as after an installation."""
        started = self.home / "started"
        program = self.home / "start"
        program.write_text(f'#!/bin/sh\necho "$$" >>"{started}"\nexport HOME="{self.home}"\nunset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME '
                           f'XDG_STATE_HOME\nexec "{os.environ["ORVANE_TEST_HELPER"]}" >>"{self.log}" 2>&1\n')
        program.chmod(0o755)
        (self.bus.services / f"{NAME}.service").write_text(f"[D-BUS Service]\nName={NAME}\nExec={program}\n")
        call(*BUS, "ReloadConfig")
        wait(lambda: NAME in call(*BUS, "ListActivatableNames")[0], "the service to be known")
        self.addCleanup(self.end_started, started)
        return started

    def end_started(self, started):
        if NAME in names():
            bus_call("org.freedesktop.Application.ActivateAction", "quit", "[]", "{}")
        wait(lambda: NAME not in names(), "the started helper to end")
        self.assertEqual(len(started.read_text().split()), 1, "started once")

    def test_gapplication_pops_the_menu_up(self):
        self.start()
        move(300, 300)
        result = self.run_program("gapplication", "action", NAME, "make-preset")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        wait(lambda: (popup_menu() or (0, 0))[:2] in [(x, y) for x in range(285, 296) for y in range(305, 316)],
             "the menu ten points to the left of the mouse and ten below it")
        self.close_menu()

    def test_gapplication_starts_the_helper_that_does_not_run(self):
        self.make_startable()
        result = self.run_program("gapplication", "action", NAME, "make-preset")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        menu()
        picture("started-by-the-bus")
        self.close_menu()

    def test_the_command_starts_the_helper_with_a_folder_and_the_folder_counts_once(self):
        self.make_startable()
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(self.projects))
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        menu()
        keys("Down", "Down", "Return")
        self.wait_for_folder(self.projects / "Plain folder")
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu")
        self.assertEqual(result.returncode, 0, result.stderr)
        menu()
        keys("Down", "Down", "Return")
        active(PANEL)
        keys("Escape")
        gone(PANEL)

    def test_the_command_says_why_when_there_is_no_helper_and_no_bus(self):
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("does not run and cannot be started", result.stderr)
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.home}/none")
        self.assertEqual(result.returncode, 1)
        self.assertIn("session bus", result.stderr)

    def test_control_characters_in_what_the_bus_says_stay_away_from_terminals(self):
        words = "no \x1b[31m\u009bmenu\r\x7f é"
        helper = RefusingHelper(words)
        self.addCleanup(helper.stop)
        result = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "menu"], env=self.environment(), capture_output=True, timeout=LIMIT)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertEqual(result.stderr.decode(), f"orvane: Menu not shown: {words}\n")  # as it came, where it is no terminal
        shown, terminal = pty.openpty()
        self.addCleanup(os.close, shown)
        result = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "menu"], env=self.environment(), stdin=subprocess.DEVNULL, stdout=terminal,
                                stderr=terminal, timeout=LIMIT)
        os.close(terminal)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(os.read(shown, 4096).decode(), "orvane: Menu not shown: no \\x1b[31m\\xc2\\x9bmenu\\x0d\\x7f é\r\n")

    def test_a_folder_with_an_odd_name_is_the_one_that_is_used(self):
        odd = self.projects / "with space & 100% #näïve 日本 'quote'"
        odd.mkdir()
        self.start()
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(odd))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        menu()
        keys("Down", "Down", "Return")
        self.wait_for_folder(odd / "Plain folder")

    def test_the_service_ignores_what_it_is_given(self):
        self.start()
        for pasteboard, user_data in (("", ""), ("text on it", "more"), ("/etc", "/etc")):
            with self.subTest(pasteboard):
                answer = bus_call("org.orvane.Services.makePresetFromService", pasteboard, user_data)
                self.assertEqual((answer.returncode, answer.stdout.strip()), (0, "()"), answer.stderr)
                menu()
                self.close_menu()

    def test_a_second_start_pops_the_menu_up_and_ends(self):
        self.start()
        wait(lambda: labels(self.process), "the menu")
        first = self.process
        result = self.run_program(os.environ["ORVANE_TEST_HELPER"])
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        menu()
        self.assertIs(self.process, first)
        self.assert_alive()
        self.close_menu()

    def test_a_second_start_while_the_prompt_is_open_leaves_the_prompt_alone(self):
        self.start()
        result = self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(self.projects))
        self.assertEqual(result.returncode, 0, result.stderr)
        menu()
        keys("Down", "Return")
        active(PROMPT)
        for words in ([os.environ["ORVANE_TEST_HELPER"]], [os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", "/"]):
            result = self.run_program(*words)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertTrue(holds(lambda: windows(PROMPT) and not popup_menu()), "the prompt, and no menu")
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Film Acme")

    def test_nonsense_is_refused_and_harms_nothing(self):
        self.start()
        refused = [("ActivateAction", "no-such-action", "[]", "{}"), ("ActivateAction", "make-preset-in", "[]", "{}"),
                   ("ActivateAction", "make-preset-in", "[<'relative'>]", "{}"), ("ActivateAction", "make-preset-in", "[<7>]", "{}"),
                   ("ActivateAction", "make-preset-in", "[<'file://elsewhere/etc'>]", "{}")]
        for method, *arguments in refused:
            answer = bus_call(f"org.freedesktop.Application.{method}", *arguments)
            self.assertNotEqual(answer.returncode, 0, (method, arguments))
            self.assertIn("InvalidArgs", answer.stderr)
        answer = bus_call("org.freedesktop.Application.ActivateAction", "make-preset-in", "[<'/no/such/folder'>]", "{}")
        self.assertEqual(answer.returncode, 0)
        menu()
        keys("Down", "Down", "Return")
        active(PANEL)  # as if no folder had been named
        self.assertIn("/no/such/folder", self.said())
        keys("Escape")
        gone(PANEL)
        self.assert_alive()


class Settings(Desktop):
    def test_preferences_brings_the_settings_up_also_where_nothing_is_installed(self):
        self.write_preferences([preset("Film", "Film {Client}")])
        self.start()
        bus_call("org.freedesktop.Application.ActivateAction", "preferences", "[]", "{}")
        shown = window("Orvane Settings")
        process = int(output("xdotool", "getwindowpid", str(shown)))
        os.kill(process, signal.SIGTERM)
        gone("Orvane Settings")
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
