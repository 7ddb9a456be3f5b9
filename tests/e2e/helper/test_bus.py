"""The session bus goes away, comes back, hangs, or is not there at all: the helper goes on with the tray that needs no bus."""

import os

from desktop import *
from neighbours import DesktopWithOwnBus, Tray, embedded_icons, labels, middle_of_icon, names, ticks

CALM = 3  # ticks that a program may take within two seconds that does nothing; one that spins takes 200


class Bus(DesktopWithOwnBus):
    def setUp(self):
        super().setUp()
        self.tray = Tray("trayer")
        self.tray.start()
        self.addCleanup(self.tray.kill)
        self.write_preferences([preset("Film", "Film {Client}")])
        self.seen = self.home / "opened-by-xdg-open"
        self.path = self.home / "bin"
        self.path.mkdir()
        program = self.path / "xdg-open"
        program.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self.seen}"\n')
        program.chmod(0o755)

    def start_with_icon(self, **more):
        self.start(PATH=f"{self.path}:{os.environ['PATH']}", **more)
        self.wait_for_icon()

    def wait_for_icon(self):
        wait(lambda: len(embedded_icons()) == 1, "the icon in the tray")

    def click_icon(self):
        return click_for_menu(middle_of_icon)

    def assert_calm(self):
        before = ticks(self.process)
        self.assertTrue(holds(lambda: self.process.poll() is None, 2), self.said())
        self.assertLessEqual(ticks(self.process) - before, CALM)

    def make_folder(self, client):
        """The whole road, from the icon on."""
        self.click_icon()
        keys("Down", "Return")
        active("Orvane: Choose Parent Folder")
        choose_in_panel(self.projects)
        active("New Folder from Preset")
        type_text(client)
        keys("Return")
        self.wait_for_folder(self.projects / f"Film {client}")

    def kill_bus(self):
        self.bus.kill()
        wait(lambda: "The session bus has gone" in self.said(), "a word about it in the log")

    def test_everything_but_the_bus_goes_on_when_it_has_gone(self):
        self.start_with_icon()
        self.kill_bus()
        self.assert_calm()
        self.assertEqual(len(embedded_icons()), 1)
        self.make_folder("Acme")
        wait(lambda: self.seen.exists() and self.seen.read_text() == f"{self.projects}/Film Acme\n", "xdg-open to be asked")
        self.assert_alive()

    def test_the_helper_is_back_on_a_bus_that_comes_back(self):
        self.start_with_icon()
        self.kill_bus()
        self.bus.start()
        wait(self.helper_is_on_the_bus, "the helper's name on the new bus")
        wait(lambda: labels(self.process)[:1] == ["Film"], "the menu on the new bus")
        self.assertIn("The session bus is back", self.said())
        self.write_preferences([preset("Photo", "Photo")])
        self.announce_change()
        wait(lambda: labels(self.process)[:1] == ["Photo"], "the change to be heard")
        self.pop_up()
        keys("Escape")
        self.assertEqual(len(embedded_icons()), 1)
        self.assert_calm()

    def test_a_prompt_that_is_open_when_the_bus_goes_is_completed(self):
        self.start_with_icon()
        self.click_icon()
        keys("Down", "Return")
        active("Orvane: Choose Parent Folder")
        choose_in_panel(self.projects)
        active("New Folder from Preset")
        self.kill_bus()
        self.assert_calm()
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Film Acme")
        self.assert_alive()

    def test_the_menu_in_the_tray_does_not_wait_for_a_bus_that_hangs(self):
        self.start_with_icon()
        self.bus.stop_answering()
        self.make_folder("Acme")
        self.assert_calm()
        self.bus.go_on()
        wait(self.helper_is_on_the_bus, "the bus to answer again")

    def test_without_any_bus_there_is_a_tray_and_an_end(self):
        self.start(ready=False, DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.home}/nothing", PATH=f"{self.path}:{os.environ['PATH']}")
        self.wait_for_icon()
        self.assertIn("There is no session bus", self.said())
        self.assert_calm()
        self.make_folder("Acme")
        self.process.terminate()
        self.assertEqual(self.process.wait(LIMIT), 0)

    def test_the_end_of_a_session_whose_bus_goes_first_is_clean(self):
        self.start_with_icon()
        self.kill_bus()
        self.process.terminate()
        self.assertEqual(self.process.wait(LIMIT), 0)
        wait(lambda: not embedded_icons(), "the icon to go")


if __name__ == "__main__":
    unittest.main()
