"""Preferences that change while the helper works: the menu follows at once, and what is being made stays what it was."""

import os

from desktop import *
from neighbours import FIXED, Gio, choose, labels, layout, ticks

PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"


class Changes(Desktop):
    def replace_preferences(self, presets, **more):
        """As careful programs write: another file takes the old one's place."""
        new = self.preferences.with_suffix(".new")
        new.write_bytes(plistlib.dumps({"ORVShowMenubar": True, "ORVPresets": presets, **more}))
        new.rename(self.preferences)

    def notify(self):
        """As another program of ours says it."""
        result = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "notify"], env=self.environment(), capture_output=True, timeout=LIMIT)
        self.assertEqual((result.returncode, result.stderr), (0, b""))

    def wait_for_menu(self, *presets):
        wait(lambda: labels(self.process) == [*presets, *FIXED], f"the menu {presets}")

    def open_prompt(self, label):
        choose(self.process, label)
        active(PANEL)
        choose_in_panel(self.projects)
        active(PROMPT)

    def start_with(self, presets, **more):
        self.write_preferences(presets, **more)
        self.start()
        self.wait_for_menu(*[each["label"] for each in presets])

    def test_a_menu_that_grows_while_it_is_up_stays_on_the_screen_and_scrolls(self):
        self.start_with([preset(f"Preset {number}", "x") for number in range(3)])
        self.pop_up(600, 600)
        self.replace_preferences([preset(f"Preset {number}", f"Folder {number}") for number in range(60)])
        self.notify()

        def is_whole():
            x, y, width, height = popup_menu() or (0, 0, 0, 0)
            return height > 300 and x >= 0 and y >= 0 and x + width <= WIDTH and y + height <= HEIGHT

        wait(is_whole, f"the longer menu to be on the screen; it is at {popup_menu()}")
        keys("Up", "Up", "Up", "Return")  # from below: Quit, Preferences, the last preset
        active(PANEL)
        picture("chosen-from-a-menu-that-grew")
        choose_in_panel(self.projects)
        self.wait_for_folder(self.projects / "Folder 59")

    def test_an_open_prompt_completes_with_what_it_was_started_with(self):
        film = preset("Film", "{AutoJob} {Client}", [node("{Client}.txt")])
        self.start_with([film], ORVAutomaticVars={"AutoJob": "41", "AutoOther": "7"})
        self.open_prompt("Film")
        other = preset("Other", "Wrong {Place}", [node("wrong.txt")])
        self.replace_preferences([other, preset("Photo", "P")], ORVAutomaticVars={"AutoJob": "50", "AutoOther": "8"}, Foreign="kept")
        self.notify()
        self.wait_for_menu("Other", "Photo")
        picture("menu-followed-behind-the-prompt")
        keys("Tab")
        type_text("Acme")
        keys("Return")
        made = self.projects / "42 Acme"
        self.wait_for_folder(made)
        wait(lambda: (made / "Acme.txt").exists(), "its file")
        self.assertEqual([path.name for path in made.iterdir()], ["Acme.txt"])
        wait(lambda: self.read_preferences()["ORVAutomaticVars"] == {"AutoJob": "42", "AutoOther": "8"},
             f"the counter that was used, and the other one as it was changed: {self.read_preferences()['ORVAutomaticVars']}")
        self.assertEqual([each["label"] for each in self.read_preferences()["ORVPresets"]], ["Other", "Photo"])
        self.assertEqual(self.read_preferences()["Foreign"], "kept")

    def test_an_item_chosen_for_another_preset_that_took_its_place_makes_that_one(self):
        """The menu hands on a place, and the preset that stands there when it is chosen is made."""
        self.start_with([preset("Film", "Film"), preset("Photo", "Photo")])
        choose(self.process, "Film")
        active(PANEL)
        self.replace_preferences([preset("Photo", "Photo")])
        self.notify()
        self.wait_for_menu("Photo")
        choose_in_panel(self.projects)
        self.wait_for_folder(self.projects / "Photo")
        self.assertEqual([path.name for path in self.projects.iterdir()], ["Photo"])

    def test_the_file_that_goes_while_the_prompt_is_open(self):
        self.start_with([preset("Film", "{AutoJob} {Client}")], ORVAutomaticVars={"AutoJob": "41"})
        self.open_prompt("Film")
        self.preferences.unlink()
        self.notify()
        self.wait_for_menu()
        keys("Tab")
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "42 Acme")
        gone(PROMPT)
        self.assert_alive()

    def test_an_item_that_is_gone_is_not_run(self):
        self.start_with([preset("Film", "Film {Client}"), preset("Photo", "Photo")])
        self.pop_up()
        keys("Down")
        self.replace_preferences([preset("Other", "Other")])
        self.notify()
        self.wait_for_menu("Other")
        picture("menu-changed-while-up")
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")
        self.assert_alive()

    def test_a_hundred_notifications_leave_the_menu_right_and_cost_little(self):
        self.start_with([preset(f"Preset {number}", "top") for number in range(200)])
        before = ticks(self.process)
        names = [f"New {number}" for number in range(200)]
        self.replace_preferences([preset(name, "top") for name in names])
        bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
        began = time.monotonic()
        for _ in range(100):
            bus.emit_signal(None, "/org/orvane/DistributedNotifications", "org.orvane.DistributedNotifications",
                            "ORVPresetConfigurationChangedNotification", None)
        bus.flush_sync(None)
        self.wait_for_menu(*names)
        took = time.monotonic() - began
        wait(lambda: layout(self.process), "an answer after the last of them")  # comes after everything that came before it
        self.assertLess(took, 5)
        cost = ticks(self.process) - before
        print(f"100 notifications of 200 presets: menu right after {took * 1000:.0f} ms, {cost} ticks", flush=True)
        self.assertLess(cost, 20)  # one building takes half a tick or a whole one; a hundred of them took 54
        self.assert_alive()

if __name__ == "__main__":
    unittest.main()
