"""The program file itself: what it loads, and how many system calls a creation costs."""

import os
import plistlib
import re
import shutil
import signal
import subprocess
import time
import unittest

from harness import DEADLINE, PROGRAM, OrvaneTest, RunningScript, file, folder, preset

CALLS_AT_START = 150
CALLS_PER_NODE = 2.6


class Program(OrvaneTest):
    def test_at_most_the_c_library_is_loaded(self):
        listed = subprocess.run(["ldd", PROGRAM], stdout=subprocess.PIPE, check=True, timeout=DEADLINE).stdout.decode()
        names = {line.split()[0].rsplit("/", 1)[-1].split(".")[0] for line in listed.splitlines() if line.strip() != "statically linked"}
        self.assertLessEqual(names, {"linux-vdso", "libc", "libm", "ld-linux-x86-64", "ld-linux-aarch64"}, listed)

    def calls(self, *words, **env):
        """Number of system calls of a whole run, from execve to exit."""
        counted = os.path.join(self.root, "calls")
        done = subprocess.run(["strace", "-f", "-qq", "-o", counted, "-e", "trace=all", "-e", "signal=none", PROGRAM, *words],
                              env={**self.env, **env}, cwd=self.target, stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        with open(counted, encoding="utf-8", errors="replace") as lines:
            return [match[1] for match in (re.match(r"\d+ +(\w+)\(", line) for line in lines) if match]

    def let_the_preferences_settle(self):
        """A file that has just changed is read more than once: another change might leave no trace."""
        end = time.monotonic() + DEADLINE
        while time.time() - os.stat(self.preferences).st_ctime < 0.2 and time.monotonic() < end:
            time.sleep(0.02)

    def thousand_nodes(self):
        """1,000 nodes: 30 % folders, half of the files with 4 KB, 20 % names with variables, 10 % modes, 10 % labels."""
        groups = []
        for group in range(50):
            children = []
            for number in range(19):
                more = {"permissions": "640"} if number % 10 == 0 else {"color": "red"} if number % 10 == 5 else {}
                name = f"{{Project}} {number}" if number % 5 == 0 else f"item {number}"
                if number % 4 == 0:
                    children.append(folder(name, **more))
                else:
                    has_content = number % 2 == 1 and number < 14
                    children.append(file(name, **more, **({"contentFilename": f"c{number % 3}"} if has_content else {})))
            groups.append(folder(f"group {group}", *children))
        for number in range(3):
            self.write_content(f"c{number}", bytes(4096))
        return preset("P", "{Project} {AutoNo}", *groups)

    def test_a_large_creation_costs_few_system_calls(self):
        self.write_presets(self.thousand_nodes())
        calls = self.calls("create", "0", "--set", "Project=Acme", "--no-input")
        nodes = sum(len(folders) + len(files) for _, folders, files in os.walk(self.target))
        self.assertEqual(nodes, 1001)
        self.assertLessEqual(len(calls), CALLS_AT_START + CALLS_PER_NODE * nodes)
        # The counters are put down safely, once; no node is synchronised or renamed.
        self.assertLessEqual(sum(calls.count(name) for name in ("fsync", "fdatasync", "syncfs", "sync")), 2)
        self.assertLessEqual(sum(calls.count(name) for name in ("rename", "renameat", "renameat2")), 1)

    def test_starting_costs_few_system_calls_and_no_thread(self):
        self.write_presets(preset("P", "top", *[file(str(number)) for number in range(12)]))
        calls = self.calls("create", "0")
        self.assertLessEqual(len(calls), CALLS_AT_START)
        for thread in ("clone", "clone3", "fork", "vfork"):
            self.assertNotIn(thread, calls)
        self.assertLessEqual(len(self.calls("--version")), 60)

    def test_languages_cost_nothing_before_there_is_something_to_say(self):
        self.write_presets(preset("P", "{Name}", *[file(str(number)) for number in range(12)]))
        self.calls("create", "0", "--no-input", "--set", "Name=first")  # which makes room for counters
        self.let_the_preferences_settle()
        languages = ({}, {"LC_ALL": "C"}, {"LC_ALL": "", "LANG": "en_US.UTF-8"}, {"LANGUAGE": "en:de"}, {"LANGUAGE": "de"}, {"LANGUAGE": "fr"})
        creations = [self.calls("create", "0", "--no-input", "--set", f"Name={number}", **each) for number, each in enumerate(languages)]
        # How often the heap grows hangs on the environment's length.
        self.assertEqual(len({tuple(name for name in calls if name != "brk") for calls in creations}), 1)
        helps = [self.calls("list", "--help", **each) for each in languages]
        self.assertEqual(helps[:4], helps[:1] * 4)  # the environment alone tells that it is English
        self.assertLessEqual(len(helps[4]), len(helps[0]) + 40)


class Slowly(OrvaneTest):
    """Creations that last, because a tracer holds one of their system calls up."""

    HALF_A_SECOND_AND_MORE = "900000"  # microseconds

    def setUp(self):
        super().setUp()
        self.write_presets(preset("P", "top", *[folder(f"f{number}", file("x")) for number in range(4)]))

    def create_slowly(self, call="mkdirat", nth=3, moment="enter", words=()):
        delay = f"inject={call}:delay_{moment}={self.HALF_A_SECOND_AND_MORE}:when={nth}"
        return self.on_terminal("create", "0", *words, slowly=("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=" + call, "-e", delay))

    def test_a_long_creation_shows_how_far_it_is_and_then_nothing(self):
        terminal = self.create_slowly()
        terminal.read_until(" 33 %  3 of 9")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (0, self.in_target("top") + "\n"))
        self.assertTrue(result.err.endswith("\r\033[K"), repr(result.err))

    def test_how_far_it_is_in_the_users_language(self):
        self.env["LANGUAGE"] = "de"
        terminal = self.create_slowly()
        terminal.read_until(" 33 %  3 von 9")
        self.assertEqual(terminal.finish().status, 0)

    def test_a_short_one_shows_nothing(self):
        result = self.on_terminal("create", "0").finish()
        self.assertEqual((result.status, result.err), (0, ""))

    def test_control_c_in_the_middle_leaves_nothing(self):
        terminal = self.create_slowly()
        self.wait_for(lambda: os.path.isdir(self.in_target("top", "f0")))
        terminal.type("\x03")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (3, ""))
        self.assertIn("orvane: interrupted, and what was made is removed again", result.err)
        self.assertNothingMade()

    def test_control_c_leaves_nothing_of_a_cleaned_name_either(self):
        self.write_presets(preset("P", "a:b", *[folder(f"f{number}", file("x")) for number in range(4)]))
        terminal = self.create_slowly()
        self.wait_for(lambda: os.path.isdir(self.in_target("a_b", "f0")))
        terminal.type("\x03")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (3, ""))
        self.assertIn("orvane: interrupted, and what was made is removed again", result.err)
        self.assertNothingMade()

    def test_control_c_at_the_last_item_leaves_nothing_and_runs_no_script(self):
        self.write_script("s.sh", f"#!/bin/sh\ntouch {self.root}/ran\n")
        self.write_presets(preset("P", "top", folder("f0"), scriptFile="s.sh"))
        terminal = self.create_slowly(nth=2, words=("--json",))
        self.wait_for(lambda: os.path.isdir(self.in_target("top")))
        terminal.type("\x03")
        result = terminal.finish()
        self.assertEqual((result.status, result.json["created"], result.json["path"]), (3, False, None))
        self.assertNothingMade()
        self.assertFalse(os.path.exists(os.path.join(self.root, "ran")))

    def test_control_c_says_what_is_left(self):
        terminal = self.create_slowly(nth=4)
        self.wait_for(lambda: os.path.isdir(self.in_target("top", "f1")))
        with open(self.in_target("top", "foreign"), "w", encoding="utf-8"):
            pass
        terminal.type("\x03")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (3, ""))
        self.assertIn(f"orvane: interrupted; '{self.in_target('top')}' is still there", result.err)
        self.assertNotIn("removed again", result.err)
        self.assertEqual(self.listing(), ["top/", "top/foreign"])

    def test_an_error_is_told_even_with_control_c(self):
        self.write_presets(preset("P", "{AutoNo}"))
        os.mkdir(self.in_target("0"))
        terminal = self.create_slowly("rename,renameat,renameat2", 1, "exit", words=("--no-input", "--json"))
        self.wait_for(lambda: self.counters() == {"AutoNo": "0"})
        terminal.type("\x03")
        result = terminal.finish()
        self.assertIn("Directory already exists", result.err)
        self.assertNotIn("interrupted", result.err)
        self.assertEqual(result.json["error"]["title"], "Directory already exists")
        self.assertEqual(os.listdir(self.target), ["0"])

    def test_control_c_between_question_and_waiting_is_not_lost(self):
        self.write_presets(preset("P", "{A}"))
        terminal = self.create_slowly("ppoll", 1)
        terminal.read_until("A: ")
        terminal.type("\x03")
        self.assertEqual(terminal.finish().status, 3)


