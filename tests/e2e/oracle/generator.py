"""Random presets, answers, counters and content stores, leaning towards the corners where rules differ.

Everything is drawn from one `random.Random`, so that a seed always gives the same cases.
"""

import datetime
import os
import plistlib
import socket

VARIABLES = (
    "a", "b", "A", "Project", "project", " Project ", "job no", "Job-No", "auto", "AutoJob", "autojob", "AUTO_JOB",
    "Auto b", "myauto", "a{b", "x}y", "a_b", "a:b", "a/b", "straße", "ﬁlm", "日本", "e\u0301", "é", "\U0001f600", "%d",
    "%@", "x=y", "ı", "{", "}", "\\", " ", ".", "__", "job_no", "ŉ", "-x",
)  # fmt: skip
CALM = ("x", "Job ", "-", "_", "01", "Footage", "Audio", "é", "日", ".mov", "A", "z z")
NASTY = (
    "", ".", "..", "~", "-", "%", "%d", "%@", "%s", "%%", "100% sure", "%5d", "% d", " ", "   ", "e\u0301", "עברית",
    "\u202eabc", "\U0001f600", "\U0001f468\u200d\U0001f469", "\t", "\n", "a:b", "a/b", "/", ":", "//", "\\", "\\\\",
    "\\{", "\\}", "}", "{}", "\\{a}", "\\{a\\}", "{a{b}", "{a\\}b}", "\x01", "\x7f", "&<>\"'", "\u0085", "{a",
    "}{", "{\\{}", "{ }", "a/..", "./a", "a/", "$HOME", "`id`", "*", "?", "\ufeff", "\ufffd", "'", '"', "%y", "%.2f",
    "%-4d|", "%ld",
)  # fmt: skip
DEADLY = ("{", "a{", "{b\\}")
STORED = (
    "0", "1", "41", "12b", " 7", "  -3x", "A1", "", "2147483647", "2147483646", "-2147483648", "4294967295",
    "99999999999999999999", "-99999999999999999999", "9223372036854775807", "9223372036854775806", "-5", "+5", "+-5",
    "-", "- 5", "007", "0x10", " ", "\t9", "1.5", "1e3", "é1", "1é", "{a}", "x/y",
)  # fmt: skip
RIGHT_COLORS = ("gray", "green", "purple", "blue", "yellow", "red", "orange")
WRONG_COLORS = ("Red", "grey", "", "orange ", " red", "RED", "none", 6, True, ["red"])
OPEN_MODES = ("755", "700", "750", "777", "711")
RIGHT_MODES = OPEN_MODES + ("644", "600", "664")
HARSH_MODES = ("555", "000", "444", "111", "222", "077")
WRONG_MODES = (
    "75", "0755", "", "7", "7555", "755 ", "rwx-", True, ["755"], "\U0001f60075", "75\U0001f600", "\U0001f600\U0001f600",
    "e\u0301755",
)  # fmt: skip
ODD_MODES = (
    "abc", "999", "7a5", "7x5", " 75", "+75", "-1 ", "-77", "75é", "é75", "7\U0001f600", "\U0001f6007", "７５５", "7 5",
    "\t75", "7\n5", "0x7", "   ", "+-7", "08 ", "e\u03017", 755, 644, 75, 999, b"755",
)  # fmt: skip
CONTENTS = (
    "plain.txt", "empty", "script.sh", "secret", "labelled", "tagged", "sub/inner.txt", "sub", "link", "chain", "todir",
    "dangling", "cycle", "tofifo", "fifo", "socket", "missing", "plain.txt/", "/plain.txt", "sub//inner.txt",
    "linkdir/inner.txt", "", "big", "readonly", "unreadable", "n\u00e4me {a}.txt", "5", "{a}", "sub/missing", "hollow",
)  # fmt: skip
SCRIPTS = (
    "ok.sh", "fail.sh", "Reveal in FINDER.sh", "noexec.sh", "missing.sh", "plain", "badinterpreter.sh", "folder",
    "killed.sh", "sub/ok.sh", "ok.sh/", "50%d.sh", "%@missing%s.sh", "/",
)  # fmt: skip
# Exit statuses of the scripts that can start; 128 and the signal's number for one that a signal ended.
SCRIPT_STATUSES = {"ok.sh": 0, "Reveal in FINDER.sh": 0, "50%d.sh": 0, "fail.sh": 3, "killed.sh": 137}
TRUTHS = (True, True, True, True, 1, "YES", "1", "true", " t", 2, -1, 0.5, "007", "-4")
FALSEHOODS = (False, False, False, False, 0, "NO", "", "0", "x", [], {"a": 1}, b"1", 0.0, "-")


