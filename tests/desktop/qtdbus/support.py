"""What the tests of the session bus adapters share: the probe program, a tray host of our own, waiting with deadlines."""

import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

PROBE = os.environ.get("ORVANE_TEST_PROBE", "")
RESOURCES = os.environ.get("ORVANE_TEST_RESOURCES", "")
SCRATCH = os.environ.get("DESKTOP_SCRATCH", "/tmp")
PICTURES = os.environ.get("ORVANE_TEST_SCREENSHOTS", "")

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"

_WATCHER_XML = """<node><interface name="org.kde.StatusNotifierWatcher">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
<signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
<signal name="StatusNotifierHostRegistered"/><signal name="StatusNotifierHostUnregistered"/>
</interface></node>"""


def start_main_loop():
    """GDBus delivers calls and signals in this thread."""
    threading.Thread(target=GLib.MainLoop().run, daemon=True).start()


def wait_until(condition, seconds=10, what="the condition"):
    """What `condition` returned when it held at last; polls."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise AssertionError(f"{what} did not come about within {seconds} s")
        time.sleep(0.01)


def connect():
    """A connection of its own to the session bus."""
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)


class PrivateBus:
    """A session bus that knows no services but those of a test, and that can be killed and started again at the same address."""

    _CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path={folder}/bus</listen><servicedir>{folder}/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>"""

    def __init__(self):
        self.folder = tempfile.mkdtemp(dir=SCRATCH)
        os.mkdir(os.path.join(self.folder, "services"))
        self._file = os.path.join(self.folder, "bus.conf")
        with open(self._file, "w", encoding="utf-8") as file:
            file.write(self._CONFIGURATION.format(folder=self.folder))
        self._former = os.environ.get("DBUS_SESSION_BUS_ADDRESS")
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/bus"
        self.start()

    def start(self):
        command = ["dbus-daemon", f"--config-file={self._file}", "--nofork", "--nopidfile", "--print-address"]
        self._daemon = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        assert self._daemon.stdout.readline().startswith("unix:"), "the bus did not start"

    def add_service(self, name, command):
        with open(os.path.join(self.folder, "services", name + ".service"), "w", encoding="utf-8") as file:
            file.write(f"[D-BUS Service]\nName={name}\nExec={command}\n")
        bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
        call(*bus, "ReloadConfig")
        wait_until(lambda: name in call(*bus, "ListActivatableNames")[0], what="the new service on the bus")

    def kill(self):
        self._daemon.kill()
        self._daemon.wait()
        self._daemon.stdout.close()

    def stop(self):
        if self._daemon.returncode is None:
            self.kill()
        shutil.rmtree(self.folder)
        if self._former is None:
            del os.environ["DBUS_SESSION_BUS_ADDRESS"]
        else:
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._former


