"""Creations that were killed half-way: the next helper offers to remove what they left, and does not get in the user's way with it."""

from desktop import *
from neighbours import choose, labels, ticks

OFFER = "^Orvane: Unfinished Folder$"
PROMPT, PANEL = "^New Folder from Preset$", "^Orvane: Choose Parent Folder$"
FOUND = "was ended half-way"
TO_SEE_IT = 0.8  # seconds; what is answered before was meant for another window
EXACTNESS = 1.1  # seconds; with which the moment is known at which a process ended
# Killed when it makes "Media", so four items are there.
FILM = preset("Film", "{Client}", [node("Docs", [node("Notes"), node("Letter")]), node("Media", []), node("plain")])
LEFT = ["Docs", "Docs/Letter", "Docs/Notes"]


class KilledCreations(Desktop):
    """Creations that end in the middle, and what becomes of them."""

    def setUp(self):
        # Creations are noted where nothing is written to a disk.
        self.runtime = tempfile.mkdtemp(dir="/dev/shm")
        self.addCleanup(shutil.rmtree, self.runtime, ignore_errors=True)
        super().setUp()
        self.write_preferences([FILM, preset("Plain", "Plain folder")])

    def environment(self, **more):
        return super().environment(XDG_RUNTIME_DIR=self.runtime, **more)

    def create_words(self, client, fault):
        """`orvane create`, at whose third new folder something happens."""
        return ["strace", "-qq", "-o", "/dev/null", "-e", "signal=none", "-e", f"inject=mkdirat:{fault}:when=3",
                os.environ["ORVANE_TEST_ORVANE"], "create", "0", "--set", f"Client={client}", "--no-input", "--no-open"]

    def kill_creation(self, client):
        """Leaves half a folder; its path."""
        result = subprocess.run(self.create_words(client, "signal=KILL"), env=self.environment(), cwd=self.projects, capture_output=True,
                                text=True, timeout=LIMIT)
        self.assertEqual(result.returncode, -9, result.stderr)
        self.assertEqual(self.items(client), LEFT)
        return self.projects / client

    def items(self, folder):
        """What is in it, which may be on its way; None when it is not there."""
        top = self.projects / folder
        found = [os.path.relpath(os.path.join(at, name), top) for at, folders, files in os.walk(top) for name in folders + files]
        return sorted(found) if top.is_dir() else None

    def recover(self, *words):
        result = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "recover", *words], env=self.environment(), capture_output=True,
                                text=True, timeout=LIMIT)
        self.assertEqual(result.stderr, "")
        return result.stdout

    def after_a_while(self, top):
        """Until what is changed now bears another time than what the creation did."""
        newest = max(path.lstat().st_ctime for path in [top, *top.rglob("*")])
        wait(lambda: time.time() > newest + EXACTNESS, "the clock")

    def start_again(self):
        if self.process:
            self.process.terminate()
            self.assertEqual(self.process.wait(LIMIT), 0, self.said())
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")
        self.start()

    def offered(self):
        """The window with the offer."""
        return window(OFFER)

    def take(self, *names):
        """Clicks the window, as a user does who wants it to have the keys, and presses some."""
        x, y, _, _ = geometry(self.offered())
        self.assertTrue(holds(lambda: windows(OFFER), TO_SEE_IT))
        click(x + 8, y + 8)
        active(OFFER)
        if names:
            keys(*names)

    def assert_not_offered(self):
        """Long enough for what comes a second after the start."""
        self.assertTrue(holds(lambda: not windows(OFFER), 2.5), self.said())

    def other_work(self):
        self.run_beside("xterm", "-geometry", "120x40+0+0", "-T", "Other work")
        return active("^Other work$")


