"""The file manager in front is asked for its folder; when it hangs, the chooser comes up all the same, and soon."""

from desktop import *
from neighbours import labels

PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"
SOON = 3  # seconds from the choice to the chooser on a loaded machine; a call without a limit of its own takes 15 or 25


class FileManagers(Desktop):
    PROGRAMS = (("thunar",), ("pcmanfm-qt",))

    def choose(self):
        """Chooses the preset with the file manager active, and waits for whatever comes of it; how long that took."""
        self.ask_for_menu("make-preset", "[]")
        keys("Down", "Return")
        began = time.monotonic()
        wait(lambda: windows(PROMPT) or windows(PANEL), "prompt or chooser")
        return time.monotonic() - began

    def cancel(self, title):
        """Once more where something of the window's own, such as a list of completions, takes the first key for itself."""
        active(title)
        keys("Escape")
        try:
            wait(lambda: not windows(title), f"the window '{title}' to go", 4)
        except TimeIsUp:
            keys("Escape")
            gone(title)

    def test_one_that_hangs_costs_no_time_and_one_that_goes_on_is_heard(self):
        self.write_preferences([preset("Film", "Film {Client}")])
        shown = self.projects / "näïve folder"
        shown.mkdir()
        self.start()
        wait(lambda: labels(self.process), "the menu")
        for words in self.PROGRAMS:
            with self.subTest(words[0]):
                move(1200, 700)
                manager = self.run_beside(*words, str(shown))
                active("näïve folder")

                def is_told():
                    self.choose()
                    told = bool(windows(PROMPT))
                    self.cancel(PROMPT if told else PANEL)
                    active("näïve folder")
                    return told

                wait(is_told, "the folder to be known once the program has set itself up")
                manager.send_signal(signal.SIGSTOP)
                try:
                    for _ in range(3):
                        took = self.choose()
                        print(f"{words[0]} hangs: chooser after {took * 1000:.0f} ms", flush=True)
                        self.assertTrue(windows(PANEL))
                        self.assertLess(took, SOON)
                        self.cancel(PANEL)
                        active("näïve folder")
                    self.assertIn("no answer in time", self.said())
                finally:
                    manager.send_signal(signal.SIGCONT)
                wait(is_told, "the folder to be known again")
                self.choose()
                active(PROMPT)
                type_text("in " + words[0])
                keys("Return")
                self.wait_for_folder(shown / f"Film in {words[0]}")
                manager.kill()
                manager.wait(LIMIT)
                gone("näïve folder")
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
