"""A desktop without any tray: the helper says so once, and is reached without one."""

import os

from desktop import *
from neighbours import labels, ticks

MESSAGE = "this desktop has no status bar"
PATIENCE = 60  # seconds; the helper waits forty for a tray before it says that there is none


class NoTray(Desktop):
    def run_program(self, *words):
        result = subprocess.run(words, env=self.environment(), capture_output=True, text=True, timeout=LIMIT)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def reach(self, *words):
        self.run_program(*words)
        menu()
        keys("Escape")
        wait(lambda: not popup_menu(), "the menu to go")

    def test_it_is_reached_by_command_and_second_start(self):
        self.write_preferences([preset("Plain", "Plain folder")])
        self.start()
        self.reach(os.environ["ORVANE_TEST_HELPER"])
        self.reach(os.environ["ORVANE_TEST_ORVANE"], "menu")
        self.run_program(os.environ["ORVANE_TEST_ORVANE"], "menu", "--in", str(self.projects))
        menu()
        keys("Down", "Return")
        self.wait_for_folder(self.projects / "Plain folder")
        self.assert_alive()


class Told(NoTray):
    """Long: run on demand."""

    def test_it_says_so_once(self):
        self.write_preferences([preset("Plain", "Plain folder")])
        self.start()
        wait(lambda: MESSAGE in self.said(), "the message", PATIENCE)
        self.reach(os.environ["ORVANE_TEST_HELPER"])
        for shown in (False, True):
            self.write_preferences([preset("Plain", "Plain folder")], ORVShowMenubar=shown)
            self.announce_change()
            wait(lambda: bool(labels(self.process, 1) or labels(self.process, 2)) == shown, "the change")
        self.assertTrue(holds(lambda: self.said().count(MESSAGE) == 1, 45), self.said())
        used = ticks(self.process)
        self.assertTrue(holds(lambda: ticks(self.process) == used, 3), "nothing goes on after that")


def load_tests(loader, _tests, _pattern):
    """The long ones only when asked for, so that nobody waits for them unawares."""
    return loader.loadTestsFromTestCase(Told if "ORVANE_TEST_LONG" in os.environ else NoTray)


if __name__ == "__main__":
    unittest.main()
