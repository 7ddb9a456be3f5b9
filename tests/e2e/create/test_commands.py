"""The program's words: help, versions, mistakes, list, show, notify."""

import json
import os
import plistlib
import shutil
import subprocess
import unittest

from harness import DEADLINE, PROGRAM, OrvaneTest, file, folder, preset

COMMANDS = ("list", "show", "create", "import", "export", "add", "check", "menu", "notify", "recover")


class Words(OrvaneTest):
    def test_help_on_every_level_is_output(self):
        general = self.run_orvane("--help")
        self.assertEqual((general.status, general.err), (0, ""))
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ", general.out)
            for option in ("--help", "-h"):
                result = self.run_orvane(command, option)
                self.assertEqual((result.status, result.err), (0, ""))
                self.assertTrue(result.out.startswith(f"Usage: orvane {command}"), result.out)

    def test_help_is_a_command_too(self):
        general = self.run_orvane("--help")
        for words in (("help",), ("help", "help"), ("help", "--help"), ("-h",)):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out, result.err), (0, general.out, ""), words)
        for command in COMMANDS:
            self.assertEqual(self.run_orvane("help", command).out, self.run_orvane(command, "--help").out)
            self.assertEqual(self.run_orvane("help", "--", command).out, self.run_orvane(command, "--help").out)
        for words, problem in ((("help", "nonsense"), "unknown command 'nonsense'"), (("help", "list", "show"), "unexpected 'show'"),
                               (("help", "--nonsense"), "unknown option '--nonsense'"), (("help", "list", "-x"), "unknown option '-x'"),
                               (("help", "--", "--help"), "unknown command '--help'")):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out), (2, ""))
            self.assertTrue(result.err.startswith(f"orvane: {problem}\n"), result.err)

    def test_version_on_every_level_is_output(self):
        version = self.run_orvane("--version")
        self.assertEqual((version.status, version.err), (0, ""))
        self.assertRegex(version.out, r"^orvane \d+\.\d+\.\d+\n$")
        for command in (*COMMANDS, "help"):
            self.assertEqual(self.run_orvane(command, "--version").out, version.out)
        self.assertEqual(self.run_orvane("help", "list", "--version").out, version.out)

    def test_help_and_version_take_no_value(self):
        for command in ((), ("help",), *((command,) for command in COMMANDS)):
            for option in ("--help", "--version"):
                result = self.run_orvane(*command, option + "=1")
                self.assertEqual((result.status, result.out), (2, ""), command)
                self.assertIn(f"option '{option}' takes no value\n", result.err)

    def test_help_does_nothing_else(self):
        self.write_presets(preset("P", "made"))
        self.assertEqual(self.create("0", "--help").status, 0)
        self.assertNothingMade()

    def test_help_behind_two_dashes_is_a_word_like_any_other(self):
        self.write_presets(preset("--help", "made"))
        self.assertMade(self.create("--", "--help"), "made")

    def test_help_as_the_value_of_an_option_is_a_value(self):
        self.write_presets(preset("P", "{-h}"))
        os.mkdir(self.in_target("--help"))
        self.assertMade(self.create("0", "--in", "--help", "--set", "-h=x", "--no-input"), os.path.join("--help", "x"))
        for words in (("--set", "--help"), ("--se", "--version"), ("--set", "-h")):
            result = self.create("0", *words)
            self.assertEqual((result.status, result.out), (2, ""))
            self.assertIn(f"option '--set' needs NAME=VALUE, not '{words[1]}'", result.err)
        self.assertEqual(self.run_orvane("import", self.target, "--label", "--help").out, "1  --help\n")
        self.assertTrue(self.create("0", "--set", "A=B", "--help").out.startswith("Usage: orvane create"))
        self.assertTrue(self.create("0", "--set=A", "--help").out.startswith("Usage: orvane create"))

    def test_wrong_words_are_told_in_json_when_asked_for(self):
        self.write_presets(preset("P", "made"))
        for words, problem in ((("--json",), "which preset?"), (("99", "--json"), "no preset '99'; there are:\n  0  P"),
                               (("0", "--json", "--nonsense"), "unknown option '--nonsense'"),
                               (("0", "--nonsense", "--json"), "unknown option '--nonsense'"),
                               (("0", "-x", "--js"), "unknown option '-x'"),
                               (("0", "--json=1", "--json"), "option '--json' takes no value"),
                               (("0", "--set", "--json"), "option '--set' needs NAME=VALUE, not '--json'"),
                               (("0", "--json", "--in"), "option '--in' needs a value"),
                               (("0", "--in", "--json"), "--in: '--json' cannot be used: No such file or directory"),
                               (("0", "--in", "--js", "--no-input"), "--in: '--js' cannot be used: No such file or directory"),
                               (("0", "--in", "none", "--json"), "--in: 'none' cannot be used: No such file or directory"),
                               (("0", "--set", "x", "--json"), "option '--set' needs NAME=VALUE, not 'x'")):
            result = self.create(*words)
            self.assertEqual((result.status, result.json["error"]), (2, {"title": "Usage", "message": problem}))
            self.assertEqual((result.json["created"], result.json["path"], result.json["nodes"]), (False, None, 0))
            self.assertTrue(result.err.startswith(f"orvane: create: {problem}\n"), result.err)
        for words in (("0", "--nonsense", "--", "--json"), ("0", "--nonsense"), ("0", "--in=--json"), ("0", "--in", "--json.d")):
            result = self.create(*words)
            self.assertEqual((result.status, result.out), (2, ""))
        self.assertNothingMade()
        os.mkdir(self.in_target("--json"))  # and so it is the name of a folder
        self.assertMade(self.create("0", "--in", "--json"), os.path.join("--json", "made"))
        self.assertEqual(self.create("99", "--in", "--json").out, "")

    def test_control_characters_of_words_are_made_visible_on_a_terminal(self):
        self.write_presets(preset("P", "made"))
        odd = "\x1b[31m\r"
        path = os.path.join(self._make("odd" + odd), "sub")
        os.makedirs(os.path.join(path, "made"))
        for words in ((odd,), ("-" + odd,), ("help", odd), ("help", "list", odd), ("list", odd), ("list", "--" + odd), ("show", "--" + odd),
                      ("show", odd), ("create", "0", odd), ("create", "0", "-" + odd), ("create", "0", "--in", odd),
                      ("create", "0", "--set", odd), ("create", "0", "--set", odd + "=1"), ("create", odd), ("create", "0", "--in", path),
                      ("import", odd), ("import", "--" + odd), ("export", "0", os.path.join(odd, "x")), ("add", odd), ("check", odd),
                      ("check", "./" + odd), ("menu", odd), ("menu", "--in", odd), ("notify", odd), ("recover", odd)):
            result = self.on_terminal(*words, whole=True).finish()
            said = result.err.replace("\r\n", "\n")  # the terminal's own
            self.assertIn(result.status, (1, 2), words)
            self.assertIn("\\x1b[31m\\x0d", said, words)
            self.assertNotIn("\\x5c", said, words)
            self.assertEqual([c for c in said if c < " " and c != "\n"], [], words)
        self.assertNothingMade()

    def test_bytes_that_are_no_text_are_made_visible(self):
        result = self.on_terminal("list", b"\xff\xc2\x9b", whole=True).finish()
        self.assertEqual(result.err.splitlines()[0], "orvane: list: unexpected '\\xff\\xc2\\x9b'")

    def test_a_closed_standard_stream_is_taken_by_no_other_file(self):
        self.write_presets(preset("P", "{AutoNo}"))
        for number, closed in enumerate((">&-", "<&- >&-", ">&- 2>&-", "<&- >&- 2>&-")):
            done = subprocess.run(["/bin/sh", "-c", f'exec "$@" {closed}', "sh", PROGRAM, "create", "0", "--no-input"], env=self.env,
                                  cwd=self.target, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=DEADLINE, check=False)
            self.assertEqual((done.returncode, done.stdout), (1, b""), closed)
            self.assertEqual(done.stderr, b"" if "2>" in closed else b"orvane: Standard output: Bad file descriptor\n")
            self.assertTrue(os.path.isdir(self.in_target(str(number))))
        self.assertEqual(self.counters(), {"AutoNo": "3"})
        seen = 0
        for at, _, files in os.walk(self.home):
            for name in files:
                seen += 1
                self.assertNotIn(self.target.encode(), self.content(os.path.join(at, name)), name)
        self.assertGreaterEqual(seen, 2)  # the preferences and their lock

    def test_unknown_words_are_wrong_usage(self):
        self.write_presets(preset("P", "made"))
        for words in ((), ("nonsense",), ("--nonsense",), ("list", "--nonsense"), ("list", "word"), ("show",), ("show", "0", "1"),
                      ("create",), ("create", "0", "1"), ("create", "0", "--nonsense"), ("create", "0", "--in"),
                      ("create", "0", "--set"), ("create", "0", "--json=1"), ("create", "-1"), ("notify", "word"), ("menus",)):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out), (2, ""), words)
            self.assertTrue(result.err, words)
        self.assertNothingMade()

    def test_preferences_that_are_no_property_list_are_told_once_and_alike(self):
        self.write_bytes(self.preferences, b"\nnothing")
        for words in (("list",), ("show", "0"), ("check",)):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out), (1, ""))
            self.assertEqual(result.err, f"orvane: Preferences cannot be read: {self.preferences}: line 2: this is no property list\n")

    def test_what_removes_is_said_in_full(self):
        for word in ("--r", "--remov"):
            result = self.run_orvane("recover", word)
            self.assertEqual((result.status, result.out), (2, ""))
            self.assertTrue(result.err.startswith(f"orvane: recover: unknown option '{word}'\n"), result.err)
        for word in ("--remove", "--k"):
            self.assertEqual(self.run_orvane("recover", word).status, 0)

    def test_whoever_speaks_on_the_bus_has_signals_as_a_new_program_expects_them(self):
        place = self._make("programs")
        shutil.copy(PROGRAM, os.path.join(place, "orvane"))
        self.write_bytes(os.path.join(place, "orvane-bus"), b"#!/bin/sh\ngrep -E 'Sig(Blk|Ign)' /proc/self/status > \"$HOME/seen\"\n", 0o755)
        subprocess.run([os.path.join(place, "orvane"), "notify"], env=self.env, stdin=subprocess.DEVNULL, check=True, timeout=DEADLINE)
        self.assertEqual(self.content(os.path.join(self.home, "seen")), b"SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n")

    def test_notify_without_a_session_bus_fails(self):
        result = self.run_orvane("notify", env={"DBUS_SESSION_BUS_ADDRESS": "unix:path=" + self.root + "/none"})
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertTrue(result.err.startswith("orvane: "))

    def test_output_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            done = subprocess.run([PROGRAM, "--version"], stdout=full, stderr=subprocess.PIPE, env=self.env, check=False)
        self.assertEqual((done.returncode, done.stderr), (1, b"orvane: Standard output: No space left on device\n"))


