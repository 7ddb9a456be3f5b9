"""A user at sway or KWin: presses keys, sees the screen, knows the windows."""

import json
import threading
from support import *

CODES = {name: code for code, name in [
    *enumerate("qwertyuiop", 16), *enumerate("asdfghjkl", 30), *enumerate("zxcvbnm", 44), *enumerate("1234567890", 2),
    (1, "Escape"), (14, "BackSpace"), (15, "Tab"), (28, "Return"), (29, "Control"), (42, "Shift"), (57, " "), (103, "Up"), (108, "Down")]}


class Input:
    """Mouse and keyboard of the user, until closed."""

    def __init__(self):
        self.process = subprocess.Popen([os.environ["ORVANE_TEST_WAYLAND_KEYS"]], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._expect("ready")

    def _expect(self, word):
        answer = self.process.stdout.readline().strip()
        if answer != word:
            raise AssertionError(f"the compositor's input said '{answer}', not '{word}'")

    def tell(self, *words):
        print(*words, file=self.process.stdin, flush=True)
        self._expect("done")

    def move(self, x, y):
        self.tell("move", x, y)

    def press(self, *names):
        self.tell("press", *(CODES[name] for name in names))

    def type(self, text):
        for character in text:
            self.press(*(["Shift"] if character.isupper() else []), character.lower())

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(timeout=LIMIT)


class Sway:
    name = "sway"
    service = "sway"

    @staticmethod
    def _nodes(node):
        yield node
        for child in node.get("nodes", []) + node.get("floating_nodes", []):
            yield from Sway._nodes(child)

    def titles(self):
        """Titles of all windows, that of the one with the keyboard marked by a star."""
        tree = json.loads(output("swaymsg", "-t", "get_tree", "-r") or "{}")
        return [("*" if node.get("focused") else "") + (node.get("name") or "") for node in self._nodes(tree) if node.get("pid")]

    def has(self, title):
        return any(title in each for each in self.titles())

    def screen(self):
        image = subprocess.run(["grim", "-t", "ppm", "-"], capture_output=True, check=True, timeout=LIMIT).stdout
        return image.split(b"\n", 3)[3]

    def key_is_free(self):
        """Whether sway has no such binding."""
        return all("Could not find" in output("swaymsg", "unbindcode", f"Ctrl+Shift+{locks}{X_H}") for locks in ("", "Lock+", "Mod2+"))


class KWin:
    name = "kwin"
    service = "KGlobalAccel"

    def has(self, title):
        """By the part of KWin that finds windows for KRunner."""
        return title in output("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/WindowsRunner",
                               "--method", "org.kde.krunner1.Match", title)

    def screen(self):
        from gi.repository import Gio, GLib  # only KWin's tests need it
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        reading, writing = os.pipe()
        files = Gio.UnixFDList.new()
        files.append(writing)
        os.close(writing)
        received = bytearray()

        def receive():
            while part := os.read(reading, 1 << 20):
                received.extend(part)

        receiver = threading.Thread(target=receive)
        receiver.start()
        try:
            answer, _files = bus.call_with_unix_fd_list_sync(
                "org.kde.KWin.ScreenShot2", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2", "CaptureActiveScreen",
                GLib.Variant("(a{sv}h)", ({}, 0)), None, Gio.DBusCallFlags.NONE, LIMIT * 1000, files, None)
        finally:
            os.close(files.steal_fds()[0])  # the receiver waits for its end
        size = answer.unpack()[0]
        receiver.join(LIMIT)
        os.close(reading)
        pixels = bytes(received[:size["stride"] * size["height"]])
        image = bytearray(WIDTH * HEIGHT * 3)
        image[0::3], image[1::3], image[2::3] = pixels[2::4], pixels[1::4], pixels[0::4]  # rows have no gaps at this width
        return bytes(image)

    def key_is_free(self):
        control_shift_h = 0x04000000 | 0x02000000 | ord("H")
        return "true" in output("gdbus", "call", "--session", "--dest", "org.kde.kglobalaccel", "--object-path", "/kglobalaccel",
                                "--method", "org.kde.KGlobalAccel.isGlobalShortcutAvailable", str(control_shift_h), "other.program")


def compositor():
    return {"sway": Sway, "kwin": KWin}[os.environ["ORVANE_TEST_COMPOSITOR"]]()


def keep_picture(name, pixels):
    """Leaves a picture in the folder for pictures, if that can be written: on sway the tests of root run as nobody."""
    folder = os.environ.get("ORVANE_TEST_SCREENSHOTS", "")
    if os.access(folder, os.W_OK):
        image = b"P6 %d %d 255\n" % (WIDTH, HEIGHT) + pixels
        subprocess.run(["convert", "ppm:-", str(Path(folder) / f"{name}.png")], input=image, check=True, timeout=LIMIT)
