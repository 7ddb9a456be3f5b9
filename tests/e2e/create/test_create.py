"""What `orvane create` makes, says and returns."""

import os
import shutil
import unittest

from harness import OrvaneTest, file, folder, preset

BLANK = ("orvane: Top level folder name is blank: Make sure that the top-level folder name for this preset has been set in the "
         "ORV Preference Pane.\n")


class Making(OrvaneTest):
    def test_a_whole_preset(self):
        self.write_content("letter.txt", b"Dear client\n")
        self.write_presets(preset(
            "Film", "{Project} {AutoNo}",
            folder("Footage", folder("{Camera}", permissions="750", color="red"), permissions="555"),
            file("Letter to {Project}.txt", contentFilename="letter.txt", permissions="640", color="blue"),
            file("empty", color="Red")))
        self.assertMade(self.create("Film", "--set", "Project=Acme", "--set", "Camera=A/B:C", "--no-input"), "Acme 0")
        self.assertEqual(self.listing(), ["Acme 0/", "Acme 0/Footage/", "Acme 0/Footage/A_B_C/", "Acme 0/Letter to Acme.txt",
                                          "Acme 0/empty"])
        self.assertEqual(self.mode("Acme 0", "Footage"), 0o555)
        self.assertEqual(self.mode("Acme 0", "Footage", "A_B_C"), 0o750)
        self.assertEqual(self.label("Acme 0", "Footage", "A_B_C"), 6)
        self.assertEqual(self.mode("Acme 0", "Letter to Acme.txt"), 0o640)
        self.assertEqual(self.label("Acme 0", "Letter to Acme.txt"), 4)
        self.assertEqual(self.label("Acme 0", "empty"), 0)
        with open(self.in_target("Acme 0", "Letter to Acme.txt"), "rb") as letter:
            self.assertEqual(letter.read(), b"Dear client\n")
        self.assertEqual(self.counters(), {"AutoNo": "0"})

    def test_counters_go_on(self):
        self.write_presets(preset("P", "{AutoNo}"), ORVAutomaticVars={"AutoNo": "41", "AutoOther": "7"})
        self.assertMade(self.create("0", "--no-input"), "42")
        self.assertMade(self.create("0", "--no-input"), "43")
        self.assertEqual(self.counters(), {"AutoNo": "43", "AutoOther": "7"})

    def test_in_names_the_parent(self):
        self.write_presets(preset("P", "new"))
        os.mkdir(self.in_target("a b"))
        for given, shown in ((self.in_target("a b"), self.in_target("a b", "new")), ("a b/../a b/.", self.in_target("a b", "new")),
                             ("a b/", self.in_target("a b", "new"))):
            result = self.create("0", "--in", given)
            self.assertEqual((result.status, result.out, result.err), (0, shown + "\n", ""))
            os.rmdir(shown)

    def test_in_keeps_the_way_through_a_link(self):
        self.write_presets(preset("P", "new"))
        os.mkdir(self.in_target("real"))
        os.symlink("real", self.in_target("link"))
        self.assertEqual(self.create("0", "--in", self.in_target("link")).out, self.in_target("link", "new") + "\n")
        self.assertTrue(os.path.isdir(self.in_target("real", "new")))

    def test_in_must_be_a_folder(self):
        self.write_presets(preset("P", "new"))
        self.write_bytes(self.in_target("file"), b"")
        for wrong in ("missing", "file", "file/x", ""):
            result = self.create("0", "--in", wrong)
            self.assertEqual((result.status, result.out), (2, ""), wrong)
            self.assertIn("--in", result.err)
        self.assertEqual(self.listing(), ["file"])

    def test_a_parent_that_takes_nothing_is_not_made(self):
        self.write_presets(preset("P", "new", file("x")))
        os.chmod(self.target, 0o555)
        result = self.run_without_rights("create", "0")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertEqual(result.err, "orvane: ORV wasn't able to create the preset: ORV wasn't able to create the preset, because a "
                                     f"file creation failed: Unable to create directory {self.in_target('new')}.\n")


