"""A user at a desktop: starts the helper, sees the screen, moves the mouse, presses keys.

Runs inside tests/tools/with-desktop.sh. ORVANE_TEST_HELPER and ORVANE_TEST_ORVANE name the programs, ORVANE_TEST_SCREENSHOTS
a folder for pictures. Nothing here sleeps for a fixed time where it could wait for something to be true.
"""

import os
import plistlib
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unittest
from pathlib import Path
from urllib.parse import unquote

LIMIT = 20  # seconds for anything to become true; all of it takes a fraction of one on an idle machine
NAME = "org.orvane.Helper"
WIDTH, HEIGHT = 1280, 800
COMMAND, SHIFT, OPTION, CONTROL = 0x100000, 0x20000, 0x80000, 0x40000


class TimeIsUp(AssertionError):
    pass


def wait(condition, what, limit=LIMIT):
    """The condition's first true value."""
    end = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TimeIsUp(f"waited {limit} seconds for {what}")
        time.sleep(0.02)


def holds(condition, seconds=0.4):
    """Whether the condition stays true for a while: for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(0.02)
    return True


def output(*words):
    result = subprocess.run(words, capture_output=True, text=True, errors="replace", timeout=LIMIT)
    return result.stdout.strip()


def keys(*names):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *names], check=True, timeout=LIMIT)


def type_text(text):
    subprocess.run(["xdotool", "type", "--clearmodifiers", "--delay", "4", text], check=True, timeout=LIMIT)


def move(x, y):
    # Not --sync: where the mouse is there already, that waits 15 seconds for it to leave.
    subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True, timeout=LIMIT)


def click(x, y, button=1):
    move(x, y)
    subprocess.run(["xdotool", "click", str(button)], check=True, timeout=LIMIT)


def active_window():
    """Id of the active window as the window manager says it, 0 for none."""
    found = re.search(r"0x[0-9a-f]+", output("xprop", "-root", "_NET_ACTIVE_WINDOW"))
    return int(found.group(), 16) if found else 0


def title_of(window):
    return output("xdotool", "getwindowname", str(window)) if window else ""


def windows(pattern):
    """Ids of the visible windows whose title matches."""
    return [int(line) for line in output("xdotool", "search", "--onlyvisible", "--name", pattern).split()]


def window(pattern):
    return wait(lambda: windows(pattern), f"a window '{pattern}'")[0]


def gone(pattern):
    wait(lambda: not windows(pattern), f"the window '{pattern}' to go")


def active(pattern):
    """Waits until a window with such a title has the focus."""
    return wait(lambda: re.search(pattern, title_of(active_window())) and active_window(), f"'{pattern}' to be active")


def choose_in_panel(folder):
    """Types a folder's path into the chooser, which has the focus. On a busy machine the list of completions comes up late and takes
    the first Return for itself."""
    panel = active_window()
    type_text(str(folder))
    keys("Return")
    try:
        wait(lambda: active_window() != panel, "the chooser to go", 4)
    except TimeIsUp:
        keys("Return")


def geometry(identifier):
    """x, y, width, height on the screen."""
    values = dict(line.split("=", 1) for line in output("xdotool", "getwindowgeometry", "--shell", str(identifier)).splitlines() if "=" in line)
    return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))


def popup_menu():
    """The window of the menu that is up, if one is: override-redirect windows have no frame and no title of ours."""
    for line in output("xwininfo", "-root", "-children").splitlines():
        found = re.match(r'\s*(0x[0-9a-f]+) .*: \("orvane-helper" .*\)\s+(\d+)x(\d+)\+(-?\d+)\+(-?\d+)', line)
        if found and int(found.group(2)) > 40 and int(found.group(3)) > 40:
            details = output("xwininfo", "-id", found.group(1))
            if "Override Redirect State: yes" in details and "IsViewable" in details:
                return tuple(int(found.group(index)) for index in (4, 5, 2, 3))
    return None


def menu():
    return wait(popup_menu, "the menu to be up")


def screen():
    """The screen's pixels, three bytes each."""
    return subprocess.run(["import", "-window", "root", "-depth", "8", "rgb:-"], capture_output=True, check=True, timeout=LIMIT).stdout


