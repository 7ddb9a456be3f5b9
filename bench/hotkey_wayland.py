#!/usr/bin/env -S /usr/bin/python3 -B
"""The hot key on a Wayland compositor: from the press to the menu on the screen; the helper's start, memory and idle time.

    ORVANE_TEST_COMPOSITOR=sway tests/tools/with-sway.sh -- bench/hotkey_wayland.py HELPER KEYS [--presses N] [--growth N]

and the same with kwin. KEYS is the tests' program wayland_keys, a keyboard and a mouse for both compositors. 20 presets.

When the menu is there is taken from what the helper says to the compositor, as libwayland writes it down (WAYLAND_DEBUG): the commit of
the buffer with the menu in it, the first one after the compositor has said where the pointer is. That this commit puts the menu on the
screen is seen in two pictures of it before anything is measured. The parts of a press are told too.
"""

import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/e2e/hotkey"))
sys.path.insert(0, str(Path(__file__).resolve().parent))
from compositors import Input, compositor, difference, wait  # noqa: E402
from hotkey import kilobytes, line, measure_start, processor_seconds, settings, wait_for_text  # noqa: E402

X, Y = 700, 250
LINE = re.compile(r"\[ *(\d+)\.(\d+)\]  ?(?:\{[^}]*\} )?(-> )?(\w+)@(\d+)\.(\w+)\((.*)\)$")
PARTS = ["press to the overlay asked for", "to its size", "to its first picture", "to the pointer's place", "to the menu"]


def microseconds():
    """As libwayland counts them: 32 bits of the clock."""
    return time.time_ns() // 1000 & 0xFFFFFFFF


class Trace:
    """What the helper and the compositor said to each other since the last look."""

    def __init__(self, path):
        self.path, self.offset, self.rest = path, 0, b""

    def new(self):
        """(microseconds, whether it is a request, interface, id, message, arguments) of each message."""
        if self.offset > 32 << 20:  # the helper appends, so the file may be emptied under it
            os.truncate(self.path, 0)
            self.offset = 0
        with open(self.path, "rb") as file:
            file.seek(self.offset)
            data = file.read()
        self.offset += len(data)
        *lines, self.rest = (self.rest + data).split(b"\n")
        for text in lines:
            found = LINE.match(text.decode(errors="replace"))
            if found:
                whole, part, arrow, interface, number, message, arguments = found.groups()
                yield int(whole) * 1000 + int(part), bool(arrow), interface, int(number), message, arguments


class Popup:
    """One menu, from the press to its end."""

    def __init__(self):
        self.overlays, self.layers, self.times, self.entered, self.attached = set(), set(), {}, None, False

    def see(self, when, is_request, interface, number, message, arguments):
        def note(name):
            self.times.setdefault(name, when)

        surface = re.search(r"wl_surface[@#](\d+)", arguments)
        if message == "get_layer_surface":
            self.overlays.add(int(surface.group(1)))
            self.layers.add(int(re.search(r"zwlr_layer_surface_v1[@#](\d+)", arguments).group(1)))
            note("asked")
        elif interface == "zwlr_layer_surface_v1" and message == "configure":
            note("size")
        elif interface == "zwlr_layer_surface_v1" and is_request and message == "destroy":
            self.layers.discard(number)
            if not self.layers:
                note("gone")
        elif interface == "wl_pointer" and message == "enter" and surface and int(surface.group(1)) in self.overlays:
            self.entered = int(surface.group(1))
            note("pointer")
        elif interface == "wl_surface" and is_request and message == "attach" and number in self.overlays:
            self.attached = "wl_buffer" in arguments
        elif interface == "wl_surface" and is_request and message == "commit" and number in self.overlays and self.attached:
            self.attached = False
            note("painted")
            if number == self.entered:
                note("menu")