class List(OrvaneTest):
    def test_shows_index_and_label_aligned(self):
        self.write_presets(*[preset(f"Label {i}", "x") for i in range(11)])
        self.assertEqual(self.run_orvane("list").out.splitlines(), [f"{i:2}  Label {i}" for i in range(11)])

    def test_json_is_an_array(self):
        self.write_presets(preset("Grüße \"x\"\t", "x"), {"directoryName": "y"})
        result = self.run_orvane("list", "--json")
        self.assertEqual(result.json, [{"index": 0, "label": "Grüße \"x\"\t"}, {"index": 1, "label": None}])

    def test_without_preferences_there_are_none(self):
        self.assertEqual(vars(self.run_orvane("list")), {"status": 0, "out": "", "err": ""})
        self.assertEqual(self.run_orvane("list", "--json").json, [])

    def test_without_presets_a_terminal_gets_a_hint_and_nobody_else(self):
        hint = "orvane: there are no presets yet; 'orvane import', 'orvane add' or 'orvane-settings' gives you one\r\n"
        self.assertEqual(self.on_terminal("list", whole=True).finish().err, hint)
        self.assertEqual(vars(self.on_terminal("list").finish()), {"status": 0, "out": "", "err": ""})
        self.assertEqual(self.on_terminal("list", "--json", whole=True).finish().err, "[]\r\n")
        self.write_presets(preset("P", "x"))
        self.assertEqual(self.on_terminal("list", whole=True).finish().err, "0  P\r\n")

    def test_presets_that_are_no_array_are_told(self):
        self.write_bytes(self.preferences, plistlib.dumps({"ORVPresets": "text"}))
        warning = "orvane: warning: ORVPresets in the preferences is no array.\n"
        self.assertEqual(vars(self.run_orvane("list")), {"status": 0, "out": "", "err": warning})
        self.assertEqual(vars(self.run_orvane("list", "--json")), {"status": 0, "out": "[]\n", "err": warning})
        self.assertEqual(self.on_terminal("list", whole=True).finish().err, warning.replace("\n", "\r\n"))
        for words in (("create", "P"), ("show", "P")):
            result = self.run_orvane(*words)
            self.assertEqual((result.status, result.out), (2, ""))
            self.assertTrue(result.err.startswith(warning), result.err)
            self.assertIn("no preset 'P': there are no presets\n", result.err)

    def test_the_folder_name_stands_for_a_label_that_is_missing(self):
        self.write_presets({"directoryName": "{A} job"}, preset([], "x\ty"), preset("", "y"), {})
        self.assertEqual(self.run_orvane("list").out, "0  {A} job\n1  x\\x09y\n2  \n3  (no label)\n")  # an empty label is one
        self.assertIsNone(self.run_orvane("list", "--json").json[0]["label"])
        for word in ("0", "{A} job"):
            self.assertTrue(self.run_orvane("show", word).out.startswith("preset:     0  {A} job\nname:       {A} job\n"))
            self.assertIsNone(self.run_orvane("show", word, "--json").json["label"])
        self.assertMade(self.create("{A} job", "--set", "A=x"), "x job")

    def test_control_characters_of_labels_stay_away_from_terminals(self):
        self.write_presets(preset("a\tb", "x"))
        self.assertEqual(self.run_orvane("list").out, "0  a\\x09b\n")


