#!/usr/bin/env -S /usr/bin/python3 -B
"""The hot key: from the press to the menu on the screen, beside rofi bound by sxhkd; the helper's start, memory and idle time.

Run it on an X server of its own:  tests/tools/with-desktop.sh -- bench/hotkey.py HELPER [--presses N] [--growth N]
20 presets. A press is one of XTest; the menu is on the screen when the server says that its window is mapped. Times of a machine that
does other things too are worth little: the least and the processor time per press are printed for that.
"""

import argparse
import ctypes
import os
import plistlib
import re
import select
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/e2e/hotkey"))
from keyboard import CONTROL_KEY, ESCAPE_KEY, SHIFT_KEY, Server  # noqa: E402

H_KEY, MAC_H, CONTROL_SHIFT = 43, 4, 0x60000
SUBSTRUCTURE_NOTIFY, DESTROY_NOTIFY, MAP_NOTIFY = 1 << 19, 17, 19
TICKS = os.sysconf("SC_CLK_TCK")


class Screen(Server):
    """Sees windows come and go."""

    def __init__(self):
        super().__init__()
        self.x.XSelectInput(self.display, self.root, SUBSTRUCTURE_NOTIFY)
        self.x.XSync(self.display, 0)
        self.event = ctypes.create_string_buffer(192)

    def wait(self, kind, window=None, limit=10, needed=True):
        """The next window that does so, and when that was known; nothing when it need not and does not."""
        end = time.monotonic() + limit
        while time.monotonic() < end:
            while self.x.XPending(self.display):
                self.x.XNextEvent(self.display, self.event)
                now = time.perf_counter()
                seen = int.from_bytes(self.event.raw[0:4], "little"), int.from_bytes(self.event.raw[40:48], "little")
                if seen[0] == kind and window in (None, seen[1]):
                    return seen[1], now
            select.select([self.x.XConnectionNumber(self.display)], [], [], max(0, min(0.5, end - time.monotonic())))
        if needed:
            raise SystemExit("the menu did not come up, or did not go")
        return None


def settings(home):
    path = home / "Library/Preferences/org.orvane.ORVPrefPane.plist"
    path.parent.mkdir(parents=True)
    presets = [{"label": f"Preset {i}", "directoryName": f"Folder {i}", "fileHierarchy": {"isFolder": True, "children": []}} for i in range(20)]
    path.write_bytes(plistlib.dumps({"ORVShowMenubar": True, "ORVPresets": presets, "ORVHotKeyCode": MAC_H, "ORVHotKeyFlags": CONTROL_SHIFT}))
    return dict(os.environ, HOME=str(home), XDG_STATE_HOME=str(home / "state"))


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def kilobytes(pid, name):
    return int(re.search(name + r":\s+(\d+)", Path(f"/proc/{pid}/smaps_rollup").read_text()).group(1))


def presses(screen, number):
    """Milliseconds from each press to the menu."""
    times = []
    for _ in range(number):
        start = time.perf_counter()
        screen.press(CONTROL_KEY, SHIFT_KEY, H_KEY)
        window, seen = screen.wait(MAP_NOTIFY)
        times.append((seen - start) * 1000)
        # A menu gets the keyboard a moment after it is on the screen, and has given it back when its window is destroyed.
        while True:
            screen.press(ESCAPE_KEY)
            if screen.wait(DESTROY_NOTIFY, window, limit=0.01, needed=False):
                break
    return sorted(times)


def line(name, times, more=""):
    print(f"{name:34} n={len(times):5}  least {times[0]:6.1f}  median {statistics.median(times):6.1f}  "
          f"95 % {times[int(len(times) * 0.95)]:6.1f}  most {times[-1]:6.1f} ms{more}", flush=True)


def wait_for_text(path, text):
    end = time.monotonic() + 30
    while time.monotonic() < end:
        if path.exists() and text in path.read_text():
            return
        time.sleep(0.01)
    raise SystemExit(f"{path} never said '{text}'")


