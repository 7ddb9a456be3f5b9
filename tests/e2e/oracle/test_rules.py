"""Tests of the oracle itself: each behaviour that is easy to get wrong, as an example with its result."""

import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import rules  # noqa: E402


def folder(name=None, children=(), **more):
    node = {"isFolder": True, "children": list(children), **more}
    if name is not None:
        node["filename"] = name
    return node


def file(name=None, **more):
    node = {"isFolder": False, **more}
    if name is not None:
        node["filename"] = name
    return node


class Records(unittest.TestCase):
    def test_presets_without_a_label_are_left_out_and_later_labels_shift(self):
        presets = [{"label": "A"}, {"directoryName": "x"}, {"label": "C"}]
        self.assertEqual(rules.preset_names(presets), ["A", "C"])
        self.assertEqual(rules.preset_names([]), [])

    def test_a_counter_starts_at_zero_and_goes_up_by_one(self):
        self.assertEqual(rules.default_value("AutoNumber", {}), "0")
        self.assertEqual(rules.default_value("AutoNumber", {"AutoNumber": ""}), "0")
        self.assertEqual(rules.default_value("AutoNumber", {"AutoNumber": "0"}), "1")
        self.assertEqual(rules.default_value("AutoNumber", {"AutoNumber": "41"}), "42")

    def test_a_counter_wraps_in_32_bits(self):
        for stored, offered in (
            ("2147483647", "-2147483648"),
            ("2147483646", "2147483647"),
            ("4294967295", "0"),
            ("4294967296", "1"),
            ("9223372036854775806", "-1"),
            ("9223372036854775807", "0"),
            ("99999999999999999999", "0"),
            ("-99999999999999999999", "1"),
        ):
            self.assertEqual(rules.default_value("auto", {"auto": stored}), offered, stored)

    def test_a_counter_is_scanned_from_its_start(self):
        for stored, offered in (
            ("12b", "13"),
            (" 7", "8"),
            ("A1", "A1"),
            ("-5", "-4"),
            ("-1", "0"),
            ("+5", "6"),
            ("- 5", "- 5"),
            ("--5", "--5"),
            ("+", "+"),
            ("007", "8"),
            ("0x10", "1"),
            (" ", " "),
            ("1.9", "2"),
        ):
            self.assertEqual(rules.default_value("auto", {"auto": stored}), offered, stored)

    def test_only_names_that_start_with_auto_are_automatic(self):
        for name in ("auto", "AutoNumber", "AUTO_JOB", "aUtOx"):
            self.assertTrue(rules.is_automatic(name), name)
        for name in ("myauto", " auto", "aut", ""):
            self.assertFalse(rules.is_automatic(name), name)
        self.assertEqual(rules.default_value("myauto", {"myauto": "4"}), "")

    def test_counters_of_names_in_another_case_are_their_own(self):
        stored = {"AutoJob": "4"}
        self.assertEqual(rules.default_value("AutoJob", stored), "5")
        self.assertEqual(rules.default_value("autojob", stored), "0")

    def test_values_of_other_types_are_read_leniently(self):
        for value in (True, 1, 0.5, "YES", "t", "007", " -3", "y"):
            self.assertTrue(rules.bool_value(value), value)
        for value in (False, 0, 0.0, "no", "", "0", "-0", [1], {}, None, b"1"):
            self.assertFalse(rules.bool_value(value), value)
        self.assertEqual(rules.text_value(755), "755")
        self.assertIsNone(rules.text_value(True))
        self.assertIsNone(rules.text_value(["x"]))


