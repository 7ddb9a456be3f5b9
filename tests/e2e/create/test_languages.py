"""What the command line says in German and French, and what stays as it is in every language."""

import fcntl
import os
import platform
import plistlib
import re
import shutil
import subprocess
import unicodedata
import unittest

from harness import DEADLINE, LOCALE, PROGRAM, OrvaneTest, file, folder, preset

LANGUAGES = ("de", "fr")
COMMANDS = ("list", "show", "create", "import", "export", "add", "check", "menu", "notify", "recover")
CATALOGUES = os.path.join(os.path.dirname(os.path.dirname(PROGRAM)), "share/locale")

# Words of one language that the others do not have.
WORDS = {
    "en": r"the|of|with|is|and|not|to|cannot|there|folder|folders|file|files|which|that|this|from|given|preset|presets|needs|for|it|are|be"
          r"|has|its|Usage|Exit|unknown|warning|error|such|directory|left|out|none",
    "de": r"der|die|das|und|nicht|ist|wird|eine|keine|Vorlage|Ordner|Datei|kann|oder|Sie",
    "fr": r"le|la|les|est|une|dans|modèle|dossier|fichier|pas|peut|ou|vous|avec",
}


def columns(line):
    return sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in line)


def prose(text):
    """The text without what is the same in every language: what is quoted, paths, options and keys of presets."""
    text = re.sub(r"„[^“]*“|«[^»]*»|\{[^}]*\}", " ", text)
    text = re.sub(r"[\w.-]*/\S*|--?[a-z][\w-]*|\"[^\"]*\"|\b(?:orvane|orvane-bus)\b|^orvane: \w+:|\S+\[\d+\]\S*", " ", text, flags=re.M)
    return re.sub(r"\b(?:label|scriptFile|directoryName|isFolder|permissions|contentFilename|fileHierarchy)\b|^  (?:" + "|".join(COMMANDS) + ") ",
                  " ", text, flags=re.M)


