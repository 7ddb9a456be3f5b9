"""What a screen reader is told of the whole window, and that Tab leads everywhere."""

from settings_desk import *

# What takes the keyboard, or is pressed.
CONTROLS = {"push button", "toggle button", "check box", "radio button", "button", "text", "entry", "combo box", "tree", "tree table",
            "table", "list", "list box", "page tab", "page tab list", "spin button", "menu", "menu item", "table cell", "tree item",
            "list item", "slider"}
# Reached with arrow keys, Alt or the mouse inside of something that Tab reaches.
INNER = {"page tab", "menu", "menu item", "table cell", "tree item", "list item", "table column header", "column header", "table row header",
         "scroll bar", "menu bar", "tool tip"}
FILM = Path(__file__).resolve().parents[3] / "resources/presets/film-production/film-production.orvpreset"


def identity(part):
    box = part.get_extents(Atspi.CoordType.SCREEN)
    return part.get_role_name(), part.get_name(), box.x, box.y, box.width, box.height


class Focus:
    """Where the keyboard goes, as a screen reader is told."""

    def __init__(self):
        self._ways = []
        self._listener = Atspi.EventListener.new(self._note)
        self._listener.register("object:state-changed:focused")

    def _note(self, event):
        if event.detail1:
            way, part = [], event.source
            while part and part.get_role_name() not in ("application", "desktop frame"):
                way.append(identity(part))
                part = part.get_parent()
            self._ways.append(way)

    def _pump(self):
        while GLib.MainContext.default().iteration(False):
            pass

    def after(self, act):
        """What has the keyboard after that, and all that it stands in."""
        self._pump()
        self._ways.clear()
        act()

        def told():
            self._pump()
            return bool(self._ways)

        wait(told, "the keyboard to go on")
        holds(lambda: not self._pump(), 0.15)  # views tell of themselves and of their items
        return self._ways[-1]


class ScreenReader(SettingsDesktop):
    VIEWS = ([("page 1, tab " + tab, 1, tab) for tab in ("Item", "Preview", "Variables", "Script")] +
             [("counters", 2, None), ("general", 3, None)])

    PARTS = {"Item": ("combo box", "^Kind$"), "Preview": ("tree", "^Preview of the names$"), "Variables": ("tree", "^Variables$"),
             "Script": (BUTTON, "^Test Run$")}

    def show_film(self):
        self.write_preferences(ORVAutomaticVars={"AutoJob": "41"})
        self.start_settings(FILM)
        self.wait_for_labels("Film production")

    def show_view(self, page, tab):
        self.show_page(page)
        if tab:
            self.show_tab(tab)
            self.part(*self.PARTS[tab])
        else:
            self.part("tree" if page == 2 else "check box", "Counters" if page == 2 else "Start at login")

    def test_every_control_has_a_name_and_a_role(self):
        self.show_film()
        seen = 0
        for view, page, tab in self.VIEWS:
            self.show_view(page, tab)
            for part, role, name in self.all_parts():
                if role == "unknown" and part.get_parent().get_role_name() == "split pane":
                    continue  # the handle of a splitter, which Qt has no role for; the keyboard does not go there
                self.assertNotIn(role, ("invalid", "unknown"), (view, identity(part)))
                if role in CONTROLS and is_in(part, State.SHOWING, State.ENABLED):
                    seen += 1
                    self.assertTrue(name.strip(), (view, identity(part)))
                    self.assertNotIn("&", name, (view, identity(part)))
        print(f"{seen} controls", flush=True)
        self.assertGreater(seen, 150)

    def test_tab_reaches_every_control_and_comes_round(self):
        self.show_film()
        focus = Focus()
        for view, page, tab in self.VIEWS:
            self.show_view(page, tab)
            wanted = {identity(part) for part, role, _ in self.all_parts()
                      if role in CONTROLS - INNER and is_in(part, State.SHOWING, State.ENABLED, State.FOCUSABLE)}
            self.assertGreater(len(wanted), 3)
            reached, places = set(), []
            for _ in range(2 * len(wanted)):
                way = focus.after(lambda: keys("Tab"))
                reached.update(way)
                if places and way[0] == places[0]:
                    break
                places.append(way[0])
            else:
                self.fail(f"{view}: Tab leads in no circle: {places}")
            print(f"{view}: {len(places)} stops", flush=True)
            self.assertEqual(wanted - reached, set(), view)

    def test_problems_and_messages_are_told(self):
        self.write_preferences([preset("Film", "{Client}", [node("A", []), node("A", [])])])
        self.start_settings()
        wait(lambda: self.found("list item", "^(Error|Warning|Note): "), "the problem with its kind")
        wait(lambda: self.found(ITEM, "^A, Folder, (Error|Warning|Note)"), "the problem at its place")


if __name__ == "__main__":
    unittest.main()
