"""Who does nothing takes nothing: no processor time and no waking up, idle or with a window that waits for the user."""

from desktop import *
from neighbours import Tray, choose, embedded_icons, labels, ticks, wakeups

PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"
STRETCH = 3  # seconds
QUIET = 15  # seconds until everything that happens once after the start has happened: the search for a tray ends after ten


class Idle(Desktop):
    def assert_quiet(self, what, blinks=0):
        """`blinks`: how often a text cursor blinks in the stretch; each of them wakes several threads."""
        def stretch():
            wakes, used = wakeups(self.process), ticks(self.process)
            self.assertTrue(holds(lambda: self.process.poll() is None, STRETCH), self.said())
            return wakeups(self.process) - wakes, ticks(self.process) - used

        measured = []

        def is_quiet():
            measured.append(stretch())
            return measured[-1][0] <= 8 * blinks and measured[-1][1] <= (1 if blinks else 0)

        wait(is_quiet, f"nothing to happen, {what}: (wake-ups, ticks) {measured}", QUIET)
        print(f"{what}: {measured}", flush=True)

    def start_with_tray(self):
        tray = Tray("trayer")
        tray.start()
        self.addCleanup(tray.kill)
        self.write_preferences([preset("Film", "Film {Client}"), preset("Bad", "")])
        self.start()
        wait(lambda: labels(self.process) and embedded_icons(), "the icon")

    def test_idle_in_the_tray(self):
        self.start_with_tray()
        self.assert_quiet("in the tray")

    def test_while_windows_wait(self):
        self.start_with_tray()
        self.pop_up()
        self.assert_quiet("menu")
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")
        choose(self.process, "Film")
        active(PANEL)
        self.assert_quiet("panel", blinks=2 * STRETCH)
        choose_in_panel(self.projects)
        active(PROMPT)
        self.assert_quiet("prompt", blinks=2 * STRETCH)
        keys("Escape", "Escape")
        gone(PROMPT)


if __name__ == "__main__":
    unittest.main()
