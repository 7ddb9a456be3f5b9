#!/usr/bin/env python3
"""Cuts the power at random instants while counters are stored, and looks at what the disk holds then.

    powercut.py --orvane PROGRAM [--instants N] [--seed N] [--only ext4|xfs|btrfs]
    powercut.py --can                       status 0 when this machine lets it; else it says why not

A file system stands in an image, the image on an XFS that shares blocks. There a clone of the image is made in one step:
what the disk had been told to write at that instant, as after a power cut with a disk that loses nothing it has taken.
Each clone is mounted, which replays its journal. The preferences must parse and hold every counter that a program had
reported as stored, by ending well, before the instant."""

import argparse
import contextlib
import ctypes
import fcntl
import os
import plistlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import workshop

FICLONE = 0x40049409  # Linux, <linux/fs.h>
MEGABYTE = 1 << 20
KINDS = {  # megabytes (the least that mkfs takes, and a little), the words of mkfs, options of mount
    "ext4": (64, ["mkfs.ext4", "-q", "-F"], []),
    "xfs": (320, ["mkfs.xfs", "-q", "-f"], ["nouuid"]),
    "btrfs": (160, ["mkfs.btrfs", "-q", "-f"], []),
}
HOST_MEGABYTES = 6144
LONGEST_WAIT = 0.04  # seconds between two instants; a creation takes about 0.01


def tool(*words):
    done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False)
    if done.returncode != 0:
        raise OSError(f"{' '.join(words)}: {done.stderr.decode(errors='replace').strip()}")


def make(image, megabytes, words):
    with open(image, "wb") as out:
        out.truncate(megabytes * MEGABYTE)
    tool(*words, image)


@contextlib.contextmanager
def mounted(image, at, options=()):
    os.makedirs(at, exist_ok=True)
    tool("mount", "-o", ",".join(["loop", *options]), image, at)
    try:
        yield at
    finally:
        tool("umount", at)


@contextlib.contextmanager
def host():
    """A folder in memory whose files can be cloned."""
    root = tempfile.mkdtemp(prefix="orvane-powercut-", dir="/dev/shm")
    try:
        make(os.path.join(root, "host.img"), HOST_MEGABYTES, ["mkfs.xfs", "-q", "-m", "reflink=1"])
        with mounted(os.path.join(root, "host.img"), os.path.join(root, "host")) as place:
            yield place
    finally:
        shutil.rmtree(root)


def leave_mount_namespace():
    """Mounts of this process alone: none is left over, whatever happens to it."""
    newns, private = 0x00020000, (1 << 18) | (1 << 14)  # CLONE_NEWNS; MS_PRIVATE | MS_REC
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.unshare(newns) != 0 or libc.mount(b"none", b"/", None, private, None) != 0:
        raise OSError(ctypes.get_errno(), "no mounts of one's own")


def reason_against():
    if os.geteuid() != 0:
        return "mounting takes root"
    missing = [word for word in ("mount", "umount", *(words[0] for _, words, _ in KINDS.values())) if shutil.which(word) is None]
    if missing:
        return f"there is no {', no '.join(missing)}"
    if not os.access("/dev/shm", os.W_OK):
        return "there is no /dev/shm"
    try:
        leave_mount_namespace()
        with host() as place:
            for kind, (megabytes, words, options) in KINDS.items():
                image = os.path.join(place, kind)
                make(image, megabytes, words)
                with mounted(image, os.path.join(place, "at"), options):
                    pass
    except OSError as error:
        return str(error)
    return None


class Writer(threading.Thread):
    """Makes one hierarchy after the other, and remembers the last number that was reported as stored."""

    def __init__(self, shop):
        super().__init__()
        self.shop = shop
        self.stored = workshop.NUMBER
        self.over = False
        self.complaints = []

    def run(self):
        while not self.over:
            status, out, err = self.shop.run(self.shop.words("Acme"))
            if (status, err) != (0, ""):
                self.complaints.append(f"a creation ended with {status}: {err}")
                return
            self.stored = int(out.rstrip("\n").rsplit(" ", 1)[1])
            shutil.rmtree(out.rstrip("\n"))


def clone(source, target):
    with open(source, "rb") as old, open(target, "wb") as new:
        fcntl.ioctl(new.fileno(), FICLONE, old.fileno())


