"""The preferences stay whole whatever else happens to them or to the program."""

import datetime
import fcntl

from settings_desk import *

STRANGE = {"a-real": 1.5, "a-date": datetime.datetime(2026, 1, 2, 3, 4, 5), "data": b"\0\1\2", "list": [1, {"deep": [True, "x"]}]}


class Safety(SettingsDesktop):
    def hold(self):
        """Another program holds the preferences until the result is closed."""
        path = self.home / ".local/state/orvane/preferences.lock"
        path.parent.mkdir(parents=True, exist_ok=True)
        lock = open(path, "a+")
        fcntl.flock(lock, fcntl.LOCK_EX)
        self.addCleanup(lock.close)
        return lock

    def rename(self, label):
        self.click_part("text", "^Label of the preset$")
        keys("ctrl+a")
        type_text(label)

    def test_unknown_keys_stay_at_every_level(self):
        strange_node = node("A", [node("inner.txt", **STRANGE)], **STRANGE)
        for binary in (False, True):
            with self.subTest(binary=binary):
                self.write_preferences([preset("Film", "{Client}", [strange_node, node("B", [])], **STRANGE), preset("Other", "x")],
                                       binary=binary, **STRANGE)
                before = self.read_preferences()
                self.start_settings()
                self.rename("Renamed")
                self.click_part(ITEM, "^inner.txt, File")
                keys("F2")
                type_text("renamed.txt")
                keys("Return")
                wait(lambda: self.labels() == ["Renamed", "Other"] and "renamed.txt" in str(self.tree_of()), "the edits on disk")
                self.end_settings()
                before["ORVPresets"][0]["label"] = "Renamed"
                before["ORVPresets"][0]["fileHierarchy"]["children"][0]["children"][0]["filename"] = "renamed.txt"
                self.assertEqual(self.read_preferences(), before)
                self.assertEqual(self.preferences.read_bytes()[:6] == b"bplist", binary)

    def test_what_a_killed_program_had_not_saved_is_offered_again(self):
        self.write_preferences([preset("Film", "{Client}")])
        self.start_settings()
        lock = self.hold()  # nothing can be saved
        self.rename("Last words")
        unsaved = self.home / ".local/state/orvane/unsaved"
        wait(lambda: unsaved.exists() and b"Last words" in unsaved.read_bytes(), "the edit to be kept")
        self.settings.kill()
        self.settings.wait(LIMIT)
        lock.close()
        self.assertEqual(self.labels(), ["Film"])
        wait(lambda: "'org.orvane.Settings'" not in bus_names(), "the program to be off the bus")
        self.start_settings()
        picture("safety-offered")
        self.click_part(BUTTON, "^Restore Changes$")
        self.wait_for_labels("Last words")
        self.end_settings()
        self.assertFalse(unsaved.exists())

    def test_what_was_saved_survives_a_kill_at_any_time(self):
        self.write_preferences([preset("Film", "{Client}")])
        self.start_settings()
        self.rename("Saved")
        self.wait_for_labels("Saved")
        self.settings.kill()
        self.settings.wait(LIMIT)
        self.wait_for_labels("Saved")
        self.start_settings()
        self.assertTrue(holds(lambda: self.labels() == ["Saved"]))
        self.end_settings()

    def test_another_programs_change_is_merged_with_unsaved_edits(self):
        self.write_preferences([preset("Film", "{Client}"), preset("Other", "x")])
        self.start_settings()
        lock = self.hold()
        self.rename("Mine")
        content = self.read_preferences()
        content["ORVPresets"][1]["label"] = "Theirs"
        content["ORVPresets"].append(preset("Third", "y"))
        self.write_file_as_programs_do(content)
        lock.close()
        self.wait_for_labels("Mine", "Theirs", "Third")
        self.end_settings()

    def test_the_same_changed_on_both_sides_is_asked_about(self):
        self.write_preferences([preset("Film", "{Client}")])
        self.start_settings()
        lock = self.hold()
        self.rename("Mine")
        content = self.read_preferences()
        content["ORVPresets"][0]["label"] = "Theirs"
        self.write_file_as_programs_do(content)
        lock.close()
        wait(lambda: self.found("label", "was changed here and by another program"), "the question")
        picture("safety-asked")
        self.assertTrue(holds(lambda: self.labels() == ["Theirs"], 1.5), "nothing is overwritten until it is answered")
        keys("alt+n")
        self.wait_for_labels("Mine")
        self.end_settings()

    def test_a_file_that_cannot_be_read_is_shown_and_left_alone(self):
        self.preferences.parent.mkdir(parents=True)
        self.preferences.write_bytes(b"<plist><dict><key>ORVPresets</key>")
        before = self.preferences.read_bytes()
        self.start_settings()
        wait(lambda: self.found("label", "The preferences file cannot be read. It is left as it is."), "the message")
        picture("safety-unreadable")
        keys("ctrl+n")
        keys("ctrl+z")
        self.end_settings()
        self.assertEqual(self.preferences.read_bytes(), before)

    def write_file_as_programs_do(self, content):
        new = self.preferences.with_suffix(".new")
        new.write_bytes(plistlib.dumps(content))
        new.rename(self.preferences)

    def test_the_window_answers_while_another_program_holds_the_preferences(self):
        self.write_preferences([preset("Film", "{Client}")])
        self.start_settings()
        lock = self.hold()
        self.rename("Mine")
        longest = 0.0
        end = time.monotonic() + 30
        while not self.found("label", "Another program holds the preferences. Your changes are saved as soon as it lets go."):
            began = time.monotonic()
            bus_call("org.freedesktop.Application.ActivateAction", "none", "[]", "{}", destination="org.orvane.Settings",
                     path="/org/orvane/Settings")
            longest = max(longest, time.monotonic() - began)
            self.assertLess(time.monotonic(), end, "it is never said")
        picture("safety-held")
        print(f"longest answer {longest * 1000:.0f} ms", flush=True)
        self.assertLess(longest, 3, "waiting for the lock would take ten seconds")
        lock.close()
        self.wait_for_labels("Mine")
        self.end_settings()


if __name__ == "__main__":
    unittest.main()
