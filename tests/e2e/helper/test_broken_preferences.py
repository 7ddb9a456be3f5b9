"""Preferences that are missing, damaged, odd or forbidden: the helper runs on with a sensible menu and never touches the file."""

import datetime
import os
import stat

from desktop import *
from neighbours import FIXED, labels, without_rights_over_files

GOOD = {"ORVShowMenubar": True, "ORVPresets": [preset("Good", "top")]}
WHOLE = plistlib.dumps(GOOD)


def nested_xml(levels):
    body = "<array>" * levels + "</array>" * levels
    return (f'<?xml version="1.0"?><plist version="1.0"><dict><key>ORVShowMenubar</key><true/><key>ORVPresets</key>{body}</dict>'
            f"</plist>").encode()


def cyclic_binary():
    """A binary list whose dictionary has an array that holds itself."""
    objects = [b"\xd1\x01\x02", b"\x5aORVPresets", b"\xa1\x02"]
    body, offsets = b"bplist00", []
    for item in objects:
        offsets.append(len(body))
        body += item
    table = len(body)
    return body + bytes(offsets) + bytes(6) + bytes([1, 1]) + len(objects).to_bytes(8, "big") + bytes(8) + table.to_bytes(8, "big")


# Content, and the preset items that the menu must show for it.
FILES = {
    "empty": (b"", []),
    "blank": (b"  \n", []),
    "truncated XML": (WHOLE[: len(WHOLE) // 2], []),
    "truncated binary": (plistlib.dumps(GOOD, fmt=plistlib.FMT_BINARY)[:-9], []),
    "an array": (plistlib.dumps([1, 2]), []),
    "a text": (b"nothing of the kind", []),
    "zeros": (bytes(4096), []),
    "cyclic binary": (cyclic_binary(), []),
    "deeply nested": (nested_xml(200000), ["(no label)"]),
    "no presets": (plistlib.dumps({"ORVShowMenubar": True}), []),
}
VALUES = ("text", 1, {"a": 1}, True, 1.5, b"data", datetime.datetime(2026, 1, 1), [], [[]])


class Files(Desktop):
    def write(self, content):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        self.preferences.write_bytes(content)

    def wait_for(self, wanted, what):
        try:
            wait(lambda: labels(self.process) == wanted, f"the menu with {what}")
        except TimeIsUp as error:
            raise AssertionError(f"{error}: {labels(self.process)[:20]}\n{self.said()}") from None

    def show(self, content, presets, what):
        """Another file while the helper runs."""
        self.write(content)
        self.announce_change()
        self.wait_for([*presets, *FIXED], what)
        self.assertEqual(self.preferences.read_bytes(), content)
        self.assert_alive()

    def start_with(self, presets, what, **more):
        self.start(**more)
        self.wait_for([*presets, *FIXED], what)

    def end(self):
        self.process.terminate()
        self.assertEqual(self.process.wait(LIMIT), 0)
        wait(lambda: f"'{NAME}'" not in bus_names(), "the name to be free")


class BrokenPreferences(Files):
    def test_the_helper_starts_on_each_of_them(self):
        for what, (content, presets) in FILES.items():
            with self.subTest(what):
                self.write(content)
                self.start_with(presets, what)
                self.assertEqual(self.preferences.read_bytes(), content)
                self.end()
                self.assertEqual(self.preferences.read_bytes(), content)

    def test_a_running_helper_takes_each_of_them_and_comes_back(self):
        self.write(WHOLE)
        self.start_with(["Good"], "a good file")
        for what, (content, presets) in FILES.items():
            with self.subTest(what):
                self.show(content, presets, what)
                self.show(WHOLE, ["Good"], f"a good file after {what}")

    def test_wrong_types_at_every_key(self):
        self.write(WHOLE)
        self.start_with(["Good"], "a good file")
        for value in VALUES:
            with self.subTest(value=value):
                presets = ["(no label)"] if value == [[]] else []
                self.show(plistlib.dumps({**GOOD, "ORVPresets": value}), presets, f"presets: {value!r}")
                self.show(plistlib.dumps({**GOOD, "ORVAutomaticVars": value}), ["Good"], f"counters: {value!r}")
                self.show(plistlib.dumps({**GOOD, "ORVPresets": [value, GOOD["ORVPresets"][0]]}), ["(no label)", "Good"], f"a preset: {value!r}")
                for key in ("directoryName", "fileHierarchy", "scriptFile"):
                    self.show(plistlib.dumps({**GOOD, "ORVPresets": [{**preset("P", "top"), key: value}]}), ["P"], f"{key}: {value!r}")
                label = {"text": "text", "1": "1", "1.5": "1.5", "b'data'": "data"}.get(str(value), "top")  # else the folder's name
                self.show(plistlib.dumps({**GOOD, "ORVPresets": [{**preset("P", "top"), "label": value}]}), [label], f"label: {value!r}")

    def test_an_item_that_is_hidden_by_an_odd_value_leaves_the_pop_up_menu(self):
        self.write(plistlib.dumps({**GOOD, "ORVShowMenubar": {"a": 1}}))
        self.start()
        self.assertEqual(labels(self.process), [])
        self.pop_up()
        picture("hidden-item")
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")
        self.assert_alive()

    def test_choosing_a_preset_of_a_file_that_broke_meanwhile_makes_nothing_and_says_nothing(self):
        self.write_preferences([preset("Film", "Film {AutoNo}")])
        self.start()
        self.pop_up()
        content = WHOLE[: len(WHOLE) // 2]
        self.write(content)
        keys("Down", "Return")
        active("Orvane: Choose Parent Folder")
        choose_in_panel(self.projects)
        gone("Orvane: Choose Parent Folder")
        self.announce_change()
        self.pop_up()  # comes only when nothing else is open
        picture("broke-meanwhile")
        self.assertEqual(list(self.projects.iterdir()), [])
        self.assertEqual(self.preferences.read_bytes(), content)
        self.assert_alive()


class OddPlaces(Files):
    def test_missing(self):
        self.start_with([], "no file")
        self.end()
        self.assertFalse((self.home / "Library").exists())

    def test_a_link_to_a_good_file(self):
        other = self.home / "elsewhere.plist"
        other.write_bytes(WHOLE)
        self.preferences.parent.mkdir(parents=True)
        self.preferences.symlink_to(other)
        self.start_with(["Good"], "a link")
        self.end()
        self.assertEqual((os.readlink(self.preferences), other.read_bytes()), (str(other), WHOLE))

    def test_a_dangling_link(self):
        self.preferences.parent.mkdir(parents=True)
        self.preferences.symlink_to(self.home / "nowhere")
        self.start_with([], "a dangling link")
        self.end()
        self.assertTrue(self.preferences.is_symlink())
        self.assertFalse((self.home / "nowhere").exists())

    def test_a_link_to_itself(self):
        self.preferences.parent.mkdir(parents=True)
        self.preferences.symlink_to(self.preferences.name)
        self.start_with([], "a link to itself")
        self.end()

    def test_a_folder_in_its_place(self):
        self.preferences.mkdir(parents=True)
        (self.preferences / "kept").touch()
        self.start_with([], "a folder")
        self.end()
        self.assertEqual([entry.name for entry in self.preferences.iterdir()], ["kept"])

    def test_a_pipe_in_its_place_does_not_hang(self):
        self.preferences.parent.mkdir(parents=True)
        os.mkfifo(self.preferences)
        self.start_with([], "a pipe")
        self.end()
        self.assertTrue(stat.S_ISFIFO(self.preferences.lstat().st_mode))

    def test_a_file_without_permission(self):
        self.write(WHOLE)
        self.preferences.chmod(0)
        self.start_with([], "a file without permission", before=without_rights_over_files)
        self.end()
        self.assertEqual(stat.S_IMODE(self.preferences.stat().st_mode), 0)
        self.preferences.chmod(0o600)
        self.assertEqual(self.preferences.read_bytes(), WHOLE)

    def test_a_hundred_megabytes(self):
        filler = b"<key>Other</key><string>" + b"x" * 100_000_000 + b"</string>"
        content = WHOLE.replace(b"<dict>", b"<dict>" + filler, 1)
        self.write(content)
        self.start_with(["Good"], "100 MB")
        self.end()
        self.assertTrue(self.preferences.read_bytes() == content)


if __name__ == "__main__":
    unittest.main()
