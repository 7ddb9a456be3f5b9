"""Runs the built `orvane`, each test in a home folder of its own.

The program's path is taken from the environment variable ORVANE."""

import contextlib
import fcntl
import json
import os
import plistlib
import pty
import shutil
import signal
import stat
import subprocess
import tempfile
import termios
import threading
import time
import unittest

PROGRAM = os.environ["ORVANE"]
DEADLINE = 60  # seconds for anything that should come soon; a loaded machine is slow
NOBODY = 65534
FINDER_INFO = "user.com.apple.FinderInfo"
# The system's plain locale under a name of its own, because from some version on the C library passes LANGUAGE over in C.UTF-8 itself.
PLAIN_LOCALE = "/usr/lib/locale/C.utf8"
LOCALE = "en_QQ.UTF-8"


def folder(name, *children, **more):
    return {"filename": name, "isFolder": True, "children": list(children), **more}


def file(name, **more):
    return {"filename": name, "isFolder": False, **more}


def preset(label, name, *children, **more):
    return {"label": label, "directoryName": name, "fileHierarchy": {"isFolder": True, "children": list(children)}, **more}


class Result:
    def __init__(self, status, out, err):
        self.status = status
        self.out = out
        self.err = err

    @property
    def json(self):
        return json.loads(self.out)


class Terminal:
    """The program on a terminal of its own; its standard output goes to a pipe, or with `whole` there as well."""

    def __init__(self, words, env, cwd, whole=False):
        self._master, slave = pty.openpty()

        def take_terminal():
            os.setsid()
            fcntl.ioctl(0, termios.TIOCSCTTY, 0)

        self._process = subprocess.Popen(words, stdin=slave, stdout=slave if whole else subprocess.PIPE, stderr=slave, env=env, cwd=cwd,
                                         preexec_fn=take_terminal)
        os.close(slave)
        self._shown = b""
        self._over = False
        self._changed = threading.Condition()
        self._reader = threading.Thread(target=self._read)
        self._reader.start()

    def _read(self):
        more = b"..."
        while more:
            try:
                more = os.read(self._master, 4096)
            except OSError:  # nobody has the terminal any more
                more = b""
            with self._changed:
                self._shown += more
                self._over = not more
                self._changed.notify_all()

    @property
    def shown(self):
        return self._shown.decode()

    def read_until(self, text):
        with self._changed:
            self._changed.wait_for(lambda: text.encode() in self._shown or self._over, DEADLINE)
            if text.encode() not in self._shown:
                raise AssertionError(f"no {text!r}, only {self._shown!r}")

    def type(self, text):
        os.write(self._master, text.encode())

    def finish(self):
        out, _ = self._process.communicate(timeout=DEADLINE)
        self._reader.join(DEADLINE)
        os.close(self._master)
        return Result(self._process.returncode, (out or b"").decode(), self.shown)

    def end(self):
        """For a test that failed meanwhile: neither the program nor the reader of its terminal outlives it."""
        if self._process.poll() is None:
            os.killpg(self._process.pid, signal.SIGKILL)  # with a tracer go those whom it follows
            self._process.communicate()
        self._reader.join(DEADLINE)


class RunningScript:
    """A script that tells of itself: its process, the one that started it, and whether somebody is still at it. Ended with the test."""

    def __init__(self, test, *lines):
        folder_of_its_own = tempfile.mkdtemp(dir=test.root)
        life = os.path.join(folder_of_its_own, "life")
        os.mkfifo(life)
        self._life = os.open(life, os.O_RDONLY | os.O_NONBLOCK)  # at its end when nobody is at it
        self._told = os.path.join(folder_of_its_own, "told")
        self._test = test
        tell = f"tell() {{ echo $* > '{self._told}.new'; mv '{self._told}.new' '{self._told}'; }}"
        self.text = "\n".join(("#!/bin/sh", f"exec 9> '{life}'", tell, *lines, ""))
        test.addCleanup(self._end)

    def _end(self):
        if os.path.exists(self._told) and self.is_there():
            os.kill(self.told()[0], signal.SIGKILL)
        os.close(self._life)

    def told(self):
        """Numbers that it has told, once it has; the first one is the process that goes on."""
        self._test.wait_for(lambda: os.path.exists(self._told))
        with open(self._told, encoding="ascii") as told:
            return [int(number) for number in told.read().split()]

    def is_there(self):
        try:
            return os.read(self._life, 1) != b""
        except BlockingIOError:
            return True


class OrvaneTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        memory = "/dev/shm"
        self.root = tempfile.mkdtemp(prefix="orvane-", dir=memory if os.access(memory, os.W_OK) else None)
        self.addCleanup(self._remove)
        self.home = self._make("home")
        self.target = self._make("target")
        self.data = os.path.join(self.home, ".local/share/Orvane")
        self.scripts = os.path.join(self.data, "Scripts")
        self.contents = os.path.join(self.data, "File Content")
        self.preferences = os.path.join(self.home, "Library/Preferences/org.orvane.ORVPrefPane.plist")
        locales = self._make("locales")
        os.symlink(PLAIN_LOCALE, os.path.join(locales, LOCALE.replace("UTF-8", "utf8")))
        self.env = {"HOME": self.home, "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LOCPATH": locales, "LC_ALL": LOCALE}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"):
            if name in os.environ:
                self.env[name] = os.environ[name]

    def _make(self, name):
        path = os.path.join(self.root, name)
        os.mkdir(path, 0o755)
        return path

    def _remove(self):
        for at, folders, _ in os.walk(self.root):
            for name in folders:
                path = os.path.join(at, name)
                with contextlib.suppress(OSError):  # what is too deep for a path is removed all the same
                    if not os.path.islink(path):
                        os.chmod(path, 0o700)
        shutil.rmtree(self.root)

    # What the program finds.

    def write_bytes(self, path, content, mode=0o644):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as out:
            out.write(content)
        os.chmod(path, mode)

    def write_presets(self, *presets, binary=False, **more):
        """The preferences: presets, and any other keys."""
        domain = {"ORVPresets": list(presets), **more}
        form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        self.write_bytes(self.preferences, plistlib.dumps(domain, fmt=form))

    def write_script(self, name, text, mode=0o755):
        self.write_bytes(os.path.join(self.scripts, name), text.encode(), mode)

    def write_content(self, name, content):
        self.write_bytes(os.path.join(self.contents, name), content)

    def counters(self):
        with open(self.preferences, "rb") as domain:
            return plistlib.load(domain).get("ORVAutomaticVars", {})

    def log(self):
        """The entries of the log without their time stamps."""
        try:
            with open(os.path.join(self.home, ".local/state/orvane/log"), encoding="utf-8") as log:
                return [line.rstrip("\n").split(" ", 1)[1] for line in log]
        except FileNotFoundError:
            return []

    # Running it.

    def run_orvane(self, *words, env=None, cwd=None, user=None, errors="strict"):
        done = subprocess.run([PROGRAM, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env={**self.env, **(env or {})}, cwd=cwd or self.target, timeout=DEADLINE, user=user,
                              group=user, extra_groups=[] if user is not None else None)
        return Result(done.returncode, done.stdout.decode(errors=errors), done.stderr.decode(errors=errors))

    def create(self, *words, **more):
        return self.run_orvane("create", *words, **more)

    def on_terminal(self, *words, env=None, slowly=(), whole=False):
        """On a terminal; `slowly` holds the words of a tracer that holds system calls up."""
        terminal = Terminal([*slowly, PROGRAM, *words], {**self.env, "TERM": "xterm", **(env or {})}, self.target, whole)
        self.addCleanup(terminal.end)
        return terminal

    def run_without_rights(self, *words):
        """Runs it as an ordinary user: as nobody, who owns everything here, when the tests run as root."""
        if os.geteuid() != 0:
            return self.run_orvane(*words)
        for at, folders, files in os.walk(self.root):
            for name in ["."] + folders + files:
                os.chown(os.path.join(at, name), NOBODY, NOBODY, follow_symlinks=False)
        return self.run_orvane(*words, user=NOBODY)

    # What it left.

    def in_target(self, *parts):
        return os.path.join(self.target, *parts)

    def listing(self, path=None):
        """Everything below a folder, relative, folders with a slash, in byte order."""
        top = os.fsencode(path or self.target)
        found = []
        for at, folders, files in os.walk(top):
            for name in folders:
                found.append(os.path.relpath(os.path.join(at, name), top) + b"/")
            for name in files:
                found.append(os.path.relpath(os.path.join(at, name), top))
        return sorted(os.fsdecode(name) for name in found)

    def snapshot(self, path):
        """Everything that can be seen of a folder and what is below it."""
        seen = {}
        for at, folders, files in os.walk(path):
            for name in ["."] + folders + files:
                item = os.path.join(at, name)
                status = os.lstat(item)
                content = self.content(item) if stat.S_ISREG(status.st_mode) else None
                seen[os.path.normpath(item)] = (status.st_mode, status.st_ino, status.st_mtime_ns, status.st_size, content,
                                                os.listxattr(item, follow_symlinks=False))
        return seen

    @staticmethod
    def content(path):
        with open(path, "rb") as opened:
            return opened.read()

    def mode(self, *parts):
        return stat.S_IMODE(os.stat(self.in_target(*parts)).st_mode)

    def label(self, *parts):
        try:
            information = os.getxattr(self.in_target(*parts), FINDER_INFO)
        except OSError:
            return 0
        return (information[9] >> 1) & 7

    def wait_for(self, condition):
        deadline = time.monotonic() + DEADLINE
        while not condition():
            self.assertLess(time.monotonic(), deadline, "waited too long")
            time.sleep(0.005)

    def assertMade(self, result, name):
        self.assertEqual((result.status, result.err), (0, ""))
        self.assertEqual(result.out, self.in_target(name) + "\n")
        self.assertTrue(os.path.isdir(self.in_target(name)))

    def assertNothingMade(self):
        self.assertEqual(os.listdir(self.target), [])
