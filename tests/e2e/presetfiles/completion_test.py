#!/usr/bin/env python3
"""What the completions offer, typed into real shells on a terminal of their own.

    completion_test.py PROGRAM SHELL COMPLETION

In place of `orvane` stands a script that notes the words it is started with and hands on what completions ask. So each case
is typed, completed and run, and what counts is which words the shell then gives to the command.
"""

import os
import plistlib
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time

DEADLINE = 30
PROMPT = "READY> "
MORE = "MORE> "  # what was completed is no whole command
PRESETS = [
    ("Film production", "{Client} {Job no} {A=B} {C} {C=D} {Cast} {Client}"),
    ("Film $(touch ran)", ""),
    ("{Client} x", ""),
    (None, "{Client} y"),
    ("tab\there", ""),
    ("Same", ""),
    ("Same", ""),
    ("a:b", ""),
    ("it's \"q\" \\ ! `x` [1]*?", "{it's \"q\" $x]}"),
    ("1", ""),
    ("2026", ""),
    ("-dash", "{Dash}"),
    ("line\nend", ""),
    ("x/y", ""),
    ("lost\ufffdone", ""),
    ("Büro", ""),
    ("ctl\x01z", ""),
    ("01", ""),
    ("Stop!now \\\\ 'n' 100%d $x", ""),
    ("19", ""),
]
BY_INDEX = {3, 5, 6, 9, 11, 14, 19}  # what no label names, or names alone
LABELS = [label for index, (label, _) in enumerate(PRESETS) if index not in BY_INDEX]
ALL = sorted(LABELS + [str(index) for index in BY_INDEX])

ORVANE = """#!/bin/sh
case "$*" in
list|"list --json"|"show --json -- "*|"show "*" --json") printf x >>"$NOTES/starts"; exec {program} "$@" ;;
esac
printf '%s\\0' "$@" end >"$NOTES/new"
mv "$NOTES/new" "$NOTES/words"
"""
SHELLS = {
    "bash": (["bash", "--noprofile", "--rcfile", "{rc}", "-i"],
             "PS1='READY> ' PS2='MORE> '\nbind 'set enable-bracketed-paste off'\nbind 'set bell-style none'\n. '{completion}'\n"),
    "zsh": (["zsh", "-d", "-i"],
            "PS1='READY> ' PS2='MORE> '\nunsetopt promptsp\nunset zle_bracketed_paste\n"
            "unsetopt beep\nfpath=('{folder}' $fpath)\nautoload -Uz compinit && compinit -D -u\n"
            "zle -C all-matches complete-word _generic\nbindkey '^[*' all-matches\n"
            "zstyle ':completion:all-matches:*' insert yes\n"
            "zstyle ':completion:all-matches::::' completer _all_matches _complete\nLISTMAX=1000\n"),
}


class Failure(Exception):
    pass


class Home:
    def __init__(self, program, presets=PRESETS):
        self.folder = tempfile.mkdtemp()
        self.bin = os.path.join(self.folder, "bin")
        self.notes = os.path.join(self.folder, "notes")
        self.home = os.path.join(self.folder, "home")
        for path in (self.bin, self.notes, os.path.join(self.home, "Library/Preferences"), os.path.join(self.home, "a folder")):
            os.makedirs(path)
        open(os.path.join(self.home, "a file"), "w", encoding="ascii").close()
        script = os.path.join(self.bin, "orvane")
        with open(script, "w", encoding="utf-8") as file:
            file.write(ORVANE.replace("{program}", program))
        os.chmod(script, 0o755)
        if presets is not None:
            self.store(presets)

    @property
    def preferences(self):
        return os.path.join(self.home, "Library/Preferences/org.orvane.ORVPrefPane.plist")

    def store(self, presets):
        records = [{"directoryName": name} | ({} if label is None else {"label": label}) for label, name in presets]
        with open(self.preferences, "wb") as file:
            plistlib.dump({"ORVPresets": records}, file, fmt=plistlib.FMT_BINARY)

    def environment(self):
        return {"HOME": self.home, "ZDOTDIR": self.home, "XDG_CONFIG_HOME": self.home + "/.config", "NOTES": self.notes,
                "XDG_DATA_HOME": self.home + "/.local", "PATH": self.bin + ":" + os.environ["PATH"], "TERM": "dumb", "INPUTRC": "/dev/null",
                "LC_ALL": "C.UTF-8", "LANG": "C.UTF-8"}

    def starts(self):
        path = os.path.join(self.notes, "starts")
        count = os.path.getsize(path) if os.path.exists(path) else 0
        if count:
            os.remove(path)
        return count

    def words(self):
        path = os.path.join(self.notes, "words")
        if not os.path.exists(path):
            return None
        with open(path, encoding="utf-8") as file:
            words = file.read().split("\0")
        os.remove(path)
        return words[:-2]

    def close(self):
        shutil.rmtree(self.folder)


