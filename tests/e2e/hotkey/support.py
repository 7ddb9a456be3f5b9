"""What the tests of the hot key share; the desktop itself is that of the tests of the helper."""

import os
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "helper"))

from desktop import *  # noqa: E402, F401, F403
from keyboard import CONTROL_KEY, SHIFT_KEY, Server  # noqa: E402

# The hot key of these tests: Control, Shift and the key that has H on it in the layout "us".
MAC_H, X_H = 4, 43
MAC_Z, X_Z = 6, 52
PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"
DISTANCE = 10  # of the menu from the pointer, to the left and downwards


def menu():
    """The menu's place and size, once it has stopped moving: a window is made before it is put where it belongs."""
    seen = [popup_menu()]

    def is_still():
        seen.append(popup_menu())
        return seen[-1] is not None and seen[-1] == seen[-2] and seen[-1]

    return wait(is_still, "the menu to be up")


def press_hot_key(key=X_H):
    """As a finger does: no lock or layout is changed for it. The key is named by its place."""
    server = Server()
    server.press(CONTROL_KEY, SHIFT_KEY, key)
    server.close()


def shows_windows_to_assistive_programs(pattern):
    """Whether a program of that name shows a window of its own on the accessibility bus: some start doing so after they are up."""
    found = re.search(r"'(unix:[^']+)'", output("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                                                "--method", "org.a11y.Bus.GetAddress"))
    if not found:
        return False

    def ask(program, path, *call):
        return output("gdbus", "call", "--timeout", "2", "--address", found.group(1), "--dest", program, "--object-path", path,
                      "--method", *call)

    accessible = "org.a11y.atspi.Accessible"
    children = ask("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root", f"{accessible}.GetChildren")
    for program, path in re.findall(r"\('(:[\d.]+)', (?:objectpath )?'([^']+)'\)", children):
        if re.search(pattern, ask(program, path, "org.freedesktop.DBus.Properties.Get", accessible, "Name")):
            return "/org/a11y/atspi" in ask(program, path, f"{accessible}.GetChildren")
    return False


class HotKeyDesktop(Desktop):
    """A user whose preferences have a hot key."""

    def write_hot_key(self, code=MAC_H, flags=CONTROL | SHIFT, presets=None, **more):
        presets = presets if presets is not None else [preset("Photo", "{Shoot}"), preset("Film", "{Job} {Client}", [
            node("{Client}.txt"), node("Rushes", [node("Day {Day}", [])])])]
        self.write_preferences(presets, ORVHotKeyCode=code, ORVHotKeyFlags=flags, **more)

    def statement(self):
        """What the helper says of its hot key where other programs read it."""
        path = self.home / ".local/state/orvane/hot-key"
        try:
            return path.read_text().partition("\n")[2]
        except FileNotFoundError:  # taken away for a moment while the key changes
            return ""

    def wait_for_statement(self, text):
        wait(lambda: text in self.statement(), f"the statement '{text}'; it is: {self.statement()}")

    def start_with_hot_key(self, **more):
        self.write_hot_key(**more)
        self.start()
        self.wait_for_statement(" works")

    def close_menu(self):
        keys("Escape")
        wait(lambda: popup_menu() is None, "the menu to be closed")

    def assert_hot_key_works(self, key=X_H):
        press_hot_key(key)
        menu()
        self.close_menu()

    def own_kilobytes(self):
        """Memory that holds no file: libraries that are loaded when they are first needed do not count."""
        status = Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"RssAnon:\s+(\d+)", status).group(1))

    def descriptors(self):
        """What each open descriptor of the helper leads to, kinds only."""
        folder = Path(f"/proc/{self.process.pid}/fd")
        return sorted(re.sub(r"\d+", "", os.readlink(each)) for each in folder.iterdir())
