#!/usr/bin/env python3
"""Makes large hierarchies, on two threads where there are two processors, with less and less memory.

    memory.py --orvane PROGRAM [--short]

Whatever there is: the whole hierarchy or a message and nothing; never a half one, never a crash once `main` runs."""

import argparse
import collections
import os
import plistlib
import sys

import workshop

KILOBYTE = 1024
MOST = 64 * KILOBYTE  # kilobytes
STEP, SHORT_STEP = 16, 256
ENDS_OF_START = (-11, -6, 127)  # the C library's own, before there is enough memory to say anything
NAME = f"Acme {workshop.NUMBER + 1}"


def many_folders():
    """Both threads make what is in them."""
    return [workshop.folder(f"group {group}", *[workshop.file(f"{'x' * 60} {number}") for number in range(50)]) for group in range(60)]


def one_folder():
    """One thread makes the files, the other one completes them."""
    return [workshop.file(f"{'x' * 60} {number}", contentFilename="letter", color="red" if number % 3 == 0 else "") for number in range(1500)]


SHAPES = {many_folders: 1 + 60 * 51, one_folder: 1 + 1500}  # and how many items that are, the top folder included


def prepare(shop, shape):
    shop.prepare(used=True)
    preset = {"label": "P", "directoryName": "{Project} {AutoNo}", "fileHierarchy": {"isFolder": True, "children": shape()}}
    with open(shop.preferences, "wb") as out:
        plistlib.dump({"ORVPresets": [preset], "ORVAutomaticVars": workshop.OLD, **workshop.FOREIGN_KEYS}, out)
    with open(shop.preferences, "rb") as opened:
        return opened.read()


def judge(shop, shape, result, before):
    """What is wrong, and whether the program had got going."""
    status, out, err = result
    made = shop.made()
    with open(shop.preferences, "rb") as opened:
        after = opened.read()
    wanted = {**plistlib.loads(before), "ORVAutomaticVars": {**workshop.OLD, "AutoNo": str(workshop.NUMBER + 1)}}
    if after != before and plistlib.loads(after) != wanted:
        return "the preferences are neither the old nor the new ones", True
    if status in ENDS_OF_START and err in ("", "Fatal glibc error: Cannot allocate TLS block\n") and not out:
        return ("something was made", True) if made or after != before else (None, False)
    if status == 0:
        count = 1 + sum(len(folders) + len(files) for _, folders, files in os.walk(os.path.join(shop.target, NAME)))
        whole = made == {NAME} and count == SHAPES[shape] and out == os.path.join(shop.target, NAME) + "\n"
        return (None if whole else f"half a hierarchy: {count} of {made}"), True
    if status == 1 and err.startswith("orvane: ") and not made:
        return None, True
    return f"status {status}, {err[:200]!r}, made {made}", True


def starve(shop, shape, step, ends):
    """Until it succeeds three times in a row. Returns how many limits had complaints."""
    failures = 0
    whole = 0
    for kilobytes in range(0, MOST, step):
        before = prepare(shop, shape)
        result = shop.run(["prlimit", f"--data={kilobytes * KILOBYTE}", *shop.words("Acme")])
        problem, started = judge(shop, shape, result, before)
        ends[result[0] if started else "too little to start"] += 1
        if problem:
            failures += 1
            print(f"{shape.__name__}, {kilobytes} KB: {problem}", flush=True)
        whole = whole + 1 if result[0] == 0 else 0
        if whole == 3:
            return failures
    print(f"{shape.__name__}: not even with {MOST} KB")
    return failures + 1


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--orvane", required=True)
    parser.add_argument("--short", action="store_true")
    options = parser.parse_args()
    shop = workshop.Workshop(os.path.abspath(options.orvane))
    ends = collections.Counter()
    try:
        failures = sum(starve(shop, shape, SHORT_STEP if options.short else STEP, ends) for shape in SHAPES)
    finally:
        shop.close()
    print(f"memory: {sum(ends.values())} limits, {failures} with complaints. Status or end: {dict(ends)}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