class Generator:
    """Draws cases. Without privilege only modes that do not lock an ordinary user out are used."""

    def __init__(self, rng, privileged):
        self.rng = rng
        self.privileged = privileged
        self.wildness = 0.1
        self.nodes_left = 0
        self.right_modes = RIGHT_MODES if privileged else OPEN_MODES
        self.modes = self.right_modes + (HARSH_MODES + ODD_MODES if privileged else ()) + WRONG_MODES

    def chance(self, probability):
        return self.rng.random() < probability

    # Texts

    def variable(self):
        name = self.rng.choice(VARIABLES[:14] if self.chance(0.7) else VARIABLES)
        return "{" + name.replace("{", "\\{" if self.chance(0.5) else "{").replace("}", "\\}") + "}"

    def text(self, longest=4):
        parts = []
        for _ in range(self.rng.randint(1, longest)):
            if self.chance(0.3):
                parts.append(self.variable())
            elif self.chance(self.wildness):
                parts.append(self.rng.choice(DEADLY) if self.chance(0.02) else self.rng.choice(NASTY))
            else:
                parts.append(self.rng.choice(CALM) + (str(self.rng.randint(0, 99)) if self.chance(0.5) else ""))
        if self.chance(self.wildness / 20):
            filler = self.rng.choice(("x", "é", "\U0001f600"))
            size = self.rng.choice((254, 255, 256))
            text = "".join(parts)
            missing = max(0, size - len(text.encode()))
            parts.append(filler * (missing // len(filler.encode())) + "y" * (missing % len(filler.encode())))
        return "".join(parts)

    def value(self):
        if self.chance(0.5):
            return self.rng.choice(("Acme", "Film", "7", "x", "日本", "001"))
        if self.chance(0.3):
            return self.variable()
        if self.chance(0.02):
            return self.rng.choice(("x", "\udcff", "v")) * self.rng.choice((1, 200, 255, 256))
        return self.rng.choice(NASTY).replace("\0", "")

    # Presets

    def node(self, depth):
        self.nodes_left -= 1
        node = {}
        is_folder = self.chance(0.5) and depth > 0
        if not self.chance(self.wildness / 60):
            node["filename"] = self.rng.randint(0, 20) if self.chance(self.wildness / 20) else self.text()
        if is_folder or not self.chance(0.3):
            node["isFolder"] = self.rng.choice(TRUTHS if is_folder else FALSEHOODS)
        if self.chance(0.4):
            node["color"] = self.rng.choice(RIGHT_COLORS if self.chance(0.7) else WRONG_COLORS)
        if self.chance(0.5):
            node["permissions"] = self.rng.choice(self.right_modes if self.chance(0.4) else self.modes)
        if self.chance(0.5 if not is_folder else 0.05):
            node["contentFilename"] = self.rng.choice(CONTENTS)
        if is_folder or self.chance(0.05):
            node["children"] = self.children(depth - 1)
        return node

    def children(self, depth):
        if self.chance(self.wildness / 30):
            return self.rng.choice(("none", 3, {"filename": "x"}, True))
        result = []
        for _ in range(self.rng.randint(0, 5)):
            if self.nodes_left <= 0:
                break
            if self.chance(self.wildness / 100):
                result.append(self.rng.choice(("text", 7, [], True)))
            elif result and isinstance(result[-1], dict) and self.chance(0.08):
                again = dict(self.rng.choice([child for child in result if isinstance(child, dict)]))
                if self.chance(0.3):
                    again["isFolder"] = not again.get("isFolder")
                elif self.chance(0.3) and isinstance(again.get("filename"), str):
                    again["filename"] = again["filename"].swapcase()
                result.append(again)
            else:
                result.append(self.node(depth))
        return result

    def deep(self, levels):
        node = {"filename": "bottom {auto}", "contentFilename": "plain.txt"}
        for level in range(levels):
            node = {"filename": f"{level:03d} " + "d" * self.rng.randint(0, 60), "isFolder": True, "children": [node]}
            if self.chance(0.1):
                node["color"] = self.rng.choice(RIGHT_COLORS)
        return node

    def preset(self):
        self.wildness = self.rng.choice((0.02, 0.1, 0.1, 0.5))
        self.nodes_left = self.rng.choice((3, 12, 40))
        preset = {"label": self.text()}
        if not self.chance(0.03):
            preset["directoryName"] = "" if self.chance(0.03) else self.text()
        if self.chance(0.01):
            preset["directoryName"] = self.rng.choice((12, b"data", True, ["x"], "{auto}", "/", ".", ".."))
        if self.chance(0.03):
            preset["fileHierarchy"] = self.rng.choice(("text", [], 5, {}, {"children": []}))
        elif not self.chance(0.05):
            root = {"children": self.children(self.rng.randint(1, 6)), "isFolder": self.rng.choice(TRUTHS + FALSEHOODS)}
            if self.chance(0.3):
                root.update(filename=self.text(), color="red", permissions="700", contentFilename="plain.txt")
            preset["fileHierarchy"] = root
        if self.chance(0.01):
            preset["fileHierarchy"] = {"children": [self.deep(300)]}
        if self.chance(0.2):
            preset["scriptFile"] = self.rng.choice(SCRIPTS) if not self.chance(0.05) else self.rng.choice(("", 7, True))
        return preset

    # Preferences

    def counters(self):
        result = {}
        for name in ("auto", "AutoJob", "autojob", "AUTO_JOB", "Auto b", "myauto", "autoold"):
            if self.chance(0.6):
                result[name] = self.rng.choice(STORED)
        if self.chance(0.2):
            result[self.rng.choice(("auto", "AutoJob"))] = self.rng.choice((41, 2147483647, True, b"7", ["1"], {"a": "1"}, -1))
        if self.chance(0.3):
            result["Autofremd"] = self.rng.choice((5, 1.5, datetime.datetime(2001, 2, 3, 4, 5, 6), b"\0\xff", ["x", 1]))
        return result

    def preferences(self, presets):
        binary = self.chance(0.5) or not _fits_xml(presets)
        domain = {
            "ORVShowMenubar": True,
            "ORVHotKeyCode": 35,
            "ORVPresets": presets,
            "Foreign": {"date": datetime.datetime(2012, 12, 31, 23, 59, 59), "data": bytes(range(256)), "real": 0.1, "é": ["x"]},
            "Large": 2**63 + 5,
        }
        if binary:
            domain["Identifier"] = plistlib.UID(7)
        if not self.chance(0.15):
            domain["ORVAutomaticVars"] = self.counters()
        if self.chance(0.03):
            domain["ORVAutomaticVars"] = self.rng.choice(("text", [], 5))
        binary = binary or not _fits_xml(domain)
        return plistlib.dumps(domain, fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML, sort_keys=self.chance(0.5))

    # What surrounds a run

    def settings(self, names):
        """(name, value) pairs for --set."""
        result = []
        for name in dict.fromkeys(names):
            if self.chance(0.25):
                continue
            for _ in range(self.rng.choice((1, 1, 1, 2, 3))):
                value = self.value()
                if name.lower().startswith("auto"):
                    value = value.replace("\udcff", "v").replace("\x01", "v")  # a property list's text cannot hold them
                result.append((name, value))
        return result

    def bystanders(self, folder, names):
        """Items that already stand in the parent folder, some under names that the run will want."""
        for name in names:
            raw = name.encode("utf-8", "surrogateescape")
            path = os.path.join(os.fsencode(folder), raw)
            if not self.chance(0.05) or not _plain_name(raw) or os.path.lexists(path):
                continue
            kind = self.rng.randint(0, 3)
            if kind == 0:
                os.mkdir(path)
                _write(os.path.join(path, b"kept"), b"kept", 0o644)
            elif kind == 1:
                _write(path, b"kept", 0o644)
            elif kind == 2:
                os.symlink(b"nowhere", path)
            else:
                os.mkdir(path, 0o700)


def _plain_name(raw):
    return 0 < len(raw) <= 255 and raw not in (b".", b"..") and b"/" not in raw and b"\0" not in raw


def _fits_xml(value):
    """Whether XML can carry every text inside: no control characters and no lone halves of pairs."""
    try:
        text = plistlib.dumps(value, fmt=plistlib.FMT_XML)
        return plistlib.loads(text) == value
    except (ValueError, TypeError, UnicodeEncodeError):
        return False


def _write(path, data, mode):
    with open(path, "wb") as stream:
        stream.write(data)
    os.chmod(path, mode)


def make_content_store(folder, privileged, attributes):
    """Fills the folder "File Content" with one of everything."""
    os.makedirs(os.path.join(folder, "sub"))

    def put(name, data, mode=0o644):
        _write(os.path.join(folder, name), data, mode)

    put("plain.txt", b"plain\n")
    put("empty", b"")
    put("script.sh", b"#!/bin/sh\n", 0o755)
    put("secret", b"secret", 0o600)
    put("labelled", b"labelled")
    put("tagged", b"tagged")
    put("sub/inner.txt", b"inner", 0o640)
    put("sub/tool", b"tool", 0o711)
    put("big", bytes(range(256)) * 800)
    put("n\u00e4me {a}.txt", b"braces")
    put("5", b"five")
    with open(os.path.join(folder, "hollow"), "wb") as stream:
        stream.seek(100_000)
        stream.write(b"end")
    put("readonly", b"readonly", 0o444 if privileged else 0o644)
    put("unreadable", b"unreadable", 0o000)
    os.mkdir(os.path.join(folder, "sub", "below"), 0o750)
    for name, target in (
        ("link", "plain.txt"), ("chain", "link"), ("todir", "sub"), ("dangling", "nothing"), ("cycle", "cycle"),
        ("tofifo", "fifo"), ("linkdir", "sub"), ("sub/inside", "inner.txt"),
    ):  # fmt: skip
        os.symlink(target, os.path.join(folder, name))
    os.mkfifo(os.path.join(folder, "fifo"))
    with socket.socket(socket.AF_UNIX) as server:
        here = os.getcwd()
        os.chdir(folder)
        server.bind("socket")
        os.chdir(here)
    if attributes:
        os.setxattr(os.path.join(folder, "labelled"), "user.com.apple.FinderInfo", b"\xff" * 32)
        os.setxattr(os.path.join(folder, "labelled"), "user.note", b"\0note")
        os.setxattr(os.path.join(folder, "tagged"), "user.xdg.tags", b"Work,Red,Home")
        os.setxattr(os.path.join(folder, "sub"), "user.note", b"folder")
    for number, name in enumerate(sorted(os.listdir(folder))):
        path = os.path.join(folder, name)
        if os.path.isfile(path) and not os.path.islink(path):
            os.utime(path, ns=(10**18 + number, 10**18 + 123_456_789 * number))


def make_scripts(folder):
    """Fills the folder "Scripts". Those that start write their environment beside themselves."""
    os.makedirs(os.path.join(folder, "sub"))
    os.mkdir(os.path.join(folder, "folder"))
    dump = b'#!/bin/sh\ncat /proc/$$/environ > "$0.env"\n'

    def put(name, data, mode=0o755):
        _write(os.path.join(folder, name), data, mode)

    for name in ("ok.sh", "Reveal in FINDER.sh", "sub/ok.sh", "50%d.sh"):
        put(name, dump)
    put("fail.sh", dump + b"echo oops >&2\nexit 3\n")
    put("killed.sh", dump + b"kill -9 $$\n")
    put("noexec.sh", dump, 0o644)
    put("plain", b"exit 0\n")
    put("badinterpreter.sh", b"#!/no/such/interpreter\n")