class Keys(unittest.TestCase):
    def test_keys_come_in_order_with_duplicates(self):
        self.assertEqual(rules.find_keys("{a}-{b}-{a}"), ["a", "b", "a"])

    def test_the_tree_adds_only_new_names(self):
        names = rules.find_keys("{a}-{b}-{a}")
        rules.scan_hierarchy(file("{a}{c}{c}"), names)
        self.assertEqual(names, ["a", "b", "a", "c"])

    def test_empty_nested_and_escaped_keys(self):
        self.assertEqual(rules.find_keys("{}x{y}"), ["y"])
        self.assertEqual(rules.find_keys("{a{b}"), ["a{b"])
        self.assertEqual(rules.find_keys("\\{a}{b}"), ["b"])
        self.assertEqual(rules.find_keys("{a\\}b}"), ["a}b"])
        self.assertEqual(rules.find_keys("{a\\{b}"), ["a{b"])
        self.assertEqual(rules.find_keys("\\\\{a}{b}"), ["b"])
        self.assertEqual(rules.find_keys("{ a }"), [" a "])

    def test_scans_that_never_end(self):
        for text in ("ab{", "{a\\}", "Job {", "{a}{", "{\\}", "\U0001f600{", "{a}{b\\}"):
            with self.assertRaises(rules.NeverEnds, msg=text):
                rules.find_keys(text)

    def test_scans_that_end_without_keys(self):
        for text in ("\\{ab", "{ab", "", "{", "a{", "{}", "é{", "a\\{", "ab\\{", "{a}"[:2], "{ab{"):
            self.assertEqual(rules.find_keys(text), [], text)

    def test_an_empty_delimiter_finds_nothing(self):
        self.assertEqual(rules.find_keys("{abc}", "", "}"), [])
        self.assertEqual(rules.find_keys("{abc}", "{", ""), [])

    def test_replacing_unescapes_first(self):
        text = "\\{Project} {Project}"
        self.assertEqual(rules.replace(text, [["Project", "Acme"]]), "Acme Acme")
        self.assertEqual(rules.replace(text, []), text)
        self.assertEqual(rules.replace("\\{x\\}", [["Project", "Acme"]]), "{x}")

    def test_rows_are_applied_one_after_the_other(self):
        self.assertEqual(rules.replace("{a}{a}", [["a", "1"], ["a", "2"]]), "11")
        self.assertEqual(rules.replace("{a}", [["a", "{b}"], ["b", "2"]]), "2")
        self.assertEqual(rules.replace("{b}", [["a", "1"], ["b", "{a}{b}"]]), "{a}{b}")
        self.assertEqual(rules.replace("{x}{a}", [["a", "1"]]), "{x}1")

    def test_names_differing_in_case_are_different(self):
        self.assertEqual(rules.find_keys("{a}{A}"), ["a", "A"])
        self.assertEqual(rules.replace("{a}{A}", [["a", "1"], ["A", "2"]]), "12")

    def test_tree_names_are_cleaned_before_the_scan_and_substituted_before_they_are_cleaned(self):
        names = []
        rules.scan_hierarchy(file("{a/b}"), names)
        self.assertEqual(names, ["a_b"])
        self.assertEqual(rules.node_name(file("{a/b}"), [["a_b", "x"]]), "{a_b}")

    def test_a_folders_own_keys_come_first_and_a_files_children_are_not_read(self):
        names = []
        rules.scan_hierarchy(folder("{b}", [folder("{c}", [file("{a}")]), file("{d}", children=[file("{e}")])]), names)
        self.assertEqual(names, ["b", "c", "a", "d"])


class Modes(unittest.TestCase):
    def test_only_three_units_are_a_mode(self):
        for text in ("75", "0755", "", "7", None, "755\u0301", "\U0001f60075"):
            self.assertIsNone(rules.mode_of_permissions(text), text)

    def test_a_mode_is_read_as_octal_to_the_first_other_character(self):
        for text, mode in (
            ("644", 0o644), ("755", 0o755), ("abc", 0), ("999", 0), ("7a5", 0o7), ("7x5", 0o7), (" 75", 0o75),
            ("+75", 0o75), ("7 5", 0o7), ("75é", 0o75), ("é75", 0), ("7\U0001f600", 0o7), ("-77", 0o7701), ("0x7", 0),
            ("000", 0), ("   ", 0),
        ):  # fmt: skip
            self.assertEqual(rules.mode_of_permissions(text), mode, text)


