"""Everything that goes through a file dialog, with keys in the dialog itself."""

from settings_desk import *


class Dialogs(SettingsDesktop):
    def test_a_folder_is_imported_exported_as_one_file_and_added_from_it(self):
        folder = self.home / "Jobs/Old job"
        (folder / "Footage/Day 1").mkdir(parents=True)
        (folder / "plan {1}.txt").write_text("The plan\n")
        self.start_settings()
        keys("alt+p")  # the menu
        wait(lambda: self.found("menu item", "Import Folder"), "the menu")
        keys("i")
        self.type_into_dialog("Import Folder", folder)
        self.wait_for_labels("Old job")
        self.assertEqual(sorted(map(str, self.tree_of())), sorted(map(str, ["Footage", ["Day 1"], "plan \\{1\\}.txt"])))
        content = next((self.support / "File Content").iterdir())
        self.assertEqual(content.read_text(), "The plan\n")

        target = self.home / "Kept.orvpreset"
        keys("ctrl+e")
        self.type_into_dialog("Export Preset", target)
        wait(target.exists, "the file")
        wait(lambda: self.found("label", f"Exported to {target}"), "what was done to be said")
        self.assertIn(b"The plan", __import__("base64").b64decode(self.data_in(target)))

        content.unlink()
        keys("ctrl+o")
        self.type_into_dialog("Add Preset File", target)
        self.wait_for_labels("Old job", "Old job")
        wait(content.exists, "the content to come with the file")
        self.assertEqual(content.read_text(), "The plan\n")
        self.end_settings()

    def data_in(self, path):
        """Everything that the file holds as data, in base 64."""
        return b"".join(line for line in re.findall(rb"<data>([^<]*)</data>", path.read_bytes()))

    def test_a_content_file_and_a_script_are_chosen_and_copied(self):
        content, script = self.home / "letter.odt", self.home / "after.sh"
        content.write_text("Dear …")
        script.write_text("#!/bin/sh\necho made\n")
        self.write_preferences([preset("Film", "{Client}", [node("letter.odt")])])
        self.start_settings()
        self.click_part(ITEM, "letter.odt, File")
        self.show_tab("Item")
        self.click_part(BUTTON, "^Choose…$")
        self.type_into_dialog("Choose Content File", content)
        wait(lambda: self.presets()[0]["fileHierarchy"]["children"][0].get("contentFilename") == "letter.odt", "the content on disk")
        self.assertEqual((self.support / "File Content/letter.odt").read_text(), "Dear …")

        self.show_tab("Script")
        self.click_part(BUTTON, "^Choose…$")
        self.type_into_dialog("Choose a Script", script)
        wait(lambda: self.presets()[0].get("scriptFile") == "after.sh", "the script on disk")
        stored = self.support / "Scripts/after.sh"
        self.assertEqual(stored.stat().st_mode & 0o111, 0o111)
        self.click_part(BUTTON, "^Test Run$")
        wait(lambda: self.found("label|panel", "^Exit status 0 after "), "the test run")
        picture("dialogs-script")
        self.end_settings()

    def test_a_file_that_is_no_preset_is_refused_in_the_window(self):
        wrong = self.home / "wrong.orvpreset"
        wrong.write_text("no preset")
        self.start_settings()
        keys("ctrl+o")
        self.type_into_dialog("Add Preset File", wrong)
        wait(lambda: self.found("label", "wrong.orvpreset cannot be added: "), "why it cannot be added")
        picture("dialogs-refused")
        self.assertEqual(self.labels(), [])
        keys("ctrl+o")  # and a dialog that is left changes nothing
        active("^Add Preset File$")
        keys("Escape")
        active(TITLE)
        self.end_settings()


if __name__ == "__main__":
    unittest.main()