def measure_start(helper, environment, number=15):
    """From the start of the program to the call that puts its icon into the status bar, which is this program here."""
    from gi.repository import Gio, GLib
    interface = Gio.DBusNodeInfo.new_for_xml(
        "<node><interface name='org.kde.StatusNotifierWatcher'><method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/>"
        "</method><method name='RegisterStatusNotifierHost'><arg type='s' direction='in'/></method>"
        "<property name='IsStatusNotifierHostRegistered' type='b' access='read'/><property name='ProtocolVersion' type='i' access='read'/>"
        "<property name='RegisteredStatusNotifierItems' type='as' access='read'/>"
        "<signal name='StatusNotifierHostRegistered'/></interface></node>").interfaces[0]
    bus, loop, state = Gio.bus_get_sync(Gio.BusType.SESSION), GLib.MainLoop(), {}
    values = {"IsStatusNotifierHostRegistered": GLib.Variant("b", True), "ProtocolVersion": GLib.Variant("i", 0),
              "RegisteredStatusNotifierItems": GLib.Variant("as", [])}

    def call(_bus, _sender, _path, _interface, method, _arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            state["seen"], state["work"] = time.perf_counter(), processor_seconds(state["pid"])
            loop.quit()
        invocation.return_value(None)

    bus.register_object("/StatusNotifierWatcher", interface, call, lambda *words: values[words[4]], None)
    bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                  GLib.Variant("(su)", ("org.kde.StatusNotifierWatcher", 0)), None, 0, -1, None)
    times, work = [], []
    for _ in range(number):
        start = time.perf_counter()
        process = subprocess.Popen([helper], env=environment, stderr=subprocess.DEVNULL)
        state["pid"] = process.pid
        GLib.timeout_add(15000, loop.quit)
        loop.run()
        times.append((state["seen"] - start) * 1000)
        work.append(state["work"] * 1000)
        process.terminate()
        process.wait()
    line("helper: start to status item", sorted(times), f"  processor {min(work):.0f} to {max(work):.0f} ms")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("helper")
    parser.add_argument("--presses", type=int, default=200)
    parser.add_argument("--growth", type=int, default=10000)
    options = parser.parse_args()
    screen = Screen()
    print(f"load average: {os.getloadavg()[0]:.2f}")
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        home = Path(folder)
        environment = settings(home)
        measure_start(options.helper, environment)
        helper = subprocess.Popen([options.helper], env=environment, stderr=subprocess.DEVNULL)
        wait_for_text(home / "state/orvane/hot-key", "works")
        time.sleep(2)  # what it does after its start is over
        print(f"helper: memory after the start         RSS {kilobytes(helper.pid, 'Rss')}  PSS {kilobytes(helper.pid, 'Pss')}  "
              f"own {kilobytes(helper.pid, 'Private_Dirty')} KB")
        presses(screen, 20)
        work = processor_seconds(helper.pid)
        times = presses(screen, options.presses)
        work = processor_seconds(helper.pid) - work
        line("helper: press to menu", times, f"  processor {work * 1000 / options.presses:.1f} ms a press")
        before = kilobytes(helper.pid, "Rss"), kilobytes(helper.pid, "Anonymous")
        presses(screen, options.growth)
        print(f"helper: memory over {options.growth} presses     RSS {before[0]} to {kilobytes(helper.pid, 'Rss')}, "
              f"without files {before[1]} to {kilobytes(helper.pid, 'Anonymous')} KB", flush=True)
        work = processor_seconds(helper.pid)
        time.sleep(10)
        print(f"helper: processor time in 10 s without a press  {(processor_seconds(helper.pid) - work) * 1000:.0f} ms")
        helper.terminate()
        helper.wait()
        if shutil.which("rofi") and shutil.which("sxhkd"):
            (home / "items").write_text("".join(f"Preset {i}\n" for i in range(20)))
            (home / "sxhkdrc").write_text(f"ctrl + shift + h\n    rofi -dmenu -input {home}/items\n")
            other = subprocess.Popen(["sxhkd", "-c", str(home / "sxhkdrc")], env=environment)
            time.sleep(1)
            line("rofi -dmenu by sxhkd: press to menu", presses(screen, min(options.presses, 100)))
            other.terminate()
            other.wait()
    print(f"load average: {os.getloadavg()[0]:.2f}")


if __name__ == "__main__":
    main()
