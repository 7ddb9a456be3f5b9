#!/usr/bin/env python3
"""Many programs with one preferences file at once.

    together.py --orvane PROGRAM [--processes N] [--creations N]

N workers make N hierarchies each with one counter, without asking: all numbers must differ and follow each other without a
gap. Meanwhile others add, import and change keys of their own, as the settings program does: nothing may be lost."""

import argparse
import os
import plistlib
import subprocess
import sys
import threading

import workshop

DEADLINE = 600


def preferences_of(shop):
    with open(shop.preferences, "rb") as opened:
        return plistlib.load(opened)


class Together:
    def __init__(self, shop, processes, creations):
        self.shop = shop
        self.processes = processes
        self.creations = creations
        self.numbers = []
        self.complaints = []
        self.added = []
        self.imported = []
        self.refused = 0
        self.over = threading.Event()
        self.monitor = threading.Lock()

    def run(self, *words):
        return subprocess.run([self.shop.program, *words], stdin=subprocess.DEVNULL, capture_output=True, env=self.shop.env,
                              cwd=self.shop.target, timeout=DEADLINE, check=False)

    def complain(self, text):
        with self.monitor:
            self.complaints.append(text)

    def create(self):
        for _ in range(self.creations):
            done = self.run("create", "0", "--no-input", "--no-open")
            if done.returncode != 0 or done.stderr:
                # The one refusal there is: others held the preferences for ten seconds. It is told, and uses no number.
                if done.returncode == 1 and done.stderr.startswith(b"orvane: Preferences are in use: "):
                    with self.monitor:
                        self.refused += 1
                    continue
                self.complain(f"a creation ended with {done.returncode}: {done.stderr!r}")
                continue
            with self.monitor:
                self.numbers.append(int(os.path.basename(done.stdout.decode().rstrip("\n")).rsplit(" ", 1)[1]))

    def add(self, packed):
        """Presets are added as long as creations go on."""
        while not self.over.is_set():
            done = self.run("add", packed)
            if done.returncode != 0:
                self.complain(f"adding ended with {done.returncode}: {done.stderr!r}")
            else:
                self.added.append(int(done.stdout.split()[0]))

    def import_folders(self, folder):
        while not self.over.is_set():
            label = f"import {len(self.imported)}"
            done = self.run("import", folder, "--label", label)
            if done.returncode != 0:
                self.complain(f"importing ended with {done.returncode}: {done.stderr!r}")
            else:
                self.imported.append(label)

    def read(self):
        """Whoever reads finds a whole file at any moment."""
        while not self.over.is_set():
            try:
                if preferences_of(self.shop)["Foreign"] != workshop.FOREIGN_KEYS["Foreign"]:
                    self.complain("a reader found other keys")
            except Exception as error:  # pylint: disable=broad-except
                self.complain(f"a reader found {error!r}")
            self.over.wait(0.002)

    def all(self):
        packed = os.path.join(self.shop.root, "packed")
        folder = os.path.join(self.shop.root, "imported")
        os.makedirs(os.path.join(folder, "in it"))
        if self.run("export", "0", packed).returncode != 0:
            return ["no export"]
        workers = [threading.Thread(target=self.create) for _ in range(self.processes)]
        others = [threading.Thread(target=self.add, args=(packed,)), threading.Thread(target=self.import_folders, args=(folder,)),
                  threading.Thread(target=self.read)]
        for thread in workers + others:
            thread.start()
        for thread in workers:
            thread.join()
        self.over.set()
        for thread in others:
            thread.join()
        return self.complaints + self.judge()

    def judge(self):
        complaints = []
        wanted = self.processes * self.creations - self.refused
        first = workshop.NUMBER + 1
        if sorted(self.numbers) != list(range(first, first + wanted)):
            complaints.append(f"numbers: {len(set(self.numbers))} different of {len(self.numbers)}, {wanted} wanted")
        folders = {name for name in self.shop.made() if name.startswith(" ")}
        if len(folders) != wanted:
            complaints.append(f"{len(folders)} folders instead of {wanted}")
        domain = preferences_of(self.shop)
        if domain["ORVAutomaticVars"] != {**workshop.OLD, "AutoNo": str(workshop.NUMBER + wanted)}:
            complaints.append(f"the counters: {domain['ORVAutomaticVars']}")
        presets = domain.pop("ORVPresets")
        if len(presets) != 1 + len(self.added) + len(self.imported) or len(set(self.added)) != len(self.added):
            complaints.append(f"{len(presets)} presets, {len(self.added)} added, {len(self.imported)} imported")
        if [each["label"] for each in presets if each["label"].startswith("import ")] != self.imported:
            complaints.append("imported presets are lost")
        del domain["ORVAutomaticVars"]
        if domain != workshop.FOREIGN_KEYS:
            complaints.append("other keys are lost")
        return complaints


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--orvane", required=True)
    parser.add_argument("--processes", type=int, default=8)
    parser.add_argument("--creations", type=int, default=200)
    options = parser.parse_args()
    shop = workshop.Workshop(os.path.abspath(options.orvane))
    try:
        shop.prepare()
        # Small, so that they get in each other's way as often as can be; still with a variable besides the counter.
        preset = {**workshop.PRESET, "fileHierarchy": {"isFolder": True, "children": [workshop.file("x")]}}
        del preset["scriptFile"]
        with open(shop.preferences, "wb") as out:
            plistlib.dump({"ORVPresets": [preset], "ORVAutomaticVars": workshop.OLD, **workshop.FOREIGN_KEYS}, out)
        together = Together(shop, options.processes, options.creations)
        complaints = together.all()
    finally:
        shop.close()
    for complaint in complaints[:20]:
        print(complaint)
    print(f"together: {options.processes} x {options.creations} creations, {len(set(together.numbers))} different numbers, "
          f"{together.refused} told that the preferences are in use, {len(together.added)} presets added, "
          f"{len(together.imported)} imported, {len(complaints)} complaints")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
