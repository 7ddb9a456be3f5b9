"""Real presses of the hot key: where the menu comes up, locks, layouts, other programs' grabs, and what stays behind."""

import signal
import unittest.mock
from keyboard import CONTROL as X_CONTROL, ESCAPE_KEY, MENU_KEY, SHIFT as X_SHIFT, SUPER_KEY, other_program_with
from support import *
from support import CONTROL_KEY, Server

NAMES_OF_BOTTOM_LEFT_KEY = {"us": "Z", "de": "Y", "fr": "W", "ru": "Я", "tr": "Z", "jp": "Z"}


def layout(*words):
    subprocess.run(["setxkbmap", *words], check=True, timeout=LIMIT)


def locks():
    """Names of the locks that are on."""
    return {name for name in ("Caps Lock", "Num Lock") if re.search(name + r":\s+on", output("xset", "q"))}


class Place(HotKeyDesktop):
    def test_the_menu_is_ten_left_of_and_below_the_pointer(self):
        self.start_with_hot_key()
        for x, y in ((500, 300), (10, 0), (11, 100), (900, 50)):
            move(x, y)
            press_hot_key()
            self.assertEqual(menu()[:2], (x - DISTANCE, y + DISTANCE))
            self.close_menu()

    def test_near_the_edges_the_whole_menu_is_inside_the_screen(self):
        self.start_with_hot_key()
        for x, y in ((0, 0), (WIDTH - 1, 0), (0, HEIGHT - 1), (WIDTH - 1, HEIGHT - 1), (WIDTH // 2, HEIGHT - 5)):
            move(x, y)
            press_hot_key()
            left, top, width, height = menu()
            self.assertGreaterEqual(left, 0)
            self.assertGreaterEqual(top, 0)
            self.assertLessEqual(left + width, WIDTH, f"pointer at {x}, {y}")
            self.assertLessEqual(top + height, HEIGHT, f"pointer at {x}, {y}")
            self.close_menu()


class Keys(HotKeyDesktop):
    def tearDown(self):
        layout("-layout", "us", "-option", "")

    def test_works_with_caps_lock_and_num_lock_on(self):
        self.start_with_hot_key()
        for lock, on in (("Caps_Lock", {"Caps Lock"}), ("Num_Lock", {"Caps Lock", "Num Lock"}), ("Caps_Lock", {"Num Lock"}), ("Num_Lock", set())):
            subprocess.run(["xdotool", "key", lock], check=True, timeout=LIMIT)
            wait(lambda on=on: locks() == on, f"the locks {on}")
            press_hot_key()
            menu()
            subprocess.run(["xdotool", "key", "Escape"], check=True, timeout=LIMIT)
            wait(lambda: popup_menu() is None, "the menu to be closed")

    def test_the_key_is_the_same_key_in_every_layout_and_is_called_what_is_printed_on_it(self):
        self.start_with_hot_key(code=MAC_Z)
        for name, printed in NAMES_OF_BOTTOM_LEFT_KEY.items():
            layout("-layout", name)
            self.assert_hot_key_works(X_Z)
            self.announce_change()
            self.wait_for_statement(f"⌃⇧{printed} works.")
            self.assert_hot_key_works(X_Z)

    def test_works_in_every_group_of_a_keyboard_with_two_layouts(self):
        layout("-layout", "us,ru", "-option", "grp:menu_toggle")
        server = Server()
        self.addCleanup(server.close)
        self.start_with_hot_key(code=MAC_Z)
        self.wait_for_statement("⌃⇧Z works.")
        for printed in ("Я", "Z", "Я"):
            server.press(MENU_KEY)
            press_hot_key(X_Z)
            menu()
            server.press(ESCAPE_KEY)
            wait(lambda: popup_menu() is None, "the menu to be closed")
            self.announce_change()
            self.wait_for_statement(f"⌃⇧{printed} works.")

    def test_modifiers_that_are_on_other_bits_after_a_change_of_the_keyboard_still_count(self):
        self.start_with_hot_key(flags=COMMAND)  # Super
        server = Server()
        self.addCleanup(server.close)
        server.press(SUPER_KEY, X_H)
        menu()
        self.close_menu()
        layout("-layout", "us", "-option", "altwin:ctrl_alt_win")
        server.press(CONTROL_KEY, X_H)  # which is Super now
        menu()
        self.close_menu()

    def test_another_combination_of_the_same_key_does_nothing(self):
        self.start_with_hot_key()
        for combination in (f"ctrl+{X_H}", f"shift+{X_H}", f"ctrl+shift+alt+{X_H}", f"ctrl+shift+{X_H + 1}"):
            subprocess.run(["xdotool", "key", combination], check=True, timeout=LIMIT)
        self.assertTrue(holds(lambda: popup_menu() is None))
        self.assert_hot_key_works()

    def test_a_key_that_is_held_pops_the_menu_up_once(self):
        self.start_with_hot_key()
        subprocess.run(["xdotool", "keydown", "ctrl", "keydown", "shift", "keydown", str(X_H)], check=True, timeout=LIMIT)
        self.addCleanup(subprocess.run, ["xdotool", "keyup", str(X_H), "keyup", "shift", "keyup", "ctrl"], timeout=LIMIT)
        menu()
        keys("Escape")
        wait(lambda: popup_menu() is None, "the menu to be closed")
        self.assertTrue(holds(lambda: popup_menu() is None, 1.2))  # the server repeats keys after 0.66 seconds
        subprocess.run(["xdotool", "keyup", str(X_H), "keyup", "shift", "keyup", "ctrl"], check=True, timeout=LIMIT)
        self.assert_hot_key_works()


class OtherPrograms(HotKeyDesktop):
    def test_a_key_that_another_program_has_is_reported_and_the_menu_stays_within_reach(self):
        other = other_program_with(X_H, X_CONTROL | X_SHIFT)
        self.addCleanup(other.stdout.close)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        self.write_hot_key()
        self.start()
        self.wait_for_statement("The hot key ⌃⇧H does not work: another program has it.")
        self.assertIn("The hot key ⌃⇧H does not work: another program has it.", self.said())
        orvane = os.environ["ORVANE_TEST_ORVANE"]
        told = subprocess.run([orvane, "menu", "--help"], env=self.environment(), capture_output=True, text=True, timeout=LIMIT)
        self.assertIn("The running helper says: The hot key ⌃⇧H does not work", told.stdout)
        press_hot_key()
        self.assertTrue(holds(lambda: popup_menu() is None))
        subprocess.run([orvane, "menu"], env=self.environment(), check=True, timeout=LIMIT)
        menu()
        self.close_menu()
        # With the key free again the next change of the preferences takes it.
        other.kill()
        other.wait()
        self.announce_change()
        self.wait_for_statement("The hot key ⌃⇧H works.")
        self.assert_hot_key_works()

    def test_the_key_is_free_after_the_helper_has_ended_and_nothing_is_said_any_more(self):
        for ending in (signal.SIGTERM, signal.SIGINT, signal.SIGKILL):
            self.start_with_hot_key()
            server = Server()
            self.assertFalse(server.grab(X_H, X_CONTROL | X_SHIFT))
            self.process.send_signal(ending)
            self.process.wait(timeout=LIMIT)
            self.assertTrue(wait(lambda: server.grab(X_H, X_CONTROL | X_SHIFT), "the key to be free"))
            server.close()
            told = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "menu", "--help"], env=self.environment(),
                                  capture_output=True, text=True, timeout=LIMIT)
            self.assertNotIn("The running helper says", told.stdout)
            self.assertIn("Bind a key to the command 'orvane menu'", told.stdout)
            wait(lambda: f"'{NAME}'" not in bus_names(), "the helper to be off the bus")

    def test_nothing_stays_grabbed_when_the_helper_is_killed_with_the_key_down(self):
        self.start_with_hot_key()
        subprocess.run(["xdotool", "keydown", "ctrl", "keydown", "shift", "keydown", str(X_H)], check=True, timeout=LIMIT)
        self.addCleanup(subprocess.run, ["xdotool", "keyup", str(X_H), "keyup", "shift", "keyup", "ctrl"], timeout=LIMIT)
        menu()
        server = Server()
        self.addCleanup(server.close)
        self.assertFalse(server.grab_keyboard(), "the menu has no keyboard")
        self.process.send_signal(signal.SIGKILL)
        self.process.wait(timeout=LIMIT)
        wait(server.grab_keyboard, "the keyboard to be free")
        wait(lambda: server.grab(X_H, X_CONTROL | X_SHIFT), "the key to be free")


