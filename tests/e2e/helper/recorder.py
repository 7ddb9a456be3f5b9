"""Stands in for the user's file manager on the session bus: notes the folders that it is asked to show.

    recorder.py FILE        one URI a line goes into FILE; ends with SIGTERM
"""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402 (after the version)

INTERFACE = Gio.DBusNodeInfo.new_for_xml("""
<node><interface name="org.freedesktop.FileManager1">
  <method name="ShowFolders"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
</interface></node>""").interfaces[0]


def note(_connection, _sender, _path, _interface, method, parameters, invocation):
    with open(sys.argv[1], "a", encoding="utf-8") as file:
        for uri in parameters.unpack()[0]:
            file.write(f"{method} {uri}\n")
    invocation.return_value(None)


def acquired(connection, _name):
    connection.register_object("/org/freedesktop/FileManager1", INTERFACE, note)


loop = GLib.MainLoop()
Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.FileManager1", Gio.BusNameOwnerFlags.NONE, acquired, None, lambda *_: loop.quit())
loop.run()
