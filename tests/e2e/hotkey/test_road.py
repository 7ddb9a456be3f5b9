"""From the hot key, pressed while a file manager is in front, to the tree in that file manager's folder."""

import unittest
from support import *
from support import PANEL, PROMPT, shows_windows_to_assistive_programs

FILE_MANAGER = os.environ.get("ORVANE_TEST_FILEMANAGER", "thunar")


class Road(HotKeyDesktop):
    def setUp(self):
        super().setUp()
        self.folder = self.home / "Client Work"
        self.folder.mkdir()
        self.file_manager = self.open_file_manager()
        wait(lambda: shows_windows_to_assistive_programs(FILE_MANAGER), f"{FILE_MANAGER} to be ready")

    def open_file_manager(self):
        """The file manager's window, active. pcmanfm-qt now and then comes up without one, and is then started again."""
        for _attempt in range(5):
            # Without GVfs, whose daemons would be started for each of them.
            process = self.run_beside(FILE_MANAGER, str(self.folder), XDG_CURRENT_DESKTOP="X-Test", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                                      GIO_USE_VFS="local", GIO_USE_VOLUME_MONITOR="unix")
            try:
                return wait(lambda: title_of(active_window()).startswith("Client Work") and active_window(), FILE_MANAGER, 8)
            except TimeIsUp:
                process.kill()
                process.wait()
        raise TimeIsUp(f"{FILE_MANAGER} shows no window")

    def choose(self, *names):
        """Presses the hot key and chooses by these keys. A file manager that a busy machine keeps from answering in time is not waited
        for: the folder chooser comes up, and the user tries again."""
        for _attempt in range(6):
            x, y = (int(value) for value in re.findall(r"[xy]:(\d+)", output("xdotool", "getmouselocation")))
            press_hot_key()
            self.assertEqual(menu()[:2], (x - DISTANCE, y + DISTANCE))
            self.assertEqual(active_window(), self.file_manager)
            picture("menu")
            keys(*names, "Return")
            wait(lambda: windows(PROMPT) or windows(PANEL) or any(self.folder.iterdir()), f"an answer; the helper said: {self.said()}")
            if not windows(PANEL):
                return
            active(PANEL)
            keys("Escape")
            gone(PANEL)
            wait(lambda: active_window() == self.file_manager, "the file manager to be in front again")
        self.fail(f"the front window's folder was never taken; the helper said: {self.said()}")

    def test_the_keyboard_alone_makes_a_tree_in_the_front_window(self):
        self.start_with_hot_key()
        move(700, 300)
        self.choose("f")  # the first letter of the second preset
        active(PROMPT)
        picture("prompt")
        type_text("Acme")
        keys("Tab")
        type_text("Spring")
        keys("Tab")
        type_text("One")
        picture("prompt-filled")
        keys("Return")
        made = self.folder / "Acme Spring"
        self.wait_for_folder(made / "Rushes/Day One")
        self.assertTrue((made / "Spring.txt").is_file())
        wait(lambda: self.opened_folders() == [str(made)], "the folder to be opened")
        picture("made")
        self.assert_alive()

    def test_arrows_and_return_choose_and_the_file_manager_stays_in_front(self):
        self.start_with_hot_key(presets=[preset("Plain", "Plain folder"), preset("Second", "Second folder")])
        self.choose("Down", "Down")
        self.wait_for_folder(self.folder / "Second folder")
        self.assertFalse((self.folder / "Plain folder").exists())
        self.assertEqual(active_window(), self.file_manager)

    def test_escape_makes_nothing_and_leaves_the_file_manager_in_front(self):
        self.start_with_hot_key()
        before = sorted(self.home.rglob("*.txt"))
        self.assert_hot_key_works()
        self.assertEqual(active_window(), self.file_manager)
        self.assertEqual(list(self.folder.iterdir()), [])
        self.assertEqual(sorted(self.home.rglob("*.txt")), before)


if __name__ == "__main__":
    unittest.main()