class StoppedUnderTrace(OrvaneTest):
    """Signals while a script runs, and what the program does then, seen by a tracer."""

    HALF_A_SECOND_AND_MORE = "900000"  # microseconds

    def words_of_tracer(self, held_up=None):
        self.trace = os.path.join(self.root, "trace")
        delay = ("-e", f"inject={held_up}:delay_exit={self.HALF_A_SECOND_AND_MORE}:when=1") if held_up else ()
        return ("strace", "-f", "-qq", "-o", self.trace, "-e", "trace=kill" + ("," + held_up if held_up else ""), *delay)

    def prepare(self, *lines):
        script = RunningScript(self, *lines)
        self.write_script("x.sh", script.text)
        self.write_presets(preset("P", "top", scriptFile="x.sh"))
        return script

    def start(self, held_up):
        tracer = subprocess.Popen([*self.words_of_tracer(held_up), PROGRAM, "create", "0", "--no-open"], env=self.env, cwd=self.target,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        self.addCleanup(tracer.kill)
        return tracer

    def calls_of(self, process):
        with open(self.trace, encoding="utf-8", errors="replace") as lines:
            words = [line.split(maxsplit=1) for line in lines]
        return [call for number, call in words if int(number) == process and "(" in call]

    def test_a_script_that_has_just_been_started_is_stopped(self):
        script = self.prepare("tell $$ $PPID", "exec sleep 1000")
        tracer = self.start("clone,clone3,vfork")
        process, program = script.told()
        os.kill(program, signal.SIGTERM)
        self.assertEqual(tracer.wait(DEADLINE), -signal.SIGTERM)
        self.assertIn(f"kill({process}, SIGTERM)", "".join(self.calls_of(program)))
        self.wait_for(lambda: not script.is_there())

    def test_a_script_that_has_been_waited_for_is_no_process_to_be_stopped(self):
        script = self.prepare("tell $$ $PPID")
        tracer = self.start("wait4")
        process, program = script.told()
        self.wait_for(lambda: not os.path.exists(f"/proc/{process}"))
        os.kill(program, signal.SIGTERM)
        self.assertEqual(tracer.wait(DEADLINE), -signal.SIGTERM)
        calls = "".join(self.calls_of(program))
        self.assertIn(f"wait4({process},", calls)
        self.assertNotIn("kill(", calls)

    def test_control_c_reaches_the_script_from_the_terminal_alone(self):
        heeded = os.path.join(self.root, "heeded")
        # The terminal's end, which comes with the tracer's here, is another signal.
        script = self.prepare("trap '' HUP", f"trap \"echo INT >> '{heeded}'; go=\" INT", "go=on", "tell $$ $PPID",
                              "while test $go; do sleep 0.01; done")
        terminal = self.on_terminal("create", "0", "--no-open", slowly=self.words_of_tracer())
        _, program = script.told()
        terminal.type("\x03")
        self.wait_for(lambda: not script.is_there())
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (-signal.SIGINT, self.in_target("top") + "\n"))
        self.assertEqual(self.content(heeded), b"INT\n")
        self.assertEqual(self.calls_of(program), [])

    def test_control_c_reaches_a_script_that_has_left_the_terminal(self):
        heeded = os.path.join(self.root, "heeded")
        script = self.prepare("left=$1; test $left || exec setsid \"$0\" left", f"trap \"echo INT >> '{heeded}'; go=\" INT", "go=on",
                              "tell $$ $PPID", "while test $go; do sleep 0.01; done")
        terminal = self.on_terminal("create", "0", "--no-open", slowly=self.words_of_tracer())
        process, program = script.told()
        self.assertEqual(os.getsid(process), process)
        terminal.type("\x03")
        self.wait_for(lambda: not script.is_there())
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (-signal.SIGINT, self.in_target("top") + "\n"))
        self.assertEqual(self.content(heeded), b"INT\n")
        self.assertIn(f"kill({process}, SIGINT)", "".join(self.calls_of(program)))


