"""What the helper's windows do while they are open: menu, second requests, Quit, signals; and a creation that takes its time."""

import signal
import time
from desktop import *
from neighbours import place_of_icon

PROMPT = "^New Folder from Preset$"
PANEL = "^Orvane: Choose Parent Folder$"
WORKING = "^Orvane$"


class Windows(Desktop):
    def icon(self, before):
        """What appeared at the bottom of the screen: left edge, upper edge, and its pixels row by row. A panel that lists windows, too,
        moves it."""
        x, y, width, height = place_of_icon(before)
        now = screen()
        return x, y, [now[((y + row) * WIDTH + x) * 3:((y + row) * WIDTH + x + width) * 3] for row in range(height)]

    @staticmethod
    def find(icon):
        """Middle of the place where those pixels are now; where they were when they are nowhere, since a tray may draw them anew."""
        left, top, rows = icon
        now = screen()
        lines = [now[(top + row) * WIDTH * 3:(top + row + 1) * WIDTH * 3] for row in range(len(rows))]
        size = len(rows[0])
        for x in range(WIDTH - size // 3):
            if all(line[x * 3:x * 3 + size] == row for line, row in zip(lines, rows)):
                left = x
                break
        return left + size // 6, top + len(rows) // 2

    def begin(self, *presets):
        """A helper in the tray; its icon."""
        self.write_preferences(presets or [preset("Film", "{Client}"), preset("Photo", "{Shoot}")])
        before = screen_with_tray()
        self.start()
        return self.icon(before)

    def choose_in_tray(self, icon, *names):
        # Slept deliberately: a panel says nowhere that it has done moving its icons, rest shows over some time only.
        wait(lambda: self.find(icon) == (time.sleep(0.2), self.find(icon))[1], "the icon to stay where it is")
        before = screen()
        open_menu(before, lambda: self.find(icon))
        keys(*names)

    def prompt(self):
        """Pops the menu up and goes on until the prompt asks."""
        answer = bus_call("org.freedesktop.Application.ActivateAction", "make-preset-in", f"[<'{self.projects}'>]", "{}")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        menu()
        keys("Down", "Return")
        return active(PROMPT)

    def other_work(self):
        """The user goes on with another program, whose window lies in front."""
        self.run_beside("xterm", "-geometry", "120x40+0+0", "-T", "Other work")
        active("^Other work$")

    def ends(self):
        self.assertEqual(self.process.wait(timeout=LIMIT), 0, self.said())
        self.assertEqual(list(self.projects.iterdir()), [])

    def test_a_preset_chosen_while_the_prompt_is_open_brings_the_prompt_up_and_nothing_else(self):
        icon = self.begin()
        asking = self.prompt()
        self.other_work()
        self.choose_in_tray(icon, "Down", "Down", "Return")
        self.assertEqual(active(PROMPT), asking)
        self.assertTrue(holds(lambda: windows(PROMPT) == [asking] and not windows(PANEL)))
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Acme")

    def test_quit_in_the_tray_abandons_an_open_prompt_and_ends_the_program(self):
        icon = self.begin()
        self.prompt()
        self.choose_in_tray(icon, "Up", "Return")
        self.ends()

    def test_quit_in_the_tray_dismisses_an_open_alert_and_ends_the_program(self):
        icon = self.begin(preset("Taken", "{Client}"))
        (self.projects / "Acme").mkdir()
        self.prompt()
        type_text("Acme")
        keys("Return")
        gone(PROMPT)
        active(WORKING)
        self.choose_in_tray(icon, "Up", "Return")
        self.assertEqual(self.process.wait(timeout=LIMIT), 0, self.said())

    def test_quit_in_the_tray_cancels_an_open_panel_and_ends_the_program(self):
        icon = self.begin()
        self.choose_in_tray(icon, "Down", "Return")
        active(PANEL)
        self.choose_in_tray(icon, "Up", "Return")
        self.ends()

    def test_requests_of_other_programs_bring_the_open_prompt_up(self):
        self.begin()
        asking = self.prompt()
        self.other_work()
        answer = bus_call("org.freedesktop.Application.ActivateAction", "make-preset", "[]", "{}")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertEqual(active(PROMPT), asking)
        subprocess.run(["xdotool", "search", "--name", "^Other work$", "windowactivate"], check=True, timeout=LIMIT)
        active("^Other work$")
        second = subprocess.run([os.environ["ORVANE_TEST_HELPER"]], env=self.environment(), timeout=LIMIT)
        self.assertEqual(second.returncode, 0)
        self.assertEqual(active(PROMPT), asking)
        self.assertIsNone(popup_menu())

    def test_a_minimised_prompt_comes_back_too(self):
        self.begin()
        asking = self.prompt()
        subprocess.run(["xdotool", "windowminimize", str(asking)], check=True, timeout=LIMIT)
        wait(lambda: not windows(PROMPT), "the prompt to be minimised")
        bus_call("org.freedesktop.Application.ActivateAction", "make-preset", "[]", "{}")
        self.assertEqual(active(PROMPT), asking)

    def test_a_search_for_variables_that_never_ends_does_not_outlive_a_signal(self):
        self.begin(preset("Endless", "Job {"))
        bus_call("org.freedesktop.Application.ActivateAction", "make-preset-in", f"[<'{self.projects}'>]", "{}")
        menu()
        keys("Down", "Return")
        wait(lambda: "It was chosen" in self.said(), "the search to have begun")
        self.process.terminate()
        self.assertEqual(self.process.wait(timeout=LIMIT), 128 + signal.SIGTERM)

    def long_creation(self):
        """A preset that takes some seconds to make here, however fast that is; and the number of its folders."""
        begin = time.monotonic()
        for index in range(1000):
            (self.projects / f"try {index}").mkdir()
        took = time.monotonic() - begin
        for index in range(1000):
            (self.projects / f"try {index}").rmdir()
        branches = max(150, min(300, round(6 / took)))
        leaves = [node(f"leaf {index}", []) for index in range(1000)]
        return preset("Huge", "{Client}", [node(f"branch {index}", leaves) for index in range(branches)]), branches * 1001

    def test_a_long_creation_shows_its_progress_and_no_window_that_hangs(self):
        self.projects = Path(tempfile.mkdtemp(dir="/dev/shm"))
        self.addCleanup(shutil.rmtree, self.projects, ignore_errors=True)
        huge, folders = self.long_creation()
        self.write_preferences([huge], binary=True)
        self.start()
        self.prompt()
        type_text("Acme")
        keys("Return")
        gone(PROMPT)  # though the program is at work and handles no events
        working = window(WORKING)
        self.assertFalse(self.opened_folders(), "the window came while the creation was under way")
        # The window is another process's, which has nothing else to do than to answer: the busy one shows none.
        self.assertNotEqual(int(output("xdotool", "getwindowpid", str(working))), self.process.pid)
        picture("progress")
        wait(lambda: self.opened_folders() == [str(self.projects / "Acme")], "the creation to end", 200)
        gone(WORKING)
        self.assertEqual(sum(len(inner) for _, inner, _ in os.walk(self.projects / "Acme")), folders)

    def test_a_short_creation_shows_no_progress(self):
        self.begin(preset("Small", "{Client}", [node("One", [])]))
        self.prompt()
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Acme/One")
        self.assertTrue(holds(lambda: not windows(WORKING), 1))


if __name__ == "__main__":
    unittest.main()
