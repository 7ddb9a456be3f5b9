"""A home folder, presets and a place to create in, and what must hold there whatever fails.

Everything stands in memory (/dev/shm) where that is possible."""

import os
import plistlib
import re
import shutil
import signal
import stat
import subprocess
import tempfile

DEADLINE = 60  # seconds; a run takes milliseconds, so that who needs longer hangs
NUMBER = 6  # the counter before a run
OLD = {"AutoNo": str(NUMBER), "AutoOther": "41"}
FOREIGN_KEYS = {"ORVShowMenubar": True, "ORVHotKeyCode": 5, "Foreign": [1, 2.5, b"\0\1", {"deep": "text"}]}
LARGE = 300 * 1024  # more than is kept in memory for copying
SCRIPT = '#!/bin/sh\nset -e\necho "$P_PROJECT $P_AUTONO" > "$ORV_ROOT_PATH/written by the script"\n'
WRITTEN = "written by the script"
HIDDEN = re.compile(r"\.orvane-\d+-\d+$")  # a large copy on its way, where files without names do not exist
TEMPORARY = ".orvane-preferences-0.tmp"

TITLES = {
    "Directory already exists",
    "ORV wasn't able to create the preset",
    "Preferences are in use",
    "Preferences cannot be read",
    "Script file not executable",
    "Script file not found",
    "Script reported errors",
}
FAILED = "ORV wasn't able to create the preset, because a file creation failed: Unable to create "
NOT_STORED = "orvane: warning: the last values of automatic variables were not stored; the log says why\n"


def folder(name, *children, **more):
    return {"filename": name, "isFolder": True, "children": list(children), **more}


def file(name, **more):
    return {"filename": name, "isFolder": False, **more}


# Nine nodes: contents from memory, of a large file, of a folder and behind a link; labels, modes, a counter, a script.
PRESET = {
    "label": "P",
    "directoryName": "{Project} {AutoNo}",
    "scriptFile": "after.sh",
    "fileHierarchy": {
        "isFolder": True,
        "children": [
            folder("Docs", file("Letter {Project}", contentFilename="letter", color="blue"), file("Notes", permissions="640"),
                   color="red", permissions="750"),
            folder("Media", file("clip", contentFilename="clip", permissions="600"), file("kit", contentFilename="kit")),
            file("plain"),
            file("linked", contentFilename="link", color="green"),
        ],
    },
}


def names_of(project):
    """What is in a whole folder, but for what the script adds; folders end in a slash."""
    return {"Docs/", f"Docs/Letter {project}", "Docs/Notes", "Media/", "Media/clip", "Media/kit/", "Media/kit/one", "Media/kit/in/",
            "Media/kit/in/two", "Media/kit/to one", "plain", "linked"}


def snapshot(path):
    """Everything that can be seen of a folder and what is below it, by relative path."""
    seen = {}
    for at, folders, files in os.walk(path):
        for name in folders + files:
            item = os.path.join(at, name)
            status = os.lstat(item)
            content = None
            if stat.S_ISREG(status.st_mode):
                with open(item, "rb") as opened:
                    content = opened.read()
            elif stat.S_ISLNK(status.st_mode):
                content = os.readlink(item)
            key = os.path.relpath(item, path) + ("/" if stat.S_ISDIR(status.st_mode) else "")
            times = status.st_mtime_ns if content is not None else None
            seen[key] = (stat.S_IFMT(status.st_mode), stat.S_IMODE(status.st_mode), times, content)
    return seen


