#!/usr/bin/env python3
"""Compares what `orvane create` does with what the oracle says, on random presets.

Each batch is a home folder of its own with a preferences file of several presets, a content store and scripts; its
presets are run one after the other, so that counters go on. Compared are the exit status, both outputs, every item in
the parent folder (name, kind, contents, mode, extended attributes, time of copied files), the preferences afterwards
and the environment that a script saw. The seed and the batch's number bring a case back.
"""

import argparse
import copy
import json
import os
import plistlib
import random
import shutil
import subprocess
import sys
import tempfile
import time
from xml.parsers.expat import ExpatError

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import generator  # noqa: E402
import rules  # noqa: E402

DOMAIN_FILE = "Library/Preferences/org.orvane.ORVPrefPane.plist"
CASES_PER_BATCH = 10
LIMIT_SECONDS = 30
NOT_STORED = "orvane: warning: the last values of automatic variables were not stored; the log says why\n"
OPENER_LIMIT_SECONDS = 5
MOST_REPORTS = 20


class Unreadable(Exception):
    """The preferences are no property list any more."""


class Batch:
    """A home folder with everything in it, and the runs in it."""

    def __init__(self, program, seed, number, scratch, capabilities):
        self.program = program
        self.seed = seed
        self.number = number
        self.rng = random.Random(f"{seed}/{number}")
        self.privileged, self.attributes = capabilities
        self.draw = generator.Generator(self.rng, self.privileged)
        self.home = os.path.join(scratch, f"batch{number}")
        self.umask = self.rng.choice((0o022, 0o022, 0o002, 0o077, 0o027, 0) if self.privileged else (0o022, 0o002, 0o077))
        self.environment = {"HOME": self.home, "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LANG": "C.UTF-8"}
        self.support = os.path.join(self.home, ".local/share/Orvane")
        if self.rng.random() < 0.2:
            self.environment["XDG_DATA_HOME"] = os.path.join(self.home, "data home")
            self.support = os.path.join(self.home, "data home", "Orvane")
        elif self.rng.random() < 0.1:
            self.environment["XDG_DATA_HOME"] = "relative"
        self.preferences = os.path.join(self.home, DOMAIN_FILE)
        self._known = (b"", None)
        self.to_open = []
        self._make_home()

    def _make_home(self):
        os.makedirs(os.path.dirname(self.preferences))
        os.makedirs(self.support)
        generator.make_content_store(os.path.join(self.support, "File Content"), self.privileged, self.attributes)
        generator.make_scripts(os.path.join(self.support, "Scripts"))
        self.presets = [self.draw.preset() for _ in range(CASES_PER_BATCH)]
        with open(self.preferences, "wb") as stream:
            stream.write(self.draw.preferences(self.presets))
        self._make_opener()

    def _make_opener(self):
        """A stand-in for the desktop's opener, which notes what it is asked to open."""
        tools = os.path.join(self.home, "tools")
        os.mkdir(tools)
        opener = os.path.join(tools, "xdg-open")
        with open(opener, "w", encoding="ascii") as stream:
            stream.write(f"#!/bin/sh\nprintf '%s\\0' \"$@\" >> '{tools}/opened'\n")
        os.chmod(opener, 0o755)
        self.environment["PATH"] = tools + ":" + self.environment["PATH"]
        self.environment["DISPLAY"] = ":77"

    def opened(self):
        """What was opened in the whole batch, waiting until it is as many as expected."""
        deadline = time.monotonic() + OPENER_LIMIT_SECONDS
        while True:
            try:
                with open(os.path.join(self.home, "tools", "opened"), "rb") as stream:
                    paths = stream.read().split(b"\0")[:-1]
            except FileNotFoundError:
                paths = []
            if len(paths) >= len(self.to_open) or time.monotonic() > deadline:
                return sorted(paths)
            time.sleep(0.001)

    def read_preferences(self):
        """The file's bytes and what they hold; read anew only when they changed."""
        with open(self.preferences, "rb") as stream:
            raw = stream.read()
        if raw != self._known[0]:
            try:
                self._known = (raw, plistlib.loads(raw))
            except (ValueError, plistlib.InvalidFileException, ExpatError) as problem:
                raise Unreadable(f"preferences: expected a property list, got {problem}: {raw!r}") from problem
        return self._known

    def remove(self):
        shutil.rmtree(self.home, ignore_errors=True)
        if os.path.exists(self.home):
            subprocess.run(["rm", "-rf", self.home], check=False)


