"""The icon goes with its tray host, comes back with it, and is never there twice.

ORVANE_TEST_TRAY says which host: trayer (XEmbed) or xfce4-panel (StatusNotifierItem). ORVANE_TEST_LATE is how many seconds hosts
come after the helper, "1 5" unless told.
"""

import os

from desktop import *
from neighbours import WATCHER, Tray, embedded_icons, names

KIND = os.environ["ORVANE_TEST_TRAY"]
LATE = [float(word) for word in os.environ.get("ORVANE_TEST_LATE", "1 5").split()]
UNTIL_FALLBACK = 3  # seconds after which the helper looks for an XEmbed tray as well
COMES_BACK = 30  # seconds that any icon may take


class Trays(Desktop):
    def setUp(self):
        super().setUp()
        self.write_preferences([preset("Film", "Film {Client}")])
        self.tray = Tray(KIND)
        self.addCleanup(self.tray.kill)

    def wait_for_icon(self):
        wait(lambda: self.tray.number_of_icons() == 1, f"one icon in {KIND}: {self.tray.number_of_icons()}\n{self.said()}", COMES_BACK)

    def assert_never_twice(self, seconds):
        self.assertTrue(holds(lambda: self.tray.number_of_icons() == 1 and self.process.poll() is None, seconds),
                        f"{self.tray.number_of_icons()} icons; {self.said()}")

    def test_the_host_is_killed_twice_and_comes_back(self):
        self.tray.start()
        self.start()
        self.wait_for_icon()
        for _ in range(2):
            self.tray.kill()
            wait(lambda: self.tray.number_of_icons() == 0, "the icon to go")
            self.tray.start()
            self.wait_for_icon()
        self.assert_never_twice(UNTIL_FALLBACK + 1)
        picture("came-back")

    def test_the_host_is_killed_while_the_menu_is_up(self):
        self.tray.start()
        self.start()
        self.wait_for_icon()
        self.pop_up()
        self.tray.kill()
        self.assertTrue(holds(popup_menu), "the menu stays")
        keys("Down", "Return")
        active("Orvane: Choose Parent Folder")
        self.tray.start()
        self.wait_for_icon()
        keys("Escape")
        gone("Orvane: Choose Parent Folder")
        self.assert_alive()

    def test_the_host_is_late(self):
        for seconds in LATE:
            with self.subTest(seconds=seconds):
                self.start()
                self.assertTrue(holds(lambda: self.tray.number_of_icons() == 0 and self.process.poll() is None, seconds), self.said())
                self.tray.start()
                self.wait_for_icon()
                self.assert_never_twice(1)
                self.process.terminate()
                self.assertEqual(self.process.wait(LIMIT), 0)
                wait(lambda: self.tray.number_of_icons() == 0, "the icon to go")
                self.tray.kill()

    def test_the_item_that_is_switched_off_and_on_is_there_once(self):
        self.tray.start()
        self.start()
        self.wait_for_icon()
        for shown in (False, True, False, True):
            self.write_preferences([preset("Film", "Film {Client}")], ORVShowMenubar=shown)
            self.announce_change()
            wait(lambda: self.tray.number_of_icons() == int(shown), f"{int(shown)} icons", COMES_BACK)
        self.assert_never_twice(UNTIL_FALLBACK + 1)


class BothKinds(Desktop):
    def test_the_icon_moves_between_hosts_of_both_kinds(self):
        self.write_preferences([preset("Film", "Film {Client}")])
        older, newer = Tray("trayer"), Tray("xfce4-panel")
        self.addCleanup(older.kill)
        self.addCleanup(newer.kill)
        older.start()
        self.start()
        wait(lambda: len(embedded_icons()) == 1, "the icon in the older tray", COMES_BACK)
        newer.start()
        wait(lambda: newer.number_of_icons() == 1 and not embedded_icons(), "the icon to be in the newer tray only", COMES_BACK)
        older.kill()
        newer.kill()
        wait(lambda: WATCHER not in names() and not embedded_icons(), "the icon to go with its host", COMES_BACK)
        older.start()
        wait(lambda: len(embedded_icons()) == 1, "the icon in the older tray again", COMES_BACK)
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