class Statuses(OrvaneTest):
    def test_existing_folder_is_not_made_but_counts(self):
        self.write_presets(preset("P", "{AutoNo}", file("x")))
        os.mkdir(self.in_target("0"))
        result = self.create("0", "--no-input")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertEqual(result.err, f"orvane: Directory already exists: '0' already exists in '{self.target}'.\n")
        self.assertEqual(self.listing(), ["0/"])
        self.assertEqual(self.counters(), {"AutoNo": "0"})

    def test_blank_name_is_not_made(self):
        self.write_presets(preset("P", ""), preset("Q", "{A}"))
        self.assertEqual(vars(self.create("0")), {"status": 1, "out": "", "err": BLANK})
        self.assertEqual(vars(self.create("1", "--set", "A=")), {"status": 1, "out": "", "err": BLANK})
        self.assertNothingMade()

    def test_a_failure_in_the_middle_leaves_nothing(self):
        self.write_presets(preset("P", "top", folder("a", file("b")), file(".."), file("c")))
        result = self.create("0")
        self.assertEqual(result.status, 1)
        self.assertIn(f"Unable to create file '{self.in_target('top', '..')}'.", result.err)
        self.assertNothingMade()

    def test_the_log_tells_the_reason_of_a_failure(self):
        self.write_presets(preset("L", "Job", folder("In", file("y" * 256))))
        self.create("L", "--no-open")
        self.assertEqual(self.log(), [f"ORV creation error: Unable to create file '{self.in_target('Job', 'In', 'y' * 256)}'. File name too long."])

    def test_the_log_tells_why_a_folder_takes_nothing(self):
        self.write_presets(preset("A", "Job"))
        os.chmod(self.target, 0o555)
        result = self.run_without_rights("create", "A", "--no-open")
        self.assertEqual(result.status, 1)
        self.assertEqual(self.log(), [f"ORV creation error: Unable to create directory {self.in_target('Job')}. Permission denied."])

    def test_the_log_is_silent_about_what_was_made(self):
        self.write_presets(preset("A", "Job", file("x")))
        self.assertMade(self.create("A", "--no-open"), "Job")
        self.assertEqual(self.log(), [])

    def test_templates_without_end_are_refused(self):
        for name, child in (("Job {", "x"), ("top", "Job {"), ("top", "{a\\}")):
            self.write_presets(preset("P", name, folder("f", file(child)), file("{AutoNo}")))
            result = self.create("0", "--no-input")
            self.assertEqual((result.status, result.out), (1, ""))
            self.assertIn("'" + (name if "{" in name else child) + "'", result.err)
            self.assertIn("never end", result.err)
            self.assertEqual(self.counters(), {})
        self.assertNothingMade()

    def test_a_script_with_errors_leaves_the_folder(self):
        self.write_script("bad.sh", "#!/bin/sh\nexit 3\n")
        self.write_presets(preset("P", "top", scriptFile="bad.sh"))
        result = self.create("0")
        self.assertEqual((result.status, result.out), (4, self.in_target("top") + "\n"))
        self.assertEqual(result.err, "orvane: Script reported errors: 'bad.sh' is the specified script file for this preset, and it "
                                     "reported errors during its execution. Check Console.app for more information on why the "
                                     "script failed.\n")
        self.assertTrue(os.path.isdir(self.in_target("top")))

    def test_missing_values_without_a_terminal_are_wrong_usage(self):
        self.write_presets(preset("P", "{A} {AutoNo} {B}"))
        before = self.snapshot(self.home)
        result = self.create("0", "--set", "B=b")
        self.assertEqual((result.status, result.out), (2, ""))
        self.assertIn("'A', 'AutoNo'", result.err)
        self.assertNotIn("'B'", result.err)
        self.assertNothingMade()
        self.assertEqual(self.snapshot(self.home), before)

    def test_no_presets_is_wrong_usage(self):
        result = self.create("0")
        self.assertEqual((result.status, result.out), (2, ""))
        self.assertIn("there are no presets", result.err)


