"""Names of every kind, from the preset to the disk."""

import os
import shutil
import subprocess
import unittest

from harness import DEADLINE, PROGRAM, OrvaneTest, file, folder, preset

ORDINARY = ["-x", "--", "~", "~root", ".hidden", "a b", " leading", "trailing ", "tab\there", "line\nfeed", "\x01\x1b[31m", "\x7f",
            "%d%s%n", "100 %", "quote\"'`$(x)", "back\\slash", "e\u0301", "\u00e9", "שלום", "a\u202eb", "👩‍👩‍👧", "x" * 255, "é" * 127, "*?[]",
            "COM1", "a.", "…", "\u00a0", "\ufeffx", "#"]


class Names(OrvaneTest):
    def make(self, *children, name="top", words=()):
        self.write_presets(preset("P", name, *children), binary=True)
        return self.create("0", *words, errors="surrogateescape")

    def test_ordinary_and_odd_names_arrive_unchanged(self):
        result = self.make(*[file(name) for name in ORDINARY], *[folder(name + "d"[: 255 - len(name.encode())]) for name in ORDINARY[:5]])
        self.assertEqual((result.status, result.err), (0, ""))
        expected = [f"top/{name}" for name in ORDINARY] + [f"top/{name}d/" for name in ORDINARY[:5]] + ["top/"]
        self.assertEqual(self.listing(), sorted(expected))

    def test_top_level_folders_may_have_odd_names_too(self):
        for name in ORDINARY:
            result = self.make(file("x"), name=name)
            self.assertEqual((result.status, result.out, result.err), (0, self.in_target(name) + "\n", ""), name)
            self.assertTrue(os.path.isfile(self.in_target(name, "x")))

    def test_values_that_are_no_utf8_arrive_unchanged(self):
        self.write_presets(preset("P", "{A}", file("{A}.txt")))
        done = subprocess.run([os.fsencode(PROGRAM), b"create", b"0", b"--set", b"A=\xff\xfe\xc3"], env=self.env, cwd=self.target,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(os.listdir(os.fsencode(self.target)), [b"\xff\xfe\xc3"])
        self.assertEqual(os.listdir(os.fsencode(self.target) + b"/\xff\xfe\xc3"), [b"\xff\xfe\xc3.txt"])

    def test_colons_and_slashes_become_underscores(self):
        self.assertEqual(self.make(file("a/b:c"), file("{A}"), words=("--set", "A=/:")).status, 0)
        self.assertEqual(self.listing(), ["top/", "top/__", "top/a_b_c"])

    def test_the_json_path_is_that_of_the_folder_on_disk(self):
        result = self.make(file("x"), name="a:b", words=("--json",))
        self.assertEqual((result.status, result.json["path"]), (0, self.in_target("a_b")))

    def test_names_too_long_or_reserved_are_not_made(self):
        for name in ("x" * 256, "é" * 128, ".", ".."):
            for node in (file(name), folder(name)):
                result = self.make(file("before"), node)
                self.assertEqual((result.status, result.out), (1, ""), name)
                self.assertIn("Unable to create " + ("directory " if node["isFolder"] else "file '"), result.err)
                self.assertNothingMade()

    def test_empty_names_are_not_made(self):
        for node in (file(""), {}, folder("{A}")):
            result = self.make(file("before"), node, words=("--no-input",))
            self.assertEqual(result.status, 1)
            self.assertNothingMade()

    def test_a_top_level_folder_of_dots_is_never_made_elsewhere(self):
        before = sorted(os.listdir(self.root))
        for name in (".", "..", "../x"):
            result = self.make(file("inside"), name=name)
            self.assertEqual(result.status, 0 if name == "../x" else 1)
        self.assertEqual(self.listing(), [".._x/", ".._x/inside"])
        self.assertEqual(sorted(os.listdir(self.root)), before)

    def test_case_only_differences_are_different_names(self):
        self.assertEqual(self.make(file("a"), file("A"), folder("b"), folder("B")).status, 0)
        self.assertEqual(self.listing(), ["top/", "top/A", "top/B/", "top/a", "top/b/"])

    def test_a_file_over_a_file_empties_it(self):
        self.write_content("c", b"content")
        self.assertEqual(self.make(file("x", contentFilename="c"), file("x")).status, 0)
        self.assertEqual(os.path.getsize(self.in_target("top", "x")), 0)

    def test_a_folder_over_a_folder_joins_it(self):
        self.assertEqual(self.make(folder("x", file("a")), folder("x", file("b"))).status, 0)
        self.assertEqual(self.listing(), ["top/", "top/x/", "top/x/a", "top/x/b"])

    def test_a_file_and_a_folder_of_one_name_are_not_made(self):
        for nodes in ((file("x"), folder("x")), (folder("x"), file("x"))):
            self.assertEqual(self.make(*nodes).status, 1)
            self.assertNothingMade()

    def test_what_becomes_of_a_copied_folder_s_name_is_what_check_says(self):
        self.write_content("tree/in.txt", b"inside")
        self.write_content("letter", b"text")
        items = {"copied": file("a", contentFilename="tree"), "folder": folder("a", file("in.txt")), "empty": file("a"),
                 "filled": file("a", contentFilename="letter")}
        fails = ("error: 'a' is also the name of children[0]: the creation will fail", 1, [])
        empties = ("error: 'a' is also the name of children[0]: they become one empty file", 0, ["Top/", "Top/a"])
        joins = ("warning: 'a' is also the name of children[0], a folder that is copied: both become one folder, in which a file that "
                 "both hold is empty", 0, ["Top/", "Top/a/", "Top/a/in.txt"])
        for first, second, (told, status, made) in (
                ("copied", "folder", joins), ("copied", "empty", fails), ("copied", "filled", fails), ("copied", "copied", fails),
                ("folder", "copied", fails), ("empty", "copied", empties), ("filled", "copied", empties)):
            with self.subTest(first=first, second=second):
                self.write_presets(preset("P", "Top", items[first], items[second]))
                self.assertEqual(self.run_orvane("check", "P").out, f'P: fileHierarchy/children[1] "a"/filename: {told}\n')
                self.assertEqual((self.create("P", "--no-open").status, self.listing()), (status, made))
                if status == 0:
                    self.assertEqual(self.content(self.in_target(made[-1])), b"")
                    shutil.rmtree(self.in_target("Top"))

    def test_a_per_cent_sign_in_a_message_counts_as_a_directive(self):
        result = self.make(file("100%d" + "x" * 255))
        self.assertEqual(result.status, 1)
        self.assertIn("/1000xxx", result.err)

    def test_deep_and_long_paths(self):
        # Deeper than the library that writes property lists goes, so the text is put together here.
        folders = "<dict><key>filename</key><string>dddddddddddddddddddd</string><key>isFolder</key><true/><key>children</key><array>"
        tree = folders * 500 + "<dict><key>filename</key><string>end</string></dict>" + "</array></dict>" * 500
        self.write_bytes(self.preferences, (
            '<?xml version="1.0"?><plist version="1.0"><dict><key>ORVPresets</key><array><dict><key>directoryName</key><string>top'
            f"</string><key>fileHierarchy</key><dict><key>children</key><array>{tree}</array></dict></dict></array></dict></plist>"
        ).encode())
        result = self.create("0")
        self.assertMade(result, "top")
        depth = 0
        at = os.open(self.in_target("top"), os.O_RDONLY)
        while True:
            names = os.listdir(at)
            self.assertEqual(len(names), 1)
            if names == ["end"]:
                break
            inner = os.open(names[0], os.O_RDONLY, dir_fd=at)
            os.close(at)
            at = inner
            depth += 1
        os.close(at)
        self.assertEqual(depth, 500)


if __name__ == "__main__":
    unittest.main()