class Case:
    def __init__(self, batch, index):
        self.batch = batch
        self.index = index
        self.rng = batch.rng
        self.file_before, self.before = batch.read_preferences()
        self.preset = self.before["ORVPresets"][index]
        self.automatic = rules.dictionary(self.before.get("ORVAutomaticVars"))
        self.folder = os.path.join(batch.home, f"parent{index}")
        os.mkdir(self.folder)
        os.chmod(self.folder, 0o755)
        self.world = rules.World(batch.umask, batch.support)
        self.differences = []
        self._choose_arguments()

    def _choose_arguments(self):
        try:
            self.names = rules.variable_list(self.preset)
            self.endless = False
        except rules.NeverEnds:
            self.names = []
            self.endless = True
        self.settings = self.batch.draw.settings(self.names)
        self.no_input = self.endless or self.rng.random() < 0.9
        if self.no_input and self.rng.random() < 0.1:
            self.settings.append(("no such name", "x"))
        self.opening = self.rng.random() < 0.2
        self.rehearsing = self.rng.random() < 0.05
        words = ["create", "--json"]
        words += ([] if self.opening else ["--no-open"]) + (["--no-input"] if self.no_input else [])
        self.directory, self.parent = self.batch.home, self.folder
        style = self.rng.random()
        if style < 0.1:
            self.directory = self.folder
        elif style < 0.2:
            words += ["--in", os.path.basename(self.folder)]
        else:
            words += ["--in", self.folder + self.rng.choice(("", "", "", "", "/", "//"))]
        for name, value in self.settings:
            words += ["--set", f"{name}={value}"]
        self.words = words + self._preset_word()

    def _preset_word(self):
        """The preset's index, or now and then its label where no other has the same."""
        labels = [rules.text_value(rules.dictionary(preset).get("label")) for preset in self.before["ORVPresets"]]
        label = labels[self.index]
        if self.rng.random() < 0.9 or not label or labels.count(label) > 1 or label.strip("+-0123456789 ") == "":
            return [str(self.index)]
        return ["--", label]

    # Expectation

    def _assignments(self):
        return [rules.split_assignment(f"{name}={value}", self.names) for name, value in self.settings]

    def _answer(self, rows):
        self.missing = rules.fill_rows(rows, self._assignments())
        return self.no_input or not self.missing

    def _expect(self):
        self.missing = []
        names = self._wanted_names()
        self.batch.draw.bystanders(self.folder, names)
        self.tree = rules.snapshot(self.folder, times=True)
        self.expected = copy.deepcopy(self.tree)
        self.outcome = rules.Outcome()
        if self.endless:
            self.status, self.alerts = 1, None
            return
        self.outcome = rules.create_hierarchy(
            self.preset, self.parent, self.expected, self.automatic, self._answer,
            lambda path: os.path.exists(rules.to_bytes(path)), self.world,
        )  # fmt: skip
        self.alerts = list(self.outcome.alerts)
        self.status = 0 if self.outcome.created else 1
        if self.missing and not self.no_input:
            self.status, self.alerts = 2, None
        if self.outcome.script is not None:
            ending = rules.script_alert(self.outcome.script, script_result(self.outcome.script))
            if ending is not None:
                self.status = 4
                self.alerts.append(ending)

    def _wanted_names(self):
        """Names that the run will check and make, to put something in its way."""
        if self.endless:
            return []
        rows = rules.default_rows(self.preset, self.automatic)
        rules.fill_rows(rows, self._assignments())
        template = rules.text_value(self.preset.get("directoryName")) or ""
        name = rules.replace(template, rows)
        return [name, rules.clean(name), rules.clean(rules.replace(name, rows)), name.split("/", maxsplit=1)[0]]

    # Run and comparison

    def run(self):
        self._expect()
        self._remove_environment_dump()
        try:
            if self.rehearsing:
                self._rehearse()
            self.result = self._start(self.words)
        except subprocess.TimeoutExpired:
            return [f"no end within {LIMIT_SECONDS} seconds"]
        if self.opening and self.outcome.opens:
            self.batch.to_open.append(rules.to_bytes(self.outcome.top_path))
        self._compare_status()
        self._compare_standard_error()
        self._compare_answer()
        self._compare_tree()
        self._compare_preferences()
        self._compare_environment()
        return self.differences

    def _start(self, words):
        return subprocess.run(
            [self.batch.program] + [rules.to_bytes(word) for word in words], env=self.batch.environment, cwd=self.directory,
            stdin=subprocess.DEVNULL, capture_output=True, timeout=LIMIT_SECONDS, umask=self.batch.umask, check=False,
        )  # fmt: skip

    def _rehearse(self):
        """A dry run, which must change nothing."""
        result = self._start(self.words[:1] + ["--dry-run"] + self.words[1:])
        if result.returncode not in (0, 1, 2):
            self.differences.append(f"dry run: expected 0, 1 or 2, got {result.returncode}")
        compare_items(self.tree, rules.snapshot(self.folder, times=True), "dry run, ", self.differences, self.batch.attributes)
        if self.batch.read_preferences()[0] != self.file_before:
            self.differences.append("dry run: expected the preferences untouched, got other ones")

    def differ(self, what, expected, actual):
        if expected != actual:
            self.differences.append(f"{what}: expected {expected!r}, got {actual!r}")

    def _compare_status(self):
        self.differ("exit status", self.status, self.result.returncode)

    def _compare_standard_error(self):
        actual = self.result.stderr.decode("utf-8", "surrogateescape")
        if self.alerts is None:
            if not actual.startswith("orvane: "):
                self.differences.append(f"standard error: expected an explanation, got {actual!r}")
            for name in self.missing if self.status == 2 else ():
                if as_shown(name) not in actual:
                    self.differences.append(f"standard error: expected the missing name {name!r}, got {actual!r}")
            return
        alerts = "".join(f"orvane: {title}: {message}\n" for title, message in self.alerts)
        warnings = self._expected_warnings()
        self.differ("standard error", warnings + alerts if self.outcome.created else alerts + warnings, actual)

    def _expected_warnings(self):
        """Of values that went nowhere, and of counters."""
        unknown, surplus = ([as_shown(name) for name in names] for names in rules.settings_left_over(self.names, self._assignments()))
        known = quoted(as_shown(name) for name in dict.fromkeys(self.names)) or "none"
        texts = [f"this preset has no variable {quoted(unknown)}; it has {known}"] if unknown else []
        texts += [f"more values than places for {quoted(surplus)}: the last are not used"] if surplus else []
        warnings = "".join(f"orvane: warning: {text}\n" for text in texts)
        is_missed = self.outcome.automatic is not None and any(rules.is_automatic(name) for name, _ in self.outcome.rows)
        return warnings + (NOT_STORED if self._counters_are_foreign() and is_missed else "")

    def _compare_answer(self):
        if self.status == 2:
            return
        try:
            answer = json.loads(self.result.stdout)
        except ValueError:
            self.differences.append(f"standard output: expected one JSON object, got {self.result.stdout!r}")
            return
        if self.endless:
            self.differ("answer, created", False, answer.get("created"))
            return
        outcome = self.outcome
        self.differ("answer, keys", ["created", "error", "nodes", "path", "script", "variables"], sorted(answer))
        self.differ("answer, created", outcome.created, answer.get("created"))
        self.differ("answer, variables", [{"name": as_json(k), "value": as_json(v)} for k, v in outcome.rows], answer.get("variables"))
        if outcome.created:
            self.differ("answer, path", as_json(outcome.made_path), answer.get("path"))
            self.differ("answer, nodes", outcome.nodes, answer.get("nodes"))
        error = [{"title": title, "message": as_json(message)} for title, message in self.alerts] or [None]
        self.differ("answer, error", error[0], answer.get("error"))
        script = None
        if outcome.script is not None:
            script = {"path": as_json(outcome.script), "status": self._script_status()}
        self.differ("answer, script", script, answer.get("script"))

    def _script_status(self):
        """Exit status of the script as a program of the shell's kind would give it; None when it cannot run."""
        if not os.access(rules.to_bytes(self.outcome.script), os.X_OK):
            return None
        return generator.SCRIPT_STATUSES.get(os.path.basename(self.outcome.script))

    def _compare_tree(self):
        actual = rules.snapshot(self.folder, times=True)
        compare_items(self.expected, actual, "", self.differences, self.batch.attributes)

    def _counters_are_foreign(self):
        """Something that is no dictionary stands in the place of the counters: it is nobody's to replace."""
        return not isinstance(self.before.get("ORVAutomaticVars", {}), dict)

    def _compare_preferences(self):
        raw, after = self.batch.read_preferences()
        if self.outcome.automatic is None or self._counters_are_foreign():
            if raw != self.file_before:
                self.differences.append("preferences: expected the file untouched, got another one")
            return
        self.differ("preferences' format", self.file_before[:6], raw[:6])
        expected = dict(self.before, ORVAutomaticVars=self.outcome.automatic)
        for key in sorted(set(expected) | set(after)):
            if not same(expected.get(key), after.get(key)):
                shown_value = (expected.get(key), after.get(key))
                self.differences.append("preferences, {}: expected {!r}, got {!r}".format(key, *shown_value))

    def _dump_path(self):
        return None if self.outcome.script is None else self.outcome.script + ".env"

    def _remove_environment_dump(self):
        path = self._dump_path()
        if path is not None and os.path.exists(rules.to_bytes(path)):
            os.unlink(rules.to_bytes(path))

    def _compare_environment(self):
        path = self._dump_path()
        if path is None or script_result(self.outcome.script) is None:
            return
        if not os.access(rules.to_bytes(self.outcome.script), os.X_OK):
            return
        try:
            with open(rules.to_bytes(path), "rb") as stream:
                raw = stream.read()
        except FileNotFoundError:
            self.differences.append("script: expected it to run, got no trace of it")
            return
        expected = [rules.to_bytes(f"{name}={value}") for name, value in self.outcome.environment.items()]
        self.differ("script's environment", sorted(expected), sorted(raw.split(b"\0")[:-1]))


