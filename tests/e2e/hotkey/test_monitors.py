"""Two monitors beside each other: the menu comes up whole on the one that the pointer is on."""

import unittest
from support import *

MONITOR = 1280  # width of each


class Monitors(HotKeyDesktop):
    def setUp(self):
        super().setUp()
        for name in set(re.findall(r"(left|right)", output("xrandr", "--listmonitors"))):
            subprocess.run(["xrandr", "--delmonitor", name], check=True, capture_output=True)
        for name, left, out in (("left", 0, "screen"), ("right", MONITOR, "none")):
            subprocess.run(["xrandr", "--setmonitor", name, f"{MONITOR}/338x{HEIGHT}/211+{left}+0", out], check=True, capture_output=True)
        self.start_with_hot_key()

    def assert_menu_on(self, monitor, x, y):
        move(x, y)
        press_hot_key()
        left, top, width, height = menu()
        where = f"pointer at {x}, {y}: menu at {left}, {top}, {width} x {height}"
        self.assertGreaterEqual(left, monitor, where)
        self.assertLessEqual(left + width, monitor + MONITOR, where)
        self.assertGreaterEqual(top, 0, where)
        self.assertLessEqual(top + height, HEIGHT, where)
        self.close_menu()
        return left, top

    def test_in_the_middle_of_each_monitor_it_is_at_the_pointer(self):
        for monitor in (0, MONITOR):
            x, y = monitor + 600, 300
            self.assertEqual(self.assert_menu_on(monitor, x, y), (x - DISTANCE, y + DISTANCE))

    def test_beside_the_edge_between_them_it_does_not_cross_it(self):
        for y in (100, HEIGHT - 1):
            self.assert_menu_on(0, MONITOR - 1, y)
            self.assert_menu_on(0, MONITOR - 30, y)
            self.assert_menu_on(MONITOR, MONITOR, y)
            self.assert_menu_on(MONITOR, MONITOR + 3, y)
            self.assert_menu_on(MONITOR, 2 * MONITOR - 1, y)


if __name__ == "__main__":
    unittest.main()