class Show(OrvaneTest):
    def setUp(self):
        super().setUp()
        self.write_presets(
            preset("Film", "{Project} {AutoNo} {Project}",
                   folder("Footage", file("{Camera}.txt", contentFilename="c.txt"), permissions="750", color="red"),
                   file("notes"), scriptFile="x.sh"), ORVAutomaticVars={"AutoNo": "41"})

    def test_json_has_variables_in_prompt_order_with_defaults(self):
        shown = self.run_orvane("show", "Film", "--json").json
        self.assertEqual(shown["variables"], [{"name": "Project", "default": ""}, {"name": "AutoNo", "default": "42"},
                                              {"name": "Project", "default": ""}, {"name": "Camera", "default": ""}])
        self.assertEqual((shown["index"], shown["label"], shown["name"], shown["script"]),
                         (0, "Film", "{Project} {AutoNo} {Project}", "x.sh"))
        self.assertEqual(shown["tree"]["children"][0]["mode"], "750")
        self.assertEqual(shown["tree"]["children"][0]["label"], "red")
        self.assertEqual(shown["tree"]["children"][0]["children"][0]["content"], "c.txt")

    def test_text_draws_the_tree(self):
        text = self.run_orvane("show", "0").out
        self.assertIn("├── Footage/  750  ● red\n│   └── {Camera}.txt  <- c.txt\n└── notes\n", text)
        self.assertNotIn("\033", text)
        self.assertIn("`-- notes\n", self.run_orvane("show", "0", env={"LC_ALL": "C"}).out)

    def test_changes_nothing(self):
        before = self.snapshot(self.home)
        self.assertEqual(self.run_orvane("show", "0").status, 0)
        self.assertEqual(self.snapshot(self.home), before)

    def test_a_template_without_end_is_told_and_does_not_hang(self):
        self.write_presets(preset("P", "Job {", file("{A}")))
        shown = self.run_orvane("show", "P", "--json")
        self.assertEqual(shown.status, 0)
        self.assertIn("'Job {'", shown.json["problem"])

    def test_unknown_and_ambiguous_presets_get_the_candidates(self):
        self.write_presets(preset("A", "x"), preset("B", "x"), preset("A", "x"))
        unknown = self.run_orvane("show", "C")
        self.assertEqual((unknown.status, unknown.out), (2, ""))
        for line in ("  0  A\n", "  1  B\n", "  2  A\n"):
            self.assertIn(line, unknown.err)
        ambiguous = self.run_orvane("show", "A")
        self.assertEqual(ambiguous.status, 2)
        self.assertIn("  0  A\n  2  A\n", ambiguous.err)
        self.assertNotIn("  1  B\n", ambiguous.err)
        self.assertEqual(self.run_orvane("show", "3").status, 2)
        self.assertEqual(json.loads(self.run_orvane("show", "B", "--json").out)["index"], 1)


if __name__ == "__main__":
    unittest.main()