def script_result(path):
    """How a script that is there and executable ends: True for success, False for failure, None when it cannot start."""
    status = generator.SCRIPT_STATUSES.get(os.path.basename(path))
    return None if status is None else status == 0


def as_shown(text):
    """Text as messages about words show it: control characters and what is no UTF-8 as their bytes."""
    shown = ""
    for character in text:
        code = ord(character)
        is_hidden = code < 0x20 or 0x7F <= code < 0xA0 or 0xD800 <= code < 0xE000
        shown += "".join(f"\\x{byte:02x}" for byte in rules.to_bytes(character)) if is_hidden else character
    return shown


def quoted(names):
    return ", ".join(f"'{name}'" for name in names)


def as_json(text):
    """Text as JSON can carry it: what is no UTF-8 becomes the replacement character."""
    return "".join("\ufffd" if 0xDC80 <= ord(character) <= 0xDCFF else character for character in text)


def same(one, other):
    """Equality that tells 1, 1.0 and True apart."""
    if type(one) is not type(other):
        return False
    if isinstance(one, dict):
        return one.keys() == other.keys() and all(same(one[key], other[key]) for key in one)
    if isinstance(one, list):
        return len(one) == len(other) and all(same(a, b) for a, b in zip(one, other))
    return one == other


def compare_items(expected, actual, path, differences, attributes):
    """Adds a text for everything in which two items, or anything below them, differ."""
    where = path or "the parent folder"
    if (expected.kind, expected.mode) != (actual.kind, actual.mode):
        differences.append(f"{where}: expected {expected.kind} {expected.mode:04o}, got {actual.kind} {actual.mode:04o}")
    if expected.data != actual.data:
        differences.append(f"{where}: expected contents {expected.data[:40]!r}, got {actual.data[:40]!r}")
    if attributes and expected.attributes != actual.attributes:
        differences.append(f"{where}: expected attributes {expected.attributes!r}, got {actual.attributes!r}")
    if expected.modified is not None and expected.modified != actual.modified:
        differences.append(f"{where}: expected time {expected.modified}, got {actual.modified}")
    for name in sorted(set(expected.children) | set(actual.children)):
        below = f"{path}/{name.decode('utf-8', 'backslashreplace')}"
        if name not in actual.children:
            differences.append(f"{below}: expected {expected.children[name].kind}, got nothing")
        elif name not in expected.children:
            differences.append(f"{below}: expected nothing, got {actual.children[name].kind}")
        else:
            compare_items(expected.children[name], actual.children[name], below, differences, attributes)