class Terminal:
    """An interactive shell with the completion, at its prompt."""

    def __init__(self, shell, completion, home, settings=""):
        self.home = home
        command, rc = SHELLS[shell]
        path = os.path.join(home.home, ".zshrc" if shell == "zsh" else ".rc")
        with open(path, "w", encoding="utf-8") as file:
            file.write(rc.replace("{completion}", completion).replace("{folder}", os.path.dirname(completion)) + settings)
        self.command = [word.replace("{rc}", path) for word in command]
        self._start()

    def _start(self):
        self.process, self.descriptor = pty.fork()
        if self.process == 0:
            os.chdir(self.home.home)
            os.execvpe(self.command[0], self.command, os.environ | self.home.environment())
        self._read_until(lambda text: text.endswith(PROMPT))

    def _read_until(self, isEnough):
        data = b""
        end = time.monotonic() + DEADLINE
        while True:
            text = re.sub(r"\x1b\[[?0-9;]*[A-Za-z]|\x1b[=>]|[\r\a]", "", data.decode(errors="replace"))
            if isEnough(text):
                return text
            if not select.select([self.descriptor], [], [], max(0, end - time.monotonic()))[0]:
                raise Failure(f"nothing more came after {text!r}")
            data += os.read(self.descriptor, 65536)

    def run(self, typed):
        """The words that the command gets, and what was on the terminal."""
        os.write(self.descriptor, typed.encode() + b"\r")
        # The prompt may be written again below a list; the command has run when its words are there.
        words = os.path.join(self.home.notes, "words")
        text = self._read_until(lambda text: text.endswith(MORE) or (text.endswith(PROMPT) and os.path.exists(words)))
        if text.endswith(MORE):
            self.close()
            self._start()
            return ["(no whole command)"], text
        return self.home.words(), text

    def close(self):
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)
        os.close(self.descriptor)


class Checks:
    def __init__(self):
        self.failed = 0

    def equal(self, what, found, expected):
        if found != expected:
            self.failed += 1
            print(f"{what}:\n  expected {expected!r}\n  found    {found!r}")

    def true(self, what, isTrue):
        if not isTrue:
            self.failed += 1
            print(what)


