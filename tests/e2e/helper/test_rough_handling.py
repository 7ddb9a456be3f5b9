"""Users who double-click, choose twice, close windows by their frames, pull the tray away and type nonsense."""

from desktop import *
from neighbours import Tray, choose, embedded_icons, labels, middle_of_icon

PROMPT, PANEL, ALERT = "New Folder from Preset", "Orvane: Choose Parent Folder", "^Orvane$"


class RoughHandling(Desktop):
    def start_in_tray(self, presets, **more):
        self.tray = Tray("trayer")
        self.tray.start()
        self.addCleanup(self.tray.kill)
        self.write_preferences(presets, **more)
        self.start()
        wait(lambda: len(labels(self.process)) == len(presets) + 2 and embedded_icons(), "menu and icon")

    def icon(self):
        return middle_of_icon()

    def open_prompt(self, *names):
        self.pop_up_for(self.projects)
        keys(*(names or ("Down", "Return")))
        return active(PROMPT)

    def made(self):
        return sorted(path.name for path in self.projects.iterdir())

    def test_double_and_triple_clicks_on_the_icon_leave_a_menu_that_works(self):
        self.start_in_tray([preset("Film", "Film {Client}")])
        x, y = self.icon()
        move(x, y)
        for clicks, button in ((2, 1), (3, 1), (2, 3), (6, 1), (5, 3)):
            subprocess.run(["xdotool", "click", "--repeat", str(clicks), "--delay", "40", str(button)], check=True, timeout=LIMIT)
            self.assert_alive()
        if popup_menu():
            keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")
        click_for_menu(self.icon)
        keys("Down", "Return")
        active(PANEL)
        keys("Escape")
        gone(PANEL)
        self.assert_alive()

    def test_choosing_again_while_the_first_is_at_work_makes_one_folder(self):
        self.start_in_tray([preset("Film", "Film {Client}"), preset("Photo", "Photo")])
        for label in ("Film", "Film", "Photo", "Film"):
            choose(self.process, label)
        active(PANEL)
        self.assertEqual(len(windows(PANEL)), 1)
        choose(self.process, "Photo")
        choose_in_panel(self.projects)
        active(PROMPT)
        choose(self.process, "Photo")
        self.assertTrue(holds(lambda: len(windows(PROMPT)) == 1 and not windows(PANEL)))
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Film Acme")
        gone(PROMPT)
        self.assertTrue(holds(lambda: self.made() == ["Film Acme"] and not windows(PANEL)), self.made())

    def test_windows_closed_by_their_frames_abandon_and_no_more(self):
        self.start_in_tray([preset("Film", "Film {Client}"), preset("Bad", "")])
        for _ in range(2):
            choose(self.process, "Film")
            active(PANEL)
            keys("alt+F4")
            gone(PANEL)
            self.open_prompt()
            type_text("half")
            keys("alt+F4")
            gone(PROMPT)
            self.pop_up_for(self.projects)
            keys("Down", "Down", "Return")
            active(ALERT)
            keys("alt+F4")
            gone(ALERT)
        self.assertEqual(self.made(), [])
        self.assert_alive()

    def test_the_tray_goes_while_its_menu_is_open(self):
        self.start_in_tray([preset("Plain", "Plain folder")])
        click_for_menu(self.icon)
        self.tray.kill()
        wait(lambda: not embedded_icons(), "the icon to go")
        self.assert_alive()
        if popup_menu():
            keys("Escape")
            wait(lambda: not popup_menu(), "the menu to go")
        self.tray.start()
        wait(embedded_icons, "the icon to be back")
        click_for_menu(self.icon)
        keys("Escape")
        self.assert_alive()

    def test_absurd_names(self):
        """What is typed, and the folder that is made; None where an alert says that there is none."""
        absurd = {"..": None, ".": None, "a/b:c": "a_b_c", "  spaces  ": "  spaces  ", "x" * 300: None, "%@ %s %n %%": "%@ %s %n %%",
                  "{Client}": "{Client}", "-rf": "-rf", "~": "~", "ünïcode 日本 🎬": "ünïcode 日本 🎬", "'\"`$(reboot)\\": "'\"`$(reboot)\\",
                  "פרויקט\u202e txt.exe": "פרויקט\u202e txt.exe"}
        self.start_in_tray([preset("Any", "{Client}")])
        made = []
        for number, (typed, folder) in enumerate(absurd.items()):
            with self.subTest(typed[:40]):
                self.open_prompt()
                with subprocess.Popen(["xclip", "-selection", "clipboard", "-i", "-loops", "1"], stdin=subprocess.PIPE) as clipboard:
                    clipboard.communicate(typed.encode(), timeout=LIMIT)
                keys("ctrl+v")
                picture(f"absurd-{number}")
                keys("Return")
                gone(PROMPT)
                if folder is None:
                    active(ALERT)
                    picture(f"absurd-{number}-alert")
                    keys("Return")
                    gone(ALERT)
                else:
                    made.append(folder)
                    self.wait_for_folder(self.projects / folder)
                self.assertEqual(self.made(), sorted(made))
                self.assert_alive()

    def test_two_hundred_variables(self):
        count = 200
        self.start_in_tray([preset("Many", "Top", [node("{V%03d}.txt" % number) for number in range(count)])])
        identifier = self.open_prompt()
        x, y, width, height = geometry(identifier)
        self.assertLessEqual(y + height, HEIGHT)
        picture("two-hundred-variables")
        lines = "".join(f"type --delay 1 v{number}\nkey Return\n" for number in range(count - 1))
        subprocess.run(["xdotool", "-"], input=lines.encode(), check=True, timeout=3 * LIMIT)
        picture("two-hundred-variables-last")
        type_text("last")
        keys("Return")
        self.wait_for_folder(self.projects / "Top")
        wait(lambda: len(list((self.projects / "Top").iterdir())) == count, "its files")
        self.assertTrue((self.projects / "Top/last.txt").exists())
        self.assertTrue((self.projects / "Top/v0.txt").exists())
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
