"""A thousand presets, and labels of every kind: over the bus, on the screen, and with the keyboard to the very last."""

from desktop import *
from neighbours import FIXED, Tray, embedded_icons, labels, middle_of_icon

PANEL = "Orvane: Choose Parent Folder"
ODD = ["Rock & Roll && more", "snake_case __name__", "left\tright", "two\nlines", "Fest 🎬 film 👩‍👩‍👧 flag 🇩🇪", "פרויקט חדש (1)",
       "مشروع جديد 2", "long " + "word " * 58 + "end", "Zalgo Z̷̛͈a̶̙l̷͓g̵̣o̵͎", "<b>bold</b> &amp; <i>not</i>", " leading and trailing ", "日本語のフォルダ"]


class LongMenu(Desktop):
    def setUp(self):
        super().setUp()
        tray = Tray("trayer")
        tray.start()
        self.addCleanup(tray.kill)

    def start_with(self, names):
        self.write_preferences([preset(name, f"Folder {number}") for number, name in enumerate(names)])
        self.start()
        wait(lambda: labels(self.process)[-2:] == FIXED and embedded_icons(), "menu and icon")

    def click_icon(self):
        return click_for_menu(middle_of_icon)

    def test_labels_over_the_bus(self):
        self.start_with(ODD)
        shown = labels(self.process)
        self.assertEqual(len(shown), len(ODD) + 2)
        self.assertEqual(shown[0], "Rock & Roll && more")
        self.assertEqual(shown[1], "snake_case __name__")
        self.assertEqual(shown[2:4], ["left right", "two lines"])
        self.assertEqual(shown[4:7], ODD[4:7])
        self.assertLessEqual(len(shown[7]), 100)
        self.assertTrue(shown[7].startswith("long word") and shown[7].endswith("word end") and "…" in shown[7], shown[7])
        self.assertEqual(shown[8:12], ODD[8:12])

    def test_labels_on_the_screen(self):
        self.start_with(ODD)
        _, _, width, height = self.click_icon()
        picture("odd-labels")
        self.assertLess(width, WIDTH * 0.6)
        self.assertLess(height, HEIGHT)
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")
        self.assert_alive()

    def test_a_thousand_presets_scroll_and_the_last_is_reached_by_keyboard(self):
        names = [f"Preset number {number:04}" for number in range(1000)]
        self.start_with(names)
        self.assertEqual(labels(self.process), names + FIXED)
        began = time.monotonic()
        _, y, _, height = self.click_icon()
        print(f"menu of 1000 presets up after {(time.monotonic() - began) * 1000:.0f} ms", flush=True)
        self.assertGreaterEqual(y, 0)
        self.assertLessEqual(y + height, HEIGHT)
        picture("thousand-top")
        before = screen()
        keys("Up", "Up", "Up")  # backwards over the fixed ones
        wait(lambda: (difference(before, screen()) or (0, 0, 0, 0))[3] > HEIGHT // 2, "the menu to scroll")
        picture("thousand-last")
        keys("Return")
        active(PANEL)
        choose_in_panel(self.projects)
        self.wait_for_folder(self.projects / "Folder 999")

    def test_typing_goes_to_a_preset_among_a_thousand(self):
        self.start_with([f"Preset number {number:04}" for number in range(999)] + ["Zebra"])
        self.click_icon()
        keys("z")
        keys("Return")
        active(PANEL)
        choose_in_panel(self.projects)
        self.wait_for_folder(self.projects / "Folder 999")


if __name__ == "__main__":
    unittest.main()
