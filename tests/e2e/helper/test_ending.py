"""The helper's end: by signal, at log-out, with its X server, and when it is killed; whatever is open then."""

import os

from desktop import *
from neighbours import DesktopWithOwnBus, choose, labels, names

PROMPT, PANEL = "New Folder from Preset", "Orvane: Choose Parent Folder"
SOON = 1.0  # seconds that an end in order may take on a machine with nothing else to do


def soon():
    """How long that may be while the processors have to do with others."""
    return SOON * max(1.0, 2 * os.getloadavg()[0] / (os.cpu_count() or 1))


class Server:
    """An X server of its own, which goes away without a word."""

    def __init__(self):
        reading, writing = os.pipe()
        self._process = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-noreset", "-nolisten", "tcp"],
                                         pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        assert number, "no X server"
        self._former = os.environ["DISPLAY"]
        os.environ["DISPLAY"] = f":{number}"
        self._manager = subprocess.Popen(["openbox", "--sm-disable"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            wait(lambda: "window id" in output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "the window manager")
        except TimeIsUp:
            self.kill()
            raise

    def kill(self):
        if self._process.returncode is None:
            self._process.kill()
            self._process.wait(LIMIT)
            self._manager.wait(LIMIT)
            os.environ["DISPLAY"] = self._former


class States(DesktopWithOwnBus):
    def setUp(self):
        super().setUp()
        self.write_preferences([preset("Film", "Film {Client}"), preset("Bad", "")], ORVAutomaticVars={"AutoJob": "41"})
        self.kept = self.preferences.read_bytes()

    def start_and_open(self, state, **more):
        self.start(**more)
        wait(lambda: labels(self.process), "the menu")
        if state == "idle":
            return
        if state == "panel":
            choose(self.process, "Film")
            active(PANEL)
            return
        self.pop_up_for(self.projects)
        if state == "prompt":
            keys("Down", "Return")
            active(PROMPT)
        elif state == "alert":
            keys("Down", "Down", "Return")
            active("^Orvane$")

    def assert_ends(self, what, statuses=(0,)):
        before = time.monotonic()
        try:
            status = self.process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"still there: {what}; {self.said()}") from None
        took = time.monotonic() - before
        self.assertIn(status, statuses, f"{what}: {self.said()}")
        self.assertLess(took, soon(), what)
        self.assertEqual(self.preferences.read_bytes(), self.kept)
        self.assertEqual(list(self.projects.iterdir()), [])

    def in_each_state(self, act):
        for state in ("idle", "menu", "panel", "prompt", "alert"):
            with self.subTest(state):
                act(state)
                wait(lambda: NAME not in names(), "the name to be free")


class Ending(States):
    def test_a_signal_ends_it_whatever_is_open(self):
        def act(state):
            self.start_and_open(state)
            picture(f"before-the-end-{state}")
            self.process.terminate()
            self.assert_ends(state)

        self.in_each_state(act)

    def test_the_quit_item_and_the_quit_action_end_it(self):
        def act(state):
            self.start_and_open(state)
            bus_call("org.freedesktop.Application.ActivateAction", "quit", "[]", "{}")
            self.assert_ends(state)

        self.start_and_open("idle")
        choose(self.process, "Quit Orvane")
        self.assert_ends("item")
        wait(lambda: NAME not in names(), "the name to be free")
        self.in_each_state(act)

    def test_it_ends_when_its_bus_goes_and_then_the_signal_comes(self):
        def act(state):
            self.start_and_open(state)
            self.bus.kill()
            self.process.terminate()
            self.assert_ends(state)
            self.bus.start()

        self.in_each_state(act)

    def test_it_does_not_outlive_its_x_server(self):
        def act(state):
            server = Server()
            try:
                self.start_and_open(state)
            finally:
                server.kill()
            self.assert_ends(state, statuses=(0, 1))

        self.in_each_state(act)

    def test_log_out_asks_nothing_and_ends_it(self):
        def act(state):
            manager = subprocess.Popen(["/usr/bin/python3", "-B", str(Path(__file__).with_name("sessionmanager.py"))], text=True,
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE)
            self.others.append(manager)
            address = manager.stdout.readline().strip()
            self.assertTrue(address.startswith("local/"), address)
            self.start_and_open(state, SESSION_MANAGER=address)
            self.assertEqual(manager.stdout.readline(), "registered\n")
            manager.stdin.write("log out\n")
            manager.stdin.flush()
            self.assertEqual(manager.stdout.readline(), "saved\n")
            self.assert_ends(state)
            self.assertEqual(manager.stdout.readline(), "closed\n")  # which may have come together with the line before
            manager.wait(LIMIT)

        self.in_each_state(act)


class Killed(States):
    def files(self):
        """Every file of the user but the log, with its content."""
        found = sorted(path for path in self.home.rglob("*") if path.is_file() and path.name not in ("log", "helper.log"))
        return {str(path.relative_to(self.home)): path.read_bytes() for path in found}

    def test_the_next_start_works_after_a_kill_with_the_prompt_open(self):
        self.start_and_open("idle")
        before = self.files()
        self.process.kill()
        self.process.wait(LIMIT)
        for state in ("prompt", "panel", "alert", "menu"):
            with self.subTest(state):
                self.start_and_open(state)
                self.process.kill()
                self.process.wait(LIMIT)
                self.assertEqual(self.files(), before)
        self.start_and_open("prompt")
        type_text("Acme")
        keys("Return")
        self.wait_for_folder(self.projects / "Film Acme")
        gone(PROMPT)
        self.assert_alive()

    def test_a_window_that_is_killed_by_its_connection_ends_the_helper_and_not_the_next(self):
        self.start_and_open("prompt")
        subprocess.run(["xkill", "-id", str(window(PROMPT))], check=True, capture_output=True, timeout=LIMIT)
        self.assert_ends("xkill", statuses=(0, 1))
        self.start_and_open("prompt")
        self.assert_alive()


if __name__ == "__main__":
    unittest.main()
