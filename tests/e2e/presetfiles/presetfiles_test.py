#!/usr/bin/env python3
"""Drives the built `orvane`: import, export, add and check, each in a home folder of its own.

    presetfiles_test.py PROGRAM [unittest's arguments]
"""

import json
import os
import plistlib
import random
import socket
import subprocess
import unittest
from pathlib import Path

from faults import Disturbed, Interrupted  # tests of this run, too
from homes import Case, Home, tree_of

__all__ = ["Disturbed", "Interrupted"]


class Import(Case):
    def test_gives_the_same_folder_back(self):
        source = self.rich_folder()
        result = self.home.run("import", str(source), "--with-content")
        self.assertEqual(result.stdout, b"0  Acme job\n")
        self.assertEqual(result.stderr, b"")
        made = self.home.create(0)
        self.assertEqual(made.name, "Acme job")
        self.assertEqual(tree_of(made), tree_of(source))

    def test_leaves_files_empty_without_contents(self):
        source = self.rich_folder()
        self.home.run("import", str(source))
        self.assertFalse(self.home.support.exists())
        expected = {path: (mode, label, contents and b"") for path, (mode, label, contents) in tree_of(source).items()}
        self.assertEqual(tree_of(self.home.create(0)), expected)

    def test_shows_the_helper_of_a_new_user_and_of_nobody_else(self):
        source = self.rich_folder()
        self.home.run("import", str(source))
        self.assertIs(plistlib.loads(self.home.preferences.read_bytes())["ORVShowMenubar"], True)
        for root in ({}, {"ORVPresets": []}, {"ORVShowMenubar": False}):
            self.home.write_preferences(root)
            self.home.run("import", str(source))
            self.assertEqual(plistlib.loads(self.home.preferences.read_bytes()).get("ORVShowMenubar"), root.get("ORVShowMenubar"))

    def test_what_xml_cannot_hold_is_left_out_or_refused_so_that_others_can_read_the_preferences(self):
        source = self.folder()
        for name in ("ok", "a\x01b", "c\x1bd", "e\ufffef", "tab\tand\nline"):
            (source / name).touch()
        said = self.home.run("import", str(source)).stderr.decode()
        self.assertEqual(said.count("left out: its name holds a character that XML cannot hold\n"), 3, said)
        children = self.home.presets()[0]["fileHierarchy"]["children"]
        self.assertEqual([child["filename"] for child in children], ["ok", "tab\tand\nline"])
        before = self.home.preferences.read_bytes()
        refused = self.home.run("import", str(source), "--label", "q\x01", status=1)
        self.assertIn(b"orvane: Preset not stored: the preferences cannot hold the text 'q\\x01'.\n", refused.stderr)
        self.assertEqual(self.home.preferences.read_bytes(), before)

    def test_sorts_by_bytes_and_names_the_preset(self):
        source = self.folder()
        for name in ("b", "B", "a", "ä", "_"):
            (source / name).touch()
        self.assertEqual(self.home.run("import", str(source), "--label", "My label").stdout, b"0  My label\n")
        self.assertEqual(self.home.run("import", str(source) + "/").stdout, b"1  Acme job\n")
        children = self.home.presets()[0]["fileHierarchy"]["children"]
        self.assertEqual([child["filename"] for child in children], ["B", "_", "a", "b", "ä"])
        self.assertEqual(self.home.presets()[0]["label"], "My label")

    def test_takes_the_name_of_the_current_folder(self):
        source = self.folder("Here")
        self.home.top.joinpath("Here").symlink_to(source)
        self.assertEqual(self.home.run("import", "Here").stdout, b"0  Here\n")
        self.assertEqual(self.home.run("import", "Here/.").stdout, b"1  Here\n")

    def test_turns_texts_into_variables(self):
        source = self.rich_folder()
        self.home.run("import", str(source), "--variable", "Acme=Client", "--with-content")
        made = self.home.create(0, "--set", "Client=Globex")
        self.assertEqual(made.name, "Globex job")
        expected = {path.replace(b"Acme", b"Globex"): rest for path, rest in tree_of(source).items()}
        self.assertEqual(tree_of(made), expected)

    def test_warns_of_a_text_that_is_nowhere(self):
        source = self.rich_folder()
        warning = "orvane: warning: '{}' was turned into the variable '{}' nowhere\n"
        for words, expected in (
                (("Acme=Client",), ()), (("Acmee=Client",), (("Acmee", "Client"),)), (("Acme=Client", "plan=Plan", "x y=Z"), (("x y", "Z"),)),
                (("Acme=Client", "ACME=Client"), (("ACME", "Client"),)), (("Acme=Client", "plan=Client"), ()),
                (("plan=a", "plan=b", "nope=a"), (("plan", "b"), ("nope", "a"))), (("Acme=A", "Ac=B"), (("Ac", "B"),))):
            with self.subTest(words=words):
                result = self.home.run("import", str(source), "--label", " ".join(words), *(f"--variable={word}" for word in words))
                self.assertEqual(result.stderr.decode(), "".join(warning.format(*each) for each in expected))

    def test_warns_of_a_label_that_another_preset_has(self):
        source = self.folder()
        self.assertEqual(self.home.run("import", str(source)).stderr, b"")
        result = self.home.run("import", str(source))
        self.assertEqual(result.stderr, b"orvane: warning: there are several presets 'Acme job' now; their indexes tell them apart\n")
        self.assertEqual(result.stdout, b"1  Acme job\n")
        self.assertEqual(self.home.run("import", str(source), "--label", "other").stderr, b"")

    def test_gives_random_names_back(self):
        generator = random.Random(5)
        for number in range(12):
            source = self.folder("{top}" * (number % 2) + f"t{number}")
            folders = [source]
            for _ in range(40):
                name = "".join(generator.choice("{}\\ab é") for _ in range(generator.randint(1, 8)))
                path = generator.choice(folders) / name
                if path.exists():
                    continue
                if generator.random() < 0.4:
                    path.mkdir()
                    folders.append(path)
                else:
                    path.write_text(name)
            self.home.run("import", str(source), "--with-content")
            made = self.home.create(number)
            self.assertEqual(made.name, source.name)
            self.assertEqual(tree_of(made), tree_of(source))

    def test_leaves_out_what_is_no_file_and_says_so(self):
        source = self.folder()
        (source / "link").symlink_to("/etc/passwd")
        (source / "loop").symlink_to(".")
        os.mkfifo(source / "fifo")
        server = socket.socket(socket.AF_UNIX)
        self.addCleanup(server.close)
        server.bind(str(source / "socket"))
        os.mkdir(os.fsencode(source) + b"/bad\xff")
        (source / "kept").touch()
        errors = self.home.run("import", str(source), "--with-content").stderr.decode()
        self.assertEqual(errors.count("orvane: warning: "), 5)
        for name, what in (("link", "a symbolic link"), ("loop", "a symbolic link"), ("fifo", "a FIFO"), ("socket", "a socket"),
                           ("bad\\xff", "its name is not UTF-8")):
            self.assertIn(f"orvane: warning: Acme job/{name}: left out: {what}\n", errors)
        self.assertEqual([child["filename"] for child in self.home.presets()[0]["fileHierarchy"]["children"]], ["kept"])

    @staticmethod
    def unprivileged():
        if os.geteuid() == 0:
            os.setgroups([])
            os.setgid(65534)
            os.setuid(65534)

    def give_away(self):
        if os.geteuid() == 0:
            for folder, folders, files in os.walk(self.top):
                for name in [".", *folders, *files]:
                    os.lchown(os.path.join(folder, name), 65534, 65534)

    def test_warns_of_what_it_may_not_read(self):
        source = self.folder()
        (source / "closed").mkdir()
        (source / "closed" / "inner").touch()
        (source / "listed").mkdir()
        (source / "listed" / "inner").touch()
        (source / "secret").write_text("x")
        for name, mode in (("closed", 0), ("listed", 0o444), ("secret", 0)):
            (source / name).chmod(mode)
        self.give_away()
        self.addCleanup(lambda: [(source / name).chmod(0o755) for name in ("closed", "listed")])
        errors = self.home.run("import", str(source), "--with-content", preexec_fn=self.unprivileged).stderr.decode()
        for name in ("closed: its contents are left out", "listed/inner: left out", "secret: its contents are left out"):
            self.assertIn(f"Acme job/{name}: Permission denied", errors)
        children = {child["filename"]: child for child in self.home.presets()[0]["fileHierarchy"]["children"]}
        self.assertEqual({name: child["permissions"] for name, child in children.items()},
                         {"closed": "000", "listed": "444", "secret": "000"})

    def test_reads_trees_deeper_than_any_path(self):
        source = self.folder()
        descriptor = os.open(source, os.O_RDONLY)
        for _ in range(3000):
            os.mkdir("d", dir_fd=descriptor)
            below = os.open("d", os.O_RDONLY, dir_fd=descriptor)
            os.close(descriptor)
            descriptor = below
        os.close(os.open("leaf", os.O_CREAT | os.O_WRONLY, dir_fd=descriptor))
        os.close(descriptor)
        self.addCleanup(subprocess.run, ["rm", "-rf", str(source)], check=False)
        self.home.run("import", str(source), preexec_fn=lambda: __import__("resource").setrlimit(7, (64, 64)))
        self.assertEqual(self.home.preferences.read_bytes().count(b"<key>filename</key>"), 3001)

    def test_shares_equal_contents_and_overwrites_none(self):
        self.home.contents.mkdir(parents=True)
        (self.home.contents / "a.txt").write_text("foreign")
        (self.home.contents / "b.txt").symlink_to("/nowhere")
        source = self.folder()
        for folder, text in (("1", "one"), ("2", "two"), ("3", "one")):
            (source / folder).mkdir()
            (source / folder / "a.txt").write_text(text)
            (source / folder / "b.txt").write_text("b")
        self.home.run("import", str(source), "--with-content")
        self.home.run("import", str(source), "--with-content")
        self.assertEqual(self.home.stored(), ["a 2.txt", "a 3.txt", "a.txt", "b 2.txt", "b.txt"])
        self.assertEqual((self.home.contents / "a.txt").read_text(), "foreign")
        self.assertEqual(tree_of(self.home.create(1)), tree_of(source))

    def test_keeps_holes_and_attributes_of_contents(self):
        source = self.folder()
        with open(source / "sparse", "wb") as file:
            file.seek(1 << 30)
            file.write(b"end")
        os.setxattr(source / "sparse", "user.note", b"hello")
        self.home.run("import", str(source), "--with-content")
        status = (self.home.contents / "sparse").stat()
        self.assertEqual(status.st_size, (1 << 30) + 3)
        self.assertLess(status.st_blocks * 512, 1 << 20)
        self.assertEqual(os.getxattr(self.home.contents / "sparse", "user.note"), b"hello")

    def test_refuses_what_is_no_folder(self):
        self.home.run("import", "/nowhere", status=1)
        self.home.run("import", "/etc/passwd", status=1)
        self.home.run("import", "/", status=1)
        self.home.run("import", status=2)
        self.home.run("import", "/tmp", "/tmp", status=2)
        for variable in ("Acme", "=x", "Acme=", "Acme={x}", "Acme=a/b"):
            self.home.run("import", "/tmp", "--variable", variable, status=2)
        self.home.run("import", "/tmp", "--label", b"\xff", status=2)
        self.assertFalse(self.home.preferences.exists())

    def test_never_replaces_preferences_that_it_cannot_read(self):
        source = self.rich_folder()
        for damaged in (b"<plist><dict>", b"", b"bplist00garbage", plistlib.dumps([1])):
            before = self.home.write_preferences(damaged)
            self.home.run("import", str(source), "--with-content", status=1)
            self.assertEqual(self.home.preferences.read_bytes(), before)
            self.assertEqual(self.home.stored(), [])
        before = self.home.write_preferences({"ORVPresets": "text", "other": 1})
        self.home.run("import", str(source), "--with-content", status=1)
        self.assertEqual(self.home.preferences.read_bytes(), before)
        self.assertEqual(self.home.stored(), [])

    def test_keeps_everything_else_in_the_preferences(self):
        self.home.write_preferences({"ORVPresets": [{"label": "old", "directoryName": "x", "foreign": b"data"}], "ORVAutomaticVars": {"Auto": "7"}, "real": 1.5})
        self.home.run("import", str(self.folder()))
        root = plistlib.loads(self.home.preferences.read_bytes())
        self.assertEqual(root["ORVAutomaticVars"], {"Auto": "7"})
        self.assertEqual(root["real"], 1.5)
        self.assertEqual(root["ORVPresets"][0], {"label": "old", "directoryName": "x", "foreign": b"data"})
        self.assertEqual(root["ORVPresets"][1]["label"], "Acme job")

    def test_leaves_nothing_when_the_store_cannot_be_written(self):
        self.home.support.mkdir(parents=True)
        self.home.contents.mkdir()
        self.home.contents.chmod(0o555)
        source = self.folder()
        (source / "a").write_text("a")
        self.give_away()
        result = self.home.run("import", str(source), "--with-content", status=1, preexec_fn=self.unprivileged)
        self.assertIn(b"cannot be stored: Permission denied", result.stderr)
        self.assertFalse(self.home.preferences.exists())
        self.assertEqual(self.home.stored(), [])


