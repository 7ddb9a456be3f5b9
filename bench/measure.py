"""File systems to measure on, starting programs, and rounds: paired runs in rotating order with a fresh target each."""

import ctypes
import os
import shutil
import statistics
import subprocess
import tempfile

CLEAN_PATH = "/usr/bin:/bin:/usr/sbin:/sbin"
CLONE_NEWNS = 0x00020000  # linux/sched.h
PEER_ROUNDS = 7
PEER_SECONDS = 20.0
IMAGE_SIZES = {"ext4": "8G", "xfs": "8G"}


class CannotMount(Exception):
    """A file system of that kind cannot be had here; the text says why."""


def clean_environment(more=None):
    """Nothing of the caller's: start-up hooks of shells and interpreters, aliases and caches slow some methods unfairly."""
    return {"PATH": CLEAN_PATH, "LANG": "C.UTF-8", "HOME": "/nonexistent", **(more or {})}


def private_mounts():
    """Keeps our mounts out of everybody else's sight, and takes them away when this process ends, however it ends."""
    if os.geteuid() != 0:
        return
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.unshare(CLONE_NEWNS) == 0:
        subprocess.run(["mount", "--make-rprivate", "/"], check=False, stderr=subprocess.DEVNULL)


class FileSystems:
    """Scratch file systems by kind, each mounted when first asked for and unmounted at the end."""

    def __init__(self):
        self.root = tempfile.mkdtemp(prefix="orvane-bench-", dir="/dev/shm")
        self._made = {}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for place in reversed(list(self._made.values())):
            subprocess.run(["umount", place], check=False, stderr=subprocess.DEVNULL)
        shutil.rmtree(self.root, ignore_errors=True)

    def folder(self, kind):
        """An empty file system of that kind ("tmpfs", "ext4", "xfs"), mounted. Raises CannotMount."""
        if kind not in self._made:
            self._made[kind] = self._make(kind)
        return self._made[kind]

    def release(self, kind):
        """Gives the memory of that file system back."""
        place = self._made.pop(kind, None)
        if place is not None:
            subprocess.run(["umount", place], check=True)
            if os.path.exists(place + ".image"):
                os.unlink(place + ".image")

    def _make(self, kind):
        place = os.path.join(self.root, kind)
        os.mkdir(place)
        if os.geteuid() != 0:
            if kind == "tmpfs":
                return place  # /dev/shm itself is one
            raise CannotMount(f"{kind}: only root can mount an image")
        if kind == "tmpfs":
            self._run("mount", "-t", "tmpfs", "-o", "size=90%,nr_inodes=4m", "tmpfs", place)
            return place
        image = place + ".image"
        self._run("truncate", "-s", IMAGE_SIZES[kind], image)
        # The tables are written at once: what is left to a kernel thread after mounting would run into the first measurements.
        eager = ["-F", "-E", "lazy_itable_init=0,lazy_journal_init=0"] if kind == "ext4" else []
        self._run("mkfs." + kind, "-q", *eager, image)
        self._run("mount", "-o", "loop", image, place)
        return place

    @staticmethod
    def _run(*words):
        try:
            subprocess.run(words, check=True, capture_output=True, text=True)
        except (OSError, subprocess.CalledProcessError) as error:
            raise CannotMount(f"{' '.join(words)}: {getattr(error, 'stderr', '') or error}") from error


class Run:
    """What one run of a program cost: seconds of wall and processor time (user: the program's own part of it), MB of peak
    memory, exit status."""

    __slots__ = ("wall", "cpu", "user", "memory", "status", "errors")

    def __init__(self, line, errors):
        wall, user, system, memory, self.status = (int(word) for word in line.split())
        self.wall, self.cpu, self.user, self.memory, self.errors = wall / 1e9, (user + system) / 1e9, user / 1e9, memory / 1024, errors


class Launcher:
    """Starts programs through the small static `launch`, whose report is read here."""

    def __init__(self, program):
        self.program = program
        self.floor = min(self.run(["/bin/true"]).memory for _ in range(5))

    def run(self, command, environment=None, folder="/", descriptors=0):
        reader, writer = os.pipe()
        with tempfile.TemporaryFile(dir="/dev/shm") as errors:
            done = subprocess.run(
                [self.program, str(writer), str(descriptors), *command],
                env=clean_environment(environment), cwd=folder, pass_fds=[writer], umask=0o022,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors, check=False)
            os.close(writer)
            with os.fdopen(reader) as report:
                line = report.read()
            errors.seek(0)
            text = errors.read(4000).decode("utf-8", "replace")
        if done.returncode != 0 or not line:
            raise RuntimeError(f"{command[0]} could not be started: {text}")
        return Run(line, text)


def remove_tree(path):
    # rm walks with descriptors, so it also takes trees whose paths are too long to name.
    subprocess.run(["rm", "-rf", "--", path], check=True)


def settle(folder):
    """Leaves nothing for later: the writing back of one run must not fall into the next one's time."""
    subprocess.run(["sync", "-f", folder], check=False)


class Targets:
    """Fresh folders to create in, on one file system; removed outside the measured time."""

    def __init__(self, folder):
        self._folder, self._count = folder, 0

    def fresh(self):
        self._count += 1
        path = os.path.join(self._folder, f"target-{self._count}")
        os.mkdir(path)
        return path

    def remove(self, path):
        remove_tree(path)
        settle(self._folder)


class Series:
    """Results of one method, one run for each round in which it took part (None elsewhere)."""

    def __init__(self, rounds):
        self.runs = [None] * rounds

    def _values(self, field):
        return [getattr(run, field) for run in self.runs if run is not None]

    def median(self, field):
        return statistics.median(self._values(field))

    def peak_memory(self):
        return max(self._values("memory"))

    def is_enough(self):
        return self.count() >= PEER_ROUNDS or sum(self._values("wall")) > PEER_SECONDS

    def count(self):
        return len(self._values("wall"))

    def ratios(self, other, field="wall"):
        """Ratios to another series, round by round: what slows both in a round cancels out."""
        return [getattr(mine, field) / max(getattr(theirs, field), 1e-9)
                for mine, theirs in zip(self.runs, other.runs) if mine is not None and theirs is not None]


def measure_rounds(launcher, methods, targets, rounds, say):
    """Runs every method once a round, the order turning by one each time. Peers, whose ratios are large, drop out after
    PEER_ROUNDS rounds or PEER_SECONDS seconds. Returns (series by method name, load averages)."""
    series = {method.name: Series(rounds) for method in methods}
    loads = []
    for number in range(rounds):
        shift = number % len(methods)
        for method in methods[shift:] + methods[:shift]:
            mine = series[method.name]
            if method.is_peer and mine.is_enough():
                continue
            target = targets.fresh()
            run = launcher.run(method.command(target), method.environment)
            targets.remove(target)
            if run.status not in method.good_statuses:
                raise RuntimeError(f"{method.name} ended with {run.status} in round {number + 1}: {run.errors.strip()}")
            mine.runs[number] = run
        loads.append(os.getloadavg()[0])
        say(f"  round {number + 1} of {rounds}, load {loads[-1]:.2f}")
    return series, loads
