#!/usr/bin/python3
"""The program's services on the bus, called as other programs call them."""

import os
import subprocess
import time

from gi.repository import GLib

from support import PROBE, BusTest, call, run, wait_until

NAME, PATH = "org.orvane.Helper", "/org/orvane/Helper"
APPLICATION, SERVICES = "org.freedesktop.Application", "org.orvane.Services"
PREFERENCES_XML = """<node><interface name="org.freedesktop.Application">
<method name="Activate"><arg type="a{sv}" direction="in"/></method>
<method name="ActivateAction"><arg type="s" direction="in"/><arg type="av" direction="in"/><arg type="a{sv}" direction="in"/></method>
</interface></node>"""


def activate_action(action, *parameters, **platform_data):
    data = {key.replace("_", "-"): GLib.Variant("s", value) for key, value in platform_data.items()}
    return call(NAME, PATH, APPLICATION, "ActivateAction", "(sava{sv})", action, list(parameters), data)


class ServicesTest(BusTest):
    def serving(self):
        self.private_bus()
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.tell("provide")
        probe.ask("claim", "claimed")
        return probe

    def test_the_service_passes_its_texts_on(self):
        probe = self.serving()
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "text", "data")
        self.assertEqual(probe.expect("service"), "service [text] [data] token -")

    def test_an_error_of_the_provider_is_the_callers_error(self):
        probe = self.serving()
        probe.tell("fail|it went wrong")
        probe.settle()
        with self.assertRaises(GLib.Error) as caught:
            call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "", "")
        self.assertIn("org.orvane.Services.Error.Failed", str(caught.exception))
        self.assertIn("it went wrong", str(caught.exception))

    def test_no_caller_waits_for_the_menu_and_nothing_nests(self):
        probe = self.serving()
        probe.tell("hold")
        probe.settle()
        start = time.monotonic()
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "first", "")
        activate_action("make-preset")  # while the menu is up: dropped
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "second", "")
        activate_action("make-preset-in", GLib.Variant("s", "/other"))
        self.assertLess(time.monotonic() - start, 2)
        probe.expect("service [first]")
        probe.settle()
        self.assertEqual(probe.count("service"), 1)
        self.assertEqual(probe.count("folder"), 0)
        probe.ask("release", "released")
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "third", "")
        probe.expect("service [third]")

    def meet_nothing_on_the_screen(self):
        """A request with another folder while an earlier one is with the provider and shows nothing."""
        probe = self.serving()
        probe.tell("hold")
        probe.tell("nothing-on-screen")
        probe.settle()
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "first", "")
        probe.expect("service [first]")
        activate_action("make-preset-in", GLib.Variant("s", "/other"))
        probe.settle()
        self.assertEqual((probe.count("folder"), probe.count("in front")), (0, 0))
        return probe

    def test_a_request_that_meets_one_with_nothing_on_the_screen_waits_for_its_end(self):
        probe = self.meet_nothing_on_the_screen()
        probe.ask("release", "released")
        probe.expect("folder /other")
        probe.expect("service [] []")

    def test_a_request_that_waits_gives_way_to_a_window_that_comes_up(self):
        probe = self.meet_nothing_on_the_screen()
        probe.ask("something-on-screen", "in front")
        probe.ask("release", "released")
        call(NAME, PATH, SERVICES, "makePresetFromService", "(ss)", "third", "")
        self.assertEqual(probe.expect("service"), "service [third] [] token -")
        self.assertEqual(probe.count("folder"), 0)

    def test_a_folder_counts_until_the_provider_is_done(self):
        probe = self.serving()
        probe.tell("hold")
        probe.settle()
        activate_action("make-preset-in", GLib.Variant("s", "/tmp"))
        probe.expect("folder /tmp")
        probe.expect("service")
        probe.settle()
        self.assertEqual(probe.count("done"), 0)
        probe.ask("release", "released")
        probe.expect("done")

    def test_actions(self):
        probe = self.serving()
        activate_action("make-preset")
        self.assertEqual(probe.expect("service"), "service [] [] token -")
        activate_action("preferences")
        probe.expect("preferences")
        activate_action("quit")
        probe.expect("quit")
        call(NAME, PATH, APPLICATION, "Activate", "(a{sv})", {})
        probe.expect("service")

    def test_a_folder_comes_as_a_path_a_uri_or_bytes(self):
        probe = self.serving()
        for value in (
            GLib.Variant("s", "/tmp/Größe und Maß"),
            GLib.Variant("s", "file:///tmp/Gr%C3%B6%C3%9Fe%20und%20Ma%C3%9F"),
            GLib.Variant("s", "file://localhost/tmp/Gr%C3%B6%C3%9Fe%20und%20Ma%C3%9F"),
            GLib.Variant("ay", "/tmp/Größe und Maß".encode() + b"\0"),
        ):
            activate_action("make-preset-in", value)
            self.assertEqual(probe.expect("folder"), "folder /tmp/Größe und Maß")
            probe.expect("service")
        call(NAME, PATH, APPLICATION, "Open", "(asa{sv})", ["http://example.org/", "file:///tmp/a%23b"], {})
        self.assertEqual(probe.expect("folder"), "folder /tmp/a#b")

    def test_what_is_no_folder_and_no_action_is_refused(self):
        probe = self.serving()
        for action, parameters in (
            ("make-preset-in", ()),
            ("make-preset-in", (GLib.Variant("s", "relative"),)),
            ("make-preset-in", (GLib.Variant("s", "file://elsewhere/tmp"),)),
            ("make-preset-in", (GLib.Variant("s", ""),)),
            ("nonsense", ()),
        ):
            with self.assertRaises(GLib.Error, msg=f"{action} {parameters}") as caught:
                activate_action(action, *parameters)
            self.assertIn("InvalidArgs", str(caught.exception))
        probe.settle()
        self.assertEqual(probe.count("service"), 0)

    def test_permission_to_come_to_the_front_lasts_for_one_request(self):
        probe = self.serving()
        activate_action("make-preset", activation_token="abc-1")
        self.assertEqual(probe.expect("service"), "service [] [] token abc-1")
        activate_action("make-preset", desktop_startup_id="def-2")
        self.assertEqual(probe.expect("service"), "service [] [] token def-2")
        activate_action("make-preset")
        self.assertEqual(probe.expect("service"), "service [] [] token -")

    def test_requests_wait_for_the_provider(self):
        self.private_bus()
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.ask("claim", "claimed")
        activate_action("make-preset")
        probe.settle()
        self.assertEqual(probe.count("service"), 0)
        probe.tell("provide")
        probe.expect("service")

    def test_a_second_start_finds_the_name_taken_and_shows_the_first_ones_menu(self):
        probe = self.serving()
        second = self.probe(QT_QPA_PLATFORM="offscreen", XDG_ACTIVATION_TOKEN="ghi-3")
        second.ask("claim", "taken")
        second.ask("activate-other", "activated")
        self.assertEqual(probe.expect("service"), "service [] [] token ghi-3")
        probe.stop()
        second.ask("claim", "claimed")

    def test_the_name_is_free_after_the_program_was_killed(self):
        probe = self.serving()
        probe.process.kill()
        probe.process.wait()
        second = self.probe(QT_QPA_PLATFORM="offscreen")
        wait_until(lambda: second.ask("claim", "") and second.lines[-1] == "claimed", what="the name")

    def test_gapplication_reaches_it(self):
        data = os.path.join(self.private_bus().folder, "data")
        os.makedirs(os.path.join(data, "applications"))
        with open(os.path.join(data, "applications", "org.orvane.Helper.desktop"), "w", encoding="utf-8") as file:
            file.write("[Desktop Entry]\nType=Application\nName=Orvane\nExec=true\nDBusActivatable=true\n")
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.tell("provide")
        probe.ask("claim", "claimed")
        environment = {**os.environ, "XDG_DATA_HOME": data}
        for arguments, line in (
            (["action", NAME, "make-preset"], "service [] []"),
            (["action", NAME, "make-preset-in", "'/tmp'"], "folder /tmp"),
            (["launch", NAME], "service [] []"),
        ):
            subprocess.run(["gapplication", *arguments], check=True, timeout=20, env=environment)
            probe.expect(line)

    def test_the_bus_starts_it_for_a_request(self):
        bus = self.private_bus()
        log = os.path.join(bus.folder, "log")
        script = os.path.join(bus.folder, "start")
        orders = os.path.join(bus.folder, "orders")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/sh\n{{ echo claim; timeout 60 cat {orders}; }} | QT_QPA_PLATFORM=offscreen {PROBE} >{log}\n")
        os.chmod(script, 0o755)
        os.mkfifo(orders)
        descriptor = os.open(orders, os.O_RDWR)
        self.addCleanup(os.close, descriptor)  # which ends the probe
        bus.add_service(NAME, script)
        activate_action("make-preset")
        os.write(descriptor, b"provide\n")  # the request waits for it

        def lines():
            with open(log, encoding="utf-8") as file:
                return file.read()

        wait_until(lambda: "service [] []" in lines(), what="the request")


