"""A user at GNOME Shell or at weston, which give programs neither hot keys nor a place for their windows."""

import json
from compositors import *
from compositors import CODES, keep_picture

CHOOSER = "Orvane presets"
X_NAMES = {" ": "space", "Control": "Control_L", "Shift": "Shift_L"}


class Gnome:
    """Seen and driven through the shell's own method Eval."""

    name = "gnome"
    hides_its_windows = False

    def _run(self, script):
        """The value of the script's last expression."""
        answer = subprocess.run(["gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path", "/org/gnome/Shell",
                                 "--method", "org.gnome.Shell.Eval", script], capture_output=True, text=True, timeout=LIMIT).stdout
        found = re.fullmatch(r"\((true|false), '(.*)'\)", answer.strip(), re.DOTALL)
        if not found or found.group(1) != "true":
            raise AssertionError(f"GNOME Shell did not run the script: {answer}")
        return json.loads(found.group(2).replace("\\'", "'").replace("\\\\", "\\")) if found.group(2) else None

    def __init__(self):
        self._run("if (!global.orvaneKeys) { const seat = imports.gi.Clutter.get_default_backend().get_default_seat();"
                  " global.orvaneKeys = seat.create_virtual_device(imports.gi.Clutter.InputDeviceType.KEYBOARD_DEVICE); } 1")

    def press(self, *names):
        strokes = [(CODES[name], 1) for name in names] + [(CODES[name], 0) for name in reversed(names)]
        self._run("let time = imports.gi.GLib.get_monotonic_time();" + "".join(
            f"global.orvaneKeys.notify_key(time + {i}, {code}, {down});" for i, (code, down) in enumerate(strokes)) + " 1")

    def windows(self):
        """Titles of all windows, that of the one with the keyboard marked by a star."""
        return self._run("global.get_window_actors().map(actor => actor.meta_window)"
                         ".map(window => (window.has_focus() ? '*' : '') + window.title)")

    def wait_for(self, title, _before):
        return wait(lambda: any(each.startswith("*" + title) for each in self.windows()), f"'{title}' with the keyboard: {self.windows()}")

    def wait_for_gone(self, title, _before):
        wait(lambda: not any(title in each for each in self.windows()), f"'{title}' to be gone")

    def screen(self):
        path = Path(os.environ["DESKTOP_SCRATCH"]) / "screen.png"
        answer = output("gdbus", "call", "--session", "--dest", "org.gnome.Shell.Screenshot", "--object-path",
                        "/org/gnome/Shell/Screenshot", "--method", "org.gnome.Shell.Screenshot.Screenshot", "false", "false", str(path))
        if not answer.startswith("(true"):
            raise AssertionError(f"no picture of the screen: {answer}")
        return subprocess.run(["convert", str(path), "-depth", "8", "rgb:-"], capture_output=True, check=True, timeout=LIMIT).stdout

    def close(self):
        pass


class Weston:
    """weston is a window on an X server; it tells nothing of its own windows, so the screen is looked at."""

    name = "weston"
    hides_its_windows = True

    def __init__(self):
        move(WIDTH // 2, 20)

    def press(self, *names):
        subprocess.run(["xdotool", "key", "+".join(X_NAMES.get(name, name) for name in names)], check=True, timeout=LIMIT)

    def wait_for(self, title, before):
        def changed():
            box = difference(before, self.screen())
            return box is not None and box[2] > 150 and box[3] > 80

        wait(changed, f"'{title}' on the screen")

    def wait_for_gone(self, title, before):
        wait(lambda: difference(before, self.screen()) is None, f"'{title}' to be gone from the screen")

    def screen(self):
        return screen()

    def close(self):
        pass


def chooser_desk():
    return {"gnome": Gnome, "weston": Weston}[os.environ["ORVANE_TEST_COMPOSITOR"]]()


class ChooserDesktop(HotKeyDesktop):
    path = os.environ["PATH"]

    def setUp(self):
        super().setUp()
        self.desk = chooser_desk()
        if "ORVANE_TEST_SCREENSHOTS" in os.environ:
            Path(os.environ["ORVANE_TEST_SCREENSHOTS"]).mkdir(parents=True, exist_ok=True)
        self.folder = self.home / "Client Work"
        self.folder.mkdir()
        # `orvane` is looked for where programs are, as it is once it has been installed.
        programs = self.home / "bin"
        programs.mkdir()
        (programs / "orvane").symlink_to(os.environ["ORVANE_TEST_ORVANE"])
        self.path = f"{programs}:{os.environ['PATH']}"

    def environment(self, **more):
        return super().environment(**{"PATH": self.path, **more})

    def start_without_hot_key(self, **more):
        self.write_hot_key(**more)
        self.start()
        self.wait_for_statement("This desktop gives programs no hot keys of their own.")

    def orvane(self, *words):
        return subprocess.run(["orvane", *words], env=self.environment(), capture_output=True, text=True, timeout=LIMIT)

    def still_screen(self):
        seen = [self.desk.screen()]

        def is_still():
            seen.append(self.desk.screen())
            return seen[-1] == seen[-2]

        wait(is_still, "the screen to be still")
        return seen[-1]

    def ask_for_the_menu(self, *words):
        """The screen before and with the chooser."""
        before = self.still_screen()
        result = self.orvane("menu", *words)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.desk.wait_for(CHOOSER, before)
        return before, self.still_screen()

    def type(self, text):
        for character in text:
            self.desk.press(*(["Shift"] if character.isupper() else []), character.lower())

    def picture(self, name):
        keep_picture(name, self.still_screen())