def attributes_kept(folder):
    """Whether the file system keeps extended attributes of users."""
    path = os.path.join(folder, "probe")
    with open(path, "wb"):
        pass
    try:
        os.setxattr(path, "user.probe", b"x")
        return True
    except OSError:
        return False
    finally:
        os.unlink(path)


def report(batch, case, differences):
    print(f"--- seed {batch.seed}, batch {batch.number}, preset {case.index}: {len(differences)} difference(s)")
    for text in differences[:12]:
        print("  " + text.encode("utf-8", "backslashreplace").decode())
    print("  words:", ascii(case.words))
    print("  umask:", oct(batch.umask), "folder:", case.directory)
    print("  counters:", ascii(case.automatic))
    print("  preset:", ascii(case.preset)[:6000])
    print("  standard error:", ascii(getattr(case, "result", None) and case.result.stderr))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--orvane", required=True, help="the program")
    parser.add_argument("--cases", type=int, default=1500)
    parser.add_argument("--seed", default="1")
    parser.add_argument("--first-batch", type=int, default=0)
    parser.add_argument("--scratch", help="folder to work in; else shared memory or the usual one for temporary files")
    parser.add_argument("--keep", action="store_true", help="leave the folders of differing batches")
    options = parser.parse_args()
    sys.setrecursionlimit(100_000)
    base = options.scratch or ("/dev/shm" if os.access("/dev/shm", os.W_OK) else None)
    scratch = tempfile.mkdtemp(prefix="orvane-oracle-", dir=base)
    capabilities = (os.geteuid() == 0, attributes_kept(scratch))
    if not capabilities[1]:
        print("The scratch folder keeps no extended attributes: labels are not compared.")
    try:
        return compare_batches(options, scratch, capabilities)
    finally:
        if not options.keep:
            shutil.rmtree(scratch, ignore_errors=True)


