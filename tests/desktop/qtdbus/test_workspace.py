#!/usr/bin/python3
"""Opening folders and files: file manager, portal, xdg-open, each in its turn."""

import os
import stat
import time

from support import BusTest, run, wait_until

from gi.repository import GLib

FILE_MANAGER = "org.freedesktop.FileManager1"
FILE_MANAGER_XML = """<node><interface name="org.freedesktop.FileManager1">
<method name="ShowFolders"><arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>"""
PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_XML = """<node><interface name="org.freedesktop.portal.OpenURI">
<method name="OpenFile"><arg type="s" direction="in"/><arg type="h" direction="in"/><arg type="a{sv}" direction="in"/>
<arg type="o" direction="out"/></method></interface></node>"""
REFUSAL = ("org.freedesktop.DBus.Error.Failed", "not today")
REQUEST = GLib.Variant("(o)", ("/org/freedesktop/portal/desktop/request/1",))


class WorkspaceTest(BusTest):
    def setUp(self):
        self.bus = self.private_bus()
        self.log = os.path.join(self.bus.folder, "opened")
        self.tools = os.path.join(self.bus.folder, "tools")
        os.mkdir(self.tools)
        self.target = os.path.join(self.bus.folder, "Neuer Ordner – 1#2%")
        os.mkdir(self.target)

    def add_xdg_open(self):
        """Writes what it got: arguments, environment, descriptors, session."""
        path = os.path.join(self.tools, "xdg-open")
        with open(path, "w", encoding="utf-8") as file:
            file.write(
                "#!/usr/bin/python3\nimport os, signal\nlog = []\n"
                "for number in range(3, 256):\n"
                "    try:\n        log.append(f'descriptor {number} ' + os.readlink(f'/proc/self/fd/{number}'))\n"
                "    except OSError:\n        pass\n"
                "import sys\n"
                "log += ['argument ' + argument for argument in sys.argv[1:]]\n"
                "log += [f'standard {number} ' + os.readlink(f'/proc/self/fd/{number}') for number in range(3)]\n"
                "log += ['variable ' + name for name in sorted(os.environ)]\n"
                "log.append('leader' if os.getsid(0) != os.getsid(os.getppid()) or os.getsid(0) == os.getpid() else 'same session')\n"
                "log.append('blocked %d' % len(signal.pthread_sigmask(signal.SIG_BLOCK, [])))\n"
                f"open({self.log + '.new'!r}, 'w').write('\\n'.join(log) + '\\nend\\n')\nos.rename({self.log + '.new'!r}, {self.log!r})\n"
            )
        os.chmod(path, stat.S_IRWXU)

    def opener(self, **environment):
        return self.probe(QT_QPA_PLATFORM="offscreen", PATH=self.tools, **environment)

    def opened(self):
        def read():
            if not os.path.exists(self.log):
                return None
            with open(self.log, encoding="utf-8") as file:
                return file.read().splitlines()

        return wait_until(read, what="xdg-open")

    def test_a_folder_is_shown_by_the_file_manager(self):
        manager = self.program(FILE_MANAGER, "/org/freedesktop/FileManager1", FILE_MANAGER_XML)
        self.add_xdg_open()
        probe = self.opener()
        probe.ask("open|" + self.target, "opening")
        wait_until(lambda: manager.calls, what="the call")
        uri = GLib.filename_to_uri(self.target, None)
        self.assertEqual(manager.calls[0][0], "ShowFolders")
        (asked,), startup = manager.calls[0][1]
        self.assertEqual(GLib.filename_from_uri(asked), GLib.filename_from_uri(uri))
        self.assertEqual(startup, "")
        probe.settle()
        self.assertFalse(os.path.exists(self.log))

    def test_the_portal_follows_a_file_manager_that_fails(self):
        self.program(FILE_MANAGER, "/org/freedesktop/FileManager1", FILE_MANAGER_XML, lambda *_: REFUSAL)
        portal = self.program(PORTAL, "/org/freedesktop/portal/desktop", PORTAL_XML, lambda *_: REQUEST)
        self.add_xdg_open()
        self.opener().ask("open|" + self.target, "opening")
        wait_until(lambda: portal.calls, what="the portal's call")
        self.assertEqual(portal.calls[0][2], [self.target])
        self.assertFalse(os.path.exists(self.log))

    def test_xdg_open_follows_a_portal_that_fails(self):
        self.program(PORTAL, "/org/freedesktop/portal/desktop", PORTAL_XML, lambda *_: REFUSAL)
        self.add_xdg_open()
        self.opener().ask("open|" + self.target, "opening")
        self.assertIn("argument " + self.target, self.opened())

    def test_what_xdg_open_gets_is_nothing_of_ours(self):
        self.add_xdg_open()
        probe = self.opener(XDG_ACTIVATION_TOKEN="abc", DESKTOP_STARTUP_ID="def", DBUS_STARTER_ADDRESS="x", ORVANE_OTHER="y",
                            QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT="1")
        probe.ask("open|" + self.target, "opening")
        lines = self.opened()
        self.assertEqual([line for line in lines if line.startswith("descriptor")], [])
        self.assertEqual([line for line in lines if line.startswith("standard")], [f"standard {n} /dev/null" for n in range(3)])
        names = [line.split()[1] for line in lines if line.startswith("variable")]
        self.assertIn("HOME", names)
        ours = ("XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID", "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT")
        self.assertEqual([name for name in names if name.startswith(("ORVANE_", "DBUS_STARTER")) or name in ours], [])
        self.assertIn("leader", lines)
        self.assertIn("blocked 0", lines)

    def test_a_hung_file_manager_holds_nothing_up_and_the_next_one_opens(self):
        self.program(FILE_MANAGER, "/org/freedesktop/FileManager1", FILE_MANAGER_XML, lambda *_: "never")
        self.add_xdg_open()
        probe = self.opener()
        start = time.monotonic()
        probe.ask("open|" + self.target, "opening")
        probe.settle()
        self.assertLess(time.monotonic() - start, 0.5)
        self.assertIn("argument " + self.target, self.opened())
        self.assertGreater(time.monotonic() - start, 1.4)  # the probe's limit is 1.5 s

    def test_a_file_manager_is_started_for_it(self):
        self.bus.add_service(FILE_MANAGER, f"/bin/touch {self.log}")
        self.opener().ask("open|" + self.target, "opening")
        wait_until(lambda: os.path.exists(self.log), what="the file manager")

    def test_files_and_panes_go_to_xdg_open_at_once(self):
        manager = self.program(FILE_MANAGER, "/org/freedesktop/FileManager1", FILE_MANAGER_XML)
        self.add_xdg_open()
        probe = self.opener()
        pane = os.path.join(self.bus.folder, "ORVPrefPane.prefPane")
        os.mkdir(pane)
        text = os.path.join(self.bus.folder, "text.txt")
        with open(text, "w", encoding="utf-8"):
            pass
        for path in (pane, text):
            probe.ask("open|" + path, "opening")
            self.assertIn("argument " + path, self.opened())
            os.remove(self.log)
        self.assertEqual(manager.calls, [])

    def test_the_portal_opens_a_file_where_there_is_no_xdg_open(self):
        portal = self.program(PORTAL, "/org/freedesktop/portal/desktop", PORTAL_XML, lambda *_: REQUEST)
        text = os.path.join(self.bus.folder, "text.txt")
        with open(text, "w", encoding="utf-8"):
            pass
        self.opener().ask("open|" + text, "opening")
        wait_until(lambda: portal.calls, what="the portal's call")
        self.assertEqual(portal.calls[0][2], [text])

    def test_says_so_when_nothing_opens_it(self):
        probe = self.opener()
        probe.ask("open|" + self.target, "opening")
        probe.expect("log Nothing here can open " + self.target)
        probe.ask("open|" + self.target + "/missing", "not opening")

    def test_nobody_takes_it_without_a_bus_and_without_xdg_open(self):
        probe = self.opener(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent", XDG_RUNTIME_DIR="/nonexistent")
        probe.ask("open|" + self.target, "not opening")

    def test_xdg_open_does_it_without_a_bus(self):
        self.add_xdg_open()
        probe = self.opener(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent", XDG_RUNTIME_DIR="/nonexistent")
        probe.ask("open|" + self.target, "opening")
        self.assertIn("argument " + self.target, self.opened())


if __name__ == "__main__":
    run()
