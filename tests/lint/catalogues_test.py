#!/usr/bin/env python3
"""The check of the command line's catalogues: it has nothing to say about the sources, and finds every planted fault.

    catalogues_test.py TOP
"""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOP = Path(sys.argv.pop(1))
FOLDERS = ("CommandLine", "PresetFiles", "resources/translations", "HelperSource/ports", "HelperSource/presets", "HelperSource/hotkeys")
CATALOGUES = "resources/translations/commandline"
FRENCH = CATALOGUES + "/fr.po"


class Catalogues(unittest.TestCase):
    def setUp(self):
        made = tempfile.TemporaryDirectory()
        self.addCleanup(made.cleanup)
        self.top = Path(made.name)
        for folder in FOLDERS:
            shutil.copytree(TOP / folder, self.top / folder)

    def run_tool(self, *words):
        done = subprocess.run([sys.executable, "-B", self.top / CATALOGUES / "update.py", *words], capture_output=True, text=True, timeout=120,
                              check=False)
        return done.returncode, done.stdout + done.stderr

    def plant(self, path, pattern, replacement):
        source = (self.top / path).read_text(encoding="utf-8")
        planted, count = re.subn(pattern, lambda match: match.expand(replacement), source, count=1, flags=re.M)
        self.assertEqual(count, 1, pattern)
        (self.top / path).write_text(planted, encoding="utf-8")

    def assertFound(self, expected):
        status, said = self.run_tool("--check")
        self.assertEqual(status, 1, said)
        self.assertIn(expected, said)

    def test_nothing_is_wrong_with_the_sources(self):
        self.assertEqual(self.run_tool("--check"), (0, ""))

    def test_an_update_changes_nothing(self):
        before = (self.top / FRENCH).read_text(encoding="utf-8")
        self.assertEqual(self.run_tool(), (0, ""))
        self.assertEqual((self.top / FRENCH).read_text(encoding="utf-8"), before)

    def test_a_new_text(self):
        self.plant("CommandLine/ListCommand.cpp", r'localized\("unexpected', 'localized("quite unexpected')
        self.assertFound("fr.po: not up to date")
        self.assertEqual(self.run_tool()[0], 1)  # it is in the catalogues now, but nobody has translated it
        self.assertFound("1 untranslated message")

    def test_a_text_that_no_call_translates(self):
        self.plant("CommandLine/CreateCommand.cpp", r'localized\("does not exist"\)', '"does not exist"')
        self.assertFound('not translated: CommandLine/CreateCommand.cpp: "does not exist"')

    def test_a_text_of_the_engine(self):
        self.plant("HelperSource/presets/ORVPresetChecker.cpp", r'"the label is empty"', '"the label is quite empty"')
        self.assertFound("de.po: not up to date")

    def test_a_fuzzy_translation(self):
        self.plant(FRENCH, r'^#, qt-format\nmsgid "no file given"', '#, fuzzy, qt-format\nmsgid "no file given"')
        self.assertFound("1 fuzzy translation")

    def test_a_translation_that_is_gone(self):
        self.plant(FRENCH, r'^msgstr "aucun fichier indiqué"', 'msgstr ""')
        self.assertFound("1 untranslated message")

    def test_an_obsolete_translation(self):
        self.plant(FRENCH, r"\Z", '\n#~ msgid "gone"\n#~ msgstr "parti"\n')
        self.assertFound("fr.po: not up to date")

    def test_an_argument_that_is_lost(self):
        self.plant(FRENCH, r"^(msgstr \"commande inconnue «\u00a0)%1", r"\1")
        self.assertFound("for argument 1 doesn't exist")

    def test_a_line_that_is_too_long(self):
        self.plant(FRENCH, r"^\"relise\.", '"' + "x" * 81)
        self.assertFound("a line of more than 80 columns")

    def test_english_quotation_marks(self):
        self.plant(FRENCH, r"^msgstr \"«\u00a0%1\u00a0»\"", "msgstr \"'%1'\"")
        self.assertFound("English quotation marks")


if __name__ == "__main__":
    unittest.main()
