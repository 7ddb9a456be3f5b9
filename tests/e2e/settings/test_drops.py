"""Files dragged with the mouse from a file manager into the window, and presets out of it."""

from settings_desk import *

MANAGER_PLACE = 905, 0, 370, 500


class Drops(SettingsDesktop):
    def setUp(self):
        super().setUp()
        self.desk = self.home / "On the desk"
        self.desk.mkdir()
        self.write_preferences([preset("Film", "{Client}", [node("A", []), node("B", [])])])
        self.start_settings()
        self.place(window(TITLE), 0, 0, 900, 760)

    def place(self, identifier, x, y, width, height):
        subprocess.run(["xdotool", "windowsize", str(identifier), str(width), str(height), "windowmove", str(identifier), str(x), str(y)],
                       check=True, timeout=LIMIT)
        wait(lambda: geometry(identifier)[2] == width, "the window's size")

    def open_file_manager(self):
        self.manager = self.run_beside("pcmanfm-qt", str(self.desk), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        active("On the desk")
        self.place(active_window(), *MANAGER_PLACE)
        return self.manager

    def icon(self, name):
        """Where a file's icon is on the screen, once the file manager knows where its window is and has put the icon into it."""
        part = self.part(ITEM, f"^{re.escape(name)}$", self.manager)

        def place():
            knows = extents(next(children(self.program(self.manager)))) == MANAGER_PLACE
            x, y, width, height = extents(part)
            left, upper, across, down = extents(part.get_parent())
            is_inside = left <= x < x + width <= left + across and upper <= y < y + height <= upper + down
            return knows and is_inside and (x + width // 2, y + height // 2)

        return wait(place, f"'{name}' to be in the file manager's window")

    def row(self, pattern):
        box = self.part(ITEM, pattern).get_extents(Atspi.CoordType.SCREEN)
        return box.x + min(40, box.width // 2), box.y + box.height // 2

    def test_a_file_becomes_a_content_file_in_the_folder_that_it_is_dropped_on(self):
        (self.desk / "letter.txt").write_text("Dear …")
        self.open_file_manager()
        drag_to_other(self.icon("letter.txt"), self.row("^B, Folder"))
        wait(lambda: self.tree_of() == ["A", "B", ["letter.txt"]], f"the file in the tree on disk, not {self.tree_of()}")
        self.assertEqual((self.support / "File Content/letter.txt").read_text(), "Dear …")
        self.assertTrue((self.desk / "letter.txt").exists(), "it is copied, not moved")
        picture("drops-content")

    def test_a_folder_becomes_a_tree(self):
        (self.desk / "Kit/sub").mkdir(parents=True)
        (self.desk / "Kit/sub/tool.sh").write_text("#!/bin/sh\n")
        self.open_file_manager()
        drag_to_other(self.icon("Kit"), self.row("^A, Folder"))
        wait(lambda: self.tree_of() == ["A", ["Kit", ["sub", ["tool.sh"]]], "B"], f"the folder in the tree on disk, not {self.tree_of()}")
        self.assertTrue((self.desk / "Kit/sub/tool.sh").exists(), "it is copied, not moved")

    def test_a_preset_file_dropped_on_the_list_is_added(self):
        made = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "export", "Film", str(self.desk / "Again.orvpreset")],
                              env=self.environment(), capture_output=True, text=True, timeout=LIMIT)
        self.assertEqual(made.returncode, 0, made.stderr)
        self.open_file_manager()
        x, y = self.row("^Film$")
        drag_to_other(self.icon("Again.orvpreset"), (x, y + 60))
        self.wait_for_labels("Film", "Film")
        self.assertTrue((self.desk / "Again.orvpreset").exists())

    def test_a_preset_dragged_out_of_the_list_is_a_preset_file(self):
        self.open_file_manager()
        before = self.preferences.read_bytes()
        subprocess.run(["xdotool", "windowactivate", str(window(TITLE))], check=True, timeout=LIMIT)
        active(TITLE)
        drag_to_other(self.row("^Film$"), (1150, 300))
        picture("drops-out")
        wait(self.manager_asks, "the file manager to ask what to do")
        keys("Down", "Return")  # "Copy here"
        target = self.desk / "Film.orvpreset"
        wait(target.exists, "the file where it was dropped")
        shown = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "check", str(target)], env=self.environment(), capture_output=True,
                               text=True, timeout=LIMIT)
        self.assertEqual(shown.returncode, 0, shown.stdout + shown.stderr)
        self.assertTrue(holds(lambda: self.preferences.read_bytes() == before, 1), "the preset stays in the list")

    def manager_asks(self):
        """Whether a menu of the file manager is up."""
        for line in output("xwininfo", "-root", "-children").splitlines():
            found = re.match(r'\s*(0x[0-9a-f]+) .*: \("pcmanfm-qt" .*\)\s+(\d+)x(\d+)', line)
            if found and int(found.group(2)) > 40:
                details = output("xwininfo", "-id", found.group(1))
                if "Override Redirect State: yes" in details and "IsViewable" in details:
                    return True
        return False

    def test_presets_are_put_into_another_order(self):
        self.end_settings()
        self.write_preferences([preset(label, "{Client}") for label in ("One", "Two", "Three")])
        self.start_settings()
        x, y = self.row("^One$")
        end = self.row("^Three$")
        drag((x, y), (end[0], end[1] + 12))
        self.wait_for_labels("Two", "Three", "One")
        keys("ctrl+z")
        self.wait_for_labels("One", "Two", "Three")

    def test_items_are_dragged_within_the_tree(self):
        drag(self.row("^B, Folder"), self.row("^A, Folder"))
        wait(lambda: self.tree_of() == ["A", ["B"]], f"the tree on disk, not {self.tree_of()}")


if __name__ == "__main__":
    unittest.main()