class Assignments(OrvaneTest):
    def test_one_value_fills_every_row_of_its_name(self):
        self.write_presets(preset("P", "{A}-{A}", file("{A}")))
        self.assertMade(self.create("0", "--set", "A=x"), "x-x")
        self.assertEqual(self.listing(), ["x-x/", "x-x/x"])

    def test_values_go_to_the_rows_in_order(self):
        self.write_presets(preset("P", "{A} {A} {A}"))
        variables = self.create("0", "--set", "A=1", "--set", "A=2", "--json").json["variables"]
        self.assertEqual([row["value"] for row in variables], ["1", "2", "2"])
        self.assertEqual(self.listing(), ["1 1 1/"])  # the first row replaces every occurrence

    def test_an_unknown_name_is_wrong_usage(self):
        self.write_presets(preset("P", "{A} {AutoNo}"), preset("Q", "plain"))
        for number in ("0", "1"):
            result = self.create(number, "--set", "A=x", "--set", "Z=y")
            self.assertEqual((result.status, result.out), (2, ""))
            self.assertIn("'Z'", result.err)
        self.assertNothingMade()
        self.assertEqual(self.counters(), {})

    def assertMadeWithWarning(self, result, name, warning):
        self.assertEqual(result.err, f"orvane: warning: {warning}\n")
        result.err = ""
        self.assertMade(result, name)

    def test_an_unknown_name_is_warned_of_without_input(self):
        self.write_presets(preset("P", "{A}"), preset("Q", "plain"))
        result = self.create("0", "--set", "A=x", "--set", "Z=y", "--no-input")
        self.assertMadeWithWarning(result, "x", "this preset has no variable 'Z'; it has 'A'")
        self.assertMadeWithWarning(self.create("1", "--set", "Z=y", "--no-input"), "plain", "this preset has no variable 'Z'; it has none")

    def test_a_value_too_many_is_warned_of(self):
        self.write_presets(preset("P", "{A}{B}{B}", file("{A}")))
        for words in ((), ("--no-input",), ("--no-input", "--json")):
            result = self.create("0", "--set", "A=1", "--set", "B=2", "--set", "A=3", "--set", "B=4", *words)
            self.assertEqual((result.status, result.err), (0, "orvane: warning: more values than places for 'A': the last are not used\n"))
            self.assertEqual(self.listing(), ["122/", "122/1"])
            shutil.rmtree(self.in_target("122"))

    def test_the_script_gets_the_last_value_and_so_does_a_counter(self):
        self.write_script("ok.sh", '#!/bin/sh\necho "$P_AUTO" > "$ORV_ROOT_PATH/out"\n')
        self.write_presets(preset("P", "{auto}-{auto}", scriptFile="ok.sh"))
        self.assertMade(self.create("0", "--set", "auto=1", "--set", "auto=2"), "1-1")
        self.assertEqual((self.content(self.in_target("1-1/out")), self.counters()), (b"2\n", {"auto": "2"}))

    def test_the_longest_name_that_fits_is_meant(self):
        self.write_presets(preset("P", "{x} {x=y}"), preset("Q", "{a=b}"))
        for words in ((), ("--no-input",), ("--no-input", "--json")):
            result = self.create("0", "--set", "x=y=3", "--set", "x=1", *words)
            self.assertEqual((result.status, result.err), (0, ""))
            os.rmdir(self.in_target("1 3"))
        self.assertMade(self.create("1", "--set", "a=b=c=d"), "c=d")
        self.assertIn("it has 'a=b'\n", self.create("1", "--set", "a=c=d").err)

    def test_defaults_stand_in_without_input(self):
        self.write_presets(preset("P", "top{A}{AutoNo}"))
        self.assertMade(self.create("0", "--no-input"), "top0")

    def test_a_counter_may_be_set(self):
        self.write_presets(preset("P", "{AutoNo}"), ORVAutomaticVars={"AutoNo": "41"})
        self.assertMade(self.create("0", "--set", "AutoNo=7"), "7")
        self.assertEqual(self.counters(), {"AutoNo": "7"})

    def test_values_may_be_anything(self):
        self.write_presets(preset("P", "{A}"))
        for value, name in (("a=b", "a=b"), ("-x", "-x"), ("{A}", "{A}"), (" ", " "), ("~", "~"), ("%d", "%d")):
            result = self.create("0", "--set", "A=" + value)
            self.assertMade(result, name)