TAB, EVERY = "\t", "\x1b*"
# What is typed, and the words that the command gets when it is run then.
CASES = {
    # Commands and options
    "orvane impo\t": ["import"],
    "orvane c\x1b*": ["check", "create"],
    "orvane import --w\t": ["import", "--with-content"],
    "orvane create -- --\t": ["create", "--", "--"],
    "orvane nothing x\t": ["nothing", "x"],
    "orvane notify x\t": ["notify", "x"],
    "orvane hel\t": ["help"],
    "orvane help exp\t": ["help", "export"],
    "orvane help he\t": ["help", "he"],
    "orvane help export a\t": ["help", "export", "a"],
    # Labels
    "orvane show film\t": ["show", "film"],
    "orvane show Film\\ p\t": ["show", "Film production"],
    "orvane show Film\\ \\$\t": ["show", "Film $(touch ran)"],
    "orvane show production\t": ["show", "production"],
    "orvane create {\t": ["create", "{Client} x"],
    "orvane create \\{\t": ["create", "{Client} x"],
    "orvane create \"{\t": ["create", "{Client} x"],
    "orvane create tab\t": ["create", "tab\there"],
    "orvane create $'tab\\the\t": ["create", "tab\there"],
    "orvane create lin\t": ["create", "line\nend"],
    "orvane create \"lin\t": ["create", "line\nend"],
    "orvane create 'tab\t": ["create", "tab\there"],
    "orvane create ctl\t": ["create", "ctl\x01z"],
    "orvane create B\t": ["create", "Büro"],
    "orvane create Bü\t": ["create", "Büro"],
    "orvane create a\t": ["create", "a:b"],
    "orvane create a:\t": ["create", "a:b"],
    "orvane create a\\:\t": ["create", "a:b"],
    "orvane create \"a:\t": ["create", "a:b"],
    "orvane create 'Film p\t": ["create", "Film production"],
    "orvane create \"Film p\t": ["create", "Film production"],
    "orvane create \"Film \"p\t": ["create", "Film production"],
    "orvane create it\t": ["create", PRESETS[8][0]],
    "orvane create \"it\t": ["create", PRESETS[8][0]],
    "orvane create 'it\t": ["create", PRESETS[8][0]],
    "orvane create St\t": ["create", PRESETS[18][0]],
    "orvane create \"St\t": ["create", PRESETS[18][0]],
    "orvane create 'St\t": ["create", PRESETS[18][0]],
    "orvane create $'St\t": ["create", PRESETS[18][0]],
    "orvane create $'li\t": ["create", "line\nend"],
    "orvane create 202\t": ["create", "2026"],
    "orvane create 0\x1b*": ["create", "01"],
    "orvane create no\t": ["create", "no"],
    # Options and their values are no operands
    "orvane create --in x --no-input Film\\ p\t": ["create", "--in", "x", "--no-input", "Film production"],
    "orvane create --se x Film\\ p\t": ["create", "--se", "x", "Film production"],
    "orvane create --in=x Film\\ p\t": ["create", "--in=x", "Film production"],
    "orvane create 2>/dev/null Film\\ p\t": ["create", "Film production"],
    "orvane create a:b Film\\ p\t": ["create", "a:b", "Film p"],
    # Files
    "orvane create a:b --in a\t": ["create", "a:b", "--in", "a folder/"],
    "orvane create a:b --in=a\t": ["create", "a:b", "--in=a folder/"],
    "orvane import a\t": ["import", "a folder/"],
    "orvane add a\\ fi\t": ["add", "a file"],
    "orvane export a:b a\\ fi\t": ["export", "a:b", "a file"],
    "orvane check a\\ fi\t": ["check", "a file"],
    "orvane check Film\\ p\t": ["check", "Film production"],
    "orvane check 13\t": ["check", "13"],
    # Variables
    "orvane create Film\\ production --set Cl\tx": ["create", "Film production", "--set", "Client=x"],
    "orvane create Film\\ production --set=Cl\tx": ["create", "Film production", "--set=Client=x"],
    "orvane create 0 --set \"Cl\tx\"": ["create", "0", "--set", "Client=x"],
    "orvane create 0 --set 'Job\tx'": ["create", "0", "--set", "Job no=x"],
    "orvane create 0 --set=\"Job\tx\"": ["create", "0", "--set=Job no=x"],
    "orvane create --no-input 0 --set Job\\ \tx": ["create", "--no-input", "0", "--set", "Job no=x"],
    "orvane create 0 --set no\tx": ["create", "0", "--set", "nox"],
    "orvane create 0 --set lien\tx": ["create", "0", "--set", "lienx"],
    "orvane create 0 --set Client=\tx": ["create", "0", "--set", "Client=x"],
    "orvane create 0 --set A\tx": ["create", "0", "--set", "A=B=x"],
    "orvane create 0 --set C=D\tx": ["create", "0", "--set", "C=D=x"],
    "orvane create 11 --set Da\tx": ["create", "11", "--set", "Dash=x"],
    "orvane create 8 --set it\tx": ["create", "8", "--set", "it's \"q\" $x]=x"],
}
# Zsh takes an open brace for the beginning of an expansion, completes nothing within an open $', takes away quotes that begin
# within a word, and does not know of shortened options.
BASH_ONLY = {"orvane create --se x Film\\ p\t", "orvane create $'St\t", "orvane create $'li\t",
             "orvane create {\t", "orvane create $'tab\\the\t", "orvane create 0 --set=\"Job\tx\""}
