"""The new folder is shown by the file manager, else by the portal, else by xdg-open; the helper never waits for any of them."""

import os
import threading

from desktop import *
from gi.repository import GLib
from neighbours import BUS, DesktopWithOwnBus, Gio, labels, names

FILE_MANAGER, PORTAL = "org.freedesktop.FileManager1", "org.freedesktop.portal.Desktop"
FILE_MANAGER_XML = """<node><interface name="org.freedesktop.FileManager1">
<method name="ShowFolders"><arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>"""
PORTAL_XML = """<node><interface name="org.freedesktop.portal.OpenURI"><method name="OpenFile"><arg type="s" direction="in"/>
<arg type="h" direction="in"/><arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method></interface></node>"""


class Program:
    """Another program on the bus that answers as told: "done", "error" or "never"."""

    def __init__(self, name, path, xml, behaviour):
        self.calls, self._behaviour = [], behaviour
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        self.connection.register_object(path, Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0], self._answer, None, None)
        self.connection.call_sync(*BUS, "RequestName", GLib.Variant("(su)", (name, 4)), None, 0, 5000, None)

    def _answer(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        descriptors = invocation.get_message().get_unix_fd_list()
        shown = [os.readlink(f"/proc/self/fd/{number}") for number in (descriptors.peek_fds() if descriptors else [])]
        self.calls.append(shown[0] if shown else unquote(parameters.unpack()[0][0]))
        if self._behaviour == "error":
            invocation.return_dbus_error("org.freedesktop.DBus.Error.Failed", "no")
        elif self._behaviour == "done":
            invocation.return_value(GLib.Variant("(o)", ("/request",)) if method == "OpenFile" else None)

    def stop(self):
        if not self.connection.is_closed():
            self.connection.close_sync(None)


class Opening(DesktopWithOwnBus):
    @classmethod
    def setUpClass(cls):
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()

    def setUp(self):
        super().setUp()
        stand_in = self.others.pop()  # for the file manager, which other tests want
        stand_in.terminate()
        stand_in.wait(LIMIT)
        wait(lambda: FILE_MANAGER not in names(), "no file manager")
        self.write_preferences([preset("Plain", "Plain {AutoNo}")])
        folder = self.home / "bin"
        folder.mkdir()
        self.by_xdg_open = self.home / "by-xdg-open"
        (folder / "xdg-open").write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self.by_xdg_open}"\n[ ! -e "{self.home}/slow" ] || sleep 60\n')
        (folder / "xdg-open").chmod(0o755)
        self.start(PATH=f"{folder}:{os.environ['PATH']}")
        wait(lambda: labels(self.process), "the menu")
        self.number = -1

    def program(self, name, behaviour):
        path, xml = ("/org/freedesktop/FileManager1", FILE_MANAGER_XML) if name == FILE_MANAGER else ("/org/freedesktop/portal/desktop", PORTAL_XML)
        made = Program(name, path, xml, behaviour)
        self.addCleanup(made.stop)
        return made

    def make(self):
        """Makes one more folder; its path."""
        self.number += 1
        self.pop_up_for(self.projects)
        keys("Down", "Return")
        active("New Folder from Preset")
        keys("Return")
        made = self.projects / f"Plain {self.number}"
        self.wait_for_folder(made)
        return str(made)

    def xdg_opened(self):
        return self.by_xdg_open.read_text().splitlines() if self.by_xdg_open.exists() else []

    def test_the_file_manager_comes_first(self):
        manager, portal = self.program(FILE_MANAGER, "done"), self.program(PORTAL, "done")
        made = self.make()
        wait(lambda: manager.calls == [f"file://{made}"], "the file manager to be asked")
        self.assertTrue(holds(lambda: not portal.calls and not self.xdg_opened()))

    def test_the_portal_is_asked_when_the_file_manager_refuses_or_is_not_there(self):
        portal = self.program(PORTAL, "done")
        first = self.make()
        wait(lambda: portal.calls == [first], "the portal to be asked")
        manager = self.program(FILE_MANAGER, "error")
        second = self.make()
        wait(lambda: portal.calls == [first, second], "the portal to be asked again")
        self.assertEqual(manager.calls, [f"file://{second}"])
        self.assertEqual(self.xdg_opened(), [])

    def test_xdg_open_is_the_last(self):
        first = self.make()
        wait(lambda: self.xdg_opened() == [first], "xdg-open")
        self.program(FILE_MANAGER, "error")
        self.program(PORTAL, "error")
        second = self.make()
        wait(lambda: self.xdg_opened() == [first, second], "xdg-open again")

    def test_nobody_who_hangs_is_waited_for(self):
        """While all of them hang, the next folders are made as quickly as ever; the next in the row is asked in the end."""
        manager = self.program(FILE_MANAGER, "never")
        (self.home / "slow").touch()
        first = self.make()
        wait(lambda: manager.calls, "the file manager to be asked")
        began = time.monotonic()
        second = self.make()
        self.assertLess(time.monotonic() - began, 5)
        self.assertEqual(self.xdg_opened(), [])
        try:
            wait(lambda: sorted(self.xdg_opened()) == [first, second], "xdg-open in place of the file manager that hangs")
        except TimeIsUp as error:
            raise AssertionError(f"{error}: {self.xdg_opened()}; {manager.calls}; {self.said()}") from None
        answer = bus_call("org.freedesktop.Application.ActivateAction", "make-preset", "[]", "{}")  # while xdg-open hangs
        self.assertEqual(answer.returncode, 0, answer.stderr)
        menu()
        keys("Escape")
        self.process.terminate()
        self.assertEqual(self.process.wait(LIMIT), 0)

    def test_a_program_that_hangs_does_not_hold_up_the_end(self):
        manager = self.program(FILE_MANAGER, "never")
        self.make()
        wait(lambda: manager.calls, "the file manager to be asked")
        self.process.terminate()
        self.assertEqual(self.process.wait(LIMIT), 0)

    def test_no_zombies_are_left(self):
        for _ in range(3):
            self.make()
        wait(lambda: len(self.xdg_opened()) == 3, "xdg-open three times")

        def children():
            found = []
            for task in Path(f"/proc/{self.process.pid}/task").iterdir():
                found += (task / "children").read_text().split()
            return found

        wait(lambda: not children(), "no child to be left")


if __name__ == "__main__":
    unittest.main()