class Killed(OrvaneTest):
    """Creations that are killed half-way, and what is said of them in each language."""

    def remains(self, *faults):
        self.env["XDG_RUNTIME_DIR"] = self.root
        shutil.rmtree(self.in_target("top"), ignore_errors=True)
        self.write_presets(preset("P", "top", *[folder(f"f{number}", file("x")) for number in range(4)]))
        kill = ("-e", "trace=mkdirat,fallocate", "-e", "inject=mkdirat:signal=SIGKILL:when=4")
        subprocess.run(["strace", "-f", "-qq", "-o", "/dev/null", *kill, *faults, PROGRAM, "create", "0"], env=self.env, cwd=self.target,
                       stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE, check=False)
        self.assertTrue(os.path.isdir(self.in_target("top", "f1")))

    def test_a_signal_while_the_journal_begins_does_not_keep_it_from_that(self):
        self.remains("-e", "inject=fallocate:error=EINTR:when=1")
        shown = subprocess.run([PROGRAM, "recover"], env=self.env, cwd=self.target, capture_output=True, timeout=DEADLINE, check=False)
        self.assertIn(b"top", shown.stdout)

    def test_what_is_left_is_told_in_the_users_language(self):
        expected = {
            "en": ("orvane: note: an earlier creation was killed half-way; 'orvane recover' shows what it left\n", " as the creation left them\n",
                   "  removed "),
            "de": ("orvane: Hinweis: Ein früheres Anlegen wurde mittendrin gewaltsam beendet; „orvane recover“ zeigt, was davon übrig ist\n",
                   " Objekte, wie das Anlegen sie hinterließ\n", " Objekte entfernt\n"),
            "fr": ("orvane: remarque\u00a0: une création précédente a été brutalement interrompue\u202f; «\u00a0orvane recover\u00a0» montre ce qu’elle a "
                   "laissé\n", " éléments tels que la création les a laissés\n", " éléments supprimés\n"),
        }
        for language, (note, left, removed) in expected.items():
            with self.subTest(language=language):
                self.remains()
                other = self._make("other " + language)
                self.assertEqual(self.create("0", cwd=other, env={"LANGUAGE": language}).err, note)
                self.assertIn(left, self.run_orvane("recover", env={"LANGUAGE": language}).out)
                self.assertIn(removed, self.run_orvane("recover", "--remove", env={"LANGUAGE": language}).out)
                self.assertNothingMade()


