"""On sway and on KWin: from the hot key, pressed while a file manager is in front, to the tree in that file manager's folder."""

import signal
import unittest
from compositors import *
from compositors import keep_picture
from support import PANEL, PROMPT, shows_windows_to_assistive_programs

X, Y = 700, 250


class Road(HotKeyDesktop):
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


if __name__ == "__main__":
    unittest.main()