class ExportAndAdd(Case):
    def setUp(self):
        super().setUp()
        self.other = Home(self.top)
        self.file = str(Path(self.top) / "preset.orvpreset")

    def make_preset(self):
        source = self.rich_folder()
        self.home.run("import", str(source), "--with-content")
        self.home.scripts.mkdir(parents=True)
        script = self.home.scripts / "after.sh"
        script.write_text('#!/bin/sh\necho "$ORV_CONTEXT" > "$ORV_ROOT_PATH/made by script"\n')
        script.chmod(0o755)
        root = plistlib.loads(self.home.preferences.read_bytes())
        root["ORVPresets"][0].update(scriptFile="after.sh", foreign={"kept": [1, 2.5]})
        root["ORVPresets"][0]["fileHierarchy"]["children"][0]["foreign"] = "kept"
        self.home.write_preferences(root)
        return source

    def test_a_text_that_xml_cannot_hold_makes_it_a_binary_file(self):
        record = {"label": "q\x01", "directoryName": "x\x1b", "fileHierarchy": {"isFolder": True, "children": []}}
        self.home.preferences.parent.mkdir(parents=True)
        self.home.preferences.write_bytes(plistlib.dumps({"ORVPresets": [record]}, fmt=plistlib.FMT_BINARY))
        exported = self.home.top / "odd.orvpreset"
        self.home.run("export", "0", str(exported))
        self.assertEqual(exported.read_bytes()[:8], b"bplist00")
        other = Home(self.top)
        self.assertIn(b"cannot hold the text 'q\\x01'", other.run("add", str(exported), status=1).stderr)
        self.assertFalse(other.preferences.exists())
        other.preferences.parent.mkdir(parents=True)
        other.preferences.write_bytes(plistlib.dumps({"ORVPresets": []}, fmt=plistlib.FMT_BINARY))
        other.run("add", str(exported))
        self.assertEqual(other.presets()[0]["label"], "q\x01")

    def test_carry_a_preset_to_another_home(self):
        source = self.make_preset()
        self.home.run("export", "Acme job", self.file)
        result = self.other.run("add", self.file)
        self.assertEqual(result.stdout, b"0  Acme job\n")
        self.assertIn(b"the script 'after.sh' will run", result.stderr)
        self.assertEqual(self.other.presets(), self.home.presets())
        made = self.other.create(0)
        self.assertEqual((made / "made by script").read_text(), "postflight\n")
        (made / "made by script").unlink()
        # Labels and modes come from the preset; other attributes of contents stay behind.
        self.assertEqual(tree_of(made), tree_of(source))
        lines = self.other.run("check").stdout.decode().splitlines()
        self.assertEqual(len(lines), 2)
        self.assertTrue(all(": note: the key 'foreign' is not known" in line for line in lines), lines)

    def test_work_through_pipes(self):
        self.make_preset()
        piped = self.home.run("export", "0", "-").stdout
        self.home.run("export", "0", self.file)
        self.assertEqual(Path(self.file).read_bytes(), piped)
        self.assertEqual(self.other.run("add", "-", data=piped).stdout, b"0  Acme job\n")

    def test_give_new_names_where_names_are_taken(self):
        source = self.make_preset()
        self.home.run("export", "0", self.file)
        for folder, name in ((self.other.contents, "run"), (self.other.scripts, "after.sh")):
            folder.mkdir(parents=True)
            (folder / name).write_text("foreign")
        self.other.run("add", self.file)
        self.other.run("add", self.file)
        self.assertEqual((self.other.contents / "run").read_text(), "foreign")
        self.assertEqual((self.other.scripts / "after.sh").read_text(), "foreign")
        self.assertEqual(sorted(os.listdir(self.other.scripts)), ["after 2.sh", "after.sh"])
        self.assertEqual([preset["scriptFile"] for preset in self.other.presets()], ["after 2.sh"] * 2)
        made = self.other.create(1)
        self.assertEqual((made / "run").read_bytes(), (source / "run").read_bytes())
        self.assertTrue((made / "made by script").exists())

    def test_export_overwrites_only_when_forced(self):
        self.make_preset()
        Path(self.file).write_text("mine")
        self.assertIn(b"--force", self.home.run("export", "0", self.file, status=1).stderr)
        self.assertEqual(Path(self.file).read_text(), "mine")
        link = Path(self.top) / "link"
        link.symlink_to(self.file)
        self.home.run("export", "0", str(link), "--force")
        self.assertTrue(link.is_symlink())
        self.assertTrue(Path(self.file).read_bytes().startswith(b"<?xml"))
        self.home.run("export", "0", "/nowhere/x", status=1)
        self.home.run("export", "0", self.top, status=1)
        self.assertEqual([name for name in os.listdir(self.top) if name.startswith(".orvane")], [])
        self.home.run("export", "no such preset", self.file, "--force", status=2)

    def test_export_warns_of_what_is_missing(self):
        self.home.write_preferences({"ORVPresets": [{"label": "L", "directoryName": "T", "scriptFile": "gone.sh", "fileHierarchy": {
            "children": [{"filename": "f", "contentFilename": "gone"}]}}]})
        errors = self.home.run("export", "L", self.file).stderr
        self.assertIn(b"warning: the content file 'gone' is left out: No such file or directory", errors)
        self.assertIn(b"warning: the script 'gone.sh' is left out", errors)
        errors = self.other.run("add", self.file).stderr
        self.assertIn(b"the contents of 'gone' are not in the file", errors)
        self.assertEqual(self.other.presets(), self.home.presets())

    def add(self, document, status, **more):
        data = document if isinstance(document, bytes) else plistlib.dumps(document, **more)
        return self.other.run("add", "-", data=data, status=status)

    def test_add_warns_of_a_label_that_another_preset_has_and_of_a_missing_name(self):
        def warned(preset):
            return self.add({"ORVPresetFileVersion": 1, "ORVPreset": preset}, 0).stderr

        nameless, several = (b"orvane: warning: " + text + b"\n" for text in (
            b"the top-level folder has no name", b"there are several presets 'L' now; their indexes tell them apart"))
        self.assertEqual(warned({"label": "L", "directoryName": "T"}), b"")
        self.assertEqual(warned({"label": "L", "directoryName": "U"}), several)
        self.assertEqual(warned({"label": "M"}), nameless)
        self.assertEqual(warned({"label": "L", "directoryName": ""}), nameless + several)
        for _ in range(2):
            self.assertEqual(warned({"directoryName": "T"}), b"")
        self.assertIn("error: " + nameless.decode()[len("orvane: warning: "):], self.other.run("check", "2", status=1).stdout.decode())

    def test_add_never_leaves_its_folders(self):
        name = "../../../../escaped"
        preset = {"label": "L", "directoryName": "T", "scriptFile": "../../../evil.sh", "fileHierarchy": {"isFolder": True, "children": [
            {"filename": "a", "contentFilename": name}, {"filename": "b", "contentFilename": ".."},
            {"filename": "c", "contentFilename": "/etc/passwd"}]}}
        self.add({"ORVPresetFileVersion": 1, "ORVPreset": preset, "ORVFileContents": {name: {"data": b"x"}, "..": {"data": b"y"}},
                  "ORVScript": {"name": "../../../evil.sh", "data": b"#!/bin/sh\n"}}, 0)
        self.assertEqual(self.other.stored(), ["Content", "escaped", "evil.sh"])
        children = self.other.presets()[0]["fileHierarchy"]["children"]
        self.assertEqual([child["contentFilename"] for child in children], ["escaped", "Content", "passwd"])
        self.assertEqual(self.other.presets()[0]["scriptFile"], "evil.sh")
        everything = [path.name for path in Path(self.top).rglob("*") if "escaped" in path.name or "evil" in path.name]
        self.assertEqual(len(everything), 2)

    def test_add_refuses_broken_files_and_leaves_nothing(self):
        good = {"ORVPresetFileVersion": 1, "ORVPreset": {"label": "L", "directoryName": "T", "fileHierarchy": {"children": [
            {"filename": "f", "contentFilename": "c"}]}}, "ORVFileContents": {"c": {"data": b"x", "mode": "644"}}}
        broken = [b"", b"\0" * 1000, b"<plist>", b"bplist00" + b"\xff" * 100, plistlib.dumps(good)[:-30], b"[" * 100000,
                  {**good, "ORVPresetFileVersion": 2}, {**good, "ORVPresetFileVersion": "1"}, {**good, "ORVPreset": []}, ["x"],
                  {**good, "ORVFileContents": {"c": b"x"}}, {**good, "ORVFileContents": {"c": {"data": "x"}}},
                  {**good, "ORVFileContents": {"c": {"data": b"x", "mode": "rwx"}}}, {**good, "ORVScript": {"data": b""}},
                  {**good, "ORVPreset": {"directoryName": "Job {"}},
                  {**good, "ORVPreset": {"directoryName": "T", "fileHierarchy": {"children": [{"filename": "{a\\}"}]}}}]
        for document in broken:
            result = self.add(document, 1)
            self.assertTrue(result.stderr.startswith(b"orvane: Preset "), result.stderr)
        self.other.run("add", "/nowhere", status=1)
        self.other.run("add", self.top, status=1)
        self.other.run("add", status=2)
        self.assertFalse(self.other.preferences.exists())
        self.assertEqual(self.other.stored(), [])

    def test_add_refuses_trees_that_share_branches_without_end(self):
        node = {"filename": "leaf"}
        for level in range(40):
            node = {"filename": f"d{level}", "isFolder": True, "children": [node, node]}
        root = {"ORVPresetFileVersion": 1, "ORVPreset": {"label": "L", "directoryName": "T", "fileHierarchy": node}}
        result = self.add(root, 1, fmt=plistlib.FMT_BINARY)
        self.assertIn(b"too many", result.stderr)

    def test_add_leaves_nothing_when_the_preferences_cannot_be_stored(self):
        self.make_preset()
        self.home.run("export", "0", self.file)
        for damaged in (b"<plist><dict>", plistlib.dumps({"ORVPresets": 3})):
            before = self.other.write_preferences(damaged)
            self.other.run("add", self.file, status=1)
            self.assertEqual(self.other.preferences.read_bytes(), before)
            self.assertEqual(self.other.stored(), [])


