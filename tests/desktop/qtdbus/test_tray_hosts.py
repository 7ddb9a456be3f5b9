#!/usr/bin/python3
"""Real trays, with real clicks: the panel that shows StatusNotifierItems, and the tray that knows XEmbed only."""

import os
import signal
import subprocess
import sys
import time

from gi.repository import GLib

from support import SCRATCH, BusTest, connect, run, screenshot, wait_until

LABELS = "Rock & Roll|snake_case_name|left\tright|Fest 🎬 film|פרויקט חדש (1)|" + "Long " * 60 + "|!Switched off|Quit Orvane"
SCREEN = [int(part) for part in subprocess.run(["xdotool", "getdisplaygeometry"], check=True, capture_output=True, text=True).stdout.split()]
HOST = "StatusNotifierItem" if "--host=panel" in sys.argv else "XEmbed"
sys.argv = [argument for argument in sys.argv if not argument.startswith("--host=")]


def picture(name="now"):
    path = os.path.join(SCRATCH, name + ".bmp")
    subprocess.run(["import", "-window", "root", path], check=True, timeout=20)
    return path


def difference(before, after):
    """(x, y, width, height) of what is different, or None."""
    command = ["convert", before, after, "-compose", "difference", "-composite", "-colorspace", "gray", "-threshold", "4%", "-format", "%@", "info:"]
    text = subprocess.run(command, check=True, capture_output=True, text=True, timeout=20).stdout
    size, x, y = text.strip().split("+")
    width, height = (int(part) for part in size.split("x"))
    nothing = [width, height] == SCREEN or width == 0  # what ImageMagick says of a picture of one colour
    return None if nothing else (int(x), int(y), width, height)


def wait_for_difference(before, seconds=15):
    return wait_until(lambda: difference(before, picture()), seconds, "a change on the screen")


def click(x, y, button=1):
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", str(button)], check=True, timeout=10)


def press(*keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True, timeout=10)


