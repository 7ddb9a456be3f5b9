"""Preferences that are missing, damaged, odd or forbidden: a clear answer, and never a changed file."""

import datetime
import os
import plistlib
import stat
import unittest

from harness import OrvaneTest, file, preset


def nested_xml(levels):
    body = "<array>" * levels + "</array>" * levels
    return f'<?xml version="1.0"?><plist version="1.0"><dict><key>ORVPresets</key>{body}</dict></plist>'.encode()


def cyclic_binary():
    """A binary list whose dictionary has an array that holds itself."""
    objects = [b"\xd1\x01\x02", b"\x5aORVPresets", b"\xa1\x02"]
    body = b"bplist00"
    offsets = []
    for item in objects:
        offsets.append(len(body))
        body += item
    table = len(body)
    body += bytes(offsets)
    return body + bytes(6) + bytes([1, 1]) + (len(objects)).to_bytes(8, "big") + bytes(8) + table.to_bytes(8, "big")


WHOLE = plistlib.dumps({"ORVPresets": [preset("P", "top{AutoNo}")]})

NOT_STORED = "orvane: warning: the last values of automatic variables were not stored; the log says why\n"

UNREADABLE = {
    "empty": b"",
    "blank": b"  \n",
    "truncated XML": WHOLE[: len(WHOLE) // 2],
    "truncated binary": plistlib.dumps({"ORVPresets": [preset("P", "top")]}, fmt=plistlib.FMT_BINARY)[:-9],
    "an array": plistlib.dumps([1, 2]),
    "a text": b"nothing of the kind",
    "zeros": bytes(4096),
    "cyclic binary": cyclic_binary(),
}


class Unreadable(OrvaneTest):
    def assertRefused(self, *reason):
        before = self.snapshot(os.path.dirname(self.preferences))
        for words in (("list",), ("list", "--json"), ("show", "0"), ("create", "0", "--no-input"), ("create", "0", "--dry-run")):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out), (1, ""), words)
            self.assertTrue(result.err.startswith(f"orvane: Preferences cannot be read: {self.preferences}: "), result.err)
            for part in reason:
                self.assertIn(part, result.err)
        self.assertEqual(self.snapshot(os.path.dirname(self.preferences)), before)
        self.assertNothingMade()

    def test_damaged_files_are_named_and_left_alone(self):
        for kind, content in UNREADABLE.items():
            with self.subTest(kind):
                self.write_bytes(self.preferences, content)
                self.assertRefused()

    def test_an_empty_file_says_so(self):
        self.write_bytes(self.preferences, b"")
        self.assertRefused("the file is empty")

    def test_a_folder_in_its_place(self):
        os.makedirs(self.preferences)
        self.assertRefused("it is a folder")

    def test_a_fifo_in_its_place_does_not_hang(self):
        os.makedirs(os.path.dirname(self.preferences))
        os.mkfifo(self.preferences)
        self.assertRefused("it is not an ordinary file")
        checked = self.run_orvane("check")
        self.assertEqual((checked.status, checked.out), (1, ""))
        self.assertIn("it is not an ordinary file", checked.err)

    def test_a_file_without_permission(self):
        self.write_bytes(self.preferences, WHOLE, mode=0o000)
        result = self.run_without_rights("create", "0", "--no-input")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertIn("Permission denied", result.err)
        self.assertNothingMade()

    def test_json_tells_it_too(self):
        self.write_bytes(self.preferences, b"")
        result = self.create("0", "--json")
        self.assertEqual((result.status, result.json["error"]["title"]), (1, "Preferences cannot be read"))