def difference(before, after, top=0):
    """The box (x, y, width, height) around what changed below a line, or None."""
    rows, columns = [], []
    stride = WIDTH * 3
    for y in range(top, HEIGHT):
        one, two = before[y * stride:(y + 1) * stride], after[y * stride:(y + 1) * stride]
        if one != two:
            rows.append(y)
            columns += [x for x in range(WIDTH) if one[x * 3:x * 3 + 3] != two[x * 3:x * 3 + 3]]
    if not rows:
        return None
    return min(columns), min(rows), max(columns) - min(columns) + 1, max(rows) - min(rows) + 1


def screen_with_tray():
    """The screen as soon as the tray at its bottom is drawn, the helper's icon not yet in it. Some are drawn with their first icon."""

    def strip():
        return screen()[(HEIGHT - 40) * WIDTH * 3:]

    if os.environ["DESKTOP_TRAY"] == "trayer":
        return screen()
    wait(lambda: any(strip()), "the tray to be drawn")
    wait(lambda: (lambda now: holds(lambda: strip() == now, 0.3))(strip()), "the tray to be ready")
    return screen()


def stays(before):
    """Whether what appeared at the bottom of the screen is at its place: trays grow and move for a new icon."""
    place = difference(before, screen(), HEIGHT - 40)
    return place is not None and holds(lambda: difference(before, screen(), HEIGHT - 40) == place, 0.4)


def open_menu(before, place):
    """Clicks the icon, and once more where the tray was not ready for the first click."""

    def is_open():
        return (difference(before, screen()) or (0, 0, 0, 0))[3] > 60

    click(*place())
    try:
        return wait(is_open, "the menu to be open", 8)
    except TimeIsUp:
        click(*place())
        return wait(is_open, "the menu to be open")


def click_for_menu(place):
    """Clicks the icon, and once more where the tray was not ready for the first click; the menu."""
    click(*place())
    try:
        return wait(popup_menu, "the menu to be up", 8)
    except TimeIsUp:
        click(*place())
        return menu()


def picture(name):
    """Leaves a picture of the screen in the build folder."""
    folder = os.environ.get("ORVANE_TEST_SCREENSHOTS")
    if folder:
        Path(folder).mkdir(parents=True, exist_ok=True)
        subprocess.run(["import", "-window", "root", str(Path(folder) / f"{name}.png")], check=True, timeout=LIMIT)


def bus_call(method, *arguments, destination=NAME, path="/org/orvane/Helper"):
    return subprocess.run(["gdbus", "call", "--session", "--dest", destination, "--object-path", path, "--method", method, *arguments],
                          capture_output=True, text=True, timeout=LIMIT)


def bus_names():
    return output("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
                  "--method", "org.freedesktop.DBus.ListNames")


def node(name, children=None, **more):
    made = {"filename": name, **more}
    if children is not None:
        made.update(isFolder=True, children=children)
    return made


def preset(label, name, children=(), **more):
    return {"label": label, "directoryName": name, "fileHierarchy": {"isFolder": True, "children": list(children)}, **more}