def shop_at(program, place):
    """A workshop whose folders stand in the mounted file system."""
    shop = workshop.Workshop(program)
    shop.close()
    shop.__dict__.update({key: value.replace(shop.root, place) for key, value in shop.__dict__.items() if isinstance(value, str)})
    shop.env["HOME"] = shop.home
    del shop.env["XDG_RUNTIME_DIR"]  # of a machine that has lost its power nothing is left in memory
    return shop


def small(shop):
    """A preset of a few nodes: the counter is what this is about."""
    shop.prepare(used=True)
    preset = {**workshop.PRESET, "fileHierarchy": {"isFolder": True, "children": [workshop.file("x")]}}
    del preset["scriptFile"]
    with open(shop.preferences, "wb") as out:
        plistlib.dump({"ORVPresets": [preset], "ORVAutomaticVars": workshop.OLD, **workshop.FOREIGN_KEYS}, out)
        out.flush()
        os.fsync(out.fileno())
    os.sync()


def cut(place, kind, program, instants, chance):
    """Clones of the image at random instants, each with the numbers between which its counter must lie."""
    megabytes, words, options = KINDS[kind]
    image = os.path.join(place, kind)
    make(image, megabytes, words)
    cuts = []
    with mounted(image, os.path.join(place, "at"), options) as at:
        shop = shop_at(program, at)
        small(shop)
        writer = Writer(shop)
        writer.start()
        try:
            for instant in range(instants):
                time.sleep(chance.uniform(0, LONGEST_WAIT))
                least = writer.stored
                clone(image, f"{image}-{instant}")
                cuts.append((f"{image}-{instant}", least, writer.stored + 1))
        finally:
            writer.over = True
            writer.join()
    os.unlink(image)
    return cuts, writer


def look(place, program, options, taken):
    """What is wrong in one clone, and its counter."""
    image, least, most = taken
    with mounted(image, os.path.join(place, "at"), options) as at:
        shop = shop_at(program, at)
        try:
            with open(shop.preferences, "rb") as opened:
                domain = plistlib.load(opened)
        except Exception as error:  # pylint: disable=broad-except
            return [f"the preferences cannot be read: {error!r}"], None
        complaints = []
        counters = domain.pop("ORVAutomaticVars")
        number = int(counters["AutoNo"])
        if not least <= number <= most:
            complaints.append(f"the counter is {number}, but {least} had been reported as stored, and at most {most} begun")
        if counters["AutoOther"] != workshop.OLD["AutoOther"] or len(domain.pop("ORVPresets")) != 1 or domain != workshop.FOREIGN_KEYS:
            complaints.append("other keys changed")
        status, out, err = shop.run(shop.words("Next"))
        if (status, err) != (0, "") or not out.endswith(f"/Next {number + 1}\n"):
            complaints.append(f"the next creation ended with {status}: {out}{err}")
    return complaints, number


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--can", action="store_true")
    parser.add_argument("--orvane")
    parser.add_argument("--instants", type=int, default=200, help="of each file system")
    parser.add_argument("--seed", type=int, default=None)
    parser.add_argument("--only", choices=KINDS)
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that all is taken down
    against = reason_against()
    if against or options.can:
        print(against or "yes")
        return 1 if against else 0
    seed = options.seed if options.seed is not None else random.randrange(1 << 32)
    print(f"seed {seed}")
    failures = 0
    for kind in [options.only] if options.only else KINDS:
        with host() as place:
            cuts, writer = cut(place, kind, os.path.abspath(options.orvane), options.instants, random.Random(seed))
            complaints = list(writer.complaints)
            between = set()
            for taken in cuts:
                wrong, number = look(place, os.path.abspath(options.orvane), KINDS[kind][2], taken)
                complaints += [f"{os.path.basename(taken[0])}: {each}" for each in wrong]
                between.add(number)
                os.unlink(taken[0])
        for complaint in complaints[:20]:
            print(complaint)
        ahead = "the counter had moved by " + str(writer.stored - workshop.NUMBER)
        print(f"{kind}: {len(cuts)} instants, {len(between)} different counters found, {ahead}, {len(complaints)} complaints", flush=True)
        failures += len(complaints) + (0 if len(cuts) == options.instants else 1)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