class Odd(OrvaneTest):
    def test_missing_means_no_presets(self):
        self.assertEqual(self.run_orvane("list").status, 0)
        self.assertFalse(os.path.exists(os.path.join(self.home, "Library")))

    def test_presets_that_are_no_array_count_as_none(self):
        for value in ("text", 1, {"a": 1}, True, 1.5, b"data", datetime.datetime(2026, 1, 1)):
            self.write_bytes(self.preferences, plistlib.dumps({"ORVPresets": value}))
            warning = "orvane: warning: ORVPresets in the preferences is no array.\n"
            self.assertEqual(vars(self.run_orvane("list")), {"status": 0, "out": "", "err": warning})

    def test_wrong_types_at_every_key_of_a_preset_never_crash(self):
        values = ("text", 1, {"a": 1}, True, 1.5, b"data", datetime.datetime(2026, 1, 1), [], [[]])
        for value in values:
            for where in ("label", "directoryName", "fileHierarchy", "scriptFile", None):
                record = preset("P", "top") if where else value
                if where:
                    record[where] = value
                self.write_presets(record)
                result = self.create("0", "--no-input", "--in", self._make("t"))
                self.assertIn(result.status, (0, 1, 4), (where, value, result.err))
                self._clear("t")
            for key in ("filename", "isFolder", "children", "color", "permissions", "contentFilename"):
                self.write_presets(preset("P", "top", {**file("x"), key: value}))
                result = self.create("0", "--no-input", "--in", self._make("t"))
                self.assertIn(result.status, (0, 1), (key, value, result.err))
                self._clear("t")

    def _clear(self, name):
        import shutil
        shutil.rmtree(os.path.join(self.root, name))

    def test_a_mask_that_keeps_the_owner_out_does_not_spoil_orvanes_own_folders(self):
        self.write_presets(preset("P", "{AutoN}"))
        before = os.umask(0o177)
        self.addCleanup(os.umask, before)
        for number in "01":
            self.assertMade(self.run_without_rights("create", "0", "--no-input", "--no-open"), number)
        self.assertEqual(self.counters(), {"AutoN": "1"})
        for path in (".local", ".local/state", ".local/state/orvane"):
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(self.home, path)).st_mode), 0o700, path)

    def test_counters_of_wrong_types_are_left_alone(self):
        for value in ("text", 1, [], True):
            self.write_presets(preset("P", "{AutoNo}"), ORVAutomaticVars=value)
            before = self.content(self.preferences)
            result = self.create("0", "--no-input", "--json")
            self.assertEqual((result.status, result.json["variables"]), (0, [{"name": "AutoNo", "value": "0"}]))
            self.assertEqual((result.json["error"], result.err), (None, NOT_STORED))
            again = self.create("0", "--no-input")
            self.assertEqual(again.status, 1, "the number is the same, and so is the folder's name")
            self.assertTrue(again.err.endswith(NOT_STORED), again.err)
            os.rmdir(self.in_target("0"))
            self.assertEqual(self.content(self.preferences), before)

    def test_deep_nesting_neither_crashes_nor_hangs(self):
        content = nested_xml(200000)
        self.write_bytes(self.preferences, content)
        self.assertEqual(vars(self.run_orvane("list")), {"status": 0, "out": "0  (no label)\n", "err": ""})
        message = ("orvane: Top level folder name is blank: Make sure that the top-level folder name for this preset has been set "
                   "in the ORV Preference Pane.\n")
        self.assertEqual(vars(self.create("0", "--no-input")), {"status": 1, "out": "", "err": message})
        self.assertEqual(self.content(self.preferences), content)
        self.assertNothingMade()

    def test_a_hundred_megabytes_are_read(self):
        filler = b"<key>Other</key><string>" + b"x" * 100_000_000 + b"</string>"
        self.write_bytes(self.preferences, WHOLE.replace(b"<dict>", b"<dict>" + filler, 1))
        self.assertMade(self.create("P", "--no-input"), "top0")
        self.assertGreater(os.path.getsize(self.preferences), 100_000_000)
        self.assertEqual(self.counters(), {"AutoNo": "0"})


class Keeping(OrvaneTest):
    FOREIGN = {"Date": datetime.datetime(2026, 2, 3, 4, 5, 6), "Data": b"\0\xff", "Real": 1.25, "Big": 2**63, "Negative": -5,
               "Nested": {"a": [True, False, {"b": "c"}]}, "ORVShowMenubar": True, "Empty": {}}

    def test_foreign_keys_survive_a_counter(self):
        for binary in (False, True):
            self.write_presets(preset("P", "{AutoNo}"), binary=binary, **self.FOREIGN)
            with open(self.preferences, "rb") as domain:
                before = plistlib.load(domain)
            self.assertMade(self.create("0", "--no-input"), "0")
            os.rmdir(self.in_target("0"))
            with open(self.preferences, "rb") as domain:
                self.assertEqual(domain.read(8) == b"bplist00", binary)
                domain.seek(0)
                after = plistlib.load(domain)
            self.assertEqual(after.pop("ORVAutomaticVars"), {"AutoNo": "0"})
            self.assertEqual(after, before)

    def test_a_symbolic_link_stays_one(self):
        real = os.path.join(self.home, "dotfiles", "orvane.plist")
        self.write_bytes(real, WHOLE)
        os.makedirs(os.path.dirname(self.preferences))
        os.symlink(real, self.preferences)
        self.assertMade(self.create("0", "--no-input"), "top0")
        self.assertTrue(os.path.islink(self.preferences))
        self.assertEqual(self.counters(), {"AutoNo": "0"})

    def test_a_read_only_file_is_kept_and_the_folder_still_made(self):
        self.write_bytes(self.preferences, WHOLE, mode=0o444)
        os.chmod(os.path.dirname(self.preferences), 0o555)
        result = self.run_without_rights("create", "0", "--no-input")
        self.assertEqual((result.status, result.err), (0, NOT_STORED))
        self.assertTrue(os.path.isdir(self.in_target("top0")))
        with open(self.preferences, "rb") as domain:
            self.assertEqual(domain.read(), WHOLE)

    def test_a_preset_without_variables_does_not_touch_them(self):
        self.write_presets(preset("P", "top"))
        before = self.snapshot(self.home)
        self.assertMade(self.create("0"), "top")
        self.assertEqual(self.snapshot(self.home), before)


if __name__ == "__main__":
    unittest.main()
