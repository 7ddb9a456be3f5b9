"""From nothing to a folder on disk: a preset made with keys in the settings program, run by the helper that is already there."""

from settings_desk import *


class Road(SettingsDesktop):
    def test_a_preset_made_with_keys_is_made_into_folders_by_the_running_helper(self):
        self.start()  # no preferences yet
        self.start_settings()
        picture("road-1-empty")
        keys("ctrl+n")
        wait(lambda: self.focused() == ("text", "Label of the preset"), "the label's field")
        keys("ctrl+a")
        type_text("Job")
        keys("Tab")
        wait(lambda: self.focused() == ("text", "Name of the top folder"), "the name's field")
        keys("ctrl+a")
        type_text("{Client} {AutoJob}")
        self.focus_tree()
        self.add_items("Footage", "Sound {Client}", "Notes")
        picture("road-2-made")
        self.wait_for_labels("Job")
        wait(lambda: self.tree_of() == ["Footage", "Sound {Client}", "Notes"], f"the tree on disk, not {self.tree_of()}")
        self.show_tab("Item")
        self.click_part("text", "Permissions as three octal digits")
        type_text("750")
        self.click_part(BUTTON, "^Green$")
        wait(lambda: self.presets()[0]["fileHierarchy"]["children"][2].get("color") == "green", "the label on disk")
        wait(lambda: self.presets()[0]["fileHierarchy"]["children"][2].get("permissions") == "750", "the permissions on disk")
        picture("road-3-item")

        self.pop_up_for(self.projects)
        keys("Down", "Return")
        active("^New Folder from Preset$")
        type_text("ACME")
        keys("Return")
        keys("Return")  # the counter's row offers 0
        made = self.projects / "ACME 0"
        self.wait_for_folder(made)
        wait(lambda: sorted(each.name for each in made.iterdir()) == ["Footage", "Notes", "Sound ACME"], "all folders")
        self.assertEqual((made / "Notes").stat().st_mode & 0o777, 0o750)
        label = os.getxattr(made / "Notes", "user.com.apple.FinderInfo")
        self.assertEqual((int.from_bytes(label[8:10], "big") >> 1) & 7, 2, "green is label 2")
        self.assertTrue(all(each.is_dir() for each in made.iterdir()))

        subprocess.run(["xdotool", "windowactivate", str(window(TITLE))], check=True, timeout=LIMIT)
        active(TITLE)
        keys("ctrl+2")  # the counter of that creation
        wait(lambda: self.found(ITEM, "^AutoJob$"), "the counter in the list")
        wait(lambda: self.read_preferences()["ORVAutomaticVars"] == {"AutoJob": "0"}, "the counter on disk")
        picture("road-4-counters")
        self.end_settings()
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
