"""`--dry-run` shows what would be made and changes nothing at all."""

import os
import shutil
import unittest

from harness import OrvaneTest, file, folder, preset


class DryRun(OrvaneTest):
    def dry(self, *words, **more):
        """Runs it dry and sees to it that nothing has changed, neither at home nor in the target."""
        before = self.snapshot(self.root)
        result = self.run_orvane("create", *words, "--dry-run", **more)
        self.assertEqual(self.snapshot(self.root), before)
        return result

    def test_shows_the_tree_with_values(self):
        self.write_content("c.txt", b"content")
        self.write_presets(preset("P", "{A} {AutoNo}", folder("f", file("{A}.txt", contentFilename="c.txt"), permissions="750",
                                                              color="red"), file("x")), ORVAutomaticVars={"AutoNo": "6"})
        result = self.dry("P", "--set", "A=Acme", "--no-input")
        self.assertEqual((result.status, result.err), (0, ""))
        self.assertEqual(result.out, "Acme 7/\n├── f/  750  ● red\n│   └── Acme.txt  <- c.txt\n└── x\n\n2 folders, 2 files\n")

    def test_counters_stay(self):
        self.write_presets(preset("P", "{AutoNo}"), ORVAutomaticVars={"AutoNo": "6"})
        for _ in range(2):
            self.assertTrue(self.dry("P", "--no-input").out.startswith("7/"))

    def test_scripts_do_not_run(self):
        self.write_script("x.sh", f"#!/bin/sh\ntouch {self.root}/ran\n")
        self.write_script("y.sh", "#!/bin/sh\n", mode=0o644)
        self.write_presets(*[preset("P", "top", scriptFile=name) for name in ("x.sh", "y.sh", "z.sh")])
        self.assertIn("script: " + os.path.join(self.scripts, "x.sh") + "\n", self.dry("0").out)
        self.assertIn("is not executable", self.dry("1").out)
        self.assertIn("does not exist", self.dry("2").out)

    def test_problems_are_marked(self):
        self.write_presets(preset("P", "top", file("a", contentFilename="none.txt"), file("a"), folder("a"), file("x" * 256),
                                  file("..")))
        result = self.dry("0")
        self.assertEqual(result.status, 1)
        for problem in ("'none.txt' cannot be read", "empties the file", "a file of the same name", "256 bytes", "cannot be used"):
            self.assertIn(problem, result.out)

    def test_json_has_tree_and_problems(self):
        self.write_presets(preset("P", "top", file(".."), scriptFile="z.sh"))
        result = self.dry("0", "--json")
        self.assertEqual(result.status, 1)
        self.assertEqual((result.json["path"], result.json["created"], result.json["nodes"]), (self.in_target("top"), False, 2))
        self.assertIn("problem", result.json["tree"]["children"][0])
        self.assertEqual(result.json["script"]["problem"], "does not exist")

    def test_the_failure_is_told_as_by_a_creation(self):
        shapes = ((folder("f", file("..")),), (folder("f", folder("x" * 256)), file("..")), (file("a"), folder("a", file("b"))),
                  (file("100%%"), folder("100%%")), (file("x" * 256), {}), (folder("f", file("..")), folder("g", {})))
        for children in shapes:
            self.write_presets(preset("P", "to:p", *children))
            dry = self.dry("0", "--json")
            self.assertEqual(dry.status, 1)
            self.assertEqual(dry.json["error"]["title"], "ORV wasn't able to create the preset")
            message = dry.json["error"]["message"]
            self.assertTrue(message.startswith("ORV wasn't able to create the preset, because a file creation failed: Unable to create "))
            self.assertEqual(dry.err, f"orvane: ORV wasn't able to create the preset: {message}\n")
            self.assertEqual(self.dry("0").err, dry.err)
            real = self.run_orvane("create", "0", "--json")
            self.assertEqual((real.status, real.json["error"], real.err), (1, dry.json["error"], dry.err))
            shutil.rmtree(self.in_target("to_p"))  # a cleaned name's folder stays after a failure

    def test_a_name_that_comes_out_empty_is_told_as_by_a_creation(self):
        # There is no reason for it, deliberately: none is noted for such a name, and the last one counts.
        blank = "Top level folder name is blank"
        failed = "ORV wasn't able to create the preset"
        for name, children, title in (("", (), blank), ("{B}", (), blank), ("{A}{B}", (), blank), ("{B}{A}", (), failed),
                                      ("top", (file(""),), failed), ("top", (file("x"), folder("{B}", file("y"))), failed),
                                      ("top", (folder("f", file("{B}", contentFilename="none")), file("..")), failed)):
            self.write_presets(preset("P", name, *children))
            words = ("0", "--no-input", "--json", "--set", "A={B}", "--set", "B=")
            dry = self.dry(*words)
            self.assertEqual((dry.status, dry.json["error"]["title"]), (1, title))
            self.assertEqual(dry.json["error"]["message"].endswith(" failed: (null)"), title == failed, dry.err)
            real = self.create(*words)
            self.assertEqual((real.status, real.json["error"], real.err), (1, dry.json["error"], dry.err))
            self.assertNothingMade()

    def test_a_forbidden_parent_is_a_failure_too(self):
        self.write_presets(preset("P", "top"))
        os.chmod(self.target, 0o555)
        result = self.run_without_rights("create", "0", "--dry-run", "--json")
        self.assertEqual((result.status, result.json["error"]["message"]),
                         (1, "ORV wasn't able to create the preset, because a file creation failed: "
                             f"Unable to create directory {self.in_target('top')}."))

    def test_an_existing_folder_is_told(self):
        self.write_presets(preset("P", "top"))
        os.mkdir(self.in_target("top"))
        result = self.dry("0")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertIn("Directory already exists", result.err)

    def test_missing_values_are_wrong_usage_here_too(self):
        self.write_presets(preset("P", "{A}"))
        self.assertEqual(self.dry("0").status, 2)

    def test_nothing_is_made_for_users_who_have_nothing_yet(self):
        result = self.dry("0")
        self.assertEqual((result.status, result.out), (2, ""))


if __name__ == "__main__":
    unittest.main()