class Helpers(unittest.TestCase):
    def test_label_numbers(self):
        self.assertEqual(rules.label_number("orange"), 7)
        self.assertEqual(rules.label_number("gray"), 1)
        self.assertEqual(rules.label_number("grey"), rules.LABEL_NOT_FOUND)
        self.assertEqual(rules.label_number("Red"), rules.LABEL_NOT_FOUND)
        self.assertEqual(rules.label_number(None), 0)
        self.assertEqual(rules.label_number(""), 0)

    def test_label_bits_leave_the_others(self):
        self.assertEqual(rules.flags_with_label(0xFFFF, 2), 0xFFF5)
        self.assertEqual(rules.flags_with_label(0x000E, 0), 0)
        self.assertEqual(rules.flags_with_label(0, 9), 2)
        info = rules.finder_info_with_label(b"\xff" * 32, 2)
        self.assertEqual(info, b"\xff" * 8 + b"\xff\xf5" + b"\xff" * 22)
        self.assertEqual(rules.finder_info_with_label(None, 6), b"\0" * 9 + b"\x0c" + b"\0" * 22)

    def test_removed_characters(self):
        self.assertEqual(rules.without_file_system_entities("~/a:b/c"), "abc")

    def test_hexadecimal_colours(self):
        self.assertEqual(rules.color_from_hex("FF8000"), (1.0, 128 / 255, 0.0))
        self.assertEqual(rules.color_from_hex("0x0000FF"), (0.0, 0.0, 1.0))
        self.assertEqual(rules.color_from_hex("1FF8000"), rules.color_from_hex("FF8000"))
        self.assertEqual(rules.color_from_hex(None), (0.0, 0.0, 0.0))
        self.assertEqual(rules.color_from_hex("zz"), (0.0, 0.0, 0.0))

    def test_button_states(self):
        self.assertEqual([rules.bool_of_button_state(s) for s in (-1, 0, 1)], [False, False, True])

    def test_paths(self):
        self.assertEqual(rules.join("/a/", "b/c/"), "/a/b/c")
        self.assertEqual(rules.join("", "b"), "b")
        self.assertEqual(rules.join("/", "b"), "/b")
        self.assertEqual(rules.join("/p", "/"), "/p")
        self.assertEqual(rules.join("/p//q", "a//b"), "/p/q/a/b")
        self.assertEqual([rules.last_component(p) for p in ("/a/b", "/a/b/", "/", "")], ["b", "b", "/", ""])
        self.assertEqual([rules.without_last_component(p) for p in ("/a/b", "/a", "/", "a")], ["/a", "/", "/", ""])

    def test_messages_are_formats(self):
        for text, shown in (
            ("100%", "100%"), ("%d%%", "0%"), ("%5d|%-3d|%03d", "    0|0  |000"), ("%@ %s", "(null) (null)"),
            ("%ld%llx", "00"), ("%y", "%y"), ("100% sure", "100(null)ure"), ("%+d% d", "+0 0"), ("50% off", "500ff"),
            ("'50%' already", "'50 0x0p+0lready"), ("%.2f", "0.00"), ("%1$d %2$@", "0 (null)"), ("%", "%"),
        ):  # fmt: skip
            self.assertEqual(rules.message_of_format(text), shown, text)


class OnDisk(unittest.TestCase):
    """Creations in a model folder, with a content store on disk."""

    def setUp(self):
        base = "/dev/shm" if os.path.isdir("/dev/shm") else None
        self.scratch = tempfile.mkdtemp(prefix="orvane-rules-", dir=base)
        self.addCleanup(shutil.rmtree, self.scratch)
        self.store = os.path.join(self.scratch, "File Content")
        os.mkdir(self.store)
        self.world = rules.World(0o022, self.scratch)
        self.parent = rules.Item("folder", 0o755)

    def make(self, node, rows=()):
        self.creation = rules.Creation(self.world, list(rows))
        return rules.create_node(node, self.parent, "/p", self.creation)

    def run_preset(self, preset, automatic=None, values=(), existing=()):
        automatic = {} if automatic is None else automatic

        def answer(rows):
            rules.fill_rows(rows, values)
            return True

        return rules.create_hierarchy(preset, "/p", self.parent, automatic, answer, lambda path: path in existing, self.world)


