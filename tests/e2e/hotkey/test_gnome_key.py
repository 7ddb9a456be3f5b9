"""A key bound by the letter of what Orvane says, in GNOME's own settings: pressed, it brings the chooser up, with the keyboard."""

import unittest
from chooser_desks import *
from chooser_desks import keep_picture

MEDIA_KEYS = "/usr/libexec/gsd-media-keys"  # of gnome-settings-daemon: it starts the commands that users bind


class GnomeKey(ChooserDesktop):
    def test_a_key_bound_as_the_statement_says_brings_the_chooser_up(self):
        self.start_without_hot_key()
        commands = [line.strip() for line in self.statement().splitlines() if line.strip().startswith("gsettings set ")]
        self.assertEqual(len(commands), 4, self.statement())
        session = dict(os.environ, PATH=self.path)  # the user's own settings, not those of this test's home
        for command in commands:
            result = subprocess.run(["sh", "-c", command], env=session, capture_output=True, text=True, timeout=LIMIT)
            self.assertEqual((result.returncode, result.stderr), (0, ""), command)
        with open(self.home / "media-keys.log", "wb") as log:
            self.others.append(subprocess.Popen([MEDIA_KEYS, "--verbose"], env=session, stdin=subprocess.DEVNULL, stdout=log, stderr=log))
        wait(lambda: "'org.gnome.SettingsDaemon.MediaKeys'" in bus_names(), "GNOME's keys")
        before = self.still_screen()
        # The shell is told of the key a moment after the service is there.
        self.press_until_something_comes_up("Control", "Shift", "h")
        keep_picture("chooser-by-key", self.still_screen())
        self.desk.press("Escape")
        self.desk.wait_for_gone(CHOOSER, before)
        self.assert_alive()

    def press_until_something_comes_up(self, *names):
        for _attempt in range(40):
            self.desk.press(*names)
            try:
                return wait(lambda: any(each == "*" + CHOOSER for each in self.desk.windows()), "the chooser with the keyboard", 2)
            except TimeIsUp:
                continue
        raise TimeIsUp("the key that was bound brings nothing up: " + (self.home / "media-keys.log").read_text(errors="replace")[-2000:])


if __name__ == "__main__":
    unittest.main()