class Desk:
    def __init__(self, helper, environment, trace):
        self.input, self.trace = Input(), trace
        self.input.move(X, Y)
        with open(trace.path, "ab") as file:
            self.helper = subprocess.Popen([helper], env=dict(environment, WAYLAND_DEBUG="1"), stderr=file, stdout=subprocess.DEVNULL)

    def see_until(self, popup, name, limit):
        end = time.monotonic() + limit
        while name not in popup.times and time.monotonic() < end:
            for message in self.trace.new():
                popup.see(*message)
            time.sleep(0.002)
        return name in popup.times

    def press(self):
        """The parts of one press in milliseconds: each time since the press."""
        for _message in self.trace.new():
            pass
        popup, start = Popup(), microseconds()
        self.input.press("Control", "Shift", "h")
        if not self.see_until(popup, "menu", 10):
            raise SystemExit(f"the menu did not come up; what did: {sorted(popup.times)}")
        end = time.monotonic() + 10
        while "gone" not in popup.times:
            self.input.press("Escape")
            self.see_until(popup, "gone", 1)
            if time.monotonic() > end:
                raise SystemExit("the menu did not go")
        return {name: (when - start & 0xFFFFFFFF) / 1000 for name, when in popup.times.items()}

    def presses(self, number):
        return [self.press() for _ in range(number)]

    def close(self):
        self.helper.terminate()
        self.helper.wait()
        self.input.close()


def check_that_it_is_seen(desk, screen):
    """Pictures before the press, when the menu's buffer was committed, and when it is gone."""
    wait(lambda: screen() == screen(), "the screen to be still")
    before = screen()
    for _message in desk.trace.new():
        pass
    popup = Popup()
    desk.input.press("Control", "Shift", "h")
    if not desk.see_until(popup, "menu", 10):
        raise SystemExit("the menu did not come up")
    box = wait(lambda: difference(before, screen()), "the menu to be on the screen")
    if box[3] < 100:
        raise SystemExit(f"what came up is no menu of 20 presets: {box}")
    desk.input.press("Escape")
    if not desk.see_until(popup, "gone", 10):
        raise SystemExit("the menu did not go")


def print_parts(times):
    names = ["asked", "size", "painted", "pointer", "menu"]
    medians = [statistics.median(each[name] - (each[before] if before else 0) for each in times) for before, name in zip([None, *names], names)]
    print("    medians of its parts: " + ", ".join(f"{what} {value:.1f}" for what, value in zip(PARTS, medians)) + " ms", flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("helper")
    parser.add_argument("keys")
    parser.add_argument("--presses", type=int, default=200)
    parser.add_argument("--growth", type=int, default=1000)
    options = parser.parse_args()
    os.environ["ORVANE_TEST_WAYLAND_KEYS"] = options.keys
    name = os.environ["ORVANE_TEST_COMPOSITOR"]
    print(f"load average: {os.getloadavg()[0]:.2f}")
    with tempfile.TemporaryDirectory(dir=os.environ.get("DESKTOP_SCRATCH", "/dev/shm")) as folder:
        home = Path(folder)
        environment = settings(home)
        measure_start(options.helper, environment)
        desk = Desk(options.helper, environment, Trace(home / "trace"))
        wait_for_text(home / "state/orvane/hot-key", "works")
        check_that_it_is_seen(desk, compositor().screen)
        desk.presses(10)
        time.sleep(1)  # the helper keeps what a menu needed for a moment
        print(f"{name}: memory after 11 menus             RSS {kilobytes(desk.helper.pid, 'Rss')}  PSS {kilobytes(desk.helper.pid, 'Pss')}  "
              f"own {kilobytes(desk.helper.pid, 'Private_Dirty')} KB")
        work = processor_seconds(desk.helper.pid)
        times = desk.presses(options.presses)
        work = processor_seconds(desk.helper.pid) - work
        line(f"{name}: press to menu", sorted(each["menu"] for each in times), f"  processor {work * 1000 / options.presses:.1f} ms a press")
        print_parts(times)
        time.sleep(1)
        before = kilobytes(desk.helper.pid, "Rss"), kilobytes(desk.helper.pid, "Anonymous")
        desk.presses(options.growth)
        time.sleep(1)
        print(f"{name}: memory over {options.growth} presses     RSS {before[0]} to {kilobytes(desk.helper.pid, 'Rss')}, "
              f"without files {before[1]} to {kilobytes(desk.helper.pid, 'Anonymous')} KB", flush=True)
        work = processor_seconds(desk.helper.pid)
        time.sleep(10)
        print(f"{name}: processor time in 10 s without a press  {(processor_seconds(desk.helper.pid) - work) * 1000:.0f} ms")
        desk.close()
    print(f"load average: {os.getloadavg()[0]:.2f}")


if __name__ == "__main__":
    main()
