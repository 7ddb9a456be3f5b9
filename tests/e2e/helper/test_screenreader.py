"""What a screen reader is told of the prompt and of an alert, over the accessibility bus."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402 (after the version)

from desktop import *  # noqa: E402 (gi's version goes before everything of gi)


def parts(accessible, depth=0):
    """All that can be reached below it, itself first."""
    yield accessible
    for index in range(accessible.get_child_count() if depth < 12 else 0):
        child = accessible.get_child_at_index(index)
        if child:
            yield from parts(child, depth + 1)


def helper_window(title):
    """The helper's window with that name, as a screen reader finds it."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        for place in range(application.get_child_count() if application else 0):
            found = application.get_child_at_index(place)
            if found and found.get_name() == title:
                return found
    return None


def role_of(part):
    """at-spi2-core has another name for this one from 2.55 on."""
    role = part.get_role_name()
    return "push button" if role == "button" else role


def described(window):
    """(role, name) of every part."""
    return [(role_of(part), part.get_name()) for part in parts(window)]


class Announcements:
    """What is said as the focus goes from part to part, as (role, name). Cells that are typed into are no part of the table's tree."""

    def __init__(self):
        self.said = []
        self._listener = Atspi.EventListener.new(self._note)
        self._listener.register("object:state-changed:focused")

    def _note(self, event):
        if event.detail1:
            self.said.append((role_of(event.source), event.source.get_name()))

    def last(self):
        while GLib.MainContext.default().iteration(False):
            pass
        return self.said[-1] if self.said else None


class ScreenReader(Desktop):
    def choose_first(self):
        bus_call("org.freedesktop.Application.ActivateAction", "make-preset-in", f"[<'{self.projects}'>]", "{}")
        menu()
        keys("Down", "Return")
        active("^New Folder from Preset$")

    def test_prompt_and_alert_are_told_with_names_and_roles(self):
        self.write_preferences([preset("Film", "{Client} {Project}")])
        (self.projects / "Acme One").mkdir()
        focus = Announcements()
        self.start(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.choose_first()
        window = wait(lambda: helper_window("New Folder from Preset"), "the prompt on the accessibility bus")
        self.assertEqual(window.get_role_name(), "dialog")
        told = described(window)
        for part in [("table", "Values of the variables"), ("push button", "OK"), ("push button", "Cancel")]:
            self.assertIn(part, told)
        names = [name for _, name in told]
        for name in ("Client", "Project", "Client: ", "Project: "):
            self.assertIn(name, names)
        wait(lambda: focus.last() == ("text", "Client"), "the field that is typed into to have the focus, with its variable's name")
        type_text("Acme")
        keys("Return")
        wait(lambda: focus.last() == ("text", "Project"), "the next field to have the focus")
        type_text("One")
        wait(lambda: "Folder name: Acme One" in [name for _, name in described(window)], "the folder's name")
        wait(lambda: "An item of this name already exists." in [name for _, name in described(window)], "the problem")
        keys("Return")
        alert = wait(lambda: next(self.alerts(), None), "the alert")
        self.assertIn(alert.get_role_name(), ("alert", "dialog"))
        wait(lambda: focus.last() == ("push button", "OK"), "its button to have the focus")
        self.assertTrue(alert.get_name())
        keys("Return")
        wait(lambda: not windows("^Orvane$"), "the alert to go")
        self.assert_alive()

    def alerts(self):
        """Windows of the helper that have an OK button and nothing else to press."""
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            for place in range(application.get_child_count() if application else 0):
                window = application.get_child_at_index(place)
                if window and [part for part in described(window) if part[0] == "push button"] == [("push button", "OK")]:
                    yield window


if __name__ == "__main__":
    unittest.main()
