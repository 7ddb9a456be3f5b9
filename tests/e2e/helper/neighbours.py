"""The programs around the helper, each of which a test may stop, kill and start again: bus, tray host, file manager."""

import ctypes
import os
import re
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402 (after the version)

from desktop import HEIGHT, LIMIT, NAME, Desktop, difference, geometry, output, screen, stays, wait

BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
WATCHER = "org.kde.StatusNotifierWatcher"
FIXED = ["Preferences…", "Quit Orvane"]
SCRATCH = os.environ.get("DESKTOP_SCRATCH")

_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path={folder}/bus</listen><servicedir>{folder}/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>"""


def call(name, path, interface, method, signature="", *arguments, seconds=LIMIT):
    """Calls a method on the session bus of now; what it returned."""
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    connection = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
    try:
        variant = GLib.Variant(signature, arguments) if signature else None
        return connection.call_sync(name, path, interface, method, variant, None, 0, int(seconds * 1000), None).unpack()
    finally:
        connection.close_sync(None)


def names():
    """Of everybody on the bus; nothing while there is no bus."""
    try:
        return call(*BUS, "ListNames")[0]
    except GLib.Error:
        return []


def get(name, path, interface, property_name):
    return call(name, path, "org.freedesktop.DBus.Properties", "Get", "(ss)", interface, property_name)[0]


class PrivateBus:
    """A session bus that knows no services but those of a test, and that can be killed and started again at the same address."""

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(dir=SCRATCH))
        self.services = self.folder / "services"
        self.services.mkdir()
        (self.folder / "bus.conf").write_text(_CONFIGURATION.format(folder=self.folder))
        self._former = os.environ.get("DBUS_SESSION_BUS_ADDRESS")
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/bus"
        self._daemon = None
        self.start()

    def start(self):
        words = ["dbus-daemon", f"--config-file={self.folder}/bus.conf", "--nofork", "--nopidfile", "--print-address"]
        self._daemon = subprocess.Popen(words, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        assert self._daemon.stdout.readline().startswith("unix:"), "the bus did not start"

    def kill(self):
        if self._daemon.returncode is None:
            self._daemon.kill()
            self._daemon.wait(LIMIT)
            self._daemon.stdout.close()

    def stop_answering(self):
        self._daemon.send_signal(signal.SIGSTOP)

    def go_on(self):
        self._daemon.send_signal(signal.SIGCONT)

    def stop(self):
        self.kill()
        shutil.rmtree(self.folder)
        if self._former is None:
            del os.environ["DBUS_SESSION_BUS_ADDRESS"]
        else:
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._former


class Tray:
    """A tray host at the bottom of the screen: trayer, which knows XEmbed only, or Xfce's panel with its StatusNotifier host."""

    def __init__(self, kind):
        self.kind = kind
        self._process = None

    def start(self):
        words = ["trayer", "--edge", "bottom", "--height", "32"] if self.kind == "trayer" else ["xfce4-panel", "--disable-wm-check"]
        # A session of its own: the panel's plugins are processes that go with it.
        self._process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                         start_new_session=True)
        wait(self.is_up, f"{self.kind} to be up")

    def is_up(self):
        if self.kind == "trayer":
            return bool(tray_owner())
        return WATCHER in names() and get(WATCHER, "/StatusNotifierWatcher", WATCHER, "IsStatusNotifierHostRegistered")

    def kill(self):
        if self._process:
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait(LIMIT)
            self._process = None
            if self.kind != "trayer":
                wait(lambda: WATCHER not in names(), f"{self.kind} to be gone")

    def number_of_icons(self):
        """How many icons of the helper it shows."""
        if self.kind == "trayer":
            return len(embedded_icons())
        try:
            items = get(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisteredStatusNotifierItems")
        except GLib.Error:
            return 0
        return len(items) + len(embedded_icons())


def tray_owner():
    """Window of the XEmbed tray of screen 0, 0 without one."""
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XInternAtom.restype = xlib.XGetSelectionOwner.restype = ctypes.c_ulong
    display = ctypes.c_void_p(xlib.XOpenDisplay(None))
    atom = ctypes.c_ulong(xlib.XInternAtom(display, b"_NET_SYSTEM_TRAY_S0", 0))
    owner = xlib.XGetSelectionOwner(display, atom)
    xlib.XCloseDisplay(display)
    return owner


def embedded_icons():
    """The helper's windows of an icon's size that stand in a tray and can be seen."""
    icons = []
    for line in output("xwininfo", "-root", "-tree").splitlines():
        found = re.match(r'\s*(0x[0-9a-f]+) .*: \("orvane-helper" .*\)\s+(\d+)x(\d+)\+', line)
        if found and int(found.group(2)) <= 64 and int(found.group(3)) <= 64:
            if "_XEMBED_INFO" in output("xprop", "-id", found.group(1)) and "IsViewable" in output("xwininfo", "-id", found.group(1)):
                icons.append(int(found.group(1), 16))
    return icons


def place_of_icon(before):
    """Where the helper's icon is at the bottom of the screen, once it stays there: x, y, width, height."""
    wait(lambda: difference(before, screen(), HEIGHT - 40), "the icon in the tray")
    wait(lambda: stays(before), "the icon to stay")
    icons = embedded_icons()
    return geometry(icons[0]) if icons else difference(before, screen(), HEIGHT - 40)


def middle_of_icon():
    """Where to click on the helper's icon in a tray that has it."""
    x, y, width, height = geometry(embedded_icons()[0])
    return x + width // 2, y + height // 2


def ticks(process):
    """Processor time of a program so far, in ticks (of a hundredth of a second, nearly everywhere)."""
    fields = Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def wakeups(process):
    """How often any thread of a program has given the processor away and got it back."""
    count = 0
    for task in Path(f"/proc/{process.pid}/task").iterdir():
        count += sum(int(line.split()[1]) for line in (task / "status").read_text().splitlines() if "ctxt_switches" in line)
    return count


def layout(process, number=1):
    """The menu as a host of the status item sees it: (id, properties) of every item."""
    item = f"org.kde.StatusNotifierItem-{process.pid}-{number}"
    _, root = call(item, "/MenuBar", "com.canonical.dbusmenu", "GetLayout", "(iias)", 0, -1, [])
    return [(child[0], child[1]) for child in root[2]]


def labels(process, number=1):
    """Labels of the menu's items, nothing while there is no item."""
    try:
        return [properties["label"].replace("__", "_") for _, properties in layout(process, number) if "label" in properties]
    except GLib.Error:
        return []


def choose(process, label, number=1):
    """Chooses an item as a host of the status item does."""
    for identifier, properties in layout(process, number):
        if properties.get("label") == label:
            item = f"org.kde.StatusNotifierItem-{process.pid}-{number}"
            call(item, "/MenuBar", "com.canonical.dbusmenu", "Event", "(isvu)", identifier, "clicked", GLib.Variant("i", 0), 0)
            return
    raise AssertionError(f"no item '{label}'")


def without_rights_over_files():
    """For a child before it starts: root, too, gets "Permission denied" from then on."""
    if os.geteuid() == 0:
        drop_from_bounding_set = 24  # PR_CAPBSET_DROP of <linux/prctl.h>
        for capability in (1, 2):  # CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH
            if ctypes.CDLL(None, use_errno=True).prctl(drop_from_bounding_set, capability, 0, 0, 0) != 0:
                raise OSError(ctypes.get_errno(), "prctl")


class DesktopWithOwnBus(Desktop):
    """A user whose bus the test may kill."""

    def setUp(self):
        self.bus = PrivateBus()
        self.addCleanup(self.bus.stop)
        super().setUp()

    def helper_is_on_the_bus(self):
        return NAME in names()
