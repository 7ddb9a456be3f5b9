#!/usr/bin/env python3
"""Creations that are killed half-way are recognised, shown and taken away: what they made, and nothing else.

    recovery.py --orvane PROGRAM [--large]"""

import argparse
import collections
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest

import memory
import workshop

PROGRAM = None
NOTE = "orvane: note: an earlier creation was killed half-way; 'orvane recover' shows what it left\n"
NAME = f"Acme {workshop.NUMBER + 1}"
LARGE = False


class Recovery(unittest.TestCase):
    def setUp(self):
        self.shop = workshop.Workshop(PROGRAM)
        self.addCleanup(self.shop.close)
        self.shop.prepare(used=True)
        self.top = os.path.join(self.shop.target, NAME)

    def recover(self, *words):
        return self.shop.run([PROGRAM, "recover", *words])

    def kill_at(self, call, number):
        """Kills a creation at the entry of a system call."""
        status, _, err = self.shop.run(["strace", "-qq", "-o", "/dev/null", "-e", "signal=none", "-e",
                                        f"inject={call}:signal=KILL:when={number}", *self.shop.words("Acme")])
        self.assertEqual(status, -9, err)

    def items(self):
        return len(workshop.snapshot(self.top)) + 1

    def assertShown(self, items, *changed):
        lines = [self.top, f"  {items} item{'s' if items != 1 else ''} as the creation left {'them' if items != 1 else 'it'}"]
        lines += [f"  changed since, and never removed: {os.path.join(self.top, each) if each else self.top}" for each in changed]
        status, out, err = self.recover()
        self.assertEqual((status, sorted(out.splitlines()), err), (0, sorted(lines), ""))

    def test_nothing_is_left_of_a_creation_that_ends_well_or_fails(self):
        self.assertEqual(self.shop.run(self.shop.words("Acme"))[0], 0)
        self.assertEqual(self.recover(), (0, "", ""))
        status, _, err = self.shop.run(["strace", "-qq", "-o", "/dev/null", "-e", "inject=mknodat:error=EIO:when=2+",
                                        "-e", "inject=mkdirat:error=EIO:when=3", *self.shop.words("Other")])
        self.assertEqual(status, 1, err)
        self.assertEqual(self.recover(), (0, "", ""))
        self.assertEqual(self.shop.made(), {NAME})

    def test_what_was_made_is_shown_and_removed_wherever_it_was_killed(self):
        seen = 0
        for call, count in (("mkdirat", 5), ("mknodat", 2), ("symlinkat", 1), ("linkat", 1), ("fsetxattr", 4), ("utimensat", 6), ("fchmod", 4)):
            for number in range(1, count + 1):
                with self.subTest(call=call, number=number):
                    self.shop.prepare(used=True)
                    self.kill_at(call, number)
                    if not os.path.isdir(self.top):
                        self.assertEqual(self.recover(), (0, "", ""))
                        continue
                    seen += 1
                    self.assertShown(self.items())
                    result = self.recover("--remove")
                    self.assertEqual(result[0], 0, result)
                    self.assertEqual(self.shop.made(), set())
                    self.assertEqual(self.shop.foreign(), [])
                    self.assertEqual(self.recover(), (0, "", ""))
        self.assertGreater(seen, 10)

    def test_the_next_creation_tells_of_it_and_works(self):
        self.kill_at("symlinkat", 1)
        name = f"Next {workshop.NUMBER + 2}"
        self.assertEqual(self.shop.run(self.shop.words("Next")), (0, os.path.join(self.shop.target, name) + "\n", NOTE))
        self.assertEqual(self.shop.complete(name, "Next"), [])
        self.recover("--remove")
        self.assertEqual(self.shop.made(), {name})
        self.assertEqual(self.shop.run(self.shop.words("Third"))[2], "")

    def test_keeping_forgets_it_and_removes_nothing(self):
        self.kill_at("symlinkat", 1)
        before = workshop.snapshot(self.top)
        self.assertEqual(self.recover("--keep")[0], 0)
        self.assertEqual(self.recover(), (0, "", ""))
        self.assertEqual(workshop.snapshot(self.top), before)

    def after_a_while(self):
        """Until what is changed now bears another time than what the creation did."""
        exactness = 1.1  # seconds; with which the moment is known at which the process ended
        newest = max(os.lstat(os.path.join(at, name)).st_ctime for at, folders, files in os.walk(self.top) for name in folders + files)
        while time.time() < newest + exactness:
            time.sleep(0.01)

    def test_what_was_changed_since_stays(self):
        self.kill_at("symlinkat", 1)
        items = self.items()
        self.after_a_while()
        with open(os.path.join(self.top, "Docs/Notes"), "w", encoding="utf-8") as out:
            out.write("mine")
        self.assertShown(items - 1, "Docs/Notes")
        self.assertEqual(self.recover("--remove")[0], 1)  # its folders stay with it
        self.assertEqual(set(workshop.snapshot(self.top)), {"Docs/", "Docs/Notes"})
        self.assertEqual(self.recover(), (0, "", ""))

    def test_what_somebody_added_stays(self):
        self.kill_at("symlinkat", 1)
        items = self.items()
        self.after_a_while()
        with open(os.path.join(self.top, "Media/mine"), "w", encoding="utf-8") as out:
            out.write("mine")
        self.assertShown(items - 1, "Media")
        self.recover("--remove")
        self.assertEqual(set(workshop.snapshot(self.top)), {"Media/", "Media/mine"})

    def test_what_stands_in_the_place_of_an_item_stays(self):
        self.kill_at("symlinkat", 1)
        self.after_a_while()
        outside = os.path.join(self.shop.root, "outside")
        os.makedirs(os.path.join(outside, "Docs"))
        with open(os.path.join(outside, "Notes"), "w", encoding="utf-8") as out:
            out.write("mine")
        shutil.rmtree(os.path.join(self.top, "Docs"))
        os.symlink(outside, os.path.join(self.top, "Docs"))
        self.recover("--remove")
        self.assertEqual(sorted(os.listdir(outside)), ["Docs", "Notes"])
        self.assertEqual(set(os.listdir(self.top)), {"Docs"})

    def test_a_folder_that_was_renamed_away_is_not_looked_for(self):
        self.kill_at("symlinkat", 1)
        os.rename(self.top, self.top + " mine")
        before = workshop.snapshot(self.top + " mine")
        self.assertEqual(self.recover("--remove"), (0, "", ""))
        self.assertEqual(workshop.snapshot(self.top + " mine"), before)

    def test_a_creation_that_goes_on_is_none(self):
        words = ["strace", "-qq", "-o", "/dev/null", "-e", "inject=symlinkat:delay_enter=3000000:when=1", *self.shop.words("Acme")]
        with subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=self.shop.env, cwd=self.shop.target) as running:
            deadline = time.monotonic() + workshop.DEADLINE
            while not os.path.isdir(os.path.join(self.top, "Media/kit")):
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.005)
            self.assertEqual(self.recover("--remove"), (0, "", ""))
            self.assertIsNone(running.poll())
            running.communicate(timeout=workshop.DEADLINE)
        self.assertEqual(running.returncode, 0)
        self.assertEqual(self.shop.complete(NAME, "Acme"), [])

    def test_without_a_folder_in_memory_creations_are_not_noted(self):
        del self.shop.env["XDG_RUNTIME_DIR"]
        self.kill_at("symlinkat", 1)
        self.assertEqual(self.recover("--remove"), (0, "", ""))
        self.assertTrue(os.path.isdir(self.top))

    def test_large_creations_killed_at_random_moments(self):
        """On two threads where there are two processors."""
        chance = random.Random(7)
        left = collections.Counter()
        for shape in (30 if LARGE else 8) * list(memory.SHAPES):
            memory.prepare(self.shop, shape)
            with subprocess.Popen(self.shop.words("Acme"), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                  env=self.shop.env, cwd=self.shop.target) as running:
                deadline = time.monotonic() + workshop.DEADLINE
                while not os.path.isdir(self.top) and running.poll() is None:
                    self.assertLess(time.monotonic(), deadline)
                time.sleep(chance.uniform(0, 0.03))
                running.send_signal(signal.SIGKILL)
                running.communicate(timeout=workshop.DEADLINE)
            if running.returncode == 0 or not os.path.isdir(self.top):
                continue
            items = self.items()
            status, out, err = self.recover("--remove")
            if not out:  # it was complete
                self.assertEqual(items, memory.SHAPES[shape])
                continue
            left[shape] += 1
            self.assertEqual((status, err, re.findall(r"removed (\d+) item", out)), (0, "", [str(items)]), out)
            self.assertEqual(self.shop.made(), set())
        self.assertEqual(left.keys(), memory.SHAPES.keys())

    def test_files_that_had_yet_to_be_completed_are_no_changed_ones(self):
        """However slow the disk is at completing them."""
        for number in (2, 30, 70):
            memory.prepare(self.shop, memory.one_folder)
            status, _, err = self.shop.run(["strace", "-f", "-qq", "-o", "/dev/null", "-e", "signal=none", "-e", "inject=fsetxattr:delay_enter=25000",
                                            "-e", f"inject=utimensat:signal=KILL:when={number}", *self.shop.words("Acme")])
            self.assertEqual(status, -9, err)
            items = self.items()
            status, out, err = self.recover("--remove")
            self.assertEqual((status, err, re.findall(r"removed (\d+) item", out)), (0, "", [str(items)]), out)
            self.assertEqual(self.shop.made(), set())


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--orvane", required=True)
    parser.add_argument("--large", action="store_true")
    known, rest = parser.parse_known_args()
    PROGRAM = os.path.abspath(known.orvane)
    LARGE = known.large
    unittest.main(argv=[sys.argv[0], "-v", *rest])