class TrayTest(BusTest):
    def shown(self, **environment):
        """The probe with its item shown, and the item's place on the screen."""
        probe = self.probe(ORVANE_TEST_FALLBACK_MS="300", **environment)
        probe.ask("menu|" + LABELS, "menu")
        subprocess.run(["xdotool", "mousemove", "5", "5"], check=True, timeout=10)
        before = picture("before")
        probe.ask("show", "shown")
        return probe, self.place_after(before)

    def place_after(self, before):
        def settled():
            first = difference(before, picture())
            return first if first and first == difference(before, picture()) else None

        x, y, width, height = wait_until(settled, 20, "the icon")
        self.assertLessEqual(max(width, height), 48, "one icon")
        self.assertGreaterEqual(min(width, height), 10)
        return x + width // 2, y + height // 2

    def pick(self, probe, place, button, *keys):
        """Opens the menu with that button of the mouse, then types; what was chosen."""
        before = picture("closed")
        click(*place, button)
        wait_until(lambda: (difference(before, picture()) or (0, 0, 0, 0))[3] > 100, 10, "the menu")
        press(*keys)
        return probe.expect("chosen")

    def settle_screen(self):
        def is_still():
            first = picture("first")
            time.sleep(0.3)  # slept deliberately: panels say nowhere that all is drawn, rest shows over some time only
            return difference(first, picture()) is None

        wait_until(is_still, 20, "a quiet screen")

    def test_either_button_opens_the_menu(self):
        probe, place = self.shown()
        self.assertIn("chosen 0 Rock & Roll", self.pick(probe, place, 1, "Down", "Return"))
        self.assertIn("chosen 1 snake_case_name", self.pick(probe, place, 3, "Down", "Down", "Return"))

    def test_the_mouse_chooses_too(self):
        probe, place = self.shown()
        before = picture("closed")
        click(*place)
        x, y, width, height = wait_until(
            lambda: next((box for box in [difference(before, picture())] if box and box[3] > 100), None), 10, "the menu"
        )
        screenshot(f"tray-menu-{HOST}")
        click(min(x + width // 2, SCREEN[0] - 10), y + 16)
        self.assertIn("Rock & Roll", probe.expect("chosen"))

    def test_a_thousand_presets_scroll(self):
        probe, place = self.shown()
        probe.ask("many|1000", "menu")
        probe.settle()
        self.assertIn("chosen 999", self.pick(probe, place, 1, "Up", "Return"))

    def test_the_icon_goes_with_the_item(self):
        before = picture("empty")
        probe, _ = self.shown()
        probe.ask("hide", "hidden")
        wait_until(lambda: difference(before, picture()) is None, 10, "an empty tray")


class PanelTest(TrayTest):
    def panel(self, name="org.kde.StatusNotifierWatcher"):
        """The process that has the name, or None; the tray is a process of its own below the panel's."""
        connection = connect()
        try:
            reply = connection.call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                GLib.Variant("(s)", (name,)), None, 0, 5000, None,
            )
            return reply.unpack()[0]
        except GLib.Error:
            return None
        finally:
            connection.close_sync(None)

    def setUp(self):
        wait_until(self.panel, 20, "the panel")
        self.settle_screen()

    def test_the_panel_shows_the_item_itself(self):
        probe, _ = self.shown()
        self.assertEqual(probe.count("fallback"), 0)
        screenshot("tray-panel")

    def test_the_icon_comes_back_with_a_panel_that_crashed(self):
        probe, place = self.shown()
        before = picture("with-icon")
        os.kill(self.panel("org.xfce.Panel"), signal.SIGKILL)
        wait_until(lambda: self.panel() is None, 10, "no panel")
        wait_for_difference(before)
        probe.expect("fallback", 10)
        panel = subprocess.Popen(["xfce4-panel", "--disable-wm-check"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addClassCleanup(panel.wait)  # the tests after this one need it, too
        self.addClassCleanup(panel.kill)
        wait_until(lambda: difference(before, picture()) is None, 20, "the panel with the icon where it was")
        self.assertIn("chosen 0", self.pick(probe, place, 1, "Down", "Return"))
        before = picture("shown")
        probe.ask("hide", "hidden")
        x, _, width, _ = wait_for_difference(before)
        self.assertLessEqual(width, 48, f"one icon went, at {x}")
        self.assertIsNone(panel.poll())


class TrayerTest(TrayTest):
    def start_tray(self, *options):
        command = ["trayer", "--edge", "bottom", "--height", "32", "--widthtype", "pixel", "--width", "300", *options]
        tray = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        def end():
            tray.kill()
            tray.wait()

        self.addCleanup(end)
        return tray, end

    def tray_is_there(self):
        names = subprocess.run(["xdotool", "search", "--class", "trayer"], capture_output=True, text=True, timeout=10)
        return names.stdout.strip()

    def wait_for_tray(self):
        before = picture("bare")
        tray, end = self.start_tray()
        wait_for_difference(before)
        return tray, end

    def setUp(self):
        if not self.id().endswith("late") and not self.id().endswith("background"):
            self.end_tray = self.wait_for_tray()[1]

    def test_the_icon_appears_in_a_tray_that_starts_late(self):
        probe = self.probe(ORVANE_TEST_FALLBACK_MS="300")
        probe.ask("menu|" + LABELS, "menu")
        probe.ask("show", "shown")
        probe.expect("fallback")
        self.start_tray()
        wait_until(self.tray_is_there, 15, "the tray")
        self.settle_screen()
        before = picture("full")
        probe.ask("hide", "hidden")
        x, y, width, height = wait_for_difference(before)
        self.assertLessEqual(max(width, height), 48, "one icon")
        probe.ask("show", "shown")
        wait_until(lambda: difference(before, picture()) is None, 15, "the icon again")
        self.assertIn("chosen 0", self.pick(probe, (x + width // 2, y + height // 2), 1, "Down", "Return"))

    def test_the_icon_comes_back_with_its_tray(self):
        probe, place = self.shown()
        self.end_tray()
        self.end_tray = self.wait_for_tray()[1]
        self.assertIn("chosen 0", wait_until(lambda: self.try_to_pick(probe, place), 15, "a click that arrives"))

    def try_to_pick(self, probe, place):
        try:
            return self.pick(probe, place, 1, "Down", "Return")
        except AssertionError:
            return None

    def test_a_host_that_comes_later_takes_the_icon_over(self):
        from support import Watcher

        before = picture("empty")
        probe, _ = self.shown()
        self.assertEqual(probe.count("fallback"), 1)
        watcher = Watcher()
        item = watcher.item()
        self.assertEqual(item.labels()[0], "Rock & Roll")
        wait_until(lambda: difference(before, picture()) is None, 10, "an empty tray")
        watcher.crash()
        wait_until(lambda: probe.count("fallback") == 2, 10, "the older tray again")
        wait_for_difference(before)

    def test_a_watcher_without_host_is_no_host(self):
        from support import Watcher

        watcher = Watcher(has_host=False)
        self.addCleanup(watcher.crash)
        before = picture("empty")
        probe, _ = self.shown()
        self.assertEqual(probe.count("fallback"), 1)
        watcher.set_host(True)
        wait_until(lambda: difference(before, picture()) is None, 10, "an empty tray")
        watcher.set_host(False)
        wait_for_difference(before)

    def test_the_icon_can_be_told_from_any_background(self):
        for name, options in (("light", ()), ("dark", ("--transparent", "true", "--alpha", "0", "--tint", "0x101010"))):
            before = picture("bare")
            _, end = self.start_tray(*options)
            wait_for_difference(before)
            probe, (x, y) = self.shown()
            path = screenshot(f"tray-XEmbed-{name}")
            crop = ["convert", path, "-crop", f"20x20+{x - 10}+{y - 10}", "+repage", "-colorspace", "gray", "-format", "%[fx:maxima-minima]", "info:"]
            contrast = float(subprocess.run(crop, check=True, capture_output=True, text=True, timeout=20).stdout)
            self.assertGreater(contrast, 0.5, name)
            probe.ask("hide", "hidden")
            probe.stop()
            end()


del TrayTest  # what is to be run derives from it
if HOST == "XEmbed":
    del PanelTest
else:
    del TrayerTest

if __name__ == "__main__":
    run()
