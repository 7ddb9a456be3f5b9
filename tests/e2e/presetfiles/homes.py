"""Home folders in which the program under test, the first argument, is run."""

import errno
import os
import plistlib
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = sys.argv.pop(1) if len(sys.argv) > 1 else ""
LIMIT = 120  # seconds for any one command; nothing here should take one
FINDER_INFO = "user.com.apple.FinderInfo"
FAST = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def label_of(path):
    """The Finder label of an item, 0 without one."""
    try:
        return os.getxattr(path, FINDER_INFO, follow_symlinks=False)[9] >> 1 & 7
    except OSError as error:
        if error.errno in (errno.ENODATA, errno.ENOTSUP):
            return 0
        raise


def set_label(path, label):
    os.setxattr(path, FINDER_INFO, bytes(9) + bytes([label << 1]) + bytes(22))


def tree_of(top):
    """Everything below a folder: relative path to mode, label and contents (None for folders)."""
    top = os.fsencode(top)
    tree = {}
    for folder, folders, files in os.walk(top):
        for name in folders + files:
            path = os.path.join(folder, name)
            contents = None if name in folders else Path(os.fsdecode(path)).read_bytes()
            tree[os.path.relpath(path, top)] = (stat.S_IMODE(os.lstat(path).st_mode), label_of(path), contents)
    return tree


class Home:
    """A user with nothing."""

    def __init__(self, top):
        self.top = Path(tempfile.mkdtemp(dir=top))
        self.support = self.top / ".local/share/Orvane"
        self.contents = self.support / "File Content"
        self.scripts = self.support / "Scripts"
        self.preferences = self.top / "Library/Preferences/org.orvane.ORVPrefPane.plist"

    def run(self, *words, status=0, data=None, under=(), **more):
        """Runs the program, with `under` by way of another one."""
        environment = {"HOME": str(self.top), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"}
        if under:
            environment["ASAN_OPTIONS"] = "detect_leaks=0"  # who is traced cannot look for leaks
        result = subprocess.run([*under, PROGRAM, *words], env=environment, input=data, capture_output=True, timeout=LIMIT, cwd=self.top,
                                **more)
        if status is not None and result.returncode != status:
            raise AssertionError(f"{words}: status {result.returncode} instead of {status}\n{result.stdout!r}\n{result.stderr!r}")
        return result

    def create(self, preset, *words):
        parent = Path(tempfile.mkdtemp(dir=self.top))
        self.run("create", str(preset), "--in", str(parent), "--no-open", "--no-input", *words)
        (made,) = parent.iterdir()
        return made

    def write_preferences(self, content):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        data = content if isinstance(content, bytes) else plistlib.dumps(content)
        self.preferences.write_bytes(data)
        return data

    def presets(self):
        return plistlib.loads(self.preferences.read_bytes())["ORVPresets"]

    def stored(self):
        """Names in the content and script folders, hidden ones included."""
        return sorted(name for folder in (self.contents, self.scripts) if folder.is_dir() for name in os.listdir(folder))


class Case(unittest.TestCase):
    def setUp(self):
        self.top = tempfile.mkdtemp(dir=FAST)
        self.addCleanup(shutil.rmtree, self.top, ignore_errors=True)
        os.umask(0o022)
        self.home = Home(self.top)

    def folder(self, name="Acme job"):
        path = Path(self.top) / "source" / name
        path.mkdir(parents=True)
        return path

    def rich_folder(self):
        top = self.folder()
        (top / "Acme plan.txt").write_text("plan\n")
        (top / "run").write_bytes(b"#!/bin/sh\n\0\xff")
        (top / "run").chmod(0o755)
        (top / "empty").touch()
        (top / "private").mkdir(mode=0o700)
        (top / "private" / "deep Acme").mkdir()
        (top / "private" / "deep Acme" / "Acme plan.txt").write_text("another plan\n")
        (top / "private" / "same").write_text("plan\n")
        (top / "Ünïcode – 日本").mkdir()
        (top / "Ünïcode – 日本" / " -x").write_text("x")
        (top / "Ünïcode – 日本" / " -x").chmod(0o400)
        set_label(top / "Acme plan.txt", 6)
        set_label(top / "private", 2)
        return top