class Check(Case):
    preset = {"label": "L", "directoryName": "T", "fileHierarchy": {"isFolder": True, "children": [
        {"filename": "Footage", "isFolder": True, "children": [{"filename": "a", "color": "Red", "permissions": "75"}]},
        {"filename": "b", "contentFilename": "gone"}, {"filename": "x:y"}]}}
    lines = [
        "L: fileHierarchy/children[0] \"Footage\"/children[0] \"a\"/color: warning: 'Red' is no label colour: no label will be set",
        "L: fileHierarchy/children[0] \"Footage\"/children[0] \"a\"/permissions: warning: '75' is not three digits long: permissions "
        "will not be set",
        "L: fileHierarchy/children[1] \"b\"/contentFilename: error: there is no content file 'gone': the file will be empty",
        "L: fileHierarchy/children[2] \"x:y\"/filename: note: \":\" and \"/\" become \"_\": the name will be 'x_y'",
    ]

    def test_prints_every_problem_with_its_place(self):
        self.home.write_preferences({"ORVPresets": [{"label": "good", "directoryName": "T"}, self.preset]})
        self.assertEqual(self.home.run("check", status=1).stdout.decode().splitlines(), self.lines)
        self.assertEqual(self.home.run("check", "1", status=1).stdout.decode().splitlines(), self.lines)
        self.assertEqual(self.home.run("check", "good").stdout, b"")
        self.home.run("check", "no such", status=2)

    def test_prints_json(self):
        self.home.write_preferences({"ORVPresets": [self.preset]})
        result = json.loads(self.home.run("check", "--json", status=1).stdout)
        self.assertEqual((result["errors"], result["warnings"], result["notes"]), (1, 2, 1))
        problems = result["presets"][0]["problems"]
        self.assertEqual([f"L: {each['place']}: {each['severity']}: {each['text']}" for each in problems], self.lines)

    def test_passes_with_notes_alone_and_without_presets(self):
        self.assertEqual(self.home.run("check").stdout, b"")
        self.home.write_preferences({"ORVPresets": [{"label": "L", "directoryName": "T", "foreign": 1}]})
        self.assertEqual(self.home.run("check").stdout, b"L: foreign: note: the key 'foreign' is not known and not used\n")

    def test_reads_preset_files_and_preferences_files(self):
        packed = {"ORVPresetFileVersion": 1, "ORVPreset": self.preset, "ORVFileContents": {"gone": {"data": b"x"}}}
        (self.home.top / "a.orvpreset").write_bytes(plistlib.dumps(packed))
        lines = [line for line in self.lines if "gone" not in line]
        self.assertEqual(self.home.run("check", "a.orvpreset", status=1).stdout.decode().splitlines(), lines)
        (self.home.top / "p.plist").write_bytes(plistlib.dumps({"ORVPresets": [self.preset]}))
        self.assertEqual(self.home.run("check", "./p.plist", status=1).stdout.decode().splitlines(), self.lines)

    def test_a_missing_file_is_told_as_a_file_not_as_a_preset(self):
        for word in ("none.orvpreset", "none.plist", "./none.plist", "../none", "/no/such/file"):
            ran = self.home.run("check", word, status=1)
            self.assertIn(f"{word}: No such file or directory".encode(), ran.stderr)
            self.assertNotIn(b"there are", ran.stderr)

    def test_says_why_and_where_a_file_cannot_be_read(self):
        damaged = b'<?xml version="1.0"?>\n<plist version="1.0">\n<dict>\n<key>ORVPresets</key>\n<bogus/>\n</dict></plist>\n'
        self.home.write_preferences(damaged)
        self.assertIn(b"line 5", self.home.run("check", status=1).stderr)
        (self.home.top / "x").write_bytes(damaged)
        self.assertIn(b"line 5", self.home.run("check", "x", status=1).stderr)
        (self.home.top / "y").write_bytes(plistlib.dumps({"a": 1}))
        self.assertIn(b"not a preset file", self.home.run("check", "y", status=1).stderr)

    def test_keeps_control_characters_off_the_screen(self):
        self.home.write_preferences({"ORVPresets": [{"label": "a\tb", "directoryName": ""}]})
        self.assertTrue(self.home.run("check", status=1).stdout.startswith(b"a\\x09b: directoryName: error: "))

    def test_tells_help(self):
        for command in ("import", "export", "add", "check"):
            self.assertTrue(self.home.run(command, "--help").stdout.startswith(b"Usage: orvane " + command.encode()))


if __name__ == "__main__":
    unittest.main()
