"""On sway and on KWin: from the hot key, pressed while a file manager is in front, to the tree in that file manager's folder."""

import signal
import threading
import unittest
from compositors import *
from compositors import keep_picture
from support import PANEL, PROMPT, shows_windows_to_assistive_programs
from test_opening import FILE_MANAGER, FILE_MANAGER_XML, PORTAL, PORTAL_XML, GLib, Program

X, Y = 700, 250


class Desk(HotKeyDesktop):
    def setUp(self):
        super().setUp()
        self.desk = compositor()
        self.input = Input()
        self.addCleanup(self.input.close)
        self.folder = self.home / "Client Work"
        self.folder.mkdir()

    def environment(self, **more):
        environment = super().environment(**more)
        environment.pop("NO_AT_BRIDGE", None)
        return environment

    def open_file_manager(self):
        self.run_beside("thunar", str(self.folder), GIO_USE_VFS="local", GIO_USE_VOLUME_MONITOR="unix")
        wait(lambda: self.desk.has("Client Work"), "the file manager's window")
        wait(lambda: shows_windows_to_assistive_programs("[Tt]hunar"), "the file manager to be ready")

    def seen(self):
        """The screen without the mouse pointer, which some compositors draw and whose look is their affair."""
        pixels = bytearray(self.desk.screen())
        for y in range(Y - 8, Y + 32):
            at = (y * WIDTH + X - 8) * 3
            pixels[at:at + 40 * 3] = bytes(40 * 3)
        return bytes(pixels)

    def pop_up_by_key(self):
        """Presses the hot key; the screen before and with the menu."""
        self.input.move(X, Y)
        before = self.still_screen()
        self.input.press("Control", "Shift", "h")
        wait(lambda: (difference(before, self.seen()) or (0, 0, 0, 0))[3] > 50, "the menu to be up")
        return before, self.still_screen()

    def choose_film(self):
        """By its first letter. A file manager that a busy machine keeps from answering in time is not waited for: the folder chooser
        comes up instead of the prompt, and the user tries again."""
        for _attempt in range(6):
            _before, seen = self.pop_up_by_key()
            keep_picture("menu", seen)
            self.input.press("f")
            self.input.press("Return")
            wait(lambda: self.desk.has(PROMPT) or self.desk.has(PANEL), f"prompt or chooser; the helper said: {self.said()}")
            if self.desk.has(PROMPT):
                return
            self.still_screen()
            self.input.press("Escape")
            wait(lambda: not self.desk.has(PANEL), "the chooser to be gone")
        self.fail(f"the front window's folder was never taken; the helper said: {self.said()}")

    def still_screen(self):
        """The screen once two pictures of it are alike."""
        seen = [self.seen()]

        def is_still():
            seen.append(self.seen())
            return seen[-1] == seen[-2]

        wait(is_still, "the screen to be still")
        return seen[-1]


class Road(Desk):
    def test_the_keyboard_alone_makes_a_tree_in_the_front_window(self):
        self.open_file_manager()
        self.start_with_hot_key()
        self.assertEqual(self.statement().strip(), f"The hot key works by {self.desk.service}.")
        self.choose_film()
        for text in ("Acme", "Spring", "One"):
            self.still_screen()
            self.input.type(text)
            if text != "One":
                self.input.press("Tab")
        keep_picture("prompt", self.still_screen())
        self.input.press("Return")
        made = self.folder / "Acme Spring"
        self.wait_for_folder(made / "Rushes/Day One")
        self.assertTrue((made / "Spring.txt").is_file())
        wait(lambda: self.opened_folders() == [str(made)], "the folder to be opened")
        wait(lambda: not self.desk.has(PROMPT), "the prompt to be gone")
        keep_picture("made", self.still_screen())
        self.assert_alive()

    def test_the_menu_is_at_the_pointer_and_escape_closes_it_each_time(self):
        self.start_with_hot_key()
        for _round in range(3):
            before, with_menu = self.pop_up_by_key()
            left, top, width, height = difference(before, with_menu)
            where = f"{left}, {top}, {width} x {height}"
            shadow = 12
            self.assertTrue(X - DISTANCE - shadow <= left <= X - DISTANCE, where)
            # What the pointer covers was not looked at.
            self.assertTrue(Y + DISTANCE - shadow <= top <= Y + 32, where)
            self.input.press("Escape")
            wait(lambda before=before: difference(before, self.seen()) is None, "the menu to be closed")
        self.assert_alive()

    def test_a_helper_that_is_told_to_end_leaves_the_key_to_others(self):
        for ending in (signal.SIGTERM, signal.SIGINT):
            self.start_with_hot_key()
            self.assertTrue(self.desk.name == "sway" or not self.desk.key_is_free())  # asking sway would take the key away
            self.process.send_signal(ending)
            self.process.wait(timeout=LIMIT)
            wait(self.desk.key_is_free, "the key to be free")
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")


class Environment(Desk):
    """On a session of its own: file managers of other tests would open the folder."""

    def test_the_script_and_xdg_open_get_none_of_the_variables_that_the_helper_sets_for_itself(self):
        """For its menu at the pointer it tells Qt something in its own environment, which other programs of Qt would read too."""
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
        stand_in = self.others.pop(0)
        stand_in.terminate()
        stand_in.wait(LIMIT)
        wait(lambda: f"'{FILE_MANAGER}'" not in bus_names(), "no file manager")
        # Both refuse, so that it comes to xdg-open.
        self.addCleanup(Program(FILE_MANAGER, "/org/freedesktop/FileManager1", FILE_MANAGER_XML, "error").stop)
        self.addCleanup(Program(PORTAL, "/org/freedesktop/portal/desktop", PORTAL_XML, "error").stop)
        tools, by_script, by_xdg_open = self.home / "bin", self.home / "by-script", self.home / "by-xdg-open"
        tools.mkdir()
        for path, seen in ((tools / "xdg-open", by_xdg_open), (self.support / "Scripts/note.sh", by_script)):
            path.write_text(f"#!/bin/sh\n/usr/bin/env >'{seen}.new'\n/bin/mv '{seen}.new' '{seen}'\n")
            path.chmod(0o755)
        self.write_hot_key(presets=[preset("Film", "Plain folder", scriptFile="note.sh")])
        self.start(PATH=f"{tools}:{os.environ['PATH']}", ORVANE_OF_ITS_OWN="x", XDG_ACTIVATION_TOKEN="y")
        self.wait_for_statement(" works")
        before = self.still_screen()
        subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(self.folder)], check=True, timeout=LIMIT)
        wait(lambda: (difference(before, self.seen()) or (0, 0, 0, 0))[3] > 50, "the menu to be up")
        self.still_screen()
        self.input.press("f")
        self.input.press("Return")
        self.wait_for_folder(self.folder / "Plain folder")
        wait(lambda: by_script.exists() and by_xdg_open.exists(), "the script and xdg-open")
        names = [{line.partition("=")[0] for line in seen.read_text().splitlines()} for seen in (by_script, by_xdg_open)]
        self.assertEqual(names[0] - {"PWD", "OLDPWD", "SHLVL", "_"}, {"ORV_CONTEXT", "ORV_ROOT_PATH"})
        self.assertIn("WAYLAND_DISPLAY", names[1])
        leaked = [name for name in names[1] if name.startswith(("ORVANE_", "QT_WAYLAND_")) or name == "XDG_ACTIVATION_TOKEN"]
        self.assertEqual(leaked, [])


if __name__ == "__main__":
    unittest.main()
