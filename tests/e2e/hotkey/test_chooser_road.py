"""On desktops that give programs neither hot keys nor a menu at the pointer: the plain statement of what to bind, and the chooser that
`orvane menu` brings up, driven with the keyboard, to the tree on disk."""

import unittest
from chooser_desks import *
from chooser_desks import keep_picture
from support import PANEL, PROMPT


class ChooserRoad(ChooserDesktop):
    def test_says_plainly_that_there_is_no_hot_key_and_what_to_bind(self):
        self.start_without_hot_key()
        words = {"gnome": "gsettings set", "weston": "weston has no keys for commands"}[self.desk.name]
        for said in (self.statement(), self.said(), self.orvane("menu", "--help").stdout):
            self.assertIn("This desktop gives programs no hot keys of their own.", said)
            self.assertIn("'orvane menu'", said)
            self.assertIn(words, said)
        self.assertNotIn(" works", self.statement())
        self.assertIn("it has no layer shell", self.said())
        self.assertIn("The running helper says:", self.orvane("menu", "--help").stdout)

    def test_the_keyboard_alone_makes_a_tree_in_the_folder_that_is_handed_over(self):
        self.start_without_hot_key()
        before, seen = self.ask_for_the_menu("--in", str(self.folder))
        keep_picture("chooser", seen)
        self.type("fi")
        searched = self.still_screen()
        keep_picture("chooser-searched", searched)
        self.assertIsNotNone(difference(seen, searched), "the search leaves fewer presets")
        self.desk.press("Return")
        self.desk.wait_for(PROMPT, before)
        wait(lambda: self.still_screen() != searched, "the prompt in the chooser's place")
        for text in ("Acme", "Spring", "One"):
            self.still_screen()
            self.type(text)
            if text != "One":
                self.desk.press("Tab")
        self.picture("prompt")
        self.desk.press("Return")
        made = self.folder / "Acme Spring"
        self.wait_for_folder(made / "Rushes/Day One")
        self.assertTrue((made / "Spring.txt").is_file())
        wait(lambda: self.opened_folders() == [str(made)], "the folder to be opened")
        self.desk.wait_for_gone(PROMPT, before)
        self.assert_alive()

    def test_without_a_folder_the_parent_folder_is_chosen(self):
        """Nobody here tells which window is in front."""
        self.start_without_hot_key()
        before, seen = self.ask_for_the_menu()
        self.type("p")
        searched = self.still_screen()
        self.desk.press("Return")
        self.desk.wait_for(PANEL, before)
        wait(lambda: self.still_screen() not in (seen, searched), "the folder chooser in the chooser's place")
        self.picture("folder-chooser")
        self.desk.press("Escape")
        self.desk.wait_for_gone(PANEL, before)
        self.assertEqual(list(self.folder.iterdir()), [])
        self.assert_alive()

    def test_escape_closes_it_each_time(self):
        self.start_without_hot_key()
        for _round in range(3):
            before, _seen = self.ask_for_the_menu()
            self.desk.press("Escape")
            self.desk.wait_for_gone(CHOOSER, before)
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