class Disturbed(OrvaneTest):
    """The disk fails while the preferences are read."""

    OTHERS = [preset("A", "a"), preset("B", "b", folder("f"))]
    COUNTERS = {"AutoNo": "6", "AutoOther": "5"}

    def setUp(self):
        super().setUp()
        self.write_presets(preset("P", "{AutoNo}"), *self.OTHERS, ORVAutomaticVars=self.COUNTERS, Foreign=[1, 2])
        self.before = self.content(self.preferences)
        self.packed = os.path.join(self.root, "packed")
        self.assertEqual(self.run_orvane("export", "A", self.packed).status, 0)
        self.folder = self._make("folder")

    def disturbed(self, when, *words):
        inject = f"inject=openat:error=EIO:when={when}"
        done = subprocess.run(["strace", "-f", "-qq", "-o", "/dev/null", "-P", self.preferences, "-e", inject, PROGRAM, *words],
                              env=self.env, cwd=self.target, stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE,
                              check=False)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def assertRefused(self, result):
        status, out, err = result
        self.assertEqual((status, out), (1, ""))
        self.assertTrue(err.startswith(f"orvane: Preferences cannot be read: {self.preferences}: "), err)
        self.assertEqual(self.content(self.preferences), self.before)

    def domain(self):
        return plistlib.loads(self.content(self.preferences))

    def test_presets_are_never_lost(self):
        for words in (("add", self.packed), ("import", self.folder)):
            self.assertRefused(self.disturbed("1", *words))
            self.assertRefused(self.disturbed("1+", *words))
            stored = 0
            for when in ("2", "3", "4", "5", "2+", "3+", "4+"):
                with self.subTest(words=words, when=when):
                    self.write_bytes(self.preferences, self.before)
                    status, out, err = self.disturbed(when, *words)
                    if status == 0:
                        stored += 1
                        after, before = self.domain(), plistlib.loads(self.before)
                        self.assertEqual(len(after["ORVPresets"]), 4)
                        self.assertEqual({**after, "ORVPresets": after["ORVPresets"][:3]}, before)
                    else:
                        self.assertEqual((status, out), (1, ""))
                        self.assertTrue(err.startswith("orvane: P"), err)  # Preferences cannot be read, Preset not stored
                        self.assertEqual(self.content(self.preferences), self.before)
            self.write_bytes(self.preferences, self.before)
            self.assertGreater(stored, 0)  # the latest failures come when all is done

    def test_reading_says_so(self):
        for words in (("list",), ("show", "0"), ("check",), ("check", "A")):
            self.assertRefused(self.disturbed("1+", *words))
        self.assertRefused(self.disturbed("1", "list"))
        for when in ("2", "3"):
            self.assertEqual(self.disturbed(when, "list"), (0, "0  P\n1  A\n2  B\n", ""))

    def test_a_creation_counts_on_or_leaves_everything(self):
        self.assertRefused(self.disturbed("1+", "create", "0", "--no-input"))
        self.assertNothingMade()
        for when in ("1", "2", "3", "4", "2+", "3+", "4+"):
            with self.subTest(when=when):
                self.write_bytes(self.preferences, self.before)
                status, _, err = self.disturbed(when, "create", "0", "--no-input")
                after = self.domain()
                if after["ORVAutomaticVars"] == self.COUNTERS:
                    self.assertEqual(self.content(self.preferences), self.before)
                    self.assertIn("orvane: ", err)
                else:
                    self.assertEqual(after, {**plistlib.loads(self.before), "ORVAutomaticVars": {**self.COUNTERS, "AutoNo": "7"}})
                    self.assertEqual((status, err), (0, ""))
                for name in os.listdir(self.target):
                    os.rmdir(self.in_target(name))


if __name__ == "__main__":
    unittest.main()
