#!/usr/bin/python3
"""Messages that the desktop shows."""

from support import BusTest, run

from gi.repository import GLib

NAME = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"
XML = """<node><interface name="org.freedesktop.Notifications"><method name="Notify">
<arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="s" direction="in"/><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
<arg type="u" direction="out"/></method></interface></node>"""


class NoticeTest(BusTest):
    def setUp(self):
        self.private_bus()

    def noticer(self):
        return self.probe(QT_QPA_PLATFORM="offscreen")

    def test_the_desktop_is_given_title_text_and_icon(self):
        desktop = self.program(NAME, PATH, XML, lambda *_: GLib.Variant("(u)", (7,)))
        self.noticer().ask("notice|Title|Text – more", "noticed")
        [(method, arguments, _files)] = desktop.calls
        self.assertEqual(method, "Notify")
        self.assertEqual(
            arguments, ("Orvane", 0, "org.orvane.Helper", "Title", "Text – more", [], {"desktop-entry": "org.orvane.Helper"}, -1)
        )

    def test_text_that_looks_like_markup_is_shown_as_it_stands(self):
        desktop = self.program(NAME, PATH, XML, lambda *_: GLib.Variant("(u)", (7,)))
        self.noticer().ask("notice|Title|<b>1 & 2</b>", "noticed")
        self.assertEqual(desktop.calls[0][1][4], "&lt;b&gt;1 &amp; 2&lt;/b&gt;")

    def test_a_refusal_is_in_the_log_and_counts_as_not_shown(self):
        self.program(NAME, PATH, XML, lambda *_: ("org.freedesktop.DBus.Error.Failed", "not today"))
        probe = self.noticer()
        probe.tell("notice|Title|Text")
        probe.expect("log the desktop shows no messages: not today")
        probe.settle()
        self.assertEqual(probe.count("noticed"), 0)

    def test_nobody_to_show_it_is_in_the_log(self):
        probe = self.noticer()
        probe.tell("notice|Title|Text")
        probe.expect("log the desktop shows no messages: ")

    def test_without_a_bus_it_is_in_the_log(self):
        probe = self.probe(QT_QPA_PLATFORM="offscreen", DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent", XDG_RUNTIME_DIR="/nonexistent")
        probe.tell("notice|Title|Text")
        probe.expect("log the desktop shows no messages: ")


if __name__ == "__main__":
    run()
