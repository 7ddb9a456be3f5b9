"""The program file itself: what it loads, and how many system calls a creation costs."""

import os
import re
import subprocess
import unittest

from harness import DEADLINE, PROGRAM, OrvaneTest, file, folder, preset

CALLS_AT_START = 150
CALLS_PER_NODE = 2.6


class Program(OrvaneTest):
    def test_only_the_c_library_is_loaded(self):
        listed = subprocess.run(["ldd", PROGRAM], stdout=subprocess.PIPE, check=True, timeout=DEADLINE).stdout.decode()
        names = {line.split()[0].rsplit("/", 1)[-1].split(".")[0] for line in listed.splitlines()}
        self.assertLessEqual(names, {"linux-vdso", "libc", "libm", "ld-linux-x86-64", "ld-linux-aarch64"}, listed)

    def calls(self, *words):
        """Number of system calls of a whole run, from execve to exit."""
        counted = os.path.join(self.root, "calls")
        done = subprocess.run(["strace", "-f", "-qq", "-o", counted, "-e", "trace=all", "-e", "signal=none", PROGRAM, *words],
                              env=self.env, cwd=self.target, stdin=subprocess.DEVNULL, capture_output=True, timeout=DEADLINE,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        with open(counted, encoding="utf-8", errors="replace") as lines:
            return [match[1] for match in (re.match(r"\d+ +(\w+)\(", line) for line in lines) if match]

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


class Slowly(OrvaneTest):
    """Creations that last, because a tracer holds one of their system calls up."""

    HALF_A_SECOND_AND_MORE = "900000"  # microseconds

    def setUp(self):
        super().setUp()
        self.write_presets(preset("P", "top", *[folder(f"f{number}", file("x")) for number in range(4)]))

    def create_slowly(self, call="mkdirat", nth=3):
        delay = f"inject={call}:delay_enter={self.HALF_A_SECOND_AND_MORE}:when={nth}"
        return self.on_terminal("create", "0", slowly=("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=" + call, "-e", delay))

    def test_a_long_creation_shows_how_far_it_is_and_then_nothing(self):
        terminal = self.create_slowly()
        terminal.read_until(" 33 %  3 of 9")
        result = terminal.finish()
        self.assertEqual((result.status, result.out), (0, self.in_target("top") + "\n"))
        self.assertTrue(result.err.endswith("\r\033[K"), repr(result.err))

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

    def test_control_c_between_question_and_waiting_is_not_lost(self):
        self.write_presets(preset("P", "{A}"))
        terminal = self.create_slowly("ppoll", 1)
        terminal.read_until("A: ")
        terminal.type("\x03")
        self.assertEqual(terminal.finish().status, 3)


if __name__ == "__main__":
    unittest.main()
