"""The whole road: from a click on the icon in the status bar to the folder on disk, its script and its window."""

import stat
from desktop import *
from neighbours import place_of_icon


class Road(Desktop):
    def film(self):
        return preset("Film", "{AutoJob} {Client}", [
            node("{Client}.txt"),
            node("Rushes", [node("Day {Day}", [])], permissions="750", color="red"),
        ], scriptFile="note.sh")

    def note_script(self):
        self.script("note.sh", '#!/bin/sh\n/usr/bin/env >"$ORV_ROOT_PATH/.seen"\n')

    def icon(self, before):
        """Middle of what appeared at the bottom of the screen."""
        x, y, width, height = place_of_icon(before)
        return x + width // 2, y + height // 2

    def test_a_click_on_the_icon_and_a_few_keys_make_the_folder(self):
        self.note_script()
        self.write_preferences([preset("Photo", "{Shoot}"), self.film()], ORVAutomaticVars={"AutoJob": "41"})
        before = screen_with_tray()
        self.start()
        x, y = self.icon(before)
        picture("tray-icon")
        open_menu(before, lambda: (x, y))
        picture("tray-menu")
        keys("Down", "Down", "Return")
        active("Orvane: Choose Parent Folder")
        type_text(str(self.projects))
        picture("tray-panel")
        keys("Return")
        gone("Orvane: Choose Parent Folder")
        active("New Folder from Preset")
        picture("tray-prompt")
        keys("Tab")  # the counter as it is offered
        type_text("Acme")
        keys("Return")
        type_text("One")
        picture("tray-prompt-filled")
        keys("Return")
        made = self.projects / "42 Acme"
        self.wait_for_folder(made / "Rushes/Day One")
        seen = wait(lambda: (made / ".seen").exists() and (made / ".seen").read_text(), "the script")
        wait(lambda: "P_DAY=" in (made / ".seen").read_text(), "the script's environment")
        seen = dict(line.split("=", 1) for line in (made / ".seen").read_text().splitlines())
        self.assertEqual({name: seen[name] for name in seen if name not in ("PWD", "SHLVL", "_", "OLDPWD")},
                         {"ORV_CONTEXT": "postflight", "ORV_ROOT_PATH": str(made), "P_AUTOJOB": "42", "P_CLIENT": "Acme", "P_DAY": "One"})
        self.assertTrue((made / "Acme.txt").is_file())
        self.assertEqual(stat.S_IMODE((made / "Rushes").stat().st_mode), 0o750)
        self.assertEqual(self.read_preferences()["ORVAutomaticVars"], {"AutoJob": "42"})
        wait(lambda: self.opened_folders() == [str(made)], "the folder to be opened")
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
