#!/usr/bin/python3
"""The status item and its menu, seen by a host of our own."""

import time

from gi.repository import GLib

from support import BusTest, Item, Watcher, call, connect, run, wait_until

EVERY_LABEL = {
    "Rock & Roll": "Rock & Roll",
    "snake_case_name": "snake__case__name",
    "__": "____",
    "left\tright": "left right",
    "Fest 🎬 👩‍👩‍👧": "Fest 🎬 👩‍👩‍👧",
    "פרויקט חדש (1)": "פרויקט חדש (1)",
    "": "",
}


class HostedTest(BusTest):
    def watcher(self, **options):
        watcher = Watcher(**options)
        self.addCleanup(watcher.crash)
        return watcher


class StatusItemTest(HostedTest):
    def shown(self, *titles):
        """Watcher, probe and item with a menu of these titles."""
        watcher = self.watcher()
        probe = self.probe()
        probe.ask("menu|" + "|".join(titles), "menu")
        probe.ask("show", "shown")
        return watcher, probe, watcher.item()

    def test_tells_what_hosts_want_to_know(self):
        _, probe, item = self.shown("A")
        properties = item.properties()
        self.assertEqual(properties["Id"], "orvane-helper")
        self.assertEqual(properties["Title"], "Orvane")
        self.assertEqual(properties["Category"], "ApplicationStatus")
        self.assertEqual(properties["Status"], "Active")
        self.assertIs(properties["ItemIsMenu"], True)
        self.assertEqual(properties["Menu"], "/MenuBar")
        self.assertEqual(properties["IconName"], "org.orvane.Helper-symbolic")
        self.assertTrue(properties["IconThemePath"].endswith("/icons"))
        self.assertEqual(properties["ToolTip"][2:], ("Orvane", "Makes folders from presets"))
        self.assertRegex(item.name, rf"^org\.kde\.StatusNotifierItem-{probe.process.pid}-1$")

    def test_pictures_are_argb_in_network_order_in_several_sizes(self):
        _, _, item = self.shown("A")
        pictures = item.properties()["IconPixmap"]
        self.assertEqual([width for width, _, _ in pictures], [16, 22, 24, 32, 44, 48])
        for width, height, pixels in pictures:
            data = bytes(pixels)
            self.assertEqual(len(data), width * height * 4)
            alphas = data[0::4]
            self.assertEqual(max(alphas), 255)
            self.assertEqual(alphas[0], 0)
            solid = [data[at : at + 4] for at in range(0, len(data), 4) if data[at] == 255]
            self.assertEqual(set(solid), {solid[0]}, "one colour")

    def test_pictures_follow_the_palette(self):
        _, probe, item = self.shown("A")

        def colour():
            data = bytes(item.properties()["IconPixmap"][1][2])
            return next(data[at + 1 : at + 4] for at in range(0, len(data), 4) if data[at] == 255)

        self.assertLess(max(colour()), 100)
        before = item.signals.count("NewIcon")
        probe.tell("dark")
        wait_until(lambda: colour() == b"\xff\xff\xff", what="the light picture")
        wait_until(lambda: item.signals.count("NewIcon") > before, what="NewIcon")

    def test_activate_says_that_it_is_a_menu(self):
        _, _, item = self.shown("A")
        with self.assertRaises(GLib.Error) as caught:
            item.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", "(ii)", 1, 1)
        self.assertIn("UnknownMethod", str(caught.exception))
        item.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "ContextMenu", "(ii)", 1, 1)
        item.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "SecondaryActivate", "(ii)", 1, 1)
        item.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Scroll", "(is)", 1, "vertical")

    def test_labels_show_every_title_as_it_is(self):
        _, _, item = self.shown(*EVERY_LABEL)
        self.assertEqual(item.labels(), list(EVERY_LABEL.values()))

    def test_a_label_of_300_characters_keeps_both_ends(self):
        title = "Beginning" + "🎬" * 150 + "x" * 135 + "Ending"
        _, _, item = self.shown(title)
        label = item.labels()[0]
        self.assertLessEqual(len(label.encode("utf-16-le")) // 2, 91)
        self.assertTrue(label.startswith("Beginning") and label.endswith("Ending") and "…" in label)
        self.assertNotIn("\ufffd", label)

    def test_separators_and_switched_off_items(self):
        _, _, item = self.shown("A", "-", "!B")
        properties = [each for _, each in item.entries()]
        self.assertEqual(properties, [{"label": "A"}, {"type": "separator"}, {"label": "B", "enabled": False}])
        self.assertEqual(item.menu("GetProperty", "(is)", item.id_of("A"), "enabled"), (True,))
        self.assertEqual(item.menu("GetProperty", "(is)", item.id_of("B"), "enabled"), (False,))

    def test_layout_honours_depth_parent_and_names(self):
        _, _, item = self.shown("A", "!B")
        self.assertEqual(item.layout(0, 0)[1], (0, {"children-display": "submenu"}, []))
        self.assertEqual(len(item.layout(0, 1)[1][2]), 2)
        number = item.id_of("B")
        self.assertEqual(item.layout(number)[1], (number, {"label": "B", "enabled": False}, []))
        self.assertEqual([child[1] for child in item.layout(0, -1, ["enabled"])[1][2]], [{}, {"enabled": False}])
        group = item.menu("GetGroupProperties", "(aias)", [number], ["label"])[0]
        self.assertEqual(group, [(number, {"label": "B"})])
        self.assertEqual(len(item.menu("GetGroupProperties", "(aias)", [], [])[0]), 3)

    def test_items_that_are_not_there_are_errors(self):
        _, _, item = self.shown("A")
        for method, signature, arguments in (
            ("GetLayout", "(iias)", (77, -1, [])),
            ("GetProperty", "(is)", (77, "label")),
            ("GetProperty", "(is)", (1, "nonsense")),
            ("Event", "(isvu)", (77, "clicked", GLib.Variant("i", 0), 0)),
            ("AboutToShow", "(i)", (77,)),
        ):
            with self.assertRaises(GLib.Error, msg=method) as caught:
                item.menu(method, signature, *arguments)
            self.assertIn("InvalidArgs", str(caught.exception))
        self.assertEqual(item.menu("AboutToShowGroup", "(ai)", [0, 77]), ([], [77]))

    def test_changes_made_together_are_one_announcement(self):
        _, probe, item = self.shown("A", "B")
        revision = item.layout()[0]
        wait_until(lambda: item.menu("AboutToShow", "(i)", 0) == (False,), what="a settled menu")
        before = len(item.updates)
        probe.ask("many|300", "menu 300")
        wait_until(lambda: len(item.updates) > before, what="LayoutUpdated")
        new_revision = item.layout()[0]
        probe.settle()
        item.flush()
        self.assertEqual(item.updates[before:], [(new_revision, 0)])
        self.assertGreater(new_revision, revision)

    def test_the_same_menu_again_is_no_announcement(self):
        _, probe, item = self.shown("A", "B")
        item.layout()
        probe.settle()
        item.flush()
        before = list(item.updates)
        probe.ask("menu|A|B", "menu 2")
        probe.settle()
        item.layout()
        self.assertEqual(item.updates, before)

    def test_unchanged_items_keep_their_ids(self):
        _, probe, item = self.shown("A", "B", "B", "-", "C")
        before = item.entries()
        probe.ask("menu|New|A|B|-|C|B", "menu")
        after = item.entries()
        self.assertEqual(item.labels(), ["New", "A", "B", "", "C", "B"])
        ids = [number for number, _ in before]
        self.assertEqual([number for number, _ in after][1:], [ids[0], ids[1], ids[3], ids[4], ids[2]])
        self.assertNotIn(after[0][0], ids)

    def test_a_click_on_an_older_layout_chooses_what_the_user_saw(self):
        _, probe, item = self.shown("A", "B")
        number = item.id_of("B")
        probe.ask("menu|X|Y|B", "menu")
        item.click(number)
        self.assertIn("chosen 2 B", probe.expect("chosen"))

    def test_a_click_on_an_item_that_went_is_an_error_and_runs_nothing(self):
        _, probe, item = self.shown("A", "B")
        number = item.id_of("B")
        probe.ask("menu|A", "menu")
        item.layout()
        with self.assertRaises(GLib.Error):
            item.click(number)
        probe.settle()
        self.assertEqual(probe.count("chosen"), 0)

    def test_a_switched_off_item_runs_nothing(self):
        _, probe, item = self.shown("!A")
        item.click(item.id_of("A"))
        probe.settle()
        self.assertEqual(probe.count("chosen"), 0)

    def test_the_answer_comes_before_the_action_and_the_menu_is_still_served(self):
        _, probe, item = self.shown("wait", "B")
        number = item.id_of("wait")
        item.click(number)  # fails after five seconds without an answer
        probe.expect("chosen 0 wait")
        self.assertEqual(item.labels(), ["wait", "B"])
        item.click(item.id_of("B"))  # while the action of the first one runs: ignored
        probe.settle()
        self.assertEqual(probe.count("chosen"), 1)
        probe.ask("release", "waited")
        item.click(item.id_of("B"))
        probe.expect("chosen 1 B")

    def test_events_arrive_in_groups_too(self):
        _, probe, item = self.shown("A", "B")
        number = item.id_of("B")
        nothing = GLib.Variant("i", 0)
        events = [(0, "opened", nothing, 0), (number, "hovered", nothing, 0), (number, "clicked", nothing, 0), (99, "clicked", nothing, 0)]
        self.assertEqual(item.menu("EventGroup", "(a(isvu))", events), ([99],))
        self.assertIn("B", probe.expect("chosen"))

    def test_the_hosts_permission_reaches_the_action_and_goes_with_it(self):
        _, probe, item = self.shown("A")
        item.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "ProvideXdgActivationToken", "(s)", "abc-1")
        item.click(item.id_of("A"))
        self.assertEqual(probe.expect("chosen"), "chosen 0 A token abc-1")
        item.click(item.id_of("A"))
        self.assertEqual(probe.expect("chosen"), "chosen 0 A token -")

    def test_an_item_may_remove_itself_from_its_own_action(self):
        watcher, probe, item = self.shown("vanish")
        item.click(item.id_of("vanish"))
        probe.expect("hidden")
        wait_until(lambda: not watcher.items, what="no item")
        probe.settle()

    def test_removing_gives_the_name_back_and_showing_again_takes_another(self):
        watcher, probe, item = self.shown("A")
        probe.ask("hide", "hidden")
        wait_until(lambda: not watcher.items, what="no item")
        probe.ask("show", "shown")
        again = watcher.item()
        self.assertTrue(again.name.endswith("-2"), again.name)
        self.assertEqual(again.labels(), ["A"])
        self.assertNotEqual(again.name, item.name)

    def test_a_thousand_presets_are_read_quickly(self):
        _, probe, item = self.shown("A")
        probe.ask("many|1000", "menu 1000")
        start = time.monotonic()
        self.assertEqual(len(item.entries()), 1000)
        taken = time.monotonic() - start
        print(f"1000 items read in {taken * 1000:.1f} ms")
        self.assertLess(taken, 2)
        item.click(item.id_of("Preset 999"))
        self.assertIn("chosen 999", probe.expect("chosen"))