class Nodes(OnDisk):
    def test_colon_and_slash_become_underscores(self):
        self.assertEqual(rules.clean("a/b:c"), "a_b_c")
        self.assertEqual(rules.clean(".~x"), ".~x")
        self.assertTrue(self.make(file("a/b:c")))
        self.assertIn(b"a_b_c", self.parent.children)

    def test_an_empty_name_fails_without_an_error(self):
        self.assertFalse(self.make(file("{a}"), [["a", ""]]))
        self.assertIsNone(self.creation.error)
        self.assertFalse(self.make(folder()))
        self.assertIsNone(self.creation.error)

    def test_a_missing_content_file_gives_an_empty_file(self):
        self.assertTrue(self.make(file("x", contentFilename="absent")))
        self.assertEqual(self.parent.children[b"x"].data, b"")

    def test_a_link_to_a_folder_or_to_nothing_gives_an_empty_file(self):
        os.symlink(".", os.path.join(self.store, "tofolder"))
        os.symlink("absent", os.path.join(self.store, "dangling"))
        for name in ("tofolder", "dangling"):
            self.assertTrue(self.make(file(name, contentFilename=name)))
            self.assertEqual(self.parent.children[name.encode()].kind, "file")
            self.assertEqual(self.parent.children[name.encode()].data, b"")

    def test_a_link_is_followed_to_the_end_and_a_folder_copied_whole(self):
        os.mkdir(os.path.join(self.store, "sub"))
        with open(os.path.join(self.store, "sub", "a"), "wb") as stream:
            stream.write(b"abc")
        os.chmod(os.path.join(self.store, "sub", "a"), 0o640)
        os.symlink("sub/a", os.path.join(self.store, "one"))
        os.symlink("one", os.path.join(self.store, "two"))
        self.assertTrue(self.make(file("x", contentFilename="two")))
        self.assertEqual((self.parent.children[b"x"].data, self.parent.children[b"x"].mode), (b"abc", 0o640))
        self.assertTrue(self.make(file("y", contentFilename="sub")))
        self.assertEqual(self.parent.children[b"y"].children[b"a"].data, b"abc")

    def test_permissions(self):
        for text, mode in (("75", 0o644), ("0755", 0o644), ("abc", 0), ("600", 0o600)):
            self.assertTrue(self.make(file(text, permissions=text)))
            self.assertEqual(self.parent.children[text.encode()].mode, mode)

    def test_only_exact_colour_names_set_a_label(self):
        self.assertTrue(self.make(file("a", color="Red")))
        self.assertEqual(self.parent.children[b"a"].attributes, {})
        self.assertTrue(self.make(file("b", color="red")))
        self.assertEqual(self.parent.children[b"b"].attributes[rules.FINDER_INFO][9], 0x0C)

    def test_a_folder_without_children_is_empty(self):
        self.assertTrue(self.make({"filename": "x", "isFolder": True}))
        self.assertEqual(self.parent.children[b"x"].children, {})

    def test_a_failing_child_ends_the_folder(self):
        node = folder("x", [file("a"), file(".."), file("c")], permissions="700", color="red")
        self.assertFalse(self.make(node))
        made = self.parent.children[b"x"]
        self.assertEqual(list(made.children), [b"a"])
        self.assertEqual((made.mode, made.attributes), (0o755, {}))
        self.assertEqual(self.creation.error, "Unable to create file '/p/x/..'.")

    def test_duplicates(self):
        self.assertTrue(self.make(folder("d", [file("a"), file("b")])))
        self.assertTrue(self.make(folder("d", [file("c")], permissions="700")))
        self.assertEqual(sorted(self.parent.children[b"d"].children), [b"a", b"b", b"c"])
        self.assertEqual(self.parent.children[b"d"].mode, 0o700)
        self.assertFalse(self.make(file("d")))
        self.assertEqual(self.creation.error, "Unable to create file '/p/d'.")
        with open(os.path.join(self.store, "text"), "wb") as stream:
            stream.write(b"abc")
        self.assertTrue(self.make(file("f", contentFilename="text", permissions="600", color="blue")))
        self.assertTrue(self.make(file("f", contentFilename="text")))
        twice = self.parent.children[b"f"]
        self.assertEqual((twice.data, twice.mode, twice.attributes[rules.FINDER_INFO][9]), (b"", 0o600, 8))
        self.assertFalse(self.make(folder("f")))
        self.assertEqual(self.creation.error, "Unable to create directory /p/f.")

    def test_long_names(self):
        self.assertTrue(self.make(file("x" * 255)))
        self.assertFalse(self.make(file("x" * 256)))
        self.assertFalse(self.make(folder("é" * 128)))