class Workshop:
    """The folders of one run after the other."""

    def __init__(self, program):
        self.program = program
        memory = "/dev/shm"
        self.root = tempfile.mkdtemp(prefix="orvane-faults-", dir=memory if os.access(memory, os.W_OK) else None)
        self.home = os.path.join(self.root, "home")
        self.target = os.path.join(self.root, "target")
        self.data = os.path.join(self.home, ".local/share/Orvane")
        self.script = os.path.join(self.data, "Scripts/after.sh")
        self.state = os.path.join(self.home, ".local/state/orvane")
        self.preferences = os.path.join(self.home, "Library/Preferences/org.orvane.ORVPrefPane.plist")
        self.runtime = os.path.join(self.root, "run")
        self.env = {"XDG_RUNTIME_DIR": self.runtime, "HOME": self.home, "PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LC_ALL": "C.UTF-8"}

    def close(self):
        shutil.rmtree(self.root)

    def _write(self, path, content, mode=0o644):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as out:
            out.write(content)
        os.chmod(path, mode)

    def prepare(self, binary=False, used=False):
        """Everything anew. `binary`: the form of the preferences; `used`: with the state of earlier runs."""
        for path in (self.home, self.target, self.runtime):
            if os.path.lexists(path):
                shutil.rmtree(path)
        os.mkdir(self.runtime, 0o700)
        if used:
            os.makedirs(os.path.join(self.runtime, "orvane/creations"))
        contents = os.path.join(self.data, "File Content")
        self._write(os.path.join(contents, "letter"), b"dear all\n" * 400)
        self._write(os.path.join(contents, "clip"), bytes(range(256)) * (LARGE // 256))
        self._write(os.path.join(contents, "kit/one"), b"1")
        self._write(os.path.join(contents, "kit/in/two"), b"2")
        os.symlink("one", os.path.join(contents, "kit/to one"))
        os.symlink("letter", os.path.join(contents, "link"))
        self._write(self.script, SCRIPT.encode(), 0o755)
        domain = {"ORVPresets": [PRESET], "ORVAutomaticVars": OLD, **FOREIGN_KEYS}
        form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        self._write(self.preferences, plistlib.dumps(domain, fmt=form), 0o640)
        if used:
            self._write(os.path.join(self.state, "log"), b"")
            self._write(os.path.join(self.state, "preferences.lock"), b"", 0o600)
        self._write(os.path.join(self.target, "Foreign/kept"), b"kept")
        self._write(os.path.join(self.target, f"Acme {NUMBER}/kept"), b"kept")
        self.support = snapshot(self.data)

    def words(self, project):
        return [self.program, "create", "0", "--set", f"Project={project}", "--no-input", "--no-open"]

    def run(self, words):
        """Status (negative: the signal; None: it hung), standard output and standard error."""
        with subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.env,
                              cwd=self.target, start_new_session=True) as running:
            try:
                out, err = running.communicate(timeout=DEADLINE)
            except subprocess.TimeoutExpired:
                os.killpg(running.pid, signal.SIGKILL)  # the tracer's program, too
                running.communicate()
                return None, "", ""
        return running.returncode, out.decode(errors="replace"), err.decode(errors="replace")

    # What must hold. Each gives a list of complaints.

    def counter(self, complaints):
        """The counter as it stands in the preferences, which must parse and hold everything else."""
        try:
            with open(self.preferences, "rb") as opened:
                domain = plistlib.load(opened)
        except Exception as error:  # pylint: disable=broad-except
            complaints.append(f"the preferences cannot be read: {error!r}")
            return None
        variables = domain.pop("ORVAutomaticVars", {})
        if domain != {"ORVPresets": [PRESET], **FOREIGN_KEYS}:
            complaints.append("other keys of the preferences changed")
        if variables not in (OLD, {**OLD, "AutoNo": str(NUMBER + 1)}):
            complaints.append(f"the counters are neither the old nor the new ones: {variables}")
            return None
        if stat.S_IMODE(os.stat(self.preferences).st_mode) != 0o640:
            complaints.append("the mode of the preferences changed")
        return int(variables["AutoNo"])

    def foreign(self, after_kill=False):
        complaints = []
        for name in (f"Acme {NUMBER}", "Foreign"):
            path = os.path.join(self.target, name)
            if not os.path.isdir(path) or {key: value[3] for key, value in snapshot(path).items()} != {"kept": b"kept"}:
                complaints.append(f"'{name}' was touched")
        if snapshot(self.data) != self.support:
            complaints.append("scripts or contents were touched")
        allowed = {"Library/Preferences/" + os.path.basename(self.preferences), "Library/", "Library/Preferences/", ".local/",
                   ".local/share/", ".local/share/Orvane/", ".local/state/", ".local/state/orvane/"}
        if after_kill:
            allowed.add("Library/Preferences/" + TEMPORARY)
        own = (".local/share/Orvane/", ".local/state/orvane/")
        others = {name for name in snapshot(self.home) if name not in allowed and not name.startswith(own)}
        if others:
            complaints.append(f"left in the home folder: {sorted(others)}")
        return complaints

    def made(self):
        """Names in the place of creation that were not there before."""
        return set(os.listdir(self.target)) - {"Foreign", f"Acme {NUMBER}"}

    def complete(self, name, project, script=True):
        """Complaints about a folder that was reported as made."""
        complaints = []
        seen = snapshot(os.path.join(self.target, name))
        wanted = names_of(project)
        # A content that could not be read or copied gives an empty file, deliberately.
        if seen.get("Media/kit", (0,))[0] == stat.S_IFREG:
            wanted -= {each for each in wanted if each.startswith("Media/kit")}
            wanted.add("Media/kit")
            if seen["Media/kit"][3] != b"":
                complaints.append("half a copy: Media/kit")
        found = set(seen) - {WRITTEN}
        if found != wanted:
            complaints.append(f"'{name}' holds {sorted(found ^ wanted)} too much or too little")
            return complaints
        contents = {f"Docs/Letter {project}": b"dear all\n" * 400, "linked": b"dear all\n" * 400,
                    "Media/clip": bytes(range(256)) * (LARGE // 256), "Docs/Notes": b"", "plain": b""}
        for key, content in contents.items():
            if seen[key][3] not in (content, b""):
                complaints.append(f"half a copy: {key}")
        if script and seen.get(WRITTEN, (0, 0, 0, b""))[3].split(b" ")[0] != project.encode():
            complaints.append("the script did not run")
        return complaints