class Languages(OrvaneTest):
    def setUp(self):
        super().setUp()
        self.write_presets(
            preset("Film", "{Größe} {Name} {AutoNo}", folder("a", color="red"), file("f", contentFilename="gone", permissions="9x"),
                   file("f"), scriptFile="gone.sh"),
            preset("Film", "plain"), preset("Endless", "{a} b{"), preset(None, "unlabelled"))

    def write_presets(self, *presets, **more):
        super().write_presets(*({key: value for key, value in each.items() if value is not None} for each in presets), **more)

    def said(self, language, *words, **more):
        return self.run_orvane(*words, env={"LANGUAGE": language, **more.pop("env", {})}, **more)

    def assertSpeaks(self, language, text, context):
        for other, words in WORDS.items():
            if other != language:
                found = re.search(rf"\b(?:{words})\b", prose(text))
                self.assertIsNone(found, f"{other} in the {language} of {context}: {found and found[0]!r} in {text}")

    def assertTranslated(self, words, **more):
        """All that the words make the program say is in the language asked for; returns the German."""
        results = {language: self.said(language, *words, **more) for language in ("en", *LANGUAGES)}
        for language in LANGUAGES:
            result, english = results[language], results["en"]
            self.assertEqual(result.status, english.status, words)
            self.assertEqual(len((result.out + result.err).splitlines()) > 0, True, words)
            self.assertNotEqual((result.out, result.err), (english.out, english.err), words)
            self.assertSpeaks(language, result.out + result.err, words)
        return results["de"].out + results["de"].err

    # What is translated.

    def test_the_help_texts(self):
        for command in ((), *((each,) for each in COMMANDS)):
            with self.subTest(command=command):
                self.assertTranslated((*command, "--help"))
                for language in ("en", *LANGUAGES):
                    text = self.said(language, *command, "--help").out
                    for line in text.splitlines():
                        self.assertLessEqual(columns(line), 80, line)
        self.assertIn("Aufruf: orvane create VORLAGE", self.said("de", "create", "--help").out)
        self.assertIn("Utilisation\u00a0: orvane create MODÈLE", self.said("fr", "create", "--help").out)
        self.assertTranslated(())

    def test_how_a_key_is_bound(self):
        for desktop in ("KDE", "sway", "Hyprland", "niri", "weston", "", "GNOME"):
            with self.subTest(desktop=desktop):
                texts = {each: self.said(each, "menu", "--help", env={"XDG_CURRENT_DESKTOP": desktop}).out for each in ("en", *LANGUAGES)}
                for language in LANGUAGES:
                    self.assertNotIn("Bind a key", texts[language])
                    # Commands and lines of configuration are the same.
                    code = [line for line in texts["en"].rsplit("On this desktop", 1)[1].splitlines() if line.startswith("  ")]
                    self.assertEqual([line for line in texts[language].splitlines() if line in code], code)
                    said = [line for line in texts[language].splitlines() if line not in code]
                    self.assertLessEqual(max(map(columns, said)), 80, said)
                    self.assertSpeaks(language, "\n".join(said), desktop)
        self.assertIn("Oder in einem Terminal", self.said("de", "menu", "--help", env={"XDG_CURRENT_DESKTOP": "GNOME"}).out)

    def test_what_the_running_helper_says(self):
        why = "This desktop gives programs no hot keys of their own. "
        env = {"XDG_CURRENT_DESKTOP": "KDE"}
        advice = why + " ".join(self.said("en", "menu", "--help", env=env).out.rsplit("\nOn this desktop:\n", 1)[1].split())
        german = ("Dieser Desktop gibt Programmen keine eigenen Tastenkürzel. Belegen Sie eine Taste mit dem Befehl „orvane menu“: in den "
                  "Systemeinstellungen unter Kurzbefehle, Befehl hinzufügen.")
        for statement, expected in (
                ("The hot key Ctrl+Shift+H works.", "Das Tastenkürzel Ctrl+Shift+H funktioniert."),
                ("The hot key works by the desktop portal (Ctrl+H).", "Das Tastenkürzel funktioniert über das Desktop-Portal (Ctrl+H)."),
                (advice, german), ("KWin gives no hot key. " + advice, "KWin vergibt kein Tastenkürzel. " + german),
                ("Something new.", "Something new.")):
            path = os.path.join(self.home, ".local/state/orvane/hot-key")
            self.write_bytes(path, f"{os.getpid()}\n{statement}\n".encode())
            with open(path, "rb") as held:  # as the running helper holds it
                fcntl.flock(held, fcntl.LOCK_EX)
                told = self.said("de", "menu", "--help", env=env).out
            self.assertLessEqual(max(map(columns, told.splitlines())), 80, told)
            self.assertTrue(" ".join(told.split()).endswith(" Der laufende Helfer sagt: " + expected), told)

    def test_wrong_usage(self):
        for words in (("-x",), ("nonsense",), ("list", "x"), ("show",), ("show", "0", "1"), ("show", "gone"), ("show", "Film"), ("create",),
                      ("create", "0"), ("create", "0", "1"), ("create", "0", "--set", "X=1"), ("create", "1", "--set", "X=1"),
                      ("create", "1", "--set", "x"), ("create", "1", "--in"), ("create", "1", "--no"), ("create", "1", "--no-open=1"),
                      ("create", "1", "--in", "/nowhere"), ("create", "1", "--in", "/dev/null"), ("create", "1", "--bogus"),
                      ("export",), ("add",), ("add", "a", "b"), ("import",), ("import", "a", "b"), ("import", ".", "--label", ""),
                      ("import", ".", "--variable", "="), ("import", ".", "--variable", "a={}"), ("check", "a", "b"), ("check", "gone"),
                      ("menu", "x"), ("menu", "--in", "/nowhere"), ("notify", "x"), ("recover", "x"), ("recover", "--remove", "--keep")):
            with self.subTest(words=words):
                self.assertTranslated(words)

    def test_failures(self):
        nowhere = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere"}
        for words in (("create", "2", "--no-input"), ("export", "0", "/nowhere/x"), ("export", "0", "/dev"), ("add", "/nowhere"),
                      ("add", "/dev/null"), ("import", "/nowhere"), ("check", "/dev")):
            with self.subTest(words=words):
                self.assertTranslated(words)
        for words in (("menu",), ("notify",)):
            with self.subTest(words=words):
                self.assertTranslated(words, env=nowhere)
        for content in (b"", b"nonsense", b"<plist><array/></plist>", b"<plist><dict>\n<key>a</key>"):
            self.write_bytes(self.preferences, content)
            for words in (("list",), ("check",), ("create", "0"), ("add", "/dev/null")):
                with self.subTest(content=content, words=words):
                    self.assertTranslated(words)

    def test_what_is_left_out(self):
        packed = os.path.join(self.root, "packed")
        self.assertTranslated(("export", "0", packed, "--force"))
        self.assertTranslated(("add", packed))
        os.mkfifo(self.in_target("pipe"))
        os.symlink("gone", self.in_target("link"))
        os.mkdir(self.in_target("{x}"), 0o700)
        os.chmod(self.target, 0o700)
        self.assertTranslated(("import", self.target, "--variable", "Acmee=Client"))
        nameless = os.path.join(self.root, "nameless")
        self.write_bytes(nameless, plistlib.dumps({"ORVPresetFileVersion": 1, "ORVPreset": {"label": "Film"}}))
        self.assertTranslated(("add", nameless))

    def test_what_is_not_used(self):
        self.assertTranslated(("create", "0", "--dry-run", "--no-input", "--set", "Name=a", "--set", "Name=b", "--set", "Client=c"))
        self.write_bytes(self.preferences, plistlib.dumps({"ORVPresets": 1}))
        self.assertTranslated(("list",))

    def test_the_hint_where_there_are_no_presets(self):
        super().write_presets()
        for language, said in (("de", "es gibt noch keine Vorlagen; „orvane import“"), ("fr", "il n’y a pas encore de modèle")):
            self.assertIn(said, self.on_terminal("list", env={"LANGUAGE": language}, whole=True).finish().err)

    def test_a_preset_in_aligned_columns(self):
        german = self.said("de", "show", "0").out
        self.assertTrue(german.startswith("Vorlage:    0  Film\nName:       {Größe} {Name} {AutoNo}\nVariablen:\n  Größe\n  Name\n  AutoNo  0\n"), german)
        self.assertIn("\nSkript:     gone.sh\n", german)
        self.assertTrue(german.endswith("\n2 Ordner, 2 Dateien\n"), german)
        self.assertIn("● rot\n", german)
        french = self.said("fr", "show", "1").out
        self.assertEqual(french, "modèle\u00a0:     1  Film\nnom\u00a0:        plain\nvariables\u00a0:  aucune\nscript\u00a0:     aucun\n\nplain/\n\n"
                                 "1 dossier, 0 fichier\n")
        self.write_presets(preset("P", "{AutoÄÖÜ} {AutoA}"))
        for language in ("en", "de"):
            self.assertIn("  AutoÄÖÜ  0\n  AutoA    0\n", self.said(language, "show", "0").out)

    def test_the_dry_run(self):
        german = self.assertTranslated(("create", "0", "--no-input", "--dry-run"))
        self.assertIn("leert die gleichnamige Datei darüber", german)

    def test_the_checker(self):
        english, german = (self.said(each, "check").out.splitlines() for each in ("en", "de"))
        self.assertEqual(len(german), len(english))
        self.assertTranslated(("check", "0"))
        self.assertIn("Film: scriptFile: Fehler: es gibt kein Skript „gone.sh“", german)

    def test_questions(self):
        for language, heading, number in (("de", "Werte für ", "Name (1 von 2): "), ("fr", "Valeurs pour ", "Name (1 sur 2)\u00a0: ")):
            self.write_presets(preset("P", "{Name}{Name}"))
            terminal = self.on_terminal("create", "0", env={"LANGUAGE": language})
            terminal.read_until(heading)
            terminal.read_until(number)
            self.assertIn({"de": "Namen nehmen den ersten Wert", "fr": "les noms prennent la première valeur"}[language], terminal.shown)
            terminal.type("\x04")
            self.assertEqual(terminal.finish().status, 3)

    # What is the same in every language.

    def test_json_and_what_is_said_beside_it(self):
        for words in (("list",), ("show", "0"), ("show", "2"), ("check",), ("create", "0", "--dry-run", "--no-input"), ("create", "2"),
                      ("create", "gone"), ("create", "0"), ("create", "--bogus"), ("create", "1", "--in", "/nowhere")):
            for option in ("--json", "--js"):
                with self.subTest(words=words):
                    results = {(r.status, r.out, r.err) for r in (self.said(each, words[0], option, *words[1:]) for each in ("en", *LANGUAGES))}
                    self.assertEqual(len(results), 1, results)

    def test_alerts_of_the_engine_and_the_log(self):
        os.mkdir(self.in_target("plain"))
        self.write_presets(preset("P", "plain"))
        results = {(r.status, r.out, r.err) for r in (self.said(each, "create", "0") for each in ("en", *LANGUAGES))}
        self.assertEqual(len(results), 1, results)
        self.assertIn("Directory already exists", results.pop()[2])
        self.write_bytes(self.preferences, b"nonsense")
        logs = []
        for language in ("en", *LANGUAGES):
            shutil.rmtree(os.path.join(self.home, ".local/state"), ignore_errors=True)
            self.said(language, "list")  # what is said and what is logged differ in nothing but the language
            self.said(language, "create", "0", "--in", "/nowhere")
            logs.append(self.log())
        self.assertEqual(logs[1:], logs[:1] * 2)
        self.assertNotEqual(logs[0], [])

    def test_lists_of_labels(self):
        self.assertEqual(self.said("de", "list").out.splitlines()[:2], ["0  Film", "1  Film"])
        self.assertEqual(self.said("de", "list").out.splitlines()[3], "3  unlabelled")
        self.write_presets(preset(None, ""))
        self.assertEqual(self.said("de", "list").out, "0  (ohne Bezeichnung)\n")

    # Which language it is.

    def language_of(self, program=PROGRAM, **variables):
        env = {key: value for key, value in self.env.items() if key not in ("LC_ALL", "LANG", "LANGUAGE", "LC_MESSAGES")}
        done = subprocess.run([program, "show"], env={**env, **variables}, stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE,
                              check=False)
        self.assertEqual(done.returncode, 2)
        first = done.stderr.decode().splitlines()[0]
        return {"which preset?": "en", "welche Vorlage?": "de", "quel modèle\u202f?": "fr"}[first.removeprefix("orvane: show: ")]

    def test_the_environment_names_it(self):
        for expected, variables in (
                ("en", {}), ("en", {"LANG": LOCALE}), ("en", {"LANGUAGE": "de"}), ("de", {"LANG": LOCALE, "LANGUAGE": "de"}),
                ("fr", {"LC_MESSAGES": LOCALE, "LANGUAGE": "fr"}), ("en", {"LC_ALL": "C", "LANG": LOCALE, "LANGUAGE": "de"}),
                ("en", {"LC_ALL": "POSIX", "LANGUAGE": "de"}), ("en", {"LC_MESSAGES": "C", "LANG": LOCALE, "LANGUAGE": "de"}),
                ("de", {"LC_ALL": LOCALE, "LC_MESSAGES": "C", "LANGUAGE": "de"}), ("de", {"LANG": LOCALE, "LANGUAGE": "de_AT.UTF-8"}),
                ("fr", {"LANG": LOCALE, "LANGUAGE": "it:fr:de"}), ("en", {"LANG": LOCALE, "LANGUAGE": "en_GB:de"}),
                ("en", {"LANG": LOCALE, "LANGUAGE": "nl:en_US:de"}), ("de", {"LANG": LOCALE, "LANGUAGE": ":de"}),
                ("en", {"LANG": "en_US.UTF-8"}), ("en", {"LANG": LOCALE, "LANGUAGE": "it"}),
                ("en", {"LANG": "tlh_QO.UTF-8"}), ("en", {"LANG": LOCALE, "LANGUAGE": ":"})):
            with self.subTest(variables=variables):
                self.assertEqual(self.language_of(**variables), expected)

    def test_a_locale_that_is_not_installed_is_like_the_plain_one(self):
        # There it is the C library that decides whether LANGUAGE counts: it does in Debian 12's (2.36), no more in Debian 13's (2.41).
        library, version = platform.libc_ver()
        wanted = "de" if library != "glibc" or tuple(map(int, version.split("."))) <= (2, 36) else self.language_of(LANG="C.UTF-8", LANGUAGE="de")
        self.assertEqual(self.language_of(LANG="C.UTF-8", LANGUAGE="de"), wanted)
        self.assertEqual(self.language_of(LANG="tlh_QO.UTF-8", LANGUAGE="de"), wanted)

    def install(self):
        """The program and its catalogues somewhere else, as after an installation; returns both."""
        prefix = self._make("prefix")
        program = os.path.join(prefix, "bin/orvane")
        os.mkdir(os.path.dirname(program))
        shutil.copy(PROGRAM, program)
        locale = os.path.join(prefix, "share/locale")
        shutil.copytree(CATALOGUES, locale)
        return program, locale

    def test_the_catalogues_are_found_beside_the_program_wherever_it_is(self):
        program, locale = self.install()
        german = {"LANG": LOCALE, "LANGUAGE": "de"}
        self.assertEqual(self.language_of(program, **german), "de")
        catalogue = os.path.join(locale, "de/LC_MESSAGES/orvane.mo")
        for broken in (b"", b"nonsense" * 100, self.content(catalogue)[:20]):
            self.write_bytes(catalogue, broken)
            self.assertEqual(self.language_of(program, **german), "en")
        os.remove(catalogue)
        self.assertEqual(self.language_of(program, **german), "en")
        self.assertEqual(self.language_of(program, LANG=LOCALE, LANGUAGE="de:fr"), "fr")
        shutil.rmtree(locale)
        self.assertEqual(self.language_of(program, **german), "en")


if __name__ == "__main__":
    unittest.main()
