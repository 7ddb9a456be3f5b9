"""Python's plistlib as a second opinion on property lists.

plistlib-oracle.py write FOLDER   writes random lists, each as N.xml.plist and N.binary.plist
plistlib-oracle.py read FOLDER    loads N.xml.plist and N.binary.plist for every N, fails unless both hold the same
"""

import datetime
import math
import os
import plistlib
import random
import sys


def text(source):
    alphabet = "abcXYZ019 _-.{}&<>\"'/\n\té東🎬"
    return "".join(source.choice(alphabet) for _ in range(source.randrange(12)))


def scalar(source):
    kind = source.randrange(7)
    if kind == 0:
        return source.random() < 0.5
    if kind == 1:
        return source.choice([0, 1, -1, 255, 256, 65536, -(2**63), 2**63 - 1, 2**64 - 1, source.randrange(-(2**40), 2**40)])
    if kind == 2:
        return source.choice([0.0, 1.5, -2.25, 1e300, 1e-300, math.pi, float("inf"), source.random() * 1e6])
    if kind == 3:
        return datetime.datetime(2001, 1, 1) + datetime.timedelta(seconds=source.randrange(-(10**9), 10**9))
    if kind == 4:
        return bytes(source.randrange(256) for _ in range(source.randrange(70)))
    return text(source)


def value(source, depth):
    kind = source.randrange(4) if depth < 5 else 2
    if kind == 0:
        return [value(source, depth + 1) for _ in range(source.randrange(6))]
    if kind == 1:
        return {text(source): value(source, depth + 1) for _ in range(source.randrange(6))}
    return scalar(source)


def write(folder):
    for seed in range(100):
        source = random.Random(seed)
        root = {"root": value(source, 0), "items": [value(source, 1) for _ in range(20)]}
        for name, form in (("xml", plistlib.FMT_XML), ("binary", plistlib.FMT_BINARY)):
            with open(os.path.join(folder, f"{seed}.{name}.plist"), "wb") as file:
                plistlib.dump(root, file, fmt=form, sort_keys=False)


def read(folder):
    names = sorted(name for name in os.listdir(folder) if name.endswith(".xml.plist"))
    if not names:
        sys.exit("nothing to compare")
    for name in names:
        lists = []
        for path in (name, name.replace(".xml.", ".binary.")):
            with open(os.path.join(folder, path), "rb") as file:
                lists.append(plistlib.load(file))
        if lists[0] != lists[1]:
            sys.exit(f"both forms of {name} hold different lists")


if __name__ == "__main__":
    if sys.argv[1] == "write":
        write(sys.argv[2])
    else:
        read(sys.argv[2])