ZSH_ONLY = {"orvane create 0 --set=\"Job\tx": ["create", "0", "--set=Job no=x"]}


def casesFor(shell):
    if shell == "bash":
        return CASES
    # It takes the slash away again when a blank or the line's end follows.
    cases = {typed: [word.rstrip("/") for word in words] for typed, words in CASES.items() if typed not in BASH_ONLY}
    return cases | ZSH_ONLY


def checkCases(terminal, home, checks, cases):
    for typed, expected in cases.items():
        home.starts()
        words, text = terminal.run(typed)
        checks.equal(repr(typed), words, expected)
        checks.true(f"{typed!r}: orvane was started more than once", home.starts() <= 1)
        checks.true(f"{typed!r}: something was reported: {text!r}", not re.search("error|awk|not found|cannot|preset '", text))


def selects(program, home, word):
    """The index of the preset that a word selects; -1 when there is none."""
    shown = subprocess.run([program, "show", "--json", word], env=os.environ | home.environment(), capture_output=True, check=False)
    found = re.match(rb'\{"index":(\d+)', shown.stdout)
    return int(found[1]) if found else -1


def checkTerminal(shell, program, completion, home, checks):
    terminal = Terminal(shell, completion, home)
    checkCases(terminal, home, checks, casesFor(shell))
    words, _ = terminal.run("orvane show " + EVERY)
    checks.equal("all presets", sorted(words[1:]), ALL)
    checks.equal("each is selected once", sorted(selects(program, home, word) for word in words[1:]), list(range(len(PRESETS))))
    words, _ = terminal.run("orvane show Fi" + EVERY)
    checks.equal("labels from their beginning", sorted(words[1:]), ["Film $(touch ran)", "Film production"])
    words, _ = terminal.run("orvane create 0 --set=C" + TAB + "l" + TAB + "x")
    checks.equal("what several names have in common", words, ["create", "0", "--set=Client=x"])
    words, _ = terminal.run("orvane create 1" + EVERY)
    checks.equal("indexes", sorted(words[1:]), ["11", "14", "19", "9"])
    words, _ = terminal.run("orvane check " + EVERY)
    checks.true("a label with a slash may be a file", "x/y" not in words and "13" in words and "Büro" in words)
    words, _ = terminal.run("orvane create --" + EVERY)
    checks.equal("options", sorted(word.rstrip("=") for word in words[1:]),
                 ["--dry-run", "--help", "--in", "--json", "--no-input", "--no-open", "--set"])
    words, _ = terminal.run("orvane create 0 --set " + EVERY)
    checks.equal("variables", sorted(words[3:]), ["A=B=", "C=", "C=D=", "Cast=", "Client=", "Job no="])
    checks.true("a label was run as a command", not os.path.exists(os.path.join(home.home, "ran")))
    # Of labels that several presets have, the indexes are shown.
    words, text = terminal.run("orvane show " + TAB + TAB + "\x15orvane show x")
    for index in "56":
        checks.true(f"{index} is shown with its label: {text!r}", re.search(rf"\b{index}  \(?Same\)?\s", text))
    checks.true(f"no stand-in is shown: {text!r}", "(no label)" not in text and "x09" not in text)
    terminal.close()


def checkIndexesForLabels(shell, completion, home, checks):
    terminal = Terminal(shell, completion, home)
    words, _ = terminal.run("orvane show -- -da\t")
    checks.equal("a label that is no operand", words, ["show", "--", "11"])
    words, _ = terminal.run("orvane show lost\t")
    checks.equal("a label that JSON cannot hold", words, ["show", "14"])
    words, _ = terminal.run("orvane show Sa\t")
    checks.true(f"an ambiguous label becomes no other index: {words}", words in (["show", "Sa"], ["show", "5"]))
    terminal.close()
    home.store([("Other", "")] * 10 + [("Same", "")] * 3)
    terminal = Terminal(shell, completion, home)
    words, _ = terminal.run("orvane show Sa\t")
    checks.true(f"what indexes have in common is not put in place of a label: {words}", words in (["show", "Sa"], ["show", "10"]))
    terminal.close()


