#!/usr/bin/python3
"""What the file managers' extensions in Python put into the context menu, with stand-ins for the file managers' own modules.

    extensions_test.py FOLDER
"""

import os
import subprocess
import sys
import tempfile
import time
import unittest

FOLDER = sys.argv.pop(1)
DEADLINE = 60
# Extension, the file manager's module, the call for a folder's background, its arguments in front of the folder.
EXTENSIONS = (("orvane_nautilus", "Nautilus", "get_background_items", 0), ("orvane_caja", "Caja", "get_background_items", 1),
              ("orvane_thunar", "Thunarx", "get_folder_menu_items", 1))
PROGRAM = """
import sys, types
import gi
from gi.repository import Gio
extension, module, call, before = sys.argv[1:5]

class MenuProvider:
    pass

class MenuItem:
    def __init__(self, label, **_more):
        self.label = label

    def connect(self, _signal, method, *arguments):
        self.activate = lambda: method(self, *arguments)

class Folder:
    def __init__(self, uri):
        self.uri = uri

    def get_location(self):
        return Gio.File.new_for_uri(self.uri)

stand_in = types.SimpleNamespace(MenuProvider=MenuProvider, MenuItem=MenuItem)
sys.modules["gi.repository." + module] = stand_in
setattr(sys.modules["gi.repository"], module, stand_in)
gi.require_version = lambda *_: None
sys.path.insert(0, sys.argv[5])
provider = __import__(extension).OrvaneMenuProvider()
ask = lambda uri: getattr(provider, call)(*[None] * int(before), Folder(uri))
assert ask("trash:///") == [], "a folder without a path"
(item,) = ask("file:///tmp/a%20b")
print(item.label)
item.activate()
"""


class Extensions(unittest.TestCase):
    def run_extension(self, words, language):
        with tempfile.TemporaryDirectory() as top:
            seen = os.path.join(top, "seen")
            with open(os.path.join(top, "orvane"), "w", encoding="utf-8") as program:
                program.write(f'#!/bin/sh\nprintf "%s|" "$@" >{seen}.new && mv {seen}.new {seen}\n')
            os.chmod(program.name, 0o755)
            environment = {"PATH": f"{top}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8",
                           "PYTHONIOENCODING": "utf-8", **language}  # what is printed, not what the entry is called
            done = subprocess.run([sys.executable, "-B", "-c", PROGRAM, *map(str, words), FOLDER], env=environment, capture_output=True,
                                  text=True, timeout=DEADLINE, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            end = time.monotonic() + DEADLINE
            while not os.path.exists(seen) and time.monotonic() < end:
                time.sleep(0.01)
            with open(seen, encoding="utf-8") as told:
                self.assertEqual(told.read(), "menu|--in|/tmp/a b|")
            return done.stdout.rstrip("\n")

    def test_the_entry_is_named_in_the_users_language_and_names_the_folder(self):
        labels = {"C.UTF-8": "New from preset…", "de_AT.UTF-8": "Neu aus Vorlage …", "fr_CA": "Nouveau à partir d’un modèle…",
                  "es_ES.UTF-8": "New from preset…"}
        for words in EXTENSIONS:
            for language, label in labels.items():
                self.assertEqual(self.run_extension(words, {"LC_ALL": language}), label, (words, language))

    def test_a_list_of_languages_counts_before_the_locale(self):
        for words in EXTENSIONS:
            self.assertEqual(self.run_extension(words, {"LC_ALL": "de_DE.UTF-8", "LANGUAGE": "es:fr:de"}), "Nouveau à partir d’un modèle…")


if __name__ == "__main__":
    unittest.main()