class Driver(OnDisk):
    def test_a_preset_without_variables_asks_nothing_and_stores_nothing(self):
        outcome = self.run_preset({"directoryName": "\\{x"})
        self.assertTrue(outcome.created)
        self.assertFalse(outcome.asked)
        self.assertIsNone(outcome.automatic)
        self.assertIn(b"\\{x", self.parent.children)

    def test_a_name_twice_in_the_template_gives_two_rows_and_the_first_wins(self):
        outcome = self.run_preset({"directoryName": "{Project} {Project}"}, values=[("Project", "A"), ("Project", "B")])
        self.assertEqual(outcome.rows, [["Project", "A"], ["Project", "B"]])
        self.assertIn(b"A A", self.parent.children)

    def test_a_preset_without_a_folder_name_asks_and_then_fails(self):
        outcome = self.run_preset({"fileHierarchy": {"children": [file("{auto}")]}})
        self.assertTrue(outcome.asked)
        self.assertEqual(outcome.alerts, [(rules.TITLE_BLANK, rules.MESSAGE_BLANK)])
        self.assertEqual(outcome.automatic, {"auto": "0"})

    def test_an_existing_folder_stops_the_run_after_the_counters(self):
        outcome = self.run_preset({"directoryName": "J{auto}"}, {"auto": "4", "other": "x"}, existing=("/p/J5",))
        self.assertEqual(outcome.alerts, [(rules.TITLE_EXISTS, "'J5' already exists in '/p'.")])
        self.assertEqual(outcome.automatic, {"auto": "5", "other": "x"})
        self.assertEqual(self.parent.children, {})

    def test_two_presets_share_a_counter_by_its_exact_name(self):
        stored = self.run_preset({"directoryName": "a{AutoJob}"}).automatic
        self.assertEqual(stored, {"AutoJob": "0"})
        stored = self.run_preset({"directoryName": "b{AutoJob}"}, stored).automatic
        self.assertEqual(stored, {"AutoJob": "1"})
        stored = self.run_preset({"directoryName": "c{autojob}"}, stored).automatic
        self.assertEqual(stored, {"AutoJob": "1", "autojob": "0"})

    def test_a_script_named_finder_opens_nothing(self):
        for name, opens in (("Reveal in Finder.sh", False), ("FinderCleanup.sh", False), ("cleanup.sh", True), ("", True)):
            self.parent.children.clear()
            outcome = self.run_preset({"directoryName": "x", "scriptFile": name})
            self.assertEqual(outcome.opens, opens, name)
            self.assertEqual(outcome.script is None, name == "")

    def test_variables_of_the_script(self):
        rows = [["job no", "1"], ["project name", "A"], ["Job-No", "2"], ["straße", "s"], ["JOB NO", "3"]]
        environment = rules.environment_of_script("/p/x", rows)
        self.assertEqual(
            environment,
            {"ORV_CONTEXT": "postflight", "ORV_ROOT_PATH": "/p/x", "P_JOB_NO": "3", "P_PROJECT_NAME": "A", "P_JOB-NO": "2",
             "P_STRASSE": "s"},
        )  # fmt: skip

    def test_the_root_takes_nothing_but_its_children(self):
        root = folder("ignored{v}", [file("a")], permissions="700", color="red")
        outcome = self.run_preset({"directoryName": "x", "fileHierarchy": dict(root, isFolder=False)})
        self.assertTrue(outcome.created)
        made = self.parent.children[b"x"]
        self.assertEqual((made.kind, made.mode, made.attributes, list(made.children)), ("folder", 0o755, {}, [b"a"]))

    def test_a_failure_removes_what_was_made_at_the_checked_path(self):
        children = {"children": [file("a"), file("..")]}
        outcome = self.run_preset({"directoryName": "x", "fileHierarchy": children})
        self.assertEqual(self.parent.children, {})
        self.assertEqual(outcome.alerts, [(rules.TITLE_FAILED, rules.MESSAGE_FAILED + "Unable to create file '/p/x/..'.")])

    def test_a_failure_leaves_what_was_made_at_another_path(self):
        outcome = self.run_preset({"directoryName": "x:y", "fileHierarchy": {"children": [file("a"), file("")]}})
        self.assertEqual((outcome.top_path, outcome.made_path), ("/p/x:y", "/p/x_y"))
        self.assertEqual(list(self.parent.children[b"x_y"].children), [b"a"])
        self.assertEqual(outcome.alerts, [(rules.TITLE_FAILED, rules.MESSAGE_FAILED + "(null)")])

    def test_a_slash_in_the_name_adds_a_level_to_the_checked_path_only(self):
        outcome = self.run_preset({"directoryName": "a/b"})
        self.assertEqual((outcome.top_path, outcome.made_path, list(self.parent.children)), ("/p/a/b", "/p/a_b", [b"a_b"]))

    def test_messages_interpret_directives_of_names(self):
        outcome = self.run_preset({"directoryName": "50%d"}, existing=("/p/50%d",))
        self.assertEqual(outcome.alerts, [(rules.TITLE_EXISTS, "'500' already exists in '/p'.")])