def checkSettings(completion, home, checks):
    """Bash as some people set it up."""
    terminal = Terminal("bash", completion, home, "set -eu\nIFS=,\n")
    checkCases(terminal, home, checks, CASES)
    terminal.close()
    terminal = Terminal("bash", completion, home, "COMP_WORDBREAKS=${COMP_WORDBREAKS//[:=]}\n")
    checkCases(terminal, home, checks, {typed: words for typed, words in CASES.items() if "--in=" not in typed})
    terminal.close()
    terminal = Terminal("bash", completion, home, "set -o posix\nLC_ALL=C\n")
    checkCases(terminal, home, checks, {typed: words for typed, words in CASES.items() if typed.isascii()})
    terminal.close()


def checkWithoutPresets(shell, program, completion, checks):
    home = Home(program, None)
    terminal = Terminal(shell, completion, home)
    nothing = {f"orvane {words}\t": words.split() for words in ("show x", "create x", "create 0 --set x", "create --in zz")}
    checkCases(terminal, home, checks, nothing)
    with open(home.preferences, "w", encoding="ascii") as file:
        file.write("nonsense")
    checkCases(terminal, home, checks, nothing)
    terminal.close()
    home.close()


def checkFish(program, completion, home, checks):
    def offered(line):
        run = subprocess.run(["fish", "--no-config", "-c", "source $argv[1]; complete -C $argv[2]", completion, line], cwd=home.home,
                             env=os.environ | home.environment(), capture_output=True, check=True, timeout=DEADLINE)
        checks.equal(f"messages for {line!r}", run.stderr, b"")
        return dict(candidate.partition("\t")[::2] for candidate in run.stdout.decode().splitlines())

    controls = {index for index, (label, _) in enumerate(PRESETS) if label and not label.isprintable() and "\ufffd" not in label}
    labels = [label for index, (label, _) in enumerate(PRESETS) if index not in BY_INDEX | controls]
    found = offered("orvane show ")
    checks.equal("all presets", sorted(found), sorted(labels + [str(index) for index in BY_INDEX | controls]))
    checks.equal("each is selected once", sorted(selects(program, home, word) for word in found), list(range(len(PRESETS))))
    checks.equal("labels beside indexes", [found.get(index) for index in ("4", "5", "6", "9", "11")],
                 ["tab\\there", "Same", "Same", "1", "-dash"])
    home.starts()
    for line, candidates in {
        "orvane create {": ["{Client} x"],
        "orvane create a:": ["a:b"],
        "orvane create \"Film p": ["Film production"],
        "orvane create --in x Film\\ p": ["Film production"],
        "orvane create Same Film\\ p": [],
        "orvane create --se x Film\\ p": ["Film production"],
        "orvane create --set Client=x Film\\ p": ["Film production"],
        "orvane create Film\\ production --set ": ["A=B=", "C=", "C=D=", "Cast=", "Client=", "Job no="],
        "orvane create Film\\ production --set=Cl": ["--set=Client="],
        "orvane create 0 --set \"Cl": ["Client="],
        "orvane create 0 --set Job": ["Job no="],
        "orvane create 0 --se x --set Job": ["Job no="],
        "orvane create --set ": [],
        "orvane create 0 --in=a": ["--in=a folder/"],
        "orvane import a": ["a folder/"],
        "orvane add a": ["a file", "a folder/"],
        "orvane export a:b a": ["a file", "a folder/"],
        "orvane export a:": ["a:b"],
        "orvane check 13": ["13"],
        "orvane impo": ["import"],
    }.items():
        checks.equal(repr(line), sorted(offered(line)), candidates)
        checks.true(f"{line!r}: orvane was started more than once", home.starts() <= 1)
    empty = Home(program, None)
    home = empty
    for line in ("orvane show x", "orvane create 0 --set x"):
        checks.equal(repr(line), offered(line), {})
    empty.close()


def main():
    program, shell, completion = sys.argv[1:]
    checks = Checks()
    home = Home(program)
    try:
        if shell == "fish":
            checkFish(program, completion, home, checks)
        else:
            checkTerminal(shell, program, completion, home, checks)
            if shell == "bash":
                checkSettings(completion, home, checks)
            checkIndexesForLabels(shell, completion, home, checks)
            checkWithoutPresets(shell, program, completion, checks)
    finally:
        home.close()
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