class Desktop(unittest.TestCase):
    """One user with a home of its own and, once started, a helper."""

    def setUp(self):
        self.home = Path(tempfile.mkdtemp(dir=os.environ.get("DESKTOP_SCRATCH")))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.preferences = self.home / "Library/Preferences/org.orvane.ORVPrefPane.plist"
        self.support = self.home / ".local/share/Orvane"
        self.projects = self.home / "Projects"
        self.projects.mkdir()
        (self.support / "Scripts").mkdir(parents=True)
        self.process = None
        self.others = []
        self.opened = self.home / "opened"
        self.addCleanup(self._end)
        if "DISPLAY" in os.environ:  # not on Wayland
            move(640, 200)
        # Without it the bus would start whatever file manager is installed.
        self.run_beside("/usr/bin/python3", "-B", str(Path(__file__).with_name("recorder.py")), str(self.opened))
        wait(lambda: "'org.freedesktop.FileManager1'" in bus_names(), "the stand-in for the file manager")

    def environment(self, **more):
        environment = dict(os.environ, HOME=str(self.home))
        for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"):
            environment.pop(name, None)
        environment.update(more)
        return environment

    def write_preferences(self, presets=(), binary=False, **more):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        content = {"ORVShowMenubar": True, "ORVPresets": list(presets), **more}
        self.preferences.write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML))

    def read_preferences(self):
        return plistlib.loads(self.preferences.read_bytes())

    def script(self, name, text):
        path = self.support / "Scripts" / name
        path.write_text(text)
        path.chmod(0o755)
        return path

    def start(self, *words, ready=True, before=None, **environment):
        """Starts the helper and waits until it can be asked for something. `before` is run in its process first."""
        with open(self.home / "helper.log", "ab") as log:
            self.process = subprocess.Popen([os.environ["ORVANE_TEST_HELPER"], *words], env=self.environment(**environment),
                                            stdin=subprocess.DEVNULL, stdout=log, stderr=log, preexec_fn=before)
        self.others.append(self.process)
        if ready:
            wait(lambda: self.process.poll() is not None or f"'{NAME}'" in bus_names(), "the helper to be on the bus")
            self.assertIsNone(self.process.poll(), self.said())
        return self.process

    def said(self):
        """Everything that the helper wrote: standard streams and log."""
        parts = [self.home / "helper.log", self.home / ".local/state/orvane/log"]
        return "".join(part.read_text(errors="replace") for part in parts if part.exists())

    def run_beside(self, *words, **environment):
        """Starts another program of this user, ended with the test."""
        process = subprocess.Popen(words, env=self.environment(**environment), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.others.append(process)
        return process

    def announce_change(self):
        bus = subprocess.run(["gdbus", "emit", "--session", "--object-path", "/org/orvane/DistributedNotifications", "--signal",
                              "org.orvane.DistributedNotifications.ORVPresetConfigurationChangedNotification"],
                             capture_output=True, timeout=LIMIT)
        self.assertEqual(bus.returncode, 0, bus.stderr)

    def pop_up(self, x=500, y=200):
        """The menu at the mouse, as the services entry gives it."""
        move(x, y)
        answer = bus_call("org.orvane.Services.makePresetFromService", "", "")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return menu()

    def pop_up_for(self, folder):
        """The menu at the mouse for a folder that takes the front window's place."""
        return self.ask_for_menu("make-preset-in", f"[<'{folder}'>]")

    def ask_for_menu(self, action, arguments):
        """The menu that such an action of the helper brings up."""
        def ask():
            answer = bus_call("org.freedesktop.Application.ActivateAction", action, arguments, "{}")
            self.assertEqual(answer.returncode, 0, answer.stderr)
            try:
                return wait(popup_menu, "the menu to be up", 2)
            except TimeIsUp:
                return None  # a request is dropped while an earlier one is not done yet

        return wait(ask, "the menu to come up")

    def wait_for_folder(self, path):
        wait(Path(path).is_dir, f"{path} to be made; the helper said: {self.said()}")

    def opened_folders(self):
        """Paths of the folders that the file manager was asked to show."""
        lines = self.opened.read_text().splitlines() if self.opened.exists() else []
        return [unquote(line.split(" file://", 1)[1]) for line in lines if line.startswith("ShowFolders file://")]

    def assert_alive(self):
        self.assertIsNone(self.process.poll(), self.said())

    def _end(self):
        for process in self.others:
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(timeout=LIMIT)
                except subprocess.TimeoutExpired:
                    process.send_signal(signal.SIGKILL)
                    process.wait(timeout=LIMIT)
        wait(lambda: "'org.freedesktop.FileManager1'" not in bus_names(), "the stand-in to be off the bus")
        if self.process:
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")