class Terminals(OrvaneTest):
    def test_rows_are_asked_for_and_defaults_offered(self):
        self.write_presets(preset("P", "{A} {AutoNo}"), ORVAutomaticVars={"AutoNo": "6"})
        terminal = self.on_terminal("create", "0")
        terminal.read_until("A: ")
        terminal.type("Acme\n")
        terminal.read_until("AutoNo [7]: ")
        terminal.type("\n")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (0, self.in_target("Acme 7") + "\n"))
        self.assertEqual(self.counters(), {"AutoNo": "7"})

    def test_the_end_of_input_cancels(self):
        self.write_presets(preset("P", "{A} {AutoNo}"))
        before = self.snapshot(self.home)
        terminal = self.on_terminal("create", "0", "--set", "AutoNo=1")
        terminal.read_until("A: ")
        terminal.type("\x04")
        self.assertEqual(terminal.finish().status, 3)
        self.assertNothingMade()
        self.assertEqual(self.snapshot(self.home), before)

    def test_control_c_cancels(self):
        self.write_presets(preset("P", "{A} {AutoNo}"))
        before = self.snapshot(self.home)
        terminal = self.on_terminal("create", "0", "--json")
        terminal.read_until("A: ")
        terminal.type("text\x03")
        result = terminal.finish()
        self.assertEqual(result.status, 3)
        self.assertEqual((result.json["created"], result.json["path"]), (False, None))
        self.assertNothingMade()
        self.assertEqual(self.snapshot(self.home), before)

    def test_no_input_asks_nothing(self):
        self.write_presets(preset("P", "x{A}"))
        result = self.on_terminal("create", "0", "--no-input").finish()
        self.assertEqual((result.status, result.err), (0, ""))

    def test_names_cannot_drive_the_terminal(self):
        self.write_presets(preset("P", "\033[31m{A}"), binary=True)
        terminal = self.on_terminal("create", "0")
        terminal.read_until("A: ")
        self.assertIn("\\x1b[31m{A}", terminal.shown)
        self.assertNotIn("\033", terminal.shown)
        terminal.type("\x04")
        self.assertEqual(terminal.finish().status, 3)


class JSON(OrvaneTest):
    def test_one_object_about_what_was_made(self):
        self.write_script("ok.sh", "#!/bin/sh\necho noise\n")
        self.write_presets(preset("P", "{A}", folder("f", file("x")), scriptFile="ok.sh"))
        result = self.create("0", "--set", "A=a\"b", "--json")
        self.assertEqual(result.status, 0)
        self.assertEqual(result.json, {"path": self.in_target('a"b'), "created": True, "nodes": 3,
                                       "variables": [{"name": "A", "value": 'a"b'}],
                                       "script": {"path": os.path.join(self.scripts, "ok.sh"), "status": 0}, "error": None})
        self.assertEqual(result.err, "")

    def test_a_failing_script_has_its_status(self):
        self.write_script("bad.sh", "#!/bin/sh\nexit 7\n")
        self.write_presets(preset("P", "top", scriptFile="bad.sh"))
        result = self.create("0", "--json")
        self.assertEqual((result.status, result.json["created"], result.json["script"]["status"]), (4, True, 7))
        self.assertEqual(result.json["error"]["title"], "Script reported errors")

    def test_a_missing_script_has_none(self):
        self.write_presets(preset("P", "top", scriptFile="none.sh"))
        result = self.create("0", "--json")
        self.assertEqual((result.status, result.json["created"], result.json["script"]["status"]), (4, True, None))
        self.assertEqual(result.json["error"]["title"], "Script file not found")

    def test_what_was_not_made_has_its_error(self):
        self.write_presets(preset("P", "top", scriptFile="never.sh"))
        os.mkdir(self.in_target("top"))
        result = self.create("0", "--json")
        self.assertEqual(result.status, 1)
        self.assertEqual(result.json, {"path": None, "created": False, "nodes": 0, "variables": [], "script": None, "error": {
            "title": "Directory already exists", "message": f"'top' already exists in '{self.target}'."}})
        self.assertTrue(result.err.startswith("orvane: Directory already exists: "))

    def test_wrong_usage_has_its_error_too(self):
        self.write_presets(preset("P", "{A}"))
        for words in (("0",), ("9",), ("0", "--in", "missing"), ("0", "--set", "Z=1")):
            result = self.create(*words, "--json")
            self.assertEqual(result.status, 2)
            self.assertEqual((result.json["created"], result.json["path"]), (False, None))
            self.assertTrue(result.json["error"]["message"])


if __name__ == "__main__":
    unittest.main()