class Program:
    """Another program on the bus: one object, described in XML; `calls` is what it was asked."""

    def __init__(self, name, path, xml, answer=lambda method, arguments: None):
        """`answer` returns the reply's variant, an error's name and text, or the text "never"."""
        self.name = name
        self.calls = []
        self._answer = answer
        self.connection = connect()
        for interface in Gio.DBusNodeInfo.new_for_xml(xml).interfaces:
            self.connection.register_object(path, interface, self._call, None, None)
        self.call_bus("RequestName", "(su)", name, 4)

    def call_bus(self, method, signature, *arguments):
        bus = "org.freedesktop.DBus"
        variant = GLib.Variant(signature, arguments) if signature else None
        return self.connection.call_sync(bus, "/org/freedesktop/DBus", bus, method, variant, None, 0, 5000, None)

    def _call(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        descriptors = invocation.get_message().get_unix_fd_list()
        files = [os.readlink(f"/proc/self/fd/{number}") for number in (descriptors.peek_fds() if descriptors else [])]
        self.calls.append((method, parameters.unpack(), files))
        reply = self._answer(method, parameters.unpack())
        if reply == "never":
            return
        if isinstance(reply, tuple):
            invocation.return_dbus_error(*reply)
        else:
            invocation.return_value(reply)

    def stop(self):
        if not self.connection.is_closed():
            self.connection.close_sync(None)


def call(name, path, interface, method, signature="", *arguments, seconds=5):
    """Calls a method; what it returned."""
    connection = connect()
    try:
        variant = GLib.Variant(signature, arguments) if signature else None
        return connection.call_sync(name, path, interface, method, variant, None, 0, int(seconds * 1000), None).unpack()
    finally:
        connection.close_sync(None)


class Probe:
    """The probe program, driven by lines."""

    def __init__(self, **environment):
        surroundings = {**os.environ, "ORVANE_TEST_RESOURCES": RESOURCES, **environment}
        self.process = subprocess.Popen([PROBE], stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=surroundings, text=True)
        self.lines = []
        self._taken = 0
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        self.expect("ready")

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip("\n"))

    def tell(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def _find(self, start):
        for number in range(self._taken, len(self.lines)):
            if self.lines[number].startswith(start):
                self._taken = number + 1
                return self.lines[number]
        return None

    def expect(self, start, seconds=10):
        """The next line that starts so, among those after the last expected one."""
        try:
            return wait_until(lambda: self._find(start), seconds, f"a line {start!r}")
        except AssertionError as error:
            raise AssertionError(f"{error}; lines: {self.lines[-12:]}") from None

    def ask(self, line, start, seconds=10):
        self.tell(line)
        return self.expect(start, seconds)

    def settle(self):
        """Everything told so far has been done."""
        self.ask("ping", "pong")

    def count(self, start):
        return sum(line.startswith(start) for line in self.lines)

    def seconds_of_processor(self):
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def stop(self):
        self.process.stdin.close()
        if self.process.poll() is None:
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
                raise AssertionError("the probe did not end when its input did") from None
        self.process.stdout.close()
        return self.process.returncode


class Watcher:
    """A StatusNotifierWatcher with a host, as a panel is."""

    def __init__(self, has_host=True, forget=0):
        """`forget`: so many registrations are lost, as GNOME's extension loses early ones."""
        self.has_host = has_host
        self.forget = forget
        self.items = []
        self.registrations = []
        self.questions = []
        self._connection = connect()
        node = Gio.DBusNodeInfo.new_for_xml(_WATCHER_XML)
        self._connection.register_object("/StatusNotifierWatcher", node.interfaces[0], self._call, self._get, None)
        self._connection.signal_subscribe(
            "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", None, None, 0, self._name_changed
        )
        reply = self._connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", (WATCHER, 4)), None, 0, 5000, None,
        )
        assert reply.unpack() == (1,), "another watcher is there"

    def _call(self, _connection, sender, _path, _interface, method, parameters, invocation):
        if method == "RegisterStatusNotifierItem":
            name = parameters.unpack()[0]
            self.registrations.append(name)
            if self.forget > 0:
                self.forget -= 1
            else:
                self.items.append((name, sender))
        invocation.return_value(None)

    def _get(self, _connection, _sender, _path, _interface, name):
        self.questions.append(name)
        return {
            "RegisteredStatusNotifierItems": GLib.Variant("as", [f"{name}/StatusNotifierItem" for name, _ in self.items]),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", self.has_host),
            "ProtocolVersion": GLib.Variant("i", 0),
        }[name]

    def _name_changed(self, _connection, _sender, _path, _interface, _signal, parameters):
        name, _old, owner = parameters.unpack()
        if not owner:
            self.items = [item for item in self.items if name not in item]

    def set_host(self, has_host):
        self.has_host = has_host
        signal = "StatusNotifierHostRegistered" if has_host else "StatusNotifierHostUnregistered"
        self._connection.emit_signal(None, "/StatusNotifierWatcher", WATCHER, signal, None)
        self._connection.flush_sync(None)

    def item(self, seconds=10):
        """The one item, as soon as it is registered."""
        wait_until(lambda: self.items, seconds, "a registered item")
        assert len(self.items) == 1, self.items
        return Item(self.items[0][0])

    def wait_for(self, question, times=1):
        """Until that property has been asked for so often."""
        wait_until(lambda: self.questions.count(question) >= times, what=f"question {times} for {question}")

    def settle(self, item):
        """The item's program has handled all that this watcher has answered, and this watcher all that came of it: messages from one
        to the other keep their order, and both handle them one after the other."""
        answered = threading.Event()

        def finish(connection, result):
            connection.call_finish(result)
            answered.set()

        def ask():  # on the thread that answers, so after what is being answered
            arguments = GLib.Variant("(ss)", (ITEM, "Id"))
            path, properties = "/StatusNotifierItem", "org.freedesktop.DBus.Properties"
            self._connection.call(item.name, path, properties, "Get", arguments, None, 0, 5000, None, finish)

        GLib.idle_add(ask)
        assert answered.wait(10), "the item does not answer"

    def crash(self):
        if not self._connection.is_closed():
            self._connection.close_sync(None)


class Item:
    """A StatusNotifierItem with its menu, seen as a host sees it."""

    def __init__(self, name):
        self.name = name
        self.connection = connect()
        self.updates = []
        self.signals = []
        self.connection.signal_subscribe(
            name, MENU, "LayoutUpdated", None, None, 0, lambda *rest: self.updates.append(rest[5].unpack())
        )
        self.connection.signal_subscribe(name, ITEM, None, None, None, 0, lambda *rest: self.signals.append(rest[4]))
        self.flush()

    def flush(self):
        """The bus has handled everything asked of it."""
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", None, None, 0, 5000, None
        )

    def call(self, path, interface, method, signature, *arguments):
        variant = GLib.Variant(signature, arguments) if signature else None
        return self.connection.call_sync(self.name, path, interface, method, variant, None, 0, 5000, None).unpack()

    def properties(self):
        return self.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll", "(s)", ITEM)[0]

    def menu(self, method, signature, *arguments):
        return self.call(self.properties()["Menu"], MENU, method, signature, *arguments)

    def layout(self, parent=0, depth=-1, names=()):
        return self.menu("GetLayout", "(iias)", parent, depth, list(names))

    def entries(self):
        """(id, properties) of each item."""
        return [(child[0], child[1]) for child in self.layout()[1][2]]

    def labels(self):
        return [properties.get("label", "") for _, properties in self.entries()]

    def id_of(self, label):
        return next(number for number, properties in self.entries() if properties.get("label") == label)

    def click(self, number):
        self.menu("Event", "(isvu)", number, "clicked", GLib.Variant("i", 0), 0)


def screenshot(name):
    """Kept where the build folder keeps pictures; the path."""
    folder = PICTURES or SCRATCH
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, name + ".png")
    subprocess.run(["import", "-window", "root", path], check=True, timeout=20)
    return path


class BusTest(unittest.TestCase):
    """Ends what a test started."""

    def private_bus(self):
        bus = PrivateBus()
        self.addCleanup(bus.stop)
        return bus

    def program(self, *arguments):
        program = Program(*arguments)
        self.addCleanup(program.stop)
        return program

    def probe(self, **environment):
        probe = Probe(**environment)
        self.addCleanup(probe.stop)
        return probe


def run():
    start_main_loop()
    unittest.main(verbosity=2, argv=sys.argv)