class Scripts(OnDisk):
    def test_output_lines_become_pairs(self):
        self.assertEqual(rules.parse_script_output("a = 1\nb=\n=c\nd=e=f\na=2"), {"a": "2", "d": "e=f"})
        self.assertEqual(rules.parse_script_output("a=1\r\nb = 2 \r\n"), {"a": "1\r", "b": "2 \r"})

    def test_alerts(self):
        path = os.path.join(self.scratch, "x%d.sh")
        start = "'x0.sh' is the specified script file for this preset, "
        self.assertEqual(rules.script_alert(path, True), (rules.TITLE_SCRIPT_MISSING, start + "but that file doesn't exist."))
        with open(path, "w", encoding="ascii") as stream:
            stream.write("#!/bin/sh\n")
        os.chmod(path, 0o644)
        title, message = rules.script_alert(path, True)
        self.assertEqual((title, message), (rules.TITLE_SCRIPT_NOT_EXECUTABLE, start + "but that file isn't executable."))
        os.chmod(path, 0o755)
        self.assertIsNone(rules.script_alert(path, True))
        self.assertEqual(rules.script_alert(path, False)[0], rules.TITLE_SCRIPT_ERRORS)


class CommandLine(unittest.TestCase):
    def test_settings_go_to_rows_in_order_and_the_last_to_the_rest(self):
        rows = [["a", ""], ["b", ""], ["a", ""], ["a", ""]]
        self.assertEqual(rules.fill_rows(rows, [("a", "1"), ("a", "2")]), ["b"])
        self.assertEqual([row[1] for row in rows], ["1", "", "2", "2"])

    def test_an_assignment_is_split_where_a_name_ends(self):
        self.assertEqual(rules.split_assignment("x=y=z", ["x=y"]), ("x=y", "z"))
        self.assertEqual(rules.split_assignment("x=y=z", ["x=y", "x"]), ("x=y", "z"))
        self.assertEqual(rules.split_assignment("x=y=z", ["x", "y"]), ("x", "y=z"))
        self.assertEqual(rules.split_assignment("x=y=z", []), ("x", "y=z"))

    def test_settings_that_no_row_takes_are_left_over(self):
        settings = [("z", "1"), ("b", "1"), ("y", "1"), ("b", "2"), ("a", "1"), ("a", "2"), ("a", "3"), ("z", "2"), ("c", "1")]
        self.assertEqual(rules.settings_left_over(["a", "b", "a", "c"], settings), (["z", "y"], ["a", "b"]))
        self.assertEqual(rules.settings_left_over(["a"], []), ([], []))


if __name__ == "__main__":
    unittest.main()