class HostTest(HostedTest):
    def test_the_item_appears_when_the_host_starts_late(self):
        for last_said, environment in (
            ("shown", {}),
            ("no fallback", {"ORVANE_TEST_FALLBACK_MS": "20"}),
            ("missing", {"ORVANE_TEST_FALLBACK_MS": "20", "ORVANE_TEST_MISSING_MS": "40"}),
        ):
            with self.subTest(last_said):
                probe = self.probe(QT_QPA_PLATFORM="offscreen", **environment)
                probe.ask("menu|A", "menu")
                probe.ask("show", last_said)
                self.wait_without_host(probe)
                watcher = self.watcher()
                self.assertEqual(watcher.item().labels(), ["A"])
                probe.ask("hide", "hidden")
                watcher.crash()

    def wait_without_host(self, probe):
        """Until the probe's item has heard from the bus that there is no watcher: it asks before anybody can ask it."""
        name = f"org.kde.StatusNotifierItem-{probe.process.pid}-1"
        bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
        wait_until(lambda: call(*bus, "NameHasOwner", "(s)", name)[0], what=name)
        Item(name).properties()

    def test_the_item_comes_back_with_a_host_that_crashed_and_never_doubles(self):
        probe = self.probe(QT_QPA_PLATFORM="offscreen", ORVANE_TEST_CHECK_MS="20")
        probe.ask("menu|A", "menu")
        probe.ask("show", "shown")
        for _ in range(3):
            watcher = self.watcher()
            item = watcher.item()
            watcher.wait_for("RegisteredStatusNotifierItems", 3)  # by each of the checks that may register again
            watcher.settle(item)
            self.assertEqual(len(watcher.registrations), 1)
            watcher.crash()

    def test_a_lost_registration_is_repeated(self):
        watcher = self.watcher(forget=2)
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.ask("show", "shown")
        wait_until(lambda: watcher.items, 8, "the third registration")
        self.assertEqual(len(watcher.registrations), 3)
        self.assertEqual(len(watcher.items), 1)

    def test_a_host_that_hangs_does_not_hold_the_program_up(self):
        connection = connect()  # owns the name and answers nothing
        connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", ("org.kde.StatusNotifierWatcher", 4)), None, 0, 5000, None,
        )
        connection.add_filter(lambda _connection, message, incoming: None if incoming and message.get_member() != "GetId" else message)
        self.addCleanup(connection.close_sync, None)
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        start = time.monotonic()
        probe.ask("show", "shown")
        probe.settle()
        self.assertLess(time.monotonic() - start, 1)

    def test_says_once_that_there_is_no_status_bar(self):
        probe = self.probe(QT_QPA_PLATFORM="offscreen", ORVANE_TEST_FALLBACK_MS="50", ORVANE_TEST_MISSING_MS="200")
        probe.ask("show", "shown")
        probe.expect("missing")
        self.assertEqual(probe.count("no fallback"), 1)
        probe.ask("hide", "hidden")
        probe.ask("show", "shown")
        wait_until(lambda: probe.count("no fallback") == 2, what="the second item's fallback")
        probe.ask("look", "looked")
        self.assertEqual(probe.count("missing"), 1)

    def test_says_nothing_when_a_host_came_in_time(self):
        probe = self.probe(QT_QPA_PLATFORM="offscreen", ORVANE_TEST_FALLBACK_MS="50")
        probe.ask("show", "shown")
        watcher = self.watcher()
        item = watcher.item()
        watcher.wait_for("IsStatusNotifierHostRegistered")
        watcher.settle(item)
        probe.ask("look", "looked")
        self.assertEqual(probe.count("missing"), 0)
        before = probe.count("no fallback")
        watcher.crash()
        wait_until(lambda: probe.count("no fallback") > before, what="the item without a host")
        probe.ask("look", "missing")


if __name__ == "__main__":
    run()