class Remains(KilledCreations):
    def test_what_a_killed_command_left_is_offered_and_removed(self):
        work = self.other_work()
        self.kill_creation("Acme")
        self.start()
        self.offered()
        picture("offer")
        self.assertEqual(active_window(), work, "it takes no keyboard")
        self.take("alt+r")
        wait(lambda: self.items("Acme") is None, "the folder to go")
        wait(lambda: "removed: 4, changed since: 0" in self.said(), "the log")
        self.assertTrue(holds(lambda: windows(OFFER)))
        picture("removed")
        keys("Return")
        gone(OFFER)
        self.assertEqual(self.recover(), "")
        self.start_again()
        self.assert_not_offered()

    def test_what_a_killed_helper_left_is_offered_and_removed(self):
        branches = [node(f"branch {number}", [node(f"leaf {leaf}", []) for leaf in range(1000)]) for number in range(60)]
        self.write_preferences([preset("Huge", "Huge", branches)], binary=True)
        self.start()
        self.pop_up_for(self.projects)
        keys("Down", "Return")
        wait((self.projects / "Huge").is_dir, "the creation to begin")
        self.process.kill()
        self.process.wait(LIMIT)
        wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")
        made = len(self.items("Huge")) + 1
        self.assertLess(made, 1 + 60 * 1001, "it was not killed half-way")
        self.process = None
        self.start()
        self.take("alt+r")
        wait(lambda: self.items("Huge") is None, "the folder to go")
        wait(lambda: f"removed: {made}, changed since: 0" in self.said(), "the log")
        self.assert_alive()

    def test_what_was_changed_since_stays(self):
        top = self.kill_creation("Acme")
        self.after_a_while(top)
        (top / "Docs/Notes").write_text("mine")
        self.start()
        self.take("alt+r")
        wait(lambda: self.items("Acme") == ["Docs", "Docs/Notes"], "the rest to go")
        wait(lambda: "removed: 1, changed since: 1" in self.said(), "the log")
        self.assertEqual((top / "Docs/Notes").read_text(), "mine")
        self.assertTrue(holds(lambda: windows(OFFER)))
        picture("changed")
        keys("Return")
        gone(OFFER)
        self.start_again()
        self.assert_not_offered()

    def test_what_is_changed_while_the_offer_stands_stays(self):
        top = self.kill_creation("Acme")
        self.start()
        self.offered()
        self.after_a_while(top)
        (top / "Docs/Letter").write_text("mine")
        self.take("alt+r")
        wait(lambda: self.items("Acme") == ["Docs", "Docs/Letter"], "the rest to go")

    def test_keeping_is_for_good(self):
        self.kill_creation("Acme")
        self.start()
        self.take("Return")
        gone(OFFER)
        wait(lambda: "is kept" in self.said(), "the log")
        self.assertEqual(self.recover(), "")
        self.start_again()
        self.assert_not_offered()
        self.assertEqual(self.items("Acme"), LEFT)

    def test_closing_asks_again_at_the_next_start(self):
        self.kill_creation("Acme")
        self.start()
        self.take("Escape")
        gone(OFFER)
        self.assertTrue(holds(lambda: not windows(OFFER), 1), "not again in this life")
        self.start_again()
        self.take("alt+F4")
        gone(OFFER)
        self.start_again()
        self.take("alt+k")
        gone(OFFER)
        self.assertEqual(self.items("Acme"), LEFT)

    def test_several_are_one_offer(self):
        for client in ("Acme", "Bolt", "Crow"):
            self.kill_creation(client)
        self.start()
        self.offered()
        picture("several")
        self.assertTrue(holds(lambda: len(windows(OFFER)) == 1, 1))
        self.take("alt+r")
        wait(lambda: not list(self.projects.iterdir()), "all of them to go")

    def test_nothing_is_offered_where_nothing_is_left(self):
        top = self.kill_creation("Acme")
        shutil.rmtree(top)
        self.start()
        self.assert_not_offered()
        self.assertNotIn(FOUND, self.said())

    def test_nothing_is_offered_where_all_was_changed(self):
        top = self.kill_creation("Acme")
        self.after_a_while(top)
        for path in [top, *top.rglob("*")]:
            path.chmod(0o700)
        self.start()
        wait(lambda: FOUND in self.said(), "the log")
        self.assert_not_offered()

    def test_a_creation_that_goes_on_is_not_offered(self):
        words = self.create_words("Acme", "delay_enter=6000000")
        with subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=self.environment(), cwd=self.projects) as running:
            wait(lambda: self.items("Acme") == LEFT, "the creation to be half done")
            self.start()
            self.assert_not_offered()
            self.assertIsNone(running.poll(), "it was over before the helper had looked")
            running.communicate(timeout=LIMIT)
        self.assertEqual(running.returncode, 0)
        self.assertEqual(self.items("Acme"), sorted([*LEFT, "Media", "plain"]))
        self.assertNotIn(FOUND, self.said())

    def test_recover_may_come_first(self):
        self.kill_creation("Acme")
        self.start()
        self.offered()
        self.assertIn("removed 4 items", self.recover("--remove"))
        (self.projects / "Acme").mkdir()
        self.take("alt+r")
        self.assertTrue(holds(lambda: windows(OFFER), 0.5), "it stays to say that nothing was left")
        picture("came-late")
        keys("Return")
        gone(OFFER)
        self.assertEqual(self.items("Acme"), [])
        self.assert_alive()

    def test_recover_may_come_at_the_same_moment(self):
        for number in range(3):
            for client in ("Acme", "Bolt"):
                self.kill_creation(client)
            self.start()
            self.take()
            other = subprocess.Popen([os.environ["ORVANE_TEST_ORVANE"], "recover", "--remove"], env=self.environment(),
                                     stdout=subprocess.DEVNULL)
            keys("alt+r")
            self.assertIn(other.wait(LIMIT), (0, 1))
            wait(lambda: not list(self.projects.iterdir()), f"all to go, attempt {number}")
            self.assert_alive()
            self.process.terminate()
            self.assertEqual(self.process.wait(LIMIT), 0, self.said())
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")

    def test_menu_and_creation_work_while_it_stands(self):
        self.kill_creation("Acme")
        self.start()
        self.offered()
        work = self.other_work()
        self.pop_up_for(self.projects)
        keys("Down", "Down", "Return")
        self.wait_for_folder(self.projects / "Plain folder")
        self.assertEqual(active_window(), work)
        self.assertTrue(windows(OFFER))
        # Another question of ours takes its place as long as that lasts.
        self.pop_up_for(self.projects)
        keys("Down", "Return")
        active(PROMPT)
        gone(OFFER)
        type_text("Next")
        keys("Return")
        self.wait_for_folder(self.projects / "Next/Media")
        gone(PROMPT)
        self.offered()
        self.take("alt+r")
        wait(lambda: self.items("Acme") is None, "the folder to go")
        self.assertTrue((self.projects / "Next/Docs/Notes").is_file())

    def test_it_waits_for_a_question_that_came_first(self):
        self.kill_creation("Acme")
        self.start()
        self.pop_up_for(self.projects)
        keys("Down", "Return")
        active(PROMPT)
        wait(lambda: FOUND in self.said(), "the search")
        self.assert_not_offered()
        keys("Escape", "Escape")
        gone(PROMPT)
        self.offered()

    def test_quitting_works_while_it_stands(self):
        self.kill_creation("Acme")
        for act in (lambda: choose(self.process, "Quit Orvane"), lambda: self.process.terminate(),
                    lambda: bus_call("org.freedesktop.Application.ActivateAction", "quit", "[]", "{}")):
            self.start()
            wait(lambda: labels(self.process), "the menu")
            self.offered()
            act()
            self.assertEqual(self.process.wait(LIMIT), 0, self.said())
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")
        self.assertEqual(self.items("Acme"), LEFT)

    def test_nothing_goes_on_while_it_stands(self):
        self.kill_creation("Acme")
        self.start()
        self.offered()

        def is_idle():
            used = ticks(self.process)
            return holds(lambda: ticks(self.process) == used, 3)

        wait(is_idle, "the helper to do nothing")

    def test_the_icon_comes_first_and_without_any_creation_one_look_is_all(self):
        calls = self.home / "calls"
        words = ["strace", "-f", "-qq", "-s", "2000", "-e", "trace=open,openat,access,sendmsg", "-o", str(calls), os.environ["ORVANE_TEST_HELPER"]]
        self.others.append(subprocess.Popen(words, env=self.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                            stderr=subprocess.DEVNULL))

        def lines_with(text):
            lines = calls.read_text(errors="replace").splitlines() if calls.exists() else []
            return [(number, line) for number, line in enumerate(lines) if text in line]

        wait(lambda: lines_with("orvane/creations"), "the look")
        self.assertTrue(holds(lambda: len(lines_with("orvane/creations")) == 1, 1), lines_with("orvane/creations"))
        [(look, line)] = lines_with("orvane/creations")
        self.assertIn("ENOENT", line)
        self.assertLess(lines_with("org.kde.StatusNotifierItem-")[0][0], look)
        bus_call("org.freedesktop.Application.ActivateAction", "quit", "[]", "{}")
        wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")


if __name__ == "__main__":
    unittest.main()
