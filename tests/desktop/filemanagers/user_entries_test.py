#!/usr/bin/env python3
"""The entry in Thunar's context menu for one user: user_entries_test.py INSTALL-USER-ENTRIES"""

import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PROGRAM = None
ID = "orvane-new-from-preset-1"
THEIRS = """<?xml encoding="UTF-8" version="1.0"?>
<!-- mine: </actions> -->
<actions>
<action>
\t<icon>x</icon>
\t<name>Gr\u00fc\u00dfe &amp; more</name>
\t<unique-id>1-1</unique-id>
\t<command>echo '%f' &gt;&gt; /tmp/x</command>
\t<unknown attribute="kept"/>
\t<directories/>
</action>
</actions>
<!-- trailing -->
"""


class UserEntries(unittest.TestCase):
    def setUp(self):
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.home = Path(self._folder.name)
        self.file = self.home / ".config/Thunar/uca.xml"

    def run_program(self, *arguments, **environment):
        surroundings = {"HOME": str(self.home), "PATH": os.environ["PATH"], "XDG_CONFIG_DIRS": "/no-such-folder", **environment}
        return subprocess.run([PROGRAM, *arguments], env=surroundings, capture_output=True, text=True, timeout=60, check=False)

    def put(self, text):
        self.file.parent.mkdir(parents=True, exist_ok=True)
        self.file.write_bytes(text if isinstance(text, bytes) else text.encode())

    def identifiers(self):
        # Without the declaration, which Thunar writes in an order of its own.
        root = ElementTree.fromstring(self.file.read_text().split("?>", 1)[-1])
        return [each.findtext("unique-id") for each in root]

    def succeeds(self, *arguments, **environment):
        result = self.run_program(*arguments, **environment)
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_makes_the_file_where_there_is_none(self):
        self.succeeds()
        self.assertEqual(self.identifiers(), [ID])
        action = ElementTree.parse(self.file).getroot()[0]
        self.assertEqual(action.findtext("command"), "orvane menu --in %f")
        self.assertIsNotNone(action.find("directories"))
        self.assertEqual(self.file.stat().st_mode & 0o777, 0o600)

    def test_begins_with_the_systems_template(self):
        (self.home / "xdg/Thunar").mkdir(parents=True)
        (self.home / "xdg/Thunar/uca.xml").write_text(THEIRS)
        self.succeeds(XDG_CONFIG_DIRS=f"{self.home}/none:{self.home}/xdg")
        self.assertEqual(self.identifiers(), ["1-1", ID])

    def test_keeps_every_other_byte_and_takes_itself_out_again(self):
        self.put(THEIRS)
        self.file.chmod(0o640)
        self.succeeds()
        text = self.file.read_text()
        begin, end = text.index("<action>\n\t<icon>folder-new"), text.rindex("</actions>")
        self.assertEqual(text[:begin] + text[end:], THEIRS)
        self.assertEqual(self.identifiers(), ["1-1", ID])
        self.assertEqual(self.file.stat().st_mode & 0o777, 0o640)
        self.succeeds("--remove")
        self.assertEqual(self.file.read_text(), THEIRS)

    def test_twice_changes_nothing(self):
        self.put(THEIRS)
        self.succeeds()
        before = (self.file.read_bytes(), self.file.stat().st_ino, self.file.stat().st_mtime_ns)
        self.succeeds()
        self.assertEqual((self.file.read_bytes(), self.file.stat().st_ino, self.file.stat().st_mtime_ns), before)

    def test_an_action_that_the_user_edited_stays(self):
        self.succeeds()
        edited = self.file.read_text().replace("orvane menu --in %f", "my-orvane %f")
        self.put(edited)
        self.succeeds()
        self.assertEqual(self.file.read_text(), edited)

    def test_empty_elements_are_filled(self):
        self.put('<?xml version="1.0"?><actions/>')
        self.succeeds()
        self.assertEqual(self.identifiers(), [ID])

    def test_a_comment_or_cdata_with_the_end_in_it_does_not_mislead(self):
        self.put("<actions><action><unique-id>a</unique-id><name><![CDATA[</actions>]]></name></action><!-- </actions> --></actions>")
        self.succeeds()
        self.assertEqual(self.identifiers(), ["a", ID])
        self.succeeds("--remove")
        self.assertEqual(self.identifiers(), ["a"])

    def test_what_cannot_be_understood_is_left_alone(self):
        for text in ("", "<actions>", "<other/>", "<actions></actions>x", b"<actions>\xff</actions>", '<!DOCTYPE a [<!ENTITY e "x">]><actions/>'):
            with self.subTest(text=text):
                self.put(text)
                before = self.file.read_bytes()
                for arguments in ([], ["--remove"]):
                    result = self.run_program(*arguments)
                    self.assertEqual(result.returncode, 1)
                    self.assertIn("was left as it is", result.stderr)
                    self.assertEqual(self.file.read_bytes(), before)
        self.assertEqual(os.listdir(self.file.parent), ["uca.xml"])

    def test_a_symbolic_link_stays_one(self):
        real = self.home / "dotfiles.xml"
        real.write_text(THEIRS)
        self.file.parent.mkdir(parents=True)
        self.file.symlink_to(real)
        self.succeeds()
        self.assertTrue(self.file.is_symlink())
        self.assertIn(ID, real.read_text())

    def test_removing_without_a_file_makes_none(self):
        self.succeeds("--remove")
        self.assertFalse((self.home / ".config").exists())

    def test_the_configuration_folder_of_the_environment_is_used(self):
        self.succeeds(XDG_CONFIG_HOME=str(self.home / "elsewhere"))
        self.assertTrue((self.home / "elsewhere/Thunar/uca.xml").exists())
        self.assertFalse(self.file.exists())

    def test_other_arguments_are_refused(self):
        self.assertEqual(self.run_program("--help-me").returncode, 2)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
