"""A user of the settings program: the built program, real keys and mouse, and a screen reader's eyes to find things with.

Runs inside tests/tools/with-desktop.sh --accessibility. ORVANE_TEST_SETTINGS, ORVANE_TEST_HELPER and ORVANE_TEST_ORVANE name the
programs, ORVANE_TEST_SCREENSHOTS a folder for pictures.
"""

import contextlib
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "helper"))

import gi  # noqa: E402

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402 (after the version)

from desktop import *  # noqa: E402,F403
from drag_messages import DragMessages  # noqa: E402

TITLE = "^Orvane Settings$"
State = Atspi.StateType
ITEM = "table cell|tree item|list item"
# What says that it has the keyboard while something in it has, or while its neighbour has.
CONTAINERS = ("frame", "filler", "table", "tree table", "tree", "list", "page tab", "page tab list")
BUTTON = "push button|toggle button|check box|radio button|button"


def children(accessible):
    for index in range(min(accessible.get_child_count(), 400)):
        child = accessible.get_child_at_index(index)
        if child:
            yield child


def is_in(accessible, *states):
    found = accessible.get_state_set()
    return all(found.contains(state) for state in states)


def parts(accessible, depth=0):
    """All that is shown below it, itself first."""
    yield accessible
    if depth < 16:
        for child in children(accessible):
            if is_in(child, State.SHOWING) or child.get_role_name() in ("menu bar", "filler", "panel"):
                yield from parts(child, depth + 1)


def extents(accessible):
    """x, y, width, height on the screen."""
    box = accessible.get_extents(Atspi.CoordType.SCREEN)
    return box.x, box.y, box.width, box.height


def click_on(accessible, from_left=None, clicks=1, button=1):
    """With the mouse; `from_left` pixels from the left end where the middle is not what can be clicked."""
    box = accessible.get_extents(Atspi.CoordType.SCREEN)
    move(box.x + (box.width // 2 if from_left is None else from_left), box.y + box.height // 2)
    subprocess.run(["xdotool", "click", "--repeat", str(clicks), "--delay", "40", str(button)], check=True, timeout=LIMIT)


@contextlib.contextmanager
def dragging(start):
    """With the mouse: takes what is there, lets it go at the end."""
    messages = DragMessages()

    def has_begun():
        if not messages.has_begun():
            move(start[0] + 15, start[1])  # of moves that come at once a program may take the last one only, and it needs two
            move(start[0] + 20, start[1])
        return messages.has_begun()

    try:
        move(*start)
        subprocess.run(["xdotool", "mousedown", "1"], check=True, timeout=LIMIT)
        wait(has_begun, "the drag to begin")
        yield messages
        subprocess.run(["xdotool", "mouseup", "1"], check=True, timeout=LIMIT)
    finally:
        messages.close()


def drag(start, end):
    """Within one program, which then does one thing after the other."""
    with dragging(start):
        move(*end)


def drag_to_other(start, end):
    """From one program to another. Lets go once the other has agreed."""
    with dragging(start) as messages:

        def may_drop():
            if not messages.may_drop_at(end):
                move(end[0] - 1, end[1])  # where the mouse is moved to while the programs talk is not told
                move(*end)
            return messages.may_drop_at(end)

        wait(may_drop, "the other program to agree to the drop")


class SettingsDesktop(Desktop):
    def start_settings(self, *words, **environment):
        """Starts the program and waits until its window has the keyboard."""
        with open(self.home / "settings.log", "ab") as log:
            self.settings = subprocess.Popen([os.environ["ORVANE_TEST_SETTINGS"], *map(str, words)],
                                             env=self.environment(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", **environment),
                                             stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.others.append(self.settings)
        active(environment.get("TITLE", TITLE))
        return self.settings

    def end_settings(self):
        keys("ctrl+q")
        self.assertEqual(self.settings.wait(LIMIT), 0)

    def program(self, process=None):
        """The program as a screen reader finds it."""
        wanted = (process or self.settings).pid
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and application.get_process_id() == wanted:
                application.set_cache_mask(Atspi.Cache.NONE)
                return application
        return None

    def found(self, role, name, process=None):
        """What is shown with such a role and such a name (both patterns); None when there is nothing."""
        for part, its_role, its_name in self.all_parts(process):
            if re.fullmatch(role, its_role) and re.search(name, its_name):
                return part
        return None

    def all_parts(self, process=None):
        """All that is shown, with role and name; what goes while it is looked at is left out."""
        found = []
        try:
            application = self.program(process)
            for window in children(application) if application else ():
                for part in parts(window):
                    found.append((part, part.get_role_name(), part.get_name() or ""))
        except GLib.GError:
            pass
        return found

    def part(self, role, name, process=None):
        return wait(lambda: self.found(role, name, process), f"a {role} named '{name}'")

    def click_part(self, role, name, **how):
        def is_clicked():
            try:
                click_on(self.part(role, name), **how)
                return True
            except GLib.GError:
                return False  # it went, and may be back

        wait(is_clicked, f"a {role} named '{name}' that stays")

    def focused(self):
        """(role, name) of what has the keyboard."""
        try:
            focused = [(role, name) for part, role, name in self.all_parts() if is_in(part, State.FOCUSED)]
        except GLib.GError:
            return None
        # The current item of a list says so, too, while something else has the keyboard.
        plain = [each for each in focused if each[0] not in CONTAINERS and not re.fullmatch(ITEM, each[0])]
        return plain[0] if plain else next((each for each in focused if re.fullmatch(ITEM, each[0])), None)

    def type_into_dialog(self, title, text):
        """Into a file dialog of that title, which is there soon; it goes with Return."""
        active(f"^{title}$")
        keys("ctrl+a")
        type_text(str(text))
        keys("Return")
        active(TITLE)

    def presets(self):
        """The presets on disk."""
        return self.read_preferences().get("ORVPresets", []) if self.preferences.exists() else []

    def labels(self):
        return [each.get("label") for each in self.presets()]

    def wait_for_labels(self, *wanted):
        wait(lambda: self.labels() == list(wanted), f"the presets {wanted} to stand on disk, not {self.labels()}")

    def tree_of(self, index=0):
        return names_of(self.presets()[index]["fileHierarchy"]) if len(self.presets()) > index else None

    def focus_tree(self):
        """Clicks the top folder in the tree."""
        self.click_part(ITEM, ", Folder")

    def show_tab(self, name):
        self.click_part("page tab", f"^{name}$")

    def show_page(self, number):
        keys(f"ctrl+{number}")

    def add_items(self, *names):
        """In the tree, which has the keyboard: Return makes a folder beside the chosen item, or in the top folder."""
        for name in names:
            keys("Return")
            self.part(ITEM, "^New Folder, Folder")
            type_text(name)
            keys("Return")
            self.part(ITEM, f"^{re.escape(name)}, Folder")


def names_of(folder):
    """Names in order, folders with their contents: ["A", ["B", "c.txt"]] for a folder A that holds these two."""
    found = []
    for child in folder.get("children", []):
        found.append(child["filename"])
        if child.get("children"):
            found.append(names_of(child))
    return found