class Reregistration(HotKeyDesktop):
    def emit_changes(self, number):
        """One after the other, each when the one before has been handled: of a burst the helper follows the first and the last."""
        script = ("import sys; from gi.repository import Gio, GLib\n"
                  "bus = Gio.bus_get_sync(Gio.BusType.SESSION)\n"
                  "for _ in range(int(sys.argv[1])):\n"
                  "    bus.emit_signal(None, '/org/orvane/DistributedNotifications', 'org.orvane.DistributedNotifications',\n"
                  "                    'ORVPresetConfigurationChangedNotification', None)\n"
                  "    bus.call_sync('org.orvane.Helper', '/org/orvane/Helper', 'org.freedesktop.DBus.Properties', 'GetAll',\n"
                  "                  GLib.Variant('(s)', ('org.orvane.Services',)), None, 0, 10000, None)\n")
        subprocess.run(["/usr/bin/python3", "-c", script, str(number)], check=True, timeout=120)

    def bytes_written(self):
        return int(re.search(r"wchar: (\d+)", Path(f"/proc/{self.process.pid}/io").read_text()).group(1))

    def settle(self, code, printed):
        """Ends with another key, so that all of what was announced before has been done."""
        self.write_hot_key(code=code, ORVShowMenubar=False)
        self.announce_change()
        self.wait_for_statement(f"⌃⇧{printed} works.")

    def test_a_thousand_registrations_leave_nothing_behind(self):
        self.start_with_hot_key(ORVShowMenubar=False)  # looking for a status bar costs memory once, some seconds after the start
        server = Server()
        self.addCleanup(server.close)
        # A first round, in which everything gets as large as a burst of notifications makes it.
        self.emit_changes(1000)
        self.settle(MAC_Z, "Z")
        grabs, descriptors, memory, written = server.passive_grabs(), self.descriptors(), self.own_kilobytes(), self.bytes_written()
        self.assertGreaterEqual(grabs, 4, "one for each state of Caps Lock and Num Lock")
        self.emit_changes(1000)
        self.settle(MAC_H, "H")
        self.settle(MAC_Z, "Z")
        # Each registration says anew how the hot key stands.
        self.assertGreaterEqual(self.bytes_written() - written, 1000 * len(self.statement()), "not every change was followed")
        self.assertEqual(server.passive_grabs(), grabs)
        self.assertEqual(self.descriptors(), descriptors)
        self.assertLess(self.own_kilobytes() - memory, 512)
        self.assert_hot_key_works(X_Z)


class MissingNames(HotKeyDesktop):
    def test_without_the_list_of_key_names_the_key_works_and_goes_by_its_number(self):
        program = Path(os.environ["ORVANE_TEST_HELPER"])
        copy = self.home / "copy/HelperSource/orvane-helper"
        shutil.copytree(program.parents[1] / "share/orvane", self.home / "copy/share/orvane")
        copy.parent.mkdir()
        shutil.copy2(program, copy)
        (self.home / "copy/share/orvane/SGKeyCodes.plist").unlink()
        with unittest.mock.patch.dict(os.environ, {"ORVANE_TEST_HELPER": str(copy)}):
            self.start_with_hot_key()
        self.wait_for_statement("⌃⇧4 works.")
        self.assertIn("Contents of SGKeyCodes is nil", self.said())
        self.assert_hot_key_works(X_H)
        self.write_hot_key(code=MAC_Z)
        self.announce_change()
        self.wait_for_statement("⌃⇧6 works.")
        self.assert_hot_key_works(X_Z)


if __name__ == "__main__":
    unittest.main()