def compare_batches(options, scratch, capabilities):
    """Runs all batches and says what came out. Returns the exit status."""
    began = time.monotonic()
    cases, different, tally = 0, 0, {}
    batches = (options.cases + CASES_PER_BATCH - 1) // CASES_PER_BATCH
    for number in range(options.first_batch, options.first_batch + batches):
        batch = Batch(os.path.abspath(options.orvane), options.seed, number, scratch, capabilities)
        found = 0
        for case, differences in batch_results(batch):
            cases += 1
            kind = classify(case)
            tally[kind] = tally.get(kind, 0) + 1
            if differences:
                found += 1
                if different + found <= MOST_REPORTS:
                    report(batch, case, differences)
        if batch.opened() != sorted(batch.to_open):
            found += 1
            print(f"--- seed {batch.seed}, batch {number}: opened {batch.opened()!r}, expected {sorted(batch.to_open)!r}")
        different += found
        if not (found and options.keep):
            batch.remove()
    print(f"{cases} cases, {different} different, {time.monotonic() - began:.1f} s, seed {options.seed}")
    print("expected endings: " + ", ".join(f"{name} {count}" for name, count in sorted(tally.items())))
    return 1 if different or not cases else 0


def batch_results(batch):
    """Each case with its differences; the rest of a batch is left out once its preferences are spoilt."""
    for index in range(CASES_PER_BATCH):
        case = Case(batch, index)
        try:
            yield case, case.run()
        except Unreadable as problem:
            yield case, [str(problem)]
            return


def classify(case):
    """The kind of ending that the oracle expected, to show what a run covered."""
    if case.endless:
        return "endless"
    if case.status == 2:
        return "unanswered"
    titles = [title for title, _ in case.alerts]
    return titles[-1] if titles else "made"


if __name__ == "__main__":
    sys.exit(main())