class SettingsTest(BusTest):
    def test_the_pane_is_shown_by_the_settings_program(self):
        self.private_bus()
        settings = self.program("org.orvane.Settings", "/org/orvane/Settings", PREFERENCES_XML)
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.ask("pane|org.orvane.ORVPrefPane", "showing")
        wait_until(lambda: settings.calls, what="the call")
        self.assertEqual(settings.calls[0][:2], ("ActivateAction", ("show-pane", ["org.orvane.ORVPrefPane"], {})))

    def test_plain_activation_where_the_action_is_not_known(self):
        self.private_bus()
        refusal = ("org.freedesktop.DBus.Error.InvalidArgs", "no such action")
        settings = self.program(
            "org.orvane.Settings", "/org/orvane/Settings", PREFERENCES_XML,
            lambda method, _arguments: refusal if method == "ActivateAction" else None,
        )
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.ask("pane|x", "showing")
        wait_until(lambda: len(settings.calls) == 2, what="both calls")
        self.assertEqual(settings.calls[1][:2], ("Activate", ({},)))

    def test_a_settings_program_that_hangs_holds_nothing_up(self):
        self.private_bus()
        self.program("org.orvane.Settings", "/org/orvane/Settings", PREFERENCES_XML, lambda _method, _arguments: "never")
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        start = time.monotonic()
        probe.ask("pane|x", "showing")
        probe.settle()
        self.assertLess(time.monotonic() - start, 1)

    def test_nobody_serves_it(self):
        self.private_bus()
        probe = self.probe(QT_QPA_PLATFORM="offscreen", PROBE_SETTINGS_PROGRAM="/no/such/program")
        probe.ask("pane|x", "nobody")

    def test_where_nobody_serves_it_the_program_itself_is_started(self):
        bus = self.private_bus()
        started = os.path.join(bus.folder, "started")
        program = os.path.join(bus.folder, "settings")
        with open(program, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/sh\necho \"$#\" > {started}.new && mv {started}.new {started}\n")
        os.chmod(program, 0o755)
        self.probe(QT_QPA_PLATFORM="offscreen", PROBE_SETTINGS_PROGRAM=program).ask("pane|x", "showing")
        wait_until(lambda: os.path.exists(started), what="the program")
        with open(started, encoding="utf-8") as file:
            self.assertEqual(file.read(), "0\n")

    def test_the_bus_starts_it(self):
        bus = self.private_bus()
        bus.add_service("org.orvane.Settings", "/bin/false")
        probe = self.probe(QT_QPA_PLATFORM="offscreen")
        probe.ask("pane|x", "showing")
        probe.expect("log The settings program does not answer")


if __name__ == "__main__":
    run()
