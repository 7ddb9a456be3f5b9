"""The disk fills up in the middle of a creation: one alert with the reason, nothing left over, and the helper goes on."""

import smalldisk

from desktop import *
from neighbours import labels

PROMPT, ALERT = "New Folder from Preset", "^Orvane$"


class Steps(Desktop):
    def start_on_small_disk(self, options, tree, **more):
        """The projects' folder is a disk that only the helper sees."""
        content = self.support / "File Content"
        content.mkdir()
        (content / "big.bin").write_bytes(b"b" * (4 << 20))
        self.write_preferences([preset("Big", "Big {AutoJob}", tree), preset("Small", "Small", [node("one.txt")])],
                               ORVAutomaticVars={"AutoJob": "41"})
        self.start(before=lambda: smalldisk.mount(self.projects, options), **more)
        wait(lambda: labels(self.process), "the menu")
        self.inside = Path(f"/proc/{self.process.pid}/root{self.projects}")

    def choose_at_mouse(self, *names):
        self.pop_up_for(self.projects)
        keys(*names)

    def make_big(self):
        self.choose_at_mouse("Down", "Return")
        active(PROMPT)
        keys("Return")

    def alert_text(self):
        """Text of the alert as its user copies it."""
        x, y, width, height = geometry(active(ALERT))
        click(x + width // 2, y + height // 3)
        keys("ctrl+a", "ctrl+c")
        return wait(lambda: output("xclip", "-selection", "clipboard", "-o"), "the text to be copied")

    def assert_next_folder_is_made(self):
        self.choose_at_mouse("Down", "Down", "Return")
        wait(lambda: (self.inside / "Small/one.txt").exists(), "the next folder, which has room")
        self.assert_alive()


class Disk(Steps):
    def test_no_room_for_more_files(self):
        tree = [node("Folder %d" % number, [node("file.txt")]) for number in range(20)]
        self.start_on_small_disk("size=2m,nr_inodes=12", tree)
        self.make_big()
        active(ALERT)
        picture("disk-full")
        self.assertEqual(list(self.inside.iterdir()), [], "nothing is left while the alert is up")
        text = self.alert_text()
        title, reason = text.split("\n", 1)
        self.assertEqual(title, "ORV wasn't able to create the preset")
        self.assertRegex(reason, rf"^ORV wasn't able to create the preset, because a file creation failed: "
                                 rf"Unable to create (file '|directory ){self.projects}/Big 42/Folder \d+(/file.txt'|).$")
        active(ALERT)
        keys("Return")
        gone(ALERT)
        self.assertEqual(self.opened_folders(), [])
        self.assertEqual(self.read_preferences()["ORVAutomaticVars"], {"AutoJob": "42"}, "the counter advances even then")
        self.assert_next_folder_is_made()

    def test_no_room_for_a_content_leaves_an_empty_file_and_no_half_one(self):
        self.start_on_small_disk("size=2m", [node("big.bin", contentFilename="big.bin"), node("after", [])])
        self.make_big()
        wait(lambda: self.opened_folders() == [f"{self.projects}/Big 42"], "the folder to be opened")
        self.assertEqual(sorted(path.name for path in (self.inside / "Big 42").iterdir()), ["after", "big.bin"])
        self.assertEqual((self.inside / "Big 42/big.bin").stat().st_size, 0)
        self.assertFalse(windows(ALERT))
        self.assert_next_folder_is_made()


class PreferencesDisk(Steps):
    def test_no_room_for_the_counter_keeps_the_old_one_and_the_folder_is_made(self):
        """The preferences stand on a disk that is full but for the file itself."""
        place = self.preferences.parent
        place.mkdir(parents=True)

        def fill():
            smalldisk.mount(place, "size=64k,nr_inodes=3")
            self.write_preferences([preset("Big", "Big {AutoJob}")], ORVAutomaticVars={"AutoJob": "41"})
            try:
                (place / "filler").write_bytes(bytes(1 << 20))
            except OSError:
                pass

        self.start(before=fill)
        wait(lambda: labels(self.process)[:1] == ["Big"], "the menu")
        inside = Path(f"/proc/{self.process.pid}/root{self.preferences}")
        before = inside.read_bytes()
        self.make_big()
        self.wait_for_folder(self.projects / "Big 42")
        wait(lambda: "was not changed: a temporary file cannot be made in its folder: No space left" in self.said(), "a word in the log")
        self.assertEqual(inside.read_bytes(), before)
        self.assertEqual(sorted(path.name for path in inside.parent.iterdir()), ["filler", inside.name])
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
